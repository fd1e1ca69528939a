// The file that a drawing is written to: the file of that name is replaced at the end, or stays as it was.
#pragma once

#include <string>

#include "tools/drawing/drawing_output.h"
#include "tools/output_file.h"

class DrawingFile : public DrawingOutput {
 public:
  // "-" is standard output; that, a pipe or a device gets the bytes at once and keeps what it got. Raises Failure.
  explicit DrawingFile(std::string const & target) : m_Output(target) {}

  // The bytes are in the file, and it has their length; else Failure. It can be read back by the name.
  void Finish();
  std::string const & GetWrittenName() const { return m_Output.GetWrittenName(); }

  // The finished file takes the place of the target.
  void Replace() { m_Output.Commit(); }

 private:
  void Append(std::string_view bytes) override;

  OutputFile m_Output;
  std::string m_strProblem;  // of the first write that failed
};
