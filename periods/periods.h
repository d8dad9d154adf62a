// The periods whose entries the main window shows: a day, a week, a month or a
// custom period. A period holds one anchor date and answers with an inclusive
// start and end; its period bar moves it backwards, forwards and to today.
//
// Dates are local calendar times; all arithmetic goes through FileTime ticks.
// Anchors always have their time of day zeroed and their day of week
// recomputed from the date.
#ifndef QUILLORA_PERIODS_PERIODS_H_
#define QUILLORA_PERIODS_PERIODS_H_

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/clock.h"
#include "platform/locale.h"
#include "store/settings.h"

namespace quillora {

// The kinds in the order of the View menu; the values are those of the "View"
// setting.
enum class PeriodKind : std::uint32_t { kDay = 1, kWeek = 2, kMonth = 3, kCustom = 4 };

// "Day", "Week", "Month", "Custom Period".
std::u16string_view PeriodKindName(PeriodKind kind);
// The kind of a "View" setting; a value outside 1..4 gives the default, Week.
PeriodKind PeriodKindFromView(std::uint32_t view);

// The period bar's buttons, drawn right to left: "Next Period", "Previous
// Period", "Goto Today".
inline constexpr int kCommandGotoToday = 110;
inline constexpr int kCommandPreviousPeriod = 111;
inline constexpr int kCommandNextPeriod = 112;
inline constexpr char16_t kGotoTodayText[] = u"Goto Today";
inline constexpr char16_t kPreviousPeriodText[] = u"Previous Period";
inline constexpr char16_t kNextPeriodText[] = u"Next Period";

// Both ends included. An end before the start is an empty range.
struct PeriodRange {
  SystemTime start;
  SystemTime end;

  friend bool operator==(const PeriodRange&, const PeriodRange&) = default;
};

// The range as ticks for the entry range walk. False (nothing written) when
// an end is not a calendar time.
bool RangeToFileTimes(const PeriodRange& range, FileTime* start, FileTime* end);

// The date of `time` with the time of day zeroed and the day of week
// recomputed.
SystemTime DateOnly(const SystemTime& time);

// The ISO 8601 week number (1..53) of a date, through its Julian day number.
int IsoWeekNumber(const SystemTime& date);

// The picture of the week and custom captions: the long date picture
// shortened ("MMMM" becomes "MMM"; "dddd" is removed with the commas and
// blanks that then lead), or the short date picture when the long one holds a
// quoted literal. US English: "MMM d, yyyy".
std::u16string CaptionDatePicture(const Locale& locale);

// One period kind. The views ask for the range; the period bar calls the
// navigation operations and shows the caption.
class Period {
 public:
  virtual ~Period() = default;

  virtual PeriodKind Kind() const = 0;

  // The inclusive range of the period: what the export and archive dialogs
  // are prefilled with.
  virtual PeriodRange GetRange() const = 0;
  // The range the entry view of this kind lists, and so the entries that the
  // quick summary totals; the same as GetRange except for the month, whose
  // view runs 59 seconds further (to 23:59:59).
  virtual PeriodRange GetViewRange() const { return GetRange(); }

  // "Previous Period" (also the Left and Up keys), "Next Period" (Right and
  // Down) and "Goto Today". Nothing moves past the calendar's ends.
  virtual void Previous() = 0;
  virtual void Next() = 0;
  virtual void Today(const Clock& clock) = 0;
  // A date picked in the caption's calendar. False (nothing changed) for an
  // impossible date.
  virtual bool SelectDate(const SystemTime& date) = 0;
  // The text of the period bar.
  virtual std::u16string GetCaption(const Locale& locale) const = 0;
  // The anchor date: the day, the week's first day, the month's 1st, the
  // custom period's start.
  virtual SystemTime GetAnchor() const = 0;
};

class DayPeriod final : public Period {
 public:
  explicit DayPeriod(const SystemTime& date);

  // Anchors the day of `date`. False (nothing changed) for an impossible date.
  bool SetDate(const SystemTime& date);

  PeriodKind Kind() const override { return PeriodKind::kDay; }
  // 00:00:00 to 23:59:59 of the day.
  PeriodRange GetRange() const override;
  void Previous() override;
  void Next() override;
  void Today(const Clock& clock) override;
  bool SelectDate(const SystemTime& date) override { return SetDate(date); }
  // The long date: "Sunday, March 10, 2024".
  std::u16string GetCaption(const Locale& locale) const override;
  SystemTime GetAnchor() const override { return anchor_; }

 private:
  SystemTime anchor_;
};

class WeekPeriod final : public Period {
 public:
  // The week start (bit 0x0008) and the week number display (bit 0x8000) are
  // taken from the settings now.
  WeekPeriod(const SystemTime& date, const Settings& settings);

  // Anchors the first day of the week of `date`: the Sunday before, or the
  // Monday before when weeks start on Monday (a Sunday belongs to the week
  // that began six days earlier). False for an impossible date.
  bool SetDate(const SystemTime& date);

  PeriodKind Kind() const override { return PeriodKind::kWeek; }
  // The first day 00:00:00 to the seventh day 23:59:59.
  PeriodRange GetRange() const override;
  void Previous() override;
  void Next() override;
  void Today(const Clock& clock) override;
  bool SelectDate(const SystemTime& date) override { return SetDate(date); }
  // "Week Of " and the first day: "Week Of Mar 10, 2024".
  std::u16string GetCaption(const Locale& locale) const override;
  SystemTime GetAnchor() const override { return anchor_; }

  // The ISO week number of the week's Monday (the day after the anchor when
  // weeks start on Sunday).
  int WeekNumber() const;
  // "%d" of WeekNumber when the settings show week numbers, else empty.
  std::u16string WeekNumberText() const;

 private:
  bool monday_first_;
  bool show_week_number_;
  SystemTime anchor_;
};

class MonthPeriod final : public Period {
 public:
  explicit MonthPeriod(const SystemTime& date);

  // Anchors the 1st of the month of `date`. False for an impossible date.
  bool SetDate(const SystemTime& date);
  // The month menu: a month (1..12) of the shown year, or a year keeping the
  // shown month. False (nothing changed) out of range.
  bool SelectMonth(int month);
  bool SelectYear(int year);

  PeriodKind Kind() const override { return PeriodKind::kMonth; }
  // The 1st 00:00:00 to 23:59:00 of the last day: one minute before the next
  // month.
  PeriodRange GetRange() const override;
  // The month view's own end: one second before the next month.
  PeriodRange GetViewRange() const override;
  void Previous() override;
  void Next() override;
  void Today(const Clock& clock) override;
  bool SelectDate(const SystemTime& date) override { return SetDate(date); }
  // The year-month picture: "March 2024".
  std::u16string GetCaption(const Locale& locale) const override;
  SystemTime GetAnchor() const override { return anchor_; }

 private:
  SystemTime anchor_;
};

class CustomPeriod final : public Period {
 public:
  // The one day of `date`.
  explicit CustomPeriod(const SystemTime& date);
  CustomPeriod(const SystemTime& start, const SystemTime& end);

  // From the start date 00:00:00 to the end date 23:59:59. No check that the
  // start lies before the end: such a range is empty. False (nothing
  // changed) when either date is impossible.
  bool SetDate(const SystemTime& start, const SystemTime& end);

  PeriodKind Kind() const override { return PeriodKind::kCustom; }
  PeriodRange GetRange() const override { return {start_, end_}; }
  // Previous and Next move the whole range by its own number of days; Today
  // moves it by whole lengths until it holds today. An empty range stays.
  void Previous() override;
  void Next() override;
  void Today(const Clock& clock) override;
  // Moves the range to start on `date`, keeping its number of days (one day
  // for an empty range).
  bool SelectDate(const SystemTime& date) override;
  // "May 1, 2024 - May 31, 2024".
  std::u16string GetCaption(const Locale& locale) const override;
  SystemTime GetAnchor() const override { return start_; }

  // Whole days from the start day to the end day, both included; 0 or less
  // for an empty range.
  std::int64_t LengthInDays() const;

 private:
  bool MoveByDays(std::int64_t days);

  SystemTime start_;
  SystemTime end_;
};

// The period of a kind at `date`, with the week start from the settings. A
// custom period comes from the settings' PeriodStart and PeriodEnd (the
// `date` is not used); when none was ever stored (month 0) or the stored
// dates are impossible, it is the one day of `date`. An impossible `date`
// gives 1601-01-01.
std::unique_ptr<Period> MakePeriod(PeriodKind kind, const SystemTime& date,
                                   const Settings& settings);

// The dates that the "Custom Period" dialog opens with: the stored PeriodStart
// and PeriodEnd when one was stored (month not 0), otherwise the range of the
// period shown now.
PeriodRange CustomDialogDates(const Period& shown, const Settings& settings);

// Writes a custom period's start and end dates (time zeroed) to PeriodStart
// and PeriodEnd, as the dialog does when it closes and after the custom
// period has been moved.
void StoreCustomPeriod(const CustomPeriod& period, Settings* settings);

// The period shown after the user switches to another kind: at today when
// today lies in the period shown now, otherwise at the selected entry's day
// when one is given, otherwise at that period's anchor. A custom period
// starts from the dialog's dates (CustomDialogDates).
std::unique_ptr<Period> SwitchPeriodKind(
    const Period& shown, PeriodKind kind, const Settings& settings, const Clock& clock,
    const std::optional<SystemTime>& selected_day = {});

// The pop-up menu of the month caption: the locale's twelve month names with
// the shown month checked; in a new column the years from three before to
// four after the shown year ("%d"), the shown year checked; a separator and
// "Goto Today".
struct MonthMenu {
  std::array<std::u16string, 12> month_names;
  int checked_month = 0;  // 1..12
  std::array<int, 8> years{};
  std::array<std::u16string, 8> year_texts;
  int checked_year = 0;
  std::u16string goto_today = kGotoTodayText;
};
MonthMenu BuildMonthMenu(const MonthPeriod& period, const Locale& locale);

}  // namespace quillora

#endif  // QUILLORA_PERIODS_PERIODS_H_
