// CArchive: object pointers. A pointer is a tag and what the tag calls for:
//
//   0x0000            null
//   0x0001 to 0x7FFE  an object that went through before, by its index
//   0x7FFF            large index: DWORD, an object's, or 0x80000000 ORed with a class's
//   0x8001 to 0xFFFE  a new object of a class that went through before: 0x8000 ORed with the class's index; its own bytes
//   0xFFFF            a new object of a new class: WORD schema, WORD name length, name; then the object's own bytes
//
// A GPObject as an archive's first object: FF FF, 01 00, 08 00, "GPObject". It takes the indexes 1 (class) and 2 (object).

#include <zpbase/platform/archive.h>

#include <algorithm>
#include <atomic>
#include <bit>
#include <iterator>

#include "platform/archive/archive_internal.h"

namespace {

using zp::ArchiveTag;

constexpr size_t maxClassName = 63;

// The one that marks objects, or null.
constinit std::atomic<zp::StoredObjects const *> g_pMarking = nullptr;

bool isClass(zp::LoadedEntry entry)
{
  return (entry & 1) != 0;
}

CRuntimeClass * classOf(zp::LoadedEntry entry)
{
  return reinterpret_cast<CRuntimeClass *>(entry & ~uintptr_t{1});
}

// Counts a level of nesting for as long as it lives.
class Nesting {
 public:
  explicit Nesting(int & depth) : m_nDepth(++depth) {}
  ~Nesting() { --m_nDepth; }
  Nesting(Nesting const &) = delete;
  Nesting & operator=(Nesting const &) = delete;

 private:
  int & m_nDepth;
};

}  // namespace

namespace zp {

void IdentityTable::Grow()
{
  std::vector<Slot> old(m_Slots.empty() ? 16 : 4 * m_Slots.size());
  old.swap(m_Slots);
  m_nShift = 64 - std::countr_zero(m_Slots.size());
  for (Slot const & slot : old)
    if (slot.leaf != nullptr) PlaceOf(slot.region) = slot;
}

IdentityTable::Leaf & IdentityTable::LeafOf(uintptr_t region)
{
  constexpr size_t chunkLeaves = 32;
  if (2 * m_nLeaves >= m_Slots.size()) Grow();
  Slot & slot = PlaceOf(region);
  if (slot.leaf == nullptr) {
    if (m_nLeaves % chunkLeaves == 0) m_Chunks.push_back(std::make_unique<Leaf[]>(chunkLeaves));
    slot = {region, &m_Chunks.back()[m_nLeaves++ % chunkLeaves]};
  }
  return *slot.leaf;
}

void StoredObjects::Decide()
{
  StoredObjects const * nobody = nullptr;
  m_Way = g_pMarking.compare_exchange_strong(nobody, this, std::memory_order_acquire) ? Way::marks : Way::table;
}

StoredObjects::~StoredObjects()
{
  if (m_Way == Way::marks) g_pMarking.store(nullptr, std::memory_order_release);
}

}  // namespace zp

void CArchive::Identities::Enter(CObject * object)
{
  loaded.push_back(reinterpret_cast<zp::LoadedEntry>(object));
  forgotten = SIZE_MAX;
}

void CArchive::Identities::ForgetObjectsFrom(size_t entry)
{
  for (size_t i = entry, end = std::min(loaded.size(), forgotten); i < end; ++i)
    if (!isClass(loaded[i])) loaded[i] = 0;
  forgotten = entry;
}

void CArchive::Identities::AddGap(size_t count)
{
  if (!gaps.empty() && gaps.back().index + gaps.back().count == LoadedCount())
    gaps.back().count += count;
  else
    gaps.push_back({LoadedCount(), count});
  inGaps += count;
}

zp::LoadedEntry CArchive::Identities::At(size_t index) const
{
  size_t before = 0;
  for (Gap const & gap : gaps) {
    if (index < gap.index) break;
    if (index < gap.index + gap.count) return 0;
    before += gap.count;
  }
  return loaded[index - before];
}

void CArchive::WriteClass(CRuntimeClass const * record)
{
  Identities & known = *m_Identities;
  if (known.given >= Identities::maxIndex) Fail(CArchiveException::badIndex);
  DWORD const index = known.IndexOfClass(record);
  if (index > known.given) {
    ++known.given;
    size_t const length = std::strlen(record->m_lpszClassName);
    if (length > maxClassName) Fail(CArchiveException::badClass);
    *this << ArchiveTag::newClass << static_cast<WORD>(record->m_wSchema) << static_cast<WORD>(length);
    Write(record->m_lpszClassName, static_cast<UINT>(length));
  } else if (index < ArchiveTag::big) {
    *this << static_cast<WORD>(ArchiveTag::classBit | index);
  } else {
    *this << ArchiveTag::big << static_cast<DWORD>(ArchiveTag::bigClassBit | index);
  }
  ++known.given;
}

// An object has its index before its bytes are written, so that what it holds can refer back to it: the next one, or the one
// behind that of its class if the class is new.
void CArchive::WriteObject(CObject const * object)
{
  RequireMode(true);
  if (object == nullptr) {
    *this << ArchiveTag::null;
    return;
  }
  Identities & known = *m_Identities;
  CRuntimeClass const * const record = object->GetRuntimeClass();
  DWORD const classIndex = known.IndexOfClass(record);
  DWORD const candidate = std::max(classIndex, known.given) + 1;
  DWORD const index = known.stored.FindOrInsert(object, candidate);
  if (index != candidate) {
    if (index < ArchiveTag::big)
      *this << static_cast<WORD>(index);
    else
      *this << ArchiveTag::big << index;
    return;
  }
  if (record->m_wSchema == 0xFFFF) Fail(CArchiveException::badClass);
  if (m_nDepth >= maxDepth) Fail(CArchiveException::badIndex);
  Nesting const nesting(m_nDepth);
  if (classIndex <= std::min<DWORD>(known.given, ArchiveTag::big - 1) && known.given < Identities::maxIndex) {
    *this << static_cast<WORD>(ArchiveTag::classBit | classIndex);
    ++known.given;
  } else {
    WriteClass(record);
  }
  const_cast<CObject *>(object)->Serialize(*this);
}

CArchive & CArchive::operator<<(CObject const * object)
{
  WriteObject(object);
  return *this;
}

CArchive & CArchive::operator>>(CObject *& object)
{
  object = ReadObject(nullptr);
  return *this;
}

CRuntimeClass * CArchive::ReadNewClass()
{
  WORD schema;
  WORD length;
  *this >> schema >> length;
  RequireBytes(length);
  if (length > maxClassName) Fail(CArchiveException::badClass);
  char name[maxClassName + 1];
  EnsureRead(name, length);
  CRuntimeClass * const record = CRuntimeClass::FromName(name, length);
  if (record == nullptr || record->m_pfnCreateObject == nullptr) Fail(CArchiveException::badClass);
  if (record->m_wSchema != schema) Fail(CArchiveException::badSchema);
  m_Identities->loaded.push_back(reinterpret_cast<zp::LoadedEntry>(record) | 1);
  return record;
}

// The class of the new object that the tag announces; or null, and the index of the object that it refers to, 0 for null.
CRuntimeClass * CArchive::ReadTag(CRuntimeClass const * requested, DWORD & objectIndex)
{
  WORD tag;
  *this >> tag;
  DWORD index = tag & ~ArchiveTag::classBit;
  bool ofClass = (tag & ArchiveTag::classBit) != 0;
  objectIndex = 0;
  CRuntimeClass * record = nullptr;
  if (tag == ArchiveTag::newClass) {
    record = ReadNewClass();
  } else {
    if (tag == ArchiveTag::big) {
      *this >> index;
      ofClass = (index & ArchiveTag::bigClassBit) != 0;
      index &= ~ArchiveTag::bigClassBit;
    }
    if (index >= m_Identities->LoadedCount()) Fail(CArchiveException::badIndex);
    if (!ofClass) {
      objectIndex = index;
      return nullptr;
    }
    zp::LoadedEntry const entry = m_Identities->At(index);
    if (!isClass(entry)) Fail(CArchiveException::badIndex);
    record = classOf(entry);
  }
  if (requested != nullptr && record != requested && !record->IsDerivedFrom(requested)) Fail(CArchiveException::badClass);
  return record;
}

// A failed object, and all that were read inside it, can't be referred to afterwards: they are gone.
CObject * CArchive::ReadNewObject(CRuntimeClass * record)
{
  if (m_nDepth >= maxDepth) Fail(CArchiveException::badIndex);
  Nesting const nesting(m_nDepth);
  size_t const index = m_Identities->loaded.size();
  std::unique_ptr<CObject> object(record->CreateObject());
  m_Identities->Enter(object.get());
  try {
    object->Serialize(*this);
  } catch (...) {
    m_Identities->ForgetObjectsFrom(index);
    throw;
  }
  return object.release();
}

// The class requested holds for new objects alone.
CObject * CArchive::ReadTagged(CRuntimeClass const * requested, bool & isReference)
{
  DWORD index;
  CRuntimeClass * const record = ReadTag(requested, index);
  isReference = index != 0;
  if (record != nullptr) return ReadNewObject(record);
  if (index == 0) return nullptr;
  zp::LoadedEntry const entry = m_Identities->At(index);
  if (entry == 0 || isClass(entry)) Fail(CArchiveException::badIndex);
  return reinterpret_cast<CObject *>(entry);
}

CObject * CArchive::ReadObject(CRuntimeClass const * requested)
{
  bool isReference;
  CObject * const object = ReadTagged(requested, isReference);
  if (isReference && requested != nullptr && !object->IsKindOf(requested)) Fail(CArchiveException::badClass);
  return object;
}

CObject * CArchive::ReadOwnedObject(CRuntimeClass const * requested)
{
  bool isReference;
  CObject * const object = ReadTagged(requested, isReference);
  if (isReference) Fail(CArchiveException::badIndex);
  return object;
}

CObject * CArchive::ReadOwnedElement(CRuntimeClass const * requested, bool & isReference)
{
  return ReadTagged(requested, isReference);
}
