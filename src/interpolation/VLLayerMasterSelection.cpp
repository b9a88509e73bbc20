#include "interpolation/MALocationIndex.h"
#include "interpolation/MAMathObject.h"
#include "interpolation/MAMutatorIndex.h"
#include "interpolation/VLCoefficientTidying.h"
#include "interpolation/coefficients.h"
#include "model/VLAxis.h"
#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "model/VLPartProperty.h"
#include "platform/Log.h"
#include "platform/StringFormat.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <set>
#include <string>

namespace {

using PartAxes = std::vector<std::shared_ptr<VLPartProperty>>;

// Part values this far out are taken for a slip and read 0.
constexpr double largestPieceSetting = 10000.0;
// Past this many axes the solver looks at fewer candidate sets of masters.
constexpr size_t axesForFewerCandidates = 9;
// From this many axes on, a target is held near the masters, where the solver finds its way.
constexpr size_t axesForClamping = 5;
// Shares of the delta model up to this take no part.
constexpr double smallestDeltaFactor = 1e-5;
// Where a brace layer gives no coordinate for an axis, axesValuesList_fontAxes leaves this.
constexpr double noCoordinate = -10000.0;

bool hasWeightAxis(const PartAxes& axes)
{
    for (const auto& axis : axes)
        if (axis->name() == "Weight" || axis->name().starts_with("Axis_")) return true;
    return false;
}

Value entryOf(const ValueDictionary& dictionary, const std::string& key)
{
    auto found = dictionary.find(key);
    return found == dictionary.end() ? Value() : found->second;
}

// The end of the axis a smart layer stands at, computed in integers as the document gives them;
// ends beyond any real glyph wrap as the hardware does.
double endOfAxis(const VLPartProperty& axis, const Value& setting)
{
    auto bottom = static_cast<uint64_t>(axis.bottomValue());
    auto top = static_cast<uint64_t>(axis.topValue());
    auto end = static_cast<uint64_t>(VLLayer::_valueForPartSetting(setting.integerValue()));
    return static_cast<double>(static_cast<int64_t>(bottom + (top - bottom) * end));
}

// The location of a smart layer: its own end of each axis it names, the receiver's end of the
// others.
std::vector<double> smartLayerLocation(const PartAxes& axes, const VLLayer& layer, const VLLayer& receiver)
{
    std::vector<double> location;
    location.reserve(axes.size());
    for (const auto& axis : axes) {
        auto own = layer.partSelection().find(axis->axisId());
        location.push_back(own != layer.partSelection().end()
                               ? endOfAxis(*axis, own->second)
                               : axis->valueForPartSetting(entryOf(receiver.partSelection(), axis->axisId())));
    }
    return location;
}

void widen(const std::vector<double>& location, std::vector<double>& axesMax, std::vector<double>& axesMin)
{
    for (size_t i = 0; i < location.size(); ++i) {
        axesMax[i] = std::max(axesMax[i], location[i]);
        axesMin[i] = std::min(axesMin[i], location[i]);
    }
}

// The text of a location, 13 bytes per axis at most, so that far-out values of several axes may
// run together; locations of real glyphs never come near.
std::string locationKey(const std::vector<double>& location, size_t axisCount)
{
    std::string key;
    char number[64];
    for (double value : location) {
        std::snprintf(number, sizeof number, "%.4f,", value);
        key += number;
    }
    if (key.size() > 13 * axisCount) key.resize(13 * axisCount);
    return key;
}

// The part value the smart settings give for an axis, else the layer's own end of it.
double pieceSetting(const VLPartProperty& axis, const VLLayer& layer, const ValueDictionary& smartSettings)
{
    auto given = smartSettings.find(axis.axisId());
    double value = given != smartSettings.end() && !given->second.isNull()
                       ? given->second.doubleValue()
                       : axis.valueForPartSetting(entryOf(layer.partSelection(), axis.axisId()));
    // Not a number counts as far out too: the solver takes finite locations only.
    if (!(std::fabs(value) <= largestPieceSetting)) {
        auto glyph = layer.parent();
        VLLog(stringWithFormat("Very unusual piece setting: %s=%.3f (%s)", axis.name().c_str(), value,
                               glyph ? glyph->name().c_str() : "(null)"));
        value = 0.0;
    }
    return value;
}

// A location by axis index over the axes' ids, for the brace layers' coordinates.
std::vector<std::shared_ptr<VLAxis>> axesById(const PartAxes& axes)
{
    std::vector<std::shared_ptr<VLAxis>> result;
    for (const auto& axis : axes) {
        auto stand = std::make_shared<VLAxis>();
        stand->setAxisId(axis->axisId());
        result.push_back(stand);
    }
    return result;
}

VLFactors onlyLayer(const std::string& layerId)
{
    VLFactors factors;
    factors.setObject_forKey(VLFactor(1.0), layerId);
    return factors;
}

} // namespace

std::vector<std::shared_ptr<VLPartProperty>> VLLayer::axes() const
{
    auto owner = glyph();
    if (!owner) return {};
    if (!owner->partsSettings().empty()) return owner->partsSettings();
    auto font = owner->font();
    std::vector<std::shared_ptr<VLAxis>> designAxes;
    if (owner->isCornerGlyph())
        designAxes = VLAxis::cornerAxes();
    else if (font)
        designAxes = font->axes();
    PartAxes axes;
    for (const auto& axis : designAxes) {
        auto part = VLPartProperty::initWithName_bottom_top(axis->name(), 0, 0);
        part->setAxisId(axis->axisId());
        axes.push_back(part);
    }
    return axes;
}

int64_t VLLayer::_valueForPartSetting(int64_t setting)
{
    return setting == 1 ? 0 : 1;
}

std::shared_ptr<VLLayer> VLLayer::pieceInterpolate(const ValueDictionary& smartSettings) const
{
    auto owner = glyph();
    auto font = owner ? owner->font() : nullptr;
    if (!font) return nullptr;
    std::optional<VLFactors> factors;
    if (font->customBoolValueForKey("Smart Components Compatibility Mode"))
        factors = factorsMA(smartSettings);
    else if (font->customBoolValueForKey("Smart Components MM Mode"))
        factors = factorsMM(smartSettings);
    else
        factors = factorsCoeff(smartSettings);
    if (!factors || factors->empty()) return nullptr;
    return owner->interpolate_error(*factors, nullptr);
}

std::optional<VLFactors> VLLayer::factorsSolving(const ValueDictionary& smartSettings, bool doBraceLayer,
                                                 size_t axisCount, const SmartSolver& solve) const
{
    PartAxes partAxes = axes();
    std::vector<double> axesMax(axisCount, -1000000.0);
    std::vector<double> axesMin(axisCount, 1000000.0);
    std::vector<std::string> masterIds;
    std::vector<std::vector<double>> masters;
    computeMastersCoeff_hasWeightAxis_doBraceLayer_masterIds_axesMax_axesMin_axisCount_masters_error(
        partAxes, hasWeightAxis(partAxes), doBraceLayer, masterIds, axesMax, axesMin, axisCount, masters, nullptr);
    if (masters.size() == 1) return onlyLayer(masterIds.front());
    if (masters.empty()) return onlyLayer(_layerId);
    std::vector<double> target;
    computeTargetCoeff_layer_axesMax_axesMin_axisCount_smartSettings_target(partAxes, *this, axesMax, axesMin, axisCount,
                                                                            smartSettings, target);
    return computeInterpolationMasters_solution_masterIds(masters, solve(masters, target, axesMax, axesMin), masterIds);
}

std::optional<VLFactors> VLLayer::factorsCoeff(const ValueDictionary& smartSettings) const
{
    size_t axisCount = std::max<size_t>(axes().size(), 1);
    return factorsSolving(smartSettings, true, axisCount, [](const auto& masters, const auto& target, const auto&, const auto&) {
        return anyCoeffs(masters, target, target.size() > axesForFewerCandidates);
    });
}

std::optional<VLFactors> VLLayer::factorsMM(const ValueDictionary& smartSettings) const
{
    size_t axisCount = axes().size();
    if (axisCount == 0) return std::nullopt;
    return factorsSolving(smartSettings, false, axisCount,
                          [axisCount](const auto& masters, const auto& target, const auto& axesMax, const auto& axesMin) {
                              return computeMM_target_axesMax_axesMin_axisCount(masters, target, axesMax, axesMin,
                                                                                axisCount);
                          });
}

std::optional<VLFactors> VLLayer::factorsMA(const ValueDictionary& smartSettings) const
{
    PartAxes partAxes = axes();
    auto masters = computeMasters(partAxes);
    if (masters.empty()) return onlyLayer(_layerId);
    auto target = computeTarget_layer_masters_smartSettings(partAxes, *this, masters, smartSettings);
    auto model = MAMutatorIndex::initWithItems(masters);
    auto instance = model->makeInstance(*target);
    VLFactors factors;
    for (size_t i = 0; i < masters.size(); ++i) {
        double factor = instance ? instance->factorAtIndex(i) : 0.0;
        if (std::fabs(factor) > smallestDeltaFactor) factors.setObject_forKey(VLFactor(factor), masters[i]->id());
    }
    return factors;
}

void VLLayer::computeMastersCoeff_hasWeightAxis_doBraceLayer_masterIds_axesMax_axesMin_axisCount_masters_error(
    const std::vector<std::shared_ptr<VLPartProperty>>& axes, bool hasWeightAxis, bool doBraceLayer,
    std::vector<std::string>& masterIds, std::vector<double>& axesMax, std::vector<double>& axesMin, size_t axisCount,
    std::vector<std::vector<double>>& masters, VLError*) const
{
    auto owner = glyph();
    if (!owner) return;
    masters.reserve(owner->countOfLayers());
    masterIds.reserve(owner->countOfLayers());
    std::set<std::string> locationKeys;
    std::vector<std::shared_ptr<VLAxis>> braceAxes;
    for (const std::string& key : owner->layers().allKeys()) {
        auto layer = owner->layers().objectForKey(key);
        if (!layer || (!hasWeightAxis && layer->associatedMasterId() != _associatedMasterId)) continue;
        if (doBraceLayer && layer->isBraceLayer()) {
            if (braceAxes.size() != axes.size()) braceAxes = axesById(axes);
            std::vector<double> location(axes.size(), noCoordinate);
            if (!layer->axesValuesList_fontAxes(location, braceAxes)) continue;
            for (size_t i = 0; i < axes.size(); ++i)
                if (location[i] < -9999.0)
                    location[i] = axes[i]->valueForPartSetting(entryOf(_partSelection, axes[i]->axisId()));
            widen(location, axesMax, axesMin);
            masters.push_back(std::move(location));
            masterIds.push_back(layer->layerId());
            continue;
        }
        if (layer->partSelection().empty()) continue;
        std::vector<double> location = smartLayerLocation(axes, *layer, *this);
        widen(location, axesMax, axesMin);
        // Of two layers at one place the first counts, so that a place is not weighed twice.
        if (!locationKeys.insert(locationKey(location, axisCount)).second) continue;
        masters.push_back(std::move(location));
        masterIds.push_back(layer->layerId());
    }
}

void VLLayer::computeTargetCoeff_layer_axesMax_axesMin_axisCount_smartSettings_target(
    const std::vector<std::shared_ptr<VLPartProperty>>& axes, const VLLayer& layer, const std::vector<double>& axesMax,
    const std::vector<double>& axesMin, size_t, const ValueDictionary& smartSettings, std::vector<double>& target)
{
    for (size_t i = 0; i < axes.size(); ++i) {
        double value = pieceSetting(*axes[i], layer, smartSettings);
        if (axes.size() >= axesForClamping && i < axesMax.size() && i < axesMin.size()) {
            double reach = (axesMax[i] - axesMin[i]) * 1.5;
            value = std::max(value, axesMin[i] - reach);
            value = std::min(value, axesMax[i] + reach);
        }
        target.push_back(value);
    }
}

std::optional<VLFactors> VLLayer::computeInterpolationMasters_solution_masterIds(
    const std::vector<std::vector<double>>& masters, std::vector<double> solution, const std::vector<std::string>& masterIds)
{
    if (masters.size() != solution.size()) return VLFactors();
    return VLFactorsOfCoefficients(std::move(solution), masterIds);
}

std::vector<double> VLLayer::computeMM_target_axesMax_axesMin_axisCount(const std::vector<std::vector<double>>& masters,
                                                                        const std::vector<double>& target,
                                                                        const std::vector<double>& axesMax,
                                                                        const std::vector<double>& axesMin,
                                                                        size_t axisCount)
{
    std::vector<double> weights(masters.size(), 0.0);
    for (size_t axis = 0; axis < axisCount && axis < target.size(); ++axis) {
        double low = axesMin[axis];
        double t = target[axis];
        double range = axesMax[axis] - low;
        for (size_t m = 0; m < masters.size(); ++m) {
            double p = axis < masters[m].size() ? masters[m][axis] : 0.0;
            // A master at the low end weighs as the low end; any other as the top.
            double w = std::fabs(low - p) < 0.01 ? (range - (t - p)) / range : (range - (p - t)) / range;
            weights[m] = axis == 0 ? w : weights[m] * w;
        }
    }
    return weights;
}

std::vector<std::shared_ptr<MALocationIndex>>
VLLayer::computeMasters(const std::vector<std::shared_ptr<VLPartProperty>>& axes) const
{
    std::vector<std::shared_ptr<MALocationIndex>> masters;
    auto owner = glyph();
    if (!owner) return masters;
    bool everyMaster = hasWeightAxis(axes);
    for (const auto& layer : owner->layers().allValues()) {
        if (!everyMaster && layer->associatedMasterId() != _associatedMasterId) continue;
        if (layer->partSelection().empty()) continue;
        std::vector<double> location = smartLayerLocation(axes, *layer, *this);
        auto master = MALocationIndex::initWithLocations_count_mathObject(location.data(), location.size(), nullptr);
        master->setId(layer->layerId());
        masters.push_back(master);
    }
    for (size_t i = 0; i < masters.size(); ++i) {
        auto object = MAMathObject::init();
        object->setActiveMaster_count(i, masters.size());
        masters[i]->setMathObject(object);
    }
    return masters;
}

std::shared_ptr<MALocationIndex>
VLLayer::computeTarget_layer_masters_smartSettings(const std::vector<std::shared_ptr<VLPartProperty>>& axes,
                                                   const VLLayer& layer, const std::vector<std::shared_ptr<MALocationIndex>>&,
                                                   const ValueDictionary& smartSettings)
{
    std::vector<double> target;
    for (const auto& axis : axes) target.push_back(pieceSetting(*axis, layer, smartSettings));
    return MALocationIndex::initWithLocations_count_mathObject(target.data(), target.size(), nullptr);
}
