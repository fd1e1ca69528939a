// Finding, starting, connecting and ending an office.
#include "link.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <thread>

#include <com/sun/star/bridge/BridgeFactory.hpp>
#include <com/sun/star/connection/ConnectionSetupException.hpp>
#include <com/sun/star/connection/Connector.hpp>
#include <com/sun/star/connection/NoConnectException.hpp>
#include <com/sun/star/container/XEnumerationAccess.hpp>
#include <com/sun/star/frame/Desktop.hpp>
#include <com/sun/star/lang/XComponent.hpp>
#include <com/sun/star/util/XCloseable.hpp>
#include <cppuhelper/bootstrap.hxx>
#include <cppuhelper/implbase1.hxx>
#include <rtl/bootstrap.hxx>

#include "failure.h"
#include "office_text.h"

namespace office {
namespace {

using namespace std::chrono_literals;
using css::uno::UNO_QUERY;
using css::uno::UNO_QUERY_THROW;

constexpr int longestWait = 3600;

std::string variable(char const * name, std::string const & otherwise)
{
  char const * value = std::getenv(name);
  return value != nullptr && *value != '\0' ? value : otherwise;
}

// Told by the bridge when the office has gone, on the bridge's own thread.
class Ending : public cppu::WeakImplHelper1<css::lang::XEventListener> {
 public:
  explicit Ending(std::shared_ptr<std::atomic<bool>> isBroken) : m_pIsBroken(std::move(isBroken)) {}
  void SAL_CALL disposing(css::lang::EventObject const &) override { *m_pIsBroken = true; }

 private:
  std::shared_ptr<std::atomic<bool>> m_pIsBroken;
};

// This process's own service manager, which knows how to connect. It stays until the process ends.
Reference<css::uno::XComponentContext> const & ownContext()
{
  static Reference<css::uno::XComponentContext> const context = [] {
    rtl::Bootstrap::set("URE_BOOTSTRAP", FromUtf8("vnd.sun.star.pathname:" OFFICE_PROGRAM_FOLDER "/fundamentalrc"));
    return cppu::defaultBootstrap_InitialComponentContext();
  }();
  return context;
}

// The threads of a connection are born with the signal mask of the one that makes it: a write to an office that has just gone
// must be an error there, not the end of this process.
class WithoutPipeSignal {
 public:
  WithoutPipeSignal()
  {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &signals, &m_Former);
  }
  ~WithoutPipeSignal() { pthread_sigmask(SIG_SETMASK, &m_Former, nullptr); }
  WithoutPipeSignal(WithoutPipeSignal const &) = delete;
  WithoutPipeSignal & operator=(WithoutPipeSignal const &) = delete;

 private:
  sigset_t m_Former;
};

// A pipe that somebody else has put there is not connected to.
bool isOwnPipe(std::string const & name)
{
  struct stat state {};
  return lstat(PipeFile(name).c_str(), &state) == 0 && S_ISSOCK(state.st_mode) && state.st_uid == getuid();
}

std::mutex g_linkLock;
std::weak_ptr<Link> g_link;
std::atomic<bool> g_isOutOfReach = false;

// Objects that nobody releases would keep the office's threads running into the end of the process.
void endLinkAtExit()
{
  if (g_isOutOfReach) return;
  if (std::shared_ptr<Link> const link = g_link.lock()) link->End();
  g_isOutOfReach = true;
}

}  // namespace

LinkSettings LinkSettings::FromEnvironment()
{
  int const seconds = std::atoi(variable("ZP_OFFICE_WAIT", "60").c_str());
  return {variable("ZP_OFFICE_PIPE", "zephlow"), variable("ZP_OFFICE_PROGRAM", OFFICE_PROGRAM_FOLDER),
          std::filesystem::absolute(variable("TMPDIR", "/tmp")).string(), std::clamp(seconds, 1, longestWait)};
}

std::shared_ptr<Link> Link::Get()
{
  std::lock_guard const lock(g_linkLock);
  std::shared_ptr<Link> link = g_link.lock();
  if (link == nullptr || link->IsBroken()) {
    if (link != nullptr) link->End();
    link = std::make_shared<Link>(LinkSettings::FromEnvironment());
    g_link = link;
    static bool const isRegistered =
        std::atexit(endLinkAtExit) == 0 && pthread_atfork(nullptr, nullptr, [] { g_isOutOfReach = true; }) == 0;
    (void)isRegistered;
  }
  return link;
}

Link::Link(LinkSettings const & settings)
{
  if (isOwnPipe(settings.pipe) && Connect(settings.pipe)) return;
  StartAndConnect(settings);
}

Link::~Link()
{
  End();
}

bool Link::Connect(std::string const & pipe)
{
  WithoutPipeSignal const whileThreadsAreMade;
  Reference<css::uno::XComponentContext> const & own = ownContext();
  Reference<css::connection::XConnection> connection;
  try {
    connection = css::connection::Connector::create(own)->connect(FromUtf8("pipe,name=" + pipe));
  } catch (css::connection::NoConnectException const &) {
    return false;
  } catch (css::connection::ConnectionSetupException const &) {
    return false;
  }
  m_Bridge = css::bridge::BridgeFactory::create(own)->createBridge("", "urp", connection, nullptr);
  Reference<css::lang::XComponent>(m_Bridge, UNO_QUERY_THROW)->addEventListener(new Ending(m_pIsBroken));
  Reference<css::uno::XComponentContext> const remote(m_Bridge->getInstance("StarOffice.ComponentContext"), UNO_QUERY_THROW);
  m_Desktop = css::frame::Desktop::create(remote);
  return true;
}

void Link::StartAndConnect(LinkSettings const & settings)
{
  m_pProcess = std::make_unique<OfficeProcess>(settings.programFolder, settings.parentFolder);
  for (auto const end = std::chrono::steady_clock::now() + std::chrono::seconds(settings.seconds);;
       std::this_thread::sleep_for(10ms)) {
    int status = 0;
    if (m_pProcess->HasEnded(status))
      throw Failure{startFailed, "The office ended with status " + std::to_string(status) + " before it could be reached"};
    if (isOwnPipe(m_pProcess->GetPipeName()) && Connect(m_pProcess->GetPipeName())) return;
    if (std::chrono::steady_clock::now() >= end)
      throw Failure{startFailed, "The office gave no answer within " + std::to_string(settings.seconds) + " seconds"};
  }
}

bool Link::IsOutOfReach()
{
  return g_isOutOfReach;
}

bool Link::HasBroken()
{
  try {
    if (m_Desktop.is()) m_Desktop->getCurrentFrame();
  } catch (css::uno::Exception const &) {
    *m_pIsBroken = true;
  }
  return IsBroken();
}

void Link::CloseOwn()
{
  for (Workbook const & workbook : m_Own) {
    try {
      Reference<css::util::XCloseable>(workbook, UNO_QUERY_THROW)->close(true);
    } catch (css::uno::Exception const &) {  // somebody else has closed it
    }
  }
}

void Link::End()
{
  m_ReadAhead.Drop();
  m_Charts.Clear();
  if (m_pProcess == nullptr && !IsBroken()) CloseOwn();
  m_Own.clear();
  try {
    if (m_pProcess != nullptr && m_Desktop.is() && !IsBroken() && m_Desktop->terminate()) m_pProcess->WaitForEnd();
  } catch (css::uno::Exception const &) {  // it has gone before it could answer
  }
  m_Desktop.clear();
  try {
    if (m_Bridge.is()) Reference<css::lang::XComponent>(m_Bridge, UNO_QUERY_THROW)->dispose();
  } catch (css::uno::Exception const &) {
  }
  m_Bridge.clear();
  *m_pIsBroken = true;
  m_pProcess.reset();
}

std::vector<Reference<css::sheet::XSpreadsheetDocument>> Link::ListWorkbooks() const
{
  std::vector<Reference<css::sheet::XSpreadsheetDocument>> workbooks;
  Reference<css::container::XEnumeration> const components = m_Desktop->getComponents()->createEnumeration();
  while (components->hasMoreElements()) {
    Reference<css::sheet::XSpreadsheetDocument> const workbook(components->nextElement(), UNO_QUERY);
    if (workbook.is()) workbooks.push_back(workbook);
  }
  std::reverse(workbooks.begin(), workbooks.end());  // the desktop tells the newest first
  return workbooks;
}

}  // namespace office
