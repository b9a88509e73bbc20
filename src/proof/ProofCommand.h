#pragma once

// `velmor-proof [options] INPUT OUTPUT`: proofs of a font source document as PNG, SVG or PDF.
// Its exit status, as the thumbnailer's.
int runProofCommand(int argc, char** argv);
