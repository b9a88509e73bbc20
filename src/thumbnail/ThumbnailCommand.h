#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The command a file browser runs, `velmor-thumbnailer [-s SIZE] [--full-context] INPUT OUTPUT`,
// apart from its entry point, so that the tests and the fuzzers reach its own arithmetic.
struct ThumbnailCommandOptions {
    long size = 256;
    bool fullContext = false;
    std::string input;
    std::string output;
};

inline constexpr int ThumbnailCommandExitUnreadable = 1;
inline constexpr int ThumbnailCommandExitNothingDrawn = 2;
inline constexpr int ThumbnailCommandExitUsage = 64;
inline constexpr int ThumbnailCommandExitCannotWrite = 74;
inline constexpr long ThumbnailCommandLargestSize = 4096;

// -1 when the options are good; otherwise the exit status, the help, version or usage text
// printed.
int parseThumbnailCommandOptions(int argc, char** argv, ThumbnailCommandOptions& options);

// Draws INPUT and encodes the PNG the command writes; the exit status, with a message on standard
// error unless it is 0.
int renderThumbnailCommand(const ThumbnailCommandOptions& options, std::vector<uint8_t>& png);

// The whole command; its exit status.
int runThumbnailCommand(int argc, char** argv);
