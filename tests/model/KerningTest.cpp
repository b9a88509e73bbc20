#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "platform/VLException.h"
#include "platform/VLUnsetValue.h"
#include "reader/VLPlistParser.h"
#include "support/PlistTestSupport.h"

#include <gtest/gtest.h>

namespace {

// Two masters, the second linked to the first through a parameter unless `linked` is false.
std::shared_ptr<VLFont> kernedFont(bool linked)
{
    std::string link = linked ? "customParameters = ({name = \"Link Metrics With First Master\"; value = 1;});" : "";
    std::string text = "{.formatVersion = 3; fontMaster = ({id = m1; name = One;}, {id = m2; name = Two; " + link +
                       "}, {id = m3; customParameters = ({name = \"Link Metrics With Master\"; value = Two;});});"
                       "glyphs = ({glyphname = T; rightKerningGroup = T; leftKerningGroup = T; layers = ({layerId = m1;});},"
                       "{glyphname = o; leftKerningGroup = o; rightKerningGroup = o; layers = ({layerId = m1;}, {layerId = m2;});},"
                       "{glyphname = a; leftKerningGroup = o;});"
                       "kerningLTR = {m1 = {T = {o = -40; \"@MMK_R_o\" = -30;}; \"@MMK_L_T\" = {a = -20; \"@MMK_R_o\" = -10; "
                       "\"@MMK_R_T\" = 3;}; ghost = {o = 1;};}; m2 = {T = {o = -99;};}; m9 = {T = {o = 7;};};};"
                       "kerningRTL = {m1 = {o = {T = 12;};};};}";
    ScannedText scanned(text);
    return VLFont::initWithDict_error(parsePlistValue(scanned.get(), true), nullptr);
}

} // namespace

TEST(Kerning, PairsPreferExceptionsOverGroups)
{
    auto font = kernedFont(false);
    ASSERT_NE(font, nullptr);
    auto T = font->glyphForName("T");
    auto o = font->glyphForName("o");
    auto a = font->glyphForName("a");
    auto kern = [&](const std::string& master, const VLGlyph& first, const VLGlyph& second, int direction = 0) {
        return font->kerningForFontMasterID_firstGlyph_secondGlyph_direction(master, first, second, direction);
    };
    EXPECT_EQ(kern("m1", *T, *o), -40) << "glyph to glyph";
    EXPECT_EQ(kern("m1", *T, *a), -30) << "glyph to group beats group to glyph";
    EXPECT_EQ(kern("m1", *o, *a), VLUnsetValue) << "no row for o nor its group";
    EXPECT_EQ(kern("m1", *T, *T), 3) << "the group's row answers what the glyph's row lacks";
    EXPECT_EQ(kern("m2", *T, *o), -99);
    EXPECT_EQ(kern("m2", *T, *T), VLUnsetValue);
    EXPECT_EQ(kern("m1", *o, *T, 2), 12) << "right to left";
    EXPECT_EQ(kern("m1", *T, *o, 1), -40) << "1 is left to right as well";
    EXPECT_EQ(font->kerningForFontMasterID_leftKey_rightKey_direction("m1", "@MMK_L_T", "a", 0), -20);
    EXPECT_EQ(font->kerningForFontMasterID_leftKey_rightKey_direction("m1", "T", "a", 0), VLUnsetValue);
    EXPECT_EQ(font->kerningForDirection(0).objectForKey("m9"), nullptr) << "an id of no master is left out";

    auto first = o->layerForId("m1");
    auto second = o->layerForId("m2");
    EXPECT_EQ(font->kerningFirstLayer_secondLayer(*T->layerForId("m1"), *first), -40);
    EXPECT_EQ(font->kerningFirstLayer_secondLayer(*first, *second), VLUnsetValue) << "layers of two masters";
}

TEST(Kerning, LinkedMastersAndDirections)
{
    auto font = kernedFont(true);
    auto T = font->glyphForName("T");
    auto o = font->glyphForName("o");
    bool hasLink = false;
    EXPECT_EQ(font->masterIDforMetrics_hasLink("m2", &hasLink), "m1");
    EXPECT_TRUE(hasLink);
    EXPECT_EQ(font->kerningForFontMasterID_firstGlyph_secondGlyph_direction("m2", *T, *o, 0), -40);
    EXPECT_EQ(font->masterIDforMetrics("m3"), "m2") << "linked by the other master's name";
    hasLink = false;
    EXPECT_EQ(font->masterIDforMetrics_hasLink("m1", &hasLink), "m1");
    EXPECT_FALSE(hasLink);

    try {
        font->kerningForDirection(3);
        FAIL() << "direction 3 raises";
    } catch (const VLException& exception) {
        EXPECT_EQ(exception.name(), "Wrong direction");
        EXPECT_EQ(exception.reason(), "was: 3");
    }
    EXPECT_EQ(font->masterKerning_direction("m1", 3), nullptr);
    EXPECT_TRUE(font->masterKerning_direction("m1", 4)->empty()) << "made empty when missing";
    EXPECT_EQ(font->kerningForDirection(4).count(), 1u);

    EXPECT_EQ(T->nextKerningGroupIDforDirection(0), "@MMK_L_T");
    EXPECT_EQ(T->previousKerningGroupIDforDirection(2), "@MMK_R_T");
    EXPECT_EQ(T->nextKerningGroupforDirection(3), "");
}

TEST(Kerning, DisplayNamesAndStoredMasters)
{
    auto font = kernedFont(false);
    auto display = font->kerningDictForDirection(0);
    ASSERT_NE(display, nullptr);
    auto rows = display->objectForKey("m1");
    EXPECT_EQ(rows->allKeys(), (std::vector<std::string>{"@MMK_L_T", "T"})) << "sorted, the glyph of no id dropped";
    EXPECT_EQ(rows->objectForKey("@MMK_L_T")->allKeys(), (std::vector<std::string>{"@MMK_R_T", "@MMK_R_o", "a"}));
    EXPECT_EQ(display->count(), 3u) << "every master has an entry";
    EXPECT_EQ(font->kerningDictForDirection(12), nullptr) << "no vertical kerning";

    ScannedText pairs("{a = {T = 4.25;};}");
    font->setKerning_forMaster_direction(parsePlistValue(pairs.get(), true), "m3", 2);
    EXPECT_EQ(font->kerningForFontMasterID_leftKey_rightKey_direction("m3", "a", "T", 2), 4.25);
    font->setKerning_forMaster_direction(parsePlistValue(pairs.get(), true), "m3", 5);
    EXPECT_THROW(font->kerningForFontMasterID_leftKey_rightKey_direction("m3", "a", "T", 5), VLException);
}
