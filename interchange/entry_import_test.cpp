#include "interchange/entry_import.h"

#include <gtest/gtest.h>

#include "interchange/csv_entries.h"
#include "store/client_store.h"
#include "tests/fake_prompt.h"
#include "tests/test_volume.h"

namespace quillora {
namespace {

class EntryImportTest : public ::testing::Test {
 protected:
  EntryImportTest()
      : entries_(volume_.store()),
        catalogue_(volume_.store(), nullptr),
        locale_(Locale::UsEnglish()) {
    EXPECT_TRUE(entries_.Open());
    EXPECT_TRUE(catalogue_.Open());
  }

  ImportSummary Import(const std::string& csv, bool dry_run = false) {
    const CsvImportedFile file = ReadCsvEntries(csv, {}, Settings{}, 1252);
    EXPECT_EQ(file.file.error, u"");
    return ImportEntries({entries_, catalogue_, *locale_, prompt_}, file.file.rows,
                         dry_run);
  }

  std::vector<std::u16string> Lines(const ImportSummary& s, bool dry_run = false) {
    return ImportSummaryLines(s, dry_run);
  }

  int EntryCount() {
    int n = 0;
    TimeEntry e;
    entries_.Seek(SeekType::kBeginning, 0);
    while (ReadEntry(entries_, &e) == 0) {
      ++n;
      entries_.Seek(SeekType::kCurrent, 1);
    }
    return n;
  }

  testing::TestVolume volume_;
  EntryStore entries_;
  Catalogue catalogue_;
  std::unique_ptr<Locale> locale_;
  testing::FakePrompt prompt_;
};

constexpr char kFile[] =
    "Date,Start time,Duration,Client,Project,Task,Tags\n"
    "2024-03-01,09:00,1,Old,Web,Code,urgent\n"
    "2024-03-01,10:00,1,New,,Call,\n"
    "2024-03-01,10:00,1,New,,Call,\n"  // the same entry twice in the file
    "2024-03-02,,1,,,Call,\n";

TEST_F(EntryImportTest, ImportsOnceAddsClientsAndGrowsTheCatalogue) {
  AddClient(catalogue_.clients, u"Old");
  EXPECT_EQ(Lines(Import(kFile, true), true),
            (std::vector<std::u16string>{
                u"Would import 2 entries; 1 already present; 1 skipped.",
                u"line 5: no client"}));
  EXPECT_EQ(EntryCount(), 0) << "a dry run writes nothing";
  EXPECT_FALSE(FindClient(catalogue_.clients, u"New"));

  EXPECT_EQ(
      Lines(Import(kFile)),
      (std::vector<std::u16string>{u"Imported 2 entries; 1 already present; 1 skipped.",
                                   u"line 5: no client"}));
  EXPECT_EQ(Lines(Import(kFile))[0],
            u"Imported 0 entries; 3 already present; 1 skipped.");
  EXPECT_EQ(EntryCount(), 2);

  Client added;
  ASSERT_TRUE(FindClient(catalogue_.clients, u"New", &added));
  EXPECT_EQ(added.number, 2u) << "the next client number, as a list import of clients";
  Client old;
  ASSERT_TRUE(FindClient(catalogue_.clients, u"Old", &old));
  EXPECT_EQ(ProjectRecords(catalogue_.projects, old.number).size(), 1u);
  EXPECT_EQ(ItemsOf(catalogue_.tasks, added.number).size(), 1u)
      << "a task without project";
  AuxStore aux(volume_.store());
  ASSERT_TRUE(aux.Open());
  EXPECT_EQ(ValueList(aux, ValueListKind::kCustom1).size(), 1u) << "the tags";
}

TEST_F(EntryImportTest, ReportsAtMostTwentySkippedRows) {
  std::string csv = "Date,Duration,Client,Task\n";
  for (int i = 0; i < 23; ++i) csv += "2024-03-01,1,,T\n";
  const std::vector<std::u16string> lines = Lines(Import(csv));
  ASSERT_EQ(lines.size(), 22u);
  EXPECT_EQ(lines[20], u"line 21: no client");
  EXPECT_EQ(lines[21], u"... and 3 more skipped.");
}

}  // namespace
}  // namespace quillora
