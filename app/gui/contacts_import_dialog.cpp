#include "app/gui/contacts_import_dialog.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QVBoxLayout>

#include "app/gui/qt_text.h"
#include "store/string_table.h"

namespace quillora {

ContactsImportDialog::ContactsImportDialog(ContactsDialog& model, QWidget* parent)
    : QDialog(parent), model_(model), list_(new QTreeWidget(this)) {
  setWindowTitle(ToQString(kAppTitle));
  auto* layout = new QVBoxLayout(this);
  list_->setObjectName("contacts");
  list_->setRootIsDecorated(false);
  list_->setSelectionMode(QAbstractItemView::SingleSelection);
  list_->setSelectionBehavior(QAbstractItemView::SelectRows);
  list_->setHeaderLabels({ToQString(kFileAsColumn), ToQString(kCompanyColumn)});
  list_->header()->resizeSection(0, kFileAsColumnWidth);
  list_->header()->resizeSection(1, kCompanyColumnWidth);
  list_->header()->setSectionsClickable(false);
  // The model's rows are in the dialog's order already (sorted by file-as).
  const auto& rows = model_.rows();
  for (std::size_t i = 0; i < rows.size(); ++i) {
    auto* item = new QTreeWidgetItem(list_);
    item->setText(0, ToQString(rows[i].file_as));
    item->setText(1, ToQString(rows[i].company));
    item->setData(0, Qt::UserRole, static_cast<qulonglong>(rows[i].record_id));
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    item->setCheckState(0, model_.checked(i) ? Qt::Checked : Qt::Unchecked);
  }
  connect(list_, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item, int column) {
    if (column != 0) return;
    model_.SetChecked(static_cast<std::size_t>(list_->indexOfTopLevelItem(item)),
                      item->checkState(0) == Qt::Checked);
  });
  auto* buttons =
      new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(list_, 1);
  layout->addWidget(buttons);
  resize(320, 360);
}

}  // namespace quillora
