#pragma once

#include "interpolation/MALocationIndex.h"
#include "interpolation/MAMathObject.h"
#include "platform/VLUnsetValue.h"

#include <cstddef>
#include <memory>
#include <vector>

// The neighbours of the current location on one axis among the deltas: left, middle and right,
// VLUnsetValue where there is none.
struct MALimit {
    double left = VLUnsetValue;
    double middle = VLUnsetValue;
    double right = VLUnsetValue;

    bool isSet() const { return left != VLUnsetValue || middle != VLUnsetValue || right != VLUnsetValue; }
};

// The delta model of interpolation: a neutral object, the master at the most common location,
// and one delta per other master, each the difference its master makes at its location. On-axis
// deltas scale linearly along their axis; an off-axis delta keeps only what the on-axis ones do
// not already give at its location, and fades out towards its neighbours.
//
// Evaluation adds to the index (the points of each axis), so an index serves one thread at a time.
class MAMutatorIndex {
public:
    using Location = std::shared_ptr<MALocationIndex>;
    using Locations = std::vector<Location>;

    // The model of these masters. Raises "mutator.error.MutatorError" when an off-axis master can't
    // be measured against the others.
    static std::shared_ptr<MAMutatorIndex> initWithItems(const Locations& items);

    // The objects of the masters summed for the location; null when nothing can be summed.
    std::shared_ptr<MAMathObject> makeInstance(const MALocationIndex& location);
    // The sum of the deltas for a location relative to the bias; the factor of each delta goes to
    // factors when it is given.
    std::shared_ptr<MAMathObject> getInstance_axisOnly_getFactors(const MALocationIndex& location, bool axisOnly,
                                                                  std::vector<double>* factors);
    // The deltas, each with its factor set for the current location; off-axis deltas count 0 when
    // axisOnly is set.
    const Locations& getFactors_axisOnly(const MALocationIndex& current, bool axisOnly);
    // For each axis of the current location, the nearest locations on either side, or the one it is at.
    static std::vector<MALimit> getLimits_current(const Locations& locations, const MALocationIndex& current);

    const Locations& locations() const { return _locations; }
    const Location& neutral() const { return _neutral; }
    const Location& bias() const { return _bias; }

private:
    // Per axis, the most common value of the items.
    static Location biasFromLocations(const Locations& items);
    static double mostCommon(std::vector<double> values);
    void setNeutral(const Location& neutral);
    void computeDeltas(const Locations& items);
    void addDelta_deltaName_punch_axisOnly(const Location& delta, const std::string& name, bool punch, bool axisOnly);
    void _collectAxisPoints();
    double _accumulateFactors_deltaLocation_limits_axisOnly(const MALocationIndex& current, const MALocationIndex& delta,
                                                            const std::vector<MALimit>& limits, bool axisOnly);
    static double _calcOnAxisFactor_deltaAxis_deltasOnSameAxis_deltaLocation(const MALocationIndex& current, size_t axis,
                                                                              const Locations& deltasOnSameAxis,
                                                                              const MALocationIndex& delta);
    static double _calcOffAxisFactor_deltaLocation_limits(const MALocationIndex& current, const MALocationIndex& delta,
                                                          const std::vector<MALimit>& limits);

    // For each axis index, the on-axis locations, with the origin of the axis added on first use.
    std::vector<Locations> _axes;
    Locations _locations;
    Location _neutral;
    Location _bias;
};
