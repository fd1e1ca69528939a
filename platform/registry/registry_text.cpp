// Reads and writes the registration-entries form. Its first line is REGEDIT4; a line [HKEY_CURRENT_USER\Software\Name] begins a
// key, and lines of these forms give it values, where @ stands for the name of the key's default value:
//
//   "text"="a quote or a backslash has a backslash before it"
//   "number"=dword:0000002a
//   "block"=hex:61,62,63,00
//   @=hex(2):25,41,25,00
//
// hex is a block of bytes, hex(n) bytes of type n; they go on in the next line after a backslash. ";" begins a comment.

#include "platform/registry/registry_text_internal.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

#include <zpbase/platform/bytes.h>

namespace zp {
namespace {

constexpr std::string_view firstLine = "REGEDIT4";
constexpr std::string_view blanks = " \t\r\n";
constexpr size_t lineWidth = 77;    // columns of a line of bytes before its backslash
constexpr size_t deepestKey = 512;  // levels, the published limit

// Reads one line's text from its start; each take answers whether it found what it was asked for.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : m_Text(text) {}

  size_t GetOffset() const { return m_nOffset; }

  bool Take(std::string_view word)
  {
    if (!m_Text.substr(m_nOffset).starts_with(word)) return false;
    m_nOffset += word.size();
    return true;
  }

  void SkipBlanks()
  {
    while (m_nOffset < m_Text.size() && (m_Text[m_nOffset] == ' ' || m_Text[m_nOffset] == '\t')) ++m_nOffset;
  }

  // The rest of the line holds nothing more; it is taken with its end.
  bool TakeLineEnd()
  {
    SkipBlanks();
    while (Take("\r")) {
    }
    return m_nOffset == m_Text.size() || Take("\n");
  }

  // A text in quotes, which may go over several lines.
  bool TakeQuoted(std::string & content)
  {
    if (!Take("\"")) return false;
    while (m_nOffset < m_Text.size()) {
      char c = m_Text[m_nOffset++];
      if (c == '"') return true;
      if (c == '\\' && m_nOffset < m_Text.size()) c = m_Text[m_nOffset++];
      content += c;
    }
    return false;
  }

  bool TakeHex(size_t mostDigits, DWORD & number)
  {
    char const * const begin = m_Text.data() + m_nOffset;
    char const * const end = begin + std::min(mostDigits, m_Text.size() - m_nOffset);
    auto const read = std::from_chars(begin, end, number, 16);
    if (read.ec != std::errc()) return false;
    m_nOffset += static_cast<size_t>(read.ptr - begin);
    return true;
  }

  // Bytes as two digits with commas between them; a backslash at the end of a line goes on in the next one.
  void TakeBytes(std::string & bytes)
  {
    for (;;) {
      SkipContinuations();
      DWORD byte;
      if (!TakeHex(2, byte)) return;
      bytes += static_cast<char>(byte);
      SkipContinuations();
      if (!Take(",")) return;
    }
  }

 private:
  void SkipContinuations()
  {
    for (;;) {
      SkipBlanks();
      Scanner ahead = *this;
      if (!ahead.Take("\\") || !ahead.TakeLineEnd()) return;
      *this = ahead;
    }
  }

  std::string_view m_Text;
  size_t m_nOffset = 0;
};

// The zero that ends a text in the registry isn't in the file.
bool takeData(Scanner & scan, RegistryLine & line)
{
  if (scan.Take("dword:")) {
    DWORD number;
    if (!scan.TakeHex(8, number)) return false;
    line.type = REG_DWORD;
    line.data.resize(sizeof number);
    WriteLittle(line.data.data(), number);
    return true;
  }
  if (scan.Take("hex")) {
    line.type = REG_BINARY;
    if (scan.Take("(") && (!scan.TakeHex(8, line.type) || !scan.Take(")"))) return false;
    bool const follows = scan.Take(":");
    if (follows) scan.TakeBytes(line.data);
    return follows;
  }
  line.type = REG_SZ;
  bool const quoted = scan.TakeQuoted(line.data);
  line.data += '\0';
  return quoted;
}

void readValueLine(Scanner & scan, RegistryLine & line)
{
  if (!scan.Take("@") && !scan.TakeQuoted(line.name)) return;
  if (!FitsRegistryLine(line.name)) return;
  scan.SkipBlanks();
  if (!scan.Take("=")) return;
  scan.SkipBlanks();
  if (scan.Take("-")) {
    if (scan.TakeLineEnd()) line.kind = RegistryLine::DeleteValue;
  } else if (takeData(scan, line) && scan.TakeLineEnd()) {
    line.kind = RegistryLine::Value;
  }
}

void readKeyLine(std::string_view text, RegistryLine & line)
{
  size_t const close = text.rfind(']');
  if (close == std::string_view::npos || text.find_first_not_of(blanks, close + 1) != std::string_view::npos) return;
  bool const removal = text.starts_with("[-");
  size_t const begin = removal ? 2 : 1;
  std::string_view const path = text.substr(begin, close - begin);
  if (!IsRegistryPath(path)) return;
  line.kind = removal ? RegistryLine::DeleteKey : RegistryLine::Key;
  line.path = path;
}

std::string_view firstLineOf(std::string_view text)
{
  size_t const end = text.find('\n');
  return end == std::string_view::npos ? text : text.substr(0, end + 1);
}

std::string escaped(std::string_view text)
{
  std::string result;
  for (char const c : text) {
    if (c == '"' || c == '\\') result += '\\';
    result += c;
  }
  return result;
}

// Text that the quoted form gives back byte for byte: printable, with one zero, at its end.
bool isPlainText(DWORD type, std::string_view data)
{
  if (type != REG_SZ || data.empty() || data.back() != '\0') return false;
  data.remove_suffix(1);
  return std::none_of(data.begin(), data.end(), [](char c) { return c >= 0 && c < ' ' && c != '\t'; });
}

std::string bytesText(std::string head, std::string_view data, std::string_view lineEnd)
{
  std::string text = std::move(head);
  size_t column = text.size();
  for (size_t i = 0; i < data.size(); ++i) {
    if (column > lineWidth) {
      text.append("\\").append(lineEnd).append("  ");
      column = 2;
    }
    AppendHex(text, data.substr(i, 1));
    if (i + 1 < data.size()) text += ',';
    column += 3;
  }
  return text.append(lineEnd);
}

std::string valueHead(std::string_view name)
{
  return name.empty() ? "@=" : '"' + escaped(name) + "\"=";
}

}  // namespace

bool IsRegistryPath(std::string_view path)
{
  return !path.empty() && path.front() != '\\' && path.back() != '\\' && path.find("\\\\") == std::string_view::npos &&
         std::count(path.begin(), path.end(), '\\') < static_cast<std::ptrdiff_t>(deepestKey) &&
         std::none_of(path.begin(), path.end(), [](char c) { return c >= 0 && c < ' '; });
}

bool IsRegistryText(std::string_view text)
{
  size_t const begin = text.find_first_not_of(blanks);
  if (begin == std::string_view::npos) return true;
  std::string_view const first = firstLineOf(text.substr(begin));
  return first.substr(0, first.find_last_not_of(blanks) + 1) == firstLine;
}

// A value is read on from its first line, since its bytes may fill several.
void WalkRegistryText(std::string_view text, std::function<void(RegistryLine const &)> const & visit)
{
  std::string_view path;
  for (size_t begin = 0; begin < text.size();) {
    RegistryLine line;
    line.begin = begin;
    std::string_view const whole = firstLineOf(text.substr(begin));
    line.end = begin + whole.size();
    line.path = path;
    if (whole.front() == '[') {
      readKeyLine(whole, line);
      path = line.kind == RegistryLine::Key ? line.path : std::string_view();
    } else if ((whole.front() == '"' || whole.front() == '@') && !path.empty()) {
      Scanner scan(text.substr(begin));
      readValueLine(scan, line);
      if (line.kind != RegistryLine::Other) line.end = begin + scan.GetOffset();
    }
    visit(line);
    begin = line.end;
  }
}

std::string RegistryValueText(std::string_view name, DWORD type, std::string_view data, std::string_view lineEnd)
{
  std::string const head = valueHead(name);
  if (isPlainText(type, data)) return head + '"' + escaped(data.substr(0, data.size() - 1)) + '"' + std::string(lineEnd);
  char kind[20] = "hex:";
  if (type == REG_DWORD && data.size() == sizeof(DWORD)) {
    std::snprintf(kind, sizeof kind, "dword:%08x", ReadLittle<DWORD>(data.data()));
    return head + kind + std::string(lineEnd);
  }
  if (type != REG_BINARY) std::snprintf(kind, sizeof kind, "hex(%x):", type);
  return bytesText(head + kind, data, lineEnd);
}

std::string RegistryRemovalText(std::string_view name, std::string_view lineEnd)
{
  return valueHead(name).append("-").append(lineEnd);
}

bool FitsRegistryLine(std::string_view name)
{
  return name.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos;
}

}  // namespace zp
