#include "app/gui/catalogue_commands.h"

#include <QAction>

#include "app/gui/catalogue_dialog.h"
#include "app/gui/main_window.h"
#include "app/gui/rate_setup_dialog.h"

namespace quillora {
namespace {

// The clients dialog, with `then` run on it once it shows (the File menu's
// import and list export act on the tree's selection, the first client).
void OpenClients(MainWindow* window, void (CatalogueDialog::*then)()) {
  if (!window->data().catalogue) return;
  CatalogueDialog dialog(window->data(), window->prompt(), window);
  if (then) {
    dialog.show();
    (dialog.*then)();
  }
  dialog.exec();
}

}  // namespace

void InstallCatalogueCommands(MainWindow* window) {
  auto connect_action = [window](const char* name, auto&& slot) {
    if (QAction* action = window->action(name)) {
      action->setEnabled(true);
      QObject::connect(action, &QAction::triggered, window, slot);
    }
  };
  connect_action("clients", [window] { OpenClients(window, nullptr); });
  connect_action("import", [window] { OpenClients(window, &CatalogueDialog::Import); });
  connect_action("exportList",
                 [window] { OpenClients(window, &CatalogueDialog::ExportList); });
  connect_action("rates", [window] {
    if (!window->data().catalogue) return;
    RateSetupDialog dialog(window->data(), window->prompt(), window);
    dialog.exec();
  });
}

}  // namespace quillora
