// Text files and the warnings file, shown as report documents.

#include <zpbase/config.h>
#include <zpbase/job_folders.h>
#include <zpbase/messages.h>
#include <zpbase/platform/exceptions.h>
#include <zpbase/platform/resources.h>
#include <zpbase/platform/windows.h>
#include <zpbase/store.h>
#include <zpbase/views.h>

#include <memory>

namespace {

constexpr unsigned int titleID = 43268;
constexpr unsigned int noWarningsID = 43277;
constexpr unsigned int noFileID = 43374;
constexpr UINT sentenceSize = 512;

// The lines of the file; false after a message that tells why it can't be opened or read.
bool readLines(GPFile & file, CStringArray & lines)
{
  CString problem;
  try {
    file.InitStringArray(&lines);
    return true;
  } catch (CFileException * caught) {
    zp::ExceptionGuard const guard(caught);
    char sentence[sentenceSize];
    caught->GetErrorMessage(sentence, sentenceSize);
    if (!file.GetOpenProblem(problem)) problem = sentence;
  }
  BeepMsgBox(problem, MB_OK, MB_ICONEXCLAMATION, 0);
  return false;
}

}  // namespace

int GPFile::Browse()
{
  ScanGuard const guard(*this);
  return BrowseFile(m_strPath, noFileID);
}

void BrowseWarnings(int evenIfMissing)
{
  CString const path = CString(job_path) + GetWarningsFileName();
  if (evenIfMissing || GPFile::Exists(path)) BrowseFile(path, noWarningsID);
}

int BrowseFile(CString const & path, unsigned int missingId)
{
  GPFile file(path);
  if (!file.Exists()) {
    PrintfMsgBox(missingId, {path.GetString()});
    return 0;
  }
  auto lines = std::make_unique<CStringArray>();
  if (!readLines(file, *lines)) return 0;
  auto doc = std::make_unique<GPRptDoc>(lines.release(), nullptr);
  doc->SetTitle(zp::FormatResource(titleID, {path.GetString()}));
  LaunchNewDocument(doc.release());
  return 1;
}
