// GPDataList: the list of items. Its stream is that of a GPObList whose elements are data items.

#include <zpbase/data.h>

#include <zpbase/platform/archive.h>

#include "data/values_internal.h"

IMPLEMENT_SERIAL(GPDataList, GPObList, 1)

namespace {

GPData * asItem(CObject * element)
{
  return static_cast<GPData *>(element);
}

}  // namespace

void GPDataList::Serialize(CArchive & ar)
{
  SerializeElements(ar, RUNTIME_CLASS(GPData));
}

GPData * GPDataList::GetFirstData() const
{
  return IsEmpty() ? nullptr : asItem(GetHead());
}

GPData * GPDataList::GetNextData(POSITION & pos) const
{
  return asItem(GetNext(pos));
}

POSITION GPDataList::Locate(unsigned int id) const
{
  for (POSITION next = GetHeadPosition(); next != nullptr;) {
    POSITION const here = next;
    if (GPData const * const item = GetNextData(next); item != nullptr && item->GetDataID() == id) return here;
  }
  return nullptr;
}

GPData * GPDataList::GetData(unsigned int id)
{
  POSITION const place = Locate(id);
  return place != nullptr ? asItem(GetAt(place)) : nullptr;
}

GPData * GPDataList::GetData(GPData * key)
{
  for (POSITION next = GetHeadPosition(); next != nullptr;)
    if (GPData * const item = GetNextData(next); item != nullptr && item->Compare(key) == 0) return item;
  return nullptr;
}

// Compare goes by data id first, so it is asked among equal ids alone; a null item stands before all ids.
GPData * GPDataList::AddData(GPData * item)
{
  int const id = item != nullptr ? static_cast<int>(item->GetDataID()) : -1;
  for (POSITION next = GetHeadPosition(); next != nullptr;) {
    POSITION const here = next;
    GPData const * const element = GetNextData(next);
    int const others = element != nullptr ? static_cast<int>(element->GetDataID()) : -1;
    if (others > id || (others >= 0 && others == id && element->Compare(item) > 0)) {
      InsertBefore(here, item);
      return item;
    }
  }
  AddTail(item);
  return item;
}

// An item that is in the list already is only put in its place again.
GPData * GPDataList::ReplaceData(GPData * item)
{
  if (POSITION const place = Locate(item->GetDataID()); place != nullptr && GetAt(place) != item) DeleteAt(place);
  while (RemoveData(item) != nullptr) {
  }
  return AddData(item);
}

GPData * GPDataList::RemoveData(GPData * item)
{
  POSITION const place = Find(item);
  if (place == nullptr) return nullptr;
  RemoveAt(place);
  return item;
}

int GPDataList::DeleteData(unsigned int id)
{
  POSITION const place = Locate(id);
  if (place != nullptr) DeleteAt(place);
  return place != nullptr;
}

int GPDataList::LoadFloatData(unsigned int id, CString const & text)
{
  return zp::LoadFloatText(*this, id, text);
}

int GPDataList::LoadIntData(unsigned int id, CString const & text)
{
  return zp::LoadIntText(*this, id, text);
}
