// zp store import and export: nothing of a record is lost on the way.

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>
#include <random>
#include <sstream>
#include <tuple>

#include <nlohmann/json.hpp>

#include <zpbase/numeric.h>
#include <zpbase/platform/archive.h>
#include <zpbase/platform/encoding.h>

#include "tests/tools/store_fixture.h"
#include "tools/records/json_text.h"

namespace {

std::string const componentTable = ZP_SOURCE_DIR "/examples/components.csv";

std::string bytesOf(CObject const & object)
{
  GPMemFile file;
  CArchive ar(&file, CArchive::store);
  ar.WriteObject(&object);
  ar.Close();
  return {reinterpret_cast<char const *>(file.GetMemPtr()), static_cast<size_t>(file.GetLength())};
}

// One item of every kind, with the values that a text form loses most easily.
std::string hardCollection()
{
  GPDataArray data;
  data.AddData(new GPData(7));
  data.AddData(new GPd(20, -0.0));
  data.AddData(new GPd(21, std::bit_cast<double>(uint64_t{0x7FF0000000000123})));
  data.AddData(new GPd(22, 0.1));
  data.AddData(new GPf(23, std::bit_cast<float>(0xFFC12345U)));
  data.AddData(new GPf(24, std::numeric_limits<float>::infinity()));
  data.AddData(new GPf(25, 16777216.0F));
  data.AddData(new GPf(26, std::numeric_limits<float>::denorm_min()));
  data.AddData(new GPdw(27, -2147483647L - 1));
  data.AddData(new GPw(28, -1));
  data.AddData(new GPs(29, CString("\x80\x81\xFF\x01\"\\,", 7)));
  data.AddData(new GPxy(30, -std::numeric_limits<double>::infinity(), 5e-324));
  data.AddData(new GPa(31));
  auto * const inner = new GPObArray;
  inner->Add(nullptr);
  inner->Add(new GPObList);
  data.AddData(new GPa(32, inner));
  auto * const packed = new GPv(97, 5);  // no whole number of floats
  packed->GetArea()[4] = 0xAB;
  data.AddData(packed);
  float const pair[] = {1.0F, 2.0F, 3.0F};
  auto * const bip = new GPbip(112, 9);
  bip->PutFloatData(pair, 3);
  data.AddData(bip);
  return bytesOf(data);
}

std::string numbers()
{
  GPObArray all;
  all.Add(new GPVector(2, -0.0));
  all.Add(new GPMatrix(2, 3, 1.5));
  all.Add(new GPIntVector(3, -7));
  all.Add(new GPBOOLVector(1, 1));
  all.Add(new GPUIntArray(5, 8));
  return bytesOf(all);
}

// So large that its JSON is tried piece by piece.
std::string large()
{
  GPObList all;
  auto * const items = new GPDataList;
  items->AddTail(new GPs(1, CString('x', 9000)));
  auto * const data = new GPDataArray;
  data->AddData(new GPa(5, new GPObArray));
  auto * const array = new GPObArray;
  array->Add(items);
  array->Add(nullptr);
  all.AddTail(array);
  all.AddTail(data);
  return bytesOf(all);
}

TEST_F(StoreTool, JsonGivesBackEveryRecordBitForBit)
{
  Records const records = {{0, hardCollection()},
                           {1, numbers()},
                           {5, std::string("raw\0bytes", 9)},
                           {6, FromHex("FF FF 01 00 05 00 \"Other\" 01 02")},                  // a class that isn't known
                           {7, FromHex("FF FF 01 00 03 00 \"GPw\" 05 00")},                    // cut
                           {8, FromHex("FF FF 01 00 03 00 \"GPs\" 05 00 FF FE FF 01 41 00")},  // a wide text
                           {9, bytesOf(GPw(1, 2)) + "tail"},
                           {10, large()},
                           {32767, "x"}};
  Store(records);
  ASSERT_EQ(Zp("export a --json all.json").status, 0);
  ProgramRun const run = Zp("import b all.json");
  EXPECT_EQ(run.out, "9 records stored in b.SR: 9 new, 0 replaced\n") << run.err;
  EXPECT_EQ(Load("b"), records);
  EXPECT_EQ(m_Folder.Read("b.SI"), m_Folder.Read("a.SI"));
  Zp("export b --json again.json");
  std::string const json = m_Folder.Read("all.json");
  EXPECT_EQ(m_Folder.Read("again.json"), json);
  EXPECT_NE(json.find("\"value\": \"nan:7ff0000000000123\""), std::string::npos);
  size_t raw = 0;
  for (size_t at = 0; (at = json.find("\"hex\"", at)) != std::string::npos; ++at) ++raw;
  EXPECT_EQ(raw, 6U) << "all others have a form of their own";
}

TEST_F(StoreTool, TableGivesBackComponentsBitForBit)
{
  EXPECT_EQ(Zp("import a " + componentTable).out, "37 records stored in a.SR: 37 new, 0 replaced\n");
  ASSERT_EQ(Zp("export a a.csv").status, 0);
  Zp("import b a.csv");
  EXPECT_EQ(m_Folder.Read("b.SR"), m_Folder.Read("a.SR"));
  EXPECT_EQ(Zp("export b").out, m_Folder.Read("a.csv"));
  EXPECT_EQ(Zp("import b a.csv").out, "37 records stored in b.SR: 0 new, 37 replaced\n");
}

TEST_F(StoreTool, EachColumnHasTheItemOfItsName)
{
  using Item = std::tuple<char const *, int>;
  Item const items[] = {{"name", 1},
                        {"formula", 2},
                        {"cas", 3},
                        {"mw_kg_per_kmol", 10},
                        {"tb_K", 11},
                        {"tc_K", 12},
                        {"pc_Pa", 13},
                        {"vc_m3_per_kmol", 14},
                        {"omega", 15},
                        {"tm_K", 16},
                        {"hf_J_per_kmol", 17},
                        {"dipole_C_m", 18},
                        {"rho_liq_eq", 40},
                        {"sigma_eq", 41},
                        {"p_vap_eq", 42},
                        {"h_vap_eq", 43},
                        {"cp_liq_eq", 44},
                        {"mu_liq_eq", 45},
                        {"mu_vap_eq", 46},
                        {"k_liq_eq", 47},
                        {"k_vap_eq", 48},
                        {"rho_sol_eq", 49}};
  std::string head = "id";
  std::string row = "5";
  std::string ids;
  for (auto const & [column, id] : items) {
    head += std::string(",") + column;
    row += ",7";
    ids += " " + std::to_string(id);
  }
  ASSERT_EQ(Zp("import a -", head + "\n" + row + "\n").status, 0);
  std::string told;
  std::istringstream lines(Zp("show a 5 --json").out);
  for (std::string line; std::getline(lines, line);)
    if (size_t const at = line.find("\"data_id\": "); at != std::string::npos)
      told += " " + std::to_string(std::stoi(line.substr(at + 11)));
  EXPECT_EQ(told, ids);
}

TEST_F(StoreTool, TableKeepsQuotesMarksAndCoefficientsOfZero)
{
  m_Folder.Write("t.csv",
                 "# head\nid,name,omega,unifac_groups,rho_liq_eq,rho_liq_A,rho_liq_B,rho_liq_C,rho_liq_D,rho_liq_E,rho_liq_F\n"
                 "3,\"a, \"\"b\"\"\nc\",0,12R:1 1:2,105,1,0,0,0,0,0\n");
  ASSERT_EQ(Zp("import a t.csv").status, 0);
  EXPECT_EQ(Zp("export a").out + "", m_Folder.Read("t.csv").substr(7));
  EXPECT_NE(Zp("show a 3").out.find("│          F = 0.0\n"), std::string::npos);
}

std::string wideBytes(std::string const & utf8, bool bigEnd)
{
  std::u16string wide;
  EXPECT_TRUE(zp::Utf8ToWide("\uFEFF" + utf8, wide));
  std::string bytes;
  for (char16_t const unit : wide) {
    std::string both = {static_cast<char>(unit), static_cast<char>(unit >> 8)};
    if (bigEnd) std::swap(both[0], both[1]);
    bytes += both;
  }
  return bytes;
}

std::string replacedIn(std::string text, char from, std::string const & to)
{
  for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) text.replace(at, 1, to);
  return text;
}

TEST_F(StoreTool, TablesOfEveryMakeAreOneStore)
{
  std::string const english =
      "id,name,tc_K,omega,antoine_A,antoine_B\n4,\"\u00C4,\u20AC\",647.25,,20.5,-3e2\n5,Gr\u00F6\u00DFe,1.5,,,\n";
  std::string const german =
      "id;name;tc_K;omega;antoine_A;antoine_B\r\n4;\u00C4,\u20AC;647,25;\" \";20.5;-3E2\r\n;;;;;\r\n5;Gr\u00F6\u00DFe;1,5;;;\r\n";
  std::string const tabbed = replacedIn(german, ';', "\t");
  std::string const windows =
      "# note\n\nid,name,tc_K,omega,antoine_A,antoine_B,,\n4,\"\xC4,\x80\",647.25,,20.5,-3e2,,\n5,Gr\xF6\xDF"
      "e,1.5,,,,,\n";
  std::string mixed = replacedIn(windows, ',', ";");
  mixed.replace(mixed.find("\xC4;") + 1, 1, ",");
  ASSERT_EQ(Zp("import a -", english).status, 0);
  for (std::string const & table : {windows, "\xEF\xBB\xBF" + german, german, tabbed, wideBytes(english, true),
                                    wideBytes(tabbed, false), mixed, "\xEF\xBB\xBF" + english}) {
    ProgramRun const run = Zp("import b -", table);
    EXPECT_EQ(run.status, 0) << table << run.err;
    EXPECT_EQ(m_Folder.Read("b.SR"), m_Folder.Read("a.SR")) << table;
    std::filesystem::remove(m_Folder.Path() / "b.SR");
    std::filesystem::remove(m_Folder.Path() / "b.SI");
  }
}

// Characters that stand on both sides of where pieces of a file meet, which is after 65536 bytes.
TEST_F(StoreTool, CharactersMayLieAcrossPiecesOfATable)
{
  std::string const end = "\nid,name\n1,ab";  // of which the b alone is in the second piece
  Zp("import b -", "#" + std::string(0x10000 - end.size(), '.') + end);
  EXPECT_EQ(Zp("export b").out, "id,name\n1,ab\n");
  for (size_t before = 0x10000 - 12; before < 0x10000 + 2; ++before) {
    std::string const comment = "#" + std::string(before - 13, '.') + "\n";
    std::string const table = comment + "id,name\n1,\u20AC\u00E4\n";
    std::string const halfComment = "#" + std::string(before / 2 - 13, '.') + "\n";
    for (std::string const & input :
         {table, comment + "id,name\n1,\x80\xE4\n", wideBytes(halfComment + "id,name\n1,\u20AC\u00E4\n", before % 2)}) {
      Zp("import a -", input);
      EXPECT_EQ(Zp("export a").out, "id,name\n1,\u20AC\u00E4\n") << before;
    }
  }
}

// Of any bits, each number has the fewest digits that lead back to it.
TEST_F(StoreTool, TableHasTheShortestNumbersThatGiveTheirBitsBack)
{
  std::mt19937 random(15);
  Records records;
  for (int id = 0; id < 300; ++id) {
    GPDataArray data;
    for (unsigned int item = 10; item < 19; ++item) {
      auto const value = std::bit_cast<float>(static_cast<uint32_t>(random()));
      if (std::isfinite(value)) data.AddData(new GPf(item, value));
    }
    records[id] = bytesOf(data);
  }
  Store(records);
  ASSERT_EQ(Zp("export a a.csv").status, 0);
  ASSERT_EQ(Zp("import b a.csv").status, 0);
  EXPECT_EQ(Load("b"), records);
  ASSERT_EQ(Zp("export a --json a.json").status, 0);
  ASSERT_EQ(Zp("import c a.json").status, 0);
  EXPECT_EQ(Load("c"), records);
  std::istringstream cells(replacedIn(m_Folder.Read("a.csv"), ',', "\n"));
  int checked = 0;
  for (std::string cell; std::getline(cells, cell);) {
    if (std::isalpha(cell.front()) != 0 || cell.find_first_of(".e") == std::string::npos) continue;
    auto const read = [](std::string_view text) {
      float value = 0;
      std::from_chars(text.data(), text.data() + text.size(), value);
      return value;
    };
    float const value = read(cell);
    size_t const first = cell.find_first_of("123456789");
    std::string const digits = cell.substr(first, cell.find('e') - first);
    auto const count = std::count_if(digits.begin(), digits.end(), [](char c) { return c != '.'; });
    char shorter[40];
    int const fewer = std::max(static_cast<int>(count) - 2, 0);
    char const * const end = std::to_chars(shorter, std::end(shorter), value, std::chars_format::scientific, fewer).ptr;
    EXPECT_TRUE(count == 1 || read(std::string_view(shorter, end)) != value) << cell;
    ++checked;
  }
  EXPECT_GT(checked, 2000);
}

TEST_F(StoreTool, GroupsAreMarkedByEitherLetterAndFitOneRecord)
{
  std::string cell = "12X:2";
  for (int i = 1; i < 8191; ++i) cell += " 1:1";
  ASSERT_EQ(Zp("import a -", "id,unifac_groups\n1,5R:1 12X:2\n2," + cell + "\n").status, 0);
  EXPECT_EQ(Zp("export a").out.substr(0, 38), "id,unifac_groups\n1,5R:1 12R:2\n2,12R:2 ");
  ProgramRun const run = Zp("import a -", "id,unifac_groups\n1," + cell + " 2:2\n");
  EXPECT_EQ(run.err,
            "zp: standard input: line 2: column unifac_groups: 8192 groups are more than the 8191 of a record; "
            "nothing was stored\n");
}

TEST_F(StoreTool, GroupInteractionsAreKnownByTheirShape)
{
  std::string const record = R"({"format": "zp-store-records", "version": 1, "records": [{"id": 4, "object":
    {"class": "GPDataArray", "items": [
      {"class": "GPv", "data_id": 900, "area": "80000000803F0000004085000000003F000000BF"},
      {"class": "GPv", "data_id": 901, "area": "81000000803F0000004080000000003F000000BF"}]}}]})";
  ASSERT_EQ(Zp("import a -", record).status, 0);
  std::string const shown = Zp("show a 4").out;
  EXPECT_NE(shown.find("GPUnifacBip\n│          a128 = 1.0\n│          b128 = 2.0\n│          a133 = 0.5\n"), std::string::npos);
  EXPECT_EQ(shown.find("a129"), std::string::npos);
}

// The classes of the library that are or derive from base and can be made by name.
std::vector<CRuntimeClass *> classesUnder(CRuntimeClass * base)
{
  CRuntimeClass first = {"First", 0, 0xFFFF, nullptr, nullptr, nullptr, nullptr};
  AFX_CLASSINIT const registration(&first);
  std::vector<CRuntimeClass *> classes;
  for (CRuntimeClass * each = first.m_pNextClass; each != nullptr; each = each->m_pNextClass)
    if (each->IsDerivedFrom(base) && each->m_pfnCreateObject != nullptr) classes.push_back(each);
  return classes;
}

TEST_F(StoreTool, EveryDataItemHasAJsonForm)
{
  std::vector<CRuntimeClass *> const classes = classesUnder(RUNTIME_CLASS(GPData));
  ASSERT_FALSE(classes.empty());
  Records records;
  for (CRuntimeClass const * const each : classes) {
    std::unique_ptr<CObject> const item(each->CreateObject());
    records[static_cast<int>(records.size())] = bytesOf(*item);
  }
  Store(records);
  for (size_t id = 0; id < classes.size(); ++id) {
    std::string const shown = Zp("show a " + std::to_string(id) + " --json").out;
    EXPECT_EQ(shown.find("\"hex\""), std::string::npos) << classes[id]->m_lpszClassName << " has no form in object_json.cpp";
    EXPECT_NE(shown.find("\"data_id\""), std::string::npos) << shown;
  }
}

TEST(Json, HasTheNumbersOfItsReader)
{
  for (double const number :
       {0.0, 1e-5, 9.9999e-5, 1e-4, -2.5e-4, 0.1, 1.0, 12.5, 123456789012345.6, 1e14, -1e15, 1.5e15, 1e16, 5e-324, 1.7e308}) {
    std::string text;
    JsonText(text).Real(number);
    EXPECT_EQ(text, nlohmann::json(number).dump());
  }
}

struct Refusal {
  std::string_view input;
  char const * error;
};

constexpr Refusal refusals[] = {
    {"", "standard input: is empty; a line with the names of the columns is expected"},
    {"name\nx\n", "standard input: line 1: the column id is missing"},
    {"id,colour\n1,x\n", "standard input: line 1: there is no column \"colour\"; the manual of zp store lists them"},
    {"id,name,name\n", "standard input: line 1: column name stands twice"},
    {"# note\nid,name\n1,a\n1,b\n", "standard input: line 4: column id: 1 stands twice; nothing was stored"},
    {"id\n32768\n", "standard input: line 2: column id: \"32768\" is no whole number from 0 to 32767; nothing was stored"},
    {"id,tc_K\n1,12x\n", "standard input: line 2: column tc_K: \"12x\" is no number such as 647.1 or 2.2e7; nothing was stored"},
    {{"id,tc_K\n1,5\0x\n", 14},
     "standard input: line 2: column tc_K: \"5\\x00x\" is no number such as 647.1 or 2.2e7; nothing was stored"},
    {"id,tc_K\n1,0x10\n",
     "standard input: line 2: column tc_K: \"0x10\" is no number such as 647.1 or 2.2e7; nothing was stored"},
    {"id;tc_K\n1;nan\n", "standard input: line 2: column tc_K: \"nan\" is no number such as 647.1 or 2.2e7; nothing was stored"},
    {"id;tc_K\n\n1;1.234,5\n",
     "standard input: line 3: column tc_K: \"1.234,5\" is no number such as 647.1 or 2.2e7; nothing was stored"},
    {"id,tc_K,\n1,2,3\n", "standard input: line 2: column 3: \"3\" has no name above it; nothing was stored"},
    {"id,tc_K\n1,2,3\n",
     "standard input: line 2: 3 fields under 2 columns; with decimal commas in it, a table needs semicolons or tabs between its "
     "columns; nothing was stored"},
    {"id;name\n1;\u0107\n",
     "standard input: line 2: column name: \"\u0107\" has characters outside Windows-1252; spell it with those of that code "
     "page; "
     "nothing was stored"},
    {"id;name\n1;\u00E4\n2;\xE4\n", "standard input: line 3: column name: \"\\xE4\" is no UTF-8; nothing was stored"},
    {"id,tc_K\n1,1e39\n", "standard input: line 2: column tc_K: 1e39 doesn't fit a 32-bit number; nothing was stored"},
    {"id,sigma_A\n1,2\n", "standard input: line 2: column sigma_eq: the equation number is missing; nothing was stored"},
    {"id,name\n1\n", "standard input: line 2: 1 field under 2 columns; nothing was stored"},
    {"id,name\n1,\"a\"b\n", "standard input: line 2: a quote stands alone; quote the whole field and double the quotes in it"},
    {"id,unifac_groups\n1,5\n",
     "standard input: line 2: column unifac_groups: \"5\" is no list of groups and counts such as 1:2 12R:1; nothing was stored"},
    {"{\"format\": \"zp-store-records\"}", "standard input: \"version\" is missing; nothing was stored"},
    {"{\"format\": 1}", "standard input: \"format\" must be a text; nothing was stored"},
    {"{\"format\": \"zp-store-records\", \"version\": 1, \"records\": [{\"id\": 4, \"object\": {\"class\": \"GPDataArray\", "
     "\"items\": [null, {\"class\": \"GPw\", \"data_id\": 1, \"value\": 40000}]}}]}",
     "standard input: record 4: items[1]: \"value\" must be a whole number from -32768 to 32767; nothing was stored"},
    {"{\"format\": \"zp-store-records\", \"version\": 1, \"records\": [{\"id\": 4, \"hex\": \"\"}]}",
     "standard input: record 4: has 0 bytes, and a record has 1 to 65535; nothing was stored"},
    {"\n {\"format\"\n:\"\", 1", "standard input: line 3, column 6: is no JSON from here on; nothing was stored"},
    {"\n {\"format\" :\n", "standard input: line 3, column 1: the JSON ends too early; nothing was stored"},
    {"{\"a\":1,\"a\":1,", "standard input: \"a\": no record has such a member; nothing was stored"},
    {"{\"version\": 1, \"version\": 1", "standard input: \"version\": stands twice in one object; nothing was stored"},
    {"{\"format\": \"zp-store-records\", \"version\": 1, \"records\": [{\"id\": 4, \"hex\": \"00\"}, {\"id\": 4, \"hex\": \"\"}",
     "standard input: record 4: stands twice; nothing was stored"},
};

// What never ends is refused as soon as it is more than anything that can be stored.
struct Endless {
  char const * begin;
  char const * more;
  size_t enough;  // bytes
  char const * error;
};

constexpr Endless endless[] = {
    {"", "# x\n", 0x110000, "has more than 1048576 bytes of comments and empty lines in front"},
    {"#\n", "\n", 0x110000, "has more than 1048576 bytes of comments and empty lines in front"},
    {"", "\n", 0x110000, "begins with more than 1048576 blanks"},
    {"id,name\n", ",\n", 0x210000, "line 1048578: 1048577 rows have no content"},
    {"{\"records\": ", " ", 0x120000, "has more than the 16777216 bytes of a record told in JSON; nothing was stored"},
    {"{\"format\": \"", "x", 0x1010000, "has more than the 16777216 bytes of a record told in JSON; nothing was stored"},
};

TEST_F(StoreTool, RefusedImportsStoreNothingAndSayWhere)
{
  for (Refusal const & refusal : refusals) {
    ProgramRun const run = Zp("import a -", std::string(refusal.input));
    EXPECT_EQ(run.status, 1) << refusal.input;
    EXPECT_EQ(run.err, std::string("zp: ") + refusal.error + "\n");
    EXPECT_FALSE(m_Folder.Has("a.SR"));
    EXPECT_FALSE(m_Folder.Has("a.SI"));
  }
  for (Endless const & each : endless) {
    std::string input = each.begin;
    input.reserve(each.enough);
    while (input.size() < each.enough) input += each.more;
    EXPECT_EQ(Zp("import a -", input + "{\"id").err, std::string("zp: standard input: ") + each.error + "\n");
  }
  ProgramRun const unmarked = Zp("import a -", wideBytes("id\n1\n", false).substr(2));
  EXPECT_EQ(unmarked.err, "zp: standard input: is UTF-16 without its mark; save it as UTF-8\n");
  EXPECT_EQ(Zp("import a -", wideBytes("id\n1\n", true) + "x").err, "zp: standard input: ends within a character of UTF-16\n");
  ProgramRun const headAlone = Zp("import a -", "id,name\n,\n");
  EXPECT_EQ(headAlone.err, "zp: standard input: has the names of columns alone; there is nothing to store\n");
  EXPECT_EQ(headAlone.out, "0 records stored in a.SR: 0 new, 0 replaced\n");
  EXPECT_FALSE(m_Folder.Has("a.SR"));
  ProgramRun const deep =
      Zp("import a -", std::string(R"({"format": "zp-store-records", "version": 1, "records": )") + std::string(100000, '['));
  EXPECT_EQ(deep.err, "zp: standard input: values are nested too deep; nothing was stored\n");
}

// One that a table can't tell, one whose block is another record's, and one that is well.
TEST_F(StoreTool, WhatCantBeReadIsToldAndLeftOut)
{
  Zp("import a -", "id,name\n1,one\n2,two\n");
  Zp("put a 3", "raw");
  Patch("a.SR", 0, FromHex("05 00"));
  std::string const wrong =
      "zp: a.SR: record 1: the index has it at 0, but the block there is record 5; look with zp store check\n";
  std::string const raw = "zp: a.SR: record 3 is no component that a table can tell; export with --json\n";
  using Reading = std::tuple<char const *, int, std::string>;
  Reading const readings[] = {
      {"export a o.csv", 1, wrong + raw + "zp: a.SR: 2 records left out\n"},
      {"export a o.csv --skip", 0, wrong + raw + "zp: a.SR: 2 records left out\n"},
      {"export a o.json --json", 1, wrong + "zp: a.SR: 1 record left out\n"},
      {"list a", 1, wrong + "zp: a.SR: 1 record left out\n"},
      {"list a --skip", 0, wrong + "zp: a.SR: 1 record left out\n"},
      {"get a 1", 1, wrong},
  };
  for (auto const & [arguments, status, err] : readings) {
    ProgramRun const run = Zp(arguments);
    EXPECT_EQ(run.status, status) << arguments;
    EXPECT_EQ(run.err, err);
  }
  EXPECT_EQ(m_Folder.Read("o.csv"), "id,name\n2,two\n");
  EXPECT_EQ(Zp("import b o.json").out, "2 records stored in b.SR: 2 new, 0 replaced\n");
}

}  // namespace
