#pragma once

#include "platform/Geometry.h"

#include <cstdint>
#include <map>
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

    // ---- thumbnail/VLFontLoaderPreview.cpp: the sample sheet, a text set line by line in the
    // font under a strip of sample glyphs in every master.
    // The Latin sample text, with a few letters swapped for accented, Cyrillic and Greek ones the
    // font has.
    std::u32string generatePreviewString();
    // Sets the sample text (the one given by setPreviewText, or the generated one) and sizes the
    // canvas.
    void layoutPreview();
    // Draws the laid-out sheet into the current context.
    void drawPreview();
    void setPreviewText(std::u32string text) { _previewText = std::move(text); }
    // Room between the descender of a line and the ascender of the next, as a share of the line.
    static constexpr double previewLineGap = 0.25;

    const std::shared_ptr<VLFont>& font() const { return _font; }
    void setFont(std::shared_ptr<VLFont> font) { _font = std::move(font); }
    const std::vector<std::shared_ptr<VLGlyph>>& cachedGlyphs() const { return _cachedGlyphs; }
    Size canvasSize() const { return _canvasSize; }

private:
    // "A" and "g", or glyphs from the middle of the font, into cachedGlyphs.
    void chooseSamples();
    void searchSamplesFromMiddle();
    double baselineOffset() const;
    bool drawSolidShapes();
    bool drawMasterOverlay();
    bool fillTranslated(BezierPath* path, double x, double y);

    double previewLineDistance() const;
    double previewMasterStripWidth();

    std::shared_ptr<VLFont> _font;
    std::vector<std::string> _sampleText;
    std::u32string _previewText;
    // The names of the thumbnail's samples, which each master shows in the sheet's strip.
    std::vector<std::string> _masterStripNames;
    std::vector<Point> _cachedGlyphsPosition;
    // The width of each line of the sheet by the y of its baseline.
    std::map<double, double> _lineWidth;
    int32_t _MMPreviewWidth = 0;
    std::vector<std::shared_ptr<VLGlyph>> _cachedGlyphs;
    Size _canvasSize;
    double _fillCostLeft = 0;
};
