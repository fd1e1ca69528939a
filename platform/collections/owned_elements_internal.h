// How an owning container reads its elements.
#pragma once

#include <memory>
#include <unordered_set>

#include <zpbase/platform/archive.h>
#include <zpbase/platform/exceptions.h>

namespace zp {

// Reads the elements of one container, one after the other. What was read is collected once a reference comes, which is rare.
class OwnedElements {
 public:
  // hasRepeats becomes true as soon as one object is read for a second place.
  OwnedElements(CArchive & ar, CRuntimeClass const * elementClass, bool & hasRepeats)
      : m_Archive(ar), m_pClass(elementClass), m_bHasRepeats(hasRepeats)
  {
  }

  // The next element; forEachRead calls what it is given with each of those before.
  template <class ForEachRead>
  CObject * Next(ForEachRead forEachRead)
  {
    bool isReference;
    CObject * const element = m_Archive.ReadOwnedElement(m_pClass, isReference);
    if (!isReference) {
      std::unique_ptr<CObject> owned(element);
      if (!m_Read.empty()) m_Read.insert(element);
      return owned.release();
    }
    if (m_Read.empty()) forEachRead([this](CObject const * read) { m_Read.insert(read); });
    if (!m_Read.contains(element)) AfxThrowArchiveException(CArchiveException::badIndex);
    m_bHasRepeats = true;
    return element;
  }

 private:
  CArchive & m_Archive;
  CRuntimeClass const * m_pClass;
  bool & m_bHasRepeats;
  std::unordered_set<CObject const *> m_Read;
};

}  // namespace zp
