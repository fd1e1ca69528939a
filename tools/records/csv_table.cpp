// Reading with libcsv, and writing.

#include "tools/records/csv_table.h"

#include <algorithm>
#include <exception>

#include <csv.h>

#include <fmt/format.h>

#include "tools/program.h"
#include "tools/records/table_text.h"

namespace {

using Take = std::function<void(CsvRow const & row)>;

constexpr size_t csvPieceBytes = 0x10000;
constexpr size_t mostRowBytes = 0x400000;   // every column filled as far as a record holds it
constexpr size_t mostHeadBytes = 0x100000;  // of comments and empty lines in front

class CsvReader {
 public:
  CsvReader(std::string const & name, Take const & take) : m_Name(name), m_pfnTake(take)
  {
    if (csv_init(&m_Parser, CSV_STRICT | CSV_STRICT_FINI) != 0) throw std::bad_alloc();
    csv_set_blk_size(&m_Parser, csvPieceBytes);  // by which its field grows
  }
  ~CsvReader() { csv_free(&m_Parser); }
  CsvReader(CsvReader const &) = delete;
  CsvReader & operator=(CsvReader const &) = delete;

  void Read(std::istream & input)
  {
    std::string piece(csvPieceBytes, '\0');
    TableText text(m_Name);
    do {
      input.read(piece.data(), csvPieceBytes);
      std::string_view rest = text.Take({piece.data(), static_cast<size_t>(input.gcount())});
      while (!rest.empty()) {
        std::string_view const line = rest.substr(0, std::min(rest.find('\n'), rest.size() - 1) + 1);
        rest.remove_prefix(line.size());
        TakeLine(line);
      }
    } while (input.gcount() > 0);
    if (csv_fini(&m_Parser, TakeField, TakeRow, this) != 0) Fail();
    if (m_pRaised) std::rethrow_exception(m_pRaised);
  }

 private:
  // A line or a part of one; the parser's calls know by it where they are.
  void TakeLine(std::string_view line)
  {
    if (m_bAtBegin) m_bComment = m_bHead && line.starts_with('#');
    if (m_bHead && !m_bComment && line.find_first_not_of(" \t\r\n") != std::string_view::npos) {
      csv_set_delim(&m_Parser, static_cast<unsigned char>(DelimiterOf(line)));
      m_bHead = false;
    }
    if (m_bHead && (m_nHeadBytes += line.size()) > mostHeadBytes) {
      throw Failure(fmt::format("{}: has more than {} bytes of comments and empty lines in front", m_Name, mostHeadBytes));
    }
    m_bAtBegin = line.ends_with('\n');
    m_nRowBytes += line.size();
    if (!m_bComment && csv_parse(&m_Parser, line.data(), line.size(), TakeField, TakeRow, this) != line.size()) Fail();
    if (m_pRaised) std::rethrow_exception(m_pRaised);
    if (m_bComment && m_bAtBegin) m_nRowBytes = 0;
    if (m_nRowBytes > mostRowBytes) throw Failure(fmt::format("{}: line {}: is longer than any record", m_Name, m_nLine));
    if (m_bAtBegin) ++m_nLine;
  }

  [[noreturn]] void Fail() const
  {
    throw Failure(fmt::format("{}: line {}: a quote stands alone; quote the whole field and double the quotes in it", m_Name,
                              m_Row.fields.empty() ? m_nLine : m_Row.line));
  }

  static void TakeField(void * bytes, size_t count, void * reader)
  {
    CsvReader & self = *static_cast<CsvReader *>(reader);
    self.Keep([&] {
      if (self.m_Row.fields.empty()) {
        self.m_Row.line = self.m_nLine;
        self.m_Row.hasDecimalCommas = csv_get_delim(&self.m_Parser) != ',';
      }
      self.m_Row.fields.emplace_back(static_cast<char const *>(bytes), count);
    });
  }

  static void TakeRow(int, void * reader)
  {
    CsvReader & self = *static_cast<CsvReader *>(reader);
    self.Keep([&] { self.m_pfnTake(self.m_Row); });
    self.m_Row.fields.clear();
    self.m_nRowBytes = 0;
  }

  // What is raised must not pass through the parser.
  template <class Step>
  void Keep(Step const & step)
  {
    if (m_pRaised) return;
    try {
      step();
    } catch (...) {
      m_pRaised = std::current_exception();
    }
  }

  std::string const & m_Name;
  Take const & m_pfnTake;
  csv_parser m_Parser = {};
  size_t m_nLine = 1;
  bool m_bHead = true;  // nothing but comments and empty lines so far
  bool m_bComment = false;
  bool m_bAtBegin = true;  // of a line
  size_t m_nHeadBytes = 0;
  size_t m_nRowBytes = 0;
  CsvRow m_Row = {};
  std::exception_ptr m_pRaised;
};

}  // namespace

void ReadCsv(std::istream & input, std::string const & name, Take const & take)
{
  CsvReader(name, take).Read(input);
}

void AppendCsvLine(std::string & text, std::span<std::string_view const> fields)
{
  for (std::string_view const field : fields) {
    bool const plain =
        std::none_of(field.begin(), field.end(), [](char c) { return c == ',' || c == '"' || c == '\r' || c == '\n'; }) &&
        !field.starts_with(' ') && !field.starts_with('\t') && !field.ends_with(' ') && !field.ends_with('\t');
    if (plain) {
      text += field;
    } else {
      text += '"';
      for (char const c : field) text.append(c == '"' ? 2 : 1, c);
      text += '"';
    }
    text += ',';
  }
  text.back() = '\n';
}
