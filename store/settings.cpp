#include "store/settings.h"

#include "store/string_table.h"

namespace quillora {
namespace {

constexpr const char16_t* kCustomLabelValues[3] = {u"Custom1", u"Custom2", u"Custom3"};
constexpr int kCustomLabelIds[3] = {kIdsCustom1Label, kIdsCustom2Label, kIdsCustom3Label};

// A DWORD value, or `fallback` when it is missing or not a DWORD.
std::uint32_t DwordOr(Registry& registry, const RegistryKey& key,
                      std::u16string_view name, std::uint32_t fallback) {
  std::uint32_t value = fallback;
  return ReadDword(registry, key, name, &value) == kErrorSuccess ? value : fallback;
}

// A string read into a buffer of `buffer_chars` units, or `fallback` when it
// is missing, of another type or too long for the buffer.
std::u16string StringOr(Registry& registry, const RegistryKey& key,
                        std::u16string_view name, std::size_t buffer_chars,
                        std::u16string fallback) {
  std::u16string value;
  if (ReadString(registry, key, name, buffer_chars, &value) != kErrorSuccess)
    return fallback;
  return value;
}

std::array<unsigned char, 20> DisplayToBytes(const DisplayBlock& d) {
  std::array<unsigned char, 20> out{};
  const std::uint32_t words[5] = {d.entry_time_display, d.display_flags,
                                  d.non_billable_colour, d.billable_colour,
                                  d.paid_colour};
  for (int i = 0; i < 5; ++i) {
    for (int b = 0; b < 4; ++b)
      out[i * 4 + b] = static_cast<unsigned char>(words[i] >> (8 * b));
  }
  return out;
}

DisplayBlock DisplayFromBytes(const unsigned char* bytes) {
  std::uint32_t words[5];
  for (std::size_t i = 0; i < 5; ++i) {
    const unsigned char* p = bytes + i * 4;
    words[i] = std::uint32_t{p[0]} | std::uint32_t{p[1]} << 8 |
               std::uint32_t{p[2]} << 16 | std::uint32_t{p[3]} << 24;
  }
  return {words[0], words[1], words[2], words[3], words[4]};
}

// The text as stored: cut to what a buffer of `buffer_chars` units can read
// back, never between the two halves of a surrogate pair.
std::u16string_view Cut(const std::u16string& text, std::size_t buffer_chars) {
  std::u16string_view view(text);
  if (view.size() < buffer_chars) return view;
  std::size_t keep = buffer_chars - 1;
  if (keep > 0 && view[keep - 1] >= 0xD800 && view[keep - 1] <= 0xDBFF) --keep;
  return view.substr(0, keep);
}

}  // namespace

Settings::Settings() {
  for (int i = 0; i < 3; ++i) custom_labels[i] = LoadString(kCustomLabelIds[i]);
}

std::array<unsigned char, 16> SystemTimeToBytes(const SystemTime& t) {
  const std::uint16_t fields[8] = {t.year, t.month,  t.day_of_week, t.day,
                                   t.hour, t.minute, t.second,      t.milliseconds};
  std::array<unsigned char, 16> out{};
  for (std::size_t i = 0; i < 8; ++i) {
    out[i * 2] = static_cast<unsigned char>(fields[i] & 0xFF);
    out[i * 2 + 1] = static_cast<unsigned char>(fields[i] >> 8);
  }
  return out;
}

SystemTime SystemTimeFromBytes(const unsigned char* bytes) {
  std::uint16_t f[8];
  for (std::size_t i = 0; i < 8; ++i) {
    f[i] = static_cast<std::uint16_t>(bytes[i * 2] | bytes[i * 2 + 1] << 8);
  }
  return {f[0], f[1], f[2], f[3], f[4], f[5], f[6], f[7]};
}

bool OpenSettingsKey(Registry& registry, RegistryKey* key, bool create) {
  const long rc =
      create ? registry.CreateKey(RegistryHive::kCurrentUser, kSettingsKeyPath, key)
             : registry.OpenKey(RegistryHive::kCurrentUser, kSettingsKeyPath, key);
  return rc == kErrorSuccess;
}

bool LoadSettings(Registry& registry, Settings* s) {
  RegistryKey key;
  if (!OpenSettingsKey(registry, &key, /*create=*/true)) return false;
  auto dword = [&](const char16_t* name, std::uint32_t fallback) {
    return DwordOr(registry, key, name, fallback);
  };
  // The 16-bit fields keep the low half of their DWORD, as the device's
  // assignments did.
  auto word = [&](const char16_t* name, std::uint16_t fallback) {
    return static_cast<std::uint16_t>(dword(name, fallback));
  };
  s->view = dword(u"View", 2);
  s->option_bits = dword(u"DefNewStyles", kOptionBoldFont);
  s->font_size = word(u"FSize", 1);
  s->list_style = dword(u"ListStyle", 0);
  for (int i = 0; i < 3; ++i) {
    s->custom_labels[i] = StringOr(registry, key, kCustomLabelValues[i],
                                   kCustomLabelChars, LoadString(kCustomLabelIds[i]));
  }
  s->default_currency =
      StringOr(registry, key, u"DefCurr", kDefaultCurrencyChars, u"USD");
  s->encoding = word(u"Encoding", 0);
  s->break_sub = word(u"BreakSub", 0);
  s->granularity = word(u"MinTime", 15);
  s->time_interval = word(u"TimeInterval", 3);
  s->sort = word(u"Sort", 0);
  s->hour_symbol = word(u"HourSymbol", 1);
  s->tray_on_close = dword(u"TrayOnClose", 0);

  std::array<unsigned char, 20> display;
  if (ReadBinary(registry, key, u"ViewCust", display.data(), 20) == kErrorSuccess) {
    s->display = DisplayFromBytes(display.data());
  }
  s->default_report = StringOr(registry, key, u"DefReport", kDefaultReportChars, u"");
  std::array<unsigned char, 16> time;
  if (ReadBinary(registry, key, u"PeriodStart", time.data(), 16) == kErrorSuccess) {
    s->period_start = SystemTimeFromBytes(time.data());
  }
  if (ReadBinary(registry, key, u"PeriodEnd", time.data(), 16) == kErrorSuccess) {
    s->period_end = SystemTimeFromBytes(time.data());
  }
  return true;
}

bool SaveSettings(Registry& registry, const Settings& s) {
  RegistryKey key;
  if (!OpenSettingsKey(registry, &key, /*create=*/true)) return false;
  bool ok = true;
  auto keep = [&](long rc) { ok = ok && rc == kErrorSuccess; };
  keep(WriteDword(registry, key, u"View", s.view));
  keep(WriteDword(registry, key, u"DefNewStyles", s.option_bits));
  keep(WriteDword(registry, key, u"FSize", s.font_size));
  keep(WriteDword(registry, key, u"ListStyle", s.list_style));
  for (int i = 0; i < 3; ++i) {
    keep(WriteString(registry, key, kCustomLabelValues[i],
                     Cut(s.custom_labels[i], kCustomLabelChars)));
  }
  keep(WriteString(registry, key, u"DefCurr",
                   Cut(s.default_currency, kDefaultCurrencyChars)));
  keep(WriteDword(registry, key, u"Encoding", s.encoding));
  keep(WriteDword(registry, key, u"BreakSub", s.break_sub));
  keep(WriteDword(registry, key, u"MinTime", s.granularity));
  keep(WriteDword(registry, key, u"TimeInterval", s.time_interval));
  keep(WriteDword(registry, key, u"Sort", s.sort));
  keep(WriteDword(registry, key, u"HourSymbol", s.hour_symbol));
  const auto display = DisplayToBytes(s.display);
  keep(WriteBinary(registry, key, u"ViewCust", display.data(), 20));
  keep(WriteString(registry, key, u"DefReport",
                   Cut(s.default_report, kDefaultReportChars)));
  const auto start = SystemTimeToBytes(s.period_start);
  keep(WriteBinary(registry, key, u"PeriodStart", start.data(), 16));
  const auto end = SystemTimeToBytes(s.period_end);
  keep(WriteBinary(registry, key, u"PeriodEnd", end.data(), 16));
  keep(WriteDword(registry, key, u"TrayOnClose", s.tray_on_close));
  return ok;
}

std::uint32_t ReadNextClientSeed(Registry& registry) {
  RegistryKey key;
  if (!OpenSettingsKey(registry, &key)) return 1;
  return DwordOr(registry, key, u"NextClient", 1);
}

bool ReadClearType(Registry& registry) {
  RegistryKey key;
  if (registry.OpenKey(RegistryHive::kCurrentUser, u"Software\\Microsoft\\Shell", &key) !=
      kErrorSuccess) {
    return false;
  }
  return DwordOr(registry, key, u"ClearType", 0) == 1;
}

}  // namespace quillora
