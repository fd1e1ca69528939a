// The bridge under test: one office for all tests of the program, and workbooks made through it.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "tests/spreadsheet/SessionSuite.h"

class OfficeServer : public SessionServer {
 public:
  char const * ProgId() const override { return "Zephlow.Office"; }
  std::string WhyNot() const override;
  void MakeBook(CString const & fullName, std::vector<Sheet> const & sheets) override;
};

// Of several objects a link to the one with an index, or the new one.
template <class Link>
Link Attached(IDispatch * object)
{
  Link link;
  link.AttachDispatch(object);
  return link;
}

// The office that the tests share.
GPApplication & SharedOffice();
void ForgetSharedOffice();

// A new workbook, or an open one by its index; the worksheet of an index.
GPWorkBook NewBook();
GPWorkBook OpenBook(CString const & fullName);
GPWorkSheet SheetOf(GPWorkBook & book, int index);

COleVariant ValueOf(GPWorkSheet & sheet, std::string const & cells);
void Put(GPWorkSheet & sheet, std::string const & cells, VARIANT const & value);

// The pipe of the office that was started for the tests.
std::string SharedPipe();

// The processes of this user's whose command line holds a text.
std::vector<pid_t> ProcessesWith(std::string const & text);

// What is told by the exception that a call ends in: "code" in hex for a plain one, else the sentence; "" for none.
std::string WhatIsTold(std::function<void()> const & call);
