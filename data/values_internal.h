// How a collection takes in a value.

#pragma once

#include <atomic>
#include <memory>

#include <zpbase/data.h>
#include <zpbase/platform/number_text.h>

namespace zp {

// Grows whenever an id changes that a collection relies on: what was known of an order at another age is known no more.
extern constinit std::atomic<uint64_t> g_nOrderAge;

// For the loading of values.
struct ItemAccess {
  // The item that stands alone under id, if it is of that very class and the collection knows that it is in order; else null.
  static GPData * FindSole(GPDataArray & items, unsigned int id, CRuntimeClass const * itemClass)
  {
    return items.FindSole(id, itemClass);
  }
  static GPData * FindSole(GPDataList &, unsigned int, CRuntimeClass const *) { return nullptr; }
};

// Puts a new item with the value in the place of the one under id, or deletes that one if the value is blank. Gives whether an
// item was stored. An item of the same class that stands alone under its id takes the value in itself.
template <class Item, class Collection, class Value>
int LoadValue(Collection & items, unsigned int id, bool blank, Value const & value)
{
  if (GPData * const sole = blank ? nullptr : ItemAccess::FindSole(items, id, RUNTIME_CLASS(Item)); sole != nullptr) {
    static_cast<Item *>(sole)->Init(Item(id, value));
    return 1;
  }
  std::unique_ptr<Item> item(blank ? nullptr : new Item(id, value));
  items.DeleteData(static_cast<unsigned int>(static_cast<WORD>(id)));
  if (blank) return 0;
  items.AddData(item.get());
  static_cast<void>(item.release());
  return 1;
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
