// Why a cell is no number, where its look tells, and what can be done about it.
#pragma once

#include <string_view>

enum class Hint {
  None,
  DecimalComma,
  DigitGroups,
  PointInsteadOfComma,
  Comment,
  OtherDelimiter,
  MixedDelimiters,
  NotFinite,
  TooLarge,
  Hexadecimal,
  Date,
  RunTogether,
  Overflowed,
  Count
};

// cell is what can't be read as a number.
Hint HintFor(std::string_view cell, bool decimalComma);

std::string_view TextOf(Hint hint);
