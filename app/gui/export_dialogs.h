// The export commands of the window: the export range dialog, prefilled with
// the shown period, then the save chooser and the export with the wait cursor.
#ifndef QUILLORA_APP_GUI_EXPORT_DIALOGS_H_
#define QUILLORA_APP_GUI_EXPORT_DIALOGS_H_

#include <QDateEdit>
#include <QDialog>

#include "interchange/export_command.h"
#include "periods/periods.h"

namespace quillora {

class MainWindow;

// "Start:" and "End:" of an export; the entry filter of the view applies on
// top of the range.
class ExportRangeDialog : public QDialog {
  Q_OBJECT

 public:
  ExportRangeDialog(const PeriodRange& initial, QWidget* parent = nullptr);

  // Whole days from the start date to the end date.
  PeriodRange Range() const;
  QDateEdit* start_edit() const { return start_; }
  QDateEdit* end_edit() const { return end_; }

  void accept() override;

 private:
  QDateEdit* start_;
  QDateEdit* end_;
};

// The command after its range dialog: `range` is what the dialog gave, or
// nothing when it was cancelled.
ExportOutcome RunWindowExport(MainWindow* window, ExportFormat format,
                              const std::optional<PeriodRange>& range);

// The whole command: the dialog, then RunWindowExport.
void ExportFromWindow(MainWindow* window, ExportFormat format);

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_EXPORT_DIALOGS_H_
