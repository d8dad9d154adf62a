#include "platform/file.h"

#include <gtest/gtest.h>

#include "tests/temp_dir.h"

namespace quillora {
namespace {

TEST(FileTest, CreateAlwaysTruncatesAndReadGivesEveryByte) {
  testing::TempDir dir;
  const std::string path = dir.File("out.csv");
  testing::WriteFileBytes(path, std::string(100, 'x'));
  auto file = FileSystem::Posix().CreateAlways(path);
  ASSERT_NE(file, nullptr);
  const std::string bytes("a\0b\r\n", 5);
  ASSERT_TRUE(file->Write(bytes.data(), bytes.size()));
  ASSERT_TRUE(file->Close());
  std::string back;
  ASSERT_TRUE(FileSystem::Posix().ReadWholeFile(path, &back));
  EXPECT_EQ(back, bytes);
  EXPECT_FALSE(FileSystem::Posix().ReadWholeFile(dir.File("missing"), &back));
  EXPECT_FALSE(FileSystem::Posix().ReadWholeFile(dir.path(), &back)) << "a folder";
  EXPECT_EQ(FileSystem::Posix().CreateAlways(dir.File("no/such/folder")), nullptr);
}

}  // namespace
}  // namespace quillora
