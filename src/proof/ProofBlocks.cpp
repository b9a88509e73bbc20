#include "proof/ProofBlocks.h"

#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "model/VLUTF8.h"
#include "platform/BezierPath.h"
#include "platform/GraphicsContext.h"
#include "proof/ProofProgress.h"
#include "thumbnail/VLFontLoader.h"
#include "thumbnail/VLTextSetting.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace {

constexpr double margin = VLFontLoader::margin;
// A glyph's cell in the grid, as a share of the em, and its name under it, as a share of a line.
constexpr double cellWidthInEms = 1.25;
constexpr double captionShareOfLine = 0.14;
constexpr double smallestCaption = 6.0;

struct VerticalMetrics {
    double ascender = 0.0;
    double descender = 0.0;
};

VerticalMetrics firstMasterMetrics(const VLFont& font)
{
    auto master = font.fontMasterAtIndex(0);
    if (!master) return {};
    return {master->defaultAscender(), master->defaultDescender()};
}

// Whether the layer's outline, moved to (x, y), was filled with something to show.
bool fillLayer(VLLayer& layer, double x, double y)
{
    auto path = layer.drawBezierPath();
    if (!path || path->isEmpty()) return false;
    AffineTransform move;
    move.translateXBy_yBy(x, y);
    path->transformUsingAffineTransform(move);
    path->fill();
    return path->elementCount() >= VLFontLoader::drawnSomethingElements;
}

} // namespace

void ProofShowText(const std::string& text, Point baselineStart, double pointSize)
{
    if (GraphicsContext* context = GraphicsContext::current())
        context->showText(encodeUTF8(decodeUTF8(text)), baselineStart, pointSize);
}

double ProofLineHeight(const VLFont& font)
{
    VerticalMetrics metrics = firstMasterMetrics(font);
    double height = metrics.ascender - metrics.descender;
    return height > 0 ? height : font.unitsPerEm();
}

ProofBlock ProofSampleSheetBlock(VLFontLoader& loader)
{
    loader.layoutPreview();
    return {"", loader.canvasSize(), [&loader](double) {
                loader.drawPreview();
                return !loader.cachedGlyphs().empty();
            }};
}

ProofBlock ProofTextBlock(VLFont& font, std::u32string_view text, VLTextStyle& style, std::string label)
{
    auto lines = VLSetText(font, text, style);
    double distance = ProofLineHeight(font) * (1.0 + VLFontLoader::previewLineGap);
    double widest = 0.0;
    for (const auto& line : lines) widest = std::max(widest, line.width);
    double bottom = margin - firstMasterMetrics(font).descender;
    Size size{widest + 2 * margin,
              2 * margin + ProofLineHeight(font) + static_cast<double>(lines.size() - 1) * distance};
    auto draw = [lines = std::move(lines), distance, bottom](double) {
        bool drawn = false;
        for (size_t i = 0; i < lines.size(); ++i) {
            double y = bottom + static_cast<double>(lines.size() - 1 - i) * distance;
            for (const auto& placed : lines[i].glyphs)
                if (placed.layer) drawn = fillLayer(*placed.layer, margin + placed.x, y) || drawn;
        }
        return drawn;
    };
    return {std::move(label), size, std::move(draw)};
}

ProofBlock ProofGlyphGridBlock(VLFont& font, const std::string& masterId)
{
    size_t count = font.countOfGlyphs();
    double cellWidth = font.unitsPerEm() * cellWidthInEms;
    double lineHeight = ProofLineHeight(font);
    // The names take a fixed share of the line below the glyph's descender.
    double cellHeight = lineHeight * (1.0 + 2.5 * captionShareOfLine);
    auto columns = static_cast<size_t>(std::max(1.0, std::round(std::sqrt(count * cellHeight / cellWidth))));
    columns = std::min(columns, std::max<size_t>(count, 1));
    size_t rows = (count + columns - 1) / columns;
    Size size{2 * margin + static_cast<double>(columns) * cellWidth, 2 * margin + static_cast<double>(rows) * cellHeight};
    double descender = firstMasterMetrics(font).descender;

    auto draw = [&font, masterId, count, columns, rows, cellWidth, cellHeight, lineHeight, descender](double scale) {
        double captionSize = std::max(smallestCaption, lineHeight * captionShareOfLine * scale);
        ProofProgress progress("glyph", count);
        bool drawn = false;
        for (size_t i = 0; i < count; ++i) {
            progress.step(i);
            auto glyph = font.glyphAtIndex(i);
            if (!glyph) continue;
            double left = margin + static_cast<double>(i % columns) * cellWidth;
            double bottom = margin + static_cast<double>(rows - 1 - i / columns) * cellHeight;
            double captionBaseline = bottom + captionSize * 0.4 / scale;
            ProofShowText(glyph->name(), {left + cellWidth * 0.05, captionBaseline}, captionSize);
            auto layer = glyph->layerForId(masterId);
            if (!layer) continue;
            double x = left + (cellWidth - layer->width()) * 0.5;
            double y = bottom + cellHeight - lineHeight - descender;
            drawn = fillLayer(*layer, x, y) || drawn;
        }
        return drawn;
    };
    return {"", size, std::move(draw)};
}
