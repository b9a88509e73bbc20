#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLMetric.h"
#include "model/VLMetricValue.h"
#include "platform/UUID.h"

namespace {

void adopt(VLFont& font, VLMetric& metric)
{
    metric.setFont(font.shared_from_this());
    if (metric.id().empty()) metric.setId(newUUIDString());
}

std::shared_ptr<VLMetric> firstWhere(const VLFont::Metrics& list, auto&& predicate)
{
    for (const auto& metric : list)
        if (predicate(*metric)) return metric;
    return nullptr;
}

} // namespace

void VLFont::setMetrics(Metrics metrics)
{
    _metrics = std::move(metrics);
    for (const auto& metric : _metrics) adopt(*this, *metric);
}

void VLFont::setStems(Metrics stems)
{
    _stems = std::move(stems);
    for (const auto& metric : _stems) adopt(*this, *metric);
}

void VLFont::addStem(const std::shared_ptr<VLMetric>& stem)
{
    if (!stem) return;
    adopt(*this, *stem);
    _stems.push_back(stem);
}

void VLFont::setNumbers(Metrics numbers)
{
    _numbers = std::move(numbers);
    for (const auto& metric : _numbers) adopt(*this, *metric);
}

void VLFont::addMetric(const std::shared_ptr<VLMetric>& metric)
{
    if (!metric) return;
    adopt(*this, *metric);
    _metrics.push_back(metric);
    for (const auto& master : _fontMasters)
        if (!master->metricValueForId(metric->id()))
            master->setMetricValue_forId_notify(VLMetricValue::initWithPosition(0), metric->id(), false);
}

std::shared_ptr<VLMetric> VLFont::objectInMetricsWithName(const std::string& name) const
{
    if (auto plain = firstWhere(_metrics, [&](const VLMetric& m) { return m.name() == name && !m.filter(); }))
        return plain;
    return firstWhere(_metrics, [&](const VLMetric& m) { return m.name() == name; });
}

std::shared_ptr<VLMetric> VLFont::objectInMetricsWithType_withName_filter(uint8_t type,
                                                                          const std::optional<std::string>& name,
                                                                          const std::optional<std::string>& filter) const
{
    auto sameKind = [&](const VLMetric& m) { return m.type() == type && m.name() == name; };
    if (auto exact = firstWhere(_metrics, [&](const VLMetric& m) { return sameKind(m) && m.filterString() == filter; }))
        return exact;
    if (filter) return nullptr;
    return firstWhere(_metrics, sameKind);
}

std::shared_ptr<VLMetric> VLFont::stemForId(const std::string& metricId) const
{
    return firstWhere(_stems, [&](const VLMetric& m) { return m.id() == metricId; });
}

std::shared_ptr<VLMetric> VLFont::stemForName(const std::string& name) const
{
    return firstWhere(_stems, [&](const VLMetric& m) { return m.name() == name; });
}

std::shared_ptr<VLMetric> VLFont::numberForId(const std::string& metricId) const
{
    return firstWhere(_numbers, [&](const VLMetric& m) { return m.id() == metricId; });
}

std::shared_ptr<VLMetric> VLFont::numberForName(const std::string& name) const
{
    return firstWhere(_numbers, [&](const VLMetric& m) { return m.name() == name; });
}
