#include "support/PlistTestSupport.h"
#include "reader/VLPlistParser.h"
#include "reader/VLPlistSkippers.h"

#include <gtest/gtest.h>

#include <utility>

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
