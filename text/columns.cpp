// ParseFile: what the lines of a numeric data file have in common, their delimiter and the columns of their values.

#include <zpbase/text.h>

#include <algorithm>
#include <vector>

namespace {

// Character positions from first to last. An empty value, whose last position is the one before its first, is often repeated
// at the end of lines: it stands here once, with how many times it occurs.
struct Column {
  int64_t first;
  int64_t last;
  int count;
};

// Columns in ascending order that don't overlap. Once two do, nothing can part them again, and the search is over.
class ColumnList {
 public:
  // False when a value makes two columns overlap.
  bool Overlay(int64_t first, int64_t last)
  {
    auto const column = std::lower_bound(m_Columns.begin(), m_Columns.end(), first,
                                         [](Column const & each, int64_t place) { return each.last < place; });
    if (column != m_Columns.end() && last >= column->first) return widen(column, first, last);
    if (column != m_Columns.begin() && std::prev(column)->first == first && std::prev(column)->last == last) {
      ++std::prev(column)->count;
    } else {
      m_Columns.insert(column, {first, last, 1});
    }
    return true;
  }

  void CopyTo(CUIntArray & starts, CUIntArray & ends) const
  {
    for (Column const & column : m_Columns) {
      for (int i = 0; i < column.count; ++i) {
        starts.Add(static_cast<UINT>(column.first));
        ends.Add(static_cast<UINT>(column.last));
      }
    }
  }

 private:
  bool widen(std::vector<Column>::iterator column, int64_t first, int64_t last)
  {
    column->first = std::min(column->first, first);
    column->last = std::max(column->last, last);
    bool const clearsNext = std::next(column) == m_Columns.end() || column->last < std::next(column)->first;
    bool const clearsPrevious = column == m_Columns.begin() || std::prev(column)->last < column->first;
    return column->count == 1 && clearsNext && clearsPrevious;
  }

  std::vector<Column> m_Columns;
};

bool overlayAll(ColumnList & columns, CUIntArray const & starts, CUIntArray const & ends)
{
  for (int i = 0; i < starts.GetSize(); ++i) {
    if (!columns.Overlay(starts[i], static_cast<int>(ends[i]))) return false;
  }
  return true;
}

}  // namespace

// The first tab, blank or comma of a numeric line speaks for it, a leading blank too; lines that disagree leave no answer.
int ParseFile::GetDelimeter()
{
  GotoLineNumber(1);
  CString delimiters;
  GetTokenDelimeters(delimiters);
  SetTokenDelimeters("\t ,");
  char finding = '\0';
  while (ReadLine() != -1) {
    if (GetValueCount() == 0) continue;
    int const place = FindOneOf("\t ,");
    if (place == -1 || GetAt(place) == finding) continue;
    bool const differs = finding != '\0';
    finding = differs ? '\0' : GetAt(place);
    if (differs) break;
  }
  SetTokenDelimeters(delimiters);
  GotoLineNumber(1);
  return finding;
}

int ParseFile::GetColumnPositions(CUIntArray & starts, CUIntArray & ends)
{
  GotoLineNumber(1);
  ColumnList columns;
  bool areApart = true;
  while (ReadLine() != -1) {
    if (areApart && GetValuePositions(starts, ends)) areApart = overlayAll(columns, starts, ends);
  }
  starts.RemoveAll();
  ends.RemoveAll();
  if (areApart) columns.CopyTo(starts, ends);
  GotoLineNumber(1);
  return starts.GetSize() != 0;
}

int ParseFile::GetMaxValuesPerLine()
{
  GotoLineNumber(1);
  int most = 0;
  while (ReadLine() != -1) most = std::max(most, GetValueCount());
  GotoLineNumber(1);
  return most;
}
