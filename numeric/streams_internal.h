// The stream forms of the numeric containers: 16-bit counts with a sign, then the elements; and what happens to a damaged one.
#pragma once

#include <zpbase/foundation.h>
#include <zpbase/platform/archive.h>

namespace zp {

// Raises genericException for a size, row or column count that 16 bits with a sign can't hold.
void RequireStreamable(int count);
void WriteCount(CArchive & ar, int count);

// A count as it was written; a negative one raises endOfFile.
int ReadCount(CArchive & ar);

// Raises endOfFile if fewer bytes are left. They are used up then, so that nothing behind a cut container reads its elements.
void RequireElements(CArchive & ar, ULONGLONG bytes);

void WriteElements(CArchive & ar, double const * elements, std::size_t count);
void ReadElements(CArchive & ar, double * elements, std::size_t count);

// Tells the user that the object could not be read.
void ReportDamage(CObject const & object, CArchiveException const & problem);

// Reads into an emptied container. An archive's exception shows a message, and the container is empty afterwards.
template <class Container, class Read>
CArchive & ReadOrEmpty(CArchive & ar, Container & container, Read read)
{
  container.Empty();
  try {
    container = read();
  } catch (CArchiveException * problem) {
    ExceptionGuard const guard(problem);
    ReportDamage(container, *problem);
  }
  return ar;
}

}  // namespace zp
