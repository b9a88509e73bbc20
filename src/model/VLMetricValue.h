#pragma once

#include "platform/Value.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

class Predicate;
class VLFontMaster;
class VLMetric;

// One master's value of a metric, or one entry of a location when it serves an axis.
class VLMetricValue {
public:
    static std::shared_ptr<VLMetricValue> initWithPosition(double position);
    static std::shared_ptr<VLMetricValue> initWithPosition_overshoot(double position, double overshoot);
    // Keys "pos" and "over", read in single precision; absent keys are 0.
    static std::shared_ptr<VLMetricValue> initWithDict_format(const Value& dict, uint8_t format);
    static constexpr const char* className = "VLMetricValue";

    double position() const { return _position; }
    // Changes only by more than 0.001; values beyond ±100000000 come from broken data and read as 0.
    void setPosition(double position);
    double overshoot() const { return _overshoot; }
    void setOvershoot(double overshoot);

    VLFontMaster* parent() const { return _parent; }
    void setParent(VLFontMaster* master) { _parent = master; }
    // The definition this value belongs to; set when the master hands the value out for it.
    std::shared_ptr<VLMetric> metric() const { return _metric.lock(); }
    void setMetric(const std::shared_ptr<VLMetric>& metric) { _metric = metric; }
    // The definition's name, title and filter; empty without a definition.
    std::optional<std::string> name() const;
    std::string title() const;
    std::shared_ptr<Predicate> filter() const;

    std::shared_ptr<VLMetricValue> copy() const { return std::make_shared<VLMetricValue>(*this); }

    // The range rule of stored positions and overshoots.
    static double sanitized(double value);

private:
    double _position = 0.0;
    double _overshoot = 0.0;
    VLFontMaster* _parent = nullptr;
    std::weak_ptr<VLMetric> _metric;
};
