#include "generator/FontWriter.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace velmor::generator {

namespace {

struct Instance {
    std::string name;
    Location location;
    std::map<std::string, double> coefficients; // by master id
    bool exported = true;
};

// Masters on the weight axis come first, in rising weight; the condensed one, if any, last.
std::size_t mastersOnWeightAxis(const Font& font) { return font.axisCount > 1 ? font.masters.size() - 1 : font.masters.size(); }

std::map<std::string, double> coefficientsAt(const Font& font, const Location& location) {
    const std::size_t line = mastersOnWeightAxis(font);
    if (location.width < 100.0) {
        const double t = (100.0 - location.width) / 25.0;
        return {{font.masters[line - 1].id, 1.0 - t}, {font.masters.back().id, t}};
    }
    if (line == 1)
        return {{font.masters[0].id, 1.0}};
    std::size_t i = 0;
    while (i + 2 < line && font.masters[i + 1].location.weight < location.weight)
        ++i;
    const double from = font.masters[i].location.weight;
    const double t = (location.weight - from) / (font.masters[i + 1].location.weight - from);
    std::map<std::string, double> result;
    if (t < 1.0)
        result[font.masters[i].id] = 1.0 - t;
    if (t > 0.0)
        result[font.masters[i + 1].id] = t;
    return result;
}

std::vector<Instance> makeInstances(const Font& font) {
    const std::size_t line = mastersOnWeightAxis(font);
    const double lightest = font.masters[0].location.weight;
    const double boldest = font.masters[line - 1].location.weight;
    std::vector<Instance> instances;
    for (int step = 1; step <= 9; ++step) {
        const Location location{100.0 * step, 100.0};
        if (location.weight >= lightest && location.weight <= boldest)
            instances.push_back({weightName(location.weight), location, coefficientsAt(font, location), step != 1});
    }
    if (font.axisCount > 1)
        for (const double width : {87.5, 75.0}) {
            const Location location{900.0, width};
            const std::string suffix = width == 75.0 ? " Condensed" : " SemiCondensed";
            instances.push_back({"Black" + suffix, location, coefficientsAt(font, location), true});
        }
    return instances;
}

void writeParameter(PlistText& text, std::string_view name, const std::function<void(PlistText&)>& value) {
    text.openDict();
    text.entry("name", name);
    text.key("value");
    value(text);
    text.end();
    text.closeDict();
}

std::vector<double> axisValues(const Font& font, const Location& location) {
    std::vector<double> values{location.weight};
    if (font.axisCount > 1)
        values.push_back(location.width);
    return values;
}

struct Axis {
    const char* name;
    const char* tag;
};

std::vector<Axis> axes(const Font& font) {
    std::vector<Axis> list{{"Weight", "wght"}, {"Width", "wdth"}};
    list.resize(static_cast<std::size_t>(font.axisCount));
    return list;
}

struct Metric {
    const char* type;
    double position;
    double overshoot;
};

const Metric metrics[] = {{"ascender", 800, 16},  {"cap height", 700, 16}, {"x-height", 500, 16},
                          {"baseline", 0, -16},   {"descender", -200, -16}, {"italic angle", 0, 0}};

void writeMetricValue(PlistText& text, const Metric& metric) {
    text.openDict();
    if (metric.overshoot != 0.0)
        text.entry("over", metric.overshoot);
    if (metric.position != 0.0 || metric.overshoot == 0.0) // never an empty dictionary
        text.entry("pos", metric.position);
    text.closeDict();
}

void writeMasterParameters(PlistText& text) {
    text.arrayEntry("customParameters", std::vector<std::pair<const char*, double>>{{"underlinePosition", -100},
                                                                                   {"underlineThickness", 50}},
               [](PlistText& t, const auto& parameter) {
                   writeParameter(t, parameter.first, [&](PlistText& v) { v.number(parameter.second); });
               });
}

void writeMaster(PlistText& text, const Font& font, const Master& master) {
    const double stem = std::round(stemWidth(master.location));
    const double horizontalStem = std::round(0.75 * stem);
    text.openDict();
    if (text.format() == 1) {
        text.arrayEntry("alignmentZones", std::vector<const char*>{"{800, 16}", "{700, 16}", "{500, 16}", "{0, -16}", "{-200, -16}"},
                   [](PlistText& t, const char* zone) { t.quoted(zone); });
        text.entry("ascender", 800.0);
        text.entry("capHeight", 700.0);
        writeMasterParameters(text);
        text.entry("descender", -200.0);
        text.numbersEntry("horizontalStems", std::vector<double>{horizontalStem});
        text.key("id");
        text.quoted(master.id);
        text.end();
        text.raw("userData = {\ncom.velmor.master = 1;\n};\n");
        text.numbersEntry("verticalStems", std::vector<double>{stem});
        if (master.weightName != "Regular")
            text.entry("weight", master.weightName);
        text.entry("weightValue", master.location.weight);
        if (!master.widthName.empty())
            text.entry("width", master.widthName);
        if (master.location.width != 100.0)
            text.entry("widthValue", master.location.width);
        text.entry("xHeight", 500.0);
    } else {
        text.numbersEntry("axesValues", axisValues(font, master.location));
        writeMasterParameters(text);
        text.key("id");
        text.quoted(master.id);
        text.end();
        text.arrayEntry("metricValues", metrics, writeMetricValue);
        text.entry("name", master.name());
        text.numbersEntry("stemValues", std::vector<double>{horizontalStem, stem});
        text.raw("userData = {\ncom.velmor.master = 1;\n};\n");
    }
    text.closeDict();
}

void writeInstance(PlistText& text, const Font& font, const Instance& instance) {
    const bool older = text.format() == 1;
    text.openDict();
    if (older && !instance.exported)
        text.integerEntry("active", 0);
    if (!older)
        text.numbersEntry("axesValues", axisValues(font, instance.location));
    std::string postscriptName = "VelmorGenerated-" + instance.name;
    postscriptName.erase(std::remove(postscriptName.begin(), postscriptName.end(), ' '), postscriptName.end());
    text.arrayEntry("customParameters", std::vector<std::string>{postscriptName}, [](PlistText& t, const std::string& name) {
        writeParameter(t, "postscriptFontName", [&](PlistText& v) { v.string(name); });
    });
    if (!older && !instance.exported)
        text.integerEntry("exports", 0);
    text.key("instanceInterpolations");
    text.openDict();
    for (const auto& [id, factor] : instance.coefficients) {
        text.quoted(id);
        text.raw(" = ");
        text.number(factor);
        text.end();
    }
    text.closeDict();
    text.end();
    if (older) {
        text.entry("interpolationWeight", instance.location.weight);
        if (instance.location.width != 100.0)
            text.entry("interpolationWidth", instance.location.width);
    }
    if (instance.name == "Bold")
        text.integerEntry("isBold", 1);
    text.entry("name", instance.name);
    text.closeDict();
}

void writeInstances(PlistText& text, const Font& font) {
    text.key("instances");
    text.openArray();
    const std::vector<Instance> instances = makeInstances(font);
    for (std::size_t i = 0; i < instances.size(); ++i) {
        if (i > 0)
            text.next();
        writeInstance(text, font, instances[i]);
    }
    if (text.format() != 1)
        text.raw(",\n{\nname = Variable;\ntype = variable;\n}");
    text.newline();
    text.closeArray();
    text.end();
}

// Rows of ten pairs: half the rows start with a group, half with a glyph; the second sides mix
// groups and glyphs too. Tens of thousands of pairs per master for a large font.
void writeMasterKerning(PlistText& text, const Font& font, std::size_t masterIndex) {
    Random random(mixVariant(font.variant, 0x6B65726EULL + masterIndex));
    const std::size_t glyphCount = font.glyphs.size();
    const std::size_t groupCount = (glyphCount + 5) / 6;
    const std::size_t rows = std::max<std::size_t>(1, glyphCount / 5);
    const std::size_t groupRows = rows / 2;
    text.quoted(font.masters[masterIndex].id);
    text.raw(" = {\n");
    for (std::size_t row = 0; row < rows; ++row) {
        const std::string first = row < groupRows
            ? "@MMK_L_k" + std::to_string(row * groupCount / groupRows)
            : font.glyphs[(row - groupRows) * glyphCount / (rows - groupRows)].name;
        std::vector<std::string> seconds;
        for (int j = 0; j < 10; ++j) {
            std::string second = j % 2 == 0 ? "@MMK_R_k" + std::to_string(random.next() % groupCount)
                                            : font.glyphs[random.next() % glyphCount].name;
            if (std::find(seconds.begin(), seconds.end(), second) == seconds.end())
                seconds.push_back(std::move(second));
        }
        text.key(first);
        text.openDict();
        for (const std::string& second : seconds)
            text.entry(second, 5.0 * random.between(-24, 12));
        text.closeDict();
        text.end();
    }
    text.closeDict();
    text.end();
}

void writeKerning(PlistText& text, const Font& font) {
    text.key(text.format() == 1 ? "kerning" : "kerningLTR");
    text.openDict();
    for (std::size_t i = 0; i < font.masters.size(); ++i)
        writeMasterKerning(text, font, i);
    text.closeDict();
    text.end();
}

std::string alternateSubstitutions(const Font& font) {
    std::string code;
    for (const GlyphInfo& glyph : font.glyphs)
        if (glyph.kind == GlyphKind::Alternate)
            code += "sub " + glyph.name.substr(0, glyph.name.find('.')) + " by " + glyph.name + ";\n";
    return code;
}

void writeCode(PlistText& text, std::string_view tagKey, std::string_view tag, std::string_view code, bool automatic) {
    text.openDict();
    if (automatic)
        text.integerEntry("automatic", 1);
    text.entry("code", code);
    text.entry(tagKey, tag);
    text.closeDict();
}

void writeFeatures(PlistText& text, const Font& font) {
    const std::string_view tagKey = text.format() == 1 ? "name" : "tag";
    text.raw("featurePrefixes = (\n");
    writeCode(text, "name", "Languagesystems", "languagesystem DFLT dflt;\nlanguagesystem hani dflt;", false);
    text.raw("\n);\nfeatures = (\n");
    const std::string alternates = alternateSubstitutions(font);
    if (!alternates.empty()) {
        writeCode(text, tagKey, "ss01", alternates, true);
        text.next();
    }
    writeCode(text, tagKey, "liga", "# \"manual\" rules, with a backslash \\ in a comment\nsub g g by g;", false);
    text.raw("\n);\n");
}

void writeClasses(PlistText& text, const Font& font) {
    std::string alternates;
    for (const GlyphInfo& glyph : font.glyphs)
        if (glyph.kind == GlyphKind::Alternate)
            alternates += (alternates.empty() ? "" : " ") + glyph.name;
    text.raw("classes = (\n");
    writeCode(text, "name", "Letters", "A g", false);
    if (!alternates.empty()) {
        text.next();
        writeCode(text, "name", "Alternates", alternates, true);
    }
    text.raw("\n);\n");
}

void writeFontParameters(PlistText& text, const Font& font) {
    using Write = std::function<void(PlistText&)>;
    std::vector<std::pair<std::string, Write>> parameters;
    if (text.format() == 1) // the older format has no axes key: they come as a parameter
        parameters.emplace_back("Axes", [&](PlistText& t) {
            t.array(axes(font), [](PlistText& a, const Axis& axis) {
                a.openDict();
                a.entry("Name", axis.name);
                a.entry("Tag", axis.tag);
                a.closeDict();
            });
        });
    parameters.emplace_back("Use Typo Metrics", [](PlistText& t) { t.integer(1); });
    parameters.emplace_back("fsType", [](PlistText& t) { t.raw("(\n3\n)"); });
    parameters.emplace_back("unicodeRanges", [](PlistText& t) { t.raw("(\n0,\n1,\n59\n)"); });
    parameters.emplace_back("Don't use Production Names", [](PlistText& t) { t.integer(1); });
    parameters.emplace_back("vendorID", [](PlistText& t) { t.string("VLMR"); });
    parameters.emplace_back("glyphOrder", [&](PlistText& t) {
        const std::size_t count = std::min<std::size_t>(font.glyphs.size(), 100);
        t.array(std::vector<GlyphInfo>(font.glyphs.begin(), font.glyphs.begin() + static_cast<std::ptrdiff_t>(count)),
                [](PlistText& g, const GlyphInfo& glyph) { g.string(glyph.name); });
    });
    text.arrayEntry("customParameters", parameters,
               [](PlistText& t, const auto& parameter) { writeParameter(t, parameter.first, parameter.second); });
}

void writeCurrentFormatDefinitions(PlistText& text) {
    text.arrayEntry("metrics", metrics, [](PlistText& t, const Metric& metric) {
        t.openDict();
        t.entry("type", metric.type);
        t.closeDict();
    });
    text.entry("note", "Generated for speed measurements.");
    text.raw("properties = (\n{\nkey = copyrights;\nvalues = (\n{\nlanguage = dflt;\nvalue = \"Copyright 2024 Velmor\";\n}\n);\n},\n"
             "{\nkey = designers;\nvalues = (\n{\nlanguage = dflt;\nvalue = \"Velmor Type\";\n}\n);\n}\n);\n");
    text.raw("settings = {\nkeyboardIncrementBig = 10;\npreviewRemoveOverlap = 1;\n};\n");
    text.raw("stems = (\n{\nhorizontal = 1;\nname = hStem0;\n},\n{\nname = vStem0;\n}\n);\n");
}

} // namespace

void writeFontLevel(PlistText& text, const Font& font, const std::function<void(PlistText&)>& glyphs) {
    const bool older = text.format() == 1;
    text.openDict();
    text.entry(".appVersion", "3260");
    if (!older)
        text.integerEntry(".formatVersion", 3);
    text.raw("DisplayStrings = (\n\"A g\",\n\"/A/g\"\n);\n");
    if (!older)
        text.arrayEntry("axes", axes(font), [](PlistText& t, const Axis& axis) {
            t.openDict();
            t.entry("name", axis.name);
            t.entry("tag", axis.tag);
            t.closeDict();
        });
    writeClasses(text, font);
    if (older)
        text.entry("copyright", "Copyright 2024 Velmor");
    writeFontParameters(text, font);
    text.entry("date", "2024-01-15 09:30:00 +0000");
    if (older) {
        text.entry("designer", "Velmor Type");
        text.entry("designerURL", "https://example.com/type");
    }
    text.entry("familyName", "Velmor Generated");
    writeFeatures(text, font);
    text.arrayEntry("fontMaster", font.masters, [&](PlistText& t, const Master& m) { writeMaster(t, font, m); });
    if (glyphs) {
        text.key("glyphs");
        glyphs(text);
        text.end();
    }
    writeInstances(text, font);
    writeKerning(text, font);
    if (older) {
        text.entry("manufacturer", "Velmor");
        text.entry("manufacturerURL", "https://example.com/");
    } else {
        writeCurrentFormatDefinitions(text);
    }
    text.integerEntry("unitsPerEm", 1000);
    text.raw("userData = {\ncom.velmor.generator = {\nglyphs = " + std::to_string(font.glyphs.size()) +
             ";\nseed = " + std::to_string(font.variant) + ";\n};\n};\n");
    text.integerEntry("versionMajor", 1);
    text.integerEntry("versionMinor", 0);
    text.closeDict();
    text.newline();
}

} // namespace velmor::generator
