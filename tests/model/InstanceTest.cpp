#include "model/VLCustomParameter.h"
#include "model/VLInstance.h"
#include "model/VLMetricValue.h"

#include <gtest/gtest.h>

TEST(Instance, StartsAsARegularExportedSingle)
{
    auto instance = VLInstance::init();
    EXPECT_EQ(instance->name(), "Regular");
    EXPECT_TRUE(instance->exports() && instance->visible());
    EXPECT_EQ(instance->weightClassValue(), 400);
    EXPECT_EQ(instance->widthClassValue(), 5);
    EXPECT_EQ(VLInstance::initWithTypeName("icon")->type(), VLInstance::TypeIcon);
    EXPECT_EQ(VLInstance::initWithTypeName("other")->type(), VLInstance::TypeSingle);
    EXPECT_EQ(VLInstance::initWithType(3)->typeName(), std::nullopt);

    instance->setAxisValueValue_forId(300, "a");
    EXPECT_EQ(instance->axisValueValueForId("a"), 300);
    instance->setAxisValue_forId(nullptr, "a");
    EXPECT_TRUE(instance->axesValues().empty());
}

TEST(Instance, EqualsAnotherAtTheSamePlaceWithTheSameSettings)
{
    auto a = VLInstance::init();
    auto b = VLInstance::init();
    a->setAxisValueValue_forId(0, "wght");
    b->setAxisValueValue_forId(0.01, "wght");
    EXPECT_TRUE(a->isEqualToInstance(*b)) << "0.01 apart is the same place";
    b->setAxisValueValue_forId(0.02, "wght");
    EXPECT_FALSE(a->isEqualToInstance(*b));
    EXPECT_FALSE(b->isEqualToInstance(*a));

    // Only the axes of the receiver count; a missing one stands at 0.
    b->setAxisValueValue_forId(0, "wght");
    b->setAxisValueValue_forId(5, "wdth");
    EXPECT_TRUE(a->isEqualToInstance(*b));
    EXPECT_FALSE(b->isEqualToInstance(*a));

    auto differs = [&](auto change) {
        auto other = a->copy();
        change(*other);
        return !a->isEqualToInstance(*other) && !other->isEqualToInstance(*a);
    };
    EXPECT_TRUE(a->isEqualToInstance(*a->copy()));
    EXPECT_TRUE(differs([](VLInstance& i) { i.setName("Bold"); }));
    EXPECT_TRUE(differs([](VLInstance& i) { i.setExports(false); }));
    EXPECT_TRUE(differs([](VLInstance& i) { i.setVisible(false); }));
    EXPECT_TRUE(differs([](VLInstance& i) { i.setIsBold(true); }));
    EXPECT_TRUE(differs([](VLInstance& i) { i.setIsItalic(true); }));
    EXPECT_TRUE(differs([](VLInstance& i) { i.setLinkStyle("Regular"); }));
    EXPECT_TRUE(differs([](VLInstance& i) { i.setManualInterpolation(true); }));
    EXPECT_TRUE(differs([](VLInstance& i) {
        i.addCustomParameter(VLCustomParameter::initWithName_value("Disable Masters", Value(ValueArray())));
    }));
    VLFactors light;
    light.setObject_forKey(1.0, "light");
    EXPECT_TRUE(differs([&](VLInstance& i) { i.setInstanceInterpolations(light); }));
    a->setInstanceInterpolations(light);
    VLFactors pair;
    pair.setObject_forKey(VLFactor(1.0, 0.5), "light");
    EXPECT_TRUE(differs([&](VLInstance& i) { i.setInstanceInterpolations(pair); }));
    VLFactors bold;
    bold.setObject_forKey(1.0, "bold");
    EXPECT_TRUE(differs([&](VLInstance& i) { i.setInstanceInterpolations(bold); }));
}
