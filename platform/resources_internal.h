// The tables that resources/strings.txt and resources/templates.txt are compiled into.

#pragma once

#include <zpbase/platform/windows.h>

namespace zp {

struct ResourceText {
  unsigned int nID;
  char const * pText;
};

extern ResourceText const g_ApplicationTexts[];
extern unsigned int const g_nApplicationTexts;

extern DialogTemplate const g_ApplicationTemplates[];
extern unsigned int const g_nApplicationTemplates;

}  // namespace zp
