// The report document: its lines and maps, its stream and files, and the road of commands to it.

#include <zpbase/platform/archive.h>
#include <zpbase/platform/automation.h>

#include "tests/support/Archives.h"
#include "tests/views/application.h"

namespace {

using ReportDocument = ViewsTest;

int pageHeader(CString &, int, int)
{
  return 7;
}

CStringArray * linesOf(std::initializer_list<char const *> texts)
{
  auto * const lines = new CStringArray;
  for (char const * text : texts) lines->Add(CString(text));
  return lines;
}

TEST_F(ReportDocument, OwnsItsLinesAndHoldsTheApplication)
{
  EXPECT_TRUE(AfxOleCanExitApp());
  {
    CStringArray * const lines = linesOf({"a", "b"});
    GPRptDoc doc(lines, &pageHeader);
    EXPECT_EQ(doc.GetRptArray(), lines);
    EXPECT_EQ(doc.GetPageHeaderFn(), &pageHeader);
    std::unique_ptr<CObject> const made(RUNTIME_CLASS(GPRptDoc)->CreateObject());
    auto & empty = static_cast<GPRptDoc &>(*made);
    EXPECT_EQ(empty.GetPageHeaderFn(), nullptr);
    EXPECT_EQ(empty.GetRptArray()->GetSize(), 0);
    EXPECT_TRUE(empty.IsKindOf(RUNTIME_CLASS(COleDocument)));
    EXPECT_FALSE(empty.IsSerializable());
    EXPECT_FALSE(AfxOleCanExitApp());

    auto * const item = new CDocItem;
    doc.AddItem(item);
    doc.DeleteContents();
    EXPECT_EQ(doc.GetRptArray(), lines);
    EXPECT_EQ(lines->GetSize(), 0);
    EXPECT_EQ(item->GetDocument(), &doc) << "what the base holds stays";
    lines->Add("c");
    EXPECT_EQ(doc.OnNewDocument(), 1);
    EXPECT_EQ(lines->GetSize(), 0);
  }
  EXPECT_TRUE(AfxOleCanExitApp());
}

TEST_F(ReportDocument, StreamsItsLinesAndThenItsItems)
{
  auto const write = [](CArchive & ar) {
    GPRptDoc doc(linesOf({"Feed", ""}), nullptr);
    doc.AddItem(new CDocItem);
    doc.Serialize(ar);
  };
  std::string const bytes = FromHex("02 00  04 \"Feed\"  00   01 00  FF FF 01 00 08 00 \"CDocItem\"");
  EXPECT_EQ(Stored(write), bytes);

  GPRptDoc doc(linesOf({"old"}), nullptr);
  auto const read = [&](CArchive & ar) { doc.Serialize(ar); };
  LoadDamaged(bytes, read);
  std::string copy = bytes;
  CMemFile file(reinterpret_cast<BYTE *>(copy.data()), static_cast<UINT>(copy.size()));
  CArchive ar(&file, CArchive::load);
  doc.Serialize(ar);
  ASSERT_EQ(doc.GetRptArray()->GetSize(), 2);
  EXPECT_EQ(doc.GetRptArray()->GetAt(0), "Feed");
  POSITION position = doc.GetStartPosition();
  EXPECT_EQ(doc.GetNextItem(position)->GetDocument(), &doc);
  EXPECT_EQ(position, nullptr);
}

TEST_F(ReportDocument, IsSavedAndOpenedThroughItsTemplate)
{
  OpenMainWindow();
  CDocument * const doc = m_pTemplate->OpenDocumentFile(nullptr);
  EXPECT_EQ(doc->GetTitle(), "Untitled1");
  CStringArray & lines = *static_cast<GPRptDoc *>(doc)->GetRptArray();
  lines.SetSize(70000, 100);  // more than a count of 16 bits
  lines.SetAt(69999, CString("last"));
  ASSERT_TRUE(doc->OnSaveDocument(m_Folder.Name("big.rpt")));
  std::string const bytes = m_Folder.Read("big.rpt");
  EXPECT_EQ(bytes.size(), 6u + 70000 + 4 + 2);
  EXPECT_EQ(bytes.substr(0, 6), FromHex("FF FF 70 11 01 00"));

  auto * const opened = static_cast<GPRptDoc *>(m_pTemplate->OpenDocumentFile(m_Folder.Name("big.rpt")));
  ASSERT_NE(opened, nullptr);
  EXPECT_EQ(opened->GetTitle(), "big.rpt");
  CString title;
  FirstView(opened)->GetParentFrame()->GetWindowText(title);
  EXPECT_EQ(title, "big.rpt");
  EXPECT_EQ(opened->GetRptArray()->GetAt(69999), "last");

  m_Folder.Write("cut.rpt", bytes.substr(0, 5000));
  EXPECT_EQ(m_pTemplate->OpenDocumentFile(m_Folder.Name("cut.rpt")), nullptr);
  EXPECT_EQ(m_pTemplate->OpenDocumentFile(m_Folder.Name("none.rpt")), nullptr);
  EXPECT_EQ(m_UI.m_Messages.size(), 2u);
  EXPECT_EQ(GetCurrentDoc(), opened) << "nothing is left of them";

  EXPECT_FALSE(opened->OnSaveDocument(m_Folder.Name("none/big.rpt")));
  EXPECT_EQ(m_UI.m_Messages.size(), 3u);
  EXPECT_EQ(opened->GetRptArray()->GetSize(), 70000);
}

TEST_F(ReportDocument, AsksBeforeChangesAreLost)
{
  MainFrame & main = OpenMainWindow();
  CDocument * const doc = m_pTemplate->OpenDocumentFile(nullptr);
  CFrameWnd * const frame = FirstView(doc)->GetParentFrame();
  doc->SetModifiedFlag();
  m_UI.m_nAnswer = IDCANCEL;
  frame->SendMessage(WM_CLOSE);
  main.SendMessage(WM_CLOSE);
  EXPECT_EQ(GetCurrentDoc(), doc);
  EXPECT_EQ(m_UI.m_Messages.front().text, "Save the changes to Untitled1?");
  EXPECT_EQ(m_App.m_pMainWnd, &main);

  m_UI.m_nAnswer = IDNO;
  frame->SendMessage(WM_CLOSE);
  EXPECT_EQ(IsValidDoc(doc), 0) << "the last view takes its document along";
  EXPECT_EQ(m_App.m_pMainWnd, &main);
  main.SendMessage(WM_CLOSE);
  EXPECT_EQ(m_App.m_pMainWnd, nullptr);
  EXPECT_EQ(m_App.Run(), 0) << "the quit of the main window ends the loop";
}

TEST_F(ReportDocument, TakesTheCommandsOnEmbeddedObjects)
{
  MainFrame & main = OpenMainWindow();
  CDocument * const doc = m_pTemplate->OpenDocumentFile(nullptr);
  std::tuple<UINT, bool, bool> const rows[] = {{0xE125, true, false}, {0xE126, true, false}, {0xE202, true, true},
                                               {0xE201, true, true},  {0xE210, true, false}, {0xE203, false, false}};
  AFX_MSGMAP_ENTRY const * update = nullptr;
  for (auto const & [command, updated, carriedOut] : rows) {
    AFX_CMDHANDLERINFO info{};
    EXPECT_EQ(main.OnCmdMsg(command, CN_UPDATE_COMMAND_UI, nullptr, &info) != 0, updated) << command;
    EXPECT_EQ(info.pTarget, updated ? doc : nullptr) << command;
    if (command == 0xE202) update = info.pEntry;
    if (command == 0xE210) {
      EXPECT_EQ(info.pEntry->pHandler, update->pHandler) << "one handler for both";
    }
    EXPECT_EQ(main.OnCmdMsg(command, CN_COMMAND, nullptr, &info) != 0, carriedOut) << command;
    CCmdUI item(command);
    EXPECT_EQ(item.DoUpdate(&main, TRUE) != 0, updated) << command;
    EXPECT_FALSE(item.IsEnabled()) << command;
  }
}

TEST_F(ReportDocument, TakesNoNotificationForAnUpdateOfACommand)
{
  MainFrame & main = OpenMainWindow();
  m_pTemplate->OpenDocumentFile(nullptr);
  EXPECT_EQ(main.SendMessage(WM_COMMAND, 0xFFFFE125, 1), 0) << "the highest code of a control";
  EXPECT_EQ(main.SendMessage(0xFFFF0000 | WM_COMMAND, newDocumentCommand, 0), 0);
  EXPECT_FALSE(main.OnCmdMsg(newDocumentCommand, 0x10000, nullptr, nullptr)) << "would be carried out";
}

TEST_F(ReportDocument, AnswersAsAnAutomationObjectWithoutMembers)
{
  IID const iid{0xFDE493E1, 0x4FBF, 0x11CF, {0xAE, 0xA4, 0x00, 0x80, 0x5F, 0x50, 0x6A, 0x27}};
  void * found = nullptr;
  GPRptDoc doc(nullptr, nullptr);
  IDispatch & dispatch = *doc.GetIDispatch(FALSE);
  for (IID const & known : {iid, IID_IDispatch, IID_IUnknown}) {
    ASSERT_EQ(dispatch.QueryInterface(known, &found), S_OK);
    EXPECT_EQ(found, &dispatch);
    dispatch.Release();
  }
  EXPECT_EQ(dispatch.Invoke(1, IID_NULL, 0, 1, nullptr, nullptr, nullptr, nullptr), DISP_E_MEMBERNOTFOUND);
}

}  // namespace
