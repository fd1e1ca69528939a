// The road of one record: a property tool fills a collection, keeps it in a store, closes and opens the store, reads the values,
// changes them, and compacts; with the bytes that every step leaves.

#include <gtest/gtest.h>

#include <memory>
#include <tuple>

#include <zpbase/data.h>
#include <zpbase/store.h>

#include "tests/support/TempFolder.h"

namespace {

// The collection as its record: array, name, critical temperature, vapour pressure, numbered equation.
std::string const record = FromHex(
    "FF FF 01 00 0B 00 \"GPDataArray\" 04 00"
    "FF FF 01 00 03 00 \"GPs\" 01 00 05 \"Water\""
    "FF FF 01 00 03 00 \"GPf\" 0C 00 F6 C8 21 44"  // 647.14
    "FF FF 01 00 03 00 \"GPv\" 28 00 16 00 6A 00 00 00 80 3F 00 00 00 40 00 00 40 40 00 00 80 40 00 00 A0 40"
    "07 80 61 00 08 00 00 00 C0 3F 00 00 20 C0");  // 1.5, -2.5 without the zero behind

void fill(GPDataArray & data)
{
  data.LoadFloatData(12, 647.14);
  data.LoadFloatData(13, 0.0);  // no value
  data.LoadStringData(1, "Steam");
  data.LoadStringData(1, "Water");
  auto * const density = new GPDippr(40);
  density->Load(106, 1, 2, 3, 4, 5, 0, 0, 0, 0);
  data.AddData(density);
  auto * const pressure = new GPAvp;
  pressure->Load(1.5, -2.5, 0, 0, 0, 0, 0);
  data.AddData(pressure);
}

TEST(RecordRoad, KeepsAComponentThroughClosingChangingAndCompacting)
{
  TempFolder const folder;
  GPDataFile store(folder.Name("a.SI"), folder.Name("a.SR"), CFile::modeReadWrite, nullptr);
  GPDataArray data;
  fill(data);
  ASSERT_EQ(store.StoreObj(&data, 7), 1);
  EXPECT_FALSE(folder.Has("a.SI"));
  std::string const header = FromHex("07 00 64 00 64 00");
  EXPECT_EQ(folder.Read("a.SR"), header + record);
  store.Close();
  EXPECT_EQ(folder.Read("a.SI"),
            FromHex("FF FF 01 00 08 00 \"GPObject\" FF FF 01 00 09 00 \"GPObArray\" 01 00"
                    "FF FF 01 00 0B 00 \"GPActiveRec\" 00 00 00 00 07 00 64 00 FF FF 01 00 08 00 \"GPObList\" 00 00"));

  store.Open(CFile::modeReadWrite);
  std::unique_ptr<CObject> const object(store.LoadObj(7));
  ASSERT_NE(object, nullptr);
  ASSERT_TRUE(object->IsKindOf(RUNTIME_CLASS(GPDataArray)));
  auto & loaded = static_cast<GPDataArray &>(*object);
  CString text;
  float tc = 0;
  EXPECT_EQ(loaded.UnloadStringData(text, 1), 1);
  EXPECT_EQ(text, "Water");
  EXPECT_EQ(loaded.UnloadFloatData(tc, 12), 1);
  EXPECT_EQ(tc, 647.14F);
  EXPECT_EQ(loaded.UnloadFloatData(tc, 13), 0);
  float a = 0, b = 0, c = 9;
  EXPECT_EQ(GPAvp::As(static_cast<GPv &>(*loaded.GetData(97, 1))).Unload(a, b, c), 2);
  EXPECT_EQ(std::tuple(a, b, c), std::tuple(1.5F, -2.5F, 0.0F));

  loaded.DeleteData(40);  // shorter: the same block, with slack behind
  ASSERT_EQ(store.StoreObj(&loaded, 7), 1);
  store.StoreRec("tail", 4, 8);
  EXPECT_EQ(folder.Read("a.SR").size(), 6 + record.size() + 6 + 4);
  ASSERT_EQ(store.DegasRecFile(), 1);
  EXPECT_EQ(folder.Read("a.SR").size(), 6 + store.GetRecLength(7) + 6 + 4);
  char tail[4];
  EXPECT_EQ(store.LoadRec(tail, 4, 8), 4U);
  EXPECT_EQ(std::string(tail, 4), "tail");
  std::unique_ptr<CObject> const again(store.LoadObj(7));
  ASSERT_NE(again, nullptr);
  EXPECT_EQ(static_cast<GPDataArray &>(*again).GetSize(), 3);
}

}  // namespace
