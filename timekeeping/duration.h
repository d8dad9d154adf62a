// The small computations that turn typed text, timer seconds and start/end
// times into stored durations, and durations and rates into amounts. Every
// view, export, report and summary goes through these, so the granularity
// rule and the precise-minutes rule hold alike everywhere.
//
// All arithmetic is binary64 and follows a fixed sequence of operations: the
// constants below are multiplied, never replaced by a division, because the
// stored hundredths depend on the last bit.
#ifndef QUILLORA_TIMEKEEPING_DURATION_H_
#define QUILLORA_TIMEKEEPING_DURATION_H_

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/clock.h"
#include "store/settings.h"
#include "store/time_entry.h"

namespace quillora {

// The binary64 values nearest to 1/60 and 1/3600.
inline constexpr double kHoursPerMinute = 0.016666666666666666;
inline constexpr double kHoursPerSecond = 0.0002777777777777778;

// Messages of the duration and numeric fields (title "Quillora", exclamation).
inline constexpr char16_t kDurationRequiredMessage[] =
    u"You must enter a duration in hours. (e.g. 1.5, or 0.5)";
inline constexpr char16_t kNumericOnlyMessage[] =
    u"This field accepts numeric values only.";
// Refuses a granularity typed or imported below kMinimumGranularity minutes.
inline constexpr char16_t kGranularityTooSmallMessage[] =
    u"The duration granularity must be greater than or equal to 5 minutes.";
inline constexpr std::uint32_t kMinimumGranularity = 5;

// The "Duration Interval:" list of the General options page, by TimeInterval
// index, and the step in minutes of each. The 6-minute step is listed last
// although it is the smallest.
inline constexpr std::array<const char16_t*, 5> kDurationIntervalLabels = {
    u"10 Minute", u"15 Minute", u"20 Minute", u"30 Minute", u"6 Minutes"};
inline constexpr std::array<int, 5> kDurationIntervalMinutes = {10, 15, 20, 30, 6};
inline constexpr std::uint16_t kDefaultTimeInterval = 3;

// Reads typed hours the way the device's C library did: the text is converted
// to the ANSI code page `code_page` (at most 63 bytes are kept) and read like
// atof in the "C" locale whatever the process locale is. A leading decimal
// number is taken and the rest ignored ("1,5" is 1, "2h" is 2); text that does
// not begin with a number (".", "-", "", "abc") gives 0.
double ParseHoursText(std::u16string_view text, int code_page);

// Applies the granularity rule to `hours` and stores the result as the entry's
// duration; returns it. With the granularity bit of the option word set, the
// hours are rounded *up* to the next whole step of `granularity` minutes; the
// hundredths are then truncated toward zero. Negative hours are not guarded
// (the ceiling then rounds toward zero and the 32-bit result wraps when held
// unsigned). Hours beyond the 32-bit range saturate; NaN gives 0.
std::uint32_t SetDurationFromHours(TimeEntry* entry, double hours,
                                   const Settings& settings);

// The duration of a stopped timer: elapsed seconds x 1/3600 hours, through
// SetDurationFromHours.
std::uint32_t SetDurationFromTimer(TimeEntry* entry, std::uint32_t elapsed_seconds,
                                   const Settings& settings);

// The amount of an entry, never rounded. A fixed rate is the amount itself;
// otherwise rate times hours, except that with precise minutes on the
// durations 0.17, 0.33 and 0.67 hours bill as exact sixths of an hour.
double EntryAmount(const TimeEntry& entry, const Settings& settings);

// The rate typed in a rate field, in hundredths: the parsed value x 1000 x 0.1,
// truncated toward zero ("12.50" is 1250, "12.345" is 1234). Saturates like
// SetDurationFromHours.
std::int32_t RateFromText(std::u16string_view text, int code_page);
// Stores RateFromText as the entry's rate (two's complement when negative)
// and returns it.
std::uint32_t SetRateFromText(TimeEntry* entry, std::u16string_view text, int code_page);

// The step in minutes of the duration choice list for a TimeInterval index;
// an index outside 0..4 takes the default step of 30 minutes.
int DurationChoiceStep(std::uint16_t time_interval);

// The texts of the duration choice list: "%.02f" of one step, two steps ...
// up to 12.00 hours (24 items for 30 minutes, 120 for 6).
std::vector<std::u16string> FillDurationChoices(std::uint16_t time_interval);

// True when the text is empty or holds no letter of any letter class (a
// letter outside the basic plane counts too); digits, point, comma, minus,
// blanks and every other non-letter pass.
bool IsNumericText(std::u16string_view text);

// The start and end dialog. Minutes of a duration for moving the end picker:
// the two-decimal fractions .17, .33, .67 and .83 are 10, 20, 40 and 50
// minutes whatever the precise setting; any other duration is hours x 60
// truncated (150 is 90, 17 is 10, 83 is 49, 117 is 70).
std::int64_t MinutesFromDuration(std::uint32_t duration);

// The end picker when the dialog opens: `start` moved on by
// MinutesFromDuration(duration) when that is at least 1, else `start`
// itself. `start` itself also when the move leaves the calendar.
SystemTime EndPickerTime(const SystemTime& start, std::uint32_t duration);

// Whole minutes from the start picker to the end picker, by their times of
// day: the end lies on the following day when its hour is less than the
// start's hour (10:40 to 10:15 stays on the same day and is negative); the
// difference is taken in whole seconds and divided by 60, truncated.
std::int64_t MinutesBetweenPickers(const SystemTime& start, const SystemTime& end);

// The duration when the dialog closes with OK: MinutesBetweenPickers x 1/60
// hours through SetDurationFromHours (granularity applies).
std::uint32_t SetDurationFromStartEnd(TimeEntry* entry, const SystemTime& start,
                                      const SystemTime& end, const Settings& settings);

// Display texts, printf-style with the C library's rounding.
// "%.2f" of duration x 0.01: the editor's and the copy dialog's duration field.
std::u16string FormatDurationField(std::uint32_t duration);
// "%.02f" of value x 0.01: durations and rates in lists, the rate field, exports.
std::u16string FormatHundredths(std::uint32_t value);
// "%.02f" of any value.
std::u16string FormatTwoDecimals(double value);
// "%d".
std::u16string FormatInteger(int value);
// "%s%.02f": the currency text immediately followed by the amount, no blank
// (the Billing page's "Calculate").
std::u16string FormatAmountWithCurrency(std::u16string_view currency, double amount);

}  // namespace quillora

#endif  // QUILLORA_TIMEKEEPING_DURATION_H_
