// Everything the user is told, and the cooperative control of a run.
#pragma once

#include <functional>
#include <initializer_list>
#include <string_view>

#include "platform/format.h"
#include "platform/string.h"

// Message boxes. A box beeps, brings the main window forward and keeps the window behind the focus from taking input while it
// stands. An icon of 0 is the information's (64) for type 0 and the question's (32) for other types; a helpId of 0 is that of the
// string, or 1454. While a simulation runs, every box is the two-button box, whatever its type: the answer is 6 (go on), 7 (the
// run was stopped: the abort flag is 1 and the simulation flag 0) or -1 (dismissed). Texts are cut at 5,000 characters.

ZP_API int BeepMsgBox(CString const & text, unsigned int type, unsigned int icon, unsigned int helpId);
ZP_API int BeepMsgBox(unsigned int id, unsigned int type, unsigned int icon, unsigned int helpId);

// The string resource id formatted with the arguments. Numbers and texts are taken as what they are, in braces or without: a
// conversion that doesn't fit appears as text, and an id without a text is shown with the arguments behind it. Arguments of other
// types must fit the resource, and are lost where it has no text.
ZP_API int PrintfMsgBox(unsigned int id, ...);
ZP_API int PrintfMsgBox(unsigned int id, std::initializer_list<zp::FormatArg> args);
ZP_API int PrintfMsgBoxStyle(unsigned int type, unsigned int icon, unsigned int id, ...);
ZP_API int PrintfMsgBoxStyle(unsigned int type, unsigned int icon, unsigned int id, std::initializer_list<zp::FormatArg> args);

template <class... Args>
requires zp::FormatArgs<Args...>
int PrintfMsgBox(unsigned int id, Args const &... args)
{
  return PrintfMsgBox(id, {zp::FormatArg(args)...});
}

template <class... Args>
requires zp::FormatArgs<Args...>
int PrintfMsgBoxStyle(unsigned int type, unsigned int icon, unsigned int id, Args const &... args)
{
  return PrintfMsgBoxStyle(type, icon, id, {zp::FormatArg(args)...});
}

// A system error's number and text, with what the system was doing.
ZP_API int SystemErrorMsgBox(unsigned long error, CString const & state);
ZP_API int SystemErrorMsgBox(unsigned long error, unsigned int id);

// Sounds for the icons 16 and 48 always, for others if the setting "Beep" in section "Misc" allows it.
ZP_API void GPBeep(unsigned int type);

// 1 if the program may end: the setting "FastQuit" in section "Misc" says so, or the user does.
ZP_API int QuitZephlow();

// Warnings: advice for the user that needs no answer, a line each in the file "WARNINGS" in the job's folder. The setting
// "Warnings" in section "Misc" switches them off with the value "No"; it is read once, at the first use, which also removes the
// last run's file. Without an application object or a job folder nothing is decided or written.

// Non-zero when warnings are wanted.
ZP_API int AllowWarnings();

// All give 1 if warnings are allowed, else 0, and never raise or show a box; a warning that can't be written is lost. The text
// is cut at 260 characters. Those with an id take a string resource, as PrintfMsgBox does, and put the warning's number in front.
ZP_API int PutWarning(char const * format, ...) __attribute__((format(printf, 1, 2)));
ZP_API int PutWarning(unsigned int id, ...);
ZP_API int PutWarning(unsigned int id, std::initializer_list<zp::FormatArg> args);

template <class... Args>
requires zp::FormatArgs<Args...>
int PutWarning(unsigned int id, Args const &... args)
{
  return PutWarning(id, {zp::FormatArg(args)...});
}

// Deletes the warnings file; a missing one is no fault.
ZP_API void FlushWarningsFile();

// Show a text file as a report document in a window of the application: 1, or 0 after a message that tells why not. missingId is
// the string resource for a file that doesn't exist, with the path as its argument. The second shows the warnings file, and says
// that there is none only if evenIfMissing is set.
ZP_API int BrowseFile(CString const & path, unsigned int missingId);
ZP_API void BrowseWarnings(int evenIfMissing);

// The flags of a run, all 0 at first, and process-wide. Set operations for abort and pause give the former value. Nothing but a
// caller clears the abort flag.
ZP_API void SetSimulationInProgress(int value);
ZP_API int SimulationIsInProgress();
ZP_API int GetAbortFlag();
ZP_API int SetAbortFlag(int value);
ZP_API void ClearAbortFlag();
ZP_API int GetPauseFlag();
ZP_API int SetPauseFlag(int value);
ZP_API void ClearPauseFlag();

// Polls a run: delivers the thread's messages, stays while the pause flag is set and the abort flag isn't, and gives the abort
// flag. A quit is posted again for the outer message loop and doesn't stop the run by itself.
ZP_API int AbortRun();

// Delivers all messages in the thread's queue, then gives the thread's object two turns of idle work.
ZP_API void ProcessMessages();

// An id that no timer had before: 1, 2, ...
ZP_API unsigned int GetNextTimerID();

namespace zp {

// As long as it lives, the warnings that are allowed go to take, whole, in place of the file: for a program whose user reads them
// at once. The last one that lives takes them; they are left in reverse.
class ZP_API WarningTaker {
 public:
  using Take = std::function<void(std::string_view text)>;

  explicit WarningTaker(Take take);
  ~WarningTaker();
  WarningTaker(WarningTaker const &) = delete;
  WarningTaker & operator=(WarningTaker const &) = delete;

  void Put(std::string_view text) const { m_Take(text); }

 private:
  Take m_Take;
  WarningTaker * m_pFormer;
};

// Makes the next use decide anew whether warnings are wanted.
ZP_API void ResetWarningsGate();

}  // namespace zp
