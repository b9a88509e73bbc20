#include "FuzzSupport.h"

#include "model/VLFontMaster.h"
#include "model/VLLayer.h"
#include "platform/BezierPath.h"
#include "platform/GraphicsContext.h"
#include "thumbnail/ThumbnailCommand.h"
#include "thumbnail/VLFontLoader.h"

namespace {

constexpr int side = 64;
// Layers are drawn as if the em were the usual 1000 units, whatever the document says.
constexpr double em = 1000;

// Filled as the thumbnail fills: an outline too costly for the rasterizer is left out, as the
// command leaves it out, so that a run's time goes to our code.
void fillBounded(const BezierPath& path)
{
    auto* context = GraphicsContext::current();
    if (context && VLFontLoader::fillCost(path, context->userToDeviceTransform()) <= VLFontLoader::maximumFillCost) path.fill();
}

// The mean of the masters, with the glyph's colour and brace layers interpolated alongside.
void drawMean(VLGlyph& glyph, const VLFactors& mean, const VLFont& font)
{
    glyph.mastersCompatible();
    std::vector<std::shared_ptr<VLLayer>> layers;
    auto layer = glyph._interpolate_masters_layerName_additionalLayers_error(mean, font.fontMasters(), std::nullopt,
                                                                           &layers, nullptr);
    layers.push_back(layer);
    for (const auto& drawn : layers)
        if (drawn) fillBounded(*drawn->drawBezierPath());
}

// Every master's layer of every glyph and their mean, filled at the size of a small thumbnail.
void drawEveryLayer(VLFont& font)
{
    GraphicsContext context(side, side);
    GraphicsContext::Current current(context);
    AffineTransform scale = AffineTransform::transform();
    scale.scaleBy(side / em);
    scale.concat();
    VLFactors mean;
    for (const auto& master : font.fontMasters())
        mean.setObject_forKey(VLFactor(1.0 / static_cast<double>(font.fontMasters().size())), master->id());
    for (const auto& glyph : font.glyphs()) {
        for (const auto& master : font.fontMasters())
            if (auto layer = glyph->layerForId(master->id())) fillBounded(*layer->drawBezierPath());
        drawMean(*glyph, mean, font);
    }
}

} // namespace

// Every layer drawn, then the command's own route: the request, the layout, the drawing at a size
// taken from the last byte, and the PNG.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    auto font = readWholeDocument(data, size);
    if (!font || font->countOfGlyphs() == 0) return 0;
    try {
        drawEveryLayer(*font);
    } catch (const VLException&) {
    }
    FuzzDocument document(data, size);
    ThumbnailCommandOptions options;
    options.input = document.path();
    options.size = 1 + data[size - 1] % side;
    options.fullContext = data[0] & 1;
    std::vector<uint8_t> png;
    renderThumbnailCommand(options, png);
    return 0;
}
