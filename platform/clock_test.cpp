#include "platform/clock.h"

#include <gtest/gtest.h>

namespace quillora {
namespace {

TEST(ClockTest, RoundTripsCalendarFieldsWithDayOfWeek) {
  struct Case {
    SystemTime st;
    FileTime ticks;
  } cases[] = {
      {MakeSystemTime(1601, 1, 1), 0},
      // 2005-03-01 09:30:15.250 (a Tuesday).
      {MakeSystemTime(2005, 3, 1, 9, 30, 15, 250), 127541430152500000ull},
      {MakeSystemTime(2000, 2, 29, 23, 59, 59, 999), 125963423999990000ull},
  };
  for (const auto& c : cases) {
    FileTime ft = 1;
    ASSERT_TRUE(SystemTimeToFileTime(c.st, &ft)) << FormatIsoDateTime(c.st);
    EXPECT_EQ(ft, c.ticks) << FormatIsoDateTime(c.st);
    SystemTime back;
    ASSERT_TRUE(FileTimeToSystemTime(ft, &back));
    EXPECT_EQ(back, c.st) << FormatIsoDateTime(c.st);
  }
  EXPECT_EQ(MakeSystemTime(2005, 3, 1).day_of_week, 2);
  EXPECT_EQ(MakeSystemTime(2026, 11, 21).day_of_week, 6);
}

TEST(ClockTest, RefusesImpossibleFields) {
  FileTime ft = 42;
  EXPECT_FALSE(SystemTimeToFileTime(MakeSystemTime(2001, 2, 29), &ft));
  EXPECT_FALSE(SystemTimeToFileTime(MakeSystemTime(2001, 13, 1), &ft));
  EXPECT_FALSE(SystemTimeToFileTime(MakeSystemTime(2001, 1, 1, 24), &ft));
  EXPECT_FALSE(SystemTimeToFileTime(MakeSystemTime(1600, 12, 31), &ft));
  EXPECT_EQ(ft, 42u);
}

TEST(ClockTest, ParsesOnlyWellFormedIsoTexts) {
  EXPECT_EQ(ParseIsoDateTime("2026-11-21T08:05:09"), MakeSystemTime(2026, 11, 21, 8, 5, 9));
  EXPECT_EQ(ParseIsoDateTime("2026-11-21"), MakeSystemTime(2026, 11, 21));
  EXPECT_EQ(ParseIsoDateTime("2026-11-21T08:05"), MakeSystemTime(2026, 11, 21, 8, 5));
  for (const char* bad : {"2026-02-30", "2026-1-21", "2026-11-21 08:05", "x026-11-21",
                          "2026-11-21T8:05:09", "", "2026-11-21T08:05:60"}) {
    EXPECT_FALSE(ParseIsoDateTime(bad).has_value()) << bad;
  }
  EXPECT_EQ(FormatIsoDateTime(MakeSystemTime(2005, 3, 1, 9, 30, 15, 7)),
            "2005-03-01T09:30:15.007");
}

TEST(ClockTest, SystemClockHonoursQuilloraNow) {
  setenv("QUILLORA_NOW", "2026-11-21T10:11:12", 1);
  EXPECT_EQ(SystemClock().LocalNow(), MakeSystemTime(2026, 11, 21, 10, 11, 12));
  unsetenv("QUILLORA_NOW");
}

}  // namespace
}  // namespace quillora
