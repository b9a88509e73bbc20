#pragma once

#include "platform/Geometry.h"
#include "platform/VLError.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

// What the platform asks for: a document and the largest picture it wants.
class ThumbnailRequest {
public:
    ThumbnailRequest(std::string fileURL, Size maximumSize) : _fileURL(std::move(fileURL)), _maximumSize(maximumSize) {}

    const std::string& fileURL() const { return _fileURL; }
    Size maximumSize() const { return _maximumSize; }

private:
    std::string _fileURL;
    Size _maximumSize;
};

// The answer: a context size and a block that draws into the current context of that size and
// says whether it drew anything.
class ThumbnailReply {
public:
    using DrawingBlock = std::function<bool()>;

    static std::shared_ptr<ThumbnailReply> replyWithContextSize_currentContextDrawingBlock(Size contextSize,
                                                                                          DrawingBlock block)
    {
        return std::make_shared<ThumbnailReply>(contextSize, std::move(block));
    }

    ThumbnailReply(Size contextSize, DrawingBlock block) : _contextSize(contextSize), _block(std::move(block)) {}

    Size contextSize() const { return _contextSize; }
    // The part of the context, from its bottom-left corner, that the picture can cover.
    Size coveredSize() const { return _coveredSize; }
    void setCoveredSize(Size size) { _coveredSize = size; }
    bool draw() const { return _block(); }

private:
    Size _contextSize;
    Size _coveredSize;
    DrawingBlock _block;
};

// Called exactly once per request, with a reply or an error.
using ThumbnailCompletionHandler =
    std::function<void(std::shared_ptr<ThumbnailReply> reply, std::optional<VLError> error)>;
