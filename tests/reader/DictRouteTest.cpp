#include "model/VLAxis.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "outline/VLAnchor.h"
#include "outline/VLBackgroundImage.h"
#include "outline/VLComponent.h"
#include "outline/VLHint.h"
#include "outline/VLPath.h"
#include "platform/VLError.h"
#include "platform/VLException.h"
#include "reader/VLPropertyListFile.h"
#include "support/PlistTestSupport.h"
#include "support/PlistWriting.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

namespace {

const std::string currentFormat = R"({
.formatVersion = 3;
axes = ({name = Weight; tag = wght;});
fontMaster = (
{id = light; name = Light; axesValues = (300); metricValues = ({pos = 800; over = 16;}, {pos = -200;});},
{id = bold; name = Bold; axesValues = (700); metricValues = ({pos = 820;}, {pos = -210;});}
);
glyphs = (
{glyphname = A; unicode = 65; rightKerningGroup = A; leftKerningGroup = A; layers = (
 {layerId = light; width = 600; anchors = ({name = top; pos = (300,700);});
  hints = ({type = Corner; name = _corner.cut; origin = (0,1); options = 3; scale = (1.5,1);},
   {horizontal = 1; origin = (0,0); target = down; stem = -2;}, {place = (10,20); type = TTStem; target = (0,2);
   other1 = (0,1); other2 = (0,0); settings = {a = 1;};});
  backgroundImage = {imagePath = a.png; crop = (1,2,30,40); transform = "{1, 0, 0, 2, 7, 8}"; alpha = 50; locked = 1;};
  color = (255,0,0,128); visible = 0; .lastUpdate = 1234;
  shapes = ({closed = 1; nodes = ((20,0,l),(300,700,l),(580,0,l));});},
 {layerId = bold; width = 700; color = 4; hints = ({horizontal = 1; origin = (0,1); target = up;});
  shapes = ({closed = 1; nodes = ((20,0,l),(350,700,l),(680,0,l));});},
 {name = "Light {400}"; layerId = "brace-1"; associatedMasterId = light; attr = {coordinates = (400);}; width = 650;
  shapes = ({closed = 1; nodes = ((20,0,l),(320,700,l),(620,0,l));});}
);},
{glyphname = Aacute; layers = (
 {layerId = light; width = 600; shapes = ({ref = A; pos = (10,0);});},
 {layerId = bold; width = 700; shapes = ({ref = A; scale = (1,2);});}
);}
);
kerningLTR = {light = {"@MMK_L_A" = {"@MMK_R_A" = -30;}; A = {Aacute = -12.5;};}; bold = {A = {A = 5;};};};
metrics = ({type = ascender;}, {type = descender;});
unitsPerEm = 1000;
})";

// The older format: no version key, paths and components in lists of their own, nodes as text.
const std::string olderFormat = R"({
fontMaster = ({id = m01; name = Regular; ascender = 750; descender = -250; xHeight = 500; capHeight = 700; weightValue = 90;});
glyphs = (
{glyphname = A; unicode = 0041; kernLeft = A; layers = (
 {layerId = m01; width = 600;
  hints = ({type = Cap; name = _cap.round; origin = "{0, 1}"; target = "{0, 2}"; options = 3;},
   {horizontal = 1; origin = "{0, 0}"; target = down;});
  backgroundImage = {imagePath = b.jpg; crop = "{{1, 2}, {30, 40}}"; pos = "{5, 6}"; scale = "{2, 3}"; angle = 10;};
  paths = ({closed = 1; nodes = ("0 0 LINE", "300 700 LINE", "600 0 LINE");});
  components = ({name = B; transform = "{1, 0, 0, 1, 50, 20}";});}
);},
{glyphname = B; layers = ({layerId = m01; width = 300; paths = ({closed = 1; nodes = ("0 0 LINE", "10 10 LINE SMOOTH", "20 0 LINE");});});}
);
kerning = {m01 = {A = {B = -7;};};};
unitsPerEm = 1000;
})";

Value treeOfText(const std::string& text)
{
    TemporaryFile file(text);
    return readPropertyListFile(file.path).value_or(Value());
}

std::shared_ptr<VLFont> readDocument(const std::string& bytes, VLError* error = nullptr)
{
    TemporaryFile file(bytes);
    return VLFont::initWithURL_error(file.path, error);
}

std::ostream& operator<<(std::ostream& out, const VLIndexPath& path)
{
    for (size_t index : path) out << index << ".";
    return out;
}

std::ostream& operator<<(std::ostream& out, Point point)
{
    return out << point.x << "," << point.y;
}

void summarizeDecorations(std::ostream& out, const VLLayer& layer)
{
    out << " visible " << layer.visible() << " color " << int(layer.colorIndex());
    if (layer.color()) out << " " << layer.color()->components()[0] << "/" << layer.color()->alphaComponent();
    out << " updated " << layer.lastUpdate() << "\n";
    for (const auto& hint : layer.hints())
        out << "  hint " << int(hint->type()) << " " << hint->name() << " " << hint->horizontal() << " "
            << hint->originIndex() << " " << hint->targetIndex() << " " << hint->otherIndex1() << " "
            << hint->otherIndex2() << " " << hint->options() << " " << hint->stem() << " " << hint->scale() << " "
            << hint->origin() << " " << hint->width() << " " << hint->settings().size()
            << (hint->parent() ? "" : " orphan") << "\n";
    if (auto image = layer.backgroundImage())
        out << "  image " << image->imagePath() << " " << image->crop().origin << " " << image->crop().size.width
            << " " << image->position() << " " << image->scale() << " " << image->angle() << " " << image->alpha()
            << " " << image->locked() << "\n";
}

// What a thumbnail and kerning depend on, in one comparable text.
std::string summary(VLFont& font)
{
    std::ostringstream out;
    out << "format " << int(font.formatVersion()) << " axes " << font.axes().size() << "\n";
    for (const auto& master : font.fontMasters())
        out << "master " << master->id() << " " << master->name() << " " << master->defaultAscender() << " "
            << master->defaultDescender() << " " << master->axesValuesList().size() << "\n";
    for (const auto& glyph : font.glyphs()) {
        out << "glyph " << glyph->name() << " " << glyph->glyphId() << "\n";
        glyph->readLayersFormat(font.formatVersion());
        for (const auto& layer : glyph->layers().allValues()) {
            out << " layer " << layer->layerId() << " " << layer->associatedMasterId() << " " << layer->width()
                << " brace " << layer->isBraceLayer() << " anchors " << layer->anchors().count();
            summarizeDecorations(out, *layer);
            for (const auto& shape : layer->shapes()) {
                if (auto path = std::dynamic_pointer_cast<VLPath>(shape)) {
                    out << "  path " << path->closed();
                    for (const auto& node : path->nodes())
                        out << " " << node->position().x << "," << node->position().y << ":" << int(node->type())
                            << int(node->connection());
                } else if (auto component = std::dynamic_pointer_cast<VLComponent>(shape)) {
                    out << "  component " << component->componentName() << " " << component->position().x << ","
                        << component->position().y << " " << component->scale().x << "," << component->scale().y;
                }
                out << "\n";
            }
        }
    }
    return out.str();
}

} // namespace

TEST(DictRoute, TextXMLAndBinaryTwinsGiveTheSameModel)
{
    for (const std::string* text : {&currentFormat, &olderFormat}) {
        auto fromText = readDocument(*text);
        ASSERT_NE(fromText, nullptr);
        Value tree = treeOfText(*text);
        ASSERT_TRUE(tree.isDictionary());
        auto fromXML = readDocument(propertyListOfValue(tree, false));
        auto fromBinary = readDocument(propertyListOfValue(tree, true));
        ASSERT_NE(fromXML, nullptr);
        ASSERT_NE(fromBinary, nullptr);
        std::string expected = summary(*fromText);
        EXPECT_EQ(summary(*fromXML), expected);
        EXPECT_EQ(summary(*fromBinary), expected);
        EXPECT_EQ(fromBinary->fontMasters().size(), fromText->fontMasters().size());
    }
    auto current = readDocument(propertyListOfValue(treeOfText(currentFormat), true));
    auto older = readDocument(propertyListOfValue(treeOfText(olderFormat), false));
    EXPECT_EQ(current->formatVersion(), 3);
    EXPECT_EQ(older->formatVersion(), 1) << "a document without a version is of the older format";
    auto a = current->glyphForName("A");
    auto aacute = current->glyphForName("Aacute");
    EXPECT_EQ(current->kerningForFontMasterID_firstGlyph_secondGlyph_direction("light", *a, *aacute, 0), -12.5);
    EXPECT_EQ(current->kerningForFontMasterID_firstGlyph_secondGlyph_direction("light", *a, *a, 0), -30);
    EXPECT_EQ(current->kerningForFontMasterID_firstGlyph_secondGlyph_direction("bold", *a, *a, 0), 5);
    EXPECT_EQ(older->kerningForFontMasterID_leftKey_rightKey_direction("m01", "A", "B", 0), -7);
    EXPECT_EQ(older->glyphForName("A")->leftKerningGroup(), "A") << "kernLeft in the older format";

    // The twins agree above; these say that what they agree on is what the text means.
    a->readLayersFormat(3);
    const auto& hints = a->layerForId("light")->hints();
    ASSERT_EQ(hints.size(), 3u);
    EXPECT_EQ(hints[0]->type(), VLHintType::Corner);
    EXPECT_EQ(hints[0]->originIndex(), (VLIndexPath{0, 1}));
    EXPECT_EQ(hints[0]->options(), 3u) << "only the older format stores 3 as 8";
    EXPECT_EQ(hints[1]->type(), VLHintType::TopGhost) << "a ghost names its side";
    EXPECT_EQ(a->layerForId("bold")->hints()[0]->type(), VLHintType::BottomGhost);
    EXPECT_EQ(hints[2]->otherIndex2(), (VLIndexPath{0, 0}));
    EXPECT_EQ(a->layerForId("light")->backgroundImage()->crop().size.height, 40);
    EXPECT_EQ(a->layerForId("light")->color()->alphaComponent(), 128 / 255.0);
    EXPECT_EQ(a->layerForId("bold")->colorIndex(), 4);
    auto olderA = older->glyphForName("A");
    olderA->readLayersFormat(1);
    const auto& olderHints = olderA->layerForId("m01")->hints();
    ASSERT_EQ(olderHints.size(), 2u);
    EXPECT_EQ(olderHints[0]->targetIndex(), (VLIndexPath{0, 2})) << "index paths are text in the older format";
    EXPECT_EQ(olderHints[0]->options(), 8u);
    EXPECT_EQ(olderA->layerForId("m01")->backgroundImage()->scale(), (Point{2, 3}));
}

TEST(DictRoute, AHigherVersionIsRefusedOnlyInPropertyLists)
{
    Value tree = treeOfText(currentFormat);
    tree.mutableDictionary()->insert_or_assign(".formatVersion", Value(4));
    VLError error;
    EXPECT_EQ(readDocument(propertyListOfValue(tree, false), &error), nullptr);
    EXPECT_EQ(error.domain, "VLVelmorDomain");
    EXPECT_EQ(error.localizedDescription(),
              "The file can’t be opened. It was save in a higher version (4). You have version 3.");

    std::string text = currentFormat;
    text.replace(text.find(".formatVersion = 3"), 18, ".formatVersion = 4");
    EXPECT_NE(readDocument(text), nullptr) << "the streaming route has no such test";
}

TEST(DictRoute, FormatDifferencesAndDefaults)
{
    auto read = [](const std::string& text) { return VLFont::initWithDict_error(treeOfText(text), nullptr); };
    const std::string glyph = "glyphs = ({glyphname = A; unicode = 65; layers = ({layerId = m; shapes = ("
                              "{closed = 1; nodes = ((0,0,l),(5,5,l));}, {closed = 0;}, {ref = B;}); "
                              "paths = ({nodes = (\"0 0 LINE\");});});});";
    auto older = read("{fontMaster = ({id = m;}); " + glyph + "}");
    auto current = read("{.formatVersion = 3; fontMaster = ({id = m;}); " + glyph + "}");
    ASSERT_NE(older, nullptr);
    ASSERT_NE(current, nullptr);
    EXPECT_EQ(older->glyphs()[0]->unicodes(), std::vector<std::string>{"0041"});
    EXPECT_EQ(current->glyphs()[0]->unicodes(), std::vector<std::string>{"0065"});
    auto layer = current->glyphs()[0]->layerForId("m");
    ASSERT_EQ(layer->shapes().size(), 2u) << "a shape with neither nodes nor ref is left out";
    EXPECT_NE(std::dynamic_pointer_cast<VLComponent>(layer->shapes()[1]), nullptr);
    EXPECT_EQ(layer->width(), 100.0) << "an absent width";
    EXPECT_EQ(older->glyphs()[0]->layerForId("m")->shapes().size(), 1u) << "the older format reads paths, not shapes";

    EXPECT_EQ(read("{.formatVersion = 3; fontMaster = ();}"), nullptr);
    EXPECT_EQ(read("{.formatVersion = 3; fontMaster = ({id = m;}, 7);}"), nullptr) << "a master that is no record";
    EXPECT_THROW(read("{.formatVersion = 3;}"), VLException);
    VLError error;
    EXPECT_EQ(readDocument(propertyListOfValue(treeOfText("{unitsPerEm = 1000;}"), false), &error), nullptr);
    EXPECT_TRUE(error.domain.empty()) << "a document without masters fails without an error";
}

namespace {

// Cutting a document where a reader changes state matters most: just before and just behind each
// byte of `structure`. Every seventh length in between is cut too; all of them, with no structure.
std::vector<size_t> cutLengths(const std::string& bytes, std::string_view structure)
{
    std::vector<size_t> lengths;
    auto structural = [&](size_t at) { return structure.find(bytes[at]) != std::string_view::npos; };
    for (size_t length = 0; length < bytes.size(); ++length)
        if (structure.empty() || length % 7 == 0 || structural(length) || (length > 0 && structural(length - 1)))
            lengths.push_back(length);
    return lengths;
}

} // namespace

TEST(DictRoute, EveryPrefixOfATwinFailsSafely)
{
    // The streaming reader refuses the master's unknown key, so each prefix that parses goes
    // through the second chance.
    std::string text = currentFormat;
    text.replace(text.find("name = Light;"), 13, "name = Light; baseline = 0;");
    ASSERT_NE(readDocument(text), nullptr);
    Value tree = treeOfText(text);
    auto readLayers = [](const std::shared_ptr<VLFont>& font) {
        if (font)
            for (const auto& glyph : font->glyphs()) glyph->readLayersFormat(font->formatVersion());
    };
    for (size_t length : cutLengths(text, "{}()=;,\"\\")) {
        SCOPED_TRACE(length);
        readLayers(readDocument(text.substr(0, length)));
    }
    // The twins in memory, as their files would be read. A binary property list is found through
    // the offsets in its trailer, which any cut replaces with other bytes: every length.
    std::pair<std::string, std::string_view> twins[] = {{propertyListOfValue(tree, false), "<>"},
                                                        {propertyListOfValue(tree, true), ""}};
    for (const auto& [bytes, structure] : twins)
        for (size_t length : cutLengths(bytes, structure)) {
            SCOPED_TRACE(length);
            auto root = parseBinaryOrXMLPropertyList(bytes.substr(0, length));
            try {
                if (root) readLayers(VLFont::initWithDict_error(*root, nullptr));
            } catch (const VLException&) {
            }
        }
}
