// A really full file system: a small tmpfs mounted in a mount namespace of
// this test process (so it vanishes with the process). The binary writes its
// exports, report, backup and archive there, and keeps its data folder there
// while the disk fills. Skipped where the machine does not allow the mount
// (no root, no user namespaces).
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

std::vector<std::string> Ids(const std::string& data) {
  const auto r = RunQuillora(data, {"list", "--custom", "2026-01-01", "2026-12-31", "--ids"});
  EXPECT_EQ(r.status, 0) << r.err;
  std::vector<std::string> ids;
  std::istringstream lines(r.out);
  for (std::string id; std::getline(lines, id);) ids.push_back(id);
  return ids;
}

std::string LongNote(int i) {
  std::string note;
  while (note.size() < 2000) note += "entry " + std::to_string(i) + " worked on the release\\n";
  return note;
}

class FullDiskTest : public ::testing::Test {
 protected:
  void SetUp() override {
    disk_ = dir_.File("disk");
    mkdir(disk_.c_str(), 0700);
    const std::string why = MountSmallDisk(disk_, 1024);
    if (!why.empty()) GTEST_SKIP() << "no small tmpfs can be mounted here (" << why << ")";
    mounted_ = true;
  }
  void TearDown() override {
    if (mounted_) umount2(disk_.c_str(), MNT_DETACH);
  }

  testing::TempDir dir_;
  std::string disk_;
  bool mounted_ = false;
};

TEST_F(FullDiskTest, EveryFileWriterReportsAFullDiskAndChangesNoStore) {
  const std::string data = dir_.File("data");
  for (int i = 0; i < 30; ++i) {
    ASSERT_EQ(RunQuillora(data, {"add", "--task", "Work", "--date", "2026-11-" + std::to_string(10 + i % 18),
                                 "--client", "Client " + std::to_string(i % 3), "--duration",
                                 "1.25", "--note", LongNote(i)})
                  .status,
              0);
  }
  ASSERT_EQ(RunQuillora(data, {"--yes", "report-def", "save", "R", "--type", "Tabular"}).status, 0);
  for (const char* client : {"Client 0", "Client 1", "Client 2"})
    ASSERT_EQ(RunQuillora(data, {"client", "add", client}).status, 0);
  const std::vector<std::string> before = Ids(data);
  ASSERT_EQ(before.size(), 30u);

  struct Case {
    std::vector<std::string> args;  // the output file is appended
    std::size_t room;
    const char* message;  // on stderr
  };
  const Case cases[] = {
      {{"export", "csv", "--month", "2026-11-10"}, 8192, "Export failed."},
      {{"export", "xml", "--month", "2026-11-10"}, 8192, "Export failed."},
      {{"summary", "--month", "2026-11-10", "--csv"}, 0, ""},
      {{"export-list", "clients"}, 0, "Unable to export the list."},
      {{"report", "R", "--month", "2026-11-10"}, 1024, "Report generation has failed."},
      {{"backup"}, 8192, "Backup has failed."},
      {{"archive", "--data", "--month", "2026-11-10", "--delete"}, 8192,
       "Archive operation has failed."},
  };
  for (const Case& c : cases) {
    std::vector<std::string> args = c.args;
    args.insert(args.begin(), "--yes");
    args.push_back(disk_ + "/out");
    SCOPED_TRACE(args[1]);
    Fill(disk_, c.room);
    const auto r = RunQuillora(data, args);
    EXPECT_EQ(r.status, 1) << r.out << r.err;
    EXPECT_NE(r.err.find(c.message), std::string::npos) << r.err;
    EXPECT_EQ(r.err.find("locked"), std::string::npos) << r.err;
    EXPECT_EQ(Ids(data), before) << "the store changed";
    unlink((disk_ + "/out").c_str());
    unlink((disk_ + "/filler").c_str());
    // With room again the same command works.
    const auto again = RunQuillora(data, args);
    EXPECT_EQ(again.status, 0) << again.err;
    if (c.args[0] == "archive") {
      EXPECT_TRUE(Ids(data).empty()) << "the archived month is deleted once written";
    } else {
      EXPECT_EQ(Ids(data), before);
    }
    unlink((disk_ + "/out").c_str());
  }
}

TEST_F(FullDiskTest, TheStoreOnAFillingDiskFailsCleanlyAndKeepsWhatItHad) {
  const std::string data = disk_ + "/data";
  ASSERT_EQ(RunQuillora(data, {"client", "add", "Acme"}).status, 0);
  Fill(disk_, 256 * 1024);
  std::set<std::string> printed;
  std::string failure;
  for (int i = 0; i < 200 && failure.empty(); ++i) {
    const auto r = RunQuillora(data, {"add", "--task", "Work", "--date", "2026-11-20", "--client", "Acme",
                                      "--duration", "1", "--note", LongNote(i)});
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
  const auto r = RunQuillora(data, {"add", "--task", "Work", "--date", "2026-11-20", "--client", "Acme",
                                    "--duration", "1"});
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
