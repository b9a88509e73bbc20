#pragma once

#include "interpolation/MAMathObject.h"
#include "platform/VLUnsetValue.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

// A location of the delta model, by axis index, with the object that stands there. Slots that no
// coordinate was given for hold VLUnsetValue.
class MALocationIndex {
public:
    // Slots of a location; a location of this many axes or more is refused.
    static constexpr size_t maximumCount = 25;
    // What isOnAxis answers for a location at the origin.
    static constexpr int64_t originAxis = INT64_MAX;

    MALocationIndex() { _list.fill(VLUnsetValue); }

    // count coordinates from locations. Raises "Count is to big" for maximumCount or more.
    static std::shared_ptr<MALocationIndex> initWithLocations_count_mathObject(const double* locations, size_t count,
                                                                              std::shared_ptr<MAMathObject> mathObject);
    // The origin, with the object.
    static std::shared_ptr<MALocationIndex> initWithMathObject(std::shared_ptr<MAMathObject> mathObject);

    size_t count() const { return _count; }
    // VLUnsetValue past the slots.
    double posAtIndex(size_t index) const { return index < maximumCount ? _list[index] : VLUnsetValue; }
    // Grows count to cover the index. Raises "Index to big" for maximumCount or more.
    void setPos_atIndex(double value, size_t index);

    const std::string& name() const { return _name; }
    void setName(const std::string& name) { _name = name; }
    const std::string& id() const { return _id; }
    void setId(const std::string& id) { _id = id; }
    const std::shared_ptr<MAMathObject>& mathObject() const { return _mathObject; }
    void setMathObject(std::shared_ptr<MAMathObject> mathObject) { _mathObject = std::move(mathObject); }
    double factor() const { return _factor; }
    void setFactor(double factor) { _factor = factor; }

    // No coordinate further from 0 than 1e-15; an empty location too.
    bool isOrigin() const;
    // originAxis without a coordinate off 0, the index of the only one, or -1 for two or more.
    int64_t isOnAxis() const;
    // A new location with a copy of the object and the coordinates of this one, up to its count,
    // less those of the other.
    std::shared_ptr<MALocationIndex> sub(const MALocationIndex& other) const;
    bool isEqualToLocation(const MALocationIndex& other) const;

private:
    size_t _count = 0;
    std::array<double, maximumCount> _list;
    std::string _name;
    std::shared_ptr<MAMathObject> _mathObject;
    double _factor = 0.0;
    std::string _id;
};
