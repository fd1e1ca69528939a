// What zp keeps under which data id. The ids 97 to 103 are those of the record classes; the others are this program's own.

#include "tools/records/data_ids.h"

#include <algorithm>

#include <zpbase/data.h>

namespace {

constexpr DataMeaning meanings[] = {
    {1, DataKind::Text, "name", "name", "", "", 0},
    {2, DataKind::Text, "formula", "formula", "", "", 0},
    {3, DataKind::Text, "cas", "CAS number", "", "", 0},
    {10, DataKind::Number, "mw_kg_per_kmol", "molar mass", "kg/kmol", "", 0},
    {11, DataKind::Number, "tb_K", "normal boiling point", "K", "", 0},
    {12, DataKind::Number, "tc_K", "critical temperature", "K", "", 0},
    {13, DataKind::Number, "pc_Pa", "critical pressure", "Pa", "", 0},
    {14, DataKind::Number, "vc_m3_per_kmol", "critical volume", "m3/kmol", "", 0},
    {15, DataKind::Number, "omega", "acentric factor", "", "", 0},
    {16, DataKind::Number, "tm_K", "melting point", "K", "", 0},
    {17, DataKind::Number, "hf_J_per_kmol", "heat of formation", "J/kmol", "", 0},
    {18, DataKind::Number, "dipole_C_m", "dipole moment", "C m", "", 0},
    {GPAvp::dataID, DataKind::Floats, "antoine", "vapour pressure", "Pa", "GPAvp", GPAvp::maxCoefficients},
    {GPIghc::dataID, DataKind::Floats, "cp_ig", "ideal gas heat capacity", "J/(kmol K)", "GPIghc", GPIghc::maxCoefficients},
    {GPLv::dataID, DataKind::Floats, "liquid_volume", "liquid volume", "", "GPLv", GPLv::maxCoefficients},
    {GPSt::dataID, DataKind::Floats, "surface_tension", "surface tension", "", "GPSt", GPSt::maxCoefficients},
    {GPHenry::dataID, DataKind::Floats, "henry", "Henry constants", "", "GPHenry", GPHenry::maxCoefficients},
    {GPMsrk::dataID, DataKind::Floats, "msrk", "modified SRK", "", "GPMsrk", GPMsrk::maxCoefficients},
    {GPUnifac::dataID, DataKind::Groups, "unifac_groups", "UNIFAC groups", "", "GPUnifac", 0},
    {40, DataKind::Equation, "rho_liq", "liquid density", "kmol/m3", "GPDippr", GPDippr::maxCoefficients},
    {41, DataKind::Equation, "sigma", "surface tension", "N/m", "GPDippr", GPDippr::maxCoefficients},
    {42, DataKind::Equation, "p_vap", "vapour pressure", "Pa", "GPDippr", GPDippr::maxCoefficients},
    {43, DataKind::Equation, "h_vap", "heat of vaporization", "J/kmol", "GPDippr", GPDippr::maxCoefficients},
    {44, DataKind::Equation, "cp_liq", "liquid heat capacity", "J/(kmol K)", "GPDippr", GPDippr::maxCoefficients},
    {45, DataKind::Equation, "mu_liq", "liquid viscosity", "Pa s", "GPDippr", GPDippr::maxCoefficients},
    {46, DataKind::Equation, "mu_vap", "vapour viscosity", "Pa s", "GPDippr", GPDippr::maxCoefficients},
    {47, DataKind::Equation, "k_liq", "liquid thermal conductivity", "W/(m K)", "GPDippr", GPDippr::maxCoefficients},
    {48, DataKind::Equation, "k_vap", "vapour thermal conductivity", "W/(m K)", "GPDippr", GPDippr::maxCoefficients},
    {49, DataKind::Equation, "rho_sol", "solid density", "kmol/m3", "GPDippr", GPDippr::maxCoefficients},
};

AreaNumber realNumber(std::string name, float value)
{
  return {std::move(name), true, value, 0};
}

AreaCoefficients floatsOf(GPv const & item, DataMeaning const & meaning)
{
  int const count = item.GetSize() / static_cast<int>(sizeof(float));
  if (count * static_cast<int>(sizeof(float)) != item.GetSize() || count > meaning.coefficients) return {};
  AreaCoefficients found;
  found.count = count;
  item.GetFloatData(found.values.data(), count);
  return found;
}

AreaCoefficients equationOf(GPv const & item)
{
  static_assert(AreaCoefficients::most == GPDippr::maxCoefficients);
  int const size = item.GetSize();
  bool const isWhole = (size - GPDippr::minBytes) % GPDippr::coefficientBytes == 0;
  if (size < GPDippr::minBytes || size > GPDippr::maxBytes || !isWhole) return {};
  AreaCoefficients found;
  auto & c = found.values;
  unsigned short equation = 0;
  int const further = GPDippr::As(item).Unload(equation, c[0], c[1], c[2], c[3], c[4], c[5], c[6], c[7], c[8]);
  found.equation = equation;
  found.count = GPDippr::fixedCoefficients + further;
  return found;
}

std::vector<AreaNumber> decodeCorrelation(GPv const & item, DataMeaning const & meaning)
{
  AreaCoefficients const found = DecodeCoefficients(item, meaning);
  std::vector<AreaNumber> numbers;
  numbers.reserve(1 + AreaCoefficients::most);
  if (found.equation != AreaCoefficients::noEquation) numbers.push_back({"equation", false, 0.0F, found.equation});
  for (int i = 0; i < found.count; ++i) numbers.push_back(realNumber(CoefficientName(i), found.values[static_cast<size_t>(i)]));
  return numbers;
}

// Marked groups, which are kept negated, as "12R".
std::vector<AreaNumber> decodeGroups(GPv const & item)
{
  std::vector<AreaNumber> numbers;
  if (item.GetSize() % GPUnifac::entryBytes != 0) return numbers;
  std::vector<int> words(static_cast<size_t>(item.GetSize() / 2));
  item.GetShortIntData(words.data(), static_cast<int>(words.size()));
  for (size_t i = 0; i + 1 < words.size(); i += 2) {
    std::string const group = std::to_string(std::abs(words[i])) + (words[i] < 0 ? "R" : "");
    numbers.push_back({group, false, 0.0F, words[i + 1]});
  }
  return numbers;
}

}  // namespace

std::span<DataMeaning const> GetDataMeanings()
{
  return meanings;
}

DataMeaning const * FindDataMeaning(unsigned int dataID)
{
  auto const found = std::find_if(std::begin(meanings), std::end(meanings),
                                  [dataID](DataMeaning const & meaning) { return meaning.dataID == dataID; });
  return found != std::end(meanings) ? &*found : nullptr;
}

std::string CoefficientName(int index)
{
  return std::string(1, static_cast<char>('A' + index));
}

AreaCoefficients DecodeCoefficients(GPv const & item, DataMeaning const & meaning)
{
  if (meaning.kind == DataKind::Floats) return floatsOf(item, meaning);
  return meaning.kind == DataKind::Equation ? equationOf(item) : AreaCoefficients();
}

std::vector<AreaNumber> DecodeArea(GPv const & item, DataMeaning const & meaning)
{
  return meaning.kind == DataKind::Groups ? decodeGroups(item) : decodeCorrelation(item, meaning);
}

std::vector<AreaNumber> DecodeInteractions(GPv const & item)
{
  GPUnifacBip const record = GPUnifacBip::As(item);
  int const count = record.GetEntryCount();
  if (item.GetSize() != count * GPUnifacBip::entryBytes) return {};
  std::vector<AreaNumber> numbers;
  unsigned int lowest = GPUnifacBip::firstTag;
  for (int i = 0; i < count; ++i) {
    GPUnifacBip::Entry const entry = record.GetEntry(i);
    if (entry.tag < lowest || entry.tag > GPUnifacBip::lastTag) return {};
    lowest = entry.tag + 1;
    numbers.push_back(realNumber("a" + std::to_string(entry.tag), entry.first));
    numbers.push_back(realNumber("b" + std::to_string(entry.tag), entry.second));
  }
  return numbers;
}
