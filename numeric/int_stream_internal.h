// The stream form of the integer vectors.
//
//   offset  width      content
//   0       2          element count, with sign
//   2       2 x count  the low 16 bits of the elements in index order; read with their sign
//
// The vector (1, -2): 02 00, 01 00, FE FF.
#pragma once

#include <zpbase/numeric.h>

#include "numeric/streams_internal.h"

namespace zp {

template <class Vector>
CArchive & WriteIntegers(CArchive & ar, Vector const & vector)
{
  RequireStreamable(vector.GetSize());
  WriteCount(ar, vector.GetSize());
  for (int i = 0; i < vector.GetSize(); ++i) ar << static_cast<WORD>(vector[i]);
  return ar;
}

template <class Vector>
CArchive & ReadIntegers(CArchive & ar, Vector & vector)
{
  return ReadOrEmpty(ar, vector, [&ar] {
    int const size = ReadCount(ar);
    RequireElements(ar, static_cast<ULONGLONG>(size) * sizeof(WORD));
    Vector read(size);
    for (int i = 0; i < size; ++i) {
      short element;
      ar >> element;
      read[i] = element;
    }
    return read;
  });
}

template <class Vector>
void SerializeIntegers(CArchive & ar, Vector & vector)
{
  if (ar.IsStoring()) {
    WriteIntegers(ar, vector);
  } else {
    ReadIntegers(ar, vector);
  }
}

}  // namespace zp
