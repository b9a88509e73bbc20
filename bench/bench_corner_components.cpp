// The outline of a layer that carries 50 corner components, made afresh each time: a star of 25
// points whose every node, outer and inner, takes the ink trap of examples/Velmor-Corners.velmor.
// The star stands in the layer of "A", where the document's corner glyphs are found.

#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "outline/VLHint.h"
#include "outline/VLNode.h"
#include "outline/VLPath.h"
#include "platform/BezierPath.h"
#include "platform/VLError.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <numbers>

namespace {

const char* const cornersDocument = VELMOR_EXAMPLES "/Velmor-Corners.velmor";
constexpr size_t cornerCount = 50;

// Outer and inner points in turn, far enough apart that each ink trap fits on its segments.
std::shared_ptr<VLPath> star()
{
    auto path = VLPath::init();
    for (size_t i = 0; i < cornerCount; ++i) {
        double radius = i % 2 ? 1500 : 2000, angle = 2 * std::numbers::pi * double(i) / cornerCount;
        path->addNodeFastWithPosition_type_connection({radius * std::cos(angle), radius * std::sin(angle)},
                                                      VLNodeType::LINE, 0);
    }
    path->setClosed(true);
    return path;
}

VLLayer::Hints inkTraps()
{
    VLLayer::Hints hints;
    for (size_t i = 0; i < cornerCount; ++i) {
        auto hint = VLHint::init();
        hint->setType(VLHintType::Corner);
        hint->setName("_corner.inktrap");
        hint->setOriginIndex({0, i});
        hints.push_back(hint);
    }
    return hints;
}

void BM_CornerComponentsOutline(benchmark::State& state)
{
    VLError error;
    auto font = VLFont::initWithURL_error(cornersDocument, &error);
    auto glyph = font ? font->glyphForName("A") : nullptr;
    auto layer = glyph ? glyph->layerForId("m01") : nullptr;
    if (!layer) return state.SkipWithError(("can't read A of " + std::string(cornersDocument)).c_str());
    layer->setShapes({star()});
    layer->setHintsFast(inkTraps());
    auto outline = layer->bezierPath();
    // Every corner adds two nodes to the star's contour, less where the walk cuts a step off
    // between two corners; near the star's own count means they were not drawn.
    if (!outline || outline->elementCount() < long(5 * cornerCount / 2)) return state.SkipWithError("the corners don't draw");
    for (auto _ : state) {
        layer->setNeedUpdateShapes();
        benchmark::DoNotOptimize(layer->bezierPath());
    }
    state.SetItemsProcessed(state.iterations() * long(cornerCount));
}
BENCHMARK(BM_CornerComponentsOutline)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
