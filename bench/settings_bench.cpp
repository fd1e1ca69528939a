// Reads of settings from an unchanged file, beside their limit, one stat of that file. The file has 40 sections of 25 keys.
// Each pass makes a million reads, so its time in seconds is that of a read in microseconds. Also single writes into files of
// 100,000 keys, as profile file and as hive, beside their limit, the durable replacement of a file of those bytes.

#include <benchmark/benchmark.h>

#include <sys/stat.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <zpbase/config.h>
#include <zpbase/platform/application.h>
#include <zpbase/platform/durable_file.h>
#include <zpbase/platform/paths.h>

namespace {

constexpr int sections = 40;
constexpr int keys = 25;
constexpr int manyKeys = 2500;
constexpr int reads = 1'000'000;

struct Name {
  std::string section;
  std::string key;
};

std::vector<Name> names(int each = keys)
{
  std::vector<Name> all;
  for (int s = 0; s < sections; ++s)
    for (int k = 0; k < each; ++k) all.push_back({"Section " + std::to_string(s), "TheKey" + std::to_string(k)});
  return all;
}

// A folder with the same settings as profile file and as hive, old enough for their times to be trusted.
class Files {
 public:
  explicit Files(int each = keys)
  {
    std::string folder = (std::filesystem::temp_directory_path() / "zp-settings-bench-XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr) std::abort();
    m_Path = folder;
    setenv("ZP_USER_HIVE", Hive().c_str(), 1);
    std::ofstream profile(Profile());
    std::ofstream hive(Hive());
    hive << "REGEDIT4\r\n";
    std::string last;
    for (Name const & name : names(each)) {
      if (name.section != last) {
        profile << '[' << name.section << "]\n";
        hive << "\r\n[HKEY_CURRENT_USER\\Software\\Acme\\Bench\\" << name.section << "]\r\n";
      }
      last = name.section;
      profile << name.key << "=some text\n";
      hive << '"' << name.key << "\"=\"some text\"\r\n";
    }
    profile.close();
    hive.close();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
  ~Files() { std::filesystem::remove_all(m_Path); }

  std::string Profile() const { return (m_Path / "bench.ini").string(); }
  std::string Hive() const { return (m_Path / "user.reg").string(); }

 private:
  std::filesystem::path m_Path;
};

void readAll(benchmark::State & state)
{
  std::vector<Name> const all = names();
  CString text;
  for (auto _ : state)
    for (int i = 0; i < reads; ++i) {
      Name const & name = all[static_cast<size_t>(i) * 7 % all.size()];
      if (GetSysString(text, name.section.c_str(), name.key.c_str(), CString()) != 9) state.SkipWithError("a setting is missing");
    }
  state.SetItemsProcessed(state.iterations() * reads);
}

void oneStat(benchmark::State & state)
{
  Files const files;
  std::string const file = files.Profile();
  struct stat now;
  for (auto _ : state)
    for (int i = 0; i < reads; ++i) benchmark::DoNotOptimize(stat(file.c_str(), &now));
  state.SetItemsProcessed(state.iterations() * reads);
}

void readProfile(benchmark::State & state)
{
  Files const files;
  CWinApp app("Bench");
  app.SetProfileFile(files.Profile().c_str());
  readAll(state);
}

void readRegistry(benchmark::State & state)
{
  Files const files;
  CWinApp app("Bench");
  app.SetRegistryKey("Acme");
  readAll(state);
}

// Writes one setting after the other, each an old one with another text.
void writeEach(benchmark::State & state)
{
  std::vector<Name> const all = names(manyKeys);
  size_t i = 0;
  for (auto _ : state) {
    Name const & name = all[++i * 7919 % all.size()];
    if (!SetSysString(name.section.c_str(), name.key.c_str(), CString(std::to_string(i)))) state.SkipWithError("not written");
  }
}

void writeProfile(benchmark::State & state)
{
  Files const files(manyKeys);
  CWinApp app("Bench");
  app.SetProfileFile(files.Profile().c_str());
  writeEach(state);
}

void writeRegistry(benchmark::State & state)
{
  Files const files(manyKeys);
  CWinApp app("Bench");
  app.SetRegistryKey("Acme");
  writeEach(state);
}

void replaceBytes(benchmark::State & state, std::string const & file)
{
  std::ostringstream content;
  content << std::ifstream(file).rdbuf();
  CString const name = FromHostPath(file);
  for (auto _ : state)
    if (!ReplaceFileDurably(name, content.str(), nullptr)) state.SkipWithError("not written");
}

void replaceProfile(benchmark::State & state)
{
  Files const files(manyKeys);
  replaceBytes(state, files.Profile());
}

void replaceHive(benchmark::State & state)
{
  Files const files(manyKeys);
  replaceBytes(state, files.Hive());
}

}  // namespace

BENCHMARK(oneStat)->Name("limit/stat")->Unit(benchmark::kSecond);
BENCHMARK(readProfile)->Name("settings/profile file")->Unit(benchmark::kSecond);
BENCHMARK(readRegistry)->Name("settings/registry hive")->Unit(benchmark::kSecond);
BENCHMARK(replaceProfile)->Name("limit/replacing the profile's bytes")->Unit(benchmark::kMillisecond);
BENCHMARK(writeProfile)->Name("write/profile file of 100,000 keys")->Unit(benchmark::kMillisecond);
BENCHMARK(replaceHive)->Name("limit/replacing the hive's bytes")->Unit(benchmark::kMillisecond);
BENCHMARK(writeRegistry)->Name("write/hive of 100,000 keys")->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
