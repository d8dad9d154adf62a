// Backup and restore: every time entry and the whole client catalogue copied
// into one compound file ("*.qrd"), and read back into the stores, adding to
// what they hold and never deleting. Archives (backup/archive.h) use the same
// container, stream layouts and operations with a writer of their own.
//
// File layout: "DataVersion" (220, then the content word: 1 for a backup),
// "Records" with one "Record0", "Record1", ... stream per entry, and
// "Clients" with one "Client0", "Client1", ... storage per client holding
// "Name", "ProjectTasks", "Tasks", "Contacts" and "Rates". The stream
// encodings are in backup/backup_streams.h; docs/backup.md has the rest.
#ifndef QUILLORA_BACKUP_BACKUP_H_
#define QUILLORA_BACKUP_BACKUP_H_

#include <cstdint>
#include <string>

#include "backup/backup_file.h"
#include "platform/compound_file.h"
#include "platform/file.h"
#include "platform/locale.h"
#include "platform/user_prompt.h"
#include "store/catalogue.h"
#include "store/client_store.h"
#include "store/time_entry.h"

namespace quillora {

class WriteBatch;

inline constexpr std::uint32_t kDataVersion = 220;
inline constexpr std::uint32_t kBackupContentWord = 1;

// What the restore operation answers.
enum RestoreResult : int {
  kRestoreOk = 0,
  kRestoreFailed = 1,               // unreadable, damaged, or a record could not be added
  kRestoreVersionNotSupported = 2,  // "DataVersion" does not start with 220
  kRestoreContentRefused = 3,       // the writer refused the content word
};
// What the restore commands answer when the user cancelled the file chooser.
inline constexpr int kRestoreCancelled = -1;

// How many entries and clients a backup or an archive wrote, or a restore
// added: a restore counts only the clients that were not there before.
struct BackupCounts {
  int entries = 0;
  int clients = 0;
};

// Told of the progress of a backup or restore, as the device's progress
// dialog was told by posted messages.
class WriterProgress {
 public:
  virtual ~WriterProgress() = default;
  // Restore only: the number of entries and clients in the file, once it is
  // open and its version accepted.
  virtual void Total(int records) { (void)records; }
  // After each entry and each client written or restored.
  virtual void Step() = 0;
};

// The writer of a backup file. Each kind of file has its own writer class;
// the backup and restore operations below call these operations only.
// The stores must be open and outlive the writer.
class BackupWriter {
 public:
  BackupWriter(EntryStore& entries, Catalogue& catalogue, const Locale& locale)
      : entries_(entries), catalogue_(catalogue), locale_(locale) {}
  virtual ~BackupWriter() = default;
  BackupWriter(const BackupWriter&) = delete;
  BackupWriter& operator=(const BackupWriter&) = delete;

  // 220 for every kind of file.
  virtual std::uint32_t DataVersion() const { return kDataVersion; }
  // Writes the second word of "DataVersion" (a backup: 1).
  virtual bool WriteContentWord(BackupFile& file, CompoundStream data_version);
  // Fills "Records": every entry in store order as "Record0", "Record1", ...
  virtual bool WriteRecords(BackupFile& file, CompoundStorage records);
  // Creates "Clients" in the root and fills it: every client in name order.
  virtual bool WriteClients(BackupFile& file);
  // Reads one "Record%d" stream and adds its entry as a new record.
  virtual bool ReadRecord(const CompoundReader& reader, CompoundStream record);
  // Reads "Clients": a client whose name is not yet in the catalogue is added
  // with a new number, one whose name is there is not added again; then its
  // project-task pairs, tasks, contacts and rates are added for that client,
  // except those the client has already.
  virtual bool ReadClients(const CompoundReader& reader);
  // Whether a restore accepts the content word (a backup: any).
  virtual bool CheckContentWord(std::uint32_t word) const {
    (void)word;
    return true;
  }

  // The progress to tell, or null (the default) for none. Not owned.
  void set_progress(WriterProgress* progress) { progress_ = progress; }
  // What this writer has written or added so far.
  const BackupCounts& counts() const { return counts_; }

 protected:
  // Writes `entry` as "Record<number>" into `records`.
  bool WriteEntryStream(BackupFile& file, CompoundStorage records, int number,
                        const TimeEntry& entry);
  // Writes `client` as "Client<number>" into `clients` with its five streams.
  bool WriteClientStorage(BackupFile& file, CompoundStorage clients, int number,
                          const Client& client);
  // Tells the progress of one more entry or client.
  void Step() {
    if (progress_ != nullptr) progress_->Step();
  }
  // Counts one record added by a restore; false when the batch failed.
  bool Added();

  EntryStore& entries_;
  Catalogue& catalogue_;
  const Locale& locale_;
  WriterProgress* progress_ = nullptr;
  BackupCounts counts_;

 private:
  friend int Restore(BackupWriter& writer, FileSystem& files, const std::string& path);
  bool RestoreClient(const CompoundReader& reader, CompoundStorage storage);
  WriteBatch* batch_ = nullptr;  // set by Restore while it runs
};

// After a restore that failed part-way: the system's message, and the
// entries and clients it added before the failure on a line of its own (so
// that the user knows a second restore of the same file would add them
// twice). The bare message when nothing was added.
void ShowRestoreFailure(UserPrompt& prompt, const std::u16string& text, MessageIcon icon,
                        const BackupWriter& writer);

// The backup operation: creates the file at `path` (replacing one that is
// there), writes "DataVersion", "Records" and, through the writer, "Clients",
// commits, and reads the file back to compare it with what was written.
// True only when all of that succeeded. A failure leaves the partly written
// file where it is; the stores are never changed.
bool Backup(BackupWriter& writer, FileSystem& files, const std::string& path);

// The restore operation: kRestoreFailed when the file cannot be read or is
// not a sound compound file, or "DataVersion", "Records" or a record is
// missing or damaged, or a record cannot be added; kRestoreVersionNotSupported
// when the data version is not the writer's; kRestoreContentRefused when the
// writer refuses the content word. Both of those change nothing. Otherwise
// the entries of "Records" (in the container's order) and then the clients
// are added; a failure part-way keeps what was added before it. The writes go
// in batches of WriteBatch::kDefaultChunk records: a crash in the middle
// loses at most the records of the batch not yet committed.
int Restore(BackupWriter& writer, FileSystem& files, const std::string& path);

// The result of the backup and archive commands.
enum class BackupOutcome { kCancelled, kDone, kFailed };

// The Backup command: the save-file chooser ("Backup Files (*.qrd)|*.qrd|",
// extension "qrd", overwrite prompt); on a file, the progress ("Please wait
// while backup is in progress. ...", counted "Backing up record %d..." over
// entries and clients) and the backup; on failure "Backup has failed. Please
// make sure you have enough space on the storage device." (error icon).
// `counts`, when given, gets what was written.
BackupOutcome BackupCommand(EntryStore& entries, Catalogue& catalogue,
                            const Locale& locale, UserPrompt& prompt, FileSystem& files,
                            BackupCounts* counts = nullptr);

// The Restore command: the open-file chooser (same filter, path must exist);
// on a file, the progress ("Data restore is in progress. ...") and the
// restore; result 1 shows "Restore has failed. Please select a different
// backup and try again.", result 2 "This backup file is not supported and
// cannot be used to restore data. Please select a different backup file."
// (error icon). The restore result, or kRestoreCancelled; `counts`, when
// given, gets what was added.
int RestoreCommand(EntryStore& entries, Catalogue& catalogue, const Locale& locale,
                   UserPrompt& prompt, FileSystem& files, BackupCounts* counts = nullptr);

// "Backing up record %d..." filled with `counter`.
std::u16string BackingUpRecordText(int counter);

}  // namespace quillora

#endif  // QUILLORA_BACKUP_BACKUP_H_
