#include "platform/VLError.h"

VLError VLError::errorWithDomain_code_userInfo(std::string domain, long code,
                                               std::map<std::string, std::string> userInfo)
{
    return VLError{std::move(domain), code, std::move(userInfo)};
}

std::string VLError::localizedDescription() const
{
    auto find = [this](const char* key) {
        auto it = userInfo.find(key);
        return it == userInfo.end() ? std::string() : it->second;
    };
    std::string description = find(localizedDescriptionKey);
    if (!description.empty()) return description;
    std::string reason = find(localizedFailureReasonKey);
    std::string suggestion = find(localizedRecoverySuggestionKey);
    if (reason.empty()) return suggestion.empty() ? "The operation couldn’t be completed." : suggestion;
    return suggestion.empty() ? reason : reason + ": " + suggestion;
}

std::string VLError::description() const
{
    return "Error Domain=" + domain + " Code=" + std::to_string(code) + " \"" + localizedDescription() + "\"";
}
