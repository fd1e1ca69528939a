// The table of forms.

#include "tools/curves/equation_forms.h"

#include <algorithm>
#include <cmath>

namespace {

double polynomial(double x, double const * c, int count)
{
  double sum = 0;
  for (int i = count - 1; i >= 0; --i) sum = sum * x + c[i];
  return sum;
}

template <int count>
double powers(double t, double, double const * c)
{
  return polynomial(t, c, count);
}

template <int count>
double expOfPowers(double t, double, double const * c)
{
  return std::exp(polynomial(t, c, count));
}

double square(double x)
{
  return x * x;
}

// x / sinh(x) and x / cosh(x), of which the first is 1 at 0.
double overSinh(double x)
{
  return x == 0 ? 1 : x / std::sinh(x);
}

double overCosh(double x)
{
  return x / std::cosh(x);
}

double reduced(double t, double critical, double const * c)
{
  double const tr = t / critical;
  return c[0] * std::pow(1 - tr, polynomial(tr, c + 1, 4));
}

// The heat capacity of saturated liquids, which grows without bounds towards the critical point.
double saturatedHeatCapacity(double temperature, double critical, double const * c)
{
  double const t = 1 - temperature / critical;
  double const cubic[] = {c[1], -2 * c[0] * c[2], -c[0] * c[3], -square(c[2]) / 3, -c[2] * c[3] / 2, -square(c[3]) / 5};
  return square(c[0]) / t + polynomial(t, cubic, 6);
}

double rootsOfDistance(double temperature, double critical, double const * c)
{
  double const t = 1 - temperature / critical;
  return c[0] + c[1] * std::pow(t, 0.35) + c[2] * std::pow(t, 2.0 / 3) + c[3] * t + c[4] * std::pow(t, 4.0 / 3);
}

constexpr EquationForm forms[] = {
    {1, "A", false, powers<1>},
    {2, "A + B T", false, powers<2>},
    {3, "A + B T + C T^2", false, powers<3>},
    {4, "A + B T + C T^2 + D T^3", false, powers<4>},
    {5, "A + B T + C T^2 + D T^3 + E T^4", false, powers<5>},
    {10, "exp(A - B / (C + T))", false, [](double t, double, double const * c) { return std::exp(c[0] - c[1] / (c[2] + t)); }},
    {11, "exp(A)", false, expOfPowers<1>},
    {12, "exp(A + B T)", false, expOfPowers<2>},
    {13, "exp(A + B T + C T^2)", false, expOfPowers<3>},
    {14, "exp(A + B T + C T^2 + D T^3)", false, expOfPowers<4>},
    {15, "exp(A + B T + C T^2 + D T^3 + E T^4)", false, expOfPowers<5>},
    {16, "A + exp(B/T + C + D T + E T^2)", false,
     [](double t, double, double const * c) { return c[0] + std::exp(c[1] / t + polynomial(t, c + 2, 3)); }},
    {17, "A + exp(B + C T + D T^2 + E T^3)", false,
     [](double t, double, double const * c) { return c[0] + std::exp(polynomial(t, c + 1, 4)); }},
    {100, "A + B T + C T^2 + D T^3 + E T^4", false, powers<5>},
    {101, "exp(A + B/T + C ln T + D T^E)", false,
     [](double t, double, double const * c) {
       return std::exp(c[0] + c[1] / t + c[2] * std::log(t) + c[3] * std::pow(t, c[4]));
     }},
    {102, "A T^B / (1 + C/T + D/T^2)", false,
     [](double t, double, double const * c) { return c[0] * std::pow(t, c[1]) / (1 + c[2] / t + c[3] / square(t)); }},
    {103, "A + B exp(-C / T^D)", false,
     [](double t, double, double const * c) { return c[0] + c[1] * std::exp(-c[2] / std::pow(t, c[3])); }},
    {104, "A + B/T + C/T^3 + D/T^8 + E/T^9", false,
     [](double t, double, double const * c) {
       return c[0] + c[1] / t + c[2] / std::pow(t, 3) + c[3] / std::pow(t, 8) + c[4] / std::pow(t, 9);
     }},
    {105, "A / B^(1 + (1 - T/C)^D)", false,
     [](double t, double, double const * c) { return c[0] / std::pow(c[1], 1 + std::pow(1 - t / c[2], c[3])); }},
    {106, "A t^(B + C Tr + D Tr^2 + E Tr^3)", true, reduced},
    {107, "A + B ((C/T) / sinh(C/T))^2 + D ((E/T) / cosh(E/T))^2", false,
     [](double t, double, double const * c) {
       return c[0] + c[1] * square(overSinh(c[2] / t)) + c[3] * square(overCosh(c[4] / t));
     }},
    {114, "A^2/t + B - 2 A C t - A D t^2 - C^2 t^3 / 3 - C D t^4 / 2 - D^2 t^5 / 5", true, saturatedHeatCapacity},
    {115, "exp(A + B/T + C ln T + D T^2 + E/T^2)", false,
     [](double t, double, double const * c) {
       return std::exp(c[0] + c[1] / t + c[2] * std::log(t) + c[3] * square(t) + c[4] / square(t));
     }},
    {116, "A + B t^0.35 + C t^(2/3) + D t + E t^(4/3)", true, rootsOfDistance},
};

}  // namespace

std::span<EquationForm const> GetEquationForms()
{
  return forms;
}

EquationForm const * FindEquationForm(int number)
{
  auto const found = std::ranges::find(forms, number, &EquationForm::number);
  return found != std::end(forms) ? found : nullptr;
}
