#include "platform/GraphicsContext.h"

#include "platform/PNGEncoding.h"

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {

thread_local GraphicsContext* currentContext = nullptr;

bool isFinite(const BezierPath& path)
{
    Point points[3];
    for (long i = 0; i < path.elementCount(); ++i) {
        BezierPathElement kind = path.elementAtIndex_associatedPoints(i, points);
        int n = kind == BezierPathElement::CurveTo ? 3 : kind == BezierPathElement::ClosePath ? 0 : 1;
        for (int k = 0; k < n; ++k)
            if (!std::isfinite(points[k].x) || !std::isfinite(points[k].y)) return false;
    }
    return true;
}

} // namespace

GraphicsContext::GraphicsContext(int pixelsWide, int pixelsHigh)
    : _width(std::max(1, pixelsWide)),
      _height(std::max(1, pixelsHigh)),
      _surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, _width, _height)),
      _cairo(cairo_create(_surface))
{
    setUpAxes();
}

GraphicsContext::GraphicsContext(DocumentFormat format, const std::string& path, double width, double height)
    : _width(std::max(1, static_cast<int>(std::ceil(std::min(width, 1e6))))),
      _height(std::max(1, static_cast<int>(std::ceil(std::min(height, 1e6))))),
      _surface(format == DocumentFormat::SVG ? cairo_svg_surface_create(path.c_str(), _width, _height)
                                             : cairo_pdf_surface_create(path.c_str(), _width, _height)),
      _cairo(cairo_create(_surface))
{
    setUpAxes();
}

// The platform's y axis points up from the bottom-left corner.
void GraphicsContext::setUpAxes()
{
    cairo_matrix_t flip;
    cairo_matrix_init(&flip, 1, 0, 0, -1, 0, _height);
    cairo_set_matrix(_cairo, &flip);
    cairo_set_fill_rule(_cairo, CAIRO_FILL_RULE_WINDING);
    cairo_set_antialias(_cairo, CAIRO_ANTIALIAS_GOOD);
    cairo_set_source_rgba(_cairo, 0, 0, 0, 1);
}

GraphicsContext::~GraphicsContext()
{
    if (currentContext == this) currentContext = nullptr;
    cairo_destroy(_cairo);
    cairo_surface_destroy(_surface);
}

GraphicsContext* GraphicsContext::current()
{
    return currentContext;
}

GraphicsContext::Current::Current(GraphicsContext& context) : _previous(currentContext)
{
    currentContext = &context;
}

GraphicsContext::Current::~Current()
{
    currentContext = _previous;
}

void GraphicsContext::setFillColor(const Color& color)
{
    auto [r, g, b, a] = color.rgba();
    cairo_set_source_rgba(_cairo, r, g, b, a);
}

void GraphicsContext::saveGraphicsState()
{
    cairo_save(_cairo);
    _savedCollapsed.push_back(_collapsed);
}

void GraphicsContext::restoreGraphicsState()
{
    if (_savedCollapsed.empty()) return;
    cairo_restore(_cairo);
    _collapsed = _savedCollapsed.back();
    _savedCollapsed.pop_back();
}

void GraphicsContext::concatTransform(const AffineTransform& transform)
{
    const AffineTransformStruct& m = transform.transformStruct();
    cairo_matrix_t matrix;
    cairo_matrix_init(&matrix, m.m11, m.m12, m.m21, m.m22, m.tX, m.tY);
    // A transform that collapses the plane would put cairo into an error state for good; nothing
    // drawn through it could be seen anyway.
    cairo_matrix_t inverse = matrix;
    if (cairo_matrix_invert(&inverse) != CAIRO_STATUS_SUCCESS) {
        _collapsed = true;
        return;
    }
    cairo_transform(_cairo, &matrix);
}

AffineTransform GraphicsContext::userToDeviceTransform() const
{
    cairo_matrix_t m;
    cairo_get_matrix(_cairo, &m);
    return AffineTransform({m.xx, m.yx, m.xy, m.yy, m.x0, m.y0});
}

void GraphicsContext::fillPath(const BezierPath& path)
{
    if (_collapsed || path.isEmpty() || !isFinite(path)) return;
    cairo_new_path(_cairo);
    Point p[3];
    for (long i = 0; i < path.elementCount(); ++i) {
        switch (path.elementAtIndex_associatedPoints(i, p)) {
        case BezierPathElement::MoveTo: cairo_move_to(_cairo, p[0].x, p[0].y); break;
        case BezierPathElement::LineTo: cairo_line_to(_cairo, p[0].x, p[0].y); break;
        case BezierPathElement::CurveTo: cairo_curve_to(_cairo, p[0].x, p[0].y, p[1].x, p[1].y, p[2].x, p[2].y); break;
        case BezierPathElement::ClosePath: cairo_close_path(_cairo); break;
        }
    }
    cairo_fill(_cairo);
}

void GraphicsContext::paint(const Color& color)
{
    cairo_save(_cairo);
    setFillColor(color);
    cairo_paint(_cairo);
    cairo_restore(_cairo);
}

void GraphicsContext::showText(const std::string& text, Point baselineStart, double pointSize)
{
    if (_collapsed || !std::isfinite(baselineStart.x) || !std::isfinite(baselineStart.y)) return;
    double x = baselineStart.x, y = baselineStart.y;
    cairo_user_to_device(_cairo, &x, &y);
    cairo_save(_cairo);
    cairo_identity_matrix(_cairo);
    cairo_select_font_face(_cairo, "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(_cairo, pointSize);
    cairo_move_to(_cairo, x, y);
    cairo_show_text(_cairo, text.c_str());
    cairo_restore(_cairo);
}

bool GraphicsContext::isValid() const
{
    return cairo_surface_status(_surface) == CAIRO_STATUS_SUCCESS && cairo_status(_cairo) == CAIRO_STATUS_SUCCESS;
}

void GraphicsContext::showPage()
{
    cairo_show_page(_cairo);
}

bool GraphicsContext::finish()
{
    cairo_surface_finish(_surface);
    return isValid();
}

std::array<uint8_t, 4> GraphicsContext::pixelAt(int x, int y) const
{
    if (x < 0 || y < 0 || x >= _width || y >= _height) return {0, 0, 0, 0};
    cairo_surface_flush(_surface);
    const unsigned char* data = cairo_image_surface_get_data(_surface);
    int stride = cairo_image_surface_get_stride(_surface);
    uint32_t v = reinterpret_cast<const uint32_t*>(data + stride * (_height - 1 - y))[x];
    return {static_cast<uint8_t>(v >> 16), static_cast<uint8_t>(v >> 8), static_cast<uint8_t>(v),
            static_cast<uint8_t>(v >> 24)};
}

std::vector<uint8_t> GraphicsContext::encodePNG(int width, int height) const
{
    if (width < 1 || height < 1 || width > _width || height > _height) return {};
    cairo_surface_flush(_surface);
    int stride = cairo_image_surface_get_stride(_surface);
    // The part at the bottom-left corner: the last `height` rows of the surface, whose rows run down.
    const uint8_t* rows = cairo_image_surface_get_data(_surface) + static_cast<ptrdiff_t>(_height - height) * stride;
    return encodePNGFromPremultipliedARGB(rows, stride, width, height);
}

bool GraphicsContext::writePNG(const std::string& path, int width, int height) const
{
    std::vector<uint8_t> bytes = encodePNG(width, height);
    if (bytes.empty()) return false;
    FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return false;
    bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return std::fclose(file) == 0 && written;
}
