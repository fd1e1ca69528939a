// The platform's exceptions, their sentences for the user, and the only functions that raise them.

#include <zpbase/platform/exceptions.h>

#include <algorithm>
#include <cstring>

IMPLEMENT_DYNAMIC(CException, CObject)
IMPLEMENT_DYNAMIC(CArchiveException, CException)
IMPLEMENT_DYNAMIC(CFileException, CException)
IMPLEMENT_DYNAMIC(CInvalidArgException, CException)
IMPLEMENT_DYNAMIC(COleException, CException)
IMPLEMENT_DYNAMIC(COleDispatchException, CException)

namespace {

// Row n is the sentence of cause n; %s is the file's name.
constexpr char const * archiveSentences[] = {
    "No error occurred.",
    "An unspecified error occurred in %s.",
    "%s was opened for reading and can't be written.",
    "%s ends before what it should hold.",
    "%s was opened for writing and can't be read.",
    "%s refers to an object that isn't there.",
    "%s holds an object of a class that is unknown or doesn't belong there.",
    "%s was written by another version of a class.",
    "The buffer of %s is full.",
};

constexpr char const * fileSentences[] = {
    "No error occurred.",
    "An unspecified error occurred on %s.",
    "%s was not found.",
    "%s is not a valid path.",
    "%s can't be opened: too many files are open.",
    "Access to %s was denied.",
    "%s is not open.",
    "%s is the current folder and can't be removed.",
    "The folder of %s is full.",
    "A place outside %s was asked for.",
    "The device failed on %s.",
    "%s is in use.",
    "A part of %s is locked.",
    "The disk is full while writing %s.",
    "%s ends before what was asked for.",
};

int copySentence(char * text, UINT size, std::string const & sentence)
{
  if (size == 0) return 0;
  size_t const count = std::min<size_t>(sentence.size(), size - 1);
  std::memcpy(text, sentence.data(), count);
  text[count] = '\0';
  return 1;
}

template <size_t count>
std::string sentenceOf(char const * const (&sentences)[count], int cause, CString const & name)
{
  size_t const row = cause >= 0 && static_cast<size_t>(cause) < count ? static_cast<size_t>(cause) : 1;
  std::string sentence(sentences[row]);
  if (size_t const place = sentence.find("%s"); place != std::string::npos)
    sentence.replace(place, 2, name.IsEmpty() ? std::string_view(place == 0 ? "The data" : "the data") : name.View());
  return sentence;
}

}  // namespace

int CException::GetErrorMessage(char * text, UINT size, UINT *) const
{
  if (size > 0) text[0] = '\0';
  return 0;
}

CArchiveException::CArchiveException(int cause, char const * fileName) : m_cause(cause), m_strFileName(fileName) {}

int CArchiveException::GetErrorMessage(char * text, UINT size, UINT *) const
{
  return copySentence(text, size, sentenceOf(archiveSentences, m_cause, m_strFileName));
}

CFileException::CFileException(int cause, LONG osError, char const * fileName)
    : m_cause(cause), m_lOsError(osError), m_strFileName(fileName)
{
}

int CFileException::GetErrorMessage(char * text, UINT size, UINT *) const
{
  return copySentence(text, size, sentenceOf(fileSentences, m_cause, m_strFileName));
}

int CInvalidArgException::GetErrorMessage(char * text, UINT size, UINT *) const
{
  return copySentence(text, size, "An index or position is not inside its container.");
}

int COleException::GetErrorMessage(char * text, UINT size, UINT *) const
{
  CString sentence;
  sentence.Format("The operation failed with the code 0x%08X.", static_cast<UINT>(m_sc));
  return copySentence(text, size, std::string(sentence.View()));
}

int COleDispatchException::GetErrorMessage(char * text, UINT size, UINT * helpContext) const
{
  if (helpContext != nullptr) *helpContext = m_dwHelpContext;
  return copySentence(text, size, std::string(m_strDescription.View()));
}

void AfxThrowArchiveException(int cause, char const * fileName)
{
  throw new CArchiveException(cause, fileName);
}

void AfxThrowFileException(int cause, LONG osError, char const * fileName)
{
  throw new CFileException(cause, osError, fileName);
}

void AfxThrowInvalidArgException()
{
  throw new CInvalidArgException;
}

void AfxThrowOleException(LONG code)
{
  throw new COleException(code);
}

void AfxThrowOleDispatchException(COleDispatchException const & told)
{
  throw new COleDispatchException(told);
}
