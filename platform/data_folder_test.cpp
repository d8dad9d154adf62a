#include "platform/data_folder.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/temp_dir.h"

namespace quillora {
namespace {

TEST(DataFolderTest, OwnDataFilesAreFoundByEveryPathThatLeadsToThem) {
  testing::TempDir dir;
  const std::string data = dir.File("data");
  std::string error;
  ASSERT_TRUE(PrepareDataFolder(data, &error)) << error;
  testing::WriteFileBytes(data + "/quillora.db", "v");
  testing::WriteFileBytes(data + "/registry.db", "r");
  testing::WriteFileBytes(dir.File("other.csv"), "o");
  ASSERT_EQ(link((data + "/quillora.db").c_str(), dir.File("hard").c_str()), 0);
  ASSERT_EQ(symlink((data + "/registry.db").c_str(), dir.File("soft").c_str()), 0);
  ASSERT_EQ(
      symlink((data + "/quillora.db-journal").c_str(), dir.File("dangling").c_str()), 0);
  ASSERT_EQ(symlink(data.c_str(), dir.File("folder-link").c_str()), 0);
  const struct {
    std::string path;
    bool own;
  } cases[] = {
      {data + "/quillora.db", true},
      {data + "/registry.db", true},
      {data + "/quillora.db-wal", true},  // not there yet
      {data + "/registry.db-shm", true},
      {data + "/./sub/../quillora.db", true},
      {dir.File("folder-link") + "/registry.db-journal", true},
      {dir.File("hard"), true},
      {dir.File("soft"), true},
      {dir.File("dangling"), true},
      {dir.File("other.csv"), false},
      {data + "/quillora.db.bak", false},
      {data + "/export.csv", false},
  };
  for (const auto& c : cases) EXPECT_EQ(IsOwnDataFile(data, c.path), c.own) << c.path;
  // A relative path is resolved from the working folder.
  char cwd[4096];
  ASSERT_NE(getcwd(cwd, sizeof cwd), nullptr);
  ASSERT_EQ(chdir(data.c_str()), 0);
  EXPECT_TRUE(IsOwnDataFile(data, "quillora.db"));
  ASSERT_EQ(chdir(cwd), 0);
}

}  // namespace
}  // namespace quillora
