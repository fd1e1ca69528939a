// Opening and saving workbooks, with a sentence for whatever goes wrong.
#pragma once

#include <string_view>

#include <rtl/ustring.hxx>

#include "link.h"

namespace office {

// A new, empty workbook.
Workbook CreateWorkbook(Link & link);

// The workbook of a file, given by its inside or host path; the open one, if it is open.
Workbook OpenWorkbook(Link & link, std::u16string_view path);

// Saves a workbook to its own file, or to another one in the format of its extension (.xlsx, .xls, .ods), which is its own from
// then on. A file that is there is overwritten only if it is the workbook's own. A format that doesn't keep the names of charts
// is refused with alerts where charts were named, and warned of without.
void SaveWorkbook(Link & link, Workbook const & workbook, bool alerts);
void SaveWorkbookAs(Link & link, Workbook const & workbook, std::u16string_view path, bool alerts);

// Refuses a workbook that is open for reading alone: the office would leave some changes undone without a word.
void RequireWritable(Workbook const & workbook);

// Closes a workbook; changes that weren't saved are lost.
void CloseWorkbook(Link & link, Workbook const & workbook);

// Whether a workbook was closed, by whomever.
bool IsClosed(Workbook const & workbook);

// The full inside path, or the title of a workbook that has no file.
rtl::OUString NameOfWorkbook(Workbook const & workbook);

}  // namespace office
