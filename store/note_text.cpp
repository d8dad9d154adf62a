#include "store/note_text.h"

#include <cstring>

namespace quillora {
namespace {

constexpr char kTextMagic[4] = {'Q', 'N', 'T', '1'};

}  // namespace

std::vector<std::uint8_t> NoteBlobFromText(const std::u16string& text) {
  std::vector<std::uint8_t> blob(kTextMagic, kTextMagic + 4);
  const auto n = static_cast<std::uint32_t>(text.size());
  for (int i = 0; i < 4; ++i) blob.push_back(static_cast<std::uint8_t>(n >> (8 * i)));
  for (char16_t c : text) {
    blob.push_back(static_cast<std::uint8_t>(c & 0xFF));
    blob.push_back(static_cast<std::uint8_t>(c >> 8));
  }
  return blob;
}

std::u16string NoteBlobToText(const std::uint8_t* bytes, std::size_t size) {
  if (bytes == nullptr || size < 8 || std::memcmp(bytes, kTextMagic, 4) != 0) return {};
  const std::uint32_t units = static_cast<std::uint32_t>(bytes[4]) |
                              static_cast<std::uint32_t>(bytes[5]) << 8 |
                              static_cast<std::uint32_t>(bytes[6]) << 16 |
                              static_cast<std::uint32_t>(bytes[7]) << 24;
  if (units > (size - 8) / 2) return {};
  std::u16string text;
  text.reserve(units);
  const std::uint8_t* p = bytes + 8;
  for (std::uint32_t i = 0; i < units; ++i) {
    const auto c = static_cast<char16_t>(p[2 * i] | p[2 * i + 1] << 8);
    if (c == u'\r' || c == u'\n') {
      // CR LF, a lone CR and a lone LF all end a line.
      if (c == u'\r' && i + 1 < units && p[2 * i + 2] == '\n' && p[2 * i + 3] == 0) ++i;
      text += u"\r\n";
    } else {
      text.push_back(c);
    }
  }
  return text;
}

}  // namespace quillora
