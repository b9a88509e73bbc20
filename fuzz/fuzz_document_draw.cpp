#include "FuzzSupport.h"

#include "model/VLFontMaster.h"
#include "model/VLLayer.h"
#include "platform/BezierPath.h"
#include "platform/GraphicsContext.h"
#include "thumbnail/VLFontLoader.h"

namespace {

constexpr int side = 64;
// Layers are drawn as if the em were the usual 1000 units, whatever the document says.
constexpr double em = 1000;

// Every master's layer of every glyph, filled at the size of a small thumbnail.
void drawEveryLayer(VLFont& font)
{
    GraphicsContext context(side, side);
    GraphicsContext::Current current(context);
    AffineTransform scale = AffineTransform::transform();
    scale.scaleBy(side / em);
    scale.concat();
    for (const auto& glyph : font.glyphs())
        for (const auto& master : font.fontMasters())
            if (auto layer = glyph->layerForId(master->id())) layer->drawBezierPath()->fill();
}

// The service's route: layout, then drawing into a small context.
void drawThumbnail(std::shared_ptr<VLFont> font)
{
    VLFontLoader loader;
    loader.setFont(std::move(font));
    try {
        if (loader.layoutThumbnail().width <= VLFontLoader::narrowestAcceptedCanvas) return;
        GraphicsContext context(side, side);
        GraphicsContext::Current current(context);
        AffineTransform transform = AffineTransform::transform();
        transform.scaleBy(side / loader.canvasSize().width);
        transform.concat();
        loader.drawThumbnail();
    } catch (const VLException&) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    auto font = readWholeDocument(data, size);
    if (!font || font->countOfGlyphs() == 0) return 0;
    try {
        drawEveryLayer(*font);
    } catch (const VLException&) {
    }
    drawThumbnail(std::move(font));
    return 0;
}
