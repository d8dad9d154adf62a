// Round trips: a backup restored into an empty data folder, and a "Data"
// archive restored by archive restore, give back every field of every entry
// (notes byte for byte, whatever they hold) and, for backups, every client
// with all of its catalogue data.
#include <gtest/gtest.h>

#include <cstdio>
#include <iterator>
#include <string>
#include <vector>

#include "backup/archive.h"
#include "backup/backup.h"
#include "backup/backup_streams.h"
#include "backup/backup_test_fixture.h"
#include "store/note_text.h"

namespace quillora {
namespace {

using testing::At;
using testing::Hex;
using testing::StreamBytes;

// Every field of an entry but its record id, strings as their UTF-16 units in
// hex so that lone surrogates and NULs count.
std::string Describe(const TimeEntry& e) {
  auto units = [](const std::u16string& s) {
    std::string out;
    for (char16_t c : s) {
      char text[8];
      std::snprintf(text, sizeof text, "%04x", static_cast<unsigned>(c));
      out += text;
    }
    return out + "|";
  };
  return std::to_string(e.start) + " " + units(e.client) + units(e.project) +
         units(e.phase) + units(e.task) + units(e.currency) + units(e.billTo) +
         units(e.custom1) + units(e.custom2) + units(e.custom3) + " d" +
         std::to_string(e.duration) + " r" + std::to_string(e.rate) + " t" +
         std::to_string(e.rateType) + " b" + std::to_string(e.billable) + " p" +
         std::to_string(e.paid) + " n" + std::to_string(e.noteSize) + ":" +
         Hex(std::string(e.note.begin(), e.note.end()));
}

std::vector<std::string> Entries(testing::TestData& data) {
  std::vector<std::string> out;
  data.entries.Seek(SeekType::kBeginning, 0);
  for (TimeEntry e; ReadEntry(data.entries, &e) == 0;
       data.entries.Seek(SeekType::kCurrent, 1)) {
    out.push_back(Describe(e));
  }
  return out;
}

// A note of the note editor with a drawing section after its text.
std::vector<std::uint8_t> NoteWithDrawing() {
  std::vector<std::uint8_t> blob = NoteBlobFromText(u"Line one\r\nLine two");
  const std::uint8_t strokes[] = {0x00, 0xFF, 0x10, 0x00, 0x20, 0x00, 0x80, 0x7F, 0x00};
  const char magic[] = "DRW1";
  blob.insert(blob.end(), magic, magic + 4);
  blob.push_back(sizeof strokes);
  blob.insert(blob.end(), 3, 0);
  blob.insert(blob.end(), strokes, strokes + sizeof strokes);
  return blob;
}

// Notes of other programs, which are kept as they are.
std::vector<std::vector<std::uint8_t>> ForeignNotes() {
  std::vector<std::vector<std::uint8_t>> notes;
  notes.push_back({0x00});
  notes.push_back({'Q', 'N', 'T', '1', 0xFF, 0xFF, 0xFF, 0xFF, 'x'});  // count too big
  notes.push_back({0xEF, 0xBB, 0xBF, 'p', 'l', 'a', 'i', 'n', '\r', '\n', 0x00});
  // Larger than the mini stream takes: its record gets sectors of its own.
  std::vector<std::uint8_t> big(70001);
  for (std::size_t i = 0; i < big.size(); ++i)
    big[i] = static_cast<std::uint8_t>(i * 31 + 7);
  notes.push_back(std::move(big));
  return notes;
}

class RoundTripTest : public testing::BackupFixture {
 protected:
  // Entries with every kind of value from `first` on, one hour apart.
  void AddRichEntries(testing::TestData& data, FileTime first) {
    std::vector<std::vector<std::uint8_t>> notes = ForeignNotes();
    notes.insert(notes.begin(), NoteWithDrawing());
    notes.push_back({});  // no note
    const std::u16string texts[] = {u"", u"Acme", u"\u00e9t\u00e9 \u4e2d",
                                    u"\U0001F600", std::u16string(u"a\0b", 3),
                                    std::u16string(1, char16_t{0xD800}),
                                    std::u16string(300, u'x')};
    const std::uint32_t rates[] = {0, 1, 4550, 0x7FFFFFFF, 0xFFFFFFFF};
    for (std::size_t i = 0; i < notes.size() + 4; ++i) {
      TimeEntry e;
      // Odd entries carry a start time (seconds 1), even ones none.
      e.start = first + static_cast<FileTime>(i) * kTicksPerHour +
                (i % 2 == 1 ? kTicksPerSecond : 0);
      auto text = [&](std::size_t k) { return texts[(i + k) % std::size(texts)]; };
      e.client = text(1);
      e.project = text(2);
      e.phase = text(3);
      e.task = text(4);
      e.currency = text(5);
      e.billTo = text(6);
      e.custom1 = text(0);
      e.custom2 = text(1);
      e.custom3 = text(2);
      e.duration = i == 0 ? 65535 : static_cast<std::uint32_t>(i * 25);
      e.rate = rates[i % std::size(rates)];
      e.rateType = static_cast<std::uint16_t>(i % 5);
      e.billable = i % 2 == 0;
      e.paid = i % 3 == 0;
      const std::vector<std::uint8_t>& note = notes[i % notes.size()];
      ASSERT_TRUE(SetNote(&e, static_cast<std::int32_t>(note.size()), note.data()));
      ASSERT_TRUE(AddEntry(data.entries, e)) << i;
    }
  }

  // Clients in name order, so that an empty store numbers them the same way;
  // rates without descriptions, which the file does not hold.
  void AddRichClients(testing::TestData& data) {
    Catalogue& c = data.catalogue;
    const ClientId acme = AddClient(c.clients, u"Acme");
    AddProject(c.projects, *locale_, acme, u"Web", u"");
    AddProject(c.projects, *locale_, acme, u"Web", u"Design");
    AddProject(c.projects, *locale_, acme, u"\u00c9cole", u"\U0001F600");
    AddItem(c.tasks, *locale_, acme, u"Admin");
    AddItem(c.tasks, *locale_, acme, u"Calls");
    AddItem(c.contacts, *locale_, acme, u"Bob");
    ASSERT_NE(AddRate(c.rates, kRateNormal, 0.5, acme, u"", false), 0u);
    ASSERT_NE(AddRate(c.rates, kRateDiscount, 12345.0, acme, u"", true), 0u);
    AddClient(c.clients, u"Bare");  // nothing in the catalogue
    const ClientId zed = AddClient(c.clients, u"Z\u00e9d");
    AddItem(c.contacts, *locale_, zed, u"Ann");
    ASSERT_NE(AddRate(c.rates, kRateWeekend, 99.0, zed, u"", false), 0u);
  }
};

TEST_F(RoundTripTest, ABackupRestoredIntoAnEmptyFolderGivesBackEverything) {
  AddRichEntries(a_, At(2024, 3, 1, 8));
  AddRichClients(a_);
  BackupWriter backup(a_.entries, a_.catalogue, *locale_);
  ASSERT_TRUE(Backup(backup, FileSystem::Posix(), File("a.qrd")));
  BackupWriter writer(b_.entries, b_.catalogue, *locale_);
  ASSERT_EQ(Restore(writer, FileSystem::Posix(), File("a.qrd")), kRestoreOk);

  const std::vector<std::string> want = Entries(a_);
  ASSERT_EQ(want.size(), 10u);
  EXPECT_EQ(Entries(b_), want);
  EXPECT_EQ(CatalogueText(b_), CatalogueText(a_));
  EXPECT_NE(CatalogueText(a_).find("Bare#2"), std::string::npos) << CatalogueText(a_);

  // Backed up again, the restored data gives the same file byte for byte.
  BackupWriter again(b_.entries, b_.catalogue, *locale_);
  ASSERT_TRUE(Backup(again, FileSystem::Posix(), File("b.qrd")));
  EXPECT_EQ(testing::ReadFileBytes(File("b.qrd")), testing::ReadFileBytes(File("a.qrd")));
}

TEST_F(RoundTripTest, ADataArchiveRestoredGivesBackEveryFieldOfItsEntries) {
  const FileTime start = At(2024, 3, 1);
  const FileTime end = At(2024, 3, 31, 23, 59);
  AddAt(a_, At(2024, 2, 29, 12), u"Before");
  AddRichEntries(a_, At(2024, 3, 10, 8));
  const std::vector<std::string> archived = Entries(a_);
  AddAt(a_, At(2024, 4, 1, 12), u"After");
  AddRichClients(a_);

  ArchiveRequest request;
  request.type = kArchiveData;
  request.start = start;
  request.end = end;
  prompt_.files.push_back(File("a.qra"));
  ASSERT_EQ(ArchiveCommand(a_.entries, a_.catalogue, *locale_, prompt_,
                           FileSystem::Posix(), request),
            BackupOutcome::kDone);
  prompt_.files.push_back(File("a.qra"));
  ASSERT_EQ(ArchiveRestoreCommand(b_.entries, b_.catalogue, *locale_, prompt_,
                                  FileSystem::Posix()),
            kRestoreOk);
  // `archived` still has the entry before the range first.
  ASSERT_EQ(archived.size(), 11u);
  EXPECT_EQ(Entries(b_), std::vector<std::string>(archived.begin() + 1, archived.end()));
  EXPECT_EQ(CatalogueText(b_), "");

  // Archived again over the same range, the restored entries give the same file.
  prompt_.files.push_back(File("b.qra"));
  ASSERT_EQ(ArchiveCommand(b_.entries, b_.catalogue, *locale_, prompt_,
                           FileSystem::Posix(), request),
            BackupOutcome::kDone);
  EXPECT_EQ(testing::ReadFileBytes(File("b.qra")), testing::ReadFileBytes(File("a.qra")));
}

TEST_F(RoundTripTest, AClientDataArchiveHoldsEveryCatalogueRecordOfTheChosenClients) {
  AddRichClients(a_);
  ArchiveRequest request;
  request.type = kArchiveClientData;
  request.clients = {ClientRecord(a_, u"Z\u00e9d"), ClientRecord(a_, u"Acme")};
  prompt_.files.push_back(File("c.qra"));
  ASSERT_EQ(ArchiveCommand(a_.entries, a_.catalogue, *locale_, prompt_,
                           FileSystem::Posix(), request),
            BackupOutcome::kDone);
  const auto file = testing::ReadCompoundFile(File("c.qra"));

  // Each client's five streams decoded, described as CatalogueText does.
  auto describe = [&](const std::string& storage) {
    const std::string c = "Clients/" + storage + "/";
    std::u16string name;
    std::vector<ProjectRecord> projects;
    std::vector<std::u16string> tasks, contacts;
    std::vector<Rate> rates;
    EXPECT_TRUE(DecodeClientName(StreamBytes(file, c + "Name"), &name)) << storage;
    EXPECT_TRUE(DecodeProjectTasks(StreamBytes(file, c + "ProjectTasks"), &projects));
    EXPECT_TRUE(DecodeNames(StreamBytes(file, c + "Tasks"), &tasks));
    EXPECT_TRUE(DecodeNames(StreamBytes(file, c + "Contacts"), &contacts));
    EXPECT_TRUE(DecodeRates(StreamBytes(file, c + "Rates"), &rates));
    std::string out = ToUtf8(name) + " projects[";
    for (const ProjectRecord& r : projects) out += ToUtf8(r.project) + "/" + ToUtf8(r.task) + " ";
    out += "] tasks[";
    for (const std::u16string& t : tasks) out += ToUtf8(t) + " ";
    out += "] contacts[";
    for (const std::u16string& t : contacts) out += ToUtf8(t) + " ";
    out += "] rates[";
    for (const Rate& r : rates) {
      out += std::to_string(r.type) + ":" + std::to_string(r.value) + ":" +
             std::to_string(r.flag) + ": ";
    }
    return out + "]\n";
  };
  // The catalogue as it was, in the chosen order, without the numbers.
  std::string want;
  for (const char* line_start : {"Z\xc3\xa9" "d#", "Acme#"}) {
    const std::string text = CatalogueText(a_);
    const std::size_t at = text.find(line_start);
    ASSERT_NE(at, std::string::npos) << text;
    std::string line = text.substr(at, text.find('\n', at) + 1 - at);
    line.erase(line.find('#'), line.find(' ') - line.find('#'));
    want += line;
  }
  EXPECT_EQ(describe("Client0") + describe("Client1"), want);
  EXPECT_EQ(testing::Paths(file).find("Client2"), std::string::npos);
}

}  // namespace
}  // namespace quillora
