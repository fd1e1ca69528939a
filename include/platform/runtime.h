// The run-time class mechanism: each persistent class has one static record under which archives write and find it.
// DECLARE_SERIAL and IMPLEMENT_SERIAL give a class its record, its maker, its typed extraction and its registration,
// DECLARE_DYNAMIC its record alone, DECLARE_DYNCREATE the record and the maker, which may use a protected constructor.
#pragma once

#include "types.h"

class CArchive;
class CDumpContext;
class CObject;
struct CRuntimeClass;

// Puts a class on the list of registered classes, and takes it off again when the module that holds it is unloaded.
class ZP_API AFX_CLASSINIT {
 public:
  explicit AFX_CLASSINIT(CRuntimeClass * record);
  ~AFX_CLASSINIT();
  AFX_CLASSINIT(AFX_CLASSINIT const &) = delete;
  AFX_CLASSINIT & operator=(AFX_CLASSINIT const &) = delete;

 private:
  CRuntimeClass * m_pClass;
};

struct ZP_API CRuntimeClass {
  char const * m_lpszClassName;
  int m_nObjectSize;                 // bytes of an instance
  UINT m_wSchema;                    // 0xFFFF for a class that doesn't stream
  CObject * (*m_pfnCreateObject)();  // null for a class that can't be made by name
  CRuntimeClass * (*m_pfnGetBaseClass)();
  CRuntimeClass * m_pNextClass;
  AFX_CLASSINIT const * m_pClassInit;

  // A default-constructed instance that the caller owns, or null for a class that can't be made by name.
  CObject * CreateObject() const { return m_pfnCreateObject != nullptr ? m_pfnCreateObject() : nullptr; }
  bool IsDerivedFrom(CRuntimeClass const * base) const;

  // The registered class of that name, or null.
  static CRuntimeClass * FromName(char const * name, size_t length);
};

ZP_API void AfxClassInit(CRuntimeClass * record);

namespace zp {

class StoredObjects;

// What a storing archive leaves in an object to know it again; no part of its value, so a copy has none.
class ArchiveMark {
 public:
  ArchiveMark() = default;
  ArchiveMark(ArchiveMark const &) noexcept {}
  ArchiveMark & operator=(ArchiveMark const &) noexcept { return *this; }
  ~ArchiveMark() = default;

 private:
  friend class StoredObjects;
  DWORD m_nMark = 0;
};

}  // namespace zp

// Root of everything that has a run-time class.
class ZP_API CObject {
 public:
  virtual CRuntimeClass * GetRuntimeClass() const;
  virtual ~CObject() = default;
  virtual void Serialize(CArchive & ar);
  virtual void AssertValid() const {}
  virtual void Dump(CDumpContext &) const {}

  bool IsKindOf(CRuntimeClass const * wanted) const { return GetRuntimeClass()->IsDerivedFrom(wanted); }
  bool IsSerializable() const { return GetRuntimeClass()->m_wSchema != 0xFFFF; }

  static CRuntimeClass * GetThisClass();
  static CRuntimeClass classCObject;

 protected:
  CObject() = default;
  CObject(CObject const &) = default;
  CObject & operator=(CObject const &) = default;

 private:
  friend class zp::StoredObjects;
  mutable zp::ArchiveMark m_Mark;
};

#define RUNTIME_CLASS(class_name) (class_name::GetThisClass())

#define DECLARE_DYNAMIC(class_name)       \
 public:                                  \
  static CRuntimeClass class##class_name; \
  static CRuntimeClass * _GetBaseClass(); \
  static CRuntimeClass * GetThisClass();  \
  CRuntimeClass * GetRuntimeClass() const override;

#define DECLARE_DYNCREATE(class_name) \
  DECLARE_DYNAMIC(class_name)         \
  static CObject * CreateObject();

#define DECLARE_SERIAL(class_name) \
  DECLARE_DYNAMIC(class_name)      \
  static CObject * CreateObject(); \
  friend ZP_API CArchive & operator>>(CArchive & ar, class_name *& object);

#define IMPLEMENT_RUNTIMECLASS(class_name, base_name, schema, maker, init)                                                \
  CRuntimeClass class_name::class##class_name = {                                                                         \
      #class_name, static_cast<int>(sizeof(class class_name)), schema, maker, &class_name::_GetBaseClass, nullptr, init}; \
  CRuntimeClass * class_name::_GetBaseClass()                                                                             \
  {                                                                                                                       \
    return RUNTIME_CLASS(base_name);                                                                                      \
  }                                                                                                                       \
  CRuntimeClass * class_name::GetThisClass()                                                                              \
  {                                                                                                                       \
    return &class_name::class##class_name;                                                                                \
  }                                                                                                                       \
  CRuntimeClass * class_name::GetRuntimeClass() const                                                                     \
  {                                                                                                                       \
    return &class_name::class##class_name;                                                                                \
  }

#define IMPLEMENT_DYNAMIC(class_name, base_name) IMPLEMENT_RUNTIMECLASS(class_name, base_name, 0xFFFF, nullptr, nullptr)

#define IMPLEMENT_DYNCREATE(class_name, base_name) \
  CObject * class_name::CreateObject()             \
  {                                                \
    return new class_name;                         \
  }                                                \
  IMPLEMENT_RUNTIMECLASS(class_name, base_name, 0xFFFF, &class_name::CreateObject, nullptr)

#define IMPLEMENT_SERIAL(class_name, base_name, schema)                                               \
  CObject * class_name::CreateObject()                                                                \
  {                                                                                                   \
    return new class_name;                                                                            \
  }                                                                                                   \
  static AFX_CLASSINIT const init##class_name(RUNTIME_CLASS(class_name));                             \
  IMPLEMENT_RUNTIMECLASS(class_name, base_name, schema, &class_name::CreateObject, &init##class_name) \
  CArchive & operator>>(CArchive & ar, class_name *& object)                                          \
  {                                                                                                   \
    object = static_cast<class_name *>(ar.ReadObject(RUNTIME_CLASS(class_name)));                     \
    return ar;                                                                                        \
  }
