// Variants: the rules by which they change, and what they own.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include <zpbase/platform/exceptions.h>
#include <zpbase/platform/variants.h>

#include "tests/support/Raised.h"

namespace {

COleVariant of(VARTYPE type, int64_t bits = 0)
{
  VARIANT value{};
  value.vt = type;
  value.cyVal.int64 = bits;
  return value;
}

COleVariant boolean(int value)
{
  return COleVariant(value, VT_BOOL);
}

COleVariant date(double days)
{
  return COleVariant(days, VT_DATE);
}

struct Change {
  COleVariant from;
  VARTYPE type;
  COleVariant expected;  // VT_ERROR: the failure
  WORD flags = 0;
};

COleVariant fails(HRESULT code)
{
  return COleVariant(code, VT_ERROR);
}

std::string numberOf(double value)
{
  CString text;
  text.Format("%f", value);
  return text.GetString();
}

std::string shown(VARIANT const & value)
{
  std::string const type = std::to_string(value.vt) + ": ";
  switch (value.vt) {
    case VT_BSTR:
      return type + zp::BstrToText(value.bstrVal).GetString();
    case VT_R4:
      return type + numberOf(value.fltVal);
    case VT_R8:
    case VT_DATE:
      return type + numberOf(value.dblVal);
    case VT_I2:
    case VT_BOOL:
      return type + std::to_string(value.iVal);
    case VT_I4:
    case VT_ERROR:
      return type + std::to_string(value.lVal);
    default:
      return type + std::to_string(value.cyVal.int64);
  }
}

TEST(Variants, ChangeByThePublishedRules)
{
  auto const overflow = fails(DISP_E_OVERFLOW);
  auto const mismatch = fails(DISP_E_TYPEMISMATCH);
  double const infinity = std::numeric_limits<double>::infinity();
  auto const text = [](char const * characters) { return COleVariant(characters); };
  auto const real = [](double value) { return COleVariant(value); };
  auto const i2 = [](int value) { return COleVariant(static_cast<short>(value)); };
  Change const changes[] = {
      // Halves go to the even neighbour, and the range is that of the rounded number.
      {real(0.5), VT_I2, i2(0)},
      {real(1.5), VT_I2, i2(2)},
      {real(-0.5), VT_UI1, COleVariant(BYTE{0})},
      {real(-2.5), VT_I2, i2(-2)},
      {real(2.5000001), VT_I2, i2(3)},
      {real(32767.49), VT_I2, i2(32767)},
      {real(32767.5), VT_I2, overflow},
      {real(-32768.5), VT_I2, i2(-32768)},
      {real(-32768.51), VT_I2, overflow},
      {real(2147483647.5), VT_I4, overflow},
      {real(2147483646.5), VT_I4, COleVariant(2147483646)},
      {real(-1), VT_UI4, overflow},
      {real(4294967295.0), VT_UI4, of(VT_UI4, 0xFFFFFFFF)},
      {real(NAN), VT_I4, overflow},
      {COleVariant(70000), VT_I2, overflow},
      {real(1e39), VT_R4, overflow},
      {real(infinity), VT_R4, COleVariant(static_cast<float>(infinity))},
      {real(922337203685477.0), VT_CY, of(VT_CY, 9223372036854770000)},
      {real(1e15), VT_CY, overflow},
      {of(VT_CY, 25000), VT_I2, i2(2)},
      {of(VT_I1, 0xFD), VT_R8, real(-3)},
      {COleVariant(BYTE{200}), VT_I2, i2(200)},
      {of(VT_UI2, 65535), VT_I4, COleVariant(65535)},
      {of(VT_UI4, 0xFFFFFFFF), VT_R8, real(4294967295.0)},
      {COleVariant(1.5f), VT_I2, i2(2)},
      {real(-4), VT_I1, of(VT_I1, 0xFC)},
      {real(128), VT_I1, overflow},
      {real(65535), VT_UI2, of(VT_UI2, 65535)},
      {of(VT_INT, 7), VT_UINT, of(VT_UINT, 7)},
      {of(VT_UINT, 7), VT_INT, of(VT_INT, 7)},
      {real(-129), VT_I1, overflow},
      {real(256), VT_UI1, overflow},
      {real(65535.5), VT_UI2, overflow},
      {real(4294967295.5), VT_UI4, overflow},
      {real(922337203685477.5), VT_CY, of(VT_CY, 9223372036854775000)},
      {real(922337203685477.625), VT_CY, overflow},
      // Texts of numbers.
      {real(3), VT_BSTR, text("3")},
      {real(0.1), VT_BSTR, text("0.1")},
      {real(1.0 / 3), VT_BSTR, text("0.333333333333333")},
      {real(-0.0), VT_BSTR, text("0")},
      {real(1e20), VT_BSTR, text("1E+20")},
      {real(1.5e-7), VT_BSTR, text("1.5E-07")},
      {COleVariant(0.1f), VT_BSTR, text("0.1")},
      {COleVariant(-5), VT_BSTR, text("-5")},
      {of(VT_CY, -12500), VT_BSTR, text("-1.25")},
      {of(VT_CY, 30000), VT_BSTR, text("3")},
      {of(VT_CY, std::numeric_limits<int64_t>::min()), VT_BSTR, text("-922337203685477.5808")},
      {date(45000.75), VT_BSTR, text("03/15/2023 18:00:00")},
      {date(45000), VT_BSTR, text("03/15/2023")},
      {date(0.5), VT_BSTR, text("12:00:00")},
      {date(-1.25), VT_BSTR, text("12/29/1899 06:00:00")},
      {date(1.9999999), VT_BSTR, text("01/01/1900")},
      {date(1e7), VT_BSTR, overflow},
      {date(-657435), VT_BSTR, overflow},
      {date(2958465.9999999), VT_BSTR, overflow},
      // Numbers of texts.
      {text(" -1.5e3\t"), VT_R8, real(-1500)},
      {text("2.5"), VT_I2, i2(2)},
      {text("1e999"), VT_R8, overflow},
      {text("3 m"), VT_R8, mismatch},
      {text(""), VT_R8, mismatch},
      {text("0x10"), VT_I4, mismatch},
      {text("inf"), VT_R8, mismatch},
      {text("1e"), VT_R8, mismatch},
      // Booleans, dates, nothing and failures.
      {boolean(7), VT_I2, i2(-1)},
      {boolean(1), VT_BSTR, text("-1")},
      {boolean(1), VT_BSTR, text("True"), VARIANT_ALPHABOOL},
      {boolean(0), VT_BSTR, text("False"), VARIANT_ALPHABOOL},
      {text("true"), VT_BOOL, boolean(1)},
      {text("#FALSE#"), VT_BOOL, boolean(0)},
      {text("2"), VT_BOOL, boolean(1)},
      {text("yes"), VT_BOOL, mismatch},
      {date(1.25), VT_R8, real(1.25)},
      {real(-657434.5), VT_DATE, date(-657434.5)},
      {real(-657435), VT_DATE, overflow},
      {real(2958466), VT_DATE, overflow},
      {of(VT_EMPTY), VT_R8, real(0)},
      {of(VT_EMPTY), VT_BSTR, text("")},
      {of(VT_NULL), VT_R8, mismatch},
      {of(VT_NULL), VT_BSTR, mismatch},
      {COleVariant(5, VT_ERROR), VT_I4, mismatch},
      {real(5), VT_ERROR, mismatch},
      {real(5), VT_EMPTY, mismatch},
      {real(5), VT_NULL, mismatch},
      {real(5), VT_DISPATCH, mismatch},
      {of(VT_DISPATCH), VT_R8, mismatch},
      {of(VT_DISPATCH), VT_R8, mismatch, VARIANT_NOVALUEPROP},
      {real(5), VT_BSTRA, fails(DISP_E_BADVARTYPE)},
      {real(5), 21, fails(DISP_E_BADVARTYPE)},
      {of(VT_DISPATCH), VT_UNKNOWN, of(VT_UNKNOWN)},
      {real(5), 99, fails(DISP_E_BADVARTYPE)},
  };
  for (Change const & row : changes) {
    COleVariant value(row.from);
    HRESULT const code = VariantChangeType(&value, &value, row.flags, row.type);
    bool const isFailure = row.expected.vt == VT_ERROR;
    EXPECT_EQ(code, isFailure ? row.expected.scode : S_OK) << shown(row.from) << " into " << row.type;
    EXPECT_EQ(shown(value), shown(isFailure ? row.from : row.expected)) << shown(row.from) << " into " << row.type;
  }
}

TEST(Variants, OwnTextsAndBlocks)
{
  COleVariant text("a\xE9");
  COleVariant copy(text);
  EXPECT_NE(copy.bstrVal, text.bstrVal);
  EXPECT_EQ(zp::ViewOf(copy.bstrVal), u"a\u00E9");
  BSTR const zeroes = SysAllocStringLen(u"a\0b", 3);
  EXPECT_EQ(SysStringLen(zeroes), 3u);
  SysFreeString(zeroes);
  EXPECT_EQ(SysAllocString(nullptr), nullptr);

  SAFEARRAYBOUND const bounds[] = {{2, 1}, {3, 5}};
  SAFEARRAY * const block = SafeArrayCreate(VT_VARIANT, 2, bounds);
  ASSERT_NE(block, nullptr);
  LONG const place[] = {2, 6};
  void * element = nullptr;
  ASSERT_EQ(SafeArrayPtrOfIndex(block, place, &element), S_OK);
  *static_cast<VARIANT *>(element) = text.Detach();
  COleVariant held;
  held.vt = VT_ARRAY | VT_VARIANT;
  held.parray = block;
  copy = held;
  LONG first = 0;
  LONG last = 0;
  EXPECT_EQ(SafeArrayGetDim(copy.parray), 2u);
  EXPECT_EQ(SafeArrayGetLBound(copy.parray, 2, &first), S_OK);
  EXPECT_EQ(SafeArrayGetUBound(copy.parray, 2, &last), S_OK);
  EXPECT_EQ(first, 5);
  EXPECT_EQ(last, 7);
  EXPECT_EQ(SafeArrayGetLBound(copy.parray, 3, &first), DISP_E_BADINDEX);
  void * data = nullptr;
  ASSERT_EQ(SafeArrayAccessData(copy.parray, &data), S_OK);
  EXPECT_EQ(shown(static_cast<VARIANT *>(data)[3]), "8: a\xE9");  // the first dimension runs fastest
  EXPECT_EQ(VariantClear(&copy), DISP_E_ARRAYISLOCKED);
  EXPECT_EQ(SafeArrayUnaccessData(copy.parray), S_OK);
  EXPECT_EQ(SafeArrayUnaccessData(copy.parray), E_INVALIDARG);
  LONG const outside[] = {3, 6};
  EXPECT_EQ(SafeArrayPtrOfIndex(block, outside, &element), DISP_E_BADINDEX);
  SAFEARRAYBOUND const huge[] = {{0xFFFFFFFF, 1}, {0xFFFFFFFF, 1}};
  EXPECT_EQ(SafeArrayCreate(VT_VARIANT, 2, huge), nullptr);
  SAFEARRAYBOUND const beyond = {2, INT32_MAX};
  EXPECT_EQ(SafeArrayCreate(VT_VARIANT, 1, &beyond), nullptr);
}

TEST(Variants, RaiseWhatTheyCannotDoAndKeepTheirValue)
{
  COleVariant value("text");
  EXPECT_EQ(CodeOf<COleException>([&value] { value.ChangeType(VT_R8); }), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(shown(value), "8: text");
  value.ChangeType(VT_I4, &static_cast<VARIANT const &>(COleVariant(2.5)));
  EXPECT_EQ(shown(value), "3: 2");
  value = 4.5;
  COleVariant taken;
  taken.Attach(value);
  EXPECT_EQ(shown(value), "0: 0");
  taken = taken;
  EXPECT_EQ(shown(taken), "5: 4.500000");
}

}  // namespace
