#include "timekeeping/duration.h"

#include <cmath>

namespace quillora {

double EntryAmount(const TimeEntry& entry, const Settings& settings) {
  if (entry.rateType == kRateFixed) return entry.rate * 0.01;
  const double hours = entry.duration * 0.01;
  const double r = entry.rate * 0.01;
  if (!(settings.option_bits & kOptionPreciseCalculation)) return r * hours;
  // The fraction is compared for exact equality on purpose: since hours is
  // duration x 0.01, only 17, 33 and 67 hundredths ever match; 0.83 and every
  // duration of an hour or more bill as the plain product.
  const double w = std::floor(hours);
  const double f = hours - w;
  if (f == 0.17) return (w + 0.16666666666666666) * r;
  if (f == 0.33) return (w + 0.3333333333333333) * r;
  if (f == 0.67) return (w + 0.6666666666666666) * r;
  if (f == 0.83) return (w + 0.8333333333333334) * r;
  return r * hours;
}

}  // namespace quillora
