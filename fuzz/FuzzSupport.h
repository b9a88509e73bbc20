#pragma once

#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "platform/VLError.h"
#include "platform/VLException.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <unistd.h>

// The reader maps files, so the input goes through a real file, as a downloaded document would.
class FuzzDocument {
public:
    FuzzDocument(const uint8_t* data, size_t size)
    {
        char name[] = "/tmp/velmor-fuzz-XXXXXX";
        int fd = mkstemp(name);
        if (fd < 0) abort();
        _path = name;
        for (size_t written = 0; written < size;) {
            ssize_t n = write(fd, data + written, size - written);
            if (n <= 0) abort();
            written += static_cast<size_t>(n);
        }
        close(fd);
    }
    ~FuzzDocument() { unlink(_path.c_str()); }
    FuzzDocument(const FuzzDocument&) = delete;
    FuzzDocument& operator=(const FuzzDocument&) = delete;

    const std::string& path() const { return _path; }

private:
    std::string _path;
};

// Reads the font level, then every glyph's layers, the way a request does before drawing.
// An exception is an outcome the service reports as an unreadable document, not a fault.
inline std::shared_ptr<VLFont> readWholeDocument(const uint8_t* data, size_t size)
{
    FuzzDocument document(data, size);
    try {
        VLError error;
        auto font = VLFont::initWithURL_error(document.path(), &error);
        if (!font) return nullptr;
        for (const auto& glyph : font->glyphs()) glyph->readLayersFormat(font->formatVersion());
        return font;
    } catch (const VLException&) {
        return nullptr;
    }
}
