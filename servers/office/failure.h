// How an office fails, beside what fails in every server.
#pragma once

#include "servers/common/failure.h"

namespace office {

using servers::Failure;
using servers::Refuse;
using servers::TextOfError;

inline constexpr HRESULT serverUnavailable = static_cast<HRESULT>(0x800706BA);  // the other process doesn't answer any more
inline constexpr HRESULT startFailed = static_cast<HRESULT>(0x80080005);        // the server's process can't be started

}  // namespace office
