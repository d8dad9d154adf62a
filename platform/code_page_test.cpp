#include "platform/code_page.h"

#include <gtest/gtest.h>

#include "platform/text.h"

namespace quillora {
namespace {

TEST(CodePageTest, RoundTripsTextTheCodePageHolds) {
  struct Case {
    std::u16string_view text;
    int code_page;
    std::string_view bytes;
  } cases[] = {
      {u"Caf\u00e9 \u20ac5", 1252,
       "Caf\xE9 \x80"
       "5"},
      {u"\u201cquoted\u201d \u2014 \u00ff", 1252, "\x93quoted\x94 \x97 \xFF"},
      {u"\u0141\u00f3d\u017a", 1250,
       "\xA3\xF3"
       "d\x9F"},
      {u"\u041f\u0440\u0438\u0432\u0435\u0442", 1251, "\xCF\xF0\xE8\xE2\xE5\xF2"},
      {u"\u65e5\u672c a", 932, "\x93\xFA\x96\x7B a"},
      {u"", 1252, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(ToUtf8(c.text) + " in " + std::to_string(c.code_page));
    EXPECT_EQ(ToAnsi(c.text, c.code_page), c.bytes);
    EXPECT_EQ(FromAnsi(c.bytes, c.code_page), c.text);
  }
}

TEST(CodePageTest, WritesOneQuestionMarkPerUnitItCannotHold) {
  struct Case {
    std::u16string_view text;
    int code_page;
    std::string_view bytes;
  } cases[] = {
      {u"\u4ef7\u683c: 5", 1252, "??: 5"},
      {u"a\U0001F600b", 1252, "a??b"},       // a surrogate pair is two units
      {u"x\xD800y\xDC00", 1252, "x?y?"},     // unpaired surrogates
      {u"\u0100\u0107\u2260", 1252, "???"},  // no best-fit A, c or =
      {u"\u00e9\u0416", 1250, "\xE9?"},
      {u"\U0001F600\u65e5", 932, "??\x93\xFA"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ToAnsi(c.text, c.code_page), c.bytes)
        << ToUtf8(c.text) << " in " << c.code_page;
  }
}

TEST(CodePageTest, ReplacesBytesThatStartNoCharacter) {
  EXPECT_EQ(FromAnsi("a\xD2"
                     "b",
                     1253),
            u"a\uFFFDb");                                  // unassigned in Greek
  EXPECT_EQ(FromAnsi("a\x93", 932), u"a\uFFFD");           // lead byte cut off
  EXPECT_EQ(FromAnsi("\x81\x8D", 1252), u"\u0081\u008D");  // 1252 passes C1 through
  EXPECT_EQ(FromAnsi(std::string_view("a\0b", 3), 1252), std::u16string(u"a\0b", 3));
}

TEST(CodePageTest, TreatsAnUnknownCodePageAs1252) {
  EXPECT_TRUE(IsCodePageSupported(1252));
  EXPECT_TRUE(IsCodePageSupported(932));
  EXPECT_FALSE(IsCodePageSupported(12345));
  EXPECT_EQ(ToAnsi(u"\u00e9\u20ac", 12345), "\xE9\x80");
  EXPECT_EQ(FromAnsi("\xE9\x80", 12345), u"\u00e9\u20ac");
}

TEST(CodePageTest, ConvertsUtf16LittleEndian) {
  const std::u16string text = u"A\u20ac\U0001F600";
  const std::string bytes("A\0\xAC\x20\x3D\xD8\x00\xDE", 8);
  EXPECT_EQ(ToUtf16Le(text), bytes);
  EXPECT_EQ(FromUtf16Le(bytes), text);
  EXPECT_EQ(FromUtf16Le(bytes + "\x41"), text);  // odd last byte ignored
  EXPECT_EQ(FromUtf16Le(std::string_view("\x00\xD8", 2)), u"\xD800");
  EXPECT_EQ(FromUtf16Le(""), u"");
}

}  // namespace
}  // namespace quillora

namespace quillora {
namespace {

// Every unit a single-byte code page writes as a byte other than "?" reads
// back as itself, and every byte that reads as a character writes back as
// that byte: only round-trip mappings, no best fit.
TEST(CodePageTest, SingleByteCodePagesUseRoundTripMappingsOnly) {
  for (int code_page : {1250, 1251, 1252, 1253, 1254, 1257}) {
    for (std::uint32_t u = 1; u < 0x10000; ++u) {
      const std::u16string unit(1, static_cast<char16_t>(u));
      const std::string byte = ToAnsi(unit, code_page);
      ASSERT_EQ(byte.size(), 1u) << code_page << " U+" << std::hex << u;
      if (byte != "?") {
        ASSERT_EQ(FromAnsi(byte, code_page), unit) << code_page << " U+" << std::hex << u;
      }
    }
    for (int b = 1; b < 256; ++b) {
      const std::string byte(1, static_cast<char>(b));
      const std::u16string unit = FromAnsi(byte, code_page);
      if (unit != u"\ufffd") {
        EXPECT_EQ(ToAnsi(unit, code_page), byte) << code_page << " byte " << b;
      }
    }
  }
}

}  // namespace
}  // namespace quillora
