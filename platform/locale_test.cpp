#include "platform/locale.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <vector>

#include "platform/text.h"

namespace quillora {
namespace {

std::string U8(std::u16string_view text) { return ToUtf8(text); }

class UsEnglishTest : public ::testing::Test {
 protected:
  std::string Date(const SystemTime& st, std::u16string_view picture) const {
    return U8(locale_->FormatDate(st, picture));
  }
  std::string Time(const SystemTime& st, std::u16string_view picture,
                   unsigned flags = 0) const {
    return U8(locale_->FormatTime(st, picture, flags));
  }

  std::unique_ptr<Locale> locale_ = Locale::UsEnglish();
};

TEST_F(UsEnglishTest, AnswersTheDevicePicturesAndNames) {
  EXPECT_EQ(locale_->Tag(), "en-US");
  EXPECT_EQ(U8(locale_->ShortDatePicture()), "M/d/yyyy");
  EXPECT_EQ(U8(locale_->LongDatePicture()), "dddd, MMMM d, yyyy");
  EXPECT_EQ(U8(locale_->TimePicture()), "h:mm:ss tt");
  EXPECT_EQ(U8(locale_->YearMonthPicture()), "MMMM yyyy");
  EXPECT_EQ(U8(locale_->AmMarker()), "AM");
  EXPECT_EQ(U8(locale_->PmMarker()), "PM");
  EXPECT_EQ(locale_->AnsiCodePage(), 1252);
  EXPECT_EQ(U8(locale_->MonthName(1)), "January");
  EXPECT_EQ(U8(locale_->MonthName(12)), "December");
  EXPECT_EQ(U8(locale_->AbbreviatedMonthName(9)), "Sep");
  EXPECT_EQ(U8(locale_->DayName(0)), "Sunday");
  EXPECT_EQ(U8(locale_->AbbreviatedDayName(6)), "Sat");
  EXPECT_EQ(locale_->MonthName(0), u"");
  EXPECT_EQ(locale_->MonthName(13), u"");
  EXPECT_EQ(locale_->DayName(7), u"");
}

TEST_F(UsEnglishTest, FormatsWithTheProfilePictures) {
  struct Case {
    SystemTime st;
    const char* short_date;
    const char* long_date;
    const char* year_month;
    const char* time;
    const char* time_no_seconds;
  } cases[] = {
      {MakeSystemTime(2005, 3, 1, 9, 5, 7), "3/1/2005", "Tuesday, March 1, 2005",
       "March 2005", "9:05:07 AM", "9:05 AM"},
      {MakeSystemTime(2024, 12, 31, 23, 59, 59), "12/31/2024",
       "Tuesday, December 31, 2024", "December 2024", "11:59:59 PM", "11:59 PM"},
      {MakeSystemTime(2024, 2, 29), "2/29/2024", "Thursday, February 29, 2024",
       "February 2024", "12:00:00 AM", "12:00 AM"},
      {MakeSystemTime(1999, 7, 4, 12, 30, 1), "7/4/1999", "Sunday, July 4, 1999",
       "July 1999", "12:30:01 PM", "12:30 PM"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(FormatIsoDateTime(c.st));
    EXPECT_EQ(U8(locale_->FormatShortDate(c.st)), c.short_date);
    EXPECT_EQ(U8(locale_->FormatLongDate(c.st)), c.long_date);
    EXPECT_EQ(U8(locale_->FormatYearMonth(c.st)), c.year_month);
    EXPECT_EQ(U8(locale_->FormatTime(c.st)), c.time);
    EXPECT_EQ(U8(locale_->FormatTime(c.st, kTimeNoSeconds)), c.time_no_seconds);
  }
}

TEST_F(UsEnglishTest, FormatsExplicitPictures) {
  const SystemTime morning = MakeSystemTime(2005, 3, 1, 9, 5, 7);
  const SystemTime afternoon = MakeSystemTime(2010, 11, 21, 14, 5, 0);
  struct Case {
    const SystemTime& st;
    std::u16string_view picture;
    bool date;
    const char* expected;
  } cases[] = {
      {morning, u"yyyy-MM-dd", true, "2005-03-01"},
      {morning, u"dd MMM yy", true, "01 Mar 05"},
      {morning, u"ddd d/M/y", true, "Tue 1/3/5"},
      {afternoon, u"y yy yyyyy", true, "0 10 2010"},
      {morning, u"gg yyyy", true, "A.D. 2005"},
      {morning, u"hh:mm:ss", false, "09:05:07"},
      {afternoon, u"hh:mm:ss", false, "02:05:00"},
      {afternoon, u"HH:mm t", false, "14:05 P"},
      {morning, u"H.m.s", false, "9.5.7"},
      // Letters that are not fields of the picture's kind are copied.
      {morning, u"d hms", true, "1 hms"},
      {morning, u"h dMy", false, "9 dMy"},
      // Quoted text, '' for an apostrophe inside and outside quotes.
      {morning, u"'Week of' d", true, "Week of 1"},
      {morning, u"d 'o''clock' MMMM", true, "1 o'clock March"},
      {morning, u"''d''", true, "'1'"},
      {morning, u"d 'dddd", true, "1 dddd"},
      {morning, u"h 'h' mm 'tt'", false, "9 h 05 tt"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(U8(c.picture));
    EXPECT_EQ(c.date ? Date(c.st, c.picture) : Time(c.st, c.picture), c.expected);
  }
}

TEST_F(UsEnglishTest, NoSecondsDropsTheSecondsWithTheirSeparator) {
  const SystemTime st = MakeSystemTime(2005, 3, 1, 9, 5, 7);
  EXPECT_EQ(Time(st, u"HH:mm:ss", kTimeNoSeconds), "09:05");
  EXPECT_EQ(Time(st, u"tt h:mm:ss", kTimeNoSeconds), "AM 9:05");
  EXPECT_EQ(Time(st, u"h:mm:ss' Uhr'", kTimeNoSeconds), "9:05 Uhr");
  EXPECT_EQ(Time(st, u"h:mm", kTimeNoSeconds), "9:05");
}

TEST_F(UsEnglishTest, ComputesTheDayOfWeekAndRefusesImpossibleValues) {
  SystemTime st = MakeSystemTime(2005, 3, 1);
  st.day_of_week = 5;  // wrong on purpose
  EXPECT_EQ(Date(st, u"dddd"), "Tuesday");
  EXPECT_EQ(Date(MakeSystemTime(2001, 2, 29), u"d"), "");
  EXPECT_EQ(Date(MakeSystemTime(2001, 13, 1), u"d"), "");
  EXPECT_EQ(Date(MakeSystemTime(2001, 1, 0), u"d"), "");
  EXPECT_EQ(Time(MakeSystemTime(2001, 1, 1, 24), u"H"), "");
  EXPECT_EQ(Time(MakeSystemTime(2001, 1, 1, 0, 60), u"H"), "");
}

TEST_F(UsEnglishTest, ComparesWithCaseAndOrdersWithoutCaseButWithAccents) {
  EXPECT_TRUE(locale_->Equal(u"Acme", u"Acme"));
  EXPECT_FALSE(locale_->Equal(u"Acme", u"acme"));
  EXPECT_FALSE(locale_->Equal(u"Acme", u"Acme "));
  EXPECT_FALSE(locale_->Equal(u"Acme", u"Acm"));
  EXPECT_FALSE(locale_->Equal(u"r\u00e9sum\u00e9", u"resume"));
  // The same text precomposed and decomposed is one text.
  EXPECT_TRUE(locale_->Equal(u"caf\u00e9", u"cafe\u0301"));
  // Linguistic, not code unit, order.
  EXPECT_LT(locale_->Compare(u"apple", u"Banana"), 0);
  EXPECT_GT(locale_->Compare(u"Banana", u"apple"), 0);
  EXPECT_NE(locale_->Compare(u"a", u"A"), 0);
  EXPECT_EQ(locale_->Compare(u"", u""), 0);
  // Ordering without case still tells accents apart.
  EXPECT_EQ(locale_->CompareIgnoreCase(u"Design", u"design"), 0);
  EXPECT_EQ(locale_->CompareIgnoreCase(u"Alpha", u"ALPHA"), 0);
  EXPECT_NE(locale_->CompareIgnoreCase(u"r\u00e9sum\u00e9", u"RESUME"), 0);
  EXPECT_LT(locale_->CompareIgnoreCase(u"alpha", u"Beta"), 0);
  EXPECT_GT(locale_->CompareIgnoreCase(u"Zeta", u"alpha"), 0);
}

TEST(LocaleIcuTest, BuildsAGermanProfile) {
  auto de = Locale::ForTag("de-DE");
  EXPECT_EQ(de->Tag(), "de-DE");
  EXPECT_EQ(U8(de->ShortDatePicture()), "dd.MM.yyyy");
  EXPECT_EQ(U8(de->LongDatePicture()), "dddd, d. MMMM yyyy");
  EXPECT_EQ(U8(de->TimePicture()), "HH:mm:ss");
  EXPECT_EQ(de->AnsiCodePage(), 1252);
  const SystemTime st = MakeSystemTime(2005, 3, 1, 14, 5, 7);
  EXPECT_EQ(U8(de->FormatShortDate(st)), "01.03.2005");
  EXPECT_EQ(U8(de->FormatLongDate(st)), "Dienstag, 1. M\u00e4rz 2005");
  EXPECT_EQ(U8(de->FormatYearMonth(st)), "M\u00e4rz 2005");
  EXPECT_EQ(U8(de->FormatTime(st)), "14:05:07");
  EXPECT_EQ(U8(de->FormatTime(st, kTimeNoSeconds)), "14:05");
  EXPECT_EQ(U8(de->DayName(0)), "Sonntag");
  // German collation puts A-umlaut with A, not after Z as its code does.
  EXPECT_LT(de->Compare(u"\u00c4pfel", u"Zebra"), 0);
}

TEST(LocaleIcuTest, KeepsQuotedLiteralsAndGenitiveMonths) {
  auto es = Locale::ForTag("es-ES");
  EXPECT_EQ(U8(es->LongDatePicture()), "dddd, d 'de' MMMM 'de' yyyy");
  EXPECT_EQ(U8(es->FormatLongDate(MakeSystemTime(2005, 3, 1))),
            "martes, 1 de marzo de 2005");

  auto ru = Locale::ForTag("ru-RU");
  EXPECT_EQ(ru->AnsiCodePage(), 1251);
  const SystemTime st = MakeSystemTime(2005, 3, 1);
  // With a day the month is in the genitive; alone (menu, year-month) it is not.
  EXPECT_EQ(U8(ru->FormatDate(st, u"d MMMM")), "1 \u043c\u0430\u0440\u0442\u0430");
  EXPECT_EQ(U8(ru->MonthName(3)), "\u043c\u0430\u0440\u0442");
  EXPECT_EQ(U8(ru->FormatDate(st, u"MMMM yyyy")), "\u043c\u0430\u0440\u0442 2005");
}

TEST(LocaleIcuTest, FallsBackToUsEnglish) {
  const LocaleProfile us = UsEnglishProfile();
  for (const char* tag : {"en-US", "en", "", "xx-YY", "not a tag!", "C"}) {
    auto locale = Locale::ForTag(tag);
    SCOPED_TRACE(tag);
    EXPECT_EQ(locale->Tag(), "en-US");
    EXPECT_EQ(locale->LongDatePicture(), us.long_date);
    EXPECT_EQ(locale->TimePicture(), us.time);
  }
  // Other English regions are ICU's.
  EXPECT_EQ(U8(Locale::ForTag("en-GB")->ShortDatePicture()), "dd/MM/yyyy");
}

TEST(LocaleIcuTest, FromProfileAnswersTheGivenPictures) {
  LocaleProfile profile = UsEnglishProfile();
  profile.long_date = u"d 'de' MMMM";
  profile.am = u"a.m.";
  auto locale = Locale::FromProfile(profile);
  const SystemTime st = MakeSystemTime(2005, 3, 1, 9, 5);
  EXPECT_EQ(U8(locale->FormatLongDate(st)), "1 de March");
  EXPECT_EQ(U8(locale->FormatTime(st, kTimeNoSeconds)), "9:05 a.m.");
  EXPECT_FALSE(locale->Equal(u"Acme", u"acme"));
}

TEST(LocaleIcuTest, ConvertsIcuPatterns) {
  struct Case {
    std::u16string_view pattern;
    bool four_digit_year;
    const char* picture;
  } cases[] = {
      {u"EEEE, MMMM d, y", false, "dddd, MMMM d, yyyy"},
      {u"EEEE, d 'de' MMMM 'de' y", false, "dddd, d 'de' MMMM 'de' yyyy"},
      {u"h:mm:ss\u202fa", false, "h:mm:ss tt"},
      {u"M/d/yy", false, "M/d/yy"},
      {u"M/d/yy", true, "M/d/yyyy"},
      {u"LLLL y", false, "MMMM yyyy"},
      {u"d MMM y G", false, "d MMM yyyy gg"},
      {u"EEE, d LLL", false, "ddd, d MMM"},
      {u"k:mm K", false, "H:mm h"},
      {u"HH:mm:ss zzzz", false, "HH:mm:ss "},
      {u"'o''clock' h ''", false, "'o''clock' h ''"},
      {u"y\u5e74M\u6708d\u65e5EEEE", false, "yyyy\u5e74M\u6708d\u65e5dddd"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(U8(PictureFromIcuPattern(c.pattern, c.four_digit_year)), c.picture)
        << U8(c.pattern);
  }
}

TEST(LocaleIcuTest, MapsLocalesToTheirAnsiCodePage) {
  struct Case {
    const char* tag;
    int code_page;
  } cases[] = {
      {"en-US", 1252}, {"de-DE", 1252},   {"fr", 1252},    {"pl-PL", 1250},
      {"cs", 1250},    {"sr-Latn", 1250}, {"ru-RU", 1251}, {"uk", 1251},
      {"sr", 1251},    {"el-GR", 1253},   {"tr-TR", 1254}, {"he", 1255},
      {"ar-EG", 1256}, {"lt", 1257},      {"vi", 1258},    {"th", 874},
      {"ja-JP", 932},  {"zh-CN", 936},    {"zh-TW", 950},  {"zh-HK", 950},
      {"ko-KR", 949},  {"", 1252},        {"@@", 1252},
  };
  for (const auto& c : cases) EXPECT_EQ(AnsiCodePageForTag(c.tag), c.code_page) << c.tag;
}

class LocaleEnvironmentTest : public ::testing::Test {
 protected:
  static constexpr const char* kNames[] = {"QUILLORA_LOCALE", "LC_ALL", "LC_TIME",
                                           "LANG"};

  LocaleEnvironmentTest() {
    for (const char* name : kNames) {
      const char* value = std::getenv(name);
      saved_.push_back(value ? std::optional<std::string>(value) : std::nullopt);
    }
  }
  ~LocaleEnvironmentTest() override {
    for (std::size_t i = 0; i < saved_.size(); ++i) Set(kNames[i], saved_[i]);
  }
  static void Set(const char* name, const std::optional<std::string>& value) {
    if (value) {
      setenv(name, value->c_str(), 1);
    } else {
      unsetenv(name);
    }
  }

  std::vector<std::optional<std::string>> saved_;
};

TEST_F(LocaleEnvironmentTest, ChoosesTheProfileFromTheEnvironment) {
  using V = std::optional<std::string>;
  struct Case {
    V quillora, lc_all, lc_time, lang;
    const char* tag;
  } cases[] = {
      {"de-DE", "fr_FR.UTF-8", "ja_JP", "pl_PL", "de-DE"},
      {std::nullopt, "fr_FR.UTF-8", "ja_JP", "pl_PL", "fr-FR"},
      {"", "", "de_DE@euro", "pl_PL", "de-DE"},
      {std::nullopt, std::nullopt, std::nullopt, "pl_PL.ISO-8859-2", "pl-PL"},
      {std::nullopt, "C", "de_DE", "pl_PL", "en-US"},
      {std::nullopt, std::nullopt, std::nullopt, "C.UTF-8", "en-US"},
      {std::nullopt, std::nullopt, std::nullopt, "POSIX", "en-US"},
      {std::nullopt, std::nullopt, std::nullopt, std::nullopt, "en-US"},
  };
  for (const auto& c : cases) {
    Set("QUILLORA_LOCALE", c.quillora);
    Set("LC_ALL", c.lc_all);
    Set("LC_TIME", c.lc_time);
    Set("LANG", c.lang);
    EXPECT_EQ(Locale::TagFromEnvironment(), c.tag)
        << c.quillora.value_or("-") << " " << c.lc_all.value_or("-");
  }
  Set("QUILLORA_LOCALE", V("pl-PL"));
  EXPECT_EQ(Locale::FromEnvironment()->AnsiCodePage(), 1250);
}

}  // namespace
}  // namespace quillora
