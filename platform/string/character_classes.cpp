// Classes of single characters in Windows-1252.
#include <zpbase/platform/encoding.h>

#include <zpbase/platform/ascii.h>

namespace {

// From 0xC0 on everything but the signs for times and divided by; below that the accented letters and the ordinals and micro.
bool isHighLetter(unsigned char c)
{
  if (c >= 0xC0) return c != 0xD7 && c != 0xF7;
  switch (c) {
    case 0x83:
    case 0x8A:
    case 0x8C:
    case 0x8E:
    case 0x9A:
    case 0x9C:
    case 0x9E:
    case 0x9F:
    case 0xAA:
    case 0xB5:
    case 0xBA:
      return true;
    default:
      return false;
  }
}

bool isRaisedDigit(unsigned char c)
{
  return c == 0xB2 || c == 0xB3 || c == 0xB9;
}

}  // namespace

BOOL IsCharAlphaA(char c)
{
  return zp::IsLetter(c) || isHighLetter(static_cast<unsigned char>(c));
}

BOOL IsCharAlphaNumericA(char c)
{
  return IsCharAlphaA(c) || zp::IsDigit(c) || isRaisedDigit(static_cast<unsigned char>(c));
}
