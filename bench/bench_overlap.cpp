// Removing overlaps: a glyph of 5 contours and 200 segments, 200 contours that overlap, and
// a row of overlapping pairs, to show how the time grows with segments that do not all meet.

#include "outline/VLNode.h"
#include "outline/VLPath.h"
#include "outline/VLPathOperator.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <numbers>

namespace {

// A ring of cubics around the centre, wobbling so that neighbours overlap at their curves.
std::shared_ptr<VLPath> blob(Point centre, double radius, int curves)
{
    auto path = VLPath::init();
    double step = 2 * std::numbers::pi / curves, handle = radius * 4.0 / 3.0 * std::tan(step / 4);
    for (int i = 1; i <= curves; ++i) {
        double a0 = step * (i - 1), a1 = step * i;
        double r0 = radius * (1 + 0.1 * std::sin(3 * a0)), r1 = radius * (1 + 0.1 * std::sin(3 * a1));
        Point from{centre.x + r0 * std::cos(a0), centre.y + r0 * std::sin(a0)};
        Point to{centre.x + r1 * std::cos(a1), centre.y + r1 * std::sin(a1)};
        path->addNodeFastWithPosition_type_connection({from.x - handle * std::sin(a0), from.y + handle * std::cos(a0)},
                                                      VLNodeType::OFFCURVE, 0);
        path->addNodeFastWithPosition_type_connection({to.x + handle * std::sin(a1), to.y - handle * std::cos(a1)},
                                                      VLNodeType::OFFCURVE, 0);
        path->addNodeFastWithPosition_type_connection(to, VLNodeType::CURVE, 0);
    }
    path->setClosed(true);
    return path;
}

void removeOverlaps(benchmark::State& state, const std::vector<std::shared_ptr<VLShape>>& shapes, size_t segments)
{
    for (auto _ : state) {
        auto work = shapes;
        if (!VLPathOperator::removeOverlapPaths(work)) return state.SkipWithError("the overlaps were not removed");
        benchmark::DoNotOptimize(work);
    }
    state.SetItemsProcessed(state.iterations() * long(segments));
}

// Five contours of 40 curves each, overlapping like the strokes of a letter.
void BM_RemoveOverlapGlyph(benchmark::State& state)
{
    std::vector<std::shared_ptr<VLShape>> shapes;
    for (int i = 0; i < 5; ++i) shapes.push_back(blob({300.0 + 120 * i, 400.0 + 60 * (i % 2)}, 200, 40));
    removeOverlaps(state, shapes, 200);
}
BENCHMARK(BM_RemoveOverlapGlyph)->Unit(benchmark::kMicrosecond);

// 200 contours of 8 curves in a grid, each overlapping its neighbours on all sides, so that the
// union is one outline with 171 counters.
void BM_RemoveOverlapStress(benchmark::State& state)
{
    std::vector<std::shared_ptr<VLShape>> shapes;
    for (int i = 0; i < 200; ++i) shapes.push_back(blob({300.0 * (i % 20), 300.0 * (i / 20)}, 200, 8));
    removeOverlaps(state, shapes, 1600);
}
BENCHMARK(BM_RemoveOverlapStress)->Unit(benchmark::kMillisecond);

// Pairs of overlapping contours of 8 curves in rows of 16, 16 segments a pair: shapes that do
// not all meet, so the time should grow with the segments, not their square. The rows keep the
// nodes inside the 32,000 units that a node may have.
void BM_RemoveOverlapRow(benchmark::State& state)
{
    std::vector<std::shared_ptr<VLShape>> shapes;
    for (long i = 0; i < state.range(0) / 16; ++i) {
        Point at{1000.0 * double(i % 16), 1000.0 * double(i / 16)};
        shapes.push_back(blob(at, 200, 8));
        shapes.push_back(blob({at.x + 200, at.y}, 200, 8));
    }
    removeOverlaps(state, shapes, size_t(state.range(0)));
}
BENCHMARK(BM_RemoveOverlapRow)->RangeMultiplier(2)->Range(400, 6400)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
