// GPVector: construction, size, searching and its stream form.
//
//   offset  width      content
//   0       2          element count, with sign
//   2       8 x count  the elements in index order, IEEE 754 double
//
// The vector (1.0): 01 00, 00 00 00 00 00 00 F0 3F.

#include <zpbase/numeric.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

#include "numeric/sorting_internal.h"
#include "numeric/storage_internal.h"
#include "numeric/streams_internal.h"

IMPLEMENT_SERIAL(GPVector, GPObject, 1)

namespace {

// The order of searching: neither below nor above is equal, NaNs and infinities of one sign included.
int compareNumbers(double a, double b)
{
  double const difference = a - b;
  if (difference < 0.0) return -1;
  return difference > 0.0 ? 1 : 0;
}

}  // namespace

GPVector::GPVector(int size, double value) : GPVector(zp::ElementAccess::MakeVector(size))
{
  Reset(value);
}

GPVector::GPVector(int size, double const * values) : GPVector(zp::ElementAccess::MakeVector(size))
{
  if (values) {
    std::copy_n(values, Count(), ArrayPtr());
  } else {
    Reset(0.0);
  }
}

GPVector::GPVector(int size, float const * values) : GPVector(zp::ElementAccess::MakeVector(size))
{
  std::copy_n(values, Count(), ArrayPtr());
}

GPVector::GPVector(GPMatrix const & matrix, int column)
{
  matrix.GetColumnVector(*this, column);
}

GPObject * GPVector::Clone() const
{
  return new GPVector(*this);
}

void GPVector::Swap(int i, int j)
{
  std::swap((*this)[i], (*this)[j]);
}

void GPVector::Empty()
{
  m_Block = zp::DoubleBlock();
}

// The old block goes last: values may point into it.
void GPVector::ChangeSize(int size, double const * values)
{
  GPVector changed = zp::ElementAccess::MakeVector(size);
  if (values) {
    std::copy_n(values, changed.Count(), changed.ArrayPtr());
  } else {
    std::size_t const kept = std::min(Count(), changed.Count());
    std::copy_n(ArrayPtr(), kept, changed.ArrayPtr());
    std::fill_n(changed.ArrayPtr() + kept, changed.Count() - kept, 0.0);
  }
  *this = std::move(changed);
}

void GPVector::Reset(double value)
{
  std::fill_n(ArrayPtr(), Count(), value);
}

float * GPVector::GetFloatArray() const
{
  if (IsEmpty()) return nullptr;
  auto floats = std::make_unique_for_overwrite<float[]>(Count());
  std::transform(ArrayPtr(), ArrayPtr() + Count(), floats.get(), [](double element) { return static_cast<float>(element); });
  return floats.release();
}

void GPVector::Sort()
{
  zp::SortDoubles(ArrayPtr(), Count());
}

int GPVector::BSearch(double const & value) const
{
  int low = 0;
  int high = GetSize() - 1;
  while (low <= high) {
    int const middle = low + (high - low) / 2;
    int const order = compareNumbers(value, (*this)[middle]);
    if (order == 0) return middle;
    if (order < 0) {
      high = middle - 1;
    } else {
      low = middle + 1;
    }
  }
  return -1;
}

int GPVector::LocateValue(double const & value) const
{
  double const * const end = ArrayPtr() + Count();
  double const * const found = std::find(ArrayPtr(), end, value);
  return found == end ? -1 : static_cast<int>(found - ArrayPtr());
}

int GPVector::operator==(GPVector const & other) const
{
  if (Count() != other.Count()) return 0;
  return IsEmpty() || std::memcmp(ArrayPtr(), other.ArrayPtr(), Count() * sizeof(double)) == 0;
}

void GPVector::Serialize(CArchive & ar)
{
  GPObject::Serialize(ar);
  if (ar.IsStoring()) {
    ar << *this;
  } else {
    ar >> *this;
  }
}

CArchive & operator<<(CArchive & ar, GPVector const & vector)
{
  zp::RequireStreamable(vector.GetSize());
  zp::WriteCount(ar, vector.GetSize());
  zp::WriteElements(ar, vector.ArrayPtr(), zp::ElementAccess::Count(vector));
  return ar;
}

CArchive & operator>>(CArchive & ar, GPVector & vector)
{
  return zp::ReadOrEmpty(ar, vector, [&ar] {
    int const size = zp::ReadCount(ar);
    zp::RequireElements(ar, static_cast<ULONGLONG>(size) * sizeof(double));
    GPVector read = zp::ElementAccess::MakeVector(size);
    zp::ReadElements(ar, read.ArrayPtr(), zp::ElementAccess::Count(read));
    return read;
  });
}
