#pragma once

#include <string>

// What `velmor-proof [options] INPUT OUTPUT` is asked to make.
struct ProofOptions {
    enum class Format { PNG, SVG, PDF };
    enum class Mode { SampleSheet, Text, All, Glyphs };

    Mode mode = Mode::SampleSheet;
    Format format = Format::PNG;
    // The text to set, its line feeds given as "\n"; empty for the sample text.
    std::string text;
    std::string master;
    std::string instance;
    // The height of a line of text, in pixels for PNG and points for SVG and PDF.
    double size = 72.0;
    std::string input;
    std::string output;
};

inline constexpr double ProofSmallestSize = 4.0;
inline constexpr double ProofLargestSize = 1000.0;

// -1 when the options are good; otherwise the exit status, with the help, the version or the
// usage text printed.
int parseProofOptions(int argc, char** argv, ProofOptions& options);
