#include "interpolation/VLCoefficientCache.h"
#include "model/VLAxis.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLInstance.h"

#include <benchmark/benchmark.h>

namespace {

// A font of two axes with masters on the corners and the centre, and an instance between them:
// the design space of a typical family.
struct FiveMasters {
    std::shared_ptr<VLFont> font = VLFont::init();
    std::shared_ptr<VLInstance> instance = VLInstance::init();

    FiveMasters()
    {
        const char* ids[] = {"a", "b"};
        for (const char* id : ids) {
            auto axis = VLAxis::initWithName_tag(id, id);
            axis->setAxisId(id);
            font->addAxis(axis);
        }
        std::vector<std::shared_ptr<VLFontMaster>> masters;
        const double places[][2] = {{100, 75}, {900, 75}, {100, 125}, {900, 125}, {400, 100}};
        for (const auto& place : places) {
            auto master = VLFontMaster::initFast();
            std::string id = "m";
            id += std::to_string(masters.size());
            master->setId(id);
            master->setAxisValueValue_forId(place[0], "a");
            master->setAxisValueValue_forId(place[1], "b");
            masters.push_back(master);
        }
        font->setFontMasters(masters);
        instance->setFont(font.get());
        instance->setAxisValueValue_forId(650, "a");
        instance->setAxisValueValue_forId(90, "b");
    }

    void factors() { benchmark::DoNotOptimize(instance->instanceInterpolations_axes(font->fontMasters(), font->axes())); }
};

void BM_InstanceFactorsColdCache(benchmark::State& state)
{
    FiveMasters space;
    for (auto _ : state) {
        VLCoefficientCache::removeAllEntries();
        space.factors();
    }
}

// What every glyph after the first of an instance costs.
void BM_InstanceFactorsWarmCache(benchmark::State& state)
{
    FiveMasters space;
    space.factors();
    for (auto _ : state) space.factors();
}

} // namespace

BENCHMARK(BM_InstanceFactorsColdCache)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_InstanceFactorsWarmCache)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
