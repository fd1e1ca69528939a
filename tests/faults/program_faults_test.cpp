// The commands of zp with every host call and every allocation failing, once and for good. A run takes an even sample of the
// places; ZP_FAULTS=all takes every one.

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <iterator>
#include <sstream>

#include "tests/faults/AllocationFaults.h"
#include "tests/faults/FaultPlaces.h"
#include "tests/faults/ProgramInside.h"
#include "tests/faults/recorded_session.h"
#include "tests/support/TempFolder.h"

namespace {

constexpr int sampled = 8;

// "@" is the folder. The store a has the records 1, 3 and 4 and a free block; b has lost its index.
constexpr char const * commands[] = {
    "store import @/n @/in.csv",
    "store import @/a @/in.csv",
    "store import @/a @/in.json",
    "store put @/n 5 @/raw",
    "store put @/a 9 @/raw",
    "store put @/a 3 @/raw",
    "store put @/a 3 @/same",
    "store delete @/a 1 4",
    "store compact @/a",
    "store recover @/a --to @/n",
    "store recover @/b --to @/n --leave-suspect",
    "store recover @/b --list",
    "store check @/a",
    "store list @/a",
    "store get @/a 3 @/out",
    "store show @/a 3",
    "store export @/a @/out",
    "store export @/a --json @/out",
    "store map @/a --svg @/out",
    "dxf @/in.wmf @/out --stats",
    "dxf @/in.wmf @/new.dxf --svg @/out",
    "text numbers @/lines.txt",
    "settings set Misc Key other -p @/p.ini",
    "settings import @/in.reg -p @/p.ini",
    "settings export @/out -p @/p.ini",
    "view @/lines.txt --html @/out",
};

using Files = std::map<std::string, std::string>;

bool isDigit(char c)
{
  return c >= '0' && c <= '9';
}

struct Outcome {
  int status;
  std::string out;
  std::string err;
  Files files;
};

// Nothing waits: a pause lets the clock go on, and what is synced is there.
class QuickHost {
 public:
  QuickHost() : m_Kept(zp::GetHostCalls())
  {
    static LONGLONG now = 0;
    zp::GetHostCalls().SteadyClock = [] { return now; };
    zp::GetHostCalls().Pause = [](int milliseconds) { now += milliseconds * 1'000'000LL; };
    zp::GetHostCalls().Sync = [](int) { return 0; };
  }
  ~QuickHost() { zp::GetHostCalls() = m_Kept; }
  QuickHost(QuickHost const &) = delete;
  QuickHost & operator=(QuickHost const &) = delete;

 private:
  zp::HostCalls m_Kept;
};

class ProgramFaults : public testing::TestWithParam<char const *> {
 protected:
  void SetUp() override
  {
    setenv("TMPDIR", m_Folder.Path().c_str(), 1);
    MakeSample();
    m_Before = ReadAll();
    for (int i = 0; i < 2; ++i) m_Done = Run([] { return 0; });  // caches fill
    ASSERT_LE(m_Done.status, 1) << m_Done.err;
  }

  void TearDown() override { setenv("TMPDIR", m_Folder.Path().parent_path().c_str(), 1); }

  void MakeSample()
  {
    m_Folder.Write("in.csv", "id,name,mw_kg_per_kmol\n1,Water,18\n2,Argon,39.9\n3,Neon,20.2\n4,Radon,222\n");
    Zp("store import @/a @/in.csv");
    Zp("store delete @/a 2");
    m_Folder.Write("b.SR", m_Folder.Read("a.SR"));
    m_Folder.Write("in.csv", "id,name,mw_kg_per_kmol\n3,A much longer name of neon,20.2\n6,Helium,4\n");
    m_Folder.Write("in.json", R"({"format":"zp-store-records","version":1,"records":[{"id":3,"hex":"41"},{"id":7,"hex":"42"}]})");
    m_Folder.Write("raw", "bytes of a record");
    m_Folder.Write("same", std::string(LoadRecords(Path(), "a")[3].size(), 's'));
    m_Folder.Write("lines.txt", "1 2\n3 4\n");
    m_Folder.Write("p.ini", "[Misc]\nKey=value\n");
    m_Folder.Write("in.reg", "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Acme\\Zephlow\\Misc]\r\n\"Other\"=\"text\"\r\n");
    m_Folder.Write("out", "what was there");
    std::filesystem::copy_file(ZP_SOURCE_DIR "/fuzz/seeds/dxf_fuzz/ink_text.wmf", m_Folder.Path() / "in.wmf");
  }

  std::string Path() const { return m_Folder.Path().string(); }

  std::vector<std::string> Words(std::string line) const
  {
    for (size_t at; (at = line.find('@')) != std::string::npos;) line.replace(at, 1, Path());
    std::istringstream words(line);
    return {std::istream_iterator<std::string>(words), {}};
  }

  int Zp(std::string const & line) const { return RunSilently(Words(line)); }

  Files ReadAll() const
  {
    Files files;
    for (auto const & entry : std::filesystem::directory_iterator(m_Folder.Path())) {
      std::string const name = entry.path().filename().string();
      std::string & bytes = files[name] = m_Folder.Read(name);
      if (bytes.starts_with("<?xml")) std::erase_if(bytes, isDigit);  // drawings number their parts through a process
    }
    return files;
  }

  void Restore() const
  {
    Files const now = ReadAll();
    for (auto const & [name, bytes] : now) {
      if (!m_Before.contains(name)) std::filesystem::remove(m_Folder.Path() / name);
    }
    for (auto const & [name, bytes] : m_Before) {
      if (!now.contains(name) || now.at(name) != bytes) m_Folder.Write(name, bytes);
    }
  }

  template <class Arm>
  Outcome Run(Arm arm)
  {
    Restore();
    QuickHost const host;
    Outcome outcome;
    outcome.status = RunSilently(Words(GetParam()), arm);
    outcome.out = Silence::Written(1);
    outcome.err = Silence::Written(2);
    outcome.files = ReadAll();
    return outcome;
  }

  // Whether the files of one store, or a file by itself, are all as before or all as after success.
  bool IsWhole(Files const & now) const
  {
    auto const isAs = [&](Files const & wanted, std::string const & name) {
      auto const one = now.find(name);
      auto const other = wanted.find(name);
      return one == now.end() || other == wanted.end() ? one == now.end() && other == wanted.end() : one->second == other->second;
    };
    Files all = m_Before;
    all.insert(m_Done.files.begin(), m_Done.files.end());
    return std::ranges::all_of(all, [&](auto const & file) {
      std::string const & name = file.first;
      std::string const other =
          name.size() > 2 && name[1] == '.' && name[2] == 'S' ? name.substr(0, 3) + "RI"[name[3] == 'R'] : name;
      return (isAs(m_Before, name) && isAs(m_Before, other)) || (isAs(m_Done.files, name) && isAs(m_Done.files, other));
    });
  }

  // The store is what the commands that were named make of it: no record is gone that wasn't to be changed.
  void ExpectRepaired(Outcome const & outcome) const
  {
    bool const isExchange = outcome.files.contains(exchangeMark);
    bool const isTorn = outcome.err.find("zp store check") != std::string::npos;
    EXPECT_TRUE(isExchange || isTorn) << "nothing names the way out of a half change";
    std::string const stem = isExchange ? "a" : "r";
    Zp(isExchange ? "store compact @/a" : "store recover @/a --to @/r");
    Records const now = LoadRecords(Path(), stem);
    Restore();
    Records const before = LoadRecords(Path(), "a");
    Records done = before;
    if (m_Done.files.contains("a.SR")) {
      for (char const * const name : {"a.SI", "a.SR"}) m_Folder.Write(name, m_Done.files.at(name));
      done = LoadRecords(Path(), "a");
    }
    for (auto const & [id, bytes] : before) {
      auto const found = now.find(id);
      bool const isChanged = !done.contains(id) || done.at(id) != bytes;
      if (isExchange || !isChanged) {
        EXPECT_TRUE(found != now.end() && (found->second == bytes || (isChanged && found->second == done.at(id))))
            << "record " << id << " is lost";
      }
    }
  }

  // The files without those that are left over, which must be told. Without memory nothing is thrown away; the next command that
  // changes the store does it, as the next write of a settings file does.
  Files WithoutLeftovers(Outcome const & now, bool isPoor) const
  {
    auto const isTold = [&](std::string const & what) { return now.err.find(what) != std::string::npos; };
    bool const isNewLeft = isTold("left behind") || isTold("can't be undone");
    Files rest = now.files;
    for (auto const & [name, bytes] : now.files) {
      auto const done = m_Done.files.find(name);
      bool const isDone = done != m_Done.files.end() && (done->second == bytes || !isNewLeft);
      if (m_Before.contains(name) || isDone) continue;
      rest.erase(name);
      bool const isOfExchange = (isPoor || isTold("zp store compact")) && name.find(".compact-") != std::string::npos;
      EXPECT_TRUE(isOfExchange || isTold(name) || (isPoor && isNewLeft) || name.ends_with(".zp-new")) << name << " is left";
    }
    return rest;
  }

  void Judge(Outcome const & now, std::string const & where, bool isPoor = false)
  {
    ++g_nTries;
    SCOPED_TRACE(where + ": status " + std::to_string(now.status) + ", " + now.err);
    if (now.status == m_Done.status && now.files == m_Done.files && now.out == m_Done.out) return;
    Files const rest = WithoutLeftovers(now, isPoor);
    if (now.status == m_Done.status && rest == m_Done.files && now.out == m_Done.out) return;
    EXPECT_EQ(now.status, 1);
    EXPECT_TRUE(("\n" + now.err).find("\nzp: ") != std::string::npos && now.err.ends_with("\n"));
    EXPECT_TRUE(now.err.find(Path() + '/') != std::string::npos || now.err.find("memory ran out") != std::string::npos);
    if (IsWhole(rest)) return;
    if (now.err.find("the store is as it was") != std::string::npos)
      ExpectAsBefore();
    else
      ExpectRepaired(now);
  }

  // Bytes of free blocks are all that may be others.
  void ExpectAsBefore()
  {
    EXPECT_EQ(Zp("store check @/a"), 0);
    Records const now = LoadRecords(Path(), "a");
    Restore();
    EXPECT_EQ(now, LoadRecords(Path(), "a"));
  }

  static void TearDownTestSuite() { std::printf("%ld tries\n", g_nTries); }

  TempFolder m_Folder;
  Files m_Before;
  Outcome m_Done;
  static inline long g_nTries = 0;
};

TEST_P(ProgramFaults, OfTheHostAreToldAndLeaveNothingHalfDone)
{
  int count = 0;
  {
    Restore();
    QuickHost const host;
    HostFaults const none(0, HostFault());
    Zp(GetParam());
    count = none.GetCount();
  }
  for (HostFault const & fault : hostFaults) {
    for (int const n : PlacesOf(count, sampled)) Judge(Run([&] { return HostFaults(n, fault); }), Told(n, fault));
  }
}

// The JSON library takes memory to give memory back: where that is refused it ends the program.
TEST_P(ProgramFaults, OfMemoryEndInOneSentence)
{
  if (std::string_view(GetParam()).find("json") != std::string_view::npos) GTEST_SKIP() << "ends abruptly";
  Run([] { return AllocationFaults(0, false); });
  for (int const n : PlacesOf(static_cast<int>(AllocationFaults::GetCount()), sampled)) {
    for (bool const forGood : {false, true}) {
      auto const where = "allocation " + std::to_string(n) + (forGood ? " for good" : "");
      Judge(Run([&] { return AllocationFaults(n, forGood); }), where, forGood);
    }
  }
}

// An append that came short, and whose first cut fails too.
TEST(ProgramFault, OfAnAppendAndOfItsCutIsUndone)
{
  TempFolder const folder;
  std::string const store = (folder.Path() / "a").string();
  folder.Write("raw", "bytes of a record");
  ASSERT_EQ(RunSilently({"store", "put", store, "1", folder.Path() / "raw"}), 0);
  Files const before = {{"a.SI", folder.Read("a.SI")}, {"a.SR", folder.Read("a.SR")}};
  QuickHost const host;
  static zp::HostCalls real;
  static int failures;
  real = zp::GetHostCalls();
  failures = 2;
  zp::GetHostCalls().WriteAt = [](int file, void const * buffer, size_t count, LONGLONG position) {
    if (failures < 2) return real.WriteAt(file, buffer, count, position);
    real.WriteAt(file, buffer, count / 2, position);
    --failures;
    errno = EIO;
    return -1L;
  };
  zp::GetHostCalls().SetLength = [](int file, LONGLONG length) {
    if (failures != 1) return real.SetLength(file, length);
    --failures;
    errno = EIO;
    return -1;
  };
  EXPECT_EQ(RunSilently({"store", "put", store, "2", folder.Path() / "raw"}), 1);
  EXPECT_EQ(failures, 0);
  EXPECT_TRUE(Silence::Written(2).ends_with("; the store is as it was\n")) << Silence::Written(2);
  EXPECT_EQ((Files{{"a.SI", folder.Read("a.SI")}, {"a.SR", folder.Read("a.SR")}}), before);
}

std::string nameOf(testing::TestParamInfo<char const *> const & info)
{
  std::string name = std::to_string(info.index) + info.param;
  std::erase_if(name, [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; });
  return name;
}

INSTANTIATE_TEST_SUITE_P(Commands, ProgramFaults, testing::ValuesIn(commands), nameOf);

}  // namespace
