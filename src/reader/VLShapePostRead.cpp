#include "model/VLFont.h"
#include "model/VLShape.h"

#include <filesystem>

// A pattern file is stored relative to the document, which is only known while it is read.
bool VLShape::postRead_format(VLError*, uint8_t)
{
    Value pattern = attributeForKey("fillPatternFile");
    if (!pattern.isString() || pattern.string().empty() || pattern.string().front() == '/') return true;
    auto owner = font();
    Value filePath = owner ? owner->tempDataForKey("filePath") : Value();
    if (!filePath.isString()) return true;
    std::filesystem::path folder = std::filesystem::path(filePath.string()).parent_path();
    _attributes["fillPatternFile"] = Value((folder / pattern.string()).lexically_normal().string());
    return true;
}
