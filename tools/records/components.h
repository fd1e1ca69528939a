// Components between the rows of a table and the collections that a store keeps.
//
// A table has the column id and any of the others: one for each text and number, one for each coefficient of a correlation
// (antoine_A, antoine_B, ...), and for a correlation with an equation number one for that (rho_liq_eq). A blank is no value.
#pragma once

#include <deque>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <zpbase/data.h>

#include "tools/records/csv_table.h"

struct Component {
  int id;
  GPDataArray data;
};

// Gives take the components of a table one after the other; name is the file's. Raises Failure with the line and column of what
// is wrong.
void ReadComponents(std::istream & input, std::string const & name,
                    std::function<void(Component const & component)> const & take);

struct Column;

// Rows of a table to be written; only the cells that aren't blank take memory.
class ComponentTable {
 public:
  // False for a record that a table can't give back bit for bit.
  bool Add(int id, std::span<BYTE const> bytes);

  // The columns that are used, their names, and the rows with a field for each.
  std::vector<Column const *> GetColumns() const;
  std::vector<std::string_view> GetHead() const;
  void ForEachRow(std::function<void(std::vector<std::string_view> const & fields)> const & take) const;

 private:
  std::deque<std::string> m_Pieces;  // the cells of all rows; each row is in one piece and begins with its id
  std::vector<bool> m_Used;          // of all columns
  std::vector<std::string> m_Row;    // blank between two records
};
