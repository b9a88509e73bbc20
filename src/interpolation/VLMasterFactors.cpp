#include "interpolation/VLMasterFactors.h"

#include "model/VLFont.h"
#include "model/VLInstance.h"

std::optional<VLFactors> VLMasterFactorsAtLocation(VLFont& font, const std::vector<double>& location)
{
    auto instance = VLInstance::initWithFont_axesValuesList(font, location);
    if (!instance) return std::nullopt;
    return instance->instanceInterpolations();
}
