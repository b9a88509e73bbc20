#include "model/VLCustomParameter.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "platform/VLUnsetValue.h"

#include <gtest/gtest.h>

namespace {

std::shared_ptr<VLCustomParameter> parameter(const std::string& name, const Value& value, bool active = true)
{
    auto made = VLCustomParameter::initWithName_value(name, value);
    made->setActive(active);
    return made;
}

std::array<double, 4> rgbaOf(const Value& value)
{
    auto color = VLCustomParameter::colorFromValue(value);
    return color ? color->rgba() : std::array<double, 4>{-1, -1, -1, -1};
}

} // namespace

TEST(CustomParameter, FirstActiveParameterOfANameWins)
{
    auto font = VLFont::init();
    font->addCustomParameter(parameter("Foo", 1, false));
    font->addCustomParameter(parameter("Foo", 2));
    font->addCustomParameter(parameter("Foo", 3));
    EXPECT_EQ(font->customValueForKey("Foo"), Value(2));
    EXPECT_EQ(font->customParameterForKey("Foo")->value(), Value(1)) << "the plain look-up sees inactive ones";
    EXPECT_EQ(font->customParameterActiveForKey("Foo")->value(), Value(2));
    EXPECT_TRUE(font->customValueForKey("").isNull());
    EXPECT_EQ(font->customParameterForKey(""), nullptr);
    EXPECT_FALSE(font->customBoolValueForKey("Missing"));
}

TEST(CustomParameter, CacheGoesStaleOnlyThroughAddAndRemove)
{
    auto master = VLFontMaster::initFast();
    auto foo = parameter("Foo", "old");
    master->addCustomParameter(foo);
    EXPECT_EQ(master->customValueForKey("Foo"), Value("old"));

    foo->setValue("new");
    EXPECT_FALSE(foo->isValidated());
    foo->setActive(false);
    EXPECT_EQ(master->customValueForKey("Foo"), Value("old")) << "changes to a parameter don't reach the cache";

    master->addCustomParameter(parameter("Bar", true));
    EXPECT_TRUE(master->customValueForKey("Foo").isNull()) << "an add rebuilds it";
    EXPECT_TRUE(master->customBoolValueForKey("Bar"));

    foo->setActive(true);
    master->removeObjectFromCustomParametersForKey("Bar");
    EXPECT_EQ(master->customValueForKey("Foo"), Value("new"));
    EXPECT_TRUE(master->customValueForKey("Bar").isNull());
    EXPECT_EQ(master->countOfCustomParameters(), 1u);
    EXPECT_EQ(foo->parent(), master.get());
}

TEST(CustomParameter, MasterSetCustomValueReplacesAddsAndRemoves)
{
    auto master = VLFontMaster::initFast();
    master->setCustomValue_forKey(5, "A");
    master->setCustomValue_forKey(6, "A");
    ASSERT_EQ(master->countOfCustomParameters(), 1u);
    EXPECT_EQ(master->customParameterForKey("A")->value(), Value(6));
    master->setCustomValue_forKey(1, "");
    EXPECT_EQ(master->countOfCustomParameters(), 1u) << "an empty key does nothing";
    master->setCustomValue_forKey(Value(), "A");
    EXPECT_EQ(master->countOfCustomParameters(), 0u);
}

TEST(CustomParameter, IntegerReadings)
{
    EXPECT_EQ(VLCustomParameter::initWithName_value(std::nullopt, 1), nullptr);
    EXPECT_EQ(parameter("n", 2.5)->integerValue(), 3);
    EXPECT_EQ(parameter("n", -2.5)->integerValue(), -3) << "halves round away from zero";
    EXPECT_EQ(parameter("n", "12.4")->integerValue(), 12);
}

TEST(CustomParameter, ColourForms)
{
    EXPECT_EQ(rgbaOf("255,0,0"), (std::array<double, 4>{1, 0, 0, 1}));
    auto grey = VLCustomParameter::colorFromValue("128,64");
    ASSERT_TRUE(grey);
    EXPECT_EQ(grey->space(), Color::Space::CalibratedWhite);
    EXPECT_DOUBLE_EQ(grey->components()[0], 128 / 255.0);
    EXPECT_DOUBLE_EQ(grey->alphaComponent(), 64 / 255.0);
    EXPECT_EQ(rgbaOf(Value(ValueArray{0, 255, 0, 51})), (std::array<double, 4>{0, 1, 0, 0.2}));
    EXPECT_EQ(rgbaOf("255.9,0,0"), (std::array<double, 4>{1, 0, 0, 1})) << "components are integers";

    auto cmyk = VLCustomParameter::colorFromValue("0,255,0,0,255");
    ASSERT_TRUE(cmyk);
    EXPECT_EQ(cmyk->space(), Color::Space::DeviceCMYK);
    EXPECT_DOUBLE_EQ(cmyk->components()[1], 1.0);
    EXPECT_DOUBLE_EQ(cmyk->alphaComponent(), 1.0);

    Color given = Color::colorWithDeviceWhite_alpha(0.5, 1);
    EXPECT_EQ(VLCustomParameter::colorFromValue(Value(given)), given);
    EXPECT_FALSE(VLCustomParameter::colorFromValue("1"));
    EXPECT_FALSE(VLCustomParameter::colorFromValue("1,2,3,4,5,6"));
    EXPECT_FALSE(VLCustomParameter::colorFromValue(255));
}

TEST(CustomParameter, LocalisedValues)
{
    EXPECT_EQ(parameter("k", "latin:100")->localizedValueForScript("latin"), 100);
    EXPECT_EQ(parameter("k", "latin:100")->localizedValueForScript("greek"), VLUnsetValue);
    EXPECT_EQ(parameter("k", "100")->localizedValueForScript("default"), 100);
    EXPECT_EQ(parameter("k", "100")->localizedValueForScript("latin"), VLUnsetValue);
    EXPECT_EQ(parameter("k", 100)->localizedValueForScript("default"), VLUnsetValue);

    auto master = VLFontMaster::initFast();
    master->addCustomParameter(parameter("k", "greek:5", false));
    master->addCustomParameter(parameter("k", "greek:7.25"));
    master->addCustomParameter(parameter("k", "40"));
    master->addCustomParameter(parameter("k", "hira:9"));
    EXPECT_EQ(master->localizedCustomValueForKey_script("k", "greek"), 7.25);
    EXPECT_EQ(master->localizedCustomValueForKey_script("k", "default"), 40);
    EXPECT_EQ(master->localizedCustomValueForKey_script("k", "x"), VLUnsetValue) << "too short a script";

    auto glyph = VLGlyph::init();
    auto layer = VLLayer::init();
    layer->setParent(glyph);
    EXPECT_EQ(master->localizedCustomValueForKey_layer("k", layer.get()), VLUnsetValue) << "no script";
    glyph->setScript("greek");
    EXPECT_EQ(master->localizedCustomValueForKey_layer("k", layer.get()), 7.25);
    glyph->setScript("kana");
    glyph->setNameFast("a-hira");
    EXPECT_EQ(master->localizedCustomValueForKey_layer("k", layer.get()), 9) << "kana matches the glyph name";
    glyph->setScript("latin");
    EXPECT_EQ(master->localizedCustomValueForKey_layer("k", layer.get()), VLUnsetValue) << "plain values don't count";

    EXPECT_EQ(VLFontMaster::localizedParameter_glyph("latin:12", glyph.get()), Value("12"));
    EXPECT_TRUE(VLFontMaster::localizedParameter_glyph("greek:12", glyph.get()).isNull());
    EXPECT_EQ(VLFontMaster::localizedParameterValue_glyph("greek:12", glyph.get()), VLUnsetValue);
    EXPECT_EQ(VLFontMaster::localizedParameterValue_glyph("latin:0.1", glyph.get()), static_cast<float>(0.1));
}
