#include "backup/backup.h"

#include <cstdio>
#include <string>
#include <string_view>
#include <utility>

#include "backup/backup_streams.h"
#include "platform/text.h"
#include "store/rates.h"
#include "store/string_table.h"
#include "timekeeping/write_batch.h"

namespace quillora {
namespace {

constexpr char16_t kDataVersionName[] = u"DataVersion";
constexpr char16_t kRecordsName[] = u"Records";
constexpr char16_t kClientsName[] = u"Clients";
constexpr char16_t kNameStream[] = u"Name";
constexpr char16_t kProjectTasksStream[] = u"ProjectTasks";
constexpr char16_t kTasksStream[] = u"Tasks";
constexpr char16_t kContactsStream[] = u"Contacts";
constexpr char16_t kRatesStream[] = u"Rates";

// "Record12", "Client3".
std::u16string NumberedName(std::u16string_view prefix, int number) {
  return std::u16string(prefix) + WidenAscii(std::to_string(number));
}

bool ReadStream(const CompoundReader& reader, CompoundStorage parent,
                std::u16string_view name, std::string* bytes) {
  CompoundStream stream;
  return reader.OpenStream(parent, name, &stream) == CompoundResult::kOk &&
         reader.ReadStream(stream, bytes) == CompoundResult::kOk;
}

int RecordCount(RecordStore& store) {
  DatabaseInfo info;
  if (!store.volume().GetDatabaseInfo(store.database_id(), &info)) return 0;
  return static_cast<int>(info.record_count);
}

}  // namespace

std::u16string BackingUpRecordText(int counter) {
  char text[128];
  std::snprintf(text, sizeof text, ToUtf8(LoadString(kIdsBackingUpRecord)).c_str(),
                counter);
  return WidenAscii(text);
}

bool BackupWriter::WriteContentWord(BackupFile& file, CompoundStream data_version) {
  StreamBuilder b;
  b.U32(kBackupContentWord);
  return file.Write(data_version, b.bytes());
}

bool BackupWriter::WriteEntryStream(BackupFile& file, CompoundStorage records, int number,
                                    const TimeEntry& entry) {
  if (!file.WriteStream(records, NumberedName(u"Record", number),
                        EncodeEntryRecord(entry))) {
    return false;
  }
  ++counts_.entries;
  return true;
}

bool BackupWriter::WriteRecords(BackupFile& file, CompoundStorage records) {
  TimeEntry entry;
  int number = 0;
  entries_.Seek(SeekType::kBeginning, 0);
  for (;;) {
    const int read = ReadEntry(entries_, &entry);
    if (read == 1) return true;
    // A walk that breaks off is a failed backup, never a short one.
    if (read != 0 || !WriteEntryStream(file, records, number++, entry)) return false;
    Step();
    entries_.Seek(SeekType::kCurrent, 1);
  }
}

bool BackupWriter::WriteClientStorage(BackupFile& file, CompoundStorage clients,
                                      int number, const Client& client) {
  CompoundStorage storage;
  const bool written =
      file.CreateStorage(clients, NumberedName(u"Client", number), &storage) &&
      file.WriteStream(storage, kNameStream, EncodeClientName(client.name)) &&
      file.WriteStream(
          storage, kProjectTasksStream,
          EncodeProjectTasks(ProjectRecords(catalogue_.projects, client.number))) &&
      file.WriteStream(storage, kTasksStream,
                       EncodeNames(ItemsOf(catalogue_.tasks, client.number))) &&
      file.WriteStream(storage, kContactsStream,
                       EncodeNames(ItemsOf(catalogue_.contacts, client.number))) &&
      file.WriteStream(storage, kRatesStream,
                       EncodeRates(RatesOf(catalogue_.rates, client.number)));
  if (written) ++counts_.clients;
  return written;
}

bool BackupWriter::WriteClients(BackupFile& file) {
  CompoundStorage clients;
  if (!file.CreateStorage(file.root(), kClientsName, &clients)) return false;
  Client client;
  int number = 0;
  catalogue_.clients.Seek(SeekType::kBeginning, 0);
  for (;;) {
    const int read = ReadClient(catalogue_.clients, &client);
    if (read == 1) return true;
    if (read != 0 || !WriteClientStorage(file, clients, number++, client)) return false;
    Step();
    catalogue_.clients.Seek(SeekType::kCurrent, 1);
  }
}

bool BackupWriter::Added() { return batch_ == nullptr || batch_->Step(); }

bool BackupWriter::ReadRecord(const CompoundReader& reader, CompoundStream record) {
  std::string bytes;
  TimeEntry entry;
  if (reader.ReadStream(record, &bytes) != CompoundResult::kOk ||
      !DecodeEntryRecord(bytes, &entry) || !AddEntry(entries_, entry)) {
    return false;
  }
  ++counts_.entries;
  if (!Added()) return false;
  Step();
  return true;
}

bool BackupWriter::RestoreClient(const CompoundReader& reader, CompoundStorage storage) {
  std::string bytes;
  std::u16string name;
  if (!ReadStream(reader, storage, kNameStream, &bytes) ||
      !DecodeClientName(bytes, &name)) {
    return false;
  }
  // A client without a name, or one whose number is 0 (written while the
  // counter was missing), owns nothing that could be restored: number 0 is
  // the default rates' number. Its streams are still read, so that a damaged
  // file is still refused.
  ClientId number = 0;
  if (!name.empty()) {
    Client found;
    if (!FindClient(catalogue_.clients, name, &found)) {
      AddClient(catalogue_.clients, name);
      if (!FindClient(catalogue_.clients, name, &found)) return false;
      ++counts_.clients;
      if (!Added()) return false;
    }
    number = found.number;
  }

  std::vector<ProjectRecord> projects;
  if (!ReadStream(reader, storage, kProjectTasksStream, &bytes) ||
      !DecodeProjectTasks(bytes, &projects)) {
    return false;
  }
  if (number != 0) {
    // What the client has already is not added again (the rule of AddProject).
    ProjectAdder adder(catalogue_.projects, locale_, number);
    for (const ProjectRecord& r : projects) {
      if (adder.Refuses(r.project, r.task)) continue;
      if (adder.Add(r.project, r.task) == 0 || !Added()) return false;
    }
  }

  // Tasks and contacts: the rule of AddItem, no empty name and none twice.
  const std::pair<const char16_t*, RecordStore*> lists[] = {
      {kTasksStream, &catalogue_.tasks}, {kContactsStream, &catalogue_.contacts}};
  for (const auto& [stream, store] : lists) {
    std::vector<std::u16string> names;
    if (!ReadStream(reader, storage, stream, &bytes) || !DecodeNames(bytes, &names)) {
      return false;
    }
    if (number == 0) continue;
    ItemAdder adder(*store, locale_, number);
    for (const std::u16string& n : names) {
      if (adder.Refuses(n)) continue;
      if (adder.Add(n) == 0 || !Added()) return false;
    }
  }

  std::vector<Rate> rates;
  if (!ReadStream(reader, storage, kRatesStream, &bytes) || !DecodeRates(bytes, &rates)) {
    return false;
  }
  if (number != 0) {
    // The file has no descriptions, so a rate that the client has already
    // with the same type, value and flag and no description is the same rate.
    std::vector<Rate> have = RatesOf(catalogue_.rates, number);
    auto known = [&have](const Rate& r) {
      for (const Rate& h : have) {
        if (h.type == r.type && h.value == r.value && h.flag == r.flag &&
            h.description.empty()) {
          return true;
        }
      }
      return false;
    };
    for (Rate& r : rates) {
      if (known(r)) continue;
      // The value is written in hundredths as read: no trip through a double.
      if (catalogue_.rates.WriteProps(
              0, {PropValue::Number(kPropRateType, r.type),
                  PropValue::Number(kPropRateValue, r.value),
                  PropValue::Number(kPropClientId, number),
                  PropValue::Number(kPropRateFlag, r.flag ? 1 : 0)}) == 0 ||
          !Added()) {
        return false;
      }
      r.description.clear();
      have.push_back(r);
    }
  }
  Step();
  return true;
}

bool BackupWriter::ReadClients(const CompoundReader& reader) {
  CompoundStorage clients;
  if (reader.OpenStorage(reader.root(), kClientsName, &clients) != CompoundResult::kOk) {
    return false;
  }
  CompoundEnumerator it = reader.EnumElements(clients);
  for (CompoundElement element; it.Next(&element);) {
    CompoundStorage storage;
    if (reader.OpenStorage(clients, element.name, &storage) != CompoundResult::kOk ||
        !RestoreClient(reader, storage)) {
      return false;
    }
  }
  return true;
}

bool Backup(BackupWriter& writer, FileSystem& files, const std::string& path) {
  BackupFile file;
  if (!file.Create(files, path)) return false;
  CompoundStream data_version;
  StreamBuilder version;
  version.U32(writer.DataVersion());
  if (!file.CreateStream(file.root(), kDataVersionName, &data_version) ||
      !file.Write(data_version, version.bytes()) ||
      !writer.WriteContentWord(file, data_version)) {
    return false;
  }
  CompoundStorage records;
  if (!file.CreateStorage(file.root(), kRecordsName, &records) ||
      !writer.WriteRecords(file, records) || !writer.WriteClients(file)) {
    return false;
  }
  // A backup is reported done only when the file on the disk reads back as
  // what was meant to be in it.
  return file.Commit() && file.Verify(files);
}

int Restore(BackupWriter& writer, FileSystem& files, const std::string& path) {
  std::string bytes;
  CompoundReader reader;
  if (!files.ReadWholeFile(path, &bytes, kCompoundFileMaxBytes) ||
      reader.OpenBytes(std::move(bytes)) != CompoundResult::kOk) {
    return kRestoreFailed;
  }
  std::string version_bytes;
  if (!ReadStream(reader, reader.root(), kDataVersionName, &version_bytes)) {
    return kRestoreFailed;
  }
  StreamParser version(version_bytes);
  std::uint32_t data_version, content_word;
  if (!version.U32(&data_version)) return kRestoreFailed;
  if (data_version != writer.DataVersion()) return kRestoreVersionNotSupported;
  if (!version.U32(&content_word)) return kRestoreFailed;
  if (!writer.CheckContentWord(content_word)) return kRestoreContentRefused;

  CompoundStorage records;
  if (reader.OpenStorage(reader.root(), kRecordsName, &records) != CompoundResult::kOk) {
    return kRestoreFailed;
  }
  if (writer.progress_ != nullptr) {
    int total = 0;
    CompoundEnumerator count = reader.EnumElements(records);
    for (CompoundElement element; count.Next(&element);) ++total;
    CompoundStorage clients;
    if (reader.OpenStorage(reader.root(), kClientsName, &clients) ==
        CompoundResult::kOk) {
      count = reader.EnumElements(clients);
      for (CompoundElement element; count.Next(&element);) ++total;
    }
    writer.progress_->Total(total);
  }

  // What was added stays, also when a later record fails: the batch is
  // committed on every way out.
  WriteBatch batch(writer.entries_.volume());
  writer.batch_ = &batch;
  struct Detach {
    BackupWriter& writer;
    ~Detach() { writer.batch_ = nullptr; }
  } detach{writer};

  // The container's order, not the numbers in the names.
  CompoundEnumerator it = reader.EnumElements(records);
  for (CompoundElement element; it.Next(&element);) {
    CompoundStream record;
    if (reader.OpenStream(records, element.name, &record) != CompoundResult::kOk ||
        !writer.ReadRecord(reader, record)) {
      batch.Finish();
      return kRestoreFailed;
    }
  }
  const bool clients_read = writer.ReadClients(reader);
  if (!batch.Finish() || !clients_read) return kRestoreFailed;
  return kRestoreOk;
}

namespace {

// The backup dialog's bar and text: the counter starts at 1 and is shown,
// then every step shows it and counts on, so the first record shows 1 a
// second time and the last shows the total.
class BackupDialogProgress : public WriterProgress {
 public:
  explicit BackupDialogProgress(UserPrompt& prompt) : prompt_(prompt) {}
  void Start() { prompt_.StepProgress(0, BackingUpRecordText(counter_)); }
  void Step() override {
    prompt_.StepProgress(counter_, BackingUpRecordText(counter_));
    ++counter_;
  }

 private:
  UserPrompt& prompt_;
  int counter_ = 1;
};

// The restore dialog has its text only; the total comes once the file is open.
class RestoreDialogProgress : public WriterProgress {
 public:
  explicit RestoreDialogProgress(UserPrompt& prompt) : prompt_(prompt) {}
  ~RestoreDialogProgress() override {
    if (begun_) prompt_.EndProgress();
  }
  void Total(int records) override {
    prompt_.BeginProgress(LoadString(kIdsRestoreInProgress), records);
    begun_ = true;
  }
  void Step() override {
    prompt_.StepProgress(++done_, LoadString(kIdsRestoreInProgress));
  }

 private:
  UserPrompt& prompt_;
  bool begun_ = false;
  int done_ = 0;
};

FileChooser BackupChooser(std::uint32_t flags) {
  FileChooser chooser;
  chooser.filter = LoadString(kIdsBackupFilter);
  chooser.default_extension = u"qrd";
  chooser.flags = flags;
  return chooser;
}

}  // namespace

BackupOutcome BackupCommand(EntryStore& entries, Catalogue& catalogue,
                            const Locale& locale, UserPrompt& prompt, FileSystem& files,
                            BackupCounts* counts) {
  const auto path =
      prompt.ChooseFileToSave(BackupChooser(kFileOverwritePrompt | kFileHideReadOnly));
  if (!path) return BackupOutcome::kCancelled;
  BackupWriter writer(entries, catalogue, locale);
  BackupDialogProgress progress(prompt);
  writer.set_progress(&progress);
  prompt.BeginProgress(LoadString(kIdsBackupInProgress),
                       RecordCount(entries) + RecordCount(catalogue.clients));
  progress.Start();
  const bool done = Backup(writer, files, *path);
  prompt.EndProgress();
  if (counts != nullptr) *counts = writer.counts();
  if (done) return BackupOutcome::kDone;
  prompt.ShowMessage(kAppTitle, LoadString(kIdsBackupFailed), MessageIcon::kError);
  return BackupOutcome::kFailed;
}

void ShowRestoreFailure(UserPrompt& prompt, const std::u16string& text, MessageIcon icon,
                        const BackupWriter& writer) {
  const int entries = writer.counts().entries;
  const int clients = writer.counts().clients;
  if (entries == 0 && clients == 0) {
    prompt.ShowMessage(kAppTitle, text, icon);
    return;
  }
  auto count = [](int n, const char16_t* one, const char16_t* many) {
    return FromUtf8(std::to_string(n)) + u" " + (n == 1 ? one : many);
  };
  prompt.ShowDetailedMessage(
      kAppTitle, text, icon,
      u"Added before the failure: " + count(entries, u"entry", u"entries") + u" and " +
          count(clients, u"client", u"clients") +
          u". They stay; restoring the same file again adds them a second time.");
}

int RestoreCommand(EntryStore& entries, Catalogue& catalogue, const Locale& locale,
                   UserPrompt& prompt, FileSystem& files, BackupCounts* counts) {
  const auto path =
      prompt.ChooseFileToOpen(BackupChooser(kFilePathMustExist | kFileHideReadOnly));
  if (!path) return kRestoreCancelled;
  BackupWriter writer(entries, catalogue, locale);
  int result;
  {
    RestoreDialogProgress progress(prompt);
    writer.set_progress(&progress);
    result = Restore(writer, files, *path);
  }
  if (counts != nullptr) *counts = writer.counts();
  if (result == kRestoreFailed) {
    ShowRestoreFailure(prompt, LoadString(kIdsRestoreFailed), MessageIcon::kError,
                       writer);
  } else if (result == kRestoreVersionNotSupported) {
    prompt.ShowMessage(kAppTitle, LoadString(kIdsBackupNotSupported),
                       MessageIcon::kError);
  }
  return result;
}

}  // namespace quillora
