// zp store where something goes wrong around it: full disks, writers that were killed, holes, outputs and inputs that are no
// files, names and texts that steer a terminal.

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "tests/tools/store_fixture.h"
#include "tools/command_line.h"

namespace {

using Files = std::map<std::string, std::string>;

Files filesOf(TempFolder const & folder)
{
  Files files;
  for (auto const & entry : std::filesystem::directory_iterator(folder.Path())) {
    if (entry.is_regular_file()) files[entry.path().filename()] = folder.Read(entry.path().filename().string());
  }
  return files;
}

// A small file system of its own over the test's folder.
class SmallDisk {
 public:
  explicit SmallDisk(TempFolder const & folder) : m_strFolder(folder.Path().string())
  {
    m_bMounted = std::system(("mount -t tmpfs -o size=64k none '" + m_strFolder + "' 2>/dev/null").c_str()) == 0;
  }
  ~SmallDisk()
  {
    if (m_bMounted && std::system(("umount '" + m_strFolder + "'").c_str()) != 0) ADD_FAILURE() << "not unmounted";
  }
  SmallDisk(SmallDisk const &) = delete;
  SmallDisk & operator=(SmallDisk const &) = delete;
  bool IsMounted() const { return m_bMounted; }

 private:
  std::string m_strFolder;
  bool m_bMounted;
};

TEST_F(StoreTool, AFullDiskChangesNothingAndIsNamed)
{
  SmallDisk const disk(m_Folder);
  if (!disk.IsMounted()) GTEST_SKIP() << "no file system can be mounted here";
  Store({{1, std::string(6000, 'a')}, {2, std::string(30000, 'b')}});
  Store({{1, "x"}}, "s");
  Files const before = filesOf(m_Folder);
  std::string const large(30000, 'c');
  std::string const table = "id,name\n5," + large + "\n";
  std::string const why = "The disk is full while writing a.SR; the store is as it was\n";
  ProgramRun const replacing = Zp("put a 1", large);
  EXPECT_EQ(replacing.err, "zp: a.SR: record 1 of 30000 bytes can't be stored: " + why);
  EXPECT_EQ(replacing.status, 1);
  EXPECT_EQ(Zp("put a 3", large).err, "zp: a.SR: record 3 of 30000 bytes can't be stored: " + why);
  std::string small = "id,name\n";
  for (int id = 1; id <= 400; ++id) small += std::to_string(id) + ",n\n";  // whose index is what finds no room
  for (char const * const command : {"import a -", "import s -", "recover a --to b", "import c -"}) {
    ProgramRun const run = Zp(command, command[7] == 'c' ? small : table + "6," + large + "\n7," + large + "\n");
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find(": The disk is full while writing "), std::string::npos) << command << run.err;
    EXPECT_TRUE(run.err.ends_with("; the store is as it was\n")) << command << run.err;
  }
  EXPECT_EQ(filesOf(m_Folder), before);
  EXPECT_EQ(Zp("check a").status, 0);
  EXPECT_EQ(Zp("put a 3", "small").status, 0);
}

// The index is as it was before a writer was killed that had freed, moved and stored records.
TEST_F(StoreTool, AfterAKilledWriterReadersTellAndWritersRefuse)
{
  Store({{1, "one"}, {2, "two two"}, {3, "three"}});
  std::string const index = m_Folder.Read("a.SI");
  {
    GPDataFile store(m_Folder.Name("a.SI"), m_Folder.Name("a.SR"), CFile::modeReadWrite, nullptr);
    store.DeleteRec(1);
    store.StoreRec("new", 3, 9);
    store.StoreRec("longer than before", 18, 2);
  }
  m_Folder.Write("a.SI", index);
  Files const before = filesOf(m_Folder);
  ProgramRun const list = Zp("list a");
  EXPECT_EQ(list.status, 1);
  EXPECT_EQ(list.out,
            "   ID   BYTES  CLASS  TEXT\n"
            "    3       5  -\n"
            "1 record, 5 bytes\n");
  EXPECT_EQ(list.err,
            "zp: a.SR: record 1: the index has it at 0, but the block there is record 9; look with zp store check\n"
            "zp: a.SR: record 2: the index has it at 9, but the block there is free; look with zp store check\n"
            "zp: a.SR: 2 records left out\n");
  for (char const * const command : {"put a 1", "put a 20", "delete a 3", "import a -", "compact a"}) {
    ProgramRun const run = Zp(command, std::string_view(command).starts_with("import") ? "id,name\n4,x\n" : "x");
    EXPECT_EQ(run.status, 1) << command;
    EXPECT_EQ(
        run.err,
        "zp: a.SR: record 1: the index has it here, but the block is record 9; nothing was changed: see zp store check, and "
        "zp store recover --to NEW --leave-suspect for a sound copy\n");
  }
  EXPECT_EQ(filesOf(m_Folder), before);
  EXPECT_EQ(Zp("recover a --to b").status, 1);
  EXPECT_EQ(Load("b"), (Records{{2, "longer than before"}, {3, "three"}, {9, "new"}}));
}

TEST_F(StoreTool, AnIndexThatMayNotBeWrittenIsNotReplaced)
{
  StoreFour();
  namespace fs = std::filesystem;
  fs::permissions(m_Folder.Path(), fs::perms::all);
  fs::permissions(m_Folder.Path() / "a.SR", fs::perms::all);
  fs::permissions(m_Folder.Path() / "a.SI", fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
  std::string const stem = (m_Folder.Path() / "a").string();
  char const * const words[] = {"zp", "store", "compact", stem.c_str()};
  uid_t const user = geteuid();
  ASSERT_TRUE(user != 0 || seteuid(65534) == 0);
  if (std::error_code refused; !fs::exists(stem + ".SR", refused)) {
    ASSERT_EQ(seteuid(user), 0);
    GTEST_SKIP() << "only root may enter the temporary folder";
  }
  testing::internal::CaptureStderr();
  int const status = RunCommandLine(4, words);
  ASSERT_EQ(seteuid(user), 0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "zp: " + stem + ".SI: the index file can't be opened: access is denied; check its permissions\n");
  EXPECT_EQ(status, 1);
}

// As a record that found no room leaves it.
TEST_F(StoreTool, AnImportPassesByRecordsWithoutAPlace)
{
  for (std::string const id : {"2", "3"}) {
    Store({{1, "one"}, {2, "two"}});
    std::string index = m_Folder.Read("a.SI");
    m_Folder.Write("a.SI", index.replace(index.find(std::string("\x09\0\0\0\2\0", 6)), 4, 4, '\xFF'));
    m_Folder.Write("a.SR", m_Folder.Read("a.SR").substr(0, 9));
    std::string const json = R"({"format":"zp-store-records","version":1,"records":[{"id":)" + id + R"(,"hex":"41"}]})";
    ProgramRun const run = Zp("import a -", json);
    EXPECT_EQ(run.out, "1 record stored in a.SR: 1 new, 0 replaced\n") << run.err;
    EXPECT_EQ(Load(), (Records{{1, "one"}, {std::stoi(id), "A"}}));
    for (char const * const name : {"a.SI", "a.SR"}) std::filesystem::remove(m_Folder.Path() / name);
  }
}

// The first records of many are before the harm, and the index helps or not.
struct Harm {
  char const * what;
  size_t hole;   // its begin; 0 for none
  size_t cut;    // bytes off the end
  bool isStale;  // the index is one from before a compaction
  bool hasIndex;
  size_t kept;
  size_t suspect;
  size_t grown = 0;    // where two bytes were inserted; the blocks behind are beside a chain of the same step
  size_t widened = 0;  // the first byte of a capacity, which leads into the next block now
};

constexpr Harm harms[] = {
    {"hole, index", 300, 0, false, true, 16, 1},
    {"hole, no index", 300, 0, false, false, 7, 10},
    {"hole at a block, no index", 294, 0, false, false, 7, 10},
    {"cut, index", 0, 5, false, true, 19, 0},
    {"cut, no index", 0, 5, false, false, 19, 0},
    {"cut, stale index", 0, 5, true, true, 17, 0},
    {"stale index", 0, 0, true, true, 18, 0},
    {"hole, stale index", 300, 0, true, true, 7, 8},
    {"grown, index", 0, 0, false, true, 6, 14, 270},
    {"grown, no index", 0, 0, false, false, 6, 14, 270},
    {"widened, index", 0, 0, false, true, 20, 0, 0, 256},
    {"widened, no index", 0, 0, false, false, 7, 13, 0, 256},
};

TEST_F(StoreTool, RecoveryKeepsWhatIsProvedAndFindsItsStepAgain)
{
  for (Harm const & harm : harms) {
    Records records;
    for (int id = 1; id <= 20; ++id) records[id] = std::string(36, static_cast<char>('a' + id));
    Store(records);
    std::string const index = m_Folder.Read("a.SI");
    if (harm.isStale) {
      Zp("delete a 2 5");
      Zp("compact a");
      m_Folder.Write("a.SI", index);
      records.erase(2);
      records.erase(5);
    }
    std::string bytes = m_Folder.Read("a.SR");
    if (harm.hole > 0) bytes.replace(harm.hole, 128, 128, '\0');
    if (harm.grown > 0) bytes.insert(harm.grown, "xy");
    if (harm.widened > 0) bytes[harm.widened] = 50;
    m_Folder.Write("a.SR", bytes.substr(0, bytes.size() - harm.cut));
    if (!harm.hasIndex) std::filesystem::remove(m_Folder.Path() / "a.SI");
    ProgramRun const run = Zp("recover a --to b --leave-suspect --json");
    Records const kept = Load("b");
    for (auto const & [id, content] : kept) EXPECT_EQ(content, records[id]) << harm.what;
    std::string::difference_type suspect = 0;
    for (size_t at = 0; (at = run.out.find("\"suspect\"", at)) != std::string::npos; ++at) ++suspect;
    EXPECT_EQ(kept.size(), harm.kept) << harm.what << run.out;
    EXPECT_EQ(static_cast<size_t>(suspect), harm.suspect) << harm.what << run.out;
    EXPECT_EQ(Zp("check b").status, 0) << harm.what;
    for (char const * const name : {"a.SI", "a.SR", "b.SI", "b.SR"}) std::filesystem::remove(m_Folder.Path() / name);
  }
}

TEST_F(StoreTool, OutputsAndInputsThatAreNoFilesAreRefused)
{
  Store({{1, "x"}});
  std::filesystem::create_hard_link(m_Folder.Path() / "a.SR", m_Folder.Path() / "other");
  std::filesystem::create_symlink("a.SI", m_Folder.Path() / "link");
  mkfifo((m_Folder.Path() / "p.SR").c_str(), 0600);
  m_Folder.Write("p.SI", "");
  Files const before = filesOf(m_Folder);
  struct Refusal {
    char const * arguments;
    int status;
    char const * err;
  };
  constexpr Refusal refusals[] = {
      {"get a 1 a.SR", 2, "zp: a.SR: is a file of the store itself; name another file to write\n"},
      {"get a 1 other", 2, "zp: other: is a file of the store itself; name another file to write\n"},
      {"export a link", 2, "zp: link: is a file of the store itself; name another file to write\n"},
      {"map a --svg a.SI", 2, "zp: a.SI: is a file of the store itself; name another file to write\n"},
      {"list p", 1, "zp: p.SR: is no file but a folder, a pipe or a device; a store has two files\n"},
      {"put p 1", 1, "zp: p.SR: is no file but a folder, a pipe or a device; a store has two files\n"},
      {"put a 1 /dev/zero", 1, "zp: /dev/zero: has more than the 65535 bytes of a record\n"},
      {"import a /dev/zero", 1, "zp: /dev/zero: line 1: is longer than any record\n"},
  };
  for (Refusal const & refusal : refusals) {
    ProgramRun const run = Zp(refusal.arguments, "x");
    EXPECT_EQ(run.status, refusal.status) << refusal.arguments;
    EXPECT_EQ(run.err, refusal.err);
  }
  EXPECT_EQ(filesOf(m_Folder), before);
}

TEST_F(StoreTool, NothingSteersATerminal)
{
  std::string const harm = "x\x1B[2J\x7F\xC2\x90y";
  m_Folder.Write("t.csv", "id,name\n1," + harm + "\n");
  m_Folder.Write("n\x1B[31mX", "no number\n1 2\nnone\n");
  m_Folder.Write("p.ini", "[a]\nk=x\x1B[2J\x7Fy\n");
  ASSERT_EQ(Zp("import a t.csv").status, 0);
  char const * const commands[] = {"store list a",
                                   "store list a --json",
                                   "store show a 1",
                                   "store show a 1 --json",
                                   "store export a --json",
                                   "store get 'a\x1B[2J' 1",
                                   "store show a '\x1B[2J'",
                                   "store import a 'n\x7F'",
                                   "text lines 'n\x1B[31mX'",
                                   "settings list --profile p.ini",
                                   "settings list --profile p.ini --json"};
  for (char const * const command : commands) {
    ProgramRun const run = RunZp(m_Folder.Path(), command);
    std::string const all = run.out + run.err;
    EXPECT_EQ(all.find_first_of("\x1B\x7F"), std::string::npos) << command << all;
    EXPECT_EQ(all.find("\xC2\x90"), std::string::npos) << command << all;
  }
  EXPECT_EQ(Zp("export a").out, m_Folder.Read("t.csv"));  // to a file or a pipe nothing is lost
  Zp("export a a.json --json");
  Zp("import b a.json");
  EXPECT_EQ(Load("b"), Load("a"));
}

// What is closed can't take a file's number: nothing told goes into the store, and nothing printed is lost silently.
TEST_F(StoreTool, ClosedStreamsEndInAStatus)
{
  Store({{1, "x"}});
  Store({{1, "x"}, {2, "y"}}, "b");
  Patch("b.SR", 0, "\x09");
  struct Closed {
    char const * arguments;
    int status;
  };
  for (Closed const & closed : {
           Closed{"list a >&-", 1},
           Closed{"list a 2>&-", 0},
           Closed{"put a 2 - <&-", 1},
           Closed{"delete a 7 2>&-", 1},
           Closed{"delete a 7 2>/dev/full", 1},
           Closed{"put a 2 2>&- >&-", 0},
           Closed{"get a 7 <&- 2>&- >&-", 1},
           Closed{"export b out --json --skip 2>&-", 0},
           Closed{"recover a --to c >/dev/full", 1},
       }) {
    std::string const line =
        "cd '" + m_Folder.Path().string() + "' && printf y | " ZP_BINARY_DIR "/tools/zp store " + closed.arguments;
    EXPECT_EQ(WEXITSTATUS(std::system(line.c_str())), closed.status) << closed.arguments;
  }
  EXPECT_EQ(Load(), (Records{{1, "x"}, {2, "y"}}));
  EXPECT_EQ(Load("c"), Load());
  EXPECT_EQ(m_Folder.Read("out").find("zp:"), std::string::npos);
}

}  // namespace
