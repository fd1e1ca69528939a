// Bytes out of an archive and into one. Each goes through a file whose memory the archive uses directly and through one behind
// a small buffer, and both must agree.

#pragma once

#include <functional>
#include <string>
#include <string_view>

#include <zpbase/platform/archive.h>

using ArchiveStep = std::function<void(CArchive &)>;

// What write puts into an archive.
std::string Stored(ArchiveStep const & write);

// The cause of the archive exception that ends write or read; none if there is none. The bytes are a block of their exact
// length, so that sanitizers see a read behind them.
int CauseOfStoring(ArchiveStep const & write);
int CauseOfLoading(std::string_view bytes, ArchiveStep const & read);

// Reads bytes cut at every length, which must be endOfFile, and with each byte changed in several ways, which may give anything
// but a fault of memory.
void LoadDamaged(std::string const & bytes, ArchiveStep const & read);
