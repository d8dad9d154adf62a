#include "platform/clock.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace quillora {
namespace {

bool IsLeap(int y) { return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0; }

// Days from 1601-01-01 to the given date of the proleptic Gregorian calendar.
std::int64_t DaysFrom1601(int y, int m, int d) {
  // Shift the year to start in March so that the leap day comes last.
  y -= m <= 2;
  const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
  const std::int64_t yoe = y - era * 400;
  const std::int64_t doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
  const std::int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  const std::int64_t days_from_0000_03_01 = era * 146097 + doe;
  // 1601-01-01 is day 584694 counted from 0000-03-01.
  return days_from_0000_03_01 - 584694;
}

void DateFromDays(std::int64_t days_from_1601, int* y, int* m, int* d) {
  const std::int64_t z = days_from_1601 + 584694;
  const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
  const std::int64_t doe = z - era * 146097;
  const std::int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  const std::int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  const std::int64_t mp = (5 * doy + 2) / 153;
  *d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
  *m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
  *y = static_cast<int>(yoe + era * 400 + (*m <= 2));
}

}  // namespace

int DaysInMonth(int year, int month) {
  static constexpr int kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month < 1 || month > 12) return 0;
  return month == 2 && IsLeap(year) ? 29 : kDays[month - 1];
}

int DayOfWeek(int year, int month, int day) {
  // 1601-01-01 was a Monday.
  return static_cast<int>((DaysFrom1601(year, month, day) + 1) % 7);
}

bool SystemTimeToFileTime(const SystemTime& st, FileTime* out) {
  if (st.year < 1601 || st.year > 30827 || st.month < 1 || st.month > 12 || st.day < 1 ||
      st.day > DaysInMonth(st.year, st.month) || st.hour > 23 || st.minute > 59 ||
      st.second > 59 || st.milliseconds > 999) {
    return false;
  }
  const auto days = static_cast<FileTime>(DaysFrom1601(st.year, st.month, st.day));
  *out = days * kTicksPerDay + st.hour * kTicksPerHour + st.minute * kTicksPerMinute +
         st.second * kTicksPerSecond + st.milliseconds * kTicksPerMillisecond;
  return true;
}

bool FileTimeToSystemTime(FileTime ft, SystemTime* out) {
  static constexpr FileTime kLimit = 0x7FFFFFFFFFFFFFFFull;
  if (ft > kLimit) return false;
  const FileTime days = ft / kTicksPerDay;
  FileTime rest = ft % kTicksPerDay;
  int y, m, d;
  DateFromDays(static_cast<std::int64_t>(days), &y, &m, &d);
  if (y > 30827) return false;
  SystemTime st;
  st.year = static_cast<std::uint16_t>(y);
  st.month = static_cast<std::uint16_t>(m);
  st.day = static_cast<std::uint16_t>(d);
  st.day_of_week = static_cast<std::uint16_t>((days + 1) % 7);
  st.hour = static_cast<std::uint16_t>(rest / kTicksPerHour);
  rest %= kTicksPerHour;
  st.minute = static_cast<std::uint16_t>(rest / kTicksPerMinute);
  rest %= kTicksPerMinute;
  st.second = static_cast<std::uint16_t>(rest / kTicksPerSecond);
  rest %= kTicksPerSecond;
  st.milliseconds = static_cast<std::uint16_t>(rest / kTicksPerMillisecond);
  *out = st;
  return true;
}

int CompareFileTime(FileTime a, FileTime b) { return a < b ? -1 : (a > b ? 1 : 0); }

SystemTime MakeSystemTime(int year, int month, int day, int hour, int minute, int second,
                          int milliseconds) {
  SystemTime st;
  st.year = static_cast<std::uint16_t>(year);
  st.month = static_cast<std::uint16_t>(month);
  st.day = static_cast<std::uint16_t>(day);
  st.hour = static_cast<std::uint16_t>(hour);
  st.minute = static_cast<std::uint16_t>(minute);
  st.second = static_cast<std::uint16_t>(second);
  st.milliseconds = static_cast<std::uint16_t>(milliseconds);
  if (month >= 1 && month <= 12 && year >= 1601) {
    st.day_of_week = static_cast<std::uint16_t>(DayOfWeek(year, month, day));
  }
  return st;
}

std::optional<SystemTime> ParseIsoDateTime(const std::string& text) {
  // The field widths (at most four digits) keep every value far inside an
  // int, so sscanf cannot overflow here; the ranges are checked below.
  // NOLINTBEGIN(cert-err34-c)
  int y = 0, mo = 0, d = 0, h = 0, mi = 0, s = 0, used = 0;
  const char* p = text.c_str();
  if (text.size() == 10) {
    if (std::sscanf(p, "%4d-%2d-%2d%n", &y, &mo, &d, &used) != 3) return std::nullopt;
  } else if (text.size() == 16) {
    if (std::sscanf(p, "%4d-%2d-%2dT%2d:%2d%n", &y, &mo, &d, &h, &mi, &used) != 5)
      return std::nullopt;
  } else if (text.size() == 19) {
    if (std::sscanf(p, "%4d-%2d-%2dT%2d:%2d:%2d%n", &y, &mo, &d, &h, &mi, &s, &used) != 6)
      return std::nullopt;
  } else {
    return std::nullopt;
  }
  // NOLINTEND(cert-err34-c)
  if (used != static_cast<int>(text.size())) return std::nullopt;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const bool digit = c >= '0' && c <= '9';
    if (i == 4 || i == 7) {
      if (c != '-') return std::nullopt;
    } else if (i == 10) {
      if (c != 'T') return std::nullopt;
    } else if (i == 13 || i == 16) {
      if (c != ':') return std::nullopt;
    } else if (!digit) {
      return std::nullopt;
    }
  }
  SystemTime st = MakeSystemTime(y, mo, d, h, mi, s);
  FileTime check;
  if (!SystemTimeToFileTime(st, &check)) return std::nullopt;
  return st;
}

std::string FormatIsoDateTime(const SystemTime& st) {
  char buf[64];
  if (st.milliseconds != 0) {
    std::snprintf(buf, sizeof buf, "%04u-%02u-%02uT%02u:%02u:%02u.%03u", st.year,
                  st.month, st.day, st.hour, st.minute, st.second, st.milliseconds);
  } else {
    std::snprintf(buf, sizeof buf, "%04u-%02u-%02uT%02u:%02u:%02u", st.year, st.month,
                  st.day, st.hour, st.minute, st.second);
  }
  return buf;
}

std::optional<SystemTime> LocalTimeFromUtc(const SystemTime& utc) {
  FileTime ft = 0;
  if (!SystemTimeToFileTime(utc, &ft)) return std::nullopt;
  // Seconds from 1601-01-01 to the Unix epoch.
  constexpr std::int64_t kEpochSeconds = 11644473600;
  const std::int64_t seconds =
      static_cast<std::int64_t>(ft / kTicksPerSecond) - kEpochSeconds;
  const auto t = static_cast<time_t>(seconds);
  tm local{};
  if (localtime_r(&t, &local) == nullptr || local.tm_year + 1900 < 1601 ||
      local.tm_year + 1900 > 30827) {
    return std::nullopt;
  }
  return MakeSystemTime(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
                        local.tm_hour, local.tm_min, local.tm_sec, utc.milliseconds);
}

SystemTime SystemClock::LocalNow() const {
  if (const char* fixed = std::getenv("QUILLORA_NOW")) {
    if (auto st = ParseIsoDateTime(fixed)) return *st;
  }
  timespec ts{};
  clock_gettime(CLOCK_REALTIME, &ts);
  tm local{};
  localtime_r(&ts.tv_sec, &local);
  return MakeSystemTime(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
                        local.tm_hour, local.tm_min, local.tm_sec,
                        static_cast<int>(ts.tv_nsec / 1000000));
}

}  // namespace quillora
