// What stands before the entities of a DXF drawing and after them, in the oldest dialect that all readers take.
#pragma once

#include <string>

// The part of the drawing that is looked at, in drawing units, y upwards.
struct DxfExtent {
  int left;
  int bottom;
  int right;
  int top;
};

// Ends where the first entity starts. Defines the layer and the line types that entities name.
std::string DxfHead(DxfExtent const & extent);
std::string DxfTail();
