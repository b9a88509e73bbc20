#include "support/PlistTestSupport.h"
#include "reader/VLPlistParser.h"
#include "reader/VLPlistSkippers.h"
#include "reader/VLPlistSkippersPath.h"

#include <gtest/gtest.h>

#include <cstring>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

TEST(PlistSkippers, EndWhereTheParserEnds)
{
    for (const char* text : {
             "\"a \\\"quoted\\\" \\\\\";",
             "abc.def;",
             "<00 ff>;",
             "(1, (2, \"x\"), {a = b;}, <0a0b>, );",
             "()",
             "((1,-2,l),(3.5,4,cs),(5,6,o,{name = a;}),(100000,200000,300000,400000,q),(a),(b, c));",
             "{ a = 1; \"b c\" = (x); d; e = \"f\"; }",
             "{}",
         }) {
        ScannedText parsed(text);
        ASSERT_FALSE(parsePlistValue(parsed.get(), true).isNull()) << text;
        ScannedText skipped(text);
        EXPECT_TRUE(skipPlistValue(skipped.get())) << text;
        EXPECT_EQ(skipped.offset(), parsed.offset()) << text;
        EXPECT_FALSE(skipped->error) << text;
    }
    ScannedText dictionary(" // a comment\n { a = (1, 2); b = { c = \"}\"; }; }x");
    EXPECT_TRUE(skipPlistDict(dictionary.get()));
    EXPECT_EQ(*dictionary->curr, 'x');
    ScannedText array("\n( a, b )x");
    EXPECT_TRUE(skipPlistArray(array.get()));
    EXPECT_EQ(*array->curr, 'x');
    ScannedText content(" a = 1; b; } x");
    EXPECT_TRUE(skipPlistDictContent(content.get()));
    EXPECT_EQ(*content->curr, '}');
}

// Tuples of unquoted values take a shorter way; what it accepts must end where the general rules end.
TEST(PlistSkippers, TuplesOfUnquotedValuesFollowTheGeneralRules)
{
    // A value the array doesn't expect is taken for its ")".
    const std::pair<const char*, char> ends[] = {
        {"(1,)x", 'x'}, {"(a b)x", ')'}, {"(1,2\n)x", 'x'}, {"(1,2,3,4,5,6,7,8,9,10,11,12,)x", 'x'}};
    for (const auto& [text, end] : ends) {
        ScannedText tuple(text);
        EXPECT_TRUE(skipPlistValue(tuple.get())) << text;
        EXPECT_EQ(*tuple->curr, end) << text;
    }
    for (const char* text : {"(,1)", "(1,,2)", "(1,2", "(1,\"a)"}) {
        ScannedText tuple(text);
        EXPECT_FALSE(skipPlistValue(tuple.get())) << text;
    }
}

TEST(PlistSkippers, QuotedStringsEndAtADoubleQuoteAfterAnEvenRunOfBackslashes)
{
    ScannedText even("ab\\\\\"x");
    EXPECT_TRUE(skipPlistQuotedString(even.get()));
    EXPECT_EQ(*even->curr, 'x');
    ScannedText odd("ab\\\"x\\\\\\\"y\"z");
    EXPECT_TRUE(skipPlistQuotedString(odd.get()));
    EXPECT_EQ(*odd->curr, 'z');
    for (const char* text : {"ab\\\"", "no end", "'single' only;"}) {
        ScannedText open(text);
        EXPECT_FALSE(skipPlistQuotedString(open.get())) << text;
    }
    ScannedText stale("x\";");
    stale->error = makePlistFileError(1, "stale");
    EXPECT_TRUE(skipPlistQuotedString(stale.get()));
    EXPECT_FALSE(stale->error);
}

TEST(PlistSkippers, KeysAndStringValues)
{
    ScannedText quotedKey(" \"a key\" = 1;");
    EXPECT_TRUE(skipPlistKey(quotedKey.get()));
    EXPECT_EQ(quotedKey.offset(), 8u);
    ScannedText unquotedKey("\n\tkey=1;");
    EXPECT_TRUE(skipPlistKey(unquotedKey.get()));
    EXPECT_EQ(*unquotedKey->curr, '=');
    ScannedText noKey(" = 1;");
    EXPECT_FALSE(skipPlistKey(noKey.get()));

    ScannedText quoted(" \"A\";");
    EXPECT_TRUE(skipPlistStringValue(quoted.get()));
    EXPECT_EQ(*quoted->curr, ';');
    ScannedText unquoted("/* c */ A.alt;");
    EXPECT_TRUE(skipPlistStringValue(unquoted.get()));
    EXPECT_EQ(*unquoted->curr, ';');
    for (const char* text : {"\"A\" ;", ";", ""}) {
        ScannedText wrong(text);
        EXPECT_FALSE(skipPlistStringValue(wrong.get())) << text;
    }
}

TEST(PlistSkippers, FailMostlySilently)
{
    for (const char* text : {"<0a\n0b>", "<0a", "(1, 2", "(1, \"x)", "{ a = 1 }", "{ a = 1; ", "{ a", "{ \"a",
                             "{ a = /* c */ 1; }", "{ a = ; }", "( ; )"}) {
        ScannedText scanned(text);
        EXPECT_FALSE(skipPlistValue(scanned.get())) << text;
        EXPECT_FALSE(scanned->error) << text;
    }
    ScannedText notADict("(1)");
    EXPECT_FALSE(skipPlistDict(notADict.get()));
    ScannedText notAnArray("{}");
    EXPECT_FALSE(skipPlistArray(notAnArray.get()));

    ScannedText wrongByte("{\n a = 1;\n b ! 2; }");
    EXPECT_FALSE(skipPlistDict(wrongByte.get()));
    ASSERT_TRUE(wrongByte->error);
    EXPECT_EQ(wrongByte->error->domain, "CFErrorDomain");
    EXPECT_EQ(wrongByte->error->code, 3840);
    EXPECT_EQ(wrongByte.message(), "Unexpected ';' or '=' after key at line 3");
    EXPECT_EQ(wrongByte.reason(), "");
}

namespace {

std::vector<VLPlistSkipPath> supportedPaths()
{
    std::vector<VLPlistSkipPath> paths;
    for (auto path : {VLPlistSkipPath::scalar, VLPlistSkipPath::sse2, VLPlistSkipPath::avx2, VLPlistSkipPath::avx512})
        if (plistSkipPathSupported(path)) paths.push_back(path);
    return paths;
}

// Restores the skippers' path at the end of a test.
struct SkipPathScope {
    VLPlistSkipPath saved = plistSkipPath();
    ~SkipPathScope() { setPlistSkipPath(saved); }
};

struct SkipOutcome {
    bool skipped;
    size_t offset;
    std::string message;
    bool operator==(const SkipOutcome&) const = default;
};

std::ostream& operator<<(std::ostream& out, const SkipOutcome& o)
{
    return out << (o.skipped ? "skipped to " : "failed at ") << o.offset << " " << o.message;
}

SkipOutcome skipOn(VLPlistSkipPath path, std::string_view text, bool (*skip)(VLPlistParseInfo*), uint32_t depth)
{
    setPlistSkipPath(path);
    ScannedText scanned(text);
    scanned->depth = depth;
    scanned->error = makePlistFileError(1, "stale");
    bool skipped = skip(scanned.get());
    EXPECT_EQ(scanned->depth, depth);
    return {skipped, scanned.offset(), scanned.message()};
}

// Every path ends `skip` over `text` where the scalar path does, with the same result and error.
void expectPathsAgree(std::string_view text, bool (*skip)(VLPlistParseInfo*) = skipPlistValue, uint32_t depth = 0)
{
    SkipPathScope scope;
    SkipOutcome scalar = skipOn(VLPlistSkipPath::scalar, text, skip, depth);
    for (VLPlistSkipPath path : supportedPaths())
        EXPECT_EQ(skipOn(path, text, skip, depth), scalar) << "path " << int(path) << ": " << text;
}

// The structural scan itself, on each path that has one: where it ends the value that opens `text`.
void expectScanEnds(std::string_view text, std::optional<size_t> closing, uint32_t levels = VLPlistMaximumNesting)
{
    SkipPathScope scope;
    ScannedText scanned(text);
    for (VLPlistSkipPath path : supportedPaths()) {
        setPlistSkipPath(path);
        VLPlistStructureScan scan = plistStructureScan();
        if (!scan) continue;
        const uint8_t* found = scan(scanned->begin + 1, scanned->end, text[0] == '{', levels);
        std::optional<size_t> at;
        if (found) at = static_cast<size_t>(found - scanned->begin);
        EXPECT_EQ(at, closing) << "path " << int(path) << ": " << text;
    }
}

// Text of every kind the scan passes itself, long enough to cross several blocks.
const std::string wellFormed =
    "( a, (1,-2.5,l), {name = \"x \\\" y\"; \"quoted key\" = (); data = <00ff>; flag; inner = {};},\n"
    "\t(), \"str\", <0a>, ((((deep)))), {a = (b, c,); d = {e = f;};}, $_.-/:09AZaz,\r\n"
    "\"\\\\\", \"back\\\\\\\"slash\", x )";

} // namespace

TEST(PlistSkippers, StructuralScanPassesWellFormedTextAcrossBlockEdges)
{
    for (size_t shift = 0; shift < 140; ++shift) {
        std::string text = "(" + std::string(shift, ' ') + wellFormed.substr(1) + " rest";
        size_t closing = text.size() - 6;
        expectScanEnds(text, closing);
        expectPathsAgree(text);
        // The same as the content of a dictionary.
        std::string dictionary = "{" + std::string(shift, '\n') + "k = " + wellFormed + ";}x";
        expectScanEnds(dictionary, dictionary.size() - 2);
        expectPathsAgree(dictionary);
    }
    // Runs of unquoted characters and strings longer than a block, and escapes across its edges.
    for (size_t length : {63, 64, 65, 127, 128, 129, 200}) {
        std::string run(length, 'r');
        expectScanEnds("(" + run + "," + run + ")", 2 * length + 2);
        for (size_t backslashes : {1, 2, 3, 4}) {
            std::string string = "\"" + std::string(length, 's') + std::string(backslashes, '\\') + "\"";
            if (backslashes % 2) string += "\"";
            std::string text = "{" + string + " = " + string + ";}";
            expectScanEnds(text, text.size() - 1);
            expectPathsAgree(text);
        }
    }
}

TEST(PlistSkippers, StructuralScanEndsAtTheEndOfTheMapping)
{
    // The closing bracket is the last byte of the text, and the text fills whole pages.
    for (size_t size : {4096, 8192}) {
        std::string text = "(" + std::string(size - 3, ' ') + "a)";
        expectScanEnds(text, size - 1);
        expectPathsAgree(text);
        expectPathsAgree(text.substr(0, size - 1));
        expectPathsAgree(text.substr(0, size - 1) + std::string(1, '\0'));
        std::string open = "{" + std::string(size - 5, '\t') + "a = \"";
        expectPathsAgree(open);
        expectScanEnds(open, std::nullopt);
    }
    // Content that starts behind an opening bracket, also where nothing is left, not even the bracket.
    for (const char* text : {"", "{", "(", "{}"}) {
        expectPathsAgree(text, [](VLPlistParseInfo* info) { return ++info->curr, skipPlistDictContent(info); });
        expectPathsAgree(text, [](VLPlistParseInfo* info) { return ++info->curr, skipPlistArrayContent(info); });
    }
}

TEST(PlistSkippers, StructuralScanLeavesAnythingUnusualToTheScalarPath)
{
    // Text the skippers end somewhere only their own rules know, or fail on.
    for (const char* text : {"(a b)", "(a;)", "(a=b)", "{a}", "{a=b}", "{a=b,}", "{(a)=b;}", "{<00>;}", "( 'x' )",
                             "(\"a\"b)", "(a\"b\")", "(1,,2)", "(,1)", "{;}", "{a==b;}", "{a=(1),}", "({)}", "(\\\"a\\\")",
                             "(a /* c */)", "(a\x0b)", "(\xc3\xa9)", "(1, 2", "{a = 1; ", "(<0a\n0b>)", "(a)", "(\0)"}) {
        std::string_view view(text, std::strlen(text) + (text[1] == 0 ? 2 : 0));
        expectPathsAgree(view);
        bool wellFormed = view == "(a)";
        expectScanEnds(view, wellFormed ? std::optional<size_t>(2) : std::nullopt);
    }
}

TEST(PlistSkippers, PathsAgreeOnEveryByteValue)
{
    for (int c = 0; c < 256; ++c) {
        std::string byte(1, static_cast<char>(c));
        for (const std::string& text : {"(a" + byte + "b, c)", "(" + byte + ")", "{k = " + byte + ";}", "{" + byte + " = v;}",
                                        "(\"" + byte + "\")", "( x," + byte + byte + ")"})
            expectPathsAgree(text);
    }
}

TEST(PlistSkippers, TokensThatMeetAtTheEdgeOfABlockEndAlike)
{
    // The scan starts behind the opening bracket, so the byte at `edge` of the content opens the
    // second block: a run or a string ends on one side, and a string or a run starts on the other.
    for (size_t edge = 62; edge <= 65; ++edge) {
        std::string pad(edge - 1, ' ');
        for (const char* tail : {"a\"b\", c)", "\"a\"b, c)", "\"a\"\"b\")", "a\"b\"c)"})
            expectPathsAgree("(" + pad + tail);
        expectPathsAgree("{" + pad + "k = a\"b\";}");
    }
    // A value that closes on the first byte of a block, with text behind it that no value allows.
    expectScanEnds("(" + std::string(64, ' ') + ") x y", 65);
    expectScanEnds("{" + std::string(64, '\n') + "} x y", 65);
}

TEST(PlistSkippers, PathsAgreeOnEveryOneByteChangeOfWellFormedText)
{
    const std::string sample = "{a = (1,2,{b = \"c\\\"\";},<0f>,); \"d\" = {e;};}";
    for (size_t at = 0; at < sample.size(); ++at) {
        for (char c : std::string("(){},;=\"'<>\\ \n\x0b/a\x80", 19)) {
            std::string changed = sample;
            changed[at] = c;
            for (size_t shift : {0, 30, 61})
                expectPathsAgree(std::string(shift, ' ') + changed);
            expectPathsAgree(changed.substr(1), skipPlistDictContent);
            expectPathsAgree(changed.substr(0, at + 1));
        }
    }
}

TEST(PlistSkippers, NestingNearTheLimitEndsAlikeOnEveryPath)
{
    for (uint32_t levels : {200, 255, 256, 257, 300}) {
        std::string text = std::string(levels, '(') + "a" + std::string(levels, ')');
        for (uint32_t depth : {0u, 1u, 100u})
            expectPathsAgree(text, skipPlistValue, depth);
        std::string dictionaries;
        for (uint32_t i = 0; i < levels; ++i) dictionaries += "{k=";
        dictionaries += "v";
        for (uint32_t i = 0; i < levels; ++i) dictionaries += ";}";
        expectPathsAgree(dictionaries);
    }
    // Within the levels it is given, the scan passes the text whole.
    expectScanEnds("((((a))))", 8, 4);
    expectScanEnds("(((((a)))))", std::nullopt, 4);
}
