#include "generator/Design.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <numbers>

namespace velmor::generator {

namespace {

std::vector<Master> makeMasters(int count, Random& random) {
    // With three masters or more the last one is condensed, which opens a width axis; the others
    // spread over the weight axis.
    const int onWeightAxis = count >= 3 ? count - 1 : count;
    std::vector<Master> masters;
    for (int i = 0; i < onWeightAxis; ++i) {
        const double weight = onWeightAxis == 1 ? 400.0 : 100.0 + 800.0 * i / (onWeightAxis - 1);
        std::string name = weightName(weight);
        if (onWeightAxis > 9) { // more masters than weight names
            name += ' ';
            name += std::to_string(i + 1);
        }
        masters.push_back({makeId(random), name, "", {weight, 100.0}});
    }
    if (count >= 3)
        masters.push_back({makeId(random), "Black", "Condensed", {900.0, 75.0}});
    return masters;
}

std::uint32_t codePointFor(std::size_t index) {
    const std::uint32_t cjk = 0x4E00 + static_cast<std::uint32_t>(index);
    return cjk <= 0x9FFF ? cjk : 0x20000 + static_cast<std::uint32_t>(index);
}

std::string uniName(std::uint32_t code) {
    char text[16];
    std::snprintf(text, sizeof text, code <= 0xFFFF ? "uni%04X" : "u%05X", static_cast<unsigned>(code));
    return text;
}

GlyphInfo makeGlyphInfo(std::size_t index, std::uint64_t variant) {
    const std::uint32_t code = codePointFor(index);
    const std::uint64_t pick = mixVariant(variant, 0x676C797068ULL + index) % 20;
    if (pick < 14)
        return {uniName(code), GlyphKind::Outline, {code}, -1};
    if (pick < 17)
        return {uniName(code) + ".ss01", GlyphKind::Alternate, {}, -1};
    return {uniName(code), GlyphKind::Composite, {code}, -1};
}

std::vector<GlyphInfo> makeGlyphs(int count, std::uint64_t variant) {
    const std::size_t n = static_cast<std::size_t>(count);
    // "A" and "g" stand in the middle, where a reader has to look for them.
    std::size_t a = n / 2;
    if (a + 1 >= n)
        a = n - 2;
    std::vector<GlyphInfo> glyphs;
    for (std::size_t i = 0; i < n; ++i) {
        GlyphInfo info;
        if (i == a)
            info = {"A", GlyphKind::LetterA, {0x41}, -1};
        else if (i == a + 1)
            info = {"g", GlyphKind::LetterG, {0x67}, -1};
        else if (n >= 4 && i == 0)
            info = {".notdef", GlyphKind::Notdef, {}, -1};
        else if (n >= 4 && i == 1)
            info = {"space", GlyphKind::Space, {0x20}, -1};
        else
            info = makeGlyphInfo(i, variant);
        if (info.kind != GlyphKind::Notdef && info.kind != GlyphKind::Space)
            info.group = static_cast<int>(i / 6);
        if (i % 97 == 50 && !info.unicodes.empty()) // a few glyphs answer to two code points
            info.unicodes.push_back(0xF0000 + static_cast<std::uint32_t>(i));
        glyphs.push_back(std::move(info));
    }
    return glyphs;
}

Blob makeBlob(Random& random, double advance) {
    Blob blob;
    blob.centre = {advance * random.real(0.3, 0.7), random.real(100.0, 500.0)};
    blob.rx = advance * random.real(0.15, 0.35);
    blob.ry = random.real(120.0, 300.0);
    std::vector<bool> curves;
    for (int remaining = random.between(20, 80); remaining > 0;) {
        const bool curve = remaining >= 3 && random.chance(0.6);
        curves.push_back(curve);
        remaining -= curve ? 3 : 1;
    }
    const double count = static_cast<double>(curves.size());
    for (std::size_t k = 0; k < curves.size(); ++k) {
        const double angle = 2.0 * std::numbers::pi * (static_cast<double>(k + 1) + random.real(-0.3, 0.3)) / count;
        const double radius = random.real(0.7, 1.1);
        const double bulge = random.real(-0.1, 0.35);
        const bool smooth = curves[k] && random.chance(0.5);
        blob.vertices.push_back({angle, radius, curves[k], bulge, smooth, random.chance(0.02)});
    }
    return blob;
}

Component makeComponent(const Font& font, Random& random) {
    Component component;
    component.ref = font.glyphs[font.baseGlyphs[random.next() % font.baseGlyphs.size()]].name;
    component.offset = {std::round(random.real(-100.0, 400.0)), std::round(random.real(-50.0, 200.0))};
    if (random.chance(0.3)) {
        component.scaleX = std::round(random.real(0.6, 1.2) * 100.0) / 100.0;
        component.scaleY = std::round(random.real(0.6, 1.2) * 100.0) / 100.0;
    }
    if (random.chance(0.2))
        component.angle = random.between(-30, 30);
    component.noAlign = random.chance(0.1);
    if (random.chance(0.1))
        component.anchor = "top";
    return component;
}

std::vector<Anchor> makeAnchors(Random& random, GlyphKind kind, bool mark) {
    if (mark)
        return {{"_top", {0.5, 500.0}}};
    if (kind == GlyphKind::LetterG)
        return {{"bottom", {0.5, -200.0}}, {"top", {0.5, 500.0}}};
    std::vector<Anchor> anchors{{"bottom", {0.5, 0.0}}, {"top", {0.5, 720.0}}};
    if (random.chance(0.2))
        anchors.push_back({"ogonek", {0.8, 0.0}});
    return anchors;
}

std::vector<Hint> makeHints(Random& random, int count) {
    std::vector<Hint> hints;
    for (int i = 0; i < count; ++i)
        hints.push_back({random.chance(0.5), random.real(0.0, 1.0), random.real(0.0, 1.0)});
    return hints;
}

void planShapes(const Font& font, GlyphPlan& plan, Random& random) {
    const GlyphKind kind = plan.info->kind;
    if (kind == GlyphKind::Outline || kind == GlyphKind::Alternate || kind == GlyphKind::Composite) {
        plan.advance = std::round(random.real(400.0, 900.0));
        const bool composite = kind == GlyphKind::Composite;
        const int blobs = composite ? random.between(1, 2) : random.between(1, 3);
        for (int i = 0; i < blobs; ++i)
            plan.blobs.push_back(makeBlob(random, plan.advance));
        const int components = composite ? random.between(1, 3) : 0;
        for (int i = 0; i < components; ++i)
            plan.components.push_back(makeComponent(font, random));
        plan.mark = kind == GlyphKind::Outline && random.chance(0.05);
    }
    if (kind != GlyphKind::Space && kind != GlyphKind::Notdef) {
        plan.anchors = makeAnchors(random, kind, plan.mark);
        plan.hints = makeHints(random, random.between(0, 2));
    }
}

void planExtras(const Font& font, GlyphPlan& plan, Random& random) {
    const GlyphKind kind = plan.info->kind;
    const bool letter = kind == GlyphKind::LetterA || kind == GlyphKind::LetterG;
    const bool ordinary = kind == GlyphKind::Outline || kind == GlyphKind::Alternate || kind == GlyphKind::Composite;
    if (random.chance(0.15))
        plan.colourIndex = random.between(0, 11);
    plan.colourTuple = plan.colourIndex < 0 && random.chance(0.03);
    plan.exported = !(ordinary && random.chance(0.02));
    plan.note = random.chance(0.02);
    plan.userData = random.chance(0.1);
    const bool blend = font.masters.size() >= 2;
    // The g gets a brace layer too: it is the same design at an intermediate weight, so the
    // letter keeps its look.
    plan.braceLayer = blend && (kind == GlyphKind::LetterG || (ordinary && random.chance(0.04)));
    plan.bracketLayers = ordinary && random.chance(0.04);
    plan.backupLayer = (ordinary || letter) && random.chance(0.03);
    plan.background = ordinary && random.chance(0.03);
    plan.guides = random.chance(0.02);
    plan.lastChange = makeDate(random);
    const std::size_t specials = (plan.braceLayer ? 1 : 0) + (plan.bracketLayers ? font.masters.size() : 0) +
                                 (plan.backupLayer ? 1 : 0);
    for (std::size_t i = 0; i < specials; ++i)
        plan.specialIds.push_back(makeId(random));
}

Path drawBlob(const Blob& blob, double scale) {
    const auto vertex = [&](const Blob::Vertex& v) {
        return Point{blob.centre.x + blob.rx * scale * v.radius * std::cos(v.angle),
                     blob.centre.y + blob.ry * scale * v.radius * std::sin(v.angle)};
    };
    Path path;
    Point previous = vertex(blob.vertices.back());
    for (const Blob::Vertex& v : blob.vertices) {
        const Point end = vertex(v);
        if (v.curve) {
            const Point chord{end.x - previous.x, end.y - previous.y};
            const Point outward{chord.y * v.bulge, -chord.x * v.bulge};
            path.nodes.push_back({{previous.x + chord.x / 3 + outward.x, previous.y + chord.y / 3 + outward.y},
                                  NodeType::OffCurve});
            path.nodes.push_back({{previous.x + 2 * chord.x / 3 + outward.x, previous.y + 2 * chord.y / 3 + outward.y},
                                  NodeType::OffCurve});
        }
        path.nodes.push_back({end, v.curve ? NodeType::Curve : NodeType::Line, v.smooth, v.named});
        previous = end;
    }
    return path;
}

Outline drawOutline(const GlyphPlan& plan, const Location& location) {
    switch (plan.info->kind) {
    case GlyphKind::LetterA:
        return letterA(location);
    case GlyphKind::LetterG:
        return letterG(location);
    case GlyphKind::Notdef:
        return notdef(location);
    case GlyphKind::Space:
        return {{}, 250.0 * location.width / 100.0};
    default:
        break;
    }
    const double boldness = (location.weight - 100.0) / 800.0;
    const double factor = location.width / 100.0;
    Outline outline;
    for (const Blob& blob : plan.blobs)
        outline.paths.push_back(drawBlob(blob, 0.85 + 0.3 * boldness));
    for (Path& path : outline.paths)
        for (Node& node : path.nodes)
            node.position.x *= factor;
    outline.advance = plan.advance * factor + 40.0 * boldness;
    return outline;
}

std::vector<ResolvedHint> resolveHints(const std::vector<Hint>& hints, const std::vector<Path>& paths) {
    if (paths.empty())
        return {};
    std::vector<int> onCurve;
    for (std::size_t i = 0; i < paths.front().nodes.size(); ++i)
        if (paths.front().nodes[i].type != NodeType::OffCurve)
            onCurve.push_back(static_cast<int>(i));
    const auto pick = [&](double fraction) {
        return onCurve[std::min(onCurve.size() - 1, static_cast<std::size_t>(fraction * onCurve.size()))];
    };
    std::vector<ResolvedHint> resolved;
    for (const Hint& hint : hints)
        resolved.push_back({hint.horizontal, pick(hint.origin), pick(hint.target)});
    return resolved;
}

} // namespace

std::string weightName(double weight) {
    static const char* const names[] = {"Thin",     "ExtraLight", "Light",     "Regular", "Medium",
                                        "SemiBold", "Bold",       "ExtraBold", "Black"};
    const int step = std::clamp(static_cast<int>(std::lround(weight / 100.0)), 1, 9);
    return names[step - 1];
}

Font makeFont(int glyphCount, int masterCount, std::uint64_t variant) {
    Random random(mixVariant(variant, 0));
    Font font;
    font.variant = variant;
    font.masters = makeMasters(masterCount, random);
    font.axisCount = masterCount >= 3 ? 2 : 1;
    font.glyphs = makeGlyphs(glyphCount, variant);
    for (std::size_t i = 0; i < font.glyphs.size(); ++i)
        if (font.glyphs[i].kind != GlyphKind::Composite && font.glyphs[i].kind != GlyphKind::Space &&
            font.glyphs[i].kind != GlyphKind::Notdef)
            font.baseGlyphs.push_back(i);
    return font;
}

GlyphPlan planGlyph(const Font& font, std::size_t index) {
    Random random(mixVariant(font.variant, index + 1));
    GlyphPlan plan;
    plan.info = &font.glyphs[index];
    planShapes(font, plan, random);
    planExtras(font, plan, random);
    return plan;
}

Layer drawLayer(const GlyphPlan& plan, const Location& location, bool slanted) {
    Outline outline = drawOutline(plan, location);
    Layer layer;
    layer.width = outline.advance;
    layer.components = plan.components;
    for (const Anchor& anchor : plan.anchors)
        layer.anchors.push_back({anchor.name, {anchor.position.x * outline.advance, anchor.position.y}});
    layer.hints = resolveHints(plan.hints, outline.paths);
    layer.paths = std::move(outline.paths);
    if (slanted) {
        for (Path& path : layer.paths)
            for (Node& node : path.nodes)
                node.position.x += 0.2 * node.position.y;
        for (Anchor& anchor : layer.anchors)
            anchor.position.x += 0.2 * anchor.position.y;
    }
    return layer;
}

std::string makeId(Random& random) {
    static const char digits[] = "0123456789ABCDEF";
    std::string id;
    for (int i = 0; i < 32; ++i) {
        if (i == 8 || i == 12 || i == 16 || i == 20)
            id += '-';
        id += digits[random.next() & 15];
    }
    return id;
}

std::string makeDate(Random& random) {
    char text[32];
    std::snprintf(text, sizeof text, "2024-%02d-%02d %02d:%02d:%02d +0000", random.between(1, 12),
                  random.between(1, 28), random.between(0, 23), random.between(0, 59), random.between(0, 59));
    return text;
}

std::string glyphFileName(const std::string& glyphName) {
    std::string name;
    for (std::size_t i = 0; i < glyphName.size(); ++i) {
        const char c = glyphName[i];
        name += i == 0 && c == '.' ? '_' : c;
        if (std::isupper(static_cast<unsigned char>(c)))
            name += '_';
    }
    return name;
}

} // namespace velmor::generator
