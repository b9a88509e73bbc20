#pragma once

#include "thumbnail/ThumbnailRequest.h"

// The entry object of the thumbnail service: one request, one loader, one answer.
class ThumbnailProvider {
public:
    // Domain of the errors handed to the completion handler.
    static constexpr const char* replyErrorDomain = "org.velmor.thumbnailer.reply";
    // Nothing to read (or an exception, then with a description).
    static constexpr long errorCodeUnreadable = 1;
    // Nothing to show.
    static constexpr long errorCodeNothingToShow = 2;

    void provideThumbnailForFileRequest_completionHandler(const ThumbnailRequest& request,
                                                         const ThumbnailCompletionHandler& handler) const;

private:
    // The reply, or null with the error set.
    std::shared_ptr<ThumbnailReply> replyForRequest(const ThumbnailRequest& request, std::optional<VLError>& error) const;
};
