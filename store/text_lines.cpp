// GPFile as a text file: lines end in CR LF when written; when read, CR and NUL end a line.

#include <zpbase/store.h>

#include <algorithm>
#include <new>

#include <zpbase/config.h>
#include <zpbase/platform/resources.h>

namespace {

constexpr int maxLine = 2000;       // characters; a longer line comes in pieces
constexpr UINT chunkSize = 0x8000;  // bytes fetched at a time
constexpr int endOfFile = -1;

// The string resource, or its number where it has no text.
CString textOf(unsigned int id)
{
  CString text;
  if (text.LoadString(id) == 0) text.Format("%u", id);
  return text;
}

}  // namespace

GPFile::ScanGuard::ScanGuard(GPFile & file) : m_File(file), m_bWasOpen(file.IsOpen()), m_nFlags(file.m_nOpenFlags)
{
  if (!m_bWasOpen) return;
  m_nPosition = file.GetPosition();
  file.Close();
}

GPFile::ScanGuard::~ScanGuard()
{
  if (m_File.IsOpen()) m_File.Abort();  // the scan raised
  if (!m_bWasOpen) return;
  try {
    if (m_File.Open(m_nFlags & ~unsigned{modeCreate})) m_File.CFile::Seek(static_cast<LONGLONG>(m_nPosition), begin);
  } catch (std::bad_alloc const &) {
    m_File.CFile::Abort();  // it stays closed
  }
}

int GPFile::Write(CString const & text)
{
  Write(text.GetString(), static_cast<UINT>(text.GetLength()));
  return m_bWriteOK;
}

int GPFile::Write(unsigned int id)
{
  return Write(textOf(id));
}

int GPFile::WriteArgPtr(char const * format, va_list args)
{
  CString text;
  text.FormatV(format, args);
  return Write(text);
}

int GPFile::Writef(char const * format, ...)
{
  va_list args;
  va_start(args, format);
  int const written = WriteArgPtr(format, args);
  va_end(args);
  return written;
}

int GPFile::WritefLine(char const * format, ...)
{
  va_list args;
  va_start(args, format);
  int const written = WriteArgPtr(format, args);
  va_end(args);
  return written && WriteLine() ? 1 : 0;
}

int GPFile::WritefLine(unsigned int id, ...)
{
  CString const format = textOf(id);
  va_list args;
  va_start(args, id);
  int const written = WriteArgPtr(format, args);
  va_end(args);
  return written && WriteLine() ? 1 : 0;
}

int GPFile::WritefLine(unsigned int id, std::initializer_list<zp::FormatArg> args)
{
  return WriteLine(zp::FormatResource(id, args));
}

int GPFile::WriteLine(CString const & text)
{
  return Write(text) ? WriteLine() : 0;
}

int GPFile::WriteLine(unsigned int id)
{
  return Write(id) ? WriteLine() : 0;
}

int GPFile::WriteLine()
{
  return Write(CString(GetCRLFString()));
}

int GPFile::WriteFormFeed()
{
  return Write(CString("\x0C"));
}

int GPFile::WriteEndOfFile()
{
  return Write(CString("\x1A"));
}

// The bytes at position, empty at the end of the file.
std::string_view GPFile::FetchChunk(ULONGLONG position)
{
  if (position < m_nChunkStart || position >= m_nChunkStart + m_nChunkSize) {
    m_nChunkSize = 0;  // a read that raises leaves nothing
    m_Chunk.resize(chunkSize);
    m_nChunkStart = position;
    m_nChunkChanges = m_nChanges;
    m_nChunkSize = ReadAt(position, m_Chunk.data(), chunkSize);
  }
  return std::string_view(m_Chunk).substr(0, m_nChunkSize).substr(static_cast<size_t>(position - m_nChunkStart));
}

// Bytes fetched for an earlier line serve as long as nothing can have changed them.
int GPFile::ReadLine(CString & line)
{
  if (m_bDuplicated || m_nChunkChanges != m_nChanges) m_nChunkSize = 0;
  std::string text;
  ULONGLONG position = GetPosition();
  std::string_view ahead;
  auto const nextByte = [&] {
    if (ahead.empty()) ahead = FetchChunk(position);
    if (ahead.empty()) return endOfFile;
    auto const byte = static_cast<BYTE>(ahead.front());
    ahead.remove_prefix(1);
    ++position;
    return static_cast<int>(byte);
  };
  bool ended = false;
  while (!ended && text.size() < maxLine) {
    int const byte = nextByte();
    ended = byte == endOfFile || byte == '\r' || byte == '\0';
    if (byte == endOfFile && text.empty()) {
      CFile::Seek(static_cast<LONGLONG>(position), begin);
      line.Empty();
      return -1;
    }
    if (!ended && byte != '\n' && byte != 0x1A) text += static_cast<char>(byte);
  }
  CFile::Seek(static_cast<LONGLONG>(position), begin);
  line = CString(std::move(text));
  return line.GetLength();
}

int GPFile::GetLineCount()
{
  ScanGuard const guard(*this);
  if (!m_bExists) return -1;
  Open(modeRead);
  int count = 0;
  for (CString line; ReadLine(line) != -1;) ++count;
  Close();
  return count;
}
