// The range options of the export command: --day [DATE], --week [DATE],
// --month [DATE], --custom FROM TO, or --from DATE --to DATE; with none of
// them the period of the "View" setting at today.
//
// Kept to the export command for now; the period options that list, summary,
// report and archive share are meant to take its place.
#ifndef QUILLORA_APP_CLI_EXPORT_RANGE_OPTIONS_H_
#define QUILLORA_APP_CLI_EXPORT_RANGE_OPTIONS_H_

#include <optional>
#include <string>
#include <vector>

#include "app/cli/arguments.h"
#include "periods/periods.h"
#include "platform/clock.h"
#include "store/settings.h"

namespace quillora {

struct ExportRangeOptions {
  // --day, --week, --month or --custom; nothing for the "View" setting's kind
  // or for --from/--to.
  std::optional<PeriodKind> kind;
  bool from_to = false;
  // The DATE of --day, --week or --month (today when not given).
  std::optional<SystemTime> date;
  // --custom FROM TO, --from and --to.
  SystemTime first;
  SystemTime last;
};

// "YYYY-MM-DD" as a date at midnight; nothing for any other text or an
// impossible date.
std::optional<SystemTime> ParseCommandLineDate(const std::string& text);

// Takes the range options out of `args`. False with a usage message in
// `error` for a malformed date, a missing value, or two ranges at once.
bool TakeExportRangeOptions(Arguments& args, ExportRangeOptions* options,
                            std::string* error);

// The DATE that may follow --day, --week or --month is left among the
// positional words, since the option's value is optional. When one of those
// options was given and `words` (the words behind the format) holds one or
// two, the first of them that is a date is taken out as its DATE. So a lone
// date is never taken for the file: a file named like a date is given as
// "./2026-11-20".
void TakeExportPeriodDate(ExportRangeOptions* options, std::vector<std::string>* words);

// The range the options stand for: a period's range (as the export range
// dialog is prefilled with it), --from 00:00:00 to --to 23:59:59, or the
// period of the "View" setting at today (a custom period from PeriodStart and
// PeriodEnd).
PeriodRange ResolveExportRange(const ExportRangeOptions& options,
                               const Settings& settings, const Clock& clock);

}  // namespace quillora

#endif  // QUILLORA_APP_CLI_EXPORT_RANGE_OPTIONS_H_
