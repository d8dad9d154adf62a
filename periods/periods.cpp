#include "periods/periods.h"

#include <cstdio>

#include "platform/text.h"

namespace quillora {
namespace {

constexpr std::int64_t kDayTicks = static_cast<std::int64_t>(kTicksPerDay);
constexpr std::int64_t kSecondTicks = static_cast<std::int64_t>(kTicksPerSecond);
constexpr std::int64_t kMinuteTicks = static_cast<std::int64_t>(kTicksPerMinute);
constexpr int kFirstYear = 1601;
constexpr int kLastYear = 30827;

// The last tick the calendar holds: 30827-12-31 23:59:59.999.
FileTime LastTick() {
  static const FileTime last = [] {
    FileTime ticks = 0;
    SystemTimeToFileTime(MakeSystemTime(kLastYear, 12, 31, 23, 59, 59, 999), &ticks);
    return ticks + kTicksPerMillisecond - 1;
  }();
  return last;
}

bool ToTicks(const SystemTime& time, FileTime* ticks) {
  return SystemTimeToFileTime(time, ticks);
}

SystemTime FromTicks(FileTime ticks) {
  SystemTime time;
  FileTimeToSystemTime(ticks, &time);
  return time;
}

// `time` moved by a signed number of ticks, held to the calendar's ends.
// `time` must be a calendar time.
SystemTime Offset(const SystemTime& time, std::int64_t ticks) {
  FileTime base = 0;
  if (!ToTicks(time, &base)) return time;
  FileTime moved;
  if (ticks < 0) {
    const auto back = static_cast<FileTime>(-(ticks + 1)) + 1;
    moved = back > base ? 0 : base - back;
  } else {
    const auto on = static_cast<FileTime>(ticks);
    moved = on > LastTick() - base ? LastTick() : base + on;
  }
  return FromTicks(moved);
}

// The date of `time` when it is a calendar date.
bool ValidDate(const SystemTime& time, SystemTime* date) {
  const SystemTime d = DateOnly(time);
  FileTime ticks;
  if (!ToTicks(d, &ticks)) return false;
  *date = d;
  return true;
}

// Whole days from date a to date b (both with the time zeroed).
std::int64_t DaysBetween(const SystemTime& a, const SystemTime& b) {
  FileTime ta = 0, tb = 0;
  ToTicks(a, &ta);
  ToTicks(b, &tb);
  return (static_cast<std::int64_t>(tb) - static_cast<std::int64_t>(ta)) / kDayTicks;
}

// The 1st of the month after the anchor's month, as ticks; LastTick() + 1
// after December of the last year.
FileTime NextMonthTicks(const SystemTime& anchor) {
  int year = anchor.year;
  int month = anchor.month + 1;
  if (month > 12) {
    month = 1;
    ++year;
  }
  FileTime ticks = 0;
  if (!ToTicks(MakeSystemTime(year, month, 1), &ticks)) return LastTick() + 1;
  return ticks;
}

SystemTime FirstTickOrAnchor(const SystemTime& date) {
  SystemTime d;
  return ValidDate(date, &d) ? d : MakeSystemTime(kFirstYear, 1, 1);
}

std::u16string FormatInt(int value) {
  char buf[16];
  std::snprintf(buf, sizeof buf, "%d", value);
  return WidenAscii(buf);
}

bool Contains(const PeriodRange& range, const SystemTime& time) {
  FileTime start = 0, end = 0, t = 0;
  if (!RangeToFileTimes(range, &start, &end) || !ToTicks(time, &t)) return false;
  return start <= t && t <= end;
}

}  // namespace

std::u16string_view PeriodKindName(PeriodKind kind) {
  switch (kind) {
    case PeriodKind::kDay:
      return u"Day";
    case PeriodKind::kWeek:
      return u"Week";
    case PeriodKind::kMonth:
      return u"Month";
    case PeriodKind::kCustom:
      return u"Custom Period";
  }
  return u"";
}

PeriodKind PeriodKindFromView(std::uint32_t view) {
  if (view >= 1 && view <= 4) return static_cast<PeriodKind>(view);
  return PeriodKind::kWeek;
}

bool RangeToFileTimes(const PeriodRange& range, FileTime* start, FileTime* end) {
  FileTime s = 0, e = 0;
  if (!ToTicks(range.start, &s) || !ToTicks(range.end, &e)) return false;
  *start = s;
  *end = e;
  return true;
}

SystemTime DateOnly(const SystemTime& time) {
  return MakeSystemTime(time.year, time.month, time.day);
}

int IsoWeekNumber(const SystemTime& date) {
  // Julian day number of the Gregorian date.
  const long a = (14 - date.month) / 12;
  const long y = date.year + 4800 - a;
  const long m = date.month + 12 * a - 3;
  const long j =
      date.day + (153 * m + 2) / 5 + 365 * y + y / 4 - y / 100 + y / 400 - 32045;
  const long d4 = (((j + 31741 - (j % 7)) % 146097) % 36524) % 1461;
  const long l = d4 / 1460;
  const long d1 = ((d4 - l) % 365) + l;
  return static_cast<int>(d1 / 7 + 1);
}

std::u16string CaptionDatePicture(const Locale& locale) {
  std::u16string picture = locale.LongDatePicture();
  if (picture.find(u'\'') != std::u16string::npos) return locale.ShortDatePicture();
  if (const auto at = picture.find(u"MMMM"); at != std::u16string::npos) {
    picture.erase(at, 1);
  }
  if (const auto at = picture.find(u"dddd"); at != std::u16string::npos) {
    picture.erase(at, 4);
    const auto first = picture.find_first_not_of(u", ");
    picture.erase(0, first == std::u16string::npos ? picture.size() : first);
  }
  return picture;
}

// Day.

DayPeriod::DayPeriod(const SystemTime& date) : anchor_(FirstTickOrAnchor(date)) {}

bool DayPeriod::SetDate(const SystemTime& date) { return ValidDate(date, &anchor_); }

PeriodRange DayPeriod::GetRange() const {
  return {anchor_, Offset(anchor_, kDayTicks - kSecondTicks)};
}

void DayPeriod::Previous() { anchor_ = DateOnly(Offset(anchor_, -kDayTicks)); }
void DayPeriod::Next() { anchor_ = DateOnly(Offset(anchor_, kDayTicks)); }
void DayPeriod::Today(const Clock& clock) { SetDate(clock.LocalNow()); }

std::u16string DayPeriod::GetCaption(const Locale& locale) const {
  return locale.FormatLongDate(anchor_);
}

// Week.

WeekPeriod::WeekPeriod(const SystemTime& date, const Settings& settings)
    : monday_first_((settings.option_bits & kOptionWeekStartsMonday) != 0),
      show_week_number_((settings.option_bits & kOptionWeekNumber) != 0),
      anchor_(MakeSystemTime(kFirstYear, 1, 1)) {
  SetDate(date);
}

bool WeekPeriod::SetDate(const SystemTime& date) {
  SystemTime day;
  if (!ValidDate(date, &day)) return false;
  const int d = day.day_of_week;
  int offset = -d;
  if (monday_first_) offset = d == 0 ? -6 : 1 - d;
  anchor_ = DateOnly(Offset(day, offset * kDayTicks));
  return true;
}

PeriodRange WeekPeriod::GetRange() const {
  return {anchor_, Offset(anchor_, 7 * kDayTicks - kSecondTicks)};
}

void WeekPeriod::Previous() { anchor_ = DateOnly(Offset(anchor_, -7 * kDayTicks)); }
void WeekPeriod::Next() { anchor_ = DateOnly(Offset(anchor_, 7 * kDayTicks)); }
void WeekPeriod::Today(const Clock& clock) { SetDate(clock.LocalNow()); }

std::u16string WeekPeriod::GetCaption(const Locale& locale) const {
  return u"Week Of " + locale.FormatDate(anchor_, CaptionDatePicture(locale));
}

int WeekPeriod::WeekNumber() const {
  // ISO weeks start on Monday: a week that starts on Sunday is numbered by
  // its Monday.
  const SystemTime monday =
      monday_first_ ? anchor_ : DateOnly(Offset(anchor_, kDayTicks));
  return IsoWeekNumber(monday);
}

std::u16string WeekPeriod::WeekNumberText() const {
  return show_week_number_ ? FormatInt(WeekNumber()) : std::u16string();
}

// Month.

MonthPeriod::MonthPeriod(const SystemTime& date)
    : anchor_(MakeSystemTime(kFirstYear, 1, 1)) {
  SetDate(date);
}

bool MonthPeriod::SetDate(const SystemTime& date) {
  SystemTime day;
  if (!ValidDate(date, &day)) return false;
  anchor_ = MakeSystemTime(day.year, day.month, 1);
  return true;
}

bool MonthPeriod::SelectMonth(int month) {
  if (month < 1 || month > 12) return false;
  anchor_ = MakeSystemTime(anchor_.year, month, 1);
  return true;
}

bool MonthPeriod::SelectYear(int year) {
  if (year < kFirstYear || year > kLastYear) return false;
  anchor_ = MakeSystemTime(year, anchor_.month, 1);
  return true;
}

PeriodRange MonthPeriod::GetRange() const {
  // One minute before the next month: 23:59:00 of the last day. The month
  // view lists up to 23:59:59 (GetViewRange); both ends are kept as they are.
  return {anchor_, FromTicks(NextMonthTicks(anchor_) - kTicksPerMinute)};
}

PeriodRange MonthPeriod::GetViewRange() const {
  return {anchor_, FromTicks(NextMonthTicks(anchor_) - kTicksPerSecond)};
}

void MonthPeriod::Previous() {
  if (anchor_.month == 1) {
    if (anchor_.year > kFirstYear) anchor_ = MakeSystemTime(anchor_.year - 1, 12, 1);
  } else {
    anchor_ = MakeSystemTime(anchor_.year, anchor_.month - 1, 1);
  }
}

void MonthPeriod::Next() {
  if (anchor_.month == 12) {
    if (anchor_.year < kLastYear) anchor_ = MakeSystemTime(anchor_.year + 1, 1, 1);
  } else {
    anchor_ = MakeSystemTime(anchor_.year, anchor_.month + 1, 1);
  }
}

void MonthPeriod::Today(const Clock& clock) { SetDate(clock.LocalNow()); }

std::u16string MonthPeriod::GetCaption(const Locale& locale) const {
  return locale.FormatYearMonth(anchor_);
}

// Custom.

CustomPeriod::CustomPeriod(const SystemTime& date) : CustomPeriod(date, date) {}

CustomPeriod::CustomPeriod(const SystemTime& start, const SystemTime& end) {
  const SystemTime first = MakeSystemTime(kFirstYear, 1, 1);
  start_ = first;
  end_ = Offset(first, kDayTicks - kSecondTicks);
  SetDate(start, end);
}

bool CustomPeriod::SetDate(const SystemTime& start, const SystemTime& end) {
  SystemTime s, e;
  if (!ValidDate(start, &s) || !ValidDate(end, &e)) return false;
  start_ = s;
  end_ = Offset(e, kDayTicks - kSecondTicks);
  return true;
}

std::int64_t CustomPeriod::LengthInDays() const {
  return DaysBetween(start_, DateOnly(end_)) + 1;
}

bool CustomPeriod::MoveByDays(std::int64_t days) {
  const SystemTime start = DateOnly(Offset(start_, days * kDayTicks));
  const SystemTime end = DateOnly(Offset(end_, days * kDayTicks));
  // At the calendar's ends the range would shrink; it stays where it is.
  if (DaysBetween(start_, start) != days || DaysBetween(DateOnly(end_), end) != days) {
    return false;
  }
  return SetDate(start, end);
}

void CustomPeriod::Previous() {
  const std::int64_t length = LengthInDays();
  if (length > 0) MoveByDays(-length);
}

void CustomPeriod::Next() {
  const std::int64_t length = LengthInDays();
  if (length > 0) MoveByDays(length);
}

void CustomPeriod::Today(const Clock& clock) {
  const std::int64_t length = LengthInDays();
  SystemTime today;
  if (length <= 0 || !ValidDate(clock.LocalNow(), &today)) return;
  const std::int64_t days = DaysBetween(start_, today);
  // Whole lengths, rounded toward the past, so that today falls inside.
  std::int64_t steps = days / length;
  if (days % length < 0) --steps;
  if (steps != 0) MoveByDays(steps * length);
}

bool CustomPeriod::SelectDate(const SystemTime& date) {
  SystemTime start;
  if (!ValidDate(date, &start)) return false;
  const std::int64_t length = LengthInDays() > 0 ? LengthInDays() : 1;
  const SystemTime end = DateOnly(Offset(start, (length - 1) * kDayTicks));
  return SetDate(start, end);
}

std::u16string CustomPeriod::GetCaption(const Locale& locale) const {
  const std::u16string picture = CaptionDatePicture(locale);
  return locale.FormatDate(start_, picture) + u" - " + locale.FormatDate(end_, picture);
}

// Making and switching periods.

std::unique_ptr<Period> MakePeriod(PeriodKind kind, const SystemTime& date,
                                   const Settings& settings) {
  switch (kind) {
    case PeriodKind::kDay:
      return std::make_unique<DayPeriod>(date);
    case PeriodKind::kWeek:
      return std::make_unique<WeekPeriod>(date, settings);
    case PeriodKind::kMonth:
      return std::make_unique<MonthPeriod>(date);
    case PeriodKind::kCustom:
      break;
  }
  auto custom = std::make_unique<CustomPeriod>(date);
  if (settings.period_start.month != 0)
    custom->SetDate(settings.period_start, settings.period_end);
  return custom;
}

PeriodRange CustomDialogDates(const Period& shown, const Settings& settings) {
  if (settings.period_start.month != 0) {
    return {DateOnly(settings.period_start), DateOnly(settings.period_end)};
  }
  const PeriodRange range = shown.GetRange();
  return {DateOnly(range.start), DateOnly(range.end)};
}

void StoreCustomPeriod(const CustomPeriod& period, Settings* settings) {
  const PeriodRange range = period.GetRange();
  settings->period_start = DateOnly(range.start);
  settings->period_end = DateOnly(range.end);
}

std::unique_ptr<Period> SwitchPeriodKind(const Period& shown, PeriodKind kind,
                                         const Settings& settings, const Clock& clock,
                                         const std::optional<SystemTime>& selected_day) {
  if (kind == PeriodKind::kCustom) {
    const PeriodRange dates = CustomDialogDates(shown, settings);
    return std::make_unique<CustomPeriod>(dates.start, dates.end);
  }
  const SystemTime now = clock.LocalNow();
  const SystemTime date = Contains(shown.GetViewRange(), now) ? now
                          : selected_day                      ? *selected_day
                                                              : shown.GetAnchor();
  return MakePeriod(kind, date, settings);
}

MonthMenu BuildMonthMenu(const MonthPeriod& period, const Locale& locale) {
  MonthMenu menu;
  const SystemTime anchor = period.GetAnchor();
  for (int m = 1; m <= 12; ++m) menu.month_names[m - 1] = locale.MonthName(m);
  menu.checked_month = anchor.month;
  for (int i = 0; i < 8; ++i) {
    menu.years[i] = anchor.year - 3 + i;
    menu.year_texts[i] = FormatInt(menu.years[i]);
  }
  menu.checked_year = anchor.year;
  return menu;
}

}  // namespace quillora
