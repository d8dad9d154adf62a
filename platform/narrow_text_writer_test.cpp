#include "platform/narrow_text_writer.h"

#include <gtest/gtest.h>

#include "tests/faulty_file_system.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

TEST(NarrowTextWriterTest, OneBytePerCharacterInTheCodePage) {
  testing::TempDir dir;
  const std::string path = dir.File("out.csv");
  testing::WriteFileBytes(path, "old contents that are longer");
  {
    NarrowTextWriter writer(FileSystem::Posix(), 1252);
    ASSERT_TRUE(writer.Open(path));
    ASSERT_TRUE(writer.Write(u"\"Caf\u00e9\",\u20ac\u4e2d\r\n"));
    EXPECT_EQ(writer.last_written(), 11u);
    ASSERT_TRUE(writer.Close());
  }
  EXPECT_EQ(testing::ReadFileBytes(path), "\"Caf\xe9\",\x80?\r\n");

  // A double-byte code page is cut at the character count.
  NarrowTextWriter japanese(FileSystem::Posix(), 932);
  ASSERT_TRUE(japanese.Open(path));
  ASSERT_TRUE(japanese.Write(u"a\u65e5\u672cb"));
  ASSERT_TRUE(japanese.Close());
  EXPECT_EQ(testing::ReadFileBytes(path), "a\x93\xfa\x96");
}

// Written in parts, a text gives the very bytes of one write, however it is
// cut: double-byte characters and surrogate pairs across the cuts included.
TEST(NarrowTextWriterTest, PartsGiveTheBytesOfOneWrite) {
  testing::TempDir dir;
  const std::u16string text = u"a\u65e5\u672cb\U0001F600c\u00e9\r\n\u4e2d\U0001F600";
  for (int code_page : {1252, 932}) {
    NarrowTextWriter whole(FileSystem::Posix(), code_page);
    ASSERT_TRUE(whole.Open(dir.File("whole")));
    ASSERT_TRUE(whole.Write(text));
    ASSERT_TRUE(whole.Close());
    const std::string expected = testing::ReadFileBytes(dir.File("whole"));
    for (std::size_t cut = 0; cut <= text.size(); ++cut) {
      for (std::size_t step : {std::size_t{1}, std::size_t{3}, text.size()}) {
        NarrowTextWriter parts(FileSystem::Posix(), code_page);
        ASSERT_TRUE(parts.Open(dir.File("parts")));
        ASSERT_TRUE(parts.WritePart(std::u16string_view(text).substr(0, cut)));
        for (std::size_t at = cut; at < text.size(); at += step) {
          ASSERT_TRUE(parts.WritePart(std::u16string_view(text).substr(at, step)));
        }
        ASSERT_TRUE(parts.EndParts());
        ASSERT_TRUE(parts.Close());
        EXPECT_EQ(testing::ReadFileBytes(dir.File("parts")), expected)
            << "code page " << code_page << ", cut at " << cut << ", step " << step;
      }
    }
  }
}

TEST(NarrowTextWriterTest, UnicodeTextIsAByteOrderMarkThenUtf16Le) {
  testing::TempDir dir;
  NarrowTextWriter writer(FileSystem::Posix(), 1252);
  ASSERT_TRUE(writer.Open(dir.File("u.txt")));
  ASSERT_TRUE(writer.WriteByteOrderMark());
  ASSERT_TRUE(writer.WriteRaw(u"A\u20ac"));
  EXPECT_EQ(writer.last_written(), 4u);
  ASSERT_TRUE(writer.Close());
  EXPECT_EQ(testing::ReadFileBytes(dir.File("u.txt")), std::string("\xff\xfe" "A\0\xac\x20", 6));
}

// The writer's own contract, which its callers' checks hide: after a failed
// write it writes no more parts, and its file is not reported written.
TEST(NarrowTextWriterTest, AFailedWriteStopsThePartsAndFailsTheClose) {
  testing::TempDir dir;
  testing::FaultyFileSystem files;
  files.fail_write_number = 2;  // the third write would work again
  NarrowTextWriter writer(files, 1252);
  ASSERT_TRUE(writer.Open(dir.File("f")));
  EXPECT_TRUE(writer.WritePart(u"abc"));
  EXPECT_FALSE(writer.WritePart(u"def"));
  EXPECT_FALSE(writer.WritePart(u"g")) << "nothing more after a failed write";
  EXPECT_FALSE(writer.EndParts());
  EXPECT_FALSE(writer.Close()) << "a file with a failed write is not reported written";
  EXPECT_EQ(testing::ReadFileBytes(dir.File("f")), "abc");
}

}  // namespace
}  // namespace quillora
