#include "model/VLAxis.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLInstance.h"
#include "model/VLMetric.h"
#include "support/PlistTestSupport.h"

#include <gtest/gtest.h>

namespace {

std::shared_ptr<VLFontMaster> readMaster(std::string_view body, uint8_t format = 3)
{
    ScannedText text(body);
    return VLFontMaster::initWithVelmorParser_format(text.get(), format);
}

std::shared_ptr<VLFont> readFont(const std::string& text)
{
    TemporaryFile file(text);
    VLError error;
    return VLFont::initWithURL_error(file.path, &error);
}

std::shared_ptr<VLGlyph> readGlyph(std::string_view body, uint8_t format = 3)
{
    ScannedText text(body);
    return VLGlyph::initWithVelmorParser_format(text.get(), format);
}

} // namespace

TEST(MasterReader, NamesFromWeightWidthAndCustom)
{
    auto both = readMaster("weight = Bold;\nwidth = Condensed;\n}");
    ASSERT_NE(both, nullptr);
    EXPECT_EQ(both->name(), "Bold Condensed");
    EXPECT_EQ(both->iconName(), "Bold_Condensed");

    auto regular = readMaster("weight = Regular;\n}");
    EXPECT_EQ(regular->name(), "Regular");
    EXPECT_EQ(regular->iconName(), "");

    auto custom = readMaster("custom = Foo;\n}");
    EXPECT_EQ(custom->name(), "Foo");
    EXPECT_EQ(custom->iconName(), "");

    auto named = readMaster("name = \"Light Wide\";\nweight = Bold;\n}");
    EXPECT_EQ(named->name(), "Light Wide");
}

TEST(MasterReader, OlderFormatKeepsLegacyValuesInTheBuffer)
{
    auto master = readMaster("}", 1);
    ASSERT_NE(master, nullptr);
    const auto& buffer = *master->readBuffer();
    EXPECT_EQ(buffer.at("ascender"), Value(800));
    EXPECT_EQ(buffer.at("cap height"), Value(700));
    EXPECT_EQ(buffer.at("x-height"), Value(500));
    EXPECT_EQ(buffer.at("descender"), Value(-200));
    EXPECT_EQ(buffer.count("italic angle"), 0u);
    EXPECT_EQ(buffer.at("interpolations"), Value(ValueArray{100.0, 100.0, 0.0, 0.0, 0.0, 0.0}));

    auto truncated = readMaster("ascender = 800.7;\nitalicAngle = 12;\n}", 1);
    EXPECT_EQ(truncated->readBuffer()->at("ascender"), Value(800));
    EXPECT_EQ(truncated->readBuffer()->at("italic angle"), Value(12.0));

    EXPECT_FALSE(readMaster("ascender = 700;\n}", 3)->readBuffer()) << "the current format forgets these keys";
}

TEST(MasterReader, RecordFailures)
{
    EXPECT_EQ(readMaster("unknownKey = 1;\n}"), nullptr);
    EXPECT_EQ(readMaster("name = A;\n"), nullptr) << "the input ends inside the record";
    EXPECT_NE(readMaster("horizontalStems = (10, 20);\nverticalStems = 5;\n}"), nullptr);
    EXPECT_EQ(readMaster("horizontalStems = ();\n}"), nullptr);
    auto master = readMaster("userData = ({a = 1;}, {a = 2; b = 3;});\nid = \"m7\";\n}");
    ASSERT_NE(master, nullptr);
    EXPECT_EQ(master->userData().at("a"), Value(2));
    EXPECT_EQ(master->id(), "m7");
}

TEST(FontReader, MastersAxesMetricsAndInstances)
{
    auto font = readFont(R"({
.formatVersion = 3;
axes = (
{
name = Weight;
tag = wght;
},
{
name = Width;
tag = wdth;
},
{
name = Optical;
tag = opsz;
}
);
fontMaster = (
{
axesValues = (
400,
100
);
id = m01;
metricValues = (
{
over = 16;
pos = 750;
},
{
over = -16;
pos = -250;
},
{
pos = 12;
over = 3;
}
);
name = Regular;
}
);
instances = (
{
name = Bold;
axesValues = (
700,
100
);
active = 0;
visible = 1;
}
);
metrics = (
{
type = ascender;
},
{
type = descender;
},
{
type = "italic angle";
}
);
unitsPerEm = 1000;
}
)");
    ASSERT_NE(font, nullptr);
    ASSERT_EQ(font->axes().size(), 3u);
    EXPECT_EQ(font->axes()[0]->axisId(), "a01");
    EXPECT_EQ(font->axes()[2]->axisId(), "a03");
    ASSERT_EQ(font->fontMasters().size(), 1u);
    auto master = font->fontMasters()[0];
    EXPECT_EQ(master->font(), font.get());
    ASSERT_EQ(font->metrics().size(), 3u);
    EXPECT_EQ(font->metrics()[0]->type(), VLMetric::TypeAscender);
    ASSERT_EQ(font->instances().size(), 1u);
    EXPECT_FALSE(font->instances()[0]->exports());
    EXPECT_TRUE(font->instances()[0]->visible());
    EXPECT_EQ(font->instances()[0]->axisValueValueForId("a01"), 700);

    master->loadReadBuffer();
    EXPECT_EQ(master->defaultAscender(), 750);
    EXPECT_EQ(master->defaultDescender(), -250);
    EXPECT_EQ(master->defaultItalicAngle(), 12);
    EXPECT_EQ(master->axisValueValueForId("a02"), 100);
    EXPECT_EQ(master->axisValueValueForId("a03"), 0) << "an axis without a value sits at 0";
    EXPECT_FALSE(master->readBuffer());
}

TEST(FontReader, MasterListMustNotBeEmpty)
{
    EXPECT_EQ(readFont("{\nfontMaster = ();\n}"), nullptr);
    const std::string unknownKey = "{\nfontMaster = (\n{\nbogus = 1;\n}\n);\n}";
    TemporaryFile file(unknownKey);
    EXPECT_EQ(VLFont::initWithVelmorFileAtPath_error(file.path, nullptr), nullptr)
        << "the streaming route refuses an unknown master key";
    EXPECT_NE(readFont(unknownKey), nullptr) << "and the dictionary route takes the document";
}

TEST(GlyphReader, FirstPassKeys)
{
    auto glyph = readGlyph("glyphname = Aacute;\ncategory = Letter;\nsortName = x;\nindex = 12;\nexport = 0;\n"
                           "color = 4;\nunicode = (193, 65);\nleftKerningGroup = A;\nuserData = {k = v;};\n"
                           "lastChange = \"2024-05-01 10:00:00 +0000\";\n}");
    ASSERT_NE(glyph, nullptr);
    EXPECT_EQ(glyph->name(), "Aacute");
    EXPECT_EQ(glyph->id(), "Aacute");
    EXPECT_EQ(glyph->category(), "Letter");
    EXPECT_TRUE(glyph->storeCategory());
    EXPECT_TRUE(glyph->storeProduction()) << "a sort name sets the production flag";
    EXPECT_EQ(glyph->glyphId(), 12u);
    EXPECT_FALSE(glyph->exportGlyph());
    EXPECT_EQ(glyph->colorIndex(), 4);
    EXPECT_EQ(glyph->unicodes(), (std::vector<std::string>{"C1", "41"}));

    auto unnamed = readGlyph("export = 1;\n}");
    ASSERT_NE(unnamed, nullptr);
    EXPECT_EQ(unnamed->name().size(), 36u);
    EXPECT_EQ(unnamed->id(), unnamed->name());
}

TEST(GlyphReader, UnicodesByFormat)
{
    EXPECT_EQ(readGlyph("unicode = 0041;\n}", 1)->unicodes(), (std::vector<std::string>{"0041"}));
    EXPECT_EQ(readGlyph("unicode = \"0041,0061\";\n}", 1)->unicodes(), (std::vector<std::string>{"0041", "0061"}));
    EXPECT_TRUE(readGlyph("unicode = 5;\n}", 1)->unicodes().empty());
    EXPECT_EQ(readGlyph("unicode = 65;\n}", 3)->unicodes(), (std::vector<std::string>{"41"}));
}

TEST(GlyphReader, BrokenValuesFailTheGlyph)
{
    EXPECT_EQ(readGlyph("layers = (\n{\nname = \"open;\n}\n);\n}"), nullptr) << "a broken layer list fails at once";
    EXPECT_EQ(readGlyph("lastChange = 2024;\n}"), nullptr);
    EXPECT_EQ(readGlyph("glyphname = A;\nmystery = 1;\n}"), nullptr);
}
