#include "timekeeping/copy_entry.h"

#include "store/string_table.h"
#include "timekeeping/duration.h"
#include "timekeeping/entry_editor.h"

namespace quillora {
namespace {

// Day number of a date (days since 1601-01-01); false for an impossible date.
bool DayNumber(const SystemTime& date, std::uint64_t* day) {
  FileTime ft;
  if (!SystemTimeToFileTime(MakeSystemTime(date.year, date.month, date.day), &ft)) {
    return false;
  }
  *day = ft / kTicksPerDay;
  return true;
}

bool IsWeekend(const SystemTime& day) {
  return day.day_of_week == 0 || day.day_of_week == 6;
}

}  // namespace

void CopyEntryDialog::SetDuration(std::u16string_view text) {
  duration = CutText(text, kDurationFieldChars);
}

CopyEntryDialog OpenCopyDialog(const TimeEntry& source) {
  CopyEntryDialog dialog;
  SystemTime start;
  if (!FileTimeToSystemTime(source.start, &start)) start = MakeSystemTime(1601, 1, 1);
  dialog.end_date = MakeSystemTime(start.year, start.month, start.day);
  dialog.duration = FormatDurationField(source.duration);
  dialog.client = source.client;
  dialog.project = source.project;
  dialog.phase = source.phase;
  dialog.task = source.task;
  return dialog;
}

std::vector<SystemTime> CopyDays(const SystemTime& source_date, CopyRange range,
                                 const SystemTime& end_date, bool include_weekend,
                                 const Settings& settings) {
  std::vector<SystemTime> days;
  std::uint64_t first_day = 0;
  std::uint64_t last_day = 0;
  if (!DayNumber(source_date, &first_day)) return days;
  if (range == CopyRange::kRestOfWeek) {
    // The week ends on Saturday, or on Sunday when weeks start on Monday.
    const int week_start = settings.option_bits & kOptionWeekStartsMonday ? 1 : 0;
    const int weekday = DayOfWeek(source_date.year, source_date.month, source_date.day);
    last_day = first_day + static_cast<std::uint64_t>(6 - (weekday - week_start + 7) % 7);
  } else if (!DayNumber(end_date, &last_day)) {
    return days;
  }
  for (std::uint64_t d = first_day + 1; d <= last_day; ++d) {
    SystemTime day;
    if (!FileTimeToSystemTime(d * kTicksPerDay, &day)) break;
    if (!include_weekend && IsWeekend(day)) continue;
    days.push_back(day);
  }
  return days;
}

TimeEntry CopyOn(const TimeEntry& source, const SystemTime& day) {
  TimeEntry copy = source;
  copy.recordId = 0;
  SystemTime start;
  if (FileTimeToSystemTime(source.start, &start)) {
    start.year = day.year;
    start.month = day.month;
    start.day = day.day;
    SystemTimeToFileTime(start, &copy.start);
  }
  return copy;
}

CopyResult CopyEntry(EntryStore& entries, const TimeEntry& source,
                     const CopyEntryDialog& dialog, const Settings& settings,
                     int code_page, UserPrompt& prompt, std::vector<ObjectId>* copies) {
  if (dialog.duration.empty()) {
    prompt.ShowMessage(kAppTitle, kDurationRequiredMessage, MessageIcon::kExclamation);
    return CopyResult::kRefused;
  }
  if (!IsNumericText(dialog.duration)) {
    prompt.ShowMessage(kAppTitle, kNumericOnlyMessage, MessageIcon::kExclamation);
    return CopyResult::kRefused;
  }
  TimeEntry model = source;
  SetDurationFromHours(&model, ParseHoursText(dialog.duration, code_page), settings);

  SystemTime source_start;
  if (!FileTimeToSystemTime(source.start, &source_start)) return CopyResult::kCopied;
  const std::vector<SystemTime> days = CopyDays(
      source_start, dialog.range, dialog.end_date, dialog.include_weekend, settings);
  if (days.empty()) return CopyResult::kCopied;

  // One transaction for all copies: a month of copies is one durable write,
  // not thirty. It is committed whatever happens, so the copies written
  // before a failure stay, as every failed bulk write leaves its work done.
  ObjectStore& volume = entries.volume();
  const bool batch = volume.BeginBatch();
  CopyResult result = CopyResult::kCopied;
  for (const SystemTime& day : days) {
    const TimeEntry copy = CopyOn(model, day);
    if (!AddEntry(entries, copy)) {
      result = CopyResult::kFailed;
      break;
    }
    if (copies) copies->push_back(entries.current_record_id());
  }
  if (batch && !volume.CommitBatch()) {
    if (copies) copies->clear();
    result = CopyResult::kFailed;
  }
  if (result == CopyResult::kFailed) {
    prompt.ShowMessage(kAppTitle, LoadString(kIdsSaveEntryFailed), MessageIcon::kError);
  }
  return result;
}

}  // namespace quillora
