// The catalogue commands: clients, projects, tasks, contacts, rates and the
// value lists. Each works as the catalogue tree and the rate setup page do:
// the same checks, messages and questions (docs/catalogue.md).
#include <algorithm>
#include <cstdio>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/cli/cli_commands.h"
#include "platform/locale.h"
#include "platform/text.h"
#include "store/catalogue.h"
#include "store/rates.h"
#include "store/string_table.h"

namespace quillora {
namespace {

// What one catalogue command works with once the data is open.
struct Session {
  CliContext& context;
  Catalogue* catalogue;
  const Locale* locale;

  UserPrompt& prompt() { return *context.prompt; }
  int Fail(const std::u16string& text) { return context.Fail(text); }

  // Finds a client by its exact name; shows why not and answers false.
  bool TakeClient(const std::string& name, Client* client) {
    if (FindClient(catalogue->clients, FromUtf8(name), client)) return true;
    Fail(u"There is no client named \"" + FromUtf8(name) + u"\".");
    return false;
  }
};

// The exit status of a deletion: 0 done, 1 declined, 1 with `failure` shown
// when the store failed.
int DeleteStatus(Session& s, DeleteOutcome outcome, const std::u16string& failure) {
  switch (outcome) {
    case DeleteOutcome::kDeleted:
      return kExitDone;
    case DeleteOutcome::kDeclined:
      return kExitFailed;
    case DeleteOutcome::kFailed:
      break;
  }
  return s.Fail(failure);
}

// Opens the data and the five catalogue stores; null after showing why.
std::unique_ptr<Session> OpenSession(CliContext& context) {
  if (!context.OpenCatalogue()) return nullptr;
  return std::make_unique<Session>(
      Session{context, context.data.catalogue.get(), context.data.locale.get()});
}

// The positional words after the subcommand, with the usage checked: exactly
// `count` words, or from `count` to `count + optional`.
std::optional<std::vector<std::string>> Words(Arguments& args, const char* usage,
                                              std::size_t count,
                                              std::size_t optional = 0) {
  auto words = args.Positionals();
  if (!args.error().empty()) {
    UsageError(args.error());
    return std::nullopt;
  }
  if (words.empty() || words.size() - 1 < count || words.size() - 1 > count + optional) {
    UsageError(std::string("usage: quillora ") + usage);
    return std::nullopt;
  }
  words.erase(words.begin());
  return words;
}

// The words a subcommand takes: `count`, and up to `optional` more.
struct SubcommandShape {
  const char* name;
  std::size_t count;
  std::size_t optional = 0;
};

// Words() for the subcommand `sub` as `shapes` says; nothing, with the usage
// printed, for a subcommand they do not name.
std::optional<std::vector<std::string>> SubcommandWords(
    Arguments& args, const std::string& sub, const char* usage,
    std::initializer_list<SubcommandShape> shapes) {
  for (const SubcommandShape& shape : shapes) {
    if (sub == shape.name) return Words(args, usage, shape.count, shape.optional);
  }
  UsageError(std::string("usage: quillora ") + usage);
  return std::nullopt;
}

std::string Subcommand(Arguments& args) {
  // Positionals() takes the options too, so the subcommand is read from a copy.
  Arguments copy = args;
  const auto words = copy.Positionals();
  return words.empty() ? std::string() : words[0];
}

void PrintLine(const std::u16string& text) { std::printf("%s\n", ToUtf8(text).c_str()); }

std::u16string Quoted(const std::u16string& text) { return u"\"" + text + u"\""; }

// client add NAME | rename OLD NEW | delete NAME | list

int RunClient(CliContext& context, Arguments& args) {
  const std::string sub = Subcommand(args);
  const char* usage = "client add NAME | rename OLD NEW | delete NAME | list";
  const auto w = SubcommandWords(args, sub, usage,
                                 {{"add", 1}, {"delete", 1}, {"rename", 2}, {"list", 0}});
  if (!w) return kExitUsage;
  auto s = OpenSession(context);
  if (!s) return kExitFailed;
  ClientStore& clients = s->catalogue->clients;

  if (sub == "list") {
    for (const Client& c : ClientList(clients)) {
      std::printf("%s\t%u\n", ToUtf8(c.name).c_str(), c.number);
    }
    return kExitDone;
  }
  if (sub == "add") {
    const std::u16string name = FromUtf8((*w)[0]);
    if (!CheckNameText(s->prompt(), name, TextField::kClient)) return kExitFailed;
    if (FindClient(clients, name)) {
      return s->Fail(u"A client named " + Quoted(name) + u" already exists.");
    }
    const ClientId number = AddClient(clients, name);
    if (!FindClient(clients, name)) return s->Fail(u"Unable to save the client.");
    std::printf("%u\n", number);
    return kExitDone;
  }
  Client client;
  if (!s->TakeClient((*w)[0], &client)) return kExitFailed;
  if (sub == "rename") {
    const std::u16string name = FromUtf8((*w)[1]);
    if (!CheckNameText(s->prompt(), name, TextField::kClient)) return kExitFailed;
    Client existing;
    if (FindClient(clients, name, &existing) && existing.record_id != client.record_id) {
      return s->Fail(u"A client named " + Quoted(name) + u" already exists.");
    }
    clients.Seek(SeekType::kObjectId, client.record_id);
    if (!RenameClient(clients, name)) return s->Fail(u"Unable to save the client.");
    return kExitDone;
  }
  return DeleteStatus(*s, DeleteClient(*s->catalogue, s->prompt(), client.record_id),
                      u"Unable to delete the client.");
}

// project add CLIENT PROJECT [TASK] | delete CLIENT PROJECT | list CLIENT

int RunProject(CliContext& context, Arguments& args) {
  const std::string sub = Subcommand(args);
  const char* usage =
      "project add CLIENT PROJECT [TASK] | delete CLIENT PROJECT | list CLIENT";
  const auto w =
      SubcommandWords(args, sub, usage, {{"add", 2, 1}, {"delete", 2}, {"list", 1}});
  if (!w) return kExitUsage;
  auto s = OpenSession(context);
  if (!s) return kExitFailed;
  Client client;
  if (!s->TakeClient((*w)[0], &client)) return kExitFailed;
  ProjectStore& projects = s->catalogue->projects;
  const Locale& locale = *s->locale;

  if (sub == "list") {
    for (const Project& p : ProjectsOf(projects, locale, client.number)) {
      PrintLine(p.name);
      for (const std::u16string& task : p.tasks) PrintLine(p.name + u"\t" + task);
    }
    return kExitDone;
  }
  const std::u16string project = FromUtf8((*w)[1]);
  if (sub == "add") {
    const std::u16string task = w->size() > 2 ? FromUtf8((*w)[2]) : u"";
    if (!CheckNameText(s->prompt(), project, TextField::kProject)) return kExitFailed;
    if (w->size() > 2 && !CheckNameText(s->prompt(), task, TextField::kTask))
      return kExitFailed;
    if (IsDuplicate(projects, locale, client.number, project, task)) {
      return s->Fail(task.empty() ? u"This project already exists for this client."
                                  : u"This task already exists in this project.");
    }
    if (AddProject(projects, locale, client.number, project, task) == 0) {
      return s->Fail(u"Unable to save the project.");
    }
    return kExitDone;
  }
  const auto list = ProjectsOf(projects, locale, client.number);
  if (std::none_of(list.begin(), list.end(),
                   [&](const Project& p) { return locale.Equal(p.name, project); })) {
    return s->Fail(u"There is no project named " + Quoted(project) +
                   u" for this client.");
  }
  return DeleteStatus(
      *s, DeleteProjectAsked(*s->catalogue, s->prompt(), locale, client.number, project),
      u"Unable to delete the project.");
}

// task and contact: add CLIENT NAME | delete CLIENT NAME | list CLIENT. Tasks
// also take --project NAME for the tasks of one project.

int RunItems(CliContext& context, Arguments& args, bool tasks) {
  const std::string sub = Subcommand(args);
  const char* usage = tasks
                          ? "task add|delete CLIENT TASK [--project NAME] | list CLIENT "
                            "[--project NAME]"
                          : "contact add|delete CLIENT NAME | list CLIENT";
  const std::optional<std::string> project_arg =
      tasks ? args.Value("--project") : std::nullopt;
  const auto w =
      SubcommandWords(args, sub, usage, {{"add", 2}, {"delete", 2}, {"list", 1}});
  if (!w) return kExitUsage;
  auto s = OpenSession(context);
  if (!s) return kExitFailed;
  Client client;
  if (!s->TakeClient((*w)[0], &client)) return kExitFailed;
  const Locale& locale = *s->locale;
  RecordStore& store = tasks ? static_cast<RecordStore&>(s->catalogue->tasks)
                             : static_cast<RecordStore&>(s->catalogue->contacts);
  const std::u16string what = tasks ? u"task" : u"contact";
  const std::u16string name = w->size() > 1 ? FromUtf8((*w)[1]) : u"";

  // The names, and for deleting the records, of the client or its project.
  std::vector<CatalogueItem> items;
  if (project_arg) {
    const std::u16string project = FromUtf8(*project_arg);
    for (ProjectRecord& r : ProjectRecords(s->catalogue->projects, client.number)) {
      if (!r.task.empty() && locale.Equal(r.project, project)) {
        items.push_back({r.record_id, r.client, std::move(r.task)});
      }
    }
  } else {
    items = ItemsOf(store, client.number);
  }
  RecordStore& holder = project_arg ? s->catalogue->projects : store;

  if (sub == "list") {
    for (const CatalogueItem& item : items) PrintLine(item.name);
    return kExitDone;
  }
  if (sub == "add") {
    if (!CheckNameText(s->prompt(), name,
                       tasks ? TextField::kTask : TextField::kContact)) {
      return kExitFailed;
    }
    if (project_arg &&
        !CheckNameText(s->prompt(), FromUtf8(*project_arg), TextField::kProject))
      return kExitFailed;
    if (std::any_of(items.begin(), items.end(),
                    [&](const CatalogueItem& i) { return locale.Equal(i.name, name); })) {
      return s->Fail(u"This " + what +
                     (project_arg ? u" already exists in this project."
                                  : u" already exists for this client."));
    }
    const ObjectId id = project_arg
                            ? AddProject(s->catalogue->projects, locale, client.number,
                                         FromUtf8(*project_arg), name)
                            : AddItem(store, locale, client.number, name);
    if (id == 0) return s->Fail(u"Unable to save the " + what + u".");
    return kExitDone;
  }
  // A task or a contact goes at once, without a question, as in the tree.
  int deleted = 0;
  for (const CatalogueItem& item : items) {
    if (locale.Equal(item.name, name) && DeleteItem(holder, item.record_id)) ++deleted;
  }
  if (deleted == 0) {
    return s->Fail(u"There is no " + what + u" named " + Quoted(name) +
                   (project_arg ? u" in this project." : u" for this client."));
  }
  return kExitDone;
}

int RunTask(CliContext& context, Arguments& args) {
  return RunItems(context, args, true);
}
int RunContact(CliContext& context, Arguments& args) {
  return RunItems(context, args, false);
}

// rate add|update|delete (--default | --client NAME) --type TYPE --description TEXT
//      [--value TEXT] [--flag] | list [--client NAME]

// A rate type by index, short name or full name ("2", "weekend", "Weekend Rate").
std::optional<int> ParseRateType(const std::string& text) {
  auto lower = [](std::string s) {
    for (char& c : s) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
    return s;
  };
  const std::string wanted = lower(text);
  for (int type = 0; type < kRateTypeCount; ++type) {
    const std::string full =
        lower(ToUtf8(RateTypeName(static_cast<std::uint16_t>(type))));
    if (wanted == std::to_string(type) || wanted == full ||
        wanted == full.substr(0, full.find(' '))) {
      return type;
    }
  }
  return std::nullopt;
}

int RunRate(CliContext& context, Arguments& args) {
  const std::string sub = Subcommand(args);
  const char* usage =
      "rate add|update (--default | --client NAME) --type TYPE --description TEXT "
      "--value TEXT [--flag] | delete (--default | --client NAME) --type TYPE "
      "--description TEXT | list [--client NAME]";
  const bool is_default = args.Flag("--default");
  const auto client_arg = args.Value("--client");
  const auto type_arg = args.Value("--type");
  const auto description_arg = args.Value("--description");
  const auto value_arg = args.Value("--value");
  const bool flag = args.Flag("--flag");
  if (!SubcommandWords(args, sub, usage,
                       {{"add", 0}, {"update", 0}, {"delete", 0}, {"list", 0}})) {
    return kExitUsage;
  }
  const bool edits = sub != "list";
  if (edits && is_default == client_arg.has_value()) {
    return UsageError("rate " + sub + " needs either --default or --client NAME");
  }
  if (!edits && (is_default || type_arg || description_arg || value_arg || flag)) {
    return UsageError("rate list takes only --client NAME");
  }
  if (sub == "delete" && (value_arg || flag)) {
    return UsageError("rate delete takes no --value or --flag");
  }
  std::optional<int> type;
  if (type_arg && !(type = ParseRateType(*type_arg))) {
    return UsageError("unknown rate type " + *type_arg +
                      " (0..4, Normal, Overtime, Weekend, Fixed, Discount)");
  }
  auto s = OpenSession(context);
  if (!s) return kExitFailed;
  RateStore& rates = s->catalogue->rates;
  Client client;
  if (client_arg && !s->TakeClient(*client_arg, &client)) return kExitFailed;

  if (sub == "list") {
    const RateTree tree = client_arg
                              ? ChooserRateTree(rates, s->catalogue->clients, client.name)
                              : SetupRateTree(rates, s->catalogue->clients);
    for (const RateGroup& group : tree.groups) {
      PrintLine(group.heading);
      for (const Rate& rate : group.rates) {
        std::u16string line = u"\t";
        line += RateLabel(rate);
        line += u'\t';
        line += RateTypeName(rate.type);
        PrintLine(line);
      }
    }
    return kExitDone;
  }

  RateInput input;
  input.type = type.value_or(-1);
  input.description = description_arg ? FromUtf8(*description_arg) : u"";
  input.value_text = value_arg ? FromUtf8(*value_arg) : u"";
  input.client = client.number;
  // The rate that update and delete work on: same type and description.
  for (const Rate& rate : RatesOf(rates, input.client)) {
    if (sub != "add" && rate.type == input.type &&
        s->locale->Equal(rate.description, input.description)) {
      input.record_id = rate.record_id;
      break;
    }
  }
  if (sub == "delete") {
    if (input.type < 0) return s->Fail(LoadString(kIdsSelectRateType));
    if (input.description.empty()) return s->Fail(LoadString(kIdsEnterRateDescription));
    if (input.record_id == 0) return s->Fail(u"There is no such rate for this client.");
    if (!DeleteRate(rates, input.record_id))
      return s->Fail(u"Unable to delete the rate.");
    return kExitDone;
  }
  const std::u16string message = CheckRate(rates, *s->locale, input);
  if (!message.empty()) return s->Fail(message);
  if (HoldsControlCharacter(TextField::kDescription, input.description)) {
    return s->Fail(ControlCharacterMessage(TextField::kDescription));
  }
  if (sub == "update" && input.record_id == 0) {
    return s->Fail(u"There is no such rate for this client.");
  }
  double value = 0;
  ParseRateText(input.value_text, &value);
  const auto rate_type = static_cast<std::uint16_t>(input.type);
  ObjectId written = 0;
  if (sub == "add") {
    written = AddRate(rates, rate_type, value, input.client, input.description, flag);
  } else if (rates.Seek(SeekType::kObjectId, input.record_id) == input.record_id) {
    written = UpdateRate(rates, rate_type, value, input.client, input.description, flag);
  }
  if (written == 0) return s->Fail(u"Unable to save the rate.");
  return kExitDone;
}

// value add|delete KIND TEXT | list KIND | clear KIND

std::optional<ValueListKind> ParseValueKind(const std::string& text) {
  static const std::pair<const char*, ValueListKind> kKinds[] = {
      {"phase", ValueListKind::kPhase},
      {"currency", ValueListKind::kCurrency},
      {"custom1", ValueListKind::kCustom1},
      {"custom2", ValueListKind::kCustom2},
      {"custom3", ValueListKind::kCustom3}};
  for (const auto& [name, kind] : kKinds) {
    if (text == name) return kind;
  }
  return std::nullopt;
}

TextField ValueField(ValueListKind kind) {
  switch (kind) {
    case ValueListKind::kPhase:
      return TextField::kPhase;
    case ValueListKind::kCurrency:
      return TextField::kCurrency;
    case ValueListKind::kCustom1:
      return TextField::kCustom1;
    case ValueListKind::kCustom2:
      return TextField::kCustom2;
    case ValueListKind::kCustom3:
      return TextField::kCustom3;
  }
  return TextField::kName;
}

int RunValue(CliContext& context, Arguments& args) {
  const std::string sub = Subcommand(args);
  const char* usage =
      "value add|delete phase|currency|custom1|custom2|custom3 TEXT | list KIND | clear "
      "KIND";
  const auto w = SubcommandWords(args, sub, usage,
                                 {{"add", 2}, {"delete", 2}, {"list", 1}, {"clear", 1}});
  if (!w) return kExitUsage;
  const auto kind = ParseValueKind((*w)[0]);
  if (!kind) return UsageError("unknown list " + (*w)[0]);
  if (!context.OpenData()) return kExitFailed;
  AuxStore aux(*context.data.volume);
  if (!aux.Open()) return context.Fail(u"Unable to load database.");
  const Locale* locale = context.data.locale.get();
  auto ask = [&](int question) {
    return context.prompt->Ask(kAppTitle, LoadString(question), MessageIcon::kWarning,
                               QuestionButtons::kYesNo, Answer::kNo) != Answer::kNo;
  };

  std::vector<ValueItem> items = ValueList(aux, *kind);
  if (sub == "list") {
    // As the editor's sorted drop-downs show them.
    std::stable_sort(items.begin(), items.end(),
                     [&](const ValueItem& a, const ValueItem& b) {
                       return locale->Compare(a.text, b.text) < 0;
                     });
    for (const ValueItem& item : items) PrintLine(item.text);
    return kExitDone;
  }
  if (sub == "clear") {
    if (!ask(kIdsDeleteListQuestion)) return kExitFailed;
    DeleteValueList(aux, *kind);
    return kExitDone;
  }
  const std::u16string text = FromUtf8((*w)[1]);
  const bool present = std::any_of(items.begin(), items.end(), [&](const ValueItem& i) {
    return locale->Equal(i.text, text);
  });
  if (sub == "add") {
    if (!CheckNameText(*context.prompt, text, ValueField(*kind))) return kExitFailed;
    if (present) return context.Fail(Quoted(text) + u" is already in the list.");
    if (!AddValue(aux, *locale, *kind, text))
      return context.Fail(u"Unable to save the item.");
    return kExitDone;
  }
  if (!present) return context.Fail(Quoted(text) + u" is not in the list.");
  if (!ask(kIdsDeleteItemQuestion)) return kExitFailed;
  DeleteValue(aux, *locale, *kind, text);
  return kExitDone;
}

}  // namespace

const Command kClientCommand = {
    "client", "client add NAME | rename OLD NEW | delete NAME | list",
    "add, rename, delete or list clients",
    "client add prints the new client's number. client list prints NAME<TAB>NUMBER\n"
    "in name order. Deleting a client also deletes its projects, tasks, contacts and\n"
    "rates (asks first); time entries keep the client's name. Renaming changes no\n"
    "time entry.",
    RunClient};
const Command kProjectCommand = {
    "project", "project add CLIENT PROJECT [TASK] | delete CLIENT PROJECT | list CLIENT",
    "add, delete or list a client's projects and their tasks",
    "project list prints each project on a line, then each of its tasks as\n"
    "PROJECT<TAB>TASK. Deleting a project deletes its tasks too (asks first).",
    RunProject};
const Command kTaskCommand = {
    "task", "task add|delete CLIENT TASK [--project NAME] | list CLIENT [--project NAME]",
    "add, delete or list a client's tasks (or a project's)",
    "Without --project the client's own task list; with it the tasks of that project.",
    RunTask};
const Command kContactCommand = {
    "contact", "contact add|delete CLIENT NAME | list CLIENT",
    "add, delete or list a client's bill-to contacts", "", RunContact};
const Command kRateCommand = {
    "rate",
    "rate add|update|delete (--default | --client NAME) --type TYPE --description TEXT "
    "[--value TEXT] [--flag] | list [--client NAME]",
    "add, change, delete or list the default rates and clients' rates",
    "TYPE is 0..4 or Normal, Overtime, Weekend, Fixed, Discount. A rate is known by\n"
    "its type and description within its client; update rewrites its value and flag.\n"
    "rate list prints \"(Default Rates)\" and every client as headings with their\n"
    "rates as <TAB>LABEL<TAB>TYPE NAME; with --client NAME the rates that client's\n"
    "entries can choose from.",
    RunRate};
const Command kValueCommand = {
    "value", "value add|delete KIND TEXT | list KIND | clear KIND",
    "edit the phase, currency and custom field lists",
    "KIND is phase, currency, custom1, custom2 or custom3. delete and clear ask first.",
    RunValue};

}  // namespace quillora
