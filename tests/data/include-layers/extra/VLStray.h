#pragma once

#include "thumbnail/VLAnything.h"
