// The platform entry on Linux: a thumbnailer command in the freedesktop manner.
//   velmor-thumbnailer [-s SIZE] [--full-context] INPUT OUTPUT

#include "platform/GraphicsContext.h"
#include "thumbnail/ThumbnailProvider.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int exitUsage = 64;
constexpr int exitNothingDrawn = 2;
constexpr int exitCannotWrite = 74;
constexpr long largestSize = 4096;

const char* usageText =
    "usage: velmor-thumbnailer [-s SIZE] [--full-context] INPUT OUTPUT\n"
    "\n"
    "Draws a thumbnail of the font source document INPUT as the PNG file OUTPUT.\n"
    "\n"
    "  -s SIZE          largest width and height of the picture in pixels (default 256)\n"
    "  --full-context   write the whole SIZE by SIZE context, not just the part the picture covers\n"
    "  --help           show this text\n"
    "  --version        show the version\n"
    "\n"
    "Exit status: 0 written, 1 the document can't be read, 2 nothing to show,\n"
    "64 usage error, 74 the output can't be written.\n";

struct Options {
    long size = 256;
    bool fullContext = false;
    std::string input;
    std::string output;
};

int usageError(const char* message)
{
    std::fprintf(stderr, "velmor-thumbnailer: %s\n%s", message, usageText);
    return exitUsage;
}

bool parseSize(const char* text, long& size)
{
    char* end = nullptr;
    size = std::strtol(text, &end, 10);
    return end != text && *end == '\0' && size >= 1 && size <= largestSize;
}

// Returns -1 when the options are good, otherwise the exit status.
int parseOptions(int argc, char** argv, Options& options)
{
    std::vector<std::string> operands;
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        if (arg == "--help") {
            std::fputs(usageText, stdout);
            return 0;
        }
        if (arg == "--version") {
            std::printf("velmor-thumbnailer %s\n", VELMOR_VERSION);
            return 0;
        }
        if (arg == "--full-context") {
            options.fullContext = true;
        } else if (arg == "-s") {
            if (++i == argc) return usageError("-s needs a size");
            if (!parseSize(argv[i], options.size)) return usageError("the size must be a whole number from 1 to 4096");
        } else if (arg.size() > 1 && arg[0] == '-') {
            return usageError(("unknown option " + arg).c_str());
        } else {
            operands.push_back(arg);
        }
    }
    if (operands.size() != 2) return usageError("INPUT and OUTPUT are needed");
    options.input = operands[0];
    options.output = operands[1];
    return -1;
}

std::string describeError(const VLError& error)
{
    if (!error.userInfo.empty()) return error.localizedDescription();
    if (error.code == ThumbnailProvider::errorCodeNothingToShow) return "The document has nothing to show.";
    return "The document could not be read.";
}

bool writeAll(int fd, const std::vector<uint8_t>& bytes)
{
    size_t done = 0;
    while (done < bytes.size()) {
        ssize_t n = write(fd, bytes.data() + done, bytes.size() - done);
        if (n <= 0) return false;
        done += static_cast<size_t>(n);
    }
    return true;
}

// A thumbnail service that made the output file itself, empty, reads it back through the handle it
// keeps; the picture must go into that very file, and the service waits for us before reading.
bool writeIntoEmptyOutput(const std::string& output, const std::vector<uint8_t>& png)
{
    struct stat status;
    if (stat(output.c_str(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size != 0) return false;
    int fd = open(output.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
    if (fd < 0) return false;
    bool written = writeAll(fd, png);
    return close(fd) == 0 && written;
}

// Anywhere else the PNG is written beside the output and renamed, so that nobody ever sees half
// of it.
bool writeAtomically(const std::string& output, const std::vector<uint8_t>& png)
{
    std::string temporary = output + ".XXXXXX";
    int fd = mkstemp(temporary.data());
    if (fd < 0) return false;
    // A thumbnail is an ordinary file; mkstemp alone would leave it private.
    fchmod(fd, 0644);
    bool written = writeAll(fd, png);
    if (close(fd) == 0 && written && std::rename(temporary.c_str(), output.c_str()) == 0) return true;
    std::remove(temporary.c_str());
    return false;
}

int render(const ThumbnailReply& reply, const Options& options)
{
    int side = static_cast<int>(options.size);
    GraphicsContext context(side, side);
    bool drawn;
    {
        GraphicsContext::Current current(context);
        drawn = reply.draw();
    }
    if (!drawn) {
        std::fprintf(stderr, "velmor-thumbnailer: nothing was drawn\n");
        return exitNothingDrawn;
    }
    int width = side;
    int height = side;
    if (!options.fullContext) {
        width = std::clamp(static_cast<int>(std::ceil(reply.coveredSize().width)), 1, side);
        height = std::clamp(static_cast<int>(std::ceil(reply.coveredSize().height)), 1, side);
    }
    std::vector<uint8_t> png = context.encodePNG(width, height);
    if (!png.empty() && (writeIntoEmptyOutput(options.output, png) || writeAtomically(options.output, png))) return 0;
    std::fprintf(stderr, "velmor-thumbnailer: can't write %s: %s\n", options.output.c_str(), std::strerror(errno));
    return exitCannotWrite;
}

int thumbnail(const Options& options)
{
    double side = static_cast<double>(options.size);
    ThumbnailRequest request(options.input, {side, side});
    int status = 1;
    ThumbnailProvider().provideThumbnailForFileRequest_completionHandler(
        request, [&](std::shared_ptr<ThumbnailReply> reply, std::optional<VLError> error) {
            if (reply) {
                status = render(*reply, options);
                return;
            }
            std::fprintf(stderr, "velmor-thumbnailer: %s error %ld: %s\n", error->domain.c_str(), error->code,
                         describeError(*error).c_str());
            status = static_cast<int>(error->code);
        });
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    Options options;
    if (int status = parseOptions(argc, argv, options); status >= 0) return status;
    // What the service does not catch (an exception of the drawing block, memory running out under
    // a file browser's limit) still ends as a failed request, never as an abort.
    try {
        return thumbnail(options);
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "velmor-thumbnailer: %s\n", exception.what());
        return 1;
    }
}
