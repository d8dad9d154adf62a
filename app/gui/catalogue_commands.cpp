#include "app/gui/catalogue_commands.h"

#include "app/gui/catalogue_dialog.h"
#include "app/gui/main_window.h"
#include "app/gui/rate_setup_dialog.h"

namespace quillora {
void OpenClients(MainWindow* window, void (CatalogueDialog::*then)()) {
  if (!window->data().catalogue) return;
  CatalogueDialog dialog(window->data(), window->prompt(), window);
  if (then) {
    dialog.show();
    (dialog.*then)();
  }
  dialog.exec();
}

void OpenRateSetup(MainWindow* window) {
  if (!window->data().catalogue) return;
  RateSetupDialog dialog(window->data(), window->prompt(), window);
  dialog.exec();
}

}  // namespace quillora
