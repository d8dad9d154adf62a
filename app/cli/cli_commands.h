// The commands of the command line, one object each, defined in the files
// named after what they work on.
#ifndef QUILLORA_APP_CLI_CLI_COMMANDS_H_
#define QUILLORA_APP_CLI_CLI_COMMANDS_H_

#include "app/cli/cli_context.h"

namespace quillora {

extern const Command kShowCommand;
extern const Command kDeleteCommand;
extern const Command kFilterCommand;
extern const Command kSettingsCommand;
extern const Command kClientCommand;
extern const Command kProjectCommand;
extern const Command kTaskCommand;
extern const Command kContactCommand;
extern const Command kRateCommand;
extern const Command kValueCommand;
extern const Command kImportCommand;
extern const Command kExportListCommand;
extern const Command kContactsCommand;

}  // namespace quillora

#endif  // QUILLORA_APP_CLI_CLI_COMMANDS_H_
