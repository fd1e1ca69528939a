// The data ids under which zp keeps a component's names, constants and correlations, and the layouts of packed areas.
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

class GPv;

enum class DataKind {
  Text,      // GPs
  Number,    // GPf
  Floats,    // GPv: float data of a fixed count of coefficients
  Equation,  // GPv: an equation number and up to nine coefficients
  Groups     // GPv: pairs of a group and its count
};

struct DataMeaning {
  unsigned int dataID;
  DataKind kind;
  char const * column;  // of a table of components; the base of its columns for a correlation
  char const * label;
  char const * unit;    // of the number, or of what the correlation gives
  char const * layout;  // the class whose layout a packed area has
  int coefficients;     // at most
};

// All of them, in the order of a table's columns.
std::span<DataMeaning const> GetDataMeanings();

// What data id means, or null for one that isn't in the table.
DataMeaning const * FindDataMeaning(unsigned int dataID);

// What a packed area of a correlation has.
struct AreaCoefficients {
  static constexpr int most = 9;
  static constexpr int noEquation = -1;

  int equation = noEquation;
  int count = 0;
  std::array<float, most> values{};
};

// Nothing for an area that doesn't fit the layout that its data id names, or isn't a correlation's.
AreaCoefficients DecodeCoefficients(GPv const & item, DataMeaning const & meaning);

// One number of a packed area.
struct AreaNumber {
  std::string name;
  bool isReal;
  float real;
  int whole;
};

// The numbers of an item's area in the layout that its data id names; empty if the area doesn't fit it.
std::vector<AreaNumber> DecodeArea(GPv const & item, DataMeaning const & meaning);

// The numbers of an area that has the shape of interaction parameters between groups: one to six slots with ascending tags. Such
// records stand under data ids of the program that keeps them. Empty for any other area.
std::vector<AreaNumber> DecodeInteractions(GPv const & item);

// The letter of a coefficient: "A" for the first.
std::string CoefficientName(int index);
