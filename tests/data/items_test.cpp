// Data items: their bytes both ways, their order, their texts, and what copies own.

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <tuple>

#include <zpbase/data.h>

#include "tests/support/Archives.h"
#include "tests/support/TempFolder.h"

namespace {

std::string storedAlone(GPData & item)
{
  return Stored([&](CArchive & ar) { item.Serialize(ar); });
}

CString textOf(GPData const & item, char const * format)
{
  CString text("old");
  item.GetString(text, format);
  return text;
}

}  // namespace

TEST(DataItems, StreamAsTheirFormSays)
{
  auto * const array = new GPObArray;
  array->Add(new GPw(6, 7));
  using Row = std::tuple<std::shared_ptr<GPData>, char const *>;
  for (auto const & [item, hex] : {
           Row{std::make_shared<GPData>(70000), "7011"},
           Row{std::make_shared<GPd>(5, -0.5), "0500 000000000000E0BF"},
           Row{std::make_shared<GPdw>(5, -2), "0500 FEFFFFFF"},
           Row{std::make_shared<GPf>(5, 0.1), "0500 CDCCCC3D"},
           Row{std::make_shared<GPs>(7, "water"), "0700 05 \"water\""},
           Row{std::make_shared<GPw>(5, -1), "0500 FFFF"},
           Row{std::make_shared<GPxy>(5, 1.0, 2.0), "0500 000000000000F03F 0000000000000040"},
           Row{std::make_shared<GPa>(5), "0500 0000"},
           Row{std::make_shared<GPa>(5, array), "0500 FFFF 0100 0900 \"GPObArray\" 0100 FFFF 0100 0300 \"GPw\" 0600 0700"},
           Row{std::make_shared<GPv>(5, 3), "0500 0300 000000"},
           Row{std::make_shared<GPbip>(5, 0x1FFFF, 2), "0500 0200 0000 FFFF"},
       }) {
    std::string const bytes = FromHex(hex);
    char const * const name = item->GetRuntimeClass()->m_lpszClassName;
    EXPECT_EQ(storedAlone(*item), bytes) << name;
    std::string again;
    auto const read = [&again, &item = item](CArchive & ar) {
      std::unique_ptr<GPData> const back(static_cast<GPData *>(item->GetRuntimeClass()->CreateObject()));
      back->Serialize(ar);
      again = storedAlone(*back);
    };
    EXPECT_EQ(CauseOfLoading(bytes, read), CArchiveException::none) << name;
    EXPECT_EQ(again, bytes) << name;
    LoadDamaged(bytes, read);
    std::unique_ptr<GPData> const copy(static_cast<GPData *>(item->Clone()));
    EXPECT_EQ(copy->GetRuntimeClass(), item->GetRuntimeClass());
    EXPECT_EQ(storedAlone(*copy), bytes) << name;
  }
}

TEST(DataItems, RefuseWhatNoItemCanHold)
{
  using E = CArchiveException;
  using Row = std::tuple<char const *, int, char const *>;
  for (auto const & [bytes, cause, why] : {
           Row{"0300 \"GPv\" 0500 FFFF 00", E::endOfFile, "a negative size"},
           Row{"0300 \"GPv\" 0500 0080 00", E::endOfFile, "the smallest size"},
           Row{"0300 \"GPa\" 0500 FFFF 0100 0300 \"GPw\" 0500 0000", E::badClass, "an item as an array"},
           Row{"0300 \"GPa\" 0500 0200", E::badIndex, "itself as its array"},
           Row{"0900 \"GPObArray\" 0000", E::badClass, "no item"},
           Row{"0300 \"GPa\" 0500 FFFF 0100 0900 \"GPObArray\" 0100 0180 0500 0400", E::badIndex, "an array in itself"},
           Row{"0300 \"GPa\" 0500 FFFF 0100 0900 \"GPObArray\" 0200 0180 0600 0380 0000 0180 0700 0600", E::badIndex,
               "an array with two owners"},
       }) {
    auto const read = [](CArchive & ar) { delete ar.ReadOwnedObject(RUNTIME_CLASS(GPData)); };
    EXPECT_EQ(CauseOfLoading(FromHex("FFFF 0100") + FromHex(bytes), read), cause) << why;
  }
}

TEST(DataItems, CompareByDataIDAndTextsByTheirText)
{
  GPf const f(5, 1.0);
  GPd const d(5, 2.0);
  GPs const lower(5, "abc");
  GPs const upper(5, "ABC");
  GPs const later(60000, "ABC");
  GPbip const bip(5, 1);
  GPbip const nextBip(5, 60000);
  GPv const v(5, 4);
  EXPECT_EQ(f.Compare(&d), 0);
  EXPECT_EQ(f.Compare(&lower), 0);
  EXPECT_EQ(lower.Compare(&f), 0);
  EXPECT_GT(lower.Compare(&upper), 0);
  EXPECT_LT(upper.Compare(&lower), 0);
  EXPECT_EQ(lower.CompareDataIDs(&upper), 0);
  EXPECT_EQ(upper.Compare(&later), 5 - 60000);
  EXPECT_EQ(later.Compare(&lower), 60000 - 5);
  EXPECT_EQ(bip.Compare(&nextBip), 1 - 60000);
  EXPECT_EQ(nextBip.Compare(&v), 0);
  EXPECT_EQ(v.Compare(&bip), 0);
  // What is no item is ordered by address, never as equal.
  GPObject const object;
  EXPECT_EQ(f.Compare(&object) < 0, static_cast<void const *>(&f) < static_cast<void const *>(&object));
  EXPECT_NE(lower.Compare(&object), 0);
  EXPECT_GT(f.Compare(nullptr), 0);
}

TEST(DataItems, FormatTheirValue)
{
  EXPECT_EQ(textOf(GPd(5, 1e-7), ""), "1e-07");
  EXPECT_EQ(textOf(GPd(5, 2.5), "<%8.3f>"), "<   2.500>");
  EXPECT_EQ(textOf(GPf(5, 0.1), ""), "0.1");
  EXPECT_EQ(textOf(GPf(5, 0.1), "%.9g"), "0.100000001");
  EXPECT_EQ(textOf(GPf(5, 3), ""), "3");
  EXPECT_EQ(textOf(GPdw(5, -1), ""), "-1");
  EXPECT_EQ(textOf(GPdw(5, -1), "%lu"), "4294967295");
  EXPECT_EQ(textOf(GPdw(5, -1), "%lX"), "FFFFFFFF");
  EXPECT_EQ(textOf(GPdw(5, 0x100000007L), ""), "7");
  EXPECT_EQ(textOf(GPw(5, 0x1FFFF), ""), "-1");
  EXPECT_EQ(textOf(GPw(5, 70000), "%05d"), "04464");
  EXPECT_EQ(textOf(GPs(7, "water"), ""), "7\twater");
  EXPECT_EQ(textOf(GPs(7, "water"), "[%s]"), "[water]");
  EXPECT_EQ(textOf(GPs(7, "water", 3), "%s"), "wat");
  for (char const * const format : {"", "%g"}) {
    EXPECT_EQ(textOf(GPxy(5, 1.0, 2.0), format), "");
    EXPECT_EQ(textOf(GPData(5), format), "");
    EXPECT_EQ(textOf(GPa(5), format), "");
    EXPECT_EQ(textOf(GPv(5, 4), format), "");
  }
  // A conversion that doesn't fit the value appears as text.
  EXPECT_EQ(textOf(GPd(5, 2.5), "%s %n"), "%s %n");
  EXPECT_EQ(textOf(GPs(5, "x"), "%d"), "%d");
}

TEST(DataItems, CopyTheArrayTheyOwn)
{
  auto * const array = new GPObArray;
  array->Add(new GPs(1, "first"));
  GPa const original(5, array);
  GPa other(6, new GPObArray);
  other = original;
  EXPECT_EQ(other.GetDataID(), 5U);
  EXPECT_NE(other.GetArray(), array);
  EXPECT_NE((*other.GetArray())[0], (*array)[0]);
  delete original.Clone();
  EXPECT_EQ(static_cast<GPs *>((*array)[0])->GetValue(), "first");
  // The source may be the target, or lie inside it.
  GPa const & itself = other;
  other = itself;
  EXPECT_EQ(other.GetArray()->GetSize(), 1);
  other.GetArray()->Add(new GPa(9, new GPObArray));
  other = *static_cast<GPa *>((*other.GetArray())[1]);
  EXPECT_EQ(other.GetDataID(), 9U);
  EXPECT_TRUE(other.GetArray()->IsEmpty());
  other.Init(original);
  EXPECT_EQ(other.GetDataID(), 9U);
  EXPECT_EQ(other.GetArray()->GetSize(), 1);
  other = GPa(7);
  EXPECT_EQ(other.GetArray(), nullptr);
}
