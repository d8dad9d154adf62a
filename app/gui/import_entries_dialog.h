// File > Import Entries: the time entries of another tracker's file (a
// Timewarrior export or a CSV export). The dialog reads the chosen file as
// soon as it is chosen and shows the first rows as they will be stored, with
// the reason of each row that will be skipped, and what each column fills;
// "Import" then runs the import with progress and shows its summary. The
// rules are the logic's (interchange/entry_import.h, docs/import.md).
#ifndef QUILLORA_APP_GUI_IMPORT_ENTRIES_DIALOG_H_
#define QUILLORA_APP_GUI_IMPORT_ENTRIES_DIALOG_H_

#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <optional>
#include <string>

#include "interchange/csv_entries.h"

namespace quillora {

class MainWindow;

class ImportEntriesDialog : public QDialog {
  Q_OBJECT

 public:
  // The sources, by their index in the "Source:" list.
  enum Source { kTimewarrior = 0, kCsv = 1 };
  // The preview shows at most this many rows.
  static constexpr int kPreviewRows = 200;

  explicit ImportEntriesDialog(MainWindow* window);

  QComboBox* source() const { return source_; }
  QLineEdit* file() const { return file_; }
  QComboBox* date_format() const { return date_format_; }
  QLineEdit* default_client() const { return client_; }
  QLineEdit* default_task() const { return task_; }
  QTableWidget* preview() const { return preview_; }
  QTableWidget* mapping() const { return mapping_; }
  QLabel* status() const { return status_; }
  QPushButton* import_button() const { return import_; }

  // Reads the file again with the dialog's choices and refills the preview,
  // the mapping and the status line. "Import" is enabled when the file was
  // read without error.
  void Reread();
  // Imports what Reread read (reading it again first), shows the summary and
  // reloads the window's entries. False when nothing could be imported.
  bool Import();
  // The summary lines of the last import.
  const std::vector<std::u16string>& summary() const { return summary_; }

 private:
  void Browse();
  std::optional<ImportedFile> Read();
  void ShowPreview(const ImportedFile& file);
  void ShowMapping(const CsvImportedFile* csv);

  MainWindow* window_;
  QComboBox* source_;
  QLineEdit* file_;
  QComboBox* date_format_;
  QLineEdit* client_;
  QLineEdit* task_;
  QTableWidget* preview_;
  QTableWidget* mapping_;
  QLabel* status_;
  QDialogButtonBox* buttons_;
  QPushButton* import_;
  std::vector<std::u16string> summary_;
};

// The command: opens the dialog over the window.
void ImportEntriesFromWindow(MainWindow* window);

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_IMPORT_ENTRIES_DIALOG_H_
