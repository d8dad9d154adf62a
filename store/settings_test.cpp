#include "store/settings.h"

#include <gtest/gtest.h>

#include <map>

#include "platform/text.h"
#include "store/settings_values.h"
#include "store/window_layout.h"

namespace quillora {
namespace {

class SettingsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    registry_ = OpenMemoryRegistry();
    ASSERT_TRUE(registry_);
    ASSERT_EQ(registry_->CreateKey(RegistryHive::kCurrentUser, kSettingsKeyPath, &key_),
              0);
  }
  // Raw bytes of a value under the program's key, "" when missing.
  std::string Raw(const char16_t* name) {
    std::string bytes(256, '\0');
    std::uint32_t size = 256;
    if (registry_->QueryValue(key_, name, nullptr, bytes.data(), &size) != 0) return "";
    bytes.resize(size);
    return bytes;
  }
  std::map<std::string, std::string> Shown() {
    std::map<std::string, std::string> out;
    for (const auto& line : ShowSettings(*registry_)) {
      auto eq = line.find('=');
      out[line.substr(0, eq)] = line.substr(eq + 1);
    }
    return out;
  }
  std::unique_ptr<Registry> registry_;
  RegistryKey key_;
};

TEST_F(SettingsTest, FreshDeviceGivesTheDefaults) {
  Settings s;
  s.view = 9;
  s.custom_labels[1] = u"changed";
  ASSERT_TRUE(LoadSettings(*registry_, &s));
  EXPECT_EQ(s.view, 2u);
  EXPECT_EQ(s.granularity, 15);
  EXPECT_EQ(s.option_bits, 16u);
  EXPECT_EQ(s.default_currency, u"USD");
  EXPECT_EQ(s.custom_labels[0], u"Custom 1");
  EXPECT_EQ(s.custom_labels[1], u"Custom 2");
  EXPECT_EQ(s.custom_labels[2], u"Custom 3");
  EXPECT_EQ(s.time_interval, 3);
  EXPECT_EQ(s.hour_symbol, 1);
  EXPECT_EQ(s.font_size, 1);
  EXPECT_EQ(s, Settings()) << "construction values are the defaults";
  EXPECT_EQ(ReadNextClientSeed(*registry_), 1u);
  EXPECT_FALSE(ReadClearType(*registry_));
}

TEST_F(SettingsTest, UnreadableValuesFallBackToTheirDefaults) {
  ASSERT_EQ(WriteString(*registry_, key_, u"DefCurr", u"ABCDEFGHIJKLMNOP"),
            0);  // 16 chars
  ASSERT_EQ(WriteString(*registry_, key_, u"Custom1", std::u16string(32, u'x')), 0);
  ASSERT_EQ(WriteString(*registry_, key_, u"Custom2", std::u16string(31, u'y')), 0);
  ASSERT_EQ(WriteString(*registry_, key_, u"DefReport", std::u16string(64, u'r')), 0);
  ASSERT_EQ(WriteString(*registry_, key_, u"View", u"3"), 0);  // a string, not a DWORD
  ASSERT_EQ(WriteBinary(*registry_, key_, u"MinTime", "\x1e\0\0\0", 4), 0);
  ASSERT_EQ(WriteDword(*registry_, key_, u"Custom3", 7), 0);
  ASSERT_EQ(WriteDword(*registry_, key_, u"Encoding", 0x10005), 0);  // 16-bit field

  Settings s;
  ASSERT_TRUE(LoadSettings(*registry_, &s));
  EXPECT_EQ(s.default_currency, u"USD");
  EXPECT_EQ(s.custom_labels[0], u"Custom 1");
  EXPECT_EQ(s.custom_labels[1], std::u16string(31, u'y'));
  EXPECT_EQ(s.custom_labels[2], u"Custom 3");
  EXPECT_EQ(s.default_report, u"");
  EXPECT_EQ(s.view, 2u);
  EXPECT_EQ(s.granularity, 15);
  EXPECT_EQ(s.encoding, 5);

  ASSERT_EQ(WriteString(*registry_, key_, u"DefCurr", u"ABCDEFGHIJKLMNO"),
            0);  // 15 chars
  ASSERT_TRUE(LoadSettings(*registry_, &s));
  EXPECT_EQ(s.default_currency, u"ABCDEFGHIJKLMNO");
}

TEST_F(SettingsTest, BlocksChangeOnlyWhenReadWhole) {
  Settings s;
  s.period_start = MakeSystemTime(2005, 3, 1, 9, 30);
  s.period_end = MakeSystemTime(2005, 3, 31);
  s.display = {1, 3, 5, 6, 7};
  ASSERT_TRUE(LoadSettings(*registry_, &s));  // none stored
  EXPECT_EQ(s.period_start, MakeSystemTime(2005, 3, 1, 9, 30));
  EXPECT_EQ(s.display, (DisplayBlock{1, 3, 5, 6, 7}));

  const auto bytes = SystemTimeToBytes(MakeSystemTime(2026, 11, 21));
  ASSERT_EQ(WriteBinary(*registry_, key_, u"PeriodStart", bytes.data(), 15), 0);
  ASSERT_EQ(WriteBinary(*registry_, key_, u"PeriodEnd", bytes.data(), 16), 0);
  ASSERT_EQ(WriteString(*registry_, key_, u"ViewCust", u"123456789"), 0);  // 20 bytes
  ASSERT_TRUE(LoadSettings(*registry_, &s));
  EXPECT_EQ(s.period_start, MakeSystemTime(2005, 3, 1, 9, 30))
      << "15 bytes are not a time";
  EXPECT_EQ(s.period_end, MakeSystemTime(2026, 11, 21));
  EXPECT_EQ(s.display, (DisplayBlock{1, 3, 5, 6, 7})) << "a string is not the block";
}

TEST_F(SettingsTest, SaveThenLoadKeepsEveryField) {
  Settings s;
  s.view = 4;
  s.option_bits = kOptionBillable | kOptionGranularity | kOptionWeekNumber | 0x100;
  s.font_size = 2;
  s.granularity = 45;
  s.list_style = 0x12345678;
  s.display = {2, kDisplayClientName | kDisplayStatusIcon, 0, 27, 13};
  s.custom_labels = {u"Matter", u"Ref", u"Rés \U0001F600"};
  s.default_currency = u"EUR";
  s.encoding = 5;
  s.break_sub = 3;
  s.time_interval = 4;
  s.sort = 7;
  s.default_report = u"Monthly";
  s.period_start = MakeSystemTime(2005, 3, 1, 0, 0, 0, 0);
  s.period_end = MakeSystemTime(2005, 3, 31, 23, 59, 59, 999);
  s.hour_symbol = 2;
  ASSERT_TRUE(SaveSettings(*registry_, s));
  Settings back;
  ASSERT_TRUE(LoadSettings(*registry_, &back));
  EXPECT_EQ(back, s);

  // The stored forms are the device's.
  EXPECT_EQ(Raw(u"PeriodEnd"),
            std::string(
                "\xd5\x07\x03\x00\x04\x00\x1f\x00\x17\x00\x3b\x00\x3b\x00\xe7\x03", 16));
  EXPECT_EQ(Raw(u"ViewCust"),
            std::string("\x02\0\0\0\x03\0\0\0\0\0\0\0\x1b\0\0\0\x0d\0\0\0", 20));
  EXPECT_EQ(Raw(u"DefCurr"), std::string("E\0U\0R\0\0\0", 8));
  EXPECT_EQ(Raw(u"NextClient"), "");

  // Over-long strings are cut to what their buffer reads back.
  s.custom_labels[0] = std::u16string(40, u'L');
  s.default_currency = u"0123456789ABCDEFGH";
  ASSERT_TRUE(SaveSettings(*registry_, s));
  ASSERT_TRUE(LoadSettings(*registry_, &back));
  EXPECT_EQ(back.custom_labels[0], std::u16string(31, u'L'));
  EXPECT_EQ(back.default_currency, u"0123456789ABCDE");
}

// A registry whose keys can never be opened.
class LockedRegistry : public Registry {
 public:
  long CreateKey(RegistryHive, std::u16string_view, RegistryKey*) override { return 5; }
  long OpenKey(RegistryHive, std::u16string_view, RegistryKey*) override { return 5; }
  long QueryValue(const RegistryKey&, std::u16string_view, std::uint32_t*, void*,
                  std::uint32_t*) override {
    return 6;
  }
  long SetValue(const RegistryKey&, std::u16string_view, std::uint32_t, const void*,
                std::uint32_t) override {
    return 6;
  }
  long DeleteValue(const RegistryKey&, std::u16string_view) override { return 6; }
};

TEST_F(SettingsTest, UnopenableKeyKeepsWhatTheObjectHeld) {
  LockedRegistry locked;
  Settings s;
  s.view = 3;
  s.default_currency = u"CHF";
  EXPECT_FALSE(LoadSettings(locked, &s));
  EXPECT_EQ(s.view, 3u);
  EXPECT_EQ(s.default_currency, u"CHF");
  EXPECT_FALSE(SaveSettings(locked, s));
  EXPECT_EQ(ReadNextClientSeed(locked), 1u);
  EXPECT_EQ(ShowSettings(locked).front(), "View=2");
}

TEST_F(SettingsTest, SeedAndClearTypeReadTheirOwnValues) {
  ASSERT_EQ(WriteDword(*registry_, key_, u"NextClient", 42), 0);
  EXPECT_EQ(ReadNextClientSeed(*registry_), 42u);
  ASSERT_EQ(WriteString(*registry_, key_, u"NextClient", u"42"), 0);
  EXPECT_EQ(ReadNextClientSeed(*registry_), 1u);

  RegistryKey shell;
  ASSERT_EQ(registry_->CreateKey(RegistryHive::kCurrentUser,
                                 u"Software\\Microsoft\\Shell", &shell),
            0);
  ASSERT_EQ(WriteDword(*registry_, shell, u"ClearType", 2), 0);
  EXPECT_FALSE(ReadClearType(*registry_));
  ASSERT_EQ(WriteDword(*registry_, shell, u"ClearType", 1), 0);
  EXPECT_TRUE(ReadClearType(*registry_));
}

TEST_F(SettingsTest, SetFromTextChecksNameTypeAndRange) {
  struct Case {
    const char* name;
    const char* text;
    const char* result;  // the "name=value" line, or the start of the refusal
  } cases[] = {
      {"View", "3", "View=3"},
      {"view", "0x4", "View=4"},
      {"View", "5", "\"View\" must be from 1 to 4."},
      {"View", "-1", "\"View\" takes a decimal or 0x-hex number, not \"-1\"."},
      {"View", "", "\"View\" takes a decimal"},
      {"View", "3x", "\"View\" takes a decimal"},
      {"MinTime", "45", "MinTime=45"},
      {"MinTime", "25", "\"MinTime\" must be one of 6, 10, 15, 20, 30, 40, 45, 50."},
      {"Encoding", "6", "\"Encoding\" must be from 0 to 5."},
      {"TimeInterval", "4", "TimeInterval=4"},
      {"HourSymbol", "3", "\"HourSymbol\" must be"},
      {"DefNewStyles", "0xFFFFFFFF", "DefNewStyles=4294967295"},
      {"DefNewStyles", "0x100000000", "\"DefNewStyles\" takes a decimal"},
      {"fRateType", "0xffffffff", "fRateType=-1"},
      {"fRateType", "5", "\"fRateType\" must be from -1 to 4."},
      {"fFlags", "0x15", "fFlags=21"},
      {"fFlags", "2", "\"fFlags\" must be a combination of the bits 0x15."},
      {"Column10", "-1", "Column10=-1"},
      {"Column11", "1", "Unknown setting \"Column11\"."},
      {"DefCurr", "ABCDEFGHIJKLMNOP", "\"DefCurr\" takes at most 15 characters."},
      {"DefCurr", "CHF", "DefCurr=CHF"},
      {"Custom2", "Matter № 1", "Custom2=Matter № 1"},
      {"ViewCust", "02000000 03000000 00000000 1b000000 0D000000",
       "ViewCust=0200000003000000000000001b0000000d000000"},
      {"ViewCust", "0200", "\"ViewCust\" takes 20 bytes written as 40 hex digits."},
      {"ViewCust", "0000000000000000000000001c00000000000000",
       "\"ViewCust\" is refused: a colour"},
      {"PeriodStart", "d5070300020001000000000000000000",
       "PeriodStart=d5070300020001000000000000000000"},
      {"PeriodStart", "d5070300030001000000000000000000", "\"PeriodStart\" is refused"},
      {"PeriodEnd", "00000000000000000000000000000000",
       "PeriodEnd=00000000000000000000000000000000"},
      {"ColOrder",
       "000000000100000002000000030000000400000005000000060000000700000008000000090000000"
       "a000000",
       "ColOrder="
       "000000000100000002000000030000000400000005000000060000000700000008000000090000000"
       "a000000"},
      {"ColOrder",
       "000000000000000002000000030000000400000005000000060000000700000008000000090000000"
       "a000000",
       "\"ColOrder\" is refused: it must hold each column number from 0 to 10 once."},
      {"NextClient", "5", "\"NextClient\" is never written"},
      {"fCustom1", "x", "\"fCustom1\" is not kept between runs."},
      {"Bogus", "1", "Unknown setting \"Bogus\"."},
  };
  for (const auto& c : cases) {
    std::string message;
    bool ok = SetSettingFromText(*registry_, c.name, c.text, &message);
    EXPECT_EQ(message.rfind(c.result, 0), 0u)
        << c.name << " " << c.text << ": " << message;
    const bool refusal =
        c.result[0] == '"' || std::string(c.result).rfind("Unknown", 0) == 0;
    EXPECT_EQ(ok, !refusal) << c.name << " " << c.text;
  }
  EXPECT_EQ(Raw(u"NextClient"), "");

  // What was set is what the program loads.
  Settings s;
  ASSERT_TRUE(LoadSettings(*registry_, &s));
  EXPECT_EQ(s.view, 4u);
  EXPECT_EQ(s.granularity, 45);
  EXPECT_EQ(s.default_currency, u"CHF");
  EXPECT_EQ(s.custom_labels[1], u"Matter № 1");
  EXPECT_EQ(s.display, (DisplayBlock{2, 3, 0, 27, 13}));
  EXPECT_EQ(s.period_start, MakeSystemTime(2005, 3, 1));
}

TEST_F(SettingsTest, ShowListsWhatTheProgramReads) {
  auto shown = Shown();
  EXPECT_EQ(shown["View"], "2");
  EXPECT_EQ(shown["DefNewStyles"], "16");
  EXPECT_EQ(shown["Custom3"], "Custom 3");
  EXPECT_EQ(shown["DefReport"], "");
  EXPECT_EQ(shown["ViewCust"], std::string(40, '0'));
  EXPECT_EQ(shown["NextClient"], "1");
  EXPECT_EQ(shown["Column0"], "-1");
  EXPECT_EQ(shown["fFlags"], "21");
  EXPECT_EQ(shown["fRateType"], "-1");
  EXPECT_EQ(shown.count("ColOrder"), 0u);
  EXPECT_EQ(shown.count("fCustom1"), 0u);
  EXPECT_EQ(ShowSettings(*registry_).front(), "View=2");

  std::string message;
  ASSERT_TRUE(SetSettingFromText(*registry_, "fClient", "Acme", &message)) << message;
  ASSERT_EQ(WriteString(*registry_, key_, u"DefCurr", u"ABCDEFGHIJKLMNOPQ"), 0);
  ASSERT_EQ(WriteDword(*registry_, key_, u"Column2", 0xFFFFFFFE), 0);
  shown = Shown();
  EXPECT_EQ(shown["fClient"], "Acme");
  EXPECT_EQ(shown["DefCurr"], "USD");
  EXPECT_EQ(shown["Column2"], "-2");

  // An empty criterion removes the value, as the filter page does.
  ASSERT_TRUE(SetSettingFromText(*registry_, "fClient", "", &message)) << message;
  EXPECT_EQ(Raw(u"fClient"), "");
}

}  // namespace
}  // namespace quillora

namespace quillora {
namespace {

// The window's layout comes back as saved; a "ColOrder" that is not an order
// of the eleven columns is ignored.
TEST(WindowLayoutTest, SavedLayoutLoadsBackAndABadOrderIsIgnored) {
  std::unique_ptr<Registry> registry = OpenMemoryRegistry();
  EXPECT_FALSE(LoadWindowLayout(*registry).placed);
  WindowLayout layout;
  layout.placed = true;
  layout.rect = {-10, 20, 1200, 800};
  layout.maximised = true;
  layout.totals_height = 140;
  layout.widths[kColumnNote] = 0;
  layout.widths[kColumnClient] = 180;
  layout.order = {10, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
  ASSERT_TRUE(SaveWindowLayout(*registry, layout));
  const WindowLayout loaded = LoadWindowLayout(*registry);
  EXPECT_TRUE(loaded.placed && loaded.maximised);
  EXPECT_EQ(loaded.rect, layout.rect);
  EXPECT_EQ(loaded.totals_height, 140);
  EXPECT_EQ(loaded.widths, layout.widths);
  EXPECT_EQ(loaded.order, layout.order);

  RegistryKey key;
  ASSERT_EQ(registry->OpenKey(RegistryHive::kCurrentUser, kSettingsKeyPath, &key), 0);
  const unsigned char twice[44] = {1};  // column 1 once, column 0 ten times
  ASSERT_EQ(WriteBinary(*registry, key, u"ColOrder", twice, sizeof twice), 0);
  EXPECT_EQ(LoadWindowLayout(*registry).order, WindowLayout().order);
}

}  // namespace
}  // namespace quillora
