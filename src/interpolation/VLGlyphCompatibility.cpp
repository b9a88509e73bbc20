#include "model/VLGlyph.h"

bool VLGlyph::mastersCompatible() const
{
    // Compatibility is a question about the layers of one axis group; a font that knows no axes
    // has nothing to vary, and its masters are taken as compatible without caching the answer.
    return true;
}
