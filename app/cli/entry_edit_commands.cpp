// Commands that make and change time entries through the entry editor: add,
// edit, copy. Each option stands for one field of the editor's pages and is
// set as the user would set it there; saving runs the editor's checks in its
// order and grows the catalogue as the editor does.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>

#include "app/cli/cli_commands.h"
#include "app/cli/entry_lookup.h"
#include "app/cli/period_options.h"
#include "platform/file.h"
#include "platform/text.h"
#include "store/name_text.h"
#include "store/note_text.h"
#include "store/rates.h"
#include "store/string_table.h"
#include "store/time_entry.h"
#include "timekeeping/copy_entry.h"
#include "timekeeping/entry_editor.h"

namespace quillora {
namespace {

// "HH:MM", 24-hour.
std::optional<SystemTime> ParseTime(const std::string& text) {
  if (text.size() != 5 || text[2] != ':') return std::nullopt;
  auto digits = [&](int at, int* value) {
    if (text[at] < '0' || text[at] > '9' || text[at + 1] < '0' || text[at + 1] > '9') {
      return false;
    }
    *value = (text[at] - '0') * 10 + (text[at + 1] - '0');
    return true;
  };
  int hour = 0;
  int minute = 0;
  if (!digits(0, &hour) || !digits(3, &minute) || hour > 23 || minute > 59) {
    return std::nullopt;
  }
  SystemTime t;
  t.hour = static_cast<std::uint16_t>(hour);
  t.minute = static_cast<std::uint16_t>(minute);
  return t;
}

// "0".."4" or the type's first word, any letter case.
std::optional<std::uint16_t> ParseRateType(const std::string& text) {
  static const char* const kWords[] = {"normal", "overtime", "weekend", "fixed",
                                       "discount"};
  if (text.size() == 1 && text[0] >= '0' && text[0] <= '4') {
    return static_cast<std::uint16_t>(text[0] - '0');
  }
  std::string lower;
  for (char c : text)
    lower += static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
  for (std::uint16_t i = 0; i < 5; ++i) {
    if (lower == kWords[i]) return i;
  }
  return std::nullopt;
}

// Line breaks of a note as the note control keeps them: CR LF.
std::u16string NoteLines(const std::u16string& text) {
  std::u16string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') continue;
    if (text[i] == u'\n' || text[i] == u'\r') {
      out += u"\r\n";
    } else {
      out += text[i];
    }
  }
  return out;
}

// --note TEXT: a backslash followed by n is a line break.
std::u16string NoteFromArgument(const std::string& text) {
  std::string lines;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] == 'n') {
      lines += '\n';
      ++i;
    } else {
      lines += text[i];
    }
  }
  return NoteLines(FromUtf8(lines));
}

// --note-file FILE: UTF-8 text (a byte order mark is skipped); the line
// breaks at its end are not part of the note.
std::u16string NoteFromFile(std::string bytes) {
  if (bytes.rfind("\xEF\xBB\xBF", 0) == 0) bytes.erase(0, 3);
  while (!bytes.empty() && (bytes.back() == '\n' || bytes.back() == '\r'))
    bytes.pop_back();
  return NoteLines(FromUtf8(bytes));
}

// The FIELDS options of add and edit, taken from the arguments.
struct FieldOptions {
  std::optional<SystemTime> date;
  std::optional<SystemTime> start;
  bool no_start = false;
  std::optional<SystemTime> end;
  std::optional<std::string> client, project, phase, task, duration;
  std::optional<bool> billable, paid;
  std::optional<std::string> bill_to, rate, currency;
  std::optional<std::uint16_t> rate_type;
  std::optional<std::string> custom[3];
  std::optional<std::string> note, note_file;
};

// A pair of flags such as --paid / --no-paid: unset, on or off.
std::optional<bool> TakeSwitch(Arguments& args, const std::string& name) {
  const bool on = args.Flag("--" + name);
  const bool off = args.Flag("--no-" + name);
  if (on && off) args.Fail("--" + name + " and --no-" + name + " together");
  if (on) return true;
  if (off) return false;
  return std::nullopt;
}

void TakeFields(Arguments& args, FieldOptions* f) {
  if (const auto v = args.Value("--date")) {
    f->date = ParseCommandLineDate(*v);
    if (!f->date) args.Fail("not a date (YYYY-MM-DD): " + *v);
  }
  if (const auto v = args.Value("--start")) {
    f->start = ParseTime(*v);
    if (!f->start) args.Fail("not a time (HH:MM): " + *v);
  }
  f->no_start = args.Flag("--no-start");
  if (const auto v = args.Value("--end")) {
    f->end = ParseTime(*v);
    if (!f->end) args.Fail("not a time (HH:MM): " + *v);
  }
  f->client = args.Value("--client");
  f->project = args.Value("--project");
  f->phase = args.Value("--phase");
  f->task = args.Value("--task");
  f->duration = args.Value("--duration");
  f->billable = TakeSwitch(args, "billable");
  f->paid = TakeSwitch(args, "paid");
  f->bill_to = args.Value("--bill-to");
  f->rate = args.Value("--rate");
  if (const auto v = args.Value("--rate-type")) {
    f->rate_type = ParseRateType(*v);
    if (!f->rate_type) args.Fail("not a rate type: " + *v);
  }
  f->currency = args.Value("--currency");
  for (int i = 0; i < 3; ++i)
    f->custom[i] = args.Value("--custom" + std::to_string(i + 1));
  f->note = args.Value("--note");
  f->note_file = args.Value("--note-file");

  if (f->start && f->no_start) args.Fail("--start and --no-start together");
  if (f->end && f->duration) args.Fail("--end and --duration together");
  if (f->end && f->no_start) args.Fail("--end needs a start time");
  if (f->note && f->note_file) args.Fail("--note and --note-file together");
  if (f->note_file && f->note_file->empty())
    args.Fail("--note-file must not be an empty text");
}

// Sets the fields given on the editor's pages, in page order. Answers an exit
// status other than 0 when the note file cannot be read.
int ApplyFields(CliContext& context, const FieldOptions& f, EntryEditor* editor) {
  auto text = [](const std::optional<std::string>& v) {
    return v ? FromUtf8(*v) : std::u16string();
  };
  const std::u16string client = text(f.client), project = text(f.project),
                       phase = text(f.phase), task = text(f.task),
                       bill_to = text(f.bill_to), currency = text(f.currency),
                       custom1 = text(f.custom[0]), custom2 = text(f.custom[1]),
                       custom3 = text(f.custom[2]), note = text(f.note);
  if (const auto bad = FindControlCharacter({{TextField::kClient, client},
                                             {TextField::kProject, project},
                                             {TextField::kPhase, phase},
                                             {TextField::kTask, task},
                                             {TextField::kBillTo, bill_to},
                                             {TextField::kCurrency, currency},
                                             {TextField::kCustom1, custom1},
                                             {TextField::kCustom2, custom2},
                                             {TextField::kCustom3, custom3},
                                             {TextField::kNote, note}})) {
    return context.Fail(ControlCharacterMessage(*bad));
  }
  // General page.
  if (f.date) editor->SetDate(*f.date);
  if (f.client) editor->SetClient(FromUtf8(*f.client));
  editor->ClientLostFocus();
  if (f.project) editor->SetProject(FromUtf8(*f.project));
  editor->ProjectLostFocus();
  if (f.phase) editor->SetPhase(FromUtf8(*f.phase));
  if (f.task) editor->SetTask(FromUtf8(*f.task));
  if (f.duration) editor->SetDurationText(FromUtf8(*f.duration));
  if (f.start) editor->SetStart(*f.start);
  if (f.no_start) editor->SetStart(std::nullopt);
  if (f.end) {
    // The start and end dialog closed with OK on these two times.
    SystemTime start = *editor->general().start;
    SystemTime end = start;
    end.hour = f.end->hour;
    end.minute = f.end->minute;
    editor->EndSetStartEnd(start, end);
  }

  // Billing page.
  editor->OpenBillingPage();
  if (f.billable) editor->SetBillable(*f.billable);
  if (f.paid) editor->SetPaid(*f.paid);
  if (f.bill_to) editor->SetBillTo(FromUtf8(*f.bill_to));
  if (f.currency) editor->SetCurrency(FromUtf8(*f.currency));
  if (f.rate) editor->SetRateText(FromUtf8(*f.rate));
  if (f.rate_type) editor->SetRateType(*f.rate_type);

  // Custom Fields and Notes pages.
  for (int i = 0; i < 3; ++i) {
    if (f.custom[i]) editor->SetCustomField(i, FromUtf8(*f.custom[i]));
  }
  if (f.note) editor->SetNoteText(NoteFromArgument(*f.note));
  if (f.note_file) {
    std::string bytes;
    if (!FileSystem::Posix().ReadWholeFile(*f.note_file, &bytes, kNoteFileMaxBytes)) {
      return context.Fail(u"Unable to read the note file \"" + FromUtf8(*f.note_file) +
                          u"\".");
    }
    const std::u16string file_note = NoteFromFile(std::move(bytes));
    if (HoldsControlCharacter(TextField::kNote, file_note)) {
      return context.Fail(ControlCharacterMessage(TextField::kNote));
    }
    editor->SetNoteText(file_note);
  }
  return kExitDone;
}

// Opens the editor on `entry`, applies the fields, saves; prints the record id
// when `print_id`.
int EditAndSave(CliContext& context, EntryStore& store, const TimeEntry& entry,
                const FieldOptions& fields, bool print_id) {
  const EditorServices services{*context.data.catalogue, context.data.settings,
                                context.locale(), *context.prompt, *context.clock};
  EntryEditor editor(services, entry);
  if (fields.end && !editor.general().start && !fields.start) {
    return UsageError("--end needs a start time");
  }
  if (const int status = ApplyFields(context, fields, &editor)) return status;
  if (editor.Save(store) != SaveResult::kSaved) return kExitFailed;
  if (print_id) {
    std::printf("%u\n", editor.entry().recordId);
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
      const int error = errno;
      std::clearerr(stdout);
      std::fprintf(stderr,
                   "quillora: the entry was saved as record %u but its id could not be "
                   "printed: %s\n",
                   editor.entry().recordId, std::strerror(error));
      return kExitFailed;
    }
  }
  return kExitDone;
}

int Add(CliContext& context, Arguments& args) {
  FieldOptions fields;
  TakeFields(args, &fields);
  const auto words = args.Positionals();
  if (!args.error().empty()) return UsageError(args.error());
  if (!words.empty()) return UsageError("unexpected argument " + words[0]);
  if (fields.end && !fields.start) return UsageError("--end needs a start time");
  if (!context.OpenCatalogue()) return kExitFailed;
  EntryStore store(*context.data.volume);
  if (!store.Open()) return context.Fail(LoadString(kIdsUnableToLoadDatabase));
  const TimeEntry entry =
      NewEntry(context.data.settings, fields.date.value_or(context.clock->LocalNow()));
  return EditAndSave(context, store, entry, fields, true);
}

int Edit(CliContext& context, Arguments& args) {
  FieldOptions fields;
  TakeFields(args, &fields);
  ObjectId id = 0;
  if (const int status = TakeRecordId(args, &id)) return status;
  if (!context.OpenCatalogue()) return kExitFailed;
  EntryStore store(*context.data.volume);
  TimeEntry entry;
  if (const int status = LoadEntryById(context, store, id, &entry)) return status;
  return EditAndSave(context, store, entry, fields, false);
}

int Copy(CliContext& context, Arguments& args) {
  const bool rest_of_week = args.Flag("--rest-of-week");
  const auto until = args.Value("--until");
  const bool include_weekend = args.Flag("--include-weekend");
  const auto duration = args.Value("--duration");
  std::optional<SystemTime> end_date;
  if (until) {
    end_date = ParseCommandLineDate(*until);
    if (!end_date) args.Fail("not a date (YYYY-MM-DD): " + *until);
  }
  if (rest_of_week == until.has_value())
    args.Fail("give one of --rest-of-week and --until");
  ObjectId id = 0;
  if (const int status = TakeRecordId(args, &id)) return status;
  if (!context.OpenData()) return kExitFailed;
  EntryStore store(*context.data.volume);
  TimeEntry source;
  if (const int status = LoadEntryById(context, store, id, &source)) return status;

  CopyEntryDialog dialog = OpenCopyDialog(source);
  if (end_date) {
    dialog.range = CopyRange::kSpecificEndDate;
    dialog.end_date = *end_date;
  }
  dialog.include_weekend = include_weekend;
  if (duration) dialog.SetDuration(FromUtf8(*duration));
  std::vector<ObjectId> copies;
  const CopyResult result =
      CopyEntry(store, source, dialog, context.data.settings,
                context.locale().AnsiCodePage(), *context.prompt, &copies);
  for (ObjectId copy : copies) std::printf("%u\n", copy);
  return result == CopyResult::kCopied ? kExitDone : kExitFailed;
}

constexpr char kFieldsHelp[] =
    "FIELDS:\n"
    "  --date YYYY-MM-DD        the entry's date (add: today)\n"
    "  --start HH:MM | --no-start\n"
    "  --end HH:MM              with a start: the duration from start to end\n"
    "  --client T  --project T  --phase T  --task T\n"
    "  --duration TEXT          hours as typed in the editor (1.5, 0.25)\n"
    "  --billable | --no-billable   (add: from the new-entry defaults)\n"
    "  --paid | --no-paid  --bill-to T\n"
    "  --rate TEXT  --rate-type 0..4|Normal|Overtime|Weekend|Fixed|Discount\n"
    "  --currency T             (add: from the new-entry defaults)\n"
    "  --custom1 T  --custom2 T  --custom3 T\n"
    "  --note TEXT (\\n is a line break) | --note-file FILE (UTF-8)";

}  // namespace

const Command kAddCommand = {"add", "add [FIELDS]",
                             "add a time entry; prints its record id", kFieldsHelp, Add};
const Command kEditCommand = {"edit", "edit ID [FIELDS]",
                              "change the fields given of one time entry", kFieldsHelp,
                              Edit};
const Command kCopyCommand = {
    "copy",
    "copy ID (--rest-of-week | --until DATE) [--include-weekend] [--duration TEXT]",
    "copy a time entry to the following days; prints the copies' record ids",
    "Saturdays and Sundays get a copy only with --include-weekend. The duration of\n"
    "the copies is the entry's own unless --duration gives another.",
    Copy};

}  // namespace quillora
