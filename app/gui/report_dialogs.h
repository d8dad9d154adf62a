// The report windows: the report editor (the 33-row property list over a
// report definition, with save and the saved reports), the saved-reports
// dialog (open, delete, rename in place, default report), and the report
// command (a saved report over a date range, written to an HTML file and
// opened in the desktop's browser).
#ifndef QUILLORA_APP_GUI_REPORT_DIALOGS_H_
#define QUILLORA_APP_GUI_REPORT_DIALOGS_H_

#include <QComboBox>
#include <QDateEdit>
#include <QDialog>
#include <QListWidget>
#include <QPushButton>
#include <QToolButton>
#include <QTreeWidget>
#include <functional>
#include <optional>
#include <string>

#include "periods/periods.h"
#include "reports/report_request.h"
#include "reports/saved_reports.h"

namespace quillora {

class MainWindow;

// Writes the report of `definition` over `range` (the view's filter with
// its range set to those days) to a file chosen through the window's prompt,
// with the wait cursor, and opens it in the browser. False when cancelled or
// when generation failed ("Report generation has failed.").
bool GenerateReportFromWindow(MainWindow* window, const ReportDefinition& definition,
                              const PeriodRange& range);

class ReportEditorDialog : public QDialog {
  Q_OBJECT

 public:
  // Starts with the default report ("DefReport") when it can be read, else
  // with a new report.
  explicit ReportEditorDialog(MainWindow* window);

  const ReportEditor& editor() const { return editor_; }
  ReportEditor& editor() { return editor_; }
  const CurrentReport& report() const { return report_; }
  QTreeWidget* list() const { return list_; }
  // The widget of a row's value: a QComboBox for choices, else null.
  QComboBox* ChoiceBox(int row) const;

  // Shows the rows again after the editor changed.
  void Refresh();
  // Loads a saved report into the editor; false (after saying so) when it
  // cannot be read.
  bool OpenSaved(const std::u16string& name);
  // The save command: asks the name (again after No to the overwrite
  // question), then saves. True when saved.
  bool Save();
  // Moves the selected field row up (-1) or down (+1).
  void MoveSelectedField(int step);
  // The report of the editor's definition over the shown period.
  void Generate();

  // Asks for a report name starting from the current one; nothing when
  // cancelled. Tests answer with a script.
  std::function<std::optional<std::u16string>(const std::u16string& current)> ask_name;

 private:
  void ItemChanged(QTreeWidgetItem* item, int column);
  void ShowSavedReports();
  void UpdateButtons();

  MainWindow* window_;
  ReportEditor editor_;
  CurrentReport report_;
  QTreeWidget* list_;
  QToolButton* up_;
  QToolButton* down_;
  bool filling_ = false;
};

class SavedReportsDialog : public QDialog {
  Q_OBJECT

 public:
  explicit SavedReportsDialog(MainWindow* window, QWidget* parent = nullptr);

  QListWidget* list() const { return list_; }
  // The name chosen with "Open" (or a double click).
  const std::u16string& chosen() const { return chosen_; }

  void Fill();
  bool DeleteSelected();
  // Renames the selected report (the in-place edit ends here).
  bool RenameSelected(const std::u16string& new_name);
  bool MakeSelectedDefault();

 private:
  std::u16string SelectedName() const;
  void Changed(SavedReportChange change);

  MainWindow* window_;
  QListWidget* list_;
  std::u16string chosen_;
  bool filling_ = false;
};

// The report command's dialog: the saved report (the default one chosen
// first) and "Start:" / "End:" from the shown period.
class ReportRunDialog : public QDialog {
  Q_OBJECT

 public:
  ReportRunDialog(MainWindow* window, const std::vector<SavedReportName>& reports);
  QComboBox* report_box() const { return report_; }
  QDateEdit* start_edit() const { return start_; }
  QDateEdit* end_edit() const { return end_; }
  PeriodRange Range() const;

 private:
  QComboBox* report_;
  QDateEdit* start_;
  QDateEdit* end_;
};

// The report command: when no report is saved, NoSavedReportOffer() and, on
// Yes, the report editor; else the dialog, the chosen report read, and
// GenerateReportFromWindow.
void ReportFromWindow(MainWindow* window);
// "There is no saved report." and the offer of the report editor.
std::u16string NoSavedReportOffer();
// The command after its dialog.
bool RunWindowReport(MainWindow* window, const std::u16string& name,
                     const PeriodRange& range);

// Opens the report editor.
void ReportEditorFromWindow(MainWindow* window);

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_REPORT_DIALOGS_H_
