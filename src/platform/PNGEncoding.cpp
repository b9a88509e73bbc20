#include "platform/PNGEncoding.h"

#include <zlib.h>

#include <array>
#include <cstring>

namespace {

void appendBigEndian(std::vector<uint8_t>& out, uint32_t value)
{
    for (int shift = 24; shift >= 0; shift -= 8) out.push_back(static_cast<uint8_t>(value >> shift));
}

// Starts a chunk: its length and type. The data follows, then endChunk.
size_t beginChunk(std::vector<uint8_t>& out, const char* type, uint32_t length)
{
    appendBigEndian(out, length);
    size_t start = out.size();
    out.insert(out.end(), type, type + 4);
    return start;
}

// The checksum covers the type and the data.
void endChunk(std::vector<uint8_t>& out, size_t start)
{
    uLong crc = crc32(0, out.data() + start, static_cast<uInt>(out.size() - start));
    appendBigEndian(out, static_cast<uint32_t>(crc));
}

uint8_t straight(uint32_t component, uint32_t alpha)
{
    return static_cast<uint8_t>((component * 255 + alpha / 2) / alpha);
}

// A row as PNG wants it: the filter type (none), then R, G, B, A of each pixel.
void convertRow(const uint32_t* pixels, int width, uint8_t* row)
{
    *row++ = 0;
    for (int x = 0; x < width; ++x, row += 4) {
        uint32_t p = pixels[x];
        uint32_t alpha = p >> 24;
        if (alpha == 0) {
            std::memset(row, 0, 4);
        } else if (alpha == 255) {
            row[0] = static_cast<uint8_t>(p >> 16);
            row[1] = static_cast<uint8_t>(p >> 8);
            row[2] = static_cast<uint8_t>(p);
            row[3] = 255;
        } else {
            row[0] = straight(p >> 16 & 0xff, alpha);
            row[1] = straight(p >> 8 & 0xff, alpha);
            row[2] = straight(p & 0xff, alpha);
            row[3] = static_cast<uint8_t>(alpha);
        }
    }
}

// The zlib stream of all rows, into `out` behind what is there.
bool appendImageData(std::vector<uint8_t>& out, const uint8_t* rows, int stride, int width, int height)
{
    z_stream stream{};
    if (deflateInit(&stream, Z_BEST_SPEED) != Z_OK) return false;
    size_t rowLength = 1 + 4 * static_cast<size_t>(width);
    size_t start = out.size();
    size_t bound = deflateBound(&stream, static_cast<uLong>(rowLength * static_cast<size_t>(height)));
    out.resize(start + bound);
    stream.next_out = out.data() + start;
    stream.avail_out = static_cast<uInt>(bound);
    std::vector<uint8_t> row(rowLength);
    int status = Z_OK;
    for (int y = 0; y < height && status == Z_OK; ++y) {
        convertRow(reinterpret_cast<const uint32_t*>(rows + static_cast<ptrdiff_t>(y) * stride), width, row.data());
        stream.next_in = row.data();
        stream.avail_in = static_cast<uInt>(rowLength);
        status = deflate(&stream, y + 1 == height ? Z_FINISH : Z_NO_FLUSH);
    }
    out.resize(start + stream.total_out);
    deflateEnd(&stream);
    return status == Z_STREAM_END;
}

} // namespace

std::vector<uint8_t> encodePNGFromPremultipliedARGB(const uint8_t* rows, int stride, int width, int height)
{
    static constexpr std::array<uint8_t, 8> signature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
    std::vector<uint8_t> out(signature.begin(), signature.end());
    if (width < 1 || height < 1) return {};

    size_t header = beginChunk(out, "IHDR", 13);
    appendBigEndian(out, static_cast<uint32_t>(width));
    appendBigEndian(out, static_cast<uint32_t>(height));
    // 8 bits per sample, RGBA, deflate, no filter method beyond the standard one, not interlaced.
    out.insert(out.end(), {8, 6, 0, 0, 0});
    endChunk(out, header);

    size_t lengthAt = out.size();
    size_t data = beginChunk(out, "IDAT", 0);
    if (!appendImageData(out, rows, stride, width, height)) return {};
    uint32_t length = static_cast<uint32_t>(out.size() - data - 4);
    for (int i = 0; i < 4; ++i) out[lengthAt + static_cast<size_t>(i)] = static_cast<uint8_t>(length >> (24 - 8 * i));
    endChunk(out, data);

    endChunk(out, beginChunk(out, "IEND", 0));
    return out;
}
