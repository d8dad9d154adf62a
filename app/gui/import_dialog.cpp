#include "app/gui/import_dialog.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QRadioButton>
#include <QVBoxLayout>

#include "app/gui/qt_text.h"
#include "store/string_table.h"

namespace quillora {
namespace {

// A choice's text: wraps on a narrow screen, and a tap on it takes the
// choice as a tap on the button does.
class ChoiceLabel : public QLabel {
 public:
  ChoiceLabel(const QString& text, QRadioButton* radio, QWidget* parent)
      : QLabel(text, parent), radio_(radio) {
    setWordWrap(true);
    setBuddy(radio);
  }

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    if (radio_->isEnabled()) radio_->click();
    event->accept();
  }

 private:
  QRadioButton* radio_;
};

}  // namespace

ImportDialog::ImportDialog(const CatalogueTreeItem& selected, QWidget* parent)
    : QDialog(parent), group_(new QButtonGroup(this)) {
  setWindowTitle(ToQString(kAppTitle));
  auto* layout = new QVBoxLayout(this);
  auto* caption = new QLabel(ToQString(kSelectImportTypeLabel), this);
  layout->addWidget(caption);
  const bool has_client = selected.kind != CatalogueTreeItem::Kind::kNone;
  auto* choices = new QGridLayout();
  choices->setColumnStretch(1, 1);
  for (int kind = 0; kind < 5; ++kind) {
    auto* radio = new QRadioButton(this);
    radio->setObjectName(QString("kind%1").arg(kind));
    radio->setAccessibleName(ToQString(kListKindLabels[kind]));
    auto* label = new ChoiceLabel(ToQString(kListKindLabels[kind]), radio, this);
    const bool offered = kind == 0 || has_client;
    radio->setEnabled(offered);
    label->setEnabled(offered);
    group_->addButton(radio, kind);
    choices->addWidget(radio, kind, 0, Qt::AlignTop);
    choices->addWidget(label, kind, 1);
  }
  layout->addLayout(choices);
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
