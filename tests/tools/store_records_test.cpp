// zp store list, show, get, put and delete, the names of stores, and what is used wrongly.

#include <csignal>
#include <cstdlib>

#include "tests/tools/store_fixture.h"
#include "tools/interrupt_guard.h"
#include "tools/output_file.h"

namespace {

TEST_F(StoreTool, ShowsAComponentWithTheNamesOfItsCoefficients)
{
  m_Folder.Write("t.csv", "id,name,tc_K,antoine_A,antoine_B,sigma_eq,sigma_A\n4,Wasser \xC3\xA4,647.14,23.401,,16,1.5\n");
  Zp("import a t.csv");
  EXPECT_EQ(Zp("show a 4").out,
            "record 4, 95 bytes\n"
            "GPDataArray  4 items\n"
            "├─    1  name                         GPs    \"Wasser ä\"\n"
            "├─   12  critical temperature         GPf    647.14 K\n"
            "├─   41  surface tension              GPv    GPDippr in N/m\n"
            "│          equation = 16\n"
            "│          A = 1.5\n"
            "│          B = 0.0\n"
            "│          C = 0.0\n"
            "│          D = 0.0\n"
            "└─   97  vapour pressure              GPv    GPAvp in Pa\n"
            "           A = 23.401\n");
  EXPECT_EQ(Zp("list a").out,
            "   ID   BYTES  CLASS        TEXT\n"
            "    4      95  GPDataArray  Wasser ä\n"
            "1 record, 95 bytes\n");
}

TEST_F(StoreTool, ShowsATreeOfObjectsAndTheBytesOfWhatIsNone)
{
  std::string const object = R"({"object": {"class": "GPDataArray", "items": [
    {"class": "GPData", "data_id": 7},
    {"class": "GPa", "data_id": 31, "array": null},
    {"class": "GPa", "data_id": 32, "array": {"class": "GPObArray", "items": [
      null, {"class": "GPObList", "items": [{"class": "GPUIntArray", "values": [8, 9]}]},
      {"class": "GPv", "data_id": 900, "area": "0102"}]}},
    {"class": "GPxy", "data_id": 33, "x": 1.5, "y": "inf"},
    {"class": "GPw", "data_id": 10, "value": -1},
    {"class": "GPbip", "data_id": 112, "second_id": 9, "area": "0000803F0000004000004040"},
    {"class": "GPs", "data_id": 40, "value": "a\"b"}]}})";
  ASSERT_EQ(Zp("put a 1 --json", object).status, 0);
  Zp("put a 2", FromHex("FF FF 01 00 05 00 \"Other\" 01 02"));
  Zp("put a 3", FromHex("FF FF 01 00 03 00 \"GPw\" 05 00"));
  EXPECT_EQ(Zp("show a 1-3").out,
            "record 1, 208 bytes\n"
            "GPDataArray  7 items\n"
            "├─    7                               GPData\n"
            "├─   31                               GPa\n"
            "│ └─null\n"
            "├─   32                               GPa\n"
            "│ └─GPObArray  3 items\n"
            "│   ├─null\n"
            "│   ├─GPObList  1 item\n"
            "│   │ └─GPUIntArray\n"
            "│   └─  900                               GPv    2 bytes\n"
            "│              000000  01 02                                            ..\n"
            "├─   33                               GPxy   (1.5, \"inf\")\n"
            "├─   10  molar mass                   GPw    -1 kg/kmol\n"
            "├─  112                               GPbip  second id 9, GPbip\n"
            "│          1 = 0.50321656\n"
            "│          2 = 1.0064331\n"
            "│          3 = 3.0\n"
            "└─   40  liquid density               GPs    \"a\\\"b\"\n"
            "record 2, 13 bytes\n"
            "Other, a class that isn't known here\n"
            "  000000  ff ff 01 00 05 00 4f 74 68 65 72 01 02           ......Other..\n"
            "record 3, 11 bytes\n"
            "GPw, unreadable: The data ends before what it should hold\n"
            "  000000  ff ff 01 00 03 00 47 50 77 05 00                 ......GPw..\n");
}

TEST_F(StoreTool, PutsGetsAndDeletesBytesAndObjects)
{
  EXPECT_EQ(Zp("put a 7", "some bytes").status, 0);
  EXPECT_EQ(Zp("get a 7").out, "some bytes");
  EXPECT_EQ(Zp("show a 7").out,
            "record 7, 10 bytes\nraw bytes\n"
            "  000000  73 6f 6d 65 20 62 79 74 65 73                    some bytes\n");
  EXPECT_EQ(Zp("put a 010 --json", R"({"object": {"class": "GPw", "data_id": 5, "value": -1}})").status, 0);
  EXPECT_EQ(Load()[10], FromHex("FF FF 01 00 03 00 \"GPw\" 05 00 FF FF"));
  EXPECT_EQ(Zp("delete a 7 9").err, "zp: a.SI: there is no record 9; nothing was deleted, see zp store list\n");
  EXPECT_EQ(Zp("delete a 7").status, 0);
  EXPECT_EQ(Load().size(), 1u);
  EXPECT_EQ(Zp("put a 8", "").err, "zp: standard input: has 0 bytes, and a record has 1 to 65535\n");
  EXPECT_EQ(Zp("put a 8", std::string(65536, 'x')).status, 1);
}

TEST_F(StoreTool, FindsTheOtherFileByItsExtension)
{
  Store({{1, "x"}});
  std::filesystem::rename(m_Folder.Path() / "a.SI", m_Folder.Path() / "b.ei");
  std::filesystem::rename(m_Folder.Path() / "a.SR", m_Folder.Path() / "b.er");
  for (char const * const name : {"b", "b.ei", "b.er"}) EXPECT_EQ(Zp(std::string("get ") + name + " 1").out, "x") << name;
  Store({{1, "y"}}, "b");
  EXPECT_EQ(Zp("get b 1").err, "zp: b: is the stem of several stores (b.SI, b.ei); name one of their files\n");
  std::filesystem::rename(m_Folder.Path() / "b.er", m_Folder.Path() / "records");
  EXPECT_EQ(Zp("get b.ei 1 --record records").out, "x");
}

struct Misuse {
  char const * arguments;
  int status;
  char const * error;
};

constexpr Misuse misuses[] = {
    {"", 2, "zp: A subcommand is required; see zp store --help\n"},
    {"list", 2, "zp: STORE is required; see zp store list --help\n"},
    {"show a", 2, "zp: IDS is required; see zp store show --help\n"},
    {"get a 40000", 2, "zp: ID: \"40000\" is no whole number from 0 to 32767; see zp store get --help\n"},
    {"put a 0x8", 2, "zp: ID: \"0x8\" is no whole number from 0 to 32767; see zp store put --help\n"},
    {"eval a +1 x 1", 2, "zp: ID: \"+1\" is no whole number from 0 to 32767; see zp store eval --help\n"},
    {"show a 1,40000", 2,
     "zp: IDS: \"40000\" is no id from 0 to 32767, nor a range of them such as 1-5; see zp store show --help\n"},
    {"delete a 5-", 2, "zp: IDS: \"5-\" is no id from 0 to 32767, nor a range of them such as 1-5; see zp store delete --help\n"},
    {"delete a 5-4", 2, "zp: IDS: \"5-4\" is a range that ends before it begins; see zp store delete --help\n"},
    {"recover a --to ''", 2, "zp: --to: a file must be named; see zp store recover --help\n"},
    {"list a b --record c", 2, "zp: --record: belongs to one store, and several are named\n"},
    {"import /sys/a plain.csv", 1, "zp: /sys/a.SR: the record file can't be created: permission denied; check the folder\n"},
    {"import none/a plain.csv", 1, "zp: none/a.SR: the record file can't be created: there is no such folder; check the name\n"},
    {"list a", 1, "zp: a.SR: there is no such record file; check the name\n"},
    {"list none/a", 1, "zp: none/a.SR: there is no such record file; check the name\n"},
    {"import a none.csv", 1, "zp: none.csv: can't be opened: No such file or directory; check the name\n"},
    {"import a .", 1, "zp: .: is a folder; name a file\n"},
    {"get b 1", 1, "zp: b.SR: there is no such record file beside b.SI; bring it back or move the index file away\n"},
    {"get c 1", 1, "zp: c.SI: there is no such index file beside c.SR; make a new one with zp store recover\n"},
    {"list plain.txt", 2, "zp: plain.txt: has no extension of a store's file; name its record file with --record\n"},
};

TEST_F(StoreTool, TellsWhatIsUsedWronglyInOneLine)
{
  m_Folder.Write("b.SI", "");
  m_Folder.Write("c.SR", "");
  m_Folder.Write("plain.txt", "");
  m_Folder.Write("plain.csv", "id,name\n1,x\n");
  for (Misuse const & misuse : misuses) {
    ProgramRun const run = Zp(misuse.arguments);
    EXPECT_EQ(run.status, misuse.status) << misuse.arguments;
    EXPECT_EQ(run.err, misuse.error);
    EXPECT_EQ(run.out, "");
  }
  std::string const most(zp::maxRecordLength, 'x');
  Store({{1, most}, {2, most}, {3, most}});
  for (char const * const arguments : {"get a 1 /dev/full", "export a /dev/full --json"})
    EXPECT_EQ(Zp(arguments).err, "zp: /dev/full: can't be written: No space left on device\n");
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST_F(StoreTool, TakesOddNames)
{
  for (std::string const name : {"a\\b", "a\\\\b.x", "x\ny", "\xC3\xA9 \xE6\x97\xA5", "C:z", "\"", "a\\n.SI"}) {
    std::string const quoted = "'" + name + "'";
    EXPECT_EQ(Zp("put " + quoted + " 7", name).err, "");
    EXPECT_EQ(Zp("put " + quoted + " 8", "more").err, "");
    EXPECT_EQ(Zp("delete " + quoted + " 8").err, "");
    EXPECT_EQ(Zp("compact " + quoted).err, "");
    EXPECT_EQ(Zp("get " + quoted + " 7").out, name);
  }
  EXPECT_TRUE(m_Folder.Has("a\\b.SR"));
  EXPECT_FALSE(m_Folder.Has("a"));
}

TEST_F(StoreTool, RangesOfIdsMeanTheRecordsThatThereAre)
{
  Store({{1, "a"}, {3, "b"}, {5, "c"}, {9, "d"}, {11, "e"}});
  EXPECT_EQ(Zp("show a 9,1-3 3 --json").out,
            "[\n{\n  \"id\": 1,\n  \"hex\": \"61\"\n}\n,\n{\n  \"id\": 3,\n  \"hex\": \"62\"\n}\n"
            ",\n{\n  \"id\": 9,\n  \"hex\": \"64\"\n}\n]\n");
  EXPECT_EQ(Zp("delete a 1-5,10").err, "zp: a.SI: there is no record 10; nothing was deleted, see zp store list\n");
  EXPECT_EQ(Zp("delete a 1-5,6-8").err, "zp: a.SI: there is no record from 6 to 8; nothing was deleted, see zp store list\n");
  EXPECT_EQ(Load().size(), 5U);
  EXPECT_EQ(Zp("delete a 1-5,9").status, 0);
  EXPECT_EQ(Load(), (Records{{11, "e"}}));
}

TEST_F(StoreTool, ClassesAreNamedByNamesAlone)
{
  std::string const head("\xFF\xFF\1\0\3\0", 6);
  Store({{1, head + "A_1"}, {2, head + "a:Z"}, {3, head + "A b"}, {4, head + "A-b"}});
  std::string const list = Zp("list a").out;
  for (char const * const name : {"A_1", "a:Z"}) EXPECT_NE(list.find(name), std::string::npos) << list;
  for (char const * const name : {"A b", "A-b"}) EXPECT_EQ(list.find(name), std::string::npos) << list;
}

TEST_F(StoreTool, AnEndBySignalLeavesTheFormerFileAlone)
{
  m_Folder.Write("out", "former");
  auto const write = [&](int signal) {
    OutputFile first((m_Folder.Path() / "out").string());
    OutputFile second((m_Folder.Path() / "new").string());
    std::raise(signal);
  };
  auto const end = [&](int signal) {
    std::signal(signal, SIG_DFL);  // a parent may have it ignored
    write(signal);
  };
  auto const endLater = [&](int signal, void (*former)(int)) {
    std::signal(signal, former);
    {
      InterruptGuard const guard;
      write(signal);
    }
    if (InterruptGuard::GetSignal() != (former == SIG_IGN ? 0 : signal)) std::_Exit(exitWanting);
    write(signal);
    std::_Exit(exitDone);
  };
  for (int const signal : endingSignals) {
    EXPECT_EXIT(end(signal), testing::KilledBySignal(signal), "");
    EXPECT_EXIT(endLater(signal, SIG_DFL), testing::KilledBySignal(signal), "");
    EXPECT_EXIT(endLater(signal, SIG_IGN), testing::ExitedWithCode(exitDone), "");
  }
  EXPECT_EQ(m_Folder.Read("out"), "former");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(m_Folder.Path()), {}), 1);
}

}  // namespace
