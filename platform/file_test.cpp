#include "platform/file.h"

#include <gtest/gtest.h>

#include "tests/faulty_file_system.h"
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
  ASSERT_TRUE(FileSystem::Posix().ReadWholeFile(path, &back, SIZE_MAX));
  EXPECT_EQ(back, bytes);
  EXPECT_FALSE(FileSystem::Posix().ReadWholeFile(dir.File("missing"), &back, SIZE_MAX));
  EXPECT_FALSE(FileSystem::Posix().ReadWholeFile(dir.path(), &back, SIZE_MAX)) << "a folder";
  EXPECT_EQ(FileSystem::Posix().CreateAlways(dir.File("no/such/folder")), nullptr);
}

TEST(FileTest, AFullDiskKeepsWhatFitAndFailsTheRest) {
  testing::TempDir dir;
  testing::FaultyFileSystem fs;
  fs.disk_bytes = 7;
  auto file = fs.CreateAlways(dir.File("f"));
  EXPECT_TRUE(file->Write("abcd", 4));
  EXPECT_FALSE(file->Write("efgh", 4));
  EXPECT_FALSE(file->Write("ij", 2));
  file->Close();
  std::string back;
  fs.ReadWholeFile(dir.File("f"), &back, SIZE_MAX);
  EXPECT_EQ(back, "abcdefg");

  testing::FaultyFileSystem third;
  third.fail_write_number = 3;
  auto g = third.CreateAlways(dir.File("g"));
  EXPECT_TRUE(g->Write("1", 1));
  EXPECT_TRUE(g->Write("2", 1));
  EXPECT_FALSE(g->Write("3", 1));
  EXPECT_TRUE(g->Write("4", 1));
  EXPECT_TRUE(g->Close());
  third.ReadWholeFile(dir.File("g"), &back, SIZE_MAX);
  EXPECT_EQ(back, "124");
  if (auto full = FileSystem::Posix().CreateAlways("/dev/full")) {
    // Small writes are gathered; the full disk shows at the latest on closing.
    full->Write("x", 1);
    EXPECT_FALSE(full->Close());
    auto big = FileSystem::Posix().CreateAlways("/dev/full");
    const std::string block(200 * 1024, 'y');
    EXPECT_FALSE(big->Write(block.data(), block.size()));
    EXPECT_FALSE(big->Write("z", 1)) << "nothing more after a failed write";
  }
}

}  // namespace
}  // namespace quillora
