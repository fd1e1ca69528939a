// Zephlow.Workbooks as its module offers it.

#include "tests/servers/BookServer.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <filesystem>
#include <thread>

namespace {

class EmbeddedServer : public BookServer {
 public:
  char const * ProgId() const override { return "Zephlow.Workbooks"; }
  GPApplication & Application() override
  {
    if (m_Application.HasOLELink() == 0) m_Application.CreateDispatch(ProgId());
    return m_Application;
  }
  void MakeBook(CString const & fullName, std::vector<Sheet> const & sheets) override
  {
    GPWorkBook book = FillBook(sheets);
    book.SaveAs(COleVariant(fullName));
    book.Close(COleVariant(short{0}));
  }
  std::vector<std::string> Extensions() const override { return {"xlsx"}; }
  std::string KeptIn(std::string const &, VARIANT const & value) const override { return ShownValue(value); }

 private:
  GPApplication m_Application;
};

INSTANTIATE_TEST_SUITE_P(Embedded, SessionSuite,
                         testing::Values(MakeSessionServer([] { return std::make_unique<EmbeddedServer>(); })));
INSTANTIATE_TEST_SUITE_P(Embedded, BookSuite, testing::Values(MakeBookServer([] { return std::make_unique<EmbeddedServer>(); })));

class EmbeddedSession : public testing::Test {
 protected:
  TempFolder m_Folder;
  CWinApp m_App{"Embedded"};
  RecordingInterface m_User;
  EmbeddedServer m_Server;
};

TEST_F(EmbeddedSession, AnswersForExcelAndEndsWithTheLastObject)
{
  m_App.SetProfileFile(m_Folder.Name("app.ini"));
  CString const path = m_Folder.Name("held.xlsx");
  m_Server.MakeBook(path, {{"First", {{"A1", COleVariant(1.0)}}}});
  m_Server.Application().ReleaseDispatch();
  GPExcelWorkBook book(path);
  ASSERT_EQ(book.BuildWorkBook(&GPExcelWorkBook::ProcessWorkSheet), 1);
  ASSERT_EQ(AttachExcel(), 1);
  GPExcelWorkBook again(path);
  EXPECT_EQ(GPExcel::GetExcel()->FindWorkBook(again), 1);  // held by the first link alone
  EXPECT_EQ(DetachExcel(), 1);
  book.ReleaseDispatch();
  again.ReleaseDispatch();
  EXPECT_EQ(Attached<GPWorkBooks>(m_Server.Application().GetWorkBooks()).GetCount(), 0);
}

TEST_F(EmbeddedSession, SavesOverNoChangeOfAnotherProgram)
{
  CString const path = m_Folder.Name("shared.xlsx");
  m_Server.MakeBook(path, {{"First", {{"A1", COleVariant(1.0)}}}});
  GPWorkBook book = m_Server.OpenBook(path);
  book.Save();
  book.Save();
  std::string const bytes = m_Folder.Read("shared.xlsx") + "!";
  m_Folder.Write("shared.xlsx", bytes);
  EXPECT_NE(WhatIsTold([&] { book.Save(); }).find("changed by another program"), std::string::npos);
  EXPECT_EQ(m_Folder.Read("shared.xlsx"), bytes);
  book.SaveAs(COleVariant(m_Folder.Name("other.xlsx")));
  EXPECT_EQ(book.GetFullName(), m_Folder.Name("other.xlsx"));
  book.Save();
}

// A writer that has the folder's lock may have written before it lets the other one on.
TEST_F(EmbeddedSession, SavesOverNoChangeThatCameWhileItWaitedForTheFolder)
{
  CString const path = m_Folder.Name("shared.xlsx");
  m_Server.MakeBook(path, {{"First", {{"A1", COleVariant(1.0)}}}});
  GPWorkBook old = m_Server.OpenBook(path);
  GPWorkBook fresh = m_Server.NewBook();
  struct Row {
    char const * file;
    std::function<void()> save;
    char const * told;
  };
  for (Row const & row :
       {Row{"shared.xlsx", [&] { old.Save(); }, "changed by another program"},
        Row{"new.xlsx", [&] { fresh.SaveAs(COleVariant(m_Folder.Name("new.xlsx"))); }, "made by another program"}}) {
    int const folder = open(m_Folder.Path().c_str(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(flock(folder, LOCK_EX), 0);
    std::string told;
    std::thread waiting([&] { told = WhatIsTold(row.save); });
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    m_Folder.Write(row.file, "another program's");
    close(folder);
    waiting.join();
    EXPECT_NE(told.find(row.told), std::string::npos) << told;
    EXPECT_EQ(m_Folder.Read(row.file), "another program's");
  }
}

TEST_F(EmbeddedSession, KnowsItsFileByEveryWayThatLeadsToIt)
{
  std::filesystem::create_directories(m_Folder.Path() / "far/inner");
  std::filesystem::create_directory_symlink("far/inner", m_Folder.Path() / "link");
  CString const path = m_Folder.Name("far/book.xlsx");
  m_Server.MakeBook(path, {{"First", {{"A1", COleVariant(1.0)}}}});
  std::filesystem::create_symlink("far/book.xlsx", m_Folder.Path() / "soft.xlsx");
  std::filesystem::create_hard_link(m_Folder.Path() / "far/book.xlsx", m_Folder.Path() / "hard.xlsx");
  GPWorkBook book = m_Server.OpenBook(m_Folder.Name("link/../book.xlsx"));
  EXPECT_EQ(book.GetFullName(), path);
  book.SaveAs(COleVariant(m_Folder.Name("soft.xlsx")));
  EXPECT_NE(WhatIsTold([&] { book.SaveAs(COleVariant(m_Folder.Name("hard.xlsx"))); }).find("is there already"),
            std::string::npos);
  book.Close(COleVariant(short{0}));
  GPWorkBook soft = m_Server.OpenBook(m_Folder.Name("soft.xlsx"));
  EXPECT_EQ(soft.GetFullName(), m_Folder.Name("soft.xlsx"));
  soft.Save();
  EXPECT_TRUE(std::filesystem::is_symlink(m_Folder.Path() / "soft.xlsx"));
}

TEST_F(EmbeddedSession, PutsOnlyWhatACellHolds)
{
  GPWorkBook book = m_Server.NewBook();
  GPWorkSheet sheet = SheetOf(book, 1);
  struct Row {
    COleVariant put;
    char const * read;
  };
  CString const longest('x', 32767);
  for (Row const & row : {Row{COleVariant(1.0 / 0.0), "error 2036"}, Row{COleVariant(std::nan("")), "error 2036"},
                          Row{COleVariant(2.0, VT_DATE), "number 4000000000000000"}, Row{ErrorOf(1), "error 2042"},
                          Row{COleVariant(7), "number 401C000000000000"}, Row{COleVariant(""), "text "}}) {
    Put(sheet, "B2", row.put);
    EXPECT_EQ(ShownValue(ValueOf(sheet, "B2")), row.read);
  }
  Put(sheet, "B2", COleVariant(longest));
  EXPECT_NE(WhatIsTold([&] { Put(sheet, "A1:B2", COleVariant(longest + "x")); }).find("32767"), std::string::npos);
  EXPECT_EQ(ShownValue(ValueOf(sheet, "B2")), "text " + std::string(longest));
  EXPECT_NE(WhatIsTold([&] { ValueOf(sheet, "A1:XFD1048576"); }).find("more cells"), std::string::npos);
  EXPECT_EQ(WhatIsTold([&] { sheet.SetName(CString('n', 32)); }), "80070057");
}

}  // namespace
