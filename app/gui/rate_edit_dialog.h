// The edit dialog of the rate setup page: a type (each with its icon), a
// description and a value. OK runs the page's checks in order and shows the
// first refusal ("Please select a type.", ...); the dialog then stays open.
// A rate's flag is kept as it is: the dialog never changes it.
#ifndef QUILLORA_APP_GUI_RATE_EDIT_DIALOG_H_
#define QUILLORA_APP_GUI_RATE_EDIT_DIALOG_H_

#include <QComboBox>
#include <QDialog>
#include <QLineEdit>

#include "store/catalogue_service.h"

namespace quillora {

class RateEditDialog : public QDialog {
  Q_OBJECT

 public:
  // `rate` with record id 0 is a new rate of `rate.client` (no type chosen,
  // empty fields); otherwise the rate to edit.
  RateEditDialog(CatalogueService& catalogue, const Rate& rate,
                 QWidget* parent = nullptr);

  QComboBox* type() const { return type_; }
  QLineEdit* description() const { return description_; }
  QLineEdit* value() const { return value_; }
  // The record written by OK.
  ObjectId saved_record() const { return saved_; }

  void accept() override;

 private:
  CatalogueService& catalogue_;
  Rate rate_;
  QComboBox* type_;
  QLineEdit* description_;
  QLineEdit* value_;
  ObjectId saved_ = 0;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_RATE_EDIT_DIALOG_H_
