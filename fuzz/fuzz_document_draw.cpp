#include "FuzzSupport.h"

#include "model/VLFontMaster.h"
#include "model/VLLayer.h"
#include "platform/GraphicsContext.h"
#include "thumbnail/VLFontLoader.h"

namespace {

void drawEveryLayer(VLFont& font)
{
    for (const auto& glyph : font.glyphs())
        for (const auto& master : font.fontMasters())
            if (auto layer = glyph->layerForId(master->id())) layer->drawBezierPath();
}

// The service's route: layout, then drawing into a small context.
void drawThumbnail(std::shared_ptr<VLFont> font)
{
    VLFontLoader loader;
    loader.setFont(std::move(font));
    try {
        if (loader.layoutThumbnail().width <= VLFontLoader::narrowestAcceptedCanvas) return;
        GraphicsContext context(64, 64);
        GraphicsContext::Current current(context);
        AffineTransform transform = AffineTransform::transform();
        transform.scaleBy(64 / loader.canvasSize().width);
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
