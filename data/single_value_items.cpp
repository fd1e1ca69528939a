// The data items of one value. Their streams, behind the data id at offset 0, of 2 bytes:
//
//   class  offset  width  content
//   GPd    2       8      value, IEEE 754 double
//   GPdw   2       4      value, with sign
//   GPf    2       4      value, IEEE 754 single
//   GPs    2              the text in the archive's form
//   GPw    2       2      value, with sign
//   GPxy   2       8      x, IEEE 754 double
//          10      8      y, IEEE 754 double
//
// GPw(5, -1): 05 00, FF FF.

#include <zpbase/data.h>

#include <zpbase/platform/archive.h>
#include <zpbase/platform/format.h>

IMPLEMENT_SERIAL(GPd, GPData, 1)
IMPLEMENT_SERIAL(GPdw, GPData, 1)
IMPLEMENT_SERIAL(GPf, GPData, 1)
IMPLEMENT_SERIAL(GPs, GPData, 1)
IMPLEMENT_SERIAL(GPw, GPData, 1)
IMPLEMENT_SERIAL(GPxy, GPData, 1)

namespace {

void formatValue(CString & out, CString const & format, char const * defaultFormat, zp::FormatArg value)
{
  std::string text;
  zp::FormatInto(text, format.IsEmpty() ? defaultFormat : format.GetString(), std::span<zp::FormatArg const>(&value, 1));
  out = CString(std::move(text));
}

}  // namespace

GPObject * GPd::Clone() const
{
  return new GPd(*this);
}

void GPd::GetString(CString & out, CString const & format) const
{
  formatValue(out, format, "%g", m_dValue);
}

void GPd::Serialize(CArchive & ar)
{
  GPData::Serialize(ar);
  if (ar.IsStoring())
    ar << m_dValue;
  else
    ar >> m_dValue;
}

GPObject * GPdw::Clone() const
{
  return new GPdw(*this);
}

void GPdw::GetString(CString & out, CString const & format) const
{
  formatValue(out, format, "%ld", GetValue());
}

void GPdw::Serialize(CArchive & ar)
{
  GPData::Serialize(ar);
  if (ar.IsStoring())
    ar << m_nValue;
  else
    ar >> m_nValue;
}

GPObject * GPf::Clone() const
{
  return new GPf(*this);
}

void GPf::GetString(CString & out, CString const & format) const
{
  formatValue(out, format, "%g", static_cast<double>(m_fValue));
}

void GPf::Serialize(CArchive & ar)
{
  GPData::Serialize(ar);
  if (ar.IsStoring())
    ar << m_fValue;
  else
    ar >> m_fValue;
}

GPObject * GPs::Clone() const
{
  return new GPs(*this);
}

int GPs::Compare(GPObject const * other) const
{
  int const difference = GPData::Compare(other);
  if (difference != 0 || !other->IsKindOf(RUNTIME_CLASS(GPs))) return difference;
  return m_strValue.View().compare(static_cast<GPs const *>(other)->m_strValue.View());
}

void GPs::GetString(CString & out, CString const & format) const
{
  if (!format.IsEmpty()) return formatValue(out, format, "", m_strValue.GetString());
  out.Format("%u\t", GetDataID());
  out += m_strValue;
}

void GPs::Serialize(CArchive & ar)
{
  GPData::Serialize(ar);
  if (ar.IsStoring())
    ar << m_strValue;
  else
    ar >> m_strValue;
}

GPObject * GPw::Clone() const
{
  return new GPw(*this);
}

void GPw::GetString(CString & out, CString const & format) const
{
  formatValue(out, format, "%d", static_cast<int>(GetValue()));
}

void GPw::Serialize(CArchive & ar)
{
  GPData::Serialize(ar);
  if (ar.IsStoring())
    ar << m_nValue;
  else
    ar >> m_nValue;
}

void GPxy::Init(GPxy const & other)
{
  m_dX = other.m_dX;
  m_dY = other.m_dY;
}

GPObject * GPxy::Clone() const
{
  return new GPxy(*this);
}

void GPxy::Serialize(CArchive & ar)
{
  GPData::Serialize(ar);
  if (ar.IsStoring())
    ar << m_dX << m_dY;
  else
    ar >> m_dX >> m_dY;
}
