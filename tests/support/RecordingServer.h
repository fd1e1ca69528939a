// A spreadsheet server for tests: it keeps workbooks, writes down each call in the form it came in, counts the references that
// others hold, and fails where it is told to.

#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <zpbase/platform/variants.h>

class RecordingServer {
 public:
  struct Sheet {
    std::string name;
    std::map<std::string, COleVariant> cells;  // by name
  };
  using Sheets = std::vector<std::shared_ptr<Sheet>>;
  struct Book {
    std::string fullName;
    Sheets sheets;
    Sheets charts;
  };
  using Books = std::vector<std::shared_ptr<Book>>;

  explicit RecordingServer(char const * progId = "Test.Recording");  // known by it as long as it lives
  ~RecordingServer();
  RecordingServer(RecordingServer const &) = delete;
  RecordingServer & operator=(RecordingServer const &) = delete;

  // An application object is running from now on, or none any more; the table's reference counts.
  void Run();
  void Stop();

  // From now on, and after as many answers, the call "Worksheet 006E 4" (object, member, flags) ends with code, or, for S_FALSE,
  // with null for an object. DISP_E_EXCEPTION comes with a whole record.
  void Fail(std::string const & call, HRESULT code, int after = 0) { m_Failures[call] = {code, after}; }
  void Mend() { m_Failures.clear(); }

  // The new object's only reference is the caller's.
  IDispatch * MakeApplication();

  std::vector<std::string> m_Calls;  // each with its arguments, the last first, and "?" where a result is wanted
  int m_nLive = 0;                   // references
  int m_nMade = 0;                   // application objects
  bool m_bHasDispatch = true;        // application objects answer IID_IDispatch
  HRESULT m_nMakeCode = S_OK;        // what making one ends with
  Books m_Open;
  std::map<std::string, Book> m_Files;  // by full name

 private:
  struct Failure {
    HRESULT code;
    int after;
  };
  class Thing;

  std::optional<HRESULT> FailureOf(std::string const & call);

  std::string m_strProgId;
  std::map<std::string, Failure> m_Failures;
  std::optional<DWORD> m_Running;
};

// Arguments in the form that m_Calls has.
std::string ShownArguments(DISPPARAMS const & params);
