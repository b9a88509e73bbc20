#include "model/VLColorHelpers.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>

double colorComponentFrom_start_length(const std::string& text, size_t start, size_t length)
{
    std::string digits = text.substr(start, length);
    if (length == 1) digits += digits;
    return static_cast<double>(std::strtol(digits.c_str(), nullptr, 16)) / 255.0;
}

std::optional<Color> colorWithHexString(const std::string& text)
{
    std::string hex;
    for (char c : text)
        if (c != '#') hex += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    size_t digit = hex.size() == 3 || hex.size() == 4 ? 1 : hex.size() == 6 || hex.size() == 8 ? 2 : 0;
    if (digit == 0) return std::nullopt;
    bool alpha = hex.size() == 4 || hex.size() == 8;
    size_t at = 0;
    double a = alpha ? colorComponentFrom_start_length(hex, (at += digit) - digit, digit) : 1.0;
    double r = colorComponentFrom_start_length(hex, (at += digit) - digit, digit);
    double g = colorComponentFrom_start_length(hex, (at += digit) - digit, digit);
    double b = colorComponentFrom_start_length(hex, (at += digit) - digit, digit);
    return Color::colorWithCalibratedRed_green_blue_alpha(r, g, b, a);
}

namespace {

Color fromHSB(double h, double s, double v, double alpha)
{
    h = std::fmod(h * 6.0, 6.0);
    double c = v * s;
    double x = c * (1 - std::fabs(std::fmod(h, 2.0) - 1));
    double r = 0, g = 0, b = 0;
    switch (static_cast<int>(h)) {
    case 0: r = c, g = x; break;
    case 1: r = x, g = c; break;
    case 2: g = c, b = x; break;
    case 3: g = x, b = c; break;
    case 4: r = x, b = c; break;
    default: r = c, b = x; break;
    }
    double m = v - c;
    return Color::colorWithCalibratedRed_green_blue_alpha(r + m, g + m, b + m, alpha);
}

bool startsWith(const std::string& text, const char* prefix)
{
    return text.rfind(prefix, 0) == 0;
}

} // namespace

std::optional<Color> colorWithString(const std::string& text)
{
    int r = 0, g = 0, b = 0;
    float a = 1;
    if (startsWith(text, "#")) return colorWithHexString(text);
    if (startsWith(text, "rgba(")) {
        if (std::sscanf(text.c_str(), "rgba(%d,%d,%d,%f)", &r, &g, &b, &a) != 4) return std::nullopt;
        return Color::colorWithCalibratedRed_green_blue_alpha(r / 255.0, g / 255.0, b / 255.0, 1.0);
    }
    if (startsWith(text, "hsba(")) {
        if (std::sscanf(text.c_str(), "hsba(%d,%d,%d,%f)", &r, &g, &b, &a) != 4) return std::nullopt;
        return fromHSB(r / 255.0, g / 255.0, b / 255.0, a);
    }
    if (startsWith(text, "hsb(")) {
        if (std::sscanf(text.c_str(), "hsb(%d,%d,%d)", &r, &g, &b) != 3) return std::nullopt;
        return fromHSB(r / 255.0, g / 255.0, b / 255.0, 1.0);
    }
    return std::nullopt;
}
