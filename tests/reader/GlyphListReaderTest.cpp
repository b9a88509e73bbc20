#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "reader/VLGlyphListReader.h"
#include "reader/VLPlistRecords.h"
#include "support/PlistTestSupport.h"

#include <gtest/gtest.h>

namespace {

using Glyphs = std::vector<std::shared_ptr<VLGlyph>>;

// Glyph records whose strings hold what a guess for the start of a record looks for: a record's
// start after a comma, braces, quotes, escaped quotes and escaped backslashes.
std::string glyphList()
{
    std::string text = "(\n";
    for (int i = 0; i < 12; ++i) {
        if (i > 0) text += ",\n";
        std::string name = "g" + std::to_string(i);
        text += "{\nglyphname = " + name + ";\nlayers = (\n{\nlayerId = m01;\nname = \"{(\\\"x\\\"),\";\nwidth = " +
                std::to_string(100 + i) + ";\n}\n);\n";
        if (i % 3 == 1) text += "note = \"a\n},\n{\nglyphname = fake;\n\\\"\n},\n{\nglyphname = fake2\";\n";
        if (i % 3 == 2) text += "note = \"\\\\\";\nsubCategory = \",\n{\nglyphname\";\n";
        text += "unicode = " + std::to_string(65 + i) + ";\n}";
    }
    return text + "\n);\nkerning = {\n};\n";
}

// What a read gave: where it left `curr`, and the glyphs with their layers, or the error.
std::string outcome(ScannedText& text, const std::optional<Glyphs>& glyphs, bool withLayers)
{
    std::string at = std::to_string(text.offset());
    if (!glyphs) return "failed at " + at + ": " + text.reason() + " / " + text.message();
    std::string result = "read to " + at + ":\n";
    auto font = std::make_shared<VLFont>();
    font->setGlyphs(*glyphs);
    for (const auto& glyph : *glyphs) {
        result += glyph->name() + " #" + std::to_string(glyph->glyphId()) + " " + glyph->unicode();
        if (withLayers && glyph->readLayersFormat(3))
            for (const auto& layer : glyph->layers().allValues())
                result += " " + layer->layerId() + ":" + std::to_string(layer->width());
        result += "\n";
    }
    return result;
}

std::string readWithOneThread(const std::string& bytes, bool withLayers)
{
    ScannedText text(bytes);
    auto glyphs = readPlistObjects<VLGlyph>(text.get(), 3);
    return outcome(text, glyphs, withLayers);
}

std::string readGuessingAt(const std::string& bytes, size_t guess, bool withLayers, bool& split)
{
    ScannedText text(bytes);
    auto glyphs = readGlyphListGuessingAt(text.get(), 3, text->begin + guess, &split);
    return outcome(text, glyphs, withLayers);
}

} // namespace

TEST(GlyphListReader, TwoThreadsReadWhatOneReadsWhereverTheGuessFalls)
{
    std::string bytes = glyphList();
    std::string expected = readWithOneThread(bytes, true);
    ASSERT_NE(expected.find("g11 #"), std::string::npos) << expected;
    ASSERT_EQ(expected.find("fake"), std::string::npos);
    size_t splits = 0;
    for (size_t guess = 0; guess <= bytes.size() + 1; ++guess) {
        bool split = false;
        ASSERT_EQ(readGuessingAt(bytes, guess, true, split), expected) << "guess at " << guess;
        splits += split;
    }
    // Each record but the first is found from the bytes before it, unless a string that looks like
    // a record comes first.
    EXPECT_GT(splits, bytes.size() / 3);
}

TEST(GlyphListReader, AnErrorInEitherPartIsTheOneThreadsError)
{
    std::string bytes = glyphList();
    // Just before a record in the middle, so that the second thread starts there.
    const size_t guess = bytes.find("{\nglyphname = g6;") - 1;
    size_t splitsWithErrors = 0;
    auto compare = [&](const std::string& damaged, const std::string& what) {
        bool split = false;
        std::string expected = readWithOneThread(damaged, false);
        ASSERT_EQ(readGuessingAt(damaged, guess, false, split), expected) << what;
        splitsWithErrors += split && expected.starts_with("failed");
    };
    for (size_t cut = 0; cut < bytes.size(); ++cut) compare(bytes.substr(0, cut), "cut at " + std::to_string(cut));
    for (size_t at = 0; at < bytes.size(); ++at) {
        for (char c : {'"', '}', ',', '\\', '\0'}) {
            std::string damaged = bytes;
            damaged[at] = c;
            compare(damaged, std::string("byte ") + std::to_string(at) + " made " + c);
        }
    }
    EXPECT_GT(splitsWithErrors, 100u) << "errors met by the second thread";

    // A bound on records is one counter: one thread reads up to it, and fails at the same glyph.
    for (uint64_t bound : {uint64_t{4}, uint64_t{8}, uint64_t{40}}) {
        uint64_t oneLeft = bound, twoLeft = bound;
        ScannedText one(bytes), two(bytes);
        one->recordsLeft = &oneLeft;
        two->recordsLeft = &twoLeft;
        bool split = true;
        std::string expected = outcome(one, readPlistObjects<VLGlyph>(one.get(), 3), false);
        EXPECT_EQ(outcome(two, readGlyphListGuessingAt(two.get(), 3, two->begin + guess, &split), false), expected);
        EXPECT_FALSE(split) << "bound " << bound;
        EXPECT_EQ(twoLeft, oneLeft);
    }
}

TEST(GlyphListReader, ListsOfOtherShapesAreReadByOneThread)
{
    for (std::string bytes : {"(\n)", "x", "(\n{\nglyphname = a;\n}\n)", "(\n{\nglyphname = a;\n},\n{\nglyphname = b;\n})"}) {
        bool split = true;
        std::string got = readGuessingAt(bytes, 0, false, split);
        EXPECT_EQ(got, readWithOneThread(bytes, false)) << bytes;
        EXPECT_EQ(split, bytes.ends_with("})")) << bytes;
        ScannedText text(bytes);
        readGlyphListGuessingAt(text.get(), 3, nullptr, &split);
        EXPECT_FALSE(split) << "no guess, no second thread: " << bytes;
    }
}
