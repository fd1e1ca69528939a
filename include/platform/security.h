// The rights of what is made anew: those of the host's defaults, whatever is asked for.
#pragma once

#include "types.h"

struct SECURITY_ATTRIBUTES {
  DWORD nLength;
  void * lpSecurityDescriptor;
  BOOL bInheritHandle;
};
