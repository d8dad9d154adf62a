// The import dialog (title "Quillora"): "Select the type to import:" and
// five choices whose index is the import kind. A kind that needs a client
// is offered only when an item of a client is selected in the tree.
#ifndef QUILLORA_APP_GUI_IMPORT_DIALOG_H_
#define QUILLORA_APP_GUI_IMPORT_DIALOG_H_

#include <QButtonGroup>
#include <QDialog>

#include "interchange/list_files.h"

namespace quillora {

class ImportDialog : public QDialog {
  Q_OBJECT

 public:
  ImportDialog(const CatalogueTreeItem& selected, QWidget* parent = nullptr);

  // The kind chosen (the first one offered at the start).
  ListKind kind() const;
  void SetKind(ListKind kind);
  bool IsOffered(ListKind kind) const;

 private:
  QButtonGroup* group_;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_IMPORT_DIALOG_H_
