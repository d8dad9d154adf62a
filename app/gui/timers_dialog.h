// The "Entry Timers" dialog over the TimersDialog model, and the process's
// four timers ticking on a QTimer.
#ifndef QUILLORA_APP_GUI_TIMERS_DIALOG_H_
#define QUILLORA_APP_GUI_TIMERS_DIALOG_H_

#include <QDialog>
#include <QIcon>
#include <QLabel>
#include <QObject>
#include <QPushButton>
#include <QTabBar>
#include <QTimer>
#include <memory>

#include "app/gui/note_edit.h"
#include "platform/locale.h"
#include "timekeeping/timers.h"

namespace quillora {

// The periodic timer behind the ticks: a QTimer on the window's thread, so the
// ticks run through the event loop whether the dialog is open or not.
class QtTickTimer : public TickTimer {
 public:
  bool Start(int milliseconds, std::function<void()> tick) override;
  void Stop() override;

 private:
  QTimer timer_;
  QMetaObject::Connection connection_;
};

// The four timers of the process with their tick, made when the window is.
class TimerHub : public QObject {
  Q_OBJECT

 public:
  // `tick` null: the QTimer-backed one.
  TimerHub(const Clock& clock, QObject* parent,
           std::unique_ptr<TickTimer> tick = nullptr);
  TimerSet& timers() { return *timers_; }
  // Stops the periodic tick; tests then call timers().Tick() themselves.
  void StopTicking() { tick_->Stop(); }

 signals:
  // After a tick, with a recording timer's index.
  void Refreshed(int index);
  // After a command changed a timer's state, from the dialog or elsewhere
  // (the tray, the toolbar's menu).
  void Changed();

 private:
  std::unique_ptr<TickTimer> tick_;
  std::unique_ptr<TimerSet> timers_;
};

// One icon per state: idle, paused, running (recording or completed).
QIcon TimerStateIcon(TimerIcon icon);

class TimersDialogWidget : public QDialog {
  Q_OBJECT

 public:
  TimersDialogWidget(TimerHub& hub, const Locale& locale, UserPrompt& prompt,
                     QWidget* parent = nullptr, int tab = 0);

  TimersDialog& model() { return model_; }
  QTabBar* tabs() const { return tabs_; }
  QPushButton* record_button() const { return record_; }
  QPushButton* pause_button() const { return pause_; }
  QPushButton* complete_button() const { return complete_; }
  QPushButton* reset_button() const { return reset_; }
  QLabel* start_label() const { return start_; }
  QLabel* duration_label() const { return duration_; }
  NoteEdit* note_edit() const { return note_; }

  // Redraws the buttons, the tab icons and the display.
  void Refresh();

 public slots:
  void done(int result) override;

 private:
  void KeepNote();

  TimerHub& hub_;
  const Locale& locale_;
  UserPrompt& prompt_;
  TimersDialog model_;
  QTabBar* tabs_ = nullptr;
  QLabel* start_ = nullptr;
  QLabel* duration_ = nullptr;
  NoteEdit* note_ = nullptr;
  QPushButton* record_ = nullptr;
  QPushButton* pause_ = nullptr;
  QPushButton* complete_ = nullptr;
  QPushButton* reset_ = nullptr;
  bool completed_ = false;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_TIMERS_DIALOG_H_
