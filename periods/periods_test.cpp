#include "periods/periods.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/text.h"

namespace quillora {
namespace {

Settings WithBits(std::uint32_t bits) {
  Settings s;
  s.option_bits = bits;
  return s;
}

SystemTime Date(int y, int m, int d, int h = 0, int mi = 0, int s = 0) {
  return MakeSystemTime(y, m, d, h, mi, s);
}

// "start .. end" in ISO form, for comparing ranges in one readable text.
std::string Text(const PeriodRange& r) {
  return FormatIsoDateTime(r.start) + " .. " + FormatIsoDateTime(r.end);
}

std::string KindText(PeriodKind kind) { return ToUtf8(PeriodKindName(kind)); }

TEST(PeriodRangeTest, EachKindAnswersItsInclusiveRange) {
  const Settings sunday = WithBits(0);
  const Settings monday = WithBits(kOptionWeekStartsMonday);
  struct Case {
    PeriodKind kind;
    const Settings* settings;
    SystemTime date;
    std::string range;
  } cases[] = {
      {PeriodKind::kWeek, &monday, Date(2024, 3, 10, 15, 30),
       "2024-03-04T00:00:00 .. 2024-03-10T23:59:59"},
      {PeriodKind::kWeek, &sunday, Date(2024, 3, 10, 15, 30),
       "2024-03-10T00:00:00 .. 2024-03-16T23:59:59"},
      {PeriodKind::kWeek, &monday, Date(2024, 3, 4),
       "2024-03-04T00:00:00 .. 2024-03-10T23:59:59"},
      {PeriodKind::kWeek, &sunday, Date(2024, 3, 16, 23, 59, 59),
       "2024-03-10T00:00:00 .. 2024-03-16T23:59:59"},
      {PeriodKind::kWeek, &monday, Date(2024, 1, 2),
       "2024-01-01T00:00:00 .. 2024-01-07T23:59:59"},
      {PeriodKind::kWeek, &sunday, Date(2025, 1, 1),
       "2024-12-29T00:00:00 .. 2025-01-04T23:59:59"},
      {PeriodKind::kDay, &sunday, Date(2024, 2, 29, 13, 45, 12),
       "2024-02-29T00:00:00 .. 2024-02-29T23:59:59"},
      {PeriodKind::kMonth, &sunday, Date(2024, 2, 15, 10),
       "2024-02-01T00:00:00 .. 2024-02-29T23:59:00"},
      {PeriodKind::kMonth, &sunday, Date(2023, 2, 28),
       "2023-02-01T00:00:00 .. 2023-02-28T23:59:00"},
      {PeriodKind::kMonth, &sunday, Date(2024, 12, 31),
       "2024-12-01T00:00:00 .. 2024-12-31T23:59:00"},
  };
  for (const auto& c : cases) {
    const auto period = MakePeriod(c.kind, c.date, *c.settings);
    EXPECT_EQ(Text(period->GetRange()), c.range)
        << KindText(c.kind) << " at " << FormatIsoDateTime(c.date)
        << (c.settings == &monday ? " (Monday)" : "");
    EXPECT_EQ(period->GetAnchor(), period->GetRange().start) << KindText(c.kind);
    EXPECT_EQ(period->GetAnchor().day_of_week,
              DayOfWeek(period->GetAnchor().year, period->GetAnchor().month,
                        period->GetAnchor().day));
  }
}

TEST(PeriodRangeTest, MonthViewListsTheLastMinuteThatTheRangeLeavesOut) {
  const MonthPeriod feb(Date(2024, 2, 1));
  EXPECT_EQ(Text(feb.GetViewRange()), "2024-02-01T00:00:00 .. 2024-02-29T23:59:59");
  FileTime start = 0, end = 0, view_end = 0, entry = 0;
  ASSERT_TRUE(RangeToFileTimes(feb.GetRange(), &start, &end));
  ASSERT_TRUE(RangeToFileTimes(feb.GetViewRange(), &start, &view_end));
  ASSERT_TRUE(SystemTimeToFileTime(Date(2024, 2, 29, 23, 59, 30), &entry));
  EXPECT_GT(entry, end);
  EXPECT_LE(entry, view_end);
  // The other kinds list exactly their range.
  const DayPeriod day(Date(2024, 2, 29));
  EXPECT_EQ(day.GetViewRange(), day.GetRange());
}

TEST(PeriodNavigationTest, PreviousNextAndTodayMoveTheAnchor) {
  const FixedClock clock(Date(2026, 11, 21, 10, 11, 12));  // a Saturday
  const Settings monday = WithBits(kOptionWeekStartsMonday);
  using Step = std::function<void(Period&)>;
  const Step prev = [](Period& p) { p.Previous(); };
  const Step next = [](Period& p) { p.Next(); };
  const Step today = [&clock](Period& p) { p.Today(clock); };
  struct Case {
    PeriodKind kind;
    SystemTime date;
    std::vector<Step> steps;
    std::string anchor;
  } cases[] = {
      {PeriodKind::kDay, Date(2024, 3, 1), {prev}, "2024-02-29T00:00:00"},
      {PeriodKind::kDay, Date(2023, 12, 31), {next}, "2024-01-01T00:00:00"},
      {PeriodKind::kDay, Date(2024, 3, 1), {next, today}, "2026-11-21T00:00:00"},
      {PeriodKind::kWeek, Date(2024, 3, 10), {prev}, "2024-02-26T00:00:00"},
      {PeriodKind::kWeek, Date(2024, 12, 25), {next, next}, "2025-01-06T00:00:00"},
      {PeriodKind::kWeek, Date(2024, 3, 10), {today}, "2026-11-16T00:00:00"},
      {PeriodKind::kMonth, Date(2024, 1, 31), {prev}, "2023-12-01T00:00:00"},
      {PeriodKind::kMonth, Date(2024, 12, 31), {next}, "2025-01-01T00:00:00"},
      {PeriodKind::kMonth, Date(2024, 3, 31), {prev, prev, next}, "2024-02-01T00:00:00"},
      {PeriodKind::kMonth, Date(2024, 3, 31), {today}, "2026-11-01T00:00:00"},
      // Nothing moves past the calendar's ends.
      {PeriodKind::kDay, Date(1601, 1, 1), {prev}, "1601-01-01T00:00:00"},
      {PeriodKind::kMonth, Date(1601, 1, 9), {prev}, "1601-01-01T00:00:00"},
      {PeriodKind::kMonth, Date(30827, 12, 9), {next}, "30827-12-01T00:00:00"},
      {PeriodKind::kDay, Date(30827, 12, 31), {next}, "30827-12-31T00:00:00"},
  };
  for (const auto& c : cases) {
    auto period = MakePeriod(c.kind, c.date, monday);
    for (const auto& step : c.steps) step(*period);
    EXPECT_EQ(FormatIsoDateTime(period->GetAnchor()), c.anchor)
        << KindText(c.kind) << " from " << FormatIsoDateTime(c.date) << ", "
        << c.steps.size() << " steps";
  }
}

TEST(PeriodNavigationTest, ImpossibleDatesChangeNothing) {
  DayPeriod day(Date(2024, 3, 10));
  EXPECT_FALSE(day.SelectDate(Date(2024, 2, 30)));
  EXPECT_FALSE(day.SetDate(SystemTime{}));
  EXPECT_EQ(day.GetAnchor(), Date(2024, 3, 10));
  MonthPeriod month(Date(2024, 3, 10));
  EXPECT_FALSE(month.SelectMonth(13));
  EXPECT_FALSE(month.SelectYear(1600));
  EXPECT_EQ(month.GetAnchor(), Date(2024, 3, 1));
  EXPECT_EQ(DayPeriod(SystemTime{}).GetAnchor(), Date(1601, 1, 1));
}

TEST(WeekNumberTest, IsoWeeksAroundTheTurnOfTheYear) {
  struct Case {
    SystemTime date;
    int week;
  } cases[] = {{Date(2023, 1, 2), 1},    {Date(2023, 1, 1), 52},
               {Date(2020, 12, 31), 53}, {Date(2021, 1, 3), 53},
               {Date(2021, 1, 4), 1},    {Date(2024, 12, 30), 1},
               {Date(2026, 12, 31), 53}, {Date(2008, 12, 29), 1},
               {Date(2024, 3, 10), 10},  {Date(1601, 1, 1), 1}};
  for (const auto& c : cases) {
    EXPECT_EQ(IsoWeekNumber(c.date), c.week) << FormatIsoDateTime(c.date);
  }
}

TEST(WeekNumberTest, SundayWeeksAreNumberedByTheirMonday) {
  const WeekPeriod sunday(Date(2023, 1, 1), WithBits(kOptionWeekNumber));
  EXPECT_EQ(sunday.GetAnchor(), Date(2023, 1, 1));
  EXPECT_EQ(sunday.WeekNumber(), 1);
  EXPECT_EQ(sunday.WeekNumberText(), u"1");
  const WeekPeriod monday(Date(2023, 1, 1),
                          WithBits(kOptionWeekNumber | kOptionWeekStartsMonday));
  EXPECT_EQ(monday.GetAnchor(), Date(2022, 12, 26));
  EXPECT_EQ(monday.WeekNumberText(), u"52");
  const WeekPeriod hidden(Date(2023, 1, 1), WithBits(0));
  EXPECT_EQ(hidden.WeekNumberText(), u"");
}

TEST(CaptionTest, UsEnglishCaptions) {
  const auto locale = Locale::UsEnglish();
  const Settings monday = WithBits(kOptionWeekStartsMonday);
  EXPECT_EQ(DayPeriod(Date(2024, 3, 10)).GetCaption(*locale), u"Sunday, March 10, 2024");
  EXPECT_EQ(WeekPeriod(Date(2024, 3, 10), monday).GetCaption(*locale),
            u"Week Of Mar 4, 2024");
  EXPECT_EQ(WeekPeriod(Date(2024, 3, 10), WithBits(0)).GetCaption(*locale),
            u"Week Of Mar 10, 2024");
  EXPECT_EQ(MonthPeriod(Date(2024, 2, 15)).GetCaption(*locale), u"February 2024");
  EXPECT_EQ(CustomPeriod(Date(2024, 5, 1), Date(2024, 5, 31)).GetCaption(*locale),
            u"May 1, 2024 - May 31, 2024");
}

TEST(CaptionTest, ShortensTheLongDatePicture) {
  struct Case {
    std::u16string long_date;
    std::u16string picture;
  } cases[] = {
      {u"dddd, MMMM d, yyyy", u"MMM d, yyyy"},
      {u"dddd d MMMM yyyy", u"d MMM yyyy"},
      {u"dddd, d. MMMM yyyy", u"d. MMM yyyy"},
      {u"MMMM d, yyyy", u"MMM d, yyyy"},
      {u"dddd, d 'de' MMMM 'de' yyyy", u"M/d/yyyy"},  // quoted: the short date
      {u"yyyy/MM/dd", u"yyyy/MM/dd"},
  };
  for (const auto& c : cases) {
    LocaleProfile profile = UsEnglishProfile();
    profile.long_date = c.long_date;
    const auto locale = Locale::FromProfile(profile);
    EXPECT_EQ(CaptionDatePicture(*locale), c.picture) << ToUtf8(c.long_date);
  }
}

TEST(CustomPeriodTest, WholeDaysFromStartToEnd) {
  struct Case {
    SystemTime start, end;
    std::string range;
    std::int64_t days;
  } cases[] = {
      {Date(2024, 5, 1), Date(2024, 5, 1), "2024-05-01T00:00:00 .. 2024-05-01T23:59:59",
       1},
      {Date(2024, 5, 1, 9, 30), Date(2024, 5, 31, 8),
       "2024-05-01T00:00:00 .. 2024-05-31T23:59:59", 31},
      // Accepted as is; the range is empty.
      {Date(2024, 5, 10), Date(2024, 5, 1), "2024-05-10T00:00:00 .. 2024-05-01T23:59:59",
       -8},
  };
  for (const auto& c : cases) {
    const CustomPeriod period(c.start, c.end);
    EXPECT_EQ(Text(period.GetRange()), c.range) << FormatIsoDateTime(c.start);
    EXPECT_EQ(period.LengthInDays(), c.days) << FormatIsoDateTime(c.start);
  }
}

TEST(CustomPeriodTest, MovesByItsOwnLength) {
  const FixedClock clock(Date(2026, 11, 21, 10, 11, 12));
  CustomPeriod period(Date(2024, 5, 1), Date(2024, 5, 31));
  period.Next();
  EXPECT_EQ(Text(period.GetRange()), "2024-06-01T00:00:00 .. 2024-07-01T23:59:59");
  period.Previous();
  period.Previous();
  EXPECT_EQ(Text(period.GetRange()), "2024-03-31T00:00:00 .. 2024-04-30T23:59:59");

  CustomPeriod week(Date(2026, 11, 2), Date(2026, 11, 8));
  week.Today(clock);  // by whole weeks forward
  EXPECT_EQ(Text(week.GetRange()), "2026-11-16T00:00:00 .. 2026-11-22T23:59:59");
  CustomPeriod later(Date(2026, 12, 1), Date(2026, 12, 10));
  later.Today(clock);  // and back
  EXPECT_EQ(Text(later.GetRange()), "2026-11-21T00:00:00 .. 2026-11-30T23:59:59");

  EXPECT_TRUE(week.SelectDate(Date(2025, 1, 30, 12)));
  EXPECT_EQ(Text(week.GetRange()), "2025-01-30T00:00:00 .. 2025-02-05T23:59:59");

  CustomPeriod empty(Date(2024, 5, 10), Date(2024, 5, 1));
  empty.Next();
  empty.Today(clock);
  EXPECT_EQ(Text(empty.GetRange()), "2024-05-10T00:00:00 .. 2024-05-01T23:59:59");
  EXPECT_TRUE(empty.SelectDate(Date(2024, 6, 1)));
  EXPECT_EQ(Text(empty.GetRange()), "2024-06-01T00:00:00 .. 2024-06-01T23:59:59");
}

TEST(MakePeriodTest, CustomPeriodComesFromTheSettings) {
  Settings s;
  const SystemTime date = Date(2026, 11, 21, 10);
  EXPECT_EQ(Text(MakePeriod(PeriodKind::kCustom, date, s)->GetRange()),
            "2026-11-21T00:00:00 .. 2026-11-21T23:59:59");  // never stored
  s.period_start = Date(2024, 5, 1, 14, 2, 3);
  s.period_end = Date(2024, 5, 3, 9);
  const auto stored = MakePeriod(PeriodKind::kCustom, date, s);
  EXPECT_EQ(stored->Kind(), PeriodKind::kCustom);
  EXPECT_EQ(Text(stored->GetRange()), "2024-05-01T00:00:00 .. 2024-05-03T23:59:59");
  // Impossible stored dates (a damaged registry value): the day of `date`.
  for (const SystemTime bad : {MakeSystemTime(2024, 2, 31), MakeSystemTime(65535, 200, 0),
                               MakeSystemTime(1600, 12, 31, 99, 99, 99, 9999)}) {
    s.period_end = bad;
    EXPECT_EQ(Text(MakePeriod(PeriodKind::kCustom, date, s)->GetRange()),
              "2026-11-21T00:00:00 .. 2026-11-21T23:59:59")
        << FormatIsoDateTime(bad);
  }

  Settings back;
  StoreCustomPeriod(CustomPeriod(Date(2024, 5, 1, 8), Date(2024, 5, 3)), &back);
  EXPECT_EQ(back.period_start, Date(2024, 5, 1));
  EXPECT_EQ(back.period_end, Date(2024, 5, 3));
}

TEST(MakePeriodTest, KindsAndNamesOfTheViewSetting) {
  struct Case {
    std::uint32_t view;
    PeriodKind kind;
    std::u16string name;
  } cases[] = {
      {1, PeriodKind::kDay, u"Day"},     {2, PeriodKind::kWeek, u"Week"},
      {3, PeriodKind::kMonth, u"Month"}, {4, PeriodKind::kCustom, u"Custom Period"},
      {0, PeriodKind::kWeek, u"Week"},   {9, PeriodKind::kWeek, u"Week"}};
  for (const auto& c : cases) {
    const PeriodKind kind = PeriodKindFromView(c.view);
    EXPECT_EQ(kind, c.kind) << c.view;
    EXPECT_EQ(PeriodKindName(kind), c.name) << c.view;
    EXPECT_EQ(MakePeriod(kind, Date(2024, 3, 10), Settings())->Kind(), c.kind) << c.view;
  }
}

TEST(SwitchPeriodKindTest, StartsAtTodayWhenShownElseTheSelectedDayElseTheAnchor) {
  const FixedClock clock(Date(2026, 11, 21, 10, 11, 12));
  const Settings s = WithBits(kOptionWeekStartsMonday);
  const MonthPeriod this_month(Date(2026, 11, 3));
  EXPECT_EQ(SwitchPeriodKind(this_month, PeriodKind::kWeek, s, clock)->GetAnchor(),
            Date(2026, 11, 16));
  const MonthPeriod other_month(Date(2024, 3, 20));
  EXPECT_EQ(SwitchPeriodKind(other_month, PeriodKind::kWeek, s, clock)->GetAnchor(),
            Date(2024, 2, 26));
  EXPECT_EQ(SwitchPeriodKind(other_month, PeriodKind::kDay, s, clock)->GetAnchor(),
            Date(2024, 3, 1));
  // The day view from a week without today: the selected entry's day.
  EXPECT_EQ(
      SwitchPeriodKind(other_month, PeriodKind::kDay, s, clock, Date(2024, 3, 14, 9))
          ->GetAnchor(),
      Date(2024, 3, 14));
  EXPECT_EQ(SwitchPeriodKind(this_month, PeriodKind::kDay, s, clock, Date(2026, 11, 4))
                ->GetAnchor(),
            Date(2026, 11, 21));
  const WeekPeriod week(Date(2024, 3, 10), s);
  EXPECT_EQ(Text(SwitchPeriodKind(week, PeriodKind::kCustom, s, clock)->GetRange()),
            "2024-03-04T00:00:00 .. 2024-03-10T23:59:59");
  EXPECT_EQ(Text(CustomDialogDates(week, s)),
            "2024-03-04T00:00:00 .. 2024-03-10T00:00:00");
}

TEST(MonthMenuTest, MonthNamesYearsAndGotoToday) {
  const auto locale = Locale::UsEnglish();
  MonthPeriod period(Date(2024, 3, 10));
  const MonthMenu menu = BuildMonthMenu(period, *locale);
  EXPECT_EQ(menu.month_names[0], u"January");
  EXPECT_EQ(menu.month_names[11], u"December");
  EXPECT_EQ(menu.checked_month, 3);
  EXPECT_EQ(menu.years.front(), 2021);
  EXPECT_EQ(menu.years.back(), 2028);
  EXPECT_EQ(menu.year_texts[3], u"2024");
  EXPECT_EQ(menu.checked_year, 2024);
  EXPECT_EQ(menu.goto_today, u"Goto Today");

  EXPECT_TRUE(period.SelectMonth(11));
  EXPECT_EQ(period.GetAnchor(), Date(2024, 11, 1));
  EXPECT_TRUE(period.SelectYear(2027));
  EXPECT_EQ(period.GetAnchor(), Date(2027, 11, 1));
}

}  // namespace
}  // namespace quillora
