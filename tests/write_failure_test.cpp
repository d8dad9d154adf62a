// Every writer of files against a write that fails at each position and a
// disk that fills at many sizes: the writer answers failure (and its command
// shows its message), the file left is exactly what was written before the
// failure, and the stores are unchanged. An archive that deletes what it
// archived deletes nothing when its file fails.
#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "backup/archive.h"
#include "backup/backup.h"
#include "interchange/csv_export.h"
#include "interchange/export_command.h"
#include "interchange/list_files.h"
#include "interchange/summary_csv.h"
#include "periods/quick_summary.h"
#include "platform/clock.h"
#include "platform/locale.h"
#include "platform/registry.h"
#include "platform/text.h"
#include "reports/html_report.h"
#include "store/catalogue.h"
#include "store/client_store.h"
#include "store/note_text.h"
#include "store/settings.h"
#include "store/time_entry.h"
#include "tests/fake_prompt.h"
#include "tests/faulty_file_system.h"
#include "tests/temp_dir.h"
#include "tests/test_time.h"
#include "tests/test_volume.h"

namespace quillora {
namespace {

using testing::FaultyFileSystem;

using testing::At;

// The texts a command showed, each under the program's title.
std::vector<std::u16string> Shown(const testing::FakePrompt& prompt) {
  for (const auto& shown : prompt.shown) EXPECT_EQ(shown.title, u"Quillora");
  return prompt.Texts();
}

class WriteFailureTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(catalogue_.Open());
    ASSERT_TRUE(entries_.Open());
    for (const char16_t* name : {u"Acme", u"Globex", u"Initech"})
      ASSERT_NE(AddClient(catalogue_.clients, name), 0u);
    for (int i = 0; i < 40; ++i) {
      TimeEntry e;
      e.start = At(2026, 11, 1 + i % 28, 8 + i % 9);
      e.client = i % 2 ? u"Acme" : u"Globex";
      e.project = u"Web";
      e.task = u"Design";
      e.duration = 25 + i;
      e.rate = 5000;
      e.billable = true;
      e.currency = u"EUR";
      const auto note = NoteBlobFromText(u"Note " + WidenAscii(std::to_string(i)) + u"\nend");
      SetNote(&e, static_cast<std::int32_t>(note.size()), note.data());
      ASSERT_TRUE(AddEntry(entries_, e));
    }
  }

  std::string Path() const { return dir_.File("out"); }

  // Every entry and client, as text: what "unchanged" compares.
  std::string Stores() {
    std::string out;
    entries_.Seek(SeekType::kBeginning, 0);
    for (TimeEntry e; ReadEntry(entries_, &e) == 0; entries_.Seek(SeekType::kCurrent, 1)) {
      out += std::to_string(e.recordId) + ToUtf8(e.client) + std::to_string(e.start) +
             std::to_string(e.duration) + std::string(e.note.begin(), e.note.end()) + "\n";
    }
    catalogue_.clients.Seek(SeekType::kBeginning, 0);
    PropList props;
    while (catalogue_.clients.ReadProps(nullptr, &props) != 0) {
      out += "client " + std::to_string(catalogue_.clients.current_record_id()) + "\n";
      if (catalogue_.clients.Seek(SeekType::kCurrent, 1) == 0) break;
    }
    return out;
  }

  // A writer: runs on `files`, answers success, and fills `messages` with
  // what its command showed.
  struct Writer {
    const char* name;
    std::function<bool(FileSystem& files, std::vector<std::u16string>* messages)> run;
    std::u16string failure_message;  // empty: the caller shows it
    // The HTML report makes its second write even when the first (the
    // document type) failed, as docs/reports.md records: its file may then
    // be the good file without its first `skipped_head` bytes.
    bool writes_on_after_failure = false;
  };

  std::vector<Writer> Writers() {
    std::vector<Writer> w;
    auto export_command = [this](ExportFormat format) {
      return [this, format](FileSystem& files, std::vector<std::u16string>* messages) {
        ExportSources sources{entries_, settings_, *locale_, files};
        testing::FakePrompt prompt;
        prompt.files.push_back(Path());
        const auto outcome = RunExportCommand(
            format, MakeExportCriteria(Month(), EntryFilter()), sources, prompt);
        *messages = Shown(prompt);
        return outcome == ExportOutcome::kExported;
      };
    };
    const std::u16string export_failed =
        u"Export failed. Please make sure there is enough storage space and try agin.";
    w.push_back({"CSV export", export_command(ExportFormat::kCsv), export_failed});
    w.push_back({"XML export", export_command(ExportFormat::kXml), export_failed});
    w.push_back({"summary CSV",
                 [this](FileSystem& files, std::vector<std::u16string>*) {
                   std::vector<QuickSummaryRow> rows(12);
                   for (std::size_t i = 0; i < rows.size(); ++i) {
                     rows[i] = {u"Row " + WidenAscii(std::to_string(i)), u"1.50h", u"75.00"};
                   }
                   return WriteQuickSummaryCsv(rows, Path(), files, 1252) ==
                          SummaryCsvResult::kWritten;
                 },
                 u""});
    w.push_back({"list export",
                 [this](FileSystem& files, std::vector<std::u16string>* messages) {
                   testing::FakePrompt prompt;
                   prompt.files.push_back(Path());
                   const auto outcome =
                       RunListExport(catalogue_, *locale_, files, prompt,
                                     CatalogueList(ListKind::kClients), ListFileFormat::kUnicode);
                   *messages = Shown(prompt);
                   return outcome == ListFileOutcome::kDone;
                 },
                 u"Unable to export the list."});
    w.push_back({"HTML report",
                 [this](FileSystem& files, std::vector<std::u16string>*) {
                   HtmlReportRequest request;
                   request.range = Month();
                   request.today = MakeSystemTime(2026, 11, 21);
                   return GenerateHtmlReport(entries_, files, Path(), request, settings_,
                                             *locale_);
                 },
                 u"", true});
    w.push_back({"backup",
                 [this](FileSystem& files, std::vector<std::u16string>* messages) {
                   testing::FakePrompt prompt;
                   prompt.files.push_back(Path());
                   const auto outcome =
                       BackupCommand(entries_, catalogue_, *locale_, prompt, files);
                   *messages = Shown(prompt);
                   return outcome == BackupOutcome::kDone;
                 },
                 u"Backup has failed. Please make sure you have enough space on the storage "
                 u"device."});
    return w;
  }

  static PeriodRange Month() {
    return {MakeSystemTime(2026, 10, 31), MakeSystemTime(2026, 11, 30, 23, 59, 59)};
  }

  // Runs `writer` with every failure it can meet and checks the outcome.
  void CheckEveryFailure(const Writer& writer) {
    SCOPED_TRACE(writer.name);
    const std::string before = Stores();
    FaultyFileSystem good;
    std::vector<std::u16string> messages;
    ASSERT_TRUE(writer.run(good, &messages));
    const std::string full = testing::ReadFileBytes(Path());
    const int writes = good.writes();
    ASSERT_FALSE(full.empty());
    ASSERT_GT(writes, 0);

    auto expect_failed = [&](FaultyFileSystem& files, const std::string& what) {
      std::remove(Path().c_str());
      std::vector<std::u16string> shown;
      EXPECT_FALSE(writer.run(files, &shown)) << what;
      if (!writer.failure_message.empty()) {
        EXPECT_EQ(shown, std::vector<std::u16string>{writer.failure_message}) << what;
      }
      const std::string left = testing::ReadFileBytes(Path());
      EXPECT_LE(left.size(), files.bytes_written()) << what;
      const std::size_t head = writer.writes_on_after_failure ? full.find("<html") : 0;
      const std::string body = full.substr(head == std::string::npos ? 0 : head);
      const bool prefix = left == full.substr(0, left.size()) ||
                          (writer.writes_on_after_failure && left == body.substr(0, left.size()));
      EXPECT_TRUE(prefix) << what << ": the file left is not what was written before the "
                          << "failure:\n" << left;
      EXPECT_EQ(Stores(), before) << what;
    };
    for (int k = 1; k <= writes; ++k) {
      FaultyFileSystem files;
      files.fail_write_number = k;
      expect_failed(files, "write " + std::to_string(k) + " of " + std::to_string(writes));
    }
    const std::size_t step = full.size() / 97 + 1;
    for (std::size_t size = 0; size < full.size(); size += step) {
      FaultyFileSystem files;
      files.disk_bytes = size;
      expect_failed(files, "disk full at " + std::to_string(size) + " bytes");
      EXPECT_EQ(testing::ReadFileBytes(Path()).size(), size);
    }
    FaultyFileSystem unclosed;
    unclosed.fail_close = true;
    expect_failed(unclosed, "failed close");
    FaultyFileSystem uncreated;
    uncreated.fail_create = true;
    expect_failed(uncreated, "failed create");
  }

  testing::TempDir dir_;
  testing::TestVolume volume_;
  std::unique_ptr<Registry> registry_ = OpenMemoryRegistry();
  Catalogue catalogue_{volume_.store(), registry_.get()};
  EntryStore entries_{volume_.store()};
  Settings settings_;
  std::unique_ptr<Locale> locale_ = Locale::UsEnglish();
};

TEST_F(WriteFailureTest, EveryWriterFailsCleanlyAtEveryWriteAndDiskSize) {
  for (const Writer& writer : Writers()) CheckEveryFailure(writer);
}

TEST_F(WriteFailureTest, AnArchiveWhoseFileFailsDeletesNothing) {
  ArchiveRequest request;
  request.type = kArchiveData;
  request.start = At(2026, 10, 31, 0);
  request.end = At(2026, 11, 30, 23);
  request.delete_when_archived = true;
  Writer archive{"archive with delete",
                 [&](FileSystem& files, std::vector<std::u16string>* messages) {
                   testing::FakePrompt prompt;
                   prompt.files.push_back(Path());
                   const auto outcome =
                       ArchiveCommand(entries_, catalogue_, *locale_, prompt, files, request);
                   *messages = Shown(prompt);
                   return outcome == BackupOutcome::kDone;
                 },
                 u"Archive operation has failed. Please make sure you have enough space on "
                 u"storage device and try again."};
  // Without deletion first, so that every failure meets the full store; the
  // deleting run comes last and must then empty the range.
  request.delete_when_archived = false;
  CheckEveryFailure(archive);
  FaultyFileSystem counted;
  std::vector<std::u16string> ignored;
  ASSERT_TRUE(archive.run(counted, &ignored));
  request.delete_when_archived = true;
  const std::string before = Stores();
  for (int k = 1; k <= counted.writes(); ++k) {
    FaultyFileSystem files;
    files.fail_write_number = k;
    std::vector<std::u16string> shown;
    EXPECT_FALSE(archive.run(files, &shown)) << k;
    EXPECT_EQ(Stores(), before) << "write " << k << " failed, yet entries were deleted";
  }
  for (const std::uint64_t size : {std::uint64_t{0}, counted.bytes_written() / 2,
                                   counted.bytes_written() - 1}) {
    FaultyFileSystem files;
    files.disk_bytes = size;
    std::vector<std::u16string> shown;
    EXPECT_FALSE(archive.run(files, &shown)) << size;
    EXPECT_EQ(Stores(), before) << "disk full at " << size << ", yet entries were deleted";
  }
  FaultyFileSystem unclosed;
  unclosed.fail_close = true;
  EXPECT_FALSE(archive.run(unclosed, &ignored));
  EXPECT_EQ(Stores(), before) << "the close failed, yet entries were deleted";
  FaultyFileSystem good;
  std::vector<std::u16string> shown;
  ASSERT_TRUE(archive.run(good, &shown));
  entries_.Seek(SeekType::kBeginning, 0);
  TimeEntry e;
  EXPECT_EQ(ReadEntry(entries_, &e), 1) << "the archived month is deleted";
}

}  // namespace
}  // namespace quillora
