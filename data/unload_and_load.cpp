// GPDataArray: values in and out, as texts and as numbers.

#include <zpbase/data.h>

#include "data/values_internal.h"

namespace {

// The item under id if it is of that class, else null.
template <class Item>
Item const * findAs(GPDataArray const & items, unsigned int id)
{
  GPData const * const item = items.GetData(id, 1);
  return item != nullptr && item->IsKindOf(RUNTIME_CLASS(Item)) ? static_cast<Item const *>(item) : nullptr;
}

template <class Item, class Number, class Read>
int unloadNumber(Number & out, GPDataArray const & items, unsigned int id, Read read)
{
  auto const * const item = findAs<Item>(items, id);
  out = item != nullptr ? read(*item) : Number{};
  return item != nullptr;
}

// An item that holds no integer would show the format itself.
int unloadIntegerText(CString & out, GPDataArray const & items, unsigned int id, char const * format)
{
  GPData const * const item = items.GetData(id, 1);
  if (item == nullptr) return 0;
  bool const isInteger = item->IsKindOf(RUNTIME_CLASS(GPw)) || item->IsKindOf(RUNTIME_CLASS(GPdw));
  if (isInteger)
    item->GetString(out, format);
  else
    out.Empty();
  return isInteger;
}

}  // namespace

int GPDataArray::LocateString(CString const & text) const
{
  for (int i = 0; i < GetSize(); ++i) {
    GPData const * const item = GetAt(i);
    if (item == nullptr || !item->IsKindOf(RUNTIME_CLASS(GPs))) continue;
    if (static_cast<GPs const *>(item)->m_strValue.CompareNoCase(text) == 0) return i;
  }
  return -1;
}

int GPDataArray::UnloadFloatData(CString & out, unsigned int id) const
{
  GPData const * const item = GetData(id, 1);
  if (item != nullptr) item->GetString(out, "");
  return item != nullptr;
}

int GPDataArray::UnloadFloatData(float & out, unsigned int id) const
{
  return unloadNumber<GPf>(out, *this, id, [](GPf const & item) { return item.GetValue(); });
}

int GPDataArray::UnloadFloatData(double & out, unsigned int id) const
{
  return unloadNumber<GPf>(out, *this, id, [](GPf const & item) { return static_cast<double>(item.GetValue()); });
}

int GPDataArray::LoadFloatData(unsigned int id, CString const & text)
{
  return zp::LoadFloatText(*this, id, text);
}

int GPDataArray::LoadFloatData(unsigned int id, double const & value)
{
  return zp::LoadValue<GPf>(*this, id, value == 0.0, value);
}

int GPDataArray::UnloadStringData(CString & out, unsigned int id) const
{
  auto const * const item = findAs<GPs>(*this, id);
  if (item != nullptr)
    out = item->m_strValue;
  else if (GetDataPos(id, 1) >= 0)
    out.Empty();
  return item != nullptr;
}

int GPDataArray::LoadStringData(unsigned int id, CString const & text)
{
  return zp::LoadValue<GPs>(*this, id, text.IsEmpty(), text);
}

int GPDataArray::UnloadIntData(CString & out, unsigned int id) const
{
  return unloadIntegerText(out, *this, id, "%d");
}

int GPDataArray::UnloadIntData(int & out, unsigned int id) const
{
  return unloadNumber<GPw>(out, *this, id, [](GPw const & item) { return static_cast<int>(item.GetValue()); });
}

int GPDataArray::LoadIntData(unsigned int id, CString const & text)
{
  return zp::LoadIntText(*this, id, text);
}

int GPDataArray::LoadIntData(unsigned int id, int value)
{
  return zp::LoadValue<GPw>(*this, id, value == 0, value);
}

int GPDataArray::UnloadUIntData(CString & out, unsigned int id) const
{
  return unloadIntegerText(out, *this, id, "%u");
}

int GPDataArray::UnloadUIntData(unsigned int & out, unsigned int id) const
{
  return unloadNumber<GPw>(out, *this, id, [](GPw const & item) { return unsigned{static_cast<WORD>(item.GetValue())}; });
}

int GPDataArray::LoadUIntData(unsigned int id, CString const & text)
{
  return zp::LoadIntText(*this, id, text);
}

int GPDataArray::LoadUIntData(unsigned int id, unsigned int value)
{
  return zp::LoadValue<GPw>(*this, id, value == 0, static_cast<int>(value));
}
