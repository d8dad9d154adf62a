#include "app/gui/timers_dialog.h"

#include <QGridLayout>
#include <QPainter>
#include <QVBoxLayout>

#include "app/gui/painted_icon.h"
#include "app/gui/qt_text.h"

namespace quillora {

bool QtTickTimer::Start(int milliseconds, std::function<void()> tick) {
  QObject::disconnect(connection_);
  connection_ = QObject::connect(&timer_, &QTimer::timeout, std::move(tick));
  timer_.start(milliseconds);
  return timer_.isActive();
}

void QtTickTimer::Stop() {
  timer_.stop();
  QObject::disconnect(connection_);
}

TimerHub::TimerHub(const Clock& clock, QObject* parent, std::unique_ptr<TickTimer> tick)
    : QObject(parent), tick_(tick ? std::move(tick) : std::make_unique<QtTickTimer>()) {
  timers_ = std::make_unique<TimerSet>(clock, tick_.get());
  timers_->SetRefreshHandler([this](int index) { emit Refreshed(index); });
}

QIcon TimerStateIcon(TimerIcon icon) {
  return PaintedIcon([icon](QPainter& p) {
    switch (icon) {
      case TimerIcon::kIdle:
        p.setPen(QPen(QColor(0x80, 0x80, 0x80), 1.5));
        p.setBrush(Qt::NoBrush);
        p.drawEllipse(QRectF(2.5, 2.5, 11, 11));
        p.drawLine(QPointF(8, 8), QPointF(8, 4.5));
        break;
      case TimerIcon::kPaused:
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0xD0, 0x90, 0x00));
        p.drawRect(QRectF(3, 3, 3.5, 10));
        p.drawRect(QRectF(9.5, 3, 3.5, 10));
        break;
      case TimerIcon::kRunning:
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0xC0, 0x20, 0x20));
        p.drawEllipse(QRectF(2, 2, 12, 12));
        break;
    }
  });
}

TimersDialogWidget::TimersDialogWidget(TimerHub& hub, const Locale& locale,
                                       UserPrompt& prompt, QWidget* parent, int tab)
    : QDialog(parent),
      hub_(hub),
      locale_(locale),
      prompt_(prompt),
      model_(hub.timers(), tab) {
  setWindowTitle(ToQString(kEntryTimersTitle));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(6, 6, 6, 6);
  tabs_ = new QTabBar(this);
  tabs_->setExpanding(false);
  tabs_->setUsesScrollButtons(true);
  tabs_->setDrawBase(true);
  tabs_->setIconSize(QSize(12, 12));
  for (const char16_t* label : kTimerTabLabels) tabs_->addTab(ToQString(label));
  tabs_->setCurrentIndex(model_.tab());
  start_ = new QLabel(this);
  duration_ = new QLabel(this);
  QFont big = duration_->font();
  big.setPointSizeF(big.pointSizeF() * 1.3);
  big.setBold(true);
  duration_->setFont(big);
  note_ = new NoteEdit(this);
  note_->SetBlob(model_.note());
  record_ = new QPushButton(ToQString(kRecordButton), this);
  pause_ = new QPushButton(ToQString(kPauseButton), this);
  complete_ = new QPushButton(ToQString(kTaskCompleteButton), this);
  reset_ = new QPushButton(ToQString(kResetTimerButton), this);
  record_->setCheckable(true);
  pause_->setCheckable(true);
  record_->setIcon(TimerStateIcon(TimerIcon::kRunning));
  pause_->setIcon(TimerStateIcon(TimerIcon::kPaused));
  for (QPushButton* b : {record_, pause_, complete_, reset_}) b->setAutoDefault(false);
  auto* buttons = new QGridLayout;
  buttons->setSpacing(4);
  buttons->addWidget(record_, 0, 0);
  buttons->addWidget(pause_, 0, 1);
  buttons->addWidget(complete_, 1, 0);
  buttons->addWidget(reset_, 1, 1);
  layout->addWidget(tabs_);
  layout->addWidget(start_);
  layout->addWidget(duration_);
  layout->addWidget(note_, 1);
  layout->addLayout(buttons);

  connect(tabs_, &QTabBar::currentChanged, this, [this](int index) {
    KeepNote();
    model_.SelectTab(index);
    note_->SetBlob(model_.note());
    Refresh();
  });
  // The buttons act on a click; their pressed look comes from the state.
  connect(record_, &QPushButton::clicked, this, [this] {
    model_.Record();
    emit hub_.Changed();
  });
  connect(pause_, &QPushButton::clicked, this, [this] {
    model_.Pause();
    emit hub_.Changed();
  });
  connect(complete_, &QPushButton::clicked, this, [this] {
    KeepNote();
    if (model_.TaskComplete()) {
      completed_ = true;
      done(1);
    } else {
      Refresh();
    }
  });
  connect(reset_, &QPushButton::clicked, this, [this] {
    KeepNote();
    if (model_.ResetTimer(prompt_)) note_->Clear();
    emit hub_.Changed();
  });
  connect(&hub_, &TimerHub::Changed, this, &TimersDialogWidget::Refresh);
  connect(&hub_, &TimerHub::Refreshed, this, [this](int index) {
    if (index == model_.tab()) duration_->setText(ToQString(model_.DurationText()));
  });
  Refresh();
}

void TimersDialogWidget::KeepNote() { model_.note() = note_->Blob(); }

void TimersDialogWidget::Refresh() {
  const TimerButtons b = model_.buttons();
  record_->setEnabled(b.record_enabled);
  record_->setChecked(b.record_pressed);
  pause_->setEnabled(b.pause_enabled);
  pause_->setChecked(b.pause_pressed);
  complete_->setEnabled(b.complete_enabled);
  for (int i = 0; i < kTimerCount; ++i) {
    tabs_->setTabIcon(i, TimerStateIcon(TimerIconFor(hub_.timers().slot(i).state)));
  }
  start_->setText(ToQString(model_.StartText(locale_)));
  duration_->setText(ToQString(model_.DurationText()));
}

void TimersDialogWidget::done(int result) {
  if (!completed_) {
    KeepNote();
    model_.Close();
  }
  QDialog::done(result);
}

}  // namespace quillora
