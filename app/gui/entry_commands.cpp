#include "app/gui/entry_commands.h"

#include "app/gui/copy_entry_dialog.h"
#include "app/gui/entry_editor_dialog.h"
#include "app/gui/main_window.h"
#include "store/settings.h"

namespace quillora {

EntryCommands::EntryCommands(MainWindow* window)
    : QObject(window), window_(window), hub_(new TimerHub(window->clock(), this)) {
  setObjectName("entryCommands");
}

bool EntryCommands::EditEntry(const TimeEntry& entry) {
  DataContext& data = window_->data();
  if (!data.catalogue) return false;
  const EditorServices services{*data.catalogue, data.settings, *data.locale,
                                window_->prompt(), window_->clock()};
  EntryEditorDialog dialog(services, entry, window_->entries(), window_);
  dialog.setObjectName("entryEditor");
  if (dialog.exec() != QDialog::Accepted) return false;
  window_->Reload();
  const int row = window_->entry_model()->RowOf(dialog.editor().entry().recordId);
  if (row >= 0)
    window_->entry_list()->setCurrentIndex(window_->entry_model()->index(row));
  return true;
}

void EntryCommands::NewEntry() {
  // Dated today when today is in the period shown, else on the period's first day.
  const SystemTime today = window_->clock().LocalNow();
  const PeriodRange range = window_->period().GetViewRange();
  const SystemTime day = MakeSystemTime(today.year, today.month, today.day);
  FileTime t = 0, start = 0, end = 0;
  SystemTimeToFileTime(day, &t);
  const bool shown = RangeToFileTimes(range, &start, &end) && t >= start && t <= end;
  EditEntry(quillora::NewEntry(window_->data().settings, shown ? day : range.start));
}

void EntryCommands::EditSelected() {
  const QModelIndex index = window_->entry_list()->currentIndex();
  if (!index.isValid()) return;
  EditEntry(window_->entry_model()->EntryAt(index.row()));
}

void EntryCommands::CopySelected() {
  const QModelIndex index = window_->entry_list()->currentIndex();
  if (!index.isValid()) return;
  DataContext& data = window_->data();
  CopyEntryDialogWidget dialog(
      window_->entries(), window_->entry_model()->EntryAt(index.row()), data.settings,
      data.locale->AnsiCodePage(), window_->prompt(), window_);
  dialog.setObjectName("copyEntry");
  dialog.exec();
}

void EntryCommands::OpenTimers() {
  DataContext& data = window_->data();
  TimersDialogWidget dialog(*hub_, *data.locale, window_->prompt(), window_, last_tab_);
  dialog.setObjectName("entryTimers");
  const int result = dialog.exec();
  last_tab_ = dialog.model().tab();
  UpdateTimerButton();
  if (result != 1) return;
  HandOverTimer(hub_->timers(), last_tab_, data.settings,
                [this](TimeEntry& entry) { return EditEntry(entry); });
  UpdateTimerButton();
}

void EntryCommands::UpdateTimerButton() {
  window_->actions().timers->setChecked(hub_->timers().AnyActive());
}

}  // namespace quillora
