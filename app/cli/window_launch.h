// The window is a program of its own, `quillora-window`, so that the command
// line links no Qt. `quillora` with no command (or with only a file) becomes
// that program.
#ifndef QUILLORA_APP_CLI_WINDOW_LAUNCH_H_
#define QUILLORA_APP_CLI_WINDOW_LAUNCH_H_

#include <string>
#include <vector>

namespace quillora {

inline constexpr char kWindowProgram[] = "quillora-window";

// Replaces this process with `quillora-window --data-dir DATA_FOLDER FILES...`:
// the one next to the running binary, else the one on PATH. Returns only when
// neither can be started, with exit status 1 after saying so on stderr.
int StartWindow(const std::string& data_folder, const std::vector<std::string>& files);

}  // namespace quillora

#endif  // QUILLORA_APP_CLI_WINDOW_LAUNCH_H_
