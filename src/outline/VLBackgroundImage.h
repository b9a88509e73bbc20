#pragma once

#include "model/VLElement.h"
#include "platform/Geometry.h"

#include <cstdint>
#include <memory>
#include <string>

struct VLPlistParseInfo;

// A picture behind a layer, placed and cropped; the thumbnail does not draw it.
class VLBackgroundImage : public VLTransformableElement {
public:
    static std::shared_ptr<VLBackgroundImage> init() { return std::make_shared<VLBackgroundImage>(); }
    static std::shared_ptr<VLBackgroundImage> initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format);
    // The same record as a dictionary; nothing for another value.
    static std::shared_ptr<VLBackgroundImage> initWithDict_format(const Value& dict, uint8_t format);
    static constexpr const char* className = "VLBackgroundImage";

    std::shared_ptr<VLShape> copy() const override { return std::make_shared<VLBackgroundImage>(*this); }

    const std::string& imagePath() const { return _imagePath; }
    void setImagePath(const std::string& path) { _imagePath = path; }
    uint16_t alpha() const { return _alpha; }
    void setAlpha(uint16_t alpha) { _alpha = alpha; }
    const Rect& crop() const { return _crop; }
    void setCrop(const Rect& crop) { _crop = crop; }
    const ValueData& imageData() const { return _imageData; }
    void setImageData(ValueData data) { _imageData = std::move(data); }
    const std::string& imageType() const { return _imageType; }
    void setImageType(const std::string& type) { _imageType = type; }
    // The type of image data a file extension stands for: "png", "jpg" or "pdf"; "" otherwise.
    static std::string imageTypeForFileExtension(const std::string& extension);

private:
    std::string _imagePath;
    uint16_t _alpha = 0;
    Rect _crop;
    ValueData _imageData;
    std::string _imageType;
};
