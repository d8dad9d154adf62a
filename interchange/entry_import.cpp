#include "interchange/entry_import.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <unordered_set>

#include "interchange/catalogue_growth.h"
#include "platform/text.h"
#include "store/entry_read_ahead.h"
#include "store/note_text.h"
#include "store/string_table.h"
#include "timekeeping/duration.h"
#include "timekeeping/write_batch.h"

namespace quillora {
namespace {

constexpr std::size_t kSkipLinesShown = 20;
constexpr int kProgressEvery = 256;

// What makes two entries the same for the import: start, client, task and
// duration.
std::u16string EntryKey(const TimeEntry& entry) {
  std::u16string key;
  key.reserve(8 + entry.client.size() + entry.task.size());
  for (int shift = 0; shift < 64; shift += 16) {
    key.push_back(static_cast<char16_t>(entry.start >> shift));
  }
  key.push_back(static_cast<char16_t>(entry.duration));
  key.push_back(static_cast<char16_t>(entry.duration >> 16));
  key += entry.client;
  key.push_back(u'\0');
  key += entry.task;
  return key;
}

std::u16string Widened(const char* format, int value) {
  char buf[64];
  std::snprintf(buf, sizeof buf, format, value);
  return WidenAscii(buf);
}

}  // namespace

ImportFileRead ReadImportFile(FileSystem& files, const std::string& path,
                              std::string* bytes) {
  bytes->clear();
  // The size is asked before a byte is read, so a huge file costs nothing.
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);
  if (!error && size > kImportFileLimit) return ImportFileRead::kTooLarge;
  if (!files.ReadWholeFile(path, bytes, kImportFileLimit)) return ImportFileRead::kUnreadable;
  return ImportFileRead::kRead;
}

std::u16string ImportFileReadMessage(ImportFileRead result, const std::u16string& path) {
  if (result == ImportFileRead::kTooLarge) {
    return u"The file \"" + path + u"\" is larger than 64 MB.";
  }
  return u"Unable to read the file \"" + path + u"\".";
}

std::u16string MalformedImportMessage(const ImportedFile& file,
                                      const std::u16string& path) {
  std::u16string text = u"The file \"" + path + u"\" cannot be imported: ";
  if (file.error_line > 0) text += Widened("line %d: ", file.error_line);
  return text + file.error + u".";
}

ImportSummary ImportEntries(const ImportTarget& target,
                            const std::vector<ImportedEntry>& rows, bool dry_run) {
  ImportSummary summary;
  // The entries stored over the time the file covers, to find those there.
  FileTime first = ~FileTime{0};
  FileTime last = 0;
  for (const ImportedEntry& row : rows) {
    if (!row.skip.empty()) continue;
    first = std::min(first, row.entry.start);
    last = std::max(last, row.entry.start);
  }
  std::unordered_set<std::u16string> stored;
  if (first <= last) {
    EntryReadAhead walk(target.entries, first - 1, last);
    while (TimeEntry* entry = walk.Next()) stored.insert(EntryKey(*entry));
  }

  target.prompt.BeginProgress(kImportProgressTitle, static_cast<int>(rows.size()));
  CatalogueGrowth growth(target.catalogue, target.locale);
  std::optional<WriteBatch> batch;
  if (!dry_run) batch.emplace(target.catalogue.volume);
  int position = 0;
  for (std::size_t index = 0; index < rows.size(); ++index) {
    const ImportedEntry& row = rows[index];
    if (++position % kProgressEvery == 0) {
      target.prompt.StepProgress(position, Widened("Importing entry %d...", position));
    }
    if (!row.skip.empty()) {
      ++summary.skipped;
      summary.skips.push_back({row.line, row.skip});
      continue;
    }
    if (!stored.insert(EntryKey(row.entry)).second) {
      ++summary.present;
      continue;
    }
    if (!dry_run) {
      // The client first, so that the catalogue grows under it.
      if (!growth.AddMissingClient(row.entry.client) ||
          !AddEntry(target.entries, row.entry) || !batch->Step()) {
        summary.failed = true;
        break;
      }
      growth.Grow(row.entry);
    } else {
      summary.would_import.push_back(index);
    }
    ++summary.imported;
  }
  if (batch && !batch->Finish()) summary.failed = true;
  target.prompt.EndProgress();
  if (summary.failed) {
    target.prompt.ShowMessage(kAppTitle, LoadString(kIdsSaveEntryFailed),
                              MessageIcon::kError);
  }
  return summary;
}

std::vector<std::u16string> ImportSummaryLines(const ImportSummary& summary,
                                               bool dry_run) {
  char buf[160];
  std::snprintf(buf, sizeof buf, "%s %d entries; %d already present; %d skipped.",
                dry_run ? "Would import" : "Imported", summary.imported, summary.present,
                summary.skipped);
  std::vector<std::u16string> lines{WidenAscii(buf)};
  for (std::size_t i = 0; i < summary.skips.size() && i < kSkipLinesShown; ++i) {
    lines.push_back(Widened("line %d: ", summary.skips[i].line) +
                    summary.skips[i].reason);
  }
  if (summary.skips.size() > kSkipLinesShown) {
    lines.push_back(Widened("... and %d more skipped.",
                            static_cast<int>(summary.skips.size() - kSkipLinesShown)));
  }
  return lines;
}

std::array<std::u16string, 7> ImportPreviewCells(const TimeEntry& entry) {
  SystemTime st;
  FileTimeToSystemTime(entry.start, &st);
  char date[32];
  std::snprintf(date, sizeof date, "%04d-%02d-%02d", st.year, st.month, st.day);
  char start[16] = "";
  if (HasStartTime(entry))
    std::snprintf(start, sizeof start, "%02d:%02d", st.hour, st.minute);
  std::u16string note = NoteBlobToText(entry.note.data(), entry.note.size());
  note = note.substr(0, note.find_first_of(u"\r\n"));
  return {WidenAscii(date), WidenAscii(start), entry.client,
          entry.project,    entry.task,        FormatHundredths(entry.duration),
          std::move(note)};
}

}  // namespace quillora
