// The small computations that turn typed text, timer seconds and start/end
// times into stored durations, and durations and rates into amounts. Every
// view, export, report and summary goes through these, so the granularity
// rule and the precise-minutes rule hold alike everywhere.
#ifndef QUILLORA_TIMEKEEPING_DURATION_H_
#define QUILLORA_TIMEKEEPING_DURATION_H_

#include <cstdint>

#include "store/settings.h"
#include "store/time_entry.h"

namespace quillora {

// The amount of an entry, never rounded. A fixed rate is the amount itself;
// otherwise rate times hours, except that with precise minutes on the
// durations 0.17, 0.33 and 0.67 hours bill as exact sixths of an hour.
double EntryAmount(const TimeEntry& entry, const Settings& settings);

}  // namespace quillora

#endif  // QUILLORA_TIMEKEEPING_DURATION_H_
