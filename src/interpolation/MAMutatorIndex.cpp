#include "interpolation/MAMutatorIndex.h"

#include "platform/NumberConversion.h"
#include "platform/VLException.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace {

constexpr double S = VLUnsetValue;
constexpr double epsilon = 1e-15;
// Deltas on one axis are told apart from each other this finely.
constexpr double sameOnAxis = 0.0001;
constexpr double sameOnAxisLeft = 1e-5;
// Factors beyond this come from neighbours too close together and take no part.
constexpr double largestFactor = 10000.0;

bool isSet(double value)
{
    return value < S;
}

bool near(double a, double b, double tolerance)
{
    return std::fabs(a - b) <= tolerance;
}

// The nearest value on one side and the next: a nearer value takes the first place and moves the
// first to the second; another value farther than the first takes the second place.
void takeRight(double value, double& right1, double& right2)
{
    if (right1 > value) {
        right2 = right1;
        right1 = value;
    } else if (value > right1) {
        right2 = value;
    }
}

void takeLeft(double value, double& left1, double& left2)
{
    if (left1 < value || !isSet(left1)) {
        left2 = left1;
        left1 = value;
    } else if (value < left1 && isSet(left1)) {
        left2 = value;
    }
}

} // namespace

std::shared_ptr<MAMutatorIndex> MAMutatorIndex::initWithItems(const Locations& items)
{
    auto index = std::make_shared<MAMutatorIndex>();
    index->_bias = biasFromLocations(items);
    for (const auto& item : items) {
        if (!item->sub(*index->_bias)->isOrigin()) continue;
        index->setNeutral(item);
        break;
    }
    index->computeDeltas(items);
    return index;
}

double MAMutatorIndex::mostCommon(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    std::map<double, size_t> counts;
    for (double value : values) ++counts[value];
    double common = 0.0;
    size_t best = 0;
    // In sort order, so the lowest of equally common values wins.
    for (double value : values)
        if (counts[value] > best) {
            best = counts[value];
            common = value;
        }
    return static_cast<double>(VLSinglePrecision(common));
}

MAMutatorIndex::Location MAMutatorIndex::biasFromLocations(const Locations& items)
{
    size_t count = 0;
    for (const auto& item : items) count = std::max(count, item->count());
    std::vector<double> bias(count);
    for (size_t axis = 0; axis < count; ++axis) {
        std::vector<double> values;
        for (const auto& item : items) values.push_back(item->posAtIndex(axis));
        bias[axis] = mostCommon(std::move(values));
    }
    return MALocationIndex::initWithLocations_count_mathObject(bias.data(), count, nullptr);
}

// The origin's delta adds nothing; it stands for the neutral, which every instance gets in full.
void MAMutatorIndex::setNeutral(const Location& neutral)
{
    _neutral = neutral;
    const auto& object = neutral->mathObject();
    auto zero = object ? object->sub(object.get()) : nullptr;
    addDelta_deltaName_punch_axisOnly(MALocationIndex::initWithMathObject(zero), "origin", false, true);
}

void MAMutatorIndex::computeDeltas(const Locations& items)
{
    Locations onAxis;
    Locations offAxis;
    const MAMathObject* neutralObject = _neutral ? _neutral->mathObject().get() : nullptr;
    for (const auto& item : items) {
        auto delta = item->sub(*_bias);
        if (delta->isOrigin()) continue;
        delta->setMathObject(item->mathObject() ? item->mathObject()->sub(neutralObject) : nullptr);
        delta->setId(item->id());
        (delta->isOnAxis() >= 0 ? onAxis : offAxis).push_back(delta);
    }
    for (const auto& delta : onAxis) addDelta_deltaName_punch_axisOnly(delta, delta->id(), false, true);
    for (const auto& delta : offAxis) addDelta_deltaName_punch_axisOnly(delta, delta->id(), true, true);
}

void MAMutatorIndex::addDelta_deltaName_punch_axisOnly(const Location& delta, const std::string& name, bool punch,
                                                       bool axisOnly)
{
    delta->setName(name);
    if (punch) {
        auto reached = getInstance_axisOnly_getFactors(*delta, axisOnly, nullptr);
        if (!reached) throw VLException("mutator.error.MutatorError", "");
        const auto& own = delta->mathObject();
        delta->setMathObject(own ? own->sub(reached.get()) : reached->scale(-1.0));
    }
    _locations.push_back(delta);
}

std::shared_ptr<MAMathObject> MAMutatorIndex::makeInstance(const MALocationIndex& location)
{
    auto relative = location.sub(*_bias);
    auto sum = getInstance_axisOnly_getFactors(*relative, false, nullptr);
    if (!sum) return nullptr;
    return sum->add(_neutral ? _neutral->mathObject().get() : nullptr);
}

std::shared_ptr<MAMathObject> MAMutatorIndex::getInstance_axisOnly_getFactors(const MALocationIndex& location,
                                                                              bool axisOnly, std::vector<double>* factors)
{
    _collectAxisPoints();
    getFactors_axisOnly(location, axisOnly);
    std::shared_ptr<MAMathObject> total;
    for (size_t i = 0; i < _locations.size(); ++i) {
        const auto& delta = *_locations[i];
        if (factors) factors->push_back(delta.factor());
        if (!delta.mathObject()) continue;
        if (i == 0) {
            total = delta.mathObject()->scale(delta.factor());
        } else if (std::fabs(delta.factor()) > epsilon) {
            if (!total) total = MAMathObject::init();
            total->addItem_withFactor(*delta.mathObject(), delta.factor());
        }
    }
    if (_locations.empty() && _neutral && _neutral->mathObject()) total = _neutral->mathObject()->scale(0.0);
    return total;
}

const MAMutatorIndex::Locations& MAMutatorIndex::getFactors_axisOnly(const MALocationIndex& current, bool axisOnly)
{
    auto limits = getLimits_current(_locations, current);
    for (const auto& delta : _locations)
        delta->setFactor(_accumulateFactors_deltaLocation_limits_axisOnly(current, *delta, limits, axisOnly));
    return _locations;
}

void MAMutatorIndex::_collectAxisPoints()
{
    for (const auto& location : _locations) {
        int64_t axis = location->isOnAxis();
        if (axis < 0 || axis == MALocationIndex::originAxis) continue;
        auto k = static_cast<size_t>(axis);
        if (_axes.size() <= k) _axes.resize(k + 1);
        auto& points = _axes[k];
        bool known = std::any_of(points.begin(), points.end(),
                                 [&](const Location& point) { return point->isEqualToLocation(*location); });
        if (!known) points.push_back(location);
    }
}

std::vector<MALimit> MAMutatorIndex::getLimits_current(const Locations& locations, const MALocationIndex& current)
{
    struct Sides {
        bool visited = false;
        double left1 = S, left2 = S, right1 = S, right2 = S, equal = S;
    };
    size_t count = current.count();
    std::vector<Sides> sides(count);
    for (const auto& location : locations) {
        for (size_t axis = 0; axis < count; ++axis) {
            double c = current.posAtIndex(axis);
            double p = location->posAtIndex(axis);
            if (!isSet(c) || !isSet(p)) continue;
            if (std::fabs(c) < epsilon && std::fabs(p) < epsilon) continue;
            Sides& s = sides[axis];
            // The origin is a location too.
            if (!s.visited) {
                s = Sides{true};
                if (c > 0) s.left1 = 0;
                if (c < 0) s.right1 = 0;
                if (c == 0) s.equal = 0;
            }
            if (c < p - epsilon)
                takeRight(p, s.right1, s.right2);
            else if (c <= p + epsilon)
                s.equal = c;
            else
                takeLeft(p, s.left1, s.left2);
        }
    }
    std::vector<MALimit> limits(count);
    for (size_t axis = 0; axis < count; ++axis) {
        const Sides& s = sides[axis];
        MALimit& limit = limits[axis];
        if (!isSet(s.left1) && isSet(s.right1)) {
            if (isSet(s.equal)) {
                limit.middle = s.equal;
            } else if (isSet(s.right2)) {
                limit.middle = s.right1;
                limit.right = s.right2;
            }
        } else if (isSet(s.left1) && !isSet(s.right1)) {
            if (isSet(s.equal)) {
                limit.middle = s.equal;
            } else if (isSet(s.left2)) {
                limit.left = s.left2;
                limit.middle = s.left1;
            }
        } else if (isSet(s.equal)) {
            limit.middle = s.equal;
        } else {
            limit.left = s.left1;
            limit.right = s.right1;
        }
    }
    return limits;
}

double MAMutatorIndex::_accumulateFactors_deltaLocation_limits_axisOnly(const MALocationIndex& current,
                                                                         const MALocationIndex& delta,
                                                                         const std::vector<MALimit>& limits,
                                                                         bool axisOnly)
{
    int64_t axis = delta.isOnAxis();
    double factor = 0.0;
    if (axis == MALocationIndex::originAxis) {
        factor = 1.0;
    } else if (axis >= 0) {
        auto k = static_cast<size_t>(axis);
        if (_axes.size() <= k) _axes.resize(k + 1);
        auto& points = _axes[k];
        bool hasOrigin = std::any_of(points.begin(), points.end(),
                                     [&](const Location& point) { return std::fabs(point->posAtIndex(k)) < sameOnAxis; });
        if (!hasOrigin) {
            auto origin = std::make_shared<MALocationIndex>();
            for (size_t lower = 0; lower < k; ++lower) origin->setPos_atIndex(S, lower);
            origin->setPos_atIndex(0.0, k);
            points.push_back(origin);
        }
        if (points.size() == 1)
            factor = current.posAtIndex(k) * delta.posAtIndex(k);
        else
            factor = _calcOnAxisFactor_deltaAxis_deltasOnSameAxis_deltaLocation(current, k, points, delta);
    } else if (!axisOnly) {
        factor = _calcOffAxisFactor_deltaLocation_limits(current, delta, limits);
    }
    return factor > largestFactor ? 0.0 : factor;
}

double MAMutatorIndex::_calcOnAxisFactor_deltaAxis_deltasOnSameAxis_deltaLocation(const MALocationIndex& current,
                                                                                    size_t axis,
                                                                                    const Locations& deltasOnSameAxis,
                                                                                    const MALocationIndex& delta)
{
    double c = current.posAtIndex(axis);
    double d = delta.posAtIndex(axis);
    double equal = S, left1 = S, left2 = S, right1 = S, right2 = S;
    for (const auto& point : deltasOnSameAxis) {
        double value = point->posAtIndex(axis);
        if (!isSet(value)) continue;
        if (value < c)
            takeLeft(value, left1, left2);
        else if (value > c)
            takeRight(value, right1, right2);
        else
            equal = std::min(equal, value);
    }
    if (isSet(equal) && equal < 10000000.0) return near(d, c, epsilon) ? 1.0 : 0.0;
    if (isSet(left1) && isSet(right1)) {
        if (d < left1 || d > right1) return 0.0;
        if (near(d, right1, sameOnAxis)) return (c - left1) / (right1 - left1);
        if (near(d, left1, sameOnAxis)) return (c - right1) / (left1 - right1);
        return 0.0;
    }
    if (isSet(right1)) {
        if (near(d, right2, sameOnAxis)) return (c - right1) / (right2 - right1);
        if (near(d, right1, sameOnAxis)) return (c - right2) / (right1 - right2);
        return 0.0;
    }
    if (isSet(left1)) {
        if (near(d, left2, sameOnAxisLeft)) return (c - left1) / (left2 - left1);
        if (near(d, left1, sameOnAxisLeft)) return (c - left2) / (left1 - left2);
        return 0.0;
    }
    return 0.0;
}

double MAMutatorIndex::_calcOffAxisFactor_deltaLocation_limits(const MALocationIndex& current,
                                                               const MALocationIndex& delta,
                                                               const std::vector<MALimit>& limits)
{
    double product = 1.0;
    for (size_t axis = 0; axis < limits.size(); ++axis) {
        const MALimit& limit = limits[axis];
        if (!limit.isSet()) continue;
        double t = current.posAtIndex(axis);
        double d = delta.posAtIndex(axis);
        double l = limit.left, m = limit.middle, r = limit.right;
        // Towards the middle from the far side: the share of the delta at the middle, or of its
        // neighbour.
        auto fromMiddle = [&](double x) { return near(d, m, epsilon) ? x : 1.0 - x; };
        double term = 0.0;
        if ((isSet(r) && d > r) || (isSet(l) && d < l)) {
            term = 0.0;
        } else if (near(t, d, epsilon)) {
            term = 1.0;
        } else if (t > d + epsilon) {
            if (!isSet(l))
                term = 0.0;
            else if (isSet(r))
                term = (r - t) / (r - l);
            else if (isSet(m))
                term = fromMiddle(std::fabs(t - l) / std::fabs(m - l));
        } else {
            if (!isSet(l) && isSet(m) && isSet(r))
                term = fromMiddle(std::fabs(t - r) / std::fabs(m - r));
            else if (isSet(l) && isSet(r))
                term = (t - l) / (r - l);
        }
        product *= static_cast<double>(VLSinglePrecision(term));
    }
    return product;
}
