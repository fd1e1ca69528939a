// A component's correlations as functions of temperature.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "tools/curves/equation_forms.h"
#include "tools/records/data_ids.h"

class GPDataArray;

// What a component is called and where its phases are, in K; 0 for what it doesn't tell.
struct ComponentFacts {
  std::string name;  // UTF-8; "record 7" for one without a name
  double melting = 0;
  double critical = 0;
};

struct TemperatureRange {
  double from = 0;  // K
  double to = 0;

  bool Holds(double temperature) const { return from <= temperature && temperature <= to; }
};

struct Curve {
  DataMeaning const * property = nullptr;
  EquationForm const * form = nullptr;
  std::array<double, formCoefficients> coefficients = {};
  ComponentFacts facts;
  std::optional<TemperatureRange> range;  // where the phase that it describes exists, as far as the component tells

  // None where the equation has no finite value.
  std::optional<double> At(double temperature) const;

  bool IsOutside(double temperature) const { return range && !range->Holds(temperature); }
};

// The properties that curves can be of: those with an equation, vapour pressure by Antoine and ideal gas heat capacity.
std::vector<DataMeaning const *> GetCurveProperties();

// By the base of its columns, such as "rho_liq". Raises Failure with the names that there are.
DataMeaning const & FindCurveProperty(std::string const & name);

// The record's curve of a property; none if it has no such correlation. name is how messages call the record. Raises Failure for
// an equation that isn't known here, and for one that needs the critical temperature where the component has none.
std::optional<Curve> FindCurve(GPDataArray const & component, int id, DataMeaning const & property, std::string const & name);
