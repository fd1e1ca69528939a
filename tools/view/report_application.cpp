// A main window that takes launched documents, a template that keeps them, and a view that shows them.

#include "tools/view/report_application.h"

#include <algorithm>
#include <memory>

#include <fmt/format.h>
#include <zpbase/messages.h>
#include <zpbase/platform/application.h>
#include <zpbase/platform/encoding.h>
#include <zpbase/platform/exceptions.h>
#include <zpbase/platform/message_map.h>
#include <zpbase/views.h>

#include "tools/host_file.h"
#include "tools/program.h"
#include "tools/text/text_copy.h"
#include "tools/text_marks.h"

namespace {

constexpr UINT showCommand = 0xE107;
constexpr unsigned int noSuchFileID = 43374;

// Shows the report of its document when the command reaches it.
class ReportView : public GPScrollView {
  DECLARE_DYNCREATE(ReportView)
 public:
  static std::function<void(OpenedReport const & report)> show;

 protected:
  ReportView() = default;
  void OnDraw(CDC *) override {}

  void OnShow()
  {
    auto & report = static_cast<GPRptDoc &>(*GetDocument());
    show({*report.GetRptArray(), report.GetPageHeaderFn()});
  }

  AFX_MSGMAP const * GetMessageMap() const override
  {
    static constexpr AFX_MSGMAP_ENTRY entries[] = {zp::OnCommand<&ReportView::OnShow>(showCommand)};
    static constexpr AFX_MSGMAP map{&GPScrollView::GetThisMessageMap, entries};
    return &map;
  }
};

std::function<void(OpenedReport const & report)> ReportView::show;

// Gives each new document a frame and a view of its own.
class MainWindow : public CMDIFrameWnd {
  DECLARE_DYNCREATE(MainWindow)
 protected:
  MainWindow() = default;

  void OnNewDocument()
  {
    POSITION position = AfxGetApp()->GetFirstDocTemplatePosition();
    CDocTemplate * const reports = AfxGetApp()->GetNextDocTemplate(position);
    CDocument * const doc = GetNewDocument();
    reports->AddDocument(doc);
    if (CFrameWnd * const frame = reports->CreateNewFrame(doc, nullptr)) reports->InitialUpdateFrame(frame, doc);
  }

  AFX_MSGMAP const * GetMessageMap() const override
  {
    static constexpr AFX_MSGMAP_ENTRY entries[] = {zp::OnCommand<&MainWindow::OnNewDocument>(newDocumentCommand)};
    static constexpr AFX_MSGMAP map{&CMDIFrameWnd::GetThisMessageMap, entries};
    return &map;
  }
};

IMPLEMENT_DYNCREATE(ReportView, GPScrollView)
IMPLEMENT_DYNCREATE(MainWindow, CMDIFrameWnd)

class ReportApplication : public CWinApp {
 public:
  ReportApplication() : CWinApp("zp")
  {
    AddDocTemplate(new CMultiDocTemplate(0, RUNTIME_CLASS(GPRptDoc), RUNTIME_CLASS(CMDIChildWnd), RUNTIME_CLASS(ReportView)));
    m_pWindow = static_cast<MainWindow *>(RUNTIME_CLASS(MainWindow)->CreateObject());
    if (!m_pWindow->LoadFrame(0)) throw Failure("the viewer's window can't be made");
    m_pMainWnd = m_pWindow;
  }
  ~ReportApplication() override { m_pWindow->DestroyWindow(); }

  void ShowActive() { m_pWindow->SendMessage(WM_COMMAND, showCommand); }

 private:
  MainWindow * m_pWindow;  // belongs to its window
};

// A copy of a file in the form that reports are read in, where its lines end in LF alone or it is UTF-8; else null.
std::unique_ptr<TemporaryTextFile> copyOf(std::string const & file)
{
  std::string bytes = ReadWholeFile(file);
  bool isOther = bytes.starts_with(utf8Mark);
  if (isOther) bytes.erase(0, utf8Mark.size());
  if (size_t const lone = CountLoneLineFeeds(bytes); lone != 0) {
    bytes = WithLineEnds(bytes, lone);
    isOther = true;
  }
  bool const isAscii = std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<signed char>(c) >= 0; });
  if (CString text; !isAscii && zp::Utf8ToText(bytes, text)) {
    bytes = text.View();
    isOther = true;
  }
  return isOther ? std::make_unique<TemporaryTextFile>(bytes) : nullptr;
}

}  // namespace

void OpenReport(std::string const & file, std::function<void(OpenedReport const & report)> show)
{
  auto const status = StatusOf(file);
  if (!status) throw Failure(fmt::format("{}: does not exist; check the name", file));
  if (status->kind != zp::HostStatus::File) throw Failure(fmt::format("{}: is no file; name a text file", file));
  std::unique_ptr<TemporaryTextFile> const copy = copyOf(file);
  ReportApplication app;
  ReportView::show = std::move(show);
  try {
    if (BrowseFile(InsidePath(copy ? copy->Name() : file), noSuchFileID) == 0)
      throw Failure(fmt::format("{}: can't be shown", file));
  } catch (CFileException * caught) {
    zp::ExceptionGuard const guard(caught);
    FailOpening(file, nullptr, *caught);
  }
  app.ShowActive();
}
