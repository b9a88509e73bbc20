#include "proof/ProofOptions.h"

#include "thumbnail/ThumbnailCommand.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

const char* usageText =
    "usage: velmor-proof [options] INPUT OUTPUT\n"
    "\n"
    "Draws a proof of the font source document INPUT as OUTPUT, a .png, .svg or .pdf file.\n"
    "Without options: the sample sheet, a text in the font under a strip of each master.\n"
    "\n"
    "  --text TEXT       set TEXT instead (\\n starts a new line)\n"
    "  --master NAME     set it in the master NAME (default: the first master)\n"
    "  --instance NAME   set it in the instance NAME\n"
    "  --all             one row per master and per instance, each under its name\n"
    "                    (in PDF one page each)\n"
    "  --glyphs          every glyph of the first master (or of --master) in a grid\n"
    "  --size PX         height of a line of text in pixels (PNG) or points (SVG, PDF),\n"
    "                    from 4 to 1000 (default 72)\n"
    "  --help            show this text\n"
    "  --version         show the version\n"
    "\n"
    "Exit status: 0 written, 1 the document can't be read, 2 nothing to show,\n"
    "64 usage error, 74 the output can't be written.\n";

int usageError(const std::string& message)
{
    std::fprintf(stderr, "velmor-proof: %s\n%s", message.c_str(), usageText);
    return ThumbnailCommandExitUsage;
}

// "\n" is a line feed and "\\" a backslash; any other backslash stays as it is.
std::string unescapeText(const std::string& text)
{
    std::string result;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size() && (text[i + 1] == 'n' || text[i + 1] == '\\')) {
            result += text[++i] == 'n' ? '\n' : '\\';
        } else {
            result += text[i];
        }
    }
    return result;
}

bool parseSize(const char* text, double& size)
{
    char* end = nullptr;
    size = std::strtod(text, &end);
    return end != text && *end == '\0' && size >= ProofSmallestSize && size <= ProofLargestSize;
}

bool formatOfOutput(const std::string& output, ProofOptions::Format& format)
{
    auto dot = output.rfind('.');
    std::string extension = dot == std::string::npos ? "" : output.substr(dot + 1);
    for (char& c : extension) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    if (extension == "png") format = ProofOptions::Format::PNG;
    else if (extension == "svg") format = ProofOptions::Format::SVG;
    else if (extension == "pdf") format = ProofOptions::Format::PDF;
    else return false;
    return true;
}

// The options that can't go together, as the message that says so; empty when they can.
std::string conflict(const ProofOptions& options, bool all, bool glyphs)
{
    if (all && glyphs) return "--all and --glyphs can't go together";
    if (!options.master.empty() && !options.instance.empty()) return "--master and --instance can't go together";
    if (all && (!options.master.empty() || !options.instance.empty()))
        return "--all sets every master and instance; leave out --master and --instance";
    if (glyphs && (!options.instance.empty() || !options.text.empty()))
        return "--glyphs shows the glyphs of a master; leave out --instance and --text";
    return "";
}

} // namespace

int parseProofOptions(int argc, char** argv, ProofOptions& options)
{
    std::vector<std::string> operands;
    bool all = false, glyphs = false;
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        if (arg == "--help") {
            std::fputs(usageText, stdout);
            return 0;
        }
        if (arg == "--version") {
            std::printf("velmor-proof %s\n", VELMOR_VERSION);
            return 0;
        }
        bool takesValue = arg == "--text" || arg == "--master" || arg == "--instance" || arg == "--size";
        if (takesValue && ++i == argc) return usageError(arg + " needs a value");
        if (arg == "--text") options.text = unescapeText(argv[i]);
        else if (arg == "--master") options.master = argv[i];
        else if (arg == "--instance") options.instance = argv[i];
        else if (arg == "--size" && !parseSize(argv[i], options.size))
            return usageError("the size must be a number from 4 to 1000");
        else if (arg == "--all") all = true;
        else if (arg == "--glyphs") glyphs = true;
        else if (!takesValue && arg.size() > 1 && arg[0] == '-') return usageError("unknown option " + arg);
        else if (!takesValue) operands.push_back(arg);
    }
    if (operands.size() != 2) return usageError("INPUT and OUTPUT are needed");
    if (std::string message = conflict(options, all, glyphs); !message.empty()) return usageError(message);
    options.input = operands[0];
    options.output = operands[1];
    if (!formatOfOutput(options.output, options.format))
        return usageError("OUTPUT must end in .png, .svg or .pdf");
    options.mode = all      ? ProofOptions::Mode::All
                   : glyphs ? ProofOptions::Mode::Glyphs
                   : !options.text.empty() || !options.master.empty() || !options.instance.empty()
                       ? ProofOptions::Mode::Text
                       : ProofOptions::Mode::SampleSheet;
    return -1;
}
