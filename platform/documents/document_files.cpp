// CDocument: new content, and content from a file and to one.

#include <zpbase/platform/documents.h>

#include <zpbase/platform/archive.h>
#include <zpbase/platform/durable_file.h>
#include <zpbase/platform/system_error.h>

namespace {

constexpr UINT sentenceSize = 512;

// A file in memory that shows its bytes.
class Bytes : public CMemFile {
 public:
  std::string_view View() const { return {reinterpret_cast<char const *>(m_lpBuffer), m_nFileSize}; }
};

BOOL refuse(CException const & problem)
{
  char sentence[sentenceSize];
  problem.GetErrorMessage(sentence, sentenceSize);
  AfxMessageBox(sentence, MB_OK | MB_ICONEXCLAMATION);
  return FALSE;
}

}  // namespace

BOOL CDocument::OnNewDocument()
{
  DeleteContents();
  m_strPathName.Empty();
  SetModifiedFlag(FALSE);
  return TRUE;
}

BOOL CDocument::OnOpenDocument(char const * path)
{
  CFile file;
  CFileException problem;
  if (!file.Open(path, CFile::modeRead | CFile::shareDenyWrite, &problem)) return refuse(problem);
  DeleteContents();
  try {
    CArchive ar(&file, CArchive::load);
    Serialize(ar);
    ar.Close();
  } catch (CException * caught) {
    zp::ExceptionGuard const guard(caught);
    DeleteContents();
    return refuse(*caught);
  }
  SetModifiedFlag(FALSE);
  return TRUE;
}

BOOL CDocument::OnSaveDocument(char const * path)
{
  Bytes bytes;
  try {
    CArchive ar(&bytes, CArchive::store);
    Serialize(ar);
    ar.Close();
  } catch (CException * caught) {
    zp::ExceptionGuard const guard(caught);
    return refuse(*caught);
  }
  if (int error = 0; !ReplaceFileDurably(path, bytes.View(), &error))
    return refuse(CFileException(zp::CauseOfError(error), zp::SystemErrorOfError(error), path));
  SetModifiedFlag(FALSE);
  return TRUE;
}
