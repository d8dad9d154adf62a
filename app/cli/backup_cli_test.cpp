// backup, restore, archive and archive-restore end to end: the binary on
// fresh data folders.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/text.h"
#include "store/client_store.h"
#include "store/data_context.h"
#include "store/time_entry.h"
#include "tests/backup_test_files.h"
#include "tests/run_quillora.h"
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

  // Adds clients and entries to a data folder through the library.
  void SeedData(const std::vector<Seed>& entries,
                const std::vector<std::u16string>& clients,
                const std::string& data = "data") {
    DataContext context;
    std::string error;
    ASSERT_TRUE(OpenDataContext(Data(data), &context, &error)) << error;
    ASSERT_TRUE(OpenCatalogue(&context));
    for (const std::u16string& c : clients) {
      const ClientId number = AddClient(context.catalogue->clients, c);
      ASSERT_NE(number, 0u);
      AddItem(context.catalogue->tasks, *context.locale, number, u"Task of " + c);
    }
    EntryStore store(*context.volume);
    ASSERT_TRUE(store.Open());
    for (const Seed& s : entries) {
      TimeEntry e;
      const auto start = ParseIsoDateTime(s.start);
      ASSERT_TRUE(start && SystemTimeToFileTime(*start, &e.start)) << s.start;
      e.client = FromUtf8(s.client);
      e.task = u"Work";
      e.duration = 150;
      ASSERT_TRUE(AddEntry(store, e));
    }
  }

  // "start client" of every entry, in store order.
  std::string Entries(const std::string& data = "data") {
    DataContext context;
    std::string error;
    EXPECT_TRUE(OpenDataContext(Data(data), &context, &error)) << error;
    EntryStore store(*context.volume);
    EXPECT_TRUE(store.Open());
    std::string out;
    TimeEntry e;
    store.Seek(SeekType::kBeginning, 0);
    while (ReadEntry(store, &e) == 0) {
      SystemTime st;
      FileTimeToSystemTime(e.start, &st);
      out +=
          FormatIsoDateTime(st) + " " + ToUtf8(e.client) + (e.paid ? " paid" : "") + "\n";
      store.Seek(SeekType::kCurrent, 1);
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

TEST_F(BackupCliTest, ABackupRestoresIntoAnotherDataFolderAndAddsOnEveryRestore) {
  SeedData(kEntries, {u"Acme", u"Beta"});
  Quiet({"backup", File("all.qrd")});
  const auto file = testing::ReadCompoundFile(File("all.qrd"));
  EXPECT_EQ(testing::Hex(testing::StreamBytes(file, "DataVersion")), "dc00000001000000");

  SeedData({}, {u"Beta"}, "other");
  Quiet({"restore", File("all.qrd")}, "other");
  EXPECT_EQ(Entries("other"), Entries());
  EXPECT_EQ(ClientList("other"), "Acme\t2\nBeta\t1\n");
  Quiet({"restore", File("all.qrd")}, "other");
  EXPECT_EQ(Entries("other").size(), 2 * Entries().size());
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

TEST_F(BackupCliTest, DamagedAndForeignFilesAreRefusedWithTheirMessages) {
  testing::WriteFileBytes(File("junk.qrd"), "not a backup");
  ASSERT_TRUE(testing::WriteCompoundFile(
      File("v219.qrd"),
      {{"DataVersion", std::string("\xdb\x00\x00\x00\x01\x00\x00\x00", 8)}}));
  const struct {
    Args args;
    int status;
    std::string err;
    std::string out;
  } cases[] = {
      {{"restore", File("junk.qrd")},
       1,
       "Quillora: Restore has failed. Please select a different backup and try again.\n",
       ""},
      {{"restore", File("missing.qrd")},
       1,
       "Quillora: Restore has failed. Please select a different backup and try again.\n",
       ""},
      {{"restore", File("v219.qrd")},
       1,
       "Quillora: This backup file is not supported and cannot be used to restore data. "
       "Please select a different backup file.\n",
       ""},
      {{"archive-restore", File("junk.qrd")},
       1,
       "Quillora: Archive file cannot be loaded. The file may be created by Quillora "
       "prior "
       "to version 2.3.\n",
       ""},
      // Another data version is refused without a message.
      {{"archive-restore", File("v219.qrd")}, 1, "", ""},
      {{"backup", File("no/such/folder/x.qrd")},
       1,
       "Quillora: Backup has failed. Please make sure you have enough space on the "
       "storage "
       "device.\n",
       ""},
  };
  for (const auto& c : cases) {
    const RunResult r = Run(c.args);
    EXPECT_EQ(r.status, c.status) << c.args[1];
    EXPECT_EQ(r.err, c.err) << c.args[1];
    EXPECT_EQ(r.out, c.out) << c.args[1];
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
  Quiet({"archive", "--data", "--day", "2026-11-14", File("day.qra")});
  Quiet(
      {"archive", "--data", "--custom", "2026-11-14", "2026-11-22", File("custom.qra")});
  auto archived = [&](const std::string& name) {
    return testing::Paths(testing::ReadCompoundFile(File(name)));
  };
  EXPECT_EQ(archived("week.qra"),
            "Records/\nRecords/Record0\nRecords/Record1\nDataVersion\n");
  EXPECT_EQ(archived("day.qra"), "Records/\nRecords/Record0\nDataVersion\n");
  EXPECT_EQ(
      archived("custom.qra"),
      "Records/\nRecords/Record0\nRecords/Record1\nRecords/Record2\nRecords/Record3\n"
      "DataVersion\n");
}

TEST_F(BackupCliTest, AClientArchiveTakesTheNamedClientsAndIsNeverRestored) {
  SeedData(kEntries, {u"Acme", u"Beta", u"Gamma"});
  Quiet({"archive", "--clients", "Gamma,Acme", "--delete", File("clients.qra")});
  const auto file = testing::ReadCompoundFile(File("clients.qra"));
  EXPECT_EQ(testing::Hex(testing::StreamBytes(file, "DataVersion")), "dc00000004000000");
  EXPECT_EQ(ClientList(), "Beta\t2\n");
  EXPECT_EQ(Entries().size(), 4 * std::string("2024-03-01T00:00:00 Acme\n").size())
      << "entries are kept";

  const RunResult r = Run({"archive-restore", File("clients.qra")});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "Quillora: Only Archive file with data can be restored.\n");
  EXPECT_EQ(ClientList(), "Beta\t2\n");

  const RunResult unknown = Run({"archive", "--clients", "Beta,Nobody", File("x.qra")});
  EXPECT_EQ(unknown.status, 1);
  EXPECT_EQ(unknown.err, "Quillora: There is no client named \"Nobody\".\n");
}

TEST_F(BackupCliTest, WrongUsageIsRefusedBeforeAnythingIsWritten) {
  for (const Args& bad :
       {Args{"backup"}, Args{"backup", "a", "b"}, Args{"restore"},
        Args{"archive", File("x.qra")},
        Args{"archive", "--data", "--clients", "A", File("x.qra")},
        Args{"archive", "--clients", "A", "--day", File("x.qra")},
        Args{"archive", "--clients", "A,,B", File("x.qra")},
        Args{"archive", "--data", "--day", "2024-02-30", File("x.qra")},
        Args{"archive", "--data", "--week", "--month", File("x.qra")},
        Args{"archive", "--data", "--from", "2024-01-01", File("x.qra")},
        Args{"archive-restore", "--delete", File("x.qra")}}) {
    const RunResult r = Run(bad);
    EXPECT_EQ(r.status, 2) << bad.back() << " " << bad.size() << ": " << r.err;
  }
  EXPECT_FALSE(FileSystem::Posix().Exists(File("x.qra")));
}

}  // namespace
}  // namespace quillora
