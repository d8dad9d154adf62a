// The report command of the window and the generation both report windows use.
#include <QDialogButtonBox>
#include <QDir>
#include <QFormLayout>

#include "app/gui/dialog_support.h"
#include "app/gui/file_command_prompt.h"
#include "app/gui/help.h"
#include "app/gui/main_window.h"
#include "app/gui/report_dialogs.h"
#include "app/gui/written_file_notice.h"
#include "platform/file.h"
#include "store/string_table.h"

namespace quillora {

std::u16string NoSavedReportOffer() {
  return LoadString(kIdsNoSavedReport) +
         FromQString(
             QObject::tr("\n\nDo you want to make one in the report editor now?"));
}

bool GenerateReportFromWindow(MainWindow* window, const ReportDefinition& definition,
                              const PeriodRange& range) {
  FileCommandPrompt files(window->prompt(), window->data().registry.get(),
                          QString("report-%1.htm").arg(RangeFileStem(range)));
  WaitingPrompt prompt(files);
  const HtmlReportRequest request =
      MakeReportRequest(definition, range, window->filter(), window->clock().LocalNow());
  const std::optional<std::string> path =
      RunReportCommand(window->entries(), FileSystem::Posix(), prompt, request,
                       window->data().settings, *window->data().locale);
  if (!path) return false;
  const QString file = QString::fromStdString(*path);
  ShowNotice(window,
             QObject::tr("Saved the report to %1").arg(QDir::toNativeSeparators(file)),
             file);
  OpenUrl(QUrl::fromLocalFile(file));
  return true;
}

ReportRunDialog::ReportRunDialog(MainWindow* window,
                                 const std::vector<SavedReportName>& reports)
    : QDialog(window) {
  setWindowTitle(tr("Report"));
  auto* form = new QFormLayout(this);
  form->setRowWrapPolicy(QFormLayout::WrapLongRows);
  report_ = new QComboBox(this);
  report_->setObjectName("report");
  const std::u16string& preferred = window->data().settings.default_report;
  for (const SavedReportName& saved : reports) {
    // Reports of one name are one choice: the first of them is used.
    if (report_->findText(ToQString(saved.name), Qt::MatchExactly) >= 0) continue;
    report_->addItem(ToQString(saved.name));
  }
  const int preferred_index = report_->findText(ToQString(preferred), Qt::MatchExactly);
  if (preferred_index >= 0) report_->setCurrentIndex(preferred_index);
  const PeriodRange range = window->period().GetRange();
  start_ = new QDateEdit(ToQDate(range.start), this);
  end_ = new QDateEdit(ToQDate(range.end), this);
  for (QDateEdit* edit : {start_, end_}) {
    edit->setCalendarPopup(true);
    edit->setDisplayFormat("yyyy-MM-dd");
  }
  form->addRow(tr("Report:"), report_);
  form->addRow(tr("Start:"), start_);
  form->addRow(tr("End:"), end_);
  auto* buttons = new QDialogButtonBox(
      QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Help, this);
  ConnectHelpButton(buttons, "report");
  form->addRow(buttons);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  FitNarrowScreens(this);
}

PeriodRange ReportRunDialog::Range() const {
  QDate first = start_->date(), last = end_->date();
  if (last < first) std::swap(first, last);
  return WholeDayRange(first, last);
}

bool RunWindowReport(MainWindow* window, const std::u16string& name,
                     const PeriodRange& range) {
  AuxStore aux(*window->data().volume);
  ReportDefinition definition;
  ObjectId record_id = 0;
  SavedReportLookup lookup = SavedReportLookup::kNoSavedReport;
  if (OpenSavedReports(aux)) lookup = LoadSavedReport(aux, name, &definition, &record_id);
  if (!ReportFound(window->prompt(), lookup)) return false;
  return GenerateReportFromWindow(window, definition, range);
}

void ReportFromWindow(MainWindow* window) {
  std::vector<SavedReportName> reports;
  {
    AuxStore aux(*window->data().volume);
    if (OpenSavedReports(aux)) reports = ListSavedReports(aux);
  }
  if (reports.empty()) {
    // Not a dead end: the system's message, and the way to make a report.
    if (window->prompt().Ask(kAppTitle, NoSavedReportOffer(), MessageIcon::kInformation,
                             QuestionButtons::kYesNo, Answer::kYes) == Answer::kYes) {
      ReportEditorFromWindow(window);
    }
    return;
  }
  ReportRunDialog dialog(window, reports);
  if (dialog.exec() != QDialog::Accepted) return;
  RunWindowReport(window, FromQString(dialog.report_box()->currentText()), dialog.Range());
}

}  // namespace quillora
