#pragma once

#include <string>

// A new random (version 4) UUID in upper-case text form, e.g. "E621E1F8-C36C-495A-93FC-0C247A3E6E5F".
std::string newUUIDString();
