// The forms of the temperature equations that correlations name by their number.
//
// Numbers from 100 on are those of the Design Institute for Physical Properties, as tabled in Perry's Chemical Engineers'
// Handbook, 8th edition, section 2; the others are those of the ChemSep pure component database.
#pragma once

#include <span>

inline constexpr int formCoefficients = 9;  // that a form is given; those that a record doesn't have are 0

struct EquationForm {
  int number;
  char const * formula;  // for people: T in K, Tr = T / Tc, t = 1 - Tr
  bool needsCritical;    // whether Tc is used
  double (*value)(double temperature, double critical, double const * c);
};

// Ascending by number.
std::span<EquationForm const> GetEquationForms();

// Null for a number without a form here.
EquationForm const * FindEquationForm(int number);
