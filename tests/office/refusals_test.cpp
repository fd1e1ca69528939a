// What can't be opened, saved, named or started, and that nothing stays behind.

#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "servers/office/failure.h"
#include "servers/office/link.h"
#include "tests/office/OfficeServer.h"

namespace {

class OfficeRefusals : public testing::Test {
 protected:
  void SetUp() override
  {
    if (std::string const why = OfficeServer().WhyNot(); !why.empty()) GTEST_SKIP() << why;
  }

  std::string Host(std::string const & file) const { return (m_Folder.Path() / file).string(); }

  TempFolder m_Folder;
  CWinApp m_App{"Refusals"};
};

TEST_F(OfficeRefusals, LeaveAWorkbookThatIsOpenElsewhereAndAChartThatIsMade)
{
  GPWorkBook book = OfficeServer().NewBook();
  auto chart = Attached<GPChart>(Attached<GPCharts>(book.GetCharts()).Add());
  chart.SetName("Profile");
  EXPECT_EQ(WhatIsTold([&] { chart.SetName("Another"); }), "80070057");
  EXPECT_NE(WhatIsTold([&] { book.SaveAs(COleVariant(m_Folder.Name("new.xlsx"))); }).find("would lose the names"),
            std::string::npos);
  book.SaveAs(COleVariant(m_Folder.Name("locked.ods")));
  book.Close(COleVariant(short{0}));
  m_Folder.Write(".~lock.locked.ods#", ",Somebody,elsewhere,25.11.2026 10:00,file:///home/somebody/office;");
  GPWorkBook locked = OfficeServer().OpenBook(m_Folder.Name("locked.ods"));
  GPWorkSheet sheet = SheetOf(locked, 1);
  for (std::function<void()> const & call : std::vector<std::function<void()>>{
           [&] { locked.Save(); }, [&] { Attached<GPWorkSheet>(Attached<GPWorkSheets>(locked.GetWorkSheets()).Add()); },
           [&] { sheet.SetName("Other"); }, [&] { Attached<GPChart>(Attached<GPCharts>(locked.GetCharts()).Add()); }})
    EXPECT_NE(WhatIsTold(call).find("locked.ods is open for reading alone: it is open elsewhere"), std::string::npos);
  locked.Close(COleVariant(short{0}));
}

TEST_F(OfficeRefusals, TellWhyAnOfficeDoesNotStartAndLeaveNothing)
{
  mkdir(Host("programs").c_str(), 0700);
  mkdir(Host("profiles").c_str(), 0700);
  auto const program = [this](std::string const & script) {
    m_Folder.Write("programs/soffice.bin", "#!/bin/sh\n" + script + "\n");
    chmod(Host("programs/soffice.bin").c_str(), 0700);
    return Host("programs");
  };
  struct Row {
    std::string script, profiles, reason;
  };
  for (Row const & row : {Row{"exit 7", "profiles", "status 7"}, Row{"exit 81", "profiles", "status 81"},
                          Row{"sleep 600 & wait", "profiles", "no answer within 1 second"},
                          Row{"exit 0", "missing", "No such file"}, Row{"", "profiles", "can't be started"}}) {
    std::string programs = program(row.script);
    if (row.script.empty()) programs = Host("missing");
    std::string told = "it starts";
    try {
      office::Link const link({"none-such", programs, Host(row.profiles), 1});
    } catch (office::Failure const & failure) {
      told = failure.sentence;
      EXPECT_EQ(failure.code, office::startFailed);
    }
    EXPECT_NE(told.find(row.reason), std::string::npos) << row.reason << ": " << told;
    EXPECT_TRUE(std::filesystem::is_empty(m_Folder.Path() / "profiles")) << row.script;
  }
  EXPECT_TRUE(ProcessesWith(Host("p")).empty());
}

// A write to it is no signal that ends the program.
TEST_F(OfficeRefusals, OutliveWhatHangsUpAtThePipe)
{
  office::LinkSettings const settings{"zephlow-hangs-up-" + std::to_string(getpid()), "", "", 1};
  sockaddr_un address{AF_UNIX, ""};
  office::PipeFile(settings.pipe).copy(address.sun_path, sizeof address.sun_path - 1);
  int const listener = socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
  ASSERT_EQ(listen(listener, 1), 0);
  std::thread other([listener] { close(accept(listener, nullptr, nullptr)); });
  EXPECT_ANY_THROW(office::Link const link(settings));
  other.join();
  close(listener);
  unlink(address.sun_path);
}

TEST_F(OfficeRefusals, LeaveARunningOfficeItsOwnWorkbooks)
{
  GPWorkBook ours = OfficeServer().NewBook();
  std::string const command = ZP_OFFICE_HOLDER " " + SharedPipe();
  FILE * const other = popen(command.c_str(), "r");
  ASSERT_NE(other, nullptr);
  char told[64] = "";
  EXPECT_NE(fgets(told, sizeof told, other), nullptr);
  EXPECT_EQ(pclose(other), 0);
  EXPECT_STREQ(told, "2, last");
  EXPECT_EQ(Attached<GPWorkBooks>(OfficeServer().Application().GetWorkBooks()).GetCount(), 1);
  ours.Close(COleVariant(short{0}));
}

TEST_F(OfficeRefusals, StandALinkThatOutlivesTheOffice)
{
  EXPECT_EQ(std::system("ASAN_OPTIONS=detect_leaks=0 timeout 60 " ZP_OFFICE_HOLDER " exit"), 0);
}

// Runs this program's helper, which starts an office and waits, and kills it.
TEST_F(OfficeRefusals, LeaveNothingWhenTheProcessIsKilled)
{
  mkdir(Host("profiles").c_str(), 0700);
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  pid_t const child = fork();
  if (child == 0) {
    dup2(ends[1], 1);
    setenv("TMPDIR", Host("profiles").c_str(), 1);
    execl(ZP_OFFICE_HOLDER, ZP_OFFICE_HOLDER, nullptr);
    _exit(127);
  }
  close(ends[1]);
  char ready = 0;
  EXPECT_EQ(read(ends[0], &ready, 1), 1);
  close(ends[0]);
  EXPECT_EQ(ProcessesWith("-env:UserInstallation=file://" + Host("profiles")).size(), 1u);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  auto const isClean = [this] { return std::filesystem::is_empty(m_Folder.Path() / "profiles"); };
  for (int i = 0; i < 500 && !isClean(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
  EXPECT_TRUE(isClean());
  EXPECT_TRUE(ProcessesWith("-env:UserInstallation=file://" + Host("profiles")).empty());
  for (auto const & entry : std::filesystem::directory_iterator("/tmp"))
    EXPECT_EQ(entry.path().string().find("_zephlow-" + std::to_string(child) + "-"), std::string::npos) << entry.path();
}

}  // namespace
