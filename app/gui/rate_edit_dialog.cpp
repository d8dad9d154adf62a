#include "app/gui/rate_edit_dialog.h"

#include <QAbstractItemView>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>

#include "app/gui/qt_text.h"
#include "app/gui/rate_icons.h"
#include "store/string_table.h"
#include "timekeeping/duration.h"

namespace quillora {

RateEditDialog::RateEditDialog(RateStore& rates, const Locale& locale, UserPrompt& prompt,
                               const Rate& rate, QWidget* parent)
    : QDialog(parent),
      rates_(rates),
      locale_(locale),
      prompt_(prompt),
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
  const std::u16string refusal = CheckRate(rates_, locale_, input);
  if (!refusal.empty()) {
    prompt_.ShowMessage(kAppTitle, refusal, MessageIcon::kExclamation);
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
  double value = 0;
  ParseRateText(input.value_text, &value);
  const auto type = static_cast<std::uint16_t>(input.type);
  if (rate_.record_id == 0) {
    saved_ = AddRate(rates_, type, value, rate_.client, input.description, false);
  } else if (rates_.Seek(SeekType::kObjectId, rate_.record_id) == rate_.record_id) {
    saved_ = UpdateRate(rates_, type, value, rate_.client, input.description, rate_.flag);
  }
  QDialog::accept();
}

}  // namespace quillora
