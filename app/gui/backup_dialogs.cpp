#include "app/gui/backup_dialogs.h"

#include <QDir>
#include <QFileInfo>

#include "app/gui/dialog_support.h"
#include "app/gui/file_command_prompt.h"
#include "app/gui/main_window.h"
#include "app/gui/written_file_notice.h"
#include "platform/file.h"
#include "store/string_table.h"

namespace quillora {
namespace {

QString Entries(int count) {
  return Counted(count, QObject::tr("entry"), QObject::tr("entries"));
}
QString Clients(int count) {
  return Counted(count, QObject::tr("client"), QObject::tr("clients"));
}
QString Native(const QString& path) { return QDir::toNativeSeparators(path); }

QString Today(MainWindow* window) {
  return DayFileStem(ToQDate(window->clock().LocalNow()));
}

// Says what a restore added, from which file.
void ShowRestored(MainWindow* window, const BackupCounts& added, const QString& file,
                  bool with_clients) {
  const QString what =
      with_clients
          ? QObject::tr("%1 and %2").arg(Entries(added.entries), Clients(added.clients))
          : Entries(added.entries);
  ShowNotice(window, QObject::tr("Added %1 from %2").arg(what, Native(file)));
}

}  // namespace

BackupOutcome BackupFromWindow(MainWindow* window) {
  Catalogue* catalogue = CatalogueOf(window);
  if (catalogue == nullptr) return BackupOutcome::kFailed;
  FileCommandPrompt files(window->prompt(), window->data().registry.get(),
                          QString("quillora-%1.qrd").arg(Today(window)));
  BackupCounts written;
  BackupOutcome outcome;
  {
    WaitingPrompt prompt(files);
    outcome = BackupCommand(window->entries(), *catalogue, *window->data().locale, prompt,
                            FileSystem::Posix(), &written);
  }
  if (outcome == BackupOutcome::kDone) {
    ShowNotice(window,
               QObject::tr("Backed up %1 and %2 to %3")
                   .arg(Entries(written.entries), Clients(written.clients),
                        Native(files.chosen())),
               files.chosen());
  }
  return outcome;
}

namespace {

using RestoreRun = int (*)(EntryStore&, Catalogue&, const Locale&, UserPrompt&,
                           FileSystem&, BackupCounts*);

// Runs a restore on the handed file, or on the one the user chooses, and
// says what it added. An archive adds entries only.
int RestoreWith(MainWindow* window, const std::optional<std::string>& handed,
                RestoreRun run, bool with_clients) {
  Catalogue* catalogue = CatalogueOf(window);
  if (catalogue == nullptr) return kRestoreFailed;
  int result;
  BackupCounts added;
  FileCommandPrompt files(window->prompt(), window->data().registry.get());
  {
    HandedFilePrompt handed_prompt(files, handed.value_or(std::string()));
    WaitingPrompt chooser_prompt(files);
    UserPrompt& prompt =
        handed ? static_cast<UserPrompt&>(handed_prompt) : chooser_prompt;
    result = run(window->entries(), *catalogue, *window->data().locale, prompt,
                 FileSystem::Posix(), &added);
  }
  if (result != kRestoreCancelled) window->Reload();
  if (result == kRestoreOk) {
    ShowRestored(window, added, handed ? QString::fromStdString(*handed) : files.chosen(),
                 with_clients);
  }
  return result;
}

}  // namespace

int RestoreFromWindow(MainWindow* window, const std::optional<std::string>& handed) {
  return RestoreWith(window, handed, RestoreCommand, true);
}

int ArchiveRestoreFromWindow(MainWindow* window,
                             const std::optional<std::string>& handed) {
  return RestoreWith(window, handed, ArchiveRestoreCommand, false);
}

bool ArchiveRequestOf(const CriteriaDialog& dialog, UserPrompt& prompt,
                      ArchiveRequest* request) {
  request->type = ArchiveTypeOfListIndex(dialog.type_index());
  request->delete_when_archived = dialog.delete_when_archived();
  request->clients.clear();
  if (request->type == kArchiveClientData) {
    for (const Client& client : dialog.CheckedClients()) {
      request->clients.push_back(client.record_id);
    }
    return true;
  }
  if (!RangeToFileTimes(dialog.Range(), &request->start, &request->end)) {
    prompt.ShowMessage(kAppTitle, kRangeReversed, MessageIcon::kExclamation);
    return false;
  }
  return true;
}

BackupOutcome RunWindowArchive(MainWindow* window,
                               const std::optional<ArchiveRequest>& request) {
  if (!request) return BackupOutcome::kCancelled;
  Catalogue* catalogue = CatalogueOf(window);
  if (catalogue == nullptr) return BackupOutcome::kFailed;
  const bool data = request->type != kArchiveClientData;
  QString stem = Today(window);
  SystemTime start, end;
  if (data && FileTimeToSystemTime(request->start, &start) &&
      FileTimeToSystemTime(request->end, &end)) {
    stem = RangeFileStem({start, end});
  }
  FileCommandPrompt files(window->prompt(), window->data().registry.get(),
                          QString(data ? "archive-%1.qra" : "clients-%1.qra").arg(stem));
  BackupOutcome outcome;
  BackupCounts written;
  {
    WaitingPrompt prompt(files);
    outcome = ArchiveCommand(window->entries(), *catalogue, *window->data().locale,
                             prompt, FileSystem::Posix(), *request, &written);
  }
  // The view reads its entries again whatever happened.
  window->Reload();
  if (outcome == BackupOutcome::kDone) {
    const QString what = data ? Entries(written.entries) : Clients(written.clients);
    ShowNotice(window,
               (request->delete_when_archived ? QObject::tr("Moved %1 to the archive %2")
                                              : QObject::tr("Archived %1 to %2"))
                   .arg(what, Native(files.chosen())),
               files.chosen());
  }
  return outcome;
}

void ArchiveFromWindow(MainWindow* window) {
  Catalogue* catalogue = CatalogueOf(window);
  if (catalogue == nullptr) return;
  CriteriaDialog dialog(CriteriaDialog::Purpose::kArchive, window->period().GetRange(),
                        ClientList(catalogue->clients), window->prompt(), window);
  std::optional<ArchiveRequest> request;
  if (dialog.exec() == QDialog::Accepted) {
    ArchiveRequest filled;
    if (!ArchiveRequestOf(dialog, window->prompt(), &filled)) return;
    request = filled;
  }
  RunWindowArchive(window, request);
}

QString RestoreOfferText(const QString& path) {
  return QString(
             "Do you want to restore the data of the backup %1? The entries and "
             "clients it holds are added to those you have.")
      .arg(QDir::toNativeSeparators(path));
}

QString ArchiveRestoreOfferText(const QString& path) {
  return QString("Do you want to restore the entries of the archive %1?")
      .arg(QDir::toNativeSeparators(path));
}

QString NotADataFileText(const QString& path) {
  return QString(
             "Quillora cannot open %1: it is neither a backup (.qrd) nor an "
             "archive (.qra).")
      .arg(QDir::toNativeSeparators(path));
}

void OpenHandedFiles(MainWindow* window, const QStringList& paths) {
  for (const QString& path : paths) {
    const QString suffix = QFileInfo(path).suffix().toLower();
    const bool backup = suffix == "qrd";
    if (!backup && suffix != "qra") {
      window->prompt().ShowMessage(kAppTitle, FromQString(NotADataFileText(path)),
                                   MessageIcon::kExclamation);
      continue;
    }
    const QString text = backup ? RestoreOfferText(path) : ArchiveRestoreOfferText(path);
    if (window->prompt().Ask(kAppTitle, FromQString(text), MessageIcon::kQuestion,
                             QuestionButtons::kYesNo, Answer::kNo) != Answer::kYes) {
      continue;
    }
    const std::string file = QFileInfo(path).absoluteFilePath().toStdString();
    if (backup) {
      RestoreFromWindow(window, file);
    } else {
      ArchiveRestoreFromWindow(window, file);
    }
  }
}

}  // namespace quillora
