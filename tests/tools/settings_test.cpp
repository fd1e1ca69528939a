// zp settings, as a person runs it: output, exit status and what stands in the files afterwards.

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>

#include <zpbase/platform/host_calls.h>

#include "tests/support/RunProgram.h"
#include "tests/support/TempFolder.h"
#include "tools/interrupt_guard.h"
#include "tools/program.h"
#include "tools/settings/registration_entries.h"
#include "tools/settings/settings_store.h"

using namespace std::string_literals;

namespace {

class ZpSettings : public testing::Test {
 protected:
  // Output and errors of "zp settings ..." in the test's folder, with the exit status in front.
  std::string Run(std::string const & arguments)
  {
    std::string const line =
        "cd '" + m_Folder.Path().string() + "' && XDG_CONFIG_HOME=\"$PWD\" '" + ZpProgram() + "' settings " + arguments + " 2>&1";
    std::FILE * const pipe = popen(line.c_str(), "r");
    std::string output;
    for (int c = 0; (c = std::fgetc(pipe)) != EOF;) output += static_cast<char>(c);
    return std::to_string(WEXITSTATUS(pclose(pipe))) + ' ' + output;
  }

  TempFolder m_Folder;
};

}  // namespace

TEST_F(ZpSettings, ChangeAndShowAProfileFile)
{
  EXPECT_EQ(Run("set Misc Name 'caf\xC3\xA9' -a Flow"), "0 ");
  EXPECT_EQ(Run("set Misc n -5 -t integer -a Flow"), "0 ");
  EXPECT_EQ(Run("set Other b 4f00 -t binary -p Flow.ini"), "0 ");
  EXPECT_EQ(m_Folder.Read("Flow.ini"), "[Misc]\nName=caf\xE9\nn=-5\n\n[Other]\nb=PEAA\n");
  EXPECT_EQ(Run("get misc NAME -p Flow.ini"), "0 caf\xC3\xA9\n");
  EXPECT_EQ(Run("get misc n --json -p Flow.ini"), "0 {\"section\":\"Misc\",\"key\":\"n\",\"type\":\"text\",\"value\":\"-5\"}\n");
  EXPECT_EQ(Run("list other -p Flow.ini"), "0 [Other]\nb                        text     PEAA\n");
  EXPECT_EQ(Run("remove Misc n -p Flow.ini"), "0 ");
  EXPECT_EQ(Run("remove Other -p Flow.ini"), "0 ");
  EXPECT_EQ(m_Folder.Read("Flow.ini"), "[Misc]\nName=caf\xE9\n\n");
}

TEST_F(ZpSettings, CarryEveryTypeBetweenHivesAndTextsToProfiles)
{
  std::string const body =
      "[HKEY_CURRENT_USER\\Software\\Acme\\Flow\\Misc]\r\n\"b\"=hex:4f,00\r\n\"e\"=hex(2):25,00\r\n\"m\"=hex(7):61,00,00\r\n"
      "\"n\"=dword:fffffffb\r\n\"t\"=\"x\"\r\n";
  m_Folder.Write("in.reg", "REGEDIT4\r\n\r\n" + body + "\r\n[HKEY_CURRENT_USER\\Software\\Acme\\Flowers]\r\n\"t\"=\"x\"\r\n");
  EXPECT_EQ(Run("import in.reg -r user.reg -c Acme -a Flow"),
            "0 in.reg: 5 settings taken, 0 removed, 0 refused, 0 damaged lines, 1 of other keys than "
            "HKEY_CURRENT_USER\\Software\\Acme\\Flow\n");
  EXPECT_EQ(Run("export -r user.reg -c Acme -a Flow"), "0 REGEDIT4\r\n\r\n" + body);
  EXPECT_EQ(Run("get Misc n --type -r user.reg -c Acme -a Flow"), "0 integer -5\n");
  EXPECT_EQ(Run("set Misc n 4294967291 -t integer -r user.reg -c Acme -a Flow"), "0 ");
  EXPECT_EQ(Run("export -r user.reg -c Acme -a Flow"), "0 REGEDIT4\r\n\r\n" + body);
  m_Folder.Write("more.reg", "REGEDIT4\n" + body + "broken\n\"t\"=-\n");
  EXPECT_EQ(Run("import more.reg -r user.reg -c Acme -a Flow").substr(0, 81),
            "1 more.reg: 5 settings taken, 1 removed, 0 refused, 1 damaged line, 0 of other ke");
}

TEST_F(ZpSettings, CarryAnotherCompanysBranchToAProfileFileAndBack)
{
  std::string const branch = "[HKEY_CURRENT_USER\\Software\\Acme\\Flow\\Misc]\r\n";
  m_Folder.Write("in.reg", "REGEDIT4\r\n\r\n" + branch + "\"b\"=hex:4f,00\r\n\"m\"=hex(7):61,00,00\r\n\"n\"=dword:fffffffb\r\n" +
                               "\"z\"=hex(1):41,00,42,00\r\n[-HKEY_CURRENT_USER\\Software\\Acme\\Flow]\r\n");
  EXPECT_EQ(Run("import in.reg -p x.ini -c Acme -a Flow"),
            "1 zp: in.reg: \"m\" in the section \"Misc\" was refused: a profile file has no form for the type 7\n"
            "zp: in.reg: \"z\" in the section \"Misc\" was refused: a profile file's text has no character 0\n"
            "in.reg: 2 settings taken, 0 removed, 2 refused, 0 damaged lines, 1 of other keys than "
            "HKEY_CURRENT_USER\\Software\\Acme\\Flow\n");
  EXPECT_EQ(m_Folder.Read("x.ini"), "[Misc]\nb=PEAA\nn=-5\n");
  EXPECT_EQ(Run("export -p x.ini -c Acme -a Flow"), "0 REGEDIT4\r\n\r\n" + branch + "\"b\"=\"PEAA\"\r\n\"n\"=\"-5\"\r\n");
  EXPECT_EQ(Run("import in.reg -p x.ini"),
            "1 in.reg: 0 settings taken, 0 removed, 0 refused, 0 damaged lines, 5 of other keys than "
            "HKEY_CURRENT_USER\\Software\\Vantrelis\\Zephlow\n"
            "zp: in.reg: has no settings of this application; name the one that it is for with -c and -a\n");
  EXPECT_EQ(Run("list -p x.ini -c Acme").substr(0, 2), "2 ");
}

TEST_F(ZpSettings, RemoveWhatWasNamedAndNothingElse)
{
  std::string const all = "[Misc]\na=1\nb=2\n\n[Other]\nc=3\n";
  m_Folder.Write("x.ini", all);
  for (char const * misuse : {"remove Misc ''", "remove ''", "remove '' a", "get '' a", "get Misc ''", "set '' a 1",
                              "set Misc '' 1", "remove Misc -c ''", "remove Misc -r ''"}) {
    EXPECT_EQ(Run(misuse + " -p x.ini"s).substr(0, 2), "2 ") << misuse;
  }
  EXPECT_EQ(Run("remove Misc nope -p x.ini"), "1 zp: x.ini: no setting \"nope\" in the section \"Misc\"; see zp settings list\n");
  EXPECT_EQ(Run("remove Mis -p x.ini"), "1 zp: x.ini: no section \"Mis\"; see zp settings list\n");
  EXPECT_EQ(m_Folder.Read("x.ini"), all);
  EXPECT_EQ(Run("set 'A\\B' k v -r h.reg -c Acme"), "0 ");
  EXPECT_EQ(Run("remove a -r h.reg -c Acme"), "0 ");
  EXPECT_EQ(
      Run("list -r h.reg -c Acme"),
      "0 zp: h.reg, branch HKEY_CURRENT_USER\\Software\\Acme\\Zephlow: 0 settings; others may be in another store: see -a, -p, "
      "-c and -r\n");
}

TEST_F(ZpSettings, SayWhatIsWrong)
{
  for (char const * reading : {"get Misc none", "list", "remove Misc", "export"})
    EXPECT_EQ(Run(reading + " -p x.ini"s), "1 zp: x.ini: can't be opened: No such file or directory; check the name\n");
  for (char const * reading : {"list -p", "set Misc a x -p", "list -r"})
    EXPECT_EQ(Run(reading + " /dev/zero"s), "1 zp: /dev/zero: is a device or a pipe; name a file\n") << reading;
  EXPECT_EQ(Run("import -p x.ini /dev/zero"), "1 zp: /dev/zero: is no file or pipe; name a file\n");
  EXPECT_EQ(Run("import -p x.ini - </dev/zero"),
            "1 zp: standard input: has more than the 67108864 bytes of what is taken from a pipe; name a file\n");
  EXPECT_EQ(Run("list -a None").substr(0, 3), "0 z");
  EXPECT_EQ(Run("set Misc n 12x -t integer -p x.ini"), "2 zp: \"12x\": an integer is from -2147483648 to 4294967295\n");
  EXPECT_EQ(Run("set Misc b 4f0 -t binary -p x.ini"), "2 zp: \"4f0\": a block is pairs of hexadecimal digits, such as 4f00\n");
  std::string const refused = "1 zp: x.ini: the change was not made: a profile file's ";
  EXPECT_EQ(Run("set Misc a=b x -p x.ini"), refused + "key has no line end and no =, and doesn't begin with [ or ;\n");
  EXPECT_EQ(Run("set Misc ' ' x -p x.ini"), refused + "key isn't blank\n");
  EXPECT_EQ(Run("set 'M]' a x -p x.ini"), refused + "section has no line end and no ]\n");
  EXPECT_EQ(Run("set Misc a 'x\n' -p x.ini"), refused + "text has no line end\n");
  EXPECT_FALSE(m_Folder.Has("x.ini"));
  m_Folder.Write("bad.reg", "[x]\n");
  EXPECT_EQ(Run("set Misc a x -p bad.reg/x.ini"),
            "1 zp: bad.reg/x.ini: can't be created: bad.reg is no folder; check the name\n");
  for (std::string const option : {"-p", "-r"})
    EXPECT_EQ(Run("set Misc a x " + option + " no/x"), "1 zp: no/x: can't be created: there is no such folder; check the name\n");
  std::string const folder = m_Folder.Path().string();
  EXPECT_EQ(Run("set Misc a x -a bad.reg/x"), "1 zp: " + folder + "/bad.reg/x.ini: the change was not made: the folder " +
                                                  folder + "/bad.reg can't be made: Not a directory\n");
  std::filesystem::create_directory(m_Folder.Path() / "x.ini.zp-new");
  EXPECT_EQ(Run("set Misc a x -p x.ini"),
            "1 zp: x.ini: the change was not made: the new file can't be written beside it: File exists\n");
  EXPECT_EQ(Run("set 'a\\' k v -r x.reg"),
            "1 zp: x.reg: the change was not made: a hive's section has a name on either side of each \\\n");
  EXPECT_EQ(Run("list -r bad.reg"), "1 zp: bad.reg: doesn't begin with REGEDIT4; name a registration-entries file\n");
  EXPECT_EQ(
      Run("import bad.reg -p x.ini"),
      "1 zp: bad.reg: is no registration-entries file; it must begin with REGEDIT4 or Windows Registry Editor Version 5.00\n");
  EXPECT_EQ(Run("list -r a.reg -p x.ini").substr(0, 2), "2 ");
  EXPECT_EQ(m_Folder.Read("bad.reg"), "[x]\n");
}

// The sequence of the manual, line by line, by a user without settings.
TEST_F(ZpSettings, WorkAsTheManualTells)
{
  EXPECT_EQ(std::system(("cd '" + m_Folder.Path().string() + "' && mkdir bin && ln -s '" + ZpProgram() +
                         "' bin/zp && "
                         "sed -n 's/^    \\(zp settings .*\\)/\\1/p' " ZP_SOURCE_DIR "/docs/config.md >steps && "
                         "HOME=\"$PWD\" XDG_CONFIG_HOME= PATH=\"$PWD/bin:$PATH\" sh -e steps >out 2>&1")
                            .c_str()),
            0)
      << m_Folder.Read("out");
  EXPECT_EQ(m_Folder.Read("out"),
            "Yes\n[Misc]\nBeep                     text     Yes\n"
            "flow.reg: 1 setting taken, 0 removed, 0 refused, 0 damaged lines, 0 of other keys than "
            "HKEY_CURRENT_USER\\Software\\Acme\\Flow\n"
            "[Misc]\nBeep                     text     Yes\n"
            "flow.reg: 1 setting taken, 0 removed, 0 refused, 0 damaged lines, 0 of other keys than "
            "HKEY_CURRENT_USER\\Software\\Acme\\Flow\n");
  EXPECT_EQ(m_Folder.Read("flow.ini"), "[Misc]\nBeep=Yes\n");
}

namespace {

struct Stopped {
  std::string output;
  std::string failure;
  int status = 0;
  std::string written;
};

std::string saidAside;

// Three settings of a file with a line that is none and a character that there isn't.
Stopped importThree(zp::HostCalls const & met)
{
  TempFolder const folder;
  std::string wide = "\xFF\xFE";
  for (char const c : std::string_view("Windows Registry Editor Version 5.00\n[HKEY_CURRENT_USER\\Software\\Zephlow\\a\\S]\n"
                                       "\"k\"=\"~\"\nnone\n\"l\"=\"2\"\n\"m\"=\"3\"\n"))
    wide += c == '~' ? "\x2D\x4E"s : std::string{c, '\0'};
  folder.Write("s.reg", wide);
  SettingsOptions options;
  options.application = "a";
  options.company = "Zephlow";
  options.profile = (folder.Path() / "a.ini").string();
  zp::HostCalls const kept = std::exchange(zp::GetHostCalls(), met);
  saidAside.clear();
  Teller const former = SetTeller([](std::string_view line) { saidAside += std::string(line) + '\n'; });
  testing::internal::CaptureStdout();
  Stopped stopped;
  try {
    ImportSettings(options, (folder.Path() / "s.reg").string());
  } catch (Failure const & failure) {
    stopped = {{}, failure.what(), failure.GetStatus(), {}};
  }
  FlushOutput();
  SetTeller(former);
  zp::GetHostCalls() = kept;
  std::string const place = folder.Path().string() + '/';
  stopped.output = saidAside + testing::internal::GetCapturedStdout();
  for (std::string * const text : {&stopped.output, &stopped.failure})
    for (size_t at; (at = text->find(place)) != std::string::npos;) text->erase(at, place.size());
  stopped.written = folder.Read("a.ini") + (folder.Has("a.ini.zp-new") ? "and the new file" : "");
  return stopped;
}

constexpr char const * oneTaken =
    "s.reg: 1 character that Windows-1252 lacks became \"?\"\ns.reg: 1 setting taken, 0 removed, 1 refused, 1 damaged line, 0 of "
    "other keys than HKEY_CURRENT_USER\\Software\\Zephlow\\a\n";

}  // namespace

// The lock comes when the first setting has been taken, and stays: both the change and the look for its cause wait.
TEST(SettingsImport, StopsWhereTheFolderStaysLocked)
{
  static zp::HostCalls const kept = zp::GetHostCalls();
  static LONGLONG now = 0;
  static int waits = 0;
  static int locks = 0;
  zp::HostCalls met = kept;
  met.SteadyClock = [] { return now; };
  met.Pause = [](int) { now += 20'000'000'000, ++waits; };
  met.Lock = [](int file, zp::HostLock kind) {
    if (++locks == 1) return kept.Lock(file, kind);
    errno = EWOULDBLOCK;
    return -1;
  };
  Stopped const stopped = importThree(met);
  EXPECT_EQ(stopped.failure,
            "s.reg: \"l\" in the section \"S\" was refused: the new file can't be written beside it: another program keeps its "
            "folder locked; try again when that has ended; nothing behind it was tried");
  EXPECT_EQ(stopped.output, oneTaken);
  EXPECT_EQ(stopped.written, "[S]\nk=?\n");
  EXPECT_EQ(waits, 2);
}

TEST(SettingsImport, EndsAChangeThatASignalMeets)
{
  static zp::HostCalls const kept = zp::GetHostCalls();
  zp::HostCalls met = kept;
  met.Rename = [](char const * from, char const * to) {
    std::raise(SIGHUP);
    return kept.Rename(from, to);
  };
  Stopped const stopped = importThree(met);
  InterruptGuard::Forget([](int signal) { EXPECT_EQ(signal, SIGHUP); });
  EXPECT_EQ(stopped.failure, "s.reg: interrupted; the rest was not tried");
  EXPECT_EQ(stopped.status, exitInterrupted);
  EXPECT_EQ(stopped.output, std::string(oneTaken).replace(std::string(oneTaken).find("1 refused"), 1, "0"));
  EXPECT_EQ(stopped.written, "[S]\nk=?\n");
}
