#include "app/gui/screenshots_options.h"

#include <QApplication>

#include "app/gui/options_commands.h"
#include "app/gui/screenshots_shot.h"

namespace quillora {

void ShootOptionsDialogs(MainWindow* window, const QString& out) {
  const char* const tabs[] = {"general", "defaults", "display", "custom-fields", "export"};
  std::unique_ptr<OptionsDialog> options = MakeOptionsDialog(window);
  for (int i = 0; i < options->pages()->count(); ++i) {
    options->pages()->setCurrentIndex(i);
    ShootHandheld(options.get(), out + "/options-" + tabs[i] + "-handheld.png");
    ShootDesktop(options.get(), QSize(500, 460), out + "/options-" + tabs[i] + ".png");
  }
  options->hide();

  DataContext& data = window->data();
  FilterPage page(window->filter(), CatalogueFilterChoices(data), *data.locale);
  page.SelectText(kFilterClientList, u"Acme Corp");
  page.paid = false;
  FiltersDialog filters(&page, window);
  ShootBoth(&filters, out, "filters", QSize(420, 480));
  filters.hide();

  std::unique_ptr<QuickSummaryDialog> summary = MakeQuickSummaryDialog(window);
  ShootBoth(summary.get(), out, "quick-summary", QSize(440, 560));
  summary->hide();
}

}  // namespace quillora
