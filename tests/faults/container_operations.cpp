// Containers, keyed collections, items and archives.

#include <zpbase/data.h>
#include <zpbase/foundation.h>
#include <zpbase/platform/archive.h>

#include "tests/faults/Operations.h"

namespace {

constexpr char const * longText = "a text that is longer than a string holds in itself";

std::string textOf(CObject const * object)
{
  if (object == nullptr) return "null ";
  auto const * const item = static_cast<GPData const *>(object);
  CString text;
  item->GetString(text, "");
  return std::to_string(item->GetDataID()) + text.GetString() + " ";
}

std::string textOf(GPObArray const & array)
{
  std::string text;
  for (int i = 0; i < array.GetSize(); ++i) text += textOf(array.GetAt(i));
  return text;
}

std::string textOf(GPObList const & list)
{
  std::string text;
  for (POSITION position = list.GetHeadPosition(); position != nullptr;) text += textOf(list.GetNext(position));
  return text;
}

std::string textOf(GPUIntArray const & array)
{
  std::string text;
  for (int i = 0; i < array.GetSize(); ++i) text += std::to_string(array.GetAt(i)) + " ";
  return text;
}

// What an item or texts are stored as.
std::string textOf(CObject & object)
{
  CMemFile file;
  CArchive out(&file, CArchive::store);
  object.Serialize(out);
  out.Close();
  std::string bytes(file.GetLength(), '\0');
  file.SeekToBegin();
  file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
  return bytes;
}

void add(GPObArray & array, GPObject * object)
{
  array.Add(object);
}

void add(GPObList & list, GPObject * object)
{
  list.AddTail(object);
}

template <class Container>
void fill(Container & container, unsigned int first)
{
  constexpr unsigned int fullList = 10;  // its block of nodes has room for no more
  constexpr unsigned int fullArray = 15;
  unsigned int const end = first + (std::is_base_of_v<GPObList, Container> ? fullList : fullArray);
  for (unsigned int id = first; id < end; ++id) add(container, new GPs(id, longText));
}

void fill(GPUIntArray & array, unsigned int first)
{
  for (unsigned int value = first; value < first + 8; ++value) array.Add(value);
}

// Of two texts that of the greater number needs a block of its own.
CString longerText(unsigned int number)
{
  return CString(longText + 40 - number);
}

void fill(CStringArray & texts, unsigned int first)
{
  for (unsigned int number = first; number < first + 5; ++number) texts.Add(longerText(number));  // there is room for three more
}

void fill(GPs & item, unsigned int first)
{
  item = GPs(first, longerText(first));
}

void fill(GPv & item, unsigned int first)
{
  float const numbers[] = {1.5F, static_cast<float>(first), 2.5F};
  item = GPv(first);
  item.PutFloatData(numbers, 3);
}

void fill(GPa & item, unsigned int first)
{
  auto array = std::make_unique<GPObArray>();
  fill(*array, first);
  item = GPa(first, array.release());
}

// On two containers of one class with ten elements each.
template <class Container>
Operation on(char const * name, std::function<void(Container &, Container &)> step, bool mayStandBetween = false)
{
  auto prepare = [step] {
    struct Pair {
      Container one;
      Container other;
    };
    auto const pair = std::make_shared<Pair>();
    fill(pair->one, 1);
    fill(pair->other, 20);
    return Trial{[pair, step] { step(pair->one, pair->other); },
                 [pair] {
                   return State{{"both", textOf(pair->one) + "| " + textOf(pair->other)}};
                 }};
  };
  return {.name = name, .prepare = prepare, .mayStandBetween = mayStandBetween};
}

// Takes the object over only when that has been done.
template <class Container>
void insert(Container & container, unsigned int id)
{
  auto object = std::make_unique<GPs>(id, longText);
  container.InsertObject(object.get());
  static_cast<void>(object.release());
}

template <class Container>
std::vector<Operation> ofContainer()
{
  return {
      on<Container>("copy", [](Container & one, Container &) { Container const copy(one); }),
      on<Container>("assign", [](Container & one, Container & other) { one = other; }),
      on<Container>("append clones", [](Container & one, Container & other) { one += other; }),
      on<Container>("append the other's", [](Container & one, Container & other) { one.Append(&other, 1); }),
      on<Container>("insert", [](Container & one, Container &) { insert(one, 5); }),
      on<Container>("sort", [](Container & one, Container &) { one.Sort(); }),
      on<Container>("store and load",
                    [](Container & one, Container &) {
                      CMemFile file;
                      CArchive out(&file, CArchive::store);
                      out.WriteObject(&one);
                      out.Close();
                      file.SeekToBegin();
                      CArchive in(&file, CArchive::load);
                      std::unique_ptr<CObject> const loaded(in.ReadOwnedObject(RUNTIME_CLASS(Container)));
                      in.Close();
                    }),
  };
}

// The collection takes the item over only when that has been done.
template <class Collection>
void replace(Collection & collection, unsigned int id)
{
  auto item = std::make_unique<GPs>(id, "another text, as long as it takes");
  collection.ReplaceData(item.get());
  static_cast<void>(item.release());
}

template <class Collection>
std::vector<Operation> ofCollection()
{
  return {
      on<Collection>("put in an item", [](Collection & one, Collection &) { replace(one, 30); }),
      on<Collection>("replace an item", [](Collection & one, Collection &) { replace(one, 5); }),
      on<Collection>("take out an item", [](Collection & one, Collection &) { one.DeleteData(5); }),
  };
}

std::vector<Operation> ofTexts()
{
  return {
      on<GPDataArray>("put in a text", [](GPDataArray & one, GPDataArray &) { one.LoadStringData(30, longText); }),
      on<GPDataArray>("replace a text", [](GPDataArray & one, GPDataArray &) { one.LoadStringData(5, longText + 1); }),
      on<GPDataArray>("put in a number", [](GPDataArray & one, GPDataArray &) { one.LoadFloatData(30, 2.5); }),
      on<GPDataList>("put in a number in a list", [](GPDataList & one, GPDataList &) { one.LoadFloatData(30, CString("2.5")); }),
      on<CStringArray>("assign texts", [](CStringArray & one, CStringArray & other) { one = other; }),
      on<CStringArray>("insert texts", [](CStringArray & one, CStringArray &) { one.InsertAt(1, longText, 2); }),
      on<CStringArray>("insert behind the texts", [](CStringArray & one, CStringArray &) { one.InsertAt(30, longText); }),
      on<CStringArray>("set behind the texts", [](CStringArray & one, CStringArray &) { one.SetAtGrow(30, longText); }),
      on<CStringArray>("append an item's numbers",
                       [](CStringArray & one, CStringArray &) {
                         GPbip item(112);  // the first five are multiplied
                         fill(static_cast<GPv &>(item), 112);
                         item.GetFloatData(one, 20, "a number wider than a text holds in itself: %.15g");
                       }),
  };
}

std::vector<Operation> ofItems()
{
  return {
      on<GPs>("assign a text item", [](GPs & one, GPs & other) { one = other; }),
      on<GPv>("assign an area", [](GPv & one, GPv & other) { one = other; }),
      on<GPa>("assign an item's array", [](GPa & one, GPa & other) { one = other; }),
      on<GPv>("end an archive on a full disk",
              [](GPv & one, GPv &) {
                CFile full;
                if (!full.Open("/dev/full", CFile::modeWrite)) return;
                CArchive out(&full, CArchive::store);
                out << &one;
              }),
  };
}

std::vector<Operation> ofNumbers()
{
  return {
      on<GPUIntArray>("copy numbers", [](GPUIntArray & one, GPUIntArray &) { GPUIntArray const copy(one); }),
      on<GPUIntArray>("assign numbers", [](GPUIntArray & one, GPUIntArray & other) { one = other; }),
      on<GPUIntArray>("append numbers", [](GPUIntArray & one, GPUIntArray & other) { one += other; }),
      on<GPUIntArray>("a value", [](GPUIntArray & one, GPUIntArray &) { one.AddUIntVal(5, 1, GPUIntArray()); }),
      on<GPUIntArray>("a range that toggles",
                      [](GPUIntArray & one, GPUIntArray &) { one.AddUIntRange("5-40", 5, GPUIntArray()); }),
      on<GPUIntArray>("sort numbers", [](GPUIntArray & one, GPUIntArray &) { one.EliminateDuplicates(); }),
      on<GPUIntArray>("short numbers", [](GPUIntArray & one, GPUIntArray &) { delete[] one.GetShortIntArray(); }),
  };
}

}  // namespace

std::vector<Operation> ContainerOperations()
{
  std::vector<Operation> all;
  auto const join = [&all](std::string const & of, std::vector<Operation> operations) {
    for (Operation & operation : operations) {
      operation.name += of;
      all.push_back(std::move(operation));
    }
  };
  join(" of an array", ofContainer<GPObArray>());
  join(" of a list", ofContainer<GPObList>());
  join(" of an array", ofCollection<GPDataArray>());
  join(" of a list", ofCollection<GPDataList>());
  join("", ofTexts());
  join("", ofNumbers());
  join("", ofItems());
  return all;
}
