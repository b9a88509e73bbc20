#include "FuzzSupport.h"

#include "model/VLFontMaster.h"
#include "model/VLLayer.h"
#include "platform/BezierPath.h"
#include "platform/GraphicsContext.h"
#include "thumbnail/ThumbnailCommand.h"

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
