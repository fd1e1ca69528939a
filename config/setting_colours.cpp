// The colours of labels and fields on the screen, each a setting "red, green, blue" that is read once.

#include <zpbase/config.h>

#include <string_view>

#include <zpbase/platform/ascii.h>

#include "config/cached_settings_internal.h"

namespace {

using namespace zp;

struct ColourSetting {
  char const * key;
  unsigned int whenUnset;  // 0x00BBGGRR
};

constexpr ColourSetting colours[colourCount] = {
    {"EULabels", 0x000080}, {"ReqLabels", 0x0000FF}, {"ROText", 0x800000}, {"FocusFg", 0x000080},
    {"FocusBk", 0x00FFFF},  {"UserFg", 0x0000FF},    {"UserBk", 0xFFFFFF},
};

void skipBlanks(std::string_view & text)
{
  while (!text.empty() && IsWhite(text.front())) text.remove_prefix(1);
}

// Takes an integer from the front of text, with blanks before it; its low byte is what a colour keeps.
bool takeByte(std::string_view & text, unsigned int & byte)
{
  skipBlanks(text);
  bool const negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  size_t digits = 0;
  unsigned int number = 0;
  for (; digits < text.size() && IsDigit(text[digits]); ++digits)
    number = number * 10 + static_cast<unsigned int>(text[digits] - '0');
  text.remove_prefix(digits);
  byte = (negative ? 0 - number : number) & 0xFF;
  return digits > 0;
}

bool takeComma(std::string_view & text)
{
  bool const found = text.starts_with(',');
  if (found) text.remove_prefix(1);
  return found;
}

// Leaves colour as it is for a text that doesn't begin with three numbers and two commas, each right behind its number.
void readColour(std::string_view text, unsigned int & colour)
{
  unsigned int red, green, blue;
  bool const whole = takeByte(text, red) && takeComma(text) && takeByte(text, green) && takeComma(text) && takeByte(text, blue);
  if (whole) colour = red | green << 8 | blue << 16;
}

unsigned long cachedColour(Colour which)
{
  return KeptValue(GetCachedSettings().colours[which], notRead, [which] {
    CString text;
    GetSysString(text, misc, colours[which].key, CString());
    unsigned int colour = colours[which].whenUnset;
    readColour(text.View(), colour);
    return colour;
  });
}

}  // namespace

unsigned long GetEULabelColor()
{
  return cachedColour(colourEULabel);
}

unsigned long GetRequiredLabelColor()
{
  return cachedColour(colourRequired);
}

unsigned long GetReadOnlyFgColor()
{
  return cachedColour(colourReadOnly);
}

unsigned long GetFocusFgColor()
{
  return cachedColour(colourFocus);
}

unsigned long GetFocusBkColor()
{
  return cachedColour(colourFocusBack);
}

unsigned long GetUserFgColor()
{
  return cachedColour(colourUser);
}

unsigned long GetUserBkColor()
{
  return cachedColour(colourUserBack);
}
