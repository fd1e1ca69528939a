// GPData: the root of the data items. Its stream, behind which each class puts its value:
//
//   offset  width  content
//   0       2      data id, unsigned
//
// GPData(5): 05 00.

#include <zpbase/data.h>

#include <zpbase/platform/archive.h>

#include "data/values_internal.h"

IMPLEMENT_SERIAL(GPData, GPObject, 1)

namespace zp {

constinit std::atomic<uint64_t> g_nOrderAge = 2;  // the array's own two marks lie below

}

GPData & GPData::operator=(GPData const & other)
{
  SetDataID(other.m_nDataID);
  return *this;
}

// An id that changes where a collection relies on it makes every collection look anew whether it is in order.
void GPData::SetDataID(WORD id)
{
  if (m_bInOrder && id != m_nDataID) zp::g_nOrderAge.fetch_add(1, std::memory_order_relaxed);
  m_nDataID = id;
}

GPObject * GPData::Clone() const
{
  return new GPData(*this);
}

int GPData::CompareDataIDs(GPObject const * other) const
{
  if (other == nullptr || !other->IsKindOf(RUNTIME_CLASS(GPData))) return GPObject::Compare(other);
  return static_cast<int>(m_nDataID) - static_cast<int>(static_cast<GPData const *>(other)->m_nDataID);
}

int GPData::Compare(GPObject const * other) const
{
  return CompareDataIDs(other);
}

void GPData::GetString(CString & out, CString const &) const
{
  out.Empty();
}

void GPData::Serialize(CArchive & ar)
{
  GPObject::Serialize(ar);
  if (ar.IsStoring()) {
    ar << m_nDataID;
    return;
  }
  WORD id;
  ar >> id;
  SetDataID(id);
}
