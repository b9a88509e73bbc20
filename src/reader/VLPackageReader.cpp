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

// The glyph folder, open while its files are read: each file is then opened by its name alone.
class GlyphFolder {
public:
    explicit GlyphFolder(const std::string& path) : _dir(opendir(path.c_str())) {}
    ~GlyphFolder()
    {
        if (_dir) closedir(_dir);
    }
    GlyphFolder(const GlyphFolder&) = delete;
    GlyphFolder& operator=(const GlyphFolder&) = delete;

    int descriptor() const { return _dir ? dirfd(_dir) : -1; }

    std::vector<FolderEntry> contents()
    {
        std::vector<FolderEntry> entries;
        if (!_dir) return entries;
        while (dirent* entry = readdir(_dir)) {
            std::string name = entry->d_name;
            if (name != "." && name != "..")
                entries.push_back({name, entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN});
        }
        return entries;
    }

private:
    DIR* _dir;
};

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
    GlyphFolder glyphFolder(folder);
    std::vector<FolderEntry> entries = glyphFolder.contents();
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
                         : VLGlyph::initWithFileInFolder_name_path_format_error(glyphFolder.descriptor(), entry.name,
                                                                                path, format, &glyphError);
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
