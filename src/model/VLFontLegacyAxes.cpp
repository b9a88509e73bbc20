#include "model/VLAxis.h"
#include "model/VLChildren.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"

#include <array>
#include <set>
#include <utility>

namespace {

constexpr std::array<std::pair<const char*, const char*>, 6> legacyAxisNames = {{
    {"Weight", "wght"}, {"Width", "wdth"}, {"Custom", "CUS1"},
    {"Custom2", "CUS2"}, {"Custom3", "CUS3"}, {"Custom4", "CUS4"},
}};

} // namespace

std::vector<std::shared_ptr<VLAxis>> VLFont::legacyAxes()
{
    size_t count = getAxisCountFromMasters(_fontMasters);
    std::vector<std::shared_ptr<VLAxis>> axes;
    for (size_t i = 0; i < count; ++i) {
        auto axis = VLAxis::initWithName_tag(legacyAxisNames[i].first, legacyAxisNames[i].second);
        axis->setAxisId(VLAxis::axisIdForNumber(i + 1));
        VLAddChild(axes, std::move(axis), shared_from_this());
    }
    return axes;
}

// An axis counts as used once any master leaves its neutral value: 0 for the custom axes, and
// 0 or 100 for the width, which older documents wrote as 100.
size_t VLFont::getAxisCountFromMasters(const std::vector<std::shared_ptr<VLFontMaster>>& masters)
{
    std::array<std::set<double>, 6> values;
    for (const auto& master : masters) {
        if (!master->readBuffer()) continue;
        const Value buffer(*master->readBuffer());
        const Value& interpolations = buffer["interpolations"];
        for (size_t i = 1; i < values.size() && i < interpolations.count(); ++i)
            values[i].insert(interpolations[i].doubleValue());
    }
    auto onlyValue = [&](size_t i, double value) { return values[i].size() == 1 && *values[i].begin() == value; };
    for (size_t i = values.size() - 1; i >= 2; --i)
        if (!onlyValue(i, 0.0)) return i + 1;
    return onlyValue(1, 0.0) || onlyValue(1, 100.0) ? 1 : 2;
}
