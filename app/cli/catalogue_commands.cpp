// The catalogue commands: clients, projects, tasks, contacts, rates and the
// value lists. Each maps its words onto the catalogue service, which holds
// the rules, messages and questions the window shows too (docs/catalogue.md).
#include <cstdio>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "app/cli/cli_commands.h"
#include "platform/text.h"
#include "store/catalogue_service.h"
#include "store/rates.h"

namespace quillora {
namespace {

int StatusOf(CatalogueResult result) {
  return result == CatalogueResult::kDone ? kExitDone : kExitFailed;
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

// add, rename and delete of one item named by the words.
int Edit(CatalogueService& service, const std::string& sub, const CatalogueName& item,
         const std::vector<std::string>& words) {
  if (sub == "add") {
    ClientId number = 0;
    const CatalogueResult result = service.Add(item, &number);
    if (result == CatalogueResult::kDone && item.kind == CatalogueKind::kClient) {
      std::printf("%u\n", number);
    }
    return StatusOf(result);
  }
  if (sub == "rename") return StatusOf(service.Rename(item, FromUtf8(words.back())));
  return StatusOf(service.Delete(item));
}

// client add NAME | rename OLD NEW | delete NAME | list

int RunClient(CliContext& context, Arguments& args) {
  const std::string sub = Subcommand(args);
  const char* usage = "client add NAME | rename OLD NEW | delete NAME | list";
  const auto w = SubcommandWords(args, sub, usage,
                                 {{"add", 1}, {"delete", 1}, {"rename", 2}, {"list", 0}});
  if (!w) return kExitUsage;
  CatalogueService* service = context.OpenCatalogueService();
  if (!service) return kExitFailed;
  if (sub == "list") {
    for (const Client& c : service->Clients()) {
      std::printf("%s\t%u\n", ToUtf8(c.name).c_str(), c.number);
    }
    return kExitDone;
  }
  return Edit(*service, sub, {CatalogueKind::kClient, FromUtf8((*w)[0]), {}, {}}, *w);
}

// project add CLIENT PROJECT [TASK] | rename CLIENT OLD NEW | delete CLIENT PROJECT
// | list CLIENT

int RunProject(CliContext& context, Arguments& args) {
  const std::string sub = Subcommand(args);
  const char* usage =
      "project add CLIENT PROJECT [TASK] | rename CLIENT OLD NEW | delete CLIENT PROJECT "
      "| list CLIENT";
  const auto w = SubcommandWords(
      args, sub, usage, {{"add", 2, 1}, {"rename", 3}, {"delete", 2}, {"list", 1}});
  if (!w) return kExitUsage;
  CatalogueService* service = context.OpenCatalogueService();
  if (!service) return kExitFailed;
  const std::u16string client_name = FromUtf8((*w)[0]);
  if (sub == "list") {
    const std::optional<Client> client = service->TakeClient(client_name);
    if (!client) return kExitFailed;
    for (const Project& p : service->Projects(client->number)) {
      PrintLine(p.name);
      for (const std::u16string& task : p.tasks) PrintLine(p.name + u"\t" + task);
    }
    return kExitDone;
  }
  CatalogueName item{CatalogueKind::kProject, client_name, {}, FromUtf8((*w)[1])};
  if (sub == "add" && w->size() > 2) {
    item = {CatalogueKind::kProjectTask, client_name, item.name, FromUtf8((*w)[2])};
  }
  return Edit(*service, sub, item, *w);
}

// task and contact: add CLIENT NAME | rename CLIENT OLD NEW | delete CLIENT NAME |
// list CLIENT. Tasks also take --project NAME for the tasks of one project.

int RunItems(CliContext& context, Arguments& args, bool tasks) {
  const std::string sub = Subcommand(args);
  const char* usage =
      tasks ? "task add|delete CLIENT TASK [--project NAME] | rename CLIENT "
              "OLD NEW [--project NAME] | list CLIENT [--project NAME]"
            : "contact add|delete CLIENT NAME | rename CLIENT OLD NEW | "
              "list CLIENT";
  const std::optional<std::string> project_arg =
      tasks ? args.Value("--project") : std::nullopt;
  const auto w = SubcommandWords(args, sub, usage,
                                 {{"add", 2}, {"rename", 3}, {"delete", 2}, {"list", 1}});
  if (!w) return kExitUsage;
  CatalogueService* service = context.OpenCatalogueService();
  if (!service) return kExitFailed;
  const CatalogueKind kind = !tasks        ? CatalogueKind::kContact
                             : project_arg ? CatalogueKind::kProjectTask
                                           : CatalogueKind::kTask;
  const std::u16string project = project_arg ? FromUtf8(*project_arg) : u"";
  const std::u16string client_name = FromUtf8((*w)[0]);
  if (sub == "list") {
    const std::optional<Client> client = service->TakeClient(client_name);
    if (!client) return kExitFailed;
    for (const CatalogueItem& item : service->Items(kind, client->number, project)) {
      PrintLine(item.name);
    }
    return kExitDone;
  }
  return Edit(*service, sub, {kind, client_name, project, FromUtf8((*w)[1])}, *w);
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
  CatalogueService* service = context.OpenCatalogueService();
  if (!service) return kExitFailed;
  std::optional<Client> client;
  if (client_arg && !(client = service->TakeClient(FromUtf8(*client_arg)))) {
    return kExitFailed;
  }

  if (sub == "list") {
    for (const RateGroup& group : service->Rates(client ? &*client : nullptr).groups) {
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
  input.client = client ? client->number : 0;
  if (sub == "delete") return StatusOf(service->DeleteRate(input));
  if (sub == "add") return StatusOf(service->AddRate(input, flag));
  return StatusOf(service->UpdateRate(input, flag));
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
  CatalogueService* service = context.OpenCatalogueService();
  if (!service) return kExitFailed;
  if (sub == "list") {
    const auto values = service->Values(*kind);
    if (!values) return kExitFailed;
    for (const std::u16string& text : *values) PrintLine(text);
    return kExitDone;
  }
  if (sub == "clear") return StatusOf(service->ClearValues(*kind));
  const std::u16string text = FromUtf8((*w)[1]);
  if (sub == "add") return StatusOf(service->AddValue(*kind, text));
  return StatusOf(service->DeleteValue(*kind, text));
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
    "project",
    "project add CLIENT PROJECT [TASK] | rename CLIENT OLD NEW | delete CLIENT PROJECT | "
    "list CLIENT",
    "add, rename, delete or list a client's projects and their tasks",
    "project list prints each project on a line, then each of its tasks as\n"
    "PROJECT<TAB>TASK. Deleting a project deletes its tasks too (asks first).\n"
    "Renaming a project renames its tasks' records too; a name the client has\n"
    "already merges the two.",
    RunProject};
const Command kTaskCommand = {
    "task",
    "task add|delete CLIENT TASK [--project NAME] | rename CLIENT OLD NEW "
    "[--project NAME] | list CLIENT [--project NAME]",
    "add, rename, delete or list a client's tasks (or a project's)",
    "Without --project the client's own task list; with it the tasks of that project.\n"
    "A task renamed to a name the list has already merges into it.",
    RunTask};
const Command kContactCommand = {
    "contact", "contact add|delete CLIENT NAME | rename CLIENT OLD NEW | list CLIENT",
    "add, rename, delete or list a client's bill-to contacts",
    "A contact renamed to a name the client has already merges into it.", RunContact};
const Command kRateCommand = {
    "rate",
    "rate add|update|delete (--default | --client NAME) --type TYPE --description TEXT "
    "[--value TEXT] [--flag] | list [--client NAME]",
    "add, change, delete or list the default rates and clients' rates",
    "TYPE is 0..4 or Normal, Overtime, Weekend, Fixed, Discount. A rate is known by\n"
    "its type and description within its client; update rewrites its value and flag;\n"
    "delete asks first.\n"
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
