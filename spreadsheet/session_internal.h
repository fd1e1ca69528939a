// What the classes of the session share: the numbers of their messages, the guard around one call, and the search by name.

#pragma once

#include <algorithm>
#include <cstdint>

#include <zpbase/platform/exceptions.h>
#include <zpbase/spreadsheet.h>

namespace zp {

constexpr unsigned int cellWithoutRangeId = 338;
constexpr unsigned int chartNotSelectedId = 339;
constexpr unsigned int workSheetNotCreatedId = 340;
constexpr unsigned int chartNotCreatedId = 341;
constexpr unsigned int spreadsheetNameId = 342;
constexpr unsigned int notRegisteredId = 343;
constexpr unsigned int noInterfaceId = 344;
constexpr unsigned int notStartedId = 345;
constexpr unsigned int workBookNotCreatedId = 346;
constexpr unsigned int workBookNotLoadedId = 347;
constexpr unsigned int workBookNotClosedId = 348;

// Whether the work was done without an exception of the class, which is swallowed; others pass.
template <class Exception = COleException, class Work>
int Guarded(Work const & work)
{
  try {
    work();
    return 1;
  } catch (Exception * raised) {
    ExceptionGuard const guard(raised);
    return 0;
  }
}

inline void Unlink(COleDispatchDriver & link)
{
  link.ReleaseDispatch();
  link.DetachDispatch();
}

// Gives a link up at the end of a scope, whatever ends it, unless it is to be kept.
class ScopedLink {
 public:
  explicit ScopedLink(COleDispatchDriver & link) : m_pLink(&link) {}
  ~ScopedLink()
  {
    if (m_pLink != nullptr) Unlink(*m_pLink);
  }
  ScopedLink(ScopedLink const &) = delete;
  ScopedLink & operator=(ScopedLink const &) = delete;

  void Keep() { m_pLink = nullptr; }

 private:
  COleDispatchDriver * m_pLink;
};

// The index of an item as the server takes it, and how many of the items that leaves within reach.
inline COleVariant IndexOf(int index)
{
  return COleVariant(static_cast<short>(index));
}
inline int ReachOf(long count)
{
  return static_cast<int>(std::clamp<long>(count, 0, INT16_MAX));
}

// Links to the items 1 to count, one after the other, until one has the name; the link to that one stays.
template <class Fetch, class NameOf>
void FindByName(COleDispatchDriver & link, long count, CString const & name, Fetch const & fetch, NameOf const & nameOf)
{
  for (int i = 1; i <= ReachOf(count); ++i) {
    link.AttachDispatch(fetch(IndexOf(i)));
    ScopedLink candidate(link);
    if (nameOf().CompareNoCase(name) != 0) continue;
    candidate.Keep();
    return;
  }
}

}  // namespace zp
