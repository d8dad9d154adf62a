// The values under "Software\Quillora" by name, for the command line's
// `settings show` and `settings set NAME VALUE`: their types, what each
// accepts, and how they are shown.
#ifndef QUILLORA_STORE_SETTINGS_VALUES_H_
#define QUILLORA_STORE_SETTINGS_VALUES_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/registry.h"

namespace quillora {

enum class SettingAccess {
  kReadWrite,
  kReadOnly,  // "NextClient": read once to seed the client numbers, never written
  kUnused,    // "fCustom1".."fCustom3": deleted by the filter, never read
};

// Checks the bytes of a binary value; false with *why when they make no sense.
using BinaryCheck = bool (*)(const unsigned char* bytes, std::string* why);

struct SettingValueInfo {
  std::string name;                // the value name, e.g. "MinTime"
  std::uint32_t type = kRegDword;  // kRegDword, kRegSz or kRegBinary
  SettingAccess access = SettingAccess::kReadWrite;
  // DWORD: allowed range (inclusive; a signed value is shown and taken as a
  // signed 32-bit number), or the only values allowed when `choices` is not
  // empty, or the only bits allowed when `mask` is not 0.
  bool is_signed = false;
  std::int64_t min = 0;
  std::int64_t max = 0xFFFFFFFF;
  std::vector<std::uint32_t> choices;
  std::uint32_t mask = 0;
  // String: the buffer the program reads it with, in characters with the
  // terminator (0 = read whole), and the most characters `settings set` takes.
  std::size_t buffer_chars = 0;
  std::size_t max_chars = 0;
  // Binary: exact size in bytes, and a check of its contents (may be null).
  std::uint32_t size = 0;
  BinaryCheck check = nullptr;
  // What the program uses when the value is missing. A binary default is all
  // zero bytes; `has_default` false means the value is left out of the listing.
  bool has_default = true;
  std::int64_t default_number = 0;
  std::u16string default_text;
};

// Every known value, in the order `settings show` lists them.
const std::vector<SettingValueInfo>& KnownSettingValues();

// The known value of that name (letter case ignored, as the registry does);
// null for an unknown name.
const SettingValueInfo* FindSettingValue(std::string_view name);

// One "name=value" line (UTF-8) per known value, as the program reads it: a
// missing or unreadable value shows its default (values without a default and
// "fCustom1".."fCustom3" are left out). Numbers in decimal, strings as text,
// binary values as lowercase hex.
std::vector<std::string> ShowSettings(Registry& registry);

// Stores one value from the command line's text: a decimal or 0x-hex number
// for a DWORD, the text itself for a string (an empty filter criterion is
// deleted, as the filter page does), hex bytes (blanks allowed between them)
// for a binary value. Refuses an unknown name, "NextClient", the unused filter
// values, a malformed text or a value out of range; then returns false with
// the reason in *message. On success *message is the new "name=value" line.
bool SetSettingFromText(Registry& registry, std::string_view name, std::string_view text,
                        std::string* message);

}  // namespace quillora

#endif  // QUILLORA_STORE_SETTINGS_VALUES_H_
