// The floating-point special values, by their bits.

#include <zpbase/numeric.h>

#include <bit>
#include <cstdint>

float FLT_POSINF()
{
  return std::bit_cast<float>(std::uint32_t{0x7F800000});
}
float FLT_NEGINF()
{
  return std::bit_cast<float>(std::uint32_t{0xFF800000});
}
float FLT_POSNAN()
{
  return std::bit_cast<float>(std::uint32_t{0x7F800001});
}
float FLT_NEGNAN()
{
  return std::bit_cast<float>(std::uint32_t{0xFF800001});
}

double DBL_POSINF()
{
  return std::bit_cast<double>(std::uint64_t{0x7FF0000000000000});
}
double DBL_NEGINF()
{
  return std::bit_cast<double>(std::uint64_t{0xFFF0000000000000});
}
double DBL_POSNAN()
{
  return std::bit_cast<double>(std::uint64_t{0x7FF0000000000001});
}
double DBL_NEGNAN()
{
  return std::bit_cast<double>(std::uint64_t{0xFFF0000000000001});
}
