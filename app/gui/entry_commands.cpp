#include "app/gui/entry_commands.h"

#include "app/gui/copy_entry_dialog.h"
#include "app/gui/entry_editor_dialog.h"
#include "app/gui/main_window.h"
#include "store/settings.h"

namespace quillora {

EntryCommands::EntryCommands(MainWindow* window) : QObject(window), window_(window) {
  setObjectName("entryCommands");
}

bool EntryCommands::EditEntry(const TimeEntry& entry,
                              const std::u16string& cancel_question) {
  DataContext& data = window_->data();
  if (!data.catalogue) return false;
  const EditorServices services{*data.catalogue, data.settings, *data.locale,
                                window_->prompt(), window_->clock()};
  EntryEditorDialog dialog(services, entry, window_->entries(), window_);
  dialog.setObjectName("entryEditor");
  dialog.SetCancelQuestion(cancel_question);
  if (dialog.exec() != QDialog::Accepted) return false;
  window_->Reload();
  window_->SelectRecord(dialog.editor().entry().recordId);
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
  if (const TimeEntry* entry = window_->SelectedEntry()) EditEntry(*entry);
}

void EntryCommands::CopySelected() {
  const TimeEntry* entry = window_->SelectedEntry();
  if (entry == nullptr) return;
  DataContext& data = window_->data();
  CopyEntryDialogWidget dialog(window_->entries(), *entry, data.settings,
                               data.locale->AnsiCodePage(), window_->prompt(), window_);
  dialog.setObjectName("copyEntry");
  dialog.exec();
}

}  // namespace quillora
