#include "model/VLChildren.h"
#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "platform/ParallelFor.h"
#include "platform/VLError.h"

#include <algorithm>
#include <dirent.h>
#include <mutex>
#include <optional>

namespace {

std::vector<std::string> folderContents(const std::string& folder)
{
    std::vector<std::string> names;
    DIR* dir = opendir(folder.c_str());
    if (!dir) return names;
    while (dirent* entry = readdir(dir)) {
        std::string name = entry->d_name;
        if (name != "." && name != "..") names.push_back(name);
    }
    closedir(dir);
    return names;
}

bool hasGlyphExtension(const std::string& name)
{
    static const std::string extension = ".glyph";
    return name.size() > extension.size() && name.compare(name.size() - extension.size(), extension.size(), extension) == 0;
}

} // namespace

bool VLFont::readGlyphFiles_format_error(const std::string& folder, uint8_t format, VLError* error)
{
    std::vector<std::string> names = folderContents(folder);
    if (names.empty()) {
        handOut(error, VLError::errorWithDomain_code_userInfo("VLVelmorDomain", 1,
                                                              {{VLError::localizedDescriptionKey, "No Glyphs found!"}}));
        return false;
    }
    std::mutex lock;
    std::optional<VLError> failure;
    auto self = shared_from_this();
    ParallelFor(names.size(), [&](size_t i, bool& stop) {
        if (!hasGlyphExtension(names[i])) return;
        VLError glyphError;
        auto glyph = VLGlyph::initWithFile_format_error(folder + "/" + names[i], format, &glyphError);
        std::lock_guard guard(lock);
        if (!glyph) {
            if (!glyphError.domain.empty()) failure = glyphError;
            stop = true;
            return;
        }
        VLAddChild(_glyphs, std::move(glyph), self);
    });
    if (failure) {
        handOut(error, *failure);
        return false;
    }
    // Threads append in any order; the file's index gives the font's.
    std::sort(_glyphs.begin(), _glyphs.end(), [](const auto& a, const auto& b) { return a->glyphId() < b->glyphId(); });
    return true;
}
