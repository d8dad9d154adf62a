#include "app/gui/backup_dialogs.h"

#include <QDir>
#include <QFileInfo>

#include "app/gui/dialog_support.h"
#include "app/gui/main_window.h"
#include "platform/file.h"
#include "store/string_table.h"

namespace quillora {

BackupOutcome BackupFromWindow(MainWindow* window) {
  Catalogue* catalogue = CatalogueOf(window);
  if (catalogue == nullptr) return BackupOutcome::kFailed;
  WaitingPrompt prompt(window->prompt());
  return BackupCommand(window->entries(), *catalogue, *window->data().locale, prompt,
                       FileSystem::Posix());
}

int RestoreFromWindow(MainWindow* window, const std::optional<std::string>& handed) {
  Catalogue* catalogue = CatalogueOf(window);
  if (catalogue == nullptr) return kRestoreFailed;
  int result;
  {
    HandedFilePrompt handed_prompt(window->prompt(), handed.value_or(std::string()));
    WaitingPrompt chooser_prompt(window->prompt());
    UserPrompt& prompt =
        handed ? static_cast<UserPrompt&>(handed_prompt) : chooser_prompt;
    result = RestoreCommand(window->entries(), *catalogue, *window->data().locale, prompt,
                            FileSystem::Posix());
  }
  if (result != kRestoreCancelled) window->Reload();
  return result;
}

int ArchiveRestoreFromWindow(MainWindow* window,
                             const std::optional<std::string>& handed) {
  Catalogue* catalogue = CatalogueOf(window);
  if (catalogue == nullptr) return kRestoreFailed;
  int result;
  {
    HandedFilePrompt handed_prompt(window->prompt(), handed.value_or(std::string()));
    WaitingPrompt chooser_prompt(window->prompt());
    UserPrompt& prompt =
        handed ? static_cast<UserPrompt&>(handed_prompt) : chooser_prompt;
    result = ArchiveRestoreCommand(window->entries(), *catalogue, *window->data().locale,
                                   prompt, FileSystem::Posix());
  }
  window->Reload();
  return result;
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
  BackupOutcome outcome;
  {
    WaitingPrompt prompt(window->prompt());
    outcome = ArchiveCommand(window->entries(), *catalogue, *window->data().locale,
                             prompt, FileSystem::Posix(), *request);
  }
  // The view reads its entries again whatever happened.
  window->Reload();
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
