// What zp keeps under which data id. The ids 97 to 103 are those of the record classes; the others are this program's own.

#include "tools/records/data_ids.h"

#include <algorithm>

#include <zpbase/data.h>
#include <zpbase/platform/bytes.h>

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
    {GPAvp::dataID, DataKind::Floats, "antoine", "vapour pressure", "Pa", "GPAvp", 7},
    {GPIghc::dataID, DataKind::Floats, "cp_ig", "ideal gas heat capacity", "J/(kmol K)", "GPIghc", 6},
    {GPLv::dataID, DataKind::Floats, "liquid_volume", "liquid volume", "", "GPLv", 2},
    {GPSt::dataID, DataKind::Floats, "surface_tension", "surface tension", "", "GPSt", 2},
    {GPHenry::dataID, DataKind::Floats, "henry", "Henry constants", "", "GPHenry", 4},
    {GPMsrk::dataID, DataKind::Floats, "msrk", "modified SRK", "", "GPMsrk", 2},
    {GPUnifac::dataID, DataKind::Groups, "unifac_groups", "UNIFAC groups", "", "GPUnifac", 0},
    {40, DataKind::Equation, "rho_liq", "liquid density", "kmol/m3", "GPDippr", 9},
    {41, DataKind::Equation, "sigma", "surface tension", "N/m", "GPDippr", 9},
    {42, DataKind::Equation, "p_vap", "vapour pressure", "Pa", "GPDippr", 9},
    {43, DataKind::Equation, "h_vap", "heat of vaporization", "J/kmol", "GPDippr", 9},
    {44, DataKind::Equation, "cp_liq", "liquid heat capacity", "J/(kmol K)", "GPDippr", 9},
    {45, DataKind::Equation, "mu_liq", "liquid viscosity", "Pa s", "GPDippr", 9},
    {46, DataKind::Equation, "mu_vap", "vapour viscosity", "Pa s", "GPDippr", 9},
    {47, DataKind::Equation, "k_liq", "liquid thermal conductivity", "W/(m K)", "GPDippr", 9},
    {48, DataKind::Equation, "k_vap", "vapour thermal conductivity", "W/(m K)", "GPDippr", 9},
    {49, DataKind::Equation, "rho_sol", "solid density", "kmol/m3", "GPDippr", 9},
};

constexpr int fixedBytes = 18;  // of a numbered equation: the number and four coefficients

AreaNumber realNumber(std::string name, float value)
{
  return {std::move(name), true, value, 0};
}

std::vector<AreaNumber> decodeFloats(GPv const & item, DataMeaning const & meaning)
{
  std::vector<AreaNumber> numbers;
  int const count = item.GetSize() / static_cast<int>(sizeof(float));
  if (count * static_cast<int>(sizeof(float)) != item.GetSize() || count > meaning.coefficients) return numbers;
  std::vector<float> values(static_cast<size_t>(count));
  item.GetFloatData(values.data(), count);
  for (int i = 0; i < count; ++i) numbers.push_back(realNumber(CoefficientName(i), values[static_cast<size_t>(i)]));
  return numbers;
}

std::vector<AreaNumber> decodeEquation(GPv const & item)
{
  std::vector<AreaNumber> numbers;
  int const size = item.GetSize();
  if (size < fixedBytes || size > fixedBytes + 5 * 4 || (size - fixedBytes) % 4 != 0) return numbers;
  unsigned short equation = 0;
  float c[9] = {};
  int const further = GPDippr::As(item).Unload(equation, c[0], c[1], c[2], c[3], c[4], c[5], c[6], c[7], c[8]);
  numbers.push_back({"equation", false, 0.0F, equation});
  for (int i = 0; i < 4 + further; ++i) numbers.push_back(realNumber(CoefficientName(i), c[i]));
  return numbers;
}

// Marked groups, which are kept negated, as "12R".
std::vector<AreaNumber> decodeGroups(GPv const & item)
{
  std::vector<AreaNumber> numbers;
  if (item.GetSize() % 4 != 0) return numbers;
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

std::vector<AreaNumber> DecodeArea(GPv const & item, DataMeaning const & meaning)
{
  switch (meaning.kind) {
    case DataKind::Floats:
      return decodeFloats(item, meaning);
    case DataKind::Equation:
      return decodeEquation(item);
    case DataKind::Groups:
      return decodeGroups(item);
    default:
      return {};
  }
}

std::vector<AreaNumber> DecodeInteractions(GPv const & item)
{
  constexpr int slotBytes = 10;
  constexpr unsigned int firstTag = 128;
  constexpr unsigned int lastTag = 133;
  int const slots = item.GetSize() / slotBytes;
  if (item.GetSize() % slotBytes != 0) return {};
  float values[2 * (lastTag + 1 - firstTag)];
  GPUnifacBip::As(item).Unload(values[0], values[1], values[2], values[3], values[4], values[5], values[6], values[7], values[8],
                               values[9], values[10], values[11]);
  std::vector<AreaNumber> numbers;
  unsigned int lowest = firstTag;
  for (int slot = 0; slot < slots; ++slot) {
    BYTE const * const place = item.GetArea() + slot * slotBytes;
    unsigned int const tag = zp::ReadLittle<WORD>(place);
    if (tag < lowest || tag > lastTag) return {};
    lowest = tag + 1;
    float const * const pair = values + 2 * (tag - firstTag);
    for (int i = 0; i < 2; ++i) numbers.push_back(realNumber((i == 0 ? "a" : "b") + std::to_string(tag), pair[i]));
  }
  return numbers;
}
