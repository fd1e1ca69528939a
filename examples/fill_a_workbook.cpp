// Puts results into a new workbook and reads them back, over whatever server of spreadsheets there is.

#include <cstdio>
#include <filesystem>

#include <zpbase/platform/application.h>
#include <zpbase/platform/paths.h>
#include <zpbase/spreadsheet.h>

namespace {

// A range of the worksheet, of one cell or of several.
void put(GPExcelWorkSheet & sheet, char const * cell, COleVariant const & value)
{
  GPRange range;
  range.AttachDispatch(sheet.m_Link.GetCell(COleVariant(cell)));
  range.SetValue(value);
}

int fill(CString const & path)
{
  GPExcelWorkBook book(path);
  if (GPExcel::GetExcel()->CreateWorkBook(book) == 0) return 0;
  GPExcelWorkSheet results("Results");
  if (book.CreateWorkSheet(results) == 0) return 0;
  put(results, "A1", COleVariant("T/K"));
  put(results, "B1", COleVariant("p/kPa"));
  put(results, "A2:A4", COleVariant(298.15));
  put(results, "B2", COleVariant(0.1 + 0.2));
  book.SaveAs(COleVariant(path));
  return GPExcel::GetExcel()->CloseWorkBook(book);  // saves nothing more
}

int show(CString const & path)
{
  GPExcelWorkBook book(path);
  if (book.BuildWorkBook(&GPExcelWorkBook::ProcessWorkSheet) == 0) return 0;
  auto & results = static_cast<GPExcelWorkSheet &>(*book.m_WorkSheets[0]);
  for (int i = 0; i < results.m_List1.GetSize(); ++i) {
    auto & cell = static_cast<GPCell &>(*results.m_List1[i]);
    double number = 0.0;
    CString text;
    if (cell.GetValue(number) != 0)
      std::printf("%s!%s is the number %.17g\n", results.m_strName.GetString(), cell.GetName().GetString(), number);
    else if (cell.GetValue(text) != 0)
      std::printf("%s!%s is the text %s\n", results.m_strName.GetString(), cell.GetName().GetString(), text.GetString());
  }
  return results.m_List1.GetSize();
}

}  // namespace

int main()
{
  CWinApp app("fill_a_workbook");
  std::filesystem::path const file = std::filesystem::temp_directory_path() / "zp_fill_a_workbook.xlsx";
  std::filesystem::remove(file);
  CString const path = FromHostPath(file.string());
  if (AttachExcel() == 0) return 0;  // a message has told that there is no server
  int const cells = fill(path) != 0 ? show(path) : 0;
  DetachExcel();
  std::filesystem::remove(file);
  return cells == 6 ? 0 : 1;
}
