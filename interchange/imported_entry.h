// What the readers of other trackers' files make of each row or interval:
// a time entry as it will be stored, or the reason it is skipped. The rules
// that both readers share live here, so a Timewarrior interval and a CSV row
// become entries alike, through the editor's own limits and computations.
#ifndef QUILLORA_INTERCHANGE_IMPORTED_ENTRY_H_
#define QUILLORA_INTERCHANGE_IMPORTED_ENTRY_H_

#include <cstddef>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "store/settings.h"
#include "store/time_entry.h"

namespace quillora {

// Import files are read whole; a larger one is refused before reading.
inline constexpr std::size_t kImportFileLimit = 64u << 20;  // 64 MB

// One row of a CSV file or one interval of a Timewarrior export.
struct ImportedEntry {
  int line = 0;         // the line it starts on
  TimeEntry entry;      // as it will be stored (record id 0)
  std::u16string skip;  // why it is not imported; empty when it is
};

// What a reader made of a whole file. `error` is set (with the line in
// `error_line`, 0 for the file as a whole) when the file is malformed: then
// nothing of it is imported.
struct ImportedFile {
  std::vector<ImportedEntry> rows;
  std::u16string error;
  int error_line = 0;
};

// Values for rows that have none (the command line's --client and --task).
struct ImportDefaults {
  std::u16string client;
  std::u16string task;
};

// A new entry as the editor opens one (billable and currency from the
// new-entry defaults, rate 0, "Normal Rate") at the local time `start`; with
// `has_time` its seconds carry the entered-start mark, without it the entry
// starts at 00:00:00 of that day. False when the date is not a calendar date.
bool StartImportedEntry(const Settings& settings, const SystemTime& start, bool has_time,
                        TimeEntry* entry);

// Stores `hours` through SetDurationFromHours (the granularity applies). The
// skip reason when the hours are negative or more than a record holds
// (655.35 hours); empty when stored.
std::u16string SetImportedDuration(TimeEntry* entry, double hours,
                                   const Settings& settings);

// The names cut to the editor's field limits, the defaults filled in where
// client or task are empty, then the editor's checks on them: the skip
// reason for a missing client, then a missing task; empty when they pass.
std::u16string FinishImportedEntry(const ImportDefaults& defaults, TimeEntry* entry);

// Typed text as the entry's note (none when empty).
void SetImportedNote(const std::u16string& text, TimeEntry* entry);

}  // namespace quillora

#endif  // QUILLORA_INTERCHANGE_IMPORTED_ENTRY_H_
