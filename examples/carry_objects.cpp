// Puts a collection into a file of its own and reads it back, and makes a selection of numbers from what a user types.

#include <cstdio>
#include <filesystem>

#include <zpbase/data.h>
#include <zpbase/platform/paths.h>

namespace {

constexpr unsigned int nameID = 1;

// Every class that has GPObject, GPObArray, GPObList or GPUIntArray above it has Store and Load.
bool carry(CString const & path)
{
  GPDataArray written;
  written.LoadStringData(nameID, "Water");
  written.AddData(new GPf(12, 647.14F));
  if (!written.Store(path)) return false;

  GPDataArray read;
  CString name;
  if (!read.Load(path) || !read.UnloadStringData(name, nameID)) return false;
  std::printf("%d items, the name is %s\n", read.GetSize(), name.GetString());
  return read.GetSize() == written.GetSize();
}

// Toggling: what is chosen already is taken out, here 3 and 4.
bool select()
{
  GPUIntArray const streams(1, 8);  // the numbers that there are
  GPUIntArray chosen;
  for (char const * typed : {"2-4", "8-12", "3-6"})
    chosen.AddUIntRange(typed, GPUIntArray::addSorted | GPUIntArray::addToggles, streams);
  for (int i = 0; i < chosen.GetSize(); ++i) std::printf("%s%u", i == 0 ? "chosen: " : ", ", chosen[i]);
  std::printf("\n");
  return chosen.GetSize() == 4;
}

}  // namespace

int main()
{
  std::filesystem::path const file = std::filesystem::temp_directory_path() / "zp_carry_objects.dat";
  bool const isCarried = carry(FromHostPath(file.string()));
  std::filesystem::remove(file);
  return isCarried && select() ? 0 : 1;
}
