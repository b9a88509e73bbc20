#include "model/VLFont.h"
#include "platform/Log.h"
#include "platform/VLException.h"
#include "reader/VLDocumentFile.h"
#include "reader/VLPlistParseInfo.h"
#include "reader/VLPropertyListFile.h"

#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr size_t sniffLength = 9;

bool isDirectory(const std::string& path, bool& exists)
{
    struct stat status;
    exists = ::stat(path.c_str(), &status) == 0;
    return exists && S_ISDIR(status.st_mode);
}

// The first byte of a file that holds at least sniffLength bytes; -1 otherwise.
int sniffFirstByte(const std::string& path)
{
    struct stat status;
    int fd = openDocumentFile(path, status);
    if (fd < 0) return -1;
    unsigned char bytes[sniffLength];
    ssize_t read = ::read(fd, bytes, sniffLength);
    close(fd);
    return read == static_cast<ssize_t>(sniffLength) ? bytes[0] : -1;
}

// A package's own files; a link that leads out of the folder is not followed.
std::string packageFile(const std::string& folder, const char* name)
{
    std::string path = folder + "/" + name;
    bool exists = false;
    isDirectory(path, exists);
    // A missing file fails where it is read, as missing.
    if (!exists || isInsideFolder(path, folder)) return path;
    VLLog("Not reading " + path + ": it leads out of the package");
    return std::string();
}

} // namespace

std::shared_ptr<VLFont> VLFont::initWithURL_error(const std::string& path, VLError* error)
{
    bool exists = false;
    bool folder = isDirectory(path, exists);
    if (!exists) {
        VLLog("No file at path: " + path);
        return nullptr;
    }
    int first = sniffFirstByte(folder ? packageFile(path, "fontinfo.plist") : path);
    if (first < 0) return nullptr;
    if (first != '{') return folder ? nullptr : initWithPropertyListAtPath_error(path, error);
    VLError streamError;
    auto font = initWithVelmorFileAtPath_error(path, &streamError);
    if (!font && !folder) {
        font = initWithTextThroughDictAtPath_streamError(path, streamError);
        if (font) return font;
    }
    if (!font) {
        if (!streamError.domain.empty()) handOut(error, streamError);
        return nullptr;
    }
    if (!font->postRead(error)) return nullptr;
    font->enableUpdateInterface();
    return font;
}

std::shared_ptr<VLFont> VLFont::initWithVelmorFileAtPath_error(const std::string& path, VLError* error)
{
    auto font = std::make_shared<VLFont>();
    font->_versionMinor = 1;
    font->_formatVersion = 1;
    font->_previewRemoveOverlap = false;
    font->_snapToObjects = false;
    font->setTempData_forKey(Value(path), "filePath");

    bool exists = false;
    bool folder = isDirectory(path, exists);
    std::string file = folder ? packageFile(path, "fontinfo.plist") : path;
    font->_pInfo = std::make_shared<VLPlistParseInfo>();
    VLPlistParseInfo* info = font->_pInfo.get();
    if (!openPlistParseInfo(file.c_str(), info)) {
        if (info->error) handOut(error, *info->error);
        return nullptr;
    }
    ++info->curr; // the opening brace, known from the sniff
    if (!font->readWithVelmorParser(info)) {
        if (info->error) handOut(error, *info->error);
        return nullptr;
    }
    if (folder && !font->readPackageGlyphs(path, error)) return nullptr;
    return font;
}

// The glyph order comes from "order.plist"; the glyphs themselves from one file each.
bool VLFont::readPackageGlyphs(const std::string& folder, VLError* error)
{
    std::string orderFile = packageFile(folder, "order.plist");
    auto order = orderFile.empty() ? std::nullopt : readPropertyListFile(orderFile);
    if (!order || !order->isArray() || order->count() == 0) return false;
    std::vector<std::string> names;
    for (const Value& name : order->array()) names.push_back(name.isString() ? name.string() : name.description());
    setGlyphFiles(std::move(names));
    std::string glyphFolder = packageFile(folder, "glyphs");
    return !glyphFolder.empty() && readGlyphFiles_format_error(glyphFolder, _formatVersion, error);
}

std::shared_ptr<VLFont> VLFont::initWithPropertyListAtPath_error(const std::string& path, VLError* error)
{
    auto bytes = readFileBytes(path, VLPropertyListLargestDocument);
    auto root = bytes ? parseBinaryOrXMLPropertyList(*bytes) : std::nullopt;
    if (!root || !root->isDictionary()) {
        handOut(error, VLError::errorWithDomain_code_userInfo(
                           VLPlistErrorDomain, VLPlistSyntaxErrorCode,
                           {{VLError::localizedDescriptionKey,
                             "The data couldn’t be read because it isn’t in the correct format."}}));
        return nullptr;
    }
    try {
        auto font = initWithDict_error(*root, error);
        if (font) font->setTempData_forKey(Value(path), "filePath");
        return font;
    } catch (const VLException&) {
        return nullptr;
    }
}
