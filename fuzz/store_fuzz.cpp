// Any bytes as a record store: an index file and a record file are opened, walked, read, changed, compacted, closed and opened
// again.

#include <stdlib.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <memory>
#include <string>

#include <zpbase/platform/paths.h>
#include <zpbase/store.h>

#include "fuzz/scratch_folder.h"
#include "fuzz/structured_input.h"

namespace {

void write(std::string const & name, std::string const & bytes)
{
  std::ofstream(name, std::ios::binary) << bytes;
}

void walk(CString const & records)
{
  GPFile file(records);
  if (!file.Open(CFile::modeRead)) return;
  zp::BlockChain chain(file);
  for (zp::RecordBlock block; chain.Next(block);)
    if (chain.GetPayload().size() > block.capacity) abort();
}

void readAll(GPDataFile & store)
{
  char buffer[70000];
  unsigned int const first = store.GetFirstRecID();
  for (unsigned int id = first; id < first + 40; ++id) {
    unsigned int const length = store.GetRecLength(static_cast<int>(id));
    if (store.LoadRec(buffer, sizeof buffer, static_cast<int>(id)) > length) abort();
    try {
      std::unique_ptr<CObject> const object(store.LoadObj(static_cast<int>(id)));
    } catch (CArchiveException * problem) {
      problem->Delete();
    }
  }
}

// Whether each entry can be found: an index out of order is searched as it stands.
bool isOrdered(GPDataFile & store)
{
  int found = 0;
  for (int id = 0; id <= zp::maxRecordID; ++id) found += store.GetRecLength(id) > 0 ? 1 : 0;
  return found == store.GetRecCount();
}

// A store that could be opened takes records and gives them back, whatever stood in its files.
void change(GPDataFile & store)
{
  for (int id = 1; id < 9; ++id) {
    std::string const bytes(static_cast<size_t>(id * 7), static_cast<char>('a' + id));
    std::string back(bytes.size(), '\0');
    auto const length = static_cast<unsigned int>(bytes.size());
    bool const stored = store.StoreRec(bytes.data(), length, id) != 0;
    bool const isThere = store.LoadRec(back.data(), length, id) == length && back == bytes;
    if (stored && !isThere && isOrdered(store)) abort();
    if (id % 3 == 0) store.DeleteRec(id);
  }
}

void work(CString const & index, CString const & records)
{
  try {
    GPDataFile store(index, records, CFile::modeReadWrite, nullptr);
    readAll(store);
    change(store);
    int const before = store.GetRecCount();
    if (store.DegasRecFile() == 0 && store.GetRecCount() != before) abort();
    store.Close();
    store.Open(CFile::modeReadWrite);
    readAll(store);
  } catch (CException * problem) {
    problem->Delete();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const * data, size_t size)
{
  StoreFiles const files = storeFilesOf({reinterpret_cast<char const *>(data), size});
  std::string const index = scratchFolder() + "/a.si";
  std::string const records = scratchFolder() + "/a.sr";
  write(index, files.index);
  write(records, files.records);
  walk(FromHostPath(records));
  work(FromHostPath(index), FromHostPath(records));
  return 0;
}
