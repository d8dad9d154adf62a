#include "backup/backup.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "backup/backup_streams.h"
#include "backup/backup_test_fixture.h"
#include "store/string_table.h"

namespace quillora {
namespace {

using testing::At;
using testing::FileElement;
using testing::Hex;
using testing::Paths;
using testing::ReadCompoundFile;
using testing::StreamBytes;
using testing::WriteCompoundFile;

class BackupTest : public testing::BackupFixture {
 protected:
  bool BackUp(testing::TestData& data, const std::string& path,
              FileSystem& files = FileSystem::Posix()) {
    BackupWriter writer(data.entries, data.catalogue, *locale_);
    return Backup(writer, files, path);
  }
  int RestoreInto(testing::TestData& data, const std::string& path) {
    BackupWriter writer(data.entries, data.catalogue, *locale_);
    return Restore(writer, FileSystem::Posix(), path);
  }

  // Entries of every kind of field, and two clients with catalogue data.
  void Fill(testing::TestData& data) {
    TimeEntry e;
    e.start = At(2024, 3, 1, 9, 30, 1);
    e.client = u"Acme";
    e.project = u"Web";
    e.phase = u"Build";
    e.task = u"Design";
    e.currency = u"EUR";
    e.billTo = u"Bob Acme";
    e.custom1 = u"\u00e9t\u00e9";
    e.custom2 = u"\U0001F600";
    e.custom3 = u"three";
    e.duration = 65535;
    e.rate = 4294967295u;
    e.rateType = kRateDiscount;
    e.billable = true;
    e.paid = true;
    const std::uint8_t note[] = {0, 0xFF, 'a', 0x80};
    SetNote(&e, 4, note);
    ASSERT_TRUE(AddEntry(data.entries, e));
    AddAt(data, At(2024, 2, 28), u"Beta", 25);
    AddAt(data, At(2024, 2, 28), u"", 0);
    AddClientWithCatalogue(data, u"Beta");
    AddClientWithCatalogue(data, u"Acme");
  }
};

TEST_F(BackupTest, ABackupOfAnEmptyProgramHoldsTheVersionAndTwoEmptyStorages) {
  ASSERT_TRUE(BackUp(a_, File("empty.qrd")));
  const auto file = ReadCompoundFile(File("empty.qrd"));
  EXPECT_EQ(Paths(file), "Clients/\nRecords/\nDataVersion\n");
  EXPECT_EQ(Hex(StreamBytes(file, "DataVersion")), "dc00000001000000");
}

TEST_F(BackupTest, EachEntryIsARecordStreamAndEachClientAStorageOfFiveStreams) {
  AddAt(a_, At(2024, 1, 2), u"Acme");
  AddAt(a_, At(2024, 1, 1), u"Acme");
  AddClientWithCatalogue(a_, u"Acme");
  ASSERT_TRUE(BackUp(a_, File("one.qrd")));
  const auto file = ReadCompoundFile(File("one.qrd"));
  EXPECT_EQ(
      Paths(file),
      "Clients/\nClients/Client0/\nClients/Client0/Name\nClients/Client0/Rates\n"
      "Clients/Client0/Tasks\nClients/Client0/Contacts\nClients/Client0/ProjectTasks\n"
      "Records/\nRecords/Record0\nRecords/Record1\nDataVersion\n");
  // Store order: the earlier entry is Record0.
  TimeEntry first;
  ASSERT_TRUE(DecodeEntryRecord(StreamBytes(file, "Records/Record0"), &first));
  EXPECT_EQ(first.start, At(2024, 1, 1));
  const std::string c = "Clients/Client0/";
  EXPECT_EQ(Hex(StreamBytes(file, c + "Name")),
            "0400000041006300"
            "6d006500");
  EXPECT_EQ(Hex(StreamBytes(file, c + "Tasks")),
            "01000000"
            "05000000"
            "410064006d0069006e00");
  // Overtime, 45.50, flag set; the description is not written.
  EXPECT_EQ(Hex(StreamBytes(file, c + "Rates")),
            "01000000"
            "01000000"
            "c6110000"
            "01");
  std::vector<ProjectRecord> projects;
  ASSERT_TRUE(DecodeProjectTasks(StreamBytes(file, c + "ProjectTasks"), &projects));
  ASSERT_EQ(projects.size(), 2u);
  EXPECT_EQ(projects[1].project + u"/" + projects[1].task, u"Web/Design");
}

TEST_F(BackupTest, ARestoreAddsToWhatIsThereAndNeverAddsAClientTwice) {
  Fill(a_);
  ASSERT_TRUE(BackUp(a_, File("full.qrd")));
  AddAt(b_, At(2023, 5, 5), u"Old");
  const ClientId acme = AddClient(b_.catalogue.clients, u"Acme");
  AddItem(b_.catalogue.tasks, *locale_, acme, u"Admin");
  AddItem(b_.catalogue.tasks, *locale_, acme, u"admin");
  AddClient(b_.catalogue.clients, u"Old");
  const std::string old_entries = EntryTexts(b_);

  ASSERT_EQ(RestoreInto(b_, File("full.qrd")), kRestoreOk);
  EXPECT_EQ(EntryCount(b_), 4);
  EXPECT_NE(EntryTexts(b_).find(old_entries), std::string::npos);
  const std::string once = CatalogueText(b_);
  EXPECT_EQ(once,
            "Acme#1 projects[Web/ Web/Design ] tasks[Admin admin ] contacts[Bob Acme ] "
            "rates[1:4550:1: ]\n"
            "Beta#3 projects[Web/ Web/Design ] tasks[Admin ] contacts[Bob Beta ] "
            "rates[1:4550:1: ]\n"
            "Old#2 projects[] tasks[] contacts[] rates[]\n");

  // Twice: the entries double, the catalogue stays as it was.
  ASSERT_EQ(RestoreInto(b_, File("full.qrd")), kRestoreOk);
  EXPECT_EQ(EntryCount(b_), 7);
  EXPECT_EQ(CatalogueText(b_), once);
}

TEST_F(BackupTest, OnlyDataVersion220IsRestoredAndAnyContentWordIsABackup) {
  AddAt(a_, At(2024, 1, 1), u"Acme");
  ASSERT_TRUE(BackUp(a_, File("good.qrd")));
  const std::string record =
      StreamBytes(ReadCompoundFile(File("good.qrd")), "Records/Record0");
  struct Case {
    std::string version;
    int result;
  };
  const Case cases[] = {
      {std::string("\xdb\x00\x00\x00\x01\x00\x00\x00", 8), kRestoreVersionNotSupported},
      {std::string("\xdd\x00\x00\x00\x01\x00\x00\x00", 8), kRestoreVersionNotSupported},
      {std::string("\x00\x00\x00\xdc\x01\x00\x00\x00", 8), kRestoreVersionNotSupported},
      {std::string("\xdb\x00", 2), kRestoreFailed},
      {std::string("\xdc\x00\x00\x00", 4), kRestoreFailed},
      {std::string("\xdc\x00\x00\x00\x02\x00\x00\x00", 8), kRestoreOk},
      {std::string("\xdc\x00\x00\x00\x04\x00\x00\x00\xff", 9), kRestoreOk},
  };
  int expected_entries = 0;
  for (const Case& c : cases) {
    ASSERT_TRUE(WriteCompoundFile(File("v.qrd"), {{"DataVersion", c.version},
                                                  {"Records/", ""},
                                                  {"Records/Record0", record},
                                                  {"Clients/", ""}}));
    EXPECT_EQ(RestoreInto(b_, File("v.qrd")), c.result) << Hex(c.version);
    if (c.result == kRestoreOk) ++expected_entries;
    EXPECT_EQ(EntryCount(b_), expected_entries) << Hex(c.version);
  }
}

TEST_F(BackupTest, DamagedFilesAreRefusedWithoutChangingAnythingTheyCouldNotRead) {
  AddAt(a_, At(2024, 1, 1), u"Acme");
  AddClientWithCatalogue(a_, u"Acme");
  ASSERT_TRUE(BackUp(a_, File("good.qrd")));
  const auto good = ReadCompoundFile(File("good.qrd"));
  const std::string version = StreamBytes(good, "DataVersion");
  const std::string record = StreamBytes(good, "Records/Record0");

  // Each case names the elements kept; "Records/Record0" is replaced by
  // `record_bytes` when that is given.
  struct Case {
    const char* what;
    std::vector<FileElement> elements;
  };
  auto without = [&](const std::string& path) {
    std::vector<FileElement> kept;
    for (const FileElement& e : good) {
      if (e.path.rfind(path, 0) != 0) kept.push_back(e);
    }
    return kept;
  };
  auto replaced = [&](const std::string& path, const std::string& bytes) {
    std::vector<FileElement> out = good;
    for (FileElement& e : out) {
      if (e.path == path) e.bytes = bytes;
    }
    return out;
  };
  const Case before_entries[] = {
      {"no DataVersion", without("DataVersion")},
      {"no Records", without("Records/")},
      {"a record cut short", replaced("Records/Record0", record.substr(0, 20))},
      {"a storage among the records",
       {{"DataVersion", version}, {"Records/", ""}, {"Records/Record0/", ""}}},
  };
  for (const Case& c : before_entries) {
    ASSERT_TRUE(WriteCompoundFile(File("bad.qrd"), c.elements)) << c.what;
    EXPECT_EQ(RestoreInto(b_, File("bad.qrd")), kRestoreFailed) << c.what;
    EXPECT_EQ(EntryCount(b_), 0) << c.what;
    EXPECT_EQ(CatalogueText(b_), "") << c.what;
  }

  // Broken in the clients: the entry read before the failure stays.
  const Case in_clients[] = {
      {"no Clients", without("Clients/")},
      {"no Rates", without("Clients/Client0/Rates")},
      {"a stream among the clients",
       {{"DataVersion", version},
        {"Records/", ""},
        {"Clients/", ""},
        {"Clients/Client0", ""}}},
      {"a damaged task count",
       replaced("Clients/Client0/Tasks", std::string("\x05\x00\x00\x00", 4))},
  };
  int entries = 0;
  for (const Case& c : in_clients) {
    ASSERT_TRUE(WriteCompoundFile(File("bad.qrd"), c.elements)) << c.what;
    EXPECT_EQ(RestoreInto(b_, File("bad.qrd")), kRestoreFailed) << c.what;
    entries += StreamBytes(c.elements, "Records/Record0").empty() ? 0 : 1;
    EXPECT_EQ(EntryCount(b_), entries) << c.what;
  }

  // Not a compound file at all (cut files: compound_file_test.cpp).
  const std::vector<std::pair<std::string, std::string>> raw = {
      {"missing", ""}, {"empty", ""}, {"text", "DataVersion 220"}};
  for (const auto& [what, bytes] : raw) {
    const std::string path = File(what == "missing" ? "nowhere.qrd" : "raw.qrd");
    if (what != "missing") testing::WriteFileBytes(path, bytes);
    EXPECT_EQ(RestoreInto(b_, path), kRestoreFailed) << what;
  }
  EXPECT_EQ(EntryCount(b_), entries);
}

TEST_F(BackupTest, AFailureMidRestoreKeepsTheRecordsAddedBeforeIt) {
  // More records than one batch holds, then a damaged one: the container's
  // order puts the longest name last.
  std::vector<FileElement> elements = {
      {"DataVersion", std::string("\xdc\x00\x00\x00\x01\x00\x00\x00", 8)},
      {"Records/", ""}};
  TimeEntry e;
  e.client = u"Acme";
  for (int i = 0; i < 1030; ++i) {
    e.start = At(2024, 1, 1) + static_cast<FileTime>(i) * kTicksPerMinute;
    elements.push_back({"Records/Record" + std::to_string(i), EncodeEntryRecord(e)});
  }
  elements.push_back({"Records/Record99999", "short"});
  ASSERT_TRUE(WriteCompoundFile(File("mid.qrd"), elements));
  EXPECT_EQ(RestoreInto(b_, File("mid.qrd")), kRestoreFailed);

  // Another connection sees them all: they were committed.
  std::string error;
  auto other = OpenSqliteObjectStore(b_.volume.dir().File("quillora.db"), &error);
  ASSERT_NE(other, nullptr) << error;
  EntryStore entries(*other);
  ASSERT_TRUE(entries.Open());
  DatabaseInfo info;
  other->GetDatabaseInfo(entries.database_id(), &info);
  EXPECT_EQ(info.record_count, 1030u);
}

TEST_F(BackupTest, TheBackupCommandCountsEntriesAndClientsFromOne) {
  AddAt(a_, At(2024, 1, 1), u"Acme");
  AddAt(a_, At(2024, 1, 2), u"Acme");
  AddClientWithCatalogue(a_, u"Acme");
  prompt_.files.push_back(File("c.qrd"));
  EXPECT_EQ(
      BackupCommand(a_.entries, a_.catalogue, *locale_, prompt_, FileSystem::Posix()),
      BackupOutcome::kDone);
  ASSERT_EQ(prompt_.choosers.size(), 1u);
  EXPECT_EQ(prompt_.choosers[0].filter, u"Backup Files (*.qrd)|*.qrd|");
  EXPECT_EQ(prompt_.choosers[0].default_extension, u"qrd");
  EXPECT_EQ(prompt_.choosers[0].flags, kFileOverwritePrompt | kFileHideReadOnly);
  EXPECT_EQ(
      prompt_.progress_title,
      u"Please wait while backup is in progress. You must not turn off the Pocket PC. "
      u"This may take a few minutes.");
  EXPECT_EQ(prompt_.progress_total, 3);
  EXPECT_EQ(prompt_.progress_texts,
            (std::vector<std::u16string>{
                u"Backing up record 1...", u"Backing up record 1...",
                u"Backing up record 2...", u"Backing up record 3..."}));
  EXPECT_EQ(prompt_.progress_ends, 1);
  EXPECT_TRUE(prompt_.shown.empty());

  // Cancelled: nothing happens.
  EXPECT_EQ(
      BackupCommand(a_.entries, a_.catalogue, *locale_, prompt_, FileSystem::Posix()),
      BackupOutcome::kCancelled);
  EXPECT_TRUE(prompt_.shown.empty());
}

// Reads every file from another path: what was written is not what is read.
class SwappedReads : public FileSystem {
 public:
  explicit SwappedReads(std::string read_path) : read_path_(std::move(read_path)) {}
  std::unique_ptr<WritableFile> CreateAlways(const std::string& path) override {
    return FileSystem::Posix().CreateAlways(path);
  }
  bool ReadWholeFile(const std::string&, std::string* bytes) override {
    return FileSystem::Posix().ReadWholeFile(read_path_, bytes);
  }
  bool Exists(const std::string& path) override {
    return FileSystem::Posix().Exists(path);
  }

 private:
  std::string read_path_;
};

// Failed writes are in tests/write_failure_test.cpp; here the read-back check.
TEST_F(BackupTest, ABackupThatReadsBackDifferentIsReportedAndItsFileLeftInPlace) {
  for (int i = 0; i < 40; ++i) AddAt(a_, At(2024, 1, 1) + i * kTicksPerHour, u"Acme");
  AddClientWithCatalogue(a_, u"Acme");
  // The file read back is a good backup, but of other data.
  ASSERT_TRUE(BackUp(b_, File("other.qrd")));
  SwappedReads swapped(File("other.qrd"));
  prompt_.files.push_back(File("f.qrd"));
  EXPECT_EQ(BackupCommand(a_.entries, a_.catalogue, *locale_, prompt_, swapped),
            BackupOutcome::kFailed);
  ASSERT_EQ(prompt_.Texts(), std::vector<std::u16string>{
                                 u"Backup has failed. Please make sure you have enough "
                                 u"space on the storage device."});
  EXPECT_EQ(prompt_.shown[0].icon, MessageIcon::kError);
  EXPECT_TRUE(FileSystem::Posix().Exists(File("f.qrd")));
  EXPECT_EQ(EntryCount(a_), 40);
}

TEST_F(BackupTest, TheRestoreCommandReportsFailuresAndUnsupportedFiles) {
  AddAt(a_, At(2024, 1, 1), u"Acme");
  ASSERT_TRUE(BackUp(a_, File("good.qrd")));
  ASSERT_TRUE(WriteCompoundFile(
      File("221.qrd"),
      {{"DataVersion", std::string("\xdd\x00\x00\x00\x01\x00\x00\x00", 8)}}));
  testing::WriteFileBytes(File("junk.qrd"), "junk");
  struct Case {
    std::optional<std::string> file;
    int result;
    std::vector<std::u16string> messages;
  };
  const Case cases[] = {
      {std::nullopt, kRestoreCancelled, {}},
      {File("good.qrd"), kRestoreOk, {}},
      {File("junk.qrd"),
       kRestoreFailed,
       {u"Restore has failed. Please select a different backup and try again."}},
      {File("221.qrd"),
       kRestoreVersionNotSupported,
       {u"This backup file is not supported and cannot be used to restore data. Please "
        u"select a different backup file."}},
  };
  for (const Case& c : cases) {
    prompt_.shown.clear();
    prompt_.files.push_back(c.file);
    EXPECT_EQ(
        RestoreCommand(b_.entries, b_.catalogue, *locale_, prompt_, FileSystem::Posix()),
        c.result)
        << c.file.value_or("cancelled");
    EXPECT_EQ(prompt_.Texts(), c.messages) << c.file.value_or("cancelled");
  }
  EXPECT_EQ(prompt_.choosers.back().flags, 0x804u);
  EXPECT_EQ(prompt_.progress_title,
            u"Data restore is in progress. Please do not turn off the Pocket PC. Please "
            u"wait...");
  EXPECT_EQ(EntryCount(b_), 1);
}

}  // namespace
}  // namespace quillora
