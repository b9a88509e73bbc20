#pragma once

#include "model/VLContainer.h"
#include "model/VLCustomParameterOwner.h"
#include "model/VLOrderedDictionary.h"
#include "platform/Value.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

class VLAxis;
class VLFontMaster;
class VLGlyph;
class VLInstance;
class VLLayer;
class VLMetric;
class VLMetricValue;
struct VLError;
struct VLPlistParseInfo;

// One document: glyphs, masters and the font-wide settings that drawing needs.
class VLFont : public VLContainer, public VLCustomParameterOwner, public std::enable_shared_from_this<VLFont> {
public:
    VLFont() : VLCustomParameterOwner(false) {}
    enum FontType : int8_t { FontTypeDefault = 0, FontTypeVariable = 1, FontTypeLayerFont = 2, FontTypeIconSet = 3 };

    // A new font holding exactly one master "m01" made with initFast.
    static std::shared_ptr<VLFont> init();
    // A deep copy of everything the font keeps, glyphs with their ids; interface updates are off.
    std::shared_ptr<VLFont> copy() const;

    // Reads a document in any of its storage forms and finishes it; null on failure.
    static std::shared_ptr<VLFont> initWithURL_error(const std::string& path, VLError* error);
    // The streaming route over the text form and packages, without the post-read pass.
    static std::shared_ptr<VLFont> initWithVelmorFileAtPath_error(const std::string& path, VLError* error);
    // Finishes a font once everything is read: resolves the read buffers, moves what older
    // documents say in older ways into the current model, and numbers the glyphs by their place.
    bool postRead(VLError* error);
    // Reads the font-level keys from the parse info, which stands behind the opening brace.
    bool readWithVelmorParser(VLPlistParseInfo* info);
    // Reads the ".glyph" files of a package's glyph folder in parallel, sorted by glyphId.
    bool readGlyphFiles_format_error(const std::string& folder, uint8_t format, VLError* error);
    // Applies the document's "settings" dictionary; keys that are absent leave their field.
    void readSettings(const Value& settings);

    // Navigation.
    std::shared_ptr<VLLayer> layer() const override { return nullptr; }
    std::shared_ptr<VLGlyph> glyph() const override { return nullptr; }
    std::shared_ptr<VLFont> font() const override { return std::const_pointer_cast<VLFont>(shared_from_this()); }
    void elementDidChange(VLShape*) override {}

    // Glyphs.
    const std::vector<std::shared_ptr<VLGlyph>>& glyphs() const { return _glyphs; }
    void setGlyphs(std::vector<std::shared_ptr<VLGlyph>> glyphs);
    void addGlyphFast(const std::shared_ptr<VLGlyph>& glyph);
    const std::vector<std::string>& glyphFiles() const { return _glyphFiles; }
    void setGlyphFiles(std::vector<std::string> names)
    {
        _glyphFiles = std::move(names);
        _glyphFileNames.clear();
    }
    // The larger of the loaded glyphs and the glyph files of a package.
    size_t countOfGlyphs() const { return std::max(_glyphs.size(), _glyphFiles.size()); }
    // The loaded glyphs alone.
    size_t count() const { return _glyphs.size(); }
    std::shared_ptr<VLGlyph> objectInGlyphsAtIndex(size_t index) const;
    // The font's glyphs followed by the imported ones whose names it lacks; computed each time.
    std::vector<std::shared_ptr<VLGlyph>> allGlyphs() const;

    // Look-ups; glyphs of imported fonts answer after the font's own.
    // Hashed: a document of many glyphs builds its name index on every read and frees it after.
    struct GlyphIndexHash {
        using is_transparent = void;
        size_t operator()(std::string_view key) const { return std::hash<std::string_view>{}(key); }
    };
    using GlyphIndex = std::unordered_map<std::string, std::shared_ptr<VLGlyph>, GlyphIndexHash, std::equal_to<>>;

    // A glyph of a package that is not loaded yet is read from its file when it is named.
    std::shared_ptr<VLGlyph> glyphForName(const std::string& name);
    std::shared_ptr<VLGlyph> localGlyphForName(const std::string& name);
    // A raw look-up once the name index stands: no file is loaded, no imported font asked.
    std::shared_ptr<VLGlyph> glyphForNameFast(const std::string& name);
    std::vector<std::shared_ptr<VLGlyph>> glyphsForNames(const std::vector<std::string>& names);
    std::shared_ptr<VLGlyph> glyphAtIndex(size_t index);
    void prepareName2Glyph();
    // Drops the name and id indexes; the code point index stays.
    void resetCache();
    void updateCacheForGlyph(const std::shared_ptr<VLGlyph>& glyph);
    void updateCacheForGlyph_oldName(const std::shared_ptr<VLGlyph>& glyph, const std::string& oldName);
    void glyphHasChangedName_oldName(const std::shared_ptr<VLGlyph>& glyph, const std::string& oldName);

    // By id.
    std::shared_ptr<VLGlyph> localGlyphForId(const std::string& glyphId);
    std::shared_ptr<VLGlyph> glyphForId(const std::string& glyphId);

    // By code point, as upper-case hexadecimal text.
    std::shared_ptr<VLGlyph> glyphForUnicode(const std::string& code);
    std::shared_ptr<VLGlyph> localGlyphForUnicode(const std::string& code);
    std::shared_ptr<VLGlyph> glyphForUnicodes(const std::vector<std::string>& codes);
    std::shared_ptr<VLGlyph> glyphForCharacter(uint32_t character);
    void preloadCharCache();
    // The glyph's first code point, or a private one handed out for it from the top of plane 16.
    uint32_t characterForGlyph(const std::shared_ptr<VLGlyph>& glyph);

    // Masters.
    const std::vector<std::shared_ptr<VLFontMaster>>& fontMasters() const { return _fontMasters; }
    void setFontMasters(std::vector<std::shared_ptr<VLFontMaster>> masters);
    void addFontMaster(const std::shared_ptr<VLFontMaster>& master);
    // Counts on into the imported masters; null past both.
    std::shared_ptr<VLFontMaster> fontMasterAtIndex(long index) const;
    long indexOfFontMaster(const VLFontMaster* master) const;
    std::shared_ptr<VLFontMaster> fontMasterForId(const std::string* id) const;
    std::shared_ptr<VLFontMaster> fontMasterForId(const std::string& id) const { return fontMasterForId(&id); }
    std::shared_ptr<VLFontMaster> fontMasterForName(const std::string& name) const;
    // Moves the layers of a master to a new master id.
    void replaceMasterID_toID(const std::string& oldId, const std::string& newId);
    const std::vector<std::shared_ptr<VLFontMaster>>& importedFontMasters() const { return _importedFontMasters; }
    void setImportedFontMasters(std::vector<std::shared_ptr<VLFontMaster>> masters) { _importedFontMasters = std::move(masters); }
    const std::vector<std::shared_ptr<VLFont>>& importedFonts() const { return _importedFonts; }
    void setImportedFonts(std::vector<std::shared_ptr<VLFont>> fonts) { _importedFonts = std::move(fonts); }
    const std::vector<std::shared_ptr<VLGlyph>>& importedGlyphs() const { return _importedGlyphs; }
    void setImportedGlyphs(std::vector<std::shared_ptr<VLGlyph>> glyphs) { _importedGlyphs = std::move(glyphs); }

    // ---- model/VLFontAxes.cpp: the design space. Each axis that joins gets this font as parent.

    using Axes = std::vector<std::shared_ptr<VLAxis>>;
    // A location by axis id, as masters and instances keep it.
    using AxesValues = std::map<std::string, std::shared_ptr<VLMetricValue>, std::less<>>;
    const Axes& axes() const { return _axes; }
    void setAxes(Axes axes);
    void addAxis(const std::shared_ptr<VLAxis>& axis);
    // A null axis is not inserted; an index past the end appends.
    void insertObject_inAxesAtIndex(const std::shared_ptr<VLAxis>& axis, size_t index);
    // Past the end nothing changes.
    void replaceObjectInAxesAtIndex_withObject(size_t index, const std::shared_ptr<VLAxis>& axis);
    void removeObjectFromAxes(const std::shared_ptr<VLAxis>& axis);
    void removeObjectFromAxesAtIndex(size_t index);
    // The axes that older documents imply: as many of weight, width and four custom axes as
    // the masters' "interpolations" use, at least one.
    Axes legacyAxes();
    static size_t getAxisCountFromMasters(const std::vector<std::shared_ptr<VLFontMaster>>& masters);
    size_t countOfAxes() const { return _axes.size(); }
    std::shared_ptr<VLAxis> objectInAxesAtIndex(size_t index) const;
    long indexOfObjectInAxes(const std::shared_ptr<VLAxis>& axis) const;
    std::shared_ptr<VLAxis> axisForId(const std::string& axisId) const;
    std::shared_ptr<VLAxis> axisForName(const std::string& name) const;
    std::shared_ptr<VLAxis> axisForTag(const std::string& tag) const;
    // The master's value of each axis, in order; missing ones are made at 0 and stored.
    static std::vector<std::shared_ptr<VLMetricValue>> axesPositionsFromAxes_master(const Axes& axes,
                                                                                    VLFontMaster& master);
    // A location list: the position of each axis in order, 0 where the location has none.
    static std::vector<double> axesValueListFromAxes_axesValues(const Axes& axes, const AxesValues& values);
    static void axesValueListFromAxes_axesValues_intoList(const Axes& axes, const AxesValues& values,
                                                          std::vector<double>& list);
    // The location of a list, by axis id, in new values.
    static AxesValues axesValuesFromAxes_axesValuesList(const Axes& axes, const std::vector<double>& list);

    // ---- model/VLFontDesignSpace.cpp: masters across imported fonts, the default master and
    // the values that the masters take on each axis.

    // The font's masters followed by the imported ones.
    std::vector<std::shared_ptr<VLFontMaster>> allMasters() const;
    size_t countOfAllMasters() const { return _fontMasters.size() + _importedFontMasters.size(); }
    std::shared_ptr<VLFontMaster> allMasterAtIndex(size_t index) const;
    // The master that "Variable Font Origin" names by id or by name, asked of the owner first and
    // then of the font; the first master otherwise.
    std::shared_ptr<VLFontMaster> defaultFontMaster() { return defaultFontMaster(nullptr); }
    std::shared_ptr<VLFontMaster> defaultFontMaster(VLCustomParameterOwner* owner);
    // Per axis id, the distinct values that the masters of the ids, the active "Virtual Master"
    // parameters and the glyph's brace layers of those ids take, ascending. Axes without any have
    // no entry.
    using AxisSteps = std::map<std::string, std::vector<double>, std::less<>>;
    AxisSteps axesValueSteps(const std::vector<std::string>& masterIds) { return axesValueSteps_glyph(masterIds, nullptr); }
    AxisSteps axesValueSteps_glyph(const std::vector<std::string>& masterIds, VLGlyph* glyph);

    // Instances.
    const std::vector<std::shared_ptr<VLInstance>>& instances() const { return _instances; }
    void setInstances(std::vector<std::shared_ptr<VLInstance>> instances) { _instances = std::move(instances); }

    // Metric definitions; each master holds its values under their ids.
    using Metrics = std::vector<std::shared_ptr<VLMetric>>;
    // A metric that joins a list gets this font, and a new UUID as id when it has none. Look-ups
    // past the end give null; an insertion past the end appends.
    const Metrics& metrics() const { return _metrics; }
    void setMetrics(Metrics metrics);
    // Also gives every master an empty value for the metric where it has none.
    void addMetric(const std::shared_ptr<VLMetric>& metric);
    size_t countOfMetrics() const { return _metrics.size(); }
    std::shared_ptr<VLMetric> objectInMetricsAtIndex(size_t index) const;
    void insertObject_inMetricsAtIndex(const std::shared_ptr<VLMetric>& metric, size_t index);
    void removeObjectFromMetrics(const std::shared_ptr<VLMetric>& metric);
    void removeObjectFromMetricsAtIndex(size_t index);
    // The first of that name without a filter, else the first of that name.
    std::shared_ptr<VLMetric> objectInMetricsWithName(const std::string& name) const;
    std::shared_ptr<VLMetric> objectInMetricsWithType_withName(uint8_t type,
                                                               const std::optional<std::string>& name) const;
    // Type, name and filter text equal first; when no filter is asked for, then any of that type
    // and name.
    std::shared_ptr<VLMetric> objectInMetricsWithType_withName_filter(uint8_t type, const std::optional<std::string>& name,
                                                                      const std::optional<std::string>& filter) const;
    // Metrics without a filter before those with one, each group by its position at the first master.
    void sortMetrics();
    const Metrics& stems() const { return _stems; }
    void setStems(Metrics stems);
    void addStem(const std::shared_ptr<VLMetric>& stem);
    size_t countOfStems() const { return _stems.size(); }
    std::shared_ptr<VLMetric> objectInStemsAtIndex(size_t index) const;
    void insertObject_inStemsAtIndex(const std::shared_ptr<VLMetric>& stem, size_t index);
    void removeObjectFromStems(const std::shared_ptr<VLMetric>& stem);
    void removeObjectFromStemsAtIndex(size_t index);
    std::shared_ptr<VLMetric> stemForId(const std::string& metricId) const;
    std::shared_ptr<VLMetric> stemForName(const std::string& name) const;
    const Metrics& numbers() const { return _numbers; }
    void setNumbers(Metrics numbers);
    void addNumber(const std::shared_ptr<VLMetric>& number);
    size_t countOfNumbers() const { return _numbers.size(); }
    std::shared_ptr<VLMetric> objectInNumbersAtIndex(size_t index) const;
    void insertObject_inNumbersAtIndex(const std::shared_ptr<VLMetric>& number, size_t index);
    void removeObjectFromNumbers(const std::shared_ptr<VLMetric>& number);
    void removeObjectFromNumbersAtIndex(size_t index);
    std::shared_ptr<VLMetric> numberForId(const std::string& metricId) const;
    std::shared_ptr<VLMetric> numberForName(const std::string& name) const;

    // Settings.
    uint32_t unitsPerEm() const { return _unitsPerEm; }
    void setUnitsPerEm(uint32_t upm) { _unitsPerEm = upm; }
    uint64_t versionMajor() const { return _versionMajor; }
    uint64_t versionMinor() const { return _versionMinor; }
    void setVersionMajor(uint64_t v) { _versionMajor = v; }
    void setVersionMinor(uint64_t v) { _versionMinor = v; }
    std::string version() const;
    void setVersion(const std::string& version);
    uint32_t gridMain() const { return _gridMain; }
    void setGridMain(uint32_t v) { _gridMain = v; }
    uint32_t gridSubDivision() const { return _gridSubDivision; }
    void setGridSubDivision(uint32_t v) { _gridSubDivision = v; }
    double gridLength() const;
    bool disablesNiceNames() const { return _disablesNiceNames; }
    void setDisablesNiceNames(bool v) { _disablesNiceNames = v; }
    bool disablesAutomaticAlignment() const { return _disablesAutomaticAlignment; }
    void setDisablesAutomaticAlignment(bool v) { _disablesAutomaticAlignment = v; }
    bool keepAlternatesTogether() const { return _keepAlternatesTogether; }
    void setKeepAlternatesTogether(bool v) { _keepAlternatesTogether = v; }
    const std::string& note() const { return _note; }
    void setNote(const std::string& note) { _note = note; }
    const std::string& fontName() const { return _fontName; }
    void setFontName(const std::string& name) { _fontName = name; }
    uint8_t formatVersion() const { return _formatVersion; }
    void setFormatVersion(uint8_t v) { _formatVersion = v; }
    uint8_t storedFormatVersion() const { return _storedFormatVersion; }
    void setStoredFormatVersion(uint8_t v) { _storedFormatVersion = v; }
    const std::string& appVersion() const { return _appVersion; }
    void setAppVersion(const std::string& v) { _appVersion = v; }
    const std::string& storedFileType() const { return _storedFileType; }
    void setStoredFileType(const std::string& v) { _storedFileType = v; }
    double keyboardIncrement() const { return _keyboardIncrement; }
    void setKeyboardIncrement(double v) { _keyboardIncrement = v; }
    double keyboardIncrementBig() const { return _keyboardIncrementBig; }
    void setKeyboardIncrementBig(double v) { _keyboardIncrementBig = v; }
    double keyboardIncrementHuge() const { return _keyboardIncrementHuge; }
    void setKeyboardIncrementHuge(double v) { _keyboardIncrementHuge = v; }
    bool previewRemoveOverlap() const { return _previewRemoveOverlap; }
    void setPreviewRemoveOverlap(bool v) { _previewRemoveOverlap = v; }
    bool snapToObjects() const { return _snapToObjects; }
    void setSnapToObjects(bool v) { _snapToObjects = v; }
    int8_t fontType() const { return _fontType; }
    void setFontType(int8_t type) { _fontType = type; }
    static std::string fontTypeKeyForType(int8_t type);
    // The active "panose" parameter, else "openTypeOS2Panose"; text is turned into its numbers.
    Value panose();
    static int8_t fontTypeForTypeKey(const std::string& key);

    // ---- reader/VLFontDictReader.cpp: the dictionary route, for property lists that are not in
    // the text form and for text documents whose records the streaming readers refuse.

    // Builds and finishes the font from a document's root dictionary. A format above the highest
    // one read here is refused with an error; a document without masters raises.
    static std::shared_ptr<VLFont> initWithDict_error(const Value& dict, VLError* error);

    // ---- model/VLFontKerning.cpp: pair kerning per master and writing direction. Keys are glyph
    // ids or kerning group keys ("@MMK_L_" and "@MMK_R_" names); a missing pair is VLUnsetValue,
    // which callers tell apart from a kerning of 0.

    using KerningPairs = VLOrderedDictionary<Value>;
    using KerningRows = VLOrderedDictionary<std::shared_ptr<KerningPairs>>;
    using Kerning = VLOrderedDictionary<std::shared_ptr<KerningRows>>;
    // Directions 0 and 1 left to right, 2 right to left, 4, 8 and 12 vertical, 128 contextual;
    // any other raises "Wrong direction".
    Kerning& kerningForDirection(int direction);
    // The kerning of the master whose metrics the given one shares, made empty when missing; null
    // for an unknown direction.
    std::shared_ptr<KerningRows> masterKerning_direction(const std::string& masterId, int direction);
    // A plain dictionary of first key to second key to number; nothing without a master id or
    // for an unknown direction.
    void setKerning_forMaster_direction(const Value& kerning, const std::string& masterId, int direction);
    // A document's kerning: per master, in master order, keys sorted, values in single precision.
    // Entries of ids that no master has are left out.
    Kerning readKerningFromDict(const Value& dict) const;
    // An exception of glyph to glyph beats glyph to group, which beats group to glyph, which
    // beats group to group.
    double kerningForFontMasterID_firstGlyph_secondGlyph_direction(const std::string& masterId, const VLGlyph& first,
                                                                   const VLGlyph& second, int direction);
    static double kerningForFontMasterDict_firstGlyph_secondGlyph_direction(const KerningRows* rows,
                                                                            const VLGlyph& first,
                                                                            const VLGlyph& second, int direction);
    double kerningForFontMasterID_leftKey_rightKey_direction(const std::string& masterId, const std::string& leftKey,
                                                             const std::string& rightKey, int direction);
    // Left to right, between layers of one master; VLUnsetValue for layers of different masters.
    double kerningFirstLayer_secondLayer(const VLLayer& first, const VLLayer& second);
    // A copy with glyph names in place of glyph ids, for display; null when the direction has none.
    std::shared_ptr<Kerning> kerningDictForDirection(int direction);
    // The master whose kerning and metrics the given one shares through "Link Metrics With First
    // Master" or "Link Metrics With Master"; hasLink is set when either is there.
    std::string masterIDforMetrics(const std::string& masterId);
    std::string masterIDforMetrics_hasLink(const std::string& masterId, bool* hasLink);

    // User data and scratch.
    const ValueDictionary& userData() const { return _userData; }
    void setUserData_forKey(const Value& value, const std::string& key);
    Value tempDataForKey(const std::string& key) const;
    void setTempData_forKey(const Value& value, const std::string& key);

    // Interface updates: one flag and the keys changed while it was on.
    void stopUpdateInterface();
    void disableUpdateInterface();
    void enableUpdateInterface();
    // What reading the layers of glyphs may still build, in records (nodes, shapes, anchors,
    // hints, layers); unbounded unless a request bounds it.
    uint64_t* outlineRecordsLeft() { return &_outlineRecordsLeft; }
    void setOutlineRecordsLeft(uint64_t records) { _outlineRecordsLeft = records; }
    void enableFutureUpdates() { _disabledChanges = false; }
    bool isUpdateInterfaceEnabled() const { return !_disabledChanges; }

private:
    bool readPackageGlyphs(const std::string& folder, VLError* error);
    void postReadAxesFromParameters();
    bool postReadGlyphs(VLError* error);
    static std::shared_ptr<VLFont> initWithPropertyListAtPath_error(const std::string& path, VLError* error);

    std::vector<std::shared_ptr<VLGlyph>> _glyphs;
    std::vector<std::string> _glyphFiles;
    // The same names, for lookups; filled when first asked.
    std::unordered_set<std::string> _glyphFileNames;
    uint32_t _unitsPerEm = 1000;
    uint64_t _versionMajor = 1;
    uint64_t _versionMinor = 0;
    std::vector<std::shared_ptr<VLFontMaster>> _fontMasters;
    ValueDictionary _userData;
    uint32_t _gridMain = 1;
    uint32_t _gridSubDivision = 1;
    double _keyboardIncrement = 1.0;
    double _keyboardIncrementBig = 10.0;
    double _keyboardIncrementHuge = 100.0;
    bool _previewRemoveOverlap = true;
    bool _snapToObjects = true;
    bool _disablesNiceNames = false;
    bool _disablesAutomaticAlignment = false;
    bool _keepAlternatesTogether = false;
    GlyphIndex _name2Glyph;
    GlyphIndex _id2Glyph;
    std::optional<GlyphIndex> _charsCache;
    uint32_t _lastChar = 0x10FFFD;
    std::vector<std::shared_ptr<VLGlyph>> _importedGlyphs;
    bool _disabledChanges = false;
    std::optional<std::set<std::string>> _disabledChangeKeys;
    std::string _fontName;
    std::string _note;
    // Keeps the document text mapped: glyphs read their layers from it on demand. A shared
    // pointer, since it needs the reader's type only where the reader makes it.
    std::shared_ptr<VLPlistParseInfo> _pInfo;
    std::optional<ValueDictionary> _tempData;
    uint8_t _formatVersion = 3;
    uint64_t _outlineRecordsLeft = UINT64_MAX;
    int8_t _fontType = FontTypeDefault;
    uint8_t _storedFormatVersion = 0;
    std::string _appVersion;
    std::string _storedFileType;
    std::vector<std::shared_ptr<VLFontMaster>> _importedFontMasters;
    std::vector<std::shared_ptr<VLAxis>> _axes;
    std::vector<std::shared_ptr<VLInstance>> _instances;
    Metrics _metrics;
    Metrics _stems;
    Metrics _numbers;
    std::vector<std::shared_ptr<VLFont>> _importedFonts;

    // ---- reader/VLFontDictReader.cpp
    void readFontSettingsFromDict(const Value& dict);
    bool readMastersFromDict(const Value& list, uint8_t format);
    void readInstancesFromDict(const Value& list, uint8_t format);
    void readGlyphsFromDict(const Value& list, uint8_t format);
    void readKerningsFromDict(const Value& dict, uint8_t format);
    // ---- reader/VLTextDictRoute.cpp
    static std::shared_ptr<VLFont> initWithTextThroughDictAtPath_streamError(const std::string& path,
                                                                             const VLError& streamError);

    // ---- model/VLFontKerning.cpp
    Kerning _kerningLTR;
    Kerning _kerningRTL;
    Kerning _kerningVertical;
    Kerning _kerningContext;
};
