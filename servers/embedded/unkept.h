// What a workbook file holds that the workbook in memory has no place for, gathered while it is read, so that it can be told
// before a file is written without it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace embedded {

enum class Unkept : uint8_t {
  Formulas,
  Formats,
  RichTexts,
  Layout,
  MergedCells,
  Filters,
  ConditionalFormats,
  Validations,
  Links,
  Names,
  Drawings,
  ChartContents,
  Comments,
  Tables,
  PivotTables,
  Macros,
  Protection,
  PageSetup,
  Views,
  Styles,
  Theme,
  Calculation,
  Properties,
  OtherSheets,
  OtherBooks,
  Other,
  Count
};

class UnkeptList {
 public:
  void Add(Unkept kind) { m_nKinds |= 1U << static_cast<unsigned int>(kind); }

  // By the name of a part of the package in lower case that nobody reads, of a child of a sheet's root, and of one of the
  // workbook's root. An element that can be made anew, or says nothing, isn't added.
  void AddPart(std::string_view part);
  void AddSheetElement(std::string_view element);
  void AddBookElement(std::string_view element);

  bool IsEmpty() const { return m_nKinds == 0; }

  // One phrase for each kind, such as "formulas (their values stay)".
  std::vector<std::string> GetPhrases() const;

 private:
  uint32_t m_nKinds = 0;
};

}  // namespace embedded
