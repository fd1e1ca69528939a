// How a collection takes in a value.

#pragma once

#include <memory>

#include <zpbase/data.h>
#include <zpbase/platform/number_text.h>

namespace zp {

// Puts a new item with the value in the place of the one under id, or deletes that one if the value is blank. Gives whether an
// item was stored.
template <class Item, class Collection, class Value>
int LoadValue(Collection & items, unsigned int id, bool blank, Value const & value)
{
  std::unique_ptr<Item> item(blank ? nullptr : new Item(id, value));
  items.DeleteData(static_cast<unsigned int>(static_cast<WORD>(id)));
  if (item != nullptr) items.AddData(item.release());
  return !blank;
}

template <class Collection>
int LoadFloatText(Collection & items, unsigned int id, CString const & text)
{
  return LoadValue<GPf>(items, id, text.IsEmpty(), TextToDouble(text.View()));
}

template <class Collection>
int LoadIntText(Collection & items, unsigned int id, CString const & text)
{
  return LoadValue<GPw>(items, id, text.IsEmpty(), TextToInt(text.View()));
}

}  // namespace zp
