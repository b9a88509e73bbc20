#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLMetric.h"
#include "model/VLMetricValue.h"
#include "platform/UUID.h"

#include <algorithm>
#include <utility>

namespace {

void adopt(VLFont& font, VLMetric& metric)
{
    metric.setFont(font.shared_from_this());
    if (metric.id().empty()) metric.setId(newUUIDString());
}

void append(VLFont& font, VLFont::Metrics& list, const std::shared_ptr<VLMetric>& metric)
{
    if (!metric) return;
    adopt(font, *metric);
    list.push_back(metric);
}

void insertAt(VLFont& font, VLFont::Metrics& list, const std::shared_ptr<VLMetric>& metric, size_t index)
{
    if (!metric) return;
    adopt(font, *metric);
    list.insert(list.begin() + static_cast<std::ptrdiff_t>(std::min(index, list.size())), metric);
}

std::shared_ptr<VLMetric> objectAt(const VLFont::Metrics& list, size_t index)
{
    return index < list.size() ? list[index] : nullptr;
}

void removeAt(VLFont::Metrics& list, size_t index)
{
    if (index < list.size()) list.erase(list.begin() + static_cast<std::ptrdiff_t>(index));
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

void VLFont::setNumbers(Metrics numbers)
{
    _numbers = std::move(numbers);
    for (const auto& metric : _numbers) adopt(*this, *metric);
}

void VLFont::addMetric(const std::shared_ptr<VLMetric>& metric)
{
    append(*this, _metrics, metric);
    if (!metric) return;
    for (const auto& master : _fontMasters)
        if (!master->metricValueForId(metric->id()))
            master->setMetricValue_forId_notify(VLMetricValue::initWithPosition(0), metric->id(), false);
}

void VLFont::addStem(const std::shared_ptr<VLMetric>& stem)
{
    append(*this, _stems, stem);
}

void VLFont::addNumber(const std::shared_ptr<VLMetric>& number)
{
    append(*this, _numbers, number);
}

std::shared_ptr<VLMetric> VLFont::objectInMetricsAtIndex(size_t index) const
{
    return objectAt(_metrics, index);
}

void VLFont::insertObject_inMetricsAtIndex(const std::shared_ptr<VLMetric>& metric, size_t index)
{
    insertAt(*this, _metrics, metric, index);
}

void VLFont::removeObjectFromMetrics(const std::shared_ptr<VLMetric>& metric)
{
    std::erase(_metrics, metric);
}

void VLFont::removeObjectFromMetricsAtIndex(size_t index)
{
    removeAt(_metrics, index);
}

std::shared_ptr<VLMetric> VLFont::objectInStemsAtIndex(size_t index) const
{
    return objectAt(_stems, index);
}

void VLFont::insertObject_inStemsAtIndex(const std::shared_ptr<VLMetric>& stem, size_t index)
{
    insertAt(*this, _stems, stem, index);
}

void VLFont::removeObjectFromStems(const std::shared_ptr<VLMetric>& stem)
{
    std::erase(_stems, stem);
}

void VLFont::removeObjectFromStemsAtIndex(size_t index)
{
    removeAt(_stems, index);
}

std::shared_ptr<VLMetric> VLFont::objectInNumbersAtIndex(size_t index) const
{
    return objectAt(_numbers, index);
}

void VLFont::insertObject_inNumbersAtIndex(const std::shared_ptr<VLMetric>& number, size_t index)
{
    insertAt(*this, _numbers, number, index);
}

void VLFont::removeObjectFromNumbers(const std::shared_ptr<VLMetric>& number)
{
    std::erase(_numbers, number);
}

void VLFont::removeObjectFromNumbersAtIndex(size_t index)
{
    removeAt(_numbers, index);
}

std::shared_ptr<VLMetric> VLFont::objectInMetricsWithName(const std::string& name) const
{
    if (auto plain = firstWhere(_metrics, [&](const VLMetric& m) { return m.name() == name && !m.filter(); }))
        return plain;
    return firstWhere(_metrics, [&](const VLMetric& m) { return m.name() == name; });
}

std::shared_ptr<VLMetric> VLFont::objectInMetricsWithType_withName(uint8_t type,
                                                                   const std::optional<std::string>& name) const
{
    return objectInMetricsWithType_withName_filter(type, name, std::nullopt);
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

void VLFont::sortMetrics()
{
    auto master = fontMasterAtIndex(0);
    auto key = [&](const std::shared_ptr<VLMetric>& metric) {
        return std::pair(metric->filter() != nullptr, master ? master->metricPositionForId(metric->id()) : 0.0);
    };
    std::stable_sort(_metrics.begin(), _metrics.end(), [&](const auto& a, const auto& b) { return key(a) < key(b); });
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
