// A small application: a main window with frames in it, views that note what they hear, and its settings in a folder of its own.

#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include <zpbase/messages.h>
#include <zpbase/platform/application.h>
#include <zpbase/platform/message_map.h>
#include <zpbase/views.h>

#include "tests/support/RecordingInterface.h"
#include "tests/support/TempFolder.h"

// Notes messages and commands that reach it.
class NotingView : public GPScrollView {
  DECLARE_DYNCREATE(NotingView)
 public:
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
  {
    m_Heard.emplace_back(message, wParam);
    return GPScrollView::WindowProc(message, wParam, lParam);
  }
  void OnPrepareDC(CDC * dc, CPrintInfo *) override
  {
    dc->SetMapMode(MM_ANISOTROPIC);
    dc->SetWindowExt(1, 1);
    dc->SetViewportExt(2, -2);
  }

  std::vector<std::pair<UINT, WPARAM>> m_Heard;

 protected:
  void OnDraw(CDC *) override {}
};

// Takes new documents as the handler of the command 1965 does, and notes the other commands.
class MainFrame : public CMDIFrameWnd {
  DECLARE_DYNCREATE(MainFrame)
 public:
  std::vector<CDocument *> m_Taken;
  std::vector<UINT> m_Commands;
  bool m_bDisabled = false;

 protected:
  void OnNewDocument() { m_Taken.push_back(GetNewDocument()); }
  void OnUpdateNewDocument(CCmdUI * item) { item->Enable(!m_bDisabled); }
  BOOL OnCommand(WPARAM wParam, LPARAM lParam) override
  {
    m_Commands.push_back(static_cast<UINT>(wParam & 0xFFFF));
    return CMDIFrameWnd::OnCommand(wParam, lParam);
  }
  AFX_MSGMAP const * GetMessageMap() const override
  {
    static constexpr AFX_MSGMAP_ENTRY entries[] = {zp::OnCommand<&MainFrame::OnNewDocument>(newDocumentCommand),
                                                   zp::OnUpdateCommandUI<&MainFrame::OnUpdateNewDocument>(newDocumentCommand)};
    static constexpr AFX_MSGMAP map{&CMDIFrameWnd::GetThisMessageMap, entries};
    return &map;
  }
};

class ViewsTest : public testing::Test {
 protected:
  ViewsTest()
  {
    m_App.SetProfileFile(m_Folder.Name("test.ini"));
    m_pTemplate = new CMultiDocTemplate(0, RUNTIME_CLASS(GPRptDoc), RUNTIME_CLASS(CMDIChildWnd), RUNTIME_CLASS(NotingView));
    m_App.AddDocTemplate(m_pTemplate);
  }
  ~ViewsTest() override
  {
    ProcessMessages();
    m_App.CloseAllDocuments();
    if (m_App.m_pMainWnd != nullptr) m_App.m_pMainWnd->DestroyWindow();
  }

  MainFrame & OpenMainWindow()
  {
    auto * const frame = new MainFrame;
    frame->LoadFrame(0);
    m_App.m_pMainWnd = frame;
    return *frame;
  }

  static NotingView * FirstView(CDocument const * doc)
  {
    POSITION position = doc->GetFirstViewPosition();
    return static_cast<NotingView *>(doc->GetNextView(position));
  }

  TempFolder m_Folder;
  CWinApp m_App{"test"};
  RecordingInterface m_UI;
  CDocTemplate * m_pTemplate;  // of reports
};
