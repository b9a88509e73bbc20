#include "model/VLColorHelpers.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <string>

namespace {

Color rgb(double red, double green, double blue, double alpha)
{
    return Color::colorWithCalibratedRed_green_blue_alpha(red, green, blue, alpha);
}

// Hue, saturation and brightness from 0 to 1.
Color hsb(double hue, double saturation, double brightness, double alpha)
{
    double sector = std::fmod(hue, 1.0) * 6.0;
    int i = static_cast<int>(std::floor(sector));
    double f = sector - i;
    double p = brightness * (1.0 - saturation);
    double q = brightness * (1.0 - saturation * f);
    double t = brightness * (1.0 - saturation * (1.0 - f));
    double v = brightness;
    switch (i) {
    case 0: return rgb(v, t, p, alpha);
    case 1: return rgb(q, v, p, alpha);
    case 2: return rgb(p, v, t, alpha);
    case 3: return rgb(p, q, v, alpha);
    case 4: return rgb(t, p, v, alpha);
    default: return rgb(v, p, q, alpha);
    }
}

// The numbers of a functional form read with the scanner's rules.
std::optional<Color> colorFromFunction(const std::string& text)
{
    int a = 0, b = 0, c = 0;
    float fourth = 0.0f;
    const char* s = text.c_str();
    if (text.starts_with("rgba(")) {
        if (std::sscanf(s, "rgba(%d,%d,%d,%f)", &a, &b, &c, &fourth) != 4) return std::nullopt;
        return rgb(a / 255.0, b / 255.0, c / 255.0, 1.0);
    }
    if (text.starts_with("hsb(")) {
        if (std::sscanf(s, "hsb(%d,%d,%d)", &a, &b, &c) != 3) return std::nullopt;
        return hsb(a / 255.0, b / 255.0, c / 255.0, 1.0);
    }
    if (text.starts_with("hsba(")) {
        if (std::sscanf(s, "hsba(%d,%d,%d,%f)", &a, &b, &c, &fourth) != 4) return std::nullopt;
        return hsb(a / 255.0, b / 255.0, c / 255.0, fourth);
    }
    return std::nullopt;
}

} // namespace

std::optional<Color> colorWithString(std::string_view text)
{
    if (text.starts_with("#")) return colorWithHexString(text);
    return colorFromFunction(std::string(text));
}

std::optional<Color> colorWithHexString(std::string_view text)
{
    std::string digits(text);
    std::erase(digits, '#');
    std::transform(digits.begin(), digits.end(), digits.begin(), [](unsigned char c) { return std::toupper(c); });
    size_t width = digits.size() <= 4 ? 1 : 2;
    bool hasAlpha = digits.size() == 4 || digits.size() == 8;
    if (digits.size() != 3 * width + (hasAlpha ? width : 0)) return std::nullopt;
    auto component = [&](size_t index) { return colorComponentFrom_start_length(digits, index * width, width); };
    size_t first = hasAlpha ? 1 : 0;
    return rgb(component(first), component(first + 1), component(first + 2), hasAlpha ? component(0) : 1.0);
}

double colorComponentFrom_start_length(std::string_view text, size_t start, size_t length)
{
    std::string digits(text.substr(std::min(start, text.size()), length));
    if (digits.size() == 1) digits += digits;
    unsigned value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    return value / 255.0;
}
