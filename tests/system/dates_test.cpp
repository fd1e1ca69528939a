// Dates and times: order, parsing, weeks and months, day numbers, and their texts in several locales.

#include <gtest/gtest.h>

#include <tuple>

#include <stdlib.h>

#include <zpbase/config.h>
#include <zpbase/platform/exceptions.h>
#include <zpbase/platform/host_calls.h>
#include <zpbase/platform/time.h>
#include <zpbase/system.h>

#include "tests/support/OwnProcess.h"
#include "tests/support/Raised.h"

namespace {

using Fields = std::array<int, 3>;

Fields fieldsOf(DateVals const & date)
{
  return {date.m_nYear, date.m_nMonth, date.m_nDay};
}

// The code that the operation raises, 0 for none.
template <class Operation>
DWORD codeOf(Operation const & operation)
{
  return static_cast<DWORD>(CodeOf<COleException>(operation));
}

TEST(Dates, AreComparedAfterNormalising)
{
  DateVals const day(2000, 3, 1);
  EXPECT_TRUE(DateVals(2000, 2, 30) == day && DateVals(2000, 2, 30) <= day && DateVals(2000, 2, 29) != day);
  EXPECT_TRUE(DateVals(2000, 2, 29) < day && DateVals(2000, 4, 31) > DateVals(2000, 4, 30));
  EXPECT_FALSE(DateVals(2000, 2, 29) == day || DateVals(2000, 2, 29) >= day || day > day || day < day || day != day);
  EXPECT_EQ((DateVals(1999, 12, 31) < DateVals(2000, 1, 1)), 1);
}

TEST(Dates, OutsideTheirRangesRaise)
{
  struct Row {
    DateVals date;
    DWORD code;
  } const rows[] = {
      {DateVals(), 0x80004005},
      {DateVals(1899, 1, 1), 0x80004005},
      {DateVals(2000, 0, 1), 0x80004005},
      {DateVals(2000, 13, 1), 0x80004005},
      {DateVals(2000, 1, 32), 0x80004005},
      {DateVals(1969, 12, 31), 0x80070057},
      {DateVals(1970, 1, 1), 0},
      {DateVals(3000, 12, 31), 0},
      {DateVals(3001, 1, 1), 0x80070057},
      {DateVals(2147483647, 1, 1), 0x80070057},
  };
  for (Row const & row : rows) {
    EXPECT_EQ(codeOf([&] { return row.date == DateVals(2000, 1, 1); }), row.code) << testing::PrintToString(fieldsOf(row.date));
  }
  DateVals out(7, 7, 7);
  EXPECT_EQ(codeOf([&] { GetStartOfWeek(out, DateVals(1970, 1, 1), 0); }), 0x80070057u);
  EXPECT_EQ(codeOf([&] { GetEndOfWeek(out, DateVals(3000, 12, 31)); }), 0x80070057u);
  EXPECT_EQ(codeOf([&] { GetEndOfMonth(out, DateVals(3000, 12, 1)); }), 0x80070057u);
  EXPECT_EQ(fieldsOf(out), (Fields{7, 7, 7}));
}

TEST(Times, AreOrderedAndMidnightIsOne)
{
  TimeVals const time(1, 2, 3);
  EXPECT_TRUE(TimeVals(12, 0, 0) < TimeVals(12, 0, 1) && TimeVals(13, 0, 0) > TimeVals(12, 59, 59));
  EXPECT_TRUE(TimeVals() == TimeVals(0, 0, 0) && TimeVals(11, 59, 59) != time && time <= time && time >= time);
  EXPECT_FALSE(time < time || time > time || time != time || time == TimeVals() || time <= TimeVals() || TimeVals() >= time);
  for (TimeVals const & wrong : {TimeVals(24, 0, 0), TimeVals(0, 60, 0), TimeVals(0, 0, 60), TimeVals(-1, 0, 0)})
    EXPECT_EQ(codeOf([&] { return wrong < TimeVals(); }), 0x80004005u);
}

TEST(Dates, AreReadInTheOrderOfThePattern)
{
  std::tuple<char const *, int, Fields> const rows[] = {
      {"", 1, {0, 0, 0}},
      {"12/25/99", 1, {1999, 12, 25}},
      {"1/2/03", 1, {2003, 1, 2}},
      {"on 1-2-2003 at 5", 1, {2003, 1, 2}},
      {"12/25", 1, {2000, 12, 25}},
      {"2/29/2000", 1, {2000, 2, 29}},
      {"2/30/2000", 0, {0, 0, 0}},
      {"2/29/2100", 0, {0, 0, 0}},
      {"13/1/00", 0, {0, 0, 0}},
      {"0/1/00", 0, {0, 0, 0}},
      {"abc", 0, {0, 0, 0}},
      {"1/1/69", 1, {2069, 1, 1}},
      {"1/1/70", 1, {1970, 1, 1}},
      {"1/1/99", 1, {1999, 1, 1}},
      {"1/1/100", 0, {0, 0, 0}},
      {"12/31/1969", 0, {0, 0, 0}},
      {"12/31/3000", 1, {3000, 12, 31}},
      {"1/1/3001", 0, {0, 0, 0}},
      {"1/99999999999999999999/00", 0, {0, 0, 0}},
      {"1/1/4294967295", 0, {0, 0, 0}},
  };
  RunInLocale("C", "", [&rows] {
    zp::ForgetDateOrder();
    FlushSysINIValues();
    for (auto const & [text, result, fields] : rows) {
      DateVals date(9, 9, 9);
      EXPECT_EQ(ParseDateString(date, text), result) << text;
      EXPECT_EQ(fieldsOf(date), fields) << text;
    }
  });
}

TEST(Dates, HaveWeeksFromMonday)
{
  std::tuple<DateVals, Fields, Fields> const rows[] = {
      {DateVals(2000, 1, 3), {2000, 1, 3}, {1999, 12, 27}}, {DateVals(2000, 1, 4), {2000, 1, 3}, {1999, 12, 27}},
      {DateVals(2000, 1, 5), {2000, 1, 3}, {1999, 12, 27}}, {DateVals(2000, 1, 6), {2000, 1, 3}, {2000, 1, 3}},
      {DateVals(2000, 1, 7), {2000, 1, 3}, {2000, 1, 3}},   {DateVals(2000, 1, 8), {2000, 1, 3}, {2000, 1, 3}},
      {DateVals(2000, 1, 9), {2000, 1, 3}, {2000, 1, 3}},
  };
  for (auto const & [day, plain, flagged] : rows) {
    DateVals out;
    GetStartOfWeek(out, day, 0);
    EXPECT_EQ(fieldsOf(out), plain);
    GetStartOfWeek(out, day, 1);
    EXPECT_EQ(fieldsOf(out), flagged);
    GetEndOfWeek(out, DateVals(2000, 2, 28));
    EXPECT_EQ(fieldsOf(out), (Fields{2000, 3, 5}));
  }
}

TEST(Dates, HaveMonths)
{
  DateVals out;
  for (auto const & [day, end] : {std::pair(DateVals(2000, 2, 10), Fields{2000, 2, 29}),
                                  {DateVals(1999, 12, 31), Fields{1999, 12, 31}},
                                  {DateVals(2001, 4, 31), Fields{2001, 4, 30}}}) {
    GetEndOfMonth(out, day);
    EXPECT_EQ(fieldsOf(out), end);
  }
  for (int const flag : {0, 1}) {
    GetStartOfMonth(out, DateVals(2001, 3, 4), flag);
    EXPECT_EQ(fieldsOf(out), (Fields{2001, 3 - flag, 1}));
  }
}

TEST(Dates, AreCountedFrom1970)
{
  std::tuple<DateVals, long> const rows[] = {
      {DateVals(), 0},
      {DateVals(1970, 1, 1), 0},
      {DateVals(1971, 1, 1), 365},
      {DateVals(1972, 1, 1), 730},
      {DateVals(1973, 1, 1), 1096},
      {DateVals(2000, 1, 1), 10957},
      {DateVals(2000, 13, 1), 11323},
      {DateVals(2000, 2, 30), 11017},
      {DateVals(2100, 12, 31), 47846},
      {DateVals(2101, 1, 1), 47848},
      {DateVals(1969, 12, 31), 0},
      {DateVals(2000, 1, 2147483647), 0},
      {DateVals(-2147483647, 1, 1), 0},
  };
  for (auto const & [date, number] : rows) EXPECT_EQ(GetJulianDate(date), number) << testing::PrintToString(fieldsOf(date));
}

TEST(Dates, FillTheSystemsRecord)
{
  SYSTEMTIME record{1, 2, 5, 4, 5, 6, 7, 8};
  DateVals(2003, 4, 9).InitSYSTEMTIMEStruct(record);
  EXPECT_EQ((std::array{record.wYear, record.wMonth, record.wDayOfWeek, record.wDay, record.wHour, record.wMinute, record.wSecond,
                        record.wMilliseconds}),
            (std::array<WORD, 8>{2003, 4, 5, 9, 12, 0, 0, 0}));
  record.wMilliseconds = 8;
  TimeVals(21, 2, 3).InitSYSTEMTIMEStruct(record);
  EXPECT_EQ((std::array{record.wYear, record.wMonth, record.wDayOfWeek, record.wDay, record.wHour, record.wMinute, record.wSecond,
                        record.wMilliseconds}),
            (std::array<WORD, 8>{1998, 9, 5, 5, 21, 2, 3, 0}));
}

// What the locale shows and how it reads it back.
void expectTexts(char const * date, char const * time)
{
  setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
  zp::GetHostCalls().WallClock = [] { return zp::HostTime{954597600, 0}; };  // 1 April 2000, 14:00 UTC
  zp::ForgetDateOrder();
  FlushSysINIValues();
  CString text;
  GetSystemDate(text);
  EXPECT_EQ(text, date);
  DateVals day;
  EXPECT_EQ(ParseDateString(day, text), 1);
  EXPECT_EQ(fieldsOf(day), (Fields{2000, 4, 1}));
  GetSystemDate(day);
  EXPECT_EQ(fieldsOf(day), (Fields{2000, 4, 1}));
  GetSystemTime(text);
  EXPECT_EQ(text, time);
  TimeVals moment;
  GetSystemTime(moment);
  EXPECT_TRUE(moment == TimeVals(16, 0, 0));

  text = "kept";
  for (DateVals const & none : {DateVals(2000, 2, 30), DateVals(2000, 257, 1), DateVals(2000, 1, 257), DateVals(2000, 0, 1)})
    GetUserDate(text, none);
  EXPECT_EQ(text, "kept");
  GetUserTime(text, TimeVals(24, 0, 0));
  EXPECT_EQ(text, "kept");
}

TEST(DatesInLocales, Plain)
{
  RunInLocale("C", "", [] { expectTexts("04/01/00", "16:00"); });
}

TEST(DatesInLocales, German)
{
  RunInLocale("de_DE", "ISO-8859-1", [] { expectTexts("01.04.2000", "16:00"); });
}

TEST(DatesInLocales, American)
{
  RunInLocale("en_US", "ISO-8859-1", [] { expectTexts("04/01/2000", "04:00 PM"); });
}

struct InLocale {
  char const * name;
  char const * date;
  char const * time;
  char const * picture;
};

// Locales whose own date has a named month or weekday or other digits, or whose time tells the zone.
class DatesInLocalesWithWords : public testing::TestWithParam<InLocale> {};

TEST_P(DatesInLocalesWithWords, AreNumbersThatCanBeReadBack)
{
  InLocale const & expected = GetParam();
  RunInLocale(expected.name, "UTF-8", [&expected] {
    expectTexts(expected.date, expected.time);
    EXPECT_EQ(GetShortDateFormat(), expected.picture);
  });
}

InLocale const locales[] = {
    {"nb_NO", "01. 04 2000", "kl. 16.00", "dd. MM yyyy"}, {"is_IS", "1.04 2000", "16:00", "d.MM yyyy"},
    {"ms_MY", "01 04 2000", "16:00", "dd MM yyyy"},       {"ar_EG", "01 04, 2000", "04:00 ?", "dd MM, yyyy"},
    {"fa_IR", "00/04/01", "16:00", "yy/MM/dd"},           {"sq_AL", "1.4.00", "04:00.MD", "d.M.yy"},
    {"am_ET", "01/04/2000", "4:00 ????", "dd/MM/yyyy"},   {"lzh_TW", "2000?04/01?", "16?00?", "yyyy/MM/dd"},
    {"ko_KR", "2000? 04? 01?", "16? 00?", "yyyy/MM/dd"},  {"zh_HK", "2000?04?01?", "?? 04?00?", "yyyy/MM/dd"},
};

INSTANTIATE_TEST_SUITE_P(Of, DatesInLocalesWithWords, testing::ValuesIn(locales),
                         [](auto const & run) { return std::string(run.param.name); });

}  // namespace
