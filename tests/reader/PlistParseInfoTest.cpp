#include "support/PlistTestSupport.h"
#include "platform/VLException.h"
#include "reader/VLPlistParser.h"

#include <gtest/gtest.h>

namespace {

std::string suggestion(const VLError& error)
{
    return error.userInfo.at(VLError::localizedRecoverySuggestionKey);
}

} // namespace

TEST(PlistParseInfo, OpeningFailuresAreFileErrorsNamingTheFile)
{
    VLPlistParseInfo info;
    EXPECT_FALSE(openPlistParseInfo("/nonexistent/dir/missing.glyphs", &info));
    ASSERT_TRUE(info.error);
    EXPECT_EQ(info.error->domain, "CFErrorDomain");
    EXPECT_EQ(info.error->code, 3842);
    EXPECT_EQ(suggestion(*info.error), "Couldn’t open file: missing.glyphs (No such file or directory)");
    EXPECT_EQ(info.begin, nullptr);

    TemporaryFile tiny("{}");
    EXPECT_FALSE(openPlistParseInfo(tiny.path.c_str(), &info));
    ASSERT_TRUE(info.error);
    EXPECT_EQ(info.error->code, 3842);
    std::string name = tiny.path.substr(tiny.path.rfind('/') + 1);
    EXPECT_EQ(suggestion(*info.error), "File is too small: " + name);
    EXPECT_EQ(info.error->userInfo.count(VLError::localizedFailureReasonKey), 0u);

    EXPECT_FALSE(openPlistParseInfo("/tmp/", &info));
    EXPECT_EQ(info.error->code, 3842);
    EXPECT_EQ(suggestion(*info.error), "Couldn’t open file: tmp (Is a directory)");
    EXPECT_FALSE(openPlistParseInfo("/dev/null", &info));
    EXPECT_EQ(suggestion(*info.error), "Couldn’t open file: null (No such device)") << "not a regular file";
}

TEST(PlistParseInfo, OpensAFileInItsInitialState)
{
    TemporaryFile file("{a=1;}");
    VLPlistParseInfo info;
    ASSERT_TRUE(openPlistParseInfo(file.path.c_str(), &info));
    EXPECT_EQ(info.curr, info.begin);
    EXPECT_EQ(info.end - info.begin, 6);
    EXPECT_FALSE(info.inQuotedString);
    EXPECT_TRUE(info.forceStringKeys);
    EXPECT_FALSE(info.error);
    EXPECT_EQ(info.mutabilityOption, 0u);
    EXPECT_EQ(info.fileName, nullptr);
    EXPECT_EQ(parsePlistDict(&info)["a"], Value(1));
    closePlistParseInfo(&info);
    EXPECT_EQ(info.begin, nullptr);
    closePlistParseInfo(&info);
}

TEST(PlistParseInfo, ACopyKeepsTheTextAfterTheOriginalCloses)
{
    ScannedText text("{ glyph = \"A\\n\"; }");
    VLPlistParseInfo copy = text.info;
    closePlistParseInfo(text.get());
    Value dictionary = parsePlistDict(&copy);
    EXPECT_EQ(dictionary["glyph"], Value("A\n"));
    closePlistParseInfo(&copy);
}

TEST(PlistParseInfo, EqualEscapedStringsShareOneBuffer)
{
    ScannedText text(R"(("a\tb", "a\tb", "plain", "plain"))");
    Value array = parsePlistArray(text.get());
    ASSERT_EQ(array.count(), 4u);
    EXPECT_EQ(array[0].sharedString(), array[1].sharedString());
    EXPECT_EQ(text->stringSet->size(), 1u);


    // Without uniquing, and unquoted strings cannot be made at all.
    text->curr = text->begin;
    text->mutabilityOption = 2;
    text->stringSet->clear();
    array = parsePlistArray(text.get());
    EXPECT_NE(array[0].sharedString(), array[1].sharedString());
    EXPECT_TRUE(text->stringSet->empty());
    ScannedText unquoted("(plain)");
    unquoted->mutabilityOption = 2;
    try {
        parsePlistArray(unquoted.get());
        ADD_FAILURE() << "no exception";
    } catch (const VLException& e) {
        EXPECT_EQ(e.name(), "VLNotImplemented");
        EXPECT_EQ(e.reason(), "409 CFTypeRef parseUnquotedPlistString(VLPlistParseInfo *, _Bool)");
    }
}

TEST(PlistParseInfo, ErrorsSayTheLineForEveryLineEnding)
{
    for (std::string ending : {"\n", "\r\n", "\r"}) {
        std::string document = "{";
        for (int line = 2; line < 10; ++line) document += ending + "k" + std::to_string(line) + " = 1;";
        document += ending + "broken = \"open;" + ending + "}";
        ScannedText text(document);
        EXPECT_TRUE(parsePlistDict(text.get()).isNull());
        EXPECT_EQ(text.message(), "Unterminated quoted string");
        EXPECT_EQ(text.reason(), "Problem with file at line 10") << "ending of " << ending.size() << " bytes";
        EXPECT_EQ(text->error->domain, "CFErrorDomain");
        EXPECT_EQ(text->error->code, 3840);
    }
    EXPECT_EQ(plistLineNumber(nullptr, reinterpret_cast<const uint8_t*>("x")), 1);
}

TEST(PlistParseInfo, AFileNameAppearsInTheReason)
{
    ScannedText text("{\n\na = ;}");
    text->fileName = "A.glyph";
    parsePlistDict(text.get());
    EXPECT_EQ(text.message(), "Unexpected character “0x3b”");
    EXPECT_EQ(text.reason(), "Problem with file “A.glyph” at line 3");
}
