// The catalogue's commands of the main window: "Clients...", "Rate
// Setup...", and the File menu's "Import..." and "Export List...", which act
// on the clients dialog's selection (the first client).
#ifndef QUILLORA_APP_GUI_CATALOGUE_COMMANDS_H_
#define QUILLORA_APP_GUI_CATALOGUE_COMMANDS_H_

#include "app/gui/catalogue_dialog.h"

namespace quillora {

class MainWindow;

// The clients dialog, with `then` (when set) run on it once it shows.
void OpenClients(MainWindow* window, void (CatalogueDialog::*then)() = nullptr);
void OpenRateSetup(MainWindow* window);

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_CATALOGUE_COMMANDS_H_
