// Metafiles: the bytes of a whole one in memory, its headers, and the walk through its records.

#include <zpbase/platform/metafile.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <zpbase/platform/bytes.h>
#include <zpbase/platform/file.h>
#include <zpbase/platform/host_calls.h>
#include <zpbase/platform/paths.h>

// Offset, width and meaning in the file, numbers little-endian. A placeable metafile begins with
//    0  4  the key 9AC6CDD7
//    4  2  0
//    6  8  left, top, right and bottom of its bounds, signed
//   14  2  logical units per inch
//   16  4  0
//   20  2  exclusive or of the ten words before; nobody relies on it
// Then, or from offset 0, stands the header
//    0  2  type, 1 or 2
//    2  2  words of this header, 9
//    4  2  version, 0x100 or 0x300
//    6  4  words of the metafile
//   10  2  objects
//   12  4  words of the longest record
//   16  2  0
// and then the records, each of its words as a double word, its kind as a word, and parameters.
struct HMETAFILE__ {
  std::vector<BYTE> bytes;
  size_t header;  // where it stands
};

namespace {

constexpr DWORD placeableKey = 0x9AC6CDD7;
constexpr size_t placeableSize = 22;
constexpr size_t headerSize = 18;
constexpr size_t recordHeadSize = 6;
constexpr DWORD recordHeadWords = 3;

bool isPlaceable(std::span<BYTE const> bytes)
{
  return bytes.size() >= placeableSize && zp::ReadLittle<DWORD>(bytes.data()) == placeableKey;
}

// Behind a key the header may say what it likes; without one its type and version are all there is to know a metafile by.
bool isHeader(BYTE const * header)
{
  WORD const type = zp::ReadLittle<WORD>(header);
  WORD const version = zp::ReadLittle<WORD>(header + 4);
  return (type == 1 || type == 2) && (version == 0x100 || version == 0x300);
}

// Where the header stands in bytes that begin as a metafile, or -1.
int headerOffset(std::span<BYTE const> bytes)
{
  bool const placeable = isPlaceable(bytes);
  size_t const header = placeable ? placeableSize : 0;
  bool const isKnown = bytes.size() >= header + headerSize && (placeable || isHeader(bytes.data()));
  return isKnown ? static_cast<int>(header) : -1;
}

HMETAFILE makeMetaFile(std::vector<BYTE> bytes)
{
  int const header = headerOffset(bytes);
  return header >= 0 ? new HMETAFILE__{std::move(bytes), static_cast<size_t>(header)} : nullptr;
}

// The bytes of a file that begins as a metafile. Its head is looked at before there is room for the rest.
std::vector<BYTE> bytesOf(CFile & file)
{
  BYTE head[placeableSize + headerSize];
  UINT const got = file.Read(head, sizeof head);
  ULONGLONG const length = file.GetLength();
  if (headerOffset({head, got}) < 0 || length > std::numeric_limits<LONG>::max()) return {};
  std::vector<BYTE> bytes(static_cast<size_t>(length));
  file.SeekToBegin();
  bytes.resize(file.Read(bytes.data(), static_cast<UINT>(length)));
  return bytes;
}

// The open of a pipe would wait for a writer.
bool isRegularFile(char const * path)
{
  std::string hostPath;
  zp::HostStatus status;
  return ToHostPath(path, hostPath) && zp::GetHostCalls().GetStatusOf(hostPath.c_str(), status) == 0 &&
         status.kind == zp::HostStatus::File;
}

METAHEADER headerAt(BYTE const * bytes)
{
  METAHEADER header;
  header.mtType = zp::ReadLittle<WORD>(bytes);
  header.mtHeaderSize = zp::ReadLittle<WORD>(bytes + 2);
  header.mtVersion = zp::ReadLittle<WORD>(bytes + 4);
  header.mtSize = zp::ReadLittle<DWORD>(bytes + 6);
  header.mtNoObjects = zp::ReadLittle<WORD>(bytes + 10);
  header.mtMaxRecord = zp::ReadLittle<DWORD>(bytes + 12);
  header.mtNoParameters = zp::ReadLittle<WORD>(bytes + 16);
  return header;
}

// A record's bytes where a METARECORD may stand, with at least as many of them as one has.
class RecordCopy {
 public:
  METARECORD * Take(BYTE const * bytes, size_t size)
  {
    size_t const doubleWords = std::max(sizeof(METARECORD), size + sizeof(DWORD) - 1) / sizeof(DWORD);
    if (m_Room.size() < doubleWords) m_Room.resize(doubleWords);
    std::memcpy(m_Room.data(), bytes, size);
    return reinterpret_cast<METARECORD *>(m_Room.data());
  }

 private:
  std::vector<DWORD> m_Room;
};

}  // namespace

HMETAFILE GetMetaFile(char const * path)
{
  try {
    CFile file;
    if (!isRegularFile(path) || !file.Open(path, CFile::modeRead | CFile::shareDenyWrite)) return nullptr;
    return makeMetaFile(bytesOf(file));
  } catch (CFileException * problem) {
    zp::ExceptionGuard const guard(problem);
    return nullptr;
  }
}

HMETAFILE SetMetaFileBitsEx(UINT count, BYTE const * data)
{
  return makeMetaFile(std::vector<BYTE>(data, data + count));
}

BOOL DeleteMetaFile(HMETAFILE metafile)
{
  std::unique_ptr<HMETAFILE__> const owned(metafile);
  return owned != nullptr;
}

BOOL EnumMetaFile(HDC dc, HMETAFILE metafile, MFENUMPROC proc, LPARAM user)
{
  if (metafile == nullptr) return FALSE;
  std::span<BYTE const> rest(metafile->bytes);
  rest = rest.subspan(metafile->header + headerSize);
  HANDLETABLE none{};
  RecordCopy record;
  while (rest.size() >= recordHeadSize) {
    DWORD const words = zp::ReadLittle<DWORD>(rest.data());
    WORD const function = zp::ReadLittle<WORD>(rest.data() + sizeof words);
    if (function == META_EOF) return TRUE;
    if (words < recordHeadWords || words > rest.size() / sizeof(WORD)) return FALSE;
    size_t const size = words * sizeof(WORD);
    if (proc(dc, &none, record.Take(rest.data(), size), 0, user) == 0) return FALSE;
    rest = rest.subspan(size);
  }
  return rest.empty();
}

namespace zp {

MetaFileFacts GetMetaFileFacts(HMETAFILE metafile)
{
  MetaFileFacts facts{};
  if (metafile == nullptr) return facts;
  BYTE const * const bytes = metafile->bytes.data();
  facts.placeable = metafile->header != 0;
  if (facts.placeable) {
    facts.bounds = {ReadLittle<int16_t>(bytes + 6), ReadLittle<int16_t>(bytes + 8), ReadLittle<int16_t>(bytes + 10),
                    ReadLittle<int16_t>(bytes + 12)};
    facts.unitsPerInch = ReadLittle<WORD>(bytes + 14);
  }
  facts.header = headerAt(bytes + metafile->header);
  return facts;
}

}  // namespace zp
