#include "platform/GraphicsContext.h"

#include "platform/UUID.h"

#include <gtest/gtest.h>

#include <cairo.h>

#include <filesystem>

namespace {

using Pixel = std::array<uint8_t, 4>;
const Pixel clear{0, 0, 0, 0};
const Pixel black{0, 0, 0, 255};

BezierPath rectangle(double x, double y, double width, double height)
{
    BezierPath path;
    path.moveToPoint({x, y});
    path.lineToPoint({x + width, y});
    path.lineToPoint({x + width, y + height});
    path.lineToPoint({x, y + height});
    path.closePath();
    return path;
}

TEST(GraphicsContext, FillsInsideOnlyWithTheCurrentColour)
{
    GraphicsContext context(10, 10);
    EXPECT_EQ(GraphicsContext::current(), nullptr);
    rectangle(2, 2, 4, 4).fill();
    EXPECT_EQ(context.pixelAt(3, 3), clear);

    GraphicsContext::Current current(context);
    rectangle(2, 2, 4, 4).fill();
    EXPECT_EQ(context.pixelAt(3, 3), black);
    EXPECT_EQ(context.pixelAt(5, 5), black);
    EXPECT_EQ(context.pixelAt(6, 6), clear);
    EXPECT_EQ(context.pixelAt(1, 3), clear);

    Color::colorWithCalibratedRed_green_blue_alpha(1, 0, 0, 0.5).set();
    rectangle(7, 0, 3, 3).fill();
    Pixel red = context.pixelAt(8, 1);
    EXPECT_NEAR(red[0], 128, 1);
    EXPECT_EQ(red[1], 0);
    EXPECT_EQ(red[2], 0);
    EXPECT_NEAR(red[3], 128, 1);
}

TEST(GraphicsContext, CurrentIsPerBlockAndRestored)
{
    GraphicsContext outer(4, 4), inner(4, 4);
    {
        GraphicsContext::Current a(outer);
        {
            GraphicsContext::Current b(inner);
            EXPECT_EQ(GraphicsContext::current(), &inner);
        }
        EXPECT_EQ(GraphicsContext::current(), &outer);
    }
    EXPECT_EQ(GraphicsContext::current(), nullptr);
}

TEST(GraphicsContext, NonZeroWinding)
{
    GraphicsContext context(30, 10);
    GraphicsContext::Current current(context);
    BezierPath overlapping = rectangle(0, 0, 6, 6);
    overlapping.appendBezierPath(rectangle(3, 3, 6, 6));
    overlapping.fill();
    EXPECT_EQ(context.pixelAt(4, 4), black);

    BezierPath ring = rectangle(15, 0, 10, 10);
    ring.appendBezierPath(rectangle(18, 3, 4, 4).bezierPathByReversingPath());
    ring.fill();
    EXPECT_EQ(context.pixelAt(16, 5), black);
    EXPECT_EQ(context.pixelAt(20, 5), clear);
}

TEST(GraphicsContext, ConcatAppliesTheTransformLikeAPath)
{
    GraphicsContext context(20, 4);
    GraphicsContext::Current current(context);
    AffineTransform t;
    t.translateXBy_yBy(4, 0);
    t.scaleBy(2);
    t.concat();
    rectangle(0, 0, 1, 1).fill();
    EXPECT_EQ(context.pixelAt(4, 0), black);
    EXPECT_EQ(context.pixelAt(5, 1), black);
    EXPECT_EQ(context.pixelAt(1, 0), clear);
    EXPECT_EQ(context.pixelAt(6, 0), clear);
    EXPECT_EQ(context.pixelAt(9, 0), clear);
}

class TemporaryFile {
public:
    TemporaryFile() : path(std::filesystem::temp_directory_path() / ("velmor-" + newUUIDString() + ".png")) {}
    ~TemporaryFile() { std::filesystem::remove(path); }
    const std::filesystem::path path;
};

TEST(GraphicsContext, WritesTheBottomLeftCornerWithYUp)
{
    GraphicsContext context(20, 20);
    GraphicsContext::Current current(context);
    rectangle(0, 0, 2, 1).fill();
    rectangle(0, 18, 20, 2).fill();

    TemporaryFile file;
    ASSERT_TRUE(context.writePNG(file.path, 8, 6));
    cairo_surface_t* image = cairo_image_surface_create_from_png(file.path.c_str());
    ASSERT_EQ(cairo_surface_status(image), CAIRO_STATUS_SUCCESS);
    EXPECT_EQ(cairo_image_surface_get_width(image), 8);
    EXPECT_EQ(cairo_image_surface_get_height(image), 6);
    auto pixel = [&](int column, int row) {
        auto data = cairo_image_surface_get_data(image) + row * cairo_image_surface_get_stride(image);
        return reinterpret_cast<const uint32_t*>(data)[column];
    };
    EXPECT_EQ(pixel(1, 5), 0xFF000000u);
    EXPECT_EQ(pixel(1, 4), 0u);
    EXPECT_EQ(pixel(3, 5), 0u);
    EXPECT_EQ(pixel(1, 0), 0u);
    cairo_surface_destroy(image);

    EXPECT_FALSE(context.writePNG(file.path, 0, 6));
    EXPECT_FALSE(context.writePNG("/nonexistent-folder/out.png", 8, 6));
}

} // namespace
