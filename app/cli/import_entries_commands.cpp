// import-entries: the time entries of another tracker's file (a Timewarrior
// export or a CSV export) added to the store through the editor's rules
// (docs/import.md).
#include <unistd.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "app/cli/cli_commands.h"
#include "interchange/csv_entries.h"
#include "interchange/entry_import.h"
#include "interchange/timewarrior_export.h"
#include "platform/text.h"

namespace quillora {
namespace {

constexpr char kUsage[] =
    "usage: quillora import-entries timewarrior FILE|- [--client NAME] [--task NAME] "
    "[--dry-run]\n"
    "       quillora import-entries csv FILE [--map COLUMN=FIELD]... [--date-format "
    "FORMAT] "
    "[--client NAME] [--task NAME] [--dry-run]";

// Reads standard input up to one byte more than the limit.
ImportFileRead ReadStandardInput(std::string* bytes) {
  bytes->clear();
  char buf[1 << 16];
  for (;;) {
    const ssize_t n = read(STDIN_FILENO, buf, sizeof buf);
    if (n == 0) return ImportFileRead::kRead;
    if (n < 0) return ImportFileRead::kUnreadable;
    bytes->append(buf, static_cast<std::size_t>(n));
    if (bytes->size() > kImportFileLimit) {
      bytes->clear();
      return ImportFileRead::kTooLarge;
    }
  }
}

void PrintLine(const std::u16string& line) { std::printf("%s\n", ToUtf8(line).c_str()); }

int RunImportEntries(CliContext& context, Arguments& args) {
  ImportDefaults defaults;
  if (auto client = args.Value("--client")) defaults.client = FromUtf8(*client);
  if (auto task = args.Value("--task")) defaults.task = FromUtf8(*task);
  const bool dry_run = args.Flag("--dry-run");
  CsvImportOptions csv;
  for (const std::string& map : args.AllValues("--map")) {
    const auto mapping = ParseColumnMapping(FromUtf8(map));
    if (!mapping) {
      return UsageError("--map takes COLUMN=FIELD, FIELD one of " +
                        ToUtf8(EntryColumnNames()));
    }
    csv.mappings.push_back(*mapping);
  }
  const auto date_format = args.Value("--date-format");
  if (date_format) {
    const auto format = CsvDateFormatNamed(FromUtf8(*date_format));
    if (!format) {
      return UsageError(
          "--date-format takes YYYY-MM-DD, MM/DD/YYYY, DD/MM/YYYY or DD.MM.YYYY");
    }
    csv.date_format = *format;
  }
  const std::vector<std::string> words = args.Positionals();
  if (!args.error().empty()) return UsageError(args.error());
  if (words.size() != 2 || words[1].empty()) return UsageError(kUsage);
  const bool timewarrior = words[0] == "timewarrior";
  if (!timewarrior && words[0] != "csv") return UsageError(kUsage);
  if (timewarrior && (!csv.mappings.empty() || date_format)) {
    return UsageError("--map and --date-format belong to csv");
  }
  const std::string& path = words[1];
  if (!timewarrior && path == "-")
    return UsageError("csv reads a FILE, not standard input");
  if (!context.OpenCatalogue()) return kExitFailed;

  std::string bytes;
  const ImportFileRead read = path == "-"
                                  ? ReadStandardInput(&bytes)
                                  : ReadImportFile(FileSystem::Posix(), path, &bytes);
  const std::u16string shown_path = path == "-" ? u"-" : FromUtf8(path);
  if (read != ImportFileRead::kRead) {
    return context.Fail(ImportFileReadMessage(read, shown_path));
  }
  csv.defaults = defaults;
  const ImportedFile file =
      timewarrior ? ReadTimewarriorExport(bytes, context.data.settings, defaults)
                  : ReadCsvEntries(bytes, csv, context.data.settings,
                                   context.locale().AnsiCodePage())
                        .file;
  bytes = std::string();
  if (!file.error.empty()) return context.Fail(MalformedImportMessage(file, shown_path));

  auto entries = std::make_unique<EntryStore>(*context.data.volume);
  if (!entries->Open()) return context.Fail(u"Unable to load database.");
  const ImportSummary summary = ImportEntries(
      {*entries, *context.data.catalogue, context.locale(), *context.prompt}, file.rows,
      dry_run);
  if (dry_run) {
    // What would be stored, one entry a line, before the summary.
    for (const std::size_t index : summary.would_import) {
      std::u16string line;
      for (const std::u16string& cell : ImportPreviewCells(file.rows[index].entry)) {
        if (!line.empty()) line.push_back(u'\t');
        line += cell;
      }
      PrintLine(line);
    }
  }
  for (const std::u16string& line : ImportSummaryLines(summary, dry_run)) PrintLine(line);
  if (summary.failed) return kExitFailed;
  return summary.skipped == 0 ? kExitDone : kExitFailed;
}

}  // namespace

const Command kImportEntriesCommand = {
    "import-entries",
    "import-entries timewarrior FILE|- [--client NAME] [--task NAME] [--dry-run]\n"
    "       quillora import-entries csv FILE [--map COLUMN=FIELD]... [--date-format "
    "FORMAT]\n"
    "                [--client NAME] [--task NAME] [--dry-run]",
    "import time entries from Timewarrior or another tracker's CSV export",
    "timewarrior reads what 'timew export' prints (FILE, or - for standard input):\n"
    "    times are UTC and become local time; tags client:NAME, project:NAME,\n"
    "    phase:NAME and task:NAME fill those fields, the other tags the task (or\n"
    "    Custom 1 when there is a task: tag); the annotation becomes the note.\n"
    "csv reads a CSV export with a header row (comma or semicolon, UTF-8 or UTF-16)\n"
    "    of Toggl Track, Clockify, Kimai, solidtime and the like; columns are\n"
    "    recognised by their headers (docs/import.md).\n"
    "--map COLUMN=FIELD    the column COLUMN fills FIELD: date, start, endDate, end,\n"
    "                      duration, client, project, phase, task, description, note,\n"
    "                      billable, paid, billTo, rate, currency, tags, custom1,\n"
    "                      custom2, custom3, or ignore\n"
    "--date-format FORMAT  YYYY-MM-DD (default), MM/DD/YYYY, DD/MM/YYYY or DD.MM.YYYY\n"
    "--client NAME, --task NAME  for entries that have none\n"
    "--dry-run             print the entries that would be imported; write nothing\n"
    "An entry equal to one stored (same start, client, task and duration) is not\n"
    "added again. Prints \"Imported N entries; M already present; K skipped.\" and a\n"
    "line per skipped row. Exit 0 when nothing was skipped, 1 when something was (the\n"
    "rest is imported) or the file was refused, 2 for wrong usage. Files up to 64 MB.",
    RunImportEntries};

}  // namespace quillora
