// The tables that resources/strings.txt and resources/templates.txt are compiled into.

#pragma once

#include <zpbase/platform/windows.h>

namespace zp {

struct ResourceText {
  unsigned int nID;
  char const * pText;
};

extern ResourceText const applicationTexts[];
extern unsigned int const applicationTextCount;

extern DialogTemplate const applicationTemplates[];
extern unsigned int const applicationTemplateCount;

}  // namespace zp
