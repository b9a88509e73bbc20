#include "proof/ProofDocument.h"

#include "platform/Color.h"
#include "platform/GraphicsContext.h"
#include "thumbnail/ThumbnailCommand.h"
#include "thumbnail/ThumbnailOutput.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>

namespace {

// A label's height as a share of a line of text, never smaller than a readable size.
constexpr double labelShareOfLine = 0.25;
constexpr double smallestLabel = 8.0;

struct PageLayout {
    double scale;
    double labelSize;
    Size size;
};

double labelRoom(const ProofBlock& block, double labelSize)
{
    return block.label.empty() ? 0.0 : labelSize * 1.6;
}

Size pageSize(const ProofPage& page, double scale, double labelSize)
{
    Size size{0.0, 0.0};
    for (const auto& block : page) {
        size.width = std::max(size.width, block.size.width * scale);
        size.height += block.size.height * scale + labelRoom(block, labelSize);
    }
    return size;
}

// Every page as large as the largest, in output units.
Size largestPageSize(const ProofPages& pages, double scale, double labelSize)
{
    Size largest{1.0, 1.0};
    for (const auto& page : pages) {
        Size size = pageSize(page, scale, labelSize);
        largest = {std::max(largest.width, size.width), std::max(largest.height, size.height)};
    }
    return {std::ceil(largest.width), std::ceil(largest.height)};
}

bool drawPage(const ProofPage& page, const PageLayout& layout)
{
    GraphicsContext& context = *GraphicsContext::current();
    context.paint(Color::colorWithDeviceWhite_alpha(1.0, 1.0));
    bool drawn = false;
    double top = layout.size.height;
    for (const auto& block : page) {
        double room = labelRoom(block, layout.labelSize);
        if (!block.label.empty()) ProofShowText(block.label, {layout.labelSize * 0.6, top - layout.labelSize * 1.2}, layout.labelSize);
        top -= room + block.size.height * layout.scale;
        context.saveGraphicsState();
        AffineTransform place;
        place.translateXBy_yBy(0.0, top);
        place.scaleBy(layout.scale);
        context.concatTransform(place);
        Color::blackColor().set();
        drawn = block.draw(layout.scale) || drawn;
        context.restoreGraphicsState();
    }
    return drawn;
}

// All pages under each other on one page.
ProofPage stacked(const ProofPages& pages)
{
    ProofPage all;
    for (const auto& page : pages) all.insert(all.end(), page.begin(), page.end());
    return all;
}

PageLayout layoutFor(const ProofPages& pages, double scale, double size)
{
    double labelSize = std::max(smallestLabel, size * labelShareOfLine);
    return {scale, labelSize, largestPageSize(pages, scale, labelSize)};
}

int nothingDrawn()
{
    std::fprintf(stderr, "velmor-proof: nothing was drawn\n");
    return ThumbnailCommandExitNothingDrawn;
}

int cannotWrite(const std::string& output)
{
    std::fprintf(stderr, "velmor-proof: can't write %s: %s\n", output.c_str(), std::strerror(errno ? errno : EIO));
    return ThumbnailCommandExitCannotWrite;
}

int writePNG(const ProofPage& page, const ProofOptions& options, double scale)
{
    PageLayout layout = layoutFor({page}, scale, options.size);
    double shrink = ProofPictureShrink(layout.size);
    if (shrink < 1.0) {
        layout = layoutFor({page}, scale * shrink, options.size * shrink);
        std::fprintf(stderr, "velmor-proof: drawn at %.0f pixels a line to stay within %.0f million pixels\n",
                     options.size * shrink, ProofLargestPicturePixels / 1e6);
    }
    int width = static_cast<int>(layout.size.width), height = static_cast<int>(layout.size.height);
    GraphicsContext context(width, height);
    bool drawn;
    {
        GraphicsContext::Current current(context);
        drawn = drawPage(page, layout);
    }
    if (!drawn) return nothingDrawn();
    std::vector<uint8_t> png = context.encodePNG(width, height);
    if (png.empty() || !writeThumbnailOutput(options.output, png)) return cannotWrite(options.output);
    return 0;
}

// A vector document is written beside the output and renamed when it is whole.
int writeVector(const ProofPages& pages, const ProofOptions& options, double scale)
{
    PageLayout layout = layoutFor(pages, scale, options.size);
    std::string partial = options.output + ".part";
    auto format = options.format == ProofOptions::Format::SVG ? GraphicsContext::DocumentFormat::SVG
                                                              : GraphicsContext::DocumentFormat::PDF;
    bool drawn = false, written;
    {
        GraphicsContext context(format, partial, layout.size.width, layout.size.height);
        if (context.isValid()) {
            GraphicsContext::Current current(context);
            for (const auto& page : pages) {
                drawn = drawPage(page, layout) || drawn;
                context.showPage();
            }
        }
        written = context.finish();
    }
    int status = !written ? cannotWrite(options.output) : !drawn ? nothingDrawn() : 0;
    if (status == 0 && std::rename(partial.c_str(), options.output.c_str()) != 0) status = cannotWrite(options.output);
    if (status != 0) std::remove(partial.c_str());
    return status;
}

} // namespace

double ProofPictureShrink(Size pixels, double largestPixels, double largestSide)
{
    return std::min({1.0, std::sqrt(largestPixels / (pixels.width * pixels.height)),
                     largestSide / std::max(pixels.width, pixels.height)});
}

int writeProofPages(const ProofPages& pages, const ProofOptions& options, double outputUnitsPerFontUnit)
{
    if (options.format == ProofOptions::Format::PNG) return writePNG(stacked(pages), options, outputUnitsPerFontUnit);
    if (options.format == ProofOptions::Format::SVG)
        return writeVector({stacked(pages)}, options, outputUnitsPerFontUnit);
    return writeVector(pages, options, outputUnitsPerFontUnit);
}
