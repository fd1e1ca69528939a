// The plain correlation records. They differ in the count of coefficients alone, so each operation is one of four templates.

#include <zpbase/data.h>

#include <zpbase/platform/collections.h>

namespace {

template <class Record>
Record viewAs(GPv const & item)
{
  Record record;
  record.GPv::operator=(item);
  return record;
}

template <class... Number>
int unloadNumbers(GPv const & record, Number &... out)
{
  float values[sizeof...(out)];
  int const stored = record.GetFloatData(values, static_cast<int>(sizeof...(out)));
  size_t i = 0;
  ((out = values[i++]), ...);
  return stored;
}

template <class... Text>
int unloadTexts(GPv const & record, Text &... out)
{
  CStringArray texts;
  int const stored = record.GetFloatData(texts, static_cast<int>(sizeof...(out)), "%g");
  int i = 0;
  ((out = texts[i++]), ...);
  return stored;
}

template <class... Number>
int loadNumbers(GPv & record, Number... in)
{
  float const values[] = {static_cast<float>(in)...};
  return record.PutFloatData(values, static_cast<int>(sizeof...(in)));
}

template <class... Text>
int loadTexts(GPv & record, Text const &... in)
{
  CStringArray texts;
  (texts.Add(in), ...);
  return record.PutFloatData(texts);
}

}  // namespace

GPAvp GPAvp::As(GPv const & item)
{
  return viewAs<GPAvp>(item);
}

GPObject * GPAvp::Clone() const
{
  return new GPAvp(*this);
}

int GPAvp::Unload(float & c1, float & c2, float & c3) const
{
  return unloadNumbers(*this, c1, c2, c3);
}

int GPAvp::Unload(float & c1, float & c2, float & c3, float & c4, float & c5, float & c6, float & c7) const
{
  return unloadNumbers(*this, c1, c2, c3, c4, c5, c6, c7);
}

int GPAvp::Unload(double & c1, double & c2, double & c3) const
{
  return unloadNumbers(*this, c1, c2, c3);
}

int GPAvp::Unload(CString & c1, CString & c2, CString & c3) const
{
  return unloadTexts(*this, c1, c2, c3);
}

int GPAvp::Load(double c1, double c2, double c3, double c4, double c5, double c6, double c7)
{
  return loadNumbers(*this, c1, c2, c3, c4, c5, c6, c7);
}

int GPAvp::Load(CString const & c1, CString const & c2, CString const & c3)
{
  return loadTexts(*this, c1, c2, c3);
}

GPIghc GPIghc::As(GPv const & item)
{
  return viewAs<GPIghc>(item);
}

GPObject * GPIghc::Clone() const
{
  return new GPIghc(*this);
}

int GPIghc::Unload(float & c1, float & c2, float & c3, float & c4, float & c5, float & c6) const
{
  return unloadNumbers(*this, c1, c2, c3, c4, c5, c6);
}

int GPIghc::Unload(double & c1, double & c2, double & c3, double & c4, double & c5, double & c6) const
{
  return unloadNumbers(*this, c1, c2, c3, c4, c5, c6);
}

int GPIghc::Unload(CString & c1, CString & c2, CString & c3, CString & c4, CString & c5, CString & c6) const
{
  return unloadTexts(*this, c1, c2, c3, c4, c5, c6);
}

int GPIghc::Load(double c1, double c2, double c3, double c4, double c5, double c6)
{
  return loadNumbers(*this, c1, c2, c3, c4, c5, c6);
}

int GPIghc::Load(CString const & c1, CString const & c2, CString const & c3, CString const & c4, CString const & c5,
                 CString const & c6)
{
  return loadTexts(*this, c1, c2, c3, c4, c5, c6);
}

GPLv GPLv::As(GPv const & item)
{
  return viewAs<GPLv>(item);
}

GPObject * GPLv::Clone() const
{
  return new GPLv(*this);
}

int GPLv::Unload(float & c1, float & c2) const
{
  return unloadNumbers(*this, c1, c2);
}

int GPLv::Unload(double & c1, double & c2) const
{
  return unloadNumbers(*this, c1, c2);
}

int GPLv::Unload(CString & c1, CString & c2) const
{
  return unloadTexts(*this, c1, c2);
}

int GPLv::Load(double c1, double c2)
{
  return loadNumbers(*this, c1, c2);
}

int GPLv::Load(CString const & c1, CString const & c2)
{
  return loadTexts(*this, c1, c2);
}

GPSt GPSt::As(GPv const & item)
{
  return viewAs<GPSt>(item);
}

GPObject * GPSt::Clone() const
{
  return new GPSt(*this);
}

int GPSt::Unload(float & c1, float & c2) const
{
  return unloadNumbers(*this, c1, c2);
}

int GPSt::Unload(double & c1, double & c2) const
{
  return unloadNumbers(*this, c1, c2);
}

int GPSt::Unload(CString & c1, CString & c2) const
{
  return unloadTexts(*this, c1, c2);
}

int GPSt::Load(double c1, double c2)
{
  return loadNumbers(*this, c1, c2);
}

int GPSt::Load(CString const & c1, CString const & c2)
{
  return loadTexts(*this, c1, c2);
}

GPHenry GPHenry::As(GPv const & item)
{
  return viewAs<GPHenry>(item);
}

GPObject * GPHenry::Clone() const
{
  return new GPHenry(*this);
}

int GPHenry::Unload(float & c1, float & c2, float & c3, float & c4) const
{
  return unloadNumbers(*this, c1, c2, c3, c4);
}

int GPHenry::Unload(double & c1, double & c2, double & c3, double & c4) const
{
  return unloadNumbers(*this, c1, c2, c3, c4);
}

int GPHenry::Unload(CString & c1, CString & c2, CString & c3, CString & c4) const
{
  return unloadTexts(*this, c1, c2, c3, c4);
}

int GPHenry::Load(double c1, double c2, double c3, double c4)
{
  return loadNumbers(*this, c1, c2, c3, c4);
}

int GPHenry::Load(CString const & c1, CString const & c2, CString const & c3, CString const & c4)
{
  return loadTexts(*this, c1, c2, c3, c4);
}

GPMsrk GPMsrk::As(GPv const & item)
{
  return viewAs<GPMsrk>(item);
}

GPObject * GPMsrk::Clone() const
{
  return new GPMsrk(*this);
}

int GPMsrk::Unload(float & c1, float & c2) const
{
  return unloadNumbers(*this, c1, c2);
}

int GPMsrk::Unload(double & c1, double & c2) const
{
  return unloadNumbers(*this, c1, c2);
}

int GPMsrk::Unload(CString & c1, CString & c2) const
{
  return unloadTexts(*this, c1, c2);
}

int GPMsrk::Load(double c1, double c2)
{
  return loadNumbers(*this, c1, c2);
}

int GPMsrk::Load(CString const & c1, CString const & c2)
{
  return loadTexts(*this, c1, c2);
}
