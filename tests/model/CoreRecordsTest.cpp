#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "platform/VLException.h"
#include "platform/VLUnsetValue.h"
#include "support/TestShapes.h"

#include <gtest/gtest.h>

namespace {

std::shared_ptr<VLGlyph> glyphNamed(const std::string& name)
{
    auto glyph = VLGlyph::initFast();
    glyph->setNameFast(name);
    return glyph;
}

} // namespace

TEST(CoreRecords, NewFontAndMasterStartValues)
{
    auto font = VLFont::init();
    ASSERT_EQ(font->fontMasters().size(), 1u);
    auto master = font->fontMasterAtIndex(0);
    EXPECT_EQ(master->id(), "m01");
    EXPECT_EQ(master->font(), font.get());

    auto edited = VLFontMaster::init();
    EXPECT_EQ(edited->name(), "Regular");
    EXPECT_EQ(edited->id().size(), 36u);
    EXPECT_NE(edited->id(), VLFontMaster::init()->id());
}

TEST(CoreRecords, MasterLookUpsReachImportedMastersAndStopAtTheEnd)
{
    auto font = VLFont::init();
    auto imported = VLFontMaster::initFast();
    imported->setId(std::string("imported"));
    imported->setName("Bold");
    font->setImportedFontMasters({imported});

    EXPECT_EQ(font->fontMasterAtIndex(1), imported);
    EXPECT_EQ(font->fontMasterAtIndex(2), nullptr);
    EXPECT_EQ(font->fontMasterAtIndex(-1), nullptr);
    EXPECT_EQ(font->fontMasterForId(std::string("imported")), imported);
    EXPECT_EQ(font->fontMasterForId(nullptr), nullptr);
    EXPECT_EQ(font->fontMasterForName("Bold"), imported);
    EXPECT_EQ(font->indexOfFontMaster(imported.get()), -1);

    auto numeric = VLFontMaster::initFast();
    numeric->setId(Value(7));
    EXPECT_EQ(numeric->id(), "7");
}

TEST(CoreRecords, GlyphCountsAndNameIndex)
{
    auto font = VLFont::init();
    auto first = glyphNamed("a");
    auto second = glyphNamed("a");
    font->setGlyphs({first, glyphNamed("b"), second});
    EXPECT_EQ(font->glyphForName("a"), second) << "the later of two glyphs of one name wins";
    EXPECT_EQ(font->glyphForName("zz"), nullptr);
    EXPECT_EQ(font->objectInGlyphsAtIndex(3), nullptr);

    font->setGlyphFiles({"a", "b", "c", "d", "e"});
    EXPECT_EQ(font->countOfGlyphs(), 5u);
    EXPECT_EQ(font->count(), 3u);

    auto other = VLFont::init();
    other->setGlyphs({glyphNamed("x")});
    font->setImportedFonts({other});
    EXPECT_NE(font->glyphForName("x"), nullptr);
    EXPECT_EQ(font->localGlyphForName("x"), nullptr);
}

TEST(CoreRecords, RenamesFollowTheNameIndexUnlessNiceNamesAreDisabled)
{
    auto font = VLFont::init();
    auto glyph = glyphNamed("a");
    font->setGlyphs({glyph});
    ASSERT_EQ(font->glyphForName("a"), glyph);

    glyph->setName("");
    EXPECT_EQ(glyph->name(), "a");
    glyph->setName("b");
    EXPECT_EQ(font->glyphForName("b"), glyph);
    EXPECT_EQ(font->glyphForName("a"), nullptr);

    font->setDisablesNiceNames(true);
    glyph->setName("c");
    EXPECT_EQ(font->glyphForName("c"), nullptr) << "the index stays stale on purpose";
    EXPECT_EQ(font->glyphForName("b"), glyph);
}

TEST(CoreRecords, LayerForIdMakesMasterLayersOnDemandOnly)
{
    auto font = VLFont::init();
    auto glyph = glyphNamed("A");
    font->setGlyphs({glyph});

    auto layer = glyph->layerForId("m01");
    ASSERT_NE(layer, nullptr);
    EXPECT_EQ(glyph->countOfLayers(), 1u);
    EXPECT_EQ(glyph->layerForId("m01"), layer);
    EXPECT_TRUE(layer->isMasterLayer());
    EXPECT_EQ(layer->parent(), glyph);
    EXPECT_EQ(layer->font(), font);
    EXPECT_EQ(glyph->layer0(), layer);

    EXPECT_EQ(glyph->layerForId("unknown"), nullptr);
    EXPECT_EQ(glyph->countOfLayers(), 1u);

    auto special = VLLayer::init();
    glyph->setLayer_forId(special, "special");
    EXPECT_EQ(special->layerId(), "special");
    EXPECT_TRUE(special->associatedMasterId().empty());
    EXPECT_EQ(special->associatedFontMaster(), font->fontMasterAtIndex(0)) << "falls back to the first master";
    EXPECT_EQ(special->associatedFontMasterFast(), nullptr);
}

TEST(CoreRecords, ImportedMasterLayerComesFromTheOtherFont)
{
    auto other = VLFont::init();
    auto otherGlyph = glyphNamed("A");
    other->setGlyphs({otherGlyph});
    auto otherLayer = otherGlyph->layerForId("m01");

    auto font = VLFont::init();
    font->fontMasterAtIndex(0)->setId(std::string("own"));
    font->setImportedFontMasters({other->fontMasterAtIndex(0)});
    auto glyph = glyphNamed("A");
    font->setGlyphs({glyph});
    EXPECT_EQ(glyph->layerForId("m01"), otherLayer);
    EXPECT_EQ(glyph->countOfLayers(), 0u);
}

TEST(CoreRecords, ColourIndexAndColourExcludeEachOther)
{
    auto glyph = VLGlyph::init();
    EXPECT_EQ(glyph->name(), "newGlyph");
    glyph->setColor(Color::colorWithCalibratedWhite_alpha(0.5, 1));
    EXPECT_EQ(glyph->colorIndex(), 255);
    glyph->setColorIndex(3);
    EXPECT_EQ(glyph->colorIndex(), 3);
    EXPECT_FALSE(glyph->color());
    glyph->setColor(Color::colorWithCalibratedWhite_alpha(0.5, 1));
    glyph->setColorIndex(12);
    EXPECT_EQ(glyph->colorIndex(), 255);
    EXPECT_FALSE(glyph->color());
}

TEST(CoreRecords, GlyphClassification)
{
    EXPECT_TRUE(VLGlyph::isCornerName("_corner.serif"));
    EXPECT_TRUE(VLGlyph::isCornerName("_segment.x"));
    EXPECT_FALSE(VLGlyph::isCornerName("_cornerless"));

    auto glyph = glyphNamed("_part.stem");
    EXPECT_TRUE(glyph->isSmartGlyph());
    glyph->setNameFast("a");
    EXPECT_FALSE(glyph->isSmartGlyph());
    glyph->setScript("tibet");
    EXPECT_TRUE(glyph->isSmartGlyph());
    glyph->setSubCategory("Ligature");
    EXPECT_FALSE(glyph->isSmartGlyph());
    glyph->setScript("hangul");
    glyph->setUnicodesFast({"ac00"});
    EXPECT_EQ(glyph->unicodeChar(), 0xAC00u);
    EXPECT_FALSE(glyph->isSmartGlyph()) << "complete syllables from U+AC00 are not parts";

    EXPECT_FALSE(glyph->hasCustomGlyphInfo());
    glyph->setStoreCase(true);
    EXPECT_FALSE(glyph->hasCustomGlyphInfo());
    glyph->setStoreSortName(true);
    EXPECT_TRUE(glyph->hasCustomGlyphInfo());
}

TEST(CoreRecords, GlyphsMadeFastHaveDistinctIds)
{
    auto first = VLGlyph::initFast();
    auto second = VLGlyph::initFast();
    EXPECT_EQ(first->id().rfind("0x", 0), 0u);
    EXPECT_NE(first->id(), second->id());
}

TEST(CoreRecords, CharacterTextOfCodePoints)
{
    auto glyph = VLGlyph::initFast();
    glyph->setUnicodesFast({"41", "00e4", "1F600"});
    EXPECT_EQ(glyph->unicodes().size(), 2u) << "codes shorter than three digits are dropped";
    EXPECT_EQ(glyph->charString(), "\xC3\xA4");
    EXPECT_EQ(glyph->charStrings(), "\xC3\xA4\xF0\x9F\x98\x80");
}

TEST(CoreRecords, FontSettings)
{
    auto font = VLFont::init();
    font->setVersion("3.25");
    EXPECT_EQ(font->versionMajor(), 3u);
    EXPECT_EQ(font->versionMinor(), 25u);
    EXPECT_EQ(font->version(), "3.25");
    font->setVersion("7");
    EXPECT_EQ(font->version(), "7.0");

    font->setGridMain(10);
    font->setGridSubDivision(4);
    EXPECT_DOUBLE_EQ(font->gridLength(), 2.5);
    font->setGridSubDivision(0);
    EXPECT_DOUBLE_EQ(font->gridLength(), 10);

    EXPECT_EQ(VLFont::fontTypeKeyForType(2), "layerFont");
    EXPECT_EQ(VLFont::fontTypeKeyForType(9), "default");
    EXPECT_EQ(VLFont::fontTypeForTypeKey("iconSet"), 3);
    EXPECT_EQ(VLFont::fontTypeForTypeKey("other"), 0);

    font->setUserData_forKey(Value("x"), "k");
    EXPECT_EQ(font->userData().at("k"), Value("x"));
    font->setUserData_forKey(Value(), "k");
    EXPECT_TRUE(font->userData().empty());

    font->stopUpdateInterface();
    EXPECT_FALSE(font->isUpdateInterfaceEnabled());
    font->enableUpdateInterface();
    EXPECT_TRUE(font->isUpdateInterfaceEnabled());
}

TEST(CoreRecords, WeakParentsReadNullOnceTheOwnerIsGone)
{
    std::shared_ptr<VLLayer> layer;
    {
        auto font = VLFont::init();
        auto glyph = glyphNamed("A");
        font->setGlyphs({glyph});
        layer = glyph->layerForId("m01");
        ASSERT_NE(layer->font(), nullptr);
    }
    EXPECT_EQ(layer->parent(), nullptr);
    EXPECT_EQ(layer->font(), nullptr);
}
