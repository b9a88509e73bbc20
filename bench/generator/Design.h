#pragma once

#include "generator/Outline.h"
#include "generator/Random.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velmor::generator {

struct Master {
    std::string id;
    std::string weightName;
    std::string widthName; // empty at the normal width
    Location location;

    std::string name() const { return widthName.empty() ? weightName : weightName + " " + widthName; }
};

enum class GlyphKind { Notdef, Space, LetterA, LetterG, Outline, Alternate, Composite };

struct GlyphInfo {
    std::string name;
    GlyphKind kind = GlyphKind::Outline;
    std::vector<std::uint32_t> unicodes;
    int group = -1; // kerning group, -1 for none
};

struct Font {
    std::uint64_t variant = 1;
    std::vector<Master> masters;
    std::vector<GlyphInfo> glyphs;
    std::vector<std::size_t> baseGlyphs; // glyphs without components, which components may use
    int axisCount = 1;                   // weight, and width when a master is condensed
};

// "Thin" to "Black", by the nearest hundred.
std::string weightName(double weight);

Font makeFont(int glyphCount, int masterCount, std::uint64_t variant);

// A random closed outline around a centre; its vertices are fixed, its size follows the weight.
struct Blob {
    struct Vertex {
        double angle;
        double radius; // relative to the blob's radii
        bool curve;    // the segment that ends here
        double bulge;  // of a curve, relative to its chord
        bool smooth;
        bool named;
    };
    Point centre;
    double rx = 0.0;
    double ry = 0.0;
    std::vector<Vertex> vertices;
};

struct Component {
    std::string ref;
    Point offset;
    double scaleX = 1.0;
    double scaleY = 1.0;
    double angle = 0.0; // degrees
    bool noAlign = false;
    std::string anchor;
};

struct Anchor {
    std::string name;
    Point position;
};

// A stem between two on-curve nodes of the first path; the places are fractions of the list of
// on-curve nodes, so that every master refers to the same nodes.
struct Hint {
    bool horizontal = false;
    double origin = 0.0;
    double target = 0.0;
};

struct ResolvedHint {
    bool horizontal;
    int origin;
    int target;
};

struct GlyphPlan {
    const GlyphInfo* info = nullptr;
    double advance = 0.0;
    std::vector<Blob> blobs;
    std::vector<Component> components;
    std::vector<Anchor> anchors; // x as a fraction of the advance
    std::vector<Hint> hints;
    int colourIndex = -1;  // 0 to 11, or -1
    bool colourTuple = false;
    bool exported = true;
    bool mark = false;
    bool note = false;
    bool userData = false;
    bool braceLayer = false;
    bool bracketLayers = false;
    bool backupLayer = false;
    bool background = false;
    bool guides = false;
    std::string lastChange;
    std::vector<std::string> specialIds; // layer ids of brace, bracket and backup layers, in order
};

GlyphPlan planGlyph(const Font& font, std::size_t index);

struct Layer {
    std::vector<Path> paths;
    std::vector<Component> components;
    std::vector<Anchor> anchors;
    std::vector<ResolvedHint> hints;
    double width = 0.0;
};

// `slanted` draws the alternate design of bracket layers: the same nodes, sheared.
Layer drawLayer(const GlyphPlan& plan, const Location& location, bool slanted);

// A UUID-shaped id, upper case.
std::string makeId(Random& random);

// "2024-11-05 10:20:30 +0000": the width that readers of "lastChange" count on.
std::string makeDate(Random& random);

// The file name of a glyph in a package, without ".glyph": names that differ only by case must
// stay apart on a file system that folds case.
std::string glyphFileName(const std::string& glyphName);

} // namespace velmor::generator
