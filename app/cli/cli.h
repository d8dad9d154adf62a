// The headless front end: parses a command line and runs one command.
#ifndef QUILLORA_APP_CLI_CLI_H_
#define QUILLORA_APP_CLI_CLI_H_

#include <string>
#include <vector>

namespace quillora {

// Starts the window on a data folder with the paths handed to it; its exit
// status.
using WindowStarter = int (*)(int argc, char** argv, const std::string& data_folder,
                              const std::vector<std::string>& paths);

// Runs `quillora ARGS...`; returns the process exit status (0 done, 1 refused
// or failed, 2 wrong usage). With no command, or with a file path, the window
// starts through `start_window` when a display is available.
int RunCli(int argc, char** argv, WindowStarter start_window);

}  // namespace quillora

#endif  // QUILLORA_APP_CLI_CLI_H_
