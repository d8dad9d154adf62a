// The entry editor's window: a property sheet of "General", "Billing",
// "Custom Fields" and "Notes" bound to the EntryEditor model. The model holds
// every rule; this sheet shows its fields and lists, hands it what is typed
// and picked, and asks it to check and save.
#ifndef QUILLORA_APP_GUI_ENTRY_EDITOR_DIALOG_H_
#define QUILLORA_APP_GUI_ENTRY_EDITOR_DIALOG_H_

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTimeEdit>
#include <QTreeWidget>
#include <array>
#include <functional>
#include <optional>

#include "app/gui/note_edit.h"
#include "timekeeping/entry_editor.h"

namespace quillora {

// Opens the document holding a note's text with the desktop's own
// application; tests give one that edits the file themselves.
using DocumentOpener = std::function<bool(const QString& path)>;

// The user's own folder for the notes "Edit In Word" hands to a text editor:
// "quillora-notes" in the runtime folder (else the cache folder), created
// 0700 and made 0700 when it is not. Empty when there is none, or when the
// folder there is not a folder of this user.
QString PrivateDocumentFolder();

class EntryEditorDialog : public QDialog {
  Q_OBJECT

 public:
  EntryEditorDialog(const EditorServices& services, const TimeEntry& entry,
                    EntryStore& entries, QWidget* parent = nullptr);

  EntryEditor& editor() { return editor_; }
  // What the last OK came to: kSaved closes the sheet.
  std::optional<SaveResult> save_result() const { return save_result_; }

  // The pages' controls, for the tests and the pictures.
  QTabWidget* pages() const { return pages_; }
  QDateEdit* date_edit() const { return date_; }
  QComboBox* client_box() const { return client_; }
  QComboBox* project_box() const { return project_; }
  QComboBox* phase_box() const { return phase_; }
  QComboBox* task_box() const { return task_; }
  QComboBox* duration_box() const { return duration_; }
  QCheckBox* start_check() const { return start_check_; }
  QTimeEdit* start_edit() const { return start_; }
  QTreeWidget* rate_tree() const { return rate_tree_; }
  QLineEdit* rate_edit() const { return rate_; }
  QCheckBox* fixed_check() const { return fixed_; }
  QLineEdit* total_edit() const { return total_; }
  QPushButton* calculate_button() const { return calculate_; }
  NoteEdit* note_edit() const { return note_; }

  // The folder "Edit In Word" writes into (by default the user's private
  // folder of PrivateDocumentFolder()), and how it opens the document.
  const QString& document_folder() const { return document_folder_; }
  void SetDocumentFolder(const QString& folder) { document_folder_ = folder; }
  void SetDocumentOpener(DocumentOpener opener) { opener_ = std::move(opener); }
  // "Edit In Word"; true when the note took the document's text.
  bool EditInWord();
  // "Set...": the start and end dialog, run by `pick` (tests) or modally.
  void SetStartEnd(const std::function<bool(StartEndPickers*)>& pick = {});
  // Cancelling then asks `question` (Yes/No, No the default) and closes only
  // on Yes: a timed entry is gone once its editor is cancelled.
  void SetCancelQuestion(std::u16string question) {
    cancel_question_ = std::move(question);
  }

 public slots:
  // OK: the model checks every page and writes the entry.
  void accept() override;
  // Cancel, Escape and closing the window.
  void reject() override;

 private:
  QWidget* BuildGeneral();
  QWidget* BuildBilling();
  QWidget* BuildCustom();
  QWidget* BuildNotes();
  void ShowGeneral();
  void ShowBilling();
  void FillRateTree();
  void PageChanged(int index);
  void FocusRefused();

  EntryEditor editor_;
  EntryStore& entries_;
  UserPrompt& prompt_;
  std::optional<SaveResult> save_result_;
  int page_ = 0;
  bool loading_ = false;
  bool billing_opened_ = false;
  QString document_folder_;
  DocumentOpener opener_;
  std::u16string cancel_question_;

  QTabWidget* pages_ = nullptr;
  QDateEdit* date_ = nullptr;
  QComboBox* client_ = nullptr;
  QComboBox* project_ = nullptr;
  QComboBox* phase_ = nullptr;
  QComboBox* task_ = nullptr;
  QComboBox* duration_ = nullptr;
  QCheckBox* start_check_ = nullptr;
  QTimeEdit* start_ = nullptr;
  QCheckBox* billable_ = nullptr;
  QCheckBox* paid_ = nullptr;
  QComboBox* bill_to_ = nullptr;
  QTreeWidget* rate_tree_ = nullptr;
  QComboBox* currency_ = nullptr;
  QLineEdit* rate_ = nullptr;
  QCheckBox* fixed_ = nullptr;
  QLineEdit* total_ = nullptr;
  QPushButton* calculate_ = nullptr;
  std::array<QLabel*, 3> custom_labels_{};
  std::array<QComboBox*, 3> custom_{};
  NoteEdit* note_ = nullptr;
  QPushButton* draw_ = nullptr;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_ENTRY_EDITOR_DIALOG_H_
