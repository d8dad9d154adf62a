// The export command: the entries of a range that pass the saved entry
// filter, written as CSV or XML exactly as the window's export commands write
// them.
#include <string>
#include <vector>

#include "app/cli/cli_commands.h"
#include "app/cli/period_options.h"
#include "interchange/export_command.h"
#include "periods/entry_filter.h"
#include "platform/file.h"
#include "store/string_table.h"

namespace quillora {
namespace {

int Export(CliContext& context, Arguments& args) {
  const PeriodOptions options = TakePeriodOptions(args, true);
  std::vector<std::string> words = args.Positionals();
  if (!args.error().empty()) return UsageError(args.error());
  if (words.empty() || (words[0] != "csv" && words[0] != "xml")) {
    return UsageError("export needs csv or xml, then the file");
  }
  const ExportFormat format = words[0] == "csv" ? ExportFormat::kCsv : ExportFormat::kXml;
  words.erase(words.begin());
  if (words.size() != 1) return UsageError("export takes one file");
  if (const int status = CheckPathArgument(words[0])) return status;

  if (!context.OpenData()) return kExitFailed;
  EntryStore entries(*context.data.volume);
  if (!entries.Open()) return context.Fail(LoadString(kIdsUnableToLoadDatabase));
  EntryFilter filter;
  if (!LoadFilter(*context.data.registry, &filter)) {
    return context.Fail(kFilterNotRead);
  }
  const PeriodRange range =
      ChosenPeriod(options, context.data.settings, *context.clock)->GetRange();
  ExportSources sources{entries, context.data.settings, context.locale(),
                        FileSystem::Posix()};
  // The file is what the save chooser answers; an existing one is replaced
  // only after the chooser's question.
  context.prompt->SetFile(words[0]);
  const ExportOutcome outcome = RunExportCommand(
      format, MakeExportCriteria(range, filter), sources, *context.prompt);
  return outcome == ExportOutcome::kExported ? kExitDone : kExitFailed;
}

}  // namespace

const Command kExportCommand = {
    "export", "export csv|xml [PERIOD | --from DATE --to DATE] FILE",
    "write the entries of a range as CSV or XML",
    "Writes the entries of the range that pass the saved entry filter (see\n"
    "'quillora filter show') as the window's CSV and XML exports do.\n"
    "  PERIOD       --day [DATE], --week [DATE], --month [DATE] or --custom FROM TO;\n"
    "               DATE defaults to today; without a range the period of the\n"
    "               \"View\" setting at today\n"
    "  --from DATE --to DATE   DATE 00:00:00 to DATE 23:59:59\n"
    "An entry dated exactly at the range's first instant (midnight) is not\n"
    "written. CSV notes have their line breaks replaced as \"BreakSub\" says; the\n"
    "XML declaration names the \"Encoding\" setting's choice. An existing FILE is\n"
    "replaced only after the question (--yes answers it).",
    Export};

}  // namespace quillora
