// Reading an index file through an archive of its own.

#include "tools/store/index_reader.h"

#include <fmt/format.h>
#include <zpbase/platform/archive.h>
#include <zpbase/platform/archive_parts.h>
#include <zpbase/platform/bytes.h>
#include <zpbase/store.h>

#include "tools/host_file.h"
#include "tools/program.h"
#include "tools/records/payload.h"

namespace {

constexpr char const * parts[] = {"the header object", "the table of records", "the list of free blocks"};

constexpr int archiveBuffer = 0x10000;

class IndexReader {
 public:
  explicit IndexReader(std::string const & bytes)
      : m_Bytes(bytes),
        m_File(reinterpret_cast<BYTE *>(const_cast<char *>(bytes.data())), static_cast<UINT>(bytes.size())),  // only read
        m_Archive(&m_File, CArchive::load, archiveBuffer),
        m_Parts(m_Archive)
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
  static constexpr ULONGLONG tagBytes = 2;

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
    EndPart(index);
    ReadRecords(index);
    EndPart(index);
    ReadFree(index);
    index.partEnds.push_back(GetOffset());
    index.state = StoreIndex::Sound;
  }

  void EndPart(StoreIndex & index)
  {
    ++m_nPart;
    m_nPartStart = GetOffset();
    index.partEnds.push_back(m_nPartStart);
  }

  void ReadRecords(StoreIndex & index)
  {
    index.live.reserve(m_Bytes.size() / (GPActiveRec::streamBytes + tagBytes));
    ReadTable<GPObArray, GPActiveRec>([&](BYTE const * bytes) {
      index.live.push_back({zp::ReadLittle<DWORD>(bytes + GPActiveRec::positionOffset),
                            zp::ReadLittle<short>(bytes + GPActiveRec::idOffset),
                            zp::ReadLittle<WORD>(bytes + GPActiveRec::lengthOffset)});
    });
  }

  void ReadFree(StoreIndex & index)
  {
    ReadTable<GPObList, GPEmptyRec>([&](BYTE const * bytes) {
      index.free.push_back(
          {zp::ReadLittle<DWORD>(bytes + GPEmptyRec::positionOffset), zp::ReadLittle<WORD>(bytes + GPEmptyRec::capacityOffset)});
    });
  }

  // A container of new entries, those of a class that came before in runs.
  template <class Container, class Entry, class Take>
  void ReadTable(Take const & take)
  {
    constexpr size_t entryBytes = Entry::streamBytes;
    RequireClass(RUNTIME_CLASS(Container));
    DWORD count = m_Archive.ReadCount();
    m_Archive.RequireBytes(count * tagBytes);
    while (count > 0) {
      BYTE const * bytes = nullptr;
      size_t const run = m_Parts.ReadRun(RUNTIME_CLASS(Entry), entryBytes, count, bytes);
      for (size_t i = 0; i < run; ++i) take(bytes + i * (entryBytes + tagBytes));
      count -= static_cast<DWORD>(run);
      if (run > 0) continue;
      RequireClass(RUNTIME_CLASS(Entry));
      BYTE single[entryBytes];
      m_Archive.EnsureRead(single, entryBytes);
      take(single);
      --count;
    }
  }

  void RequireClass(CRuntimeClass const * wanted)
  {
    if (m_Parts.ReadClass(nullptr) != wanted) AfxThrowArchiveException(CArchiveException::badClass);
    m_Parts.MapObjects(1);
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
  CMemFile m_File;
  CArchive m_Archive;
  zp::ArchiveParts m_Parts;
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
