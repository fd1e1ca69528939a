// Rows of components on their way into a workbook.

#include "tools/sheet/component_sheets.h"

#include <charconv>

#include <fmt/format.h>
#include <zpbase/platform/number_text.h>

#include "tools/program.h"
#include "tools/records/component_columns.h"
#include "tools/sheet/sheet_print.h"
#include "tools/sheet/sheet_writer.h"
#include "tools/sheet/workbook_link.h"

namespace {

constexpr char const * constantsName = "Constants";
constexpr char const * correlationsName = "Correlations";

bool isCorrelation(Column const & column)
{
  return column.meaning != nullptr && (column.meaning->kind == DataKind::Floats || column.meaning->kind == DataKind::Equation);
}

bool isName(Column const & column)
{
  return column.meaning == nullptr || column.name == "name";
}

// "critical temperature [K]", "vapour pressure [Pa] A".
std::string headOf(Column const & column)
{
  if (column.meaning == nullptr) return column.name;
  std::string head = column.meaning->label;
  if (*column.meaning->unit != '\0') head += fmt::format(" [{}]", column.meaning->unit);
  if (!isCorrelation(column)) return head;
  return head + " " + (column.part == equationPart ? "equation" : CoefficientName(column.part));
}

// The table tells a 32-bit number with nine digits; a sheet shows all that it has, so it gets the fewest that tell it.
double shortestOf(std::string_view field)
{
  float held = 0.0F;
  std::from_chars(field.data(), field.data() + field.size(), held);
  char digits[32];
  char const * const end = std::to_chars(digits, digits + sizeof digits, held).ptr;
  double number = 0.0;
  std::from_chars(digits, end, number);
  return number;
}

// Texts stay texts, whatever they look like.
COleVariant valueOf(Column const & column, std::string_view field)
{
  if (field.empty()) return {};
  bool const isWhole = column.meaning == nullptr || column.part == equationPart;
  if (isWhole) return COleVariant(zp::TextToDouble(field));
  bool const isText = column.meaning->kind == DataKind::Text || column.meaning->kind == DataKind::Groups;
  return isText ? TextVariant(field) : COleVariant(shortestOf(field));
}

// One of the sheets: which of the table's columns it has.
class ComponentSheet {
 public:
  ComponentSheet(WorkbookLink & workbook, char const * name, std::vector<Column const *> const & columns, bool ofCorrelations)
      : m_Writer(workbook.AddWorksheet(name))
  {
    std::vector<COleVariant> heads;
    for (size_t i = 0; i < columns.size(); ++i) {
      if (!isName(*columns[i]) && isCorrelation(*columns[i]) != ofCorrelations) continue;
      m_Columns.emplace_back(i, columns[i]);
      heads.push_back(TextVariant(headOf(*columns[i])));
    }
    m_Writer.Add(std::move(heads));
  }

  void Add(std::vector<std::string_view> const & fields)
  {
    std::vector<COleVariant> values;
    values.reserve(m_Columns.size());
    for (auto const & [index, column] : m_Columns) values.push_back(valueOf(*column, fields[index]));
    m_Writer.Add(std::move(values));
  }

  SheetWriter & GetWriter() { return m_Writer; }

 private:
  SheetWriter m_Writer;
  std::vector<std::pair<size_t, Column const *>> m_Columns;
};

}  // namespace

void WriteComponentSheets(ComponentTable const & table, SheetArguments const & where)
{
  SpreadsheetLink link(where.server);
  if (where.drop) link.AllowLoss();
  SheetPrints former;
  auto const written = [&] {
    WorkbookLink workbook(link, where.book, WorkbookLink::Source::FileOrNew);
    former = PrintSheets(workbook);
    // New sheets come in front.
    ComponentSheet correlations(workbook, correlationsName, table.GetColumns(), true);
    ComponentSheet constants(workbook, constantsName, table.GetColumns(), false);
    table.ForEachRow([&](std::vector<std::string_view> const & fields) {
      constants.Add(fields);
      correlations.Add(fields);
    });
    constants.GetWriter().Finish();
    correlations.GetWriter().Finish();
    workbook.Save();
    return std::pair(constants.GetWriter(), correlations.GetWriter());
  }();
  WorkbookLink saved(link, where.book, WorkbookLink::Source::File);
  RequireSaved(saved, {{constantsName, written.first.GetPrint()}, {correlationsName, written.second.GetPrint()}}, former);
  PrintShown(fmt::format("{} in the new sheets \"{}\" and \"{}\" of {}\n",
                         Counted(static_cast<unsigned>(written.first.CountRows() - 1), "component"), constantsName,
                         correlationsName, where.book));
}
