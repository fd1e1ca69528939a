// GPBOOLVector: truth values held as integers, whatever non-zero value stands for TRUE.

#include <zpbase/numeric.h>

#include <algorithm>
#include <utility>

#include "numeric/int_stream_internal.h"

IMPLEMENT_SERIAL(GPBOOLVector, GPObject, 1)

GPObject * GPBOOLVector::Clone() const
{
  return new GPBOOLVector(*this);
}

void GPBOOLVector::Swap(int i, int j)
{
  std::swap((*this)[i], (*this)[j]);
}

void GPBOOLVector::Reset(int value)
{
  std::fill_n(ArrayPtr(), m_Elements.Count(), value);
}

void GPBOOLVector::FlipState()
{
  for (std::size_t i = 0; i < m_Elements.Count(); ++i) ArrayPtr()[i] ^= 1;
}

int GPBOOLVector::operator==(GPBOOLVector const & other) const
{
  if (other.GetSize() < GetSize()) return 0;
  return std::equal(ArrayPtr(), ArrayPtr() + m_Elements.Count(), other.ArrayPtr());
}

int GPBOOLVector::GetTRUECount() const
{
  return GetSize() - static_cast<int>(std::count(ArrayPtr(), ArrayPtr() + m_Elements.Count(), 0));
}

GPBOOLVector & GPBOOLVector::operator|=(GPBOOLVector const & right)
{
  for (std::size_t i = 0; i < m_Elements.Count(); ++i) ArrayPtr()[i] |= right.ArrayPtr()[i];
  return *this;
}

GPBOOLVector & GPBOOLVector::operator&=(GPBOOLVector const & right)
{
  for (std::size_t i = 0; i < m_Elements.Count(); ++i) ArrayPtr()[i] &= right.ArrayPtr()[i];
  return *this;
}

GPBOOLVector & GPBOOLVector::operator^=(GPBOOLVector const & right)
{
  for (std::size_t i = 0; i < m_Elements.Count(); ++i) ArrayPtr()[i] ^= right.ArrayPtr()[i];
  return *this;
}

GPBOOLVector operator|(GPBOOLVector left, GPBOOLVector const & right)
{
  return std::move(left |= right);
}
GPBOOLVector operator&(GPBOOLVector left, GPBOOLVector const & right)
{
  return std::move(left &= right);
}
GPBOOLVector operator^(GPBOOLVector left, GPBOOLVector const & right)
{
  return std::move(left ^= right);
}

void GPBOOLVector::Serialize(CArchive & ar)
{
  GPObject::Serialize(ar);
  zp::SerializeIntegers(ar, *this);
}

CArchive & operator<<(CArchive & ar, GPBOOLVector const & vector)
{
  return zp::WriteIntegers(ar, vector);
}
CArchive & operator>>(CArchive & ar, GPBOOLVector & vector)
{
  return zp::ReadIntegers(ar, vector);
}
