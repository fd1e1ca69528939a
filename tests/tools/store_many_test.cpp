// zp store over several stores: check, list, compact, find and diff.

#include <nlohmann/json.hpp>

#include "tests/tools/store_fixture.h"

namespace {

// Three stores, of which the second is damaged and the third isn't there.
class ManyStores : public StoreTool {
 protected:
  ManyStores()
  {
    Store({{1, "ab"}}, "b");
    Patch("b.SR", 2, FromHex("01 00"));
    StoreFour();
  }
};

TEST_F(ManyStores, CheckNamesTheStoreInEachLineAndEndsWithTheWorstStatus)
{
  ProgramRun const run = Zp("check a b none a");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out,
            "a: 3 records, 1 free block, 36 bytes: sound\n"
            "b: b.SR\n"
            "b:   at         0  record 1: the index has 2 bytes, the block 1\n"
            "b: 1 record, 0 free blocks, 8 bytes: 1 fault\n"
            "a: 3 records, 1 free block, 36 bytes: sound\n");
  EXPECT_EQ(run.err, "zp: none.SR: there is no such record file; check the name\n");
  m_Folder.Write("plain", "");
  EXPECT_EQ(Zp("check plain b a").status, 2);
  EXPECT_EQ(Zp("check a a.SI").status, 0);
}

TEST_F(ManyStores, JsonIsAnArrayOfWhatEachGives)
{
  auto const json = nlohmann::json::parse(Zp("list a none b --json").out);
  EXPECT_EQ(json[0]["result"], nlohmann::json::parse(Zp("list a --json").out));
  EXPECT_EQ(json[0]["store"], "a");
  EXPECT_EQ(json[0]["status"], 0);
  EXPECT_EQ(json[1], (nlohmann::json{
                         {"store", "none"}, {"error", "none.SR: there is no such record file; check the name"}, {"status", 1}}));
  EXPECT_EQ(json[2]["status"], 1);  // its record can't be read
  auto const one = nlohmann::json::parse(Zp("check b --json").out);
  EXPECT_EQ(nlohmann::json::parse(Zp("check none b --json").out)[1]["result"], one);
  EXPECT_EQ(nlohmann::json::parse(Zp("check none none --json").out).size(), 2U);
}

TEST_F(ManyStores, CompactGoesOnBehindAStoreThatItRefuses)
{
  std::string const damaged = m_Folder.Read("b.SR");
  ProgramRun const run = Zp("compact b a");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "a: a.SR: 26 bytes instead of 36, 27.8% won\n");
  EXPECT_EQ(run.err.find("zp: b.SR: record 1: the index has 2 bytes, the block 1; nothing was changed"), 0U) << run.err;
  EXPECT_EQ(m_Folder.Read("b.SR"), damaged);
}

TEST_F(StoreTool, FindsComponentsByNameFormulaAndCasNumber)
{
  Zp("import one -", "id,name,formula,cas\n4,Water,H2O,7732-18-5\n5,Heavy water,D2O,7789-20-0\n6,\xC3\x84thanol,C2H6O,64-17-5\n");
  Zp("import two -", "id,name,formula,cas\n9,Carbon monoxide,CO,630-08-0\n10,Cobalt,Co,\n");
  Zp("put two 11", "water, but no component");
  struct {
    char const * arguments;
    char const * ids;
  } const rows[] = {
      {"WATER one two", "one 4 one 5 "},
      {"h2o one two", "one 4 "},
      {"7732-18-5 one", "one 4 "},
      {"7732 one two", ""},
      {"co one two", "two 9 two 10 "},
      {"co two --by name", "two 10 "},
      {"\xC3\xA4thAN one", "one 6 "},
      {"co two --by formula", "two 9 two 10 "},
      {"9 two", ""},
  };
  for (auto const & row : rows) {
    ProgramRun const run = Zp(std::string("find --json ") + row.arguments);
    std::string ids;
    for (auto const & each : nlohmann::json::parse(run.out)) {
      ids += each["store"].get<std::string>() + " " + std::to_string(each["id"].get<int>()) + " ";
    }
    EXPECT_EQ(ids, row.ids) << row.arguments << run.err;
    EXPECT_EQ(run.status, ids.empty() ? 1 : 0) << row.arguments;
  }
  EXPECT_EQ(Zp("find wat one two").out,
            "STORE     ID  NAME         FORMULA  CAS\n"
            "one        4  Water        H2O      7732-18-5\n"
            "one        5  Heavy water  D2O      7789-20-0\n"
            "2 components\n");
  EXPECT_EQ(Zp("find thanol none one").status, 1);
  EXPECT_EQ(Zp("find thanol none one --skip").status, 0);
}

TEST_F(StoreTool, DiffTellsRecordByRecordAndValueByValue)
{
  Zp("import old -", "id,name,tc_K,sigma_eq,sigma_A,antoine_A\n1,Water,647.25,106,0.25,23\n2,Same,1,,,\n3,Gone,2,,,\n");
  Zp("import new -", "id,name,tc_K,sigma_eq,sigma_A,antoine_B\n1,Water,647.5,106,0.5,3816\n2,Same,1,,,\n4,New,3,,,\n");
  Zp("put old 7", "some bytes");
  Zp("put new 7", "some more bytes");
  ProgramRun const run = Zp("diff old new");
  EXPECT_EQ(run.out,
            "record 1: changed: GPDataArray, 92 bytes, Water\n"
            "  tc_K                  647.25 -> 647.5 K\n"
            "  antoine_A             23 -> 0\n"
            "  antoine_B             - -> 3816\n"
            "  sigma_A               0.25 -> 0.5\n"
            "record 3: removed: GPDataArray, 50 bytes, Gone\n"
            "record 4: added: GPDataArray, 49 bytes, New\n"
            "record 7: changed: raw bytes, 10 bytes -> raw bytes, 15 bytes; differs from byte 5 on\n"
            "1 added, 1 removed, 2 changed, 1 the same\n");
  EXPECT_EQ(run.status, 1);
  auto const json = nlohmann::json::parse(Zp("diff old new --json").out);
  EXPECT_EQ(json["changed"][0]["values"][2], (nlohmann::json{{"column", "antoine_B"}, {"old", nullptr}, {"new", 3816}}));
  EXPECT_EQ(json["changed"][1]["first_byte"], 5);
  EXPECT_EQ(json["removed"][0],
            nlohmann::json::parse(R"({"id":3,"old":{"bytes":50,"class":"GPDataArray","text":"Gone"},"new":null})"));
  EXPECT_EQ(Zp("diff old old.SR").out, "0 added, 0 removed, 0 changed, 4 the same\n");
  EXPECT_EQ(Zp("diff old old").status, 0);
  Patch("new.SR", 2, FromHex("05 00"));  // record 1 can't be read any more
  ProgramRun const unread = Zp("diff new new");
  EXPECT_EQ(unread.status, 1);
  EXPECT_NE(unread.err.find("zp: 1 record can't be compared\n"), std::string::npos) << unread.err;
}

}  // namespace
