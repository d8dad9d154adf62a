// The list-file commands of the catalogue tree (import, export-list) and the
// contacts import (contacts list, contacts import). They run the same logic
// as the tree's commands; the file the dialog would ask for is the FILE
// argument (docs/list_files.md, docs/contacts.md).
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/cli/cli_commands.h"
#include "interchange/contacts_import.h"
#include "interchange/list_files.h"
#include "platform/text.h"
#include "store/client_store.h"
#include "store/string_table.h"

namespace quillora {
namespace {

int Usage(const char* usage) {
  return UsageError(std::string("usage: quillora ") + usage);
}

// The list a command names: "clients", or "projects", "tasks", "contacts"
// with --client NAME (tasks also with --project NAME).
struct ListArguments {
  std::string kind_word;
  std::optional<std::string> client;
  std::optional<std::string> project;
};

std::optional<ListKind> ParseListKind(const std::string& word) {
  if (word == "clients") return ListKind::kClients;
  if (word == "projects") return ListKind::kProjects;
  if (word == "tasks") return ListKind::kTasks;
  if (word == "contacts") return ListKind::kContacts;
  return std::nullopt;
}

// Checks the options against the kind; a usage message when they do not fit.
std::string CheckListOptions(ListKind kind, const ListArguments& a) {
  if (kind == ListKind::kClients && (a.client || a.project)) {
    return "clients takes no --client or --project";
  }
  if (kind != ListKind::kClients && !a.client)
    return a.kind_word + " needs --client NAME";
  if (kind != ListKind::kTasks && a.project) return "only tasks take --project NAME";
  return {};
}

// Opens the catalogue and finds the list; false after showing why.
bool ResolveList(CliContext& context, ListKind kind, const ListArguments& a,
                 CatalogueList* list) {
  CatalogueService* service = context.OpenCatalogueService();
  if (!service) return false;
  *list = CatalogueList(kind);
  if (kind == ListKind::kClients) return true;
  const std::optional<Client> client = service->TakeClient(FromUtf8(*a.client));
  if (!client) return false;
  list->client = client->number;
  if (a.project) {
    list->project = FromUtf8(*a.project);
    if (!service->TakeProject(*client, list->project)) return false;
  }
  return true;
}

// Reads KIND [--client NAME] [--project NAME] FILE (the command's other
// options already taken), checks them and finds the list in the opened
// catalogue; an exit status other than 0 after showing why not.
int TakeList(CliContext& context, Arguments& args, const char* usage,
             CatalogueList* list, std::string* file) {
  ListArguments a;
  a.client = args.Value("--client");
  a.project = args.Value("--project");
  const std::vector<std::string> words = args.Positionals();
  if (!args.error().empty()) return UsageError(args.error());
  if (words.size() != 2) return Usage(usage);
  a.kind_word = words[0];
  const std::optional<ListKind> kind = ParseListKind(a.kind_word);
  if (!kind) return Usage(usage);
  if (const std::string bad = CheckListOptions(*kind, a); !bad.empty()) {
    return UsageError(bad);
  }
  if (const int status = CheckPathArgument(words[1])) return status;
  if (!ResolveList(context, *kind, a, list)) return kExitFailed;
  *file = words[1];
  return kExitDone;
}

// import KIND [--client NAME] [--project NAME] FILE

int RunImport(CliContext& context, Arguments& args) {
  const char* usage =
      "import clients FILE | projects --client NAME FILE | tasks --client NAME "
      "[--project NAME] FILE | contacts --client NAME FILE";
  CatalogueList list;
  std::string file;
  if (const int status = TakeList(context, args, usage, &list, &file)) return status;
  context.prompt->SetFile(file);
  const ListFileOutcome outcome =
      RunListImport(*context.data.catalogue, context.locale(), FileSystem::Posix(),
                    *context.prompt, list);
  return outcome == ListFileOutcome::kDone ? kExitDone : kExitFailed;
}

// export-list KIND [--client NAME] [--project NAME] [--unicode] FILE

int RunExportList(CliContext& context, Arguments& args) {
  const char* usage =
      "export-list clients | projects --client NAME | tasks --client NAME [--project "
      "NAME] "
      "| contacts --client NAME  [--unicode] FILE";
  const bool unicode = args.Flag("--unicode");
  CatalogueList list;
  std::string file;
  if (const int status = TakeList(context, args, usage, &list, &file)) return status;
  context.prompt->SetFile(file);
  const ListFileOutcome outcome = RunListExport(
      *context.data.catalogue, context.locale(), FileSystem::Posix(), *context.prompt,
      list, unicode ? ListFileFormat::kUnicode : ListFileFormat::kAnsi);
  return outcome == ListFileOutcome::kDone ? kExitDone : kExitFailed;
}

// contacts list [--dir DIR] | import --client NAME (--all | FILE-AS...) [--dir DIR]

// The contacts dialog loaded from the device-style database when the volume
// has one, else from the vCard files of `folder`; false after showing why.
bool LoadContacts(CliContext& context, const std::optional<std::string>& folder,
                  ContactsDialog* dialog) {
  DeviceContactsSource device(*context.data.volume, context.data.registry.get());
  std::unique_ptr<ContactsSource> vcards;
  ContactsSource* source = &device;
  if (device.FindDatabase() == 0 && folder) {
    vcards = std::make_unique<VCardContactsSource>(FileSystem::Posix(), *folder);
    source = vcards.get();
  }
  if (dialog->Load(*source, context.locale())) return true;
  context.Fail(LoadString(kIdsContactsNotFound));
  return false;
}

int RunContacts(CliContext& context, Arguments& args) {
  const char* usage =
      "contacts list [--dir DIR] | import --client NAME (--all | FILE-AS...) [--dir DIR]";
  const std::optional<std::string> folder = args.Value("--dir");
  const std::optional<std::string> client_arg = args.Value("--client");
  const bool all = args.Flag("--all");
  std::vector<std::string> words = args.Positionals();
  if (!args.error().empty()) return UsageError(args.error());
  if (words.empty()) return Usage(usage);
  if (folder) {
    if (const int status = CheckPathArgument(*folder, "--dir")) return status;
  }
  const std::string sub = words[0];
  words.erase(words.begin());

  if (sub == "list") {
    if (!words.empty() || client_arg || all) return Usage(usage);
    if (!context.OpenData()) return kExitFailed;
    ContactsDialog dialog;
    if (!LoadContacts(context, folder, &dialog)) return kExitFailed;
    for (const ContactRow& row : dialog.rows()) {
      std::printf("%s\t%s\n", ToUtf8(row.file_as).c_str(), ToUtf8(row.company).c_str());
    }
    return kExitDone;
  }
  if (sub != "import") return Usage(usage);
  if (!client_arg) return UsageError("contacts import needs --client NAME");
  if (all == !words.empty())
    return UsageError("contacts import takes --all or FILE-AS names");

  CatalogueList list;
  ListArguments a{"contacts", client_arg, std::nullopt};
  if (!ResolveList(context, ListKind::kContacts, a, &list)) return kExitFailed;
  ContactsDialog dialog;
  if (!LoadContacts(context, folder, &dialog)) return kExitFailed;
  if (all) dialog.CheckAll();
  for (const std::string& word : words) {
    const std::u16string name = FromUtf8(word);
    bool found = false;
    for (std::size_t row = 0; row < dialog.rows().size(); ++row) {
      if (dialog.rows()[row].file_as == name) {
        dialog.SetChecked(row, true);
        found = true;
      }
    }
    if (!found) return context.Fail(u"There is no contact filed as \"" + name + u"\".");
  }
  return ImportContactNames(*context.data.catalogue, context.locale(), list.client,
                            dialog.CheckedNames(), *context.prompt)
             ? kExitDone
             : kExitFailed;
}

}  // namespace

const Command kImportCommand = {
    "import",
    "import clients FILE | projects --client NAME FILE | tasks --client NAME "
    "[--project NAME] FILE | contacts --client NAME FILE",
    "add the names of a list file to the catalogue",
    "FILE holds one name a line, in the ANSI code page of the locale or UTF-16 with\n"
    "its byte order mark. Empty lines are skipped, names over 128 characters are cut\n"
    "to 127, and names that are already there are not added again.",
    RunImport};
const Command kExportListCommand = {
    "export-list",
    "export-list clients | projects --client NAME | tasks --client NAME [--project NAME] "
    "| contacts --client NAME  [--unicode] FILE",
    "write the names of one catalogue list to a text file",
    "One name a line, CR LF between names, none after the last; ANSI text, or\n"
    "UTF-16 with its byte order mark with --unicode. Asks before replacing FILE.",
    RunExportList};
const Command kContactsCommand = {
    "contacts",
    "contacts list [--dir DIR] | import --client NAME (--all | FILE-AS...) [--dir DIR]",
    "list contacts or add them as a client's bill-to contacts",
    "Reads the device-style contacts database of the data folder when there is one,\n"
    "otherwise the vCard files (*.vcf) of DIR. contacts list prints FILE-AS<TAB>COMPANY\n"
    "sorted by the file-as name; contacts import adds the chosen (or all) file-as\n"
    "names in that order.",
    RunContacts};

}  // namespace quillora
