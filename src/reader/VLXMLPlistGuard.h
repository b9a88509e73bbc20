#pragma once

#include <string_view>

// Whether a property list in XML form may be handed to libplist. Its reader nests as deep as the
// elements go and frees the tree recursively, so a deep file overflows the stack; and it looks
// up every key of a dictionary among the keys before it, so a dictionary of many keys takes
// quadratic time. The walk here follows the elements the way libplist reads them (comments,
// CDATA, declarations and quoted attribute values hide what looks like a tag) and refuses a file
// nested deeper than VLPlistMaximumNesting or whose dictionaries would cost more than the file's
// size allows, and markup that never ends, which libplist refuses as well.
bool xmlPlistIsSafe(std::string_view bytes);
