// The bridge under test: one office for all tests of the program, and workbooks made through it.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "tests/servers/BookServer.h"

class OfficeServer : public BookServer {
 public:
  char const * ProgId() const override { return "Zephlow.Office"; }
  std::string WhyNot() const override;
  GPApplication & Application() override;
  std::vector<std::string> Extensions() const override { return {"xlsx", "xls", "ods"}; }
  std::string KeptIn(std::string const & extension, VARIANT const & value) const override;
  void MakeBook(CString const & fullName, std::vector<Sheet> const & sheets) override;
};

// The office that the tests share goes.
void ForgetSharedOffice();

// The pipe of the office that was started for the tests.
std::string SharedPipe();

// The processes of this user's whose command line holds a text.
std::vector<pid_t> ProcessesWith(std::string const & text);
