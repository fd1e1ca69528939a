// The colours of DXF's colour numbers.
#pragma once

#include "tools/pictures/picture.h"

// number is 1 to 255. White, which 7 is on a dark ground, is black here, as on paper.
Rgb RgbOfDxfColor(int number);
