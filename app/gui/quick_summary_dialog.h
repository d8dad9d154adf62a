// The quick summary dialog: the summary's rows in a three-column list with
// grid lines and no header, its "Save as CSV..." command, and under the list
// a small chart of the hours per project. Built once when opened; it does not
// refresh.
#ifndef QUILLORA_APP_GUI_QUICK_SUMMARY_DIALOG_H_
#define QUILLORA_APP_GUI_QUICK_SUMMARY_DIALOG_H_

#include <QDialog>
#include <QPushButton>
#include <QTableWidget>
#include <vector>

#include "app/gui/project_hours_chart.h"
#include "interchange/summary_csv.h"
#include "periods/quick_summary.h"
#include "platform/file.h"
#include "platform/registry.h"
#include "platform/user_prompt.h"

namespace quillora {

class QuickSummaryDialog : public QDialog {
  Q_OBJECT

 public:
  // `prompt` chooses the CSV file and asks before one is replaced; the file
  // is written through `files` in the ANSI code page `code_page`. Both must
  // outlive the dialog.
  QuickSummaryDialog(std::vector<QuickSummaryRow> rows, std::vector<ProjectHours> projects,
                     UserPrompt& prompt, FileSystem& files, int code_page,
                     QWidget* parent = nullptr);

  QTableWidget* table() const { return table_; }
  ProjectHoursChart* chart() const { return chart_; }
  QPushButton* save_button() const { return save_; }

  // Where "Save as CSV..." starts: the folder used last in `registry` (may
  // be null) with `suggested_name` ("summary-2026-11.csv").
  void SetFileStart(Registry* registry, QString suggested_name) {
    registry_ = registry;
    suggested_name_ = std::move(suggested_name);
  }

  // The dialog's command kCommandExportSummaryCsv: the rows to a CSV file.
  // Shows no message box whatever happens; a written file is named in the
  // main window's status bar.
  SummaryCsvResult SaveAsCsv();

 protected:
  // The columns follow the list's width whenever it is resized.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void FitColumns();

  std::vector<QuickSummaryRow> rows_;
  UserPrompt& prompt_;
  FileSystem& files_;
  int code_page_;
  Registry* registry_ = nullptr;
  QString suggested_name_;
  QTableWidget* table_ = nullptr;
  ProjectHoursChart* chart_ = nullptr;
  QPushButton* save_ = nullptr;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_QUICK_SUMMARY_DIALOG_H_
