// The durable exchange of a store's files.

#include "tools/store/file_exchange.h"

#include <array>

#include <fmt/format.h>
#include <zpbase/platform/durable_file.h>
#include <zpbase/platform/file.h>

#include "tools/host_file.h"
#include "tools/program.h"

namespace {

constexpr char const * markText = "Both new files of this store stand. Finish the exchange with zp store compact.\n";

std::string newName(std::string const & file)
{
  return file + ".compact-new";
}

std::string oldName(std::string const & file)
{
  return file + ".compact-old";
}

std::string markName(StoreNames const & names)
{
  return names.record + ".compact-swap";
}

// In the order of their exchange. Whoever opens the new record file finds the new index beside it; the old one is locked.
std::array<std::string, 2> filesOf(StoreNames const & names)
{
  return {names.index, names.record};
}

void moveFile(std::string const & from, std::string const & to)
{
  int error = 0;
  if (MoveFileDurably(InsidePath(from), InsidePath(to), &error)) return;
  throw Failure(fmt::format("{}: can't take the name {}: {}", from, to, ReasonOf(error)));
}

// A mark that a crash kept from getting its name has one that can be told.
std::string unfinishedMarkName(StoreNames const & names)
{
  return markName(names) + ".zp-new";
}

void writeMark(StoreNames const & names)
{
  int error = 0;
  if (ReplaceFileDurably(InsidePath(markName(names)), markText, &error)) return;
  throw Failure(fmt::format("{}: can't be written: {}", markName(names), ReasonOf(error)));
}

// From any step on. A file that stands beside both its new and its old form was put there by someone else.
void exchange(std::string const & file)
{
  if (!FileExists(newName(file))) {
    if (FileExists(file)) return;
    throw Failure(fmt::format("{}: is missing, and so is {}; rename {} back and remove the mark of the exchange", file,
                              newName(file), oldName(file)));
  }
  if (FileExists(file) && FileExists(oldName(file))) {
    throw Failure(fmt::format("{}: came back during an exchange; keep what you need of it and of {}, and remove one of them",
                              file, oldName(file)));
  }
  if (FileExists(file)) moveFile(file, oldName(file));
  moveFile(newName(file), file);
}

// The exchange is over when both files stand under their names and the mark is gone.
void finish(StoreNames const & names)
{
  try {
    for (std::string const & file : filesOf(names)) exchange(file);
    RemoveFile(markName(names));
  } catch (Failure const & failure) {
    throw Failure(
        fmt::format("{}; the exchange of the store's files is begun: make that possible, and finish it with zp store compact",
                    failure.what()));
  }
  for (std::string const & file : filesOf(names)) DropFile(oldName(file));
}

// After a failure on the way to the mark: says what there is to do. Another program that has seen the mark may be finishing the
// exchange, so a mark that stands, or may stand, stays.
std::string withdraw(StoreNames const & names)
{
  bool isMarked = true;
  try {
    isMarked = IsExchangeMarked(names);
  } catch (Failure const &) {
    return "the exchange of the store's files may have begun: end it with zp store compact";
  }
  if (isMarked) return "finish it with zp store compact";
  for (std::string const & file : filesOf(names)) DropExchange({newName(file), TemporaryName(file)});
  return "the store is as it was";
}

[[noreturn]] void failMarked(StoreNames const & names, CFileException const & problem)
{
  bool const isUsed = problem.m_cause == CFileException::sharingViolation || problem.m_cause == CFileException::lockViolation;
  if (!isUsed) FailOpening(markName(names), nullptr, problem);
  throw Failure(fmt::format("{}: the store is in use by another program; try again when that has ended", names.record));
}

}  // namespace

std::string TemporaryName(std::string const & file)
{
  return file + ".compact-tmp";
}

bool IsExchangeMarked(StoreNames const & names)
{
  return FileExists(markName(names));
}

// The mark says that both new files are whole: with it the exchange is finished, without it undone.
std::string TidyExchange(StoreNames const & names)
{
  if (IsExchangeMarked(names)) {
    CFile mark;
    CFileException problem;
    if (!mark.Open(InsidePath(markName(names)), CFile::modeReadWrite | CFile::shareDenyWrite, &problem)) {
      failMarked(names, problem);
    }
    finish(names);
    return "an interrupted exchange of the store's files was finished";
  }
  bool undone = RemoveFile(unfinishedMarkName(names));
  bool ended = false;
  for (std::string const & file : filesOf(names)) {
    undone |= RemoveFile(newName(file));
    undone |= RemoveFile(TemporaryName(file));
    ended |= FileExists(file) && RemoveFile(oldName(file));
  }
  if (undone) return "what an interrupted command had begun was thrown away";
  return ended ? "the old files of a finished exchange were removed" : "";
}

void DropExchange(StoreNames const & temporary)
{
  DropFile(temporary.index);
  DropFile(temporary.record);
}

void SwapIn(StoreNames const & names)
{
  CFile mark;
  try {
    for (std::string const & file : filesOf(names)) moveFile(TemporaryName(file), newName(file));
    writeMark(names);
    CFileException problem;
    if (!mark.Open(InsidePath(markName(names)), CFile::modeReadWrite | CFile::shareDenyWrite, &problem)) {
      FailOpening(markName(names), nullptr, problem);
    }
  } catch (Failure const & failure) {
    throw Failure(fmt::format("{}; {}", failure.what(), withdraw(names)));
  } catch (std::bad_alloc const &) {
    throw Failure(fmt::format("{}: memory ran out; {}", names.record, withdraw(names)));
  }
  try {
    finish(names);
  } catch (std::bad_alloc const &) {
    finish(names);  // memory may be there again, and each step knows how far it came
  }
}
