#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "platform/VLError.h"
#include "platform/GraphicsContext.h"
#include "support/TestDocuments.h"
#include "thumbnail/VLFontLoader.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

// Where the dark pixels of one row of the context begin and end, counted from the left and the
// bottom, and how many runs of them there are.
struct Ink {
    int first = -1;
    int last = -1;
    int runs = 0;
};

Ink inkInRow(const GraphicsContext& context, int y)
{
    Ink ink;
    bool inside = false;
    for (int x = 0; x < context.pixelsWide(); ++x) {
        bool dark = context.pixelAt(x, y)[3] > 128;
        if (dark && ink.first < 0) ink.first = x;
        if (dark) ink.last = x;
        if (dark && !inside) ++ink.runs;
        inside = dark;
    }
    return ink;
}

} // namespace

TEST(SampleSheet, TheLatinTextTakesTheLettersTheFontHas)
{
    auto font = readTestDocument("proof/stems.velmor");
    ASSERT_NE(font, nullptr);
    VLFontLoader loader;
    loader.setFont(font);
    EXPECT_EQ(loader.generatePreviewString(), U"ABCDEFGHIJKLM\nNOPQRSTUVWXYZ\nabcdefghijklm\nnopqrstuvwxyz\n1234567890");
    font->glyphForName("V")->setUnicodes({"E4"});
    font->glyphForName("H")->setUnicodes({"3C9"});
    EXPECT_EQ(loader.generatePreviewString(), U"ABCDEFGHIJKLM\nNOPQRSTUVWXYZ\n\u00e4bcdefghijklm\nnopqrstuvwxy\u03c9\n1234567890");
}

// The font has neither "A" nor "g": the strip shows the thumbnail's samples from the middle of the
// font, "space" and "V", in each master. The text shows each glyph's mean of the masters.
TEST(SampleSheet, LinesStandCenteredUnderTheMastersStrip)
{
    auto font = readTestDocument("proof/stems.velmor");
    ASSERT_NE(font, nullptr);
    VLFontLoader loader;
    loader.setFont(font);
    loader.setPreviewText(U"I I\nH");
    loader.layoutPreview();
    // The strip: (250 + 400) per master; the lines, in the first master's widths, 650 and 500
    // wide; 100 of margin each side.
    ASSERT_EQ(loader.canvasSize().width, 1500);
    // Two margins, the strip's line, and two lines of 1000 units 1250 apart.
    ASSERT_EQ(loader.canvasSize().height, 200 + 1250 + 1000 + 1250);

    GraphicsContext context(150, 370);
    {
        GraphicsContext::Current current(context);
        AffineTransform scale;
        scale.scaleBy(0.1);
        scale.concat();
        loader.drawPreview();
    }
    // Baselines 100 units below the top margin less the ascender, one line of 1250 apart: the
    // strip's at 2800, the first line's at 1550, the second's at 300; rows halfway up the stems.
    Ink strip = inkInRow(context, 315);
    EXPECT_EQ(strip.runs, 2) << "a V in each master";
    EXPECT_NEAR(strip.first, 45, 1) << "the strip starts 100 units in, and V 350 further";
    EXPECT_NEAR(strip.last + 1, 130, 1);
    Ink first = inkInRow(context, 190);
    EXPECT_EQ(first.runs, 2);
    EXPECT_NEAR(first.first, 47.5, 1) << "the line is centred: (1500 - 650) / 2, then the stem's side bearing";
    EXPECT_NEAR(first.last + 1 - first.first, 65, 1) << "two stems of the masters' mean, 200 wide, 450 apart";
    Ink second = inkInRow(context, 65);
    EXPECT_EQ(second.runs, 1);
    EXPECT_NEAR(second.first, 55, 1) << "the H is centred on its width of 500";
    EXPECT_NEAR(second.last + 1, 100, 1) << "its outline the masters' mean, 50 to 500";
}

TEST(SampleSheet, AFontOfOneMasterHasNoStrip)
{
    VLError error;
    auto font = VLFont::initWithURL_error(std::string(VELMOR_EXAMPLES) + "/Velmor-Sample.velmor", &error);
    ASSERT_NE(font, nullptr);
    ASSERT_EQ(font->fontMasters().size(), 1u);
    VLFontLoader loader;
    loader.setFont(font);
    loader.setPreviewText(U"A\nA");
    loader.layoutPreview();
    auto master = font->fontMasterAtIndex(0);
    double line = master->defaultAscender() - master->defaultDescender();
    EXPECT_DOUBLE_EQ(loader.canvasSize().height, 200 + line + line * 1.25);
}
