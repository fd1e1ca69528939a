// Objects in files of their own: exact bytes, damaged files, and what stands in the way of storing.

#include <gtest/gtest.h>

#include <zpbase/data.h>
#include <zpbase/platform/archive.h>

#include "tests/support/Raised.h"
#include "tests/support/RecordingInterface.h"
#include "tests/support/TempFolder.h"

namespace {

class ObjectFiles : public testing::Test {
 protected:
  TempFolder m_Folder;
  RecordingInterface m_UI;
};

// An array of two texts: count 2; a new class "GPs" of schema 1, id 1, "ab"; the class again, id 2, "c".
constexpr char const * twoTexts = "0200  FFFF 0100 0300 \"GPs\"  0100 02\"ab\"  0180 0200 01\"c\"";

GPDataArray * makeTexts()
{
  auto * const texts = new GPDataArray;
  texts->LoadStringData(1, "ab");
  texts->LoadStringData(2, "c");
  return texts;
}

TEST_F(ObjectFiles, HoldTheFieldsAlone)
{
  std::unique_ptr<GPDataArray> const texts(makeTexts());
  EXPECT_NE(texts->Store(m_Folder.Name("texts")), 0);
  EXPECT_EQ(m_Folder.Read("texts"), FromHex(twoTexts));

  GPDataArray loaded;
  loaded.LoadStringData(9, "goes");
  EXPECT_EQ(loaded.Load(m_Folder.Name("texts")), 1);
  ASSERT_EQ(loaded.GetSize(), 2);
  CString second;
  loaded.UnloadStringData(second, 2);
  EXPECT_EQ(second, "c");

  GPObject root;
  EXPECT_NE(root.Store(m_Folder.Name("root")), 0);
  EXPECT_TRUE(m_Folder.Has("root"));
  EXPECT_EQ(m_Folder.Read("root"), "");
  EXPECT_EQ(root.Load(m_Folder.Name("root")), 0);
}

template <class Container>
void expectMessagesForEveryCut(TempFolder const & folder, RecordingInterface const & ui, std::string const & good)
{
  for (size_t length = 1; length < good.size(); ++length) {
    folder.Write("cut", std::string_view(good).substr(0, length));
    Container container;
    size_t const messages = ui.m_Messages.size();
    EXPECT_EQ(container.Load(folder.Name("cut")), 1);
    EXPECT_TRUE(container.IsEmpty()) << length;
    ASSERT_EQ(ui.m_Messages.size(), messages + 1) << length;
    EXPECT_EQ(ui.m_Messages.back().text.rfind(std::string("The file ") + folder.Name("cut").GetString(), 0), 0u);
    EXPECT_EQ(ui.m_Messages.back().helpId, 43782u);
  }
}

TEST_F(ObjectFiles, ThatAreCutLeaveContainersEmptyWithAMessage)
{
  expectMessagesForEveryCut<GPObArray>(m_Folder, m_UI, FromHex(twoTexts));
  expectMessagesForEveryCut<GPObList>(m_Folder, m_UI, FromHex(twoTexts));
  expectMessagesForEveryCut<GPDataArray>(m_Folder, m_UI, FromHex(twoTexts));
  EXPECT_NE(m_UI.m_Messages.back().text.find("(problem 3)"), std::string::npos);
}

TEST_F(ObjectFiles, ThatAreCutShowTheirMessageBeforeTheContainerIsEmptied)
{
  m_Folder.Write("cut", FromHex("0200  FFFF 0100 0300 \"GPs\"  0100 02\"ab\"  0180 0200"));
  GPObArray container;
  int elements = 0;
  bool inUse = false;
  m_UI.m_WhileShown = [&] {
    elements = container.GetSize();
    inUse = !CFile().Open(m_Folder.Name("cut"), CFile::modeReadWrite);
  };
  EXPECT_EQ(container.Load(m_Folder.Name("cut")), 1);
  EXPECT_EQ(elements, 1);
  EXPECT_TRUE(inUse);
  EXPECT_TRUE(container.IsEmpty());

  m_UI.m_WhileShown = [] { throw 0; };
  EXPECT_THROW(container.Load(m_Folder.Name("cut")), int);
  EXPECT_TRUE(CFile().Open(m_Folder.Name("cut"), CFile::modeReadWrite));
}

TEST_F(ObjectFiles, OfItemsLetTheArchivesExceptionPass)
{
  GPs text(1, "ab");
  EXPECT_NE(text.Store(m_Folder.Name("item")), 0);
  m_Folder.Write("item", m_Folder.Read("item").substr(0, 4));
  EXPECT_EQ(CodeOf<CArchiveException>([&] { text.Load(m_Folder.Name("item")); }), CArchiveException::endOfFile);
  EXPECT_TRUE(m_UI.m_Messages.empty());
}

TEST_F(ObjectFiles, ThatAreMissingOrEmptyLeaveTheObjectAlone)
{
  std::unique_ptr<GPDataArray> const texts(makeTexts());
  m_Folder.Write("empty", "");
  EXPECT_EQ(texts->Load(m_Folder.Name("missing")), 0);
  EXPECT_EQ(texts->Load(m_Folder.Name("empty")), 0);
  EXPECT_EQ(texts->GetSize(), 2);
  EXPECT_TRUE(m_UI.m_Messages.empty());
}

TEST_F(ObjectFiles, InUseAreNeitherReadNorOverwritten)
{
  std::unique_ptr<GPDataArray> const texts(makeTexts());
  m_Folder.Write("used", "old bytes");
  CFile holder;
  ASSERT_TRUE(holder.Open(m_Folder.Name("used"), CFile::modeReadWrite));
  EXPECT_NE(texts->Store(m_Folder.Name("used")), 0);
  EXPECT_EQ(m_Folder.Read("used"), "old bytes");
  EXPECT_EQ(CodeOf<CFileException>([&] { texts->Load(m_Folder.Name("used")); }), CFileException::sharingViolation);
  EXPECT_EQ(texts->Store(m_Folder.Name("no such folder\\file")), 0);
}

// An element that its stream can't hold.
class Unstreamable : public GPObject {
 public:
  void Serialize(CArchive &) override { AfxThrowArchiveException(CArchiveException::genericException); }
};

TEST_F(ObjectFiles, KeepTheirOldBytesWhenTheNewOnesCantBeMade)
{
  m_Folder.Write("kept", "old bytes");
  Unstreamable item;
  EXPECT_EQ(CodeOf<CException>([&] { item.Store(m_Folder.Name("kept")); }), 1);
  EXPECT_EQ(m_Folder.Read("kept"), "old bytes");
}

}  // namespace
