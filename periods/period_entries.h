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

// The order of the views' lists, by the "Sort" setting: 0 (and any value
// without a meaning) keeps the store's order, by date and start; 1 orders by
// client, 2 by project, 3 by task, each by the locale comparison and keeping
// the store's order among equal names.
void SortEntries(std::uint32_t sort, const Locale& locale, std::vector<TimeEntry>* entries);

}  // namespace quillora

#endif  // QUILLORA_PERIODS_PERIOD_ENTRIES_H_
