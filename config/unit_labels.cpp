// The short labels of the classes of engineering units by their numbers, and the numeric reference constants.

#include <zpbase/config.h>

#include <cmath>
#include <iterator>
#include <limits>

namespace {

constexpr char const * labels[] = {
    "MOLE",   "TEMP", "DELTAT", "PRES",   "DELTAP",  "QRATE", "WORK",   "AREA",   "HTC",    "HREAC",   "LEN",
    "DIA",    "LDEN", "VISC",   "ST",     "MASS",    "CRUDE", "CAKE",   "SOL",    "SVOL",   "DMOMENT", "VDEN",
    "VOL",    "VEL",  "MRES",   "PACKDP", "WHEAT",   "TCOND", "LVRATE", "VVRATE", "WTMOLE", "WTMASS",  "HEAT",
    "MOLEHC", "SPHC", "MHEAT",  "FOULF",  "HEATCAP", "ILV",   "TIME",   "MONEY",  "MPVOL",  "THICK",   "DIFF",
};

constexpr double kelvinAtZeroC = 273.15;   // K
constexpr double rankineAtZeroF = 459.67;  // R

}  // namespace

char const * GetEULabel(int index)
{
  return index >= 0 && index < GetEULabelCount() ? labels[index] : nullptr;
}

int GetEULabelCount()
{
  return static_cast<int>(std::size(labels));
}

double GetSqrtSingleEpsilon()
{
  return std::sqrt(std::numeric_limits<float>::epsilon());
}

double GetSqrtDoubleEpsilon()
{
  return std::sqrt(std::numeric_limits<double>::epsilon());
}

double GetKelvinAt0C()
{
  return kelvinAtZeroC;
}

double GetKelvinAt25C()
{
  return kelvinAtZeroC + 25;
}

double GetKelvinAt100C()
{
  return kelvinAtZeroC + 100;
}

double GetRankineAt32F()
{
  return rankineAtZeroF + 32;
}

double GetRankineAt60F()
{
  return rankineAtZeroF + 60;
}

double GetRankineAt212F()
{
  return rankineAtZeroF + 212;
}
