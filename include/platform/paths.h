// Where the two forms of a path meet: inside the library a path uses backslashes and "C:\" is the host's root; the host has
// slashes. Bytes and case of names pass unchanged.
#pragma once

#include <string>
#include <string_view>

#include "string.h"
#include "types.h"

// The host's form of a path: a drive prefix "C:" is dropped and backslashes become slashes; a path that starts with "/" is
// taken as it stands. False, with hostPath empty, for another drive, a network name, or a path with a zero byte (badPath).
ZP_API bool ToHostPath(std::string_view path, std::string & hostPath);

// The inside form: "/var/job" gives "C:\var\job", a relative path stays relative.
ZP_API CString FromHostPath(std::string_view hostPath);
