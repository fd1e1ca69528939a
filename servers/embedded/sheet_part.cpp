// Reading cells: the hot path of a large workbook. One handler for all elements, no memory asked for but for the cells
// themselves.

#include "servers/embedded/sheet_part.h"

#include <charconv>
#include <cmath>
#include <utility>

#include <zpbase/spreadsheet.h>

#include "servers/embedded/cell_text.h"
#include "servers/embedded/failure.h"
#include "servers/embedded/iso_dates.h"
#include "servers/embedded/number_text.h"
#include "servers/embedded/rich_text.h"
#include "servers/embedded/sheet_frame.h"

namespace embedded {
namespace {

constexpr uint16_t unknownError = 2048;  // stands for the errors that have no number

// What a cell's value is to be read as.
enum class Form : unsigned char { Number, Shared, Text, Inline, Boolean, Error, Date };

struct FormName {
  std::string_view name;
  Form form;
};
constexpr std::array formNames = {
    FormName{"n", Form::Number},  FormName{"s", Form::Shared}, FormName{"str", Form::Text}, FormName{"inlineStr", Form::Inline},
    FormName{"b", Form::Boolean}, FormName{"e", Form::Error},  FormName{"d", Form::Date}};

class SheetHandler {
 public:
  static constexpr XmlNamespace const & space = sheetNamespace;

  SheetHandler(std::vector<SharedText> const & texts, bool from1904, Sheet & sheet, UnkeptList & unkept)
      : m_Texts(texts), m_b1904(from1904), m_Sheet(sheet), m_Unkept(unkept), m_Frame(sheet, unkept)
  {
  }

  bool Start(std::string_view name, XmlAttributes attributes);
  void End();
  void Characters(std::string_view text);
  void PassForeign() { m_Unkept.Add(Unkept::Other); }

  bool HasSheet() const { return m_bSheet; }

  static constexpr std::string_view plainTag = "<row";
  bool TakesPlain() const { return m_Where == Where::Rows; }

 private:
  enum class Where : unsigned char { Outside, Sheet, Frame, Rows, Row, Cell, Value, Inline };

  bool Enter(Where where)
  {
    m_Where = where;
    return true;
  }
  bool StartSheet(std::string_view name);
  bool StartRow(XmlAttributes attributes);
  bool StartCell(XmlAttributes attributes);
  bool StartInCell(std::string_view name, XmlAttributes attributes);
  void SetPlace(std::string_view name);
  void SetForm(std::string_view name);

  void FinishCell();
  void FinishValue();
  void Put(Cell cell);
  void PutNumber(std::string_view text);
  void PutShared(std::string_view text);
  void PutDate(std::string_view text);
  void PutBoolean(std::string_view text);
  void PutError(std::string_view text);

  [[noreturn]] void Fail(std::string_view what) const;
  [[noreturn]] void FailAtValue(std::string_view text, std::string_view wanted) const;

  std::vector<SharedText> const & m_Texts;
  bool m_b1904;
  Sheet & m_Sheet;
  UnkeptList & m_Unkept;
  SheetFrame m_Frame;

  Where m_Where = Where::Outside;
  bool m_bSheet = false;
  uint32_t m_nRow = 0;         // of the row that is being read, from 1
  Place m_Place = {};          // of the cell that is being read
  uint32_t m_nNextColumn = 0;  // for a cell that doesn't tell its own
  Form m_Form = Form::Number;
  bool m_bValue = false;
  bool m_bInline = false;
  std::string m_strValue;
  std::string m_strPlain;
  RichText m_Text;
};

bool SheetHandler::Start(std::string_view name, XmlAttributes attributes)
{
  switch (m_Where) {
    case Where::Outside:
      return StartSheet(name);
    case Where::Sheet:
      if (name == "sheetData") return Enter(Where::Rows);
      return m_Frame.Start(name, attributes) && Enter(Where::Frame);
    case Where::Frame:
      return m_Frame.Start(name, attributes);
    case Where::Rows:
      return name == "row" && StartRow(attributes);
    case Where::Row:
      return name == "c" && StartCell(attributes);
    case Where::Cell:
      return StartInCell(name, attributes);
    case Where::Value:
      return false;
    case Where::Inline:
      return m_Text.Start(name, attributes);
  }
  return false;
}

bool SheetHandler::StartSheet(std::string_view name)
{
  m_bSheet = name == "worksheet";
  return m_bSheet && Enter(Where::Sheet);
}

bool SheetHandler::StartRow(XmlAttributes attributes)
{
  ++m_nRow;
  if (char const * const number = attributes.Find("r"); number != nullptr) {
    std::string_view const text(number);
    auto const read = std::from_chars(text.data(), text.data() + text.size(), m_nRow);
    if (read.ec != std::errc() || read.ptr != text.data() + text.size() || m_nRow == 0) {
      throw BookFailure("The sheet \"" + m_Sheet.name + "\" has a row with the number \"" + std::string(text) + "\"");
    }
  }
  if (m_nRow > mostRows) throw BookFailure("The sheet \"" + m_Sheet.name + "\" has rows beyond the last one");
  bool const isGrouped = attributes.Find("outlineLevel") != nullptr && !attributes.Has("outlineLevel", "0");
  if (isGrouped || attributes.IsOn("hidden") || attributes.IsOn("customHeight")) m_Unkept.Add(Unkept::Layout);
  if (attributes.IsOn("customFormat")) m_Unkept.Add(Unkept::Formats);
  m_nNextColumn = 0;
  return Enter(Where::Row);
}

bool SheetHandler::StartCell(XmlAttributes attributes)
{
  m_Place = {m_nRow - 1, m_nNextColumn};
  m_Form = Form::Number;
  m_bValue = m_bInline = false;
  for (char const ** at = attributes.GetList(); *at != nullptr; at += 2) {
    char const * const name = *at;
    char const * const value = at[1];
    if (name[0] == '\0' || name[1] != '\0') continue;
    if (name[0] == 'r')
      SetPlace(value);
    else if (name[0] == 't')
      SetForm(value);
    else if (name[0] == 's' && std::string_view(value) != "0")
      m_Unkept.Add(Unkept::Formats);
  }
  if (m_Place.column >= mostColumns) throw BookFailure("The sheet \"" + m_Sheet.name + "\" has columns beyond the last one");
  m_nNextColumn = m_Place.column + 1;
  return Enter(Where::Cell);
}

void SheetHandler::SetPlace(std::string_view name)
{
  auto const place = ReadCellName(name);
  if (!place) throw BookFailure("The sheet \"" + m_Sheet.name + "\" has a cell named \"" + std::string(name) + "\"");
  m_Place = *place;
}

void SheetHandler::SetForm(std::string_view name)
{
  for (FormName const & known : formNames) {
    if (name != known.name) continue;
    m_Form = known.form;
    return;
  }
  Fail("is of the unknown kind \"" + std::string(name) + "\"");
}

bool SheetHandler::StartInCell(std::string_view name, XmlAttributes attributes)
{
  if (name == "v") {
    m_bValue = true;
    m_strValue.clear();
    return Enter(Where::Value);
  }
  if (name == "is") {
    m_bInline = true;
    m_Text.Begin(PreservesBlanks(attributes, false));
    return Enter(Where::Inline);
  }
  m_Unkept.Add(name == "f" ? Unkept::Formulas : Unkept::Other);
  return false;
}

void SheetHandler::End()
{
  switch (m_Where) {
    case Where::Inline:
      if (!m_Text.End()) m_Where = Where::Cell;
      return;
    case Where::Value:
      m_Where = Where::Cell;
      return;
    case Where::Cell:
      FinishCell();
      m_Where = Where::Row;
      return;
    case Where::Row:
      m_Where = Where::Rows;
      return;
    case Where::Frame:
      if (m_Frame.End()) m_Where = Where::Sheet;
      return;
    case Where::Rows:
      m_Where = Where::Sheet;
      return;
    case Where::Sheet:
    case Where::Outside:
      return;
  }
}

void SheetHandler::Characters(std::string_view text)
{
  if (m_Where == Where::Value) {
    if (m_strValue.size() + text.size() > mostTextBytes) Fail("holds more characters than a cell can");
    m_strValue += text;
  } else if (m_Where == Where::Inline) {
    m_Text.Characters(text);
  } else if (m_Where == Where::Frame) {
    m_Frame.Characters(text);
  }
}

void SheetHandler::FinishCell()
{
  if (m_bInline) {
    Put(Cell::OfText(SharedText(m_Text.Get())));
    if (m_Text.HasFormats()) m_Unkept.Add(Unkept::RichTexts);
  } else if (m_bValue) {
    FinishValue();
  }
}

void SheetHandler::FinishValue()
{
  if (m_Form == Form::Text || m_Form == Form::Inline)
    return Put(Cell::OfText(SharedText(TakeEscapesOut(m_strValue, m_strPlain))));
  std::string_view const text = TrimBlanks(m_strValue);
  if (text.empty()) return;
  switch (m_Form) {
    case Form::Number:
      return PutNumber(text);
    case Form::Shared:
      return PutShared(text);
    case Form::Boolean:
      return PutBoolean(text);
    case Form::Error:
      return PutError(text);
    case Form::Date:
      return PutDate(text);
    case Form::Text:
    case Form::Inline:
      return;
  }
}

void SheetHandler::Put(Cell cell)
{
  cell.SetPlace(m_Place.row, m_Place.column);
  m_Sheet.cells.Put(std::move(cell));
}

void SheetHandler::PutNumber(std::string_view text)
{
  auto const number = ReadNumber(text);
  if (!number) FailAtValue(text, "a number");
  Put(std::isfinite(*number) ? Cell::OfNumber(*number) : Cell::OfError(numberError));
}

void SheetHandler::PutShared(std::string_view text)
{
  size_t index = 0;
  auto const read = std::from_chars(text.data(), text.data() + text.size(), index);
  if (read.ec != std::errc() || read.ptr != text.data() + text.size()) FailAtValue(text, "the number of a shared text");
  if (index >= m_Texts.size()) Fail("wants the shared text " + std::to_string(index) + ", which isn't there");
  Put(Cell::OfText(m_Texts[index]));
}

void SheetHandler::PutDate(std::string_view text)
{
  auto const days = ReadIsoDate(text, m_b1904);
  if (!days) FailAtValue(text, "a date");
  Put(Cell::OfNumber(*days));
}

void SheetHandler::PutBoolean(std::string_view text)
{
  bool const isTrue = text == "1" || text == "true";
  if (!isTrue && text != "0" && text != "false") FailAtValue(text, "a Boolean");
  Put(Cell::OfBoolean(isTrue));
}

void SheetHandler::PutError(std::string_view text)
{
  int const code = zp::CellErrorNumber(text);
  Put(Cell::OfError(code != 0 ? static_cast<uint16_t>(code) : unknownError));
}

void SheetHandler::Fail(std::string_view what) const
{
  throw BookFailure("The cell " + MakeCellName(m_Place.row, m_Place.column) + " of the sheet \"" + m_Sheet.name + "\" " +
                    std::string(what));
}

void SheetHandler::FailAtValue(std::string_view text, std::string_view wanted) const
{
  constexpr size_t mostShown = 40;
  Fail("holds \"" + std::string(text.substr(0, mostShown)) + "\" in place of " + std::string(wanted));
}

}  // namespace

void ReadSheetPart(PartStream part, std::vector<SharedText> const & texts, bool from1904, Sheet & sheet, UnkeptList & unkept)
{
  SheetHandler handler(texts, from1904, sheet, unkept);
  ReadXml(std::move(part), handler);
  if (!handler.HasSheet()) throw BookFailure("The part of the sheet \"" + sheet.name + "\" holds something else");
}

}  // namespace embedded
