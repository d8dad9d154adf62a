#include "app/cli/period_options.h"

#include <gtest/gtest.h>

#include <sstream>

namespace quillora {
namespace {

const FixedClock kClock(MakeSystemTime(2026, 11, 21, 10, 0, 0));  // a Saturday

std::string Describe(const PeriodRange& r) {
  return FormatIsoDateTime(r.start) + " " + FormatIsoDateTime(r.end);
}

struct Chosen {
  std::string error;
  std::string kind_and_range;  // "<kind> <view range>"
  std::vector<std::string> rest;
};

Chosen Choose(std::vector<std::string> words, bool allow_from_to = true,
              const Settings& settings = Settings()) {
  Arguments args(std::move(words));
  const PeriodOptions options = TakePeriodOptions(args, allow_from_to);
  Chosen c;
  c.rest = args.Positionals();
  c.error = args.error();
  if (!c.error.empty()) return c;
  const auto period = ChosenPeriod(options, settings, kClock);
  c.kind_and_range = std::to_string(static_cast<int>(period->Kind())) + " " +
                     Describe(period->GetViewRange());
  return c;
}

TEST(PeriodOptionsTest, EachOptionGivesItsPeriod) {
  const struct {
    std::vector<std::string> words;
    const char* expected;
  } cases[] = {
      {{"--day"}, "1 2026-11-21T00:00:00 2026-11-21T23:59:59"},
      {{"--day", "2024-03-10"}, "1 2024-03-10T00:00:00 2024-03-10T23:59:59"},
      {{"--week"}, "2 2026-11-15T00:00:00 2026-11-21T23:59:59"},
      {{"--week", "2024-03-10"}, "2 2024-03-10T00:00:00 2024-03-16T23:59:59"},
      {{"--month", "2024-02-10"}, "3 2024-02-01T00:00:00 2024-02-29T23:59:59"},
      {{"--custom", "2024-05-01", "2024-05-31"},
       "4 2024-05-01T00:00:00 2024-05-31T23:59:59"},
      {{"--custom", "2024-05-31", "2024-05-01"},
       "4 2024-05-31T00:00:00 2024-05-01T23:59:59"},
      {{"--from", "2024-01-01", "--to", "2024-01-01"},
       "4 2024-01-01T00:00:00 2024-01-01T23:59:59"},
      {{}, "2 2026-11-15T00:00:00 2026-11-21T23:59:59"},  // the default "View": Week
  };
  for (const auto& c : cases) {
    std::ostringstream words;
    for (const auto& w : c.words) words << w << ' ';
    const Chosen chosen = Choose(c.words);
    EXPECT_EQ(chosen.error, "") << words.str();
    EXPECT_EQ(chosen.kind_and_range, c.expected) << words.str();
    EXPECT_TRUE(chosen.rest.empty()) << words.str();
  }
}

TEST(PeriodOptionsTest, OnlyADateShapedWordIsTheOptionalDate) {
  const Chosen c = Choose({"csv", "--week", "out.csv"});
  EXPECT_EQ(c.error, "");
  EXPECT_EQ(c.kind_and_range, "2 2026-11-15T00:00:00 2026-11-21T23:59:59");
  EXPECT_EQ(c.rest, (std::vector<std::string>{"csv", "out.csv"}));
  EXPECT_TRUE(LooksLikeDate("2024-02-30"));
  EXPECT_FALSE(LooksLikeDate("2024-2-3"));
  EXPECT_FALSE(LooksLikeDate("2024-03-10T09:00"));
}

TEST(PeriodOptionsTest, WrongUseIsAUsageError) {
  const std::vector<std::vector<std::string>> bad = {
      {"--day", "2024-02-30"},
      {"--custom", "2024-05-01"},
      {"--custom", "May", "2024-05-31"},
      {"--day", "--week"},
      {"--month", "--custom", "2024-05-01", "2024-05-02"},
      {"--from", "2024-01-01"},
      {"--to", "2024-01-01"},
      {"--from", "2024-01-01", "--to", "2024-01-02", "--day"},
      {"--from", "yesterday", "--to", "2024-01-02"},
  };
  for (const auto& words : bad) {
    std::ostringstream text;
    for (const auto& w : words) text << w << ' ';
    EXPECT_NE(Choose(words).error, "") << text.str();
  }
  // Without --from/--to they stay behind as unknown options.
  EXPECT_EQ(Choose({"--from", "2024-01-01", "--to", "2024-01-02"}, false).error,
            "unknown option --from");
}

TEST(PeriodOptionsTest, NoOptionFollowsTheStoredView) {
  Settings settings;
  settings.view = 3;
  EXPECT_EQ(Choose({}, true, settings).kind_and_range,
            "3 2026-11-01T00:00:00 2026-11-30T23:59:59");
  settings.view = 4;
  settings.period_start = MakeSystemTime(2025, 1, 6);
  settings.period_end = MakeSystemTime(2025, 1, 10);
  EXPECT_EQ(Choose({}, true, settings).kind_and_range,
            "4 2025-01-06T00:00:00 2025-01-10T23:59:59");
  // --custom gives its own dates, not the stored ones.
  EXPECT_EQ(
      Choose({"--custom", "2024-01-01", "2024-01-02"}, true, settings).kind_and_range,
      "4 2024-01-01T00:00:00 2024-01-02T23:59:59");
}

}  // namespace
}  // namespace quillora
