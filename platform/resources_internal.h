// The table that resources/strings.txt is compiled into.

#pragma once

namespace zp {

struct ResourceText {
  unsigned int nID;
  char const * pText;
};

extern ResourceText const g_ApplicationTexts[];
extern unsigned int const g_nApplicationTexts;

}  // namespace zp
