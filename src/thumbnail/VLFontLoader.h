#pragma once

#include "platform/Geometry.h"

#include <memory>
#include <string>
#include <vector>

class BezierPath;
class VLFont;
class VLGlyph;

// Reads one document for one request, chooses the sample glyphs and draws them.
class VLFontLoader {
public:
    // Canvas margins and limits, in font units.
    static constexpr double margin = 100.0;
    static constexpr double widestAcceptedSample = 100000.0;
    static constexpr double narrowestAcceptedCanvas = 200.0;
    static constexpr size_t minimumSamples = 2;
    static constexpr long drawnSomethingElements = 3;
    // The rasterizer's time grows with the square of the edges that cross a row, so a hostile
    // outline of many crossing edges could hold a request for minutes. No real glyph comes near
    // these: a longer outline is left out, and so is every fill once a request has spent its share.
    static constexpr long maximumFilledElements = 20000;
    static constexpr long maximumElementsPerThumbnail = 200000;

    // Reads the document into font; false (with a log line) when it can't be read.
    bool importFontFromURL(const std::string& path);
    // Chooses the samples and returns the canvas size; (0, 0) when a sample is too wide.
    Size layoutThumbnail();
    // Draws the samples into the current context; whether anything was drawn.
    bool drawThumbnail();

    const std::shared_ptr<VLFont>& font() const { return _font; }
    void setFont(std::shared_ptr<VLFont> font) { _font = std::move(font); }
    const std::vector<std::shared_ptr<VLGlyph>>& cachedGlyphs() const { return _cachedGlyphs; }
    Size canvasSize() const { return _canvasSize; }

private:
    void searchSamplesFromMiddle();
    double baselineOffset() const;
    bool drawSolidShapes();
    bool drawMasterOverlay();
    bool fillTranslated(BezierPath* path, double x, double y);

    std::shared_ptr<VLFont> _font;
    std::vector<std::string> _sampleText;
    std::vector<std::shared_ptr<VLGlyph>> _cachedGlyphs;
    Size _canvasSize;
    long _elementsLeft = 0;
};
