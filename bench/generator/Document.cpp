#include "generator/Document.h"

#include "generator/FontWriter.h"
#include "generator/GlyphWriter.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace velmor::generator {

namespace {

void writeFile(const std::filesystem::path& path, const std::string& content) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "wb"), std::fclose);
    if (!file || std::fwrite(content.data(), 1, content.size(), file.get()) != content.size() ||
        std::fflush(file.get()) != 0)
        throw std::runtime_error("can't write " + path.string() + ": " + std::strerror(errno));
}

// Nodes take most of the room: about two kilobytes per layer.
std::size_t expectedSize(const Font& font) { return 4096 + font.glyphs.size() * font.masters.size() * 2048; }

} // namespace

std::uintmax_t writeTextDocument(const Font& font, int format, const std::filesystem::path& output) {
    std::string content;
    content.reserve(expectedSize(font));
    PlistText text(content, format);
    writeFontLevel(text, font, [&](PlistText& t) {
        t.openArray();
        for (std::size_t i = 0; i < font.glyphs.size(); ++i) {
            if (i > 0)
                t.next();
            writeGlyph(t, font, i, false);
        }
        t.newline();
        t.closeArray();
    });
    writeFile(output, content);
    return content.size();
}

std::uintmax_t writePackage(const Font& font, int format, const std::filesystem::path& output) {
    if (std::filesystem::exists(output) && !std::filesystem::is_empty(output))
        throw std::runtime_error(output.string() + " exists and isn't an empty folder");
    std::filesystem::create_directories(output / "glyphs");

    std::string content;
    PlistText text(content, format);
    writeFontLevel(text, font, nullptr);
    writeFile(output / "fontinfo.plist", content);
    std::uintmax_t written = content.size();

    content.clear();
    text.openArray();
    for (std::size_t i = 0; i < font.glyphs.size(); ++i) {
        if (i > 0)
            text.next();
        text.string(font.glyphs[i].name);
    }
    text.newline();
    text.closeArray();
    text.newline();
    writeFile(output / "order.plist", content);
    written += content.size();

    for (std::size_t i = 0; i < font.glyphs.size(); ++i) {
        content.clear();
        writeGlyph(text, font, i, true);
        text.newline();
        writeFile(output / "glyphs" / (glyphFileName(font.glyphs[i].name) + ".glyph"), content);
        written += content.size();
    }
    return written;
}

} // namespace velmor::generator
