// The registered classes, a list of them and a table by their names, and the root of the class tree.

#include <zpbase/platform/runtime.h>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace {

constinit CRuntimeClass * g_pClasses = nullptr;

// The classes of the list by name, each at its place or the next free one behind it. Of two with one name the later stands here.
// With too many of them the table isn't used.
constexpr size_t slotCount = 256;  // a power of two
constexpr size_t mostEntered = slotCount / 2;
constinit CRuntimeClass * g_Slots[slotCount] = {};
constinit size_t g_nEntered = 0;

// The slot that has the class of that name, or where it would go. Names differ at their ends.
CRuntimeClass ** slotOf(std::string_view name)
{
  size_t place = name.size();
  for (char const c : name.substr(name.size() - std::min<size_t>(name.size(), 4))) place = place * 31 + static_cast<BYTE>(c);
  while (g_Slots[place % slotCount] != nullptr && g_Slots[place % slotCount]->m_lpszClassName != name) ++place;
  return &g_Slots[place % slotCount];
}

void enterClass(CRuntimeClass * record, bool isLater)
{
  if (g_nEntered > mostEntered || ++g_nEntered > mostEntered) return;
  CRuntimeClass ** const slot = slotOf(record->m_lpszClassName);
  if (isLater || *slot == nullptr) *slot = record;
}

void enterAll()
{
  std::fill(std::begin(g_Slots), std::end(g_Slots), nullptr);
  g_nEntered = 0;
  for (CRuntimeClass * record = g_pClasses; record != nullptr; record = record->m_pNextClass) enterClass(record, false);
}

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
  enterClass(record, true);
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
    enterAll();
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
  if (g_nEntered <= mostEntered) return *slotOf(wanted);
  for (CRuntimeClass * record = g_pClasses; record != nullptr; record = record->m_pNextClass)
    if (record->m_lpszClassName == wanted) return record;
  return nullptr;
}
