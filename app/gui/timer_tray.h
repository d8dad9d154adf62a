// The running timers in the desktop's tray (QSystemTrayIcon, which uses the
// desktop's StatusNotifierItem where there is one): a recording or paused
// icon, a tooltip with every timer that is not idle and its elapsed time, and
// a menu to pause, resume or complete each of them, open "Entry Timers...",
// show the window and exit.
#ifndef QUILLORA_APP_GUI_TIMER_TRAY_H_
#define QUILLORA_APP_GUI_TIMER_TRAY_H_

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>
#include <array>
#include <memory>

#include "timekeeping/timers.h"

namespace quillora {

class TimerTray : public QObject {
  Q_OBJECT

 public:
  TimerTray(const TimerSet& timers, QObject* parent);
  ~TimerTray() override;

  // True when the desktop has a tray to show the icon in.
  static bool Available();

  // Takes the timers' states and times into the icon, tooltip and menu. The
  // icon is shown while any timer is not idle, or while kept shown.
  void Update();
  // Kept shown while the window is hidden in the tray, so it can come back.
  void SetKeepShown(bool on);

  QSystemTrayIcon* icon() const { return icon_; }
  QMenu* menu() const { return menu_.get(); }

 signals:
  void PauseRequested(int index);
  void CompleteRequested(int index);
  void OpenTimersRequested();
  void ShowWindowRequested();
  void ExitRequested();

 private:
  void RebuildMenu();

  const TimerSet& timers_;
  std::unique_ptr<QMenu> menu_;
  QSystemTrayIcon* icon_ = nullptr;
  std::array<std::int32_t, kTimerCount> states_{};
  bool built_ = false;
  bool keep_shown_ = false;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_TIMER_TRAY_H_
