// What zp inspect finds out about a file, and the rooms that look for one kind each.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <zpbase/platform/file.h>

struct FilePart {
  unsigned long long offset;
  unsigned long long length;
  std::string what;
};

struct Inspection {
  std::string file;
  unsigned long long bytes = 0;
  std::string kind;                // "record file of a store"
  std::string version;             // of the form, where it tells one
  std::vector<std::string> holds;  // in short
  std::vector<std::string> faults;
  size_t faultCount = 0;           // which may be more than those
  std::vector<std::string> isNot;  // for a file of no known kind: why it is none of them
  std::vector<std::string> next;   // the commands that go on
  std::vector<FilePart> parts;     // in ascending offset, if they were asked for

  void AddFault(std::string fault);

  // The part behind the last one.
  void AddPart(unsigned long long length, std::string what);

  // Where the last part ends.
  unsigned long long GetEnd() const;

  // A command with the file's name in the place of %, as a shell reads it.
  void GoOn(std::string_view command);
};

// A regular file that is looked at: its first bytes, or all of them as soon as one asks for them.
class InspectedFile {
 public:
  static constexpr size_t headBytes = 0x10000;
  static constexpr unsigned long long mostBytes = 0x40000000;  // of a file that is read whole

  // Raises Failure for one that can't be read.
  InspectedFile(std::string const & name, bool wantsParts);

  std::string const & GetName() const { return m_strName; }
  unsigned long long GetSize() const { return m_nSize; }
  bool WantsParts() const { return m_bParts; }
  CFile const & GetFile() const { return m_File; }

  std::string_view GetHead() const { return m_Head; }

  // Whether nothing in the head is a control character that no text has, or the mark of UTF-16.
  bool IsText() const { return m_bText; }

  // False for a file that is too large for it.
  bool CanBeRead() const { return m_nSize <= mostBytes; }
  std::string const & GetBytes();

  // As many of them as there are.
  std::string Read(unsigned long long position, size_t count) const;

 private:
  std::string m_strName;
  bool m_bParts;
  CFile m_File;
  unsigned long long m_nSize = 0;
  std::string m_Head;
  std::string m_Bytes;
  bool m_bText = false;
};

// Each gives true if it knows the file, when found tells what it is. isNot gets a reason from some that don't.
using Recogniser = bool (*)(InspectedFile & file, Inspection & found);

bool IsHive(InspectedFile & file, Inspection & found);
bool IsMetafile(InspectedFile & file, Inspection & found);
bool IsWorkbook(InspectedFile & file, Inspection & found);
bool IsDrawing(InspectedFile & file, Inspection & found);
bool IsStoreByName(InspectedFile & file, Inspection & found);
bool IsIndexFile(InspectedFile & file, Inspection & found);
bool IsRecordFile(InspectedFile & file, Inspection & found);
bool IsArchive(InspectedFile & file, Inspection & found);
bool IsReport(InspectedFile & file, Inspection & found);
bool IsObjectFile(InspectedFile & file, Inspection & found);
bool IsText(InspectedFile & file, Inspection & found);  // of any kind

// Looks at what the name leads to; a pipe or a device is told and not opened. Never raises Failure: what can't be read is a
// fault.
Inspection InspectFile(std::string const & name, bool wantsParts);
