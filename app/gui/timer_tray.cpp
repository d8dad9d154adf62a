#include "app/gui/timer_tray.h"

#include "app/gui/qt_text.h"
#include "app/gui/timers_dialog.h"
#include "timekeeping/timer_status.h"

namespace quillora {
namespace {

// Recording while any timer records (or waits in the editor), paused while
// the others are paused, idle when kept shown with nothing running.
TimerIcon TrayIconFor(const TimerSet& timers) {
  TimerIcon icon = TimerIcon::kIdle;
  for (int i = 0; i < kTimerCount; ++i) {
    const TimerIcon one = TimerIconFor(timers.slot(i).state);
    if (one == TimerIcon::kRunning) return one;
    if (one == TimerIcon::kPaused) icon = one;
  }
  return icon;
}

}  // namespace

TimerTray::TimerTray(const TimerSet& timers, QObject* parent)
    : QObject(parent), timers_(timers), menu_(std::make_unique<QMenu>()) {
  menu_->setObjectName("trayMenu");
  icon_ = new QSystemTrayIcon(this);
  icon_->setObjectName("timerTray");
  icon_->setContextMenu(menu_.get());
  connect(icon_, &QSystemTrayIcon::activated, this,
          [this](QSystemTrayIcon::ActivationReason reason) {
            if (reason == QSystemTrayIcon::Trigger ||
                reason == QSystemTrayIcon::DoubleClick) {
              emit ShowWindowRequested();
            }
          });
  Update();
}

TimerTray::~TimerTray() = default;

bool TimerTray::Available() { return QSystemTrayIcon::isSystemTrayAvailable(); }

void TimerTray::SetKeepShown(bool on) {
  keep_shown_ = on;
  Update();
}

void TimerTray::Update() {
  std::array<std::int32_t, kTimerCount> states{};
  for (int i = 0; i < kTimerCount; ++i)
    states[static_cast<std::size_t>(i)] = timers_.slot(i).state;
  // The menu is rebuilt only when a state changed, not on every tick, so an
  // open menu is not pulled from under the pointer.
  if (!built_ || states != states_) {
    states_ = states;
    built_ = true;
    RebuildMenu();
    icon_->setIcon(TimerStateIcon(TrayIconFor(timers_)));
  }
  icon_->setToolTip(ToQString(TimersToolTip(timers_)));
  icon_->setVisible(timers_.AnyActive() || keep_shown_);
}

void TimerTray::RebuildMenu() {
  menu_->clear();
  for (int i = 0; i < kTimerCount; ++i) {
    const std::int32_t state = timers_.slot(i).state;
    if (state == kTimerIdle) continue;
    const TimerButtons buttons = TimerButtonsFor(state);
    QAction* pause = menu_->addAction(ToQString(PauseOnTimerText(timers_, i)));
    pause->setObjectName(QString("trayPause%1").arg(i + 1));
    pause->setIcon(
        TimerStateIcon(state == kTimerPaused ? TimerIcon::kRunning : TimerIcon::kPaused));
    // A completed timer's entry is in the editor already.
    pause->setEnabled(buttons.pause_enabled);
    connect(pause, &QAction::triggered, this, [this, i] { emit PauseRequested(i); });
    QAction* complete = menu_->addAction(ToQString(CompleteOnTimerText(i)));
    complete->setObjectName(QString("trayComplete%1").arg(i + 1));
    complete->setEnabled(buttons.complete_enabled && state != kTimerCompleted);
    connect(complete, &QAction::triggered, this,
            [this, i] { emit CompleteRequested(i); });
    menu_->addSeparator();
  }
  QAction* timers = menu_->addAction(ToQString(kEntryTimersTitle) + "...");
  timers->setObjectName("trayTimers");
  connect(timers, &QAction::triggered, this, &TimerTray::OpenTimersRequested);
  QAction* show = menu_->addAction(tr("Show Quillora"));
  show->setObjectName("trayShow");
  connect(show, &QAction::triggered, this, &TimerTray::ShowWindowRequested);
  menu_->addSeparator();
  QAction* exit = menu_->addAction(tr("Exit"));
  exit->setObjectName("trayExit");
  connect(exit, &QAction::triggered, this, &TimerTray::ExitRequested);
}

}  // namespace quillora
