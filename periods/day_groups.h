// The days of a period's entries: the week, month and custom views show the
// entries under one row per day with that day's totals.
#ifndef QUILLORA_PERIODS_DAY_GROUPS_H_
#define QUILLORA_PERIODS_DAY_GROUPS_H_

#include <cstddef>
#include <vector>

#include "periods/quick_summary.h"
#include "platform/clock.h"
#include "store/settings.h"
#include "store/time_entry.h"

namespace quillora {

// One day: its date (time zeroed), its entries entries[first .. first +
// count - 1], and their totals.
struct DayGroup {
  SystemTime day;
  std::size_t first = 0;
  std::size_t count = 0;
  EntryTotals totals;
};

// Splits `entries`, already in day order (SortEntries with by_day), into
// runs of one calendar day each.
std::vector<DayGroup> GroupByDay(const std::vector<TimeEntry>& entries,
                                 const Settings& settings);

}  // namespace quillora

#endif  // QUILLORA_PERIODS_DAY_GROUPS_H_
