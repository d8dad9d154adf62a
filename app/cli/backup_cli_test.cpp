// backup, restore, archive and archive-restore end to end: the binary on
// fresh data folders.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/text.h"
#include "tests/backup_test_files.h"
#include "tests/run_quillora.h"
#include "tests/seed_data.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

using testing::RunQuillora;
using testing::RunResult;
using Args = std::vector<std::string>;

// A time entry to seed: its start "YYYY-MM-DDTHH:MM:SS" and client.
struct Seed {
  const char* start;
  const char* client;
};

class BackupCliTest : public ::testing::Test {
 protected:
  std::string Data(const std::string& name = "data") const { return dir_.File(name); }
  std::string File(const std::string& name) const { return dir_.File(name); }
  RunResult Run(const Args& args, const std::string& data = "data") {
    return RunQuillora(Data(data), args);
  }
  // Runs a command that must succeed silently.
  void Quiet(const Args& args, const std::string& data = "data") {
    const RunResult r = Run(args, data);
    EXPECT_EQ(r.status, 0) << args[0] << ": " << r.err;
    EXPECT_EQ(r.out + r.err, "") << args[0];
  }

  // Adds clients, each with a task, and entries of task "Work" to a data folder.
  void SeedData(const std::vector<Seed>& entries,
                const std::vector<std::u16string>& clients,
                const std::string& data = "data") {
    testing::SeedClients(Data(data), clients, u"Task of ");
    std::vector<TimeEntry> seeded;
    for (const Seed& s : entries) {
      seeded.push_back(testing::EntryAt(s.start, FromUtf8(s.client)));
      seeded.back().duration = 150;
    }
    testing::SeedEntries(Data(data), seeded);
  }

  // "start client" of every entry, in store order.
  std::string Entries(const std::string& data = "data") {
    std::string out;
    for (const TimeEntry& e : testing::StoredEntries(Data(data))) {
      SystemTime st;
      FileTimeToSystemTime(e.start, &st);
      out +=
          FormatIsoDateTime(st) + " " + ToUtf8(e.client) + (e.paid ? " paid" : "") + "\n";
    }
    return out;
  }

  std::string ClientList(const std::string& data = "data") {
    const RunResult r = Run({"client", "list"}, data);
    EXPECT_EQ(r.status, 0) << r.err;
    return r.out;
  }

  testing::TempDir dir_;
};

const std::vector<Seed> kEntries = {{"2024-03-01T00:00:00", "Acme"},
                                    {"2024-03-15T09:00:01", "Beta"},
                                    {"2024-03-31T23:59:59", "Acme"},
                                    {"2024-04-01T00:00:00", "Acme"}};

TEST_F(BackupCliTest, ABackupRestoresIntoAnotherDataFolder) {
  SeedData(kEntries, {u"Acme", u"Beta"});
  Quiet({"backup", File("all.qrd")});
  // The file's bytes and a second restore: backup/backup_test.cpp.
  SeedData({}, {u"Beta"}, "other");
  Quiet({"restore", File("all.qrd")}, "other");
  EXPECT_EQ(Entries("other"), Entries());
  EXPECT_EQ(ClientList("other"), "Acme\t2\nBeta\t1\n");
  EXPECT_EQ(Run({"task", "list", "Acme"}, "other").out, "Task of Acme\n");
}

TEST_F(BackupCliTest, AnExistingFileIsReplacedOnlyAfterTheQuestion) {
  SeedData(kEntries, {u"Acme"});
  testing::WriteFileBytes(File("old.qrd"), "keep me");
  const RunResult declined = Run({"backup", File("old.qrd")});
  EXPECT_EQ(declined.status, 1);
  EXPECT_EQ(declined.err, "Quillora: " + File("old.qrd") +
                              " already exists. Do you want to replace it? [y/n] n\n");
  EXPECT_EQ(testing::ReadFileBytes(File("old.qrd")), "keep me");
  EXPECT_EQ(Run({"--yes", "backup", File("old.qrd")}).status, 0);
  EXPECT_NE(testing::ReadFileBytes(File("old.qrd")), "keep me");
}

TEST_F(BackupCliTest, ADamagedFileIsRefusedWithItsMessage) {
  // One refusal a command: the messages of every refusal are pinned in
  // backup/backup_test.cpp and archive_test.cpp.
  testing::WriteFileBytes(File("junk.qrd"), "not a backup");
  const struct {
    const char* command;
    std::string err;
  } cases[] = {
      {"restore", "Restore has failed. Please select a different backup and try again."},
      {"archive-restore",
       "Archive file cannot be loaded. The file may be created by Quillora prior to "
       "version 2.3."},
  };
  for (const auto& c : cases) {
    const RunResult r = Run({c.command, File("junk.qrd")});
    EXPECT_EQ(r.status, 1) << c.command;
    EXPECT_EQ(r.err, "Quillora: " + c.err + "\n") << c.command;
    EXPECT_EQ(r.out, "") << c.command;
  }
  EXPECT_EQ(Entries(), "");
}

TEST_F(BackupCliTest, ADataArchiveMovesTheRangeOutAndBackIn) {
  SeedData(kEntries, {u"Acme"});
  Quiet({"archive", "--data", "--from", "2024-03-01", "--to", "2024-03-31", "--delete",
         File("march.qra")});
  // The entry at 00:00:00 of the first day stays out: the range starts after it.
  EXPECT_EQ(Entries(), "2024-03-01T00:00:00 Acme\n2024-04-01T00:00:00 Acme\n");
  const RunResult restored = Run({"archive-restore", File("march.qra")});
  EXPECT_EQ(restored.status, 0) << restored.err;
  EXPECT_EQ(restored.out, "Quillora: Archive file has been restored.\n");
  EXPECT_EQ(Entries(),
            "2024-03-01T00:00:00 Acme\n2024-03-15T09:00:01 Beta\n"
            "2024-03-31T23:59:59 Acme\n2024-04-01T00:00:00 Acme\n");
}

TEST_F(BackupCliTest, ADataArchiveWithoutAPeriodTakesTheViewsPeriodAtToday) {
  // Today is Saturday 2026-11-21; the default view is the week from Sunday
  // 2026-11-15.
  SeedData({{"2026-11-15T08:00:01", "In"},
            {"2026-11-21T23:59:59", "In"},
            {"2026-11-22T00:00:01", "Out"},
            {"2026-11-14T12:00:00", "Out"}},
           {});
  Quiet({"archive", "--data", File("week.qra")});
  auto archived = [&](const std::string& name) {
    return testing::Paths(testing::ReadCompoundFile(File(name)));
  };
  EXPECT_EQ(archived("week.qra"),
            "Records/\nRecords/Record0\nRecords/Record1\nDataVersion\n");
}

TEST_F(BackupCliTest, AClientArchiveTakesTheNamedClients) {
  SeedData(kEntries, {u"Acme", u"Beta", u"Gamma"});
  Quiet({"archive", "--clients", "Gamma,Acme", "--delete", File("clients.qra")});
  const auto file = testing::ReadCompoundFile(File("clients.qra"));
  EXPECT_EQ(testing::Hex(testing::StreamBytes(file, "DataVersion")), "dc00000004000000");
  EXPECT_EQ(ClientList(), "Beta\t2\n");
  EXPECT_EQ(Entries().size(), 4 * std::string("2024-03-01T00:00:00 Acme\n").size())
      << "entries are kept";

  const RunResult unknown = Run({"archive", "--clients", "Beta,Nobody", File("x.qra")});
  EXPECT_EQ(unknown.status, 1);
  EXPECT_EQ(unknown.err, "Quillora: There is no client named \"Nobody\".\n");
}

TEST_F(BackupCliTest, WrongUsageIsRefusedBeforeAnythingIsWritten) {
  for (const Args& bad : {Args{"backup"}, Args{"backup", "a", "b"}, Args{"restore"},
                          Args{"archive", File("x.qra")},
                          Args{"archive", "--data", "--clients", "A", File("x.qra")},
                          Args{"archive", "--clients", "A", "--day", File("x.qra")},
                          Args{"archive", "--clients", "A,,B", File("x.qra")},
                          Args{"archive-restore", "--delete", File("x.qra")}}) {
    const RunResult r = Run(bad);
    EXPECT_EQ(r.status, 2) << bad.back() << " " << bad.size() << ": " << r.err;
  }
  EXPECT_FALSE(FileSystem::Posix().Exists(File("x.qra")));
}

}  // namespace
}  // namespace quillora
