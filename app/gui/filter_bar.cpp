#include "app/gui/filter_bar.h"

#include <QHBoxLayout>
#include <QStyle>

#include "app/gui/qt_text.h"
#include "store/string_table.h"

namespace quillora {

QString FilterDescription(const EntryFilter& filter) {
  QStringList parts;
  const std::pair<const char*, const std::u16string*> texts[] = {
      {QT_TRANSLATE_NOOP("FilterBar", "Client"), &filter.client},
      {QT_TRANSLATE_NOOP("FilterBar", "Project"), &filter.project},
      {QT_TRANSLATE_NOOP("FilterBar", "Phase"), &filter.phase},
      {QT_TRANSLATE_NOOP("FilterBar", "Task"), &filter.task},
      {QT_TRANSLATE_NOOP("FilterBar", "Custom 1"), &filter.custom1},
      {QT_TRANSLATE_NOOP("FilterBar", "Custom 2"), &filter.custom2},
      {QT_TRANSLATE_NOOP("FilterBar", "Custom 3"), &filter.custom3},
      {QT_TRANSLATE_NOOP("FilterBar", "Bill To"), &filter.bill_to},
      {QT_TRANSLATE_NOOP("FilterBar", "Currency"), &filter.currency},
  };
  for (const auto& [name, value] : texts) {
    if (!value->empty()) {
      parts << FilterBar::tr("%1 is %2").arg(FilterBar::tr(name), ToQString(*value));
    }
  }
  if (filter.rate_type >= 0 && filter.rate_type <= 4) {
    parts << FilterBar::tr("Rate Type is %1")
                 .arg(ToQString(LoadString(kIdsNormalRate + filter.rate_type)));
  }
  if (!(filter.show_unpaid && filter.show_paid && filter.show_non_billable)) {
    QStringList shown;
    if (filter.show_unpaid) shown << FilterBar::tr("unpaid");
    if (filter.show_paid) shown << FilterBar::tr("paid");
    if (filter.show_non_billable) shown << FilterBar::tr("non-billable");
    if (shown.isEmpty()) {
      parts << FilterBar::tr("no status shown");
    } else if (filter.show_unpaid && filter.show_paid) {
      parts << FilterBar::tr("billable only");
    } else {
      parts << FilterBar::tr("%1 only").arg(shown.join(FilterBar::tr(" and ")));
    }
  }
  if (parts.isEmpty()) return {};
  return FilterBar::tr("Filter: %1").arg(parts.join(", "));
}

FilterBar::FilterBar(QWidget* parent) : QWidget(parent) {
  setObjectName("filterBar");
  setAutoFillBackground(true);
  setBackgroundRole(QPalette::ToolTipBase);
  setForegroundRole(QPalette::ToolTipText);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(8, 2, 4, 2);
  label_ = new QLabel(this);
  label_->setTextFormat(Qt::PlainText);
  label_->setForegroundRole(QPalette::ToolTipText);
  clear_ = new QToolButton(this);
  clear_->setText(tr("Clear Filter"));
  clear_->setToolTip(tr("Show every entry of the period (Ctrl+Shift+F)"));
  clear_->setIcon(style()->standardIcon(QStyle::SP_DialogResetButton));
  clear_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  clear_->setAutoRaise(true);
  layout->addWidget(label_, 1);
  layout->addWidget(clear_);
  connect(clear_, &QToolButton::clicked, this, &FilterBar::ClearClicked);
  hide();
}

void FilterBar::Show(const EntryFilter& filter) {
  const QString text = FilterDescription(filter);
  label_->setText(text);
  setVisible(!text.isEmpty());
}

}  // namespace quillora
