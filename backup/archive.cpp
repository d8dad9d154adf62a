#include "backup/archive.h"

#include <utility>

#include "backup/backup_streams.h"
#include "store/string_table.h"
#include "timekeeping/write_batch.h"

namespace quillora {

ArchiveType ArchiveTypeOfListIndex(int index) {
  return index == 1 ? kArchiveClientData : kArchiveData;
}

const std::u16string& ArchiveTypeName(int index) {
  return LoadString(index == 1 ? kIdsArchiveTypeClientData : kIdsArchiveTypeData);
}

ArchiveWriter::ArchiveWriter(EntryStore& entries, Catalogue& catalogue,
                             const Locale& locale, std::uint32_t type, FileTime start,
                             FileTime end, std::vector<ObjectId> clients)
    : BackupWriter(entries, catalogue, locale),
      type_(type),
      start_(start),
      end_(end),
      clients_(std::move(clients)) {}

bool ArchiveWriter::WriteContentWord(BackupFile& file, CompoundStream data_version) {
  StreamBuilder b;
  b.U32(type_);
  return file.Write(data_version, b.bytes());
}

bool ArchiveWriter::WriteRecords(BackupFile& file, CompoundStorage records) {
  if (type_ == kArchiveClientData) return true;
  // Strictly after the start: an entry stamped exactly at the start of the
  // range (an entry without a start time on the first day) stays out.
  TimeEntry entry;
  int number = 0;
  for (ObjectId id = entries_.SeekValue(SeekType::kValueGreater,
                                        PropValue::Number(kPropStart, start_));
       id != 0; id = entries_.Seek(SeekType::kCurrent, 1)) {
    const int read = ReadEntry(entries_, &entry);
    if (read == 1) break;
    if (read != 0) return false;
    if (CompareFileTime(entry.start, end_) > 0) break;
    if (!WriteEntryStream(file, records, number++, entry)) return false;
    Step();
  }
  return true;
}

bool ArchiveWriter::WriteClients(BackupFile& file) {
  if (type_ == kArchiveData) return true;
  CompoundStorage storage;
  if (!file.CreateStorage(file.root(), u"Clients", &storage)) return false;
  int number = 0;
  for (ObjectId id : clients_) {
    Client client;
    if (id == 0 || catalogue_.clients.Seek(SeekType::kObjectId, id) != id ||
        ReadClient(catalogue_.clients, &client) != 0 ||
        !WriteClientStorage(file, storage, number++, client)) {
      return false;
    }
    Step();
  }
  return true;
}

bool ArchiveWriter::ReadClients(const CompoundReader& reader) {
  (void)reader;
  return true;
}

bool DeleteArchivedEntries(EntryStore& entries, FileTime start, FileTime end) {
  // The walk of the archive itself: strictly after the start, up to the first
  // entry later than the end, which is kept. Every entry is deleted only once
  // the walk has gone past it; here the walk goes through the whole range
  // first, because a write makes the store drop the rows it has read ahead,
  // and a walk that deletes as it goes would read them again at every step.
  std::vector<ObjectId> ids;
  TimeEntry entry;
  for (ObjectId id = entries.SeekValue(SeekType::kValueGreater,
                                       PropValue::Number(kPropStart, start));
       id != 0; id = entries.Seek(SeekType::kCurrent, 1)) {
    if (ReadEntry(entries, &entry) != 0 || CompareFileTime(entry.start, end) > 0) break;
    ids.push_back(id);
  }
  WriteBatch batch(entries.volume());
  bool ok = true;
  for (ObjectId id : ids) {
    ok = entries.DeleteRecord(id) && ok;
    ok = batch.Step() && ok;
  }
  return batch.Finish() && ok;
}

bool DeleteArchivedClients(Catalogue& catalogue, const std::vector<ObjectId>& clients) {
  WriteBatch batch(catalogue.volume);
  bool ok = true;
  for (ObjectId id : clients) {
    Client client;
    if (id == 0 || catalogue.clients.Seek(SeekType::kObjectId, id) != id ||
        ReadClient(catalogue.clients, &client) != 0) {
      ok = false;
      continue;
    }
    // Number 0 is also the default rates' number; such a client loses only
    // its record, as when it is deleted from the catalogue tree.
    if (client.number != 0) {
      DeleteByClient(catalogue.projects, client.number);
      DeleteByClient(catalogue.tasks, client.number);
      DeleteByClient(catalogue.contacts, client.number);
      DeleteByClient(catalogue.rates, client.number);
    }
    ok = catalogue.clients.DeleteRecord(id) && ok;
    ok = batch.Step() && ok;
  }
  return batch.Finish() && ok;
}

namespace {

FileChooser ArchiveChooser() {
  FileChooser chooser;
  chooser.filter = LoadString(kIdsArchiveFilter);
  chooser.default_extension = u"qra";
  // The open dialog of archive restore takes the save dialog's flags too.
  chooser.flags = kFileOverwritePrompt | kFileHideReadOnly;
  return chooser;
}

}  // namespace

BackupOutcome ArchiveCommand(EntryStore& entries, Catalogue& catalogue,
                             const Locale& locale, UserPrompt& prompt, FileSystem& files,
                             const ArchiveRequest& request, BackupCounts* counts) {
  const auto path = prompt.ChooseFileToSave(ArchiveChooser());
  if (!path) return BackupOutcome::kCancelled;
  ArchiveWriter writer(entries, catalogue, locale, request.type, request.start,
                       request.end, request.clients);
  bool done = Backup(writer, files, *path);
  if (counts != nullptr) *counts = writer.counts();
  if (done && request.delete_when_archived) {
    done = request.type == kArchiveClientData
               ? DeleteArchivedClients(catalogue, request.clients)
               : DeleteArchivedEntries(entries, request.start, request.end);
  }
  if (done) return BackupOutcome::kDone;
  prompt.ShowMessage(kAppTitle, LoadString(kIdsArchiveFailed), MessageIcon::kError);
  return BackupOutcome::kFailed;
}

int ArchiveRestoreCommand(EntryStore& entries, Catalogue& catalogue, const Locale& locale,
                          UserPrompt& prompt, FileSystem& files, BackupCounts* counts) {
  const auto path = prompt.ChooseFileToOpen(ArchiveChooser());
  if (!path) return kRestoreCancelled;
  ArchiveWriter writer(entries, catalogue, locale, kArchiveData, 0, 0, {});
  const int result = Restore(writer, files, *path);
  if (counts != nullptr) *counts = writer.counts();
  switch (result) {
    case kRestoreOk:
      prompt.ShowMessage(kAppTitle, LoadString(kIdsArchiveRestored),
                         MessageIcon::kInformation);
      break;
    case kRestoreFailed:
      ShowRestoreFailure(prompt, LoadString(kIdsArchiveCannotLoad), MessageIcon::kError,
                         writer);
      break;
    case kRestoreContentRefused:
      prompt.ShowMessage(kAppTitle, LoadString(kIdsArchiveDataOnly),
                         MessageIcon::kWarning);
      break;
    default:
      // Another data version is refused without a word, as it always was.
      break;
  }
  return result;
}

}  // namespace quillora
