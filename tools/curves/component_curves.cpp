// From a component's items to its curves.

#include "tools/curves/component_curves.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>
#include <zpbase/data.h>
#include <zpbase/platform/encoding.h>

#include "tools/program.h"

namespace {

constexpr int antoineForm = 10;
constexpr size_t antoineCoefficients = 3;

// The equation that an ideal gas heat capacity has without naming it.
constexpr EquationForm heatCapacityForm = {0, "A + B T + C T^2 + D T^3 + E T^4 + F T^5", false,
                                           [](double t, double, double const * c) {
                                             double sum = 0;
                                             for (int i = GPIghc::maxCoefficients - 1; i >= 0; --i) sum = sum * t + c[i];
                                             return sum;
                                           }};

bool isCurve(DataMeaning const & meaning)
{
  return meaning.kind == DataKind::Equation || meaning.dataID == GPAvp::dataID || meaning.dataID == GPIghc::dataID;
}

// The component's first item of that data id, if it is one of that class; or null.
template <class Item>
Item const * find(GPDataArray const & component, DataMeaning const & meaning)
{
  for (int i = 0; i < component.GetSize(); ++i) {
    GPData const * const item = component.GetAt(i);
    if (item != nullptr && item->GetDataID() == meaning.dataID) return dynamic_cast<Item const *>(item);
  }
  return nullptr;
}

DataMeaning const & meaningOf(std::string_view column)
{
  return *std::ranges::find(GetDataMeanings(), column, &DataMeaning::column);
}

double numberOf(GPDataArray const & component, std::string_view column)
{
  auto const * const item = find<GPf>(component, meaningOf(column));
  return item != nullptr && item->GetValue() > 0 ? static_cast<double>(item->GetValue()) : 0.0;
}

ComponentFacts factsOf(GPDataArray const & component, int id)
{
  auto const * const name = find<GPs>(component, meaningOf("name"));
  return {name != nullptr ? zp::TextToUtf8(name->GetValue().View()) : fmt::format("record {}", id), numberOf(component, "tm_K"),
          numberOf(component, "tc_K")};
}

// Saturated liquids and their vapour end at the critical point, solids at the melting point; gases have no end.
std::optional<TemperatureRange> rangeOf(DataMeaning const & property, ComponentFacts const & facts)
{
  std::string_view const column = property.column;
  if (column == "rho_sol") return facts.melting > 0 ? std::optional(TemperatureRange{0, facts.melting}) : std::nullopt;
  bool const isGas = property.dataID == GPIghc::dataID || column.ends_with("_vap");
  bool const isSaturated = column == "p_vap" || column == "h_vap";
  if ((isGas && !isSaturated) || facts.critical <= facts.melting) return std::nullopt;
  return TemperatureRange{facts.melting, facts.critical};
}

EquationForm const * formOf(DataMeaning const & property, std::vector<AreaNumber> const & numbers, std::string const & name)
{
  if (property.dataID == GPIghc::dataID) return &heatCapacityForm;
  bool const isAntoine = property.dataID == GPAvp::dataID;
  if (isAntoine && numbers.size() > antoineCoefficients)
    throw Failure(fmt::format("{}: {} has {} coefficients; a form is known for {}", name, property.column, numbers.size(),
                              antoineCoefficients));
  int const number = isAntoine ? antoineForm : numbers.front().whole;
  if (EquationForm const * const form = FindEquationForm(number)) return form;
  std::string known;
  for (EquationForm const & form : GetEquationForms()) known += fmt::format("{}{}", known.empty() ? "" : ", ", form.number);
  throw Failure(
      fmt::format("{}: {} has equation {}, which isn't known here; known are {}", name, property.column, number, known));
}

}  // namespace

std::optional<double> Curve::At(double temperature) const
{
  double const value = form->value(temperature, facts.critical, coefficients.data());
  return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::vector<DataMeaning const *> GetCurveProperties()
{
  std::vector<DataMeaning const *> properties;
  for (DataMeaning const & meaning : GetDataMeanings()) {
    if (isCurve(meaning)) properties.push_back(&meaning);
  }
  return properties;
}

DataMeaning const & FindCurveProperty(std::string const & name)
{
  std::string known;
  for (DataMeaning const * const meaning : GetCurveProperties()) {
    if (meaning->column == name) return *meaning;
    known += fmt::format("{}{}", known.empty() ? "" : ", ", meaning->column);
  }
  throw Failure(fmt::format("{}: is no property with a curve; there are {}", name, known), exitUsage);
}

std::optional<Curve> FindCurve(GPDataArray const & component, int id, DataMeaning const & property, std::string const & name)
{
  auto const * const item = find<GPv>(component, property);
  if (item == nullptr) return std::nullopt;
  std::vector<AreaNumber> const numbers = DecodeArea(*item, property);
  if (numbers.empty()) throw Failure(fmt::format("{}: the area of {} isn't that of its class", name, property.column));
  Curve curve;
  curve.property = &property;
  curve.form = formOf(property, numbers, name);
  curve.facts = factsOf(component, id);
  curve.range = rangeOf(property, curve.facts);
  auto place = curve.coefficients.begin();
  for (AreaNumber const & number : numbers) {
    if (number.isReal) *place++ = static_cast<double>(number.real);
  }
  if (curve.form->needsCritical && curve.facts.critical == 0)
    throw Failure(fmt::format("{}: {} by equation {} needs the critical temperature, which the component doesn't tell", name,
                              property.column, curve.form->number));
  return curve;
}
