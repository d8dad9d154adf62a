#include "app/gui/import_dialog.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

#include "app/gui/qt_text.h"
#include "store/string_table.h"

namespace quillora {

ImportDialog::ImportDialog(const CatalogueTreeItem& selected, QWidget* parent)
    : QDialog(parent), group_(new QButtonGroup(this)) {
  setWindowTitle(ToQString(kAppTitle));
  auto* layout = new QVBoxLayout(this);
  auto* caption = new QLabel(ToQString(kSelectImportTypeLabel), this);
  layout->addWidget(caption);
  const bool has_client = selected.kind != CatalogueTreeItem::Kind::kNone;
  for (int kind = 0; kind < 5; ++kind) {
    auto* radio = new QRadioButton(ToQString(kListKindLabels[kind]), this);
    radio->setObjectName(QString("kind%1").arg(kind));
    // Long choices wrap on a narrow screen instead of widening the dialog.
    radio->setToolTip(radio->text());
    const bool offered = kind == 0 || has_client;
    radio->setEnabled(offered);
    group_->addButton(radio, kind);
    layout->addWidget(radio);
  }
  group_->button(0)->setChecked(true);
  auto* buttons =
      new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addStretch(1);
  layout->addWidget(buttons);
}

ListKind ImportDialog::kind() const { return static_cast<ListKind>(group_->checkedId()); }

void ImportDialog::SetKind(ListKind kind) {
  if (QAbstractButton* b = group_->button(static_cast<int>(kind))) b->setChecked(true);
}

bool ImportDialog::IsOffered(ListKind kind) const {
  const QAbstractButton* b = group_->button(static_cast<int>(kind));
  return b && b->isEnabled();
}

}  // namespace quillora
