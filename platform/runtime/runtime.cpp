// The list of registered classes and the root of the class tree.

#include <zpbase/platform/runtime.h>

#include <string_view>

namespace {

constinit CRuntimeClass * g_pClasses = nullptr;

}  // namespace

CRuntimeClass CObject::classCObject = {"CObject", static_cast<int>(sizeof(CObject)), 0xFFFF, nullptr, nullptr, nullptr, nullptr};

CRuntimeClass * CObject::GetThisClass()
{
  return &classCObject;
}

CRuntimeClass * CObject::GetRuntimeClass() const
{
  return &classCObject;
}

void CObject::Serialize(CArchive &) {}

void AfxClassInit(CRuntimeClass * record)
{
  record->m_pNextClass = g_pClasses;
  g_pClasses = record;
}

AFX_CLASSINIT::AFX_CLASSINIT(CRuntimeClass * record) : m_pClass(record)
{
  AfxClassInit(record);
}

AFX_CLASSINIT::~AFX_CLASSINIT()
{
  for (CRuntimeClass ** link = &g_pClasses; *link != nullptr; link = &(*link)->m_pNextClass) {
    if (*link != m_pClass) continue;
    *link = m_pClass->m_pNextClass;
    return;
  }
}

bool CRuntimeClass::IsDerivedFrom(CRuntimeClass const * base) const
{
  for (CRuntimeClass const * record = this;;) {
    if (record == base) return true;
    if (record->m_pfnGetBaseClass == nullptr) return false;
    record = record->m_pfnGetBaseClass();
  }
}

// The name may hold zeros, so no end of a text is looked for in it.
CRuntimeClass * CRuntimeClass::FromName(char const * name, size_t length)
{
  std::string_view const wanted(name, length);
  for (CRuntimeClass * record = g_pClasses; record != nullptr; record = record->m_pNextClass)
    if (record->m_lpszClassName == wanted) return record;
  return nullptr;
}
