// The route of commands through frames, views, documents, templates and the application; frames coming forward; what is told and
// asked before they go; accelerators; and command targets as automation objects with members.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <zpbase/platform/application.h>
#include <zpbase/platform/automation.h>
#include <zpbase/platform/frames.h>
#include <zpbase/platform/input.h>
#include <zpbase/platform/message_map.h>
#include <zpbase/platform/variants.h>

#include "tests/support/RecordingInterface.h"
#include "tests/support/TempFolder.h"

namespace {

constexpr UINT command = 1000;
std::vector<std::string> g_Asked;  // who was asked for the command, in order
std::string g_Taker;               // who takes it
int g_nLastCode;                   // of a command or notification that the main window was sent
bool g_bRefuses = false;           // views their windows

// A target that notes that neither its map nor the rest of its route has the command, and takes it if it is the taker.
template <class Base>
class Noting : public Base {
 public:
  using Base::Base;
  BOOL OnCmdMsg(UINT id, int code, void * extra, AFX_CMDHANDLERINFO * info) override
  {
    g_nLastCode = code;
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
  void OnUpdate(CView *, LPARAM hint, CObject *) override { m_nHints = 10 * m_nHints + hint; }
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
  {
    return message == WM_CREATE && g_bRefuses ? -1 : Noting<CView>::WindowProc(message, wParam, lParam);
  }
  BOOL m_bActive = FALSE;
  LPARAM m_nHints = 0;

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
  EXPECT_EQ(g_nLastCode, 5);
  EXPECT_TRUE(g_Asked.empty());
}

TEST_F(Documents, DockBarsOnSidesThatBothHave)
{
  CToolBar bar;
  bar.EnableDocking(CBRS_ALIGN_TOP);
  m_pMain->EnableDocking(CBRS_ALIGN_ANY & ~CBRS_ALIGN_TOP);
  m_pMain->DockControlBar(&bar);
  EXPECT_EQ(bar.GetDockingFrame(), nullptr);
  m_pMain->EnableDocking(CBRS_ALIGN_ANY);
  m_pMain->DockControlBar(&bar);
  EXPECT_EQ(bar.GetDockingFrame(), m_pMain);
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

TEST_F(Documents, LeaveNothingWhereAPartCantBeMade)
{
  CRuntimeClass * const doc = RUNTIME_CLASS(Doc);
  CRuntimeClass * const child = RUNTIME_CLASS(CMDIChildWnd);
  CRuntimeClass * const view = RUNTIME_CLASS(View);
  // clang-format off
  CRuntimeClass * const parts[][3] = {{nullptr, child, view}, {view, child, view}, {doc, nullptr, view}, {doc, view, view},
                                      {doc, child, doc}, {doc, RUNTIME_CLASS(CWnd), view}, {doc, child, RUNTIME_CLASS(CView)}};
  // clang-format on
  auto const leavesNothing = [this](CDocTemplate & made) {
    return made.OpenDocumentFile(nullptr) == nullptr && made.GetFirstDocPosition() == nullptr && m_pMain->GetChildren().empty();
  };
  for (auto const & [docClass, frame, shown] : parts) {
    CMultiDocTemplate made(0, docClass, frame, shown);
    EXPECT_TRUE(leavesNothing(made)) << &docClass - parts[0];
  }
  g_bRefuses = true;
  EXPECT_TRUE(leavesNothing(*m_pTemplate));
  g_bRefuses = false;
  CWnd plain;
  plain.Create("main");
  m_App.m_pMainWnd = &plain;
  EXPECT_TRUE(leavesNothing(*m_pTemplate)) << "the main window holds no frames";
  CMultiDocTemplate alone(0, doc, RUNTIME_CLASS(CFrameWnd), nullptr);
  CDocument * const unseen = alone.OpenDocumentFile(nullptr);
  ASSERT_NE(unseen, nullptr) << "a frame of its own without a view";
  EXPECT_TRUE(unseen->GetFirstViewPosition() == nullptr && alone.SaveAllModified());
  alone.CloseAllDocuments();
  EXPECT_EQ(alone.GetFirstDocPosition(), nullptr);
}

TEST_F(Documents, TellTheirViewsAndAskBeforeTheyGo)
{
  RecordingInterface user;
  TempFolder const folder;
  CDocument * const doc = m_pTemplate->OpenDocumentFile(nullptr);
  View * const shown = ViewOf(doc);
  View loose;
  doc->AddView(&loose);
  doc->UpdateAllViews(&loose, 7);
  doc->UpdateAllViews(nullptr, 8);
  doc->SetTitle("Plant");
  EXPECT_TRUE(shown->m_nHints == 78 && loose.m_nHints == 8) << shown->m_nHints;
  CString title;
  shown->GetParentFrame()->GetWindowText(title);
  EXPECT_EQ(title, "Plant");
  doc->RemoveView(&loose);
  doc->RemoveView(&loose);
  EXPECT_EQ(loose.GetDocument(), nullptr);

  EXPECT_TRUE(m_App.SaveAllModified());
  doc->SetModifiedFlag();
  user.m_nAnswer = IDYES;
  doc->SetPathName(folder.Name("none\\a.doc"));
  EXPECT_FALSE(m_App.SaveAllModified());
  doc->SetPathName(folder.Name("a.doc"));
  EXPECT_TRUE(m_App.SaveAllModified());
  EXPECT_TRUE(folder.Has("a.doc") && !doc->IsModified());
  EXPECT_EQ(user.m_Messages.size(), 3u) << "two questions, and what couldn't be written";
  {
    Doc kept;
    kept.m_bAutoDelete = FALSE;
    kept.AddView(&loose);
    m_pTemplate->RemoveDocument(&kept);
    EXPECT_EQ(kept.OnCmdMsg(command, CN_COMMAND, nullptr, nullptr), FALSE) << "without a template";
    m_pTemplate->AddDocument(&kept);
    m_App.CloseAllDocuments();
    EXPECT_TRUE(kept.GetDocTemplate() == nullptr && loose.GetDocument() == nullptr);
    kept.AddView(&loose);
  }
  EXPECT_EQ(loose.GetDocument(), nullptr);
  COleDocument holder;
  CDocItem item;
  holder.AddItem(&item);
  EXPECT_EQ(item.GetDocument(), &holder);
  for (int i = 0; i < 2; ++i) holder.RemoveItem(&item);
  EXPECT_TRUE(item.GetDocument() == nullptr && holder.GetStartPosition() == nullptr);
}

TEST_F(Documents, TakeCommandsFromKeys)
{
  constexpr ACCEL keys[] = {
      {FVIRTKEY, 'A', 1}, {FVIRTKEY | FCONTROL | FSHIFT, 'A', 2}, {FVIRTKEY | FALT, VK_ESCAPE, 3}, {0, 'b', 4}, {FALT, 'b', 5}};
  AcceleratorTable const table{1, keys};
  struct Window : CWnd {
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM) override
    {
      if (message == WM_COMMAND) m_Commands.push_back(wParam);
      return 0;
    }
    std::vector<WPARAM> m_Commands;
  } window;
  window.Create("w");
  struct Row {
    UINT message;
    WPARAM key;
    WPARAM command;  // 0 for none
  };
  Row const rows[] = {
      {WM_KEYDOWN, 'A', 1},          {WM_KEYUP, 'A', 0},          {WM_CHAR, 'A', 0},         {WM_CHAR, 'b', 4},
      {WM_SYSCHAR, 'b', 5},          {WM_KEYDOWN, VK_CONTROL, 0}, {WM_KEYDOWN, 'A', 0},      {WM_KEYDOWN, VK_SHIFT, 0},
      {WM_KEYDOWN, 'A', 2},          {WM_KEYUP, VK_SHIFT, 0},     {WM_KEYUP, VK_CONTROL, 0}, {WM_SYSKEYDOWN, VK_MENU, 0},
      {WM_SYSKEYDOWN, VK_ESCAPE, 3}, {WM_KEYDOWN, 'A', 0},        {WM_SYSKEYUP, VK_MENU, 0}, {WM_KEYDOWN, 'A', 1}};
  for (Row const & row : rows) {
    window.m_Commands.clear();
    window.PostMessage(row.message, row.key);
    MSG message;
    ASSERT_TRUE(GetMessageA(&message));
    EXPECT_EQ(TranslateAcceleratorA(window.GetSafeHwnd(), &table, &message), row.command != 0);
    EXPECT_EQ(window.m_Commands, row.command != 0 ? std::vector<WPARAM>{row.command | 0x10000} : std::vector<WPARAM>());
    EXPECT_EQ(TranslateAcceleratorA(nullptr, &table, &message) + TranslateAcceleratorA(window.GetSafeHwnd(), nullptr, &message),
              0);
  }
  window.EnableWindow(FALSE);
  window.m_Commands.clear();
  MSG const press{window.GetSafeHwnd(), WM_KEYDOWN, 'A', 0};
  EXPECT_EQ(TranslateAcceleratorA(window.GetSafeHwnd(), &table, &press), 1);
  EXPECT_TRUE(window.m_Commands.empty()) << "a disabled window";
}

// Its value is its count, or from three on an object, and none at all from four on.
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
  static HRESULT Value(CCmdTarget & target, WORD, tagDISPPARAMS *, tagVARIANT * result)
  {
    int const count = static_cast<Counter &>(target).m_nCount;
    result->vt = count < 3 ? VT_I4 : VT_DISPATCH;
    if (count < 3) result->lVal = count;
    return count < 4 ? S_OK : E_FAIL;
  }
  AFX_DISPMAP const * GetDispatchMap() const override
  {
    static constexpr AFX_DISPMAP_ENTRY entries[] = {{u"Count", 3, &Counter::Count}, {u"Value", DISPID_VALUE, &Counter::Value}};
    static constexpr AFX_DISPMAP map{&CCmdTarget::GetThisDispatchMap, entries};
    return &map;
  }
};

TEST(Automation, CallsMembersByTheirNamesUntilTheTargetIsGone)
{
  auto counter = std::make_unique<Counter>();
  counter->EnableAutomation();
  IDispatch & dispatch = *counter->GetIDispatch(TRUE);
  char16_t name[] = u"cOUNT";
  char16_t argument[] = u"[tep";
  char16_t * names[] = {name, argument};
  char16_t * none[] = {nullptr};
  DISPID ids[2];
  EXPECT_EQ(dispatch.GetIDsOfNames(IID_NULL, names, 1, 0, ids) | dispatch.GetIDsOfNames(IID_NULL, names, 0, 0, ids), S_OK);
  EXPECT_EQ(ids[0], 3);
  EXPECT_EQ(dispatch.Invoke(ids[0], IID_NULL, 0, 1, nullptr, nullptr, nullptr, nullptr), S_OK);
  EXPECT_EQ(counter->m_nCount, 1);
  EXPECT_EQ(dispatch.GetIDsOfNames(IID_NULL, names, 2, 0, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[1], DISPID_UNKNOWN);
  EXPECT_EQ(dispatch.GetIDsOfNames(IID_NULL, names + 1, 1, 0, ids), DISP_E_UNKNOWNNAME);
  UINT count = 7;
  ITypeInfo * info = nullptr;
  void * found = nullptr;
  EXPECT_EQ(dispatch.GetTypeInfoCount(&count), S_OK);
  EXPECT_EQ(count, 0u);
  EXPECT_EQ(dispatch.GetTypeInfo(0, 0, &info), DISP_E_BADINDEX);
  for (HRESULT const code :
       {dispatch.GetTypeInfoCount(nullptr), dispatch.GetTypeInfo(0, 0, nullptr), dispatch.QueryInterface(IID_NULL, nullptr),
        dispatch.GetIDsOfNames(IID_NULL, nullptr, 1, 0, ids), dispatch.GetIDsOfNames(IID_NULL, names, 1, 0, nullptr),
        dispatch.GetIDsOfNames(IID_NULL, none, 1, 0, ids)})
    EXPECT_EQ(code, E_POINTER);
  EXPECT_EQ(dispatch.QueryInterface(IID_NULL, &found), E_NOINTERFACE);

  VARIANT object{};
  object.vt = VT_DISPATCH;
  object.pdispVal = &dispatch;
  COleVariant value;
  for (auto const & [type, code] :
       {std::pair(VT_R8, S_OK), {VT_BSTR, S_OK}, {VT_I4, DISP_E_TYPEMISMATCH}, {VT_I4, DISP_E_TYPEMISMATCH}}) {
    EXPECT_EQ(VariantChangeType(&value, &object, VARIANT_NOVALUEPROP, type), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(VariantChangeType(&value, &object, 0, type), code) << counter->m_nCount;
    ++counter->m_nCount;
  }
  EXPECT_EQ(value.vt == VT_BSTR ? zp::BstrToText(value.bstrVal) : "", "2");
  EXPECT_EQ(VariantChangeType(&value, &object, 0, VT_UNKNOWN), S_OK);
  object.vt = VT_UNKNOWN;
  EXPECT_EQ(VariantChangeType(&value, &value, 0, VT_DISPATCH), S_OK);
  EXPECT_TRUE(value.vt == VT_DISPATCH && value.pdispVal == &dispatch);
  counter.reset();
  for (HRESULT const code : {dispatch.QueryInterface(IID_IDispatch, &found), dispatch.GetIDsOfNames(IID_NULL, names, 1, 0, ids),
                             dispatch.Invoke(3, IID_NULL, 0, 1, nullptr, nullptr, nullptr, nullptr)})
    EXPECT_EQ(code, CO_E_OBJNOTCONNECTED);
  EXPECT_EQ(VariantChangeType(&value, &object, 0, VT_DISPATCH), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(VariantClear(&value), S_OK);
  EXPECT_EQ(dispatch.Release(), 0u);
}

class Picture : public CScrollView {
 protected:
  void OnDraw(CDC *) override {}
};

TEST(ScrollViews, ShiftWhatTheyDrawToTheirPlaceInThePicture)
{
  Picture view;
  view.SetScrollSizes(MM_TEXT, CSize(100, 50));
  using Row = std::tuple<POINT, POINT>;
  for (auto const & [wanted, place] : {Row{{30, 20}, {30, 20}}, Row{{-1, 60}, {0, 50}}, Row{{101, -7}, {100, 0}}}) {
    view.ScrollToPosition(wanted);
    EXPECT_TRUE(view.GetScrollPosition().x == place.x && view.GetScrollPosition().y == place.y);
    CDC dc;
    view.OnPrepareDC(&dc);
    POINT drawn = place;
    dc.LPtoDP(&drawn);
    EXPECT_TRUE(drawn.x == 0 && drawn.y == 0) << drawn.x << " " << drawn.y;
  }
  view.SetScrollSizes(MM_TEXT, CSize(0, 0));
  view.ScrollToPosition({1, 1});
  EXPECT_TRUE(view.GetScrollPosition().x == 0 && view.GetScrollPosition().y == 0) << "an empty picture";
  view.SetScrollSizes(MM_TEXT, CSize(10, 10));
  EXPECT_TRUE(view.GetScrollPosition().x == 0 && view.GetScrollPosition().y == 0);
}

}  // namespace
