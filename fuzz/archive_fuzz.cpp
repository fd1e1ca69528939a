// Any bytes as an archive, or one built from them: one object of any class, and the content of each container. What could be
// loaded is stored, loaded once more and stored again, which must give the same bytes.

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include <zpbase/data.h>
#include <zpbase/platform/archive.h>

#include "fuzz/structured_input.h"

namespace {

using Bytes = std::vector<BYTE>;

// Runs read over an archive of the bytes; false if it ended with an archive exception. Any other one is a fault.
template <class Read>
bool load(Bytes bytes, Read read)
{
  CMemFile file(bytes.data(), static_cast<UINT>(bytes.size()));
  try {
    CArchive ar(&file, CArchive::load);
    read(ar);
  } catch (CArchiveException * problem) {
    problem->Delete();
    return false;
  }
  return true;
}

template <class Write>
Bytes store(Write write)
{
  CMemFile file;
  CArchive ar(&file, CArchive::store);
  write(ar);
  ar.Close();
  Bytes bytes(static_cast<size_t>(file.GetLength()));
  file.SeekToBegin();
  file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
  return bytes;
}

void require(bool kept)
{
  if (!kept) std::abort();
}

Bytes storeObject(CObject const * object)
{
  return store([&](CArchive & ar) { ar.WriteObject(object); });
}

// The operations that look into what an object holds.
void visit(CObject const * object)
{
  if (object == nullptr || !object->IsKindOf(RUNTIME_CLASS(GPObject))) return;
  auto const * const root = static_cast<GPObject const *>(object);
  std::unique_ptr<GPObject> const copy(root->Clone());
  if (!object->IsKindOf(RUNTIME_CLASS(GPData))) return;
  require(root->Compare(copy.get()) == 0);
  CString text;
  static_cast<GPData const *>(object)->GetString(text, "");
  if (!object->IsKindOf(RUNTIME_CLASS(GPv))) return;
  unsigned int equation;
  double c[9];
  GPDippr::As(*static_cast<GPv const *>(object)).Unload(equation, c[0], c[1], c[2], c[3], c[4], c[5], c[6], c[7], c[8]);
}

void tryObject(Bytes const & bytes)
{
  std::unique_ptr<CObject> object;
  auto const read = [&](CArchive & ar) { object.reset(ar.ReadOwnedObject(nullptr)); };
  if (!load(bytes, read)) return;
  visit(object.get());
  Bytes const stored = storeObject(object.get());
  require(load(stored, read) && storeObject(object.get()) == stored);
}

template <class Container>
void tryContainer(Bytes const & bytes)
{
  Container container;
  if (!load(bytes, [&](CArchive & ar) { container.Serialize(ar); })) return;
  auto const storeIt = [](Container & stored) { return store([&](CArchive & ar) { stored.Serialize(ar); }); };
  Bytes const stored = storeIt(container);
  Container again;
  require(load(stored, [&](CArchive & ar) { again.Serialize(ar); }) && storeIt(again) == stored);
  Container const copy(container);
}

void tryDataArray(Bytes const & bytes)
{
  GPDataArray items;
  load(bytes, [&](CArchive & ar) { items.Serialize(ar); });
  double number;
  CString text;
  for (int i = 0; i < items.GetSize() && i < 100; ++i) {
    auto const id = static_cast<unsigned int>(i);
    items.UnloadFloatData(number, id);
    items.UnloadStringData(text, id);
    visit(items.GetAt(i));
    items.LoadIntData(id, i);
  }
  require(items == items);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const * data, size_t size)
{
  FuzzInput input({reinterpret_cast<char const *>(data), size});
  Bytes bytes(data, data + size);
  if (input.IsStructured()) {
    ArchiveBytes built(input);
    built.Object();
    bytes.assign(built.Get().begin(), built.Get().end());
  }
  tryObject(bytes);
  tryContainer<GPObArray>(bytes);
  tryContainer<GPObList>(bytes);
  tryContainer<GPDataArray>(bytes);
  tryContainer<GPDataList>(bytes);
  tryDataArray(bytes);
  return 0;
}
