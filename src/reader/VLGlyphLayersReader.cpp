#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "reader/VLPlistRecords.h"

bool VLGlyph::readLayersFormat(uint8_t format)
{
    if (!_fileStart) return _glyphDict.isNull() || readLayersFromDictFormat(format);
    // The text of a glyph of a text document belongs to the font, which must still be there.
    auto font = parent();
    if (_pInfo != _pInfoStore.get() && !font) return false;
    VLPlistParseInfo* info = _pInfo;
    info->recordsLeft = font ? font->outlineRecordsLeft() : nullptr;
    info->curr = _fileStart;
    info->error.reset();
    info->inQuotedString = false;
    auto layers = readPlistObjects<VLLayer>(info, format);
    if (!layers) return false;
    _fileStart = nullptr;
    _layers = Layers();
    for (const auto& layer : *layers) {
        if (layer->layerId().empty()) continue;
        layer->setParent(shared_from_this());
        _layers.setObject_forKey(layer, layer->layerId());
        layer->postRead_format(nullptr, format);
    }
    return true;
}
