#include "model/VLChildren.h"
#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "platform/ParallelFor.h"
#include "platform/VLError.h"
#include "reader/VLDocumentFile.h"
#include "reader/VLPlistParseInfo.h"

#include <algorithm>
#include <dirent.h>
#include <mutex>
#include <optional>

namespace {

struct FolderEntry {
    std::string name;
    // A link, or an entry of a file system that doesn't say what it is.
    bool mayBeLink;
};

std::vector<FolderEntry> folderContents(const std::string& folder)
{
    std::vector<FolderEntry> entries;
    DIR* dir = opendir(folder.c_str());
    if (!dir) return entries;
    while (dirent* entry = readdir(dir)) {
        std::string name = entry->d_name;
        if (name != "." && name != "..") entries.push_back({name, entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN});
    }
    closedir(dir);
    return entries;
}

bool hasGlyphExtension(const std::string& name)
{
    static const std::string extension = ".glyph";
    return name.size() > extension.size() && name.compare(name.size() - extension.size(), extension.size(), extension) == 0;
}

// A glyph file that is a link out of the glyph folder fails like a file that can't be opened.
std::shared_ptr<VLGlyph> refuseLinkOut(const std::string& name, VLError* error)
{
    handOut(error, makePlistFileError(VLPlistFileErrorCode, "Link out of the glyph folder: %s", name.c_str()));
    return nullptr;
}

} // namespace

bool VLFont::readGlyphFiles_format_error(const std::string& folder, uint8_t format, VLError* error)
{
    std::vector<FolderEntry> entries = folderContents(folder);
    if (entries.empty()) {
        handOut(error, VLError::errorWithDomain_code_userInfo("VLVelmorDomain", 1,
                                                              {{VLError::localizedDescriptionKey, "No Glyphs found!"}}));
        return false;
    }
    std::mutex lock;
    std::optional<VLError> failure;
    auto self = shared_from_this();
    ParallelFor(entries.size(), [&](size_t i, bool& stop) {
        const FolderEntry& entry = entries[i];
        if (!hasGlyphExtension(entry.name)) return;
        std::string path = folder + "/" + entry.name;
        VLError glyphError;
        auto glyph = entry.mayBeLink && !isInsideFolder(path, folder)
                         ? refuseLinkOut(entry.name, &glyphError)
                         : VLGlyph::initWithFile_format_error(path, format, &glyphError);
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
