#include "app/gui/name_dialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QVBoxLayout>

#include "app/gui/qt_text.h"
#include "store/catalogue.h"

namespace quillora {

NameDialog::NameDialog(UserPrompt& prompt, const std::u16string& title,
                       const std::u16string& label, const std::u16string& text,
                       QWidget* parent)
    : QDialog(parent), prompt_(prompt) {
  setWindowTitle(ToQString(title));
  auto* layout = new QVBoxLayout(this);
  auto* caption = new QLabel(ToQString(label), this);
  line_ = new QLineEdit(ToQString(text), this);
  line_->setObjectName("name");
  line_->selectAll();
  caption->setBuddy(line_);
  auto* buttons =
      new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &NameDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &NameDialog::reject);
  layout->addWidget(caption);
  layout->addWidget(line_);
  layout->addStretch(1);
  layout->addWidget(buttons);
  setMinimumWidth(220);
}

std::u16string NameDialog::text() const { return FromQString(line_->text()); }

void NameDialog::accept() {
  if (!CheckNameText(prompt_, text())) {
    line_->setFocus();
    return;
  }
  QDialog::accept();
}

}  // namespace quillora
