#include "support/PlistTestSupport.h"
#include "reader/VLPlistLexical.h"
#include "reader/VLPlistParser.h"

#include <gtest/gtest.h>

namespace {

Value parse(std::string_view text)
{
    ScannedText scanned(text);
    return parsePlistValue(scanned.get(), true);
}

Value dict(std::initializer_list<std::pair<const std::string, Value>> entries)
{
    return Value(ValueDictionary(entries));
}

} // namespace

TEST(PlistParser, SpaceAndCommentsMayStandBetweenAnyTokens)
{
    Value expected = dict({{"a", Value(1)}, {"b", Value(ValueArray{Value("x"), Value(2)})}});
    for (const char* text : {
             "{a=1;b=(x,2);}",
             "{ a = 1; b = ( x , 2 ); }",
             "// head\n{/*1*/a /*2*/=/*3*/1 /*4*/;// tail\r b\t=\v(\fx //\n,/**/2)\n;}",
         }) {
        ScannedText scanned(text);
        EXPECT_EQ(parsePlistDict(scanned.get()), expected) << text;
        EXPECT_FALSE(scanned->error) << text;
        EXPECT_EQ(scanned.offset(), std::string_view(text).size()) << text;
    }
    // Inside an unquoted run "/" is a character, not a comment.
    EXPECT_EQ(parse("{ path = a/b//c; }"), dict({{"path", Value("a/b//c")}}));
    // Line and paragraph separators are not space; an unrelated pattern two bytes on is.
    ScannedText separator("\xE2\x80\xA8x");
    EXPECT_TRUE(skipPlistSpace(separator.get()));
    EXPECT_EQ(separator.offset(), 0u);
    ScannedText odd("\xE2" "?\x80\xA8x");
    EXPECT_TRUE(skipPlistSpace(odd.get()));
    EXPECT_EQ(odd.offset(), 3u);
    // An open comment runs to the end; a "/" as the last byte is a token.
    ScannedText open("  /* open");
    EXPECT_FALSE(skipPlistSpace(open.get()));
    EXPECT_FALSE(open->error);
    ScannedText slash(" /");
    EXPECT_TRUE(skipPlistSpace(slash.get()));
    EXPECT_EQ(slash.offset(), 1u);
}

TEST(PlistParser, DictionaryEntriesAndArrays)
{
    // A key alone maps to itself, and a later key replaces an earlier one.
    EXPECT_EQ(parse("{ x; y = 1; y = 2; }"), dict({{"x", Value("x")}, {"y", Value(2)}}));
    // Keys that look like numbers stay strings; values become numbers.
    Value numeric = parse("{ 1 = 2; }");
    EXPECT_TRUE(numeric["1"].isInteger());
    EXPECT_EQ(numeric["1"].integerValue(), 2);
    EXPECT_EQ(parse("(1, 2, )"), Value(ValueArray{Value(1), Value(2)}));
    EXPECT_EQ(parse("()"), Value(ValueArray{}));
    EXPECT_EQ(parse("{}"), dict({}));
    EXPECT_EQ(parse("{ 'single' = (\"double\"); }"), dict({{"single", Value(ValueArray{Value("double")})}}));
    // With the option off, a number key is stored by its text.
    ScannedText loose("{ 1.50 = a; }");
    loose->forceStringKeys = false;
    EXPECT_EQ(parsePlistDict(loose.get()), dict({{"1.5", Value("a")}}));
}

TEST(PlistParser, UnquotedRunsBecomeIntegersRealsOrStrings)
{
    Value values = parse("(007, 1.0, 2.0005, -0.0004, ., -, 3000000000, 1.5, 1.9995, 1.2.3, 1e5, 1-2, abc)");
    ASSERT_EQ(values.count(), 13u);
    const int64_t integers[] = {7, 1, 2, 0, 0, 0, 2147483647};
    for (size_t i = 0; i < 7; ++i) {
        EXPECT_TRUE(values[i].isInteger()) << i;
        EXPECT_EQ(values[i].integerValue(), integers[i]) << i;
    }
    const double reals[] = {1.5, 1.9995, 12.3};
    for (size_t i = 0; i < 3; ++i) {
        EXPECT_TRUE(values[7 + i].isReal()) << i;
        EXPECT_DOUBLE_EQ(values[7 + i].doubleValue(), reals[i]) << i;
    }
    EXPECT_EQ(values[10], Value("1e5"));
    EXPECT_EQ(values[11], Value("1-2"));
    EXPECT_EQ(values[12], Value("abc"));
}

TEST(PlistParser, QuotedStringsAndEscapes)
{
    const std::pair<const char*, std::string> cases[] = {
        {R"("\n")", "\n"},
        {R"("\101\1a")", "A\x01" "a"},
        {R"("\U00e4\U41\Uzz")", std::string("\xC3\xA4" "A\0zz", 6)},
        {R"("\377")", "\xC3\xBF"},
        {R"("\a\b\f\r\t\v\"\\\q")", "\a\b\f\r\t\v\"\\q"},
        {"\"\\\n\"", "\n"},
        {R"('say "hi"')", "say \"hi\""},
        {"\"\xC3\xA4 stays\"", "\xC3\xA4 stays"},
        {"\"\\\xE4\"", "\xC3\xA4"},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(parse(text), Value(expected)) << text;

    // Inside another string every quote and backslash carries one more backslash.
    ScannedText nested(R"(\"a\\\"b\" \"\")");
    nested->inQuotedString = true;
    EXPECT_EQ(parsePlistValue(nested.get(), true), Value("a\"b"));
    EXPECT_EQ(parsePlistValue(nested.get(), true), Value(""));
    EXPECT_EQ(nested.offset(), nested->end - nested->begin);
}

TEST(PlistParser, Data)
{
    EXPECT_EQ(parse("<0a 1B>"), Value(ValueData{0x0a, 0x1b}));
    EXPECT_EQ(parse("<\n\t0A1b\r >"), Value(ValueData{0x0a, 0x1b}));
    EXPECT_EQ(parse("<>"), Value(ValueData{}));
    ValueData large(1000);
    std::string hex = "<";
    for (size_t i = 0; i < large.size(); ++i) {
        large[i] = static_cast<uint8_t>(i * 7);
        hex += "0123456789abcdef"[large[i] >> 4];
        hex += "0123456789abcdef"[large[i] & 15];
    }
    EXPECT_EQ(parse(hex + ">"), Value(large));
}

TEST(PlistParser, ErrorsNameTheProblemAndTheLine)
{
    struct Case {
        const char* text;
        const char* message;
        int line;
    };
    const Case cases[] = {
        {"{\n a = \"open;\n}", "Unterminated quoted string", 2},
        {"{ a = \"\\Ud800\"; }", "Could not convert string to internal representation", 1},
        {"abc", "Unexpected EOF", 1},
        {"{ a =\n\n", "Unexpected EOF while parsing plist", 3},
        {"{\na = ;}", "Unexpected character “0x3b”", 2},
        {"{ a ", "Missing ';'", 1},
        {"{ a = 1\n}", "Missing ';'", 2},
        {"{ a ! 1; }", "Expect ';' or '=' after key", 1},
        {"{ a = 1;\n", "Expected terminating '}' for dictionary", 2},
        {"{ a = 1; ) }", "Expected terminating '}' for dictionary", 1},
        {"( 1 ", "Expected ',' for array", 1},
        {"(1,", "Expected terminating ')' for array", 1},
        {"(1\n2)", "Expected terminating ')' for array", 2},
        {"<0>", "Malformed data byte group: uneven length", 1},
        {"<0 a>", "Malformed data byte group: uneven length", 1},
        {"<0g>", "Malformed data byte group: uneven length", 1},
        {"<\ng0>", "Malformed data byte group: invalid hex", 2},
        {"<0a\xE2\x80\xA8>", "Malformed data byte group: invalid hex", 1},
        {"<0a", "Expected terminating '>' for data", 1},
        {"\n\n\n;", "Unexpected character “0x3b”", 4},
    };
    for (const Case& c : cases) {
        ScannedText scanned(c.text);
        EXPECT_TRUE(parsePlistValue(scanned.get(), true).isNull()) << c.text;
        EXPECT_EQ(scanned.message(), c.message) << c.text;
        EXPECT_EQ(scanned.reason(), "Problem with file at line " + std::to_string(c.line)) << c.text;
    }

    ScannedText array("{ a = 1; }");
    EXPECT_TRUE(parsePlistArray(array.get()).isNull());
    EXPECT_EQ(array.message(), "Unexpected character “0x7b” (expected “(”)");
    ScannedText dictionary("  (1)");
    EXPECT_TRUE(parsePlistDict(dictionary.get()).isNull());
    EXPECT_EQ(dictionary.message(), "Unexpected character “0x28” (expected “{”)");
}

TEST(PlistParser, EndOfInputIsOnlyAnErrorWhereAValueIsRequired)
{
    for (const char* text : {"", "  // nothing\n"}) {
        ScannedText scanned(text);
        EXPECT_TRUE(parsePlistDict(scanned.get()).isNull());
        EXPECT_TRUE(parsePlistArray(scanned.get()).isNull());
        EXPECT_TRUE(parsePlistValue(scanned.get(), false).isNull());
        EXPECT_FALSE(scanned->error) << text;
    }
    ScannedText wrong(";");
    EXPECT_TRUE(parsePlistValue(wrong.get(), false).isNull());
    EXPECT_FALSE(wrong->error);
}

TEST(PlistParser, StaleErrorsClearOnSuccessExceptBehindAnArray)
{
    ScannedText quoted("\"a\" {} (\"b\")");
    quoted->error = makePlistFileError(1, "stale");
    EXPECT_EQ(parsePlistValue(quoted.get(), true), Value("a"));
    EXPECT_FALSE(quoted->error);

    // Unquoted values do not clear it, so the array that holds them fails on it.
    ScannedText unquoted("(a, b)");
    unquoted->error = makePlistFileError(1, "stale");
    EXPECT_TRUE(parsePlistValue(unquoted.get(), true).isNull());
    EXPECT_EQ(unquoted.message(), "stale");

    // A failed key is reported as the dictionary's missing brace.
    ScannedText key("{ \"open }");
    EXPECT_TRUE(parsePlistDict(key.get()).isNull());
    EXPECT_EQ(key.message(), "Expected terminating '}' for dictionary");
}

TEST(PlistParser, MutableDictRestoresTheOption)
{
    ScannedText scanned("{ a = \"x\\ty\"; }");
    scanned->mutabilityOption = 0;
    EXPECT_EQ(parsePlistMutableDict(scanned.get()), dict({{"a", Value("x\ty")}}));
    EXPECT_EQ(scanned->mutabilityOption, 0u);
}
