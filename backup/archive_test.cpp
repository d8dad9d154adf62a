#include "backup/archive.h"

#include <gtest/gtest.h>

#include "backup/backup_streams.h"
#include "backup/backup_test_fixture.h"

namespace quillora {
namespace {

using testing::At;
using testing::Hex;
using testing::Paths;
using testing::ReadCompoundFile;
using testing::StreamBytes;
using testing::WriteCompoundFile;

class ArchiveTest : public testing::BackupFixture {
 protected:
  void SetUp() override {
    // The range is March 2024; entries at its very start, inside, at its very
    // end and just after it, and one before.
    AddAt(a_, At(2024, 2, 29, 23, 59, 1), u"Before");
    AddAt(a_, kStart, u"AtStart");
    AddAt(a_, At(2024, 3, 15, 9, 0, 1), u"Inside");
    AddAt(a_, kEnd, u"AtEnd");
    AddAt(a_, kEnd + 1, u"After");
  }

  BackupOutcome Archive(const ArchiveRequest& request,
                        FileSystem& files = FileSystem::Posix()) {
    prompt_.files.push_back(File("a.qra"));
    return ArchiveCommand(a_.entries, a_.catalogue, *locale_, prompt_, files, request);
  }
  ArchiveRequest DataRequest(FileTime start, FileTime end, bool remove) {
    ArchiveRequest r;
    r.type = kArchiveData;
    r.start = start;
    r.end = end;
    r.delete_when_archived = remove;
    return r;
  }
  // The clients of the entries still in `data`, in store order.
  static std::string EntryClients(testing::TestData& data) {
    std::string out;
    TimeEntry e;
    data.entries.Seek(SeekType::kBeginning, 0);
    while (ReadEntry(data.entries, &e) == 0) {
      out += ToUtf8(e.client) + " ";
      data.entries.Seek(SeekType::kCurrent, 1);
    }
    return out;
  }
  // The clients of the "Record%d" streams of the archive, in container order.
  std::string ArchivedClients() {
    std::string out;
    for (const testing::FileElement& e : ReadCompoundFile(File("a.qra"))) {
      TimeEntry entry;
      if (e.path.rfind("Records/Record", 0) == 0 && DecodeEntryRecord(e.bytes, &entry)) {
        out += ToUtf8(entry.client) + " ";
      }
    }
    return out;
  }

  const FileTime kStart = At(2024, 3, 1);
  const FileTime kEnd = At(2024, 3, 31, 23, 59, 59);
};

TEST_F(ArchiveTest, DataArchivesTakeTheEntriesAfterTheStartUpToTheEnd) {
  ASSERT_EQ(Archive(DataRequest(kStart, kEnd, false)), BackupOutcome::kDone);
  const auto file = ReadCompoundFile(File("a.qra"));
  EXPECT_EQ(Paths(file), "Records/\nRecords/Record0\nRecords/Record1\nDataVersion\n");
  EXPECT_EQ(Hex(StreamBytes(file, "DataVersion")), "dc00000002000000");
  EXPECT_EQ(ArchivedClients(), "Inside AtEnd ");
  EXPECT_EQ(EntryClients(a_), "Before AtStart Inside AtEnd After ");
  EXPECT_EQ(prompt_.choosers.back().filter, u"Archive Files (*.qra)|*.qra|");
  EXPECT_EQ(prompt_.choosers.back().default_extension, u"qra");

  ASSERT_EQ(Archive(DataRequest(kStart, kEnd, true)), BackupOutcome::kDone);
  EXPECT_EQ(EntryClients(a_), "Before AtStart After ")
      << "the entry at the start and the one after the range are kept";
  EXPECT_TRUE(prompt_.shown.empty());
}

TEST_F(ArchiveTest, AnEmptyRangeGivesAnEmptyRecordsStorageAndDeletesNothing) {
  ASSERT_EQ(Archive(DataRequest(At(2030, 1, 1), At(2030, 12, 31), true)),
            BackupOutcome::kDone);
  EXPECT_EQ(Paths(ReadCompoundFile(File("a.qra"))), "Records/\nDataVersion\n");
  // A range whose end lies before its start, and a range of exactly one
  // instant at an entry (strictly after the start: nothing).
  ASSERT_EQ(Archive(DataRequest(kEnd, kStart, true)), BackupOutcome::kDone);
  ASSERT_EQ(Archive(DataRequest(kStart, kStart, true)), BackupOutcome::kDone);
  EXPECT_EQ(Paths(ReadCompoundFile(File("a.qra"))), "Records/\nDataVersion\n");
  EXPECT_EQ(EntryClients(a_), "Before AtStart Inside AtEnd After ");
}

TEST_F(ArchiveTest, ClientDataArchivesHoldTheChosenClientsInListOrder) {
  AddClientWithCatalogue(a_, u"Acme");
  AddClientWithCatalogue(a_, u"Beta");
  AddClientWithCatalogue(a_, u"Keep");
  ArchiveRequest r;
  r.type = kArchiveClientData;
  r.start = kStart;
  r.end = kEnd;
  r.clients = {ClientRecord(a_, u"Beta"), ClientRecord(a_, u"Acme")};
  r.delete_when_archived = true;
  ASSERT_EQ(Archive(r), BackupOutcome::kDone);

  const auto file = ReadCompoundFile(File("a.qra"));
  EXPECT_EQ(Hex(StreamBytes(file, "DataVersion")), "dc00000004000000");
  EXPECT_EQ(StreamBytes(file, "Clients/Client0/Name"), EncodeClientName(u"Beta"));
  EXPECT_EQ(StreamBytes(file, "Clients/Client1/Name"), EncodeClientName(u"Acme"));
  EXPECT_NE(Paths(file).find("Records/\n"), std::string::npos);
  EXPECT_EQ(Paths(file).find("Records/Record"), std::string::npos);

  // Deleted with everything they own; the entries and the other client stay.
  EXPECT_EQ(CatalogueText(a_),
            "Keep#3 projects[Web/ Web/Design ] tasks[Admin ] contacts[Bob Keep ] "
            "rates[1:4550:1:Evening ]\n");
  EXPECT_TRUE(ProjectRecords(a_.catalogue.projects, 1).empty());
  EXPECT_TRUE(RatesOf(a_.catalogue.rates, 2).empty());
  EXPECT_EQ(EntryClients(a_), "Before AtStart Inside AtEnd After ");
}

TEST_F(ArchiveTest, AnArchiveOfAClientThatIsGoneFailsAndDeletesNothing) {
  ArchiveRequest gone;
  gone.type = kArchiveClientData;
  gone.clients = {12345};
  gone.delete_when_archived = true;
  EXPECT_EQ(Archive(gone, FileSystem::Posix()), BackupOutcome::kFailed);
  EXPECT_EQ(
      prompt_.Texts(),
      std::vector<std::u16string>{
          u"Archive operation has failed. Please make sure you have enough space on "
          u"storage device and try again."});
  EXPECT_EQ(EntryClients(a_), "Before AtStart Inside AtEnd After ");
}

TEST_F(ArchiveTest, ArchiveRestoreTakesOnlyDataArchives) {
  AddClientWithCatalogue(a_, u"Acme");
  ASSERT_EQ(Archive(DataRequest(kStart, kEnd, false)), BackupOutcome::kDone);
  ASSERT_EQ(std::rename(File("a.qra").c_str(), File("data.qra").c_str()), 0);
  ArchiveRequest clients;
  clients.type = kArchiveClientData;
  clients.clients = {ClientRecord(a_, u"Acme")};
  ASSERT_EQ(Archive(clients), BackupOutcome::kDone);
  {
    BackupWriter writer(a_.entries, a_.catalogue, *locale_);
    ASSERT_TRUE(Backup(writer, FileSystem::Posix(), File("backup.qrd")));
  }
  ASSERT_TRUE(WriteCompoundFile(
      File("v221.qra"),
      {{"DataVersion", std::string("\xdd\x00\x00\x00\x02\x00\x00\x00", 8)}}));
  testing::WriteFileBytes(File("junk.qra"), std::string(1024, '\0'));

  const std::u16string data_only = u"Only Archive file with data can be restored.";
  struct Case {
    std::string file;
    int result;
    std::u16string message;
    MessageIcon icon;
  };
  const Case cases[] = {
      {"data.qra", kRestoreOk, u"Archive file has been restored.",
       MessageIcon::kInformation},
      {"a.qra", kRestoreContentRefused, data_only, MessageIcon::kWarning},
      {"backup.qrd", kRestoreContentRefused, data_only, MessageIcon::kWarning},
      {"v221.qra", kRestoreVersionNotSupported, u"", MessageIcon::kNone},
      {"junk.qra", kRestoreFailed,
       u"Archive file cannot be loaded. The file may be created by Quillora prior to "
       u"version 2.3.",
       MessageIcon::kError},
  };
  for (const Case& c : cases) {
    prompt_.shown.clear();
    prompt_.files.push_back(File(c.file));
    EXPECT_EQ(ArchiveRestoreCommand(b_.entries, b_.catalogue, *locale_, prompt_,
                                    FileSystem::Posix()),
              c.result)
        << c.file;
    if (c.message.empty()) {
      EXPECT_TRUE(prompt_.shown.empty()) << c.file;
    } else {
      ASSERT_EQ(prompt_.Texts(), std::vector<std::u16string>{c.message}) << c.file;
      EXPECT_EQ(prompt_.shown[0].icon, c.icon) << c.file;
    }
  }
  // Only the data archive's entries came in; client data never does.
  EXPECT_EQ(EntryClients(b_), "Inside AtEnd ");
  EXPECT_EQ(CatalogueText(b_), "");
  EXPECT_EQ(prompt_.choosers.back().flags, kFileOverwritePrompt | kFileHideReadOnly);
}

}  // namespace
}  // namespace quillora
