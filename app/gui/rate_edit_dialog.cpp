#include "app/gui/rate_edit_dialog.h"

#include <QAbstractItemView>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>

#include "app/gui/qt_text.h"
#include "app/gui/rate_icons.h"
#include "timekeeping/duration.h"

namespace quillora {

RateEditDialog::RateEditDialog(CatalogueService& catalogue, const Rate& rate,
                               QWidget* parent)
    : QDialog(parent),
      catalogue_(catalogue),
      rate_(rate),
      type_(new QComboBox(this)),
      description_(new QLineEdit(this)),
      value_(new QLineEdit(this)) {
  setWindowTitle(rate.record_id ? tr("Edit Rate") : tr("New Rate"));
  type_->setObjectName("type");
  for (std::uint16_t t = 0; t < kRateTypeCount; ++t) {
    type_->addItem(RateTypeIcon(t), ToQString(RateTypeName(t)));
  }
  type_->setPlaceholderText(tr("(choose a type)"));
  // The list opens as wide as its longest type with its icon, whatever the
  // box's width: "Overtime Rate" is never cut. The list draws its items as
  // menu items, with room for a check mark before the icon.
  int widest = 0;
  for (int t = 0; t < type_->count(); ++t) {
    widest = std::max(widest, type_->fontMetrics().horizontalAdvance(type_->itemText(t)));
  }
  const int bar = type_->style()->pixelMetric(QStyle::PM_ScrollBarExtent);
  type_->view()->setMinimumWidth(widest + type_->iconSize().width() + 4 * bar);
  type_->setCurrentIndex(rate.record_id && rate.type < kRateTypeCount ? rate.type : -1);
  description_->setObjectName("description");
  value_->setObjectName("value");
  value_->setInputMethodHints(Qt::ImhFormattedNumbersOnly);
  if (rate.record_id) {
    description_->setText(ToQString(rate.description));
    value_->setText(ToQString(FormatHundredths(rate.value)));
  }
  auto* form = new QFormLayout();
  form->setRowWrapPolicy(QFormLayout::WrapLongRows);
  form->addRow(tr("&Type:"), type_);
  form->addRow(tr("&Description:"), description_);
  form->addRow(tr("&Rate:"), value_);
  auto* buttons =
      new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &RateEditDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &RateEditDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(form);
  layout->addStretch(1);
  layout->addWidget(buttons);
  setMinimumWidth(220);
}

void RateEditDialog::accept() {
  RateInput input;
  input.type = type_->currentIndex();
  input.description = FromQString(description_->text());
  input.value_text = FromQString(value_->text());
  input.client = rate_.client;
  input.record_id = rate_.record_id;
  // A new rate has no flag; an edited one keeps the flag it has.
  const CatalogueResult result =
      rate_.record_id == 0 ? catalogue_.AddRate(input, false, &saved_)
                           : catalogue_.UpdateRate(input, std::nullopt, &saved_);
  if (result == CatalogueResult::kRefused) {
    if (input.type < 0) {
      type_->setFocus();
    } else if (input.description.empty()) {
      description_->setFocus();
    } else {
      value_->setFocus();
      value_->selectAll();
    }
    return;
  }
  QDialog::accept();
}

}  // namespace quillora
