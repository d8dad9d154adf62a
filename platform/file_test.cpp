#include "platform/file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>

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
  EXPECT_FALSE(FileSystem::Posix().ReadWholeFile(dir.path(), &back, SIZE_MAX))
      << "a folder";
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

// Nothing but a regular file is read, and nothing but a regular file or a
// character device written; a FIFO no one opens at the other end is refused
// at once, naming the file and why.
TEST(FileTest, OnlyRegularFilesAndDevicesAreOpened) {
  testing::TempDir dir;
  const std::string fifo = dir.File("fifo");
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  const std::string big = dir.File("big");
  testing::WriteFileBytes(big, "");
  ASSERT_EQ(truncate(big.c_str(), 3000), 0);
  struct Case {
    std::string path;
    bool write;
    std::size_t limit;
    const char* reason;  // null: opened
  };
  const Case cases[] = {
      {fifo, false, SIZE_MAX, "not a regular file"},
      {fifo, true, SIZE_MAX, "not a regular file"},
      {dir.path(), false, SIZE_MAX, "Is a directory"},
      {dir.path(), true, SIZE_MAX, "not a regular file"},
      {big, false, 2999, "File too large"},
      {big, false, 3000, nullptr},
      {"/dev/null", true, SIZE_MAX, nullptr},
      {"/dev/null", false, SIZE_MAX, "not a regular file"},
      {dir.File("none/x"), true, SIZE_MAX, "No such file or directory"},
  };
  for (const Case& c : cases) {
    ClearLastFileFailure();
    std::string bytes;
    const bool opened = c.write
                            ? FileSystem::Posix().CreateAlways(c.path) != nullptr
                            : FileSystem::Posix().ReadWholeFile(c.path, &bytes, c.limit);
    SCOPED_TRACE(c.path + (c.write ? " write" : " read"));
    EXPECT_EQ(opened, c.reason == nullptr);
    EXPECT_EQ(DescribeLastFileFailure(), c.reason ? c.path + ": " + c.reason : "");
  }
}

TEST(FileTest, NewFilesArePrivateWhateverTheUmaskAndOldOnesKeepTheirMode) {
  testing::TempDir dir;
  const std::string old_file = dir.File("old");
  testing::WriteFileBytes(old_file, "x");
  ASSERT_EQ(chmod(old_file.c_str(), 0644), 0);
  const mode_t umask_was = umask(0);
  EXPECT_NE(FileSystem::Posix().CreateAlways(dir.File("new")), nullptr);
  EXPECT_NE(FileSystem::Posix().CreateAlways(old_file), nullptr);
  umask(umask_was);
  struct stat st {};
  ASSERT_EQ(stat(dir.File("new").c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0600u);
  ASSERT_EQ(stat(old_file.c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0644u);
  EXPECT_EQ(st.st_size, 0) << "replaced";
}

}  // namespace
}  // namespace quillora
