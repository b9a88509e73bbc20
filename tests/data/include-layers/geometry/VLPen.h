#pragma once

#include "model/VLRecord.h"
#include "platform/Geometry.h"
