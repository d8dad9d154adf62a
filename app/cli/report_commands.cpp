// The report commands: `report` writes an HTML report of a saved definition,
// `report-def` lists, shows, saves, renames and deletes saved definitions and
// names the default one.
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "app/cli/cli_commands.h"
#include "app/cli/period_options.h"
#include "periods/entry_filter.h"
#include "periods/periods.h"
#include "platform/file.h"
#include "platform/text.h"
#include "reports/report_definition.h"
#include "reports/saved_reports.h"
#include "store/name_text.h"
#include "reports/report_request.h"
#include "store/string_table.h"

namespace quillora {
namespace {

// --- Shared ---

int ShowLookupFailure(CliContext& context, SavedReportLookup lookup) {
  switch (lookup) {
    case SavedReportLookup::kNoSavedReport:
      return context.Fail(LoadString(kIdsNoSavedReport));
    case SavedReportLookup::kNotFound:
      return context.Fail(LoadString(kIdsNoSavedReportNamed));
    case SavedReportLookup::kDamaged:
      return context.Fail(LoadString(kIdsSavedReportDamaged));
    case SavedReportLookup::kFound:
      break;
  }
  return kExitDone;
}

// Opens the saved reports and reads the definition named `name`.
int LoadNamed(CliContext& context, const std::u16string& name, CurrentReport* report,
              SavedReportLookup* lookup = nullptr) {
  AuxStore aux(*context.data.volume);
  if (!OpenSavedReports(aux)) return context.Fail(LoadString(kIdsUnableToLoadDatabase));
  const SavedReportLookup found =
      LoadSavedReport(aux, name, &report->definition, &report->record_id);
  if (lookup != nullptr) {
    *lookup = found;
    return kExitDone;
  }
  if (found != SavedReportLookup::kFound) return ShowLookupFailure(context, found);
  report->name = name;
  return kExitDone;
}

int ShowChangeFailure(CliContext& context, SavedReportChange change) {
  switch (change) {
    case SavedReportChange::kDone:
      return kExitDone;
    case SavedReportChange::kDeclined:
      return kExitFailed;
    case SavedReportChange::kNoSavedReport:
      return context.Fail(LoadString(kIdsNoSavedReport));
    case SavedReportChange::kNotFound:
      return context.Fail(LoadString(kIdsNoSavedReportNamed));
    case SavedReportChange::kFailed:
      return context.Fail(LoadString(kIdsSavedReportsNotChanged));
  }
  return kExitFailed;
}

// A name typed for a report: not blank, at most 64 characters.
int CheckReportName(CliContext& context, const std::u16string& name) {
  if (name.empty()) return context.Fail(LoadString(kIdsBlankName));
  if (name.size() > kReportNameChars)
    return context.Fail(LoadString(kIdsReportNameTooLong));
  return kExitDone;
}

int SaveDefaultReport(CliContext& context, const std::u16string& before) {
  if (context.data.settings.default_report == before) return kExitDone;
  if (!SaveSettings(*context.data.registry, context.data.settings)) {
    return context.Fail(u"The settings could not be saved.");
  }
  return kExitDone;
}

// --- report ---

int RunReport(CliContext& context, Arguments& args) {
  const PeriodOptions options = TakePeriodOptions(args, true);
  const auto words = args.Positionals();
  if (!args.error().empty()) return UsageError(args.error());
  if (words.empty() || words.size() > 2) return UsageError("report takes [NAME] FILE");
  const std::string& path = words.back();
  if (const int status = CheckPathArgument(path)) return status;

  if (!context.OpenData()) return kExitFailed;
  const Settings& settings = context.data.settings;
  const std::u16string name =
      words.size() == 2 ? FromUtf8(words[0]) : settings.default_report;
  CurrentReport report;
  if (name.empty()) {
    // No name and no default report: say so in the window's words when
    // there is nothing saved at all.
    AuxStore aux(*context.data.volume);
    if (OpenSavedReports(aux) && ListSavedReports(aux).empty()) {
      return context.Fail(LoadString(kIdsNoSavedReport));
    }
    return UsageError("report needs a NAME: no default report is set");
  }
  if (const int status = LoadNamed(context, name, &report)) return status;

  EntryStore entries(*context.data.volume);
  if (!entries.Open()) return context.Fail(LoadString(kIdsUnableToLoadDatabase));
  // The saved entry filter, as the window's view has it.
  EntryFilter filter;
  LoadFilter(*context.data.registry, &filter);
  const HtmlReportRequest request = MakeReportRequest(
      report.definition, ChosenPeriod(options, settings, *context.clock)->GetRange(),
      filter, context.clock->LocalNow());
  context.prompt->SetFile(path);
  return RunReportCommand(entries, FileSystem::Posix(), *context.prompt, request,
                          settings, context.locale())
             ? kExitDone
             : kExitFailed;
}

// --- report-def ---

int List(CliContext& context) {
  AuxStore aux(*context.data.volume);
  if (!OpenSavedReports(aux)) return context.Fail(LoadString(kIdsUnableToLoadDatabase));
  const auto reports = ListSavedReports(aux);
  if (reports.empty()) {
    context.prompt->ShowMessage(kAppTitle, LoadString(kIdsNoSavedReport),
                                MessageIcon::kInformation);
    return kExitDone;
  }
  for (const SavedReportName& r : reports) std::printf("%s\n", ToUtf8(r.name).c_str());
  return kExitDone;
}

// The editor's rows as the list shows them: headings flush left, items
// indented, a check item behind its box.
void PrintEditor(const ReportEditor& editor) {
  for (const ReportEditorItem& item : editor.items()) {
    std::string label = ToUtf8(item.label);
    switch (item.kind) {
      case ReportItemKind::kHeading:
        std::printf("%s\n", label.c_str());
        break;
      case ReportItemKind::kText:
      case ReportItemKind::kChoice: {
        if (label.empty() || label.back() != ' ') label += ' ';
        const std::u16string& value =
            item.kind == ReportItemKind::kText ? item.text : item.choices[item.choice];
        std::printf("  %s%s\n", label.c_str(), ToUtf8(value).c_str());
        break;
      }
      case ReportItemKind::kCheck:
      case ReportItemKind::kDurationCheck:
        std::printf("  [%c] %s\n", item.checked ? 'x' : ' ', label.c_str());
        break;
    }
  }
}

int Show(CliContext& context, const std::u16string& name, bool raw) {
  CurrentReport report;
  if (const int status = LoadNamed(context, name, &report)) return status;
  if (!raw) {
    ReportEditor editor;
    editor.Load(report.definition);
    PrintEditor(editor);
    return kExitDone;
  }
  const auto block = SerializeReportDefinition(report.definition);
  for (std::size_t i = 0; i < block.size(); ++i) {
    std::printf("%02x%s", block[i], (i % 32 == 31 || i + 1 == block.size()) ? "\n" : "");
  }
  return kExitDone;
}

int Delete(CliContext& context, const std::u16string& name) {
  const std::u16string before = context.data.settings.default_report;
  const SavedReportChange change = DeleteSavedReports(
      *context.data.volume, *context.prompt, name, &context.data.settings);
  if (const int status = ShowChangeFailure(context, change)) return status;
  return SaveDefaultReport(context, before);
}

int Rename(CliContext& context, const std::u16string& old_name,
           const std::u16string& new_name) {
  if (const int status = CheckReportName(context, new_name)) return status;
  const std::u16string before = context.data.settings.default_report;
  const SavedReportChange change = RenameSavedReports(
      *context.data.volume, *context.prompt, old_name, new_name, &context.data.settings);
  if (const int status = ShowChangeFailure(context, change)) return status;
  return SaveDefaultReport(context, before);
}

// report-def default [NAME | --clear]
int Default(CliContext& context, const std::vector<std::string>& words, bool clear) {
  if (words.size() > 2 || (clear && words.size() > 1)) {
    return UsageError("report-def default takes NAME or --clear");
  }
  if (!context.OpenData()) return kExitFailed;
  const std::u16string before = context.data.settings.default_report;
  if (clear) {
    context.data.settings.default_report.clear();
  } else if (words.size() == 2) {
    const std::u16string name = FromUtf8(words[1]);
    CurrentReport report;
    if (const int status = LoadNamed(context, name, &report)) return status;
    if (name.size() >= kDefaultReportChars) {
      return context.Fail(u"The default report's name holds at most 63 characters.");
    }
    context.data.settings.default_report = name;
  } else {
    std::printf("%s\n", ToUtf8(before).c_str());
    return kExitDone;
  }
  return SaveDefaultReport(context, before);
}

// The options of `report-def save`, taken before anything is opened.
struct SaveOptions {
  std::optional<std::string> title;
  std::optional<std::string> date_selection;
  std::optional<std::string> type;
  std::optional<std::string> group_by;
  std::optional<std::string> columns;
  std::vector<std::string> hide;
  std::vector<std::string> show;
};

template <typename Texts>
int IndexOf(const Texts& texts, const std::u16string& text) {
  for (int i = 0; i < static_cast<int>(texts.size()); ++i) {
    if (text == texts[i]) return i;
  }
  return -1;
}

int FieldOfLabel(const std::u16string& label) {
  for (int i = 0; i < kReportFieldCount; ++i) {
    if (label == kReportFields[i].label) return i;
  }
  return -1;
}

std::vector<std::u16string> SplitColumns(const std::string& text) {
  std::vector<std::u16string> labels;
  std::size_t begin = 0;
  while (true) {
    const std::size_t comma = text.find(',', begin);
    labels.push_back(FromUtf8(text.substr(begin, comma - begin)));
    if (comma == std::string::npos) break;
    begin = comma + 1;
  }
  return labels;
}

// Applies the options to the editor as a user would in the list; a usage
// error is returned as its message.
std::string ApplySaveOptions(const SaveOptions& o, ReportEditor* editor) {
  if (o.date_selection) {
    const int i = IndexOf(kDateSelectionChoices, FromUtf8(*o.date_selection));
    if (i < 0) return "--date-selection takes None, Range or \"Start Date Only\"";
    editor->SetChoice(kRowDateSelection, i);
  }
  if (o.type) {
    const int i = IndexOf(kDetailTypeChoices, FromUtf8(*o.type));
    if (i < 0) return "--type takes \"Group By Field\" or Tabular";
    editor->SetChoice(kRowType, i);
  }
  if (o.group_by) {
    std::vector<std::u16string> labels;
    for (const GroupByChoice& c : kGroupByChoices) labels.push_back(c.label);
    const int i = IndexOf(labels, FromUtf8(*o.group_by));
    if (i < 0) {
      return "--group-by takes Client, Project, Phase, Task, Currency, \"Bill To\", "
             "\"Custom 1\", \"Custom 2\", \"Custom 3\" or Project-Task";
    }
    if (!editor->SetChoice(kRowGroupBy, i))
      return "--group-by needs the type Group By Field";
  }
  if (o.columns) {
    const auto labels = SplitColumns(*o.columns);
    std::vector<int> fields;
    for (const std::u16string& label : labels) {
      const int field = FieldOfLabel(label);
      if (field < 0) return "--columns: no field is labelled " + ToUtf8(label);
      for (int f : fields) {
        if (f == field) return "--columns names " + ToUtf8(label) + " twice";
      }
      fields.push_back(field);
    }
    for (std::size_t k = 0; k < fields.size(); ++k) {
      const int target = kRowFirstField + static_cast<int>(k);
      editor->MoveFieldRow(editor->RowOfField(fields[k]), target);
      editor->SetChecked(target, true);
    }
    for (int k = static_cast<int>(fields.size()); k < kReportFieldCount; ++k) {
      editor->SetChecked(kRowFirstField + k, false);
    }
  }
  for (const auto& [items, checked] :
       {std::pair{&o.hide, false}, std::pair{&o.show, true}}) {
    for (const std::string& item : *items) {
      const int row = editor->FindRow(FromUtf8(item));
      const ReportItemKind kind =
          row < 0 ? ReportItemKind::kHeading : editor->item(row).kind;
      if (kind != ReportItemKind::kCheck && kind != ReportItemKind::kDurationCheck) {
        return "no item to show or hide is labelled " + item;
      }
      if (!editor->SetChecked(row, checked))
        return item + " needs the type Group By Field";
    }
  }
  for (const std::string& item : o.hide) {
    for (const std::string& shown : o.show) {
      if (item == shown) return item + " is both hidden and shown";
    }
  }
  return {};
}

int Save(CliContext& context, Arguments& args) {
  SaveOptions o;
  o.title = args.Value("--title");
  o.date_selection = args.Value("--date-selection");
  o.type = args.Value("--type");
  o.group_by = args.Value("--group-by");
  o.columns = args.Value("--columns");
  o.hide = args.AllValues("--hide");
  o.show = args.AllValues("--show");
  const auto words = args.Positionals();
  if (!args.error().empty()) return UsageError(args.error());
  if (words.size() != 2) return UsageError("report-def save takes one NAME");
  const std::u16string name = FromUtf8(words[1]);

  if (!context.OpenData()) return kExitFailed;
  if (const int status = CheckReportName(context, name)) return status;
  if (o.title && FromUtf8(*o.title).size() > kReportTitleChars) {
    return context.Fail(LoadString(kIdsReportTitleTooLong));
  }
  if (o.title && HoldsControlCharacter(TextField::kTitle, FromUtf8(*o.title))) {
    return context.Fail(ControlCharacterMessage(TextField::kTitle));
  }
  if (HoldsControlCharacter(TextField::kName, name)) {
    return context.Fail(ControlCharacterMessage(TextField::kName));
  }

  // The definition of that name, or a new report's; a damaged one is
  // replaced by a new report's definition in its own record.
  CurrentReport report;
  SavedReportLookup lookup = SavedReportLookup::kNotFound;
  if (const int status = LoadNamed(context, name, &report, &lookup)) return status;
  if (lookup == SavedReportLookup::kFound || lookup == SavedReportLookup::kDamaged) {
    report.name = name;
  }
  if (lookup != SavedReportLookup::kFound) report.definition = NewReportDefinition();

  ReportEditor editor;
  editor.Load(report.definition);
  if (o.title) editor.SetText(kRowTitle, FromUtf8(*o.title));
  const std::string error = ApplySaveOptions(o, &editor);
  if (!error.empty()) return UsageError(error);

  switch (SaveReport(*context.data.volume, *context.prompt, name, editor, &report)) {
    case SaveReportResult::kSaved:
      return kExitDone;
    case SaveReportResult::kDeclined:
      return kExitFailed;
    case SaveReportResult::kFailed:
      break;
  }
  return context.Fail(LoadString(kIdsReportNotSaved));
}

int RunReportDef(CliContext& context, Arguments& args) {
  // A look at the words on a copy leaves the options for `save`.
  Arguments probe = args;
  const bool raw = probe.Flag("--raw");
  const bool clear = probe.Flag("--clear");
  const auto first = probe.Positionals();
  if (!first.empty() && first[0] == "save") return Save(context, args);
  if (!probe.error().empty()) return UsageError(probe.error());
  if (first.empty())
    return UsageError("report-def needs list, show, save, delete, rename or default");
  const std::string& verb = first[0];
  const std::size_t n = first.size();
  if ((raw && verb != "show") || (clear && verb != "default")) {
    return UsageError(std::string(raw ? "--raw" : "--clear") + " does not go with " +
                      verb);
  }
  if (verb == "default") return Default(context, first, clear);
  const bool usage_ok = (verb == "list" && n == 1) || (verb == "show" && n == 2) ||
                        (verb == "delete" && n == 2) || (verb == "rename" && n == 3);
  if (!usage_ok) {
    if (verb == "list" || verb == "show" || verb == "delete" || verb == "rename") {
      return UsageError("wrong number of arguments for report-def " + verb);
    }
    return UsageError("unknown report-def command " + verb);
  }
  if (!context.OpenData()) return kExitFailed;
  if (verb == "list") return List(context);
  if (verb == "show") return Show(context, FromUtf8(first[1]), raw);
  if (verb == "delete") return Delete(context, FromUtf8(first[1]));
  return Rename(context, FromUtf8(first[1]), FromUtf8(first[2]));
}

}  // namespace

const Command kReportCommand = {
    "report", "report [NAME] [PERIOD | --from DATE --to DATE] FILE",
    "write an HTML report of a saved report definition",
    "NAME is a saved report (report-def list); without it the default report\n"
    "(report-def default) is used. The entries of the period that pass the saved\n"
    "entry filter are reported. PERIOD is one of\n"
    "  --day [DATE]  --week [DATE]  --month [DATE]  --custom FROM TO\n"
    "(DATE defaults to today; with none, the period of the View setting at today).\n"
    "--from DATE --to DATE reports DATE 00:00:00 to DATE 23:59:59. An existing\n"
    "FILE is replaced only after the question.",
    RunReport};

const Command kReportDefCommand = {
    "report-def", "report-def list | show NAME [--raw] | save NAME [OPTIONS] | ...",
    "list, show, save, rename and delete saved report definitions",
    "  report-def list                 the saved reports, one name a line\n"
    "  report-def show NAME [--raw]    the editor's items; --raw: the 220-byte\n"
    "                                  definition as hex, 32 bytes a line\n"
    "  report-def delete NAME          (asks first)\n"
    "  report-def rename OLD NEW       (asks before replacing a report named NEW)\n"
    "  report-def default [NAME | --clear]   show or set the default report\n"
    "  report-def save NAME [--title TEXT] [--date-selection None|Range|\"Start Date "
    "Only\"]\n"
    "        [--type \"Group By Field\"|Tabular] [--group-by FIELD]\n"
    "        [--columns LABEL,LABEL,...] [--hide ITEM]... [--show ITEM]...\n"
    "      starts from the saved definition of that name (or a new report's) and\n"
    "      saves with the editor's question \"The report already exists. Do you\n"
    "      want to overwrite it?\". --columns gives the shown fields in table order\n"
    "      (\"Entry Date\", \"Client\", ... \"Rate\"); the others follow, not shown.\n"
    "      ITEM is a check item of the editor: \"Group By Title\", \"Group Total\n"
    "      Hours\", \"Total Billable Hours\", \"Total Unpaid Amount\", \"Total Paid\n"
    "      Amount\", \"Total Non-Billable Hours\", \"Report Date\" or a field label.",
    RunReportDef};

}  // namespace quillora
