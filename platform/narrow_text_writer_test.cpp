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

TEST(NarrowTextWriterTest, AFailedWriteIsReportedAndTheFileKeepsWhatWasWritten) {
  testing::TempDir dir;
  testing::FaultyFileSystem files;
  files.disk_bytes = 5;
  NarrowTextWriter writer(files, 1252);
  ASSERT_TRUE(writer.Open(dir.File("f")));
  EXPECT_TRUE(writer.Write(u"abc"));
  EXPECT_FALSE(writer.Write(u"defg"));
  EXPECT_FALSE(writer.last_ok());
  EXPECT_FALSE(writer.Close()) << "a file with a failed write is not reported written";
  EXPECT_EQ(testing::ReadFileBytes(dir.File("f")), "abcde");

  files.fail_create = true;
  EXPECT_FALSE(writer.Open(dir.File("g")));
  EXPECT_FALSE(writer.Write(u"x"));
}

}  // namespace
}  // namespace quillora
