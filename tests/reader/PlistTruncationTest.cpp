#include "support/PlistTestSupport.h"
#include "reader/VLPlistNumbers.h"
#include "reader/VLPlistParser.h"
#include "reader/VLPlistSkippers.h"
#include "reader/VLPlistTypedReaders.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace {

// Something of every token the scanner knows, the way a font document uses them.
// The skippers pass no comments inside a value, so they stand in front.
const std::string document = R"(// a line comment
/* a block
   comment */ {
.appVersion = "3260";
familyName = "Sample \"Sans\" \U00e4\101\377";
date = "2024-01-02 03:04:05 +0000";
glyphs = (
{
glyphname = A.alt;
color = (255, 0, 0, 51);
layers = (
{
layerId = "m01";
width = 600.5;
position = "{12, -3.5}";
anchor = (250, 700);
transform = "{1, 0, 0, 1, 10, -20}";
data = <0a1B ff>;
visible = YES;
stems = (1, -2.5, 3e-2, );
}
);
}
);
unicodes = 0041;
}
)";

// Runs everything that reads from `curr` at each of the last few positions, where a reader
// that trusted the text would run past the end.
void readTheTail(VLPlistParseInfo& info)
{
    const uint8_t* const end = info.end;
    const uint8_t* first = end - std::min<ptrdiff_t>(end - info.begin, 24);
    double numbers[10];
    double transform[6];
    auto ignore = [](double) {};
    for (const uint8_t* p = first; p <= end; ++p) {
        const auto readers = {
            +[](VLPlistParseInfo* i) { parsePlistValue(i, true); },
            +[](VLPlistParseInfo* i) { parsePlistStringValue(i); },
            +[](VLPlistParseInfo* i) { parsePlistDoubleValue(i); },
            +[](VLPlistParseInfo* i) { parsePlistBoolValue(i); },
            +[](VLPlistParseInfo* i) { parsePlistPoint(i); },
            +[](VLPlistParseInfo* i) { parsePlistColor(i); },
            +[](VLPlistParseInfo* i) { matchPlistKey(i, "glyphname", 9); },
            +[](VLPlistParseInfo* i) { skipPlistValue(i); },
            +[](VLPlistParseInfo* i) { skipPlistKey(i); },
            +[](VLPlistParseInfo* i) { skipPlistStringValue(i); },
            +[](VLPlistParseInfo* i) { skipPlistDictContent(i); },
            +[](VLPlistParseInfo* i) { skipPlistArrayContent(i); },
            +[](VLPlistParseInfo* i) { parseQuotedPlistString(i, '"'); },
            +[](VLPlistParseInfo* i) { skipPlistQuotedString(i); },
        };
        for (auto read : readers) {
            info.curr = p;
            read(&info);
        }
        info.curr = p;
        parsePlistTransform(&info, transform);
        info.curr = p;
        parsePlistNumberList(&info, ignore);
        size_t index = 0;
        int count = 10;
        parseDoubleTupleAt(p, &index, numbers, &count);
        parseDoubleAt(p, nullptr);
        parseIntegerAt(p, nullptr);
        for (bool quoted : {false, true}) {
            info.curr = p;
            info.inQuotedString = quoted;
            parsePlistValue(&info, true);
        }
        info.inQuotedString = false;
    }
}

// A whole document reads only when it is whole.
void readAll(VLPlistParseInfo& info, bool whole)
{
    EXPECT_EQ(!parsePlistDict(&info).isNull(), whole);
    info.curr = info.begin;
    EXPECT_EQ(skipPlistDict(&info), whole);
    readTheTail(info);
}

} // namespace

TEST(PlistTruncation, EveryPrefixOfADocumentFailsSafely)
{
    ASSERT_TRUE(ScannedText(document).info.error == std::nullopt);
    {
        ScannedText whole(document);
        EXPECT_EQ(parsePlistDict(whole.get())["glyphs"][0]["layers"][0]["stems"].count(), 3u);
    }
    for (size_t length = 0; length <= document.size(); ++length) {
        SCOPED_TRACE(length);
        ScannedText scanned(std::string_view(document).substr(0, length));
        readAll(scanned.info, length >= document.size() - 1);
    }
}

TEST(PlistTruncation, EveryPrefixAsAFile)
{
    for (size_t length = 3; length <= document.size(); ++length) {
        SCOPED_TRACE(length);
        TemporaryFile file(std::string_view(document).substr(0, length));
        VLPlistParseInfo info;
        ASSERT_TRUE(openPlistParseInfo(file.path.c_str(), &info));
        readAll(info, length >= document.size() - 1);
        closePlistParseInfo(&info);
    }
}

TEST(PlistTruncation, AFileOfWholePagesEndingInsideATokenIsFollowedByZeros)
{
    const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    // A copied file and a mapped one.
    for (size_t size : {page, VLPlistLargestCopiedFile + page}) {
        for (std::string tail : {"width = 12345", "name = \"abc\\", "data = <0a1", "/", "p = \"{1, 2", "x = \xE2\x80",
                                 "list = (1, 2", "t = \"{1, 0, 0, 1, 1", "key"}) {
            SCOPED_TRACE(tail);
            std::string text = "{ ";
            text += std::string(size - text.size() - tail.size(), ' ') + tail;
            ASSERT_EQ(text.size(), size);
            TemporaryFile file(text);
            VLPlistParseInfo info;
            ASSERT_TRUE(openPlistParseInfo(file.path.c_str(), &info));
            for (size_t i = 0; i < VLPlistZeroPadding; ++i) ASSERT_EQ(info.end[i], 0) << "padding byte " << i;
            readAll(info, false);
            closePlistParseInfo(&info);
        }
    }
}
