// Reads a date as a user types it, finds its week and month, counts days, and says what the system is.

#include <cstdio>

#include <zpbase/platform/exceptions.h>
#include <zpbase/system.h>

namespace {

void show(char const * what, DateVals const & date)
{
  CString text;
  GetUserDate(text, date);
  std::printf("%-16s %s\n", what, text.GetString());
}

}  // namespace

int main()
{
  // The order of day, month and year is the user's, so the text to read is made by the same locale.
  DateVals const delivery(2000, 1, 5);
  CString typed;
  GetUserDate(typed, delivery);
  DateVals date;
  if (!ParseDateString(date, typed)) return 1;

  DateVals monday;
  DateVals sunday;
  DateVals monthEnd;
  GetStartOfWeek(monday, date, 0);
  GetEndOfWeek(sunday, monday);
  GetEndOfMonth(monthEnd, date);
  show("delivery", date);
  show("its week begins", monday);
  show("and ends", sunday);
  show("the month ends", monthEnd);
  long const left = GetJulianDate(monthEnd) - GetJulianDate(date);
  std::printf("%ld days are left, %s\n", left, date < monthEnd ? "the last one is to come" : "none");

  DateVals impossible;
  std::printf("30 February is %s\n", ParseDateString(impossible, "2000-02-30") != 0 ? "a date" : "no date");
  try {
    GetEndOfWeek(impossible, DateVals());
  } catch (COleException * problem) {
    std::printf("the empty date has no week: 0x%08X\n", static_cast<unsigned int>(problem->m_sc));
    problem->Delete();
  }

  CString version;
  CString language;
  GetOSVersionString(version);
  GetOSLanguage(language);
  std::printf("%s, %s\n", version.GetString(), language.TrimRight().GetString());
  return left == 26 ? 0 : 1;
}
