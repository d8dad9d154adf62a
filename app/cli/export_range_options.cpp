#include "app/cli/export_range_options.h"

#include <memory>

namespace quillora {
namespace {

struct PeriodFlag {
  const char* name;
  PeriodKind kind;
};
constexpr PeriodFlag kPeriodFlags[] = {{"--day", PeriodKind::kDay},
                                       {"--week", PeriodKind::kWeek},
                                       {"--month", PeriodKind::kMonth}};

bool TakeDate(const std::string& option, const std::string& text, SystemTime* date,
              std::string* error) {
  const auto parsed = ParseCommandLineDate(text);
  if (!parsed) {
    *error = option + " takes a date YYYY-MM-DD, not " + text;
    return false;
  }
  *date = *parsed;
  return true;
}

}  // namespace

std::optional<SystemTime> ParseCommandLineDate(const std::string& text) {
  if (text.size() != 10) return std::nullopt;
  return ParseIsoDateTime(text);
}

bool TakeExportRangeOptions(Arguments& args, ExportRangeOptions* options,
                            std::string* error) {
  *options = ExportRangeOptions();
  int given = 0;
  for (const PeriodFlag& flag : kPeriodFlags) {
    if (args.Flag(flag.name)) {
      options->kind = flag.kind;
      ++given;
    }
  }
  if (auto custom = args.Values("--custom", 2)) {
    options->kind = PeriodKind::kCustom;
    ++given;
    if (!TakeDate("--custom", (*custom)[0], &options->first, error) ||
        !TakeDate("--custom", (*custom)[1], &options->last, error)) {
      return false;
    }
  }
  const auto from = args.Value("--from");
  const auto to = args.Value("--to");
  if (!args.error().empty()) {
    *error = args.error();
    return false;
  }
  if (from || to) {
    if (!from || !to) {
      *error = "--from and --to go together";
      return false;
    }
    options->from_to = true;
    ++given;
    if (!TakeDate("--from", *from, &options->first, error) ||
        !TakeDate("--to", *to, &options->last, error)) {
      return false;
    }
  }
  if (given > 1) {
    *error = "give one range: --day, --week, --month, --custom or --from/--to";
    return false;
  }
  return true;
}

void TakeExportPeriodDate(ExportRangeOptions* options, std::vector<std::string>* words) {
  if (!options->kind || *options->kind == PeriodKind::kCustom || words->empty() ||
      words->size() > 2) {
    return;
  }
  for (auto it = words->begin(); it != words->end(); ++it) {
    if (auto date = ParseCommandLineDate(*it)) {
      options->date = date;
      words->erase(it);
      return;
    }
  }
}

PeriodRange ResolveExportRange(const ExportRangeOptions& options,
                               const Settings& settings, const Clock& clock) {
  if (options.from_to) {
    const SystemTime& l = options.last;
    return {DateOnly(options.first), MakeSystemTime(l.year, l.month, l.day, 23, 59, 59)};
  }
  if (options.kind == PeriodKind::kCustom) {
    return CustomPeriod(options.first, options.last).GetRange();
  }
  const SystemTime date = options.date ? *options.date : DateOnly(clock.LocalNow());
  const PeriodKind kind =
      options.kind ? *options.kind : PeriodKindFromView(settings.view);
  return MakePeriod(kind, date, settings)->GetRange();
}

}  // namespace quillora
