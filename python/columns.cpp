// Numeric text as arrays.

#include <algorithm>
#include <climits>
#include <csignal>
#include <limits>

#include <unistd.h>

#include <fmt/format.h>
#include <pybind11/stl.h>

#include "python/library_call.h"
#include "tools/interrupt_guard.h"
#include "tools/program.h"
#include "tools/text/cell_text.h"
#include "tools/text/misfit_report.h"
#include "tools/text/table_shape.h"

namespace zp::python {

namespace {

// The cells of a file's numeric lines.
struct ReadTable {
  size_t rows = 0;
  size_t columns = 0;
  std::vector<double> values;                   // row by row, NaN for cells of texts
  std::vector<std::vector<std::string>> texts;  // of the columns that hold any, else none
  std::vector<std::string> heads;               // of the line in front of the numbers, if it has as many
};

class TableReader {
 public:
  TableReader(TextOptions options, bool takesTexts, bool skipsBad)
      : m_Options(std::move(options)), m_bTakesTexts(takesTexts), m_bSkipsBad(skipsBad), m_Text(m_Options, PassesOf(m_Options))
  {
  }

  ReadTable Read()
  {
    TextForm const form = FindForm(m_Text, m_Options);
    TableShape shape = FindShape(m_Text, form, m_Options);
    if (!m_bTakesTexts) RefuseTexts(shape);
    m_Table.texts.resize(shape.texts.size());
    NumberReader numbers(form.decimalComma, m_Options.missing);
    TextSurvey const found =
        SurveyLines(m_Text, form, m_Options, shape, [&](std::vector<Cell> const & cells) { Take(cells, shape, numbers); });
    if (found.numeric == 0) throw Failure(WhyNone(m_Text, m_Options, found));
    if (!m_bSkipsBad) RequireWhole(found, shape.headLine);
    m_Table.rows = m_Ends.size();
    m_Table.columns = static_cast<size_t>(found.mostValues);
    if (found.fewestValues != found.mostValues) FillUp();
    m_Table.heads = shape.head.empty() ? LineAbove(found.firstNumeric, form.Delimiter()) : std::move(shape.head);
    if (m_Table.heads.size() != m_Table.columns) m_Table.heads.clear();
    return std::move(m_Table);
  }

 private:
  static constexpr double missing = std::numeric_limits<double>::quiet_NaN();

  // Lines that have them are bad ones.
  void RefuseTexts(TableShape & shape) const
  {
    auto const text = std::find(shape.texts.begin(), shape.texts.end(), true);
    if (text != shape.texts.end() && !m_bSkipsBad)
      throw Failure(fmt::format("{}: column {} holds texts; with names=True or names of your own each column comes apart",
                                m_Options.Name(), text - shape.texts.begin() + 1));
    shape.texts.clear();
  }

  void Take(std::vector<Cell> const & cells, TableShape const & shape, NumberReader & numbers)
  {
    for (size_t i = 0; i < cells.size(); ++i) {
      bool const isText = shape.IsText(i);
      if (isText) {
        m_Table.texts[i].resize(m_Ends.size());
        m_Table.texts[i].push_back(CellText(cells[i]));
      } else {
        numbers.Read(cells[i]);
      }
      m_Table.values.push_back(isText || numbers.IsMissing() ? missing : numbers.GetValue());
    }
    m_Ends.push_back(m_Table.values.size());
  }

  // Lines in front of the numbers are heads, but for those that have a number first or stand below a head of the columns.
  void RequireWhole(TextSurvey const & found, int headLine) const
  {
    for (Misfit const & misfit : found.misfits) {
      bool const isBelowHead = headLine > 0 && misfit.line > headLine;
      if (misfit.isBehindNumber || isBelowHead || misfit.line > found.firstNumeric)
        throw Failure(
            fmt::format("{}: line {}, column {}: \"{}\" is no number; skip=..., comment=... or errors=\"skip\" may help",
                        m_Options.Name(), misfit.line, misfit.column, InUtf8(misfit.text)));
    }
    if (found.lastOther > found.firstNumeric)
      throw Failure(
          fmt::format("{}: line {} isn't numeric; errors=\"skip\" leaves such lines out", m_Options.Name(), found.lastOther));
    if (found.fewestValues == found.mostValues) return;
    throw Failure(fmt::format("{}: lines have {} values; errors=\"skip\" fills short ones with NaN at their end",
                              m_Options.Name(), ValueCounts(found)));
  }

  void FillUp()
  {
    std::vector<double> filled(m_Table.rows * m_Table.columns, missing);
    auto begin = m_Table.values.cbegin();
    for (size_t row = 0; row < m_Table.rows; ++row) {
      auto const end = m_Table.values.cbegin() + static_cast<ptrdiff_t>(m_Ends[row]);
      std::copy(begin, end, filled.begin() + static_cast<ptrdiff_t>(row * m_Table.columns));
      begin = end;
    }
    m_Table.values = std::move(filled);
    for (std::vector<std::string> & column : m_Table.texts) column.resize(column.empty() ? 0 : m_Table.rows);
  }

  // The cells of the last line in front of the numbers, without a mark of comments.
  std::vector<std::string> LineAbove(int firstNumeric, char delimiter)
  {
    std::vector<std::string> texts;
    std::vector<Cell> cells;
    m_Text.Rewind();
    while (m_Text.Next() && m_Text.GetNumber() < firstNumeric) {
      std::string_view const line = TrimBlanks(m_Text.Get());
      if (line.empty()) continue;
      size_t const begin = std::min(line.find_first_not_of("#%!"), line.size());
      CutCells(begin > 0 ? TrimBlanks(line.substr(begin)) : m_Text.Get(), delimiter, cells);
      texts.clear();
      for (Cell const & cell : cells) texts.push_back(CellText(cell));
    }
    return texts;
  }

  TextOptions m_Options;
  bool m_bTakesTexts;
  bool m_bSkipsBad;
  TextLines m_Text;
  ReadTable m_Table;
  std::vector<size_t> m_Ends;  // of the lines' values
};

// Names given, or those of the heads.
std::vector<py::object> namesOf(py::object const & names, ReadTable const & table, std::string const & file)
{
  std::vector<py::object> all;
  if (py::isinstance<py::bool_>(names)) {
    if (table.heads.empty()) throw Failure(fmt::format("{}: no line in front of the numbers has {} names", file, table.columns));
    for (std::string const & head : table.heads) all.push_back(TextOf(head));
    return all;
  }
  for (auto const & name : names) all.push_back(py::reinterpret_borrow<py::object>(name));
  if (all.size() == table.columns) return all;
  throw Failure(fmt::format("{}: has {} columns, and {} names were given", file, table.columns, all.size()));
}

py::object textsOf(std::vector<std::string> const & column)
{
  py::list texts;
  for (std::string const & text : column) texts.append(TextOf(text));
  return py::module_::import("numpy").attr("array")(texts, py::arg("dtype") = "object");
}

py::dict columnsOf(ReadTable const & table, py::array const & numbers, std::vector<py::object> const & names)
{
  py::dict columns;
  py::object const byColumn = numbers.attr("T");
  for (size_t i = 0; i < names.size(); ++i) {
    if (columns.contains(names[i])) throw py::value_error(py::str("two columns are named {!r}").format(names[i]));
    bool const isText = i < table.texts.size() && !table.texts[i].empty();
    columns[names[i]] = isText ? textsOf(table.texts[i]) : byColumn[py::int_(i)];
  }
  return columns;
}

TextOptions optionsFor(py::object const & path, int skip, std::string const & delimiter, std::string const & comment,
                       bool decimalComma, std::vector<std::string> const & missing)
{
  if (skip < 0) throw py::value_error("skip is 0 or more");
  TextOptions options;
  options.file = HostNameOf(path);
  if (options.file == "-") options.file = "./-";
  options.skip = skip;
  options.delimiter = delimiter;
  options.comment = comment;
  options.decimalComma = decimalComma;
  options.missing = missing;
  options.tellsLineEnds = false;
  options.report = INT_MAX;
  return options;
}

// Gives signals back to Python, whose handlers a read replaces for a moment: one at a time, so it lives in the library.
class InterruptsBack {
 public:
  InterruptsBack() = default;
  ~InterruptsBack()
  {
    InterruptGuard::Forget([](int signal) { kill(getpid(), signal); });  // for the main thread, which may wait for others
  }
  InterruptsBack(InterruptsBack const &) = delete;
  InterruptsBack & operator=(InterruptsBack const &) = delete;
};

// A read that Ctrl-C has broken off begins anew unless Python's handler raises an exception here.
ReadTable readTable(TextOptions const & options, bool takesTexts, bool skipsBad)
{
  for (;;) {
    try {
      return InLibrary([&] {
        InterruptsBack const guard;
        return TableReader(options, takesTexts, skipsBad).Read();
      });
    } catch (Failure const & failure) {
      if (failure.GetStatus() != exitInterrupted) throw;
    }
    if (PyErr_CheckSignals() != 0) throw py::error_already_set();
  }
}

py::object readColumns(py::object const & path, py::object const & names, int skip, std::string const & delimiter,
                       std::string const & comment, bool decimalComma, std::vector<std::string> const & missing,
                       std::string const & errors)
{
  if (errors != "raise" && errors != "skip") throw py::value_error("errors is \"raise\" or \"skip\"");
  TextOptions const options = optionsFor(path, skip, delimiter, comment, decimalComma, missing);
  bool const isNamed = !names.is_none() && !(py::isinstance<py::bool_>(names) && !names.cast<bool>());
  ReadTable table = readTable(options, isNamed, errors == "skip");
  std::vector<py::object> const all = isNamed ? namesOf(names, table, options.file) : std::vector<py::object>();
  auto const shape = {static_cast<py::ssize_t>(table.rows), static_cast<py::ssize_t>(table.columns)};
  py::array array = ArrayOf(std::move(table.values), shape);
  return isNamed ? py::object(columnsOf(table, array, all)) : std::move(array);
}

}  // namespace

void AddColumns(py::module_ & module)
{
  module.def(
      "read_columns", &readColumns, py::arg("path"), py::arg("names") = py::none(), py::kw_only(), py::arg("skip") = 0,
      py::arg("delimiter") = "", py::arg("comment") = "", py::arg("decimal_comma") = false,
      py::arg("missing") = std::vector<std::string>(), py::arg("errors") = "raise",
      "The numbers of a text file: an array of lines times columns, NaN in empty cells.\n\n"
      "With names, a sequence, or True for those in the line in front of the numbers, it is a dict of columns: the array's,\n"
      "and arrays of str for columns of names or dates, which an array of numbers can't have. Above names of rows the name of\n"
      "their column may be left out; it is \"\" then.\n\n"
      "Lines in front of the first numeric one are heads. skip leaves out the first lines, comment the rest of a line behind\n"
      "that text; delimiter is comma, tab, semicolon, blank or a character, by default the one that makes most lines numeric;\n"
      "missing are words of missing values beside NA, nan, NaN and -. Raises ValueError for a line behind the first numeric\n"
      "one that isn't numeric or has fewer values than others; with errors=\"skip\" the one is left out and the other filled\n"
      "with NaN.");
}

}  // namespace zp::python
