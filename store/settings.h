// The user's preferences: one object loaded once from the registry key
// "Software\Quillora" of the current user and written back whole.
#ifndef QUILLORA_STORE_SETTINGS_H_
#define QUILLORA_STORE_SETTINGS_H_

#include <array>
#include <cstdint>
#include <string>

#include "platform/clock.h"
#include "platform/registry.h"

namespace quillora {

// The program's key under the current user.
inline constexpr char16_t kSettingsKeyPath[] = u"Software\\Quillora";

// Opens the settings key of the current user, creating it (and its parents)
// when `create`; false when it cannot be opened.
bool OpenSettingsKey(Registry& registry, RegistryKey* key, bool create = false);

// Option bits of "DefNewStyles". Bits not named here belong to whoever tests them.
inline constexpr std::uint32_t kOptionBillable = 0x0001;  // new entries start billable
inline constexpr std::uint32_t kOptionItemTap = 0x0002;   // "Item Click Option:"
inline constexpr std::uint32_t kOptionWeekStartsMonday = 0x0008;
inline constexpr std::uint32_t kOptionBoldFont = 0x0010;  // "Bold", on by default
inline constexpr std::uint32_t kOptionPreciseCalculation = 0x2000;  // 10/20/40/50 minutes
inline constexpr std::uint32_t kOptionGranularity =
    0x4000;  // "Enable Duration Granularity of"
inline constexpr std::uint32_t kOptionWeekNumber =
    0x8000;  // "Show Week Number (Week View Only)"

// Flags of the display block ("Display Elements" page).
inline constexpr std::uint32_t kDisplayClientName = 0x1;  // "Show Client Name"
inline constexpr std::uint32_t kDisplayStatusIcon = 0x2;  // "Show Status Icon"

// The item colour palette as 0xRRGGBB. Index 0 is not a colour: it stands for
// the system's window-text colour (kept here as 0).
inline constexpr int kPaletteSize = 28;
inline constexpr std::array<std::uint32_t, kPaletteSize> kItemPalette = {
    0x000000, 0x0000FF, 0x000080, 0x0080FF, 0x000040, 0xFF0000, 0x800000,
    0xFF00FF, 0xFFAAFF, 0x8080C0, 0x400040, 0x80FFFF, 0xFF8000, 0x804000,
    0x00FF00, 0x008000, 0x408080, 0x808000, 0xF0F000, 0xB9C6F0, 0x8080FF,
    0xFF80C0, 0xFFCC66, 0x666699, 0xB4E2FF, 0x66CC33, 0xCCFFCC, 0xCCCCFF};

// The eight choices of the "Minutes" list of the granularity box.
inline constexpr std::array<std::uint32_t, 8> kGranularityChoices = {6,  10, 15, 20,
                                                                     30, 40, 45, 50};

// Buffer sizes of the string values in characters, the terminator included.
inline constexpr std::size_t kCustomLabelChars = 32;
inline constexpr std::size_t kDefaultCurrencyChars = 16;
inline constexpr std::size_t kDefaultReportChars = 64;

// The display block "ViewCust": five 32-bit words, 20 bytes in the registry.
struct DisplayBlock {
  std::uint32_t entry_time_display =
      0;                            // 0 "Duration, Start", 1 "... , End", 2 "Start, End"
  std::uint32_t display_flags = 0;  // kDisplayClientName | kDisplayStatusIcon
  std::uint32_t non_billable_colour = 0;  // palette indexes
  std::uint32_t billable_colour = 0;
  std::uint32_t paid_colour = 0;

  friend bool operator==(const DisplayBlock&, const DisplayBlock&) = default;
};

// Every preference, in the order of the settings object; constructed with the
// defaults that a fresh device shows.
struct Settings {
  Settings();

  std::uint32_t view = 2;  // 1 Day, 2 Week, 3 Month, 4 Custom Period
  std::uint32_t option_bits = kOptionBoldFont;
  std::uint16_t font_size = 1;
  std::uint16_t granularity = 15;  // minutes, "MinTime"
  std::uint32_t list_style = 0;
  DisplayBlock display;
  std::array<std::u16string, 3> custom_labels;  // "Custom 1" .. "Custom 3"
  std::u16string default_currency = u"USD";
  std::uint16_t encoding = 0;       // XML export encoding index 0..5
  std::uint16_t break_sub = 0;      // CSV line-break substitute 0..3
  std::uint16_t time_interval = 3;  // duration list step index 0..4
  std::uint16_t sort = 0;
  std::u16string default_report;
  SystemTime period_start;  // custom period, all zero when never set
  SystemTime period_end;
  std::uint16_t hour_symbol = 1;  // "(None)", "h", "hr"
  // "TrayOnClose": closing the window keeps Quillora running in the tray
  // (General page). The desktop's own value; off by default.
  std::uint32_t tray_on_close = 0;

  friend bool operator==(const Settings&, const Settings&) = default;
};

// Reads every preference from the program's key (created if missing). A value
// that is missing, of another type, or longer than its buffer gives its
// default; a missing or unreadable binary block leaves its field as it was.
// When the key cannot be opened or created, nothing is read and false is
// returned; otherwise true.
bool LoadSettings(Registry& registry, Settings* settings);

// Writes every preference back: numbers as DWORD, strings cut to their buffer
// (at most 31, 15 and 63 characters, then the terminator), blocks as binary
// values of 20 and 16 bytes. "NextClient" is never written. False when the
// key cannot be opened or any write fails (the other writes still happen).
bool SaveSettings(Registry& registry, const Settings& settings);

// "NextClient" under the program's key: the seed of the client-number counter
// of a data store that has none. 1 when the key or the value cannot be read.
std::uint32_t ReadNextClientSeed(Registry& registry);

// True when "ClearType" under the current user's "Software\Microsoft\Shell" is
// 1 (fonts then ask for ClearType quality); a missing value counts as 0.
bool ReadClearType(Registry& registry);

// The 16-byte registry form of a calendar time (eight little-endian 16-bit
// fields), and back.
std::array<unsigned char, 16> SystemTimeToBytes(const SystemTime& time);
SystemTime SystemTimeFromBytes(const unsigned char* bytes);

}  // namespace quillora

#endif  // QUILLORA_STORE_SETTINGS_H_
