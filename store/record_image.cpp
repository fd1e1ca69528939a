// RecordImage: pages of a record file in memory.

#include "store/record_image_internal.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <new>
#include <utility>

#include <zpbase/platform/memory_pages.h>

namespace zp {

// The bits of the grains that hold the bytes from start up to end, at least one, of a page.
uint64_t RecordImage::GrainsOf(UINT start, UINT end)
{
  UINT const first = start / grainBytes;
  UINT const last = (end - 1) / grainBytes;
  return ~uint64_t{0} >> (63 - (last - first)) << first;
}

bool RecordImage::Read(ULONGLONG position, void * buffer, UINT count)
{
  auto * to = static_cast<BYTE *>(buffer);
  for (ULONGLONG const end = position + count; position < end;) {
    auto const index = static_cast<size_t>(position / pageBytes);
    auto const start = static_cast<UINT>(position % pageBytes);
    auto const piece = static_cast<UINT>(std::min<ULONGLONG>(end - position, pageBytes - start));
    uint64_t const wanted = GrainsOf(start, start + piece);
    if ((index >= m_Pages.size() || (m_Pages[index].good & wanted) != wanted) && !Load(index, wanted)) return false;
    if (position + piece > m_nEnd) return false;
    std::memcpy(to, m_Pages[index].bytes + start, piece);
    to += piece;
    position += piece;
  }
  return true;
}

// A page that can't be had is no failure: the file is asked for the record alone, and tells what is wrong.
bool RecordImage::Load(size_t index, uint64_t wanted)
{
  try {
    if (index >= m_Pages.size()) m_Pages.resize(index + 1);
    Page & page = m_Pages[index];
    bool const isNew = page.bytes == nullptr;
    if (isNew && !Touch(page)) return false;
    ReadGrains(index, isNew ? ~uint64_t{0} : wanted & ~page.good);
    return (page.good & wanted) == wanted;
  } catch (CFileException * problem) {
    zp::ExceptionGuard const guard(problem);
  } catch (std::bad_alloc const &) {
  }
  return false;
}

// True when the page has room from now on.
bool RecordImage::Touch(Page & page)
{
  if (std::exchange(page.isTouched, true)) page.bytes = TakeRoom();
  return page.bytes != nullptr;
}

// Room for one page, or null where all is used up. It is taken for as many pages as the file is known to have still, so that
// large pages of the host can stand behind it; what isn't filled costs nothing.
BYTE * RecordImage::TakeRoom()
{
  if (m_nRoomLeft == 0) {
    constexpr size_t mostGrowth = 32;
    auto const inFile = static_cast<size_t>((m_nLength + pageBytes - 1) / pageBytes);
    size_t const wanted = std::max(inFile - std::min(inFile, m_nPagesTaken), std::clamp<size_t>(m_nPagesTaken, 1, mostGrowth));
    size_t const pages = std::min(wanted, maxPages - m_nPagesTaken);
    if (pages == 0) return nullptr;
    m_Rooms.push_back(std::make_unique_for_overwrite<BYTE[]>(pages * pageBytes));
    m_pRoom = m_Rooms.back().get();
    m_nRoomLeft = pages;
    PreferLargePages(m_pRoom, pages * pageBytes);
  }
  --m_nRoomLeft;
  ++m_nPagesTaken;
  return std::exchange(m_pRoom, m_pRoom + pageBytes);
}

// The grains from the first missing one to the last, by one read; good are those that it came to.
void RecordImage::ReadGrains(size_t index, uint64_t missing)
{
  Page & page = m_Pages[index];
  auto const start = static_cast<UINT>(std::countr_zero(missing)) * grainBytes;
  auto const end = (64 - static_cast<UINT>(std::countl_zero(missing))) * grainBytes;
  ULONGLONG const position = ULONGLONG{index} * pageBytes + start;
  auto const there = static_cast<UINT>(std::min<ULONGLONG>(end - start, m_nLength - std::min(position, m_nLength)));
  UINT const got = m_File.ReadAt(position, page.bytes + start, there);
  if (got < end - start) m_nEnd = position + got;
  if (got > 0) page.good |= GrainsOf(start, start + got);
}

void RecordImage::Forget(ULONGLONG position, ULONGLONG count)
{
  if (position + count > m_nEnd) return ForgetFrom(position);
  ULONGLONG const end = std::min<ULONGLONG>(position + count, ULONGLONG{m_Pages.size()} * pageBytes);
  while (position < end) {
    auto const start = static_cast<UINT>(position % pageBytes);
    auto const piece = static_cast<UINT>(std::min<ULONGLONG>(end - position, pageBytes - start));
    m_Pages[static_cast<size_t>(position / pageBytes)].good &= ~GrainsOf(start, start + piece);
    position += piece;
  }
}

void RecordImage::ForgetFrom(ULONGLONG position)
{
  ULONGLONG const start = std::min(position, std::exchange(m_nEnd, unknownEnd));
  Forget(start, unknownEnd - start);
}

}  // namespace zp
