#pragma once

#include "outline/VLAnchor.h"

#include <string>

// The anchor's "orientation" as the document names it; other names leave it on the left.
inline void setAnchorOrientationName(VLAnchor& anchor, const std::string& name)
{
    if (name == "right") anchor.setOrientation(VLAnchor::OrientationRight);
    if (name == "center") anchor.setOrientation(VLAnchor::OrientationCenter);
}
