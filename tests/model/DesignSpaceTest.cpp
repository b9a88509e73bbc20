#include "model/VLAxis.h"
#include "model/VLCustomParameter.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLInstance.h"
#include "model/VLLayer.h"
#include "model/VLMetricValue.h"
#include "support/TestDocuments.h"

#include <gtest/gtest.h>

namespace {

using List = std::vector<double>;

std::shared_ptr<VLFontMaster> masterWithId(const std::string& id, const std::string& name)
{
    auto master = VLFontMaster::initFast();
    master->setId(id);
    master->setName(name);
    return master;
}

void addParameter(VLCustomParameterOwner& owner, const std::string& name, const Value& value)
{
    owner.addCustomParameter(VLCustomParameter::initWithName_value(name, value));
}

} // namespace

TEST(DesignSpace, BothFormatsReachTheSameLocations)
{
    forEachLayerKindDocument([](const std::shared_ptr<VLFont>& font) {
        ASSERT_EQ(font->countOfAxes(), 2u);
        EXPECT_EQ(font->axes()[0]->axisTag(), "wght");
        EXPECT_EQ(font->axes()[1]->axisTag(), "wdth");
        auto light = font->fontMasterForId("light");
        auto bold = font->fontMasterForId("bold");
        EXPECT_EQ(light->axesValuesList(), (List{300, 75}));
        EXPECT_EQ(bold->axesValuesList(), (List{700, 100}));
        EXPECT_EQ(font->defaultFontMaster(), light);
        const std::string& weight = font->axes()[0]->axisId();
        const std::string& width = font->axes()[1]->axisId();
        EXPECT_EQ(bold->externAxisValueValueForId(weight), 700) << "without \"Axis Location\", the internal value";

        auto glyph = font->glyphForName("A");
        List location{-1, -1, -1};
        EXPECT_TRUE(glyph->layerForId("brace")->axesValuesList_fontAxes(location, font->axes()));
        EXPECT_EQ(location, (List{500, 90, -1})) << "places beyond the axes keep what the caller put there";
        EXPECT_FALSE(glyph->layerForId("light")->axesValuesList_fontAxes(location, font->axes()));
        List shorter{-1};
        glyph->layerForId("brace")->axesValuesList_fontAxes(shorter, font->axes());
        EXPECT_EQ(shorter, (List{500})) << "a shorter list takes what fits";

        auto steps = font->axesValueSteps_glyph({"light", "bold"}, glyph.get());
        EXPECT_EQ(steps[weight], (List{300, 700}));
        EXPECT_EQ(steps[width], (List{75, 100}));
        steps = font->axesValueSteps_glyph({"light", "brace"}, glyph.get());
        EXPECT_EQ(steps[weight], (List{300, 500})) << "a brace layer counts when its id is asked for";
        EXPECT_EQ(steps[width], (List{75, 90}));
    });
}

TEST(DesignSpace, DefaultMasterByIdThenNameThenFirst)
{
    auto font = VLFont::init();
    font->addFontMaster(masterWithId("m02", "Bold"));
    font->addFontMaster(masterWithId("Bold", "Black"));
    EXPECT_EQ(font->defaultFontMaster()->id(), "m01");

    auto instance = VLInstance::init();
    addParameter(*instance, "Variable Font Origin", Value("Bold"));
    EXPECT_EQ(font->defaultFontMaster(instance.get())->id(), "Bold") << "an id wins over a name";
    addParameter(*font, "Variable Font Origin", Value("Nowhere"));
    EXPECT_EQ(font->defaultFontMaster()->id(), "m01") << "neither an id nor a name";
    EXPECT_EQ(font->defaultFontMaster(instance.get())->id(), "Bold") << "the owner is asked before the font";

    auto other = VLFont::init();
    other->addFontMaster(masterWithId("m02", "Bold"));
    addParameter(*other, "Variable Font Origin", Value("Bold"));
    EXPECT_EQ(other->defaultFontMaster()->id(), "m02") << "by name";
}

TEST(DesignSpace, AllMastersIncludeTheImportedOnes)
{
    auto font = VLFont::init();
    auto imported = masterWithId("i01", "Imported");
    EXPECT_EQ(font->allMasters(), font->fontMasters());
    font->setImportedFontMasters({imported});
    ASSERT_EQ(font->countOfAllMasters(), 2u);
    EXPECT_EQ(font->allMasters().back(), imported);
    EXPECT_EQ(font->allMasterAtIndex(0), font->fontMasters()[0]);
    EXPECT_EQ(font->allMasterAtIndex(1), imported);
    EXPECT_EQ(font->allMasterAtIndex(2), nullptr);
    imported->setAxisValueValue_forId(5, "w");
    font->addAxis(VLAxis::init());
    font->axes()[0]->setAxisId("w");
    EXPECT_EQ(font->axesValueSteps({"i01"})["w"], (List{5})) << "imported masters have steps too";
}

TEST(DesignSpace, LocationListsFollowTheOrderOfTheAxes)
{
    auto font = VLFont::init();
    auto weight = VLAxis::initWithName_tag("Weight", "wght");
    auto width = VLAxis::initWithName_tag("Width", "wdth");
    font->setAxes({weight, width});
    auto master = font->fontMasters()[0];
    master->setAxisValueValue_forId(40, width->axisId());
    EXPECT_EQ(master->axesValuesList(), (List{0, 40})) << "a missing axis stands at 0";
    EXPECT_EQ(VLFont::axesValueListFromAxes_axesValues({width, weight}, master->axesValues()), (List{40, 0}));

    auto values = VLFont::axesValuesFromAxes_axesValuesList(font->axes(), {120, 80});
    EXPECT_EQ(values[weight->axisId()]->position(), 120);
    EXPECT_EQ(VLFont::axesValueListFromAxes_axesValues(font->axes(), values), (List{120, 80}));

    auto positions = master->axes();
    ASSERT_EQ(positions.size(), 2u);
    EXPECT_EQ(positions[1]->position(), 40);
    EXPECT_EQ(master->axesValues().count(weight->axisId()), 1u) << "the missing value is made and kept";
    positions[0]->setPosition(10);
    EXPECT_EQ(master->axisValueValueForId(weight->axisId()), 10);

    master->setExternAxisValueValue_forId(5, width->axisId());
    master->setExternAxisValueValue_forId(7, weight->axisId());
    master->setExternAxisValueValue_forId(6, width->axisId());
    EXPECT_EQ(master->externAxisValueValueForId(width->axisId()), 6);
    EXPECT_EQ(master->externAxisValueValueForId(weight->axisId()), 7);
    EXPECT_EQ(master->customParameterForKey("Axis Location")->value().count(), 2u) << "one entry per axis";
    EXPECT_EQ(master->axisValueValueForId(width->axisId()), 40) << "the internal value stays";
}

TEST(DesignSpace, AxesJoinAndLeaveTheFont)
{
    auto font = VLFont::init();
    auto a = VLAxis::init();
    auto b = VLAxis::init();
    auto c = VLAxis::init();
    font->addAxis(a);
    font->insertObject_inAxesAtIndex(b, 0);
    font->insertObject_inAxesAtIndex(c, 9);
    font->insertObject_inAxesAtIndex(nullptr, 0);
    EXPECT_EQ(font->axes(), (VLFont::Axes{b, a, c}));
    EXPECT_EQ(c->parent(), font);
    EXPECT_EQ(font->indexOfObjectInAxes(a), 1);

    b->setName("Weight");
    c->setAxisTag("ABCD");
    EXPECT_EQ(font->axisForName("Weight"), b);
    EXPECT_EQ(font->axisForTag("wght"), b) << "the tag that the name registers";
    EXPECT_EQ(font->axisForTag("ABCD"), c);
    EXPECT_EQ(font->axisForId(a->axisId()), a);
    EXPECT_EQ(font->axisForTag("none"), nullptr);

    auto d = VLAxis::init();
    font->replaceObjectInAxesAtIndex_withObject(3, d);
    EXPECT_EQ(d->parent(), nullptr) << "past the end nothing changes";
    font->replaceObjectInAxesAtIndex_withObject(0, d);
    EXPECT_EQ(b->parent(), nullptr);
    EXPECT_EQ(d->parent(), font);
    font->removeObjectFromAxes(a);
    font->removeObjectFromAxesAtIndex(2);
    EXPECT_EQ(a->parent(), nullptr);
    font->removeObjectFromAxesAtIndex(1);
    EXPECT_EQ(font->axes(), (VLFont::Axes{d}));
    EXPECT_EQ(font->indexOfObjectInAxes(a), -1);
}

TEST(DesignSpace, VirtualMastersNeedLocationsInEveryEntry)
{
    auto font = VLFont::init();
    font->addAxis(VLAxis::initWithName_tag("Weight", "wght"));
    const std::string& weight = font->axes()[0]->axisId();
    auto entry = [](const char* axis, double location) {
        return Value(ValueDictionary{{"Axis", Value(axis)}, {"Location", Value(location)}});
    };
    addParameter(*font, "Virtual Master", Value(ValueArray{entry("Weight", 50), Value("junk")}));
    addParameter(*font, "Virtual Master", Value(ValueArray{Value(ValueDictionary{{"Axis", Value("Weight")}})}));
    addParameter(*font, "Virtual Master", Value("not a list"));
    addParameter(*font, "Virtual Master", Value(ValueArray{entry("Width", 10), entry("Weight", 1.1), entry("Weight", 7)}));
    auto inactive = VLCustomParameter::initWithName_value("Virtual Master", Value(ValueArray{entry("Weight", 3)}));
    inactive->setActive(false);
    font->addCustomParameter(inactive);

    font->fontMasters()[0]->setAxisValueValue_forId(3, weight);
    auto steps = font->axesValueSteps({"m01"});
    EXPECT_EQ(steps[weight], (List{static_cast<float>(1.1), 3})) << "the first entry of the axis, in single precision";
    EXPECT_TRUE(font->axesValueSteps({}).count(weight)) << "a virtual master alone gives steps";
    font->setAxes({});
    EXPECT_TRUE(font->axesValueSteps({"m01"}).empty());
}

TEST(DesignSpace, AxisTagsAndCornerAxes)
{
    auto axis = VLAxis::initWithName_tag("Grade", "");
    VLError error;
    for (std::string good : {"", "wdthX", "ABCD", "A1", "ROND"}) {
        std::string tag = good;
        EXPECT_TRUE(axis->validateAxisTag_error(tag, &error)) << good;
    }
    std::string cut = "wdthX";
    axis->validateAxisTag_error(cut, nullptr);
    EXPECT_EQ(cut, "wdth");
    EXPECT_TRUE(error.domain.empty()) << "only a failure writes the slot";
    std::string height = "hght";
    EXPECT_FALSE(axis->validateAxisTag_error(height, nullptr)) << "known by name, but not a registered axis";
    std::string lower = "abcdef";
    EXPECT_FALSE(axis->validateAxisTag_error(lower, &error));
    EXPECT_EQ(error.domain, "VelmorErrorDomain");
    EXPECT_EQ(error.code, 125);
    EXPECT_EQ(error.userInfo[VLError::localizedDescriptionKey],
              "Custom Axis Tags should only contain Uppercase letter and numbers.");
    EXPECT_EQ(error.userInfo[VLError::localizedFailureReasonKey], "In Axis: Grade (abcdef)");

    auto corner = VLAxis::cornerAxes();
    ASSERT_EQ(corner.size(), 2u);
    EXPECT_EQ(corner[0]->axisId(), "wdth");
    EXPECT_EQ(corner[0]->name(), "Width");
    EXPECT_EQ(corner[1]->axisId(), "hght");
    EXPECT_EQ(corner[1]->name(), "Height");
    EXPECT_EQ(corner[1]->axisTag(), "hght");
}
