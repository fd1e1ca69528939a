// The hives: exact text after each change, every value type, rights and buffer sizes, and damaged or foreign files.

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <zpbase/platform/application.h>
#include <zpbase/platform/registry.h>
#include <zpbase/platform/system_error.h>

#include "tests/support/Raised.h"
#include "tests/support/TempFolder.h"

using namespace std::string_literals;

namespace {

class Registry : public testing::Test {
 protected:
  Registry()
  {
    setenv("ZP_USER_HIVE", (m_Folder.Path() / "user.reg").c_str(), 1);
    setenv("ZP_DEFAULT_HIVE", (m_Folder.Path() / "default.reg").c_str(), 1);
  }
  ~Registry() override
  {
    if (m_Key != nullptr) RegCloseKey(m_Key);
  }

  void Open(char const * path) { ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, path, 0, KEY_ALL_ACCESS, &m_Key), ERROR_SUCCESS); }

  LONG Set(char const * name, DWORD type, std::string const & data)
  {
    return RegSetValueExA(m_Key, name, 0, type, reinterpret_cast<BYTE const *>(data.data()), static_cast<DWORD>(data.size()));
  }

  // The type as a digit and the data, or the error.
  std::string Query(char const * name)
  {
    DWORD type = 0;
    DWORD size = 0;
    LONG error = RegQueryValueExA(m_Key, name, nullptr, &type, nullptr, &size);
    if (error != ERROR_SUCCESS) return "error " + std::to_string(error);
    std::string data(size, '?');
    error = RegQueryValueExA(m_Key, name, nullptr, nullptr, reinterpret_cast<BYTE *>(data.data()), &size);
    EXPECT_EQ(error, ERROR_SUCCESS);
    return std::to_string(type) + data;
  }

  TempFolder m_Folder;
  HKEY m_Key = nullptr;
};

}  // namespace

TEST_F(Registry, WritesTheRegistrationEntriesForm)
{
  DWORD disposition = 0;
  ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, "Software\\Acme", 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr,
                            &m_Key, &disposition),
            ERROR_SUCCESS);
  EXPECT_EQ(disposition, REG_CREATED_NEW_KEY);
  EXPECT_EQ(Set("path", REG_SZ, "C:\\a \"b\"\0"s), ERROR_SUCCESS);
  EXPECT_EQ(Set("n", REG_DWORD, "\x2A\0\0\x80"s), ERROR_SUCCESS);
  EXPECT_EQ(Set("block", REG_BINARY, std::string(30, 'a')), ERROR_SUCCESS);
  EXPECT_EQ(Set("lines", REG_SZ, "a\r\nb\0"s), ERROR_SUCCESS);
  EXPECT_EQ(Set(nullptr, REG_EXPAND_SZ, "%A%\0"s), ERROR_SUCCESS);
  std::string const text =
      "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Acme]\r\n\"path\"=\"C:\\\\a \\\"b\\\"\"\r\n\"n\"=dword:8000002a\r\n"
      "\"block\"=hex:61,61,61,61,61,61,61,61,61,61,61,61,61,61,61,61,61,61,61,61,61,61,\\\r\n  61,61,61,61,61,61,61,61\r\n"
      "\"lines\"=hex(1):61,0d,0a,62,00\r\n@=hex(2):25,41,25,00\r\n";
  EXPECT_EQ(m_Folder.Read("user.reg"), text);
  EXPECT_EQ(Query("PATH"), "1C:\\a \"b\"\0"s);
  EXPECT_EQ(Query("n"), "4\x2A\0\0\x80"s);
  EXPECT_EQ(Query("block"), "3" + std::string(30, 'a'));
  EXPECT_EQ(Query("lines"), "1a\r\nb\0"s);
  EXPECT_EQ(Query(""), "2%A%\0"s);
}

TEST_F(Registry, AChangeKeepsAllElseInTheFile)
{
  m_Folder.Write("user.reg",
                 "REGEDIT4\n; mine\n\n[HKEY_LOCAL_MACHINE\\X]\n\"a\"=\"b\"\n[HKEY_CURRENT_USER\\K]\n\"V\"=hex:01,\\\n  02 \n"
                 "\"odd\"=dword:xyz\n\"w\"=\"old\"\n;end\n[-HKEY_CURRENT_USER\\Gone]\n\"w\"=\"nowhere\"\n");
  Open("k");
  EXPECT_EQ(Query("v"), "3\x01\x02");
  EXPECT_EQ(Query("odd"), "error 2");
  EXPECT_EQ(Set("v", REG_BINARY, "\x03"), ERROR_SUCCESS);
  EXPECT_EQ(RegDeleteValueA(m_Key, "W"), ERROR_SUCCESS);
  EXPECT_EQ(RegDeleteValueA(m_Key, "W"), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(Set("new\"", REG_SZ, "x\0"s), ERROR_SUCCESS);
  EXPECT_EQ(m_Folder.Read("user.reg"),
            "REGEDIT4\n; mine\n\n[HKEY_LOCAL_MACHINE\\X]\n\"a\"=\"b\"\n[HKEY_CURRENT_USER\\K]\n\"v\"=hex:03\n\"new\\\"\"=\"x\"\n"
            "\"odd\"=dword:xyz\n;end\n[-HKEY_CURRENT_USER\\Gone]\n\"w\"=\"nowhere\"\n");
}

TEST_F(Registry, AValueBehindALineWithoutAnEndStandsOnALineOfItsOwn)
{
  m_Folder.Write("user.reg", "REGEDIT4\n\n[HKEY_CURRENT_USER\\K]\n\"a\"=\"1\"");
  Open("k");
  EXPECT_EQ(Set("b", REG_SZ, "2\0"s), ERROR_SUCCESS);
  EXPECT_EQ(m_Folder.Read("user.reg"), "REGEDIT4\n\n[HKEY_CURRENT_USER\\K]\n\"a\"=\"1\"\n\"b\"=\"2\"\n");
  EXPECT_EQ(Query("a") + Query("b"),
            "11\0"
            "12\0"s);
}

TEST_F(Registry, LinesCountInTheirOrder)
{
  m_Folder.Write(
      "user.reg",
      "REGEDIT4\n[HKEY_CURRENT_USER\\K]\n\"a\"=\"1\"\n\"b\"=\"1\"\n[HKEY_CURRENT_USER\\K\\Sub]\n[HKEY_CURRENT_USER\\K2]\n"
      "[-HKEY_CURRENT_USER\\K]\n[HKEY_CURRENT_USER\\k]\n\"b\"=\"2\"\n\"b\"=\"3\"\n\"c\"=\"4\"\n\"c\"=-\n");
  HKEY none = nullptr;
  EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "K\\Sub", 0, KEY_READ, &none), ERROR_FILE_NOT_FOUND);
  Open("K");
  EXPECT_EQ(Query("a"), "error 2");
  EXPECT_EQ(Query("b"), "13\0"s);
  EXPECT_EQ(Query("c"), "error 2");
  EXPECT_EQ(RegDeleteValueA(m_Key, "b"), ERROR_SUCCESS);
  EXPECT_EQ(Query("b"), "error 2");
  EXPECT_EQ(RegDeleteTreeA(HKEY_CURRENT_USER, "K"), ERROR_SUCCESS);
  EXPECT_EQ(m_Folder.Read("user.reg"), "REGEDIT4\n[HKEY_CURRENT_USER\\K2]\n");
}

TEST_F(Registry, EnumeratesByIndexIntoBuffersOfTheStatedSize)
{
  m_Folder.Write("default.reg",
                 "REGEDIT4\r\n[HKEY_USERS\\.DEFAULT\\A\\Deep\\er]\r\n\"x\"=\"12\"\r\n[HKEY_USERS\\.DEFAULT\\A!]\r\n"
                 "[HKEY_USERS\\.DEFAULT\\A]\r\n[HKEY_USERS\\.DEFAULT\\B]\r\n");
  ASSERT_EQ(RegOpenKeyExA(HKEY_USERS, ".Default", 0, KEY_READ, &m_Key), ERROR_SUCCESS);
  std::string names;
  char name[8];
  DWORD size = sizeof name;
  DWORD index = 0;
  for (; RegEnumKeyExA(m_Key, index, name, &size, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
       size = sizeof name, ++index)
    names += std::string(name, size) + ";";
  EXPECT_EQ(names, "A;A!;B;");
  EXPECT_EQ(RegEnumKeyExA(m_Key, 3, name, &size, nullptr, nullptr, nullptr, nullptr), ERROR_NO_MORE_ITEMS);
  size = 2;
  char keyClass[] = "kept";
  DWORD classSize = 1;
  FILETIME lastWrite{1, 1};
  EXPECT_EQ(RegEnumKeyExA(m_Key, 1, name, &size, nullptr, keyClass, &classSize, &lastWrite), ERROR_MORE_DATA);
  EXPECT_TRUE(keyClass[0] == 0 && classSize == 0 && lastWrite.dwLowDateTime + lastWrite.dwHighDateTime == 0);
  HKEY deep = nullptr;
  ASSERT_EQ(RegOpenKeyExA(m_Key, "a\\deep\\ER\\", 0, KEY_READ, &deep), ERROR_SUCCESS);
  BYTE data[3];
  DWORD dataSize = 2;
  DWORD type = 0;
  size = 2;
  EXPECT_EQ(RegEnumValueA(deep, 0, name, &size, nullptr, &type, data, &dataSize), ERROR_MORE_DATA);
  EXPECT_EQ(dataSize, 3u);
  size = 2;
  EXPECT_EQ(RegEnumValueA(deep, 0, name, &size, nullptr, &type, data, &dataSize), ERROR_SUCCESS);
  EXPECT_EQ(RegEnumValueA(deep, 1, name, &size, nullptr, &type, data, &dataSize), ERROR_NO_MORE_ITEMS);
  RegCloseKey(deep);
}

TEST_F(Registry, RightsHandlesAndNamesAreChecked)
{
  m_Folder.Write("user.reg", "REGEDIT4\r\n[HKEY_CURRENT_USER\\K]\r\n");
  ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "K", 0, KEY_READ, &m_Key), ERROR_SUCCESS);
  HKEY below = nullptr;
  EXPECT_EQ(Set("v", REG_SZ, "\0"s), ERROR_ACCESS_DENIED);
  EXPECT_EQ(RegDeleteValueA(m_Key, "v"), ERROR_ACCESS_DENIED);
  EXPECT_EQ(RegCreateKeyExA(m_Key, "S", 0, nullptr, 0, KEY_READ, nullptr, &below, nullptr), ERROR_ACCESS_DENIED);
  EXPECT_EQ(RegCloseKey(m_Key), ERROR_SUCCESS);
  EXPECT_EQ(RegCloseKey(m_Key), ERROR_INVALID_HANDLE);
  EXPECT_EQ(Query("v"), "error 6");
  Open("K");
  EXPECT_EQ(Set("two\nlines", REG_SZ, "\0"s), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(RegCreateKeyExA(m_Key, "a\nb", 0, nullptr, 0, KEY_READ, nullptr, &below, nullptr), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(RegDeleteTreeA(m_Key, "none"), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(m_Folder.Read("user.reg"), "REGEDIT4\r\n[HKEY_CURRENT_USER\\K]\r\n");
  DWORD disposition = 0;
  EXPECT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, "\\K\\\\", 0, nullptr, 0, KEY_READ, nullptr, &below, &disposition), ERROR_SUCCESS);
  EXPECT_EQ(disposition, REG_OPENED_EXISTING_KEY);
  EXPECT_EQ(Set("raw", REG_SZ, "no zero\xE4\t"), ERROR_SUCCESS);
  EXPECT_EQ(Set("tab", REG_SZ, "\xE4\t\0"s), ERROR_SUCCESS);
  EXPECT_EQ(m_Folder.Read("user.reg"),
            "REGEDIT4\r\n[HKEY_CURRENT_USER\\K]\r\n\"raw\"=hex(1):6e,6f,20,7a,65,72,6f,e4,09\r\n\"tab\"=\"\xE4\t\"\r\n");
  BYTE data[20];
  EXPECT_EQ(RegQueryValueExA(below, "raw", nullptr, nullptr, data, nullptr), ERROR_INVALID_PARAMETER);
  EXPECT_EQ(RegQueryValueExA(below, "raw", nullptr, nullptr, nullptr, nullptr), ERROR_SUCCESS);
  EXPECT_EQ(RegDeleteTreeA(below, nullptr), ERROR_SUCCESS);
  char name[8];
  DWORD size = sizeof name;
  EXPECT_EQ(RegEnumValueA(m_Key, 0, name, &size, nullptr, nullptr, nullptr, nullptr), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(RegCloseKey(below), ERROR_SUCCESS);
}

// What a write leaves in memory must be what reading the file anew gives: each hive is compared with one under another name.
TEST_F(Registry, WritesAreKnownAsIfTheFileHadBeenReadAnew)
{
  std::mt19937 random(17);
  m_Folder.Write(
      "user.reg",
      "REGEDIT4\n[HKEY_CURRENT_USER\\A]\n\"n1\"=\"one\"\n[HKEY_CURRENT_USER\\B]\n\"N1\"=\"x\"\n; remark\n\"n1\"=\"y\"\n"
      "[HKEY_CURRENT_USER\\A]\n\"n2\"=-\n[-HKEY_CURRENT_USER\\B\\C]\n[HKEY_CURRENT_USER\\B\\C]\n@=\"last\"");
  char const * const keys[] = {"A", "B", "B\\C", "D"};
  char const * const names[] = {"n1", "N1", "n2", "", "q\"\\", "n3"};
  std::string const data[] = {"\0"s, "text\0"s, std::string(60, 'b'), "\1\2\3\4"s, "two\nlines\0"s};
  auto const all = [&] {
    std::string values;
    for (char const * key : keys) {
      if (RegOpenKeyExA(HKEY_CURRENT_USER, key, 0, KEY_ALL_ACCESS, &m_Key) != ERROR_SUCCESS) continue;
      for (char const * name : names) values += Query(name) + '|';
      char name[40];
      for (DWORD i = 0, size = sizeof name; RegEnumValueA(m_Key, i, name, &size, nullptr, nullptr, nullptr, nullptr) == 0; ++i)
        values += std::string(name, size) + ' ', size = sizeof name;
      RegCloseKey(std::exchange(m_Key, nullptr));
    }
    return values;
  };
  for (int i = 0; i < 300; ++i) {
    ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, keys[random() % 4], 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &m_Key, nullptr), 0);
    if (random() % 6 == 0) {
      RegDeleteValueA(m_Key, names[random() % 6]);
    } else {
      ASSERT_EQ(Set(names[random() % 6], REG_SZ + static_cast<DWORD>(random() % 4), data[random() % 5]), ERROR_SUCCESS);
    }
    RegCloseKey(std::exchange(m_Key, nullptr));
    if (i % 6 != 5) continue;
    std::string const known = all();
    m_Folder.Write("other.reg", m_Folder.Read("user.reg"));
    setenv("ZP_USER_HIVE", (m_Folder.Path() / "other.reg").c_str(), 1);
    ASSERT_EQ(known, all()) << m_Folder.Read("user.reg");
    setenv("ZP_USER_HIVE", (m_Folder.Path() / "user.reg").c_str(), 1);
  }
}

TEST_F(Registry, AnotherFormIsLeftAlone)
{
  for (std::string const & text : {"\xFF\xFEW\0i\0"s, "Windows Registry Editor Version 5.00\r\n"s, "[HKEY_CURRENT_USER\\K]\n"s}) {
    m_Folder.Write("user.reg", text);
    HKEY key = nullptr;
    EXPECT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, "K", 0, nullptr, 0, KEY_READ, nullptr, &key, nullptr), ERROR_NOT_REGISTRY_FILE);
    CWinApp app("Flow");
    app.SetRegistryKey("Acme");
    EXPECT_FALSE(app.WriteProfileString("S", "k", "v") || app.WriteProfileString("S", "k", nullptr));
    EXPECT_STREQ(app.GetProfileString("S", "k", "default"), "default");
    EXPECT_EQ(CodeOf<CFileException>([&app] { app.ListSettings(); }), CFileException::genericException);
    EXPECT_EQ(m_Folder.Read("user.reg"), text);
  }
}

TEST_F(Registry, IsTheUsersUsualFileUnlessAnotherIsNamed)
{
  setenv("ZP_USER_HIVE", "", 1);
  setenv("XDG_CONFIG_HOME", m_Folder.Path().c_str(), 1);
  m_Folder.Write("user.reg", "REGEDIT4");  // the named one
  CWinApp app("Flow");
  app.SetRegistryKey("Acme");
  EXPECT_TRUE(app.WriteProfileString("S", "k", "v"));
  EXPECT_EQ(m_Folder.Read("zephlow/user.reg"), "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Acme\\Flow\\S]\r\n\"k\"=\"v\"\r\n");
  setenv("ZP_USER_HIVE", (m_Folder.Path() / "user.reg").c_str(), 1);
  EXPECT_TRUE(app.ListSettings().empty() && app.WriteProfileInt("S", "n", 1));
  EXPECT_EQ(m_Folder.Read("user.reg"),
            "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Acme\\Flow\\S]\r\n\"n\"=dword:00000001\r\n");
  unsetenv("ZP_USER_HIVE");
  setenv("XDG_CONFIG_HOME", "", 1);
  std::string const home = std::getenv("HOME") != nullptr ? std::getenv("HOME") : "";
  unsetenv("HOME");
  EXPECT_FALSE(app.WriteProfileString("S", "k", "v"));
  if (!home.empty()) setenv("HOME", home.c_str(), 1);
}

TEST_F(Registry, DamagedLinesAreNoValues)
{
  // clang-format off
  char const * const damaged[] = {
      "\"n\"=dword:", "\"n\"=dword:123456789", "\"n\"=hex:0g", "\"n\"=hex(:00", "\"n\"=hex(7:00", "\"n\"=hex00", "\"n\"=\"open",
      "\"n\"=word", "\"n\"=\"x\" tail", "\"n\"=-x", "\"n=1", "\"n\" dword:00000001", "\"n\"=hex:01 02", "@", "\"n\"=hex:01,\\z"};
  // clang-format on
  for (std::string const line : damaged) {
    m_Folder.Write("user.reg", "REGEDIT4\n[HKEY_CURRENT_USER\\K]\n" + line + "\n\"after\"=dword:1\n");
    Open("K");
    EXPECT_EQ(Query("n"), "error 2") << line;
    EXPECT_EQ(Query("after"), "4\x01\0\0\0"s) << line;
    RegCloseKey(std::exchange(m_Key, nullptr));
  }
  std::string levels = "[HKEY_CURRENT_USER";
  for (int i = 0; i < 511; ++i) levels += "\\k";
  for (std::string const & path : {levels + "]", levels + "\\k]"s, "[\\K]"s, "[K\\]"s, "[K\\\\K]"s, "[]"s, "[-]"s, "[K\x1FK]"s,
                                   "[K\xE4]K] \t"s, "[K"s, "[K] x"s}) {
    bool const taken = path.ends_with("k]") ? path.size() == 1041 : path.ends_with('\t');
    std::vector<zp::RegistryEntry> entries;
    int lines = 0;
    int lost = 0;
    EXPECT_TRUE(zp::ReadRegistryText("REGEDIT4\n" + path + "\n\"n\"\t=\tdword:7\n", entries, lines, lost));
    EXPECT_EQ(entries.size(), taken ? 1u : 0u) << path;
  }
  m_Folder.Write("user.reg", "REGEDIT4\n[HKEY_CURRENT_USER\\K]\n\"n\"=\"cut\\");
  Open("K");
  EXPECT_EQ(Query("n"), "error 2");
}

TEST_F(Registry, HoldsAnApplicationsSettings)
{
  CWinApp app("Flow");
  app.SetRegistryKey("Acme");
  BYTE const block[] = {0x1F, 0x00};
  BYTE * bytes = nullptr;
  UINT length = 0;
  EXPECT_TRUE(app.WriteProfileString("Misc", "t", " x "));
  EXPECT_TRUE(app.WriteProfileInt("Misc", "n", -2));
  EXPECT_TRUE(app.WriteProfileBinary("Misc\\Sub", "b", block, 2));
  EXPECT_EQ(m_Folder.Read("user.reg"),
            "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Acme\\Flow\\Misc]\r\n\"t\"=\" x \"\r\n\"n\"=dword:fffffffe\r\n\r\n"
            "[HKEY_CURRENT_USER\\Software\\Acme\\Flow\\Misc\\Sub]\r\n\"b\"=hex:1f,00\r\n");
  EXPECT_STREQ(app.GetProfileString("misc", "T", "d"), " x ");
  EXPECT_STREQ(app.GetProfileString("misc", "n", "d"), "d");
  EXPECT_FALSE(app.GetProfileBinary("misc", "t", &bytes, &length));
  EXPECT_EQ(static_cast<int>(app.GetProfileInt("misc", "n", 0)), -2);
  EXPECT_EQ(app.GetProfileInt("misc", "t", 9), 9u);
  std::string all;
  for (zp::Setting const & s : app.ListSettings())
    all += (s.section + "." + s.key).GetString() + std::to_string(s.type) + std::string(s.data.View());
  EXPECT_EQ(all, "Misc.n4\xFE\xFF\xFF\xFFMisc.t1 x \0Misc\\Sub.b3\x1F\0"s);
  EXPECT_FALSE(app.WriteProfileString("", nullptr, nullptr));
  EXPECT_EQ(app.ListSettings().size(), 3u);
  EXPECT_TRUE(app.WriteProfileString("Misc", "t", nullptr));
  EXPECT_TRUE(app.WriteProfileString("Misc", nullptr, nullptr));
  EXPECT_TRUE(app.ListSettings().empty());
}

TEST_F(Registry, TextsFromElsewhereAreStepsInTheirOrder)
{
  std::string const plain =
      "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\K]\r\n\"a\\\"\"=\"1\"\r\n@=hex(2):25,41,00\r\n\"b\"=-\r\n\r\n[-HKEY_CURRENT_USER\\G]"
      "\r\n";
  std::vector<zp::RegistryEntry> entries;
  int damaged = 0;
  int lost = 0;
  ASSERT_TRUE(zp::ReadRegistryText(plain, entries, damaged, lost));
  ASSERT_EQ(entries.size(), 4u);
  EXPECT_EQ(damaged, 0);
  EXPECT_EQ(entries[3].kind, zp::RegistryEntry::RemoveKey);
  EXPECT_EQ(zp::WriteRegistryText(entries), plain);
  std::string wide = "\xFF\xFE";
  for (
      char const c :
      "Windows Registry Editor Version 5.00\r\n[HKEY_CURRENT_USER\\K]\r\n\"a\"=\"\x80?\x81\"\r\n@=hex(2):25,00,41,00,00,00\r\n;\r\n?"s)
    wide += c == '\x80' ? "\xAC\x20"s : c == '\x81' ? "\xB1\x03"s : std::string{c, '\0'};  // the euro sign, and an alpha
  ASSERT_TRUE(zp::ReadRegistryText(wide, entries, damaged, lost));
  ASSERT_EQ(entries.size(), 2u);
  EXPECT_EQ(damaged, 1);
  EXPECT_EQ(lost, 1);
  EXPECT_EQ(std::string(entries[0].data.View()), "\x80??\0"s);
  EXPECT_EQ(std::string(entries[1].data.View()), "%A\0"s);
  EXPECT_FALSE(zp::ReadRegistryText("[HKEY_CURRENT_USER]\n", entries, damaged, lost));
}
