#include "proof/ProofStyles.h"

#include "model/VLFont.h"
#include "model/VLInstance.h"

std::optional<VLTextStyle> ProofInstanceStyle(VLFont& font, VLInstance& instance)
{
    auto factors = instance.instanceInterpolationsInFont(font);
    if (!factors) return std::nullopt;
    return VLTextStyle(font, std::move(*factors));
}
