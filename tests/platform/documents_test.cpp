// The route of commands through frames, views, documents, templates and the application; frames coming forward; and command
// targets as automation objects with members.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include <zpbase/platform/application.h>
#include <zpbase/platform/automation.h>
#include <zpbase/platform/frames.h>
#include <zpbase/platform/message_map.h>

namespace {

constexpr UINT command = 1000;
std::vector<std::string> g_Asked;  // who was asked for the command, in order
std::string g_Taker;               // who takes it

// A target that notes that neither its map nor the rest of its route has the command, and takes it if it is the taker.
template <class Base>
class Noting : public Base {
 public:
  using Base::Base;
  BOOL OnCmdMsg(UINT id, int code, void * extra, AFX_CMDHANDLERINFO * info) override
  {
    if (Base::OnCmdMsg(id, code, extra, info)) return TRUE;
    if (code != CN_COMMAND) return FALSE;
    g_Asked.emplace_back(this->GetRuntimeClass()->m_lpszClassName);
    return g_Asked.back() == g_Taker;
  }
};

class Doc : public Noting<CDocument> {
  DECLARE_DYNCREATE(Doc)
};
class View : public Noting<CView> {
  DECLARE_DYNCREATE(View)
 public:
  void OnActivateView(BOOL activate, CView *, CView *) override { m_bActive = activate; }
  BOOL m_bActive = FALSE;

 protected:
  void OnDraw(CDC *) override {}
};
IMPLEMENT_DYNCREATE(Doc, CDocument)
IMPLEMENT_DYNCREATE(View, CView)

class Documents : public testing::Test {
 protected:
  Documents()
  {
    m_pTemplate = new Noting<CMultiDocTemplate>(0, RUNTIME_CLASS(Doc), RUNTIME_CLASS(CMDIChildWnd), RUNTIME_CLASS(View));
    m_App.AddDocTemplate(m_pTemplate);
    m_pMain->LoadFrame(0);
    m_App.m_pMainWnd = m_pMain;
    g_Asked.clear();
    g_Taker.clear();
  }
  ~Documents() override
  {
    m_App.CloseAllDocuments();
    m_pMain->DestroyWindow();
  }

  static View * ViewOf(CDocument const * doc)
  {
    POSITION position = doc->GetFirstViewPosition();
    return static_cast<View *>(doc->GetNextView(position));
  }

  CWinApp m_App{"test"};
  CMDIFrameWnd * m_pMain = new CMDIFrameWnd;
  CDocTemplate * m_pTemplate;
};

TEST_F(Documents, AreAskedForCommandsBehindTheirViews)
{
  m_pTemplate->OpenDocumentFile(nullptr);
  m_pMain->SendMessage(WM_COMMAND, command);
  EXPECT_EQ(g_Asked, (std::vector<std::string>{"CMultiDocTemplate", "Doc", "View"}));
  g_Asked.clear();
  g_Taker = "Doc";
  EXPECT_EQ(m_pMain->SendMessage(WM_COMMAND, command), 1);
  EXPECT_EQ(g_Asked, (std::vector<std::string>{"CMultiDocTemplate", "Doc"}));
  EXPECT_EQ(m_pMain->SendMessage(WM_COMMAND, command | 0x10000), 1) << "from an accelerator";
  g_Asked.clear();
  EXPECT_EQ(m_pMain->SendMessage(WM_COMMAND, command | 0x50000, 77), 0) << "a control's notification is no command";
  EXPECT_TRUE(g_Asked.empty());
}

TEST_F(Documents, ComeForwardWithTheirFramesAndTellTheirViews)
{
  View * const first = ViewOf(m_pTemplate->OpenDocumentFile(nullptr));
  CDocument * const doc = m_pTemplate->OpenDocumentFile(nullptr);
  View * const second = ViewOf(doc);
  EXPECT_FALSE(first->m_bActive);
  EXPECT_TRUE(second->m_bActive);
  doc->OnCloseDocument();
  EXPECT_TRUE(first->m_bActive);
  EXPECT_EQ(m_pMain->GetActiveFrame(), first->GetParent());
  View * const hidden = ViewOf(m_pTemplate->OpenDocumentFile(nullptr, FALSE));
  EXPECT_EQ(m_pMain->GetActiveFrame(), first->GetParent());
  hidden->GetParentFrame()->DestroyWindow();
  EXPECT_EQ(m_pTemplate->OpenDocumentFile("C:\\no\\such\\file"), nullptr);
  POSITION position = m_pTemplate->GetFirstDocPosition();
  EXPECT_EQ(m_pTemplate->GetNextDoc(position), first->GetDocument());
  EXPECT_EQ(position, nullptr);
}

TEST_F(Documents, LeaveNothingWhereTheMainWindowHoldsNoFrames)
{
  CWnd plain;
  plain.Create("main");
  m_App.m_pMainWnd = &plain;
  EXPECT_EQ(m_pTemplate->OpenDocumentFile(nullptr), nullptr);
  EXPECT_EQ(m_pTemplate->GetFirstDocPosition(), nullptr);
}

class Counter : public CCmdTarget {
 public:
  Counter() { EnableAutomation(); }
  int m_nCount = 0;

 protected:
  static HRESULT Count(CCmdTarget & target, WORD, tagDISPPARAMS *, tagVARIANT *)
  {
    ++static_cast<Counter &>(target).m_nCount;
    return S_OK;
  }
  AFX_DISPMAP const * GetDispatchMap() const override
  {
    static constexpr AFX_DISPMAP_ENTRY entries[] = {{u"Count", 3, &Counter::Count}};
    static constexpr AFX_DISPMAP map{&CCmdTarget::GetThisDispatchMap, entries};
    return &map;
  }
};

TEST(Automation, CallsMembersByTheirNames)
{
  Counter counter;
  IDispatch & dispatch = *counter.GetIDispatch(FALSE);
  char16_t name[] = u"cOUNT";
  char16_t argument[] = u"step";
  char16_t * names[] = {name, argument};
  DISPID ids[2];
  EXPECT_EQ(dispatch.GetIDsOfNames(IID_NULL, names, 1, 0, ids), S_OK);
  EXPECT_EQ(ids[0], 3);
  EXPECT_EQ(dispatch.Invoke(ids[0], IID_NULL, 0, 1, nullptr, nullptr, nullptr, nullptr), S_OK);
  EXPECT_EQ(counter.m_nCount, 1);
  EXPECT_EQ(dispatch.GetIDsOfNames(IID_NULL, names, 2, 0, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[1], DISPID_UNKNOWN);
}

class Picture : public CScrollView {
 protected:
  void OnDraw(CDC *) override {}
};

TEST(ScrollViews, ShiftWhatTheyDrawToTheirPlaceInThePicture)
{
  Picture view;
  view.SetScrollSizes(MM_TEXT, CSize(100, 50));
  struct Row {
    POINT wanted;
    POINT place;
  };
  for (Row const & row : {Row{{30, 20}, {30, 20}}, Row{{-1, 60}, {0, 50}}, Row{{101, -7}, {100, 0}}}) {
    view.ScrollToPosition(row.wanted);
    EXPECT_TRUE(view.GetScrollPosition().x == row.place.x && view.GetScrollPosition().y == row.place.y);
    CDC dc;
    view.OnPrepareDC(&dc);
    POINT drawn = row.place;
    dc.LPtoDP(&drawn);
    EXPECT_TRUE(drawn.x == 0 && drawn.y == 0) << drawn.x << " " << drawn.y;
  }
  view.SetScrollSizes(MM_TEXT, CSize(10, 10));
  EXPECT_TRUE(view.GetScrollPosition().x == 0 && view.GetScrollPosition().y == 0);
}

}  // namespace
