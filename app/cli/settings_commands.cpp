// The settings command: show and set the values under the program's key.
#include <cstdio>

#include "app/cli/cli_commands.h"
#include "platform/text.h"
#include "store/settings_values.h"

namespace quillora {
namespace {

int RunSettings(CliContext& context, Arguments& args) {
  const auto words = args.Positionals();
  if (!args.error().empty()) return UsageError(args.error());
  if (words.empty()) return UsageError("settings needs show or set");
  if (words[0] == "show") {
    if (words.size() != 1) return UsageError("settings show takes no arguments");
    if (!context.OpenData()) return kExitFailed;
    for (const std::string& line : ShowSettings(*context.data.registry)) {
      std::printf("%s\n", line.c_str());
    }
    return kExitDone;
  }
  if (words[0] == "set") {
    if (words.size() != 3) return UsageError("settings set needs NAME and VALUE");
    if (!context.OpenData()) return kExitFailed;
    std::string message;
    if (!SetSettingFromText(*context.data.registry, words[1], words[2], &message)) {
      return context.Fail(FromUtf8(message));
    }
    std::printf("%s\n", message.c_str());
    return kExitDone;
  }
  return UsageError("unknown settings command " + words[0]);
}

}  // namespace

const Command kSettingsCommand = {
    "settings", "settings show | set NAME VALUE", "show or change the preferences",
    "settings show prints NAME=VALUE for every value the program reads, defaults\n"
    "included. settings set takes decimal or 0x-hex numbers, text for strings and\n"
    "hex bytes for binary values (ViewCust, PeriodStart, PeriodEnd, ColOrder).\n"
    "Names are the registry value names: View, DefNewStyles, MinTime, DefCurr, ...",
    RunSettings};

}  // namespace quillora
