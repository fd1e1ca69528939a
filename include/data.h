// Tagged values, packed property records and the collections that keep them.
//
// An item carries a 16-bit data id, which says what it is, and one value. Of an id given as an unsigned int only the low 16
// bits are kept. A blank text and a zero mean that there is no value. Compare gives a signed difference, by data id alone
// unless a class says otherwise; an object that is no item is ordered by address. GetString replaces out by the value under a
// printf-style format with the value as its one argument, by default as each class says; items of several values give an empty
// text. Init copies the class's own fields, not its base's.
#pragma once

#include <memory>

#include "foundation.h"

class CStringArray;

class ZP_API GPData : public GPObject {
  DECLARE_SERIAL(GPData)
 public:
  explicit GPData(unsigned int id = 0) : m_nDataID(static_cast<WORD>(id)) {}
  void Init(GPData const & other) { m_nDataID = other.m_nDataID; }

  unsigned int GetDataID() const { return m_nDataID; }

  GPObject * Clone() const override;
  int Compare(GPObject const * other) const override;
  int CompareDataIDs(GPObject const * other) const;  // by data id, whatever the classes are
  virtual void GetString(CString & out, CString const & format) const;
  void Serialize(CArchive & ar) override;

 private:
  WORD m_nDataID;
};

// A double, "%g" by default.
class ZP_API GPd : public GPData {
  DECLARE_SERIAL(GPd)
 public:
  explicit GPd(unsigned int id = 0, double value = 0.0) : GPData(id), m_dValue(value) {}
  void Init(GPd const & other) { m_dValue = other.m_dValue; }
  double GetValue() const { return m_dValue; }

  GPObject * Clone() const override;
  void GetString(CString & out, CString const & format) const override;
  void Serialize(CArchive & ar) override;

 private:
  double m_dValue;
};

// A signed 32-bit number, "%ld" by default.
class ZP_API GPdw : public GPData {
  DECLARE_SERIAL(GPdw)
 public:
  explicit GPdw(unsigned int id = 0, long value = 0) : GPData(id), m_nValue(static_cast<LONG>(value)) {}
  void Init(GPdw const & other) { m_nValue = other.m_nValue; }
  long GetValue() const { return m_nValue; }

  GPObject * Clone() const override;
  void GetString(CString & out, CString const & format) const override;
  void Serialize(CArchive & ar) override;

 private:
  LONG m_nValue;
};

// A single-precision number, formatted as a double, "%g" by default.
class ZP_API GPf : public GPData {
  DECLARE_SERIAL(GPf)
 public:
  explicit GPf(unsigned int id = 0, float value = 0.0F) : GPData(id), m_fValue(value) {}
  GPf(unsigned int id, double const & value) : GPData(id), m_fValue(static_cast<float>(value)) {}
  GPf(unsigned int id, int value) : GPf(id, static_cast<double>(value)) {}
  void Init(GPf const & other) { m_fValue = other.m_fValue; }
  float GetValue() const { return m_fValue; }

  GPObject * Clone() const override;
  void GetString(CString & out, CString const & format) const override;
  void Serialize(CArchive & ar) override;

 private:
  float m_fValue;
};

// A text, by default behind its data id and a tab. Compare orders equal data ids by the text, with case, if both are texts.
class ZP_API GPs : public GPData {
  DECLARE_SERIAL(GPs)
 public:
  explicit GPs(unsigned int id = 0) : GPData(id) {}
  GPs(unsigned int id, CString const & value) : GPData(id), m_strValue(value) {}
  GPs(unsigned int id, CString const & value, int length) : GPData(id), m_strValue(value.Left(length)) {}
  void Init(GPs const & other) { m_strValue = other.m_strValue; }
  CString GetValue() const { return m_strValue; }

  GPObject * Clone() const override;
  int Compare(GPObject const * other) const override;
  void GetString(CString & out, CString const & format) const override;
  void Serialize(CArchive & ar) override;

 private:
  friend class GPDataArray;

  CString m_strValue;
};

// A 16-bit number, of which the low 16 bits of value are kept; formatted with its sign, "%d" by default.
class ZP_API GPw : public GPData {
  DECLARE_SERIAL(GPw)
 public:
  explicit GPw(unsigned int id = 0, int value = 0) : GPData(id), m_nValue(static_cast<WORD>(value)) {}
  void Init(GPw const & other) { m_nValue = other.m_nValue; }
  short GetValue() const { return static_cast<short>(m_nValue); }

  GPObject * Clone() const override;
  void GetString(CString & out, CString const & format) const override;
  void Serialize(CArchive & ar) override;

 private:
  WORD m_nValue;
};

class ZP_API GPxy : public GPData {
  DECLARE_SERIAL(GPxy)
 public:
  explicit GPxy(unsigned int id = 0, double x = 0.0, double y = 0.0) : GPData(id), m_dX(x), m_dY(y) {}
  void Init(GPxy const & other);
  double GetX() const { return m_dX; }
  double GetY() const { return m_dY; }

  GPObject * Clone() const override;
  void Serialize(CArchive & ar) override;

 private:
  double m_dX;
  double m_dY;
};

// An array of objects, or null. The item owns the array and the objects in it; copies are deep, and a copy's array is a
// GPObArray whatever the source's class. A copy of null is null. Loading replaces the array held.
class ZP_API GPa : public GPData {
  DECLARE_SERIAL(GPa)
 public:
  explicit GPa(unsigned int id = 0, GPObArray * array = nullptr);
  GPa(GPa const & other);
  GPa & operator=(GPa const & other);
  ~GPa() override;
  void Init(GPa const & other);
  GPObArray * GetArray() const { return m_pArray.get(); }

  GPObject * Clone() const override;
  void Serialize(CArchive & ar) override;

 private:
  std::unique_ptr<GPObArray> m_pArray;
};

// A packed list of numbers: an area of up to 32,767 bytes, little-endian, that holds as many elements as the last one that
// isn't zero needs. It carries no type: the operation that reads it takes it as 16-bit integers, as 32-bit floats or in a
// record's own layout. More than fits is refused, and the old area stays.
//
// Elements beyond the stored ones come out as 0 or as empty texts. Get forms give the count of elements stored. As texts they
// append all stored elements under format, and empty texts up to minimum; as numbers they fill all count elements of out. Put
// forms give the count of elements now stored, 0 for a refused list. In texts a blank is 0.
class ZP_API GPv : public GPData {
  DECLARE_SERIAL(GPv)
 public:
  static constexpr int maxSize = 32767;

  explicit GPv(unsigned int id = 0, int size = 0);  // size zero bytes
  GPv(GPv const & other);
  GPv & operator=(GPv const & other);
  ~GPv() override;
  void Init(GPv const & other);

  int GetSize() const { return m_nSize; }  // bytes
  BYTE * GetArea() { return m_pArea.get(); }
  BYTE const * GetArea() const { return m_pArea.get(); }

  // Makes the area size bytes long, the new ones zero. 1 if it has that size now; 0, and no change, for a size below the present
  // one or above the limit.
  int ExpandVArea(int size);

  int GetShortIntData(CStringArray & out, int minimum, CString const & format) const;
  int GetFloatData(CStringArray & out, int minimum, CString const & format) const;
  int GetShortIntData(int * const out, int count) const;
  int GetFloatData(float * const out, int count) const;
  int PutShortIntData(CStringArray const & in);
  int PutFloatData(CStringArray const & in);
  int PutShortIntData(int const * const in, int count);
  int PutFloatData(float const * const in, int count);

  GPObject * Clone() const override;
  void Serialize(CArchive & ar) override;

 protected:
  // Releases the area and makes one of size zero bytes, none for 0. Gives 0, and keeps the old one, for a size outside the limit.
  int ResetArea(int size);

 private:
  template <class Element>
  int PutElements(Element const * elements, size_t count);

  int m_nSize = 0;
  std::unique_ptr<BYTE[]> m_pArea;
};

// Float data for a pair of components: data id and second id together are the key, by which Compare orders. Under data id 112
// the area holds the first two elements in calories (multiplied by 1.987216, the gas constant in cal/(mol K)); both ways are
// converted here.
class ZP_API GPbip : public GPv {
  DECLARE_SERIAL(GPbip)
 public:
  explicit GPbip(unsigned int id = 0, unsigned int secondId = 0, int size = 0);
  void Init(GPbip const & other) { m_nSecondID = other.m_nSecondID; }
  unsigned int GetSecondID() const { return m_nSecondID; }

  int GetFloatData(CStringArray & out, int minimum, CString const & format) const;
  int GetFloatData(float * const out, int count) const;
  int PutFloatData(CStringArray const & in);
  int PutFloatData(float const * const in, int count);

  GPObject * Clone() const override;
  int Compare(GPObject const * other) const override;
  void Serialize(CArchive & ar) override;

 private:
  int GetScaledCount() const;

  WORD m_nSecondID;
};
