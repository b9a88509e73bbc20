#pragma once

#include "platform/GraphicsContext.h"
#include "thumbnail/ThumbnailProvider.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

// The generated documents, by the paths bench/CMakeLists.txt gives them.
inline const char* const benchTextDocument = VELMOR_BENCH_TEXT;
inline const char* const benchPackageDocument = VELMOR_BENCH_PACKAGE;

// A benchmark over a missing document says how to make it instead of measuring a failure.
inline bool benchDocumentMissing(benchmark::State& state, const char* path)
{
    struct stat status;
    if (::stat(path, &status) == 0) return false;
    state.SkipWithError((std::string(path) + " is missing; `make bench-run` generates it").c_str());
    return true;
}

// A PNG file that lives as long as the object, for the pictures nobody looks at.
class BenchTemporaryPNG {
public:
    BenchTemporaryPNG()
    {
        int fd = mkstemps(_path.data(), 4);
        if (fd >= 0) close(fd);
    }
    ~BenchTemporaryPNG() { std::remove(_path.c_str()); }
    BenchTemporaryPNG(const BenchTemporaryPNG&) = delete;
    BenchTemporaryPNG& operator=(const BenchTemporaryPNG&) = delete;
    const std::string& path() const { return _path; }

private:
    std::string _path = "/tmp/velmor-bench-XXXXXX.png";
};

// What the command does for one document: import, layout, draw into a square context of `side`
// pixels and, when something was drawn, write the covered part as a PNG. Whether a picture came out.
inline bool benchThumbnail(const std::string& document, int side, const std::string& png)
{
    bool written = false;
    double size = side;
    ThumbnailProvider().provideThumbnailForFileRequest_completionHandler(
        ThumbnailRequest(document, {size, size}), [&](std::shared_ptr<ThumbnailReply> reply, std::optional<VLError>) {
            if (!reply) return;
            GraphicsContext context(side, side);
            bool drawn;
            {
                GraphicsContext::Current current(context);
                drawn = reply->draw();
            }
            if (!drawn) return;
            int width = std::clamp(static_cast<int>(std::ceil(reply->coveredSize().width)), 1, side);
            int height = std::clamp(static_cast<int>(std::ceil(reply->coveredSize().height)), 1, side);
            written = context.writePNG(png, width, height);
        });
    return written;
}
