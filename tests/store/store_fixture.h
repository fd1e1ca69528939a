// A record store in a folder of its own, the bytes of one, and hosts that fail.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <string>
#include <string_view>

#include <zpbase/platform/archive.h>
#include <zpbase/platform/host_calls.h>
#include <zpbase/store.h>

#include "tests/support/Raised.h"
#include "tests/support/TempFolder.h"

class Store : public ::testing::Test {
 protected:
  std::unique_ptr<GPDataFile> Open(unsigned int mode = CFile::modeReadWrite)
  {
    return std::make_unique<GPDataFile>(folder.Name("a.si"), folder.Name("a.sr"), mode, nullptr);
  }

  static int Put(GPDataFile & store, int id, std::string_view bytes)
  {
    return store.StoreRec(bytes.data(), static_cast<unsigned int>(bytes.size()), id);
  }

  static std::string Get(GPDataFile & store, int id)
  {
    std::string bytes(store.GetRecLength(id), '\0');
    bytes.resize(store.LoadRec(bytes.data(), static_cast<unsigned int>(bytes.size()), id));
    return bytes;
  }

  int CauseOfOpen()
  {
    return CodeOf<CArchiveException>([this] { Open(); });
  }

  TempFolder folder;
};

inline std::string const recordFile = FromHex("01 00 04 00 04 00 \"ABCD\" 02 00 02 00 02 00 \"XY\"");
inline std::string const indexAfterDelete = FromHex(
    "FF FF 01 00 08 00 \"GPObject\""
    "FF FF 01 00 09 00 \"GPObArray\" 01 00"
    "FF FF 01 00 0B 00 \"GPActiveRec\" 0A 00 00 00 02 00 02 00"
    "FF FF 01 00 08 00 \"GPObList\" 01 00"
    "FF FF 01 00 0A 00 \"GPEmptyRec\" 00 00 00 00 04 00");

inline zp::HostCalls g_Real;  // as a KeptHost found them
inline size_t g_nRoom = 0;    // bytes that may still be written behind the end of a file

// A full disk: a write that makes a file longer takes what there is room for, and then nothing.
inline long writeIntoRoom(int file, void const * buffer, size_t count, LONGLONG position)
{
  zp::HostStatus status;
  g_Real.GetStatus(file, status);
  auto const inside = static_cast<size_t>(std::clamp<LONGLONG>(status.size - position, 0, static_cast<LONGLONG>(count)));
  size_t const grown = std::min(count - inside, g_nRoom);
  g_nRoom -= grown;
  if (inside + grown > 0) return g_Real.WriteAt(file, buffer, inside + grown, position);
  errno = ENOSPC;
  return -1;
}

// Puts the table of host calls back.
struct KeptHost {
  KeptHost() { g_Real = zp::GetHostCalls(); }
  ~KeptHost() { zp::GetHostCalls() = g_Real; }
};
