#pragma once

// Everything libpng keeps here is in png.h.
#include "png.h"
