#include "app/gui/screenshots_options.h"

#include <QApplication>

#include "app/gui/options_commands.h"

namespace quillora {
namespace {

const QSize kHandheld(240, 320);

void Grab(QWidget* widget, const QSize& size, const QString& path) {
  widget->resize(size);
  widget->show();
  QApplication::processEvents();
  widget->grab().save(path);
}

}  // namespace

void ShootOptionsDialogs(MainWindow* window, const QString& out) {
  const char* const tabs[] = {"general", "defaults", "display", "custom-fields", "export"};
  std::unique_ptr<OptionsDialog> options = MakeOptionsDialog(window);
  for (int i = 0; i < options->pages()->count(); ++i) {
    options->pages()->setCurrentIndex(i);
    Grab(options.get(), kHandheld, out + "/options-" + tabs[i] + "-handheld.png");
    Grab(options.get(), QSize(500, 460), out + "/options-" + tabs[i] + ".png");
  }
  options->hide();

  DataContext& data = window->data();
  FilterPage page(window->filter(), CatalogueFilterChoices(data), *data.locale);
  page.SelectText(kFilterClientList, u"Acme Corp");
  page.paid = false;
  FiltersDialog filters(&page, window);
  Grab(&filters, kHandheld, out + "/filters-handheld.png");
  Grab(&filters, QSize(420, 480), out + "/filters.png");
  filters.hide();

  std::unique_ptr<QuickSummaryDialog> summary = MakeQuickSummaryDialog(window);
  Grab(summary.get(), kHandheld, out + "/quick-summary-handheld.png");
  Grab(summary.get(), QSize(440, 560), out + "/quick-summary.png");
  summary->hide();
}

}  // namespace quillora
