#include "thumbnail/ThumbnailProvider.h"

#include "model/VLFont.h"
#include "platform/AffineTransform.h"
#include "platform/Log.h"
#include "platform/VLException.h"
#include "reader/VLMappedFileGuard.h"
#include "thumbnail/VLFontLoader.h"

#include <algorithm>
#include <cmath>

namespace {

VLError replyError(long code, std::map<std::string, std::string> userInfo = {})
{
    return VLError::errorWithDomain_code_userInfo(ThumbnailProvider::replyErrorDomain, code, std::move(userInfo));
}

// The picture keeps its aspect and stands in the context's corner; it is not centred.
double scaleToFit(Size canvas, Size maximumSize)
{
    return std::min(maximumSize.width / canvas.width, maximumSize.height / canvas.height);
}

} // namespace

// The answer is made inside the guard and handed over after it, so that an exception raised
// by the handler itself, the drawing of a command for one, never calls it a second time.
void ThumbnailProvider::provideThumbnailForFileRequest_completionHandler(const ThumbnailRequest& request,
                                                                        const ThumbnailCompletionHandler& handler) const
{
    std::shared_ptr<ThumbnailReply> reply;
    std::optional<VLError> error;
    try {
        reply = replyForRequest(request, error);
    } catch (const VLException& exception) {
        VLLog("__exception " + exception.description());
        error = replyError(errorCodeUnreadable, {{VLError::localizedDescriptionKey, exception.reason()}});
    }
    handler(std::move(reply), std::move(error));
}

std::shared_ptr<ThumbnailReply> ThumbnailProvider::replyForRequest(const ThumbnailRequest& request,
                                                                   std::optional<VLError>& error) const
{
    // A document cut while it is read shows zeros where its end was; it is not to be drawn.
    uint64_t cuts = countOfCutMappedFiles();
    auto loader = std::make_shared<VLFontLoader>();
    if (!loader->importFontFromURL(request.fileURL()) || loader->font()->countOfGlyphs() == 0) {
        error = replyError(errorCodeUnreadable);
        return nullptr;
    }
    Size canvas = loader->layoutThumbnail();
    if (countOfCutMappedFiles() != cuts) {
        VLLog("The document changed while it was read: " + request.fileURL());
        error = replyError(errorCodeUnreadable);
        return nullptr;
    }
    if (!(canvas.width > VLFontLoader::narrowestAcceptedCanvas) || !std::isfinite(canvas.width) ||
        !std::isfinite(canvas.height)) {
        error = replyError(errorCodeNothingToShow);
        return nullptr;
    }
    // The block keeps the loader, and with it the mapped document, until it has run.
    Size maximumSize = request.maximumSize();
    auto block = [loader, maximumSize, canvas] {
        AffineTransform transform = AffineTransform::transform();
        transform.scaleBy(scaleToFit(canvas, maximumSize));
        transform.concat();
        return loader->drawThumbnail();
    };
    auto reply = ThumbnailReply::replyWithContextSize_currentContextDrawingBlock(maximumSize, block);
    double scale = scaleToFit(canvas, maximumSize);
    reply->setCoveredSize({scale * canvas.width, scale * canvas.height});
    return reply;
}
