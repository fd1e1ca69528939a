// The change of a variant's type. Numbers of all types meet in a double, which holds each of them exactly but large amounts of
// currency.

#include <zpbase/platform/variants.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include <zpbase/platform/ascii.h>
#include <zpbase/platform/format.h>
#include <zpbase/platform/number_text.h>

namespace {

using namespace std::chrono;

constexpr double currencyUnit = 10'000;
constexpr double firstDate = -657'434;  // 1 January 100
constexpr double dateEnd = 2'958'466;   // 1 January 10000
constexpr int secondsPerDay = 86'400;
constexpr sys_days dateOrigin = year(1899) / December / 30;

bool isBoolean(std::string_view text, bool & value)
{
  for (auto const & [name, meaning] : {std::pair{"True", true}, {"False", false}, {"#TRUE#", true}, {"#FALSE#", false}}) {
    value = meaning;
    if (zp::EqualsNoCase(text, name)) return true;
  }
  return false;
}

std::string_view trimmed(std::string_view text)
{
  while (!text.empty() && zp::IsWhite(text.front())) text.remove_prefix(1);
  while (!text.empty() && zp::IsWhite(text.back())) text.remove_suffix(1);
  return text;
}

// The number that the whole of a text is, but for white space around it.
HRESULT numberOf(std::string_view text, double & number)
{
  text = trimmed(text);
  if (text.empty() || text.find_first_not_of("+-.0123456789Ee") != std::string_view::npos) return DISP_E_TYPEMISMATCH;
  size_t used = 0;
  number = zp::TextToDouble(text, &used);
  if (used != text.size()) return DISP_E_TYPEMISMATCH;
  return std::isfinite(number) ? S_OK : DISP_E_OVERFLOW;
}

HRESULT numberOf(VARIANT const & value, double & number)
{
  switch (value.vt) {
    case VT_EMPTY:
      number = 0;
      return S_OK;
    case VT_I1:
      number = value.cVal;
      return S_OK;
    case VT_UI1:
      number = value.bVal;
      return S_OK;
    case VT_I2:
    case VT_BOOL:
      number = value.iVal;
      return S_OK;
    case VT_UI2:
      number = value.uiVal;
      return S_OK;
    case VT_I4:
    case VT_INT:
      number = value.lVal;
      return S_OK;
    case VT_UI4:
    case VT_UINT:
      number = value.ulVal;
      return S_OK;
    case VT_R4:
      number = value.fltVal;
      return S_OK;
    case VT_R8:
    case VT_DATE:
      number = value.dblVal;
      return S_OK;
    case VT_CY:
      number = static_cast<double>(value.cyVal.int64) / currencyUnit;
      return S_OK;
    case VT_BSTR:
      return numberOf(zp::BstrToText(value.bstrVal).View(), number);
    default:
      return DISP_E_TYPEMISMATCH;
  }
}

// Rounds as the sum with a large number would, whatever the processor's rounding is set to.
double roundHalfToEven(double number)
{
  double const down = std::floor(number);
  double const rest = number - down;
  if (rest != 0.5) return rest < 0.5 ? down : down + 1;
  return std::fmod(down, 2) == 0 ? down : down + 1;
}

template <class Integer>
HRESULT setInteger(Integer & slot, double number)
{
  double const rounded = roundHalfToEven(number);
  constexpr auto least = static_cast<double>(std::numeric_limits<Integer>::min());
  constexpr double end = -2.0 * static_cast<double>(std::numeric_limits<std::make_signed_t<Integer>>::min());
  constexpr double above = std::is_signed_v<Integer> ? end / 2 : end;
  if (!(rounded >= least && rounded < above)) return DISP_E_OVERFLOW;  // a NaN too
  slot = static_cast<Integer>(rounded);
  return S_OK;
}

// The whole units are exact in 64 bits, where the amount in ten-thousandths isn't exact in a double.
HRESULT setCurrency(int64_t & slot, double number)
{
  constexpr double mostUnits = 922'337'203'685'477;
  double const units = std::trunc(number);
  if (!(std::fabs(units) <= mostUnits)) return DISP_E_OVERFLOW;
  auto const part = static_cast<int64_t>(roundHalfToEven((number - units) * currencyUnit));
  return __builtin_add_overflow(static_cast<int64_t>(units) * 10'000, part, &slot) ? DISP_E_OVERFLOW : S_OK;
}

HRESULT setFloat(float & slot, double number)
{
  if (std::isfinite(number) && !std::isfinite(static_cast<float>(number))) return DISP_E_OVERFLOW;
  slot = static_cast<float>(number);
  return S_OK;
}

HRESULT setDate(double & slot, double number)
{
  if (!(number > firstDate - 1 && number < dateEnd)) return DISP_E_OVERFLOW;
  slot = number;
  return S_OK;
}

HRESULT setNumber(VARIANT & made, double number)
{
  switch (made.vt) {
    case VT_I1:
      return setInteger(made.cVal, number);
    case VT_UI1:
      return setInteger(made.bVal, number);
    case VT_I2:
      return setInteger(made.iVal, number);
    case VT_UI2:
      return setInteger(made.uiVal, number);
    case VT_I4:
    case VT_INT:
      return setInteger(made.lVal, number);
    case VT_UI4:
    case VT_UINT:
      return setInteger(made.ulVal, number);
    case VT_R4:
      return setFloat(made.fltVal, number);
    case VT_R8:
      made.dblVal = number;
      return S_OK;
    case VT_CY:
      return setCurrency(made.cyVal.int64, number);
    case VT_DATE:
      return setDate(made.dblVal, number);
    case VT_BOOL:
      made.boolVal = number != 0 ? VARIANT_TRUE : VARIANT_FALSE;
      return S_OK;
    default:
      return DISP_E_TYPEMISMATCH;
  }
}

std::string realText(double number, char const * format)
{
  std::string text;
  zp::FormatInto(text, format, std::initializer_list<zp::FormatArg>{number == 0 ? 0.0 : number});  // no -0
  return text;
}

std::string currencyText(int64_t amount)
{
  constexpr uint64_t unit = 10'000;
  uint64_t const size = amount < 0 ? 0 - static_cast<uint64_t>(amount) : static_cast<uint64_t>(amount);
  std::string text = (amount < 0 ? "-" : "") + std::to_string(size / unit);
  if (size % unit == 0) return text;
  text += '.' + std::to_string(unit + size % unit).substr(1);
  return text.substr(0, text.find_last_not_of('0') + 1);
}

// The time of a date before the origin counts forward too: -1.25 is six in the morning of 29 December 1899.
HRESULT dateText(double date, std::string & text)
{
  if (!(date > firstDate - 1 && date < dateEnd)) return DISP_E_OVERFLOW;
  double day = std::trunc(date);
  auto second = static_cast<int>(roundHalfToEven(std::fabs(date - day) * secondsPerDay));
  if (second == secondsPerDay) {
    second = 0;
    ++day;
  }
  if (day != 0) {
    year_month_day const fields(dateOrigin + days(static_cast<int>(day)));
    if (int{fields.year()} > 9999) return DISP_E_OVERFLOW;
    zp::FormatInto(text, "%02d/%02d/%04d",
                   std::initializer_list<zp::FormatArg>{static_cast<unsigned>(fields.month()),
                                                        static_cast<unsigned>(fields.day()), int{fields.year()}});
  }
  if (day != 0 && second == 0) return S_OK;
  if (day != 0) text += ' ';
  zp::FormatInto(text, "%02d:%02d:%02d", std::initializer_list<zp::FormatArg>{second / 3600, second / 60 % 60, second % 60});
  return S_OK;
}

HRESULT textOf(VARIANT const & value, WORD flags, std::string & text)
{
  double number = 0;
  switch (value.vt) {
    case VT_EMPTY:
      return S_OK;
    case VT_R4:
      text = realText(value.fltVal, "%.7G");
      return S_OK;
    case VT_R8:
      text = realText(value.dblVal, "%.15G");
      return S_OK;
    case VT_CY:
      text = currencyText(value.cyVal.int64);
      return S_OK;
    case VT_DATE:
      return dateText(value.date, text);
    case VT_BOOL:
      text = (flags & VARIANT_ALPHABOOL) != 0 ? (value.boolVal != 0 ? "True" : "False") : std::to_string(value.boolVal);
      return S_OK;
    default:
      break;
  }
  HRESULT const code = numberOf(value, number);
  if (SUCCEEDED(code)) text = realText(number, "%.15G");
  return code;
}

HRESULT changeIntoText(VARIANT & made, VARIANT const & from, WORD flags)
{
  std::string text;
  if (HRESULT const code = textOf(from, flags, text); FAILED(code)) return code;
  made.bstrVal = zp::TextToBstr(text);
  return S_OK;
}

HRESULT changeIntoBoolean(VARIANT & made, VARIANT const & from)
{
  double number = 0;
  bool meaning = false;
  if (from.vt == VT_BSTR && isBoolean(trimmed(zp::BstrToText(from.bstrVal).View()), meaning)) {
    number = meaning ? 1 : 0;
  } else if (HRESULT const code = numberOf(from, number); FAILED(code)) {
    return code;
  }
  return setNumber(made, number);
}

HRESULT changeIntoObject(VARIANT & made, VARIANT const & from)
{
  if (from.vt != VT_DISPATCH && from.vt != VT_UNKNOWN) return DISP_E_TYPEMISMATCH;
  if (from.punkVal == nullptr) return S_OK;
  void * object = nullptr;
  IID const & wanted = made.vt == VT_DISPATCH ? IID_IDispatch : IID_IUnknown;
  if (FAILED(from.punkVal->QueryInterface(wanted, &object)) || object == nullptr) return DISP_E_TYPEMISMATCH;
  if (made.vt == VT_DISPATCH) {
    made.pdispVal = static_cast<IDispatch *>(object);
  } else {
    made.punkVal = static_cast<IUnknown *>(object);
  }
  return S_OK;
}

HRESULT change(VARIANT & made, VARIANT const & from, WORD flags)
{
  if (made.vt == VT_BSTR) return changeIntoText(made, from, flags);
  if (made.vt == VT_BOOL) return changeIntoBoolean(made, from);
  if (made.vt == VT_DISPATCH || made.vt == VT_UNKNOWN) return changeIntoObject(made, from);
  double number = 0;
  HRESULT const code = numberOf(from, number);
  return SUCCEEDED(code) ? setNumber(made, number) : code;
}

// The default property of an object.
HRESULT askObject(IDispatch * object, COleVariant & value)
{
  if (object == nullptr) return DISP_E_TYPEMISMATCH;
  DISPPARAMS none{};
  HRESULT const code = object->Invoke(DISPID_VALUE, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, &value, nullptr, nullptr);
  return SUCCEEDED(code) && value.vt != VT_DISPATCH ? S_OK : DISP_E_TYPEMISMATCH;
}

bool isChangeTarget(VARTYPE type)
{
  return (type >= VT_I2 && type <= VT_BOOL) || type == VT_UNKNOWN || (type >= VT_I1 && type <= VT_UI4) || type == VT_INT ||
         type == VT_UINT;
}

}  // namespace

HRESULT VariantChangeType(VARIANTARG * to, VARIANTARG const * from, WORD flags, VARTYPE type)
{
  if (from->vt == type) return VariantCopy(to, from);
  if (type == VT_EMPTY || type == VT_NULL || type == VT_ERROR) return DISP_E_TYPEMISMATCH;
  if (!isChangeTarget(type)) return DISP_E_BADVARTYPE;
  COleVariant property;
  if (from->vt == VT_DISPATCH && type != VT_UNKNOWN) {
    if ((flags & VARIANT_NOVALUEPROP) != 0) return DISP_E_TYPEMISMATCH;
    if (HRESULT const code = askObject(from->pdispVal, property); FAILED(code)) return code;
    return VariantChangeType(to, &property, flags, type);
  }
  COleVariant made;
  VARIANT result{};
  result.vt = type;
  if (HRESULT const code = change(result, *from, flags); FAILED(code)) return code;
  made.Attach(result);
  if (HRESULT const code = VariantClear(to); FAILED(code)) return code;
  *to = made.Detach();
  return S_OK;
}
