// Commands over the entries of a period: list and summary. Both take the
// entries that the view of that period lists — the period's entries that
// pass the saved entry filter, in store order — from the one walk of
// periods/period_entries.h.
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "app/cli/cli_commands.h"
#include "app/cli/period_options.h"
#include "interchange/summary_csv.h"
#include "periods/entry_filter.h"
#include "periods/entry_list_item.h"
#include "periods/period_entries.h"
#include "periods/quick_summary.h"
#include "platform/file.h"
#include "platform/text.h"
#include "store/string_table.h"

namespace quillora {
namespace {

// What a period command walks: the chosen period, the saved filter and the
// open entry store.
struct PeriodEntries {
  std::unique_ptr<Period> period;
  EntryFilter filter;
  std::unique_ptr<EntryStore> store;
};

// Answers the exit status of a failure (its message shown), or kExitDone.
int OpenPeriodEntries(CliContext& context, const PeriodOptions& options,
                      PeriodEntries* entries) {
  if (!context.OpenData()) return kExitFailed;
  entries->store = std::make_unique<EntryStore>(*context.data.volume);
  if (!entries->store->Open()) return context.Fail(LoadString(kIdsUnableToLoadDatabase));
  // The filter as the window loads it at start.
  if (!LoadFilter(*context.data.registry, &entries->filter)) {
    return context.Fail(kFilterNotRead);
  }
  entries->period = ChosenPeriod(options, context.data.settings, *context.clock);
  return kExitDone;
}

int Walk(CliContext& context, PeriodEntries& entries, const PeriodEntryVisitor& visit) {
  if (!WalkPeriodEntries(*entries.store, entries.period->GetViewRange(), entries.filter,
                         context.locale(), visit)) {
    return context.Fail(LoadString(kIdsUnableToLoadDatabase));
  }
  return kExitDone;
}

void Print(const std::string& text) { std::fwrite(text.data(), 1, text.size(), stdout); }

int RunList(CliContext& context, Arguments& args) {
  const bool ids_only = args.Flag("--ids");
  const PeriodOptions options = TakePeriodOptions(args, false);
  const auto extra = args.Positionals();
  if (!args.error().empty()) return UsageError(args.error());
  if (!extra.empty()) return UsageError("list takes no arguments: " + extra[0]);

  PeriodEntries entries;
  if (const int status = OpenPeriodEntries(context, options, &entries)) return status;
  // The items are drawn as the view of the chosen kind draws them (the day
  // view leaves the date out), whatever kind the window shows.
  const auto view = static_cast<std::uint32_t>(entries.period->Kind());
  const DisplayBlock& display = context.data.settings.display;
  std::string out;
  const int status = Walk(context, entries, [&](const TimeEntry& entry) {
    out += std::to_string(entry.recordId);
    if (ids_only) {
      out += '\n';
      return true;
    }
    for (const std::u16string& line :
         EntryListItemLines(entry, view, display, context.locale())) {
      out += '\t';
      out += ToUtf8(line);
      out += '\n';
    }
    return true;
  });
  if (status != kExitDone) return status;
  Print(out);
  return kExitDone;
}

int RunSummary(CliContext& context, Arguments& args) {
  const std::optional<std::string> csv = args.Value("--csv");
  const PeriodOptions options = TakePeriodOptions(args, false);
  const auto extra = args.Positionals();
  if (!args.error().empty()) return UsageError(args.error());
  if (!extra.empty()) return UsageError("summary takes no arguments: " + extra[0]);
  if (csv && csv->empty()) return UsageError("--csv needs a file");

  PeriodEntries entries;
  if (const int status = OpenPeriodEntries(context, options, &entries)) return status;
  // One pass: each listed entry is added as the walk reads it, rather than
  // read a second time by its record id as the dialog does; the sums are
  // the same.
  QuickSummarySums sums(context.data.settings, context.locale());
  std::size_t items = 0;
  const int status = Walk(context, entries, [&](const TimeEntry& entry) {
    ++items;
    sums.Add(entry);
    return true;
  });
  if (status != kExitDone) return status;
  const std::vector<QuickSummaryRow> rows = BuildQuickSummaryRows(
      SummaryPeriodOf(*entries.period), items, sums, context.locale());

  std::string out;
  for (const QuickSummaryRow& row : rows) {
    out += ToUtf8(row[0]) + '\t' + ToUtf8(row[1]) + '\t' + ToUtf8(row[2]) + '\n';
  }
  Print(out);
  std::fflush(stdout);
  if (!csv) return kExitDone;

  context.prompt->SetFile(*csv);
  switch (ExportQuickSummaryCsv(rows, *context.prompt, FileSystem::Posix(),
                                context.locale().AnsiCodePage())) {
    case SummaryCsvResult::kWritten:
      return kExitDone;
    case SummaryCsvResult::kCancelled:
      return kExitFailed;
    case SummaryCsvResult::kNotCreated:
    case SummaryCsvResult::kWriteFailed:
      break;
  }
  // The dialog shows no message here; a script still learns why it failed.
  std::fprintf(stderr, "quillora: %s could not be written\n", csv->c_str());
  const std::string reason = DescribeLastFileFailure();
  ClearLastFileFailure();
  if (!reason.empty()) std::fprintf(stderr, "quillora: %s\n", reason.c_str());
  return kExitFailed;
}

}  // namespace

const Command kListCommand = {
    "list", "list [PERIOD] [--ids]", "list the entries of a period",
    "Prints the entries of the period that pass the saved entry filter, in\n"
    "store order, as the period's view draws them: the record id, a TAB and\n"
    "the first line; each further line behind a TAB. --ids: record ids only.\n"
    "PERIOD: --day [DATE] | --week [DATE] | --month [DATE] | --custom FROM TO\n"
    "(DATE defaults to today; none given: the window's period kind at today).",
    RunList};

const Command kSummaryCommand = {
    "summary", "summary [PERIOD] [--csv FILE]", "the quick summary of a period",
    "Prints the quick summary of the entries that list shows: one row a line,\n"
    "its three cells separated by TABs. --csv FILE also writes the summary CSV\n"
    "file (an existing FILE is replaced only after the question).\n"
    "PERIOD: --day [DATE] | --week [DATE] | --month [DATE] | --custom FROM TO\n"
    "(DATE defaults to today; none given: the window's period kind at today).",
    RunSummary};

}  // namespace quillora
