// The file that a drawing is written to: records are gathered into large pieces, and the file of that name is replaced at the
// end, or stays as it was.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "tools/drawing/drawing_output.h"

class DrawingFile : public DrawingOutput {
 public:
  // "-" is standard output; that, a pipe or a device gets the bytes at once and keeps what it got. Raises Failure.
  explicit DrawingFile(std::string const & target);
  ~DrawingFile() override;

  // The bytes are in the file, and it has their length; else Failure. It can be read back by the name.
  void Finish();
  std::string const & GetWrittenName() const { return m_strWritten; }

  // The finished file takes the place of the target.
  void Replace();

 private:
  void Append(std::string_view bytes) override;
  void WriteGathered();

  struct CloseFile {
    void operator()(std::FILE * file) const;
  };

  std::string m_strTarget;
  std::string m_strWritten;
  std::unique_ptr<std::FILE, CloseFile> m_pOutput;
  bool m_bReplaces;
  std::string m_Gathered;
  int m_nProblem = 0;  // of the first write that failed, as the host's error number
};
