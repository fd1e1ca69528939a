// GPObject: the root of the persistent classes.

#include <zpbase/foundation.h>

#include <zpbase/platform/archive.h>

IMPLEMENT_SERIAL(GPObject, CObject, 1)

void GPObject::Serialize(CArchive & ar)
{
  CObject::Serialize(ar);
}

GPObject * GPObject::Clone() const
{
  return nullptr;
}

// Addresses differ by at least a pointer's size, so the difference in pointer-sized units is 0 for the object itself alone. It
// is cut to an int without ever becoming 0.
int GPObject::Compare(GPObject const * other) const
{
  auto const mine = reinterpret_cast<uintptr_t>(this);
  auto const others = reinterpret_cast<uintptr_t>(other);
  if (mine == others) return 0;
  auto const difference = static_cast<intptr_t>(mine - others) / static_cast<intptr_t>(sizeof(void *));
  if (difference == static_cast<int>(difference) && difference != 0) return static_cast<int>(difference);
  return mine < others ? INT32_MIN : INT32_MAX;
}
