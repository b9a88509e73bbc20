#include "thumbnail/VLFontLoader.h"
#include "platform/NumberConversion.h"

#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "platform/BezierPath.h"
#include "platform/Color.h"
#include "platform/GraphicsContext.h"
#include "platform/Log.h"
#include "platform/VLError.h"
#include "platform/VLException.h"

#include <cmath>
#include <cstdint>

bool VLFontLoader::importFontFromURL(const std::string& path)
{
    try {
        VLError error;
        auto font = VLFont::initWithURL_error(path, &error);
        if (!font) {
            VLLog("Error while reading the document. " + (error.domain.empty() ? "(null)" : error.description()));
            return false;
        }
        _font = std::move(font);
        _font->setOutlineRecordsLeft(maximumOutlineRecords);
        return true;
    } catch (const VLException& exception) {
        VLLog("Error while reading the document: " + path + " \n(" + exception.reason() + ")");
        return false;
    }
}

void VLFontLoader::chooseSamples()
{
    _sampleText = {"A", "g"};
    _cachedGlyphs.clear();
    for (const std::string& name : _sampleText)
        if (auto glyph = _font->glyphForName(name)) _cachedGlyphs.push_back(glyph);
    if (_cachedGlyphs.size() < minimumSamples) searchSamplesFromMiddle();
}

Size VLFontLoader::layoutThumbnail()
{
    chooseSamples();

    float runningWidth = VLSinglePrecision(margin);
    for (const auto& glyph : _cachedGlyphs) {
        double width = glyph->maxWidth();
        if (width > widestAcceptedSample) return Size{0, 0};
        runningWidth = VLSinglePrecision(runningWidth + width);
    }
    double width = static_cast<double>(runningWidth) + margin;

    auto master = _font->fontMasterAtIndex(0);
    double ascender = master ? master->defaultAscender() : 0.0;
    double descender = master ? master->defaultDescender() : 0.0;
    _canvasSize = {width, ascender - descender + margin + margin};
    return _canvasSize;
}

// Glyphs are taken going down from the middle of the font, skipping marks. The search does not
// avoid a glyph already chosen by name, and an index without a glyph ends the request.
void VLFontLoader::searchSamplesFromMiddle()
{
    size_t count = _font->countOfGlyphs();
    size_t i = static_cast<size_t>(std::ceil(static_cast<double>(count) * 0.5));
    while (true) {
        auto glyph = _font->glyphAtIndex(i);
        if (!glyph || glyph->category() != "Mark") {
            if (!glyph)
                throw VLException("VLInvalidArgumentException",
                                  "*** attempt to insert nil object into the samples at index " + std::to_string(i));
            _cachedGlyphs.push_back(glyph);
        }
        if (_cachedGlyphs.size() >= minimumSamples || i == 0) return;
        --i;
    }
}

double VLFontLoader::baselineOffset() const
{
    auto master = _font->fontMasterAtIndex(0);
    double ascender = master ? master->defaultAscender() : 0.0;
    return _canvasSize.height - ascender - margin;
}

// Whether the path was filled with something to show.
bool VLFontLoader::fillTranslated(BezierPath* path, double x, double y)
{
    if (!path) return false;
    AffineTransform move;
    move.translateXBy_yBy(x, y);
    path->transformUsingAffineTransform(move);
    GraphicsContext* context = GraphicsContext::current();
    double cost = context ? fillCost(*path, context->userToDeviceTransform()) : 0.0;
    if (!(cost <= maximumFillCost)) {
        VLLog("Left out an outline of " + std::to_string(path->elementCount()) + " elements, too costly to fill");
        return false;
    }
    if (cost > _fillCostLeft) return false;
    _fillCostLeft -= cost;
    path->fill();
    return path->elementCount() >= drawnSomethingElements;
}

bool VLFontLoader::drawThumbnail()
{
    _fillCostLeft = maximumFillCostPerThumbnail;
    bool drawn = drawSolidShapes();
    if (_font->fontMasters().size() < 2) return drawn;
    return drawMasterOverlay() || drawn;
}

// The first sample stands flush right against the second one.
bool VLFontLoader::drawSolidShapes()
{
    Color::blackColor().set();
    bool drawn = false;
    int64_t pen = static_cast<int64_t>(margin);
    double y = baselineOffset();
    for (size_t k = 0; k < _cachedGlyphs.size(); ++k) {
        const auto& glyph = _cachedGlyphs[k];
        auto path = glyph->bezierPath();
        double maxWidth = glyph->maxWidth();
        int64_t x = k > 0 ? pen : VLTruncatedInteger(maxWidth - glyph->width() + static_cast<double>(pen));
        drawn = fillTranslated(path.get(), static_cast<double>(x), y) || drawn;
        pen = VLTruncatedInteger(maxWidth + static_cast<double>(pen));
    }
    return drawn;
}

// Each master's own outline in a translucent tint, each first sample flush right on its own width.
bool VLFontLoader::drawMasterOverlay()
{
    Color::colorWithDeviceWhite_alpha(0.1, 0.25).set();
    bool drawn = false;
    double y = baselineOffset();
    // A sample's widest master is the same for every master, and finding it visits every layer.
    std::vector<double> maxWidths;
    for (const auto& glyph : _cachedGlyphs) maxWidths.push_back(glyph->maxWidth());
    for (const auto& master : _font->fontMasters()) {
        int64_t pen = static_cast<int64_t>(margin);
        for (size_t k = 0; k < _cachedGlyphs.size(); ++k) {
            auto layer = _cachedGlyphs[k]->layerForId(master->id());
            auto kept = layer ? layer->bezierPath() : nullptr;
            auto path = kept ? kept->copy() : nullptr;
            double maxWidth = maxWidths[k];
            double layerWidth = layer ? layer->width() : 0.0;
            int64_t x = k > 0 ? pen : VLTruncatedInteger(maxWidth - layerWidth + static_cast<double>(pen));
            drawn = fillTranslated(path.get(), static_cast<double>(x), y) || drawn;
            pen = VLTruncatedInteger(maxWidth + static_cast<double>(pen));
        }
    }
    return drawn;
}
