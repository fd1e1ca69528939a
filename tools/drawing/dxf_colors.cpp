// The wheel of DXF's colour numbers: nine plain colours, 24 hues in five shades and two strengths, six greys.

#include "tools/drawing/dxf_colors.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr std::array<Rgb, 10> plain = {0x000000, 0xFF0000, 0xFFFF00, 0x00FF00, 0x00FFFF,
                                       0x0000FF, 0xFF00FF, 0x000000, 0x808080, 0xC0C0C0};
constexpr std::array<Rgb, 6> greys = {0x333333, 0x505050, 0x696969, 0x828282, 0xBEBEBE, 0xDCDCDC};
constexpr std::array<double, 5> shades = {1.0, 0.65, 0.5, 0.3, 0.15};
constexpr int firstHue = 10;
constexpr int firstGrey = 250;

// How much of a primary colour whose middle lies at this place of the circle, in sixths, a hue has.
double shareOf(double sixth, double middle)
{
  double distance = std::abs(sixth - middle);
  distance = std::min(distance, 6 - distance);
  return std::clamp(2 - distance, 0.0, 1.0);
}

}  // namespace

Rgb RgbOfDxfColor(int number)
{
  if (number < 0 || number > 255) return plain[0];
  if (number < firstHue) return plain[static_cast<size_t>(number)];
  if (number >= firstGrey) return greys[static_cast<size_t>(number - firstGrey)];
  int const hue = number / 10 - 1;  // of 24
  double const sixth = hue * 0.25;
  double const shade = shades[static_cast<size_t>(number % 10 / 2)];
  double const least = number % 2 == 0 ? 0.0 : 0.5;
  Rgb color = 0;
  for (double const middle : {0.0, 2.0, 4.0}) {
    double const share = least + (1 - least) * shareOf(sixth, middle);
    color = color << 8 | static_cast<Rgb>(std::lround(255 * shade * share));
  }
  return color;
}
