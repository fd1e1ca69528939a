// The tests of the session that every server of the spreadsheet passes. A server joins them with a SessionServer of its own and
//   INSTANTIATE_TEST_SUITE_P(Name, SessionSuite, testing::Values(maker));
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <zpbase/platform/application.h>
#include <zpbase/platform/variants.h>
#include <zpbase/spreadsheet.h>

#include "tests/support/RecordingInterface.h"
#include "tests/support/TempFolder.h"

// A server under test.
class SessionServer {
 public:
  struct Sheet {
    std::string name;
    std::map<std::string, COleVariant> cells;  // texts and numbers, by the names of their cells
  };

  virtual ~SessionServer() = default;
  virtual char const * ProgId() const = 0;

  // Why the server can't be tried here, or nothing.
  virtual std::string WhyNot() const { return {}; }

  // Puts a workbook of that content where the server finds it under the full name, in the inside form.
  virtual void MakeBook(CString const & fullName, std::vector<Sheet> const & sheets) = 0;
};

using MakeSessionServer = std::function<std::unique_ptr<SessionServer>()>;

// An application whose settings name the server, and a place for workbooks.
class SessionSuite : public testing::TestWithParam<MakeSessionServer> {
 protected:
  SessionSuite();
  ~SessionSuite() override;
  void SetUp() override;

  // A workbook of two worksheets, "First" and "DATA", in the folder; its full name.
  CString MakeSample();

  TempFolder m_Folder;
  CWinApp m_App{"Session"};
  RecordingInterface m_User;
  std::unique_ptr<SessionServer> m_pServer;
};
