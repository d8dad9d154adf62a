// Find and replace, mark all as paid, delete data: the bulk edits with their
// questions, answered by --yes or on the terminal.
#include <cctype>
#include <memory>
#include <string>
#include <vector>

#include "app/cli/cli_commands.h"
#include "app/cli/period_options.h"
#include "periods/entry_filter.h"
#include "platform/text.h"
#include "store/name_text.h"
#include "store/string_table.h"
#include "timekeeping/bulk_edits.h"

namespace quillora {
namespace {

// Letters and digits only, lower case: "Bill To", "bill-to" and "billto"
// read the same.
std::string Folded(const std::string& text) {
  std::string out;
  for (unsigned char c : text) {
    if (std::isalnum(c)) out += static_cast<char>(std::tolower(c));
  }
  return out;
}

// A type by its name in the "Type:" list (or its index 0..9).
bool ParseReplaceType(const std::string& text, ReplaceType* type) {
  for (int i = 0; i < kReplaceTypeCount; ++i) {
    if (text == std::to_string(i) ||
        Folded(text) == Folded(ToUtf8(ReplaceTypeName(ReplaceType(i))))) {
      *type = ReplaceType(i);
      return true;
    }
  }
  return false;
}

int OpenStores(CliContext& context, std::unique_ptr<EntryStore>* entries) {
  if (!context.OpenCatalogue()) return kExitFailed;
  *entries = std::make_unique<EntryStore>(*context.data.volume);
  if (!(*entries)->Open()) return context.Fail(LoadString(kIdsUnableToLoadDatabase));
  return kExitDone;
}

int NoPositionals(Arguments& args) {
  const auto words = args.Positionals();
  if (!args.error().empty()) return UsageError(args.error());
  if (!words.empty()) return UsageError("unexpected argument " + words[0]);
  return kExitDone;
}

int ReplaceRun(CliContext& context, Arguments& args) {
  const auto type_text = args.Value("--type");
  const auto find = args.Value("--find");
  const auto with = args.Value("--with");
  if (const int status = NoPositionals(args)) return status;
  if (!type_text || !find || !with)
    return UsageError("replace needs --type, --find and --with");
  ReplaceType type;
  if (!ParseReplaceType(*type_text, &type))
    return UsageError("unknown type " + *type_text);
  const std::u16string find_text = FromUtf8(*find);
  const std::u16string replacement = FromUtf8(*with);
  if (replacement.size() > kReplaceTextLimit) {
    return UsageError("--with takes at most 127 characters");
  }
  // The replacement becomes a name in every entry that had the old one.
  if (HoldsControlCharacter(TextField::kName, replacement)) {
    return context.Fail(ControlCharacterMessage(TextField::kName));
  }
  std::unique_ptr<EntryStore> entries;
  if (const int status = OpenStores(context, &entries)) return status;

  // The dialog offers the values of the catalogue only: a text that is not
  // among them is as if nothing were chosen.
  const std::vector<std::u16string> choices =
      FindChoices(*context.data.catalogue, context.locale(), type);
  int index = 0;
  for (std::size_t i = 1; i < choices.size() && index == 0; ++i) {
    if (context.locale().Equal(choices[i], find_text)) index = static_cast<int>(i);
  }
  if (!ConfirmFindAndReplace(*context.prompt, index, replacement)) return kExitFailed;
  const ReplaceCounts counts =
      FindAndReplace(*entries, *context.data.catalogue, context.locale(), *context.prompt,
                     type, find_text, replacement);
  if (counts.entries_failed > 0) {
    return context.Fail(WidenAscii(std::to_string(counts.entries_failed)) +
                        u" time entries could not be changed.");
  }
  return kExitDone;
}

int MarkPaidRun(CliContext& context, Arguments& args) {
  if (!context.OpenData()) return kExitFailed;
  const PeriodOptions options = TakePeriodOptions(args, false);
  if (const int status = NoPositionals(args)) return status;
  // Marked paid is what the view of the period lists.
  const PeriodRange view_range =
      ChosenPeriod(options, context.data.settings, *context.clock)->GetViewRange();
  FileTime start, end;
  if (!RangeToFileTimes(view_range, &start, &end)) {
    return UsageError("the period is outside the calendar");
  }
  std::unique_ptr<EntryStore> entries;
  if (const int status = OpenStores(context, &entries)) return status;
  // The filter of the view: the saved criteria over the days of the period.
  EntryFilter filter;
  LoadFilter(*context.data.registry, &filter);
  filter.range_start = DateOnly(view_range.start);
  filter.range_end = DateOnly(view_range.end);
  const Locale& locale = context.locale();
  const BulkOutcome outcome = MarkAllPaid(
      *entries, *context.prompt, start, end,
      [&](const TimeEntry& e) { return Matches(filter, e, locale); }, nullptr);
  if (outcome == BulkOutcome::kFailed) {
    return context.Fail(u"Some time entries could not be marked paid.");
  }
  return outcome == BulkOutcome::kDone ? kExitDone : kExitFailed;
}

int DeleteDataRun(CliContext& context, Arguments& args) {
  const auto from = args.Value("--from");
  const auto to = args.Value("--to");
  const auto clients = args.Value("--clients");
  if (const int status = NoPositionals(args)) return status;
  DeleteCriteria criteria;
  if (clients) {
    if (from || to) return UsageError("give either --from and --to or --clients");
    if (!SplitClientNames(*clients, &criteria.clients)) {
      return UsageError("--clients takes names separated by commas");
    }
    criteria.by_clients = true;
  } else {
    if (!from || !to)
      return UsageError("delete-data needs --from and --to, or --clients");
    const auto from_date = ParseCommandLineDate(*from);
    const auto to_date = ParseCommandLineDate(*to);
    if (!from_date || !to_date)
      return UsageError("--from and --to take dates YYYY-MM-DD");
    if (!RangeToFileTimes(WholeDays(*from_date, *to_date), &criteria.start,
                          &criteria.end)) {
      return UsageError("the dates are outside the calendar");
    }
  }
  std::unique_ptr<EntryStore> entries;
  if (const int status = OpenStores(context, &entries)) return status;
  CatalogueService* service = context.OpenCatalogueService();
  if (!service) return kExitFailed;
  for (const std::u16string& name : criteria.clients) {
    if (!service->TakeClient(name)) return kExitFailed;
  }
  const BulkOutcome outcome = DeleteDataByCriteria(*entries, context.locale(),
                                                   *context.prompt, criteria, nullptr);
  if (outcome == BulkOutcome::kFailed) {
    return context.Fail(u"Some time entries could not be deleted.");
  }
  return outcome == BulkOutcome::kDone ? kExitDone : kExitFailed;
}

}  // namespace

const Command kReplaceCommand = {
    "replace", "replace --type TYPE --find TEXT --with TEXT",
    "rename a catalogue value and every entry that carries it (asks first)",
    "TYPE: Client, Project, Phase, Task, Currency, \"Bill To\", \"Custom 1\", \"Custom "
    "2\",\n"
    "\"Custom 3\" or Project-Task. TEXT to find must be one of the catalogue's values "
    "of\n"
    "that type; it is compared whole, letter case counting.",
    ReplaceRun};
const Command kMarkPaidCommand = {
    "mark-paid", "mark-paid [PERIOD]",
    "mark paid the entries of a period that pass the filter (asks first)",
    "PERIOD: --day|--week|--month [DATE] or --custom FROM TO (default: the period of "
    "the\n"
    "View setting at today). The saved entry filter applies.",
    MarkPaidRun};
const Command kDeleteDataCommand = {
    "delete-data", "delete-data (--from DATE --to DATE | --clients NAME,...)",
    "delete the entries of whole days or of clients (asks first)",
    "The catalogue is not changed: deleting the entries of a client keeps the client.",
    DeleteDataRun};

}  // namespace quillora
