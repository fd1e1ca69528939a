// Everything the user is told, and the cooperative control of a run.
#pragma once

#include "platform/string.h"

// Warnings: advice for the user that needs no answer, a line each in the file "WARNINGS" in the job's folder. The setting
// "Warnings" in section "Misc" switches them off with the value "No"; it is read once, at the first use, which also removes the
// last run's file. Without an application object or a job folder nothing is decided or written.

// Non-zero when warnings are wanted.
ZP_API int AllowWarnings();

// Both give 1 if warnings are allowed, else 0, and never raise or show a box; a warning that can't be written is lost. The text
// is cut at 260 characters. The second takes a string resource and puts the warning's number in front.
ZP_API int PutWarning(char const * format, ...) __attribute__((format(printf, 1, 2)));
ZP_API int PutWarning(unsigned int id, ...);

// Deletes the warnings file; a missing one is no fault.
ZP_API void FlushWarningsFile();

namespace zp {

// Makes the next use decide anew whether warnings are wanted.
ZP_API void ResetWarningsGate();

}  // namespace zp
