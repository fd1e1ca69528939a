// A first look at a metafile: how many records of each function it has, and the part of the plane that it shows.
#pragma once

#include <map>
#include <optional>

#include <zpbase/platform/metafile.h>

// The parameter words of a record; those behind its end read as 0.
class RecordWords {
 public:
  explicit RecordWords(METARECORD const & record)
      : m_pWords(record.rdParm), m_nCount(record.rdSize < headWords ? 0 : record.rdSize - headWords)
  {
  }
  DWORD GetCount() const { return m_nCount; }
  int operator[](DWORD index) const { return index < m_nCount ? static_cast<int16_t>(m_pWords[index]) : 0; }

 private:
  static constexpr DWORD headWords = 3;

  WORD const * m_pWords;
  DWORD m_nCount;
};

class MetafileSurvey {
 public:
  explicit MetafileSurvey(HMETAFILE metafile);

  // In the metafile's units: the window that its records set, else the frame of its header, else what it draws; the last also
  // where the others show nothing of that. Never empty.
  RECT GetBounds() const;

  bool IsWhole() const { return m_bWhole; }      // else it ends inside a record
  bool IsUpwards() const { return m_bUpwards; }  // its window counts y upwards
  unsigned long long GetRecords() const { return m_nRecords; }
  std::map<unsigned int, unsigned long long> const & GetCounts() const { return m_Counts; }  // by function

 private:
  void Look(METARECORD const & record);
  void LookAtPoints(WORD function, RecordWords const & words);
  void AddPoint(int x, int y);
  void SetWindow(int width, int height);

  std::map<unsigned int, unsigned long long> m_Counts;
  unsigned long long m_nRecords = 0;
  std::optional<POINT> m_Origin;
  std::optional<SIZE> m_Extent;
  std::optional<RECT> m_Header;
  std::optional<RECT> m_Drawn;
  bool m_bUpwards = false;
  bool m_bWhole;
};
