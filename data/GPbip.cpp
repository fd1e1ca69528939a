// GPbip: float data for a pair of components. Its stream:
//
//   offset    width  content
//   0         2      data id, unsigned
//   2         2      size of the area in bytes, with sign
//   4         size   the area
//   4 + size  2      second id, unsigned
//
// GPbip(1, 2), without an area: 01 00, 00 00, 02 00.

#include <zpbase/data.h>

#include <algorithm>
#include <utility>
#include <vector>

#include <zpbase/platform/archive.h>
#include <zpbase/platform/collections.h>
#include <zpbase/platform/format.h>
#include <zpbase/platform/number_text.h>

IMPLEMENT_SERIAL(GPbip, GPv, 1)

namespace {

constexpr unsigned int scaledDataID = 112;
constexpr int scaledElements = 2;
constexpr double scale = 1.987216;

}  // namespace

GPbip::GPbip(unsigned int id, unsigned int secondId, int size) : GPv(id, size), m_nSecondID(static_cast<WORD>(secondId)) {}

// How many elements at the front are held multiplied.
int GPbip::GetScaledCount() const
{
  return GetDataID() == scaledDataID ? scaledElements : 0;
}

// The first elements are shown in double precision, without passing through float again.
int GPbip::GetFloatData(CStringArray & out, int minimum, CString const & format) const
{
  float values[scaledElements];
  int const scaled = std::min(GetScaledCount(), GPv::GetFloatData(values, GetScaledCount()));
  CString texts[scaledElements];
  for (int i = 0; i < scaled; ++i) {
    zp::FormatArg const value(static_cast<double>(values[i]) / scale);
    std::string text;
    zp::FormatInto(text, format, std::span<zp::FormatArg const>(&value, 1));
    texts[i] = CString(std::move(text));
  }
  int const first = out.GetSize();
  int const stored = GPv::GetFloatData(out, minimum, format);
  for (int i = 0; i < scaled; ++i) out[first + i] = std::move(texts[i]);
  return stored;
}

int GPbip::GetFloatData(float * const out, int count) const
{
  int const stored = GPv::GetFloatData(out, count);
  for (int i = 0; i < std::min(count, GetScaledCount()); ++i) out[i] = static_cast<float>(out[i] / scale);
  return stored;
}

int GPbip::PutFloatData(CStringArray const & in)
{
  std::vector<float> values(static_cast<size_t>(in.GetSize()));
  for (int i = 0; i < in.GetSize(); ++i) values[static_cast<size_t>(i)] = static_cast<float>(zp::TextToDouble(in[i].View()));
  return PutFloatData(values.data(), in.GetSize());
}

int GPbip::PutFloatData(float const * const in, int count)
{
  std::vector<float> values(in, in + std::max(count, 0));
  for (int i = 0; i < std::min(count, GetScaledCount()); ++i) values[static_cast<size_t>(i)] = static_cast<float>(in[i] * scale);
  return GPv::PutFloatData(values.data(), count);
}

GPObject * GPbip::Clone() const
{
  return new GPbip(*this);
}

int GPbip::Compare(GPObject const * other) const
{
  int const difference = GPData::Compare(other);
  if (difference != 0 || !other->IsKindOf(RUNTIME_CLASS(GPbip))) return difference;
  return static_cast<int>(m_nSecondID) - static_cast<int>(static_cast<GPbip const *>(other)->m_nSecondID);
}

void GPbip::Serialize(CArchive & ar)
{
  GPv::Serialize(ar);
  if (ar.IsStoring())
    ar << m_nSecondID;
  else
    ar >> m_nSecondID;
}
