#include "platform/PNGEncoding.h"

#include <cairo.h>
#include <gtest/gtest.h>
#include <zlib.h>

#include <cstring>
#include <vector>

namespace {

struct PNGReader {
    const std::vector<uint8_t>& bytes;
    size_t at = 0;
};

cairo_status_t readPNG(void* closure, unsigned char* data, unsigned int length)
{
    auto* reader = static_cast<PNGReader*>(closure);
    if (reader->at + length > reader->bytes.size()) return CAIRO_STATUS_READ_ERROR;
    std::memcpy(data, reader->bytes.data() + reader->at, length);
    reader->at += length;
    return CAIRO_STATUS_SUCCESS;
}

uint32_t bigEndian(const uint8_t* p)
{
    return uint32_t{p[0]} << 24 | uint32_t{p[1]} << 16 | uint32_t{p[2]} << 8 | p[3];
}

// The rows of the image as the file stores them: a filter byte, then R, G, B, A.
std::vector<uint8_t> storedRows(const std::vector<uint8_t>& png, size_t rowsLength)
{
    std::vector<uint8_t> compressed;
    for (size_t at = 8; at + 12 <= png.size(); at += 12 + bigEndian(&png[at]))
        if (std::memcmp(&png[at + 4], "IDAT", 4) == 0)
            compressed.insert(compressed.end(), png.begin() + static_cast<long>(at) + 8,
                              png.begin() + static_cast<long>(at + 8 + bigEndian(&png[at])));
    std::vector<uint8_t> rows(rowsLength);
    uLongf length = rowsLength;
    EXPECT_EQ(uncompress(rows.data(), &length, compressed.data(), compressed.size()), Z_OK);
    EXPECT_EQ(length, rowsLength);
    return rows;
}

} // namespace

TEST(PNGEncoding, EveryPremultipliedPixelComesBackAsItWasWithStraightAlphaInTheFile)
{
    // Every alpha with every colour value it can carry, in rows of 256 pixels a little apart.
    constexpr int width = 256;
    constexpr int stride = width * 4 + 20;
    std::vector<uint32_t> pixels;
    for (uint32_t a = 0; a < 256; ++a)
        for (uint32_t c = 0; c <= a; ++c) pixels.push_back(a << 24 | c << 16 | (a - c) << 8 | c / 3);
    int height = static_cast<int>((pixels.size() + width - 1) / width);
    std::vector<uint8_t> image(static_cast<size_t>(stride * height), 0);
    for (size_t i = 0; i < pixels.size(); ++i)
        std::memcpy(&image[i / width * stride + i % width * 4], &pixels[i], 4);

    std::vector<uint8_t> png = encodePNGFromPremultipliedARGB(image.data(), stride, width, height);
    ASSERT_GT(png.size(), 33u);
    // 8 bits per sample of red, green, blue and alpha.
    EXPECT_EQ(bigEndian(&png[16]), static_cast<uint32_t>(width));
    EXPECT_EQ(bigEndian(&png[20]), static_cast<uint32_t>(height));
    EXPECT_EQ(png[24], 8);
    EXPECT_EQ(png[25], 6);

    PNGReader reader{png};
    cairo_surface_t* decoded = cairo_image_surface_create_from_png_stream(readPNG, &reader);
    ASSERT_EQ(cairo_surface_status(decoded), CAIRO_STATUS_SUCCESS);
    ASSERT_EQ(cairo_image_surface_get_width(decoded), width);
    ASSERT_EQ(cairo_image_surface_get_height(decoded), height);
    const uint8_t* data = cairo_image_surface_get_data(decoded);
    int decodedStride = cairo_image_surface_get_stride(decoded);
    for (size_t i = 0; i < pixels.size(); ++i) {
        uint32_t back;
        std::memcpy(&back, data + i / width * static_cast<size_t>(decodedStride) + i % width * 4, 4);
        ASSERT_EQ(back, pixels[i]) << "pixel " << i;
    }
    cairo_surface_destroy(decoded);

    // Half-covered red of half its strength is full red at half opacity in the file.
    std::vector<uint8_t> rows = storedRows(png, static_cast<size_t>(height) * (1 + 4 * width));
    size_t index = 128 * 129 / 2 + 64; // alpha 128, red 64
    const uint8_t* stored = &rows[index / width * (1 + 4 * width) + 1 + index % width * 4];
    EXPECT_EQ(rows[index / width * (1 + 4 * width)], 0);
    EXPECT_EQ(stored[0], 128);
    EXPECT_EQ(stored[1], 128);
    EXPECT_EQ(stored[2], 42);
    EXPECT_EQ(stored[3], 128);

    EXPECT_TRUE(encodePNGFromPremultipliedARGB(image.data(), stride, 0, height).empty());
    EXPECT_TRUE(encodePNGFromPremultipliedARGB(image.data(), stride, width, 0).empty());
}
