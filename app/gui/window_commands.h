// Connects each action of the main window to the command it runs: the one
// place that knows both the window and the dialogs of its commands.
#ifndef QUILLORA_APP_GUI_WINDOW_COMMANDS_H_
#define QUILLORA_APP_GUI_WINDOW_COMMANDS_H_

namespace quillora {

class EntryCommands;
class MainWindow;

// Wires every command of `window`; returns the entry commands it created
// (owned by the window).
EntryCommands* WireWindowCommands(MainWindow* window);

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_WINDOW_COMMANDS_H_
