#include "app/gui/criteria_dialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "app/gui/dialog_support.h"
#include "app/gui/help.h"
#include "backup/archive.h"
#include "store/string_table.h"

namespace quillora {

CriteriaDialog::CriteriaDialog(Purpose purpose, const PeriodRange& initial,
                               std::vector<Client> clients, UserPrompt& prompt,
                               QWidget* parent)
    : QDialog(parent), prompt_(prompt), clients_(std::move(clients)) {
  const bool archive = purpose == Purpose::kArchive;
  setWindowTitle(archive ? ToQString(kAppTitle) : tr("Delete Data"));
  auto* layout = new QVBoxLayout(this);
  auto* form = new QFormLayout();
  form->setRowWrapPolicy(QFormLayout::WrapLongRows);
  type_ = new QComboBox(this);
  type_->setObjectName("type");
  if (archive) {
    for (int i = 0; i < kArchiveTypeCount; ++i)
      type_->addItem(ToQString(ArchiveTypeName(i)));
  } else {
    type_->addItems({tr("Date Range"), tr("Client(s)")});
  }
  start_ = new QDateEdit(ToQDate(initial.start), this);
  end_ = new QDateEdit(ToQDate(initial.end), this);
  for (QDateEdit* edit : {start_, end_}) {
    edit->setCalendarPopup(true);
    edit->setDisplayFormat("yyyy-MM-dd");
  }
  start_->setObjectName("start");
  end_->setObjectName("end");
  form->addRow(ToQString(LoadString(kIdsTypeLabel)), type_);
  form->addRow(ToQString(LoadString(kIdsStartLabel)), start_);
  form->addRow(ToQString(LoadString(kIdsEndLabel)), end_);
  layout->addLayout(form);
  layout->addWidget(new QLabel(ToQString(LoadString(kIdsClientsLabel)), this));
  client_list_ = new QListWidget(this);
  client_list_->setObjectName("clients");
  for (const Client& client : clients_) {
    auto* item = new QListWidgetItem(ToQString(client.name), client_list_);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable);
    item->setCheckState(Qt::Unchecked);
  }
  layout->addWidget(client_list_, 1);
  if (archive) {
    delete_ = new QCheckBox(ToQString(LoadString(kIdsArchiveDeleteBox)), this);
    delete_->setObjectName("deleteWhenArchived");
    layout->addWidget(delete_);
  }
  auto* buttons = new QDialogButtonBox(
      QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Help, this);
  ConnectHelpButton(buttons, archive ? "archive" : "deldata");
  layout->addWidget(buttons);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  connect(type_, &QComboBox::currentIndexChanged, this, &CriteriaDialog::UpdateEnabled);
  UpdateEnabled();
  FitNarrowScreens(this);
}

void CriteriaDialog::UpdateEnabled() {
  start_->setEnabled(!by_clients());
  end_->setEnabled(!by_clients());
  client_list_->setEnabled(by_clients());
}

PeriodRange CriteriaDialog::Range() const {
  return WholeDayRange(start_->date(), end_->date());
}

std::vector<Client> CriteriaDialog::CheckedClients() const {
  std::vector<Client> checked;
  for (int row = 0; row < client_list_->count(); ++row) {
    if (client_list_->item(row)->checkState() == Qt::Checked) {
      checked.push_back(clients_[static_cast<std::size_t>(row)]);
    }
  }
  return checked;
}

void CriteriaDialog::accept() {
  if (by_clients() && CheckedClients().empty()) {
    prompt_.ShowMessage(kAppTitle, kNoClientChecked, MessageIcon::kExclamation);
    client_list_->setFocus();
    return;
  }
  if (!by_clients() && end_->date() < start_->date()) {
    prompt_.ShowMessage(kAppTitle, kRangeReversed, MessageIcon::kExclamation);
    end_->setFocus();
    return;
  }
  QDialog::accept();
}

}  // namespace quillora
