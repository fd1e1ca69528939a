// An office that was started here: a process group and a folder of its own, both gone when the object goes, and also when this
// process dies before that.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace office {

class OfficeProcess {
 public:
  // Starts the office whose programs lie in programFolder, with a fresh profile in a new folder under parentFolder; it will
  // accept connections at the pipe GetPipeName. Failure(startFailed) with a sentence if the folder can't be made or the program
  // can't be started.
  OfficeProcess(std::string const & programFolder, std::string const & parentFolder);
  ~OfficeProcess();  // kills an office that still runs, and removes the folder
  OfficeProcess(OfficeProcess const &) = delete;
  OfficeProcess & operator=(OfficeProcess const &) = delete;

  std::string const & GetPipeName() const { return m_Pipe; }

  // Whether it has ended, and then with which status. One that wants to be started again, as an office does whose profile is new,
  // is.
  bool HasEnded(int & status);

  // Gives an office that was told to end the time for it.
  void WaitForEnd();

  // An office that is killed leaves its lock beside a workbook that it had open: has it removed in the end.
  void CleanLockOf(std::string const & file) const;

 private:
  void MakeFolder(std::string const & parentFolder);
  void StartGuard();
  void StartOffice();
  void TellGuard(std::string const & what, std::string const & value) const;
  void RemoveFiles() const;

  std::string m_Program;
  std::string m_Folder;
  std::string m_Profile;  // as a URL
  std::string m_Pipe;
  std::vector<std::string> m_Files;  // pipes that an office that is killed leaves behind
  pid_t m_Office = -1;               // and leader of its group; -1 when it has been waited for
  pid_t m_Guard = -1;
  int m_ToGuard = -1;
  int m_nRestarts = 0;
};

// Where the office keeps the pipe of a name.
std::string PipeFile(std::string const & name);

}  // namespace office
