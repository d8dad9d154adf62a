// The window's entry commands: "New Entry", "Edit Entry" (also a double
// click, or a tap with the item tap option), "Copy Entry...", and the entry
// timers with their toolbar button.
#ifndef QUILLORA_APP_GUI_ENTRY_COMMANDS_H_
#define QUILLORA_APP_GUI_ENTRY_COMMANDS_H_

#include <QObject>

#include "app/gui/timers_dialog.h"
#include "store/time_entry.h"

namespace quillora {

class MainWindow;

class EntryCommands : public QObject {
  Q_OBJECT

 public:
  explicit EntryCommands(MainWindow* window);

  TimerHub& hub() { return *hub_; }

  // Runs the entry editor on `entry` (new when its record id is 0); true
  // when it was saved, the view then reloaded.
  bool EditEntry(const TimeEntry& entry);
  void NewEntry();
  void EditSelected();
  void CopySelected();
  // "Entry Timers": the dialog, then, after "Task Complete", the editor on
  // the timer's new entry and the timer's reset.
  void OpenTimers();
  // The toolbar's timer button is shown pressed while any timer runs.
  void UpdateTimerButton();

 private:
  MainWindow* window_;
  TimerHub* hub_;
  int last_tab_ = 0;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_ENTRY_COMMANDS_H_
