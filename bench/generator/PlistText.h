#pragma once

#include "generator/Outline.h"

#include <string>
#include <string_view>

namespace velmor::generator {

// Appends the text property-list syntax to a buffer, in the form that the record readers match
// byte by byte: "key = value;" with single spaces, one entry per line, no indentation.
class PlistText {
public:
    PlistText(std::string& out, int format) : out_(out), format_(format) {}

    int format() const { return format_; }
    std::string& buffer() { return out_; }

    void raw(std::string_view text) { out_ += text; }
    void key(std::string_view name);
    void end() { out_ += ";\n"; }
    void number(double value);
    void integer(long long value);
    void string(std::string_view text);
    // Ids are quoted whatever they hold, so that no reader takes one for a number.
    void quoted(std::string_view text);
    // A point in the form of the format: "(x,y)" in the current one, "{x, y}" quoted in the older.
    void point(Point p);

    // Shorthands for a whole "key = value;" line.
    void entry(std::string_view name, std::string_view text);
    void entry(std::string_view name, double value);
    void integerEntry(std::string_view name, long long value);
    void pointEntry(std::string_view name, Point p);

    void openDict() { out_ += "{\n"; }
    void closeDict() { out_ += '}'; }
    void openArray() { out_ += "(\n"; }
    void closeArray() { out_ += ')'; }
    // Between the elements of an array.
    void next() { out_ += ",\n"; }
    void newline() { out_ += '\n'; }

    // An array of items, each written by `write(text, item)`.
    template <typename Items, typename Write>
    void array(const Items& items, Write write) {
        openArray();
        bool first = true;
        for (const auto& item : items) {
            if (!first)
                next();
            first = false;
            write(*this, item);
        }
        newline();
        closeArray();
    }

    template <typename Items, typename Write>
    void arrayEntry(std::string_view name, const Items& items, Write write) {
        key(name);
        array(items, write);
        end();
    }

    template <typename Items>
    void numbersEntry(std::string_view name, const Items& numbers) {
        arrayEntry(name, numbers, [](PlistText& text, double n) { text.number(n); });
    }

private:
    std::string& out_;
    int format_;
};

} // namespace velmor::generator
