// What every command of zp shares: exit statuses, failures, and the way to standard output and to whole files.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include <zpbase/platform/string.h>

class CException;
class CFileException;

// The last one stands for an end by the signal that an InterruptGuard held back.
enum ExitStatus { exitDone = 0, exitWanting = 1, exitUsage = 2, exitInterrupted = 130 };

// Ends the command: one line that says which file, where, what was expected and what to do.
class Failure : public std::runtime_error {
 public:
  explicit Failure(std::string const & line, int status = exitWanting);
  int GetStatus() const { return m_nStatus; }

 private:
  int m_nStatus;
};

// A failure for which the system gave the reason, as errno tells it.
class SystemFailure : public Failure {
 public:
  SystemFailure(std::string const & line, int error) : Failure(line), m_nError(error) {}
  int GetError() const { return m_nError; }

 private:
  int m_nError;
};

// Writes to standard output; a failure is noticed by FlushOutput, which raises it.
// On a terminal control characters are shown instead of obeyed.
void Print(std::string_view text);

// What people read, in lines: control characters of the names and texts in it are shown.
void PrintShown(std::string_view lines);

// The same of one line, without its end: line ends and tabs in it are shown too.
void PrintLine(std::string_view line);

void FlushOutput();

// One line of the program's own on standard error, with whatever names in it.
void Tell(std::string_view line);

// Takes those lines in place of standard error; null brings that back. The result is the former one.
using Teller = void (*)(std::string_view line);
Teller SetTeller(Teller teller);

// The line for memory that ran out, which needs none.
void TellMemoryRanOut();

// The library's name for a file that the user names. A backslash in it, which the library would take for the mark between two
// names, is kept by naming the file from the host's root on. Raises Failure where that takes a folder that is gone.
CString InsidePath(std::string const & hostName);

// Whole files by their host names; "-" stands for standard input or output. A device isn't read, and a pipe not beyond a bound. A
// file that is written is replaced at once.
std::string ReadWholeFile(std::string const & name);
void WriteWholeFile(std::string const & name, std::string_view bytes);

// Why a file couldn't be written or replaced, as errno tells it.
std::string ReasonOf(int error);

// Why a file couldn't be opened or made, with what to do; what is its kind, such as "index file", or null where it isn't made.
[[noreturn]] void FailCreating(std::string const & name, char const * what, CFileException const & problem);
[[noreturn]] void FailOpening(std::string const & name, char const * what, CFileException const & problem);

// "standard input" for "-".
std::string ShownName(std::string const & file);

// What a framework exception says, in one sentence without its point.
std::string Describe(CException const & exception);

// "1 record", "2 records".
std::string Counted(unsigned long long count, std::string_view noun);

// The text of an argument, in Windows-1252. Raises a usage failure for what can't be said in it; what names the argument.
CString ToText(std::string_view utf8, std::string_view what);
