// The connection to an office: one for the process, shared by every object that was handed out, and ended with the last of them.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include <com/sun/star/bridge/XBridge.hpp>
#include <com/sun/star/frame/XDesktop2.hpp>
#include <com/sun/star/sheet/XSpreadsheetDocument.hpp>

#include "charts.h"
#include "office_process.h"
#include "read_ahead.h"

namespace office {

namespace css = com::sun::star;
using css::uno::Reference;

// What the environment says: ZP_OFFICE_PIPE, the pipe of a running office ("zephlow"); ZP_OFFICE_PROGRAM, the folder of the
// programs of the one to be started; TMPDIR, where its profile is put; ZP_OFFICE_WAIT, the seconds that it has to answer in (60).
struct LinkSettings {
  std::string pipe;
  std::string programFolder;
  std::string parentFolder;
  int seconds;

  static LinkSettings FromEnvironment();
};

class Link {
 public:
  // The process's link, if it is in use and answers, else a new one: to the running office that accepts connections at the pipe,
  // or to one that is started. Failure(startFailed) with a sentence.
  static std::shared_ptr<Link> Get();

  explicit Link(LinkSettings const & settings);
  ~Link();
  Link(Link const &) = delete;
  Link & operator=(Link const &) = delete;

  // Whether the office has gone away.
  bool IsBroken() const { return *m_pIsBroken; }
  // The same, after a call that found something gone: asks the office itself.
  bool HasBroken();

  bool HasStartedTheOffice() const { return m_pProcess != nullptr; }

  Reference<css::frame::XDesktop2> const & GetDesktop() const { return m_Desktop; }

  // The open workbooks, the oldest first.
  std::vector<Reference<css::sheet::XSpreadsheetDocument>> ListWorkbooks() const;

  // To be told of each workbook that was opened or made through the link, and of each that was closed. In an office that was
  // running nobody sees them, so those that are left are closed with the link.
  void Own(Workbook const & workbook) { m_Own.push_back(workbook); }
  void Disown(Workbook const & workbook) { std::erase(m_Own, workbook); }

  // To be told of each file that the office opens or saves to.
  void TakeNoteOf(std::string const & file) const
  {
    if (m_pProcess != nullptr) m_pProcess->CleanLockOf(file);
  }

  ReadAhead & GetReadAhead() { return m_ReadAhead; }
  ChartLists & GetCharts() { return m_Charts; }

  // Whether UNO's objects aren't to be touched any more: the process has come to its end, and UNO with it, or this is a fork of
  // the process that has the connection's threads.
  static bool IsOutOfReach();

  // Ends the connection, and the office if it was started here. Objects that are still held fail from then on.
  void End();

 private:
  void CloseOwn();
  bool Connect(std::string const & pipe);
  void StartAndConnect(LinkSettings const & settings);

  std::unique_ptr<OfficeProcess> m_pProcess;  // null for an office that was running
  Reference<css::bridge::XBridge> m_Bridge;
  Reference<css::frame::XDesktop2> m_Desktop;
  std::shared_ptr<std::atomic<bool>> m_pIsBroken = std::make_shared<std::atomic<bool>>(false);
  std::vector<Workbook> m_Own;
  ReadAhead m_ReadAhead;
  ChartLists m_Charts;
};

}  // namespace office
