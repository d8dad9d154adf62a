// Backup, restore, archive and archive restore from the window: the logic's
// commands with the window's prompt (its progress dialog keeps painting
// between records), the wait cursor while files are written or read, the
// archive dialog, and the view read again afterwards.
#ifndef QUILLORA_APP_GUI_BACKUP_DIALOGS_H_
#define QUILLORA_APP_GUI_BACKUP_DIALOGS_H_

#include <QStringList>
#include <optional>

#include "app/gui/criteria_dialog.h"
#include "backup/archive.h"

namespace quillora {

class MainWindow;

BackupOutcome BackupFromWindow(MainWindow* window);
// `handed`: a file handed over on the command line instead of the chooser.
int RestoreFromWindow(MainWindow* window, const std::optional<std::string>& handed = {});
int ArchiveRestoreFromWindow(MainWindow* window,
                             const std::optional<std::string>& handed = {});

// The archive request of a filled archive dialog; false (after saying so)
// when the dates are outside the calendar.
bool ArchiveRequestOf(const CriteriaDialog& dialog, UserPrompt& prompt,
                      ArchiveRequest* request);
// The archive command after its dialog: nothing when it was cancelled.
BackupOutcome RunWindowArchive(MainWindow* window,
                               const std::optional<ArchiveRequest>& request);
// The whole command: the dialog, then RunWindowArchive.
void ArchiveFromWindow(MainWindow* window);

// Files handed over on the command line: a backup (".qrd") offers its
// restore, an archive (".qra") its archive restore; anything else is refused
// with a message naming the file.
void OpenHandedFiles(MainWindow* window, const QStringList& paths);

// The texts of the hand-over.
QString RestoreOfferText(const QString& path);
QString ArchiveRestoreOfferText(const QString& path);
QString NotADataFileText(const QString& path);

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_BACKUP_DIALOGS_H_
