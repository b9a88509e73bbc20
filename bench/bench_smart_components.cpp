// The layer of one smart component at its part values, made afresh each time: the choice of the
// smart glyph's layers and their factors, and their sum. The component is the left leg of "A" in
// examples/Velmor-Smart.velmor, a stem of four layers on two part axes; each of the three models
// the font can choose is measured.

#include "model/VLCustomParameter.h"
#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "outline/VLComponent.h"
#include "platform/VLError.h"

#include <benchmark/benchmark.h>

namespace {

const char* const smartDocument = VELMOR_EXAMPLES "/Velmor-Smart.velmor";

void BM_SmartComponentLayer(benchmark::State& state, const char* model)
{
    VLError error;
    auto font = VLFont::initWithURL_error(smartDocument, &error);
    if (!font) return state.SkipWithError(("can't read " + std::string(smartDocument)).c_str());
    if (*model) font->addCustomParameter(VLCustomParameter::initWithName_value(std::string(model), Value(true)));
    auto a = font->glyphForName("A");
    auto layer = a ? a->layerForId("regular") : nullptr;
    auto component = layer ? std::dynamic_pointer_cast<VLComponent>(layer->objectInShapesAtIndex(0)) : nullptr;
    if (!component || component->pieceSettings().empty()) return state.SkipWithError("no smart component in A");
    const ValueDictionary settings = component->pieceSettings();
    if (!component->componentLayer()) return state.SkipWithError("the component shows no layer");
    for (auto _ : state) {
        // New settings drop the layer made for the old ones.
        component->setPieceSettings(settings);
        benchmark::DoNotOptimize(component->componentLayer());
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK_CAPTURE(BM_SmartComponentLayer, solver, "")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_SmartComponentLayer, weights, "Smart Components MM Mode")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_SmartComponentLayer, deltas, "Smart Components Compatibility Mode")->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
