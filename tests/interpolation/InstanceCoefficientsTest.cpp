#include "interpolation/VLCoefficientCache.h"
#include "interpolation/VLCoefficientTidying.h"
#include "model/VLAxis.h"
#include "model/VLCustomParameter.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLInstance.h"
#include "model/VLLayer.h"
#include "outline/VLNode.h"
#include "outline/VLPath.h"
#include "platform/VLError.h"
#include "support/PlistTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

// Masters "m1", "m2", ... (named "M1", ...) at the given places on the axes "a" and "b", as many
// of them as the places have coordinates.
struct DesignSpace {
    std::shared_ptr<VLFont> font = VLFont::init();

    explicit DesignSpace(std::initializer_list<std::vector<double>> places)
    {
        size_t dimensions = places.begin()->size();
        for (size_t d = 0; d < dimensions; ++d) {
            auto axis = VLAxis::initWithName_tag(d ? "Width" : "Weight", d ? "wdth" : "wght");
            axis->setAxisId(d ? "b" : "a");
            font->addAxis(axis);
        }
        std::vector<std::shared_ptr<VLFontMaster>> masters;
        for (const auto& place : places) {
            auto master = VLFontMaster::initFast();
            std::string number = std::to_string(masters.size() + 1);
            master->setId("m" + number);
            master->setName("M" + number);
            for (size_t d = 0; d < place.size(); ++d) master->setAxisValueValue_forId(place[d], d ? "b" : "a");
            masters.push_back(master);
        }
        font->setFontMasters(masters);
    }

    std::shared_ptr<VLInstance> instanceAt(std::vector<double> place)
    {
        auto instance = VLInstance::init();
        instance->setFont(font.get());
        for (size_t d = 0; d < place.size(); ++d) instance->setAxisValueValue_forId(place[d], d ? "b" : "a");
        return instance;
    }

    std::optional<VLFactors> factorsAt(std::vector<double> place)
    {
        return instanceAt(std::move(place))->instanceInterpolations_axes(font->fontMasters(), font->axes());
    }
};

// "id=x" or "id=x/y" for each factor, in order.
std::string describe(const std::optional<VLFactors>& factors)
{
    if (!factors) return "nothing";
    std::string text;
    for (const auto& key : factors->allKeys()) {
        VLFactor f = factors->objectForKey(key);
        char entry[96];
        if (f.x == f.y)
            std::snprintf(entry, sizeof entry, "%s=%.4g ", key.c_str(), f.x);
        else
            std::snprintf(entry, sizeof entry, "%s=%.4g/%.4g ", key.c_str(), f.x, f.y);
        text += entry;
    }
    return text;
}

void addParameter(VLCustomParameterOwner& owner, const std::string& name, const Value& value)
{
    owner.addCustomParameter(VLCustomParameter::initWithName_value(name, value));
}

std::vector<Point> nodePositions(const std::shared_ptr<VLLayer>& layer)
{
    std::vector<Point> points;
    auto path = layer ? std::dynamic_pointer_cast<VLPath>(layer->objectInShapesAtIndex(0)) : nullptr;
    if (path)
        for (const auto& node : path->nodes()) points.push_back(node->position());
    return points;
}

} // namespace

TEST(InstanceCoefficients, ShareTheMastersAtTheLocation)
{
    DesignSpace line({{0}, {100}});
    EXPECT_EQ(describe(line.factorsAt({0})), "m1=1 ");
    EXPECT_EQ(describe(line.factorsAt({25})), "m1=0.75 m2=0.25 ");
    EXPECT_EQ(describe(line.factorsAt({150})), "m1=-0.5 m2=1.5 ") << "beyond the masters they extrapolate";
    EXPECT_EQ(describe(line.factorsAt({10001})), "nothing") << "a share above 100";
    EXPECT_EQ(describe(line.factorsAt({})), "m1=1 ") << "an instance without a location";
    EXPECT_EQ(describe(line.instanceAt({50})->instanceInterpolations_axes({}, line.font->axes())), "nothing");
    EXPECT_EQ(describe(line.instanceAt({50})->instanceInterpolations_axes({line.font->fontMasters()[1]},
                                                                          line.font->axes())),
              "m2=1 ");
    DesignSpace unit({{0}, {1}});
    EXPECT_EQ(describe(unit.factorsAt({100})), "m1=-99 m2=100 ") << "a share of 100 itself is kept";

    DesignSpace square({{0, 0}, {100, 0}, {0, 100}, {100, 100}});
    EXPECT_EQ(describe(square.factorsAt({25, 50})), "m1=0.375 m2=0.125 m3=0.375 m4=0.125 ");
    EXPECT_EQ(describe(square.factorsAt({25})), "m1=0.75 m2=0.25 ") << "an axis without a value stands at 0";

    // A share below 0.0005 goes to the others; one of 0.0006 stays.
    DesignSpace wide({{0}, {10000}});
    EXPECT_EQ(describe(wide.factorsAt({4})), "m1=1 ");
    EXPECT_EQ(describe(wide.factorsAt({6})), "m1=0.9994 m2=0.0006 ");
}

TEST(InstanceCoefficients, DisabledAndRepeatedMastersTakeNoPart)
{
    DesignSpace line({{0}, {100}, {200}, {0}});
    EXPECT_EQ(describe(line.factorsAt({100})), "m2=1 ");
    EXPECT_EQ(describe(line.factorsAt({50})), "m1=0.5 m2=0.5 ") << "the first of two at one place takes it all";

    auto instance = line.instanceAt({100});
    addParameter(*instance, "Disable Masters", Value(ValueArray{Value("M2")}));
    EXPECT_EQ(describe(instance->instanceInterpolations_axes(line.font->fontMasters(), line.font->axes())),
              "m1=0.5 m3=0.5 ");
    EXPECT_EQ(describe(line.factorsAt({100})), "m2=1 ") << "disabled for that instance alone";

    addParameter(*line.font, "Disable Masters", Value(ValueArray{Value("M3"), Value(7)}));
    EXPECT_EQ(describe(line.factorsAt({150})), "m1=-0.5 m2=1.5 ") << "the font's list holds for every instance";
    EXPECT_EQ(describe(instance->instanceInterpolations_axes(line.font->fontMasters(), line.font->axes())), "")
        << "with both lists only masters at one place remain, which can't be blended";
}

TEST(InstanceCoefficients, SeparateWeightForYGivesPairs)
{
    DesignSpace line({{0}, {100}});
    auto instance = line.instanceAt({25});
    addParameter(*instance, "InterpolationWeightY", Value(75));
    EXPECT_EQ(describe(instance->instanceInterpolations_axes(line.font->fontMasters(), line.font->axes())),
              "m1=0.75/0.25 m2=0.25/0.75 ");

    auto atMaster = line.instanceAt({0});
    addParameter(*atMaster, "InterpolationWeightY", Value("0.0004"));
    EXPECT_EQ(describe(atMaster->instanceInterpolations_axes(line.font->fontMasters(), line.font->axes())),
              "m1=1/1 ") << "a text value counts; a share of 0.001 or less in both takes no part";

    DesignSpace thousand({{0}, {1000}});
    auto near = thousand.instanceAt({1});
    addParameter(*near, "InterpolationWeightY", Value(1));
    EXPECT_EQ(describe(near->instanceInterpolations_axes(thousand.font->fontMasters(), thousand.font->axes())),
              "m1=0.999 ") << "a share of 0.001 takes no part";

    DesignSpace together({{5}, {5}});
    auto split = together.instanceAt({5});
    addParameter(*split, "InterpolationWeightY", Value(6));
    EXPECT_EQ(describe(split->instanceInterpolations_axes(together.font->fontMasters(), together.font->axes())), "")
        << "x has a master, y none";

    DesignSpace square({{0, 0}, {100, 0}, {0, 100}, {100, 100}});
    auto planar = square.instanceAt({0, 50});
    addParameter(*planar, "InterpolationWeightY", Value(100));
    EXPECT_EQ(describe(planar->instanceInterpolations_axes(square.font->fontMasters(), square.font->axes())),
              "m1=0.5/0 m2=0/0.5 m3=0.5/0 m4=0/0.5 ") << "the value replaces the first coordinate only";
}

TEST(CoefficientCache, SolvesOnceForEachMastersAndTarget)
{
    VLCoefficientCache::removeAllEntries();
    DesignSpace line({{0}, {100}});
    size_t before = VLCoefficientCache::solveCount();
    line.factorsAt({30});
    line.factorsAt({30});
    EXPECT_EQ(VLCoefficientCache::solveCount(), before + 1);

    const MasterPositions masters{{0.0}, {1.0}};
    auto solvesFor = [&](double target) {
        size_t start = VLCoefficientCache::solveCount();
        auto coefficients = VLCoefficientCache::coefficientsForMasters_target(masters, {target});
        EXPECT_EQ(coefficients.size(), 2u);
        return VLCoefficientCache::solveCount() - start;
    };
    for (int i = 0; i < 1000; ++i) EXPECT_EQ(solvesFor(i), 1u);
    EXPECT_EQ(solvesFor(0), 0u) << "a thousand targets are kept";
    EXPECT_EQ(solvesFor(-0.0), 0u) << "-0 is the key 0";
    EXPECT_EQ(solvesFor(1000), 1u);
    EXPECT_EQ(solvesFor(0), 1u) << "the 1001st target started the masters' targets again";

    const MasterPositions together{{5.0}, {5.0}};
    before = VLCoefficientCache::solveCount();
    EXPECT_TRUE(VLCoefficientCache::coefficientsForMasters_target(together, {6.0}).empty());
    EXPECT_TRUE(VLCoefficientCache::coefficientsForMasters_target(together, {6.0}).empty());
    EXPECT_EQ(VLCoefficientCache::solveCount(), before + 1) << "an empty answer is kept as well";

    VLCoefficientCache::removeAllEntries();
    EXPECT_EQ(solvesFor(0), 1u);
    for (int i = 0; i < 4999; ++i) VLCoefficientCache::coefficientsForMasters_target({{0.0}, {i + 2.0}}, {1.0});
    EXPECT_EQ(solvesFor(0), 0u) << "5000 sets of masters are kept";
    VLCoefficientCache::coefficientsForMasters_target({{0.0}, {-1.0}}, {1.0});
    EXPECT_EQ(solvesFor(0), 1u) << "the 5001st set started the cache again";
}

TEST(CoefficientTidying, SpreadsTracesOverTheOthers)
{
    std::vector<double> coefficients{0.5, 0.4996, 0.0004};
    tidyCoefficients(coefficients);
    EXPECT_DOUBLE_EQ(coefficients[0], 0.5002);
    EXPECT_DOUBLE_EQ(coefficients[1], 0.4998);
    EXPECT_EQ(coefficients[2], 0.0);
    coefficients = {1.0003, -0.0003, 0.0005};
    tidyCoefficients(coefficients);
    EXPECT_DOUBLE_EQ(coefficients[0], 1.00015);
    EXPECT_EQ(coefficients[1], 0.0);
    EXPECT_DOUBLE_EQ(coefficients[2], 0.00035) << "0.0005 itself is kept";
    coefficients = {0.0001, 0.0002, NAN};
    tidyCoefficients(coefficients);
    EXPECT_EQ(coefficients[0], 0.0) << "with nothing to spread over, traces still go";
    EXPECT_EQ(coefficients[1], 0.0);
    EXPECT_TRUE(std::isnan(coefficients[2])) << "not a number is neither kept nor removed";
}

TEST(InstanceLayers, GlyphAtAnInstanceOfEitherFormat)
{
    const char* current = R"({
.formatVersion = 3;
axes = ({name = Weight; tag = wght;});
fontMaster = ({axesValues = (300); id = light; name = Light;}, {axesValues = (700); id = bold; name = Bold;});
glyphs = ({glyphname = A; layers = (
{layerId = light; shapes = ({closed = 1; nodes = ((0,0,l),(100,0,l),(50,100,l));}); width = 600;},
{layerId = bold; shapes = ({closed = 1; nodes = ((0,0,l),(300,0,l),(150,300,l));}); width = 800;}
);});
instances = ({name = Book; axesValues = (400);});
})";
    const char* older = R"({
fontMaster = ({id = light; name = Light; weightValue = 300;}, {id = bold; name = Bold; weightValue = 700;});
glyphs = ({glyphname = A; layers = (
{layerId = light; paths = ({closed = 1; nodes = ("0 0 LINE", "100 0 LINE", "50 100 LINE");}); width = 600;},
{layerId = bold; paths = ({closed = 1; nodes = ("0 0 LINE", "300 0 LINE", "150 300 LINE");}); width = 800;}
);});
instances = ({name = Book; interpolationWeight = 400;});
})";
    for (const char* text : {current, older}) {
        TemporaryFile file(text);
        VLError error;
        auto font = VLFont::initWithURL_error(file.path, &error);
        ASSERT_TRUE(font && font->instances().size() == 1);
        auto glyph = font->glyphForName("A");
        auto layer = glyph->layerForInstance_error(*font->instances()[0], nullptr);
        EXPECT_EQ(nodePositions(layer), (std::vector<Point>{{0, 0}, {150, 0}, {75, 150}}));

        auto made = VLInstance::initWithFont_axesValuesList(*font, {600});
        ASSERT_NE(made, nullptr);
        EXPECT_TRUE(made->manualInterpolation());
        EXPECT_EQ(describe(made->instanceInterpolations()), "light=0.25 bold=0.75 ");
        EXPECT_EQ(nodePositions(glyph->layerForInstance_error(*made, nullptr)),
                  (std::vector<Point>{{0, 0}, {250, 0}, {125, 250}}));
        made->setInstanceInterpolations({});
        EXPECT_EQ(glyph->layerForInstance_error(*made, nullptr), nullptr) << "manual shares of no master";
        EXPECT_EQ(VLInstance::initWithFont_axesValuesList(*font, {1e6}), nullptr);
    }
}
