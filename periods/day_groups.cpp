#include "periods/day_groups.h"

namespace quillora {

std::vector<DayGroup> GroupByDay(const std::vector<TimeEntry>& entries,
                                 const Settings& settings) {
  std::vector<DayGroup> days;
  FileTime current = 0;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const FileTime day = entries[i].start - entries[i].start % kTicksPerDay;
    if (days.empty() || day != current) {
      current = day;
      DayGroup group;
      FileTimeToSystemTime(day, &group.day);
      group.first = i;
      days.push_back(group);
    }
    ++days.back().count;
    days.back().totals.Add(entries[i], settings);
  }
  return days;
}

}  // namespace quillora
