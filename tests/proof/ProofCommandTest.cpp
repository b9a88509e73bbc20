#include "proof/ProofDocument.h"
#include "proof/ProofOptions.h"
#include "reader/VLPlistParser.h"
#include "support/PlistTestSupport.h"
#include "support/PlistWriting.h"
#include "thumbnail/ThumbnailCommand.h"

#include <gtest/gtest.h>

#include <cairo.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

const std::string stems = std::string(VELMOR_TEST_DATA) + "/proof/stems.velmor";

struct Folder {
    fs::path path;
    Folder()
    {
        char name[] = "/tmp/velmor-proof-XXXXXX";
        path = mkdtemp(name);
    }
    ~Folder() { fs::remove_all(path); }
    bool empty() const { return fs::directory_iterator(path) == fs::directory_iterator(); }
};

int proof(const std::vector<std::string>& arguments)
{
    std::string command = VELMOR_PROOF_TOOL;
    for (const auto& argument : arguments) command += " '" + argument + "'";
    int status = std::system((command + " 2>/dev/null").c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string content(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

size_t count(const std::string& text, const std::regex& pattern)
{
    return static_cast<size_t>(std::distance(std::sregex_iterator(text.begin(), text.end(), pattern), {}));
}

// Whether each pixel of one row of a PNG, counted from the top, is dark.
std::vector<bool> darkInRow(const fs::path& png, int row)
{
    cairo_surface_t* surface = cairo_image_surface_create_from_png(png.c_str());
    std::vector<bool> dark;
    if (cairo_surface_status(surface) == CAIRO_STATUS_SUCCESS && row < cairo_image_surface_get_height(surface)) {
        auto* line = reinterpret_cast<const uint32_t*>(cairo_image_surface_get_data(surface) +
                                                        row * cairo_image_surface_get_stride(surface));
        for (int x = 0; x < cairo_image_surface_get_width(surface); ++x) dark.push_back((line[x] & 0xff) < 128);
    }
    cairo_surface_destroy(surface);
    return dark;
}

int darkPixelsInRow(const fs::path& png, int row)
{
    auto dark = darkInRow(png, row);
    return static_cast<int>(std::count(dark.begin(), dark.end(), true));
}

// Where the runs of dark pixels of a row begin.
std::vector<int> runStarts(const fs::path& png, int row)
{
    auto dark = darkInRow(png, row);
    std::vector<int> starts;
    for (size_t x = 0; x < dark.size(); ++x)
        if (dark[x] && (x == 0 || !dark[x - 1])) starts.push_back(static_cast<int>(x));
    return starts;
}

int parse(std::vector<std::string> arguments, ProofOptions& options)
{
    arguments.insert(arguments.begin(), "velmor-proof");
    std::vector<char*> argv;
    for (auto& argument : arguments) argv.push_back(argument.data());
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    int status = parseProofOptions(static_cast<int>(argv.size()), argv.data(), options);
    testing::internal::GetCapturedStderr();
    testing::internal::GetCapturedStdout();
    return status;
}

} // namespace

TEST(ProofOptions, ModesFollowTheOptionsAndBadOnesAreUsageErrors)
{
    ProofOptions options;
    ASSERT_EQ(parse({"--text", "Ab\\ncd\\\\n", "--size", "30", "in.velmor", "OUT.PDF"}, options), -1);
    EXPECT_EQ(options.mode, ProofOptions::Mode::Text);
    EXPECT_EQ(options.text, "Ab\ncd\\n");
    EXPECT_EQ(options.format, ProofOptions::Format::PDF);
    EXPECT_EQ(options.size, 30);
    EXPECT_EQ(options.output, "OUT.PDF");

    ProofOptions sheet;
    ASSERT_EQ(parse({"in", "out.svg"}, sheet), -1);
    EXPECT_EQ(sheet.mode, ProofOptions::Mode::SampleSheet);
    EXPECT_EQ(sheet.format, ProofOptions::Format::SVG);
    ProofOptions glyphs;
    ASSERT_EQ(parse({"--glyphs", "--master", "Bold", "in", "out.png"}, glyphs), -1);
    EXPECT_EQ(glyphs.mode, ProofOptions::Mode::Glyphs);
    ProofOptions instance;
    ASSERT_EQ(parse({"--instance", "Regular", "in", "out.png"}, instance), -1);
    EXPECT_EQ(instance.mode, ProofOptions::Mode::Text);

    const std::vector<std::vector<std::string>> bad = {
        {"in"},
        {"in", "out.png", "extra"},
        {"in", "out.jpg"},
        {"in", "out"},
        {"--size", "3", "in", "out.png"},
        {"--size", "1001", "in", "out.png"},
        {"--size", "12px", "in", "out.png"},
        {"in", "out.png", "--text"},
        {"--bold", "in", "out.png"},
        {"--all", "--glyphs", "in", "out.png"},
        {"--master", "A", "--instance", "B", "in", "out.png"},
        {"--all", "--master", "A", "in", "out.png"},
        {"--glyphs", "--text", "x", "in", "out.png"},
    };
    for (const auto& arguments : bad) {
        ProofOptions ignored;
        EXPECT_EQ(parse(arguments, ignored), ThumbnailCommandExitUsage) << arguments[0] << " " << arguments[1];
    }
    ProofOptions help;
    EXPECT_EQ(parse({"--help"}, help), 0);
}

// The stem of "I" is 100 units thick in Light, 300 in Bold; at 100 pixels a line of 1000 units,
// 10 and 30 pixels, and the instance halfway between them 20.
TEST(ProofCommand, MastersAndInstancesDrawTheirOwnStems)
{
    Folder folder;
    fs::path png = folder.path / "stem.png";
    const std::vector<std::pair<std::vector<std::string>, int>> cases = {
        {{"--master", "Light"}, 10}, {{"--master", "Bold"}, 30}, {{}, 10},
        {{"--instance", "Regular"}, 20}, {{"--instance", "Bold"}, 30}};
    for (const auto& [style, stem] : cases) {
        std::vector<std::string> arguments = style;
        arguments.insert(arguments.end(), {"--text", "I", "--size", "100", stems, png.string()});
        ASSERT_EQ(proof(arguments), 0);
        // Half the stem's height above the baseline, 30 pixels up from the bottom of 120.
        EXPECT_NEAR(darkPixelsInRow(png, 55), stem, 1) << (style.empty() ? "first master" : style[1]);
    }
}

// I advances 200 units in Light and V stands 100 units into its own advance: the pair's kerning of
// -100 brings V's stem from 400 to 300 units after the margin, 40 to 30 pixels.
TEST(ProofCommand, KerningOfTheDocumentMovesTheSecondGlyph)
{
    std::ifstream file(stems);
    std::string text((std::istreambuf_iterator<char>(file)), {});
    ScannedText scanned(text);
    Value root = parsePlistValue(scanned.get(), true);
    ASSERT_TRUE(root.isDictionary());
    ValueDictionary document = root.dictionary();
    // Property lists keep code points as hexadecimal text.
    ValueArray glyphs;
    for (const Value& glyph : document["glyphs"].array()) {
        ValueDictionary record = glyph.dictionary();
        char code[8];
        std::snprintf(code, sizeof code, "%04llX", static_cast<long long>(record["unicode"].integerValue()));
        if (record.count("unicode")) record["unicode"] = Value(std::string(code));
        glyphs.push_back(Value(record));
    }
    document["glyphs"] = Value(glyphs);
    document["kerningLTR"] = Value(ValueDictionary{{"light", Value(ValueDictionary{{"I", Value(ValueDictionary{{"V", -100.0}})}})}});
    Folder folder;
    fs::path xml = folder.path / "kerned.velmor";
    std::ofstream(xml) << propertyListOfValue(Value(document), false);
    fs::path png = folder.path / "kerned.png";
    ASSERT_EQ(proof({"--text", "IV", "--size", "100", xml.string(), png.string()}), 0);
    EXPECT_EQ(runStarts(png, 55), (std::vector<int>{15, 30}));
    ASSERT_EQ(proof({"--text", "IV", "--size", "100", stems, png.string()}), 0);
    EXPECT_EQ(runStarts(png, 55), (std::vector<int>{15, 40})) << "the text form keeps no kerning";
}

// At 100 pixels a line of 1000 units: lines 1250 units apart, and glyph cells of 1250 by 1350
// units, two to a row for five glyphs, each glyph centred on its advance.
TEST(ProofCommand, LinesAndCellsStandWhereTheyShould)
{
    Folder folder;
    fs::path lines = folder.path / "lines.png";
    ASSERT_EQ(proof({"--text", "I\\nI", "--size", "100", stems, lines.string()}), 0);
    EXPECT_EQ(darkPixelsInRow(lines, 55), 10) << "the first line";
    EXPECT_EQ(darkPixelsInRow(lines, 180), 10) << "the second line, 125 pixels lower";
    EXPECT_EQ(darkPixelsInRow(lines, 118), 0);

    fs::path grid = folder.path / "grid.png";
    ASSERT_EQ(proof({"--glyphs", "--size", "100", stems, grid.string()}), 0);
    EXPECT_EQ(darkInRow(grid, 0).size(), 270u);
    // Halfway up the stems of the first row: I in its cell from 100 units, H in its cell from 1350.
    EXPECT_EQ(runStarts(grid, 55), (std::vector<int>{67, 177})) << "edges at 67.5 and 177.5";
    EXPECT_EQ(darkPixelsInRow(grid, 55), 11 + 41);
    EXPECT_EQ(runStarts(grid, 190), (std::vector<int>{62})) << "V, 200 wide in its advance of 400, in the second row";
}

TEST(ProofCommand, VectorProofsHoldAPathPerGlyphAndAPagePerMasterAndInstance)
{
    Folder folder;
    fs::path svg = folder.path / "text.svg";
    ASSERT_EQ(proof({"--text", "IH\\nV I", stems, svg.string()}), 0);
    std::string text = content(svg);
    EXPECT_EQ(text.rfind("<?xml", 0), 0u);
    EXPECT_EQ(std::system(("python3 -c 'import sys, xml.dom.minidom as d; d.parse(sys.argv[1])' " + svg.string()).c_str()), 0)
        << "the SVG is well-formed XML";
    EXPECT_EQ(count(text, std::regex("<path")), 4u) << "I, H, V and I; the space draws nothing";

    fs::path grid = folder.path / "glyphs.svg";
    ASSERT_EQ(proof({"--glyphs", "--size", "10", stems, grid.string()}), 0);
    std::string cells = content(grid);
    // Four of the five glyphs have outlines; each name is text, drawn as glyphs of a system font.
    EXPECT_EQ(count(cells, std::regex("<path style=[^>]*fill:rgb\\(0%,0%,0%\\)[^>]*d=\"M")), 4u);

    fs::path pdf = folder.path / "all.pdf";
    ASSERT_EQ(proof({"--all", "--text", "IHI", stems, pdf.string()}), 0);
    EXPECT_EQ(count(content(pdf), std::regex("/Type /Page\\b")), 4u) << "Light, Bold, Regular and Bold";
}

TEST(ProofCommand, FailuresWriteNothing)
{
    Folder folder;
    fs::path broken = folder.path / "broken.velmor";
    std::ofstream(broken) << "{\nfontMaster = (\n";
    for (const char* name : {"out.png", "out.svg", "out.pdf"}) {
        EXPECT_EQ(proof({broken.string(), (folder.path / name).string()}), ThumbnailCommandExitUnreadable);
        EXPECT_EQ(proof({"--master", "Heavy", stems, (folder.path / name).string()}), ThumbnailCommandExitUsage);
        EXPECT_EQ(proof({"--instance", "Heavy", stems, (folder.path / name).string()}), ThumbnailCommandExitUsage);
        EXPECT_EQ(proof({"--text", " ", stems, (folder.path / name).string()}), ThumbnailCommandExitNothingDrawn);
    }
    fs::remove(broken);
    EXPECT_TRUE(folder.empty());
    EXPECT_EQ(proof({stems, (folder.path / "missing" / "out.pdf").string()}), ThumbnailCommandExitCannotWrite);
    EXPECT_TRUE(folder.empty());
}

TEST(ProofDocument, LargePicturesShrinkToTheirLimits)
{
    EXPECT_EQ(ProofPictureShrink({1000, 1000}, 4e6, 5000), 1.0);
    EXPECT_DOUBLE_EQ(ProofPictureShrink({4000, 4000}, 4e6, 5000), 0.5) << "by the count of pixels";
    EXPECT_DOUBLE_EQ(ProofPictureShrink({10000, 100}, 4e6, 5000), 0.5) << "by the longer side";
}
