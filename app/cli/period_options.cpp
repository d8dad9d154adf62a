#include "app/cli/period_options.h"

#include <cctype>

namespace quillora {
namespace {

struct KindOption {
  const char* name;
  PeriodOptions::Choice choice;
};
constexpr KindOption kKindOptions[] = {
    {"--day", PeriodOptions::Choice::kDay},
    {"--week", PeriodOptions::Choice::kWeek},
    {"--month", PeriodOptions::Choice::kMonth},
};

// A calendar date of YYYY-MM-DD; a usage error in `args` otherwise.
std::optional<SystemTime> TakeDate(Arguments& args, const std::string& word) {
  const std::optional<SystemTime> date = ParseCommandLineDate(word);
  if (!date) args.Fail("not a date (YYYY-MM-DD): " + word);
  return date;
}

}  // namespace

bool LooksLikeDate(const std::string& word) {
  if (word.size() != 10 || word[4] != '-' || word[7] != '-') return false;
  for (std::size_t i = 0; i < word.size(); ++i) {
    if (i != 4 && i != 7 && !std::isdigit(static_cast<unsigned char>(word[i])))
      return false;
  }
  return true;
}

std::optional<SystemTime> ParseCommandLineDate(const std::string& word) {
  if (!LooksLikeDate(word)) return std::nullopt;
  return ParseIsoDateTime(word);
}

PeriodRange WholeDays(const SystemTime& from, const SystemTime& to) {
  return {DateOnly(from), MakeSystemTime(to.year, to.month, to.day, 23, 59, 59)};
}

PeriodOptions TakePeriodOptions(Arguments& args, bool allow_from_to) {
  PeriodOptions options;
  int given = 0;
  for (const KindOption& o : kKindOptions) {
    const std::optional<std::string> value = args.OptionalValue(o.name, LooksLikeDate);
    if (!value) continue;
    ++given;
    options.choice = o.choice;
    if (!value->empty()) options.date = TakeDate(args, *value);
  }
  if (const auto custom = args.Values("--custom", 2)) {
    ++given;
    options.choice = PeriodOptions::Choice::kCustom;
    options.from = TakeDate(args, (*custom)[0]).value_or(SystemTime{});
    options.to = TakeDate(args, (*custom)[1]).value_or(SystemTime{});
  }
  if (allow_from_to) {
    const std::optional<std::string> from = args.Value("--from");
    const std::optional<std::string> to = args.Value("--to");
    if (from && to) {
      ++given;
      options.choice = PeriodOptions::Choice::kFromTo;
      options.from = TakeDate(args, *from).value_or(SystemTime{});
      options.to = TakeDate(args, *to).value_or(SystemTime{});
    } else if (from || to) {
      args.Fail("--from and --to go together");
    }
  }
  if (given > 1) args.Fail("give one period only");
  return options;
}

std::unique_ptr<Period> ChosenPeriod(const PeriodOptions& options,
                                     const Settings& settings, const Clock& clock) {
  const SystemTime date = options.date.value_or(clock.LocalNow());
  switch (options.choice) {
    case PeriodOptions::Choice::kDay:
      return MakePeriod(PeriodKind::kDay, date, settings);
    case PeriodOptions::Choice::kWeek:
      return MakePeriod(PeriodKind::kWeek, date, settings);
    case PeriodOptions::Choice::kMonth:
      return MakePeriod(PeriodKind::kMonth, date, settings);
    case PeriodOptions::Choice::kCustom:
    case PeriodOptions::Choice::kFromTo:
      return std::make_unique<CustomPeriod>(options.from, options.to);
    case PeriodOptions::Choice::kView:
      break;
  }
  return MakePeriod(PeriodKindFromView(settings.view), date, settings);
}

}  // namespace quillora
