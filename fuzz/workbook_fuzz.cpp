// Any bytes as an .xlsx file, and, by the first byte, as the XML of its parts within a package that is whole: a workbook comes or
// a sentence, and what comes goes into a file and back as the same cells. Rows that are read plain are what the parser makes of
// them.

#include <stdlib.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "servers/embedded/failure.h"
#include "servers/embedded/workbook_reader.h"
#include "servers/embedded/workbook_writer.h"
#include "tests/embedded/book_text.h"
#include "tests/embedded/stored_package.h"

namespace {

constexpr std::string_view sharedTexts =
    "<sst xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\"><si><t>a</t></si><si/></sst>";
constexpr std::string_view sharingSheet =
    "<worksheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\"><sheetData><row><c t=\"s\"><v>0</v></c>"
    "<c t=\"s\"><v>1</v></c></row></sheetData></worksheet>";

embedded::Workbook read(std::string_view bytes)
{
  return embedded::ReadWorkbook(std::as_bytes(std::span(bytes)));
}

// What the file has to give is known where the package is ours.
void tryBook(std::string_view bytes)
{
  embedded::Workbook book;
  try {
    book = read(bytes);
  } catch (embedded::BookFailure const & failure) {
    if (*failure.what() == '\0') abort();
    return;
  }
  std::string const written = embedded::PackWorkbook(book);
  embedded::Workbook const back = read(written);
  if (TellBook(back) != TellBook(book) || back.from1904 != book.from1904) abort();
  if (embedded::PackWorkbook(back) != written) abort();
}

// The sheet's cells, or the sentence that refuses it.
std::string tellSheet(std::string_view sheet)
{
  try {
    return TellBook(read(MakeBookPackage(sheet, sharedTexts).Finish()));
  } catch (embedded::BookFailure const & failure) {
    return failure.what();
  }
}

// Behind a section nothing is read plain.
void compareRows(std::string_view sheet)
{
  constexpr std::string_view rows = "<sheetData>";
  size_t const at = sheet.find(rows);
  if (at == std::string::npos || sheet.find("<![CDATA[") != std::string::npos) return;
  std::string parsed(sheet);
  parsed.insert(at + rows.size(), "<![CDATA[]]>");
  if (tellSheet(parsed) != tellSheet(sheet)) abort();
}

// The list of sheets and where they lead, parted by a zero byte.
std::string wrapLists(std::string_view input)
{
  StoredPackage package;
  size_t const end = input.find('\0');
  package.Add("xl/workbook.xml", input.substr(0, end));
  if (end != std::string_view::npos) package.Add("xl/_rels/workbook.xml.rels", input.substr(end + 1));
  package.Add("xl/worksheets/sheet1.xml", sharingSheet);
  package.Add("xl/worksheets/sheet2.xml", sharingSheet);
  package.Add("xl/sharedstrings.xml", sharedTexts);
  return package.Finish();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const * data, size_t size)
{
  std::string_view input(reinterpret_cast<char const *>(data), size);
  if (input.empty()) return 0;
  char const way = input.front();
  if (way != 'c' && way != 't' && way != 'l') {
    tryBook(input);
    return 0;
  }
  input.remove_prefix(1);
  if (way == 'l')
    tryBook(wrapLists(input));
  else if (way == 't')
    tryBook(MakeBookPackage(sharingSheet, input).Finish());
  else
    tryBook(MakeBookPackage(input, sharedTexts).Finish());
  if (way == 'c') compareRows(input);
  return 0;
}
