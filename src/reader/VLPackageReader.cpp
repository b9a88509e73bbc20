#include "model/VLChildren.h"
#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "platform/ParallelFor.h"
#include "platform/VLError.h"
#include "reader/VLDocumentFile.h"
#include "reader/VLPlistParseInfo.h"

#include <algorithm>
#include <dirent.h>
#include <memory>
#include <mutex>
#include <optional>

namespace {

struct FolderEntry {
    std::string name;
    // A link, or an entry of a file system that doesn't say what it is.
    bool mayBeLink;
};

// The glyph folder stays open while its files are read: they are opened relative to it.
using FolderHandle = std::unique_ptr<DIR, int (*)(DIR*)>;

std::vector<FolderEntry> folderContents(DIR* dir)
{
    std::vector<FolderEntry> entries;
    if (!dir) return entries;
    while (dirent* entry = readdir(dir)) {
        std::string name = entry->d_name;
        if (name != "." && name != "..") entries.push_back({name, entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN});
    }
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
    FolderHandle dir(opendir(folder.c_str()), closedir);
    std::vector<FolderEntry> entries = folderContents(dir.get());
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
        VLError glyphError;
        auto glyph = entry.mayBeLink && !isInsideFolder(folder + "/" + entry.name, folder)
                         ? refuseLinkOut(entry.name, &glyphError)
                         : VLGlyph::initWithFile_format_error(entry.name, format, &glyphError, dirfd(dir.get()));
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
