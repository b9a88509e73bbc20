#include "interpolation/VLCoefficientCache.h"
#include "interpolation/VLCoefficientTidying.h"
#include "interpolation/coefficients.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLInstance.h"
#include "platform/NumberConversion.h"

#include <cmath>
#include <set>
#include <string>

namespace {

using Masters = std::vector<std::shared_ptr<VLFontMaster>>;
using Axes = std::vector<std::shared_ptr<VLAxis>>;

constexpr double negligiblePairShare = 0.001;

void addNames(const Value& names, std::set<std::string>& into)
{
    if (!names.isArray()) return;
    for (const Value& name : names.array())
        if (name.isString()) into.insert(name.string());
}

// The masters that take part, each with its coordinates on the axes; of masters at one place the
// first takes all the weight.
struct Participants {
    Masters masters;
    MasterPositions positions;
};

Participants participants(const Masters& masters, const Axes& axes, const std::set<std::string>& disabled)
{
    Participants result;
    result.masters.reserve(masters.size());
    result.positions.reserve(masters.size());
    std::set<std::vector<double>> places;
    for (const auto& master : masters) {
        if (disabled.contains(master->name())) continue;
        auto position = VLFont::axesValueListFromAxes_axesValues(axes, master->axesValues());
        if (!places.insert(position).second) continue;
        result.masters.push_back(master);
        result.positions.push_back(std::move(position));
    }
    return result;
}

VLFactors pairShares(const Participants& p, const std::vector<double>& target, double weightY)
{
    std::vector<double> targetY = target;
    if (!targetY.empty()) targetY[0] = VLSinglePrecision(weightY);
    auto x = anyCoeffs(p.positions, target, false);
    auto y = anyCoeffs(p.positions, targetY, false);
    VLFactors shares;
    if (x.size() != p.masters.size() || y.size() != p.masters.size()) return shares;
    for (size_t i = 0; i < x.size(); ++i) {
        bool counts = std::fabs(x[i]) > negligiblePairShare || std::fabs(y[i]) > negligiblePairShare;
        if (counts && !std::isnan(x[i]) && !std::isnan(y[i])) shares.setObject_forKey(VLFactor(x[i], y[i]), p.masters[i]->id());
    }
    return shares;
}

std::optional<VLFactors> cachedShares(const Participants& p, const std::vector<double>& target)
{
    std::vector<std::string> ids;
    for (const auto& master : p.masters) ids.push_back(master->id());
    return VLFactorsOfCoefficients(VLCoefficientCache::coefficientsForMasters_target(p.positions, target), ids);
}

} // namespace

std::optional<VLFactors> VLInstance::instanceInterpolations_axes(const Masters& masters, const Axes& axes)
{
    if (masters.empty()) return std::nullopt;
    if (masters.size() == 1 || _axesValues.empty()) {
        VLFactors first;
        first.setObject_forKey(1.0, masters.front()->id());
        return first;
    }
    return instanceInterpolationsCoeffs_axes(masters, axes);
}

std::optional<VLFactors> VLInstance::instanceInterpolationsCoeffs_axes(const Masters& masters, const Axes& axes)
{
    std::set<std::string> disabled;
    if (_font) addNames(_font->customValueForKey("Disable Masters"), disabled);
    addNames(customValueForKey("Disable Masters"), disabled);
    Participants p = participants(masters, axes, disabled);
    std::vector<double> target = VLFont::axesValueListFromAxes_axesValues(axes, _axesValues);
    Value weightY = customValueForKey("InterpolationWeightY");
    if (weightY.isNumber() || weightY.isString()) return pairShares(p, target, weightY.doubleValue());
    return cachedShares(p, target);
}
