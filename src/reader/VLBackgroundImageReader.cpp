#include "geometry/VLDecomposeMatrix.h"
#include "outline/VLBackgroundImage.h"
#include "reader/VLPlistNumbers.h"
#include "reader/VLPlistRecordReading.h"
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

bool readCrop(VLBackgroundImage& image, VLPlistParseInfo* info, uint8_t format)
{
    if (format == 1) {
        std::string text = readPlistString(info);
        image.setCrop(Rect());
        if (text.size() >= 11) image.setCrop(rectFromString(text));
        return true;
    }
    double values[10];
    int count = 10;
    size_t index = 0;
    if (!parseDoubleTupleAt(info->curr, &index, values, &count)) {
        reportPlistError(info, "Too many values");
        return false;
    }
    info->curr += index + 1;
    if (count == 4) image.setCrop({{values[0], values[1]}, {values[2], values[3]}});
    return true;
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
    VLBackgroundImage& b = *image;
    bool ok = readPlistRecord(info, [&] {
        if (matchKey(info, "imagePath")) return b.setImagePath(readPlistString(info)), true;
        if (matchKey(info, "transform")) {
            double m[6] = {1, 0, 0, 1, 0, 0};
            parsePlistTransform(info, m);
            VLDecomposedMatrix parts = VLDecomposeMatrix({m[0], m[1], m[2], m[3], m[4], m[5]});
            b.setScale({parts.scaleX, parts.scaleY});
            b.setAngle(parts.angle);
            b.setSlantHorizontal(parts.slantHorizontal);
            b.setSlantVertical(parts.slantVertical);
            return b.setPositionFast({m[4], m[5]}), true;
        }
        if (matchKey(info, "angle")) return b.setAngle(parsePlistDoubleValue(info)), true;
        if (matchKey(info, "scale")) return b.setScale(parsePlistPoint(info)), true;
        if (matchKey(info, "pos")) return b.setPositionFast(parsePlistPoint(info)), true;
        if (matchKey(info, "locked")) return b.setLocked(readPlistInteger(info) != 0), true;
        if (matchKey(info, "alpha")) return b.setAlpha(static_cast<uint16_t>(readPlistInteger(info))), true;
        if (matchKey(info, "crop")) return readCrop(b, info, format);
        if (matchKey(info, "userData")) {
            Value userData = readPlistMergedDict(info);
            for (const auto& [key, value] : userData.dictionary()) b.setUserData_forKey(value, key);
            return true;
        }
        if (matchKey(info, "imageData")) {
            Value data = parsePlistValue(info, true);
            if (data.isData()) b.setImageData(data.data());
            return true;
        }
        if (matchKey(info, "imageType")) return b.setImageType(imageTypeForFileExtension(readPlistString(info))), true;
        if (matchKey(info, "slant")) {
            Point slant = parsePlistPoint(info);
            return b.setSlantHorizontal(slant.x), b.setSlantVertical(slant.y), true;
        }
        return false;
    });
    return ok ? image : nullptr;
}
