#include "store/window_layout.h"

#include <string>

#include "store/settings.h"

namespace quillora {
namespace {

std::u16string ColumnName(int column) {
  std::u16string name = u"Column";
  for (char c : std::to_string(column)) name.push_back(static_cast<char16_t>(c));
  return name;
}

template <std::size_t N>
void ToBytes(const std::array<std::int32_t, N>& words, unsigned char* bytes) {
  for (std::size_t i = 0; i < N; ++i) {
    const auto w = static_cast<std::uint32_t>(words[i]);
    for (std::size_t b = 0; b < 4; ++b)
      bytes[i * 4 + b] = static_cast<unsigned char>(w >> (8 * b));
  }
}

template <std::size_t N>
std::array<std::int32_t, N> FromBytes(const unsigned char* bytes) {
  std::array<std::int32_t, N> words{};
  for (std::size_t i = 0; i < N; ++i) {
    std::uint32_t w = 0;
    for (std::size_t b = 0; b < 4; ++b) w |= std::uint32_t{bytes[i * 4 + b]} << (8 * b);
    words[i] = static_cast<std::int32_t>(w);
  }
  return words;
}

}  // namespace

bool IsColumnOrder(const ColumnOrder& order) {
  bool seen[kTableColumns] = {};
  for (std::int32_t column : order) {
    if (column < 0 || column >= kTableColumns || seen[column]) return false;
    seen[column] = true;
  }
  return true;
}

WindowLayout LoadWindowLayout(Registry& registry) {
  WindowLayout layout;
  RegistryKey key;
  if (!OpenSettingsKey(registry, &key)) return layout;
  unsigned char rect[16];
  if (ReadBinary(registry, key, u"WinRect", rect, sizeof rect) == kErrorSuccess) {
    layout.rect = FromBytes<4>(rect);
    layout.placed = layout.rect[2] > 0 && layout.rect[3] > 0;
  }
  std::uint32_t value = 0;
  if (ReadDword(registry, key, u"WinMax", &value) == kErrorSuccess)
    layout.maximised = value == 1;
  if (ReadDword(registry, key, u"TotalsPane", &value) == kErrorSuccess) {
    layout.totals_height = static_cast<std::int32_t>(value);
  }
  for (int c = 0; c < kTableColumns; ++c) {
    if (ReadDword(registry, key, ColumnName(c), &value) == kErrorSuccess) {
      layout.widths[static_cast<std::size_t>(c)] = static_cast<std::int32_t>(value);
    }
  }
  unsigned char order[4 * kTableColumns];
  if (ReadBinary(registry, key, u"ColOrder", order, sizeof order) == kErrorSuccess) {
    const ColumnOrder read = FromBytes<kTableColumns>(order);
    if (IsColumnOrder(read)) layout.order = read;
  }
  return layout;
}

bool SaveWindowLayout(Registry& registry, const WindowLayout& layout) {
  RegistryKey key;
  if (!OpenSettingsKey(registry, &key, /*create=*/true)) return false;
  bool ok = true;
  auto keep = [&](long rc) { ok = ok && rc == kErrorSuccess; };
  if (layout.placed) {
    unsigned char rect[16];
    ToBytes(layout.rect, rect);
    keep(WriteBinary(registry, key, u"WinRect", rect, sizeof rect));
  }
  keep(WriteDword(registry, key, u"WinMax", layout.maximised ? 1 : 0));
  keep(WriteDword(registry, key, u"TotalsPane",
                  static_cast<std::uint32_t>(layout.totals_height)));
  for (int c = 0; c < kTableColumns; ++c) {
    keep(WriteDword(
        registry, key, ColumnName(c),
        static_cast<std::uint32_t>(layout.widths[static_cast<std::size_t>(c)])));
  }
  unsigned char order[4 * kTableColumns];
  ToBytes(layout.order, order);
  keep(WriteBinary(registry, key, u"ColOrder", order, sizeof order));
  return ok;
}

}  // namespace quillora
