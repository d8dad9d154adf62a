#include "platform/locale.h"

#include <unicode/coll.h>
#include <unicode/datefmt.h>
#include <unicode/dtfmtsym.h>
#include <unicode/dtptngen.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/ures.h>
#include <unicode/ustring.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <unordered_map>
#include <vector>

#include "platform/text.h"

namespace quillora {
namespace {

// One piece of a picture: a run of one field letter, or literal text.
struct Token {
  char16_t letter = 0;  // 0 for literal text
  std::size_t count = 0;
  std::u16string text;
};

// Splits a picture into field runs (letters listed in `fields`) and literal
// text. A quoted run is literal without its quotes; '' is one apostrophe,
// inside or outside quotes; a quote left open runs to the end.
std::vector<Token> Tokenize(std::u16string_view picture, std::u16string_view fields) {
  std::vector<Token> tokens;
  auto literal = [&tokens]() -> std::u16string& {
    if (tokens.empty() || tokens.back().letter != 0) tokens.emplace_back();
    return tokens.back().text;
  };
  std::size_t i = 0;
  while (i < picture.size()) {
    char16_t c = picture[i];
    if (c == u'\'') {
      if (i + 1 < picture.size() && picture[i + 1] == u'\'') {
        literal() += u'\'';
        i += 2;
        continue;
      }
      std::u16string& text = literal();
      for (++i; i < picture.size(); ++i) {
        if (picture[i] != u'\'') {
          text += picture[i];
        } else if (i + 1 < picture.size() && picture[i + 1] == u'\'') {
          text += u'\'';
          ++i;
        } else {
          ++i;
          break;
        }
      }
    } else if (fields.find(c) != std::u16string_view::npos) {
      std::size_t n = 1;
      while (i + n < picture.size() && picture[i + n] == c) ++n;
      tokens.push_back({c, n, {}});
      i += n;
    } else {
      literal() += c;
      ++i;
    }
  }
  return tokens;
}

// Tokenize with the pictures already seen kept: exports format every entry
// with the same few pictures.
const std::vector<Token>& CachedTokens(std::u16string_view picture,
                                       std::u16string_view fields) {
  thread_local std::unordered_map<std::u16string, std::vector<Token>> cache;
  std::u16string key(fields);
  key += u'\0';
  key += picture;
  auto found = cache.find(key);
  if (found != cache.end()) return found->second;
  if (cache.size() > 64) cache.clear();
  return cache.emplace(std::move(key), Tokenize(picture, fields)).first->second;
}

// "%0*d": the digits of `value`, zero-padded to `min_digits`. Date and time
// parts are never negative; a negative value keeps printf's own layout.
void AppendNumber(std::u16string& out, int value, int min_digits) {
  if (value < 0) {
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%0*d", min_digits, value);
    out += WidenAscii(buffer);
    return;
  }
  char16_t digits[12];
  int count = 0;
  auto rest = static_cast<unsigned>(value);
  do {
    digits[count++] = static_cast<char16_t>(u'0' + rest % 10);
    rest /= 10;
  } while (rest != 0);
  for (int pad = count; pad < min_digits; ++pad) out += u'0';
  while (count > 0) out += digits[--count];
}

template <std::size_t N>
std::array<std::u16string, N> WidenAll(const std::array<const char*, N>& texts) {
  std::array<std::u16string, N> out;
  for (std::size_t i = 0; i < N; ++i) out[i] = WidenAscii(texts[i]);
  return out;
}

// ---- ICU profiles --------------------------------------------------------

std::u16string FromIcu(const icu::UnicodeString& text) {
  return std::u16string(text.getBuffer(), static_cast<std::size_t>(text.length()));
}

// Fills `out` from ICU's symbols; index_base is 1 for weekdays (ICU keeps
// Sunday at 1), 0 for months.
template <std::size_t N>
bool CopyNames(const icu::UnicodeString* names, int32_t count, int32_t index_base,
               std::array<std::u16string, N>* out) {
  if (names == nullptr || count < static_cast<int32_t>(N) + index_base) return false;
  for (std::size_t i = 0; i < N; ++i) (*out)[i] = FromIcu(names[i + index_base]);
  return true;
}

std::u16string PatternOf(icu::DateFormat* format) {
  std::unique_ptr<icu::DateFormat> owned(format);
  auto* simple = dynamic_cast<icu::SimpleDateFormat*>(owned.get());
  if (simple == nullptr) return {};
  icu::UnicodeString pattern;
  simple->toPattern(pattern);
  return FromIcu(pattern);
}

bool ProfileFromIcu(const icu::Locale& locale, LocaleProfile* profile) {
  profile->tag.clear();
  UErrorCode status = U_ZERO_ERROR;
  std::string tag = locale.toLanguageTag<std::string>(status);
  if (U_FAILURE(status)) return false;
  profile->tag = tag;
  profile->ansi_code_page = AnsiCodePageForTag(tag);

  std::u16string short_date =
      PatternOf(icu::DateFormat::createDateInstance(icu::DateFormat::kShort, locale));
  std::u16string long_date =
      PatternOf(icu::DateFormat::createDateInstance(icu::DateFormat::kFull, locale));
  std::u16string time =
      PatternOf(icu::DateFormat::createTimeInstance(icu::DateFormat::kMedium, locale));
  std::unique_ptr<icu::DateTimePatternGenerator> generator(
      icu::DateTimePatternGenerator::createInstance(locale, status));
  if (U_FAILURE(status) || short_date.empty() || long_date.empty() || time.empty()) {
    return false;
  }
  icu::UnicodeString year_month = generator->getBestPattern(u"yMMMM", status);
  if (U_FAILURE(status)) return false;
  // The device's short dates carry the whole year; ICU's often only two digits.
  profile->short_date = PictureFromIcuPattern(short_date, true);
  profile->long_date = PictureFromIcuPattern(long_date);
  profile->time = PictureFromIcuPattern(time);
  profile->year_month = PictureFromIcuPattern(FromIcu(year_month));

  icu::DateFormatSymbols symbols(locale, status);
  if (U_FAILURE(status)) return false;
  using Symbols = icu::DateFormatSymbols;
  int32_t count = 0;
  const icu::UnicodeString* markers = symbols.getAmPmStrings(count);
  if (count < 2) return false;
  profile->am = FromIcu(markers[0]);
  profile->pm = FromIcu(markers[1]);
  const icu::UnicodeString* eras = symbols.getEras(count);
  if (count < 2) return false;
  profile->era = FromIcu(eras[1]);

  const icu::UnicodeString* names;
  names = symbols.getMonths(count, Symbols::STANDALONE, Symbols::WIDE);
  bool ok = CopyNames(names, count, 0, &profile->month_names);
  names = symbols.getMonths(count, Symbols::STANDALONE, Symbols::ABBREVIATED);
  ok = ok && CopyNames(names, count, 0, &profile->abbreviated_month_names);
  names = symbols.getMonths(count, Symbols::FORMAT, Symbols::WIDE);
  ok = ok && CopyNames(names, count, 0, &profile->genitive_month_names);
  names = symbols.getMonths(count, Symbols::FORMAT, Symbols::ABBREVIATED);
  ok = ok && CopyNames(names, count, 0, &profile->abbreviated_genitive_month_names);
  names = symbols.getWeekdays(count, Symbols::FORMAT, Symbols::WIDE);
  ok = ok && CopyNames(names, count, 1, &profile->day_names);
  names = symbols.getWeekdays(count, Symbols::FORMAT, Symbols::ABBREVIATED);
  ok = ok && CopyNames(names, count, 1, &profile->abbreviated_day_names);
  return ok;
}

// The locale named by a tag, or nothing when the tag does not parse or ICU
// holds no data for its language (ICU would quietly answer root's patterns).
std::optional<icu::Locale> IcuLocaleForTag(std::string_view tag) {
  if (tag.empty()) return std::nullopt;
  UErrorCode status = U_ZERO_ERROR;
  icu::Locale locale = icu::Locale::forLanguageTag(
      icu::StringPiece(tag.data(), static_cast<int32_t>(tag.size())), status);
  if (U_FAILURE(status) || locale.isBogus() || *locale.getLanguage() == '\0') {
    return std::nullopt;
  }
  UResourceBundle* bundle = ures_open(nullptr, locale.getName(), &status);
  ures_close(bundle);
  if (U_FAILURE(status) || status == U_USING_DEFAULT_WARNING) return std::nullopt;
  return locale;
}

// ---- comparison ----------------------------------------------------------

int Sign(int value) { return (value > 0) - (value < 0); }

// A profile with its collators. Tertiary strength gives the device's
// comparison without flags (case and accents count, canonically equivalent
// spellings are equal); secondary strength drops case only.
class ProfileLocale : public Locale {
 public:
  explicit ProfileLocale(LocaleProfile profile) : profile_(std::move(profile)) {
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale locale = icu::Locale::forLanguageTag(profile_.tag, status);
    if (U_FAILURE(status)) locale = icu::Locale::getRoot();
    exact_ = MakeCollator(locale, icu::Collator::TERTIARY);
    ignore_case_ = MakeCollator(locale, icu::Collator::SECONDARY);
  }

  const LocaleProfile& Profile() const override { return profile_; }

  int Compare(std::u16string_view a, std::u16string_view b) const override {
    if (exact_ == nullptr) return Sign(a.compare(b));
    return CollatorCompare(*exact_, a, b);
  }

  int CompareIgnoreCase(std::u16string_view a, std::u16string_view b) const override {
    if (ignore_case_ == nullptr) {
      UErrorCode status = U_ZERO_ERROR;
      return Sign(u_strCaseCompare(a.data(), static_cast<int32_t>(a.size()), b.data(),
                                   static_cast<int32_t>(b.size()), U_FOLD_CASE_DEFAULT,
                                   &status));
    }
    return CollatorCompare(*ignore_case_, a, b);
  }

 private:
  static std::unique_ptr<icu::Collator> MakeCollator(
      const icu::Locale& locale, icu::Collator::ECollationStrength strength) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(
        icu::Collator::createInstance(locale, status));
    if (U_FAILURE(status)) return nullptr;
    collator->setStrength(strength);
    return collator;
  }

  static int CollatorCompare(const icu::Collator& collator, std::u16string_view a,
                             std::u16string_view b) {
    UErrorCode status = U_ZERO_ERROR;
    UCollationResult result =
        collator.compare(a.data(), static_cast<int32_t>(a.size()), b.data(),
                         static_cast<int32_t>(b.size()), status);
    if (U_FAILURE(status)) return Sign(a.compare(b));
    return result == UCOL_LESS ? -1 : result == UCOL_GREATER ? 1 : 0;
  }

  LocaleProfile profile_;
  std::unique_ptr<icu::Collator> exact_;
  std::unique_ptr<icu::Collator> ignore_case_;
};

// "de_DE.UTF-8@euro" -> "de-DE"; "" for C and POSIX.
std::string TagFromPosixName(std::string_view name) {
  name = name.substr(0, name.find_first_of(".@"));
  if (name == "C" || name == "POSIX") return {};
  std::string tag(name);
  for (char& c : tag) {
    if (c == '_') c = '-';
  }
  return tag;
}

}  // namespace

LocaleProfile UsEnglishProfile() {
  LocaleProfile p;
  p.tag = "en-US";
  p.short_date = u"M/d/yyyy";
  p.long_date = u"dddd, MMMM d, yyyy";
  p.time = u"h:mm:ss tt";
  p.year_month = u"MMMM yyyy";
  p.am = u"AM";
  p.pm = u"PM";
  p.era = u"A.D.";
  p.month_names =
      WidenAll<12>({"January", "February", "March", "April", "May", "June", "July",
                    "August", "September", "October", "November", "December"});
  p.abbreviated_month_names = WidenAll<12>({"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                            "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"});
  p.genitive_month_names = p.month_names;
  p.abbreviated_genitive_month_names = p.abbreviated_month_names;
  p.day_names = WidenAll<7>(
      {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"});
  p.abbreviated_day_names =
      WidenAll<7>({"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"});
  p.ansi_code_page = 1252;
  return p;
}

int AnsiCodePageForTag(std::string_view tag) {
  UErrorCode status = U_ZERO_ERROR;
  icu::Locale locale = icu::Locale::forLanguageTag(
      icu::StringPiece(tag.data(), static_cast<int32_t>(tag.size())), status);
  if (U_FAILURE(status) || locale.isBogus()) return 1252;
  locale.addLikelySubtags(status);  // fills in the script: zh -> Hans, sr -> Cyrl
  if (U_FAILURE(status)) return 1252;
  std::string_view language = locale.getLanguage();
  std::string_view script = locale.getScript();
  struct Entry {
    const char* languages;  // space-separated
    int code_page;
  };
  static constexpr Entry kTable[] = {
      {"cs hr hu pl ro sk sl sq bs", 1250},
      {"ru uk be bg mk kk ky mn tt", 1251},
      {"el", 1253},
      {"tr", 1254},
      {"he iw yi", 1255},
      {"ar fa ur", 1256},
      {"et lt lv", 1257},
      {"vi", 1258},
      {"th", 874},
      {"ja", 932},
      {"ko", 949},
  };
  if (language == "zh") return script == "Hant" ? 950 : 936;
  if (language == "sr" || language == "az" || language == "uz") {
    if (script == "Cyrl") return 1251;
    return language == "sr" ? 1250 : 1254;
  }
  for (const Entry& entry : kTable) {
    std::string_view list = entry.languages;
    for (std::size_t start = 0; start < list.size();) {
      std::size_t end = list.find(' ', start);
      if (end == std::string_view::npos) end = list.size();
      if (list.substr(start, end - start) == language) return entry.code_page;
      start = end + 1;
    }
  }
  return 1252;
}

std::u16string PictureFromIcuPattern(std::u16string_view pattern, bool four_digit_year) {
  std::u16string out;
  std::size_t i = 0;
  while (i < pattern.size()) {
    char16_t c = pattern[i];
    if (c == u'\'') {
      // Quoting is the same in both syntaxes: copy the quoted run as it is.
      std::size_t end = i + 1;
      if (end < pattern.size() && pattern[end] == u'\'') {
        end += 1;
      } else {
        while (end < pattern.size()) {
          if (pattern[end] == u'\'') {
            if (end + 1 < pattern.size() && pattern[end + 1] == u'\'') {
              end += 2;
              continue;
            }
            ++end;
            break;
          }
          ++end;
        }
      }
      out.append(pattern.substr(i, end - i));
      i = end;
      continue;
    }
    bool letter = (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
    if (!letter) {
      // CLDR puts a narrow no-break space before AM/PM; the device used a blank,
      // and the ANSI code pages have no narrow one.
      out += c == u'\u202F' ? u' ' : c;
      ++i;
      continue;
    }
    std::size_t n = 1;
    while (i + n < pattern.size() && pattern[i + n] == c) ++n;
    i += n;
    auto field = [&out](char16_t f, std::size_t count) { out.append(count, f); };
    switch (c) {
      case u'G':
        field(u'g', 2);
        break;
      case u'y':
      case u'u':
        field(u'y', n == 2 && !four_digit_year ? 2 : 4);
        break;
      case u'M':
      case u'L':
        field(u'M', n <= 2 ? n : n == 4 ? 4 : 3);
        break;
      case u'd':
        field(u'd', n == 1 ? 1 : 2);
        break;
      case u'E':
      case u'c':
      case u'e':
        field(u'd', n == 4 ? 4 : 3);
        break;
      case u'h':
      case u'K':
        field(u'h', n == 1 ? 1 : 2);
        break;
      case u'H':
      case u'k':
        field(u'H', n == 1 ? 1 : 2);
        break;
      case u'm':
      case u's':
        field(c, n == 1 ? 1 : 2);
        break;
      case u'a':
      case u'b':
      case u'B':
        field(u't', 2);
        break;
      default:
        break;  // no device equivalent
    }
  }
  return out;
}

std::unique_ptr<Locale> Locale::UsEnglish() {
  return std::make_unique<ProfileLocale>(UsEnglishProfile());
}

std::unique_ptr<Locale> Locale::ForTag(std::string_view bcp47_tag) {
  std::optional<icu::Locale> locale = IcuLocaleForTag(bcp47_tag);
  if (!locale) return UsEnglish();
  std::string_view country = locale->getCountry();
  if (std::strcmp(locale->getLanguage(), "en") == 0 &&
      (country.empty() || country == "US")) {
    return UsEnglish();
  }
  LocaleProfile profile;
  if (!ProfileFromIcu(*locale, &profile)) return UsEnglish();
  return std::make_unique<ProfileLocale>(std::move(profile));
}

std::unique_ptr<Locale> Locale::FromEnvironment() { return ForTag(TagFromEnvironment()); }

std::unique_ptr<Locale> Locale::FromProfile(LocaleProfile profile) {
  return std::make_unique<ProfileLocale>(std::move(profile));
}

std::string Locale::TagFromEnvironment() {
  const char* chosen = std::getenv("QUILLORA_LOCALE");
  if (chosen == nullptr || *chosen == '\0') {
    for (const char* name : {"LC_ALL", "LC_TIME", "LANG"}) {
      chosen = std::getenv(name);
      if (chosen != nullptr && *chosen != '\0') break;
    }
  }
  std::string tag = chosen == nullptr ? std::string() : TagFromPosixName(chosen);
  return tag.empty() ? "en-US" : tag;
}

std::u16string Locale::MonthName(int month) const {
  return month >= 1 && month <= 12 ? Profile().month_names[month - 1] : std::u16string();
}

std::u16string Locale::AbbreviatedMonthName(int month) const {
  return month >= 1 && month <= 12 ? Profile().abbreviated_month_names[month - 1]
                                   : std::u16string();
}

std::u16string Locale::DayName(int day_of_week) const {
  return day_of_week >= 0 && day_of_week <= 6 ? Profile().day_names[day_of_week]
                                              : std::u16string();
}

std::u16string Locale::AbbreviatedDayName(int day_of_week) const {
  return day_of_week >= 0 && day_of_week <= 6
             ? Profile().abbreviated_day_names[day_of_week]
             : std::u16string();
}

std::u16string Locale::FormatDate(const SystemTime& date,
                                  std::u16string_view picture) const {
  const int year = date.year, month = date.month, day = date.day;
  if (month < 1 || month > 12 || day < 1 || day > DaysInMonth(year, month)) return {};
  const LocaleProfile& p = Profile();
  const std::vector<Token>& tokens = CachedTokens(picture, u"dMyg");
  // Month names take their genitive form when the day of the month is shown.
  bool with_day = false;
  for (const Token& t : tokens) with_day = with_day || (t.letter == u'd' && t.count <= 2);
  const auto& full_months = with_day ? p.genitive_month_names : p.month_names;
  const auto& short_months =
      with_day ? p.abbreviated_genitive_month_names : p.abbreviated_month_names;
  const int weekday = DayOfWeek(year, month, day);

  std::u16string out;
  for (const Token& t : tokens) {
    switch (t.letter) {
      case 0:
        out += t.text;
        break;
      case u'd':
        if (t.count <= 2) {
          AppendNumber(out, day, static_cast<int>(t.count));
        } else {
          out += t.count == 3 ? p.abbreviated_day_names[weekday] : p.day_names[weekday];
        }
        break;
      case u'M':
        if (t.count <= 2) {
          AppendNumber(out, month, static_cast<int>(t.count));
        } else {
          out += t.count == 3 ? short_months[month - 1] : full_months[month - 1];
        }
        break;
      case u'y':
        if (t.count == 1) {
          AppendNumber(out, year % 10, 1);  // the device's "y" is the last digit only
        } else if (t.count == 2) {
          AppendNumber(out, year % 100, 2);
        } else {
          AppendNumber(out, year, 4);
        }
        break;
      case u'g':
        out += p.era;
        break;
    }
  }
  return out;
}

std::u16string Locale::FormatShortDate(const SystemTime& date) const {
  return FormatDate(date, Profile().short_date);
}

std::u16string Locale::FormatLongDate(const SystemTime& date) const {
  return FormatDate(date, Profile().long_date);
}

std::u16string Locale::FormatYearMonth(const SystemTime& date) const {
  return FormatDate(date, Profile().year_month);
}

std::u16string Locale::FormatTime(const SystemTime& time, std::u16string_view picture,
                                  unsigned flags) const {
  if (time.hour > 23 || time.minute > 59 || time.second > 59 || time.milliseconds > 999) {
    return {};
  }
  const LocaleProfile& p = Profile();
  std::u16string out;
  // End of the text of the last field written: dropped seconds take the
  // separator written since then with them.
  std::size_t field_end = 0;
  for (const Token& t : CachedTokens(picture, u"hHmst")) {
    const int digits = t.count == 1 ? 1 : 2;
    switch (t.letter) {
      case 0:
        out += t.text;
        continue;
      case u'h':
        AppendNumber(out, time.hour % 12 == 0 ? 12 : time.hour % 12, digits);
        break;
      case u'H':
        AppendNumber(out, time.hour, digits);
        break;
      case u'm':
        AppendNumber(out, time.minute, digits);
        break;
      case u's':
        if (flags & kTimeNoSeconds) {
          out.resize(field_end);
          continue;
        }
        AppendNumber(out, time.second, digits);
        break;
      case u't': {
        const std::u16string& marker = time.hour < 12 ? p.am : p.pm;
        out += t.count == 1 ? marker.substr(0, 1) : marker;
        break;
      }
    }
    field_end = out.size();
  }
  return out;
}

std::u16string Locale::FormatTime(const SystemTime& time, unsigned flags) const {
  return FormatTime(time, Profile().time, flags);
}

}  // namespace quillora
