// Look-ups of documents and views, the status text, and the hand-over of a new document.

#include "tests/views/application.h"

namespace {

using DocumentLookup = ViewsTest;

class OtherDoc : public GPRptDoc {
  DECLARE_DYNCREATE(OtherDoc)
};
IMPLEMENT_DYNCREATE(OtherDoc, GPRptDoc)

TEST_F(DocumentLookup, GivesNothingBeforeThereIsAMainWindow)
{
  EXPECT_EQ(GetCurrentMDIChildWnd(), nullptr);
  EXPECT_EQ(GetCurrentView(), nullptr);
  EXPECT_EQ(GetCurrentDoc(), nullptr);
  GPRptDoc doc(nullptr, nullptr);
  LaunchNewDocument(&doc);
  EXPECT_EQ(GetNewDocument(), &doc);
  SetPane0Text("nobody");
  SetPane0Text(43150);
  TraceDocViews();

  CWnd plain;  // a main window that holds no frames
  plain.Create("main");
  m_App.m_pMainWnd = &plain;
  EXPECT_EQ(GetCurrentMDIChildWnd(), nullptr);
}

TEST_F(DocumentLookup, FollowsTheActiveFrame)
{
  OpenMainWindow();
  EXPECT_EQ(GetCurrentDoc(), nullptr);
  CDocument * const first = m_pTemplate->OpenDocumentFile(nullptr);
  CDocument * const second = m_pTemplate->OpenDocumentFile(nullptr);
  EXPECT_EQ(GetCurrentDoc(), second);
  FirstView(first)->GetParentFrame()->ActivateFrame();
  EXPECT_EQ(GetCurrentView(), FirstView(first));
  EXPECT_EQ(GetCurrentMDIChildWnd(), FirstView(first)->GetParent());
  first->OnCloseDocument();
  EXPECT_EQ(GetCurrentDoc(), second);
}

TEST_F(DocumentLookup, FindsByTheExactClassOfTheFirstTemplateAlone)
{
  OpenMainWindow();
  auto * const later = new CMultiDocTemplate(0, RUNTIME_CLASS(GPRptDoc), RUNTIME_CLASS(CMDIChildWnd), RUNTIME_CLASS(NotingView));
  auto * const other = new CMultiDocTemplate(0, RUNTIME_CLASS(OtherDoc), RUNTIME_CLASS(CMDIChildWnd), RUNTIME_CLASS(NotingView));
  m_App.AddDocTemplate(later);
  m_App.AddDocTemplate(other);
  CDocument * const hidden = later->OpenDocumentFile(nullptr);
  hidden->SetTitle("A");
  CDocument * const derived = other->OpenDocumentFile(nullptr);
  derived->SetTitle("A");
  EXPECT_EQ(FindGPRptDoc("A"), nullptr) << "the first template of the class is empty";
  EXPECT_EQ(FindDocView(RUNTIME_CLASS(NotingView), hidden), nullptr);
  EXPECT_EQ(FindDocView(RUNTIME_CLASS(NotingView), nullptr), nullptr);
  EXPECT_EQ(FindDocByTitle(RUNTIME_CLASS(OtherDoc), "A"), derived);
  EXPECT_EQ(FindDocByTitle(RUNTIME_CLASS(COleDocument), ""), nullptr);
  EXPECT_EQ(FindDocView(RUNTIME_CLASS(GPScrollView), nullptr), nullptr);

  CDocument * const one = m_pTemplate->OpenDocumentFile(nullptr);
  CDocument * const two = m_pTemplate->OpenDocumentFile(nullptr);
  CDocument * const three = m_pTemplate->OpenDocumentFile(nullptr);
  one->SetTitle("A");
  two->SetTitle("A");
  three->SetTitle("a");
  EXPECT_EQ(FindGPRptDoc("A"), two) << "the last of the title";
  EXPECT_EQ(FindGPRptDoc(""), one) << "the first";
  EXPECT_EQ(FindGPRptDoc("b"), nullptr);

  CCreateContext context{RUNTIME_CLASS(NotingView), one, m_pTemplate};
  CView * const second = FirstView(one)->GetParentFrame()->CreateView(&context);
  EXPECT_EQ(FindDocView(RUNTIME_CLASS(NotingView), one), second);
  EXPECT_EQ(FindDocView(RUNTIME_CLASS(NotingView), nullptr), second);
  EXPECT_EQ(FindDocView(RUNTIME_CLASS(NotingView), two), FirstView(two));
  GPRptDoc unlisted(nullptr, nullptr);
  EXPECT_EQ(FindDocView(RUNTIME_CLASS(NotingView), &unlisted), nullptr);
}

TEST_F(DocumentLookup, TestsPointersWithoutFollowingThem)
{
  OpenMainWindow();
  CDocument * const doc = m_pTemplate->OpenDocumentFile(nullptr);
  EXPECT_EQ(IsValidDoc(doc), 1);
  doc->OnCloseDocument();
  EXPECT_EQ(IsValidDoc(doc), 0);
  EXPECT_EQ(IsValidDoc(reinterpret_cast<CDocument const *>(8)), 0);
  EXPECT_EQ(IsValidDoc(nullptr), 0);
}

TEST_F(DocumentLookup, ShowsTheStatusTextAtOnceAndThatOfAResourceLater)
{
  MainFrame & main = OpenMainWindow();
  CWnd bar;
  bar.Create("ready", WS_CHILD, &main, AFX_IDW_STATUS_BAR);
  CString text;
  SetPane0Text("Tray 3");
  bar.GetWindowText(text);
  EXPECT_EQ(text, "Tray 3");
  SetPane0Text(43150);
  bar.GetWindowText(text);
  EXPECT_EQ(text, "Tray 3");
  ProcessMessages();
  bar.GetWindowText(text);
  EXPECT_EQ(text, "Do you want to leave Zephlow?");
  PostMessageA(main.GetSafeHwnd(), WM_SETMESSAGESTRING, 0, 0);
  SetPane0Text("delivers what waits, too");
  bar.GetWindowText(text);
  EXPECT_EQ(text, "");
}

TEST_F(DocumentLookup, HandsADocumentToTheMainWindow)
{
  MainFrame & main = OpenMainWindow();
  GPRptDoc doc(nullptr, nullptr);
  main.PostMessage(WM_COMMAND, 77);
  LaunchNewDocument(&doc);
  EXPECT_EQ(main.m_Taken, (std::vector<CDocument *>{&doc}));
  EXPECT_EQ(main.m_Commands, (std::vector<UINT>{1965, 77}));
  main.m_bDisabled = true;  // an item that its update disables carries nothing out
  LaunchNewDocument(nullptr);
  EXPECT_EQ(main.m_Taken.size(), 1u);
  EXPECT_EQ(GetNewDocument(), nullptr);
}

}  // namespace
