// Proofs of a font source document: the sample sheet, a text, every master and instance, or every
// glyph, as PNG, SVG or PDF.
//   velmor-proof [options] INPUT OUTPUT

#include "proof/ProofCommand.h"

int main(int argc, char** argv)
{
    return runProofCommand(argc, argv);
}
