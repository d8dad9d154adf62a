#include "app/gui/copy_entry_dialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "app/gui/qt_text.h"
#include "store/string_table.h"
#include "timekeeping/duration.h"

namespace quillora {

CopyEntryDialogWidget::CopyEntryDialogWidget(EntryStore& entries, const TimeEntry& source,
                                             const Settings& settings, int code_page,
                                             UserPrompt& prompt, QWidget* parent)
    : QDialog(parent),
      entries_(entries),
      source_(source),
      settings_(settings),
      code_page_(code_page),
      prompt_(prompt),
      model_(OpenCopyDialog(source)) {
  setWindowTitle(tr("Copy Entry"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(6, 6, 6, 6);
  layout->addWidget(new QLabel(ToQString(LoadString(kIdsCopyEntryTo)), this));
  rest_ = new QRadioButton(ToQString(LoadString(kIdsRestOfWeek)), this);
  specific_ = new QRadioButton(ToQString(LoadString(kIdsSpecificEndDate)), this);
  end_ = new QDateEdit(ToQDate(model_.end_date), this);
  end_->setCalendarPopup(true);
  weekend_ = new QCheckBox(ToQString(LoadString(kIdsIncludeWeekend)), this);
  duration_ = new QComboBox(this);
  duration_->setEditable(true);
  duration_->setInsertPolicy(QComboBox::NoInsert);
  duration_->lineEdit()->setMaxLength(6);
  for (const auto& choice : FillDurationChoices(settings.time_interval)) {
    duration_->addItem(ToQString(choice));
  }
  duration_->setEditText(ToQString(model_.duration));
  rest_->setChecked(true);
  end_->setEnabled(model_.end_date_enabled());
  layout->addWidget(rest_);
  layout->addWidget(specific_);
  layout->addWidget(end_);
  layout->addWidget(weekend_);
  auto* form = new QFormLayout;
  form->addRow(tr("Duration:"), duration_);
  const std::pair<QString, const std::u16string*> shown[] = {
      {tr("Client:"), &model_.client},
      {tr("Project:"), &model_.project},
      {tr("Phase:"), &model_.phase},
      {tr("Task:"), &model_.task}};
  for (const auto& [label, text] : shown) {
    auto* value = new QLabel(ToQString(*text), this);
    value->setTextInteractionFlags(Qt::TextSelectableByMouse);
    form->addRow(label, value);
  }
  layout->addLayout(form);
  layout->addStretch(1);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  layout->addWidget(buttons);
  connect(buttons, &QDialogButtonBox::accepted, this, &CopyEntryDialogWidget::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(specific_, &QRadioButton::toggled, this, [this](bool on) {
    model_.range = on ? CopyRange::kSpecificEndDate : CopyRange::kRestOfWeek;
    end_->setEnabled(model_.end_date_enabled());
  });
  connect(end_, &QDateEdit::dateChanged, this, [this](const QDate& d) {
    model_.end_date = MakeSystemTime(d.year(), d.month(), d.day());
  });
  connect(weekend_, &QCheckBox::toggled, this,
          [this](bool on) { model_.include_weekend = on; });
  connect(duration_, &QComboBox::editTextChanged, this,
          [this](const QString& text) { model_.SetDuration(FromQString(text)); });
}

void CopyEntryDialogWidget::accept() {
  if (CopyEntry(entries_, source_, model_, settings_, code_page_, prompt_, nullptr) ==
      CopyResult::kRefused) {
    duration_->setFocus();
    return;
  }
  QDialog::accept();
}

}  // namespace quillora
