// Backup, restore, archive and archive restore: the window's commands with
// the file named on the command line instead of chosen in a dialog.
#include <memory>
#include <string>
#include <vector>

#include "app/cli/cli_commands.h"
#include "app/cli/period_options.h"
#include "backup/archive.h"
#include "backup/backup.h"
#include "platform/text.h"
#include "store/string_table.h"

namespace quillora {

namespace {

// Takes the one FILE argument; an exit status other than 0 when it is not
// there alone.
int TakeFile(Arguments& args, std::string* file) {
  const auto words = args.Positionals();
  if (!args.error().empty()) return UsageError(args.error());
  if (words.size() != 1) return UsageError("expected one FILE");
  if (const int status = CheckPathArgument(words[0])) return status;
  *file = words[0];
  return kExitDone;
}

// Opens the catalogue and the entries; the entries store is made once the
// volume is there.
int OpenStores(CliContext& context, std::unique_ptr<EntryStore>* entries) {
  if (!context.OpenCatalogue()) return kExitFailed;
  *entries = std::make_unique<EntryStore>(*context.data.volume);
  if (!(*entries)->Open()) return context.Fail(LoadString(kIdsUnableToLoadDatabase));
  return kExitDone;
}

int BackupRun(CliContext& context, Arguments& args) {
  std::string file;
  if (const int status = TakeFile(args, &file)) return status;
  std::unique_ptr<EntryStore> entries;
  if (const int status = OpenStores(context, &entries)) return status;
  context.prompt->SetFile(file);
  return BackupCommand(*entries, *context.data.catalogue, context.locale(),
                       *context.prompt, FileSystem::Posix()) == BackupOutcome::kDone
             ? kExitDone
             : kExitFailed;
}

int RestoreRun(CliContext& context, Arguments& args) {
  std::string file;
  if (const int status = TakeFile(args, &file)) return status;
  std::unique_ptr<EntryStore> entries;
  if (const int status = OpenStores(context, &entries)) return status;
  context.prompt->SetFile(file);
  return RestoreCommand(*entries, *context.data.catalogue, context.locale(),
                        *context.prompt, FileSystem::Posix()) == kRestoreOk
             ? kExitDone
             : kExitFailed;
}

int ArchiveRun(CliContext& context, Arguments& args) {
  const bool data = args.Flag("--data");
  const auto clients = args.Value("--clients");
  ArchiveRequest request;
  request.delete_when_archived = args.Flag("--delete");
  if (data == clients.has_value()) {
    if (!args.error().empty()) return UsageError(args.error());
    return UsageError("archive takes either --data or --clients");
  }
  if (!context.OpenData()) return kExitFailed;
  if (data) {
    request.type = kArchiveData;
    const PeriodOptions options = TakePeriodOptions(args, true);
    if (!args.error().empty()) return UsageError(args.error());
    const auto period = ChosenPeriod(options, context.data.settings, *context.clock);
    if (!RangeToFileTimes(period->GetRange(), &request.start, &request.end)) {
      return UsageError("the period is outside the calendar");
    }
  }
  std::string file;
  if (const int status = TakeFile(args, &file)) return status;
  std::vector<std::u16string> names;
  if (clients && !SplitClientNames(*clients, &names)) {
    return UsageError("--clients takes names separated by commas");
  }
  std::unique_ptr<EntryStore> entries;
  if (const int status = OpenStores(context, &entries)) return status;
  if (clients) {
    request.type = kArchiveClientData;
    CatalogueService* service = context.OpenCatalogueService();
    if (!service) return kExitFailed;
    for (const std::u16string& name : names) {
      const std::optional<Client> client = service->TakeClient(name);
      if (!client) return kExitFailed;
      request.clients.push_back(client->record_id);
    }
  }
  context.prompt->SetFile(file);
  return ArchiveCommand(*entries, *context.data.catalogue, context.locale(),
                        *context.prompt, FileSystem::Posix(),
                        request) == BackupOutcome::kDone
             ? kExitDone
             : kExitFailed;
}

int ArchiveRestoreRun(CliContext& context, Arguments& args) {
  std::string file;
  if (const int status = TakeFile(args, &file)) return status;
  std::unique_ptr<EntryStore> entries;
  if (const int status = OpenStores(context, &entries)) return status;
  context.prompt->SetFile(file);
  return ArchiveRestoreCommand(*entries, *context.data.catalogue, context.locale(),
                               *context.prompt, FileSystem::Posix()) == kRestoreOk
             ? kExitDone
             : kExitFailed;
}

}  // namespace

const Command kBackupCommand = {
    "backup", "backup FILE", "back up every time entry and the client catalogue",
    "Writes a backup file (*.qrd) and reads it back to check it. An existing FILE is\n"
    "replaced only after the question.",
    BackupRun};
const Command kRestoreCommand = {
    "restore", "restore FILE", "add the entries and clients of a backup",
    "Nothing is deleted: the entries of the backup are added to those there are, and a\n"
    "client whose name is already there is not added again.",
    RestoreRun};
const Command kArchiveCommand = {
    "archive", "archive (--data [PERIOD] | --clients NAME,...) [--delete] FILE",
    "move entries or clients' catalogue data into an archive",
    "--data [--day|--week|--month [DATE] | --custom FROM TO | --from DATE --to DATE]\n"
    "    the time entries after the start of the period up to its end (default: the\n"
    "    period of the View setting at today)\n"
    "--clients NAME[,NAME...]\n"
    "    the projects, tasks, contacts and rates of those clients\n"
    "--delete   delete what was archived once the file is written and checked",
    ArchiveRun};
const Command kArchiveRestoreCommand = {
    "archive-restore", "archive-restore FILE", "add the entries of a data archive",
    "Only archives of data are restored; client data never is.", ArchiveRestoreRun};

}  // namespace quillora
