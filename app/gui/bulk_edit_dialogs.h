// The bulk edits of the window: the find-and-replace dialog with its status
// line and progress bar, "mark all as paid" over the view, and deleting data
// by the criteria dialog.
#ifndef QUILLORA_APP_GUI_BULK_EDIT_DIALOGS_H_
#define QUILLORA_APP_GUI_BULK_EDIT_DIALOGS_H_

#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <optional>

#include "app/gui/criteria_dialog.h"
#include "timekeeping/bulk_edits.h"

namespace quillora {

class MainWindow;

class FindReplaceDialog : public QDialog {
  Q_OBJECT

 public:
  explicit FindReplaceDialog(MainWindow* window);

  QComboBox* type_box() const { return type_; }
  QComboBox* find_box() const { return find_; }
  QLineEdit* replace_edit() const { return replace_; }
  QLabel* status_line() const { return status_; }
  QProgressBar* progress_bar() const { return progress_; }
  const ReplaceCounts& counts() const { return counts_; }

  // The checks, the question, then the run; the dialog closes after the run.
  void accept() override;

 private:
  void FillFindList();
  void Run();

  MainWindow* window_;
  QComboBox* type_;
  QComboBox* find_;
  QLineEdit* replace_;
  QLabel* status_;
  QProgressBar* progress_;
  QDialogButtonBox* buttons_;
  ReplaceCounts counts_;
};

// "Mark all as paid" over the shown period and the view's filter.
BulkOutcome MarkPaidFromWindow(MainWindow* window, int* marked = nullptr);

// The delete criteria of a filled delete-data dialog; false (after saying
// so) when the dates are outside the calendar.
bool DeleteCriteriaOf(const CriteriaDialog& dialog, UserPrompt& prompt,
                      DeleteCriteria* criteria);
// Deleting after the dialog: nothing when it was cancelled.
BulkOutcome RunWindowDeleteData(MainWindow* window,
                                const std::optional<DeleteCriteria>& criteria,
                                int* deleted = nullptr);
void DeleteDataFromWindow(MainWindow* window);

// The window's words when some records could not be written.
inline constexpr char16_t kMarkPaidFailed[] =
    u"Some entries could not be marked as paid. Please try again.";
inline constexpr char16_t kDeleteDataFailed[] =
    u"Some entries could not be deleted. Please try again.";
inline constexpr char16_t kReplaceFailed[] =
    u"Some entries could not be updated. Please try again.";

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_BULK_EDIT_DIALOGS_H_
