#include "store/note_text.h"

#include <gtest/gtest.h>

namespace quillora {
namespace {

TEST(NoteTextTest, TextComesBackWithCrLfLineBreaks) {
  const auto blob = NoteBlobFromText(u"one\ntwo\r\nthree\rfour\r");
  EXPECT_EQ(NoteBlobToText(blob.data(), blob.size()), u"one\r\ntwo\r\nthree\r\nfour\r\n");
  const auto empty = NoteBlobFromText(u"");
  EXPECT_EQ(empty.size(), 8u);
  EXPECT_EQ(NoteBlobToText(empty.data(), empty.size()), u"");
}

TEST(NoteTextTest, ForeignOrDamagedBlobsGiveEmptyText) {
  auto blob = NoteBlobFromText(u"\u00e9t\u00e9");
  blob.insert(blob.end(), {'D', 'R', 'W', '1', 2, 0, 0, 0, 7, 7});  // a drawing follows
  EXPECT_EQ(NoteBlobToText(blob.data(), blob.size()), u"\u00e9t\u00e9");
  for (std::size_t n = 0; n < 14; ++n) {
    const std::u16string text = NoteBlobToText(blob.data(), n);
    EXPECT_TRUE(text.empty()) << n;
  }
  blob[7] = 0x80;  // a unit count far past the end
  EXPECT_EQ(NoteBlobToText(blob.data(), blob.size()), u"");
  const std::uint8_t foreign[] = {'{', '\\', 'r', 't', 'f', '1', ' ', 'x', '}'};
  EXPECT_EQ(NoteBlobToText(foreign, sizeof foreign), u"");
  EXPECT_EQ(NoteBlobToText(nullptr, 0), u"");
}

TEST(NoteTextTest, DrawingRoundTripsAndItsBytesAreFixed) {
  const std::vector<NoteStroke> strokes = {{{1, 2}, {-3, 300}}, {}, {{32767, -32768}}};
  const auto blob = NoteBlobFromParts(u"a\nb", strokes);
  const std::vector<std::uint8_t> drawing(blob.begin() + 14, blob.end());
  // clang-format off
  const std::vector<std::uint8_t> expected = {
      'D', 'R', 'W', '1', 20, 0, 0, 0,         // magic, byte count
      3, 0,                                    // strokes
      2, 0, 1, 0, 2, 0, 0xFD, 0xFF, 0x2C, 0x01,  // two points: (1, 2), (-3, 300)
      0, 0,                                    // no points
      1, 0, 0xFF, 0x7F, 0x00, 0x80};           // (32767, -32768)
  // clang-format on
  EXPECT_EQ(drawing, expected);
  std::u16string text;
  std::vector<NoteStroke> back;
  ASSERT_TRUE(ReadNoteBlob(blob.data(), blob.size(), &text, &back));
  EXPECT_EQ(text, u"a\nb");
  EXPECT_EQ(back, strokes);
  EXPECT_EQ(NoteBlobToText(blob.data(), blob.size()), u"a\r\nb");
  // No strokes: no drawing section at all.
  EXPECT_EQ(NoteBlobFromParts(u"x", {}), NoteBlobFromText(u"x"));
}

TEST(NoteTextTest, DamagedDrawingIsRefusedWhole) {
  const auto good = NoteBlobFromParts(u"t", {{{5, 6}, {7, 8}}});
  struct Case {
    const char* what;
    std::size_t byte;
    std::uint8_t value;
  };
  const Case cases[] = {{"section byte count too large", 14, 0xFF},
                        {"stroke count too large", 18, 2},
                        {"point count too large", 20, 3},
                        {"point count leaves bytes over", 20, 1},
                        {"section magic", 10, 'X'}};
  for (const Case& c : cases) {
    auto blob = good;
    blob[c.byte] = c.value;
    std::u16string text = u"stale";
    std::vector<NoteStroke> strokes(1);
    EXPECT_FALSE(ReadNoteBlob(blob.data(), blob.size(), &text, &strokes)) << c.what;
    EXPECT_TRUE(text.empty() && strokes.empty()) << c.what;
  }
  std::u16string text;
  std::vector<NoteStroke> strokes;
  for (std::size_t n = 11; n < good.size(); ++n) {
    EXPECT_FALSE(ReadNoteBlob(good.data(), n, &text, &strokes)) << n;
  }
  EXPECT_TRUE(ReadNoteBlob(nullptr, 0, &text, &strokes));
}

}  // namespace
}  // namespace quillora
