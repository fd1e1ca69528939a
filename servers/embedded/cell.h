// One filled cell of a sheet in 16 bytes: its place, and a number, a text, a Boolean or an error.
#pragma once

#include <cstdint>
#include <string_view>
#include <utility>

namespace embedded {

// A text that cells share: UTF-8, counted, never changed. Halves of 16-bit pairs that stand alone have three bytes each.
class SharedText {
 public:
  SharedText() = default;
  explicit SharedText(std::string_view utf8);
  SharedText(SharedText const & other) : m_pBlock(other.m_pBlock) { Hold(); }
  SharedText(SharedText && other) noexcept : m_pBlock(std::exchange(other.m_pBlock, nullptr)) {}
  ~SharedText() { Drop(); }
  SharedText & operator=(SharedText other) noexcept
  {
    std::swap(m_pBlock, other.m_pBlock);
    return *this;
  }

  std::string_view View() const;

 private:
  friend class Cell;
  struct Block {
    uint32_t holders;
    uint32_t length;
  };

  void Hold() const
  {
    if (m_pBlock != nullptr) ++m_pBlock->holders;
  }
  void Drop();

  Block * m_pBlock = nullptr;  // the characters stand behind it; null for an empty text
};

enum class CellKind : uint8_t { Number, Text, Boolean, Error };

inline constexpr uint16_t numberError = 2036;  // #NUM!

class Cell {
 public:
  static Cell OfNumber(double value)
  {
    Cell cell;
    cell.m_Value.number = value;
    return cell;
  }
  static Cell OfText(SharedText text);
  static Cell OfBoolean(bool value);
  static Cell OfError(uint16_t code);  // one that zp::CellErrorText names

  Cell(Cell const & other);
  Cell(Cell && other) noexcept : m_nRow(other.m_nRow), m_nColumn(other.m_nColumn), m_Kind(other.m_Kind), m_Value(other.m_Value)
  {
    if (m_Kind == CellKind::Text) other.m_Value.text = nullptr;
  }
  ~Cell()
  {
    if (m_Kind == CellKind::Text) DropText();
  }
  Cell & operator=(Cell other) noexcept;

  // Both from 0.
  void SetPlace(uint32_t row, uint32_t column)
  {
    m_nRow = row;
    m_nColumn = static_cast<uint16_t>(column);
  }
  uint32_t GetRow() const { return m_nRow; }
  uint32_t GetColumn() const { return m_nColumn; }

  CellKind GetKind() const { return m_Kind; }
  double GetNumber() const { return m_Value.number; }
  std::string_view GetText() const;
  bool GetBoolean() const { return m_Value.code != 0; }
  uint16_t GetError() const { return m_Value.code; }

 private:
  Cell() = default;
  void DropText();

  uint32_t m_nRow = 0;
  uint16_t m_nColumn = 0;
  CellKind m_Kind = CellKind::Number;
  union {
    double number;
    SharedText::Block * text;
    uint16_t code;
  } m_Value = {0.0};
};

static_assert(sizeof(Cell) == 16);

}  // namespace embedded
