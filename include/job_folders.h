// The job's directories, each a prefix that ends in a backslash, empty until the application sets them. Part of text.h.
#pragma once

#include "platform/types.h"

extern ZP_API char job_path[260];
extern ZP_API char workfile_path[260];
extern ZP_API char poolfile_path[260];
