#include "timekeeping/duration.h"

#include <locale.h>
#include <stdlib.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <limits>

#include "platform/char_class.h"
#include "platform/code_page.h"
#include "platform/text.h"

namespace quillora {
namespace {

// The device read typed numbers into a 64-byte buffer, terminator included.
constexpr std::size_t kNumberBufferBytes = 64;

// The "C" locale, so that a process locale with a decimal comma (which the
// window's toolkit installs) does not change how typed hours read.
locale_t CLocale() {
  static const locale_t c_locale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(0));
  return c_locale;
}

// atof in the "C" locale.
double ReadLeadingNumber(const std::string& bytes) {
  const locale_t c_locale = CLocale();
  // atof's own answer (0 for no number) is the one wanted.
  if (c_locale == static_cast<locale_t>(0))
    return std::atof(bytes.c_str());  // NOLINT(cert-err34-c)
  return strtod_l(bytes.c_str(), nullptr, c_locale);
}

// The conversion of a double to a 32-bit integer, truncating toward zero.
// Values beyond the range saturate and NaN gives 0, where the language leaves
// the conversion undefined.
std::int32_t TruncateToInt32(double value) {
  if (std::isnan(value)) return 0;
  if (value >= 2147483648.0) return std::numeric_limits<std::int32_t>::max();
  if (value <= -2147483649.0) return std::numeric_limits<std::int32_t>::min();
  return static_cast<std::int32_t>(value);
}

// Rule 1 without the entry. Each step is its own binary64 operation, in this
// order, so that the last bit comes out as the stored durations expect.
std::int32_t DurationFromHours(double hours, const Settings& settings) {
  double x = hours * 1000.0;
  // A granularity of 0 minutes (a hand-edited registry) makes q infinite or
  // NaN, whose fraction never compares greater than 0: no rounding, which is
  // what this test says plainly.
  if ((settings.option_bits & kOptionGranularity) && settings.granularity != 0) {
    const double step = settings.granularity * kHoursPerMinute;
    const double q = (x * 0.001) / step;
    // Always up to the next whole step, never to the nearest.
    if (q - std::floor(q) > 0) x = std::ceil(q) * step * 1000.0;
  }
  return TruncateToInt32(x * 0.1);
}

std::u16string FormatNarrow(const char* format, double value) {
  char buf[512];  // "%.2f" of the largest double needs 312 bytes
  const int n = std::snprintf(buf, sizeof buf, format, value);
  if (n < 0) return {};
  return WidenAscii(std::string_view(buf, std::min<std::size_t>(n, sizeof buf - 1)));
}

std::int64_t TimeOfDayMilliseconds(const SystemTime& t) {
  return ((t.hour * 60ll + t.minute) * 60 + t.second) * 1000 + t.milliseconds;
}

}  // namespace

double ParseHoursText(std::u16string_view text, int code_page) {
  std::string bytes = ToAnsi(text, code_page);
  if (bytes.size() > kNumberBufferBytes - 1) bytes.resize(kNumberBufferBytes - 1);
  return ReadLeadingNumber(bytes);
}

std::uint32_t SetDurationFromHours(TimeEntry* entry, double hours,
                                   const Settings& settings) {
  entry->duration = static_cast<std::uint32_t>(DurationFromHours(hours, settings));
  return entry->duration;
}

std::uint32_t SetDurationFromTimer(TimeEntry* entry, std::uint32_t elapsed_seconds,
                                   const Settings& settings) {
  return SetDurationFromHours(entry, elapsed_seconds * kHoursPerSecond, settings);
}

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

std::int32_t RateFromText(std::u16string_view text, int code_page) {
  return TruncateToInt32(ParseHoursText(text, code_page) * 1000 * 0.1);
}

std::uint32_t SetRateFromText(TimeEntry* entry, std::u16string_view text, int code_page) {
  entry->rate = static_cast<std::uint32_t>(RateFromText(text, code_page));
  return entry->rate;
}

int DurationChoiceStep(std::uint16_t time_interval) {
  if (time_interval >= kDurationIntervalMinutes.size()) {
    return kDurationIntervalMinutes[kDefaultTimeInterval];
  }
  return kDurationIntervalMinutes[time_interval];
}

std::vector<std::u16string> FillDurationChoices(std::uint16_t time_interval) {
  const int step = DurationChoiceStep(time_interval);
  std::vector<std::u16string> choices;
  choices.reserve(720 / step);
  for (int m = step; m <= 720; m += step) {
    choices.push_back(FormatNarrow("%.02f", m * kHoursPerMinute));
  }
  return choices;
}

bool IsNumericText(std::u16string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t c = text[i];
    if (c >= 0xD800 && c <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
        text[i + 1] <= 0xDFFF) {
      c = 0x10000 + ((c - 0xD800) << 10) + (text[i + 1] - 0xDC00);
      ++i;
    }
    if (IsLetter(c)) return false;
  }
  return true;
}

std::int64_t MinutesFromDuration(std::uint32_t duration) {
  const double hours = duration * 0.01;
  const double w = std::floor(hours);
  const double f = hours - w;
  // Exact comparisons, as for the amount: only the durations whose fraction
  // comes out exactly (17, 33, 67, 83 below one hour) take the sixths.
  const auto whole = static_cast<std::int64_t>(w) * 60;
  if (f == 0.17) return whole + 10;
  if (f == 0.33) return whole + 20;
  if (f == 0.67) return whole + 40;
  if (f == 0.83) return whole + 50;
  return static_cast<std::int64_t>(hours * 60.0);
}

SystemTime EndPickerTime(const SystemTime& start, std::uint32_t duration) {
  const std::int64_t minutes = MinutesFromDuration(duration);
  if (minutes < 1) return start;
  FileTime ticks = 0;
  if (!SystemTimeToFileTime(start, &ticks)) return start;
  const FileTime step = static_cast<FileTime>(minutes) * kTicksPerMinute;
  SystemTime end;
  if (step / kTicksPerMinute != static_cast<FileTime>(minutes) ||
      !FileTimeToSystemTime(ticks + step, &end)) {
    return start;
  }
  return end;
}

std::int64_t MinutesBetweenPickers(const SystemTime& start, const SystemTime& end) {
  // Only the hours are compared: an end at 10:15 after a start at 10:40 stays
  // on the same day and gives a negative difference.
  const std::int64_t next_day = end.hour < start.hour ? 86'400'000 : 0;
  const std::int64_t seconds =
      (TimeOfDayMilliseconds(end) + next_day - TimeOfDayMilliseconds(start)) / 1000;
  return seconds / 60;
}

std::uint32_t SetDurationFromStartEnd(TimeEntry* entry, const SystemTime& start,
                                      const SystemTime& end, const Settings& settings) {
  const double minutes = static_cast<double>(MinutesBetweenPickers(start, end));
  return SetDurationFromHours(entry, minutes * kHoursPerMinute, settings);
}

std::u16string FormatDurationField(std::uint32_t duration) {
  return FormatNarrow("%.2f", duration * 0.01);
}

std::u16string FormatHundredths(std::uint32_t value) {
  // value * 0.01 (or value / 100.0) lies within far less than half a
  // hundredth of the exact decimal, so printf's rounding gives back exactly
  // the integer's digits: they are written from the integer.
  char16_t buf[16];  // at most 42949672.95
  char16_t* const end = buf + std::size(buf);
  char16_t* p = end;
  std::uint32_t rest = value;
  for (int i = 0; i < 2; ++i, rest /= 10) *--p = static_cast<char16_t>(u'0' + rest % 10);
  *--p = u'.';
  do {
    *--p = static_cast<char16_t>(u'0' + rest % 10);
    rest /= 10;
  } while (rest != 0);
  return std::u16string(p, end);
}

std::u16string FormatTwoDecimals(double value) {
  // std::to_chars with a precision writes what printf's "%.2f" writes, much
  // faster.
  char buf[512];  // "%.2f" of the largest double needs 312 bytes
  const auto result =
      std::to_chars(buf, buf + sizeof buf, value, std::chars_format::fixed, 2);
  if (result.ec != std::errc()) return FormatNarrow("%.02f", value);
  return WidenAscii(std::string_view(buf, static_cast<std::size_t>(result.ptr - buf)));
}

std::u16string FormatInteger(int value) {
  char buf[16];
  const auto result = std::to_chars(buf, buf + sizeof buf, value);
  return WidenAscii(std::string_view(buf, static_cast<std::size_t>(result.ptr - buf)));
}

std::u16string FormatAmountWithCurrency(std::u16string_view currency, double amount) {
  std::u16string text(currency);
  text += FormatTwoDecimals(amount);
  return text;
}

}  // namespace quillora
