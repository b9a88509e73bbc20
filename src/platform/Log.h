#pragma once

#include <string>

// The system log: one plain line, no levels. On Linux it is standard error.
void VLLog(const std::string& line);
