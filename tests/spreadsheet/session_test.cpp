// The session on a server that writes down its calls: the order of the steps, the messages, the references, and what is guarded.

#include "tests/spreadsheet/SessionSuite.h"

#include <zpbase/config.h>
#include <zpbase/platform/exceptions.h>

#include "tests/support/RecordingServer.h"

namespace {

class RecordingSession : public SessionServer {
 public:
  ~RecordingSession() override
  {
    DetachExcel();
    EXPECT_EQ(m_Server.m_nLive, 0);
  }
  char const * ProgId() const override { return "Test.Recording"; }
  void MakeBook(CString const & fullName, std::vector<Sheet> const & sheets) override
  {
    RecordingServer::Book & book = m_Server.m_Files[fullName.GetString()];
    book = {fullName.GetString(), {}, {}};
    for (Sheet const & sheet : sheets)
      book.sheets.push_back(std::make_shared<RecordingServer::Sheet>(RecordingServer::Sheet{sheet.name, sheet.cells}));
  }

  RecordingServer m_Server;
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Recording, SessionSuite, testing::Values([] { return std::make_unique<RecordingSession>(); }));

namespace {

using Lines = std::vector<std::string>;

class Session : public testing::Test {
 protected:
  Session()
  {
    m_App.SetProfileFile(m_Folder.Name("app.ini"));
    SetSysString(GetExcelSectionKey(), GetExcelRegFileTypeIDKey(), "Test.Recording");
    m_Book = std::make_shared<RecordingServer::Book>();
    m_Book->fullName = "C:\\job\\Flow.xlsx";
    for (char const * name : {"First", "DATA", "data"}) m_Book->sheets.push_back(makeSheet(name));
    m_Book->charts.push_back(makeSheet("Profile"));
    m_Server.m_Open = {std::make_shared<RecordingServer::Book>(), m_Book};
  }
  ~Session() override
  {
    DetachExcel();
    m_Server.Stop();
    EXPECT_EQ(m_Server.m_nLive, 0);
  }

  static std::shared_ptr<RecordingServer::Sheet> makeSheet(char const * name)
  {
    return std::make_shared<RecordingServer::Sheet>(RecordingServer::Sheet{name, {}});
  }

  // The calls since the last look.
  Lines Calls() { return std::exchange(m_Server.m_Calls, {}); }

  // The messages since the last look, each on a line of its own.
  Lines Told()
  {
    Lines told;
    for (auto const & message : std::exchange(m_User.m_Messages, {})) told.push_back(message.text);
    return told;
  }

  TempFolder m_Folder;
  CWinApp m_App{"Session"};
  RecordingInterface m_User;
  RecordingServer m_Server;
  std::shared_ptr<RecordingServer::Book> m_Book;
};

template <class Exception>
std::unique_ptr<Exception> raisedBy(std::function<void()> const & work)
{
  try {
    work();
  } catch (Exception * raised) {
    return std::unique_ptr<Exception>(raised);
  }
  return nullptr;
}

TEST_F(Session, LinksToARunningServerBeforeItStartsOne)
{
  EXPECT_EQ(DetachExcel(), 1);
  EXPECT_EQ(AttachExcel(), 1);
  EXPECT_EQ(m_Server.m_nMade, 1);
  EXPECT_EQ(AttachExcel(), 1);  // always a new link
  EXPECT_EQ(m_Server.m_nMade, 2);
  EXPECT_EQ(m_Server.m_nLive, 1);
  m_Server.Run();
  EXPECT_EQ(AttachExcel(), 1);
  EXPECT_EQ(m_Server.m_nMade, 3);
  EXPECT_EQ(m_Server.m_nLive, 2);
  EXPECT_EQ(DetachExcel(), 1);
  EXPECT_EQ(Told(), Lines{});

  m_Server.m_bHasDispatch = false;
  EXPECT_EQ(AttachExcel(), 0);
  m_Server.Stop();
  m_Server.m_nMakeCode = CO_E_OBJNOTCONNECTED;
  EXPECT_EQ(AttachExcel(), 0);
  SetSysString(GetExcelSectionKey(), GetExcelRegFileTypeIDKey(), "Test.None");
  EXPECT_EQ(AttachExcel(), 0);
  EXPECT_EQ(Told(), (Lines{"Microsoft Excel OLE Interface not found\r\nPress F1 for more information",
                           "Microsoft Excel failed to load\r\nCreateDispatch error: 800401FD\r\nPress F1 for more information",
                           "Microsoft Excel is not registered\r\nin your System Registry\r\nPress F1 for more information"}));
}

TEST_F(Session, TakesTheServerThatComesWithTheLibraryWhereNothingElseIsRegistered)
{
  setenv("ZP_SERVERS", m_Folder.Path().c_str(), 1);  // no modules
  SetSysString(GetExcelSectionKey(), GetExcelRegFileTypeIDKey(), "");
  EXPECT_EQ(AttachExcel(), 0);
  zp::UnregisterAutomationServer("Test.Recording", CLSID{0x5A504C57, 0x0002, 0x4000, {0x80, 0, 0, 0, 0, 0, 0, 1}});
  RecordingServer own("Zephlow.Workbooks");
  EXPECT_EQ(AttachExcel(), 1);
  EXPECT_EQ(own.m_nMade, 1);
  EXPECT_EQ(DetachExcel(), 1);
  EXPECT_EQ(own.m_nLive, 0);
  unsetenv("ZP_SERVERS");
}

TEST_F(Session, AsksTheServerInOneOrder)
{
  GPExcelWorkBook book("c:\\JOB\\flow.XLSX");
  GPExcel excel;
  EXPECT_EQ(excel.FindWorkBook(book), 1);  // without a link the first try makes one
  EXPECT_EQ(Calls(), (Lines{"Application 023C 2?", "Workbooks 0076 2?", "Application 023C 2 2:1?", "Workbook 0121 2?",
                            "Application 023C 2 2:2?", "Workbook 0121 2?"}));
  EXPECT_EQ(m_Server.m_nLive, 2);
  GPExcelWorkSheet sheet("data");
  EXPECT_EQ(book.FindWorkSheet(sheet), 1);
  EXPECT_EQ(sheet.SetFocus() + book.SetFocus(), 2);
  EXPECT_EQ(Calls(), (Lines{"Workbook 01EE 2?", "Worksheets 0076 2?", "Workbook 01EE 2 2:1?", "Worksheet 006E 2?",
                            "Workbook 01EE 2 2:2?", "Worksheet 006E 2?", "Worksheet 00EB 1", "Workbook 0130 1"}));
  GPExcelChart chart("PROFILE");
  EXPECT_EQ(book.FindChart(chart) + chart.SetFocus(), 2);
  EXPECT_EQ(Calls(), (Lines{"Workbook 0079 2?", "Charts 0076 2?", "Workbook 0079 2 2:1?", "Chart 006E 2?", "Chart 00EB 1"}));
  GPExcelWorkSheet made("First");
  EXPECT_EQ(book.CreateWorkSheet(made), 1);
  EXPECT_EQ(Calls(), (Lines{"Workbook 01EE 2?", "Worksheets 00B5 1?", "Worksheet 006E 4 -3=8:First"}));
  EXPECT_EQ(m_Book->sheets.back()->name, "Worksheet4");
  GPExcelWorkBook other("C:\\job\\other.xlsx");
  EXPECT_EQ(excel.CreateWorkBook(other), 1);
  EXPECT_EQ(excel.CloseWorkBook(book), 1);
  EXPECT_EQ(book.HasOLELink(), 1);
  EXPECT_EQ(Calls(), (Lines{"Application 023C 2?", "Workbooks 00B5 1?", "Workbook 0115 1 2:0"}));
  m_Server.m_Files["C:\\job\\third.xlsx"].fullName = "C:\\job\\third.xlsx";
  GPExcelWorkBook third("C:\\job\\third.xlsx");
  EXPECT_EQ(excel.LoadWorkBook(third), 1);
  EXPECT_EQ(Calls(), (Lines{"Application 023C 2?", "Workbooks 02AA 1 8:C:\\job\\third.xlsx?"}));
  EXPECT_EQ(Told(), Lines{});
  m_Server.m_Files.clear();
  EXPECT_EQ(excel.LoadWorkBook(third) + third.HasOLELink(), 0);  // the link that it had is no success
  EXPECT_EQ(Told(), Lines{"Unable to load Excel workBook\r\n>> C:\\job\\third.xlsx"});
}

TEST_F(Session, RenewsALinkThatNoLongerAnswersOnce)
{
  GPExcel excel;
  ASSERT_EQ(excel.InitOLELink(), 1);
  m_Server.Fail("Application 023C 2", CO_E_OBJNOTCONNECTED);
  GPExcelWorkBook book("C:\\job\\Flow.xlsx");
  EXPECT_EQ(excel.FindWorkBook(book), 0);
  EXPECT_EQ(m_Server.m_nMade, 2);
  EXPECT_EQ(Calls().size(), 2u);
  m_Server.m_nMakeCode = E_FAIL;
  EXPECT_EQ(excel.CreateWorkBook(book), 0);
  EXPECT_EQ(Calls().size(), 1u);
  EXPECT_EQ(Told().size(), 2u);
}

// Each call, made to fail with a plain code and with the server's own exception: what comes of it.
TEST_F(Session, SwallowsOnlyWhatIsGuarded)
{
  GPExcel excel;
  GPExcelWorkBook book("C:\\job\\Flow.xlsx");
  ASSERT_EQ(excel.FindWorkBook(book), 1);
  GPExcelWorkSheet sheet("First");
  GPExcelChart chart("Profile");
  ASSERT_EQ(book.FindWorkSheet(sheet) + book.FindChart(chart), 2);
  GPExcelWorkBook newBook("C:\\new.xlsx");
  GPExcelWorkSheet newSheet("New");
  GPExcelChart newChart("New");
  std::string const tellsBook = "\r\n>> C:\\job\\Flow.xlsx";
  std::string const sheetToBook = "Unable to create workSheet\r\n>> New\r\nin Excel workBook" + tellsBook;
  std::string const chartToBook = "Unable to create chart\r\n>> New\r\nin Excel workBook" + tellsBook;
  struct Row {
    char const * call;
    HRESULT code;
    std::function<int()> work;
    int result;  // -1: the exception comes through
    Lines told;
  };
  HRESULT const plain = E_FAIL;
  HRESULT const own = DISP_E_EXCEPTION;
  auto const findSheet = [&] { return book.FindWorkSheet(newSheet); };
  auto const createSheet = [&] { return book.CreateWorkSheet(newSheet); };
  auto const createChart = [&] { return book.CreateChart(newChart); };
  auto const createBook = [&] { return excel.CreateWorkBook(newBook); };
  auto const load = [&] { return excel.LoadWorkBook(newBook); };
  auto const close = [&] { return excel.CloseWorkBook(book); };
  auto const scan = [&] { return sheet.EnumRanges(&GPExcelWorkSheet::ProcessRanges, "book"); };
  Row const rows[] = {
      {"Workbook 0130 1", plain, [&] { return book.SetFocus(); }, 0, {}},
      {"Workbook 0130 1", own, [&] { return book.SetFocus(); }, -1, {}},
      {"Worksheet 00EB 1", plain, [&] { return sheet.SetFocus(); }, 0, {}},
      {"Chart 00EB 1", plain, [&] { return chart.SetFocus(); }, 0, {"Unable to select Excel chart\r\n>> Profile"}},
      {"Workbook 01EE 2", plain, findSheet, 0, {}},
      {"Workbook 01EE 2", S_FALSE, findSheet, 0, {}},
      {"Worksheets 0076 2", plain, findSheet, -1, {}},
      {"Worksheet 006E 2", plain, findSheet, -1, {}},
      {"Worksheet 006E 2", own, findSheet, -1, {}},
      {"Worksheets 00B5 1", plain, createSheet, 0, {sheetToBook}},
      {"Worksheets 00B5 1", S_FALSE, createSheet, 0, {sheetToBook}},
      {"Worksheets 00B5 1", own, createSheet, -1, {}},
      {"Charts 00B5 1", plain, createChart, 0, {chartToBook}},
      {"Chart 006E 4", plain, createChart, 1, {}},
      {"Workbooks 00B5 1", plain, createBook, 0, {"Unable to create Excel workBook\r\n>> C:\\new.xlsx"}},
      {"Workbooks 02AA 1", own, load, 0, {"Unable to load Excel workBook\r\n>> C:\\new.xlsx"}},
      {"Workbooks 02AA 1", S_FALSE, load, 0, {"Unable to load Excel workBook\r\n>> C:\\new.xlsx"}},
      {"Workbooks 02AA 1", plain, load, -1, {}},
      {"Workbook 0115 1", plain, close, 0, {"Unable to close Excel workBook" + tellsBook}},
      {"Workbook 0115 1", own, close, -1, {}},
      {"Worksheet 00C5 2", plain, scan, -1, {}},
      {"Range 0006 2", own, scan, -1, {}},
  };
  for (Row const & row : rows) {
    m_Server.Fail(row.call, row.code);
    int const live = m_Server.m_nLive;
    int result = -1;
    if (row.result != -1 || row.code != own) {
      std::unique_ptr<COleException> const raised = raisedBy<COleException>([&] { result = row.work(); });
      EXPECT_EQ(raised != nullptr && raised->m_sc == row.code, row.result == -1) << row.call;
    } else {
      std::unique_ptr<COleDispatchException> const raised = raisedBy<COleDispatchException>([&] { result = row.work(); });
      EXPECT_TRUE(raised && raised->m_strDescription == row.call) << row.call;
    }
    EXPECT_EQ(result, row.result) << row.call << " with " << row.code;
    EXPECT_EQ(Told(), row.told) << row.call;
    newBook.ReleaseDispatch();
    newSheet.m_Link.ReleaseDispatch();
    newChart.m_Link.ReleaseDispatch();
    EXPECT_EQ(m_Server.m_nLive, live) << row.call;
    m_Server.Mend();
  }
}

struct Scanned {
  static inline int g_nLive = 0;
  static inline int g_nMost = 0;
  static inline RecordingServer * g_pServer = nullptr;
  static inline std::string g_strNames;

  static void Look(GPExcelWorkSheet & sheet, GPRange & range)
  {
    EXPECT_EQ(range.HasOLELink(), 1);
    g_nMost = std::max(g_nMost, g_pServer->m_nLive - g_nLive);
    if (sheet.m_List1.GetSize() == 2) g_strNames += g_pServer->m_Calls.back() + ";";
  }
};

TEST_F(Session, ScansABlockCellByCell)
{
  GPExcelWorkSheet sheet("First");
  m_Book->sheets[0]->cells = {
      {"A1", COleVariant(5, VT_ERROR)}, {"CV50", COleVariant("")}, {"CW1", COleVariant(1.0)}, {"A51", COleVariant(1.0)}};
  GPExcel excel;
  GPExcelWorkBook book("C:\\job\\Flow.xlsx");
  ASSERT_EQ(excel.FindWorkBook(book) + book.FindWorkSheet(sheet), 2);
  Calls();
  Scanned::g_nLive = m_Server.m_nLive;
  Scanned::g_pServer = &m_Server;
  EXPECT_EQ(sheet.EnumRanges(&Scanned::Look, "book"), 5000);
  EXPECT_EQ(Scanned::g_nMost, 1);                    // one range at a time
  EXPECT_EQ(Scanned::g_strNames, "Range 0006 2?;");  // the second cell, in front of its callback
  ASSERT_EQ(sheet.m_List1.GetSize(), 2);
  EXPECT_EQ(dynamic_cast<GPCell &>(*sheet.m_List1[0]).GetValue().scode, 5);
  EXPECT_EQ(dynamic_cast<GPCell &>(*sheet.m_List1[1]).GetName(), "CV50");
  Lines const calls = Calls();
  ASSERT_EQ(calls.size(), 10000u);
  EXPECT_EQ(calls[2], "Worksheet 00C5 2 8:B1?");
  EXPECT_EQ(calls[200], "Worksheet 00C5 2 8:A2?");
  m_Server.Fail("Worksheet 00C5 2", S_FALSE, 4901);
  EXPECT_EQ(sheet.BuildWorkSheet(nullptr, "book"), 1);
  EXPECT_EQ(Told(), Lines{"Unable to initialize\r\nworkSheet cell >> B50\r\nin workSheet >> First\r\nin Excel workBook >> book"});
  m_Server.Fail("Worksheet 00C5 2", S_FALSE);
  EXPECT_EQ(sheet.EnumRanges(nullptr, "book"), 0);
  EXPECT_EQ(Told().size(), 50u);  // each row is tried
}

TEST_F(Session, WalksWithALinkOfItsOwn)
{
  GPExcelWorkBook book("C:\\job\\Flow.xlsx");
  EXPECT_EQ(book.m_nMode, -4135);
  EXPECT_EQ(book.BuildWorkBook(&GPExcelWorkBook::ProcessWorkSheet), 1);
  EXPECT_EQ(book.m_WorkSheets.GetSize(), 3);
  EXPECT_EQ(m_Server.m_nLive, 1);  // that of the workbook
  m_Server.Fail("Range 0006 2", E_FAIL, 7);
  EXPECT_TRUE(raisedBy<COleException>([&] { book.BuildWorkBook(&GPExcelWorkBook::ProcessWorkSheet); }));
  EXPECT_EQ(m_Server.m_nLive, 1);
  m_Server.Mend();
  m_Book->sheets.clear();
  EXPECT_EQ(book.BuildWorkBook(&GPExcelWorkBook::ProcessWorkSheet), 0);
  m_Server.m_Open.clear();
  GPExcelWorkBook none("C:\\none.xlsx");
  m_Server.Fail("Workbooks 02AA 1", DISP_E_EXCEPTION);
  EXPECT_EQ(none.BuildWorkBook(&GPExcelWorkBook::ProcessWorkSheet), 0);
  EXPECT_EQ(Told(), Lines{"Unable to load Excel workBook\r\n>> C:\\none.xlsx"});
}

TEST_F(Session, HandsArgumentsAndResultsOverInThePublishedShape)
{
  GPApplication application;
  application.AttachDispatch(m_Server.MakeApplication());
  COleVariant const held("held");
  constexpr BYTE types[] = {VT_I4, VT_R8, VT_BOOL, VT_BSTRA, VT_BSTR, VT_VARIANT, VT_DISPATCH, VT_I2, VT_R4, 0};
  auto const raised = raisedBy<COleException>([&] {
    application.InvokeHelper(0x999, DISPATCH_METHOD | DISPATCH_PROPERTYPUT, VT_EMPTY, nullptr, types, 70000, 0.5, 7, "\xE9",
                             u"wide", static_cast<VARIANT const *>(&held), static_cast<IDispatch *>(nullptr), -3, 1.5);
  });
  EXPECT_EQ(raised->m_sc, DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(Calls(), Lines{"Application 0999 5 -3=4:1.5, 2:-3, 9, 8:held, 8:wide, 8:\xE9, 11:-1, 5:0.5, 3:70000"});
  constexpr BYTE unknown[] = {VT_BSTRA, VT_ARRAY >> 8, 0};
  EXPECT_EQ(raisedBy<COleException>([&] { application.InvokeHelper(1, 1, VT_EMPTY, nullptr, unknown, "freed", 0); })->m_sc,
            DISP_E_BADVARTYPE);

  GPExcelWorkBook book("C:\\job\\Flow.xlsx");
  GPExcelWorkSheet sheet("First");
  GPExcel excel;
  ASSERT_EQ(excel.FindWorkBook(book) + book.FindWorkSheet(sheet), 2);
  m_Book->sheets[0]->cells["A1"] = COleVariant(69999.5);
  GPRange range;
  range.AttachDispatch(sheet.m_Link.GetCell(COleVariant("A1")));
  auto const ask = [&](VARTYPE type, void * slot) { range.InvokeHelper(6, DISPATCH_PROPERTYGET, type, slot, nullptr); };
  LONG numbers[] = {1, 2};
  ask(VT_I4, numbers);
  EXPECT_EQ(numbers[0], 70000);
  EXPECT_EQ(numbers[1], 2);
  VARIANT_BOOL truths[] = {1, 2};
  ask(VT_BOOL, truths);
  EXPECT_EQ(truths[0], VARIANT_TRUE);
  EXPECT_EQ(truths[1], 2);
  CString text;
  ask(VT_BSTR, &text);
  EXPECT_EQ(text, "69999.5");
  int16_t small = 5;
  EXPECT_EQ(raisedBy<COleException>([&] { ask(VT_I2, &small); })->m_sc, DISP_E_OVERFLOW);
  EXPECT_EQ(raisedBy<COleException>([&] { ask(VT_DISPATCH, numbers); })->m_sc, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(small, 5);
  m_Book->sheets[0]->cells["A1"] = COleVariant("text");
  COleVariant value;
  VARIANT answer = range.GetValue();
  value.Attach(answer);
  EXPECT_EQ(zp::ViewOf(value.bstrVal), u"text");
}

TEST_F(Session, RaisesTheServersRecordWhole)
{
  GPWorkSheet sheet;
  EXPECT_EQ(raisedBy<COleException>([&] { sheet.Select(); })->m_sc, CO_E_OBJNOTCONNECTED);
  GPApplication application;
  application.AttachDispatch(m_Server.MakeApplication());
  m_Server.Fail("Application 023C 2", DISP_E_EXCEPTION);
  auto const raised = raisedBy<COleDispatchException>([&] { application.GetWorkBooks(); });
  ASSERT_TRUE(raised);
  EXPECT_EQ(raised->m_wCode, 1004);
  EXPECT_EQ(raised->m_scError, E_FAIL);
  EXPECT_EQ(raised->m_dwHelpContext, 7u);
  EXPECT_EQ(raised->m_strSource + "|" + raised->m_strDescription + "|" + raised->m_strHelpFile,
            "Recorder|Application 023C 2|help.txt");
}

TEST_F(Session, LinksCountTheirReferencesExactly)
{
  GPApplication first;
  EXPECT_EQ(first.HasOLELink(), 0);
  first.AttachDispatch(m_Server.MakeApplication());
  {
    GPApplication copy(first);
    GPApplication assigned;
    assigned = copy;
    GPApplication & same = assigned;
    assigned = same;
    EXPECT_EQ(m_Server.m_nLive, 3);
    EXPECT_EQ(assigned.m_lpDispatch, first.m_lpDispatch);
  }
  EXPECT_EQ(m_Server.m_nLive, 1);
  first.AttachDispatch(first.m_lpDispatch);  // its only reference stays
  EXPECT_EQ(m_Server.m_nLive, 1);
  first.m_lpDispatch->AddRef();
  first.AttachDispatch(first.m_lpDispatch);  // the second one is given back
  EXPECT_EQ(m_Server.m_nLive, 1);
  IDispatch * const other = m_Server.MakeApplication();
  first.AttachDispatch(other, FALSE);
  EXPECT_EQ(m_Server.m_nLive, 1);
  first.ReleaseDispatch();
  EXPECT_EQ(first.HasOLELink(), 0);
  EXPECT_EQ(m_Server.m_nLive, 1);
  first.AttachDispatch(other);
  EXPECT_EQ(first.DetachDispatch(), other);
  EXPECT_EQ(first.HasOLELink(), 0);
  other->Release();
}

}  // namespace
