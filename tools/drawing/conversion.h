// A metafile becomes a whole DXF drawing.
#pragma once

#include <map>
#include <optional>
#include <string>

#include <zpbase/drawing.h>

#include "tools/drawing/drawing_output.h"
#include "tools/drawing/metafile_survey.h"

// What became of a metafile's records.
struct Conversion {
  unsigned long long records = 0;
  std::map<unsigned int, unsigned long long> skipped;  // by function
  unsigned long long skippedDrawing = 0;               // those of them that would have drawn something
  unsigned long long brokenTexts = 0;                  // held characters that end a line; blanks stand for them
  unsigned long long sizelessTexts = 0;                // left out, since their font has no height
  unsigned long long fillings = 0;                     // shapes without a pen, which only fill
  int height = 0;                                      // that y was counted from
  bool upwards = false;                                // the metafile counts y upwards, so that the drawing stands on its head
  bool whole = false;                                  // else the metafile ends inside a record
};

// Writes the drawing into out. y is counted from height, or where there is none from the lower edge of the metafile's bounds.
Conversion ConvertMetafile(HMETAFILE metafile, DrawingOutput & out, std::optional<int> height);
