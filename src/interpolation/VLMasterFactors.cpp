#include "interpolation/VLMasterFactors.h"

#include "interpolation/coefficients.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"

namespace {

// Past this many axes the solver looks at fewer candidate sets of masters.
constexpr size_t axesForFewerCandidates = 9;

} // namespace

std::optional<VLFactors> VLMasterFactorsAtLocation(const VLFont& font, const std::vector<double>& location)
{
    const auto& masters = font.fontMasters();
    MasterPositions positions;
    for (const auto& master : masters) positions.push_back(master->axesValuesList());
    auto coefficients = anyCoeffs(positions, location, location.size() > axesForFewerCandidates);
    if (coefficients.size() != masters.size()) return std::nullopt;
    VLFactors factors;
    for (size_t i = 0; i < masters.size(); ++i) {
        VLFactor factor(coefficients[i]);
        if (!factor.isNegligible()) factors.setObject_forKey(factor, masters[i]->id());
    }
    return factors;
}
