// The locale services of the device: date and time pictures and the names they
// use, date and time formatting with those pictures, the locale string
// comparison and the ANSI code page.
//
// Pictures use the device's syntax (see docs/locale.md):
//   date: d dd ddd dddd, M MM MMM MMMM, y yy yyyy, g gg
//   time: h hh H HH, m mm, s ss, t tt
//   'text' is copied as it stands, '' gives one apostrophe, every other
//   character is copied.
// The default profile is US English with the device's own pictures; other
// profiles are built from ICU data converted to the same syntax.
#ifndef QUILLORA_PLATFORM_LOCALE_H_
#define QUILLORA_PLATFORM_LOCALE_H_

#include <array>
#include <memory>
#include <string>
#include <string_view>

#include "platform/clock.h"

namespace quillora {

// FormatTime flag: leave out the seconds and the separator in front of them
// ("h:mm:ss tt" gives "9:05 AM"). The device's TIME_NOSECONDS value.
inline constexpr unsigned kTimeNoSeconds = 0x2;

// Everything a locale answers apart from string comparison.
struct LocaleProfile {
  std::string tag;            // BCP 47, e.g. "en-US"
  std::u16string short_date;  // "M/d/yyyy"
  std::u16string long_date;   // "dddd, MMMM d, yyyy"
  std::u16string time;        // "h:mm:ss tt"
  std::u16string year_month;  // "MMMM yyyy"
  std::u16string am;          // "AM"
  std::u16string pm;          // "PM"
  std::u16string era;         // "A.D." (g, gg)
  // Month names, January first, as the month menu lists them.
  std::array<std::u16string, 12> month_names;
  std::array<std::u16string, 12> abbreviated_month_names;
  // The forms a picture uses when it also shows the day of the month (the
  // genitive of Slavic languages, for instance); the same as above in English.
  std::array<std::u16string, 12> genitive_month_names;
  std::array<std::u16string, 12> abbreviated_genitive_month_names;
  // Day names, Sunday first.
  std::array<std::u16string, 7> day_names;
  std::array<std::u16string, 7> abbreviated_day_names;
  int ansi_code_page = 1252;
};

// The fixed US English profile, built without any ICU data.
LocaleProfile UsEnglishProfile();

// The Windows ANSI code page that devices of this locale used (1250 Central
// European, 1251 Cyrillic, 932 Japanese, ...); 1252 for anything not in the
// table or a tag that does not parse.
int AnsiCodePageForTag(std::string_view bcp47_tag);

// Converts an ICU date/time pattern ("EEEE, d. MMMM y") into a device picture
// ("dddd, d. MMMM yyyy"). Fields without a device equivalent (time zones,
// quarters, week numbers, fractions of a second) are left out. With
// `four_digit_year` a two-digit year ("yy") becomes "yyyy" as well.
std::u16string PictureFromIcuPattern(std::u16string_view pattern,
                                     bool four_digit_year = false);

// The locale provider. Implementations answer the profile and the comparison;
// formatting is shared.
class Locale {
 public:
  virtual ~Locale() = default;

  // The fixed US English profile; comparison by ICU's root collation (plain
  // UTF-16 order if ICU cannot give a collator).
  static std::unique_ptr<Locale> UsEnglish();
  // The profile of a BCP 47 tag ("de-DE", "fr", "pl-PL") from ICU data. US
  // English for "en", "en-US", "C", "POSIX", an empty or malformed tag, or a
  // language ICU has no data for. Never null.
  static std::unique_ptr<Locale> ForTag(std::string_view bcp47_tag);
  // ForTag(TagFromEnvironment()).
  static std::unique_ptr<Locale> FromEnvironment();
  // A locale answering the given profile, compared by the collation of its
  // tag. For tests that need pictures no real locale has.
  static std::unique_ptr<Locale> FromProfile(LocaleProfile profile);

  // QUILLORA_LOCALE (a BCP 47 tag) when set and not empty, else the first
  // non-empty one of LC_ALL, LC_TIME and LANG turned from a POSIX name
  // ("de_DE.UTF-8@euro") into a tag ("de-DE"); "en-US" for none, "C" or
  // "POSIX".
  static std::string TagFromEnvironment();

  virtual const LocaleProfile& Profile() const = 0;

  // The locale comparison without flags: whole strings, case and accents
  // significant ("Acme" and "acme" differ). -1, 0 or 1.
  virtual int Compare(std::u16string_view a, std::u16string_view b) const = 0;
  // The same ordering with case ignored ("Design" and "design" are equal);
  // accents still count. -1, 0 or 1.
  virtual int CompareIgnoreCase(std::u16string_view a, std::u16string_view b) const = 0;

  bool Equal(std::u16string_view a, std::u16string_view b) const {
    return Compare(a, b) == 0;
  }

  const std::string& Tag() const { return Profile().tag; }
  const std::u16string& ShortDatePicture() const { return Profile().short_date; }
  const std::u16string& LongDatePicture() const { return Profile().long_date; }
  const std::u16string& TimePicture() const { return Profile().time; }
  const std::u16string& YearMonthPicture() const { return Profile().year_month; }
  const std::u16string& AmMarker() const { return Profile().am; }
  const std::u16string& PmMarker() const { return Profile().pm; }
  int AnsiCodePage() const { return Profile().ansi_code_page; }

  // Month 1..12, day of week 0 (Sunday)..6; empty text out of range.
  std::u16string MonthName(int month) const;
  std::u16string AbbreviatedMonthName(int month) const;
  std::u16string DayName(int day_of_week) const;
  std::u16string AbbreviatedDayName(int day_of_week) const;

  // Formats the date part of `date` with a picture. The day of week is
  // computed from the date, whatever the field holds. Empty text when the
  // year, month or day is impossible.
  std::u16string FormatDate(const SystemTime& date, std::u16string_view picture) const;
  std::u16string FormatShortDate(const SystemTime& date) const;
  std::u16string FormatLongDate(const SystemTime& date) const;
  std::u16string FormatYearMonth(const SystemTime& date) const;

  // Formats the time part of `time` with a picture (the profile's time
  // picture when none is given); `flags` may hold kTimeNoSeconds. Empty text
  // when the hour, minute, second or milliseconds are out of range.
  std::u16string FormatTime(const SystemTime& time, std::u16string_view picture,
                            unsigned flags = 0) const;
  std::u16string FormatTime(const SystemTime& time, unsigned flags = 0) const;
};

}  // namespace quillora

#endif  // QUILLORA_PLATFORM_LOCALE_H_
