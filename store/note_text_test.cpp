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

}  // namespace
}  // namespace quillora
