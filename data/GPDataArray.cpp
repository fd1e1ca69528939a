// GPDataArray: finding, adding and removing items. Values in and out are in unload_and_load.cpp. Its stream is that of a
// GPObArray whose elements are data items.

#include <zpbase/data.h>

#include <algorithm>
#include <utility>

#include <zpbase/platform/archive.h>

#include "data/values_internal.h"

IMPLEMENT_SERIAL(GPDataArray, GPObArray, 1)

namespace {

// The data id of an element; a null one stands before all ids.
int idOf(CObject const * element)
{
  return element != nullptr ? static_cast<int>(static_cast<GPData const *>(element)->GetDataID()) : -1;
}

constexpr int severalPlaces = -2;
constexpr size_t fewItems = 16;    // up to here halving takes no longer than a guess
constexpr size_t manyItems = 128;  // from here on a search whose branches can't be foretold is the slower one

// Where id would stand if the ids from first to last took steps places at even distances; 0 if it isn't above first and not above
// last. A product that wraps only makes the guess a worse one.
size_t evenPlaceOf(int id, int first, int last, size_t steps)
{
  if (id <= first || id > last) return 0;
  return static_cast<unsigned int>(id - first) * static_cast<unsigned int>(steps) / static_cast<unsigned int>(last - first);
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

bool GPDataArray::IsKnownInOrder() const
{
  return m_nOrder == zp::g_nOrderAge.load(std::memory_order_relaxed);
}

// Looks, unless it is known. From then on the items tell when an id changes.
bool GPDataArray::IsInOrder()
{
  if (IsKnownInOrder()) return true;
  auto const isLess = [](CObject const * a, CObject const * b) { return idOf(a) < idOf(b); };
  if (m_nOrder == orderLent || !std::is_sorted(m_Elements.begin(), m_Elements.end(), isLess)) return false;
  for (CObject * const element : m_Elements)
    if (element != nullptr) static_cast<GPData *>(element)->m_bInOrder = true;
  m_nOrder = zp::g_nOrderAge.load(std::memory_order_relaxed);
  return true;
}

// The place of the first element, in an array that is in order, whose id isn't below id. Ids mostly come in runs, so the place
// where even steps would lead is looked at first. The halving has no branch to guess.
size_t GPDataArray::PlaceOf(int id) const
{
  CObject * const * const elements = m_Elements.data();
  size_t left = m_Elements.size();
  if (left >= fewItems) {
    size_t const even = evenPlaceOf(id, idOf(elements[0]), idOf(elements[left - 1]), left - 1);
    if (even > 0 && idOf(elements[even]) == id && idOf(elements[even - 1]) < id) return even;
  }
  size_t place = 0;
  while (left > 0) {
    size_t const half = (left + 1) / 2;
    place += idOf(elements[place + half - 1]) < id ? half : 0;
    left -= half;
  }
  return place;
}

// Where the low 16 bits of id stand in an array that is in order, -1 if nowhere, severalPlaces if more than once.
int GPDataArray::SolePlaceOf(unsigned int id) const
{
  int const wanted = static_cast<WORD>(id);
  size_t const place = PlaceOf(wanted);
  if (place == m_Elements.size() || idOf(m_Elements[place]) != wanted) return -1;
  bool const isSole = place + 1 == m_Elements.size() || idOf(m_Elements[place + 1]) != wanted;
  return isSole ? static_cast<int>(place) : severalPlaces;
}

GPData * GPDataArray::FindSole(unsigned int id, CRuntimeClass const * itemClass)
{
  if (m_bRepeats || !IsInOrder()) return nullptr;
  int const place = SolePlaceOf(id);
  if (place < 0) return nullptr;
  auto * const item = static_cast<GPData *>(m_Elements[static_cast<size_t>(place)]);
  return item->GetRuntimeClass() == itemClass ? item : nullptr;
}

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
  if (search != 0) {
    pos = m_Elements.size() >= manyItems && IsKnownInOrder() ? SolePlaceOf(id) : severalPlaces;
    if (pos != severalPlaces) return pos;
    return searchID(m_Elements, pos, id) != 0 ? pos : -1;
  }
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

// The place is found by a walk, which begins at the item's equals where the items are in order. Compare goes by data id first,
// so it is asked among equal ids alone.
GPData * GPDataArray::AddData(GPData * item)
{
  int const id = idOf(item);
  bool const inOrder = item != nullptr && IsInOrder();
  auto place = m_Elements.begin() + (inOrder ? static_cast<ptrdiff_t>(PlaceOf(id)) : 0);
  for (; place != m_Elements.end(); ++place) {
    int const others = idOf(*place);
    if (others > id || (others == id && static_cast<GPData const *>(*place)->Compare(item) > 0)) break;
  }
  m_Elements.insert(place, item);
  if (inOrder)
    item->m_bInOrder = true;
  else
    m_nOrder = orderUnknown;
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
