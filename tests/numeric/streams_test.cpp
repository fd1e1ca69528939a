// The stream forms of the numeric containers: exact bytes both ways, what a stream can't hold, and damaged streams.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include <zpbase/platform/application.h>
#include <zpbase/platform/archive.h>

#include "tests/numeric/containers.h"
#include "tests/support/RecordingInterface.h"
#include "tests/support/TempFolder.h"

namespace {

template <class Container>
std::string bytesOf(Container const & container)
{
  CMemFile file;
  CArchive archive(&file, CArchive::store);
  archive << container;
  archive.Close();
  std::string bytes(static_cast<std::size_t>(file.GetLength()), '\0');
  file.SeekToBegin();
  file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
  return bytes;
}

// Reads the container and then one byte more, which shows where reading ended; -1 for none.
template <class Container>
int readFrom(std::string bytes, Container & container)
{
  CMemFile file(reinterpret_cast<BYTE *>(bytes.data()), static_cast<UINT>(bytes.size()));
  CArchive archive(&file, CArchive::load);
  archive >> container;
  BYTE next = 0;
  return archive.Read(&next, 1) == 1 ? next : -1;
}

std::string raw(std::initializer_list<int> bytes)
{
  std::string text;
  for (int byte : bytes) text += static_cast<char>(byte);
  return text;
}

// What follows is read by the caller, with nothing lost in between.
template <class Container>
void expectForm(Container const & container, std::string const & bytes)
{
  EXPECT_EQ(bytesOf(container), bytes);
  Container read(container);
  read.Empty();
  EXPECT_EQ(readFrom(bytes + "\x7F", read), 0x7F);
  EXPECT_TRUE(read == container);
}

TEST(NumericStreams, HaveExactBytes)
{
  expectForm(GPVector(), raw({0, 0}));
  expectForm(vectorOf({1.0, -0.0}), raw({2, 0, 0, 0, 0, 0, 0, 0, 0xF0, 0x3F, 0, 0, 0, 0, 0, 0, 0, 0x80}));
  expectForm(vectorOf({quietNan, infinity}), raw({2, 0, 0, 0, 0, 0, 0, 0, 0xF8, 0x7F, 0, 0, 0, 0, 0, 0, 0xF0, 0x7F}));
  expectForm(intsOf({1, -2, 32767}), raw({3, 0, 1, 0, 0xFE, 0xFF, 0xFF, 0x7F}));
  expectForm(truthsOf({1, 0}), raw({2, 0, 1, 0, 0, 0}));
  expectForm(GPMatrix(), raw({0, 0, 0, 0}));
  expectForm(GPMatrix(0, 5), raw({0, 0, 5, 0}));
  expectForm(GPMatrix(2, 1, 1.0), raw({2, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0xF0, 0x3F, 0, 0, 0, 0, 0, 0, 0xF0, 0x3F}));
  EXPECT_EQ(bytesOf(GPMatrix(2, 3)).size(), 4U + 48U);
}

TEST(NumericStreams, IntegersKeepTheirLow16Bits)
{
  GPIntVector ints;
  GPBOOLVector truths;
  readFrom(bytesOf(intsOf({40000, 70000, -32768, 65536})), ints);
  readFrom(bytesOf(truthsOf({65536, 1})), truths);
  EXPECT_EQ(ints, intsOf({-25536, 4464, -32768, 0}));
  EXPECT_EQ(truths, truthsOf({0, 1}));
}

TEST(NumericStreams, GoThroughArchivesByClass)
{
  CMemFile file;
  CArchive store(&file, CArchive::store);
  GPVector const vector = randomVector(32767);
  GPMatrix const matrix = randomMatrix(3, 2);
  GPIntVector const ints = intsOf({3, 1});
  GPBOOLVector const truths = truthsOf({1});
  store << &vector << &matrix << &ints << &truths;
  store.Close();
  EXPECT_EQ(file.GetLength(), 14U + 2 + 8 * 32767 + 14 + 4 + 48 + 17 + 2 + 4 + 18 + 2 + 2);
  file.SeekToBegin();
  CArchive load(&file, CArchive::load);
  auto const read = [&load] { return std::unique_ptr<CObject>(load.ReadObject(RUNTIME_CLASS(GPObject))); };
  EXPECT_TRUE(dynamic_cast<GPVector &>(*read()) == vector);
  EXPECT_TRUE(dynamic_cast<GPMatrix &>(*read()) == matrix);
  EXPECT_TRUE(dynamic_cast<GPIntVector &>(*read()) == ints);
  EXPECT_TRUE(dynamic_cast<GPBOOLVector &>(*read()) == truths);
}

template <class Container>
void expectRefused(Container const & container)
{
  CMemFile file;
  CArchive archive(&file, CArchive::store);
  try {
    archive << container;
    FAIL() << "taken";
  } catch (CArchiveException * problem) {
    zp::ExceptionGuard const guard(problem);
    EXPECT_EQ(problem->m_cause, CArchiveException::genericException);
  }
  archive.Close();
  EXPECT_EQ(file.GetLength(), 0U);
}

TEST(NumericStreams, RefuseWhatTheyCannotHoldBeforeWriting)
{
  expectRefused(GPVector(32768));
  expectRefused(GPIntVector(32768));
  expectRefused(GPBOOLVector(32768));
  for (auto const & [rows, cols] : {std::pair(32768, 1), std::pair(0, 32768)}) expectRefused(GPMatrix(rows, cols));
}

// Message boxes go to the test, and their settings to a folder of its own.
class DamagedNumericStreams : public testing::Test {
 protected:
  DamagedNumericStreams() { m_App.SetProfileFile(m_Folder.Name("test.ini")); }

  template <class Container>
  // Of a stream that is cut among the elements nothing is left for a reader behind it.
  void ExpectDamaged(std::string const & bytes, Container container, bool inElements = false)
  {
    container.ChangeSize(3);  // what was there before goes, too
    m_UI.m_Messages.clear();
    int const next = readFrom(bytes, container);
    if (inElements) {
      EXPECT_EQ(next, -1) << bytes.size();
    }
    EXPECT_TRUE(container.IsEmpty()) << bytes.size();
    EXPECT_EQ(container.ArrayPtr(), nullptr) << bytes.size();
    ASSERT_EQ(m_UI.m_Messages.size(), 1U) << bytes.size();
    EXPECT_EQ(m_UI.m_Messages[0].helpId, 43783U);
  }

  TempFolder m_Folder;
  CWinApp m_App{"test"};
  RecordingInterface m_UI;
};

struct ThreeByThree : GPMatrix {
  void ChangeSize(int size) { GPMatrix::ChangeSize(size, size); }
};

TEST_F(DamagedNumericStreams, LeaveAnEmptyContainerWhereverTheyAreCut)
{
  std::string const vector = bytesOf(vectorOf({1, 2})), ints = bytesOf(intsOf({1, 2})), matrix = bytesOf(GPMatrix(1, 2));
  for (std::size_t cut = 0; cut < matrix.size(); ++cut) {
    if (cut < vector.size()) ExpectDamaged(vector.substr(0, cut), GPVector(), cut > 1);
    if (cut < ints.size()) ExpectDamaged(ints.substr(0, cut), GPIntVector(), cut > 1);
    if (cut < ints.size()) ExpectDamaged(ints.substr(0, cut), GPBOOLVector(), cut > 1);
    ExpectDamaged(matrix.substr(0, cut), ThreeByThree(), cut > 3);
  }
}

TEST_F(DamagedNumericStreams, IncludeNegativeAndBoundlessCounts)
{
  std::string const tail(64, '\0');
  for (std::string const & count : {raw({0xFF, 0xFF}), raw({0x00, 0x80}), raw({0xFF, 0x7F})}) {
    ExpectDamaged(count + tail, GPVector());
    ExpectDamaged(count + tail, GPIntVector());
    ExpectDamaged(count + tail, GPBOOLVector());
    ExpectDamaged(count + raw({1, 0}) + tail, ThreeByThree());
    ExpectDamaged(raw({1, 0}) + count + tail, ThreeByThree());
  }
  ExpectDamaged(raw({0, 0, 0xFF, 0xFF}), ThreeByThree());
  ExpectDamaged(raw({0xFF, 0x7F, 0xFF, 0x7F}) + tail, ThreeByThree());  // 8 GB announced
}

TEST_F(DamagedNumericStreams, AreToldWithClassCauseAndText)
{
  CArchiveException const cut(CArchiveException::endOfFile, nullptr);
  char text[260];
  cut.GetErrorMessage(text, sizeof text);
  ExpectDamaged(raw({1, 0}), GPIntVector());
  EXPECT_EQ(m_UI.m_Messages[0].text, std::string("The numbers of a GPIntVector can't be read (problem 3): ") + text);
}

}  // namespace
