// GPDippr: a numbered equation. Its area, little-endian, without gaps, of 18 to 38 bytes:
//
//   offset  width   content
//   0       2       equation number, unsigned
//   2       4 each  c1 to c4, single
//   18      4 each  as many of c5 to c9 as are held, single
//
// Equation 100 with 1, 2, 3, 4, 5 is 64 00, 00 00 80 3F, 00 00 00 40, 00 00 40 40, 00 00 80 40, 00 00 A0 40.

#include <zpbase/data.h>

#include <algorithm>

#include <zpbase/platform/bytes.h>
#include <zpbase/platform/number_text.h>

namespace {

template <class Number, class... Out>
void assignAll(Number const * values, Out &... out)
{
  size_t i = 0;
  ((out = values[i++]), ...);
}

// How many of the values are kept: the fixed ones, and the others up to the last one that is present.
template <class Value, class Present>
int countKept(Value const & values, Present present)
{
  int count = GPDippr::maxCoefficients;
  while (count > GPDippr::fixedCoefficients && !present(values[count - 1])) --count;
  return count;
}

}  // namespace

struct GPDippr::Values {
  unsigned short nEquation = 0;
  float fCoefficients[maxCoefficients] = {};
};

// Gives the count of further values held; an area without the fixed part leaves zeros.
int GPDippr::Get(Values & values) const
{
  if (GetSize() < minBytes) return 0;
  int const further = std::min((GetSize() - minBytes) / coefficientBytes, maxCoefficients - fixedCoefficients);
  values.nEquation = zp::ReadLittle<unsigned short>(GetArea());
  for (int i = 0; i < fixedCoefficients + further; ++i)
    values.fCoefficients[i] = zp::ReadLittle<float>(GetArea() + coefficientOffset + coefficientBytes * i);
  return further;
}

int GPDippr::Put(unsigned int equation, std::span<float const> values)
{
  ResetArea(coefficientOffset + coefficientBytes * static_cast<int>(values.size()));
  zp::WriteLittle(GetArea(), static_cast<unsigned short>(equation));
  BYTE * place = GetArea() + coefficientOffset;
  for (float const value : values) {
    zp::WriteLittle(place, value);
    place += coefficientBytes;
  }
  return static_cast<int>(values.size()) - fixedCoefficients;
}

GPDippr GPDippr::As(GPv const & item)
{
  GPDippr record;
  record.GPv::operator=(item);
  return record;
}

GPObject * GPDippr::Clone() const
{
  return new GPDippr(*this);
}

int GPDippr::Unload(unsigned short & equation, float & c1, float & c2, float & c3, float & c4, float & c5, float & c6, float & c7,
                    float & c8, float & c9) const
{
  Values values;
  int const further = Get(values);
  equation = values.nEquation;
  assignAll(values.fCoefficients, c1, c2, c3, c4, c5, c6, c7, c8, c9);
  return further;
}

int GPDippr::Unload(unsigned int & equation, double & c1, double & c2, double & c3, double & c4, double & c5, double & c6,
                    double & c7, double & c8, double & c9) const
{
  Values values;
  int const further = Get(values);
  equation = values.nEquation;
  assignAll(values.fCoefficients, c1, c2, c3, c4, c5, c6, c7, c8, c9);
  return further;
}

int GPDippr::Unload(CString & equation, CString & c1, CString & c2, CString & c3, CString & c4, CString & c5, CString & c6,
                    CString & c7, CString & c8, CString & c9) const
{
  Values values;
  int const further = Get(values);
  if (GetSize() < minBytes) return 0;
  equation.Format("%d", values.nEquation);
  CString * const out[] = {&c1, &c2, &c3, &c4, &c5, &c6, &c7, &c8, &c9};
  for (int i = 0; i < fixedCoefficients + further; ++i) out[i]->Format("%g", static_cast<double>(values.fCoefficients[i]));
  return further;
}

int GPDippr::Load(unsigned int equation, double c1, double c2, double c3, double c4, double c5, double c6, double c7, double c8,
                  double c9)
{
  double const in[] = {c1, c2, c3, c4, c5, c6, c7, c8, c9};
  int const count = countKept(in, [](double value) { return value != 0.0; });
  float values[maxCoefficients];
  std::transform(in, in + count, values, [](double value) { return static_cast<float>(value); });
  return Put(equation, std::span<float const>(values, static_cast<size_t>(count)));
}

int GPDippr::Load(CString const & equation, CString const & c1, CString const & c2, CString const & c3, CString const & c4,
                  CString const & c5, CString const & c6, CString const & c7, CString const & c8, CString const & c9)
{
  CString const * const in[] = {&c1, &c2, &c3, &c4, &c5, &c6, &c7, &c8, &c9};
  int const count = countKept(in, [](CString const * text) { return !text->IsEmpty(); });
  float values[maxCoefficients];
  std::transform(in, in + count, values, [](CString const * text) { return static_cast<float>(zp::TextToDouble(text->View())); });
  return Put(static_cast<unsigned int>(zp::TextToInt(equation.View())),
             std::span<float const>(values, static_cast<size_t>(count)));
}
