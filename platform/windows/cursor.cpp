// The thread's cursor, and the standard ones.

#include <zpbase/platform/input.h>

#include <utility>

namespace {

thread_local HCURSOR t_pCursor = nullptr;

}  // namespace

HCURSOR SetCursor(HCURSOR cursor)
{
  return std::exchange(t_pCursor, cursor);
}

HCURSOR GetCursor()
{
  return t_pCursor;
}
