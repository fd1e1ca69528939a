// The shift keys as the thread's messages told of them.

#pragma once

#include <zpbase/platform/messages.h>

namespace zp {

// Notes a message that has been taken from the queue.
void NoteKey(MSG const & message);

}  // namespace zp
