#pragma once

#include "platform/AffineTransform.h"
#include "platform/BezierPath.h"
#include "platform/Color.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

typedef struct _cairo cairo_t;
typedef struct _cairo_surface cairo_surface_t;

// A drawing context over a transparent cairo image surface, or over a vector document written to
// a file as it is drawn, y axis up from the bottom-left corner, anti-aliased, non-zero fill.
// Drawing calls of Color, AffineTransform and BezierPath act on the context that is current for
// the calling thread.
class GraphicsContext {
public:
    enum class DocumentFormat { SVG, PDF };

    GraphicsContext(int pixelsWide, int pixelsHigh);
    // Pages of width by height points written to path; check isValid before drawing.
    GraphicsContext(DocumentFormat format, const std::string& path, double width, double height);
    ~GraphicsContext();
    GraphicsContext(const GraphicsContext&) = delete;
    GraphicsContext& operator=(const GraphicsContext&) = delete;

    // The context of the calling thread, or null outside a drawing block.
    static GraphicsContext* current();

    // Makes a context current for the calling thread for the life of the object.
    class Current {
    public:
        explicit Current(GraphicsContext& context);
        ~Current();
        Current(const Current&) = delete;
        Current& operator=(const Current&) = delete;

    private:
        GraphicsContext* _previous;
    };

    int pixelsWide() const { return _width; }
    int pixelsHigh() const { return _height; }

    void setFillColor(const Color& color);
    // Keep and bring back the transform and colour around drawing that changes them.
    void saveGraphicsState();
    void restoreGraphicsState();
    void concatTransform(const AffineTransform& transform);
    // From the current user space to pixels, rows counted from the top.
    AffineTransform userToDeviceTransform() const;
    void fillPath(const BezierPath& path);
    // Covers the whole page with the colour.
    void paint(const Color& color);
    // A line of text in a plain sans-serif face, its baseline starting at the point of the current
    // user space, upright whatever that space does.
    void showText(const std::string& text, Point baselineStart, double pointSize);

    // Whether the surface could be made and has not failed since.
    bool isValid() const;
    // Ends the page of a document and starts the next one.
    void showPage();
    // Writes what is left of a document and closes its file; whether all of it was written.
    bool finish();

    // Premultiplied RGBA of one pixel, counted from the bottom-left corner.
    std::array<uint8_t, 4> pixelAt(int x, int y) const;
    // The part of width by height pixels at the bottom-left corner as PNG bytes; empty on failure.
    std::vector<uint8_t> encodePNG(int width, int height) const;
    // The same, written to a file.
    bool writePNG(const std::string& path, int width, int height) const;

private:
    void setUpAxes();

    int _width;
    int _height;
    bool _collapsed = false;
    std::vector<bool> _savedCollapsed;
    cairo_surface_t* _surface;
    cairo_t* _cairo;
};
