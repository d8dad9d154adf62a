// The period options of the commands that work on a period's entries:
//   --day [DATE]  --week [DATE]  --month [DATE]  --custom FROM TO
// and, for export, report and archive, --from DATE --to DATE. DATE is
// YYYY-MM-DD and defaults to today; with no option the period is the kind of
// the "View" setting at today (the custom period of "PeriodStart" and
// "PeriodEnd"). Nothing here writes the settings: the command line never
// changes the stored view or custom period.
#ifndef QUILLORA_APP_CLI_PERIOD_OPTIONS_H_
#define QUILLORA_APP_CLI_PERIOD_OPTIONS_H_

#include <memory>
#include <optional>

#include "app/cli/arguments.h"
#include "periods/periods.h"
#include "platform/clock.h"
#include "store/settings.h"

namespace quillora {

struct PeriodOptions {
  enum class Choice { kView, kDay, kWeek, kMonth, kCustom, kFromTo };
  Choice choice = Choice::kView;
  std::optional<SystemTime> date;  // the DATE of --day, --week, --month; none: today
  SystemTime from;                 // --custom FROM TO, --from FROM --to TO
  SystemTime to;
};

// The usage text of the options, for the commands' help.
inline constexpr char kPeriodOptionsUsage[] =
    "--day [DATE] | --week [DATE] | --month [DATE] | --custom FROM TO";

// True for a word shaped as a date, YYYY-MM-DD (valid or not): the word
// behind --day, --week or --month is its DATE only when it has this shape,
// so that `export csv --week out.csv` keeps out.csv as the file.
bool LooksLikeDate(const std::string& word);

// A word of the shape YYYY-MM-DD that is a real date, as that date at
// midnight; nothing otherwise.
std::optional<SystemTime> ParseCommandLineDate(const std::string& word);

// --from DATE --to DATE: DATE 00:00:00 to DATE 23:59:59.
PeriodRange WholeDays(const SystemTime& from, const SystemTime& to);

// Takes the period options out of `args`. `allow_from_to` also takes --from
// DATE --to DATE (otherwise they stay behind and Positionals() refuses them).
// More than one period, a date that is not a real date, or --from without
// --to (or the reverse) are recorded as a usage error in `args`.
PeriodOptions TakePeriodOptions(Arguments& args, bool allow_from_to);

// The period the options choose, at `clock`'s today where no DATE was given,
// with the week start from the settings. --custom FROM TO and --from/--to
// give the custom period from FROM 00:00:00 to TO 23:59:59 (empty when TO is
// before FROM). What the view lists (list, summary, mark-paid) is
// Period::GetViewRange(); export, report and archive take Period::GetRange(),
// the range their dialogs are prefilled with (docs/cli.md).
std::unique_ptr<Period> ChosenPeriod(const PeriodOptions& options,
                                     const Settings& settings, const Clock& clock);

}  // namespace quillora

#endif  // QUILLORA_APP_CLI_PERIOD_OPTIONS_H_
