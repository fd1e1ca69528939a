// The session on an office.

#include "tests/office/OfficeServer.h"

#include <signal.h>
#include <unistd.h>

namespace {

INSTANTIATE_TEST_SUITE_P(Office, SessionSuite,
                         testing::Values(MakeSessionServer([] { return std::make_unique<OfficeServer>(); })));

INSTANTIATE_TEST_SUITE_P(Office, BookSuite, testing::Values(MakeBookServer([] { return std::make_unique<OfficeServer>(); })));

class OfficeSession : public SessionSuite {};
INSTANTIATE_TEST_SUITE_P(Office, OfficeSession,
                         testing::Values(MakeSessionServer([] { return std::make_unique<OfficeServer>(); })));

TEST_P(OfficeSession, GoesOnWithANewOfficeAfterTheOldOneWasKilled)
{
  CString const path = MakeSample();
  ASSERT_EQ(AttachExcel(), 1);
  GPExcelWorkBook book(path);
  ASSERT_EQ(GPExcel::GetExcel()->LoadWorkBook(book), 1);
  GPWorkSheet sheet = SheetOf(book, 1);
  ASSERT_EQ(ValueOf(sheet, "A1").vt, VT_BSTR);
  ASSERT_EQ(ValueOf(sheet, "B1").vt, VT_R8);  // a block is read ahead

  auto const offices = ProcessesWith("--accept=pipe,name=zephlow-" + std::to_string(getpid()) + "-");
  ASSERT_EQ(offices.size(), 1u);
  kill(offices[0], SIGKILL);
  EXPECT_EQ(WhatIsTold([&] { book.GetFullName(); }), "800706BA");
  EXPECT_EQ(WhatIsTold([&] { ValueOf(sheet, "C1"); }), "800706BA");

  GPExcelWorkBook again(path);
  EXPECT_EQ(GPExcel::GetExcel()->FindWorkBook(again), 0);  // in a new office
  EXPECT_EQ(GPExcel::GetExcel()->LoadWorkBook(again), 1);  // whose predecessor has left no lock
  EXPECT_EQ(GPExcel::GetExcel()->CloseWorkBook(again), 1);
  EXPECT_TRUE(m_User.m_Messages.empty());
  ForgetSharedOffice();
}

}  // namespace
