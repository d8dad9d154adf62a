#include "app/gui/data_commands.h"

#include "app/gui/backup_dialogs.h"
#include "app/gui/bulk_edit_dialogs.h"
#include "app/gui/export_dialogs.h"
#include "app/gui/help.h"
#include "app/gui/main_window.h"
#include "app/gui/report_dialogs.h"

namespace quillora {
namespace {

void Connect(MainWindow* window, const char* name, std::function<void()> run) {
  QAction* action = window->action(name);
  if (action == nullptr) return;
  action->setEnabled(true);
  QObject::connect(action, &QAction::triggered, window,
                   [run = std::move(run)] { run(); });
}

}  // namespace

void InstallDataCommands(MainWindow* window) {
  Connect(window, "exportCsv",
          [window] { ExportFromWindow(window, ExportFormat::kCsv); });
  Connect(window, "exportXml",
          [window] { ExportFromWindow(window, ExportFormat::kXml); });
  Connect(window, "report", [window] { ReportFromWindow(window); });
  Connect(window, "reports", [window] { ReportEditorFromWindow(window); });
  Connect(window, "backup", [window] { BackupFromWindow(window); });
  Connect(window, "restore", [window] { RestoreFromWindow(window); });
  Connect(window, "archive", [window] { ArchiveFromWindow(window); });
  Connect(window, "archiveRestore", [window] { ArchiveRestoreFromWindow(window); });
  Connect(window, "findReplace", [window] {
    FindReplaceDialog dialog(window);
    dialog.exec();
  });
  Connect(window, "markPaid", [window] { MarkPaidFromWindow(window); });
  Connect(window, "deleteData", [window] { DeleteDataFromWindow(window); });
  Connect(window, "help", [] { OpenHelp(QString()); });
  if (QAction* help = window->action("help"))
    help->setShortcut(QKeySequence::HelpContents);
}

}  // namespace quillora
