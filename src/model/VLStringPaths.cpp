#include "model/VLStringHelpers.h"

#include "platform/UUID.h"

#include <filesystem>

namespace fs = std::filesystem;

std::string encodeForFilePath(std::string_view s)
{
    std::string result(s);
    std::erase_if(result, [](char c) {
        return (c >= 0 && c < 32) || std::string_view("<>:\"/\\|?*").find(c) != std::string_view::npos;
    });
    return result;
}

std::string pathForTemporaryFileWithPrefix(std::string_view prefix)
{
    std::string name = std::string(prefix) + "-" + newUUIDString();
    return (fs::temp_directory_path() / name).string();
}

std::string absolutePathFromBaseDirPath(std::string_view path, std::string_view baseDirPath)
{
    fs::path p(path);
    if (p.is_absolute()) return p.string();
    return (fs::path(baseDirPath) / p).lexically_normal().string();
}

std::string relativePathFromBaseDirPath(std::string_view path, std::string_view baseDirPath)
{
    fs::path p(path);
    if (!p.is_absolute()) return p.string();
    return p.lexically_normal().lexically_relative(fs::path(baseDirPath).lexically_normal()).string();
}
