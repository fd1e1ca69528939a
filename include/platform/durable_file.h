// The replacement of whole files so that readers and crashes meet the old bytes or the new ones, never a mixture.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "types.h"

// Replaces a whole file so that every reader, also after a crash, sees the old bytes or the new ones: written beside it, synced
// and renamed, under a lock on the folder; EWOULDBLOCK when another program has held that for ten seconds. Both forms of path
// will do; links are followed, the mode of the old file is kept. False on failure, with the host's error number in error; the old
// file then stands untouched.
ZP_API bool ReplaceFileDurably(char const * target, std::string_view content, int * error = nullptr);

// The same if mayReplace allows it, which is asked under the lock with the host path of the file that was written beside the
// target and is about to take its place. ECANCELED if it doesn't.
ZP_API bool ReplaceFileDurablyIf(char const * target, std::string_view content,
                                 std::function<bool(std::string const & written)> const & mayReplace, int * error = nullptr);

// ReplaceFileDurably with a file that is written already and lies in the same file system: it is synced and takes the target's
// place.
ZP_API bool MoveFileDurably(char const * written, char const * target, int * error = nullptr);
