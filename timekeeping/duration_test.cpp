#include "timekeeping/duration.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdio>
#include <string>

#include "platform/text.h"

namespace quillora {
namespace {

constexpr int kCp1252 = 1252;

Settings WithGranularity(std::uint16_t minutes) {
  Settings s;
  s.option_bits = kOptionGranularity;
  s.granularity = minutes;
  return s;
}

Settings WithoutGranularity() {
  Settings s;
  s.option_bits = 0;
  s.granularity = 15;  // ignored while the bit is clear
  return s;
}

TEST(ParseHoursTextTest, TakesTheLeadingNumberLikeAtof) {
  struct Case {
    std::u16string text;
    double hours;
  } cases[] = {
      {u"1.5", 1.5},
      {u"1,5", 1.0},
      {u"0.25", 0.25},
      {u" 2.25", 2.25},
      {u"2h", 2.0},
      {u"-0.5", -0.5},
      {u"abc", 0.0},
      {u"", 0.0},
      {u".", 0.0},
      {u"-", 0.0},
      {u"1.239", 1.239},
      {u"\u00bd", 0.0},
      {u"12.00 hours", 12.0},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ParseHoursText(c.text, kCp1252), c.hours) << ToUtf8(c.text);
  }
}

TEST(ParseHoursTextTest, ReadsOnlyTheFirst63Bytes) {
  // 62 zeros after the point fill the buffer; the 1 behind them is cut off.
  const std::u16string cut = u"0." + std::u16string(61, u'0') + u"1";
  EXPECT_EQ(ParseHoursText(cut, kCp1252), 0.0);
  const std::u16string kept = u"0." + std::u16string(60, u'0') + u"1";
  EXPECT_EQ(ParseHoursText(kept, kCp1252), 1e-61);
}

TEST(ParseHoursTextTest, IgnoresADecimalCommaProcessLocale) {
  const std::string saved = std::setlocale(LC_NUMERIC, nullptr);
  if (std::setlocale(LC_NUMERIC, "de_DE.UTF-8") == nullptr) {
    GTEST_SKIP() << "no German locale installed";
  }
  const double one_comma_five = ParseHoursText(u"1,5", kCp1252);
  const double one_point_five = ParseHoursText(u"1.5", kCp1252);
  std::setlocale(LC_NUMERIC, saved.c_str());
  EXPECT_EQ(one_comma_five, 1.0);
  EXPECT_EQ(one_point_five, 1.5);
}

TEST(SetDurationFromHoursTest, RoundsUpToTheStepThenTruncates) {
  struct Case {
    double hours;
    std::uint16_t minutes;  // 0: granularity off
    std::uint32_t duration;
  } cases[] = {
      {0.3, 15, 50},    {0.25, 15, 25},  {1.01, 15, 125}, {0.17, 10, 33}, {0.5, 10, 50},
      {1.0, 10, 100},   {0.67, 20, 100}, {1.239, 0, 123}, {0.01, 15, 25}, {0.0, 15, 0},
      {12.0, 45, 1200}, {0.26, 6, 30},   {0.99, 0, 99},   {2.5, 15, 250},
  };
  for (const auto& c : cases) {
    const Settings s = c.minutes ? WithGranularity(c.minutes) : WithoutGranularity();
    TimeEntry e;
    e.duration = 7;
    EXPECT_EQ(SetDurationFromHours(&e, c.hours, s), c.duration)
        << c.hours << " h at " << c.minutes << " min";
    EXPECT_EQ(e.duration, c.duration) << c.hours << " h at " << c.minutes << " min";
  }
}

TEST(SetDurationFromHoursTest, KeepsTheRuleForOddInputs) {
  TimeEntry e;
  // Negative hours: the ceiling rounds toward zero (-1.67 steps to -1), and
  // the 32-bit result is held unsigned.
  EXPECT_EQ(SetDurationFromHours(&e, -25 * kHoursPerMinute, WithGranularity(15)),
            static_cast<std::uint32_t>(-25));
  EXPECT_EQ(SetDurationFromHours(&e, -25 * kHoursPerMinute, WithoutGranularity()),
            static_cast<std::uint32_t>(-41));
  // A granularity of 0 minutes (only a hand-edited registry holds one) rounds nothing.
  EXPECT_EQ(SetDurationFromHours(&e, 0.3, WithGranularity(0)), 30u);
  EXPECT_EQ(SetDurationFromHours(&e, 1e300, WithoutGranularity()), 0x7FFFFFFFu);
  EXPECT_EQ(SetDurationFromHours(&e, std::nan(""), WithoutGranularity()), 0u);
}

TEST(DurationSourcesTest, TimerAndTypedTextGoThroughTheGranularity) {
  const Settings s = WithGranularity(15);
  TimeEntry e;
  EXPECT_EQ(SetDurationFromTimer(&e, 90 * 60, s), 150u);
  EXPECT_EQ(SetDurationFromTimer(&e, 61, s), 25u);
  EXPECT_EQ(SetDurationFromTimer(&e, 0, s), 0u);
  EXPECT_EQ(SetDurationFromTimer(&e, 3600, WithoutGranularity()), 100u);
  EXPECT_EQ(SetDurationFromHours(&e, ParseHoursText(u"0.3", kCp1252), s), 50u);
  EXPECT_EQ(FormatDurationField(e.duration), u"0.50");
}

TEST(StartEndTest, MinutesFromDurationUsesSixthsOnlyForExactFractions) {
  struct Case {
    std::uint32_t duration;
    std::int64_t minutes;
  } cases[] = {{150, 90}, {17, 10}, {33, 20}, {67, 40},  {83, 49},  {117, 70},
               {0, 0},    {1, 0},   {2, 1},   {100, 60}, {233, 139}};
  for (const auto& c : cases) {
    EXPECT_EQ(MinutesFromDuration(c.duration), c.minutes) << c.duration;
  }
}

TEST(StartEndTest, EndPickerMovesOnByTheDurationAcrossMidnight) {
  const SystemTime start = MakeSystemTime(2024, 3, 10, 23, 30, 1);
  EXPECT_EQ(EndPickerTime(start, 150), MakeSystemTime(2024, 3, 11, 1, 0, 1));
  EXPECT_EQ(EndPickerTime(start, 1), start);  // 0 whole minutes
  EXPECT_EQ(EndPickerTime(start, 0), start);
  EXPECT_EQ(EndPickerTime(SystemTime{}, 150), SystemTime{});
}

TEST(StartEndTest, DurationFromPickers) {
  struct Case {
    SystemTime start, end;
    std::uint16_t minutes;  // granularity, 0 off
    std::int64_t between;
    std::uint32_t duration;
  } cases[] = {
      {MakeSystemTime(2024, 3, 10, 23, 0), MakeSystemTime(2024, 3, 10, 1, 30), 0, 150,
       250},
      {MakeSystemTime(2024, 3, 10, 9, 0), MakeSystemTime(2024, 3, 10, 10, 10), 0, 70,
       116},
      {MakeSystemTime(2024, 3, 10, 9, 0), MakeSystemTime(2024, 3, 10, 10, 10), 15, 70,
       125},
      // Only the hours decide the next day: 10:15 after 10:40 stays negative.
      {MakeSystemTime(2024, 3, 10, 10, 40), MakeSystemTime(2024, 3, 10, 10, 15), 15, -25,
       static_cast<std::uint32_t>(-25)},
      // Whole seconds, then whole minutes: 59.5 seconds is no minute.
      {MakeSystemTime(2024, 3, 10, 9, 0, 0, 500), MakeSystemTime(2024, 3, 10, 9, 1, 0), 0,
       0, 0},
      {MakeSystemTime(2024, 3, 10, 9, 0, 1), MakeSystemTime(2024, 3, 10, 9, 30, 0), 0, 29,
       48},
      // The pickers' dates play no part.
      {MakeSystemTime(2024, 3, 10, 8, 0), MakeSystemTime(2024, 3, 12, 9, 0), 0, 60, 100},
  };
  for (const auto& c : cases) {
    const std::string label =
        FormatIsoDateTime(c.start) + " to " + FormatIsoDateTime(c.end);
    EXPECT_EQ(MinutesBetweenPickers(c.start, c.end), c.between) << label;
    TimeEntry e;
    const Settings s = c.minutes ? WithGranularity(c.minutes) : WithoutGranularity();
    EXPECT_EQ(SetDurationFromStartEnd(&e, c.start, c.end, s), c.duration) << label;
  }
}

TEST(DurationChoicesTest, StepsUpToTwelveHours) {
  struct Case {
    std::uint16_t interval;
    std::size_t count;
    std::u16string first, second;
  } cases[] = {
      {0, 72, u"0.17", u"0.33"},
      {1, 48, u"0.25", u"0.50"},
      {2, 36, u"0.33", u"0.67"},
      {3, 24, u"0.50", u"1.00"},
      {4, 120, u"0.10", u"0.20"},
      {9, 24, u"0.50", u"1.00"},  // out of range: the default step
  };
  for (const auto& c : cases) {
    const auto list = FillDurationChoices(c.interval);
    ASSERT_EQ(list.size(), c.count) << c.interval;
    EXPECT_EQ(list[0], c.first) << c.interval;
    EXPECT_EQ(list[1], c.second) << c.interval;
    EXPECT_EQ(list.back(), u"12.00") << c.interval;
  }
  EXPECT_EQ(DurationChoiceStep(4), 6);
}

TEST(IsNumericTextTest, RefusesLettersOfEveryClass) {
  struct Case {
    std::u16string text;
    bool numeric;
  } cases[] = {
      {u"", true},
      {u"1.5", true},
      {u"1,5", true},
      {u"-0.25 ", true},
      {u"$12%", true},
      {u"\u00bd", true},  // vulgar half
      {u"\u0663", true},  // Arabic-Indic three is a digit
      {u"1h", false},
      {u"1e3", false},
      {u"\u00e9", false},      // é
      {u"\u01c5", false},      // title case Dž
      {u"\u02b0", false},      // modifier letter
      {u"\u4e00", false},      // CJK ideograph, other letter
      {u"\U0001d400", false},  // mathematical bold A, beyond the basic plane
      {u"\xd835", true},       // an unpaired surrogate is no letter
  };
  for (const auto& c : cases) {
    EXPECT_EQ(IsNumericText(c.text), c.numeric) << ToUtf8(c.text);
  }
}

TEST(RateFromTextTest, TruncatesThousandsTimesATenth) {
  struct Case {
    std::u16string text;
    std::int32_t rate;
  } cases[] = {{u"12.50", 1250}, {u"12.345", 1234}, {u"0.29", 29},
               {u"19.99", 1999}, {u"4.35", 435},    {u"1,5", 100},
               {u"abc", 0},      {u"-3.5", -350},   {u"", 0}};
  for (const auto& c : cases) {
    EXPECT_EQ(RateFromText(c.text, kCp1252), c.rate) << ToUtf8(c.text);
    TimeEntry e;
    e.duration = 150;
    EXPECT_EQ(SetRateFromText(&e, c.text, kCp1252), static_cast<std::uint32_t>(c.rate));
    EXPECT_EQ(e.duration, 150u);  // no granularity, nothing else touched
  }
}

TEST(EntryAmountTest, ExactBinary64Results) {
  struct Case {
    std::uint32_t duration, rate;
    std::uint16_t rate_type;
    std::uint32_t bits;
    double amount;
  } cases[] = {
      {17, 6000, kRateNormal, kOptionPreciseCalculation, 10.0},
      {83, 6000, kRateNormal, kOptionPreciseCalculation, 49.800000000000004},
      {117, 6000, kRateNormal, kOptionPreciseCalculation, 70.19999999999999},
      {33, 6000, kRateOvertime, kOptionPreciseCalculation, 0.3333333333333333 * 60.0},
      {67, 6000, kRateDiscount, kOptionPreciseCalculation, 0.6666666666666666 * 60.0},
      {17, 6000, kRateNormal, 0, 0.17 * 60.0},
      {250, 10000, kRateFixed, kOptionPreciseCalculation, 100.0},
      {0, 10000, kRateFixed, 0, 100.0},
      {150, 1250, kRateWeekend, 0, 12.5 * 1.5},
  };
  for (const auto& c : cases) {
    TimeEntry e;
    e.duration = c.duration;
    e.rate = c.rate;
    e.rateType = c.rate_type;
    Settings settings;
    settings.option_bits = c.bits;
    EXPECT_EQ(EntryAmount(e, settings), c.amount)
        << c.duration << " x " << c.rate << " type " << c.rate_type << " bits " << c.bits;
  }
}

TEST(FormatTest, TwoDecimalsAsTheCLibraryRounds) {
  EXPECT_EQ(FormatDurationField(150), u"1.50");
  EXPECT_EQ(FormatDurationField(0), u"0.00");
  EXPECT_EQ(FormatHundredths(1250), u"12.50");
  EXPECT_EQ(FormatHundredths(123), u"1.23");
  EXPECT_EQ(FormatTwoDecimals(49.800000000000004), u"49.80");
  EXPECT_EQ(FormatTwoDecimals(70.19999999999999), u"70.20");
  EXPECT_EQ(FormatTwoDecimals(0.125), u"0.12");  // an exact half rounds to even
  EXPECT_EQ(FormatTwoDecimals(2.675), u"2.67");  // just below the half in binary64
  EXPECT_EQ(FormatTwoDecimals(-0.004), u"-0.00");
  EXPECT_EQ(FormatAmountWithCurrency(u"USD", 100.0), u"USD100.00");
  EXPECT_EQ(FormatAmountWithCurrency(u"\u20ac", 10.0 / 3), u"\u20ac3.33");
  EXPECT_EQ(FormatAmountWithCurrency(u"", 1.005), u"1.00");
  EXPECT_EQ(FormatInteger(-3), u"-3");
  EXPECT_EQ(FormatInteger(65535), u"65535");
}

std::u16string Printf(const char* format, double value) {
  char buf[512];
  const int n = std::snprintf(buf, sizeof buf, format, value);
  return WidenAscii(std::string(buf, static_cast<std::size_t>(n)));
}

// Both are written without printf; they must stay exactly what the C library
// prints, at the edges and across the range.
TEST(FormatTest, FastFormatsMatchTheCLibrary) {
  for (std::uint32_t v : {0u, 1u, 5u, 9u, 10u, 99u, 100u, 101u, 105u, 995u, 999u, 1000u,
                          12345u, 65535u, 99999995u, 4294967294u, 4294967295u}) {
    EXPECT_EQ(FormatHundredths(v), Printf("%.2f", v / 100.0)) << v;
    EXPECT_EQ(FormatHundredths(v), Printf("%.2f", v * 0.01)) << v;
  }
  for (std::uint64_t v = 0; v <= 0xFFFFFFFFu; v += 999983) {
    const auto value = static_cast<std::uint32_t>(v);
    ASSERT_EQ(FormatHundredths(value), Printf("%.2f", value / 100.0)) << value;
  }
  EXPECT_EQ(FormatHundredths(4294967295u), u"42949672.95");

  std::uint64_t bits = 0x9E3779B97F4A7C15ull;
  for (int i = 0; i < 20000; ++i) {
    bits ^= bits << 13;
    bits ^= bits >> 7;
    bits ^= bits << 17;
    // Amounts as entries give them, halves and values of every size.
    const double values[] = {
        static_cast<double>(bits % 10000000) * 0.01 * 0.25,
        static_cast<double>(bits % 1000) + 0.005,
        std::ldexp(static_cast<double>(bits >> 11), static_cast<int>(bits % 200) - 100)};
    for (double value : values) {
      ASSERT_EQ(FormatTwoDecimals(value), Printf("%.02f", value)) << value;
      ASSERT_EQ(FormatTwoDecimals(-value), Printf("%.02f", -value)) << -value;
    }
  }
  EXPECT_EQ(FormatTwoDecimals(1e308), Printf("%.02f", 1e308));
  EXPECT_EQ(FormatTwoDecimals(INFINITY), u"inf");
}

}  // namespace
}  // namespace quillora
