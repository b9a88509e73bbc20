#pragma once

#include <cstddef>
#include <memory>
#include <vector>

// The payload of the delta model: one share per master. A master's own object has 1 in its
// place and 0 elsewhere, so an instance of the model, which is a weighted sum of such objects,
// says how much of each master goes into it.
//
// add, sub and scale are the model's arithmetic. An absent operand counts as all zeros, so that a
// model without a neutral object sums its deltas alone.
class MAMathObject {
public:
    static std::shared_ptr<MAMathObject> init() { return std::make_shared<MAMathObject>(); }

    // count long, with 1.0 at index and 0.0 elsewhere.
    void setActiveMaster_count(size_t index, size_t count);
    size_t countOfFactors() const { return _factors.size(); }
    // 0.0 past the end.
    double factorAtIndex(size_t index) const { return index < _factors.size() ? _factors[index] : 0.0; }

    std::shared_ptr<MAMathObject> copy() const { return std::make_shared<MAMathObject>(*this); }
    // New objects, element by element, as long as the longer operand.
    std::shared_ptr<MAMathObject> add(const MAMathObject* other) const;
    std::shared_ptr<MAMathObject> sub(const MAMathObject* other) const;
    // A new object with every element multiplied.
    std::shared_ptr<MAMathObject> scale(double factor) const;
    // In place: this += item * factor.
    void addItem_withFactor(const MAMathObject& item, double factor);

private:
    std::vector<double> _factors;
};
