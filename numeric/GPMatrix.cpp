// GPMatrix: construction, shape, access and its stream form.
//
//   offset  width            content
//   0       2                rows, with sign
//   2       2                columns, with sign
//   4       8 x rows x cols  the elements row by row, IEEE 754 double
//
// The 1 x 1 matrix (1.0): 01 00, 01 00, 00 00 00 00 00 00 F0 3F.

#include <zpbase/numeric.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "numeric/storage_internal.h"
#include "numeric/streams_internal.h"
#include "numeric/transpose_internal.h"

IMPLEMENT_SERIAL(GPMatrix, GPObject, 1)

GPMatrix::GPMatrix(int rows, int cols, double value) : GPMatrix(zp::ElementAccess::MakeMatrix(rows, cols))
{
  Reset(value);
}

GPMatrix::GPMatrix(int rows, int cols, double const * values) : GPMatrix(zp::ElementAccess::MakeMatrix(rows, cols))
{
  if (values) {
    std::copy_n(values, Count(), ArrayPtr());
  } else {
    Reset(0.0);
  }
}

GPMatrix::GPMatrix(int rows, int cols, float const * values) : GPMatrix(zp::ElementAccess::MakeMatrix(rows, cols))
{
  std::copy_n(values, Count(), ArrayPtr());
}

GPMatrix::GPMatrix(GPVector const & vector, int) : GPMatrix(1, vector.GetSize(), vector.ArrayPtr()) {}

GPMatrix::GPMatrix(int, GPVector const & vector) : GPMatrix(vector.GetSize(), 1, vector.ArrayPtr()) {}

GPObject * GPMatrix::Clone() const
{
  return new GPMatrix(*this);
}

void GPMatrix::Swap(int row1, int col1, int row2, int col2)
{
  std::swap((*this)(row1, col1), (*this)(row2, col2));
}

void GPMatrix::SwapTwoRows(int a, int b)
{
  if (a == b || m_nCols == 0) return;
  std::swap_ranges(&(*this)(a, 0), &(*this)(a, 0) + m_nCols, &(*this)(b, 0));
}

void GPMatrix::SwapTwoCols(int a, int b)
{
  if (a == b) return;
  for (int row = 0; row < m_nRows; ++row) Swap(row, a, row, b);
}

void GPMatrix::GetRowVector(GPVector & out, int row) const
{
  out.ChangeSize(m_nCols);
  if (m_nCols > 0) std::copy_n(&(*this)(row, 0), m_nCols, out.ArrayPtr());
}

void GPMatrix::GetColumnVector(GPVector & out, int col) const
{
  out.ChangeSize(m_nRows);
  for (int row = 0; row < m_nRows; ++row) out[row] = (*this)(row, col);
}

void GPMatrix::Empty()
{
  m_nRows = m_nCols = 0;
  m_Block = zp::DoubleBlock();
}

// The old block goes last: values may point into it.
void GPMatrix::ChangeSize(int rows, int cols, double const * values)
{
  GPMatrix changed(rows, cols, values);
  int const keptRows = values ? 0 : std::min(GetRows(), changed.GetRows());
  int const keptCols = std::min(GetCols(), changed.GetCols());
  for (int row = 0; row < keptRows && keptCols > 0; ++row) std::copy_n(&(*this)(row, 0), keptCols, &changed(row, 0));
  *this = std::move(changed);
}

void GPMatrix::Reset(double value)
{
  std::fill_n(ArrayPtr(), Count(), value);
}

void GPMatrix::Transpose()
{
  if (m_nRows > 1 && m_nCols > 1) {
    zp::DoubleBlock turned(Count());
    zp::Transpose(turned.Get(), ArrayPtr(), static_cast<std::size_t>(m_nRows), static_cast<std::size_t>(m_nCols));
    m_Block = std::move(turned);
  }
  std::swap(m_nRows, m_nCols);
}

int GPMatrix::operator==(GPMatrix const & other) const
{
  if (m_nRows != other.m_nRows || m_nCols != other.m_nCols) return 0;
  return Count() == 0 || std::memcmp(ArrayPtr(), other.ArrayPtr(), Count() * sizeof(double)) == 0;
}

void GPMatrix::Serialize(CArchive & ar)
{
  GPObject::Serialize(ar);
  if (ar.IsStoring()) {
    ar << *this;
  } else {
    ar >> *this;
  }
}

CArchive & operator<<(CArchive & ar, GPMatrix const & matrix)
{
  zp::RequireStreamable(matrix.GetRows());
  zp::RequireStreamable(matrix.GetCols());
  zp::WriteCount(ar, matrix.GetRows());
  zp::WriteCount(ar, matrix.GetCols());
  zp::WriteElements(ar, matrix.ArrayPtr(), zp::ElementAccess::Count(matrix));
  return ar;
}

CArchive & operator>>(CArchive & ar, GPMatrix & matrix)
{
  return zp::ReadOrEmpty(ar, matrix, [&ar] {
    int const rows = zp::ReadCount(ar);
    int const cols = zp::ReadCount(ar);
    zp::RequireElements(ar, static_cast<ULONGLONG>(rows) * static_cast<ULONGLONG>(cols) * sizeof(double));
    GPMatrix read = zp::ElementAccess::MakeMatrix(rows, cols);
    zp::ReadElements(ar, read.ArrayPtr(), zp::ElementAccess::Count(read));
    return read;
  });
}
