// Copy entry: one existing time entry repeated on the following days, so that
// recurring work is recorded once and copied forward. The "Copy entry to:"
// dialog is modelled here without a window; CopyEntry does its OK.
//
// A copy keeps every field of its source (start time of day with its seconds
// mark, billing, custom fields, note) except the date and the duration, which
// is the dialog's. Copies are written in date order; none is skipped.
#ifndef QUILLORA_TIMEKEEPING_COPY_ENTRY_H_
#define QUILLORA_TIMEKEEPING_COPY_ENTRY_H_

#include <string>
#include <string_view>
#include <vector>

#include "platform/clock.h"
#include "platform/user_prompt.h"
#include "store/record_store.h"
#include "store/settings.h"
#include "store/time_entry.h"

namespace quillora {

enum class CopyRange {
  kRestOfWeek,       // "Rest of the week": up to the end of the source's week
  kSpecificEndDate,  // "Specific end date:": up to the picked date, included
};

// The dialog's controls.
struct CopyEntryDialog {
  CopyRange range = CopyRange::kRestOfWeek;
  SystemTime end_date;           // the date picker, enabled only for kSpecificEndDate
  bool include_weekend = false;  // "Include Weekend"
  std::u16string duration;       // "Duration:", at most 6 characters
  // Shown read-only so that the user sees what is copied.
  std::u16string client;
  std::u16string project;
  std::u16string phase;
  std::u16string task;

  bool end_date_enabled() const { return range == CopyRange::kSpecificEndDate; }
  void SetDuration(std::u16string_view text);
};

// The dialog as it opens for `source`: "Rest of the week", the end date
// picker on the source's date, weekends left out, the source's duration
// ("%.2f") and names.
CopyEntryDialog OpenCopyDialog(const TimeEntry& source);

// The days that receive a copy, in date order: every day after the source's
// date up to the end of its week (the settings' week start) or up to
// `end_date` included; Saturdays and Sundays only with `include_weekend`.
// Empty when the end is not after the source's date.
std::vector<SystemTime> CopyDays(const SystemTime& source_date, CopyRange range,
                                 const SystemTime& end_date, bool include_weekend,
                                 const Settings& settings);

// The copy of `source` on `day`: a new entry (record id 0) with every field
// of the source, its start moved to `day` at the same time of day.
TimeEntry CopyOn(const TimeEntry& source, const SystemTime& day);

enum class CopyResult { kCopied, kRefused, kFailed };

// The dialog's OK. The duration must be given ("You must enter a duration in
// hours. (e.g. 1.5, or 0.5)") and hold no letter ("This field accepts numeric
// values only."); the message is shown (title "Quillora", exclamation) and
// kRefused answered otherwise. The duration text is then read and stored
// through the granularity rule, and the copies are written in date order;
// `copies` (may be null) receives their record ids. A failed write stops the
// copying with "Unable to save the time entry." and kFailed; the copies
// written before it stay.
CopyResult CopyEntry(EntryStore& entries, const TimeEntry& source,
                     const CopyEntryDialog& dialog, const Settings& settings,
                     int code_page, UserPrompt& prompt, std::vector<ObjectId>* copies);

}  // namespace quillora

#endif  // QUILLORA_TIMEKEEPING_COPY_ENTRY_H_
