#include "interchange/imported_entry.h"

#include "store/note_text.h"
#include "timekeeping/duration.h"
#include "timekeeping/entry_editor.h"

namespace quillora {

bool StartImportedEntry(const Settings& settings, const SystemTime& start, bool has_time,
                        TimeEntry* entry) {
  *entry = NewEntry(settings, start);
  SystemTime st = MakeSystemTime(start.year, start.month, start.day);
  if (has_time) {
    st.hour = start.hour;
    st.minute = start.minute;
    st.second = kStartTimeMark;
  }
  return SystemTimeToFileTime(st, &entry->start);
}

std::u16string SetImportedDuration(TimeEntry* entry, double hours,
                                   const Settings& settings) {
  if (!(hours >= 0)) return u"ends before it starts";
  // 655.35 hours is the most the record's 16 bits hold; the granularity may
  // round a little less up to more, so the stored value decides.
  if (SetDurationFromHours(entry, hours, settings) > 0xFFFF) {
    return u"longer than an entry can hold (655.35 hours)";
  }
  return {};
}

std::u16string FinishImportedEntry(const ImportDefaults& defaults, TimeEntry* entry) {
  if (entry->client.empty()) entry->client = defaults.client;
  if (entry->task.empty()) entry->task = defaults.task;
  for (std::u16string* name :
       {&entry->client, &entry->project, &entry->phase, &entry->task, &entry->billTo,
        &entry->custom1, &entry->custom2, &entry->custom3}) {
    *name = CutText(*name, kNameFieldChars);
  }
  entry->currency = CutText(entry->currency, kCurrencyFieldChars);
  // The editor's checks in its order; a computed duration and a rate read
  // as a number pass the numeric ones.
  if (entry->client.empty()) return u"no client";
  if (entry->task.empty()) return u"no task";
  return {};
}

void SetImportedNote(const std::u16string& text, TimeEntry* entry) {
  if (text.empty()) return;
  // Notes keep their line breaks as CR LF.
  std::u16string note;
  note.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == u'\n' && (i == 0 || text[i - 1] != u'\r')) note.push_back(u'\r');
    note.push_back(text[i]);
  }
  const std::vector<std::uint8_t> blob = NoteBlobFromText(note);
  if (!SetNote(entry, static_cast<std::int32_t>(blob.size()), blob.data())) {
    entry->noteSize = 0;
  }
}

}  // namespace quillora
