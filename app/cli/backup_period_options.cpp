#include "app/cli/backup_period_options.h"

#include <vector>

#include "platform/text.h"

namespace quillora {
namespace {

// Digits in the shape YYYY-MM-DD, whether or not the date exists.
bool LooksLikeDate(const std::string& text) {
  if (text.size() != 10) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool dash = i == 4 || i == 7;
    if (dash ? text[i] != '-' : (text[i] < '0' || text[i] > '9')) return false;
  }
  return true;
}

}  // namespace

std::optional<SystemTime> ParseBackupDate(const std::string& text) {
  if (text.size() != 10) return std::nullopt;
  return ParseIsoDateTime(text);
}

PeriodRange WholeDays(const SystemTime& from, const SystemTime& to) {
  PeriodRange range{DateOnly(from), DateOnly(to)};
  range.end.hour = 23;
  range.end.minute = 59;
  range.end.second = 59;
  return range;
}

bool TakeBackupPeriod(Arguments& args, const Settings& settings, const Clock& clock,
                      bool allow_from_to, BackupPeriodChoice* choice,
                      std::string* error) {
  const SystemTime today = DateOnly(clock.LocalNow());
  std::unique_ptr<Period> period;
  int given = 0;

  // --day, --week and --month take an optional date: a date stands behind the
  // option when the next word reads as one. The words are looked at in a copy.
  const struct {
    const char* name;
    PeriodKind kind;
  } kinds[] = {{"--day", PeriodKind::kDay},
               {"--week", PeriodKind::kWeek},
               {"--month", PeriodKind::kMonth}};
  for (const auto& k : kinds) {
    Arguments copy = args;
    const std::vector<std::string> words = copy.Positionals();
    bool present = false;
    std::optional<std::string> date_text;
    for (std::size_t i = 0; i < words.size(); ++i) {
      if (words[i] != k.name) continue;
      present = true;
      date_text.reset();
      if (i + 1 < words.size() && LooksLikeDate(words[i + 1])) date_text = words[i + 1];
    }
    if (!present) continue;
    ++given;
    if (date_text) {
      args.Values(k.name, 1);
    } else {
      args.Flag(k.name);
    }
    if (date_text && !ParseBackupDate(*date_text)) {
      *error = "not a date: " + *date_text;
      return false;
    }
    const SystemTime date = date_text ? *ParseBackupDate(*date_text) : today;
    period = MakePeriod(k.kind, date, settings);
  }

  if (auto custom = args.Values("--custom", 2)) {
    ++given;
    const auto from = ParseBackupDate((*custom)[0]);
    const auto to = ParseBackupDate((*custom)[1]);
    if (!from || !to) {
      *error = "--custom takes two dates YYYY-MM-DD";
      return false;
    }
    period = std::make_unique<CustomPeriod>(*from, *to);
  }

  std::optional<PeriodRange> days;
  if (allow_from_to) {
    const auto from = args.Value("--from");
    const auto to = args.Value("--to");
    if (from || to) {
      ++given;
      if (!from || !to) {
        *error = "--from and --to go together";
        return false;
      }
      const auto from_date = ParseBackupDate(*from);
      const auto to_date = ParseBackupDate(*to);
      if (!from_date || !to_date) {
        *error = "--from and --to take dates YYYY-MM-DD";
        return false;
      }
      days = WholeDays(*from_date, *to_date);
    }
  }
  if (!args.error().empty()) {
    *error = args.error();
    return false;
  }
  if (given > 1) {
    *error = "give one period only";
    return false;
  }
  if (days) {
    choice->range = *days;
    choice->view_range = *days;
    return true;
  }
  if (!period) period = MakePeriod(PeriodKindFromView(settings.view), today, settings);
  choice->range = period->GetRange();
  choice->view_range = period->GetViewRange();
  return true;
}

bool SplitClientNames(const std::string& text, std::vector<std::u16string>* names) {
  std::size_t begin = 0;
  for (;;) {
    const std::size_t comma = text.find(',', begin);
    const std::string name = text.substr(
        begin, comma == std::string::npos ? std::string::npos : comma - begin);
    if (name.empty()) return false;
    names->push_back(FromUtf8(name));
    if (comma == std::string::npos) return true;
    begin = comma + 1;
  }
}

}  // namespace quillora
