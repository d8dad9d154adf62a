// The commands of the command line, one object each, defined in the files
// named after what they work on.
#ifndef QUILLORA_APP_CLI_CLI_COMMANDS_H_
#define QUILLORA_APP_CLI_CLI_COMMANDS_H_

#include "app/cli/cli_context.h"

namespace quillora {

extern const Command kAddCommand;
extern const Command kEditCommand;
extern const Command kCopyCommand;
extern const Command kShowCommand;
extern const Command kDeleteCommand;
extern const Command kListCommand;
extern const Command kSummaryCommand;
extern const Command kFilterCommand;
extern const Command kSettingsCommand;
extern const Command kClientCommand;
extern const Command kProjectCommand;
extern const Command kTaskCommand;
extern const Command kContactCommand;
extern const Command kRateCommand;
extern const Command kValueCommand;
extern const Command kExportCommand;
extern const Command kReportCommand;
extern const Command kReportDefCommand;
extern const Command kBackupCommand;
extern const Command kRestoreCommand;
extern const Command kArchiveCommand;
extern const Command kArchiveRestoreCommand;
extern const Command kReplaceCommand;
extern const Command kMarkPaidCommand;
extern const Command kDeleteDataCommand;
extern const Command kImportCommand;
extern const Command kImportEntriesCommand;
extern const Command kExportListCommand;
extern const Command kContactsCommand;

}  // namespace quillora

#endif  // QUILLORA_APP_CLI_CLI_COMMANDS_H_
