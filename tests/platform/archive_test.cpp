// The persistent object format, byte for byte, and what damaged bytes do.

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>
#include <thread>
#include <tuple>
#include <vector>

#include <zpbase/foundation.h>
#include <zpbase/platform/archive_parts.h>

#include "tests/support/Archives.h"
#include "tests/support/Raised.h"
#include "tests/support/TempFolder.h"

namespace {

std::string const arrayHead = FromHex("FF FF 01 00 09 00 \"GPObArray\"");
std::string const objectHead = FromHex("FF FF 01 00 08 00 \"GPObject\"");

// One object of any class, which is let go again.
void readOne(CArchive & ar)
{
  delete ar.ReadOwnedObject(nullptr);
}

// An array in an array, depth arrays in all.
std::unique_ptr<GPObArray> nestedArrays(int depth)
{
  auto outer = std::make_unique<GPObArray>();
  for (int i = 1; i < depth; ++i) {
    auto next = std::make_unique<GPObArray>();
    next->Add(outer.release());
    outer = std::move(next);
  }
  return outer;
}

std::string nestedArrayBytes(int depth)
{
  std::string bytes = arrayHead;
  for (int i = 1; i < depth; ++i) bytes += FromHex("01 00 01 80");
  return bytes + FromHex("00 00");
}

}  // namespace

// Its name has 63 characters, and the next one's 64.
class ALongNameThatAnArchiveHoldsAsItStandsWithAllItsLetters123456789 : public CObject {
  DECLARE_SERIAL(ALongNameThatAnArchiveHoldsAsItStandsWithAllItsLetters123456789)
};
class ALongNameThatAnArchiveHoldsAsItStandsWithAllItsLetters1234567890 : public CObject {
  DECLARE_SERIAL(ALongNameThatAnArchiveHoldsAsItStandsWithAllItsLetters1234567890)
};
IMPLEMENT_SERIAL(ALongNameThatAnArchiveHoldsAsItStandsWithAllItsLetters123456789, CObject, 1)
IMPLEMENT_SERIAL(ALongNameThatAnArchiveHoldsAsItStandsWithAllItsLetters1234567890, CObject, 1)

TEST(Archive, StoresNoClassNameThatItCouldNotRead)
{
  ALongNameThatAnArchiveHoldsAsItStandsWithAllItsLetters123456789 const longest;
  std::string const bytes = Stored([&](CArchive & ar) { ar << &longest; });
  EXPECT_EQ(bytes.size(), 6U + 63);
  EXPECT_EQ(CauseOfLoading(bytes, readOne), CArchiveException::none);
  ALongNameThatAnArchiveHoldsAsItStandsWithAllItsLetters1234567890 const tooLong;
  EXPECT_EQ(CauseOfStoring([&](CArchive & ar) { ar << &tooLong; }), CArchiveException::badClass);
  EXPECT_EQ(CauseOfLoading(FromHex("FF FF 01 00 00 70") + std::string(0x7000, 'A'), readOne), CArchiveException::badClass);
}

TEST(Archive, WritesNumbersLittleEndianAtTheirWidths)
{
  std::tuple const values(BYTE{0x12}, 'A', WORD{0x1234}, short{-2}, DWORD{0x12345678}, -3, -4L, 0xFFFFFFFFUL, 1.5F, -0.5);
  std::string const bytes =
      FromHex("12 41 34 12 FE FF 78 56 34 12 FD FF FF FF FC FF FF FF FF FF FF FF 00 00 C0 3F 00 00 00 00 00 00 E0 BF");
  EXPECT_EQ(Stored([&](CArchive & ar) { std::apply([&](auto... value) { (ar << ... << value); }, values); }), bytes);
  std::remove_const_t<decltype(values)> back;
  auto const read = [&](CArchive & ar) { std::apply([&](auto &... value) { (ar >> ... >> value); }, back); };
  EXPECT_EQ(CauseOfLoading(bytes, read), CArchiveException::none);
  EXPECT_TRUE(back == values);
}

TEST(Archive, PrefixesTextsAndCountsByTheirSize)
{
  using Row = std::tuple<int, char const *, char const *>;
  for (auto const & [length, prefix, count] :
       {Row{0, "00", "0000"}, Row{254, "FE", "FE00"}, Row{255, "FF FF00", "FF00"}, Row{0xFFFD, "FF FDFF", "FDFF"},
        Row{0xFFFE, "FF FFFF FEFF0000", "FEFF"}, Row{0xFFFF, "FF FFFF FFFF0000", "FFFF FFFF0000"},
        Row{70000, "FF FFFF 70110100", "FFFF 70110100"}}) {
    CString const text('x', length);
    std::string const bytes = FromHex(prefix) + std::string(text.View()) + FromHex(count);
    EXPECT_EQ(Stored([&, count = static_cast<DWORD>(length)](CArchive & ar) {
                ar << text;
                ar.WriteCount(count);
              }),
              bytes);
    auto const read = [&, count = static_cast<DWORD>(length)](CArchive & ar) {
      CString back("old");
      ar >> back;
      EXPECT_EQ(back, text);
      EXPECT_EQ(ar.ReadCount(), count);
    };
    EXPECT_EQ(CauseOfLoading(bytes, read), CArchiveException::none) << length;
  }
}

TEST(Archive, ReadsWideTextsAndRefusesTextsThatAreLongerThanTheBytes)
{
  auto const read = [](CArchive & ar) {
    CString text;
    ar >> text;
    EXPECT_EQ(text, "a\x80\xE9?");
  };
  std::string const wide = FromHex("FF FEFF 04 6100 AC20 E900 0104");
  EXPECT_EQ(CauseOfLoading(wide, read), CArchiveException::none);
  for (char const * const cut : {"FF FEFF 05 6100 AC20 E900 0104", "04 616263", "FF FFFF FFFFFF7F 61", "FF FFFF FFFFFFFF 61",
                                 "FF FEFF FF FFFF FFFFFF3F 6100", "FF FEFF FF FEFF 61", "FF 0100", "FF FFFF 0000"})
    EXPECT_EQ(CauseOfLoading(FromHex(cut), read), CArchiveException::endOfFile) << cut;
}

TEST(Archive, WritesEachClassOnceAndCountsClassesWithObjects)
{
  GPObject object;
  GPObject second;
  GPObArray array;
  GPObList list;
  std::string const bytes = objectHead + arrayHead + FromHex("00 00 FF FF 01 00 08 00 \"GPObList\" 00 00");
  ASSERT_EQ(bytes.size(), 47u);
  EXPECT_EQ(Stored([&](CArchive & ar) { ar << &object << &array << &list; }), bytes);
  auto const readThree = [](CArchive & ar) {
    for (int i = 0; i < 3; ++i) readOne(ar);
  };
  EXPECT_EQ(CauseOfLoading(bytes, readThree), CArchiveException::none);
  LoadDamaged(bytes, readThree);

  // The class has index 1, the objects 2 and 3.
  std::string const repeated = objectHead + FromHex("01 80 02 00 03 00 00 00");
  EXPECT_EQ(Stored([&](CArchive & ar) { ar << &object << &second << &object << &second << nullptr; }), repeated);
  auto const read = [](CArchive & ar) {
    std::unique_ptr<CObject> const first(ar.ReadObject(RUNTIME_CLASS(GPObject)));
    std::unique_ptr<CObject> const next(ar.ReadObject(nullptr));
    EXPECT_EQ(ar.ReadObject(nullptr), first.get());
    EXPECT_EQ(ar.ReadObject(RUNTIME_CLASS(GPObject)), next.get());
    EXPECT_EQ(ar.ReadObject(nullptr), nullptr);
  };
  EXPECT_EQ(CauseOfLoading(repeated, read), CArchiveException::none);
}

TEST(Archive, UsesLargeIndexesPast7FFE)
{
  // The class is 1, so object k, from 0, is 2 + k: the last of these is 0x7FFE.
  std::vector<GPObject> objects(0x7FFD);
  GPObArray firstArray;
  GPObArray secondArray;
  std::string const bytes = Stored([&](CArchive & ar) {
    for (GPObject const & object : objects) ar << &object;
    ar << &firstArray << &secondArray << &objects.back() << &firstArray << &objects[0];
  });
  // Class 0x7FFF, arrays 0x8000 and 0x8001.
  std::string const tail = arrayHead + FromHex("0000  FF7F FF7F0080 0000  FE7F  FF7F 00800000  0200");
  std::string const middle(2 * (objects.size() - 1), '\0');
  ASSERT_EQ(bytes.size(), objectHead.size() + middle.size() + tail.size());
  EXPECT_EQ(bytes.substr(bytes.size() - tail.size()), tail);
  auto const read = [&](CArchive & ar) {
    std::vector<std::unique_ptr<CObject>> back;
    for (size_t i = 0; i < objects.size() + 2; ++i) back.emplace_back(ar.ReadObject(nullptr));
    EXPECT_TRUE(back.back()->IsKindOf(RUNTIME_CLASS(GPObArray)));
    EXPECT_EQ(ar.ReadObject(nullptr), back[objects.size() - 1].get());
    EXPECT_EQ(ar.ReadObject(nullptr), back[objects.size()].get());
    EXPECT_EQ(ar.ReadObject(nullptr), back[0].get());
  };
  EXPECT_EQ(CauseOfLoading(bytes, read), CArchiveException::none);
}

// Beside a plain map of what was written: alone, again in another order, while another archive has its marks in the same objects,
// and on two threads at once. A copy or an assignment takes no mark along.
TEST(Archive, KnowsObjectsAgainWhicheverArchiveMarkedThem)
{
  std::vector<GPObject> objects(3000);
  std::vector<GPObject> copies;
  struct Writer {
    CMemFile file;
    CArchive archive{&file, CArchive::store};
    std::mt19937 random;
    std::map<GPObject const *, int> known;
    std::string expected;

    void Write(GPObject const & object)
    {
      archive << &object;
      int const next = static_cast<int>(known.size()) + 2;
      auto const [place, isNew] = known.emplace(&object, next);
      if (isNew)
        expected += next == 2 ? objectHead : FromHex("01 80");
      else
        expected += {static_cast<char>(place->second & 0xFF), static_cast<char>(place->second >> 8)};
    }
    void WriteSome(std::vector<GPObject> const & from, int count)
    {
      for (; count > 0; --count) Write(from[random() % from.size()]);
    }
    void ExpectBytes()
    {
      archive.Flush();
      std::string written(static_cast<size_t>(file.GetLength()), '\0');
      file.SeekToBegin();
      file.Read(written.data(), static_cast<UINT>(written.size()));
      EXPECT_TRUE(written == expected);
    }
  };
  for (unsigned int seed : {1U, 2U}) {
    Writer first, second;
    first.random.seed(seed);
    for (int turn = 0; turn < 4; ++turn) {
      first.WriteSome(objects, 1000);
      second.WriteSome(objects, 1000);
    }
    copies = objects;
    objects[0] = objects[1];
    first.WriteSome(copies, 1000);
    first.WriteSome(objects, 1000);
    first.ExpectBytes();
    second.ExpectBytes();
  }
  auto const storeMany = [&objects] {
    for (int i = 0; i < 20; ++i) {
      Writer writer;
      writer.WriteSome(objects, 500);
      writer.ExpectBytes();
    }
  };
  std::thread other(storeMany);
  storeMany();
  other.join();
}

// Classes that are written alone take indexes too.
TEST(Archive, HasRoomForAnObjectBehindManyClasses)
{
  GPObject const first, last;
  CMemFile file;
  CArchive archive(&file, CArchive::store);
  archive << &first;
  for (int i = 0; i < 5000; ++i) zp::ArchiveParts(archive).WriteClass(RUNTIME_CLASS(GPObject));
  archive << &last << &last;
  archive.Flush();
  std::string end(4, '\0');
  file.Seek(-4, CFile::end);
  file.Read(end.data(), 4);
  EXPECT_EQ(end, FromHex("01 80 8B 13"));
}

TEST(Archive, TellsTheCauseOfEachDamage)
{
  using Row = std::tuple<char const *, int, char const *>;
  using E = CArchiveException;
  for (auto const & [bytes, cause, why] : {
           Row{"", E::endOfFile, "nothing"},
           Row{"FF FF 01 00 09 00 \"GPNothing\"", E::badClass, "an unknown class"},
           Row{"FF FF FF FF 08 00 \"CObArray\"", E::badClass, "a class that can't be made"},
           Row{"FF FF 01 00 00 00", E::badClass, "no name"},
           Row{"FF FF 01 00 07 00 \"GPObjec\"", E::badClass, "the front of a name"},
           Row{"FF FF 01 00 20 00 \"GPObject\" 000000000000000000000000000000000000000000000000", E::badClass,
               "zeros behind a name"},
           Row{"FF FF 02 00 08 00 \"GPObject\"", E::badSchema, "another schema"},
           Row{"FF FF 01 00 FF FF \"GPObject\"", E::endOfFile, "a name longer than the bytes"},
           Row{"02 00", E::badIndex, "an index beyond what was read"},
           Row{"02 80", E::badIndex, "a class index beyond what was read"},
           Row{"00 80", E::badIndex, "class 0"},
           Row{"FF 7F FF FF FF 7F", E::badIndex, "a large index beyond what was read"},
           Row{"FF 7F 01 00", E::endOfFile, "a cut large index"},
           Row{"FF FF 01 00 09 00 \"GPObArray\" 01 00 02 00", E::badIndex, "an array inside itself"},
           Row{"FF FF 01 00 08 00 \"GPObList\" 01 00 02 00", E::badIndex, "a list inside itself"},
           Row{"FF FF 01 00 09 00 \"GPObArray\" 01 00 01 00", E::badIndex, "a class in an object's place"},
           Row{"FF FF 01 00 09 00 \"GPObArray\" 01 00 02 80", E::badIndex, "an object in a class's place"},
           Row{"FF FF 01 00 09 00 \"GPObArray\" 02 00 FF FF 01 00 08 00 \"GPObject\" 01 80 01 00 04 00", E::badIndex,
               "an object of two arrays"},
           Row{"FF FF 01 00 08 00 \"GPObList\" 02 00 FF FF 01 00 08 00 \"GPObject\" 01 80 01 00 04 00", E::badIndex,
               "the same in lists"},
           Row{"FF FF 01 00 09 00 \"GPObArray\" 03 00 00 00 00 00", E::endOfFile, "more elements than bytes"},
           Row{"FF FF 01 00 09 00 \"GPObArray\" FF FF FF FF FF FF 00 00", E::endOfFile, "4294967295 elements"},
           Row{"FF FF 01 00 08 00 \"GPObList\" FF FF FF FF FF FF 00 00", E::endOfFile, "the same in a list"},
       })
    EXPECT_EQ(CauseOfLoading(FromHex(bytes), readOne), cause) << why;
}

TEST(Archive, PlainCollectionsStreamTheirElementsAndTakeTheSameTwice)
{
  GPObject object;
  CObArray array;
  CObList list;
  for (CObject * element : {static_cast<CObject *>(&object), static_cast<CObject *>(nullptr)})
    array.Add(element), list.AddTail(element);
  std::string const bytes = FromHex("02 00") + objectHead + FromHex("00 00  02 00 02 00 00 00");
  EXPECT_EQ(Stored([&](CArchive & ar) { array.Serialize(ar), list.Serialize(ar); }), bytes);
  auto const read = [&](CArchive & ar) {
    list.RemoveAll();
    array.Serialize(ar), list.Serialize(ar);
    std::unique_ptr<CObject> const back(array[0]);
    EXPECT_TRUE(back.get() != &object && array.GetSize() == 2 && array[1] == nullptr);
    EXPECT_TRUE(list.GetCount() == 2 && list.GetHead() == back.get() && list.GetTail() == nullptr);
  };
  EXPECT_EQ(CauseOfLoading(bytes, read), CArchiveException::none);
  EXPECT_EQ(CauseOfLoading(FromHex("02 00 00"), [&](CArchive & ar) { array.Serialize(ar); }), CArchiveException::endOfFile);
}

TEST(Archive, ChecksTheClassThatIsAskedFor)
{
  auto const readArray = [](CArchive & ar) { delete ar.ReadOwnedObject(RUNTIME_CLASS(GPObArray)); };
  EXPECT_EQ(CauseOfLoading(objectHead, readArray), CArchiveException::badClass);
  EXPECT_EQ(CauseOfLoading(arrayHead + FromHex("0000"), readArray), CArchiveException::none);
  auto const readReference = [](CArchive & ar) {
    std::unique_ptr<CObject> const object(ar.ReadObject(nullptr));
    ar.ReadObject(RUNTIME_CLASS(GPObArray));
  };
  EXPECT_EQ(CauseOfLoading(objectHead + FromHex("0200"), readReference), CArchiveException::badClass);
  CMemFile const file;
  EXPECT_EQ(CauseOfStoring([&](CArchive & ar) { ar << &file; }), CArchiveException::badClass);
}

TEST(Archive, ForgetsWhatFailedWhileItWasRead)
{
  // An array, 2, with an object, 4, and an object of an unknown class; then references to array and object.
  auto const read = [](CArchive & ar) {
    EXPECT_EQ(CodeOf<CArchiveException>([&ar] { ar.ReadObject(nullptr); }), CArchiveException::badClass);
    ar.ReadObject(nullptr);
  };
  std::string const bytes = arrayHead + FromHex("02 00") + objectHead + FromHex("FF FF 01 00 01 00 \"X\"");
  for (char const * const reference : {"02 00", "04 00"})
    EXPECT_EQ(CauseOfLoading(bytes + FromHex(reference), read), CArchiveException::badIndex);
}

TEST(Archive, NestsAThousandObjectsAndNoMore)
{
  auto const write = [](int depth) { return [depth](CArchive & ar) { ar << nestedArrays(depth).get(); }; };
  EXPECT_EQ(Stored(write(1000)), nestedArrayBytes(1000));
  EXPECT_EQ(CauseOfStoring(write(1001)), CArchiveException::badIndex);
  EXPECT_EQ(CauseOfLoading(nestedArrayBytes(1000), readOne), CArchiveException::none);
  EXPECT_EQ(CauseOfLoading(nestedArrayBytes(1001), readOne), CArchiveException::badIndex);
}

TEST(Archive, RefusesTheWrongDirection)
{
  EXPECT_EQ(CauseOfStoring([](CArchive & ar) { ar.ReadCount(); }), CArchiveException::writeOnly);
  EXPECT_EQ(CauseOfStoring([](CArchive & ar) { ar.ReadObject(nullptr); }), CArchiveException::writeOnly);
  EXPECT_EQ(CauseOfLoading("1234", [](CArchive & ar) { ar << 1; }), CArchiveException::readOnly);
  EXPECT_EQ(CauseOfLoading("1234", [](CArchive & ar) { ar.WriteObject(nullptr); }), CArchiveException::readOnly);
}

TEST(Archive, LeavesTheFileBehindWhatItReadAndWritesNothingAfterAnException)
{
  TempFolder const folder;
  folder.Write("numbers", "abcdefgh");
  CFile file;
  ASSERT_TRUE(file.Open(folder.Name("numbers"), CFile::modeReadWrite));
  {
    CArchive ar(&file, CArchive::load);
    WORD word;
    ar >> word;
    ar.Close();
  }
  EXPECT_EQ(file.GetPosition(), 2u);
  CodeOf<CInvalidArgException>([&file] {
    CArchive ar(&file, CArchive::store);
    ar << 1;
    AfxThrowInvalidArgException();
  });
  file.Close();
  EXPECT_EQ(folder.Read("numbers"), "abcdefgh");
}

TEST(Archive, CarriesBlocksLargerThanItsBuffer)
{
  std::string big(10000, '\0');
  for (size_t i = 0; i < big.size(); ++i) big[i] = static_cast<char>(i * 7);
  auto const size = static_cast<UINT>(big.size());
  std::string back(big.size() + 2, '\0');
  auto const write = [&](CArchive & ar) {
    ar << BYTE{1};
    ar.Write(big.data(), size);
    ar << BYTE{2};
  };
  EXPECT_EQ(Stored(write), '\1' + big + '\2');
  auto const read = [&](CArchive & ar) {
    ar.EnsureRead(back.data(), 1);
    EXPECT_EQ(ar.Read(back.data() + 1, size + 9), size + 1);
  };
  EXPECT_EQ(CauseOfLoading('\1' + big + '\2', read), CArchiveException::none);
  EXPECT_EQ(back, '\1' + big + '\2');
}
