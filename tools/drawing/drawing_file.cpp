// Writing a drawing beside the file whose place it takes.

#include "tools/drawing/drawing_file.h"

#include "tools/program.h"

// The writers above go on whatever becomes of their bytes.
void DrawingFile::Append(std::string_view bytes)
{
  if (!m_strProblem.empty()) return;
  try {
    m_Output.Write(bytes);
  } catch (Failure const & failure) {
    m_strProblem = failure.what();
  }
}

void DrawingFile::Finish()
{
  if (!m_strProblem.empty()) throw Failure(m_strProblem);
  m_Output.Finish();
}
