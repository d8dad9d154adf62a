// The window's entry commands: "New Entry", "Edit Entry" (also a double
// click, or a tap with the item tap option) and "Copy Entry...". The entry
// timers are app/gui/timer_commands.h.
#ifndef QUILLORA_APP_GUI_ENTRY_COMMANDS_H_
#define QUILLORA_APP_GUI_ENTRY_COMMANDS_H_

#include <QObject>
#include <string>

#include "store/time_entry.h"

namespace quillora {

class MainWindow;

class EntryCommands : public QObject {
  Q_OBJECT

 public:
  explicit EntryCommands(MainWindow* window);

  // Runs the entry editor on `entry` (new when its record id is 0); true
  // when it was saved, the view then reloaded. A `cancel_question` is asked
  // before Cancel closes the editor.
  bool EditEntry(const TimeEntry& entry, const std::u16string& cancel_question = {});
  void NewEntry();
  void EditSelected();
  void CopySelected();

 private:
  MainWindow* window_;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_ENTRY_COMMANDS_H_
