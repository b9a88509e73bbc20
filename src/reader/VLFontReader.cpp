#include "model/VLFont.h"
#include "platform/Log.h"

#include <cstdio>
#include <sys/stat.h>

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
    FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) return -1;
    unsigned char bytes[sniffLength];
    size_t read = std::fread(bytes, 1, sniffLength, file);
    std::fclose(file);
    return read == sniffLength ? bytes[0] : -1;
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
    int first = sniffFirstByte(folder ? path + "/fontinfo.plist" : path);
    // Property lists in the platform's other forms have no reader yet.
    if (first != '{') return nullptr;
    auto font = initWithVelmorFileAtPath_error(path, error);
    if (!font) return nullptr;
    font->setTempData_forKey(Value(path), "filePath");
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
    std::string file = isDirectory(path, exists) ? path + "/fontinfo.plist" : path;
    VLPlistParseInfo* info = &font->_pInfo;
    if (!openPlistParseInfo(file.c_str(), info)) {
        if (info->error) handOut(error, *info->error);
        return nullptr;
    }
    ++info->curr; // the opening brace, known from the sniff
    if (!font->readWithVelmorParser(info)) {
        if (info->error) handOut(error, *info->error);
        return nullptr;
    }
    return font;
}
