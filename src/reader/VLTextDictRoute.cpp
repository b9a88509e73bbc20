#include "model/VLFont.h"
#include "platform/Log.h"
#include "platform/VLError.h"
#include "platform/VLException.h"
#include "reader/VLPlistParseInfo.h"
#include "reader/VLPlistParser.h"

namespace {

// The whole text as one tree; nothing when it is not a well-formed dictionary.
Value parseTextDocument(const std::string& path)
{
    VLPlistParseInfo info;
    if (!openPlistParseInfo(path.c_str(), &info)) return Value();
    Value root = parsePlistValue(&info, true);
    closePlistParseInfo(&info);
    return root.isDictionary() ? root : Value();
}

} // namespace

// Documents written by other tools hold keys that the streaming readers do not list, and those
// fail a record and with it the font. When the text itself is well formed, the dictionary route
// reads it, as it reads property lists of the other forms: it takes every key it knows and passes
// over the others. A document whose text is broken gets no second chance.
std::shared_ptr<VLFont> VLFont::initWithTextThroughDictAtPath_streamError(const std::string& path,
                                                                         const VLError& streamError)
{
    Value root = parseTextDocument(path);
    if (root.isNull()) return nullptr;
    std::shared_ptr<VLFont> font;
    try {
        font = initWithDict_error(root, nullptr);
    } catch (const VLException&) {
        return nullptr;
    }
    if (!font) return nullptr;
    font->setTempData_forKey(Value(path), "filePath");
    std::string reason = streamError.domain.empty() ? "a key that it does not know" : streamError.description();
    VLLog("Read " + path + " through the dictionary route, since the streaming reader refused it: " + reason);
    return font;
}
