#pragma once

#include "platform/Geometry.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class AffineTransform;
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
    // The rasterizer's time follows the edges of an outline once it is flattened into lines,
    // each times the rows of pixels it crosses, and grows faster than that when many edges cross
    // one row. A hostile outline of curves running between the bottom and the top of a glyph
    // holds a request for seconds within a few thousand elements. No real glyph comes near these
    // costs at any size: a costlier outline is left out, and so is every fill once a request has
    // spent its share.
    // Each record read from outlines (a node, a path, a component...) costs a few hundred bytes
    // by the time it is drawn; a request builds no more than this many, whatever the document.
    static constexpr uint64_t maximumOutlineRecords = 250000;
    static constexpr double maximumFillCost = 1 << 21;
    static constexpr double maximumFillCostPerThumbnail = 1 << 23;
    // The cost of filling `path` drawn through `toDevice`: the rows crossed by each edge of the
    // path flattened the way cairo flattens it, estimated without flattening.
    static double fillCost(const BezierPath& path, const AffineTransform& toDevice);

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
    double _fillCostLeft = 0;
};
