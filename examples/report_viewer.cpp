// An application in small: a document template, a main window that takes new documents, and a view that prints the active report
// when the print command reaches it. Shows the text file that is named, or one of its own, page by page.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>

#include <zpbase/messages.h>
#include <zpbase/platform/application.h>
#include <zpbase/platform/encoding.h>
#include <zpbase/platform/message_map.h>
#include <zpbase/platform/paths.h>
#include <zpbase/views.h>

namespace {

constexpr UINT printCommand = 0xE107;
constexpr char pageMark[] = "\x01";  // what a form feed has become

// The text for a terminal: dots for what would steer it, also for the places of the code page that hold no character.
std::string shown(CString text)
{
  constexpr std::string_view highControls = "\x7F\x81\x8D\x8F\x90\x9D";
  for (int i = 0; i < text.GetLength(); ++i) {
    if (static_cast<unsigned char>(text[i]) < ' ' || highControls.find(text[i]) != std::string_view::npos) text.SetAt(i, '.');
  }
  return zp::TextToUtf8(text.View());
}

// Prints the lines of its report.
class ReportView : public GPScrollView {
  DECLARE_DYNCREATE(ReportView)
 protected:
  ReportView() = default;
  void OnDraw(CDC *) override {}

  void OnPrint()
  {
    auto & report = static_cast<GPRptDoc &>(*GetDocument());
    CStringArray const & lines = *report.GetRptArray();
    int page = 1;
    std::printf("%s\n", shown(report.GetTitle()).c_str());
    for (int i = 0; i < lines.GetSize(); ++i) {
      if (lines[i] != pageMark)
        std::printf("%6d  %s\n", i + 1, shown(lines[i]).c_str());
      else if (i != 0)
        std::printf("---- page %d ----\n", ++page);
    }
  }

  AFX_MSGMAP const * GetMessageMap() const override
  {
    static constexpr AFX_MSGMAP_ENTRY entries[] = {zp::OnCommand<&ReportView::OnPrint>(printCommand)};
    static constexpr AFX_MSGMAP map{&GPScrollView::GetThisMessageMap, entries};
    return &map;
  }
};

// Gives each new document a frame and a view. Closing it ends the program.
class MainWindow : public CMDIFrameWnd {
  DECLARE_DYNCREATE(MainWindow)
 protected:
  MainWindow() = default;

  void OnNewDocument()
  {
    CDocument * const doc = GetNewDocument();
    POSITION position = AfxGetApp()->GetFirstDocTemplatePosition();
    CDocTemplate * const reports = AfxGetApp()->GetNextDocTemplate(position);
    reports->AddDocument(doc);
    if (CFrameWnd * const frame = reports->CreateNewFrame(doc, nullptr); frame != nullptr)
      reports->InitialUpdateFrame(frame, doc);
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

// A folder that this run alone has made, and that goes with it.
class ScratchFolder {
 public:
  ScratchFolder()
  {
    constexpr int attempts = 100;
    std::random_device random;
    for (int i = 0; i < attempts; ++i) {
      m_Path = std::filesystem::temp_directory_path() / ("zp_report_viewer-" + std::to_string(random()));
      std::error_code taken;
      if (std::filesystem::create_directory(m_Path, taken)) return;
    }
    throw std::runtime_error("no temporary folder");
  }
  ~ScratchFolder()
  {
    std::error_code ignored;
    std::filesystem::remove_all(m_Path, ignored);
  }
  ScratchFolder(ScratchFolder const &) = delete;
  ScratchFolder & operator=(ScratchFolder const &) = delete;

  std::filesystem::path operator/(char const * name) const { return m_Path / name; }

 private:
  std::filesystem::path m_Path;
};

// Shows the file and asks for print and close, as a menu would.
int show(CWinApp & app, CString const & path)
{
  auto * const window = static_cast<MainWindow *>(RUNTIME_CLASS(MainWindow)->CreateObject());
  if (!window->LoadFrame(0)) return 1;
  app.m_pMainWnd = window;
  constexpr unsigned int noSuchFile = 43374;
  int const shown = BrowseFile(path, noSuchFile);
  window->PostMessage(WM_COMMAND, printCommand);
  window->PostMessage(WM_CLOSE);
  int const status = app.Run();
  return shown ? status : 1;
}

}  // namespace

int main(int argc, char ** argv)
{
  ScratchFolder const folder;
  std::filesystem::path const sample = folder / "sample.txt";
  std::ofstream(sample, std::ios::binary) << "Stream\tT/K\tp/bar\r\nFeed\t298.15\t1.013\r\n\x0CSecond page\r\n";

  CWinApp app("Viewer");
  app.SetProfileFile(FromHostPath((folder / "viewer.ini").string()));
  app.AddDocTemplate(new CMultiDocTemplate(0, RUNTIME_CLASS(GPRptDoc), RUNTIME_CLASS(CMDIChildWnd), RUNTIME_CLASS(ReportView)));
  return show(app, FromHostPath(argc > 1 ? argv[1] : sample.string()));
}
