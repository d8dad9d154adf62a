// A really full file system: a small tmpfs mounted in a mount namespace of
// this test process (so it vanishes with the process). The binary keeps its
// data folder there while the disk fills. (The file writers' failures are
// tested at every write in write_failure_test.cpp, and the machine's own
// full-disk error in platform/file_test.cpp.) Skipped where the machine does
// not allow the mount (no root, no user namespaces).
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/run_quillora.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

using testing::RunQuillora;

// Mounts a tmpfs of `kib` KiB at `folder`; "" when done, else why not.
std::string MountSmallDisk(const std::string& folder, int kib) {
  static bool own_namespace = false;
  if (!own_namespace) {
    if (unshare(CLONE_NEWNS) != 0) return std::string("unshare: ") + std::strerror(errno);
    if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
      return std::string("private mounts: ") + std::strerror(errno);
    own_namespace = true;
  }
  const std::string options = "size=" + std::to_string(kib) + "k,mode=0700";
  if (mount("tmpfs", folder.c_str(), "tmpfs", MS_NOSUID | MS_NODEV, options.c_str()) != 0)
    return std::string("mount tmpfs: ") + std::strerror(errno);
  return "";
}

// Fills the disk of `folder` but `room` bytes with a file named "filler".
void Fill(const std::string& folder, std::size_t room) {
  const std::string path = folder + "/filler";
  const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  ASSERT_GE(fd, 0);
  const std::string block(4096, 'f');
  off_t size = 0;
  for (ssize_t n; (n = write(fd, block.data(), block.size())) > 0;) size += n;
  ASSERT_EQ(ftruncate(fd, size > static_cast<off_t>(room) ? size - room : 0), 0);
  close(fd);
}

std::string LongNote(int i) {
  std::string note;
  while (note.size() < 2000)
    note += "entry " + std::to_string(i) + " worked on the release\\n";
  return note;
}

class FullDiskTest : public ::testing::Test {
 protected:
  void SetUp() override {
    disk_ = dir_.File("disk");
    mkdir(disk_.c_str(), 0700);
    const std::string why = MountSmallDisk(disk_, 1024);
    if (!why.empty())
      GTEST_SKIP() << "no small tmpfs can be mounted here (" << why << ")";
    mounted_ = true;
  }
  void TearDown() override {
    if (mounted_) umount2(disk_.c_str(), MNT_DETACH);
  }

  testing::TempDir dir_;
  std::string disk_;
  bool mounted_ = false;
};

TEST_F(FullDiskTest, TheStoreOnAFillingDiskFailsCleanlyAndKeepsWhatItHad) {
  const std::string data = disk_ + "/data";
  ASSERT_EQ(RunQuillora(data, {"client", "add", "Acme"}).status, 0);
  Fill(disk_, 256 * 1024);
  std::set<std::string> printed;
  std::string failure;
  for (int i = 0; i < 200 && failure.empty(); ++i) {
    const auto r =
        RunQuillora(data, {"add", "--task", "Work", "--date", "2026-11-20", "--client",
                           "Acme", "--duration", "1", "--note", LongNote(i)});
    if (r.status == 0) {
      printed.insert(r.out.substr(0, r.out.find('\n')));
    } else {
      failure = r.err;
      EXPECT_EQ(r.status, 1) << r.err;
    }
  }
  ASSERT_FALSE(failure.empty()) << "the disk never filled";
  EXPECT_EQ(failure.find("locked"), std::string::npos) << failure;
  RecordProperty("full_disk_message", failure);
  // Everything added before the disk filled is there; nothing else.
  std::vector<std::string> listed;
  for (int attempt = 0; attempt < 2 && listed.empty(); ++attempt) {
    const auto r = RunQuillora(data, {"list", "--day", "2026-11-20", "--ids"});
    std::istringstream lines(r.out);
    for (std::string id; std::getline(lines, id);) listed.push_back(id);
    if (listed.empty()) unlink((disk_ + "/filler").c_str());  // reading needs room
  }
  EXPECT_EQ(std::set<std::string>(listed.begin(), listed.end()), printed) << failure;
  // Freed, the folder takes new entries again.
  unlink((disk_ + "/filler").c_str());
  const auto r = RunQuillora(data, {"add", "--task", "Work", "--date", "2026-11-20",
                                    "--client", "Acme", "--duration", "1"});
  EXPECT_EQ(r.status, 0) << r.err;
}

// An import that fills the disk stops with the system's message and exit 1,
// and keeps the batches it committed: a prefix of the file's names.
TEST_F(FullDiskTest, AnImportThatFillsTheDiskKeepsWhatItCommitted) {
  const std::string data = disk_ + "/data";
  ASSERT_EQ(RunQuillora(data, {"client", "add", "Acme"}).status, 0);
  std::string names;
  for (int i = 0; i < 100000; ++i) {
    char name[32];
    std::snprintf(name, sizeof name, "Client %06d\n", i);
    names += name;
  }
  const std::string list = dir_.File("clients.txt");
  testing::WriteFileBytes(list, names);
  Fill(disk_, 384 * 1024);
  const auto r = RunQuillora(data, {"import", "clients", list});
  EXPECT_EQ(r.status, 1) << r.out;
  EXPECT_NE(r.err.find("Quillora: Unable to import data."), std::string::npos) << r.err;
  unlink((disk_ + "/filler").c_str());
  const auto listed = RunQuillora(data, {"client", "list"});
  ASSERT_EQ(listed.status, 0) << listed.err;
  std::istringstream lines(listed.out);
  std::vector<std::string> clients;
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind("Client ", 0) == 0) clients.push_back(line.substr(0, line.find('\t')));
  }
  EXPECT_GT(clients.size(), 0u) << "the batches committed before the disk filled stay";
  EXPECT_LT(clients.size(), 100000u);
  for (std::size_t i = 0; i < clients.size(); ++i) {
    char name[32];
    std::snprintf(name, sizeof name, "Client %06zu", i);
    ASSERT_EQ(clients[i], name) << "not a prefix of the file";
  }
}

}  // namespace
}  // namespace quillora
