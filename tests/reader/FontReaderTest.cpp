#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "support/PlistTestSupport.h"

#include <gtest/gtest.h>

namespace {

struct ReadResult {
    std::shared_ptr<VLFont> font;
    VLError error;
};

ReadResult readDocument(std::string_view text)
{
    TemporaryFile file(text);
    ReadResult result;
    result.font = VLFont::initWithURL_error(file.path, &result.error);
    return result;
}

std::shared_ptr<VLFont> readFont(std::string_view text)
{
    return readDocument(text).font;
}

} // namespace

TEST(FontReader, StorageFormIsSniffedFromTheFirstByteOnly)
{
    VLError error;
    EXPECT_EQ(VLFont::initWithURL_error("/no/such/document.velmor", &error), nullptr);
    EXPECT_TRUE(error.domain.empty());

    auto tooShort = readDocument("{glyphs=();}"); // 12 bytes pass; 8 don't
    EXPECT_NE(tooShort.font, nullptr);
    auto eightBytes = readDocument("{a = 1;}");
    EXPECT_EQ(eightBytes.font, nullptr);
    EXPECT_TRUE(eightBytes.error.domain.empty());

    auto spaced = readDocument(" {\n.formatVersion = 3;\n}");
    EXPECT_EQ(spaced.font, nullptr) << "a space before the brace is not the text form";
    EXPECT_EQ(spaced.error.code, 3840) << "and as another property list it can't be read";

    auto xml = readDocument("<?xml version=\"1.0\"?>\n<plist version=\"1.0\"><dict><key>a</key><integer>1</integer>"
                            "</dict></plist>\n");
    EXPECT_EQ(xml.font, nullptr) << "the other property-list forms are read but not yet made into fonts";
    EXPECT_TRUE(xml.error.domain.empty());
}

TEST(FontReader, FormatVersionRules)
{
    EXPECT_EQ(readFont("{\n.formatVersion = 2;\n}")->formatVersion(), 3);
    EXPECT_EQ(readFont("{\n\".formatVersion\" = 2;\n}")->formatVersion(), 1);
    EXPECT_EQ(readFont("{\n.formatVersion = 259;\n}")->formatVersion(), 3);
    EXPECT_EQ(readFont("{\n.formatVersion = 4;\n}")->formatVersion(), 4);
    EXPECT_EQ(readFont("{\nunitsPerEm = 2048;\n}")->formatVersion(), 1);
    EXPECT_EQ(readFont("{\nunitsPerEm = 2048;\n}")->unitsPerEm(), 2048u);
}

TEST(FontReader, ScalarKeys)
{
    auto font = readFont("{\n.appVersion = \"3151\";\nfamilyName = \"Velmor Sans\";\nversionMajor = -7;\n"
                         "versionMinor = 1000001;\ngridSubDevision = 5;\nkeyboardIncrement = 0;\n"
                         "disablesNiceNames = 1;\n}");
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(font->appVersion(), "3151");
    EXPECT_EQ(font->fontName(), "Velmor Sans");
    EXPECT_EQ(font->versionMajor(), 7u);
    EXPECT_EQ(font->versionMinor(), 1u);
    EXPECT_EQ(font->gridSubDivision(), 5u);
    EXPECT_EQ(font->keyboardIncrement(), 1.0);
    EXPECT_TRUE(font->disablesNiceNames());
    EXPECT_EQ(readFont("{\nversionMajor = 1000000;\n}")->versionMajor(), 1000000u);
    EXPECT_EQ(readFont("{\ndisablesNiceNames = 9223372036854775807;\n}"), nullptr);
}

TEST(FontReader, SettingsAndUnknownKeys)
{
    auto font = readFont("{\nsettings = {\nsnapToObjects = 1;\nfontType = variable;\nkeyboardIncrementBig = 0.1;\n"
                         "gridLength = 4;\n};\n}");
    ASSERT_NE(font, nullptr);
    EXPECT_TRUE(font->snapToObjects());
    EXPECT_FALSE(font->previewRemoveOverlap()) << "the streaming route starts with editor flags off";
    EXPECT_EQ(font->fontType(), VLFont::FontTypeVariable);
    EXPECT_EQ(font->keyboardIncrementBig(), static_cast<double>(0.1f));
    EXPECT_EQ(font->gridMain(), 4u);

    auto unknown = readDocument("{\nsnapToObjects = 1;\n}");
    EXPECT_EQ(unknown.font, nullptr) << "a settings key is unknown at the font level";
    EXPECT_TRUE(unknown.error.domain.empty());
}

TEST(FontReader, UnneededValuesAreSkipped)
{
    auto font = readFont("{\nclasses = (\n{\ncode = \"a b c\";\nname = Uppercase;\n}\n);\n"
                         "kerningLTR = {\nm01 = {\nA = {\nV = -40;\n};\n};\n};\nnote = \"a (note)\";\n"
                         "date = \"2024-01-01 10:00:00 +0000\";\nunitsPerEm = 500;\n}");
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(font->unitsPerEm(), 500u);
}

TEST(FontReader, EndOfTheDocument)
{
    EXPECT_EQ(readFont("{\nunitsPerEm = 500;"), nullptr) << "ends behind a ';' without '}'";
    auto unclosed = readFont("{\nunitsPerEm = 500\n");
    ASSERT_NE(unclosed, nullptr) << "ends behind a value without ';'";
    EXPECT_EQ(unclosed->unitsPerEm(), 500u);
}

TEST(FontReader, SyntaxErrorsNameTheirLineWhateverTheLineEndings)
{
    for (const char* newline : {"\n", "\r\n", "\r"}) {
        std::string text = "{";
        for (int line = 2; line < 10; ++line) text += std::string(newline) + "unitsPerEm = 1000;";
        text += std::string(newline) + "glyphs = (\n{ glyphname = A; ]\n);";
        auto result = readDocument(text);
        EXPECT_EQ(result.font, nullptr);
        EXPECT_EQ(result.error.domain, "CFErrorDomain");
        EXPECT_EQ(result.error.code, 3840);
        EXPECT_NE(result.error.localizedDescription().find("at line 11"), std::string::npos)
            << result.error.localizedDescription();
    }
}

TEST(FontReader, EveryPrefixOfADocumentEndsCleanly)
{
    const std::string document = "{\n.appVersion = \"3151\";\n.formatVersion = 3;\nfamilyName = \"Velmor \\\"Sans\\\"\";\n"
                                 "settings = {\ngridLength = 2;\n};\nglyphs = (\n{\nglyphname = A;\nlayers = (\n{\n"
                                 "layerId = m01;\nwidth = 600;\n}\n);\nunicode = 65;\n}\n);\nunitsPerEm = 1000;\n}\n";
    const size_t glyphsOpen = document.find("glyphs = (") + std::string("glyphs = (").size();
    const size_t glyphsClosed = document.find(");\nunitsPerEm") + 1;
    for (size_t length = 0; length <= document.size(); ++length) {
        VLError error;
        TemporaryFile file(std::string_view(document).substr(0, length));
        auto font = VLFont::initWithURL_error(file.path, &error);
        if (!font && !error.domain.empty()) {
            EXPECT_EQ(error.domain, "CFErrorDomain") << length;
            EXPECT_EQ(error.code, 3840) << length;
        }
        if (length > glyphsOpen && length < glyphsClosed) {
            EXPECT_EQ(font, nullptr) << "a glyph list cut at " << length;
        }
        if (length < glyphsClosed || !font) continue;
        // Once the glyph list is whole, what stands before it was read, and the layers too.
        EXPECT_EQ(font->gridMain(), 2u) << length;
        auto glyph = font->glyphForName("A");
        ASSERT_NE(glyph, nullptr) << length;
        EXPECT_EQ(glyph->maxWidth(), 600) << length;
    }
    EXPECT_NE(readFont(document), nullptr);
}
