#include "periods/period_entries.h"

#include <algorithm>

#include "periods/entry_list_item.h"
#include "store/note_text.h"
#include "timekeeping/duration.h"

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

namespace {

double AmountKey(const TimeEntry& e, const Settings& settings) {
  return e.billable ? EntryAmount(e, settings) : 0.0;
}

FileTime Day(const TimeEntry& e) { return e.start - e.start % kTicksPerDay; }

// Negative, zero or positive as `a` sorts before, with or after `b`.
int CompareBy(std::uint32_t key, const TimeEntry& a, const TimeEntry& b,
              const Locale& locale, const Settings& settings) {
  auto number = [](auto x, auto y) { return x < y ? -1 : (y < x ? 1 : 0); };
  switch (key) {
    case kSortClient:
      return locale.Compare(a.client, b.client);
    case kSortProject:
      return locale.Compare(a.project, b.project);
    case kSortTask:
      return locale.Compare(a.task, b.task);
    case kSortPhase:
      return locale.Compare(a.phase, b.phase);
    case kSortDuration:
      return number(a.duration, b.duration);
    case kSortRate:
      return number(a.rate, b.rate);
    case kSortAmount:
      return number(AmountKey(a, settings), AmountKey(b, settings));
    case kSortStatus:
      return number(DisplayStatus(a), DisplayStatus(b));
    case kSortNote:
      return locale.Compare(NoteBlobToText(a.note.data(), a.note.size()),
                            NoteBlobToText(b.note.data(), b.note.size()));
    case kSortStartTime: {
      const FileTime at = HasStartTime(a) ? a.start % kTicksPerDay + 1 : 0;
      const FileTime bt = HasStartTime(b) ? b.start % kTicksPerDay + 1 : 0;
      return number(at, bt);
    }
    default:
      return number(a.start, b.start);
  }
}

}  // namespace

void SortEntries(std::uint32_t sort, const Locale& locale, const Settings& settings,
                 bool by_day, std::vector<TimeEntry>* entries) {
  std::uint32_t key = sort & 0xFF;
  if (key > kSortStartTime) key = kSortDate;
  const bool descending = (sort & kSortDescending) != 0;
  if (key == kSortDate) {
    // The store's order already is the date order; equal starts keep it.
    if (descending) {
      std::stable_sort(
          entries->begin(), entries->end(),
          [](const TimeEntry& a, const TimeEntry& b) { return b.start < a.start; });
    }
    return;
  }
  std::stable_sort(entries->begin(), entries->end(),
                   [&](const TimeEntry& a, const TimeEntry& b) {
                     if (by_day && Day(a) != Day(b))
                       return descending ? Day(b) < Day(a) : Day(a) < Day(b);
                     const int c = CompareBy(key, a, b, locale, settings);
                     return descending ? c > 0 : c < 0;
                   });
}

}  // namespace quillora
