// GPDataArray: finding, adding and removing items. Values in and out are in unload_and_load.cpp. Its stream is that of a
// GPObArray whose elements are data items.

#include <zpbase/data.h>

#include <utility>

#include <zpbase/platform/archive.h>

IMPLEMENT_SERIAL(GPDataArray, GPObArray, 1)

namespace {

// The data id of an element; a null one stands before all ids.
int idOf(CObject const * element)
{
  return element != nullptr ? static_cast<int>(static_cast<GPData const *>(element)->GetDataID()) : -1;
}

// Binary search by the low 16 bits of id; pos is left on the last element probed.
int searchID(std::vector<CObject *> const & elements, int & pos, unsigned int id)
{
  pos = -1;
  int const wanted = static_cast<WORD>(id);
  int low = 0;
  int high = static_cast<int>(elements.size()) - 1;
  while (low <= high) {
    pos = (low + high) / 2;
    int const order = wanted - idOf(elements[static_cast<size_t>(pos)]);
    if (order == 0) return 1;
    if (order > 0)
      low = pos + 1;
    else
      high = pos - 1;
  }
  return 0;
}

}  // namespace

void GPDataArray::Serialize(CArchive & ar)
{
  SerializeElements(ar, RUNTIME_CLASS(GPData));
}

int GPDataArray::BSearchForDataID(int & pos, GPData const * key) const
{
  return searchID(m_Elements, pos, key->GetDataID());
}

int GPDataArray::GetDataPos(unsigned int id, int search) const
{
  int pos;
  if (search != 0) return searchID(m_Elements, pos, id) != 0 ? pos : -1;
  for (pos = 0; pos < GetSize(); ++pos)
    if (GPData const * const item = GetAt(pos); item != nullptr && item->GetDataID() == id) return pos;
  return -1;
}

GPData const * GPDataArray::GetData(unsigned int id, int search) const
{
  int const pos = GetDataPos(id, search);
  return pos >= 0 ? GetAt(pos) : nullptr;
}

GPData * GPDataArray::GetData(unsigned int id, int search)
{
  return const_cast<GPData *>(std::as_const(*this).GetData(id, search));
}

GPData const * GPDataArray::GetData(int & pos, unsigned int id, int start) const
{
  for (pos = start; pos >= 0 && pos < GetSize(); ++pos) {
    GPData const * const item = GetAt(pos);
    if (item == nullptr) continue;
    if (item->GetDataID() == id) return item;
    if (id < item->GetDataID()) return nullptr;
  }
  return nullptr;
}

GPData * GPDataArray::GetData(int & pos, unsigned int id, int start)
{
  return const_cast<GPData *>(std::as_const(*this).GetData(pos, id, start));
}

GPData const * GPDataArray::GetData(GPData * key) const
{
  int pos;
  return BSearch(pos, key) != 0 ? GetAt(pos) : nullptr;
}

GPData * GPDataArray::GetData(GPData * key)
{
  return const_cast<GPData *>(std::as_const(*this).GetData(key));
}

// The place is found by a walk, since nothing says that the items are in order. Compare goes by data id first, so it is asked
// among equal ids alone.
GPData * GPDataArray::AddData(GPData * item)
{
  int const id = idOf(item);
  auto place = m_Elements.begin();
  for (; place != m_Elements.end(); ++place) {
    int const others = idOf(*place);
    if (others > id || (others == id && static_cast<GPData const *>(*place)->Compare(item) > 0)) break;
  }
  m_Elements.insert(place, item);
  return item;
}

// An item that is in the array already, wherever it stands among its equals, is only put in its place again.
GPData * GPDataArray::ReplaceData(GPData * item)
{
  if (int const pos = GetDataPos(item->GetDataID(), 1); pos >= 0 && GetAt(pos) != item) DeleteAt(pos);
  std::erase(m_Elements, item);
  return AddData(item);
}

GPData * GPDataArray::RemoveData(GPData * item)
{
  int pos;
  if (BSearch(pos, item) == 0) return nullptr;
  RemoveAt(pos);
  return item;
}

int GPDataArray::DeleteData(unsigned int id)
{
  int const pos = GetDataPos(id, 1);
  if (pos >= 0) DeleteAt(pos);
  return pos >= 0;
}

int GPDataArray::DeleteData(GPData * key)
{
  int pos;
  int const found = BSearch(pos, key);
  if (found != 0) DeleteAt(pos);
  return found;
}

int GPDataArray::operator==(GPDataArray const & other) const
{
  if (GetSize() != other.GetSize()) return 0;
  for (int i = 0; i < GetSize(); ++i) {
    GPData const * const item = GetAt(i);
    GPData const * const others = other.GetAt(i);
    if (item == nullptr || others == nullptr) {
      if (item != others) return 0;
    } else if (item->Compare(others) != 0) {
      return 0;
    }
  }
  return 1;
}

int GPDataArray::operator!=(GPDataArray const & other) const
{
  return !(*this == other);
}
