#include "generator/PlistText.h"

#include <charconv>
#include <cmath>

namespace velmor::generator {

namespace {

bool isUnquotedCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '$' || c == '-' ||
           c == '.' || c == '/' || c == ':' || c == '_';
}

// A run that a reader would take for a number must be quoted to stay a string.
bool looksNumeric(std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (!((c >= '0' && c <= '9') || c == '.' || (c == '-' && i == 0)))
            return false;
    }
    return true;
}

bool needsQuotes(std::string_view text) {
    if (text.empty() || looksNumeric(text))
        return true;
    for (char c : text)
        if (!isUnquotedCharacter(c))
            return true;
    return false;
}

} // namespace

void PlistText::key(std::string_view name) {
    string(name);
    out_ += " = ";
}

void PlistText::number(double value) {
    const double rounded = std::round(value * 1000.0) / 1000.0;
    if (rounded == std::floor(rounded) && std::abs(rounded) < 1e15) {
        integer(static_cast<long long>(rounded));
        return;
    }
    char text[48];
    char* end = std::to_chars(text, text + sizeof text, rounded, std::chars_format::fixed, 3).ptr;
    while (end[-1] == '0')
        --end;
    out_.append(text, end);
}

void PlistText::integer(long long value) {
    char text[24];
    out_.append(text, std::to_chars(text, text + sizeof text, value).ptr);
}

void PlistText::string(std::string_view text) {
    if (needsQuotes(text))
        quoted(text);
    else
        out_ += text;
}

void PlistText::quoted(std::string_view text) {
    out_ += '"';
    for (char c : text) {
        if (c == '"' || c == '\\') {
            out_ += '\\';
            out_ += c;
        } else if (c == '\n') {
            out_ += format_ == 1 ? "\\012" : "\\n";
        } else {
            out_ += c;
        }
    }
    out_ += '"';
}

void PlistText::point(Point p) {
    if (format_ == 1) {
        out_ += "\"{";
        number(p.x);
        out_ += ", ";
        number(p.y);
        out_ += "}\"";
    } else {
        out_ += '(';
        number(p.x);
        out_ += ',';
        number(p.y);
        out_ += ')';
    }
}

void PlistText::entry(std::string_view name, std::string_view text) {
    key(name);
    string(text);
    end();
}

void PlistText::entry(std::string_view name, double value) {
    key(name);
    number(value);
    end();
}

void PlistText::integerEntry(std::string_view name, long long value) {
    key(name);
    integer(value);
    end();
}

void PlistText::pointEntry(std::string_view name, Point p) {
    key(name);
    point(p);
    end();
}

} // namespace velmor::generator
