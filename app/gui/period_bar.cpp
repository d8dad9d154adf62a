#include "app/gui/period_bar.h"

#include <QHBoxLayout>
#include <QStyle>
#include <algorithm>

namespace quillora {

PeriodBar::PeriodBar(QWidget* parent) : QWidget(parent) {
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(2, 2, 2, 2);
  layout->setSpacing(2);
  previous_ = new QToolButton(this);
  previous_->setArrowType(Qt::LeftArrow);
  previous_->setToolTip(tr("Previous Period"));
  previous_->setAccessibleName(tr("Previous Period"));
  caption_ = new QToolButton(this);
  caption_->setToolButtonStyle(Qt::ToolButtonTextOnly);
  caption_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  caption_->setMinimumWidth(40);
  QFont bold = caption_->font();
  bold.setBold(true);
  caption_->setFont(bold);
  next_ = new QToolButton(this);
  next_->setArrowType(Qt::RightArrow);
  next_->setToolTip(tr("Next Period"));
  next_->setAccessibleName(tr("Next Period"));
  today_ = new QToolButton(this);
  today_->setText(tr("Today"));
  today_->setToolTip(tr("Goto Today"));
  today_->setAccessibleName(tr("Goto Today"));
  week_ = new QLabel(this);
  week_->setVisible(false);
  layout->addWidget(previous_);
  layout->addWidget(caption_, 1);
  layout->addWidget(week_);
  layout->addWidget(next_);
  layout->addWidget(today_);
  connect(previous_, &QToolButton::clicked, this, &PeriodBar::PreviousPeriod);
  connect(next_, &QToolButton::clicked, this, &PeriodBar::NextPeriod);
  connect(today_, &QToolButton::clicked, this, &PeriodBar::GotoToday);
  connect(caption_, &QToolButton::clicked, this, &PeriodBar::CaptionClicked);
}

void PeriodBar::SetCaption(const QString& caption, const QString& week_number) {
  caption_text_ = caption;
  week_->setText(week_number);
  week_->setVisible(!week_number.isEmpty());
  ShowCaption();
}

void PeriodBar::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  ShowCaption();
}

void PeriodBar::ShowCaption() {
  const int room = std::max(0, caption_->width() - 8);
  caption_->setText(caption_->fontMetrics().elidedText(caption_text_, Qt::ElideRight, room));
  caption_->setToolTip(caption_text_);
}

}  // namespace quillora
