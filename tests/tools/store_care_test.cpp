// zp store check, recover, compact and map: damaged stores are told, saved and never made worse.

#include <filesystem>

#include "tests/tools/store_fixture.h"

namespace {

struct Damage {
  char const * file;
  size_t offset;
  char const * bytes;  // hex
  char const * fault;
};

// The index: header 14 bytes, array 17, then records of 8 bytes from 46 on with tags between, and the list.
constexpr Damage damages[] = {
    {"a.SR", 2, "05 00", "  at         0  record 1: length 5 is above the capacity 2\n"},
    {"a.SR", 2, "01 00", "  at         0  record 1: the index has 2 bytes, the block 1\n"},
    {"a.SR", 8, "09 00", "  at         8  record 2: the index has it here, but the block is record 9\n"},
    {"a.SR", 8, "02 80", "  at         8  record 2: the index has it here, but the block is free\n"},
    {"a.SR", 8, "01 00", "  at         8  record 1: lives already at 0\n"},
    {"a.SR", 26, "04 00", "  at        26  free block: the index has it here, but the block is record 4\n"},
    {"a.SR", 12, "02 00", "  at        16  record 869: its block of 768 bytes isn't in the index\n"},
    {"a.SR", 12, "FF 00",
     "  at         8  the chain of blocks breaks: the block's capacity of 255 leads past the file's end; "
     "it goes on at 17\n"},
    {"a.SI", 14, "00", "a.SI\n  at        16  the table of records can't be read at offset 16: "},
};

TEST_F(StoreTool, CheckTellsEveryDamageAndChangesNothing)
{
  StoreFour();
  std::string const index = m_Folder.Read("a.SI");
  std::string const record = m_Folder.Read("a.SR");
  EXPECT_EQ(Zp("check a").out, "3 records, 1 free block, 36 bytes: sound\n");
  for (Damage const & damage : damages) {
    m_Folder.Write("a.SI", index);
    m_Folder.Write("a.SR", record);
    Patch(damage.file, damage.offset, FromHex(damage.bytes));
    std::string const before = m_Folder.Read("a.SI") + m_Folder.Read("a.SR");
    ProgramRun const run = Zp("check a");
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.out.find(damage.fault), std::string::npos) << damage.fault << "in\n" << run.out << run.err;
    EXPECT_EQ(m_Folder.Read("a.SI") + m_Folder.Read("a.SR"), before);
    EXPECT_EQ(Zp("compact a").status, 1);  // refused, with the files as they were
    EXPECT_EQ(m_Folder.Read("a.SI") + m_Folder.Read("a.SR"), before);
  }
  constexpr std::uintmax_t holes[] = {2147483000, std::uintmax_t{5} << 30};  // as long as a store may be, and beyond any
  for (std::uintmax_t const bytes : holes) {
    std::filesystem::resize_file(m_Folder.Path() / "a.SR", bytes);  // a hole, without bytes on the disk
    ProgramRun const holed = Zp("recover a");
    EXPECT_NE(holed.out.find("3 kept, 0 suspect, 0 lost"), std::string::npos) << holed.out << holed.err;
  }
}

TEST_F(StoreTool, AnyChangedByteEndsInAnExitStatus)
{
  StoreFour();
  std::string const index = m_Folder.Read("a.SI");
  for (size_t i = 0; i < index.size(); i += 3) {
    m_Folder.Write("a.SI", index);
    Patch("a.SI", i, "\xFF");
    for (char const * const command : {"check a", "list a"}) {
      int const status = Zp(command).status;
      EXPECT_TRUE(status == 0 || status == 1) << command << " with byte " << i << ": " << status;
    }
  }
}

TEST_F(StoreTool, UnknownClassesAreToldAndRecordsListedFromTheirHeaders)
{
  StoreFour();
  Patch("a.SI", 6, "XXObject");
  ProgramRun const list = Zp("list a");
  EXPECT_EQ(list.status, 0);
  EXPECT_EQ(list.err,
            "zp: a.SI: the header object at offset 0 is of class XXObject, which isn't known here; the records are those of the "
            "block headers\n");
  EXPECT_NE(list.out.find("3 records, 8 bytes\n"), std::string::npos) << list.out;
  EXPECT_EQ(Zp("check a").status, 0);
  EXPECT_EQ(Zp("get a 2").out, "cde");
  EXPECT_EQ(Zp("put a 2", "x").status, 1);
}

TEST_F(StoreTool, RecoverySavesWhatTheHeadersHoldIntoNewFiles)
{
  StoreFour();
  std::filesystem::remove(m_Folder.Path() / "a.SI");
  ProgramRun const dry = Zp("recover a --list");
  EXPECT_EQ(dry.out,
            "kept     record     1  at         0      2 bytes\n"
            "kept     record     2  at         8      3 bytes\n"
            "kept     record     3  at        17      3 bytes\n"
            "lost     the header object: there is no index file to take it from\n"
            "3 kept, 0 suspect, 0 lost\n"
            "nothing was written; --to NEW writes what is kept and suspect into new files\n");
  EXPECT_EQ(dry.status, 1);
  EXPECT_FALSE(m_Folder.Has("a.SI"));
  Zp("recover a --to b");
  EXPECT_EQ(Load("b"), (Records{{1, "ab"}, {2, "cde"}, {3, "fgh"}}));
  EXPECT_EQ(Zp("recover a --to b").err, "zp: b.SI: exists; recovery writes new files only, so name others\n");
}

TEST_F(StoreTool, RecoveryTellsWhyOfEachRecord)
{
  Store({{1, "ab"},
         {2, FromHex("FF FF 01 00 03 00 \"GPw\" 05 00")},
         {3, "cde"},
         {4, "fgh"},
         {5, "ij"},
         {6, "kl"},
         {7, "mn"},
         {8, "opqrstuv"}});
  Patch("a.SI", 88, "\xFF\xFF\xFF\xFF");  // the place of record 5
  for (auto const & [offset, bytes] : std::map<size_t, char const *>{{34, "03 00"}, {43, "05 80"}, {53, "09 00"}, {59, "09 00"}})
    Patch("a.SR", offset, FromHex(bytes));
  m_Folder.Write("a.SR", m_Folder.Read("a.SR").substr(0, 76));
  EXPECT_EQ(Zp("recover a --to b --leave-suspect --list").out,
            "kept     record     1  at         0      2 bytes\n"
            "suspect  record     2  at         8     11 bytes  its GPw is unreadable: The data ends before what it should hold\n"
            "kept     record     3  at        25      3 bytes\n"
            "lost     record     3  at        34      3 bytes  another block of this id stands at 25\n"
            "lost     record     6  at        51      9 bytes  its length 9 is above the capacity 2\n"
            "suspect  record     9  at        59      2 bytes  it stands where the chain of blocks breaks\n"
            "lost     record     8  at        67      8 bytes  the file ends after 3 of its 8 bytes\n"
            "lost     record     4  at        34      0 bytes  the index has it, but no live block of that id is left\n"
            "lost     record     5  at 4294967295      0 bytes  its bytes never reached the file\n"
            "lost     record     7  at        59      0 bytes  the index has it, but no live block of that id is left\n"
            "2 kept, 2 suspect, 6 lost\n"
            "without what is suspect written to b.SI and b.SR\n");
  EXPECT_EQ(Load("b"), (Records{{1, "ab"}, {3, "cde"}}));
  ProgramRun const again = Zp("recover b --json");
  EXPECT_EQ(again.out,
            "{\n  \"records\": [\n"
            "    {\n      \"id\": 1,\n      \"state\": \"kept\",\n      \"position\": 0,\n      \"bytes\": 2,\n      \"why\": "
            "\"\"\n    },\n"
            "    {\n      \"id\": 3,\n      \"state\": \"kept\",\n      \"position\": 8,\n      \"bytes\": 3,\n      \"why\": "
            "\"\"\n    }\n"
            "  ],\n  \"header_lost\": false,\n  \"written_to\": \"\"\n}\n");
  EXPECT_EQ(again.status, 0);
  EXPECT_EQ(Zp("check b").out, "2 records, 0 free blocks, 17 bytes: sound\n");
}

TEST_F(StoreTool, RecoveryWalksOnBehindABreak)
{
  StoreFour();
  Patch("a.SR", 12, FromHex("FF 00"));
  EXPECT_EQ(Zp("recover a --to b").out, "3 kept, 0 suspect, 0 lost\nwritten to b.SI and b.SR\n");
  EXPECT_EQ(Load("b"), (Records{{1, "ab"}, {2, "cde"}, {3, "fgh"}}));
}

TEST_F(StoreTool, CompactWinsTheFreeSpaceAndLeavesNothingBehind)
{
  StoreFour();
  Records const records = Load();
  EXPECT_EQ(Zp("compact a").out, "a.SR: 26 bytes instead of 36, 27.8% won\n");
  EXPECT_EQ(Load(), records);
  EXPECT_EQ(Zp("compact a").out, "a.SR: 26 bytes, nothing to win\n");
  auto const files = std::filesystem::directory_iterator(m_Folder.Path());
  EXPECT_EQ(std::distance(begin(files), end(files)), 2);
}

// Every state that an interruption of the exchange can leave: which of the files F, F.compact-new and F.compact-old stand for
// the record file and the index file, and the mark. The old file is 36 bytes long, the new one 26.
struct Interruption {
  char const * record;  // o: the old one under its name, n: the new one; lower case beside it: N new, O old
  char const * index;
  bool mark;
};

constexpr Interruption interruptions[] = {
    {"oT", "o", false}, {"oT", "oT", false}, {"oT", "oN", false}, {"oN", "oN", false}, {"oN", "oN", true},  {"oN", "ON", true},
    {"oN", "nO", true}, {"ON", "nO", true},  {"nO", "ON", true},  {"nO", "nO", true},  {"nO", "nO", false}, {"nO", "n", false},
};

TEST_F(StoreTool, AnInterruptedExchangeIsFinishedOrUndoneFromEveryStep)
{
  StoreFour();
  Records const records = Load();
  std::string const old[] = {m_Folder.Read("a.SR"), m_Folder.Read("a.SI")};
  Zp("compact a");
  std::string const fresh[] = {m_Folder.Read("a.SR"), m_Folder.Read("a.SI")};
  for (Interruption const & at : interruptions) {
    std::filesystem::remove(m_Folder.Path() / "a.SR");
    std::filesystem::remove(m_Folder.Path() / "a.SI");
    for (int i = 0; i < 2; ++i) {
      std::string const name = i == 0 ? "a.SR" : "a.SI";
      for (char const c : std::string(i == 0 ? at.record : at.index)) {
        if (c == 'o') m_Folder.Write(name, old[i]);
        if (c == 'n') m_Folder.Write(name, fresh[i]);
        if (c == 'O') m_Folder.Write(name + ".compact-old", old[i]);
        if (c == 'N') m_Folder.Write(name + ".compact-new", fresh[i]);
        if (c == 'T') m_Folder.Write(name + ".compact-tmp", "half");
      }
    }
    std::string const where = std::string(at.record) + " " + at.index + (at.mark ? " mark" : "");
    if (at.mark) {
      m_Folder.Write("a.SR.compact-swap", "");
      EXPECT_EQ(Zp("list a").status, 1) << where;
    }
    ProgramRun const run = Zp("compact a");
    EXPECT_EQ(run.status, 0) << where << run.err;
    EXPECT_EQ(Load(), records) << where;
    EXPECT_EQ(m_Folder.Read("a.SR"), fresh[0]) << where;
    auto const files = std::filesystem::directory_iterator(m_Folder.Path());
    EXPECT_EQ(std::distance(begin(files), end(files)), 2) << where;
  }
}

TEST_F(StoreTool, MapShowsTheSharesAndDrawsThem)
{
  StoreFour();
  ProgramRun const run = Zp("map a --svg a.svg");
  EXPECT_EQ(run.out.substr(run.out.find("a.SR")),
            "a.SR: 36 bytes, 3 records, 1 free block\n"
            "     headers of live blocks          18   50.0%\n"
            "  #  live                             8   22.2%\n"
            "  .  free                            10   27.8%\n"
            "compaction would win 10 bytes, 27.8%\n");
  // 800 points stand for 256 bytes: the six of the first header take 18.75.
  EXPECT_NE(m_Folder.Read("a.svg").find("d=\"M 90 64 L 108.75 64 L 108.75 82 L 90 82 Z"), std::string::npos)
      << m_Folder.Read("a.svg");
  EXPECT_NE(Zp("map a --json").out.find("\"compaction_wins\": 10"), std::string::npos);
}

}  // namespace
