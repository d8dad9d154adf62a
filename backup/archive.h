// Archives ("*.qra"): the time entries of a date range ("Data") or the
// catalogue data of chosen clients ("Client Data Only") moved out into a file
// of the backup's layout, optionally deleting what was archived. Archive
// restore brings the entries of a "Data" archive back; client data is never
// restored from an archive.
#ifndef QUILLORA_BACKUP_ARCHIVE_H_
#define QUILLORA_BACKUP_ARCHIVE_H_

#include <cstdint>
#include <string>
#include <vector>

#include "backup/backup.h"
#include "platform/clock.h"

namespace quillora {

// The archive type, written as the content word of "DataVersion".
enum ArchiveType : std::uint32_t {
  kArchiveData = 2,        // "Data": the entries of the range
  kArchiveClientData = 4,  // "Client Data Only": the chosen clients' catalogue data
};

// The "Type:" list of the archive dialog, index 0 "Data", 1 "Client Data Only".
inline constexpr int kArchiveTypeCount = 2;
ArchiveType ArchiveTypeOfListIndex(int index);
const std::u16string& ArchiveTypeName(int index);

class ArchiveWriter : public BackupWriter {
 public:
  // `start` and `end` bound the entries of a "Data" archive (an entry exactly
  // at `start` is outside); `clients` are the client records of a "Client
  // Data Only" archive, in list order. The writer keeps copies.
  ArchiveWriter(EntryStore& entries, Catalogue& catalogue, const Locale& locale,
                std::uint32_t type, FileTime start, FileTime end,
                std::vector<ObjectId> clients);

  // The archive type.
  bool WriteContentWord(BackupFile& file, CompoundStream data_version) override;
  // Type 4: nothing. Otherwise the entries after `start` up to `end`.
  bool WriteRecords(BackupFile& file, CompoundStorage records) override;
  // Type 2: nothing, not even the "Clients" storage. Otherwise the chosen
  // clients as "Client0", "Client1", ... in list order; false when one of
  // them is gone.
  bool WriteClients(BackupFile& file) override;
  // Does nothing and succeeds.
  bool ReadClients(const CompoundReader& reader) override;
  // Only 2, a "Data" archive.
  bool CheckContentWord(std::uint32_t word) const override {
    return word == kArchiveData;
  }

 private:
  std::uint32_t type_;
  FileTime start_;
  FileTime end_;
  std::vector<ObjectId> clients_;
};

// Deletes what a "Data" archive of the same range holds: the walk from the
// first entry after `start`, each entry deleted once the walk has moved past
// it, up to the first entry later than `end`, which is kept. False when a
// deletion failed (the others are still made).
bool DeleteArchivedEntries(EntryStore& entries, FileTime start, FileTime end);

// Deletes what a "Client Data Only" archive holds, client by client in list
// order: its project-task pairs, tasks, contacts and rates, then its record.
// Time entries are not touched. False when a client record cannot be read or
// deleted.
bool DeleteArchivedClients(Catalogue& catalogue, const std::vector<ObjectId>& clients);

// What the archive dialog gives.
struct ArchiveRequest {
  std::uint32_t type = kArchiveData;
  FileTime start = 0;  // "Start:" and "End:" as ticks
  FileTime end = 0;
  std::vector<ObjectId> clients;  // the checked clients' records, in list order
  bool delete_when_archived = false;
};

// The Archive command after its dialog: the save-file chooser ("Archive
// Files (*.qra)|*.qra|", extension "qra", overwrite prompt); on a file, the
// backup operation with the archive writer and, when that succeeded and
// deletion was asked for, the deletion. A failure of either shows "Archive
// operation has failed. Please make sure you have enough space on storage
// device and try again." (error icon); a failed write deletes nothing.
// `counts`, when given, gets what was written.
BackupOutcome ArchiveCommand(EntryStore& entries, Catalogue& catalogue,
                             const Locale& locale, UserPrompt& prompt, FileSystem& files,
                             const ArchiveRequest& request,
                             BackupCounts* counts = nullptr);

// The Archive Restore command: the open-file chooser, then the restore with
// an archive writer of type 2, reported by its result: 0 "Archive file has
// been restored." (information), 1 "Archive file cannot be loaded. The file
// may be created by Quillora prior to version 2.3." (error), 2 nothing,
// 3 "Only Archive file with data can be restored." (warning). The restore
// result, or kRestoreCancelled; `counts`, when given, gets the entries added.
int ArchiveRestoreCommand(EntryStore& entries, Catalogue& catalogue, const Locale& locale,
                          UserPrompt& prompt, FileSystem& files,
                          BackupCounts* counts = nullptr);

}  // namespace quillora

#endif  // QUILLORA_BACKUP_ARCHIVE_H_
