// The catalogue's commands of the main window: "Clients..." (clients),
// "Rate Setup..." (rates), "Import..." (import) and "Export List..."
// (exportList).
#ifndef QUILLORA_APP_GUI_CATALOGUE_COMMANDS_H_
#define QUILLORA_APP_GUI_CATALOGUE_COMMANDS_H_

namespace quillora {

class MainWindow;

void InstallCatalogueCommands(MainWindow* window);

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_CATALOGUE_COMMANDS_H_
