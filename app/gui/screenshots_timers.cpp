// Pictures of the running timers kept in sight: the window with the time in
// its title and on the toolbar button, the tray icon's menu, and the question
// before quitting while a timer runs.
#include <QApplication>
#include <QMessageBox>
#include <QPainter>
#include <QTimer>

#include "app/gui/main_window.h"
#include "app/gui/timer_commands.h"

namespace quillora {
namespace {

void Show(QWidget* widget) {
  widget->show();
  QApplication::processEvents();
}

// The window under a plain title bar showing its title, since an offscreen
// window has no frame of its own.
QPixmap WithTitleBar(QWidget* window) {
  const QPixmap inside = window->grab();
  const int bar = 28;
  QPixmap framed(inside.width(), inside.height() + bar);
  framed.fill(QColor(0x3C, 0x3F, 0x45));
  QPainter p(&framed);
  p.setPen(Qt::white);
  QFont font = window->font();
  font.setBold(true);
  p.setFont(font);
  p.drawText(QRect(8, 0, inside.width() - 16, bar), Qt::AlignVCenter | Qt::AlignLeft,
             window->windowTitle());
  p.drawPixmap(0, bar, inside);
  return framed;
}

}  // namespace

void ShootTimerStatus(MainWindow* window, const QString& out) {
  auto* commands = window->findChild<TimerCommands*>("timerCommands");
  if (commands == nullptr) return;
  commands->hub().StopTicking();
  TimerSet& timers = commands->hub().timers();
  // Timer 1 ran 3 minutes 5 seconds and is paused; Timer 2 has recorded
  // 1 hour 12 minutes 40 seconds (each tick counts at least a second).
  commands->Record(0);
  for (int i = 0; i < 185; ++i) timers.Tick();
  commands->Pause(0);
  commands->Record(1);
  for (int i = 0; i < 4360; ++i) timers.Tick();

  window->resize(520, 420);
  Show(window);
  WithTitleBar(window).save(out + "/timer-title.png");

  QMenu* menu = commands->tray()->menu();
  menu->adjustSize();
  Show(menu);
  menu->grab().save(out + "/timer-tray-menu.png");
  menu->hide();

  // Closing the window asks; the picture is taken and the answer is No.
  QTimer::singleShot(0, window, [out] {
    if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
      box->grab().save(out + "/timer-quit-guard.png");
      box->button(QMessageBox::No)->click();
    }
  });
  window->close();
  for (int i = 0; i < kTimerCount; ++i) timers.Reset(i);
  commands->Update();
}

}  // namespace quillora
