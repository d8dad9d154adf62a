// The contacts dialog (title "Quillora"): the contacts of a source in a list
// with check boxes, columns "File As" and "Company", sorted ascending by the
// file-as name. OK hands the checked file-as names over, in row order.
#ifndef QUILLORA_APP_GUI_CONTACTS_IMPORT_DIALOG_H_
#define QUILLORA_APP_GUI_CONTACTS_IMPORT_DIALOG_H_

#include <QDialog>
#include <QTreeWidget>
#include <string>
#include <vector>

#include "interchange/contacts_import.h"

namespace quillora {

class ContactsImportDialog : public QDialog {
  Q_OBJECT

 public:
  // `model` has been loaded from its source.
  ContactsImportDialog(ContactsDialog& model, QWidget* parent = nullptr);

  QTreeWidget* list() const { return list_; }
  // The checked names once OK was pressed (the model's CheckedNames).
  std::vector<std::u16string> CheckedNames() const { return model_.CheckedNames(); }

 private:
  ContactsDialog& model_;
  QTreeWidget* list_;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_CONTACTS_IMPORT_DIALOG_H_
