// Reading an index file through an archive of its own.

#include "tools/store/index_reader.h"

#include <fmt/format.h>
#include <zpbase/platform/archive.h>
#include <zpbase/store.h>

#include "tools/program.h"
#include "tools/records/payload.h"

namespace {

constexpr char const * parts[] = {"the header object", "the table of records", "the list of free blocks"};

class IndexReader {
 public:
  explicit IndexReader(std::string const & bytes)
      : m_Bytes(bytes),
        m_Buffer(bytes.begin(), bytes.end()),
        m_File(m_Buffer.data(), static_cast<UINT>(m_Buffer.size())),
        m_Archive(&m_File, CArchive::load)
  {
  }

  void Read(StoreIndex & index)
  {
    try {
      ReadParts(index);
      size_t const end = GetOffset();
      if (end != m_Bytes.size()) {
        Fail(index, end, fmt::format("{} bytes follow the list of free blocks, from offset {}", m_Bytes.size() - end, end));
      }
    } catch (CArchiveException * caught) {
      zp::ExceptionGuard const guard(caught);
      Explain(index, *caught);
    }
  }

 private:
  size_t GetOffset()
  {
    m_Archive.Flush();
    return static_cast<size_t>(m_File.GetPosition());
  }

  static void Fail(StoreIndex & index, size_t offset, std::string problem)
  {
    index.state = StoreIndex::Damaged;
    index.problemOffset = offset;
    index.problem = std::move(problem);
  }

  void ReadParts(StoreIndex & index)
  {
    index.header.reset(m_Archive.ReadOwnedObject(nullptr));
    index.isHeaderRead = true;
    m_nPart = 1;
    m_nPartStart = GetOffset();
    ReadRecords(index);
    m_nPart = 2;
    m_nPartStart = GetOffset();
    ReadFree(index);
    index.state = StoreIndex::Sound;
  }

  template <class Container>
  std::unique_ptr<Container> ReadTable()
  {
    std::unique_ptr<CObject> object(m_Archive.ReadOwnedObject(RUNTIME_CLASS(Container)));
    if (object == nullptr) AfxThrowArchiveException(CArchiveException::badClass);
    return std::unique_ptr<Container>(static_cast<Container *>(object.release()));
  }

  void ReadRecords(StoreIndex & index)
  {
    auto const table = ReadTable<GPObArray>();
    for (int i = 0; i < table->GetSize(); ++i) {
      auto const & entry = RequireEntry<GPActiveRec>(table->GetAt(i));
      index.live.push_back({entry.m_nFilePos, entry.m_nRecID, entry.m_nRecLen});
    }
  }

  void ReadFree(StoreIndex & index)
  {
    auto const list = ReadTable<GPObList>();
    for (POSITION at = list->GetHeadPosition(); at != nullptr;) {
      auto const & entry = RequireEntry<GPEmptyRec>(list->GetNext(at));
      index.free.push_back({entry.m_nFilePos, entry.m_nBlockSize});
    }
  }

  template <class Entry>
  static Entry const & RequireEntry(CObject const * element)
  {
    bool const isEntry = element != nullptr && element->IsKindOf(RUNTIME_CLASS(Entry));
    if (!isEntry) AfxThrowArchiveException(CArchiveException::badClass);
    return static_cast<Entry const &>(*element);
  }

  // A class that isn't registered here is no damage: the part that names it can't be read, nor what follows.
  void Explain(StoreIndex & index, CArchiveException const & caught)
  {
    size_t const offset = GetOffset();
    auto const * const start = reinterpret_cast<BYTE const *>(m_Bytes.data()) + m_nPartStart;
    std::string const name(NamedClass({start, m_Bytes.size() - m_nPartStart}));
    bool const unknown = caught.m_cause == CArchiveException::badClass && !name.empty() &&
                         CRuntimeClass::FromName(name.c_str(), name.size()) == nullptr;
    if (unknown) {
      index.state = StoreIndex::UnknownClass;
      index.problem = fmt::format("{} at offset {} is of class {}, which isn't known here", parts[m_nPart], m_nPartStart, name);
      return;
    }
    Fail(index, offset, fmt::format("{} can't be read at offset {}: {}", parts[m_nPart], offset, Describe(caught)));
  }

  std::string const & m_Bytes;
  std::vector<BYTE> m_Buffer;
  CMemFile m_File;
  CArchive m_Archive;
  size_t m_nPart = 0;
  size_t m_nPartStart = 0;
};

}  // namespace

StoreIndex ReadIndex(std::string const & name)
{
  StoreIndex index;
  if (!FileExists(name)) return index;
  std::string const bytes = ReadWholeFile(name);
  if (!bytes.empty()) IndexReader(bytes).Read(index);
  return index;
}
