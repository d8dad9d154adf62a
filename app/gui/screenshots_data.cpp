#include "app/gui/screenshots_data.h"

#include <QApplication>

#include "app/gui/bulk_edit_dialogs.h"
#include "app/gui/criteria_dialog.h"
#include "app/gui/export_dialogs.h"
#include "app/gui/main_window.h"
#include "app/gui/report_dialogs.h"
#include "app/gui/screenshots_shot.h"

namespace quillora {

void ShootDataDialogs(MainWindow* window, const QString& folder) {
  // The sample's clients and two saved reports, the first the default one.
  if (Catalogue* catalogue = window->data().catalogue.get()) {
    for (const char16_t* name : {u"Acme Corp", u"Globex", u"Northwind"}) {
      AddClient(catalogue->clients, name);
    }
  }
  {
    AuxStore aux(*window->data().volume);
    if (OpenSavedReports(aux)) {
      WriteSavedReport(aux, 0, u"Weekly by client", NewReportDefinition());
      WriteSavedReport(aux, 0, u"Monthly invoice", NewReportDefinition());
    }
    window->data().settings.default_report = u"Weekly by client";
  }
  ExportRangeDialog range(window->period().GetRange(), window);
  range.setWindowTitle("Export CSV");
  ShootBoth(&range, folder, "export-range", QSize(360, 200));

  std::vector<Client> clients;
  if (Catalogue* catalogue = window->data().catalogue.get()) {
    clients = ClientList(catalogue->clients);
  }
  CriteriaDialog archive(CriteriaDialog::Purpose::kArchive, window->period().GetRange(),
                         clients, window->prompt(), window);
  ShootBoth(&archive, folder, "archive", QSize(460, 520));
  CriteriaDialog remove(CriteriaDialog::Purpose::kDeleteData, window->period().GetRange(),
                        clients, window->prompt(), window);
  remove.type_box()->setCurrentIndex(1);
  if (remove.client_list()->count() > 0) {
    remove.client_list()->item(0)->setCheckState(Qt::Checked);
  }
  ShootBoth(&remove, folder, "delete-data", QSize(460, 520));

  FindReplaceDialog find(window);
  if (find.find_box()->count() > 1) find.find_box()->setCurrentIndex(1);
  find.replace_edit()->setText("Acme Corporation");
  find.status_line()->setText("Updating Records. Please Wait...");
  find.status_line()->show();
  find.progress_bar()->setRange(0, 6);
  find.progress_bar()->setValue(4);
  find.progress_bar()->show();
  ShootBoth(&find, folder, "find-replace", QSize(400, 260));

  ReportEditorDialog editor(window);
  editor.list()->setCurrentItem(editor.list()->topLevelItem(kRowFirstField + 1));
  ShootBoth(&editor, folder, "report-editor", QSize(460, 640));

  SavedReportsDialog saved(window);
  ShootBoth(&saved, folder, "saved-reports", QSize(360, 320));

  AuxStore aux(*window->data().volume);
  std::vector<SavedReportName> reports;
  if (OpenSavedReports(aux)) reports = ListSavedReports(aux);
  ReportRunDialog run(window, reports);
  ShootBoth(&run, folder, "report", QSize(360, 200));
}

}  // namespace quillora
