// Connects the window's data commands: export, reports, backup, restore,
// archive, bulk edits and help.
#ifndef QUILLORA_APP_GUI_DATA_COMMANDS_H_
#define QUILLORA_APP_GUI_DATA_COMMANDS_H_

namespace quillora {

class MainWindow;

void InstallDataCommands(MainWindow* window);

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_DATA_COMMANDS_H_
