#pragma once

#include <map>
#include <string>

// An error object: a domain, a code and user information. Handed out through a nullable
// VLError* wherever an operation has an error slot.
struct VLError {
    // Keys of the user information.
    static constexpr const char* localizedDescriptionKey = "NSLocalizedDescription";
    static constexpr const char* localizedFailureReasonKey = "NSLocalizedFailureReason";
    static constexpr const char* localizedRecoverySuggestionKey = "NSLocalizedRecoverySuggestion";

    std::string domain;
    long code = 0;
    std::map<std::string, std::string> userInfo;

    static VLError errorWithDomain_code_userInfo(std::string domain, long code,
                                                 std::map<std::string, std::string> userInfo = {});

    // The text a person reads: the localized description when there is one, otherwise the
    // failure reason and the recovery suggestion together.
    std::string localizedDescription() const;
    // One line with domain, code and description, for logs.
    std::string description() const;
};

// Stores the error where the caller asked for it; a null slot drops it.
inline void handOut(VLError* slot, const VLError& error)
{
    if (slot) *slot = error;
}
