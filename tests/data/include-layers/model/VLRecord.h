#pragma once

#include "geometry/VLPen.h"
#include "model/VLOther.h"
