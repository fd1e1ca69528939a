// Tagged values, packed property records and the collections that keep them.
//
// An item carries a 16-bit data id, which says what it is, and one value. Of an id given as an unsigned int only the low 16
// bits are kept. A blank text and a zero mean that there is no value. Compare gives a signed difference, by data id alone
// unless a class says otherwise; an object that is no item is ordered by address. GetString replaces out by the value under a
// printf-style format with the value as its one argument, by default as each class says; items of several values give an empty
// text. Init copies the class's own fields, not its base's. Where memory runs out the items and collections are as they were,
// but for loading; what an Unload has filled by then stays.
#pragma once

#include <memory>
#include <span>

#include "foundation.h"

class CStringArray;
class GPIntVector;

namespace zp {
struct ItemAccess;
}

class ZP_API GPData : public GPObject {
  DECLARE_SERIAL(GPData)
 public:
  explicit GPData(unsigned int id = 0) : m_nDataID(static_cast<WORD>(id)) {}
  GPData(GPData const & other) : GPObject(other), m_nDataID(other.m_nDataID) {}
  GPData & operator=(GPData const & other);
  void Init(GPData const & other) { SetDataID(other.m_nDataID); }

  unsigned int GetDataID() const { return m_nDataID; }

  GPObject * Clone() const override;
  int Compare(GPObject const * other) const override;
  int CompareDataIDs(GPObject const * other) const;  // by data id, whatever the classes are
  virtual void GetString(CString & out, CString const & format) const;
  void Serialize(CArchive & ar) override;

 private:
  friend class GPDataArray;

  void SetDataID(WORD id);

  WORD m_nDataID;
  bool m_bInOrder = false;  // a collection relies on the id
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
  GPs(GPs const &) = default;
  GPs(GPs &&) = default;
  GPs & operator=(GPs &&) = default;
  GPs & operator=(GPs const & other)
  {
    Init(other);
    GPData::operator=(other);
    return *this;
  }
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

// Correlation records: an area that holds the coefficients of one property correlation, which are only kept here, under the
// data id of the class. They have no run-time class of their own, so they stream as GPv objects and come back as such: As gives
// a record with an item's data id and a copy of its area. To change the stored item, load into that record and assign it back.
//
// In the six plain classes the coefficients are float data in the order of the arguments. Load gives the count stored, without
// zeros at the end; in texts a blank is 0. Unload gives the count stored and sets what lies beyond to 0 or to an empty text;
// texts are "%g". The constructors make an area of size zero bytes.

// Vapour pressure. Up to seven coefficients through the wide forms; the narrow ones see three.
class ZP_API GPAvp : public GPv {
 public:
  using GPObject::Load;

  static constexpr unsigned int dataID = 97;
  static constexpr int maxCoefficients = 7;

  explicit GPAvp(int size = 0) : GPv(dataID, size) {}
  static GPAvp As(GPv const & item);
  GPObject * Clone() const override;

  int Unload(float & c1, float & c2, float & c3) const;
  int Unload(float & c1, float & c2, float & c3, float & c4, float & c5, float & c6, float & c7) const;
  int Unload(double & c1, double & c2, double & c3) const;
  int Unload(CString & c1, CString & c2, CString & c3) const;
  int Load(double c1, double c2, double c3, double c4, double c5, double c6, double c7);
  int Load(CString const & c1, CString const & c2, CString const & c3);
};

// Ideal gas heat capacity.
class ZP_API GPIghc : public GPv {
 public:
  using GPObject::Load;

  static constexpr unsigned int dataID = 98;
  static constexpr int maxCoefficients = 6;

  explicit GPIghc(int size = 0) : GPv(dataID, size) {}
  static GPIghc As(GPv const & item);
  GPObject * Clone() const override;

  int Unload(float & c1, float & c2, float & c3, float & c4, float & c5, float & c6) const;
  int Unload(double & c1, double & c2, double & c3, double & c4, double & c5, double & c6) const;
  int Unload(CString & c1, CString & c2, CString & c3, CString & c4, CString & c5, CString & c6) const;
  int Load(double c1, double c2, double c3, double c4, double c5, double c6);
  int Load(CString const & c1, CString const & c2, CString const & c3, CString const & c4, CString const & c5,
           CString const & c6);
};

// Liquid volume.
class ZP_API GPLv : public GPv {
 public:
  using GPObject::Load;

  static constexpr unsigned int dataID = 99;
  static constexpr int maxCoefficients = 2;

  explicit GPLv(int size = 0) : GPv(dataID, size) {}
  static GPLv As(GPv const & item);
  GPObject * Clone() const override;

  int Unload(float & c1, float & c2) const;
  int Unload(double & c1, double & c2) const;
  int Unload(CString & c1, CString & c2) const;
  int Load(double c1, double c2);
  int Load(CString const & c1, CString const & c2);
};

// Surface tension.
class ZP_API GPSt : public GPv {
 public:
  using GPObject::Load;

  static constexpr unsigned int dataID = 100;
  static constexpr int maxCoefficients = 2;

  explicit GPSt(int size = 0) : GPv(dataID, size) {}
  static GPSt As(GPv const & item);
  GPObject * Clone() const override;

  int Unload(float & c1, float & c2) const;
  int Unload(double & c1, double & c2) const;
  int Unload(CString & c1, CString & c2) const;
  int Load(double c1, double c2);
  int Load(CString const & c1, CString const & c2);
};

// Henry constants.
class ZP_API GPHenry : public GPv {
 public:
  using GPObject::Load;

  static constexpr unsigned int dataID = 101;
  static constexpr int maxCoefficients = 4;

  explicit GPHenry(int size = 0) : GPv(dataID, size) {}
  static GPHenry As(GPv const & item);
  GPObject * Clone() const override;

  int Unload(float & c1, float & c2, float & c3, float & c4) const;
  int Unload(double & c1, double & c2, double & c3, double & c4) const;
  int Unload(CString & c1, CString & c2, CString & c3, CString & c4) const;
  int Load(double c1, double c2, double c3, double c4);
  int Load(CString const & c1, CString const & c2, CString const & c3, CString const & c4);
};

// Modified SRK.
class ZP_API GPMsrk : public GPv {
 public:
  using GPObject::Load;

  static constexpr unsigned int dataID = 102;
  static constexpr int maxCoefficients = 2;

  explicit GPMsrk(int size = 0) : GPv(dataID, size) {}
  static GPMsrk As(GPv const & item);
  GPObject * Clone() const override;

  int Unload(float & c1, float & c2) const;
  int Unload(double & c1, double & c2) const;
  int Unload(CString & c1, CString & c2) const;
  int Load(double c1, double c2);
  int Load(CString const & c1, CString const & c2);
};

// A numbered equation with its coefficients, under the caller's data id: c1 to c4 always, and those of c5 to c9 up to the last
// one that isn't zero, or as a text isn't empty. All forms give how many of c5 to c9 are held, 0 for an area without the fixed
// part. The number forms set the others to 0; the text form leaves them as they are. The float and short-int forms of GPv don't
// fit this layout.
class ZP_API GPDippr : public GPv {
 public:
  using GPObject::Load;

  // The area: the equation number (2 bytes), the fixed coefficients, and as many of the further ones as are held (4 each).
  static constexpr int fixedCoefficients = 4;
  static constexpr int maxCoefficients = 9;
  static constexpr int coefficientOffset = 2;
  static constexpr int coefficientBytes = 4;
  static constexpr int minBytes = coefficientOffset + fixedCoefficients * coefficientBytes;
  static constexpr int maxBytes = coefficientOffset + maxCoefficients * coefficientBytes;

  explicit GPDippr(unsigned int id = 0, int size = 0) : GPv(id, size) {}
  static GPDippr As(GPv const & item);
  GPObject * Clone() const override;

  int Unload(unsigned short & equation, float & c1, float & c2, float & c3, float & c4, float & c5, float & c6, float & c7,
             float & c8, float & c9) const;
  int Unload(unsigned int & equation, double & c1, double & c2, double & c3, double & c4, double & c5, double & c6, double & c7,
             double & c8, double & c9) const;
  int Unload(CString & equation, CString & c1, CString & c2, CString & c3, CString & c4, CString & c5, CString & c6, CString & c7,
             CString & c8, CString & c9) const;
  int Load(unsigned int equation, double c1, double c2, double c3, double c4, double c5, double c6, double c7, double c8,
           double c9);
  int Load(CString const & equation, CString const & c1, CString const & c2, CString const & c3, CString const & c4,
           CString const & c5, CString const & c6, CString const & c7, CString const & c8, CString const & c9);

 private:
  struct Values;

  int Put(unsigned int equation, std::span<float const> values);
  int Get(Values & values) const;
};

// How a component is built up from UNIFAC groups: pairs of a group number and a count. A number given as a text with a capital R
// or X in it is kept negated, and R and X can't be told apart afterwards. The constructor makes an area of size zero bytes.
class ZP_API GPUnifac : public GPv {
 public:
  using GPObject::Load;

  static constexpr unsigned int dataID = 103;
  static constexpr int entryBytes = 4;  // a group's number and its count, 2 bytes each
  static constexpr int maxEntries = maxSize / entryBytes;

  explicit GPUnifac(int size = 0) : GPv(dataID, size) {}
  GPUnifac(CStringArray const & groups, GPIntVector const & counts);
  static GPUnifac As(GPv const & item);
  GPObject * Clone() const override;

  // One count for each group, 0 where counts has too few. Gives how many are held; more than 8,191 are refused with 0 and the old
  // ones kept.
  int Load(CStringArray const & groups, GPIntVector const & counts);

  // Each group once, in the order of first appearance, with the sum of its counts; gives how many. Marked groups come as "12R",
  // or with keepMarks 0 like plain ones, where the marked group 9 counts as a 3 and a 7.
  int Unload(CStringArray & groups, GPIntVector & counts, int keepMarks) const;

 private:
  int HelpConstruct(CStringArray const & groups, GPIntVector const & counts);
};

// Interaction parameters of a pair of groups: up to six pairs of floats, each in the slot of its tag, 128 to 133, under the
// caller's data id. All forms give how many slots are held.
class ZP_API GPUnifacBip : public GPv {
 public:
  using GPObject::Load;

  // The area: entries in ascending order of tag, each a tag (2 bytes) and two values (4 each).
  static constexpr int entryBytes = 10;
  static constexpr unsigned int firstTag = 128;
  static constexpr unsigned int lastTag = 133;
  static constexpr int maxEntries = 6;
  struct Entry {
    unsigned int tag;
    float first;
    float second;
  };

  GPUnifacBip(unsigned int id, int size) : GPv(id, size) {}
  static GPUnifacBip As(GPv const & item);
  GPObject * Clone() const override;

  // The entries as they stand in the area, whatever their tags; index counts from 0 to GetEntryCount, which is at most
  // maxEntries.
  int GetEntryCount() const;
  Entry GetEntry(int index) const;

  // A slot is held unless both its texts are empty; a single empty one is 0.
  int Load(CString const & a128, CString const & b128, CString const & a129, CString const & b129, CString const & a130,
           CString const & b130, CString const & a131, CString const & b131, CString const & a132, CString const & b132,
           CString const & a133, CString const & b133);

  // Slots that aren't held give 0 as numbers; texts, in the form "%g", stay as they are.
  int Unload(float & a128, float & b128, float & a129, float & b129, float & a130, float & b130, float & a131, float & b131,
             float & a132, float & b132, float & a133, float & b133) const;
  int Unload(double & a128, double & b128, double & a129, double & b129, double & a130, double & b130, double & a131,
             double & b131, double & a132, double & b132, double & a133, double & b133) const;
  int Unload(CString & a128, CString & b128, CString & a129, CString & b129, CString & a130, CString & b130, CString & a131,
             CString & b131, CString & a132, CString & b132, CString & a133, CString & b133) const;

 private:
  // The two of the twelve outputs that belong to the tag; another tag sets nothing.
  static void SetBipFloatPtrs(unsigned int tag, float * const * outputs, float *& first, float *& second);
  static void SetBipStringPtrs(unsigned int tag, CString * const * outputs, CString *& first, CString *& second);
};

// Items in ascending order of Compare, so of data id first; of equal ones the later added stands behind. The collection owns its
// items. What GetData, GetAt and the like give is borrowed until the item is removed. A stream is not sorted on reading; null
// elements, which only a stream or the base class can bring in, are passed over.
class ZP_API GPDataArray : public GPObArray {
  DECLARE_SERIAL(GPDataArray)
 public:
  void Serialize(CArchive & ar) override;  // an element that is no GPData is badClass

  GPData * GetAt(int index) { return static_cast<GPData *>(GPObArray::GetAt(index)); }
  GPData const * GetAt(int index) const { return static_cast<GPData const *>(GPObArray::GetAt(index)); }

  // Binary search by data id alone: 1 and the place of a hit, or 0 and the last place probed, -1 if the array is empty.
  int BSearchForDataID(int & pos, GPData const * key) const;

  // The place of an item, or -1. With search non-zero by binary search for the low 16 bits of id, else the first one from the
  // front that has id as given, in whatever order the items are.
  int GetDataPos(unsigned int id, int search) const;
  GPData * GetData(unsigned int id, int search);
  GPData const * GetData(unsigned int id, int search) const;

  // The first item with id from place start on, or null and in pos the place where it would stand. To walk all items of one id
  // start again at pos + 1.
  GPData * GetData(int & pos, unsigned int id, int start);
  GPData const * GetData(int & pos, unsigned int id, int start) const;

  // Binary search by Compare; of several equal items any.
  GPData * GetData(GPData * key);
  GPData const * GetData(GPData * key) const;

  // The array takes the item over and gives it back as the result. ReplaceData deletes one item of the same data id first, and
  // has done so where a Compare raises then.
  GPData * AddData(GPData * item);
  GPData * ReplaceData(GPData * item);

  // Takes the element that equals item out without deleting it, and gives item, or null if there is none. Among equal elements
  // it may be another than item itself.
  GPData * RemoveData(GPData * item);

  // 1 if an item was deleted; never key itself, unless it is the one stored.
  int DeleteData(unsigned int id);
  int DeleteData(int id) { return DeleteData(static_cast<unsigned int>(id)); }
  int DeleteData(GPData * key);

  // The place of the first text item whose text is the same without regard to case, or -1.
  int LocateString(CString const & text) const;

  // Whether both hold items that are equal by Compare, pair by pair.
  int operator==(GPDataArray const & other) const;
  int operator!=(GPDataArray const & other) const;

  // Unloading gives 1 if there is an item under id, else 0. Numbers are 0 and texts stay as they are without one. An item of
  // another class than the one told leaves 0 or an empty text, with result 0. The texts of numbers are the item's GetString:
  // that of any item for a float, that of a GPw or GPdw for an integer.
  // Loading replaces the item under id; a blank text and the number 0 put nothing in its place, with result 0. An item that
  // stands alone under its id and is of the class told only gets the value.

  // GPf.
  int UnloadFloatData(CString & out, unsigned int id) const;
  int UnloadFloatData(float & out, unsigned int id) const;
  int UnloadFloatData(double & out, unsigned int id) const;
  int LoadFloatData(unsigned int id, CString const & text);
  int LoadFloatData(unsigned int id, double const & value);

  // GPs.
  int UnloadStringData(CString & out, unsigned int id) const;
  int LoadStringData(unsigned int id, CString const & text);

  // GPw, with its sign; texts "%d".
  int UnloadIntData(CString & out, unsigned int id) const;
  int UnloadIntData(int & out, unsigned int id) const;
  int LoadIntData(unsigned int id, CString const & text);
  int LoadIntData(unsigned int id, int value);

  // GPw, without sign; texts "%u" of the number with its sign, so 0xFFFF gives 4294967295.
  int UnloadUIntData(CString & out, unsigned int id) const;
  int UnloadUIntData(unsigned int & out, unsigned int id) const;
  int LoadUIntData(unsigned int id, CString const & text);
  int LoadUIntData(unsigned int id, unsigned int value);

 private:
  friend struct zp::ItemAccess;

  bool IsKnownInOrder() const;
  bool IsInOrder();
  size_t PlaceOf(int id) const;
  int SolePlaceOf(unsigned int id) const;
  GPData * FindSole(unsigned int id, CRuntimeClass const * itemClass);
};

// The same as a list. Look-ups walk from the head and take id as given.
class ZP_API GPDataList : public GPObList {
  DECLARE_SERIAL(GPDataList)
 public:
  void Serialize(CArchive & ar) override;

  GPData * GetFirstData() const;               // null in an empty list
  GPData * GetNextData(POSITION & pos) const;  // pos moves on; a null pos raises the invalid-argument exception
  GPData * GetData(unsigned int id);           // the first one, or null
  GPData * GetData(int id) { return GetData(static_cast<unsigned int>(id)); }
  GPData * GetData(GPData * key);  // the first one whose Compare with key is 0, or null
  GPData * AddData(GPData * item);
  GPData * ReplaceData(GPData * item);
  GPData * RemoveData(GPData * item);  // finds that very item, or gives null; deletes nothing
  int DeleteData(unsigned int id);
  int LoadFloatData(unsigned int id, CString const & text);
  int LoadIntData(unsigned int id, CString const & text);

 private:
  POSITION Locate(unsigned int id) const;
};
