#include "reader/VLPropertyListFile.h"

#include "reader/VLBinaryPlistGuard.h"
#include "reader/VLDocumentFile.h"
#include "reader/VLPlistLexical.h"
#include "reader/VLPlistParser.h"
#include "reader/VLXMLPlistGuard.h"

#include <plist/plist.h>

#include <cerrno>
#include <cstdlib>
#include <limits>
#include <memory>
#include <unistd.h>

namespace {

using PlistHandle = std::unique_ptr<void, void (*)(plist_t)>;

std::string takeString(char* text)
{
    std::string s = text ? text : "";
    std::free(text);
    return s;
}

std::optional<Value> convert(plist_t node, int depth);

// libplist finds an array's item by index from the start of the array, so the items are visited
// with its iterator.
std::optional<Value> convertArray(plist_t node, int depth)
{
    ValueArray items;
    plist_array_iter iter = nullptr;
    plist_array_new_iter(node, &iter);
    std::unique_ptr<void, decltype(&std::free)> held(iter, &std::free);
    while (true) {
        plist_t item = nullptr;
        plist_array_next_item(node, iter, &item);
        if (!item) break;
        auto value = convert(item, depth + 1);
        if (!value) return std::nullopt;
        items.push_back(std::move(*value));
    }
    return Value(std::move(items));
}

std::optional<Value> convertDictionary(plist_t node, int depth)
{
    ValueDictionary entries;
    plist_dict_iter iter = nullptr;
    plist_dict_new_iter(node, &iter);
    while (iter) {
        char* key = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, iter, &key, &item);
        if (!item) {
            std::free(key);
            break;
        }
        auto value = convert(item, depth + 1);
        std::string name = takeString(key);
        if (!value) {
            std::free(iter);
            return std::nullopt;
        }
        entries[name] = std::move(*value);
    }
    std::free(iter);
    return Value(std::move(entries));
}

std::optional<Value> convert(plist_t node, int depth)
{
    if (!node || depth > static_cast<int>(VLPlistMaximumNesting)) return std::nullopt;
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        uint8_t b = 0;
        plist_get_bool_val(node, &b);
        return Value(b != 0);
    }
    case PLIST_UINT: {
        uint64_t u = 0;
        plist_get_uint_val(node, &u);
        // Negative integers arrive in two's complement.
        return Value(static_cast<int64_t>(u));
    }
    case PLIST_REAL: {
        double d = 0;
        plist_get_real_val(node, &d);
        return Value(d);
    }
    case PLIST_STRING: {
        // The pointer form, since the copying one aborts on a string with an inner NUL.
        uint64_t length = 0;
        const char* text = plist_get_string_ptr(node, &length);
        return Value(text ? std::string(text, length) : std::string());
    }
    case PLIST_DATA: {
        char* bytes = nullptr;
        uint64_t length = 0;
        plist_get_data_val(node, &bytes, &length);
        ValueData data(bytes, bytes + length);
        std::free(bytes);
        return Value(std::move(data));
    }
    case PLIST_ARRAY: return convertArray(node, depth);
    case PLIST_DICT: return convertDictionary(node, depth);
    default: return Value();
    }
}

bool looksLikeText(const std::string& bytes)
{
    for (unsigned char c : bytes) {
        if (isPlistFullSpace(c)) continue;
        return c == '{' || c == '(';
    }
    return false;
}

} // namespace

std::optional<std::string> readFileBytes(const std::string& path, size_t largest)
{
    struct stat status;
    int fd = openDocumentFile(path, status);
    if (fd < 0) return std::nullopt;
    std::string bytes;
    if (static_cast<uint64_t>(status.st_size) <= largest) {
        bytes.resize(static_cast<size_t>(status.st_size));
        size_t length = 0;
        while (length < bytes.size()) {
            ssize_t n = read(fd, bytes.data() + length, bytes.size() - length);
            if (n < 0 && errno == EINTR) continue;
            if (n <= 0) break;
            length += static_cast<size_t>(n);
        }
        bytes.resize(length);
    }
    close(fd);
    if (bytes.empty()) return std::nullopt;
    return bytes;
}

std::optional<Value> parseBinaryOrXMLPropertyList(const std::string& bytes)
{
    if (bytes.empty() || bytes.size() > std::numeric_limits<uint32_t>::max()) return std::nullopt;
    bool binary = bytes.starts_with("bplist");
    if (binary && bytes.size() > VLPropertyListLargestBinaryDocument) return std::nullopt;
    if (!(binary ? binaryPlistIsSafe(bytes) : xmlPlistIsSafe(bytes))) return std::nullopt;
    plist_t root = nullptr;
    plist_from_memory(bytes.data(), static_cast<uint32_t>(bytes.size()), &root);
    PlistHandle handle(root, plist_free);
    return root ? convert(root, 0) : std::nullopt;
}

std::optional<Value> readPropertyListFile(const std::string& path)
{
    auto bytes = readFileBytes(path, VLPropertyListLargestFile);
    if (!bytes) return std::nullopt;
    if (!looksLikeText(*bytes)) return parseBinaryOrXMLPropertyList(*bytes);
    VLPlistParseInfo info;
    if (!openPlistParseInfoWithBytes(bytes->data(), bytes->size(), &info)) return std::nullopt;
    Value value = parsePlistValue(&info, true);
    closePlistParseInfo(&info);
    if (value.isNull()) return std::nullopt;
    return value;
}
