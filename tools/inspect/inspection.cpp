// One file after the other past those that know a kind.

#include "tools/inspect/inspection.h"

#include <algorithm>
#include <new>

#include <fmt/format.h>
#include <zpbase/platform/exceptions.h>

#include "tools/host_file.h"
#include "tools/program.h"
#include "tools/records/message_catcher.h"
#include "tools/shown_text.h"
#include "tools/text_marks.h"

namespace {

constexpr size_t mostFaults = 10;  // that are told of one file

// Those with a mark of their own first; then what is told by the name and proved by the content; then by the content alone.
constexpr Recogniser recognisers[] = {IsHive,    IsMetafile, IsWorkbook, IsDrawing,    IsStoreByName, IsIndexFile,
                                      IsArchive, IsText,     IsReport,   IsRecordFile, IsObjectFile};

struct Mark {
  std::string_view bytes;
  char const * kind;
};

constexpr std::string_view operator""_b(char const * text, size_t length)
{
  return {text, length};
}

// Files of others, by their first bytes.
constexpr Mark kindMarks[] = {
    {"\x89PNG", "a PNG picture"},
    {"\xFF\xD8\xFF", "a JPEG picture"},
    {"GIF8", "a GIF picture"},
    {"%PDF", "a PDF document"},
    {"PK\x03\x04", "a zip archive that holds no workbook"},
    {"\x1F\x8B", "a gzip archive"},
    {"\xD0\xCF\x11\xE0", "a compound document of an office, such as an old workbook (.xls)"},
    {"\x7F"
     "ELF",
     "a program or library"},
    {"SQLite format 3", "an SQLite database"},
    {wideMark, "text in UTF-16; iconv -f UTF-16 -t WINDOWS-1252 makes it readable here"},
    {turnedWideMark, "text in UTF-16; iconv -f UTF-16 -t WINDOWS-1252 makes it readable here"},
    {"\x01\x00\x00\x00\x6C\x00\x00\x00"_b, "an enhanced metafile (EMF); zp dxf reads Windows metafiles (WMF)"},
    {"regf", "a binary registry hive of Windows; export it as Win9x/NT4 registration entries"},
};

bool isTextCharacter(char c)
{
  constexpr std::string_view allowed = "\t\n\v\f\r\x1A\x1B";
  return (static_cast<unsigned char>(c) >= ' ' && c != '\x7F') || allowed.find(c) != std::string_view::npos;
}

bool isText(std::string_view head)
{
  return !HasWideMark(head) && std::ranges::all_of(head, isTextCharacter);
}

void tellUnknown(InspectedFile const & file, Inspection & found)
{
  found.kind = "no file of a kind known here";
  for (Mark const & mark : kindMarks) {
    if (!file.GetHead().starts_with(mark.bytes)) continue;
    found.kind = mark.kind;
    found.isNot.clear();
    break;
  }
  if (file.WantsParts()) found.AddPart(found.bytes, "bytes of no known kind");
}

void look(std::string const & name, bool wantsParts, Inspection & found)
{
  InspectedFile file(name, wantsParts);
  found.bytes = file.GetSize();
  for (Recogniser const isKnown : recognisers) {
    if (!isKnown(file, found)) continue;
    found.isNot.clear();
    break;
  }
  if (found.kind.empty()) tellUnknown(file, found);
}

// The name as a shell takes it; one that can't be shown as it is, in the form with escapes.
std::string shellWordOf(std::string const & name)
{
  constexpr std::string_view plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_./+-,@:";
  bool const isOption = name.starts_with('-');
  if (name.find_first_not_of(plain) == std::string::npos && !isOption) return name;
  bool const hasEscapes = Visible(name) != name;
  std::string word = std::string(isOption ? "./" : "") + (hasEscapes ? "$'" : "'");
  for (char const c : name) {
    if (hasEscapes && (c == '\'' || c == '\\'))
      word += std::string("\\") + c;
    else if (hasEscapes && (static_cast<unsigned char>(c) < ' ' || c == '\x7F'))
      word += fmt::format("\\x{:02X}", c);
    else
      word += c == '\'' ? "'\\''" : std::string(1, c);
  }
  return word + "'";
}

}  // namespace

void Inspection::AddFault(std::string fault)
{
  if (faultCount++ < mostFaults) faults.push_back(std::move(fault));
}

unsigned long long Inspection::GetEnd() const
{
  return parts.empty() ? 0 : parts.back().offset + parts.back().length;
}

void Inspection::AddPart(unsigned long long length, std::string what)
{
  if (length > 0) parts.push_back({GetEnd(), length, std::move(what)});
}

void Inspection::GoOn(std::string_view command)
{
  std::string const word = shellWordOf(file);
  std::string line;
  for (char const c : command) line += c == '%' ? word : std::string(1, c);
  next.push_back(std::move(line));
}

InspectedFile::InspectedFile(std::string const & name, bool wantsParts) : m_strName(name), m_bParts(wantsParts)
{
  CFileException problem;
  if (!m_File.Open(InsidePath(name), CFile::modeRead | CFile::shareDenyNone, &problem)) FailOpening(name, nullptr, problem);
  m_nSize = m_File.GetLength();
  m_Head = Read(0, headBytes);
  m_bText = isText(m_Head);
}

std::string InspectedFile::Read(unsigned long long position, size_t count) const
{
  std::string bytes(static_cast<size_t>(std::min<unsigned long long>(count, m_nSize - std::min(position, m_nSize))), '\0');
  bytes.resize(m_File.ReadAt(position, bytes.data(), static_cast<UINT>(bytes.size())));
  return bytes;
}

std::string const & InspectedFile::GetBytes()
{
  if (m_Bytes.size() < m_nSize) m_Bytes = Read(0, static_cast<size_t>(std::min(m_nSize, mostBytes)));
  return m_Bytes;
}

Inspection InspectFile(std::string const & name, bool wantsParts)
{
  Inspection found;
  found.file = name;
  MessageCatcher const catcher;
  try {
    auto const status = StatusOf(name);
    if (!status)
      throw Failure(fmt::format("{}: there is no such file{}", name, IsLink(name) ? ", for the link leads nowhere" : ""));
    if (status->kind == zp::HostStatus::File)
      look(name, wantsParts, found);
    else
      found.kind = status->kind == zp::HostStatus::Folder ? "folder; -r looks at what is in it"
                                                          : "pipe, socket or device, which isn't opened";
  } catch (Failure const & failure) {
    found.AddFault(failure.what());
  } catch (CException * caught) {
    zp::ExceptionGuard const guard(caught);
    found.AddFault(Describe(*caught));
  }
  if (found.kind.empty()) found.kind = "file that can't be looked at";
  if (wantsParts && found.GetEnd() < found.bytes) found.AddPart(found.bytes - found.GetEnd(), "unreadable");
  return found;
}
