#include "model/VLFont.h"
#include "platform/NumberConversion.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "platform/BezierPath.h"

#include <algorithm>
#include <array>

double VLGlyph::maxWidth()
{
    if (_layers.empty() && !readLayersFormat(formatOfParent())) return 9223372036854775808.0;
    double widest = 0.0;
    for (const auto& layer : _layers.allValues())
        if (layer->isMasterLayer()) widest = std::max(widest, layer->width());
    return widest;
}

// The running total keeps 16 bits, as the stored widths do; very wide masters wrap.
uint16_t VLGlyph::width()
{
    readLayersIfEmpty();
    auto font = parent();
    if (!font) return 0;
    uint16_t total = 0;
    for (const auto& master : font->fontMasters()) {
        auto layer = layerForIdFast(master->id());
        double sum = static_cast<double>(total) + (layer ? layer->width() : 0.0);
        total = static_cast<uint16_t>(VLTruncatedInteger(sum));
    }
    size_t masters = font->fontMasters().size();
    return masters == 0 ? total : static_cast<uint16_t>(total / masters);
}

namespace {

std::shared_ptr<BezierPath> drawPathOfMaster(const VLGlyph& glyph, const VLFontMaster& master)
{
    auto layer = glyph.layerForIdFast(master.id());
    return layer ? layer->drawBezierPath() : nullptr;
}

// The element-by-element mean of the masters' outlines. Only the last path's element kind
// decides what is drawn, and close elements are not copied: the fill closes the subpaths.
std::shared_ptr<BezierPath> averagedPath(const std::vector<std::shared_ptr<BezierPath>>& paths, long elements)
{
    auto result = BezierPath::bezierPath();
    double n = static_cast<double>(paths.size());
    for (long e = 0; e < elements; ++e) {
        Point end{}, control1{}, control2{};
        std::array<Point, 3> points{};
        BezierPathElement kind = BezierPathElement::ClosePath;
        for (const auto& path : paths) {
            if (path->elementCount() <= e) return nullptr;
            kind = path->elementAtIndex_associatedPoints(e, points.data());
            Point endPoint = kind == BezierPathElement::CurveTo ? points[2] : points[0];
            if (kind == BezierPathElement::CurveTo) {
                control1 = {control1.x + points[0].x, control1.y + points[0].y};
                control2 = {control2.x + points[1].x, control2.y + points[1].y};
            }
            end = {end.x + endPoint.x, end.y + endPoint.y};
        }
        Point meanEnd{end.x / n, end.y / n};
        switch (kind) {
        case BezierPathElement::MoveTo: result->moveToPoint(meanEnd); break;
        case BezierPathElement::LineTo: result->lineToPoint(meanEnd); break;
        case BezierPathElement::CurveTo:
            result->curveToPoint_controlPoint1_controlPoint2(meanEnd, {control1.x / n, control1.y / n},
                                                             {control2.x / n, control2.y / n});
            break;
        case BezierPathElement::ClosePath: break;
        }
    }
    return result;
}

} // namespace

std::shared_ptr<BezierPath> VLGlyph::bezierPath()
{
    readLayersIfEmpty();
    if (_layers.empty()) return nullptr;
    auto font = parent();
    if (!font || font->fontMasters().empty()) return nullptr;
    const auto& masters = font->fontMasters();
    if (masters.size() == 1 || !mastersCompatible()) return drawPathOfMaster(*this, *masters.front());

    auto first = drawPathOfMaster(*this, *masters.front());
    long elements = first ? first->elementCount() : 0;
    std::vector<std::shared_ptr<BezierPath>> paths;
    for (const auto& master : masters)
        if (auto path = drawPathOfMaster(*this, *master)) paths.push_back(path);
    if (elements == 0) return BezierPath::bezierPath();
    return averagedPath(paths, elements);
}
