// A folder with a small store in it, for the tests of zp store.

#pragma once

#include <gtest/gtest.h>

#include <map>

#include <zpbase/data.h>
#include <zpbase/store.h>

#include "tests/support/RunProgram.h"
#include "tests/support/TempFolder.h"

using Records = std::map<int, std::string>;

class StoreTool : public testing::Test {
 protected:
  ProgramRun Zp(std::string const & arguments, std::string const & input = "")
  {
    return RunZp(m_Folder.Path(), "store " + arguments, input);
  }

  void Store(Records const & records, std::string const & stem = "a")
  {
    GPDataFile store(m_Folder.Name(stem + ".SI"), m_Folder.Name(stem + ".SR"), CFile::modeReadWrite, nullptr);
    for (auto const & [id, bytes] : records) store.StoreRec(bytes.data(), static_cast<unsigned int>(bytes.size()), id);
  }

  Records Load(std::string const & stem = "a")
  {
    Records records;
    GPDataFile store(m_Folder.Name(stem + ".SI"), m_Folder.Name(stem + ".SR"), CFile::modeRead, nullptr);
    for (int id = 0; id <= 32767; ++id) {
      std::string bytes(store.GetRecLength(id), '\0');
      if (!bytes.empty() && store.LoadRec(bytes.data(), static_cast<unsigned int>(bytes.size()), id) > 0) records[id] = bytes;
    }
    return records;
  }

  // Three records behind each other at 0, 8 and 17, then a free block of 4 bytes at 26.
  void StoreFour()
  {
    Store({{1, "ab"}, {2, "cde"}, {3, "fgh"}, {4, "ijkl"}});
    GPDataFile(m_Folder.Name("a.SI"), m_Folder.Name("a.SR"), CFile::modeReadWrite, nullptr).DeleteRec(4);
  }

  void Patch(std::string const & file, size_t offset, std::string const & bytes)
  {
    std::string content = m_Folder.Read(file);
    m_Folder.Write(file, content.replace(offset, bytes.size(), bytes));
  }

  TempFolder m_Folder;
};
