// The entry timers in the window: "Entry Timers" (opened on the first idle
// timer, "Record" focused), the hand-over of a completed timer to the entry
// editor, and the running time kept in sight and hard to lose: the window
// title, the toolbar button with its "Record on Timer N" menu, the tray icon,
// the question before quitting or ending the session, and the one before a
// timed entry is cancelled.
#ifndef QUILLORA_APP_GUI_TIMER_COMMANDS_H_
#define QUILLORA_APP_GUI_TIMER_COMMANDS_H_

#include <QAction>
#include <QMenu>
#include <QObject>
#include <QToolButton>

#include "app/gui/timer_tray.h"
#include "app/gui/timers_dialog.h"

namespace quillora {

class EntryCommands;
class MainWindow;

class TimerCommands : public QObject {
  Q_OBJECT

 public:
  // `timers_action` opens "Entry Timers"; its toolbar button gets the time
  // and the record menu. Watches `window`'s close events.
  TimerCommands(MainWindow* window, EntryCommands* entries, QAction* timers_action);

  TimerHub& hub() { return *hub_; }
  TimerTray* tray() const { return tray_; }
  // The toolbar button's menu: "Record on Timer N" for each idle timer.
  QMenu* record_menu() const { return record_menu_; }

  // "Entry Timers" on the first idle timer with "Record" focused (the tab
  // used last when none is idle); then the hand-over after "Task Complete".
  void OpenTimers();
  // "Entry Timers" on `tab`.
  void OpenTimersOn(int tab, bool focus_record);
  void Record(int index);
  void Pause(int index);
  // "Task Complete" outside the dialog: the timer keeps its note and is
  // handed over.
  void Complete(int index);
  // The editor on a completed timer's new entry (cancelling asks first), then
  // the timer is reset whatever the user answered.
  void HandOver(int index);

  // The title, the toolbar button and the tray from the timers' states.
  void Update();
  // True when nothing runs, or the user agreed to lose the time.
  bool ConfirmQuit();
  // "Exit" from the tray: asks as quitting does, then ends the program.
  void Quit();

 protected:
  // Closing the window: hidden in the tray when the option says so and a
  // tray is there; otherwise asked with ConfirmQuit.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // True when a modal dialog is open: the window is brought up instead of
  // opening another one on top.
  bool RaiseModal();
  void ShowWindow();
  void FillRecordMenu();

  MainWindow* window_;
  EntryCommands* entries_;
  QAction* timers_action_;
  TimerHub* hub_;
  TimerTray* tray_;
  QMenu* record_menu_;
  int last_tab_ = 0;
  bool quitting_ = false;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_TIMER_COMMANDS_H_
