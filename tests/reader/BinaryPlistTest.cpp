#include "reader/VLBinaryPlistGuard.h"
#include "reader/VLPropertyListFile.h"
#include "support/PlistWriting.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

std::string bigEndian(uint64_t value, int width)
{
    std::string bytes;
    for (int i = width - 1; i >= 0; --i) bytes += static_cast<char>(value >> (8 * i) & 0xFF);
    return bytes;
}

// Writes the binary form object by object, with 4-byte offsets and references.
struct BinaryPlist {
    std::string objects;
    std::vector<uint64_t> offsets;

    uint64_t add(uint8_t type, uint64_t count, const std::string& contents)
    {
        offsets.push_back(8 + objects.size());
        objects += static_cast<char>(type << 4 | 0x0F);
        objects += '\x12' + bigEndian(count, 4) + contents;
        return offsets.size() - 1;
    }
    uint64_t ascii(const std::string& text) { return add(0x5, text.size(), text); }
    uint64_t utf16(const std::u16string& text)
    {
        std::string units;
        for (char16_t unit : text) units += bigEndian(unit, 2);
        return add(0x6, text.size(), units);
    }
    uint64_t array(const std::vector<uint64_t>& items)
    {
        std::string references;
        for (uint64_t item : items) references += bigEndian(item, 4);
        return add(0xA, items.size(), references);
    }
    // Entries as key, value, key, value...
    uint64_t dictionary(const std::vector<uint64_t>& entries)
    {
        std::string keys, values;
        for (size_t i = 0; i < entries.size(); ++i) (i % 2 ? values : keys) += bigEndian(entries[i], 4);
        return add(0xD, entries.size() / 2, keys + values);
    }

    std::string bytes(uint64_t top) const
    {
        std::string table;
        for (uint64_t offset : offsets) table += bigEndian(offset, 4);
        std::string trailer = std::string(6, '\0') + '\x04' + '\x04' + bigEndian(offsets.size(), 8) +
                              bigEndian(top, 8) + bigEndian(8 + objects.size(), 8);
        return "bplist00" + objects + table + trailer;
    }
};

} // namespace

TEST(BinaryPlist, DocumentsPassAndEveryTruncationEndsQuietly)
{
    BinaryPlist plist;
    uint64_t name = plist.ascii("glyphname");
    uint64_t a = plist.ascii("A");
    uint64_t accented = plist.utf16(u"\u00C9");
    uint64_t glyphs = plist.array({plist.dictionary({name, a}), plist.dictionary({name, accented})});
    std::string bytes = plist.bytes(plist.dictionary({plist.ascii("glyphs"), glyphs}));
    ASSERT_TRUE(binaryPlistIsSafe(bytes));
    auto root = parseBinaryOrXMLPropertyList(bytes);
    ASSERT_TRUE(root && root->isDictionary());
    const Value& list = root->dictionary().at("glyphs");
    ASSERT_EQ(list.count(), 2u);
    EXPECT_EQ(list.array()[1].dictionary().at("glyphname").string(), "\u00C9");

    for (size_t size = 0; size < bytes.size(); ++size) parseBinaryOrXMLPropertyList(bytes.substr(0, size));
    EXPECT_TRUE(binaryPlistIsSafe("<?xml version=\"1.0\"?>")) << "other forms are not this guard's";
}

TEST(BinaryPlist, HostileReferencesAreRefused)
{
    {
        // Twenty thousand references to one string of 100,000 bytes: 2 GB once every one is a copy.
        BinaryPlist bomb;
        uint64_t text = bomb.ascii(std::string(100000, 'a'));
        EXPECT_FALSE(binaryPlistIsSafe(bomb.bytes(bomb.array(std::vector<uint64_t>(20000, text)))));
    }
    {
        BinaryPlist chain;
        for (uint64_t i = 1; i <= 100000; ++i) chain.array({i});
        chain.ascii("end");
        EXPECT_FALSE(binaryPlistIsSafe(chain.bytes(0))) << "deeper than any document";
        EXPECT_FALSE(parseBinaryOrXMLPropertyList(chain.bytes(0)));
    }
    {
        BinaryPlist cycle;
        cycle.array({1});
        cycle.array({0});
        EXPECT_FALSE(binaryPlistIsSafe(cycle.bytes(0)));
    }
    {
        // libplist aborts on a string with U+0000, as a key and, where fuzzing found it, as a value.
        BinaryPlist nul;
        uint64_t text = nul.utf16(std::u16string(u"a\0b", 3));
        uint64_t other = nul.ascii("x");
        EXPECT_FALSE(binaryPlistIsSafe(nul.bytes(nul.dictionary({text, other}))));
        EXPECT_FALSE(parseBinaryOrXMLPropertyList(nul.bytes(nul.dictionary({other, text}))));
    }
    {
        BinaryPlist outside;
        outside.array({7});
        EXPECT_FALSE(binaryPlistIsSafe(outside.bytes(0))) << "a reference past the objects";
        EXPECT_FALSE(binaryPlistIsSafe(outside.bytes(3))) << "a top object past the objects";
    }
}

TEST(BinaryPlist, LongArraysReadInLinearTime)
{
    // libplist's lookup by index walks the array from its start: 100,000 items took minutes.
    BinaryPlist plist;
    std::vector<uint64_t> items;
    for (int i = 0; i < 100000; ++i) items.push_back(plist.ascii(std::to_string(i)));
    auto root = parseBinaryOrXMLPropertyList(plist.bytes(plist.array(items)));
    ASSERT_TRUE(root && root->isArray());
    ASSERT_EQ(root->count(), 100000u);
    EXPECT_EQ(root->array()[0].string(), "0");
    EXPECT_EQ(root->array()[99999].string(), "99999");
}

TEST(BinaryPlist, DocumentsBeyondTheirLargestSizeAreNotRead)
{
    // One string fills the file: the tree stays one node, so only the size can refuse it.
    auto fileOfString = [](size_t length) {
        return propertyListOfValue(Value(std::string(length, 'x')), true);
    };
    std::string within = fileOfString(VLPropertyListLargestBinaryDocument - 64);
    ASSERT_LE(within.size(), VLPropertyListLargestBinaryDocument);
    EXPECT_TRUE(parseBinaryOrXMLPropertyList(within));
    std::string beyond = fileOfString(VLPropertyListLargestBinaryDocument);
    EXPECT_FALSE(parseBinaryOrXMLPropertyList(beyond));
}
