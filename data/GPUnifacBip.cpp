// GPUnifacBip: interaction parameters of a pair of groups. Its area, little-endian, without gaps, is a list of at most six
// entries of 10 bytes in ascending order of tag:
//
//   offset  width  content
//   0       2      tag, unsigned, 128 to 133
//   2       4      first value, single
//   6       4      second value, single
//
// The first pair alone, 1 and 2, is 80 00, 00 00 80 3F, 00 00 00 40.

#include <zpbase/data.h>

#include <algorithm>

#include <zpbase/platform/bytes.h>
#include <zpbase/platform/number_text.h>

namespace {

constexpr int slots = GPUnifacBip::maxEntries;

static_assert(GPUnifacBip::lastTag - GPUnifacBip::firstTag + 1 == slots);

float toFloat(CString const & text)
{
  return static_cast<float>(zp::TextToDouble(text.View()));
}

// The two outputs of a tag, out of those of all slots in the order of the tags.
template <class Output>
void setPointers(unsigned int tag, Output * const * outputs, Output *& first, Output *& second)
{
  if (tag < GPUnifacBip::firstTag || tag > GPUnifacBip::lastTag) return;
  first = outputs[2 * (tag - GPUnifacBip::firstTag)];
  second = outputs[2 * (tag - GPUnifacBip::firstTag) + 1];
}

}  // namespace

GPUnifacBip GPUnifacBip::As(GPv const & item)
{
  GPUnifacBip record(0, 0);
  record.GPv::operator=(item);
  return record;
}

GPObject * GPUnifacBip::Clone() const
{
  return new GPUnifacBip(*this);
}

int GPUnifacBip::GetEntryCount() const
{
  return std::min(GetSize() / entryBytes, slots);
}

GPUnifacBip::Entry GPUnifacBip::GetEntry(int index) const
{
  BYTE const * const place = GetArea() + index * entryBytes;
  return {zp::ReadLittle<WORD>(place), zp::ReadLittle<float>(place + 2), zp::ReadLittle<float>(place + 6)};
}

int GPUnifacBip::Load(CString const & a128, CString const & b128, CString const & a129, CString const & b129,
                      CString const & a130, CString const & b130, CString const & a131, CString const & b131,
                      CString const & a132, CString const & b132, CString const & a133, CString const & b133)
{
  CString const * const in[slots][2] = {{&a128, &b128}, {&a129, &b129}, {&a130, &b130},
                                        {&a131, &b131}, {&a132, &b132}, {&a133, &b133}};
  auto const held = [](auto const & pair) { return !pair[0]->IsEmpty() || !pair[1]->IsEmpty(); };
  auto const count = static_cast<int>(std::count_if(in, in + slots, held));
  ResetArea(count * entryBytes);
  BYTE * place = GetArea();
  for (unsigned int slot = 0; slot < slots; ++slot) {
    if (!held(in[slot])) continue;
    zp::WriteLittle(place, static_cast<WORD>(firstTag + slot));
    zp::WriteLittle(place + 2, toFloat(*in[slot][0]));
    zp::WriteLittle(place + 6, toFloat(*in[slot][1]));
    place += entryBytes;
  }
  return count;
}

void GPUnifacBip::SetBipFloatPtrs(unsigned int tag, float * const * outputs, float *& first, float *& second)
{
  setPointers(tag, outputs, first, second);
}

void GPUnifacBip::SetBipStringPtrs(unsigned int tag, CString * const * outputs, CString *& first, CString *& second)
{
  setPointers(tag, outputs, first, second);
}

int GPUnifacBip::Unload(float & a128, float & b128, float & a129, float & b129, float & a130, float & b130, float & a131,
                        float & b131, float & a132, float & b132, float & a133, float & b133) const
{
  float * const outputs[] = {&a128, &b128, &a129, &b129, &a130, &b130, &a131, &b131, &a132, &b132, &a133, &b133};
  for (float * output : outputs) *output = 0.0F;
  for (int i = 0; i < GetEntryCount(); ++i) {
    Entry const entry = GetEntry(i);
    float ignored;
    float * first = &ignored;
    float * second = &ignored;
    SetBipFloatPtrs(entry.tag, outputs, first, second);
    *first = entry.first;
    *second = entry.second;
  }
  return GetEntryCount();
}

int GPUnifacBip::Unload(double & a128, double & b128, double & a129, double & b129, double & a130, double & b130, double & a131,
                        double & b131, double & a132, double & b132, double & a133, double & b133) const
{
  double * const outputs[] = {&a128, &b128, &a129, &b129, &a130, &b130, &a131, &b131, &a132, &b132, &a133, &b133};
  float narrow[2 * slots];
  int const count = Unload(narrow[0], narrow[1], narrow[2], narrow[3], narrow[4], narrow[5], narrow[6], narrow[7], narrow[8],
                           narrow[9], narrow[10], narrow[11]);
  for (int i = 0; i < 2 * slots; ++i) *outputs[i] = static_cast<double>(narrow[i]);
  return count;
}

int GPUnifacBip::Unload(CString & a128, CString & b128, CString & a129, CString & b129, CString & a130, CString & b130,
                        CString & a131, CString & b131, CString & a132, CString & b132, CString & a133, CString & b133) const
{
  CString * const outputs[] = {&a128, &b128, &a129, &b129, &a130, &b130, &a131, &b131, &a132, &b132, &a133, &b133};
  for (int i = 0; i < GetEntryCount(); ++i) {
    Entry const entry = GetEntry(i);
    CString ignored;
    CString * first = &ignored;
    CString * second = &ignored;
    SetBipStringPtrs(entry.tag, outputs, first, second);
    first->Format("%g", static_cast<double>(entry.first));
    second->Format("%g", static_cast<double>(entry.second));
  }
  return GetEntryCount();
}
