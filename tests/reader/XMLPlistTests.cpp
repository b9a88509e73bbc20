#include "model/VLFont.h"
#include "reader/VLPlistParseInfo.h"
#include "reader/VLPropertyListFile.h"
#include "reader/VLXMLPlistGuard.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

std::string xml(const std::string& root)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">\n" +
           root + "\n</plist>\n";
}

std::string nested(size_t depth, const std::string& open = "<array>")
{
    std::string text;
    for (size_t i = 0; i < depth; ++i) text += open;
    for (size_t i = 0; i < depth; ++i) text += "</array>";
    return text;
}

std::string dictionaryOfKeys(size_t count, const std::string& key = "<key>")
{
    std::string text = "<dict>";
    for (size_t i = 0; i < count; ++i) text += key + "k" + std::to_string(i) + "</key><true/>";
    return text + "</dict>";
}

} // namespace

TEST(XMLPlist, NestingIsBoundedBeforeLibplistReadsIt)
{
    EXPECT_TRUE(parseBinaryOrXMLPropertyList(xml(nested(VLPlistMaximumNesting))));
    EXPECT_FALSE(xmlPlistIsSafe(xml(nested(VLPlistMaximumNesting + 1))));
    // libplist's recursive free ran out of stack here.
    EXPECT_FALSE(parseBinaryOrXMLPropertyList(xml(nested(200000))));
    // What looks like an end tag in a comment, a quoted attribute value or CDATA ends nothing.
    EXPECT_FALSE(xmlPlistIsSafe(xml(nested(300, "<array><!-- </array> -->"))));
    EXPECT_FALSE(xmlPlistIsSafe(xml(nested(300, "<array a=\"</array>\">"))));
    EXPECT_FALSE(xmlPlistIsSafe(xml(nested(300, "<array><string><![CDATA[</array>]]></string>"))));
    // Empty elements, declarations and comments open nothing.
    std::string flat = "<array>";
    for (int i = 0; i < 1000; ++i) flat += "<array/><true /><!-- <array> --><?pi <array>?>";
    EXPECT_TRUE(xmlPlistIsSafe(xml(flat + "</array>")));
    EXPECT_FALSE(xmlPlistIsSafe(xml("<array><string a=\"never closed>")));

    // The same through a package's glyph order.
    namespace fs = std::filesystem;
    char name[] = "/tmp/velmor-package-XXXXXX";
    fs::path folder = mkdtemp(name);
    fs::create_directory(folder / "glyphs");
    std::ofstream(folder / "fontinfo.plist") << "{\n.formatVersion = 3;\n}\n";
    std::ofstream(folder / "glyphs" / "A_.glyph") << "{\nglyphname = A;\nlayers = (\n);\n}\n";
    std::ofstream(folder / "order.plist") << xml(nested(200000));
    VLError error;
    EXPECT_EQ(VLFont::initWithURL_error(folder.string(), &error), nullptr);
    fs::remove_all(folder);
}

TEST(XMLPlist, DictionariesOfManyKeysAreRefusedByTheirCost)
{
    // libplist compares each key with the keys before it: 640,000 keys took 33 seconds.
    auto root = parseBinaryOrXMLPropertyList(xml(dictionaryOfKeys(3000)));
    ASSERT_TRUE(root && root->isDictionary());
    EXPECT_EQ(root->count(), 3000u);
    EXPECT_FALSE(xmlPlistIsSafe(xml(dictionaryOfKeys(100000))));
    EXPECT_FALSE(xmlPlistIsSafe(xml(dictionaryOfKeys(100000, "<key xml:space=\"preserve\">"))));
    // Many small dictionaries cost little, and values other than keys nothing.
    std::string many = "<array>";
    for (int i = 0; i < 2000; ++i) many += dictionaryOfKeys(50);
    EXPECT_TRUE(xmlPlistIsSafe(xml(many + "</array>")));
    std::string values = "<array>";
    for (int i = 0; i < 100000; ++i) values += "<true/>";
    EXPECT_TRUE(xmlPlistIsSafe(xml(values + "</array>")));
}
