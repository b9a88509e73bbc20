#include "proof/ProofStyles.h"

#include "interpolation/VLMasterFactors.h"
#include "model/VLAxis.h"
#include "model/VLFont.h"
#include "model/VLInstance.h"

std::optional<VLTextStyle> ProofInstanceStyle(VLFont& font, const VLInstance& instance)
{
    std::vector<double> location;
    for (const auto& axis : font.axes()) location.push_back(instance.axisValueValueForId(axis->axisId()));
    auto factors = VLMasterFactorsAtLocation(font, location);
    if (!factors || factors->empty()) return std::nullopt;
    return VLTextStyle(font, std::move(*factors));
}
