// Cells and the texts that they share.

#include "servers/embedded/cell.h"

#include <cstring>
#include <new>

namespace embedded {

SharedText::SharedText(std::string_view utf8)
{
  if (utf8.empty()) return;
  m_pBlock = new (::operator new(sizeof(Block) + utf8.size())) Block{1, static_cast<uint32_t>(utf8.size())};
  std::memcpy(m_pBlock + 1, utf8.data(), utf8.size());
}

std::string_view SharedText::View() const
{
  return m_pBlock == nullptr ? std::string_view()
                             : std::string_view(reinterpret_cast<char const *>(m_pBlock + 1), m_pBlock->length);
}

void SharedText::Drop()
{
  if (m_pBlock != nullptr && --m_pBlock->holders == 0) ::operator delete(m_pBlock);
}

Cell Cell::OfText(SharedText text)
{
  Cell cell;
  cell.m_Kind = CellKind::Text;
  cell.m_Value.text = std::exchange(text.m_pBlock, nullptr);
  return cell;
}

Cell Cell::OfBoolean(bool value)
{
  Cell cell;
  cell.m_Kind = CellKind::Boolean;
  cell.m_Value.code = value ? 1 : 0;
  return cell;
}

Cell Cell::OfError(uint16_t code)
{
  Cell cell;
  cell.m_Kind = CellKind::Error;
  cell.m_Value.code = code;
  return cell;
}

Cell::Cell(Cell const & other) : m_nRow(other.m_nRow), m_nColumn(other.m_nColumn), m_Kind(other.m_Kind), m_Value(other.m_Value)
{
  if (m_Kind == CellKind::Text && m_Value.text != nullptr) ++m_Value.text->holders;
}

Cell & Cell::operator=(Cell other) noexcept
{
  std::swap(m_nRow, other.m_nRow);
  std::swap(m_nColumn, other.m_nColumn);
  std::swap(m_Kind, other.m_Kind);
  std::swap(m_Value, other.m_Value);
  return *this;
}

std::string_view Cell::GetText() const
{
  SharedText text;
  text.m_pBlock = m_Value.text;
  std::string_view const view = text.View();
  text.m_pBlock = nullptr;
  return view;
}

void Cell::DropText()
{
  SharedText text;
  text.m_pBlock = m_Value.text;
}

}  // namespace embedded
