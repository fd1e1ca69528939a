// Advice for the user that no exception carries.
#pragma once

#include <string_view>

#include <zpbase/messages.h>
#include <zpbase/platform/encoding.h>

#include "office_text.h"

namespace office {

inline void Warn(std::string_view sentence)  // in UTF-8
{
  std::string text;
  zp::AppendWide(text, ViewOf(FromUtf8(sentence)));
  PutWarning("%s", text.c_str());
}

}  // namespace office
