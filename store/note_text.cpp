#include "store/note_text.h"

#include <algorithm>
#include <cstring>

namespace quillora {
namespace {

constexpr char kTextMagic[4] = {'Q', 'N', 'T', '1'};
constexpr char kDrawMagic[4] = {'D', 'R', 'W', '1'};

void Put16(std::vector<std::uint8_t>* out, std::uint16_t v) {
  out->push_back(static_cast<std::uint8_t>(v & 0xFF));
  out->push_back(static_cast<std::uint8_t>(v >> 8));
}

void Put32(std::vector<std::uint8_t>* out, std::uint32_t v) {
  for (int i = 0; i < 4; ++i) out->push_back(static_cast<std::uint8_t>(v >> (8 * i)));
}

std::uint16_t Get16(const std::uint8_t* p) {
  return static_cast<std::uint16_t>(p[0] | p[1] << 8);
}

std::uint32_t Get32(const std::uint8_t* p) {
  return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
         static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

// Reads the stroke bytes of a drawing section; false when a count runs past
// `size` or bytes are left over.
bool ReadStrokes(const std::uint8_t* p, std::size_t size,
                 std::vector<NoteStroke>* strokes) {
  if (size < 2) return false;
  const std::uint16_t count = Get16(p);
  std::size_t at = 2;
  for (std::uint16_t s = 0; s < count; ++s) {
    if (size - at < 2) return false;
    const std::uint16_t points = Get16(p + at);
    at += 2;
    if ((size - at) / 4 < points) return false;
    NoteStroke stroke;
    stroke.reserve(points);
    for (std::uint16_t i = 0; i < points; ++i, at += 4) {
      stroke.push_back({static_cast<std::int16_t>(Get16(p + at)),
                        static_cast<std::int16_t>(Get16(p + at + 2))});
    }
    strokes->push_back(std::move(stroke));
  }
  return at == size;
}

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

std::vector<std::uint8_t> NoteBlobFromParts(const std::u16string& text,
                                            const std::vector<NoteStroke>& strokes) {
  std::vector<std::uint8_t> blob = NoteBlobFromText(text);
  if (strokes.empty()) return blob;
  std::vector<std::uint8_t> section;
  const std::size_t count = std::min(strokes.size(), kMaxNoteStrokes);
  Put16(&section, static_cast<std::uint16_t>(count));
  for (std::size_t s = 0; s < count; ++s) {
    const std::size_t points = std::min(strokes[s].size(), kMaxStrokePoints);
    Put16(&section, static_cast<std::uint16_t>(points));
    for (std::size_t i = 0; i < points; ++i) {
      Put16(&section, static_cast<std::uint16_t>(strokes[s][i].x));
      Put16(&section, static_cast<std::uint16_t>(strokes[s][i].y));
    }
  }
  blob.insert(blob.end(), kDrawMagic, kDrawMagic + 4);
  Put32(&blob, static_cast<std::uint32_t>(section.size()));
  blob.insert(blob.end(), section.begin(), section.end());
  return blob;
}

bool ReadNoteBlob(const std::uint8_t* bytes, std::size_t size, std::u16string* text,
                  std::vector<NoteStroke>* strokes) {
  text->clear();
  strokes->clear();
  if (bytes == nullptr || size == 0) return true;
  if (size < 8 || std::memcmp(bytes, kTextMagic, 4) != 0) return false;
  const std::uint32_t units = Get32(bytes + 4);
  if (units > (size - 8) / 2) return false;
  const std::uint8_t* p = bytes + 8;
  for (std::uint32_t i = 0; i < units; ++i)
    text->push_back(static_cast<char16_t>(Get16(p + 2 * std::size_t{i})));
  std::size_t at = 8 + static_cast<std::size_t>(units) * 2;
  if (at == size) return true;
  bool ok = size - at >= 8 && std::memcmp(bytes + at, kDrawMagic, 4) == 0;
  if (ok) {
    const std::uint32_t length = Get32(bytes + at + 4);
    at += 8;
    ok = length == size - at && ReadStrokes(bytes + at, length, strokes);
  }
  if (!ok) {
    text->clear();
    strokes->clear();
  }
  return ok;
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
    const auto c =
        static_cast<char16_t>(p[2 * std::size_t{i}] | p[2 * std::size_t{i} + 1] << 8);
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
