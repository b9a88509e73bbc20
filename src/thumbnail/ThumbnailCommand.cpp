#include "thumbnail/ThumbnailCommand.h"

#include "platform/GraphicsContext.h"
#include "thumbnail/ThumbnailOutput.h"
#include "thumbnail/ThumbnailProvider.h"

#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>

namespace {

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

int usageError(const std::string& message)
{
    std::fprintf(stderr, "velmor-thumbnailer: %s\n%s", message.c_str(), usageText);
    return ThumbnailCommandExitUsage;
}

bool parseSize(const char* text, long& size)
{
    char* end = nullptr;
    size = std::strtol(text, &end, 10);
    return end != text && *end == '\0' && size >= 1 && size <= ThumbnailCommandLargestSize;
}

std::string describeError(const VLError& error)
{
    if (!error.userInfo.empty()) return error.localizedDescription();
    if (error.code == ThumbnailProvider::errorCodeNothingToShow) return "The document has nothing to show.";
    return "The document could not be read.";
}

// Pixels of the PNG along one side: the covered part, rounded up, within 1 and the context's side.
int pixelsCovered(double covered, int side)
{
    if (!(covered > 1)) return 1;
    if (covered >= side) return side;
    return static_cast<int>(std::ceil(covered));
}

int encode(const ThumbnailReply& reply, const ThumbnailCommandOptions& options, std::vector<uint8_t>& png)
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
        return ThumbnailCommandExitNothingDrawn;
    }
    int width = options.fullContext ? side : pixelsCovered(reply.coveredSize().width, side);
    int height = options.fullContext ? side : pixelsCovered(reply.coveredSize().height, side);
    png = context.encodePNG(width, height);
    // Encoding fails only when cairo runs out of memory, as the request would have.
    if (png.empty()) throw std::bad_alloc();
    return 0;
}

int run(const ThumbnailCommandOptions& options)
{
    std::vector<uint8_t> png;
    int status = renderThumbnailCommand(options, png);
    if (status != 0) return status;
    if (writeThumbnailOutput(options.output, png)) return 0;
    std::fprintf(stderr, "velmor-thumbnailer: can't write %s: %s\n", options.output.c_str(), std::strerror(errno));
    return ThumbnailCommandExitCannotWrite;
}

} // namespace

int parseThumbnailCommandOptions(int argc, char** argv, ThumbnailCommandOptions& options)
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
            return usageError("unknown option " + arg);
        } else {
            operands.push_back(arg);
        }
    }
    if (operands.size() != 2) return usageError("INPUT and OUTPUT are needed");
    options.input = operands[0];
    options.output = operands[1];
    return -1;
}

int renderThumbnailCommand(const ThumbnailCommandOptions& options, std::vector<uint8_t>& png)
{
    double side = static_cast<double>(options.size);
    int status = ThumbnailCommandExitUnreadable;
    ThumbnailProvider().provideThumbnailForFileRequest_completionHandler(
        ThumbnailRequest(options.input, {side, side}),
        [&](std::shared_ptr<ThumbnailReply> reply, std::optional<VLError> error) {
            if (reply) {
                status = encode(*reply, options, png);
                return;
            }
            std::fprintf(stderr, "velmor-thumbnailer: %s error %ld: %s\n", error->domain.c_str(), error->code,
                         describeError(*error).c_str());
            status = static_cast<int>(error->code);
        });
    return status;
}

int runThumbnailCommand(int argc, char** argv)
{
    ThumbnailCommandOptions options;
    if (int status = parseThumbnailCommandOptions(argc, argv, options); status >= 0) return status;
    // Beyond a file-size limit the write fails, and the output is left as it was, instead of the
    // signal ending the command halfway.
    std::signal(SIGXFSZ, SIG_IGN);
    // What the service does not catch (an exception of the drawing block, memory running out under
    // a file browser's limit) still ends as a failed request, never as an abort.
    try {
        return run(options);
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "velmor-thumbnailer: %s\n", exception.what());
        return ThumbnailCommandExitUnreadable;
    }
}
