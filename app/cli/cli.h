// The headless front end: parses a command line and runs one command.
#ifndef QUILLORA_APP_CLI_CLI_H_
#define QUILLORA_APP_CLI_CLI_H_

namespace quillora {

// Runs `quillora ARGS...`; returns the process exit status (0 done, 1 refused
// or failed, 2 wrong usage). With no command, or with a file path, the window
// starts (the process becomes `quillora-window`) when a display is available.
int RunCli(int argc, char** argv);

}  // namespace quillora

#endif  // QUILLORA_APP_CLI_CLI_H_
