// What an operation raises: the framework's exceptions travel as pointers that somebody has to delete.

#pragma once

#include <zpbase/platform/exceptions.h>

// The cause of the file's or archive's exception that the operation raises, the code of an automation exception, 1 for one of
// another class; 0 if it raises none of that class.
template <class Raised, class Operation>
int CodeOf(Operation const & operation)
{
  try {
    operation();
  } catch (Raised * raised) {
    zp::ExceptionGuard const guard(raised);
    if constexpr (requires { raised->m_cause; })
      return raised->m_cause;
    else if constexpr (requires { raised->m_sc; })
      return raised->m_sc;
    else
      return 1;
  }
  return 0;
}
