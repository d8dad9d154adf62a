#include "app/gui/export_dialogs.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFormLayout>
#include <QLabel>

#include "app/gui/dialog_support.h"
#include "app/gui/file_command_prompt.h"
#include "app/gui/help.h"
#include "app/gui/main_window.h"
#include "app/gui/written_file_notice.h"
#include "platform/file.h"
#include "store/string_table.h"

namespace quillora {

ExportRangeDialog::ExportRangeDialog(const PeriodRange& initial, QWidget* parent)
    : QDialog(parent) {
  setWindowTitle(tr("Export Range"));
  auto* form = new QFormLayout(this);
  form->setRowWrapPolicy(QFormLayout::WrapLongRows);
  auto* note = new QLabel(tr("The entries of these days that pass the view's filter "
                             "are exported."),
                          this);
  note->setWordWrap(true);
  form->addRow(note);
  start_ = new QDateEdit(ToQDate(initial.start), this);
  end_ = new QDateEdit(ToQDate(initial.end), this);
  for (QDateEdit* edit : {start_, end_}) {
    edit->setCalendarPopup(true);
    edit->setDisplayFormat("yyyy-MM-dd");
  }
  start_->setObjectName("start");
  end_->setObjectName("end");
  form->addRow(tr("Start:"), start_);
  form->addRow(tr("End:"), end_);
  auto* buttons = new QDialogButtonBox(
      QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Help, this);
  ConnectHelpButton(buttons, "export");
  form->addRow(buttons);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  FitNarrowScreens(this);
}

PeriodRange ExportRangeDialog::Range() const {
  return WholeDayRange(start_->date(), end_->date());
}

void ExportRangeDialog::accept() {
  // A range that ends before it starts is turned round rather than refused.
  if (end_->date() < start_->date()) {
    const QDate start = start_->date();
    start_->setDate(end_->date());
    end_->setDate(start);
  }
  QDialog::accept();
}

ExportOutcome RunWindowExport(MainWindow* window, ExportFormat format,
                              const std::optional<PeriodRange>& range) {
  std::optional<EntryFilter> criteria;
  if (range) criteria = MakeExportCriteria(*range, window->filter());
  // The view is brought up to date before the file is written.
  window->Reload();
  const bool csv = format == ExportFormat::kCsv;
  const QString name =
      range ? QString("quillora-%1.%2").arg(RangeFileStem(*range), csv ? "csv" : "xml")
            : QString();
  FileCommandPrompt files(window->prompt(), window->data().registry.get(), name);
  ExportOutcome outcome;
  ExportSources sources{window->entries(), window->data().settings,
                        *window->data().locale, FileSystem::Posix()};
  {
    WaitingPrompt prompt(files);
    outcome = RunExportCommand(format, criteria, sources, prompt);
  }
  if (outcome == ExportOutcome::kExported) {
    ShowNotice(window,
               QObject::tr("Exported %1 to %2")
                   .arg(Counted(static_cast<int>(sources.exported), QObject::tr("entry"),
                                QObject::tr("entries")),
                        QDir::toNativeSeparators(files.chosen())),
               files.chosen());
  }
  return outcome;
}

void ExportFromWindow(MainWindow* window, ExportFormat format) {
  ExportRangeDialog dialog(window->period().GetRange(), window);
  dialog.setWindowTitle(format == ExportFormat::kCsv ? QObject::tr("Export CSV")
                                                     : QObject::tr("Export XML"));
  std::optional<PeriodRange> range;
  if (dialog.exec() == QDialog::Accepted) range = dialog.Range();
  RunWindowExport(window, format, range);
}

}  // namespace quillora
