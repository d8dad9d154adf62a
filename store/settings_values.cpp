#include "store/settings_values.h"

#include <climits>
#include <cstdio>

#include "platform/text.h"
#include "store/settings.h"
#include "store/string_table.h"

namespace quillora {
namespace {

constexpr int kListColumns =
    11;  // "Column0".."Column10"; "ColOrder" holds eleven indexes

std::uint32_t Word32(const unsigned char* p) {
  return std::uint32_t{p[0]} | std::uint32_t{p[1]} << 8 | std::uint32_t{p[2]} << 16 |
         std::uint32_t{p[3]} << 24;
}

bool CheckDisplay(const unsigned char* bytes, std::string* why) {
  if (Word32(bytes) > 2) {
    *why = "the entry time display (first number) must be 0, 1 or 2";
  } else if ((Word32(bytes + 4) & ~(kDisplayClientName | kDisplayStatusIcon)) != 0) {
    *why = "the display flags (second number) may only hold the bits 0x1 and 0x2";
  } else {
    for (int i = 2; i < 5; ++i) {
      if (Word32(bytes + 4 * std::size_t(i)) >= kPaletteSize) {
        *why = "a colour (third to fifth number) must be a palette index from 0 to 27";
        return false;
      }
    }
    return true;
  }
  return false;
}

bool CheckTime(const unsigned char* bytes, std::string* why) {
  SystemTime time = SystemTimeFromBytes(bytes);
  if (time == SystemTime{}) return true;
  FileTime ticks = 0;
  if (SystemTimeToFileTime(time, &ticks) &&
      time.day_of_week == DayOfWeek(time.year, time.month, time.day)) {
    return true;
  }
  *why =
      "it is not a date and time (year, month, day of week, day, hour, minute, second, "
      "millisecond as little-endian 16-bit numbers; all zero for none)";
  return false;
}

bool CheckColumnOrder(const unsigned char* bytes, std::string* why) {
  bool seen[kListColumns] = {};
  for (int i = 0; i < kListColumns; ++i) {
    std::uint32_t column = Word32(bytes + 4 * std::size_t(i));
    if (column >= kListColumns || seen[column]) {
      *why = "it must hold each column number from 0 to 10 once";
      return false;
    }
    seen[column] = true;
  }
  return true;
}

SettingValueInfo Dword(const char* name, std::int64_t fallback, std::int64_t min = 0,
                       std::int64_t max = 0xFFFFFFFF) {
  SettingValueInfo info;
  info.name = name;
  info.type = kRegDword;
  info.min = min;
  info.max = max;
  info.default_number = fallback;
  return info;
}

SettingValueInfo Signed(const char* name, std::int64_t fallback, std::int64_t min,
                        std::int64_t max) {
  SettingValueInfo info = Dword(name, fallback, min, max);
  info.is_signed = true;
  return info;
}

SettingValueInfo Text(const char* name, std::size_t buffer_chars, std::size_t max_chars,
                      std::u16string fallback) {
  SettingValueInfo info;
  info.name = name;
  info.type = kRegSz;
  info.buffer_chars = buffer_chars;
  info.max_chars = max_chars;
  info.default_text = std::move(fallback);
  return info;
}

SettingValueInfo Binary(const char* name, std::uint32_t size, BinaryCheck check,
                        bool has_default = true) {
  SettingValueInfo info;
  info.name = name;
  info.type = kRegBinary;
  info.size = size;
  info.check = check;
  info.has_default = has_default;
  return info;
}

std::vector<SettingValueInfo> BuildTable() {
  std::vector<SettingValueInfo> t;
  t.push_back(Dword("View", 2, 1, 4));
  t.push_back(Dword("DefNewStyles", kOptionBoldFont));
  t.push_back(Dword("FSize", 1, 0, 0xFFFF));
  t.push_back(Dword("ListStyle", 0));
  const int label_ids[3] = {kIdsCustom1Label, kIdsCustom2Label, kIdsCustom3Label};
  for (int i = 0; i < 3; ++i) {
    std::string name = "Custom" + std::to_string(i + 1);
    t.push_back(Text(name.c_str(), kCustomLabelChars, kCustomLabelChars - 1,
                     LoadString(label_ids[i])));
  }
  t.push_back(Text("DefCurr", kDefaultCurrencyChars, kDefaultCurrencyChars - 1, u"USD"));
  t.push_back(Dword("Encoding", 0, 0, 5));
  t.push_back(Dword("BreakSub", 0, 0, 3));
  t.push_back(Dword("MinTime", 15));
  t.back().choices.assign(kGranularityChoices.begin(), kGranularityChoices.end());
  t.push_back(Dword("TimeInterval", 3, 0, 4));
  t.push_back(Dword("Sort", 0, 0, 0xFFFF));
  t.push_back(Dword("HourSymbol", 1, 0, 2));
  t.push_back(Binary("ViewCust", 20, CheckDisplay));
  t.push_back(Text("DefReport", kDefaultReportChars, kDefaultReportChars - 1, u""));
  t.push_back(Binary("PeriodStart", 16, CheckTime));
  t.push_back(Binary("PeriodEnd", 16, CheckTime));
  t.push_back(Dword("TrayOnClose", 0, 0, 1));
  t.push_back(Dword("NextClient", 1));
  t.back().access = SettingAccess::kReadOnly;
  for (int i = 0; i < kListColumns; ++i) {
    t.push_back(Signed(("Column" + std::to_string(i)).c_str(), -1, INT32_MIN, INT32_MAX));
  }
  t.push_back(
      Binary("ColOrder", 4 * kListColumns, CheckColumnOrder, /*has_default=*/false));
  // The entry filter's criteria are read whole; the filter page takes at most
  // 128 characters.
  for (const char* name :
       {"fClient", "fProject", "fPhase", "fTask", "fBillTo", "fCurrency"}) {
    t.push_back(Text(name, 0, 128, u""));
  }
  t.push_back(Dword("fFlags", 21));
  t.back().mask = 0x15;
  t.push_back(Signed("fRateType", -1, -1, 4));
  for (const char* name : {"fCustom1", "fCustom2", "fCustom3"}) {
    t.push_back(Text(name, 0, 0, u""));
    t.back().access = SettingAccess::kUnused;
    t.back().has_default = false;
  }
  return t;
}

// Built by appending: `"\"" + std::string(text)` inserts at the front, where
// GCC 12 at -O3 warns of an overlapping copy that cannot happen (-Wrestrict).
std::string Quoted(std::string_view text) {
  std::string quoted;
  quoted.reserve(text.size() + 2);
  quoted.push_back('"');
  quoted.append(text);
  quoted.push_back('"');
  return quoted;
}

std::string Hex(const unsigned char* bytes, std::size_t size) {
  static const char kDigits[] = "0123456789abcdef";
  std::string out;
  for (std::size_t i = 0; i < size; ++i) {
    out.push_back(kDigits[bytes[i] >> 4]);
    out.push_back(kDigits[bytes[i] & 0xF]);
  }
  return out;
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Decimal ("-" only for signed values) or 0x-hex of at most 8 digits.
bool ParseNumber(std::string_view text, bool is_signed, std::int64_t* out) {
  if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
    text.remove_prefix(2);
    if (text.size() > 8) return false;
    std::uint32_t value = 0;
    for (char c : text) {
      int digit = HexDigit(c);
      if (digit < 0) return false;
      value = value << 4 | static_cast<std::uint32_t>(digit);
    }
    *out =
        is_signed ? std::int64_t{static_cast<std::int32_t>(value)} : std::int64_t{value};
    return true;
  }
  bool negative = is_signed && !text.empty() && text[0] == '-';
  if (negative) text.remove_prefix(1);
  if (text.empty() || text.size() > 10) return false;
  std::int64_t value = 0;
  for (char c : text) {
    if (c < '0' || c > '9') return false;
    value = value * 10 + (c - '0');
  }
  *out = negative ? -value : value;
  return true;
}

// Blanks may separate the bytes; each byte is two hex digits.
bool ParseHexBytes(std::string_view text, std::string* out) {
  std::string digits;
  for (char c : text) {
    if (c == ' ' || c == '\t') continue;
    if (HexDigit(c) < 0) return false;
    digits.push_back(c);
  }
  if (digits.size() % 2 != 0) return false;
  out->clear();
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    out->push_back(static_cast<char>(HexDigit(digits[i]) << 4 | HexDigit(digits[i + 1])));
  }
  return true;
}

std::string DescribeAllowed(const SettingValueInfo& info) {
  if (!info.choices.empty()) {
    std::string list;
    for (std::uint32_t choice : info.choices) {
      list += (list.empty() ? "" : ", ") + std::to_string(choice);
    }
    return "one of " + list;
  }
  if (info.mask != 0) {
    char mask[16];
    std::snprintf(mask, sizeof mask, "0x%X", info.mask);
    return std::string("a combination of the bits ") + mask;
  }
  return "from " + std::to_string(info.min) + " to " + std::to_string(info.max);
}

bool Allowed(const SettingValueInfo& info, std::int64_t value) {
  if (!info.choices.empty()) {
    for (std::uint32_t choice : info.choices) {
      if (value == choice) return true;
    }
    return false;
  }
  if (info.mask != 0) return value >= 0 && (value & ~std::int64_t{info.mask}) == 0;
  return value >= info.min && value <= info.max;
}

// The value as the program reads it; false when it is left out of the listing.
bool ShowValue(Registry& registry, const RegistryKey& key, const SettingValueInfo& info,
               std::string* text) {
  const std::u16string name = FromUtf8(info.name);
  if (info.type == kRegDword) {
    std::uint32_t value = 0;
    std::int64_t number = info.default_number;
    if (key.is_open() && ReadDword(registry, key, name, &value) == kErrorSuccess) {
      number = info.is_signed ? std::int64_t{static_cast<std::int32_t>(value)} : value;
    }
    *text = std::to_string(number);
    return true;
  }
  if (info.type == kRegSz) {
    std::u16string value = info.default_text;
    if (key.is_open()) ReadString(registry, key, name, info.buffer_chars, &value);
    *text = ToUtf8(value);
    return true;
  }
  std::vector<unsigned char> bytes(info.size, 0);
  bool read = key.is_open() &&
              ReadBinary(registry, key, name, bytes.data(), info.size) == kErrorSuccess;
  if (!read && !info.has_default) return false;
  *text = Hex(bytes.data(), bytes.size());
  return true;
}

}  // namespace

const std::vector<SettingValueInfo>& KnownSettingValues() {
  static const std::vector<SettingValueInfo> table = BuildTable();
  return table;
}

const SettingValueInfo* FindSettingValue(std::string_view name) {
  auto lower = [](std::string_view s) {
    std::string out(s);
    for (char& c : out) {
      if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return out;
  };
  const std::string wanted = lower(name);
  for (const auto& info : KnownSettingValues()) {
    if (lower(info.name) == wanted) return &info;
  }
  return nullptr;
}

std::vector<std::string> ShowSettings(Registry& registry) {
  RegistryKey key;  // stays closed when the key is missing: everything shows its default
  OpenSettingsKey(registry, &key);
  std::vector<std::string> lines;
  for (const auto& info : KnownSettingValues()) {
    std::string text;
    if (info.access == SettingAccess::kUnused || !ShowValue(registry, key, info, &text)) {
      continue;
    }
    lines.push_back(info.name + "=" + text);
  }
  return lines;
}

bool SetSettingFromText(Registry& registry, std::string_view name, std::string_view text,
                        std::string* message) {
  const SettingValueInfo* info = FindSettingValue(name);
  if (info == nullptr) {
    *message = "Unknown setting " + Quoted(name) + ".";
    return false;
  }
  const std::string& canonical = info->name;
  if (info->access == SettingAccess::kReadOnly) {
    *message =
        Quoted(canonical) + " is never written: it only seeds the client numbers once.";
    return false;
  }
  if (info->access == SettingAccess::kUnused) {
    *message = Quoted(canonical) + " is not kept between runs.";
    return false;
  }
  std::int64_t number = 0;
  std::u16string wide;
  std::string bytes;
  if (info->type == kRegDword) {
    if (!ParseNumber(text, info->is_signed, &number)) {
      *message = Quoted(canonical) + " takes a decimal or 0x-hex number, not " +
                 Quoted(text) + ".";
      return false;
    }
    if (!Allowed(*info, number)) {
      *message = Quoted(canonical) + " must be " + DescribeAllowed(*info) + ".";
      return false;
    }
  } else if (info->type == kRegSz) {
    wide = FromUtf8(text);
    if (wide.find(u'\0') != std::u16string::npos) {
      *message = Quoted(canonical) + " cannot hold a NUL character.";
      return false;
    }
    if (wide.size() > info->max_chars) {
      *message = Quoted(canonical) + " takes at most " + std::to_string(info->max_chars) +
                 " characters.";
      return false;
    }
  } else {
    if (!ParseHexBytes(text, &bytes) || bytes.size() != info->size) {
      *message = Quoted(canonical) + " takes " + std::to_string(info->size) +
                 " bytes written as " + std::to_string(info->size * 2) + " hex digits.";
      return false;
    }
    std::string why;
    if (info->check != nullptr &&
        !info->check(reinterpret_cast<const unsigned char*>(bytes.data()), &why)) {
      *message = Quoted(canonical) + " is refused: " + why + ".";
      return false;
    }
  }

  RegistryKey key;
  long rc = registry.CreateKey(RegistryHive::kCurrentUser, kSettingsKeyPath, &key);
  const std::u16string value_name = FromUtf8(canonical);
  if (rc == kErrorSuccess) {
    if (info->type == kRegDword) {
      rc = WriteDword(registry, key, value_name, static_cast<std::uint32_t>(number));
    } else if (info->type == kRegSz && wide.empty() && info->buffer_chars == 0) {
      // An empty filter criterion is no criterion: the filter deletes it too.
      rc = registry.DeleteValue(key, value_name);
      if (rc == kErrorFileNotFound) rc = kErrorSuccess;
    } else if (info->type == kRegSz) {
      rc = WriteString(registry, key, value_name, wide);
    } else {
      rc = WriteBinary(registry, key, value_name, bytes.data(),
                       static_cast<std::uint32_t>(bytes.size()));
    }
  }
  if (rc != kErrorSuccess) {
    *message = Quoted(canonical) + " could not be written (registry error " +
               std::to_string(rc) + ").";
    return false;
  }
  std::string shown;
  ShowValue(registry, key, *info, &shown);
  *message = canonical + "=" + shown;
  return true;
}

}  // namespace quillora
