#include "periods/period_entries.h"

#include <algorithm>

namespace quillora {

bool WalkPeriodEntries(EntryStore& store, const PeriodRange& range,
                       const EntryFilter& filter, const Locale& locale,
                       const PeriodEntryVisitor& visit) {
  FileTime start = 0;
  FileTime end = 0;
  if (!RangeToFileTimes(range, &start, &end)) return false;

  // The period's bounds are the walk's date range; the filter's own range is
  // left out so that an entry is not tested against two different ranges.
  EntryFilter criteria = filter;
  criteria.range_start = SystemTime{};
  criteria.range_end = SystemTime{};

  // The views include the start instant, unlike the exports, whose seek is
  // strictly greater: an entry without a start time on the first day is
  // stamped at 00:00:00 exactly and belongs to the period.
  if (store.SeekValue(SeekType::kValueGreaterOrEqual,
                      PropValue::Number(entry_prop::kStart, start)) == 0) {
    return GetLastStoreError() == kErrorNoMoreItems;
  }
  TimeEntry entry;
  for (;;) {
    const int read = ReadEntry(store, &entry);
    if (read == 1) return true;
    if (read != 0) return false;
    if (entry.start > end) return true;
    if (Matches(criteria, entry, locale) && !visit(entry)) return true;
    if (store.Seek(SeekType::kCurrent, 1) == 0) {
      return GetLastStoreError() == kErrorNoMoreItems;
    }
  }
}

bool ListPeriodEntryIds(EntryStore& store, const PeriodRange& range,
                        const EntryFilter& filter, const Locale& locale,
                        std::vector<ObjectId>* ids) {
  ids->clear();
  return WalkPeriodEntries(store, range, filter, locale, [ids](const TimeEntry& entry) {
    ids->push_back(entry.recordId);
    return true;
  });
}

void SortEntries(std::uint32_t sort, const Locale& locale, std::vector<TimeEntry>* entries) {
  std::u16string TimeEntry::*field = nullptr;
  switch (sort) {
    case 1: field = &TimeEntry::client; break;
    case 2: field = &TimeEntry::project; break;
    case 3: field = &TimeEntry::task; break;
    default: return;
  }
  std::stable_sort(entries->begin(), entries->end(),
                   [&](const TimeEntry& a, const TimeEntry& b) {
                     return locale.Compare(a.*field, b.*field) < 0;
                   });
}

}  // namespace quillora
