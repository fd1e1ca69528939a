// Counts and elements of the containers' streams, and the message of a damaged one.
#include "numeric/streams_internal.h"

#include <zpbase/messages.h>
#include <zpbase/numeric.h>

namespace zp {

namespace {

constexpr unsigned int damagedStreamId = 43783;  // string resource: class, cause, the exception's text

}  // namespace

void RequireStreamable(int count)
{
  if (count > maxStreamedCount) AfxThrowArchiveException(CArchiveException::genericException);
}

void WriteCount(CArchive & ar, int count)
{
  ar << static_cast<WORD>(count);
}

int ReadCount(CArchive & ar)
{
  short count;
  ar >> count;
  if (count < 0) AfxThrowArchiveException(CArchiveException::endOfFile);
  return count;
}

void RequireElements(CArchive & ar, ULONGLONG bytes)
{
  try {
    ar.RequireBytes(bytes);
  } catch (CArchiveException *) {
    BYTE rest[512];
    while (ar.Read(rest, sizeof rest) == sizeof rest) {
    }
    throw;
  }
}

void WriteElements(CArchive & ar, double const * elements, std::size_t count)
{
  for (std::size_t i = 0; i < count; ++i) ar << elements[i];
}

void ReadElements(CArchive & ar, double * elements, std::size_t count)
{
  for (std::size_t i = 0; i < count; ++i) ar >> elements[i];
}

void ReportDamage(CObject const & object, CArchiveException const & problem)
{
  char text[260];
  problem.GetErrorMessage(text, sizeof text);
  PrintfMsgBox(damagedStreamId, {object.GetRuntimeClass()->m_lpszClassName, problem.m_cause, text});
}

}  // namespace zp
