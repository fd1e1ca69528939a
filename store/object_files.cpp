// Objects in files of their own: the object's fields alone, without class tag, name or schema.

#include <zpbase/foundation.h>

#include <zpbase/messages.h>
#include <zpbase/platform/archive.h>
#include <zpbase/store.h>

namespace zp {
namespace {

constexpr int bufferSize = 4096;
constexpr unsigned int unreadableFileID = 43782;  // name, cause, text
constexpr UINT sentenceSize = 260;

// Shows why the file can't be read.
void tellDamage(CString const & name, CArchiveException const & problem)
{
  char sentence[sentenceSize];
  problem.GetErrorMessage(sentence, sentenceSize);
  PrintfMsgBox(unreadableFileID, {name.GetString(), problem.m_cause, sentence});
}

// What read raises passes, and closes the file all the same.
template <class Read>
int loadFile(CString const & name, Read read)
{
  if (GPFile::IsEmpty(name)) return 0;
  GPFile file(name);
  if (!file.Open(CFile::modeRead)) file.RaiseOpenProblem();
  CArchive archive(&file, CArchive::load, bufferSize);
  read(archive);
  archive.Close();
  if (file.IsOpen()) file.Close();
  return 1;
}

// On an archive's exception the message comes first, while the elements read so far and the file are still there; then the
// container is emptied.
template <class Container>
int loadContainer(CString const & name, Container & container)
{
  return loadFile(name, [&](CArchive & archive) {
    try {
      container.Serialize(archive);
    } catch (CArchiveException * problem) {
      ExceptionGuard const guard(problem);
      tellDamage(name, *problem);
      container.Empty();
    }
  });
}

int loadObject(CString const & name, CObject & object)
{
  return loadFile(name, [&](CArchive & archive) { object.Serialize(archive); });
}

// Everything is streamed into memory first: content that a stream can't hold raises while the old file still stands.
int storeObject(CString const & name, CObject & object)
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

}  // namespace
}  // namespace zp

int GPObject::Load(CString const & name)
{
  return zp::loadObject(name, *this);
}

int GPObject::Store(CString const & name)
{
  return zp::storeObject(name, *this);
}

int GPObArray::Load(CString const & name)
{
  return zp::loadContainer(name, *this);
}

int GPObArray::Store(CString const & name)
{
  return zp::storeObject(name, *this);
}

int GPObList::Load(CString const & name)
{
  return zp::loadContainer(name, *this);
}

int GPObList::Store(CString const & name)
{
  return zp::storeObject(name, *this);
}

int GPUIntArray::Load(CString const & name)
{
  return zp::loadObject(name, *this);
}

int GPUIntArray::Store(CString const & name)
{
  return zp::storeObject(name, *this);
}
