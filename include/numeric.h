// Dense containers of numbers: GPVector and GPMatrix of doubles, GPIntVector and GPBOOLVector of 32-bit integers; polynomials and
// the floating-point special values.
//
// Storage is always exact and owned alone; copies are deep, and a container moved from is empty. Nothing is checked: indexes
// count from 0 and are the caller's affair, and element-wise loops run over the left operand's indices, so a right operand must
// be at least as long. A negative size counts as 0. Every sum starts at 0.0 and runs in ascending index order with one rounding
// for each multiplication and addition, so results have the same bits on every machine (payload and sign of NaNs aside). A stream
// holds at most 32,767 elements, rows or columns: more raises a CArchiveException with the cause genericException before anything
// is written. A damaged stream shows a message box and leaves an empty container; operator>> raises no CArchiveException.
#pragma once

#include <cassert>
#include <concepts>
#include <cstddef>
#include <memory>
#include <utility>

#include "foundation.h"

class GPIntVector;
class GPMatrix;
class GPVector;

namespace zp {

struct ElementAccess;

// Elements, rows or columns that a stream can hold.
inline constexpr int maxStreamedCount = 32767;

// A value that a move takes along: T() is left behind.
template <class T>
class Moved {
 public:
  Moved() = default;
  Moved(T value) : m_Value(value) {}
  Moved(Moved const &) = default;
  Moved(Moved && other) noexcept : m_Value(std::exchange(other.m_Value, T())) {}
  Moved & operator=(Moved const &) = default;
  Moved & operator=(Moved && other) noexcept
  {
    m_Value = std::exchange(other.m_Value, T());
    return *this;
  }
  ~Moved() = default;

  operator T() const { return m_Value; }

 private:
  T m_Value = T();
};

// A counted block of doubles that begin on an 8-byte boundary, in blocks of 128 bytes and more on a 64-byte one.
class ZP_API DoubleBlock {
 public:
  DoubleBlock() = default;
  explicit DoubleBlock(std::size_t count);  // not set; no storage for 0
  DoubleBlock(DoubleBlock const & other);
  DoubleBlock(DoubleBlock && other) noexcept = default;
  DoubleBlock & operator=(DoubleBlock const & other);
  DoubleBlock & operator=(DoubleBlock && other) noexcept = default;
  ~DoubleBlock() = default;

  std::size_t Count() const { return m_nCount; }
  double * Get() const { return m_pData; }

 private:
  std::unique_ptr<unsigned char[]> m_pBlock;
  Moved<double *> m_pData;
  Moved<std::size_t> m_nCount;
};

// A counted block of integers.
class ZP_API IntBlock {
 public:
  IntBlock() = default;
  explicit IntBlock(int size);  // not set
  IntBlock(int size, int value);
  IntBlock(int size, int const * values);  // zeros for null
  IntBlock(IntBlock const & other);
  IntBlock(IntBlock && other) noexcept = default;
  IntBlock & operator=(IntBlock const & other);
  IntBlock & operator=(IntBlock && other) noexcept = default;
  ~IntBlock() = default;

  int GetSize() const { return m_nSize; }
  std::size_t Count() const { return static_cast<std::size_t>(GetSize()); }
  int * Get() const { return m_pData.get(); }
  int & At(int index) const
  {
    assert(index >= 0 && index < GetSize());
    return m_pData[static_cast<std::size_t>(index)];
  }
  void ChangeSize(int size, int const * values);

 private:
  Moved<int> m_nSize;
  std::unique_ptr<int[]> m_pData;
};

}  // namespace zp

class ZP_API GPVector : public GPObject {
  DECLARE_SERIAL(GPVector)
 public:
  GPVector() = default;
  explicit GPVector(int size, double value = 0.0);
  template <std::integral Value>
  GPVector(int size, Value value) : GPVector(size, static_cast<double>(value))
  {
  }
  GPVector(int size, std::nullptr_t) : GPVector(size, 0.0) {}
  GPVector(int size, double const * values);  // zeros for null
  GPVector(int size, float const * values);   // not null
  GPVector(GPMatrix const & matrix, int column);

  GPObject * Clone() const override;

  int GetSize() const { return static_cast<int>(m_Block.Count()); }
  int IsEmpty() const { return GetSize() == 0; }
  double & operator[](int index) { return m_Block.Get()[Checked(index)]; }
  double const & operator[](int index) const { return m_Block.Get()[Checked(index)]; }
  double & operator()(int index) { return (*this)[index]; }
  double const & operator()(int index) const { return (*this)[index]; }

  // The first element, or null; valid until an operation that changes the size.
  double * ArrayPtr() { return m_Block.Get(); }
  double const * ArrayPtr() const { return m_Block.Get(); }

  void Swap(int i, int j);
  void Empty();

  // Always makes a new block, from size values or, for null, from the leading old elements and zeros. values may point into the
  // old block; when memory runs out the vector stays as it is.
  void ChangeSize(int size, double const * values = nullptr);
  void Reset(double value);

  // The elements rounded to single precision, in a new array that the caller releases with delete[]; null for an empty vector.
  float * GetFloatArray() const;
  void Trace() const {}  // a hook for diagnosis; does nothing

  // Ascending; NaNs end up at the ends, by their sign.
  void Sort();

  // Index of an element equal to value, or -1. BSearch needs ascending elements and takes a difference that is neither below nor
  // above 0 as equality (so NaNs and like infinities are equal); LocateValue gives the first by ==.
  int BSearch(double const & value) const;
  int LocateValue(double const & value) const;

  // 1 when the sizes and all bytes are equal: 0.0 and -0.0 differ, NaNs of the same bits don't.
  int operator==(GPVector const & other) const;
  int operator!=(GPVector const & other) const { return !(*this == other); }

  double SqrNorm() const { return DotProduct(*this); }  // sum of squares
  double Norm() const;                                  // its root
  double GetPivot() const;                              // largest absolute value, NaNs passed over; 0.0 for none
  double Sum() const;
  double DotProduct(GPVector const & other) const;
  double DotProduct(GPIntVector const & other) const;

  // Standard deviation of the population, sqrt((n q - s s) / (n n)) over n elements with sum s and sum of squares q; 0.0 below
  // two elements. includeZeros 0 leaves out elements equal to 0.0. The radicand isn't clamped: rounding may make it negative.
  double StdDevP(int includeZeros) const;

  // The vector holds ascending abscissae, ordinates at least as many values. Beyond the ends the result is the end's ordinate,
  // and 0.0 if either is empty.
  double Interpolate(GPVector const & ordinates, double const & abscissa) const;

  GPVector & operator+=(double const & right);
  GPVector & operator+=(GPVector const & right);
  GPVector & operator-=(double const & right);
  GPVector & operator-=(GPVector const & right);
  GPVector & operator*=(double const & right);
  GPVector & operator*=(GPVector const & right);  // element by element
  GPVector & operator/=(double const & right);    // by 0.0 gives infinities and NaNs
  GPVector & operator/=(GPVector const & right);  // where right is 0.0 the element keeps its value

 private:
  friend struct zp::ElementAccess;

  void Serialize(CArchive & ar) override;
  std::size_t Count() const { return m_Block.Count(); }
  std::size_t Checked(int index) const
  {
    assert(index >= 0 && index < GetSize());
    return static_cast<std::size_t>(index);
  }

  zp::DoubleBlock m_Block;
};

ZP_API CArchive & operator<<(CArchive & ar, GPVector const & vector);
ZP_API CArchive & operator>>(CArchive & ar, GPVector & vector);

// A vector that is about to vanish lends its block to the result.
ZP_API GPVector operator+(GPVector const & left, double const & right);
ZP_API GPVector operator+(GPVector && left, double const & right);
ZP_API GPVector operator+(double const & left, GPVector const & right);
ZP_API GPVector operator+(double const & left, GPVector && right);
ZP_API GPVector operator+(GPVector const & left, GPVector const & right);
ZP_API GPVector operator+(GPVector && left, GPVector const & right);
ZP_API GPVector operator-(GPVector const & left, double const & right);
ZP_API GPVector operator-(GPVector && left, double const & right);
ZP_API GPVector operator-(GPVector const & left, GPVector const & right);
ZP_API GPVector operator-(GPVector && left, GPVector const & right);
ZP_API GPVector operator*(GPVector const & left, double const & right);
ZP_API GPVector operator*(GPVector && left, double const & right);
ZP_API GPVector operator*(double const & left, GPVector const & right);
ZP_API GPVector operator*(double const & left, GPVector && right);
ZP_API GPVector operator*(GPVector const & left, GPVector const & right);
ZP_API GPVector operator*(GPVector && left, GPVector const & right);
ZP_API GPVector operator/(GPVector const & left, double const & right);
ZP_API GPVector operator/(GPVector && left, double const & right);
ZP_API GPVector operator/(GPVector const & left, GPVector const & right);
ZP_API GPVector operator/(GPVector && left, GPVector const & right);

// Integers, also an ordered set. Arithmetic wraps at 32 bits. A stream keeps the low 16 bits of each element and reads them with
// their sign.
class ZP_API GPIntVector : public GPObject {
  DECLARE_SERIAL(GPIntVector)
 public:
  GPIntVector() = default;
  explicit GPIntVector(int size, int value = 0) : m_Elements(size, value) {}
  template <std::integral Value>
  GPIntVector(int size, Value value) : GPIntVector(size, static_cast<int>(value))
  {
  }
  GPIntVector(int size, std::nullptr_t) : GPIntVector(size) {}
  GPIntVector(int size, int const * values) : m_Elements(size, values) {}  // zeros for null

  GPObject * Clone() const override;

  int GetSize() const { return m_Elements.GetSize(); }
  int IsEmpty() const { return GetSize() == 0; }
  int & operator[](int index) { return m_Elements.At(index); }
  int const & operator[](int index) const { return m_Elements.At(index); }
  int & operator()(int index) { return m_Elements.At(index); }
  int const & operator()(int index) const { return m_Elements.At(index); }
  int * ArrayPtr() { return m_Elements.Get(); }
  int const * ArrayPtr() const { return m_Elements.Get(); }

  void Swap(int i, int j);
  void Empty() { m_Elements = {}; }
  void ChangeSize(int size, int const * values = nullptr) { m_Elements.ChangeSize(size, values); }  // as GPVector's
  void Reset(int value);
  void InitSequentialValues(int start, int step);  // element i becomes start + i * step
  void Trace() const {}                            // a hook for diagnosis; does nothing

  // Sort and BSearch compare by the 32-bit difference, which is no order when values lie further apart than 2^31 - 1.
  void Sort();
  int BSearch(int value) const;
  int LocateValue(int value) const;

  int operator==(GPIntVector const & other) const;
  int operator!=(GPIntVector const & other) const { return !(*this == other); }

  int Sum() const;
  int NonZeros() const;  // how many
  int DotProduct(GPIntVector const & other) const;
  double DotProduct(GPVector const & other) const;

  GPIntVector & operator+=(int right);
  GPIntVector & operator+=(GPIntVector const & right);
  GPIntVector & operator-=(int right);
  GPIntVector & operator-=(GPIntVector const & right);
  GPIntVector & operator*=(int right);
  GPIntVector & operator*=(GPIntVector const & right);
  // Quotients are cut toward zero; where right is 0 the element keeps its value.
  GPIntVector & operator/=(int right);
  GPIntVector & operator/=(GPIntVector const & right);

  // Union and intersection of ascending vectors. Equal values become one, except among those of a union that lie behind the other
  // operand's last element: they are taken as they stand.
  GPIntVector & operator|=(GPIntVector const & right);
  GPIntVector & operator&=(GPIntVector const & right);

 private:
  friend struct zp::ElementAccess;

  void Serialize(CArchive & ar) override;

  zp::IntBlock m_Elements;
};

ZP_API CArchive & operator<<(CArchive & ar, GPIntVector const & vector);
ZP_API CArchive & operator>>(CArchive & ar, GPIntVector & vector);

ZP_API GPIntVector operator+(GPIntVector left, int right);
ZP_API GPIntVector operator+(int left, GPIntVector right);
ZP_API GPIntVector operator+(GPIntVector left, GPIntVector const & right);
ZP_API GPIntVector operator-(GPIntVector left, int right);
ZP_API GPIntVector operator-(GPIntVector left, GPIntVector const & right);
ZP_API GPIntVector operator*(GPIntVector left, int right);
ZP_API GPIntVector operator*(int left, GPIntVector right);
ZP_API GPIntVector operator*(GPIntVector left, GPIntVector const & right);
ZP_API GPIntVector operator/(GPIntVector left, int right);
ZP_API GPIntVector operator/(GPIntVector left, GPIntVector const & right);
ZP_API GPIntVector operator|(GPIntVector const & left, GPIntVector const & right);
ZP_API GPIntVector operator&(GPIntVector const & left, GPIntVector const & right);

// Truth values: 0 is FALSE, anything else TRUE, and values stay as they were put in. Streams as a GPIntVector does.
class ZP_API GPBOOLVector : public GPObject {
  DECLARE_SERIAL(GPBOOLVector)
 public:
  GPBOOLVector() = default;
  explicit GPBOOLVector(int size, int value = 0) : m_Elements(size, value) {}
  template <std::integral Value>
  GPBOOLVector(int size, Value value) : GPBOOLVector(size, static_cast<int>(value))
  {
  }
  GPBOOLVector(int size, std::nullptr_t) : GPBOOLVector(size) {}
  GPBOOLVector(int size, int const * values) : m_Elements(size, values) {}

  GPObject * Clone() const override;

  int GetSize() const { return m_Elements.GetSize(); }
  int IsEmpty() const { return GetSize() == 0; }
  int & operator[](int index) { return m_Elements.At(index); }
  int const & operator[](int index) const { return m_Elements.At(index); }
  int & operator()(int index) { return m_Elements.At(index); }
  int const & operator()(int index) const { return m_Elements.At(index); }
  int * ArrayPtr() { return m_Elements.Get(); }
  int const * ArrayPtr() const { return m_Elements.Get(); }

  void Swap(int i, int j);
  void Empty() { m_Elements = {}; }
  void ChangeSize(int size, int const * values = nullptr) { m_Elements.ChangeSize(size, values); }
  void Reset(int value);
  void FlipState();  // every element exclusive-or 1

  // 1 when the elements equal the first ones of other, whatever follows there; a shorter other is not equal.
  int operator==(GPBOOLVector const & other) const;
  int operator!=(GPBOOLVector const & other) const { return !(*this == other); }

  int IsAllFALSE() const { return GetTRUECount() == 0; }
  int IsAllTRUE() const { return GetFALSECount() == 0; }
  int GetTRUECount() const;
  int GetFALSECount() const { return GetSize() - GetTRUECount(); }

  // Bitwise, element by element.
  GPBOOLVector & operator|=(GPBOOLVector const & right);
  GPBOOLVector & operator&=(GPBOOLVector const & right);
  GPBOOLVector & operator^=(GPBOOLVector const & right);

 private:
  void Serialize(CArchive & ar) override;

  zp::IntBlock m_Elements;
};

ZP_API CArchive & operator<<(CArchive & ar, GPBOOLVector const & vector);
ZP_API CArchive & operator>>(CArchive & ar, GPBOOLVector & vector);

ZP_API GPBOOLVector operator|(GPBOOLVector left, GPBOOLVector const & right);
ZP_API GPBOOLVector operator&(GPBOOLVector left, GPBOOLVector const & right);
ZP_API GPBOOLVector operator^(GPBOOLVector left, GPBOOLVector const & right);

// Rows of doubles, row 0 first, one behind the other. A matrix without elements keeps its dimensions.
class ZP_API GPMatrix : public GPObject {
  DECLARE_SERIAL(GPMatrix)
 public:
  GPMatrix() = default;
  explicit GPMatrix(int rows, int cols, double value = 0.0);
  template <std::integral Value>
  GPMatrix(int rows, int cols, Value value) : GPMatrix(rows, cols, static_cast<double>(value))
  {
  }
  GPMatrix(int rows, int cols, std::nullptr_t) : GPMatrix(rows, cols, 0.0) {}
  GPMatrix(int rows, int cols, double const * values);  // row by row; zeros for null
  GPMatrix(int rows, int cols, float const * values);   // not null
  GPMatrix(GPVector const & vector, int);               // a single row; the integer isn't read
  GPMatrix(int, GPVector const & vector);               // a single column

  GPObject * Clone() const override;

  int GetRows() const { return m_nRows; }
  int GetCols() const { return m_nCols; }
  int IsEmpty() const { return GetRows() == 0 && GetCols() == 0; }
  double & operator()(int row, int col) { return m_Block.Get()[Checked(row, col)]; }
  double const & operator()(int row, int col) const { return m_Block.Get()[Checked(row, col)]; }

  // Element (0, 0), or null; valid until an operation that replaces the block.
  double * ArrayPtr() { return m_Block.Get(); }
  double const * ArrayPtr() const { return m_Block.Get(); }

  void Swap(int row1, int col1, int row2, int col2);
  void SwapTwoRows(int a, int b);
  void SwapTwoCols(int a, int b);
  void GetRowVector(GPVector & out, int row) const;  // out takes the row's or column's size
  void GetColumnVector(GPVector & out, int col) const;
  void Empty();

  // Always makes a new block, from rows * cols values or, for null, from the common top-left part of the old one and zeros.
  void ChangeSize(int rows, int cols, double const * values = nullptr);
  void Reset(double value);
  void Transpose();      // in place, with the same block, for a single row or column
  void Trace() const {}  // a hook for diagnosis; does nothing

  // 1 when the dimensions and all bytes are equal.
  int operator==(GPMatrix const & other) const;
  int operator!=(GPMatrix const & other) const { return !(*this == other); }

  // Elements pair by their place in storage.
  GPMatrix & operator+=(GPMatrix const & right);
  GPMatrix & operator-=(GPMatrix const & right);
  GPMatrix & operator*=(double const & right);

 private:
  friend struct zp::ElementAccess;

  void Serialize(CArchive & ar) override;
  std::size_t Count() const { return m_Block.Count(); }
  std::size_t Checked(int row, int col) const
  {
    assert(row >= 0 && row < GetRows() && col >= 0 && col < GetCols());
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(GetCols()) + static_cast<std::size_t>(col);
  }

  zp::DoubleBlock m_Block;  // first: a copy that runs out of memory here has changed nothing
  zp::Moved<int> m_nRows;
  zp::Moved<int> m_nCols;
};

ZP_API CArchive & operator<<(CArchive & ar, GPMatrix const & matrix);
ZP_API CArchive & operator>>(CArchive & ar, GPMatrix & matrix);

ZP_API GPMatrix operator+(GPMatrix const & left, GPMatrix const & right);
ZP_API GPMatrix operator+(GPMatrix && left, GPMatrix const & right);
ZP_API GPMatrix operator-(GPMatrix const & left, GPMatrix const & right);
ZP_API GPMatrix operator-(GPMatrix && left, GPMatrix const & right);
ZP_API GPMatrix operator*(GPMatrix const & left, double const & right);
ZP_API GPMatrix operator*(GPMatrix && left, double const & right);
ZP_API GPMatrix operator*(double const & left, GPMatrix const & right);
ZP_API GPMatrix operator*(double const & left, GPMatrix && right);

ZP_API GPVector operator*(GPVector const & v, GPMatrix const & m);  // v: rows of m; result: columns of m
ZP_API GPVector operator*(GPMatrix const & m, GPVector const & v);  // v: columns of m; result: rows of m
ZP_API GPMatrix operator*(GPMatrix const & a, GPMatrix const & b);  // columns of a = rows of b

// ((((x a5 + a4) x + a3) x + a2) x + a1) x + a0, always in all five steps.
ZP_API double CalcPolynomial(double x, double a0, double a1, double a2, double a3, double a4, double a5);

// value becomes the polynomial of up to six coefficients at x, and powers[i], which must exist, x to the power i for each of
// them. Nothing happens for 0 or more than six coefficients; switches isn't read.
ZP_API void CalcPolynomial(double const & x, GPVector & coefficients, GPBOOLVector & switches, double & value, GPVector & powers);

ZP_API double Pow10(double x);

// 1 when any of the size bytes isn't 0.
ZP_API int AnyBitIsSet(void const * block, unsigned int size);

// Infinities, and signalling NaNs with payload 1; handing a NaN on may make it quiet.
ZP_API float FLT_POSINF();
ZP_API float FLT_NEGINF();
ZP_API float FLT_POSNAN();
ZP_API float FLT_NEGNAN();
ZP_API double DBL_POSINF();
ZP_API double DBL_NEGINF();
ZP_API double DBL_POSNAN();
ZP_API double DBL_NEGNAN();
