#pragma once

#include "proof/ProofBlock.h"
#include "proof/ProofOptions.h"

// A PNG larger than this many pixels is drawn smaller, so that the overview of a large font
// stays within memory; the vector formats draw at the asked size.
inline constexpr double ProofLargestPicturePixels = 64.0 * 1024 * 1024;
inline constexpr double ProofLargestPictureSide = 32767.0;

// The share of its size at which a picture of the given pixels stays within both limits; 1 for
// one that does already.
double ProofPictureShrink(Size pixels, double largestPixels = ProofLargestPicturePixels,
                          double largestSide = ProofLargestPictureSide);

// Draws the pages at outputUnitsPerFontUnit and writes them as the options' output, whole or not
// at all; the command's exit status, with a message on standard error unless it is 0.
int writeProofPages(const ProofPages& pages, const ProofOptions& options, double outputUnitsPerFontUnit);
