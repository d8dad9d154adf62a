// Options of the backup and bulk-edit commands. The period options of
// `archive` and `mark-paid` are read here until the command line has one
// shared reader for every command that takes a period:
//   --day [DATE]  --week [DATE]  --month [DATE]  --custom FROM TO
// and, where allowed, --from DATE --to DATE. With none of them: the period
// kind of the "View" setting at today.
#ifndef QUILLORA_APP_CLI_BACKUP_PERIOD_OPTIONS_H_
#define QUILLORA_APP_CLI_BACKUP_PERIOD_OPTIONS_H_

#include <optional>
#include <string>
#include <vector>

#include "app/cli/arguments.h"
#include "periods/periods.h"
#include "platform/clock.h"
#include "store/settings.h"

namespace quillora {

struct BackupPeriodChoice {
  PeriodRange range;       // what the archive dialog is prefilled with
  PeriodRange view_range;  // what the view of that period lists
};

// Takes the period options out of `args`. False with a usage message in
// `error` for a bad date, a missing value or two periods at once.
bool TakeBackupPeriod(Arguments& args, const Settings& settings, const Clock& clock,
                      bool allow_from_to, BackupPeriodChoice* choice, std::string* error);

// "YYYY-MM-DD" as a date at midnight; nothing for anything else.
std::optional<SystemTime> ParseBackupDate(const std::string& text);

// --from DATE --to DATE as DATE 00:00:00 to DATE 23:59:59.
PeriodRange WholeDays(const SystemTime& from, const SystemTime& to);

// "A,B,C" as the names A, B and C; false when a name among them is empty.
bool SplitClientNames(const std::string& text, std::vector<std::u16string>* names);

}  // namespace quillora

#endif  // QUILLORA_APP_CLI_BACKUP_PERIOD_OPTIONS_H_
