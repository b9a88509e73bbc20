#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLInstance.h"
#include "model/VLLayer.h"

std::shared_ptr<VLInstance> VLInstance::initWithFont_axesValuesList(VLFont& font, const std::vector<double>& location)
{
    auto instance = init();
    instance->_font = &font;
    instance->_axesValues = VLFont::axesValuesFromAxes_axesValuesList(font.axes(), location);
    auto factors = instance->instanceInterpolations_axes(font.fontMasters(), font.axes());
    if (!factors || factors->empty()) return nullptr;
    // Worked out for this place once, so that the glyphs drawn there don't ask again.
    instance->_manualInterpolation = true;
    instance->_instanceInterpolations = std::move(*factors);
    return instance;
}

std::optional<VLFactors> VLInstance::instanceInterpolationsInFont(VLFont& font)
{
    auto factors = _manualInterpolation ? std::optional(_instanceInterpolations)
                                        : instanceInterpolations_axes(font.fontMasters(), font.axes());
    if (!factors || factors->empty()) return std::nullopt;
    return factors;
}

std::shared_ptr<VLLayer> VLGlyph::layerForInstance_error(VLInstance& instance, VLError* error)
{
    auto font = parent();
    auto factors = font ? instance.instanceInterpolationsInFont(*font) : std::nullopt;
    return factors ? interpolate_error(*factors, error) : nullptr;
}
