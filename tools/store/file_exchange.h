// The exchange of a store's two files for new ones, so that an interruption at any point loses nothing.
//
//   F.compact-tmp    a new file that is still being written
//   F.compact-new    a new file, whole and synced
//   R.compact-swap   the mark, beside the record file R: both new files stand, the exchange is to be finished
//   F.compact-old    an old file that has made room
//
// The steps, each durable before the next: both .compact-new; the mark; for each file F to F.compact-old, then F.compact-new to
// F; the mark goes; the old files go. Without the mark what is left of new files is thrown away and the store is as it was, or
// the exchange was over and only old files are left; with it the exchange is finished from whatever step it reached.
#pragma once

#include <string>

#include "tools/store/store_names.h"

std::string TemporaryName(std::string const & file);

// True while an exchange is under way or was interrupted: the two files may not belong together.
bool IsExchangeMarked(StoreNames const & names);

// Finishes or undoes what an interrupted exchange left, and tells what it did; an empty text for nothing. The caller has the
// record file for itself, if there is one. Raises Failure while another program is at it.
std::string TidyExchange(StoreNames const & names);

// Removes temporary files that nothing became of.
void DropExchange(StoreNames const & temporary);

// Puts the two temporary files in the place of the store's files. Raises Failure, which tells how far it came; before the mark
// stands everything is as it was.
void SwapIn(StoreNames const & names);
