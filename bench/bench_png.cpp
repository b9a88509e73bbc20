// Writing the thumbnail's PNG: a 256-pixel context with the sample document drawn into it.

#include "BenchSupport.h"

namespace {

void BM_EncodePNG(benchmark::State& state)
{
    constexpr int side = 256;
    GraphicsContext context(side, side);
    bool drawn = false;
    ThumbnailProvider().provideThumbnailForFileRequest_completionHandler(
        ThumbnailRequest(VELMOR_EXAMPLES "/Velmor-Sample.velmor", {side, side}),
        [&](std::shared_ptr<ThumbnailReply> reply, std::optional<VLError>) {
            GraphicsContext::Current current(context);
            drawn = reply && reply->draw();
        });
    if (!drawn) return state.SkipWithError("the sample document drew nothing");
    size_t size = 0;
    for (auto _ : state) size = context.encodePNG(side, side).size();
    state.counters["png_bytes"] = static_cast<double>(size);
}
BENCHMARK(BM_EncodePNG)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
