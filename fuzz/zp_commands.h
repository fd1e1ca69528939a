// Commands of zp run in this process, on files of the scratch folder.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <zpbase/platform/exceptions.h>
#include <zpbase/platform/paths.h>
#include <zpbase/store.h>

#include "fuzz/scratch_folder.h"
#include "tools/commands.h"

inline void require(bool holds)
{
  if (!holds) std::abort();
}

inline std::string pathOf(std::string_view name)
{
  return scratchFolder() + "/" + std::string(name);
}

inline void writeFile(std::string const & name, std::string_view bytes)
{
  std::ofstream(pathOf(name), std::ios::binary) << bytes;
}

inline std::string readFile(std::string const & name)
{
  std::ifstream in(pathOf(name), std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

inline bool isFile(std::string const & name)
{
  return access(pathOf(name).c_str(), F_OK) == 0;
}

inline void removeFiles(std::initializer_list<std::string> names)
{
  for (std::string const & name : names) unlink(pathOf(name).c_str());
}

// Runs a command of the family that add brings, and gives its status, which is never that of a wrong use. What it prints goes
// into the file "out".
inline int runCommand(void (*add)(CLI::App & app, int & status), std::vector<std::string> words)
{
  static bool const isRedirected = std::freopen(pathOf("out").c_str(), "w", stdout) != nullptr;
  require(isRedirected && std::fflush(stdout) == 0 && ftruncate(STDOUT_FILENO, 0) == 0);
  std::rewind(stdout);
  CLI::App app;
  int status = exitDone;
  add(app, status);
  std::reverse(words.begin(), words.end());
  try {
    app.parse(words);
  } catch (Failure const & failure) {
    Tell(failure.what());
    status = failure.GetStatus();
  } catch (CException * caught) {
    zp::ExceptionGuard const guard(caught);
    status = exitWanting;
  }
  std::fflush(stdout);
  require(status == exitDone || status == exitWanting);
  return status;
}

inline int runStore(std::vector<std::string> words)
{
  words.insert(words.begin(), "store");
  return runCommand(AddStoreCommands, std::move(words));
}

// The records of a store by the library, without those whose bytes aren't there.
inline std::map<int, std::string> recordsOf(std::string const & stem)
{
  std::map<int, std::string> records;
  GPDataFile store(FromHostPath(pathOf(stem + ".SI")), FromHostPath(pathOf(stem + ".SR")), CFile::modeRead, nullptr);
  std::string buffer(zp::maxRecordLength, '\0');
  for (int id = 0; id <= zp::maxRecordID; ++id) {
    if (store.GetRecLength(id) == 0) continue;
    unsigned int const length = store.LoadRec(buffer.data(), static_cast<unsigned int>(buffer.size()), id);
    if (length != 0) records[id] = buffer.substr(0, length);
  }
  return records;
}
