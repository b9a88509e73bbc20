#include "generator/GlyphWriter.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <numbers>

namespace velmor::generator {

namespace {

enum class LayerKind { Master, Brace, Bracket, Backup };

struct LayerHeader {
    LayerHeader(LayerKind kind, std::string layerId, std::string associatedMasterId = {}, std::string name = {})
        : kind(kind), layerId(std::move(layerId)), associatedMasterId(std::move(associatedMasterId)),
          name(std::move(name)) {}

    LayerKind kind;
    std::string layerId;
    std::string associatedMasterId; // only for layers that aren't master layers
    std::string name;
    std::vector<double> coordinates; // of a brace layer, one per axis
    double bracketMinimum = 0.0;     // of a bracket layer, on the weight axis
    bool extras = false;             // background, guides and user data go on one layer only
};

void appendInteger(std::string& out, double value) {
    char text[24];
    out.append(text, std::to_chars(text, text + sizeof text, std::lround(value)).ptr);
}

// Nodes are most of a document, so they are written straight into the buffer.
void writeNode(std::string& out, const Node& node, bool older) {
    if (older) {
        out += '"';
        appendInteger(out, node.position.x);
        out += ' ';
        appendInteger(out, node.position.y);
        out += node.type == NodeType::Line ? " LINE" : node.type == NodeType::Curve ? " CURVE" : " OFFCURVE";
        if (node.smooth)
            out += " SMOOTH";
        if (node.named)
            out += " {name = hr00;}";
        out += '"';
    } else {
        out += '(';
        appendInteger(out, node.position.x);
        out += ',';
        appendInteger(out, node.position.y);
        out += node.type == NodeType::Line ? ",l" : node.type == NodeType::Curve ? ",c" : ",o";
        if (node.smooth)
            out += 's';
        if (node.named)
            out += ",{name = hr00;}";
        out += ')';
    }
}

void writePath(PlistText& text, const Path& path) {
    std::string& out = text.buffer();
    out += "{\nclosed = 1;\nnodes = (\n";
    for (std::size_t i = 0; i < path.nodes.size(); ++i) {
        if (i > 0)
            out += ",\n";
        writeNode(out, path.nodes[i], text.format() == 1);
    }
    out += "\n);\n}";
}

// Empty lists are left out, as the editor leaves them out.
template <typename T, typename Write>
void writeList(PlistText& text, std::string_view key, const std::vector<T>& items, Write write) {
    if (!items.empty())
        text.arrayEntry(key, items, write);
}

void writeTransform(PlistText& text, const Component& component) {
    const double angle = component.angle * std::numbers::pi / 180.0;
    const double matrix[] = {component.scaleX * std::cos(angle), component.scaleX * std::sin(angle),
                             -component.scaleY * std::sin(angle), component.scaleY * std::cos(angle),
                             component.offset.x, component.offset.y};
    text.key("transform");
    text.raw("\"{");
    for (std::size_t i = 0; i < 6; ++i) {
        if (i > 0)
            text.raw(", ");
        text.number(matrix[i]);
    }
    text.raw("}\"");
    text.end();
}

void writeComponent(PlistText& text, const Component& component) {
    const bool older = text.format() == 1;
    text.openDict();
    if (component.noAlign)
        text.integerEntry("alignment", -1);
    if (!component.anchor.empty())
        text.entry("anchor", component.anchor);
    if (older) {
        text.entry("name", component.ref);
        if (component.angle != 0.0 || component.scaleX != 1.0 || component.scaleY != 1.0 ||
            component.offset.x != 0.0 || component.offset.y != 0.0)
            writeTransform(text, component);
    } else {
        if (component.angle != 0.0)
            text.entry("angle", component.angle);
        if (component.offset.x != 0.0 || component.offset.y != 0.0)
            text.pointEntry("pos", component.offset);
        text.entry("ref", component.ref);
        if (component.scaleX != 1.0 || component.scaleY != 1.0)
            text.pointEntry("scale", {component.scaleX, component.scaleY});
    }
    text.closeDict();
}

void writeAnchor(PlistText& text, const Anchor& anchor) {
    text.openDict();
    text.entry("name", anchor.name);
    text.pointEntry(text.format() == 1 ? "position" : "pos",
                    {std::round(anchor.position.x), std::round(anchor.position.y)});
    text.closeDict();
}

// A node of the first path: an index path, "(0,3)" in the current format, "{0, 3}" in the older.
void writeNodeReference(PlistText& text, std::string_view key, int node) {
    text.key(key);
    char reference[32];
    std::snprintf(reference, sizeof reference, text.format() == 1 ? "\"{0, %d}\"" : "(0,%d)", node);
    text.raw(reference);
    text.end();
}

void writeHint(PlistText& text, const ResolvedHint& hint) {
    text.openDict();
    if (hint.horizontal)
        text.integerEntry("horizontal", 1);
    writeNodeReference(text, "origin", hint.origin);
    writeNodeReference(text, "target", hint.target);
    if (text.format() != 1)
        text.entry("type", "Stem");
    text.closeDict();
}

// Brace and bracket layers say what they are by attributes in the current format; the older
// format says it in the layer's name, which the header already holds.
void writeAttributes(PlistText& text, const LayerHeader& header) {
    if (text.format() == 1 || (header.kind != LayerKind::Brace && header.kind != LayerKind::Bracket))
        return;
    text.key("attr");
    text.openDict();
    if (header.kind == LayerKind::Brace) {
        text.numbersEntry("coordinates", header.coordinates);
    } else {
        text.key("axisRules");
        text.raw("(\n{\n");
        text.entry("min", header.bracketMinimum);
        text.raw("}\n)");
        text.end();
    }
    text.closeDict();
    text.end();
}

void writeBackground(PlistText& text, const Layer& layer) {
    text.key("background");
    text.openDict();
    writeList(text, text.format() == 1 ? "paths" : "shapes", std::vector<Path>{layer.paths.front()}, writePath);
    text.closeDict();
    text.end();
}

void writeGuide(PlistText& text, const Point& position) {
    text.openDict();
    text.integerEntry("angle", 90);
    text.pointEntry(text.format() == 1 ? "position" : "pos", position);
    text.closeDict();
}

void writeLayer(PlistText& text, const LayerHeader& header, const Layer& layer, const GlyphPlan& plan) {
    const bool older = text.format() == 1;
    text.openDict();
    writeList(text, "anchors", layer.anchors, writeAnchor);
    if (!header.associatedMasterId.empty()) {
        text.key("associatedMasterId");
        text.quoted(header.associatedMasterId);
        text.end();
    }
    writeAttributes(text, header);
    if (header.extras && plan.background && !layer.paths.empty())
        writeBackground(text, layer);
    if (older)
        writeList(text, "components", layer.components, writeComponent);
    if (header.extras && plan.guides)
        writeList(text, older ? "guideLines" : "guides", std::vector<Point>{{std::round(layer.width / 2), 0}},
                  writeGuide);
    writeList(text, "hints", layer.hints, writeHint);
    text.key("layerId");
    text.quoted(header.layerId);
    text.end();
    if (!header.name.empty())
        text.entry("name", header.name);
    if (older) {
        writeList(text, "paths", layer.paths, writePath);
    } else if (!layer.paths.empty() || !layer.components.empty()) {
        // Paths first, then components, as in a layer of the older format.
        text.key("shapes");
        text.openArray();
        bool first = true;
        const auto separate = [&] {
            if (!first)
                text.next();
            first = false;
        };
        for (const Path& path : layer.paths) {
            separate();
            writePath(text, path);
        }
        for (const Component& component : layer.components) {
            separate();
            writeComponent(text, component);
        }
        text.newline();
        text.closeArray();
        text.end();
    }
    if (header.extras && plan.userData)
        text.raw("userData = {\ncom.velmor.reviewed = 1;\n};\n");
    text.entry("width", std::round(layer.width));
    text.closeDict();
}

std::string coordinatesName(const std::vector<double>& coordinates) {
    std::string name = "{";
    for (std::size_t i = 0; i < coordinates.size(); ++i) {
        if (i > 0)
            name += ", ";
        name += std::to_string(std::lround(coordinates[i]));
    }
    return name + "}";
}

// The brace layer sits halfway between the first two masters, on the first one's width.
LayerHeader braceHeader(const Font& font, std::string id) {
    const Master& first = font.masters[0];
    LayerHeader header{LayerKind::Brace, std::move(id), first.id};
    header.coordinates.push_back(std::round((first.location.weight + font.masters[1].location.weight) / 2.0));
    if (font.axisCount > 1)
        header.coordinates.push_back(first.location.width);
    header.name = coordinatesName(header.coordinates);
    return header;
}

// Bracket layers take over from the middle of the weight axis, one for each master.
LayerHeader bracketHeader(const Font& font, const Master& master, std::string id) {
    LayerHeader header{LayerKind::Bracket, std::move(id), master.id};
    double lightest = master.location.weight;
    double boldest = master.location.weight;
    for (const Master& other : font.masters) {
        lightest = std::min(lightest, other.location.weight);
        boldest = std::max(boldest, other.location.weight);
    }
    header.bracketMinimum = std::max(500.0, std::round((lightest + boldest) / 2.0));
    header.name = master.name() + " [" + std::to_string(std::lround(header.bracketMinimum)) + "]";
    return header;
}

void writeLayers(PlistText& text, const Font& font, const GlyphPlan& plan) {
    std::size_t written = 0;
    const auto layer = [&](const LayerHeader& header, const Location& location) {
        if (written++ > 0)
            text.next();
        writeLayer(text, header, drawLayer(plan, location, header.kind == LayerKind::Bracket), plan);
    };
    text.key("layers");
    text.openArray();
    for (const Master& master : font.masters) {
        LayerHeader header(LayerKind::Master, master.id);
        header.extras = written == 0;
        layer(header, master.location);
    }
    auto id = plan.specialIds.begin();
    if (plan.braceLayer) {
        const LayerHeader header = braceHeader(font, *id++);
        layer(header, {header.coordinates[0], font.masters[0].location.width});
    }
    if (plan.bracketLayers)
        for (const Master& master : font.masters)
            layer(bracketHeader(font, master, *id++), master.location);
    if (plan.backupLayer)
        layer({LayerKind::Backup, *id++, font.masters[0].id, "Backup " + plan.lastChange.substr(0, 10)},
              font.masters[0].location);
    text.newline();
    text.closeArray();
    text.end();
}

void writeUnicodes(PlistText& text, const std::vector<std::uint32_t>& unicodes) {
    if (unicodes.empty())
        return;
    text.key("unicode");
    if (text.format() == 1) {
        // Hexadecimal digits, several joined by commas.
        std::string codes;
        for (std::uint32_t code : unicodes) {
            char hex[16];
            std::snprintf(hex, sizeof hex, "%s%04X", codes.empty() ? "" : ",", static_cast<unsigned>(code));
            codes += hex;
        }
        if (unicodes.size() == 1)
            text.raw(codes);
        else
            text.quoted(codes);
    } else if (unicodes.size() == 1) {
        text.integer(unicodes[0]);
    } else {
        text.raw("(");
        for (std::size_t i = 0; i < unicodes.size(); ++i) {
            if (i > 0)
                text.raw(",");
            text.integer(unicodes[i]);
        }
        text.raw(")");
    }
    text.end();
}

void writeColour(PlistText& text, const GlyphPlan& plan) {
    if (plan.colourIndex >= 0)
        text.integerEntry("color", plan.colourIndex);
    else if (plan.colourTuple)
        text.raw("color = (250,120,40,255);\n");
}

// The older format names kerning groups and metrics keys "kernLeft" and "metricLeft"; the
// current one "leftKerningGroup" and "leftMetricsKey".
void writeSideKeys(PlistText& text, const GlyphInfo& info, bool left) {
    const bool older = text.format() == 1;
    if (info.group >= 0) {
        std::string group = "k";
        group += std::to_string(info.group);
        text.entry(older ? (left ? "kernLeft" : "kernRight") : (left ? "leftKerningGroup" : "rightKerningGroup"),
                   group);
    }
    if (info.kind == GlyphKind::Alternate) {
        std::string base = "=";
        base += info.name.substr(0, info.name.find('.'));
        text.entry(older ? (left ? "metricLeft" : "metricRight") : (left ? "leftMetricsKey" : "rightMetricsKey"),
                   base);
    }
}

} // namespace

void writeGlyph(PlistText& text, const Font& font, std::size_t index, bool withIndex) {
    const GlyphPlan plan = planGlyph(font, index);
    const GlyphInfo& info = *plan.info;
    text.openDict();
    if (plan.mark)
        text.entry("category", "Mark");
    writeColour(text, plan);
    if (!plan.exported)
        text.integerEntry("export", 0);
    text.entry("glyphname", info.name);
    if (withIndex)
        text.integerEntry("index", static_cast<long long>(index));
    text.entry("lastChange", plan.lastChange);
    writeLayers(text, font, plan);
    writeSideKeys(text, info, true);
    if (plan.note)
        text.entry("note", "Check the \"curves\" here;\nthey were drawn in a hurry.");
    writeSideKeys(text, info, false);
    if (plan.mark)
        text.entry("subCategory", "Nonspacing");
    writeUnicodes(text, info.unicodes);
    if (plan.userData)
        text.raw("userData = {\ncom.velmor.variant = " + std::to_string(index) + ";\n};\n");
    text.closeDict();
}

} // namespace velmor::generator
