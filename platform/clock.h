// Calendar and tick times as the record databases and the views use them.
//
// A FileTime is a count of 100 ns ticks since 1601-01-01 00:00 holding *local*
// time: the stores keep the wall-clock time the user entered and nothing is
// ever converted to or from UTC. A SystemTime is the same instant broken into
// its eight 16-bit calendar fields.
#ifndef QUILLORA_PLATFORM_CLOCK_H_
#define QUILLORA_PLATFORM_CLOCK_H_

#include <cstdint>
#include <optional>
#include <string>

namespace quillora {

using FileTime = std::uint64_t;

struct SystemTime {
  std::uint16_t year = 0;
  std::uint16_t month = 0;        // 1..12
  std::uint16_t day_of_week = 0;  // 0 = Sunday .. 6 = Saturday
  std::uint16_t day = 0;          // 1..31
  std::uint16_t hour = 0;
  std::uint16_t minute = 0;
  std::uint16_t second = 0;
  std::uint16_t milliseconds = 0;

  friend bool operator==(const SystemTime&, const SystemTime&) = default;
};

inline constexpr FileTime kTicksPerMillisecond = 10'000;
inline constexpr FileTime kTicksPerSecond = 10'000'000;
inline constexpr FileTime kTicksPerMinute = 60 * kTicksPerSecond;
inline constexpr FileTime kTicksPerHour = 60 * kTicksPerMinute;
inline constexpr FileTime kTicksPerDay = 24 * kTicksPerHour;

// Converts calendar fields to ticks. The day of week is ignored. Fails (and
// leaves `out` untouched) for a field out of range: year 1601..30827, month
// 1..12, a day that the month does not have, hour > 23, minute or second > 59,
// milliseconds > 999.
bool SystemTimeToFileTime(const SystemTime& st, FileTime* out);

// Converts ticks to calendar fields, the day of week computed. Fails for a
// value beyond 30827-12-31.
bool FileTimeToSystemTime(FileTime ft, SystemTime* out);

// -1, 0 or 1 as a is earlier, equal or later than b.
int CompareFileTime(FileTime a, FileTime b);

// Days in a month of a year of the Gregorian calendar (0 for a bad month).
int DaysInMonth(int year, int month);

// Day of week (0 = Sunday) of a calendar date.
int DayOfWeek(int year, int month, int day);

// Builds a SystemTime (day of week computed) from its fields, unchecked.
SystemTime MakeSystemTime(int year, int month, int day, int hour = 0, int minute = 0,
                          int second = 0, int milliseconds = 0);

// Parses "YYYY-MM-DD", "YYYY-MM-DDTHH:MM" or "YYYY-MM-DDTHH:MM:SS"; nothing for
// anything else or an impossible date.
std::optional<SystemTime> ParseIsoDateTime(const std::string& text);

// "YYYY-MM-DDTHH:MM:SS", with ".mmm" appended when the milliseconds are not 0.
std::string FormatIsoDateTime(const SystemTime& st);

// The local time of a moment given in UTC, by the system's time zone rules
// (TZ, else the machine's zone). Nothing for a date the calendar or the C
// library cannot hold.
std::optional<SystemTime> LocalTimeFromUtc(const SystemTime& utc);

// The source of the current local time. Passed to whatever needs "now" so that
// tests can fix it.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual SystemTime LocalNow() const = 0;
};

// The machine's local time, or the time in QUILLORA_NOW
// ("YYYY-MM-DDTHH:MM:SS") when that variable is set and valid.
class SystemClock : public Clock {
 public:
  SystemTime LocalNow() const override;
};

// A clock that always answers the time it was given.
class FixedClock : public Clock {
 public:
  explicit FixedClock(SystemTime now) : now_(now) {}
  SystemTime LocalNow() const override { return now_; }
  void Set(SystemTime now) { now_ = now; }

 private:
  SystemTime now_;
};

}  // namespace quillora

#endif  // QUILLORA_PLATFORM_CLOCK_H_
