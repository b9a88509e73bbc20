#include "platform/UUID.h"

#include <array>
#include <cstdint>
#include <random>

std::string newUUIDString()
{
    thread_local std::mt19937_64 engine{std::random_device{}()};
    std::array<uint8_t, 16> bytes;
    for (size_t i = 0; i < bytes.size(); i += 8) {
        uint64_t r = engine();
        for (size_t k = 0; k < 8; ++k) bytes[i + k] = static_cast<uint8_t>(r >> (8 * k));
    }
    bytes[6] = static_cast<uint8_t>((bytes[6] & 0x0F) | 0x40);
    bytes[8] = static_cast<uint8_t>((bytes[8] & 0x3F) | 0x80);

    static const char* hex = "0123456789ABCDEF";
    std::string text;
    text.reserve(36);
    for (size_t i = 0; i < bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
        text += hex[bytes[i] >> 4];
        text += hex[bytes[i] & 15];
    }
    return text;
}
