// Correlation records: the order and count of coefficients, blanks and zeros, the equation's own layout, views of plain items.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>
#include <vector>

#include <zpbase/data.h>

#include "tests/support/Archives.h"
#include "tests/support/TempFolder.h"

namespace {

template <class Value, size_t... i>
int unloadEach(auto const & record, Value * out, std::index_sequence<i...>)
{
  return record.Unload(out[i]...);
}

template <class Value, size_t... i>
int loadEach(auto & record, Value const * in, std::index_sequence<i...>)
{
  return record.Load(in[i]...);
}

std::string bytesOf(GPv const & item)
{
  return std::string(reinterpret_cast<char const *>(item.GetArea()), static_cast<size_t>(item.GetSize()));
}

// What every plain record promises, with its count of coefficients for numbers in, texts in and all that comes out.
template <class Record, size_t numbers, size_t count>
void checkPlain(unsigned int dataID)
{
  using Numbers = std::make_index_sequence<numbers>;
  using Each = std::make_index_sequence<count>;
  Record record;
  EXPECT_EQ(record.GetDataID(), dataID);
  EXPECT_EQ(record.GetSize(), 0);
  EXPECT_EQ(Record(8).GetSize(), 8);

  double in[numbers];
  for (size_t i = 0; i < numbers; ++i) in[i] = static_cast<double>(i) + 0.5;
  EXPECT_EQ(loadEach(record, in, Numbers()), static_cast<int>(numbers));
  float held[numbers];
  EXPECT_EQ(record.GetFloatData(held, numbers), static_cast<int>(numbers));
  EXPECT_TRUE(std::equal(in, in + numbers, held));
  float floats[count];
  double doubles[count];
  CString texts[count];
  EXPECT_EQ(unloadEach(record, floats, Each()), static_cast<int>(numbers));
  EXPECT_EQ(unloadEach(record, doubles, Each()), static_cast<int>(numbers));
  EXPECT_EQ(unloadEach(record, texts, Each()), static_cast<int>(numbers));
  for (size_t i = 0; i < count; ++i) {
    EXPECT_EQ(floats[i], held[i]) << i;
    EXPECT_EQ(doubles[i], in[i]) << i;
    EXPECT_EQ(texts[i][1], '.') << i;
  }

  // A blank in front of a value is a zero, one behind the last value is nothing.
  CString gaps[count];
  gaps[count - 1] = "7";
  EXPECT_EQ(loadEach(record, gaps, Each()), static_cast<int>(count));
  unloadEach(record, texts, Each());
  EXPECT_EQ(texts[0], "0");
  EXPECT_EQ(texts[count - 1], "7");
  gaps[count - 1].Empty();
  gaps[0] = "1.5";
  EXPECT_EQ(loadEach(record, gaps, Each()), 1);
  EXPECT_EQ(unloadEach(record, texts, Each()), 1);
  EXPECT_EQ(unloadEach(record, doubles, Each()), 1);
  EXPECT_EQ(texts[0], "1.5");
  EXPECT_EQ(texts[count - 1], "");
  EXPECT_EQ(doubles[count - 1], 0.0);
  std::fill(in, in + numbers, 0.0);
  EXPECT_EQ(loadEach(record, in, Numbers()), 0);
  EXPECT_EQ(record.GetArea(), nullptr);
  EXPECT_EQ(unloadEach(record, floats, Each()), 0);
  EXPECT_EQ(floats[0], 0.0F);

  // A view of a plain item is a copy of its own, of that class, with the item's id; assigned back it changes the item.
  GPv item(7, 4);
  item.PutFloatData(held, 1);
  Record view = Record::As(item);
  EXPECT_EQ(unloadEach(view, floats, Each()), 1);
  EXPECT_EQ(view.GetDataID(), 7U);
  EXPECT_EQ(floats[0], held[0]);
  EXPECT_NE(view.GetArea(), item.GetArea());
  gaps[0] = "2.5";
  loadEach(view, gaps, Each());
  item = view;
  EXPECT_EQ(bytesOf(item), FromHex("00002040"));
  std::unique_ptr<GPObject> const clone(view.Clone());
  EXPECT_NE(dynamic_cast<Record *>(clone.get()), nullptr);
  EXPECT_EQ(clone->GetRuntimeClass(), RUNTIME_CLASS(GPv));
  EXPECT_EQ(bytesOf(static_cast<GPv &>(*clone)), bytesOf(item));
}

// The equation number and nine values, as texts and as numbers.
using Texts = std::array<CString, 10>;

int load(GPDippr & record, Texts const & in)
{
  return loadEach(record, in.data(), std::make_index_sequence<10>());
}

int unload(GPDippr const & record, Texts & out)
{
  return unloadEach(record, out.data(), std::make_index_sequence<10>());
}

int unload(GPDippr const & r, unsigned int & equation, double (&c)[9])
{
  return r.Unload(equation, c[0], c[1], c[2], c[3], c[4], c[5], c[6], c[7], c[8]);
}

}  // namespace

TEST(Correlations, KeepTheirCoefficientsInOrder)
{
  checkPlain<GPAvp, 7, 3>(97);
  checkPlain<GPIghc, 6, 6>(98);
  checkPlain<GPLv, 2, 2>(99);
  checkPlain<GPSt, 2, 2>(100);
  checkPlain<GPHenry, 4, 4>(101);
  checkPlain<GPMsrk, 2, 2>(102);
  GPAvp wide;
  wide.Load(1, 2, 3, 4, 5, 6, 7);
  float c[7];
  EXPECT_EQ(unloadEach(wide, c, std::make_index_sequence<7>()), 7);
  EXPECT_EQ(std::vector(c, c + 7), (std::vector{1.0F, 2.0F, 3.0F, 4.0F, 5.0F, 6.0F, 7.0F}));
}

TEST(GPDippr, StreamsAsAPlainItem)
{
  GPDippr record(40);
  EXPECT_EQ(record.Load(100, 1, 2, 3, 4, 5, 0, 0, 0, 0), 1);
  std::string const bytes = FromHex("FFFF 0100 0300 \"GPv\" 2800 1600 6400 0000803F 00000040 00004040 00008040 0000A040");
  EXPECT_EQ(Stored([&](CArchive & ar) { ar << &record; }), bytes);
  auto const read = [](CArchive & ar) {
    GPv * item;
    ar >> item;
    std::unique_ptr<GPv> const owned(item);
    Texts out;
    EXPECT_LE(unload(GPDippr::As(*item), out), 5);
  };
  EXPECT_EQ(CauseOfLoading(bytes, read), CArchiveException::none);
}

TEST(GPDippr, KeepsFourValuesAndTheOthersUpToTheLastPresent)
{
  GPDippr record(40);
  unsigned int number = 77;
  double out[9] = {7, 7, 7, 7, 7, 7, 7, 7, 7};
  EXPECT_EQ(record.Load(65637, 0, 0, 0, 0, 0, 0, 0, 0, 0), 0);
  EXPECT_EQ(record.GetSize(), 18);
  EXPECT_EQ(unload(record, number, out), 0);
  EXPECT_EQ(number, 101);
  EXPECT_EQ(std::count(out, out + 9, 0.0), 9);
  EXPECT_EQ(record.Load(1, 1, 2, 3, 4, 0, 6, 0, 0, 0), 2);
  EXPECT_EQ(unload(record, number, out), 2);
  EXPECT_EQ(std::vector(out, out + 9), (std::vector<double>{1, 2, 3, 4, 0, 6, 0, 0, 0}));
  EXPECT_EQ(record.Load(1, 1, 2, 3, 4, 5, 6, 7, 8, 9), 5);

  EXPECT_EQ(load(record, {"101", "", "x", "3", "", "", "", "", "", "0"}), 5);
  EXPECT_EQ(record.GetSize(), 38);
  EXPECT_EQ(load(record, {"101", "1e-30", "", "", "", "", "2.5"}), 2);
  Texts texts = {"", "", "", "", "", "", "", "stale", "", "old"};
  EXPECT_EQ(unload(record, texts), 2);
  EXPECT_TRUE((texts == Texts{"101", "1e-30", "0", "0", "0", "0", "2.5", "stale", "", "old"}));
  unsigned short equation;
  float c[9];
  EXPECT_EQ(record.Unload(equation, c[0], c[1], c[2], c[3], c[4], c[5], c[6], c[7], c[8]), 2);
  EXPECT_EQ(equation, 101);
  EXPECT_EQ(std::vector(c, c + 9), (std::vector<float>{1e-30F, 0, 0, 0, 0, 2.5F, 0, 0, 0}));
}

TEST(GPDippr, ReadsAreasOfAnySize)
{
  for (int size = 0; size < 60; ++size) {
    GPDippr record(40, size);
    std::fill_n(record.GetArea(), size, BYTE{1});
    unsigned int number = 77;
    double out[9] = {7, 7, 7, 7, 7, 7, 7, 7, 7};
    Texts texts = {"old"};
    int const further = size < 18 ? 0 : std::min((size - 18) / 4, 5);
    EXPECT_EQ(unload(record, number, out), further) << size;
    EXPECT_EQ(unload(record, texts), further) << size;
    EXPECT_EQ(std::count(out, out + 9, 0.0), size < 18 ? 9 : 5 - further) << size;
    EXPECT_EQ(number, size < 18 ? 0u : 257u) << size;
    EXPECT_EQ(texts[0], size < 18 ? "old" : "257") << size;
  }
}
