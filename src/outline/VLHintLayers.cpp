#include "model/VLLayer.h"
#include "outline/VLHint.h"

#include <algorithm>

std::map<VLHintType, std::vector<std::shared_ptr<VLHint>>>
VLHint::_sortedHints(const std::vector<std::shared_ptr<VLHint>>& hints)
{
    std::map<VLHintType, std::vector<std::shared_ptr<VLHint>>> groups;
    for (const auto& hint : hints)
        if (!hint->isCorner() || !hint->originIndex().empty()) groups[hint->type()].push_back(hint);
    for (auto& [type, group] : groups)
        std::stable_sort(group.begin(), group.end(), [](const auto& a, const auto& b) { return a->compare(*b) < 0; });
    return groups;
}

void VLHint::transferHintsFromLayer_to(const VLLayer& source, VLLayer& target)
{
    const auto& present = target.hints();
    auto has = [&](bool (VLHint::*kind)() const) {
        return std::any_of(present.begin(), present.end(), [&](const auto& hint) { return (*hint.*kind)(); });
    };
    bool hasPostScript = has(&VLHint::isPostScript);
    bool hasTrueType = has(&VLHint::isTrueType);
    bool hasCorner = has(&VLHint::isCorner);
    for (const auto& hint : source.hints()) {
        if ((hint->isPostScript() && !hasPostScript) || (hint->isTrueType() && !hasTrueType))
            target.addHint(hint->copyHint());
        else if (hint->isCorner() && !hasCorner)
            target.addHintCheck(hint->copyHint());
    }
}
