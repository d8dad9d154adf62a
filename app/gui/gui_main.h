// The window's start: one running copy per user, the data context, the main
// frame and the event loop.
#ifndef QUILLORA_APP_GUI_GUI_MAIN_H_
#define QUILLORA_APP_GUI_GUI_MAIN_H_

#include <string>
#include <vector>

namespace quillora {

// Starts the window on `data_folder`, or hands `paths` to a copy already
// running (exit code 0 without showing a window). Exit code 1 with "Unable to
// load database." when the data cannot be opened.
int RunWindow(int argc, char** argv, const std::string& data_folder,
              const std::vector<std::string>& paths);

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_GUI_MAIN_H_
