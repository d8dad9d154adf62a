// The clients dialog: the catalogue as a tree of clients, each with the
// groups "Projects" (projects with their tasks), "Tasks" and "Contacts", and
// the commands on the selected item: add, rename, delete, move to another
// client, import a list and export a list.
#ifndef QUILLORA_APP_GUI_CATALOGUE_DIALOG_H_
#define QUILLORA_APP_GUI_CATALOGUE_DIALOG_H_

#include <QDialog>
#include <QPushButton>
#include <QStringList>
#include <QTreeWidget>
#include <functional>
#include <memory>

#include "interchange/contacts_import.h"
#include "interchange/list_files.h"
#include "platform/user_prompt.h"
#include "store/catalogue_service.h"
#include "store/data_context.h"

namespace quillora {

class CatalogueDialog : public QDialog {
  Q_OBJECT

 public:
  // `data` has its catalogue open; messages and questions go to `prompt`.
  CatalogueDialog(DataContext& data, UserPrompt& prompt, QWidget* parent = nullptr);

  // Shows a dialog of the commands and answers its result; exec() unless
  // tests drive the dialog themselves.
  using DialogRunner = std::function<int(QDialog&)>;
  void SetDialogRunner(DialogRunner runner) { runner_ = std::move(runner); }
  // Where "Import contacts from Contacts Application" reads; by default the
  // device contacts database of the volume when it has one, otherwise the
  // vCard files of a folder the user picks. Null: cancelled.
  using ContactsSourceFactory = std::function<std::unique_ptr<ContactsSource>()>;
  void SetContactsSourceFactory(ContactsSourceFactory factory) {
    contacts_source_ = std::move(factory);
  }
  // The list export's format when the prompt cannot offer the choice of
  // filter (the window's own file dialog offers "Unicode Text").
  void SetListExportFormat(ListFileFormat format) { export_format_ = format; }

  QTreeWidget* tree() const { return tree_; }
  // Reads the catalogue again; the selected item stays selected when it is
  // still there.
  void Rebuild();
  // Selects the item at the path of texts from the top ("Acme", "Projects",
  // "Web"); false when there is none.
  bool Select(const QStringList& path);
  // The selected item as the list commands see it.
  CatalogueTreeItem SelectedItem() const;

  // The commands.
  void AddItem();
  void RenameItem();
  void DeleteItem();
  void MoveItems();
  void Import();
  void ExportList();

 private:
  int Run(QDialog& dialog);
  void UpdateCommands();
  QStringList SelectedPath() const;
  // Asks for a name; false when cancelled.
  bool AskName(const std::u16string& title, int label, const std::u16string& text,
               std::u16string* name);
  void ImportContacts(ClientId client);

  DataContext& data_;
  Catalogue& catalogue_;
  const Locale& locale_;
  UserPrompt& prompt_;
  CatalogueService service_;
  QTreeWidget* tree_;
  QPushButton* add_;
  QPushButton* rename_;
  QPushButton* delete_;
  QPushButton* move_;
  QPushButton* import_;
  QPushButton* export_;
  DialogRunner runner_;
  ContactsSourceFactory contacts_source_;
  ListFileFormat export_format_ = ListFileFormat::kAnsi;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_CATALOGUE_DIALOG_H_
