// GPIntVector: size, searching, arithmetic and sets. Arithmetic runs on unsigned numbers, which wrap.

#include <zpbase/numeric.h>

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

#include "numeric/int_stream_internal.h"
#include "numeric/kernels_internal.h"
#include "numeric/sets_internal.h"
#include "numeric/sorting_internal.h"
#include "numeric/storage_internal.h"
#include "numeric/sums_internal.h"

IMPLEMENT_SERIAL(GPIntVector, GPObject, 1)

namespace {

using Words = zp::ElementKernels<std::uint32_t>;

Words const & kernels()
{
  return zp::GetKernels().words;
}

std::uint32_t * words(int * elements)
{
  return reinterpret_cast<std::uint32_t *>(elements);
}
std::uint32_t const * words(int const * elements)
{
  return reinterpret_cast<std::uint32_t const *>(elements);
}

void apply(Words::Pairwise kernel, zp::IntBlock const & left, GPIntVector const & right)
{
  kernel(words(left.Get()), words(left.Get()), words(right.ArrayPtr()), left.Count());
}

void apply(Words::WithScalar kernel, zp::IntBlock const & left, int right)
{
  kernel(words(left.Get()), words(left.Get()), static_cast<std::uint32_t>(right), left.Count());
}

// A division by 0 leaves the value; the processor refuses the one by -1 that wraps.
int quotient(int left, int right)
{
  if (right == 0) return left;
  return right == -1 ? static_cast<int>(0u - static_cast<std::uint32_t>(left)) : left / right;
}

using SetOperation = std::size_t (*)(int *, int const *, std::size_t, int const *, std::size_t);

GPIntVector combineSets(SetOperation operation, GPIntVector const & left, GPIntVector const & right, int most)
{
  GPIntVector result = zp::ElementAccess::MakeIntVector(most);
  std::size_t const count = operation(result.ArrayPtr(), left.ArrayPtr(), static_cast<std::size_t>(left.GetSize()),
                                      right.ArrayPtr(), static_cast<std::size_t>(right.GetSize()));
  if (static_cast<int>(count) < most) result.ChangeSize(static_cast<int>(count));
  return result;
}

}  // namespace

GPObject * GPIntVector::Clone() const
{
  return new GPIntVector(*this);
}

void GPIntVector::Swap(int i, int j)
{
  std::swap((*this)[i], (*this)[j]);
}

void GPIntVector::Reset(int value)
{
  std::fill_n(ArrayPtr(), m_Elements.Count(), value);
}

void GPIntVector::InitSequentialValues(int start, int step)
{
  auto value = static_cast<std::uint32_t>(start);
  for (std::size_t i = 0; i < m_Elements.Count(); ++i, value += static_cast<std::uint32_t>(step)) {
    ArrayPtr()[i] = static_cast<int>(value);
  }
}

void GPIntVector::Sort()
{
  zp::SortInts(ArrayPtr(), m_Elements.Count());
}

int GPIntVector::BSearch(int value) const
{
  int low = 0;
  int high = GetSize() - 1;
  while (low <= high) {
    int const middle = low + (high - low) / 2;
    auto const difference = static_cast<int>(static_cast<std::uint32_t>(value) - static_cast<std::uint32_t>((*this)[middle]));
    if (difference == 0) return middle;
    if (difference < 0) {
      high = middle - 1;
    } else {
      low = middle + 1;
    }
  }
  return -1;
}

int GPIntVector::LocateValue(int value) const
{
  int const * const end = ArrayPtr() + m_Elements.Count();
  int const * const found = std::find(ArrayPtr(), end, value);
  return found == end ? -1 : static_cast<int>(found - ArrayPtr());
}

int GPIntVector::operator==(GPIntVector const & other) const
{
  return std::equal(ArrayPtr(), ArrayPtr() + m_Elements.Count(), other.ArrayPtr(), other.ArrayPtr() + other.m_Elements.Count());
}

int GPIntVector::Sum() const
{
  std::uint32_t sum = 0;
  for (std::size_t i = 0; i < m_Elements.Count(); ++i) sum += words(ArrayPtr())[i];
  return static_cast<int>(sum);
}

int GPIntVector::NonZeros() const
{
  return GetSize() - static_cast<int>(std::count(ArrayPtr(), ArrayPtr() + m_Elements.Count(), 0));
}

int GPIntVector::DotProduct(GPIntVector const & other) const
{
  std::uint32_t sum = 0;
  for (std::size_t i = 0; i < m_Elements.Count(); ++i) sum += words(ArrayPtr())[i] * words(other.ArrayPtr())[i];
  return static_cast<int>(sum);
}

double GPIntVector::DotProduct(GPVector const & other) const
{
  return zp::DotProduct(other.ArrayPtr(), ArrayPtr(), m_Elements.Count());
}

GPIntVector & GPIntVector::operator+=(int right)
{
  apply(kernels().addScalar, m_Elements, right);
  return *this;
}

GPIntVector & GPIntVector::operator+=(GPIntVector const & right)
{
  apply(kernels().add, m_Elements, right);
  return *this;
}

GPIntVector & GPIntVector::operator-=(int right)
{
  apply(kernels().subtractScalar, m_Elements, right);
  return *this;
}

GPIntVector & GPIntVector::operator-=(GPIntVector const & right)
{
  apply(kernels().subtract, m_Elements, right);
  return *this;
}

GPIntVector & GPIntVector::operator*=(int right)
{
  apply(kernels().multiplyScalar, m_Elements, right);
  return *this;
}

GPIntVector & GPIntVector::operator*=(GPIntVector const & right)
{
  apply(kernels().multiply, m_Elements, right);
  return *this;
}

GPIntVector & GPIntVector::operator/=(int right)
{
  for (std::size_t i = 0; i < m_Elements.Count(); ++i) ArrayPtr()[i] = quotient(ArrayPtr()[i], right);
  return *this;
}

GPIntVector & GPIntVector::operator/=(GPIntVector const & right)
{
  for (std::size_t i = 0; i < m_Elements.Count(); ++i) ArrayPtr()[i] = quotient(ArrayPtr()[i], right.ArrayPtr()[i]);
  return *this;
}

GPIntVector & GPIntVector::operator|=(GPIntVector const & right)
{
  return *this = *this | right;
}
GPIntVector & GPIntVector::operator&=(GPIntVector const & right)
{
  return *this = *this & right;
}

GPIntVector operator+(GPIntVector left, int right)
{
  return std::move(left += right);
}
GPIntVector operator+(int left, GPIntVector right)
{
  return std::move(right += left);
}
GPIntVector operator+(GPIntVector left, GPIntVector const & right)
{
  return std::move(left += right);
}
GPIntVector operator-(GPIntVector left, int right)
{
  return std::move(left -= right);
}
GPIntVector operator-(GPIntVector left, GPIntVector const & right)
{
  return std::move(left -= right);
}
GPIntVector operator*(GPIntVector left, int right)
{
  return std::move(left *= right);
}
GPIntVector operator*(int left, GPIntVector right)
{
  return std::move(right *= left);
}
GPIntVector operator*(GPIntVector left, GPIntVector const & right)
{
  return std::move(left *= right);
}
GPIntVector operator/(GPIntVector left, int right)
{
  return std::move(left /= right);
}
GPIntVector operator/(GPIntVector left, GPIntVector const & right)
{
  return std::move(left /= right);
}

GPIntVector operator|(GPIntVector const & left, GPIntVector const & right)
{
  if (right.GetSize() > std::numeric_limits<int>::max() - left.GetSize()) throw std::bad_array_new_length();
  return combineSets(zp::Unite, left, right, left.GetSize() + right.GetSize());
}

GPIntVector operator&(GPIntVector const & left, GPIntVector const & right)
{
  return combineSets(zp::Intersect, left, right, std::min(left.GetSize(), right.GetSize()));
}

void GPIntVector::Serialize(CArchive & ar)
{
  GPObject::Serialize(ar);
  zp::SerializeIntegers(ar, *this);
}

CArchive & operator<<(CArchive & ar, GPIntVector const & vector)
{
  return zp::WriteIntegers(ar, vector);
}
CArchive & operator>>(CArchive & ar, GPIntVector & vector)
{
  return zp::ReadIntegers(ar, vector);
}
