// Several programs at one store: who is let in, and that nothing that was said to be stored is gone.

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <functional>
#include <thread>

#include <zpbase/platform/host_calls.h>

#include "tests/tools/store_fixture.h"
#include "tools/command_line.h"

namespace {

constexpr char const * recordFileInUse =
    "zp: a.SR: the record file is in use by another program; try again when that has ended\n";
constexpr char const * indexFileInUse = "zp: a.SI: the index file is in use by another program; try again when that has ended\n";

TEST_F(StoreTool, SaysWhenAnotherProgramHoldsTheStore)
{
  Store({{1, "x"}});
  GPDataFile holder(m_Folder.Name("a.SI"), m_Folder.Name("a.SR"), CFile::modeReadWrite | CFile::shareDenyWrite, nullptr);
  char byte;
  holder.LoadRec(&byte, 1, 1);
  for (char const * const command : {"list a", "put a 1", "check a", "compact a", "recover a"}) {
    ProgramRun const run = Zp(command, "z");
    EXPECT_EQ(run.status, 1) << command;
    EXPECT_EQ(run.err, recordFileInUse) << command;
  }
}

// So it is between the reading of the index and the first change of another program.
TEST_F(StoreTool, ChangesNothingWhileAnotherProgramHoldsTheIndexFile)
{
  StoreFour();
  std::string const before = m_Folder.Read("a.SI") + m_Folder.Read("a.SR");
  CFile holder;
  ASSERT_TRUE(holder.Open(m_Folder.Name("a.SI"), CFile::modeRead | CFile::shareExclusive));
  for (char const * const command : {"put a 7", "delete a 1", "compact a"}) {
    ProgramRun const run = Zp(command, "z");
    EXPECT_EQ(run.status, 1) << command;
    EXPECT_EQ(run.err, indexFileInUse) << command;
  }
  EXPECT_EQ(Zp("get a 2").out, "cde");
  EXPECT_EQ(m_Folder.Read("a.SI") + m_Folder.Read("a.SR"), before);
}

TEST_F(StoreTool, ReadersShareAStore)
{
  Store({{1, "x"}});
  CFile reader;
  ASSERT_TRUE(reader.Open(m_Folder.Name("a.SR"), CFile::modeRead | CFile::shareDenyWrite));
  for (char const * const command : {"list a", "check a", "map a"}) EXPECT_EQ(Zp(command).status, 0) << command;
  EXPECT_EQ(Zp("put a 1", "z").err, recordFileInUse);
}

// Of programs that begin together one at least comes through, and what one says that it stored is there.
TEST_F(StoreTool, LosesNothingOfProgramsThatStoreAtOnce)
{
  constexpr int rounds = 6;
  constexpr int crowd = 6;
  constexpr int firstNew = 20001;
  Records old;
  for (int id = 1; id < firstNew; ++id) old[id] = "abcd";
  Store(old);
  for (int round = 0; round < rounds; ++round) {
    std::array<int, crowd> statuses = {};
    std::array<std::thread, crowd> programs;
    for (int i = 0; i < crowd; ++i) {
      auto const at = static_cast<size_t>(i);
      std::string const id = std::to_string(firstNew + round * crowd + i);
      programs[at] = std::thread([&statuses, at, id, this] { statuses[at] = Zp("put a " + id, "new " + id).status; });
    }
    for (std::thread & program : programs) program.join();
    Records const now = Load();
    for (int i = 0; i < crowd; ++i) {
      int const id = firstNew + round * crowd + i;
      auto const found = now.find(id);
      std::string const bytes = found != now.end() ? found->second : "";
      EXPECT_EQ(bytes, statuses[static_cast<size_t>(i)] == 0 ? "new " + std::to_string(id) : "") << "record " << id;
    }
    EXPECT_NE(std::count(statuses.begin(), statuses.end(), 0), 0);
  }
  EXPECT_EQ(Zp("check a").status, 0);
}

TEST_F(StoreTool, LosesNothingOfTwoProgramsThatMakeAStore)
{
  for (int round = 0; round < 10; ++round) {
    std::string const stem = "s" + std::to_string(round);
    int other = 0;
    std::thread program([&] { other = Zp("put " + stem + " 2", "b").status; });
    int const one = Zp("put " + stem + " 1", "a").status;
    program.join();
    Records stored;
    if (one == 0) stored[1] = "a";
    if (other == 0) stored[2] = "b";
    EXPECT_FALSE(stored.empty());
    EXPECT_EQ(Load(stem), stored);
  }
}

// Behind one close of a file lets another program do its work, as soon as it stands at that close.
class Rival {
 public:
  Rival(int place, std::function<void()> work)
  {
    s_nLeft = place;
    s_Work = std::move(work);
    zp::GetHostCalls().Close = [](int file) {
      int const result = s_Kept.Close(file);
      if (--s_nLeft == 0) s_Work();
      return result;
    };
  }
  ~Rival() { zp::GetHostCalls() = s_Kept; }
  Rival(Rival const &) = delete;
  Rival & operator=(Rival const &) = delete;
  bool HasCome() const { return s_nLeft <= 0; }

 private:
  static inline zp::HostCalls const s_Kept = zp::GetHostCalls();
  static inline int s_nLeft;
  static inline std::function<void()> s_Work;
};

int runInside(std::vector<char const *> const & words)
{
  return RunCommandLine(static_cast<int>(words.size()), words.data());
}

TEST_F(StoreTool, TakesBackNothingOfAProgramThatCameBetween)
{
  m_Folder.Write("one", "one");
  std::string const stem = (m_Folder.Path() / "a").string();
  std::string const one = (m_Folder.Path() / "one").string();
  std::string const other = (m_Folder.Path() / "other").string();
  for (std::string const bytes : {"two", "longer"}) {
    m_Folder.Write("other", bytes);
    bool hasCome = true;
    for (int place = 1; hasCome; ++place) {
      Store({{1, "old"}, {2, "beside"}});
      int first = 1;
      int second = 1;
      {
        Rival const rival(place, [&] { second = runInside({"zp", "store", "put", stem.c_str(), "1", other.c_str()}); });
        first = runInside({"zp", "store", "put", stem.c_str(), "1", one.c_str()});
        hasCome = rival.HasCome();
      }
      std::string const now = Load()[1];
      EXPECT_TRUE(now == bytes ? second == 0 : now == "one" && first == 0) << place << ": " << first << second << now;
    }
  }
}

TEST_F(StoreTool, LosesNothingOfAPutBesideACompaction)
{
  for (int round = 0; round < 8; ++round) {
    StoreFour();
    int compacted = 0;
    std::thread program([&] { compacted = Zp("compact a").status; });
    int const stored = Zp("put a 9", "new").status;
    program.join();
    Records expected = {{1, "ab"}, {2, "cde"}, {3, "fgh"}};
    if (stored == 0) expected[9] = "new";
    EXPECT_EQ(Load(), expected) << stored << compacted;
    EXPECT_EQ(Zp("check a").status, 0);
    std::filesystem::remove(m_Folder.Path() / "a.SI");
    std::filesystem::remove(m_Folder.Path() / "a.SR");
  }
}

// One that has read the index before, and comes in as soon as the new record file has its name.
TEST_F(StoreTool, LosesNothingOfAStoreThatIsOpenBesideACompaction)
{
  StoreFour();
  static zp::HostCalls const kept = zp::GetHostCalls();
  static std::unique_ptr<GPDataFile> other;
  other = std::make_unique<GPDataFile>(m_Folder.Name("a.SI"), m_Folder.Name("a.SR"), CFile::modeReadWrite, nullptr);
  zp::GetHostCalls().Rename = [](char const * from, char const * to) {
    int const result = kept.Rename(from, to);
    if (std::string_view(from).ends_with("a.SR.compact-new")) {
      EXPECT_EQ(other->StoreRec("new", 3, 9), 1);
      other.reset();
    }
    return result;
  };
  EXPECT_EQ(runInside({"zp", "store", "compact", (m_Folder.Path() / "a").c_str()}), 0);
  zp::GetHostCalls() = kept;
  EXPECT_EQ(other, nullptr);
  EXPECT_EQ(Load(), (Records{{1, "ab"}, {2, "cde"}, {3, "fgh"}, {9, "new"}}));
  EXPECT_EQ(Zp("check a").status, 0);
}

TEST_F(StoreTool, WritesFinishAnInterruptedExchangeFirst)
{
  StoreFour();
  std::string const old[] = {m_Folder.Read("a.SR"), m_Folder.Read("a.SI")};
  Zp("compact a");
  for (char const * const name : {"a.SR", "a.SI"})
    std::filesystem::rename(m_Folder.Path() / name, m_Folder.Path() / (std::string(name) + ".compact-new"));
  m_Folder.Write("a.SR.compact-old", old[0]);  // between its two names
  m_Folder.Write("a.SI", old[1]);
  m_Folder.Write("a.SR.compact-swap", "");
  EXPECT_EQ(Zp("get a 1").err,
            "zp: a.SR: the exchange of this store's files is under way or was interrupted; finish it with zp store compact\n");
  EXPECT_EQ(Zp("put a 9", "x").err, "zp: a.SR: an interrupted exchange of the store's files was finished\n");
  EXPECT_EQ(Load(), (Records{{1, "ab"}, {2, "cde"}, {3, "fgh"}, {9, "x"}}));
}

TEST_F(StoreTool, AKillWhileTheMarkIsWrittenLeavesNothingForEver)
{
  StoreFour();
  std::string const stem = (m_Folder.Path() / "a").string();
  pid_t const child = fork();
  if (child == 0) {
    static zp::HostCalls const kept = zp::GetHostCalls();
    zp::GetHostCalls().Rename = [](char const * from, char const * to) {
      if (std::string_view(to).ends_with("-swap")) _exit(7);
      return kept.Rename(from, to);
    };
    _exit(runInside({"zp", "store", "compact", stem.c_str()}));
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_EQ(WEXITSTATUS(status), 7);
  EXPECT_EQ(Zp("compact a").status, 0);
  auto const files = std::filesystem::directory_iterator(m_Folder.Path());
  EXPECT_EQ(std::distance(begin(files), end(files)), 2);
}

TEST_F(StoreTool, AnEmptyIndexFileForgetsNoRecord)
{
  Store({{1, "x"}});
  m_Folder.Write("a.SI", "");
  EXPECT_EQ(Zp("get a 1").out, "x");
  EXPECT_EQ(Zp("put a 2", "y").err, "zp: a.SI: the index file is empty, but a.SR isn't; make a new one with zp store recover\n");
  EXPECT_EQ(m_Folder.Read("a.SI"), "");
}

TEST_F(StoreTool, AStoreOfNothingLeavesNoFiles)
{
  EXPECT_EQ(Zp("import a -", "id\n").out, "0 records stored in a.SR: 0 new, 0 replaced\n");
  m_Folder.Write("e.SI", "");
  m_Folder.Write("e.SR", "");
  EXPECT_TRUE(Zp("recover e --to a").out.ends_with("0 kept, 0 suspect, 0 lost\nnothing to save, nothing was written\n"));
  EXPECT_NE(Zp("recover e --to a --json").out.find("\"written_to\": \"\""), std::string::npos);
  EXPECT_FALSE(m_Folder.Has("a.SI"));
  EXPECT_FALSE(m_Folder.Has("a.SR"));
}

}  // namespace
