#include "app/gui/window_commands.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <functional>

#include "app/gui/backup_dialogs.h"
#include "app/gui/bulk_edit_dialogs.h"
#include "app/gui/catalogue_commands.h"
#include "app/gui/entry_commands.h"
#include "app/gui/export_dialogs.h"
#include "app/gui/help.h"
#include "app/gui/import_entries_dialog.h"
#include "app/gui/main_window.h"
#include "app/gui/options_commands.h"
#include "app/gui/report_dialogs.h"
#include "app/gui/shortcuts_dialog.h"
#include "app/gui/timer_commands.h"
#include "store/settings.h"

namespace quillora {

EntryCommands* WireWindowCommands(MainWindow* w) {
  auto* entry = new EntryCommands(w);
  const WindowActions& a = w->actions();
  auto* timers = new TimerCommands(w, entry, a.timers);
  const std::pair<QAction*, std::function<void()>> commands[] = {
      // File
      {a.export_csv, [w] { ExportFromWindow(w, ExportFormat::kCsv); }},
      {a.export_xml, [w] { ExportFromWindow(w, ExportFormat::kXml); }},
      {a.report, [w] { ReportFromWindow(w); }},
      {a.import, [w] { OpenClients(w, &CatalogueDialog::Import); }},
      {a.import_entries, [w] { ImportEntriesFromWindow(w); }},
      {a.export_list, [w] { OpenClients(w, &CatalogueDialog::ExportList); }},
      {a.backup, [w] { BackupFromWindow(w); }},
      {a.restore, [w] { RestoreFromWindow(w); }},
      {a.archive, [w] { ArchiveFromWindow(w); }},
      {a.archive_restore, [w] { ArchiveRestoreFromWindow(w); }},
      {a.exit, [w] { w->close(); }},
      // Edit
      {a.new_entry, [entry] { entry->NewEntry(); }},
      {a.edit_entry, [entry] { entry->EditSelected(); }},
      {a.delete_entry, [w] { w->DeleteSelectedEntry(); }},
      {a.copy_entry, [entry] { entry->CopySelected(); }},
      {a.find_replace,
       [w] {
         FindReplaceDialog dialog(w);
         dialog.exec();
       }},
      {a.mark_paid, [w] { MarkPaidFromWindow(w); }},
      {a.delete_data, [w] { DeleteDataFromWindow(w); }},
      // View
      {a.view_day, [w] { w->SwitchKind(PeriodKind::kDay); }},
      {a.view_week, [w] { w->SwitchKind(PeriodKind::kWeek); }},
      {a.view_month, [w] { w->SwitchKind(PeriodKind::kMonth); }},
      {a.view_custom, [w] { w->SwitchKind(PeriodKind::kCustom); }},
      {a.previous_period, [w] { w->PreviousPeriod(); }},
      {a.next_period, [w] { w->NextPeriod(); }},
      {a.today, [w] { w->GotoToday(); }},
      {a.table_view, [w] { w->SetListStyle(kListStyleTable); }},
      {a.item_list, [w] { w->SetListStyle(kListStyleItems); }},
      {a.compact_list, [w] { w->SetListStyle(kListStyleCompact); }},
      {a.summary, [w] { RunSummary(w); }},
      {a.filters, [w] { RunFilters(w); }},
      {a.clear_filter, [w] { w->ClearFilter(); }},
      // Tools
      {a.timers, [timers] { timers->OpenTimers(); }},
      {a.clients, [w] { OpenClients(w); }},
      {a.rates, [w] { OpenRateSetup(w); }},
      {a.reports, [w] { ReportEditorFromWindow(w); }},
      {a.options, [w] { RunOptions(w); }},
      // Help
      {a.help, [] { OpenHelp(QString()); }},
      {a.shortcuts,
       [w] {
         QList<QAction*> listed;
         for (QAction* menu : w->menuBar()->actions()) {
           if (menu->menu()) listed += menu->menu()->actions();
         }
         ShortcutsDialog dialog(listed, w);
         dialog.exec();
       }},
  };
  for (const auto& [action, run] : commands) {
    QObject::connect(action, &QAction::triggered, w, run);
  }
  QObject::connect(w, &MainWindow::EntryActivated, entry,
                   [entry] { entry->EditSelected(); });
  QObject::connect(w, &MainWindow::EntryClicked, entry, [w, entry] {
    if (w->data().settings.option_bits & kOptionItemTap) entry->EditSelected();
  });
  QObject::connect(w, &MainWindow::SettingsChangedElsewhere, w, [w](const Settings& s) {
    ApplyOptions(w, s);
    w->SetListStyle(s.list_style);
  });
  return entry;
}

}  // namespace quillora
