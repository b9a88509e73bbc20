#include "geometry/VLDecomposeMatrix.h"
#include "outline/VLBackgroundImage.h"
#include "reader/VLDictKeySource.h"
#include "reader/VLPlistKeySource.h"
#include "reader/VLPlistRecords.h"

#include <cstdio>

namespace {

// "{{x, y}, {w, h}}" as the platform writes rectangles, or "x, y, w, h".
Rect rectFromString(const std::string& text)
{
    float v[4] = {0, 0, 0, 0};
    const char* format = text[0] == '{' ? "{{%f,%f},{%f,%f}}" : "%f, %f, %f, %f";
    std::string compact;
    for (char c : text)
        if (text[0] != '{' || c != ' ') compact += c;
    if (std::sscanf(compact.c_str(), format, &v[0], &v[1], &v[2], &v[3]) != 4) return Rect();
    return {{v[0], v[1]}, {v[2], v[3]}};
}

template <typename Source> bool readCrop(VLBackgroundImage& image, Source& s, uint8_t format)
{
    if (format == 1) {
        std::string text = s.string().string();
        image.setCrop(Rect());
        if (text.size() >= 11) image.setCrop(rectFromString(text));
        return true;
    }
    double values[10];
    int count = 10;
    if (!s.numbers(values, &count)) return false;
    if (count == 4) image.setCrop({{values[0], values[1]}, {values[2], values[3]}});
    return true;
}

// The linear part of a transform gives scale, angle and slants, its translation the position.
void placeByMatrix(VLBackgroundImage& image, const double m[6])
{
    VLDecomposedMatrix parts = VLDecomposeMatrix({m[0], m[1], m[2], m[3], m[4], m[5]});
    image.setScale({parts.scaleX, parts.scaleY});
    image.setAngle(parts.angle);
    image.setSlantHorizontal(parts.slantHorizontal);
    image.setSlantVertical(parts.slantVertical);
    image.setPositionFast({m[4], m[5]});
}

template <typename Source> bool readImageKey(VLBackgroundImage& b, Source& s, uint8_t format)
{
    if (s.is("imagePath")) return b.setImagePath(s.string().string()), true;
    if (s.is("transform")) {
        double m[6] = {1, 0, 0, 1, 0, 0};
        s.transform(m);
        return placeByMatrix(b, m), true;
    }
    if (s.is("angle")) return b.setAngle(s.number()), true;
    if (s.is("scale")) return b.setScale(s.point()), true;
    if (s.is("pos")) return b.setPositionFast(s.point()), true;
    if (s.is("locked")) return b.setLocked(s.integer() != 0), true;
    if (s.is("alpha")) return b.setAlpha(static_cast<uint16_t>(s.integer())), true;
    if (s.is("crop")) return readCrop(b, s, format);
    if (s.is("userData")) {
        for (const auto& [key, value] : s.mergedDict().dictionary()) b.setUserData_forKey(value, key);
        return true;
    }
    if (s.is("imageData")) {
        const Value& data = s.value();
        if (data.isData()) b.setImageData(data.data());
        return true;
    }
    if (s.is("imageType"))
        return b.setImageType(VLBackgroundImage::imageTypeForFileExtension(s.string().string())), true;
    if (s.is("slant")) {
        Point slant = s.point();
        return b.setSlantHorizontal(slant.x), b.setSlantVertical(slant.y), true;
    }
    return false;
}

} // namespace

std::string VLBackgroundImage::imageTypeForFileExtension(const std::string& extension)
{
    if (extension == "png" || extension == "jpg" || extension == "pdf") return extension;
    if (extension == "jpeg") return "jpg";
    return "";
}

std::shared_ptr<VLBackgroundImage> VLBackgroundImage::initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format)
{
    auto image = init();
    VLPlistKeySource source(info);
    bool ok = readPlistRecord(info, [&] { return readImageKey(*image, source, format); });
    return ok ? image : nullptr;
}

std::shared_ptr<VLBackgroundImage> VLBackgroundImage::initWithDict_format(const Value& dict, uint8_t format)
{
    if (!dict.isDictionary()) return nullptr;
    auto image = init();
    readDictKeys(dict, [&](VLDictKeySource& source) { readImageKey(*image, source, format); });
    return image;
}
