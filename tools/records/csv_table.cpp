// Reading with libcsv, and writing.

#include "tools/records/csv_table.h"

#include <algorithm>

#include <csv.h>

#include <fmt/format.h>

#include "tools/program.h"

namespace {

class CsvReader {
 public:
  explicit CsvReader(std::string const & name) : m_Name(name)
  {
    if (csv_init(&m_Parser, CSV_STRICT | CSV_STRICT_FINI) != 0) throw std::bad_alloc();
  }
  ~CsvReader() { csv_free(&m_Parser); }
  CsvReader(CsvReader const &) = delete;
  CsvReader & operator=(CsvReader const &) = delete;

  // Line by line, so that the parser's calls know where they are.
  std::vector<CsvRow> Read(std::string_view text)
  {
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    for (bool head = true; !text.empty(); ++m_nLine) {
      std::string_view const line = text.substr(0, std::min(text.find('\n'), text.size() - 1) + 1);
      text.remove_prefix(line.size());
      head = head && line.starts_with('#');
      if (!head && csv_parse(&m_Parser, line.data(), line.size(), TakeField, TakeRow, this) != line.size()) Fail();
    }
    if (csv_fini(&m_Parser, TakeField, TakeRow, this) != 0) Fail();
    return std::move(m_Rows);
  }

 private:
  [[noreturn]] void Fail() const
  {
    throw Failure(fmt::format("{}: line {}: a quote stands alone; quote the whole field and double the quotes in it", m_Name,
                              m_Row.fields.empty() ? m_nLine : m_Row.line));
  }

  static void TakeField(void * bytes, size_t count, void * reader)
  {
    CsvReader & self = *static_cast<CsvReader *>(reader);
    if (self.m_Row.fields.empty()) self.m_Row.line = self.m_nLine;
    self.m_Row.fields.emplace_back(static_cast<char const *>(bytes), count);
  }

  static void TakeRow(int, void * reader)
  {
    CsvReader & self = *static_cast<CsvReader *>(reader);
    self.m_Rows.push_back(std::move(self.m_Row));
    self.m_Row = {};
  }

  std::string const & m_Name;
  csv_parser m_Parser = {};
  size_t m_nLine = 1;
  CsvRow m_Row = {};
  std::vector<CsvRow> m_Rows;
};

}  // namespace

std::vector<CsvRow> ReadCsv(std::string_view text, std::string const & name)
{
  return CsvReader(name).Read(text);
}

std::string CsvLine(std::span<std::string_view const> fields)
{
  std::string line;
  for (std::string_view const field : fields) {
    bool const plain =
        std::none_of(field.begin(), field.end(), [](char c) { return c == ',' || c == '"' || c == '\r' || c == '\n'; }) &&
        !field.starts_with(' ') && !field.starts_with('\t') && !field.ends_with(' ') && !field.ends_with('\t');
    if (plain) {
      line += field;
    } else {
      line += '"';
      for (char const c : field) line.append(c == '"' ? 2 : 1, c);
      line += '"';
    }
    line += ',';
  }
  line.back() = '\n';
  return line;
}
