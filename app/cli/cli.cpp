#include "app/cli/cli.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "app/cli/cli_commands.h"
#include "app/cli/cli_context.h"
#include "app/cli/window_launch.h"
#include "platform/clock.h"
#include "platform/data_folder.h"
#include "store/time_entry.h"

#ifndef QUILLORA_VERSION
#define QUILLORA_VERSION "0.1.0"
#endif

namespace quillora {
namespace {

const Command* const kCommands[] = {
    &kAddCommand,
    &kEditCommand,
    &kShowCommand,
    &kDeleteCommand,
    &kCopyCommand,
    &kListCommand,
    &kSummaryCommand,
    &kFilterCommand,
    &kSettingsCommand,
    &kClientCommand,
    &kProjectCommand,
    &kTaskCommand,
    &kContactCommand,
    &kRateCommand,
    &kValueCommand,
    &kExportCommand,
    &kReportCommand,
    &kReportDefCommand,
    &kBackupCommand,
    &kRestoreCommand,
    &kArchiveCommand,
    &kArchiveRestoreCommand,
    &kReplaceCommand,
    &kMarkPaidCommand,
    &kDeleteDataCommand,
    &kImportCommand,
    &kImportEntriesCommand,
    &kExportListCommand,
    &kContactsCommand,
};

const Command* FindCommand(const std::string& name) {
  for (const Command* c : kCommands) {
    if (name == c->name) return c;
  }
  return nullptr;
}

void PrintHelp() {
  std::printf(
      "Usage: quillora [--data-dir DIR] [--yes] COMMAND [OPTIONS] [ARGUMENTS]\n"
      "       quillora                  start Quillora on its data folder\n"
      "\n"
      "Quillora keeps time entries and bills them. With a command it works headless on\n"
      "the same data as the window.\n"
      "\n"
      "Global options:\n"
      "  --data-dir DIR   the data folder (else $QUILLORA_DATA_DIR, else\n"
      "                   $XDG_DATA_HOME/quillora, else ~/.local/share/quillora)\n"
      "  --yes            answer Yes/OK to every question\n"
      "  --help           this text; 'quillora COMMAND --help' for one command\n"
      "  --version        the version\n"
      "\n"
      "Commands ('quillora COMMAND --help' gives each one's options):\n");
  for (const Command* c : kCommands) {
    std::printf("  %-16s %s\n", c->name, c->summary);
  }
  std::printf(
      "\nDates are YYYY-MM-DD, times HH:MM. Exit status: 0 done, 1 refused or failed,\n"
      "2 wrong usage.\n");
}

void PrintCommandHelp(const Command& c) {
  std::printf("Usage: quillora %s\n\n%s\n", c.usage, c.summary);
  if (*c.details) std::printf("\n%s\n", c.details);
}

// No command and no display: the entries of the current period, as `list`
// prints them, and the way to the window.
int StartWithoutCommand(CliContext& context) {
  Arguments none({});
  const int status = kListCommand.run(context, none);
  if (status != kExitDone) return status;
  std::printf(
      "\nQuillora %s, data folder %s.\nThe window needs a display (DISPLAY or "
      "WAYLAND_DISPLAY): run 'quillora' from a desktop\nsession to open it, or "
      "'quillora --help' for the commands.\n",
      QUILLORA_VERSION, context.data_folder.c_str());
  return kExitDone;
}

// What was printed must have reached standard output (a full disk, a closed
// pipe): otherwise the command failed, whatever it did.
int FinishStandardOutput(int status) {
  if (std::fflush(stdout) == 0 && !std::ferror(stdout)) return status;
  const int error = errno;
  std::fprintf(stderr, "quillora: standard output could not be written: %s\n",
               std::strerror(error));
  return status == kExitDone ? kExitFailed : status;
}

bool DisplayAvailable() {
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
    const char* value = std::getenv(name);
    if (value && *value) return true;
  }
  return false;
}

}  // namespace

int RunCli(int argc, char** argv) {
  std::string data_folder;
  bool assume_yes = false;
  int i = 1;
  for (; i < argc; ++i) {
    const std::string word = argv[i];
    if (word == "--data-dir") {
      if (i + 1 >= argc) return UsageError("--data-dir needs a folder");
      data_folder = argv[++i];
      // An empty folder is most often a script's unset variable: never the
      // default folder, which holds the user's real data.
      if (data_folder.empty())
        return UsageError("--data-dir needs a folder, not an empty text");
    } else if (word.rfind("--data-dir=", 0) == 0) {
      data_folder = word.substr(11);
      if (data_folder.empty())
        return UsageError("--data-dir needs a folder, not an empty text");
    } else if (word == "--yes") {
      assume_yes = true;
    } else if (word == "--help" || word == "-h") {
      PrintHelp();
      return kExitDone;
    } else if (word == "--version") {
      std::printf("quillora %s\n", QUILLORA_VERSION);
      return kExitDone;
    } else if (word.rfind("--", 0) == 0) {
      return UsageError("unknown option " + word);
    } else {
      break;
    }
  }

  if (const char* now = std::getenv("QUILLORA_NOW");
      now && *now && !ParseIsoDateTime(now)) {
    return UsageError(
        std::string("QUILLORA_NOW is not a local time YYYY-MM-DDTHH:MM:SS: ") + now);
  }

  CliPrompt prompt(assume_yes);
  SystemClock clock;
  CliContext context;
  context.data_folder = ResolveDataFolder(data_folder);
  prompt.SetDataFolder(context.data_folder);
  context.prompt = &prompt;
  context.clock = &clock;

  if (i >= argc) {
    if (DisplayAvailable()) return StartWindow(context.data_folder, {});
    return FinishStandardOutput(StartWithoutCommand(context));
  }
  const Command* command = FindCommand(argv[i]);
  if (command == nullptr) {
    // A file given instead of a command goes to the window (a backup or an
    // archive to restore).
    const std::string word = argv[i];
    if (i + 1 == argc && word.find('.') != std::string::npos && DisplayAvailable()) {
      return StartWindow(context.data_folder, {word});
    }
    return UsageError("unknown command " + word);
  }
  std::vector<std::string> words(argv + i + 1, argv + argc);
  for (const std::string& w : words) {
    if (w == "--help") {
      PrintCommandHelp(*command);
      return kExitDone;
    }
  }
  Arguments args(std::move(words));
  int status = kExitFailed;
  try {
    status = command->run(context, args);
  } catch (const std::bad_alloc&) {
    // As the window ends: the bare text, no title.
    std::fflush(stdout);
    std::fputs("out of memory\n", stderr);
    return kExitFailed;
  }
  return FinishStandardOutput(status);
}

}  // namespace quillora
