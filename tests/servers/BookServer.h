// Servers with workbooks of their own, worked through the links alone, and the tests that each of them passes beside those of the
// session. A server joins with INSTANTIATE_TEST_SUITE_P(Name, BookSuite, testing::Values(maker)).
#pragma once

#include <string>
#include <vector>

#include "tests/spreadsheet/SessionSuite.h"

class BookServer : public SessionServer {
 public:
  // The application that the server's tests share.
  virtual GPApplication & Application() = 0;

  // The extensions of its formats, and what one of them keeps of a value, as ShownValue tells it.
  virtual std::vector<std::string> Extensions() const = 0;
  virtual std::string KeptIn(std::string const & extension, VARIANT const & value) const = 0;

  // Puts the sheets into a new workbook.
  GPWorkBook FillBook(std::vector<Sheet> const & sheets);

  GPWorkBook NewBook();
  GPWorkBook OpenBook(CString const & fullName);
};

using MakeBookServer = std::function<std::unique_ptr<BookServer>()>;

class BookSuite : public testing::TestWithParam<MakeBookServer> {
 protected:
  void SetUp() override
  {
    if (std::string const why = m_pServer->WhyNot(); !why.empty()) GTEST_SKIP() << why;
  }

  TempFolder m_Folder;
  CWinApp m_App{"Books"};
  std::unique_ptr<BookServer> m_pServer = GetParam()();
};

// Of several objects a link to the one with an index, or the new one.
template <class Link>
Link Attached(IDispatch * object)
{
  Link link;
  link.AttachDispatch(object);
  return link;
}

GPWorkSheet SheetOf(GPWorkBook & book, int index);
COleVariant ValueOf(GPWorkSheet & sheet, std::string const & cells);
void Put(GPWorkSheet & sheet, std::string const & cells, VARIANT const & value);

// "empty", "number " and its bits, "text ...", "true", "error 2042".
std::string ShownValue(VARIANT const & value);
COleVariant ErrorOf(int number);

// What is told by the exception that a call ends in: "code" in hex for a plain one, else the sentence; "" for none.
std::string WhatIsTold(std::function<void()> const & call);
