// The entries that a period view lists: the entries of the period, both ends
// included, that pass the entry filter, in the order of the entries database
// (by start). The day, week, month and custom views, the `list` command and
// the quick summary all take their entries from this one walk, so they never
// disagree about which entries a period holds.
#ifndef QUILLORA_PERIODS_PERIOD_ENTRIES_H_
#define QUILLORA_PERIODS_PERIOD_ENTRIES_H_

#include <functional>
#include <vector>

#include "periods/entry_filter.h"
#include "periods/periods.h"
#include "platform/locale.h"
#include "store/record_store.h"
#include "store/settings.h"
#include "store/time_entry.h"

namespace quillora {

// Called with each listed entry, in store order; answering false ends the
// walk early. The entry is valid only during the call.
using PeriodEntryVisitor = std::function<bool(const TimeEntry& entry)>;

// Walks the open entry store over `range` (normally Period::GetViewRange):
// a greater-or-equal seek on the start property to the range start, so that
// an entry stamped exactly at the start (an entry without a start time on the
// period's first day) is listed, then forward one record at a time until the
// first entry later than the range end. Each entry read is tested with
// `filter`, whose own date range is not used: the period's bounds take its
// place for this walk, as a view sets them. True when the walk reached its
// end or the visitor stopped it (an empty period is no failure); false when
// the range is not a calendar range or the store could not be sought or read
// (the visitor may have seen some entries by then).
bool WalkPeriodEntries(EntryStore& store, const PeriodRange& range,
                       const EntryFilter& filter, const Locale& locale,
                       const PeriodEntryVisitor& visit);

// The record ids of the listed entries, in store order: what a view holds
// and what the quick summary is opened with. `ids` is replaced; false as
// WalkPeriodEntries (`ids` then holds the ids found before the failure).
bool ListPeriodEntryIds(EntryStore& store, const PeriodRange& range,
                        const EntryFilter& filter, const Locale& locale,
                        std::vector<ObjectId>* ids);

// The order of the views' lists, the "Sort" setting: a key in the low byte,
// and kSortDescending for the reverse order.
enum SortKey : std::uint32_t {
  kSortDate = 0,  // the store's order: by date and start
  kSortClient = 1,
  kSortProject = 2,
  kSortTask = 3,
  kSortPhase = 4,
  kSortDuration = 5,
  kSortRate = 6,
  kSortAmount = 7,      // EntryAmount; non-billable entries count as none
  kSortStatus = 8,      // non-billable, billable, paid
  kSortNote = 9,        // the note's text
  kSortStartTime = 10,  // time of day; entries without a start time first
};
inline constexpr std::uint32_t kSortDescending = 0x100;

// Orders `entries` (in the store's order) by `sort`: names by the locale's
// comparison, numbers by value; entries that compare equal keep the store's
// order in either direction. A key without a meaning keeps the store's order.
// With `by_day` the entries of each calendar day stay together, the days in
// date order (reversed with kSortDescending) and the sort applied within
// each day.
void SortEntries(std::uint32_t sort, const Locale& locale, const Settings& settings,
                 bool by_day, std::vector<TimeEntry>* entries);

}  // namespace quillora

#endif  // QUILLORA_PERIODS_PERIOD_ENTRIES_H_
