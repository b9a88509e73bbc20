// velmor-generate: writes large, deterministic font documents for the benchmarks and small ones
// for the fuzzing corpora.
#include "generator/Design.h"
#include "generator/Document.h"

#include <charconv>
#include <cstdio>
#include <exception>
#include <optional>
#include <string>
#include <string_view>

namespace {

struct Options {
    int glyphs = 10000;
    int masters = 3;
    int format = 3;
    bool package = false;
    std::uint64_t variant = 1;
    std::string output;
};

constexpr const char* usage =
    "usage: velmor-generate [--glyphs N] [--masters M] [--format 1|3] [--package] [--variant N] OUTPUT\n"
    "  --glyphs N    number of glyphs, at least 2 (default 10000)\n"
    "  --masters M   number of masters, 1 to 50 (default 3)\n"
    "  --format F    1 for the older text format, 3 for the current one (default 3)\n"
    "  --package     write a package folder instead of one text file\n"
    "  --variant N   the same number gives the same bytes (default 1)\n";

template <typename Number>
std::optional<Number> parseNumber(std::string_view text) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

std::optional<Options> parseOptions(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        const bool hasValue = i + 1 < argc;
        if (argument == "--package") {
            options.package = true;
        } else if (argument == "--glyphs" && hasValue) {
            const auto value = parseNumber<int>(argv[++i]);
            if (!value || *value < 2)
                return std::nullopt;
            options.glyphs = *value;
        } else if (argument == "--masters" && hasValue) {
            const auto value = parseNumber<int>(argv[++i]);
            if (!value || *value < 1 || *value > 50)
                return std::nullopt;
            options.masters = *value;
        } else if (argument == "--format" && hasValue) {
            const auto value = parseNumber<int>(argv[++i]);
            if (!value || (*value != 1 && *value != 3))
                return std::nullopt;
            options.format = *value;
        } else if (argument == "--variant" && hasValue) {
            const auto value = parseNumber<std::uint64_t>(argv[++i]);
            if (!value)
                return std::nullopt;
            options.variant = *value;
        } else if (!argument.starts_with("--") && options.output.empty()) {
            options.output = argument;
        } else {
            return std::nullopt;
        }
    }
    if (options.output.empty())
        return std::nullopt;
    return options;
}

} // namespace

int main(int argc, char** argv) {
    const std::optional<Options> options = parseOptions(argc, argv);
    if (!options) {
        std::fputs(usage, stderr);
        return 64;
    }
    try {
        using namespace velmor::generator;
        const Font font = makeFont(options->glyphs, options->masters, options->variant);
        const std::uintmax_t bytes = options->package ? writePackage(font, options->format, options->output)
                                                      : writeTextDocument(font, options->format, options->output);
        std::printf("%s: %d glyphs, %d masters, format %d, %ju bytes\n", options->output.c_str(), options->glyphs,
                    options->masters, options->format, bytes);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "velmor-generate: %s\n", error.what());
        return 1;
    }
    return 0;
}
