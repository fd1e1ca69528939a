// The parts of an archive's objects, for the room that keeps stored objects in another form and reads and writes their bytes
// itself. Nobody else needs them.
#pragma once

#include "archive.h"

namespace zp {

class ZP_API ArchiveParts {
 public:
  explicit ArchiveParts(CArchive & archive) : m_Archive(archive) {}

  // Reads a tag and gives the class of the new object behind it, or null for a null pointer; a reference is badIndex.
  CRuntimeClass * ReadClass(CRuntimeClass const * requested);

  // Counts objects whose class was read so.
  void MapObjects(size_t count);

  // Takes a run of new objects of a class that was read before, of objectBytes own bytes each, as far as they lie ready in the
  // buffer and at most atMost: their count, with objects on the first one's bytes; each next one's are objectBytes + 2 further.
  // 0 when none lies ready in that form. The bytes stay valid until the next read.
  size_t ReadRun(CRuntimeClass const * record, size_t objectBytes, size_t atMost, BYTE const *& objects);

  // Takes the next count bytes, which lie in the buffer until the next read; raises endOfFile.
  BYTE const * ReadInPlace(size_t count);

  // Writes the tag of a new object of the class, counted.
  void WriteClass(CRuntimeClass const * record);

 private:
  CArchive & m_Archive;
};

}  // namespace zp
