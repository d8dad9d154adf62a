// What every command of the command line works with: the data folder, the
// prompt, the clock, and the data once opened.
#ifndef QUILLORA_APP_CLI_CLI_CONTEXT_H_
#define QUILLORA_APP_CLI_CLI_CONTEXT_H_

#include <memory>
#include <string>

#include "app/cli/arguments.h"
#include "app/cli/cli_prompt.h"
#include "platform/clock.h"
#include "store/catalogue_service.h"
#include "store/data_context.h"

namespace quillora {

// A text of the command line's own that several commands show.
inline constexpr char16_t kFilterNotRead[] = u"The filter could not be read.";

// Exit statuses.
inline constexpr int kExitDone = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitUsage = 2;

struct CliContext {
  std::string data_folder;
  CliPrompt* prompt = nullptr;
  const Clock* clock = nullptr;
  DataContext data;  // open once OpenData has answered true
  std::unique_ptr<CatalogueService> catalogue;  // set by OpenCatalogueService

  // Opens the data folder: volume, registry, settings. On failure shows "Unable to load
  // database." and answers false; nothing in the folder is changed.
  bool OpenData();
  // OpenData, then the five catalogue stores; the same message on failure.
  bool OpenCatalogue();
  // OpenCatalogue, then the catalogue service over it; null after the message.
  CatalogueService* OpenCatalogueService();
  const Locale& locale() const { return *data.locale; }
  // Shows a message titled "Quillora" with the error icon and answers 1.
  int Fail(const std::u16string& text);
};

// Prints "quillora: MESSAGE" and the hint to --help on stderr; answers 2.
int UsageError(const std::string& message);

// An empty file or folder argument (most often a script's unset variable) is
// wrong usage: the usage error naming `what`. 0 for any other path.
int CheckPathArgument(const std::string& path, const char* what = "FILE");

using CommandHandler = int (*)(CliContext& context, Arguments& args);

struct Command {
  const char* name;
  const char* usage;    // the synopsis after "quillora "
  const char* summary;  // one line for the command list
  const char* details;  // more lines for "quillora COMMAND --help", may be ""
  CommandHandler run;
};

}  // namespace quillora

#endif  // QUILLORA_APP_CLI_CLI_CONTEXT_H_
