// The session as a program uses it, on whatever server.

#include "tests/spreadsheet/SessionSuite.h"

#include <zpbase/config.h>

SessionSuite::SessionSuite() : m_pServer(GetParam()())
{
  m_App.SetProfileFile(m_Folder.Name("app.ini"));
  SetSysString(GetExcelSectionKey(), GetExcelRegFileTypeIDKey(), m_pServer->ProgId());
}

SessionSuite::~SessionSuite()
{
  DetachExcel();
}

void SessionSuite::SetUp()
{
  if (std::string const why = m_pServer->WhyNot(); !why.empty()) GTEST_SKIP() << why;
}

CString SessionSuite::MakeSample()
{
  CString const name = m_Folder.Name("sample.xlsx");
  m_pServer->MakeBook(name,
                      {{"First", {{"A1", COleVariant("Water")}, {"B1", COleVariant(0.1 + 0.2)}, {"CV50", COleVariant(-4.0)}}},
                       {"DATA", {{"C2", COleVariant("caf\xE9")}}}});
  return name;
}

namespace {

std::string shownCells(GPObArray const & cells)
{
  std::string text;
  for (int i = 0; i < cells.GetSize(); ++i) {
    auto & cell = dynamic_cast<GPCell &>(*cells[i]);
    text += cell.GetName();
    CString value;
    if (cell.GetValue().vt == VT_R8 && cell.GetValue().dblVal == 0.1 + 0.2) value = "(0.1 + 0.2)";
    text += std::string("=") + (value.IsEmpty() && cell.GetValue(value) == 0 ? "?" : value.GetString()) + " ";
  }
  return text;
}

TEST_P(SessionSuite, WalksOverAWorkbookAndKeepsItsNamesAndCells)
{
  GPExcelWorkBook book(MakeSample());
  ASSERT_EQ(book.BuildWorkBook(&GPExcelWorkBook::ProcessWorkSheet), 1);
  ASSERT_EQ(book.m_WorkSheets.GetSize(), 2);
  auto & first = dynamic_cast<GPExcelWorkSheet &>(*book.m_WorkSheets[0]);
  auto & second = dynamic_cast<GPExcelWorkSheet &>(*book.m_WorkSheets[1]);
  EXPECT_EQ(first.m_strName, "First");
  EXPECT_EQ(first.m_Link.HasOLELink(), 0);
  EXPECT_EQ(shownCells(first.m_List1), "A1=Water B1=(0.1 + 0.2) CV50=-4 ");
  EXPECT_EQ(second.m_strName, "DATA");
  EXPECT_EQ(shownCells(second.m_List1), "C2=caf\xE9 ");
  ASSERT_EQ(book.HasOLELink(), 1);
  ASSERT_EQ(AttachExcel(), 1);
  EXPECT_EQ(GPExcel::GetExcel()->CloseWorkBook(book), 1);
  EXPECT_TRUE(m_User.m_Messages.empty());
}

TEST_P(SessionSuite, FindsMakesLoadsAndCloses)
{
  CString const path = MakeSample();
  ASSERT_EQ(AttachExcel(), 1);
  GPExcel & excel = *GPExcel::GetExcel();
  GPExcelWorkBook book(path);
  EXPECT_EQ(excel.FindWorkBook(book), 0);
  ASSERT_EQ(excel.LoadWorkBook(book), 1);
  GPExcelWorkBook again(path);
  EXPECT_EQ(excel.FindWorkBook(again), 1);
  GPExcelWorkBook bare("sample.xlsx");
  EXPECT_EQ(excel.FindWorkBook(bare), 0);

  GPExcelWorkSheet data("data");
  EXPECT_EQ(book.FindWorkSheet(data), 1);
  EXPECT_EQ(data.m_Link.GetName(), "DATA");
  EXPECT_EQ(data.SetFocus(), 1);
  GPExcelWorkSheet missing("data2");
  EXPECT_EQ(book.FindWorkSheet(missing), 0);
  GPExcelWorkSheet results("Results");
  EXPECT_EQ(book.CreateWorkSheet(results), 1);
  EXPECT_EQ(results.m_Link.GetName(), "Results");
  GPExcelWorkSheet twice("RESULTS");
  EXPECT_EQ(book.CreateWorkSheet(twice), 1);  // under a name of the server's
  EXPECT_NE(twice.m_Link.GetName().CompareNoCase("Results"), 0);
  GPExcelChart chart("Profile");
  EXPECT_EQ(book.FindChart(chart), 0);
  EXPECT_EQ(book.CreateChart(chart), 1);
  GPExcelChart found("profile");
  EXPECT_EQ(book.FindChart(found), 1);
  EXPECT_EQ(found.SetFocus(), 1);
  EXPECT_EQ(book.SetFocus(), 1);

  EXPECT_EQ(excel.CloseWorkBook(book), 1);
  GPExcelWorkBook gone(path);
  EXPECT_EQ(excel.FindWorkBook(gone), 0);
  GPExcelWorkBook fresh("Fresh");
  EXPECT_EQ(excel.CreateWorkBook(fresh), 1);
  EXPECT_EQ(excel.CloseWorkBook(fresh), 1);
  EXPECT_TRUE(m_User.m_Messages.empty());
}

TEST_P(SessionSuite, TellsWhatCannotBeLoaded)
{
  ASSERT_EQ(AttachExcel(), 1);
  CString const path = m_Folder.Name("missing.xlsx");
  GPExcelWorkBook missing(path);
  EXPECT_EQ(GPExcel::GetExcel()->LoadWorkBook(missing), 0);  // the server tells its failure as an exception of its own
  ASSERT_EQ(m_User.m_Messages.size(), 1u);
  EXPECT_EQ(m_User.m_Messages[0].text, "Unable to load Excel workBook\r\n>> " + std::string(path));
}

}  // namespace
