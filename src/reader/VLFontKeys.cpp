#include "model/VLAxis.h"
#include "platform/NumberConversion.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLInstance.h"
#include "model/VLMetric.h"
#include "reader/VLGlyphListReader.h"
#include "reader/VLPlistLexical.h"
#include "reader/VLPlistParser.h"
#include "reader/VLPlistRecordReading.h"
#include "reader/VLPlistRecords.h"
#include "reader/VLPlistSkippers.h"


namespace {

enum class KeyResult { Handled, Failed, Unknown };

KeyResult handled(bool ok)
{
    return ok ? KeyResult::Handled : KeyResult::Failed;
}

double orDefault(double value, double fallback)
{
    return value < 0.001 ? fallback : value;
}

KeyResult readAxes(VLFont& font, VLPlistParseInfo* info)
{
    auto axes = readPlistObjects<VLAxis>(info, font.formatVersion());
    if (!axes) return KeyResult::Failed;
    for (size_t i = 0; i < axes->size(); ++i) (*axes)[i]->setAxisId(VLAxis::axisIdForNumber(i + 1));
    font.setAxes(std::move(*axes));
    return KeyResult::Handled;
}

KeyResult readMasters(VLFont& font, VLPlistParseInfo* info)
{
    auto masters = readPlistObjects<VLFontMaster>(info, font.formatVersion());
    if (!masters || masters->empty()) return KeyResult::Failed;
    font.setFontMasters(std::move(*masters));
    return KeyResult::Handled;
}

// Metrics, stems and numbers share the metric record.
template <typename Setter> KeyResult readMetrics(VLFont& font, VLPlistParseInfo* info, Setter setter)
{
    auto metrics = readPlistObjects<VLMetric>(info, font.formatVersion());
    if (!metrics) return KeyResult::Failed;
    (font.*setter)(std::move(*metrics));
    return KeyResult::Handled;
}

KeyResult readGlyphs(VLFont& font, VLPlistParseInfo* info)
{
    auto glyphs = readGlyphList(info, font.formatVersion());
    if (!glyphs) return KeyResult::Failed;
    font.setGlyphs(std::move(*glyphs));
    return KeyResult::Handled;
}

KeyResult readInstances(VLFont& font, VLPlistParseInfo* info)
{
    if (auto instances = readPlistObjects<VLInstance>(info, font.formatVersion(), &font))
        font.setInstances(std::move(*instances));
    return KeyResult::Handled;
}

uint64_t versionNumber(int64_t value)
{
    uint64_t magnitude = value < 0 ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
    return magnitude > 1000000 ? 1 : magnitude;
}

} // namespace

void VLFont::readSettings(const Value& settings)
{
    auto has = [&](const char* key) { return !settings[key].isNull(); };
    if (has("disablesNiceNames")) _disablesNiceNames = settings["disablesNiceNames"].boolValue();
    if (has("disablesAutomaticAlignment"))
        _disablesAutomaticAlignment = settings["disablesAutomaticAlignment"].boolValue();
    if (has("gridLength")) _gridMain = static_cast<uint32_t>(settings["gridLength"].integerValue());
    if (has("gridSubDivision")) _gridSubDivision = static_cast<uint32_t>(settings["gridSubDivision"].integerValue());
    if (has("keepAlternatesTogether")) _keepAlternatesTogether = settings["keepAlternatesTogether"].boolValue();
    auto single = [&](const char* key) { return static_cast<double>(VLSinglePrecision(settings[key].doubleValue())); };
    if (has("keyboardIncrement")) _keyboardIncrement = single("keyboardIncrement");
    if (has("keyboardIncrementBig")) _keyboardIncrementBig = single("keyboardIncrementBig");
    if (has("keyboardIncrementHuge")) _keyboardIncrementHuge = single("keyboardIncrementHuge");
    if (has("previewRemoveOverlap")) _previewRemoveOverlap = settings["previewRemoveOverlap"].boolValue();
    if (has("snapToObjects")) _snapToObjects = settings["snapToObjects"].boolValue();
    if (has("fontType")) _fontType = fontTypeForTypeKey(settings["fontType"].string());
}

// One font-level key at `curr`, after a first dispatch on its first byte.
static KeyResult readFontKey(VLFont& font, VLPlistParseInfo* info)
{
    switch (*info->curr) {
    case '.':
        if (matchKey(info, ".appVersion")) return font.setAppVersion(readPlistString(info)), KeyResult::Handled;
        if (matchKey(info, ".formatVersion")) {
            uint8_t v = static_cast<uint8_t>(readPlistInteger(info));
            font.setFormatVersion(v == 1 || v >= 3 ? v : 3);
            return KeyResult::Handled;
        }
        if (matchKey(info, ".storedFormatVersion"))
            return font.setStoredFormatVersion(static_cast<uint8_t>(readPlistInteger(info))), KeyResult::Handled;
        break;
    case '"':
        if (matchKey(info, "\".appVersion\"")) return font.setAppVersion(readPlistString(info)), KeyResult::Handled;
        if (matchKey(info, "\".storedFileType\""))
            return font.setStoredFileType(readPlistString(info)), KeyResult::Handled;
        if (matchKey(info, "\".formatVersion\"")) {
            uint8_t v = static_cast<uint8_t>(readPlistInteger(info));
            font.setFormatVersion(v >= 3 ? v : 1);
            return KeyResult::Handled;
        }
        if (matchKey(info, "\".storedFormatVersion\""))
            return font.setStoredFormatVersion(static_cast<uint8_t>(readPlistInteger(info))), KeyResult::Handled;
        break;
    case 'D':
        if (matchKey(info, "DisplayStrings")) return handled(skipPlistArray(info));
        break;
    case 'a':
        if (matchKey(info, "axes")) return readAxes(font, info);
        break;
    case 'c':
        if (matchKey(info, "classes")) return handled(skipPlistArray(info));
        if (matchKey(info, "copyright")) return handled(skipPlistStringValue(info));
        if (matchKey(info, "customParameters")) return handled(!parsePlistArray(info).isNull());
        break;
    case 'd':
        if (matchKey(info, "date")) return handled(skipPlistStringValue(info));
        if (matchKey(info, "designerURL") || matchKey(info, "designer")) return handled(skipPlistStringValue(info));
        if (matchKey(info, "disablesNiceNames")) {
            int64_t v = readPlistInteger(info);
            if (v == INT64_MAX) return KeyResult::Failed;
            return font.setDisablesNiceNames(v != 0), KeyResult::Handled;
        }
        if (matchKey(info, "disablesAutomaticAlignment"))
            return font.setDisablesAutomaticAlignment(parsePlistBoolValue(info)), KeyResult::Handled;
        break;
    case 'f':
        if (matchKey(info, "familyName")) {
            Value name = parsePlistStringValue(info);
            if (name.isNull()) return KeyResult::Failed;
            return font.setFontName(name.string()), KeyResult::Handled;
        }
        if (matchKey(info, "fontMaster")) return readMasters(font, info);
        if (matchKey(info, "featurePrefixes") || matchKey(info, "features")) return handled(skipPlistArray(info));
        break;
    case 'g':
        if (matchKey(info, "glyphs")) return readGlyphs(font, info);
        if (matchKey(info, "gridLength"))
            return font.setGridMain(static_cast<uint32_t>(readPlistInteger(info))), KeyResult::Handled;
        if (matchKey(info, "gridSubDivision") || matchKey(info, "gridSubDevision"))
            return font.setGridSubDivision(static_cast<uint32_t>(readPlistInteger(info))), KeyResult::Handled;
        break;
    case 'i':
        if (matchKey(info, "instances")) return readInstances(font, info);
        break;
    case 'k':
        if (matchKey(info, "kerningVertical") || matchKey(info, "kerningLTR") || matchKey(info, "kerningRTL") ||
            matchKey(info, "kerning"))
            return handled(skipPlistDict(info));
        if (matchKey(info, "keepAlternatesTogether"))
            return font.setKeepAlternatesTogether(readPlistInteger(info) != 0), KeyResult::Handled;
        if (matchKey(info, "keyboardIncrementHuge"))
            return font.setKeyboardIncrementHuge(orDefault(parsePlistDoubleValue(info), 100.0)), KeyResult::Handled;
        if (matchKey(info, "keyboardIncrementBig"))
            return font.setKeyboardIncrementBig(orDefault(parsePlistDoubleValue(info), 10.0)), KeyResult::Handled;
        if (matchKey(info, "keyboardIncrement"))
            return font.setKeyboardIncrement(orDefault(parsePlistDoubleValue(info), 1.0)), KeyResult::Handled;
        break;
    case 'm':
        if (matchKey(info, "metrics")) return readMetrics(font, info, &VLFont::setMetrics);
        if (matchKey(info, "manufacturerURL") || matchKey(info, "manufacturer"))
            return handled(skipPlistStringValue(info));
        break;
    case 'n':
        if (matchKey(info, "numbers")) return readMetrics(font, info, &VLFont::setNumbers);
        if (matchKey(info, "note")) return handled(skipPlistStringValue(info));
        break;
    case 'p':
        if (matchKey(info, "properties")) return handled(skipPlistArray(info));
        break;
    case 's':
        if (matchKey(info, "settings")) {
            Value settings = parsePlistDict(info);
            if (settings.isNull()) return KeyResult::Failed;
            return font.readSettings(settings), KeyResult::Handled;
        }
        if (matchKey(info, "stems")) return readMetrics(font, info, &VLFont::setStems);
        break;
    case 'u':
        if (matchKey(info, "userData")) return handled(skipPlistDict(info));
        if (matchKey(info, "unitsPerEm"))
            return font.setUnitsPerEm(static_cast<uint32_t>(readPlistInteger(info))), KeyResult::Handled;
        break;
    case 'v':
        if (matchKey(info, "versionMajor"))
            return font.setVersionMajor(versionNumber(readPlistInteger(info))), KeyResult::Handled;
        if (matchKey(info, "versionMinor"))
            return font.setVersionMinor(versionNumber(readPlistInteger(info))), KeyResult::Handled;
        if (matchKey(info, "vertKerning")) return handled(skipPlistDict(info));
        break;
    }
    return KeyResult::Unknown;
}

bool VLFont::readWithVelmorParser(VLPlistParseInfo* info)
{
    while (true) {
        if (!skipPlistSpace(info)) return false;
        uint8_t c = *info->curr;
        if (c == ')') return true;
        if (c != '}') {
            if (readFontKey(*this, info) != KeyResult::Handled) return false;
            if (info->error) return false;
        }
        if (!skipPlistSpace(info) || *info->curr != ';') return true;
        ++info->curr;
    }
}
