// GPv: an item whose value is an area of bytes. Its stream:
//
//   offset  width  content
//   0       2      data id, unsigned
//   2       2      size of the area in bytes, with sign
//   4       size   the area
//
// The item 5 with the area 41 42: 05 00, 02 00, 41 42.

#include <zpbase/data.h>

#include <algorithm>
#include <vector>

#include <zpbase/platform/archive.h>
#include <zpbase/platform/bytes.h>
#include <zpbase/platform/collections.h>
#include <zpbase/platform/format.h>
#include <zpbase/platform/number_text.h>

IMPLEMENT_SERIAL(GPv, GPData, 1)

namespace {

short toElement(int value)
{
  return static_cast<short>(value);
}

float toElement(double value)
{
  return static_cast<float>(value);
}

// How many are left without the zeros at the end.
template <class Number>
size_t countKept(Number const * numbers, size_t count)
{
  while (count > 0 && numbers[count - 1] == Number{}) --count;
  return count;
}

// Appends count packed elements to out as texts under format, then empty texts up to minimum. Shown is the type that an element
// takes as the format's argument.
template <class Element, class Shown>
void appendTexts(CStringArray & out, BYTE const * area, int count, int minimum, CString const & format)
{
  int const before = out.GetSize();
  try {
    for (int i = 0; i < count; ++i) {
      zp::FormatArg const value(static_cast<Shown>(zp::ReadLittle<Element>(area + static_cast<size_t>(i) * sizeof(Element))));
      std::string text;
      zp::FormatInto(text, format, std::span<zp::FormatArg const>(&value, 1));
      out.Add(CString(std::move(text)));
    }
    for (int i = count; i < minimum; ++i) out.Add(CString());
  } catch (std::bad_alloc const &) {
    out.SetSize(before);
    throw;
  }
}

template <class Element, class Number>
void copyNumbers(Number * out, int count, BYTE const * area, int stored)
{
  for (int i = 0; i < count; ++i)
    out[i] = i < stored ? zp::ReadLittle<Element>(area + static_cast<size_t>(i) * sizeof(Element)) : Number{};
}

}  // namespace

GPv::GPv(unsigned int id, int size) : GPData(id)
{
  ResetArea(size);
}

GPv::GPv(GPv const & other) : GPData(other)
{
  Init(other);
}

GPv & GPv::operator=(GPv const & other)
{
  if (this == &other) return *this;
  Init(other);
  GPData::operator=(other);
  return *this;
}

GPv::~GPv() = default;

void GPv::Init(GPv const & other)
{
  std::unique_ptr<BYTE[]> area;
  if (other.m_nSize > 0) {
    area = std::make_unique_for_overwrite<BYTE[]>(static_cast<size_t>(other.m_nSize));
    std::memcpy(area.get(), other.m_pArea.get(), static_cast<size_t>(other.m_nSize));
  }
  m_pArea = std::move(area);
  m_nSize = other.m_nSize;
}

int GPv::ResetArea(int size)
{
  if (size < 0 || size > maxSize) return 0;
  m_pArea = size > 0 ? std::make_unique<BYTE[]>(static_cast<size_t>(size)) : nullptr;
  m_nSize = size;
  return 1;
}

int GPv::ExpandVArea(int size)
{
  if (size < m_nSize || size > maxSize) return 0;
  if (size == m_nSize) return 1;
  auto area = std::make_unique<BYTE[]>(static_cast<size_t>(size));
  std::copy_n(m_pArea.get(), m_nSize, area.get());
  m_pArea = std::move(area);
  m_nSize = size;
  return 1;
}

int GPv::GetShortIntData(CStringArray & out, int minimum, CString const & format) const
{
  int const stored = m_nSize / 2;
  appendTexts<short, int>(out, m_pArea.get(), stored, minimum, format);
  return stored;
}

int GPv::GetFloatData(CStringArray & out, int minimum, CString const & format) const
{
  int const stored = m_nSize / 4;
  appendTexts<float, double>(out, m_pArea.get(), stored, minimum, format);
  return stored;
}

int GPv::GetShortIntData(int * const out, int count) const
{
  int const stored = m_nSize / 2;
  copyNumbers<short>(out, count, m_pArea.get(), stored);
  return stored;
}

int GPv::GetFloatData(float * const out, int count) const
{
  int const stored = m_nSize / 4;
  copyNumbers<float>(out, count, m_pArea.get(), stored);
  return stored;
}

// Packs the elements, which are read before the old area goes.
template <class Element>
int GPv::PutElements(Element const * elements, size_t count)
{
  size_t const size = count * sizeof(Element);
  if (size > static_cast<size_t>(maxSize)) return 0;
  std::unique_ptr<BYTE[]> area;
  if (count > 0) area = std::make_unique_for_overwrite<BYTE[]>(size);
  for (size_t i = 0; i < count; ++i) zp::WriteLittle(area.get() + i * sizeof(Element), elements[i]);
  m_pArea = std::move(area);
  m_nSize = static_cast<int>(size);
  return static_cast<int>(count);
}

int GPv::PutShortIntData(CStringArray const & in)
{
  std::vector<short> elements(static_cast<size_t>(in.GetSize()));
  for (int i = 0; i < in.GetSize(); ++i) elements[static_cast<size_t>(i)] = toElement(zp::TextToInt(in[i].View()));
  return PutElements(elements.data(), countKept(elements.data(), elements.size()));
}

int GPv::PutFloatData(CStringArray const & in)
{
  std::vector<float> elements(static_cast<size_t>(in.GetSize()));
  for (int i = 0; i < in.GetSize(); ++i) elements[static_cast<size_t>(i)] = toElement(zp::TextToDouble(in[i].View()));
  return PutElements(elements.data(), countKept(elements.data(), elements.size()));
}

// A number that isn't zero counts, even if its low 16 bits are.
int GPv::PutShortIntData(int const * const in, int count)
{
  std::vector<short> elements(countKept(in, static_cast<size_t>(std::max(count, 0))));
  std::transform(in, in + elements.size(), elements.begin(), [](int value) { return toElement(value); });
  return PutElements(elements.data(), elements.size());
}

int GPv::PutFloatData(float const * const in, int count)
{
  return PutElements(in, countKept(in, static_cast<size_t>(std::max(count, 0))));
}

GPObject * GPv::Clone() const
{
  return new GPv(*this);
}

void GPv::Serialize(CArchive & ar)
{
  GPData::Serialize(ar);
  if (ar.IsStoring()) {
    ar << static_cast<short>(m_nSize);
    ar.Write(m_pArea.get(), static_cast<UINT>(m_nSize));
    return;
  }
  short size;
  ar >> size;
  ar.RequireBytes(static_cast<ULONGLONG>(size));  // a negative size is more than any archive holds
  m_nSize = 0;
  m_pArea = size > 0 ? std::make_unique_for_overwrite<BYTE[]>(static_cast<size_t>(size)) : nullptr;
  m_nSize = size;
  ar.EnsureRead(m_pArea.get(), static_cast<UINT>(m_nSize));
}
