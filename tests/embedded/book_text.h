// A workbook as text, for expectations: "Data: A1=1.5 B2='text' C3=TRUE D4=#N/A; Chart1 (chart)".
#pragma once

#include <string>

#include <zpbase/spreadsheet.h>

#include "servers/embedded/number_text.h"
#include "servers/embedded/workbook.h"

inline std::string TellCell(embedded::Cell const & cell)
{
  std::string told = embedded::MakeCellName(cell.GetRow(), cell.GetColumn()) + "=";
  switch (cell.GetKind()) {
    case embedded::CellKind::Number:
      embedded::AppendNumber(told, cell.GetNumber());
      break;
    case embedded::CellKind::Text:
      told.append("'").append(cell.GetText()).append("'");
      break;
    case embedded::CellKind::Boolean:
      told += cell.GetBoolean() ? "TRUE" : "FALSE";
      break;
    case embedded::CellKind::Error:
      told += zp::CellErrorText(cell.GetError());
  }
  return told;
}

inline std::string TellBook(embedded::Workbook const & book)
{
  std::string told;
  for (auto const & sheet : book.sheets) {
    if (!told.empty()) told += "; ";
    told += sheet->name;
    told += sheet->kind == embedded::SheetKind::Chart ? " (chart)" : "";
    told += sheet->visibility == embedded::Visibility::Hidden       ? " (hidden)"
            : sheet->visibility == embedded::Visibility::VeryHidden ? " (very hidden)"
                                                                    : "";
    told += sheet->rightToLeft ? " (right to left)" : "";
    told += sheet->tabColor + ":";
    sheet->cells.ForEachFrom(0, [&](embedded::Cell const & cell) {
      told += " " + TellCell(cell);
      return true;
    });
  }
  return told;
}
