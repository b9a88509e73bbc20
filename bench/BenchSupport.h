#pragma once

#include "platform/GraphicsContext.h"
#include "thumbnail/ThumbnailProvider.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ;

// The generated documents, by the paths bench/CMakeLists.txt gives them, and the smallest example.
inline const char* const benchTextDocument = VELMOR_BENCH_TEXT;
inline const char* const benchPackageDocument = VELMOR_BENCH_PACKAGE;
inline const char* const benchRealSizeDocument = VELMOR_BENCH_REAL_SIZE;
inline const char* const benchSmallestDocument = VELMOR_EXAMPLES "/Velmor-Sample.velmor";

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

inline double benchSecondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

struct BenchChildRun {
    int status = -1;
    long maxResidentKiB = 0;
    double seconds = 0;     // wall time
    double cpuSeconds = 0;  // user and system time of the child
};

// Runs the command with these arguments and its messages discarded: its own figures, not those of
// earlier children.
inline BenchChildRun benchRunCommand(std::vector<const char*> arguments)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    arguments.insert(arguments.begin(), VELMOR_THUMBNAILER);
    arguments.push_back(nullptr);
    char** argv = const_cast<char**>(arguments.data());
    pid_t pid;
    BenchChildRun run;
    auto start = std::chrono::steady_clock::now();
    if (posix_spawn(&pid, argv[0], &actions, nullptr, argv, environ) == 0) {
        struct rusage usage;
        if (wait4(pid, &run.status, 0, &usage) == pid) {
            run.seconds = benchSecondsSince(start);
            run.maxResidentKiB = usage.ru_maxrss;
            auto seconds = [](const timeval& t) { return static_cast<double>(t.tv_sec) + t.tv_usec / 1e6; };
            run.cpuSeconds = seconds(usage.ru_utime) + seconds(usage.ru_stime);
        }
    }
    posix_spawn_file_actions_destroy(&actions);
    return run;
}

// What a file browser runs for one thumbnail: `velmor-thumbnailer -s 256 DOCUMENT PNG`.
inline BenchChildRun benchRunThumbnailCommand(const char* document, const std::string& png)
{
    return benchRunCommand({"-s", "256", document, png.c_str()});
}
