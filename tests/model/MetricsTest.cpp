#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "model/VLMetric.h"
#include "model/VLMetricValue.h"
#include "platform/Predicate.h"
#include "platform/VLUnsetValue.h"
#include "support/PathInFont.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <tuple>
#include <vector>

namespace {

constexpr const char* smallCaps = "case == 3";

// A font whose first master "m01" takes the values of the metrics added to it.
struct MetricFont {
    std::shared_ptr<VLFont> font = VLFont::init();
    std::shared_ptr<VLFontMaster> master = font->fontMasterAtIndex(0);

    std::shared_ptr<VLMetric> add(uint8_t type, double position, std::optional<std::string> name = std::nullopt,
                                  const char* filter = nullptr, double overshoot = 0)
    {
        auto metric = VLMetric::init();
        metric->setType(type);
        metric->setName(std::move(name));
        if (filter) metric->setFilterString(filter);
        font->addMetric(metric);
        master->setMetricValue_forId(VLMetricValue::initWithPosition_overshoot(position, overshoot), metric->id());
        master->setNeedsUpdateCachedVerticalMetrics();
        return metric;
    }

    std::shared_ptr<VLLayer> layer(const std::string& name, uint8_t glyphCase = 0, const std::string& category = "",
                                   const std::string& masterId = "m01")
    {
        auto glyph = VLGlyph::initFast();
        glyph->setNameFast(name);
        glyph->setGlyphCase(glyphCase);
        glyph->setCategory(category);
        font->addGlyphFast(glyph);
        return glyph->layerForId(masterId);
    }
};

} // namespace

TEST(Metrics, UnknownAscenderIsPlausibleAndUnknownDescenderIsZero)
{
    MetricFont empty;
    EXPECT_EQ(empty.master->defaultAscender(), 800);
    EXPECT_EQ(empty.master->defaultDescender(), 0);
    EXPECT_EQ(empty.master->defaultXHeight(), VLUnsetValue);
    EXPECT_EQ(empty.master->defaultItalicAngle(), 0);

    MetricFont filtered;
    filtered.add(VLMetric::TypeAscender, 750, std::nullopt, smallCaps);
    filtered.add(VLMetric::TypeDescender, -150, "Foo", smallCaps);
    EXPECT_EQ(filtered.master->defaultAscender(), 800) << "filtered metrics never reach the cache";
    EXPECT_EQ(filtered.master->defaultDescender(), 0);

    auto edited = VLFontMaster::init();
    EXPECT_EQ(edited->defaultAscender(), 800);
    EXPECT_EQ(edited->defaultDescender(), -200);
    EXPECT_EQ(edited->defaultCapHeight(), 700);
    EXPECT_EQ(edited->defaultXHeight(), 500);
}

TEST(Metrics, CacheTakesTheFirstPlainAscenderAndTheLastOfTheOthers)
{
    MetricFont f;
    f.add(VLMetric::TypeAscender, 650, "Foo");
    auto first = f.add(VLMetric::TypeAscender, 700);
    f.add(VLMetric::TypeAscender, 900);
    f.add(VLMetric::TypeDescender, -210, "Foo");
    f.add(VLMetric::TypeDescender, -230, "Bar");
    f.add(VLMetric::TypeXHeight, 480);
    f.add(VLMetric::TypeXHeight, 520);
    f.add(VLMetric::TypeXHeight, 600, "Shoulder");
    f.add(VLMetric::TypeCapHeight, 680);
    f.add(VLMetric::TypeCapHeight, 690);
    f.add(VLMetric::TypeItalicAngle, 12);
    EXPECT_EQ(f.master->defaultAscender(), 700) << "a plain ascender beats a named one before it";
    EXPECT_EQ(f.master->defaultDescender(), -210) << "without a plain one, the first named one";
    EXPECT_EQ(f.master->defaultXHeight(), 520) << "the last plain one; named ones don't count";
    EXPECT_EQ(f.master->defaultCapHeight(), 690);
    EXPECT_EQ(f.master->defaultItalicAngle(), 12);

    f.master->metricValueForId(first->id())->setPosition(720);
    EXPECT_EQ(f.master->defaultAscender(), 700) << "the cache holds until it is dropped";
    f.master->setNeedsUpdateCachedVerticalMetrics();
    EXPECT_EQ(f.master->defaultAscender(), 720);

    f.master->setMetricValue_forId(nullptr, first->id());
    f.master->setNeedsUpdateCachedVerticalMetrics();
    EXPECT_EQ(f.master->defaultAscender(), 0) << "a metric without a value stands at 0";
}

TEST(Metrics, MetricForTypeEvaluatesFilters)
{
    MetricFont f;
    f.add(VLMetric::TypeXHeight, 500);
    f.add(VLMetric::TypeXHeight, 560, std::nullopt, smallCaps);
    f.add(VLMetric::TypeXHeight, 580, std::nullopt, smallCaps);
    f.add(VLMetric::TypeAscender, 750);
    f.add(VLMetric::TypeSlantHeight, 250);
    auto smallCap = f.layer("a.sc", 3);
    auto lower = f.layer("a", 2);
    EXPECT_EQ(f.master->metricForType_layer(VLMetric::TypeXHeight, smallCap.get()), 560) << "the first match";
    EXPECT_EQ(f.master->metricValueForType_layer(VLMetric::TypeXHeight, smallCap.get())->position(), 560);
    EXPECT_EQ(f.master->metricForType_layer(VLMetric::TypeXHeight, lower.get()), 500);
    EXPECT_EQ(f.master->metricValueForType_layer(VLMetric::TypeXHeight, lower.get())->position(), 500);
    EXPECT_EQ(f.master->metricForType_layer(VLMetric::TypeXHeight, nullptr), 500);
    EXPECT_EQ(f.master->defaultMetricForType(VLMetric::TypeXHeight), 500);

    EXPECT_EQ(f.master->defaultMetricForType(VLMetric::TypeBodyHeight), 750) << "the body height is the ascender";
    EXPECT_EQ(f.master->defaultMetricValueForType(VLMetric::TypeBodyHeight)->position(), 750);
    EXPECT_EQ(f.master->defaultMetricForType(VLMetric::TypeCapHeight), VLUnsetValue);
    EXPECT_EQ(f.master->defaultMetricValueForType(VLMetric::TypeCapHeight), nullptr);
    EXPECT_EQ(f.master->metricForType_layer(VLMetric::TypeCapHeight, lower.get()), VLUnsetValue);
    f.add(VLMetric::TypeBodyHeight, 900);
    EXPECT_EQ(f.master->defaultMetricForType(VLMetric::TypeBodyHeight), 900);

    auto corner = f.layer("_corner.serif", 0, "Corner");
    EXPECT_EQ(f.master->metricForType_layer(VLMetric::TypeSlantHeight, corner.get()), 0);
    EXPECT_EQ(f.master->metricForType_layer(VLMetric::TypeSlantHeight, lower.get()), 250);
    EXPECT_EQ(f.master->metricForType_layer(VLMetric::TypeAscender, corner.get()), 750);
}

TEST(Metrics, LayerAccessorsAskTheAssociatedMaster)
{
    MetricFont f;
    auto bold = VLFontMaster::initFast();
    bold->setId(std::string("m02"));
    f.font->addFontMaster(bold);
    auto metric = [&](uint8_t type, double regular, double heavy, std::optional<std::string> name = std::nullopt,
                      const char* filter = nullptr) {
        auto added = f.add(type, regular, std::move(name), filter);
        bold->setMetricValue_forId(VLMetricValue::initWithPosition(heavy), added->id());
    };
    metric(VLMetric::TypeAscender, 750, 760);
    metric(VLMetric::TypeDescender, -250, -260);
    metric(VLMetric::TypeCapHeight, 700, 710);
    metric(VLMetric::TypeXHeight, 500, 10);
    metric(VLMetric::TypeXHeight, 560, 570, std::nullopt, smallCaps);
    metric(VLMetric::TypeItalicAngle, 0, 12);
    metric(VLMetric::TypeNone, 620, 630, "Shoulder");

    auto upper = f.layer("A", 1, "", "m02");
    EXPECT_EQ(upper->ascender(), 760);
    EXPECT_EQ(upper->descender(), -260);
    EXPECT_EQ(upper->italicAngle(), 12);
    EXPECT_EQ(upper->slantHeight(), 5) << "half the x-height without a slant height";
    EXPECT_EQ(upper->topHeight(), 710) << "upper case reaches the cap height";
    EXPECT_EQ(upper->metricForType(VLMetric::TypeCapHeight), 710);
    EXPECT_EQ(upper->metricForName("cap height"), 710);
    EXPECT_EQ(upper->metricForName("xheight"), 10);
    EXPECT_EQ(upper->metricForName("Shoulder"), 630);
    EXPECT_EQ(upper->metricForName("Nothing"), VLUnsetValue);

    EXPECT_EQ(f.layer("a", 2, "", "m02")->topHeight(), 760) << "an x-height of 10 or less gives the ascender";
    EXPECT_EQ(f.layer("a", 2)->topHeight(), 500);
    EXPECT_EQ(f.layer("a.sc", 3, "", "m02")->topHeight(), 570) << "small caps through their filter";
    EXPECT_EQ(f.layer("a.sc", 3)->slantHeight(), 250) << "the slant height halves the plain x-height";
    EXPECT_EQ(f.layer("one", 0)->topHeight(), 750) << "the body height is the ascender";
    metric(VLMetric::TypeBodyHeight, 900, 910);
    EXPECT_EQ(f.layer("one", 0, "", "m02")->topHeight(), 910);
    metric(VLMetric::TypeSlantHeight, 300, 20000);
    EXPECT_EQ(upper->slantHeight(), 5) << "a slant height above 10000 is not believed";
    EXPECT_EQ(f.layer("A", 1)->slantHeight(), 300);

    MetricFont bare;
    EXPECT_EQ(bare.layer("A", 1)->topHeight(), VLUnsetValue) << "no cap height and no ascender to reach";
    EXPECT_EQ(bare.layer("A", 1)->slantHeight(), 0) << "no x-height either";
    EXPECT_EQ(bare.layer("A", 1)->ascender(), 800) << "the cached fall-backs";
    EXPECT_EQ(bare.layer("A", 1)->descender(), 0);
    EXPECT_EQ(bare.layer("A", 1)->italicAngle(), 0);

    MetricFont huge;
    huge.add(VLMetric::TypeAscender, 700);
    huge.add(VLMetric::TypeXHeight, 100000);
    EXPECT_EQ(huge.layer("a", 2)->topHeight(), 700) << "an x-height of 100000 or more is broken";

    auto loose = VLLayer::init();
    EXPECT_EQ(loose->ascender(), 0) << "a layer without a master has no metrics";
    EXPECT_EQ(loose->topHeight(), 0);
    EXPECT_EQ(loose->metricForType(VLMetric::TypeAscender), VLUnsetValue);
    EXPECT_EQ(loose->metricForName("Shoulder"), VLUnsetValue);
}

TEST(Metrics, ValuesIgnoreTinyChangesAndBrokenMagnitudes)
{
    auto value = VLMetricValue::initWithPosition_overshoot(500, 10);
    value->setPosition(500.0005);
    EXPECT_EQ(value->position(), 500) << "0.001 or less is no change";
    value->setPosition(500.002);
    EXPECT_EQ(value->position(), 500.002);
    value->setOvershoot(10.0009);
    EXPECT_EQ(value->overshoot(), 10);
    auto zero = VLMetricValue::initWithPosition(0);
    zero->setPosition(0.001);
    zero->setOvershoot(0.001);
    EXPECT_EQ(zero->position(), 0) << "a change of exactly 0.001 is none";
    EXPECT_EQ(zero->overshoot(), 0);
    value->setOvershoot(-12);
    EXPECT_EQ(value->overshoot(), -12);

    value->setPosition(200000000);
    EXPECT_EQ(value->position(), 0) << "beyond 100000000 the value is broken and reads 0";
    value->setPosition(-100000000);
    EXPECT_EQ(value->position(), -100000000);
    value->setPosition(100000000);
    EXPECT_EQ(value->position(), 100000000);
    value->setOvershoot(-200000000);
    EXPECT_EQ(value->overshoot(), 0);
    value->setPosition(std::nan(""));
    EXPECT_EQ(value->position(), 0);

    EXPECT_EQ(VLMetricValue::initWithPosition(1e9)->position(), 0);
    EXPECT_EQ(VLMetricValue::initWithPosition_overshoot(5, -1e9)->overshoot(), 0);
    Value dict(ValueDictionary{{"pos", Value(0.1)}, {"over", Value(3e8)}});
    auto read = VLMetricValue::initWithDict_format(dict, 3);
    EXPECT_EQ(read->position(), static_cast<double>(0.1f)) << "read in single precision";
    EXPECT_EQ(read->overshoot(), 0);
}

TEST(Metrics, DefinitionsDescribeThemselves)
{
    EXPECT_EQ(VLMetric::typeNameForType(VLMetric::TypeCapHeight), "cap height");
    EXPECT_EQ(VLMetric::typeNameForType(VLMetric::TypeItalicAngle), "italic angle");
    EXPECT_EQ(VLMetric::typeNameForType(10), "-");
    EXPECT_EQ(VLMetric::typeForTypeName("x-height"), VLMetric::TypeXHeight);
    EXPECT_EQ(VLMetric::typeForTypeName("capheight"), VLMetric::TypeCapHeight);
    EXPECT_EQ(VLMetric::typeForTypeName("italic angle"), VLMetric::TypeItalicAngle);
    EXPECT_EQ(VLMetric::typeForTypeName("-"), VLMetric::TypeNone);
    EXPECT_TRUE(VLMetric::isDefaultType(VLMetric::TypeBaseline));
    EXPECT_FALSE(VLMetric::isDefaultType(VLMetric::TypeBodyHeight));
    EXPECT_EQ(VLMetric::initWithHorizontal_index(true, 3)->name(), "hStem3");
    EXPECT_EQ(VLMetric::initWithHorizontal_index(false, 0)->name(), "vStem0");

    auto plain = VLMetric::init();
    plain->setType(VLMetric::TypeXHeight);
    EXPECT_TRUE(plain->isVerticalMetric());
    EXPECT_EQ(plain->titles(), std::vector<std::string>{""}) << "type names have no translation here";
    EXPECT_EQ(plain->identifier(), "x-height");

    auto named = plain->copy();
    named->setName("Shoulder");
    named->setFilterString(smallCaps);
    named->setFilterString("case ==");
    EXPECT_EQ(named->filterString(), smallCaps) << "bad filter text keeps the filter";
    EXPECT_EQ(named->title(), ", Shoulder, case == 3");
    EXPECT_EQ(named->identifier(), "x-height####Shoulder####case == 3");
    EXPECT_EQ(named->noFilterId(), "x-height####Shoulder");
    EXPECT_FALSE(named->isEqualToMetric(*plain));
    EXPECT_TRUE(named->isEqualToMetric(*named->copy()));
    auto otherType = plain->copy();
    otherType->setType(VLMetric::TypeCapHeight);
    EXPECT_FALSE(otherType->isEqualToMetric(*plain));

    auto custom = VLMetric::init();
    custom->setName("Shoulder");
    EXPECT_EQ(custom->title(), "Shoulder");
    custom->setName("");
    EXPECT_EQ(custom->titles(), std::vector<std::string>{}) << "an empty name is no title";
    EXPECT_EQ(custom->noFilterId(), "-");
    custom->setName(std::nullopt);
    custom->setFilterString(smallCaps);
    EXPECT_EQ(custom->identifier(), "-####(null)####case == 3");
    custom->setTypeName("italic angle");
    EXPECT_FALSE(custom->isVerticalMetric());

    MetricFont f;
    f.font->addMetric(named);
    auto value = f.master->valueForMetric(named);
    EXPECT_EQ(value->metric(), named);
    EXPECT_EQ(value->name(), "Shoulder");
    EXPECT_EQ(value->title(), named->title());
    EXPECT_EQ(value->filter(), named->filter());
    EXPECT_EQ(VLMetricValue::initWithPosition(1)->name(), std::nullopt);
}

TEST(Metrics, FontListsAdoptTheirMetrics)
{
    MetricFont f;
    auto ascender = f.add(VLMetric::TypeAscender, 700);
    auto shoulder = f.add(VLMetric::TypeNone, 600, "Shoulder", smallCaps);
    auto plainShoulder = f.add(VLMetric::TypeNone, 620, "Shoulder");
    EXPECT_EQ(ascender->font(), f.font);
    EXPECT_EQ(ascender->id().size(), 36u);
    EXPECT_EQ(f.font->objectInMetricsWithName("Shoulder"), plainShoulder) << "the one without a filter first";
    f.font->removeObjectFromMetrics(plainShoulder);
    EXPECT_EQ(f.font->objectInMetricsWithName("Shoulder"), shoulder);
    EXPECT_EQ(f.font->objectInMetricsWithName("Hip"), nullptr);
    EXPECT_EQ(f.font->objectInMetricsWithType_withName(VLMetric::TypeXHeight, "Shoulder"), nullptr);

    auto filtered = f.add(VLMetric::TypeAscender, 720, std::nullopt, smallCaps);
    auto withFilter = [&](const char* filter) {
        return f.font->objectInMetricsWithType_withName_filter(VLMetric::TypeAscender, std::nullopt, filter);
    };
    EXPECT_EQ(withFilter(smallCaps), filtered);
    EXPECT_EQ(withFilter("case == 1"), nullptr) << "an asked-for filter must match";
    f.font->removeObjectFromMetricsAtIndex(0);
    EXPECT_EQ(f.font->objectInMetricsWithType_withName(VLMetric::TypeAscender, std::nullopt), filtered)
        << "without a filter, any of the type and name";

    auto added = VLMetric::init();
    added->setId("kept");
    f.font->insertObject_inMetricsAtIndex(added, 0);
    f.font->insertObject_inMetricsAtIndex(ascender, 99);
    ASSERT_EQ(f.font->countOfMetrics(), 4u);
    EXPECT_EQ(f.font->objectInMetricsAtIndex(0), added);
    EXPECT_EQ(f.font->objectInMetricsAtIndex(3), ascender);
    EXPECT_EQ(f.font->objectInMetricsAtIndex(4), nullptr);
    EXPECT_EQ(added->font(), f.font);
    EXPECT_EQ(added->id(), "kept");
    f.font->removeObjectFromMetricsAtIndex(4);
    EXPECT_EQ(f.font->countOfMetrics(), 4u);

    auto second = VLFontMaster::initFast();
    second->setId(std::string("m02"));
    f.font->addFontMaster(second);
    auto descender = f.add(VLMetric::TypeDescender, -200);
    EXPECT_EQ(second->metricValueForId(descender->id())->position(), 0) << "every master gets a value";
    EXPECT_EQ(f.master->metricValueForId(descender->id())->position(), -200) << "and keeps its own";

    struct List {
        size_t (VLFont::*count)() const;
        std::shared_ptr<VLMetric> (VLFont::*at)(size_t) const;
        void (VLFont::*insert)(const std::shared_ptr<VLMetric>&, size_t);
        void (VLFont::*remove)(const std::shared_ptr<VLMetric>&);
        void (VLFont::*removeAt)(size_t);
        void (VLFont::*add)(const std::shared_ptr<VLMetric>&);
        std::shared_ptr<VLMetric> (VLFont::*forName)(const std::string&) const;
        std::shared_ptr<VLMetric> (VLFont::*forId)(const std::string&) const;
    };
    for (List list : {List{&VLFont::countOfStems, &VLFont::objectInStemsAtIndex, &VLFont::insertObject_inStemsAtIndex,
                           &VLFont::removeObjectFromStems, &VLFont::removeObjectFromStemsAtIndex, &VLFont::addStem,
                           &VLFont::stemForName, &VLFont::stemForId},
                      List{&VLFont::countOfNumbers, &VLFont::objectInNumbersAtIndex,
                           &VLFont::insertObject_inNumbersAtIndex, &VLFont::removeObjectFromNumbers,
                           &VLFont::removeObjectFromNumbersAtIndex, &VLFont::addNumber, &VLFont::numberForName,
                           &VLFont::numberForId}}) {
        VLFont& font = *f.font;
        auto a = VLMetric::initWithHorizontal_index(true, 0), b = VLMetric::initWithHorizontal_index(true, 1);
        (font.*list.add)(a);
        (font.*list.insert)(b, 0);
        EXPECT_EQ((font.*list.at)(0), b);
        EXPECT_EQ(b->font(), f.font);
        EXPECT_EQ((font.*list.forName)("hStem0"), a);
        EXPECT_EQ((font.*list.forId)(b->id()), b);
        EXPECT_EQ((font.*list.forName)("vStem0"), nullptr);
        (font.*list.remove)(b);
        EXPECT_EQ((font.*list.at)(0), a);
        (font.*list.removeAt)(0);
        EXPECT_EQ((font.*list.count)(), 0u);
    }
}

TEST(Metrics, SortingPutsFilteredMetricsLastAndOrdersByPosition)
{
    MetricFont f;
    auto origin = f.add(VLMetric::TypeNone, 0, "Origin");
    auto filtered = f.add(VLMetric::TypeXHeight, 100, std::nullopt, smallCaps);
    auto ascender = f.add(VLMetric::TypeAscender, 800);
    auto descender = f.add(VLMetric::TypeDescender, -200);
    auto lowFiltered = f.add(VLMetric::TypeXHeight, 50, std::nullopt, smallCaps);
    auto baseline = f.add(VLMetric::TypeBaseline, 0);
    f.font->sortMetrics();
    EXPECT_EQ(f.font->metrics(), (VLFont::Metrics{descender, origin, baseline, ascender, lowFiltered, filtered}))
        << "metrics at one height keep their order";
}

TEST(Metrics, MastersStoreValuesAndDefaults)
{
    MetricFont f;
    auto ascender = f.add(VLMetric::TypeAscender, 700);
    auto missing = VLMetric::init();
    f.font->insertObject_inMetricsAtIndex(missing, 0);
    auto values = f.master->metrics();
    ASSERT_EQ(values.size(), 2u);
    EXPECT_EQ(values[0], f.master->metricValueForId(missing->id())) << "a missing value is made and kept";
    EXPECT_EQ(values[0]->metric(), missing);
    EXPECT_EQ(values[1]->position(), 700);
    EXPECT_EQ(values[1]->parent(), f.master.get());

    auto other = VLFontMaster::initFast();
    other->setMetricValues({{"x", VLMetricValue::initWithPosition(3)}});
    EXPECT_EQ(other->metricValueForId("x")->parent(), other.get());

    auto stored = f.master->setMetricPosition_overshoot_type_name_filter(560, 12, VLMetric::TypeXHeight, std::nullopt,
                                                                         smallCaps);
    EXPECT_EQ(f.font->countOfMetrics(), 3u);
    auto again = f.master->setMetricPosition_overshoot_type_name_filter(570, 12, VLMetric::TypeXHeight, std::nullopt,
                                                                        smallCaps);
    EXPECT_EQ(f.font->countOfMetrics(), 3u) << "the metric is found again";
    EXPECT_NE(stored, again);
    EXPECT_EQ(f.font->metrics()[2]->filterString(), smallCaps);

    f.master->setDefaultMetric_overshoot_forType(710, 14, VLMetric::TypeAscender);
    f.master->setDefaultMetric_forType(720, VLMetric::TypeAscender);
    auto value = f.master->metricValueForId(ascender->id());
    EXPECT_EQ(value->position(), 720);
    EXPECT_EQ(value->overshoot(), 14) << "an unset overshoot leaves the stored one";
    using Setter = void (VLFontMaster::*)(double);
    using Getter = double (VLFontMaster::*)();
    const std::vector<std::tuple<uint8_t, Setter, Getter>> cached = {
        {VLMetric::TypeAscender, &VLFontMaster::setDefaultAscender, &VLFontMaster::defaultAscender},
        {VLMetric::TypeDescender, &VLFontMaster::setDefaultDescender, &VLFontMaster::defaultDescender},
        {VLMetric::TypeCapHeight, &VLFontMaster::setDefaultCapHeight, &VLFontMaster::defaultCapHeight},
        {VLMetric::TypeXHeight, &VLFontMaster::setDefaultXHeight, &VLFontMaster::defaultXHeight},
        {VLMetric::TypeItalicAngle, &VLFontMaster::setDefaultItalicAngle, &VLFontMaster::defaultItalicAngle}};
    for (auto [type, set, get] : cached) {
        VLFontMaster& master = *f.master;
        (master.*get)();
        (master.*set)(-7);
        EXPECT_EQ((master.*get)(), -7) << "the cache is written through for type " << int(type);
        EXPECT_EQ(master.defaultMetricForType(type), -7);
    }
    EXPECT_EQ(f.font->countOfMetrics(), 7u);

    MetricFont large;
    large.font->setUnitsPerEm(2048);
    large.master->addDefaultMetrics();
    const double scale = 2.048;
    std::vector<std::tuple<uint8_t, double, double>> expected = {
        {VLMetric::TypeAscender, 800 * scale, 16 * scale},   {VLMetric::TypeCapHeight, 700 * scale, 16 * scale},
        {VLMetric::TypeXHeight, 500 * scale, 16 * scale},    {VLMetric::TypeBaseline, 0, -16 * scale},
        {VLMetric::TypeDescender, -200 * scale, -16 * scale}, {VLMetric::TypeItalicAngle, 0, 0}};
    ASSERT_EQ(large.font->countOfMetrics(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) {
        auto [type, position, overshoot] = expected[i];
        auto metric = large.font->objectInMetricsAtIndex(i);
        EXPECT_EQ(metric->type(), type);
        EXPECT_DOUBLE_EQ(large.master->metricValueForId(metric->id())->position(), position);
        EXPECT_DOUBLE_EQ(large.master->metricValueForId(metric->id())->overshoot(), overshoot);
    }
    large.master->addDefaultMetrics();
    EXPECT_EQ(large.font->countOfMetrics(), expected.size()) << "a second call finds the metrics again";
}

TEST(Metrics, PointsOnMetricLines)
{
    MetricFont f;
    auto xHeight = f.add(VLMetric::TypeXHeight, 500, std::nullopt, nullptr, 12);
    f.add(VLMetric::TypeXHeight, 560, std::nullopt, smallCaps, -10);
    f.add(VLMetric::TypeDescender, -200, std::nullopt, nullptr, -15);
    f.add(VLMetric::TypeItalicAngle, 12);
    f.add(VLMetric::TypeNone, 620, "Shoulder");
    f.add(VLMetric::TypeNone, 640, "Hip");
    auto lower = f.layer("a", 2);
    auto smallCap = f.layer("a.sc", 3);
    auto mark = f.layer("acutecomb", 0, "Mark");

    EXPECT_TRUE(f.master->isOnMetricsLine_layer({300, -0.4}, lower.get()));
    EXPECT_TRUE(f.master->isOnMetricsLine_layer({300, 500.4}, lower.get()));
    EXPECT_FALSE(f.master->isOnMetricsLine_layer({300, 500.6}, lower.get()));
    EXPECT_FALSE(f.master->isOnMetricsLine_layer({300, 560}, lower.get())) << "another glyph's filter";
    EXPECT_TRUE(f.master->isOnMetricsLine_layer({300, 560}, smallCap.get()));
    EXPECT_FALSE(f.master->isOnMetricsLine_layer({300, 12}, lower.get())) << "an angle is no line";
    EXPECT_TRUE(f.master->isOnMetricsLine_layer({0.05, 300}, mark.get())) << "a mark's origin";
    EXPECT_FALSE(f.master->isOnMetricsLine_layer({0.05, 300}, lower.get()));
    EXPECT_FALSE(f.master->isOnMetricsLine_layer({0.2, 300}, mark.get()));
    EXPECT_FALSE(f.master->isOnMetricsLine_layer({300, 500}, nullptr));

    auto values = f.master->metrics();
    values.push_back(VLMetricValue::initWithPosition(700));
    auto orphan = VLMetricValue::initWithPosition(720);
    orphan->setMetric(xHeight);
    values.push_back(orphan);
    auto onMetrics = [&](double y, const VLLayer* layer) {
        return VLFontMaster::isOnMetrics_metrics_inLayer(y, values, layer);
    };
    EXPECT_EQ(onMetrics(0.3, lower.get()), 1);
    EXPECT_EQ(onMetrics(-199.6, lower.get()), 1);
    EXPECT_EQ(onMetrics(506, lower.get()), 2) << "within an upward overshoot";
    EXPECT_EQ(onMetrics(512, lower.get()), 2);
    EXPECT_EQ(onMetrics(513, lower.get()), -1);
    EXPECT_EQ(onMetrics(-210, lower.get()), 2) << "within a downward overshoot";
    EXPECT_EQ(onMetrics(-215, lower.get()), 2);
    EXPECT_EQ(onMetrics(-216, lower.get()), -1);
    EXPECT_EQ(onMetrics(640, lower.get()), 1) << "named metrics are each their own";
    EXPECT_EQ(onMetrics(700, lower.get()), 1) << "values of no metric or no master count as they are";
    EXPECT_EQ(onMetrics(720, lower.get()), 1);
    EXPECT_EQ(onMetrics(555, lower.get()), -1) << "a filter that doesn't take the glyph";
    EXPECT_EQ(onMetrics(555, smallCap.get()), 2);
    EXPECT_EQ(onMetrics(506, smallCap.get()), -1) << "the plain x-height is secondary for small caps";
    EXPECT_EQ(onMetrics(506, nullptr), 2) << "without a layer nothing is secondary";
}

TEST(Metrics, GlyphMetricsComeFromTheAssociatedMaster)
{
    PathInFont f(0);
    auto master = f.font->fontMasterAtIndex(0);
    master->setDefaultAscender(750);
    master->setDefaultDescender(-250);
    f.layer->setWidth(432);
    VLGlyphMetrics metrics = f.layer->glyphMetrics();
    EXPECT_EQ(metrics.width, 432);
    EXPECT_EQ(metrics.ascender, 750);
    EXPECT_EQ(metrics.descender, -250);
    EXPECT_EQ(metrics.italicAngle, 0);

    f.layer->setVertWidth(900);
    VLGlyphMetrics vertical = f.layer->glyphMetricsForDirection(4);
    EXPECT_EQ(vertical.descender, 750 - 900);
    EXPECT_EQ(vertical.vertWidth, 900);
}
