#pragma once

#include "platform/Geometry.h"

#include <functional>
#include <string>
#include <vector>

// A part of a proof: a drawing in font units, under a label when it has one.
struct ProofBlock {
    std::string label;
    Size size;
    // Draws into the current context, in font units from the bottom-left corner of the block;
    // outputUnitsPerFontUnit says how large that comes out. Whether anything was drawn.
    std::function<bool(double outputUnitsPerFontUnit)> draw;
};

// Blocks stacked from the top; a PDF puts each page on a page of its own, the other formats one
// page under the other.
using ProofPage = std::vector<ProofBlock>;
using ProofPages = std::vector<ProofPage>;

// Shows the text in the current context, any bytes that are no UTF-8 shown as replacement
// characters: names come from documents.
void ProofShowText(const std::string& text, Point baselineStart, double pointSize);
