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

// Where the machine lets no small disk be mounted (tests/full_disk_test.cpp),
// /dev/full is the only full disk the writers meet.
TEST(FileTest, AFullDiskFailsTheWriteOrAtLatestTheClose) {
  auto full = FileSystem::Posix().CreateAlways("/dev/full");
  if (!full) GTEST_SKIP() << "no /dev/full";
  // Small writes are gathered; the full disk shows at the latest on closing.
  full->Write("x", 1);
  EXPECT_FALSE(full->Close());
  auto big = FileSystem::Posix().CreateAlways("/dev/full");
  const std::string block(200 * 1024, 'y');
  EXPECT_FALSE(big->Write(block.data(), block.size()));
  EXPECT_FALSE(big->Write("z", 1)) << "nothing more after a failed write";
}

}  // namespace
}  // namespace quillora
