// Numeric text as arrays.

#include <csignal>
#include <limits>
#include <optional>

#include <fmt/format.h>

#include "python/library_call.h"
#include "tools/program.h"
#include "tools/text/line_survey.h"
#include "tools/text/misfit_report.h"

namespace zp::python {

namespace {

// The numbers of a file's numeric lines, row by row.
struct NumberTable {
  std::vector<double> values;
  size_t rows = 0;
  size_t columns = 0;
  std::vector<std::string> heads;  // the cells of the last line in front of the numbers, if that has as many
};

class TableReader {
 public:
  TableReader(TextOptions options, bool skipsBad)
      : m_Options(std::move(options)), m_bSkipsBad(skipsBad), m_Text(m_Options, PassesOf(m_Options))
  {
    m_Text.EndProgress();
  }

  NumberTable Read()
  {
    TextForm const form = FindForm(m_Text, m_Options);
    NumberReader reader(form.decimalComma);
    std::vector<size_t> ends;
    std::vector<double> values;
    TextSurvey const found = SurveyLines(m_Text, form, m_Options, TableShape(), [&](std::vector<Cell> const & cells) {
      for (Cell const & cell : cells) {
        reader.Read(cell);
        values.push_back(reader.IsMissing() ? missing : reader.GetValue());
      }
      ends.push_back(values.size());
    });
    if (found.numeric == 0) throw Failure(WhyNone(m_Text, m_Options, found));
    if (!m_bSkipsBad) RequireWhole(found);
    NumberTable table;
    table.rows = ends.size();
    table.columns = static_cast<size_t>(found.mostValues);
    table.values = found.fewestValues == found.mostValues ? std::move(values) : Filled(values, ends, table.columns);
    FindHeads(table, found.firstNumeric, form.Delimiter());
    return table;
  }

 private:
  static constexpr double missing = std::numeric_limits<double>::quiet_NaN();

  // Lines in front of the numbers are heads.
  void RequireWhole(TextSurvey const & found) const
  {
    if (found.lastOther > found.firstNumeric) {
      for (Misfit const & misfit : found.misfits) {
        if (misfit.line > found.firstNumeric)
          throw Failure(
              fmt::format("{}: line {}, column {}: \"{}\" is no number; skip=..., comment=... or errors=\"skip\" may help",
                          m_Options.Name(), misfit.line, misfit.column, misfit.text));
      }
      throw Failure(
          fmt::format("{}: line {} isn't numeric; errors=\"skip\" leaves such lines out", m_Options.Name(), found.lastOther));
    }
    if (found.fewestValues == found.mostValues) return;
    throw Failure(fmt::format("{}: lines have {} values; errors=\"skip\" fills short ones with NaN at their end",
                              m_Options.Name(), ValueCounts(found)));
  }

  static std::vector<double> Filled(std::vector<double> const & values, std::vector<size_t> const & ends, size_t columns)
  {
    std::vector<double> filled(ends.size() * columns, missing);
    size_t first = 0;
    for (size_t row = 0; row < ends.size(); ++row) {
      std::copy(values.begin() + static_cast<ptrdiff_t>(first), values.begin() + static_cast<ptrdiff_t>(ends[row]),
                filled.begin() + static_cast<ptrdiff_t>(row * columns));
      first = ends[row];
    }
    return filled;
  }

  void FindHeads(NumberTable & table, int firstNumeric, char delimiter)
  {
    std::vector<Cell> cells;
    m_Text.Rewind();
    while (m_Text.Next() && m_Text.GetNumber() < firstNumeric) {
      if (TrimBlanks(m_Text.Get()).empty()) continue;
      CutCells(m_Text.Get(), delimiter, cells);
      table.heads.clear();
      for (Cell const & cell : cells) table.heads.emplace_back(WithoutQuotes(cell.text));
    }
    if (table.heads.size() != table.columns) table.heads.clear();
  }

  TextOptions m_Options;
  bool m_bSkipsBad;
  TextLines m_Text;
};

// Text of a file is UTF-8, else Windows-1252.
py::object headOf(std::string const & head)
{
  PyObject * const text = PyUnicode_DecodeUTF8(head.data(), static_cast<Py_ssize_t>(head.size()), "strict");
  if (text != nullptr) return py::reinterpret_steal<py::str>(text);
  PyErr_Clear();
  return py::bytes(head).attr("decode")("cp1252", "replace");
}

py::dict columnsOf(py::array const & table, std::vector<py::object> const & names)
{
  py::dict columns;
  py::object const byColumn = table.attr("T");
  for (size_t i = 0; i < names.size(); ++i) {
    if (columns.contains(names[i])) throw py::value_error(py::str("two columns are named {!r}").format(names[i]));
    columns[names[i]] = byColumn[py::int_(i)];
  }
  return columns;
}

std::vector<py::object> namesOf(py::object const & names, NumberTable const & table, std::string const & file)
{
  std::vector<py::object> all;
  if (py::isinstance<py::bool_>(names)) {
    if (table.heads.empty())
      throw py::value_error(py::str("{}: no line in front of the numbers has {} names").format(TextOf(file), table.columns));
    for (std::string const & head : table.heads) all.push_back(headOf(head));
    return all;
  }
  for (auto const & name : names) all.push_back(py::reinterpret_borrow<py::object>(name));
  if (all.size() == table.columns) return all;
  throw py::value_error(py::str("{}: has {} columns, and {} names were given").format(TextOf(file), table.columns, all.size()));
}

py::object readColumns(py::object const & path, py::object const & names, int skip, std::string const & delimiter,
                       std::string const & comment, bool decimalComma, std::string const & errors)
{
  if (errors != "raise" && errors != "skip") throw py::value_error("errors is \"raise\" or \"skip\"");
  if (skip < 0) throw py::value_error("skip is 0 or more");
  TextOptions options;
  options.file = HostNameOf(path);
  if (options.file == "-") options.file = "./-";
  options.skip = skip;
  options.delimiter = delimiter;
  options.comment = comment;
  options.decimalComma = decimalComma;
  options.tellsLineEnds = false;
  options.report = INT_MAX;
  PyOS_sighandler_t const handler = PyOS_getsig(SIGINT);
  NumberTable table = InLibrary([&] { return TableReader(options, errors == "skip").Read(); });
  PyOS_setsig(SIGINT, handler);  // as the interpreter sets it: a handler that was put back restarts system calls
  bool const isNamed = !names.is_none() && !(py::isinstance<py::bool_>(names) && !names.cast<bool>());
  std::vector<py::object> const all = isNamed ? namesOf(names, table, options.file) : std::vector<py::object>();
  auto const shape = {static_cast<py::ssize_t>(table.rows), static_cast<py::ssize_t>(table.columns)};
  py::array array = ArrayOf(std::move(table.values), shape);
  return isNamed ? py::object(columnsOf(array, all)) : std::move(array);
}

}  // namespace

void AddColumns(py::module_ & module)
{
  module.def(
      "read_columns", &readColumns, py::arg("path"), py::arg("names") = py::none(), py::kw_only(), py::arg("skip") = 0,
      py::arg("delimiter") = "", py::arg("comment") = "", py::arg("decimal_comma") = false, py::arg("errors") = "raise",
      "The numbers of a text file: an array of lines times columns, NaN in empty cells.\n\n"
      "With names, a sequence, or True for the line in front of the numbers, it is a dict of columns, which share the\n"
      "array's numbers. Lines in front of the first numeric one are heads. skip leaves out the first lines, comment the rest\n"
      "of a line behind that text; delimiter is comma, tab, semicolon, blank or a character, by default the one that makes\n"
      "most lines numeric. Raises ValueError for a line behind the first numeric one that isn't numeric or has fewer values\n"
      "than others; with errors=\"skip\" the one is left out and the other filled with NaN.");
}

}  // namespace zp::python
