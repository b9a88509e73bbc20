#include "reader/VLPropertyListFile.h"
#include "support/PlistTestSupport.h"
#include "support/PlistWriting.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace {

struct Outcome {
    int status;
    std::string log;
    std::string png;
};

std::string contentOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

// The command on a document, with what it logs.
Outcome runCommand(const std::string& document)
{
    TemporaryFile input(document);
    TemporaryFile log("");
    std::string output = input.path + ".png";
    std::string command = std::string(VELMOR_TOOL) + " -s 64 " + input.path + " " + output + " 2>" + log.path;
    int status = std::system(command.c_str());
    std::string png = contentOf(output);
    std::remove(output.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentOf(log.path), png};
}

std::string glyph(const std::string& name, const std::string& glyphKey)
{
    return "{\nglyphname = " + name + ";\n" + glyphKey +
           "layers = (\n{\nlayerId = m01;\nwidth = 500;\npaths = (\n{\nclosed = 1;\nnodes = (\n\"0 0 LINE\",\n"
           "\"250 700 LINE\",\n\"500 0 LINE\"\n);\n}\n);\n}\n);\n}";
}

// An older-format document of the two sample glyphs.
std::string document(const std::string& masterKey, const std::string& glyphKey)
{
    return "{\nfontMaster = (\n{\nid = m01;\nascender = 700;\ndescender = -200;\n" + masterKey +
           "}\n);\nglyphs = (\n" + glyph("A", glyphKey) + ",\n" + glyph("g", "") + "\n);\nunitsPerEm = 1000;\n}\n";
}

size_t countOf(const std::string& text, const std::string& part)
{
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
}

} // namespace

TEST(SecondChance, RecordsFromOtherWritersDrawThroughTheDictionaryRoute)
{
    Outcome plain = runCommand(document("", ""));
    EXPECT_EQ(plain.status, 0);
    EXPECT_EQ(countOf(plain.log, "dictionary route"), 0u) << "the streaming route stays the first";

    for (const auto& [masterKey, glyphKey] : {std::pair<std::string, std::string>{"baseline = 0;\n", ""},
                                              std::pair<std::string, std::string>{"", "openTypeGlyphClass = 1;\n"}}) {
        Outcome outcome = runCommand(document(masterKey, glyphKey));
        EXPECT_EQ(outcome.status, 0) << outcome.log;
        EXPECT_EQ(countOf(outcome.log, "through the dictionary route"), 1u) << outcome.log;
        EXPECT_NE(outcome.log.find(masterKey.empty() ? "VLGlyph" : "VLFontMaster"), std::string::npos)
            << "the log says which record the streaming reader refused: " << outcome.log;
    }
}

TEST(SecondChance, BrokenTextStillFailsWithItsLine)
{
    std::string broken = document("baseline = 0;\n", "");
    broken.replace(broken.find("width = 500;"), 12, "width = (500;");
    Outcome outcome = runCommand(broken);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(countOf(outcome.log, "dictionary route"), 0u);
    EXPECT_NE(outcome.log.find("line"), std::string::npos) << outcome.log;
}

TEST(SecondChance, PropertyListTwinsDrawTheSamePixels)
{
    const std::string text = document("", "");
    TemporaryFile file(text);
    Value tree = readPropertyListFile(file.path).value_or(Value());
    Outcome fromText = runCommand(text);
    ASSERT_EQ(fromText.status, 0);
    ASSERT_FALSE(fromText.png.empty());
    for (bool binary : {false, true}) {
        Outcome twin = runCommand(propertyListOfValue(tree, binary));
        EXPECT_EQ(twin.status, 0) << twin.log;
        EXPECT_TRUE(twin.png == fromText.png) << (binary ? "binary" : "XML");
    }
    // Whole documents are larger than the other property lists that a package holds.
    Value note(std::string(VLPropertyListLargestFile, 'x'));
    tree.mutableDictionary()->insert_or_assign("userData", Value(ValueDictionary{{"note", note}}));
    std::string large = propertyListOfValue(tree, false);
    ASSERT_GT(large.size(), VLPropertyListLargestFile);
    Outcome twin = runCommand(large);
    EXPECT_EQ(twin.status, 0) << twin.log;
    EXPECT_TRUE(twin.png == fromText.png);
}
