// Objects in files of their own: the object's fields alone, without class tag, name or schema.

#include <zpbase/messages.h>
#include <zpbase/platform/archive.h>
#include <zpbase/store.h>

#include "foundation/foundation_internal.h"

namespace zp {
namespace {

constexpr int bufferSize = 4096;
constexpr unsigned int unreadableFileID = 43782;  // name, cause, text
constexpr UINT sentenceSize = 260;

// Shows why the file can't be read, and releases the exception.
void tellDamage(CString const & name, CArchiveException * problem)
{
  ExceptionGuard const guard(problem);
  char sentence[sentenceSize];
  problem->GetErrorMessage(sentence, sentenceSize);
  PrintfMsgBox(unreadableFileID, {name.GetString(), problem->m_cause, sentence});
}

// Loads and, on an archive's exception, shows it and leaves the container empty.
template <class Container>
int loadContainer(CString const & name, Container & container)
{
  try {
    return LoadObjectFile(name, container);
  } catch (CArchiveException * problem) {
    container.Empty();
    tellDamage(name, problem);
    return 1;
  }
}

}  // namespace

int LoadObjectFile(CString const & name, CObject & object)
{
  if (GPFile::IsEmpty(name)) return 0;
  GPFile file(name);
  file.Open(CFile::modeRead);
  CArchive archive(&file, CArchive::load, bufferSize);
  object.Serialize(archive);
  archive.Close();
  if (file.IsOpen()) file.Close();
  return 1;
}

// Everything is streamed into memory first: content that a stream can't hold raises while the old file still stands.
int StoreObjectFile(CString const & name, CObject & object)
{
  CMemFile content(bufferSize);
  CArchive archive(&content, CArchive::store, bufferSize);
  object.Serialize(archive);
  archive.Close();
  if (content.GetLength() > UINT32_MAX) AfxThrowArchiveException(CArchiveException::genericException, name);

  GPFile file(name);
  if (!file.Open(CFile::modeCreate)) return GPFile::Exists(name);
  auto const length = static_cast<UINT>(content.GetLength());
  void * first = nullptr;
  void * end = nullptr;
  content.SeekToBegin();
  content.GetBufferPtr(CFile::bufferRead, length, &first, &end);
  if (length > 0) file.Write(first, length);
  file.Close();
  return file.Exists();
}

}  // namespace zp

int GPObject::Load(CString const & name)
{
  return zp::LoadObjectFile(name, *this);
}

int GPObject::Store(CString const & name)
{
  return zp::StoreObjectFile(name, *this);
}

int GPObArray::Load(CString const & name)
{
  return zp::loadContainer(name, *this);
}

int GPObArray::Store(CString const & name)
{
  return zp::StoreObjectFile(name, *this);
}

int GPObList::Load(CString const & name)
{
  return zp::loadContainer(name, *this);
}

int GPObList::Store(CString const & name)
{
  return zp::StoreObjectFile(name, *this);
}
