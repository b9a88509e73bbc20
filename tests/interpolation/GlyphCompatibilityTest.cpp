#include "model/VLAxis.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "support/TestShapes.h"

#include <gtest/gtest.h>

TEST(Compatibility, FingerprintsOfMasterLayers)
{
    auto font = VLFont::init();
    auto second = VLFontMaster::initFast();
    second->setId(std::string("m02"));
    font->addFontMaster(second);
    auto glyph = VLGlyph::initFast();
    glyph->setNameFast("A");
    font->setGlyphs({glyph});
    glyph->layerForId("m01")->addShapeFast(rectanglePath(0, 0, 10, 10));
    glyph->layerForId("m02")->addShapeFast(rectanglePath(0, 0, 20, 20));
    EXPECT_EQ(glyph->layerForId("m01")->compareString(), "llll_");
    EXPECT_TRUE(glyph->mastersCompatibleForLayerIds({"m01", "m02"}));

    auto open = rectanglePath(0, 0, 20, 20);
    open->setClosed(false);
    glyph->layerForId("m02")->setShapesFast({open});
    EXPECT_FALSE(glyph->mastersCompatibleForLayerIds({"m01", "m02"}));
    EXPECT_TRUE(glyph->mastersCompatible()) << "without axes nothing varies";
    font->addAxis(VLAxis::initWithName_tag("Weight", "wght"));
    EXPECT_FALSE(glyph->mastersCompatible());
}
