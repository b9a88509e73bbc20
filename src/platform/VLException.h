#pragma once

#include <stdexcept>
#include <string>

// An exception of the platform's object kind, with a name and a reason. Only the thumbnail
// service catches these, around a request as a whole.
class VLException : public std::runtime_error {
public:
    VLException(std::string name, std::string reason)
        : std::runtime_error(reason), _name(std::move(name)), _reason(std::move(reason))
    {
    }

    const std::string& name() const { return _name; }
    const std::string& reason() const { return _reason; }
    std::string description() const { return _name + ": " + _reason; }

    // The exception of abstract operations: "VLNotImplemented" with "%i %s".
    [[noreturn]] static void raiseNotImplemented(int line, const char* method);

private:
    std::string _name;
    std::string _reason;
};
