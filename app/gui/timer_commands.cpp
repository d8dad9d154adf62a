#include "app/gui/timer_commands.h"

#include <QApplication>
#include <QCloseEvent>
#include <QSessionManager>
#include <QToolBar>

#include "app/gui/entry_commands.h"
#include "app/gui/main_window.h"
#include "app/gui/qt_text.h"
#include "store/string_table.h"
#include "timekeeping/timer_status.h"

namespace quillora {

TimerCommands::TimerCommands(MainWindow* window, EntryCommands* entries,
                             QAction* timers_action)
    : QObject(window),
      window_(window),
      entries_(entries),
      timers_action_(timers_action),
      hub_(new TimerHub(window->clock(), this)),
      record_menu_(new QMenu(window)) {
  setObjectName("timerCommands");
  tray_ = new TimerTray(hub_->timers(), this);
  record_menu_->setObjectName("recordMenu");
  // Ctrl+T starts a timer in one step (with Enter in the dialog).
  if (timers_action_->shortcut().isEmpty())
    timers_action_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_T));
  connect(record_menu_, &QMenu::aboutToShow, this, &TimerCommands::FillRecordMenu);
  FillRecordMenu();
  for (auto* bar : window_->findChildren<QToolBar*>()) {
    if (auto* button = qobject_cast<QToolButton*>(bar->widgetForAction(timers_action_))) {
      button->setObjectName("timerButton");
      button->setMenu(record_menu_);
      button->setPopupMode(QToolButton::MenuButtonPopup);
      button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    }
  }
  connect(hub_, &TimerHub::Refreshed, this, &TimerCommands::Update);
  connect(hub_, &TimerHub::Changed, this, &TimerCommands::Update);
  connect(tray_, &TimerTray::PauseRequested, this, &TimerCommands::Pause);
  connect(tray_, &TimerTray::CompleteRequested, this, &TimerCommands::Complete);
  connect(tray_, &TimerTray::OpenTimersRequested, this, [this] {
    if (RaiseModal()) return;
    ShowWindow();
    const int shown = hub_->timers().LastChanged();
    OpenTimersOn(shown >= 0 ? shown : last_tab_, false);
  });
  connect(tray_, &TimerTray::ShowWindowRequested, this, &TimerCommands::ShowWindow);
  connect(tray_, &TimerTray::ExitRequested, this, &TimerCommands::Quit);
  window_->installEventFilter(this);
#ifndef QT_NO_SESSIONMANAGER
  // The desktop session ends: ask where the session manager lets us, else
  // let it end.
  connect(qApp, &QGuiApplication::commitDataRequest, this,
          [this](QSessionManager& manager) {
            if (!hub_->timers().AnyActive() || !manager.allowsInteraction()) {
              quitting_ = true;
              return;
            }
            const bool quit = ConfirmQuit();
            manager.release();
            if (quit) {
              quitting_ = true;
            } else {
              manager.cancel();
            }
          });
#endif
  Update();
}

void TimerCommands::OpenTimers() {
  const int idle = FirstIdleTimer(hub_->timers());
  OpenTimersOn(idle >= 0 ? idle : last_tab_, idle >= 0);
}

void TimerCommands::OpenTimersOn(int tab, bool focus_record) {
  DataContext& data = window_->data();
  TimersDialogWidget dialog(*hub_, *data.locale, window_->prompt(), window_, tab);
  dialog.setObjectName("entryTimers");
  if (focus_record) {
    // Ctrl+T, then Enter (or Space) starts the timer.
    dialog.record_button()->setDefault(true);
    dialog.record_button()->setFocus();
  }
  const int result = dialog.exec();
  last_tab_ = dialog.model().tab();
  Update();
  if (result == 1) HandOver(last_tab_);
}

void TimerCommands::Record(int index) {
  hub_->timers().Record(index);
  emit hub_->Changed();
}

void TimerCommands::Pause(int index) {
  hub_->timers().Pause(index);
  emit hub_->Changed();
}

void TimerCommands::Complete(int index) {
  if (RaiseModal()) return;
  TimerSet& timers = hub_->timers();
  if (!TimerButtonsFor(timers.slot(index).state).complete_enabled) return;
  ShowWindow();
  timers.Complete(index, timers.slot(index).note);
  HandOver(index);
}

void TimerCommands::HandOver(int index) {
  TimerSet& timers = hub_->timers();
  const std::u16string question = DiscardTimedEntryQuestion(timers.slot(index).elapsed);
  emit hub_->Changed();
  HandOverTimer(timers, index, window_->data().settings,
                [&](TimeEntry& entry) { return entries_->EditEntry(entry, question); });
  emit hub_->Changed();
}

void TimerCommands::Update() {
  const TimerSet& timers = hub_->timers();
  window_->setWindowTitle(ToQString(TimersWindowTitle(timers)));
  const int last = timers.LastChanged();
  timers_action_->setChecked(timers.AnyActive());
  timers_action_->setIcon(TimerStateIcon(
      TimerIconFor(last >= 0 ? timers.slot(last).state : std::int32_t{kTimerIdle})));
  // The toolbar shows the icon text; the menus keep "Entry Timers...".
  timers_action_->setIconText(ToQString(TimerButtonText(timers)));
  tray_->Update();
}

bool TimerCommands::ConfirmQuit() {
  if (!hub_->timers().AnyActive()) return true;
  return window_->prompt().Ask(kAppTitle, kTimerQuitQuestion, MessageIcon::kWarning,
                               QuestionButtons::kYesNo, Answer::kNo) == Answer::kYes;
}

void TimerCommands::Quit() {
  if (RaiseModal() || !ConfirmQuit()) return;
  quitting_ = true;
  window_->close();
  QCoreApplication::quit();
}

bool TimerCommands::eventFilter(QObject* watched, QEvent* event) {
  // Shown again, whichever way (the tray, a second start): the tray icon
  // goes back to showing only running timers.
  if (watched == window_ && event->type() == QEvent::Show) tray_->SetKeepShown(false);
  if (watched != window_ || event->type() != QEvent::Close || quitting_) return false;
  // The window manager's close button; Exit (Ctrl+Q) closes from the program.
  if (event->spontaneous() && window_->data().settings.tray_on_close != 0 &&
      TimerTray::Available()) {
    tray_->SetKeepShown(true);
    window_->hide();
    event->ignore();
    return true;
  }
  if (ConfirmQuit()) return false;
  event->ignore();
  return true;
}

bool TimerCommands::RaiseModal() {
  QWidget* modal = QApplication::activeModalWidget();
  if (modal == nullptr) return false;
  ShowWindow();
  modal->raise();
  modal->activateWindow();
  return true;
}

void TimerCommands::ShowWindow() {
  if (window_->isHidden()) window_->show();
  if (window_->isMinimized()) window_->showNormal();
  window_->raise();
  window_->activateWindow();
}

void TimerCommands::FillRecordMenu() {
  record_menu_->clear();
  const TimerSet& timers = hub_->timers();
  for (int i = 0; i < kTimerCount; ++i) {
    if (timers.slot(i).state != kTimerIdle) continue;
    QAction* record = record_menu_->addAction(TimerStateIcon(TimerIcon::kRunning),
                                              ToQString(RecordOnTimerText(i)));
    record->setObjectName(QString("recordOn%1").arg(i + 1));
    connect(record, &QAction::triggered, this, [this, i] { Record(i); });
  }
  if (record_menu_->isEmpty())
    record_menu_->addAction(tr("Every timer is in use"))->setEnabled(false);
}

}  // namespace quillora
