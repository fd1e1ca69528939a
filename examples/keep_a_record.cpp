// Keeps a component's data as one record of a store, closes it, opens it again and reads the values back.

#include <cstdio>
#include <filesystem>
#include <memory>

#include <zpbase/data.h>
#include <zpbase/platform/paths.h>
#include <zpbase/store.h>

namespace {

constexpr unsigned int nameID = 1, tcID = 12, densityID = 40;  // what the data ids mean is the program's affair
constexpr int waterID = 4;

// A collection owns its items; a blank text and the value 0 would store nothing.
void fill(GPDataArray & water)
{
  water.LoadStringData(nameID, "Water");
  water.LoadFloatData(tcID, 647.14);  // K
  auto density = std::make_unique<GPDippr>(densityID);
  density->Load(106, 32.51621, -3.213004, 7.92411, -7.359898, 2.703522, 0, 0, 0, 0);  // kmol/m3
  water.AddData(density.release());
}

// What LoadObj gives is the caller's. A correlation comes back as a plain packed area, and As reads it by its layout.
bool print(std::unique_ptr<CObject> const & object)
{
  if (object == nullptr || !object->IsKindOf(RUNTIME_CLASS(GPDataArray))) return false;
  auto const & water = static_cast<GPDataArray const &>(*object);
  CString name;
  double tc = 0.0;
  GPData const * const item = water.GetData(densityID, 1);
  if (!water.UnloadStringData(name, nameID) || !water.UnloadFloatData(tc, tcID) || item == nullptr) return false;
  unsigned int equation = 0;
  double c[9];
  GPDippr::As(static_cast<GPv const &>(*item)).Unload(equation, c[0], c[1], c[2], c[3], c[4], c[5], c[6], c[7], c[8]);
  std::printf("%s: critical temperature %g K, density by equation %u with A = %g\n", name.GetString(), tc, equation, c[0]);
  return true;
}

}  // namespace

int main()
{
  std::filesystem::path const folder = std::filesystem::temp_directory_path() / "zp_keep_a_record";
  std::filesystem::remove_all(folder);
  std::filesystem::create_directory(folder);
  GPDataFile store(FromHostPath((folder / "demo.SI").string()), FromHostPath((folder / "demo.SR").string()), CFile::modeReadWrite,
                   nullptr);
  GPDataArray water;
  fill(water);
  store.StoreObj(&water, waterID);
  store.Close();  // writes the index file
  store.Open(CFile::modeRead);
  bool const asKept = print(std::unique_ptr<CObject>(store.LoadObj(waterID)));
  store.Close();
  std::filesystem::remove_all(folder);
  return asKept ? 0 : 1;
}
