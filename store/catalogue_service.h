// The catalogue as the user edits it: checked add, rename, delete and list of
// clients, projects (with their tasks), tasks, contacts, value lists and
// rates. Both front ends map their input to these calls and show the
// results; every rule, message and question is here, shown through the
// prompt (docs/catalogue.md says which).
//
// Items are named by text, as the user names them: a client by its name,
// everything else by its client's name (and project) and its own name. A
// name held by several records of one client (a restore can bring copies)
// is one item: deleting or renaming it takes them all.
#ifndef QUILLORA_STORE_CATALOGUE_SERVICE_H_
#define QUILLORA_STORE_CATALOGUE_SERVICE_H_

#include <optional>
#include <string>
#include <vector>

#include "platform/locale.h"
#include "platform/user_prompt.h"
#include "store/catalogue.h"
#include "store/name_text.h"
#include "store/rates.h"

namespace quillora {

enum class CatalogueKind { kClient, kProject, kProjectTask, kTask, kContact };

// One item of the catalogue tree.
struct CatalogueName {
  CatalogueKind kind = CatalogueKind::kClient;
  std::u16string client;   // the client's name (for a client: its own name)
  std::u16string project;  // a project's task: its project
  std::u16string name;     // the item's own name (unused for a client)
};

// What came of a command. Every outcome but kDone has been explained to the
// user already, except kDeclined, where the user said No.
enum class CatalogueResult {
  kDone,
  kRefused,   // a rule refused it (no such item, a name taken, a blank name)
  kDeclined,  // the user answered No to the question
  kFailed,    // the store failed
};

class CatalogueService {
 public:
  // `catalogue` open; messages and questions go to `prompt`.
  CatalogueService(Catalogue& catalogue, const Locale& locale, UserPrompt& prompt)
      : catalogue_(catalogue), locale_(locale), prompt_(prompt) {}

  // The client named exactly `name`; nothing after "There is no client named
  // "NAME"." was shown.
  std::optional<Client> TakeClient(const std::u16string& name);
  // True when `client` has the project; otherwise shows "There is no project
  // named "P" for this client.".
  bool TakeProject(const Client& client, const std::u16string& project);

  // Adds the item. Refused: a blank name, a missing client, a name that is
  // there already ("A client named "NAME" already exists.", "This project
  // already exists for this client.", ...). A project's task needs no
  // project record of its own. `number` gets a new client's number.
  CatalogueResult Add(const CatalogueName& item, ClientId* number = nullptr);
  // Renames the item to `to`. A client keeps its number and refuses a name
  // another client has; a project (with its tasks), a project's task, a task
  // or a contact renamed to a name its parent has merges into it. The same
  // name is nothing to do. Time entries are never touched.
  CatalogueResult Rename(const CatalogueName& item, const std::u16string& to);
  // Deletes the item: a client asks first and takes its projects, tasks,
  // contacts and rates along; a project asks first and takes its tasks; a
  // project's task, a task or a contact goes at once.
  CatalogueResult Delete(const CatalogueName& item);
  // Deletes the whole projects, tasks or contacts list of `client` after "Are
  // you to delete the entire list?"; an empty list asks nothing.
  CatalogueResult DeleteList(CatalogueKind list, ClientId client);
  // Moves projects (with their tasks) and tasks of client `from` to `to` in
  // one store batch; what `to` has already is merged.
  CatalogueResult Move(ClientId from, ClientId to,
                       const std::vector<std::u16string>& projects,
                       const std::vector<CatalogueItem>& tasks);

  // Every client in name order.
  std::vector<Client> Clients();
  // The projects of `client`, each with its tasks, in store order.
  std::vector<Project> Projects(ClientId client);
  // The tasks (kTask), contacts (kContact) or the tasks of `project`
  // (kProjectTask) of `client`, in store order.
  std::vector<CatalogueItem> Items(CatalogueKind kind, ClientId client,
                                   const std::u16string& project = {});

  // Value lists. Adding refuses a blank text and a text in the list
  // (""TEXT" is already in the list."); deleting asks "Are you sure to
  // permanently delete this item?" and refuses a text not in the list;
  // clearing asks "Are you to delete the entire list?".
  CatalogueResult AddValue(ValueListKind kind, const std::u16string& text);
  CatalogueResult DeleteValue(ValueListKind kind, const std::u16string& text);
  CatalogueResult ClearValues(ValueListKind kind);
  // The list sorted by the locale comparison, each text once, as the
  // editor's drop-downs show it; nothing after "Unable to load database."
  // when it cannot be read.
  std::optional<std::vector<std::u16string>> Values(ValueListKind kind);

  // Rates. A rate is known by its client, type and description; `record_id`
  // of the input names it directly (the setup page's edit), 0 finds it by
  // type and description. Adding and updating run CheckRate and show its
  // message; updating a rate that is not there shows "There is no such rate
  // for this client.". `flag` unset keeps an updated rate's flag (a new rate
  // has none). `saved` gets the record written.
  CatalogueResult AddRate(const RateInput& input, bool flag, ObjectId* saved = nullptr);
  CatalogueResult UpdateRate(const RateInput& input, std::optional<bool> flag,
                             ObjectId* saved = nullptr);
  // Asks "Are you sure to permanently delete this item?" first.
  CatalogueResult DeleteRate(const RateInput& input);
  // The rate setup page's tree, or with `client` the chooser's groups for an
  // entry of that client.
  RateTree Rates(const Client* client = nullptr);

 private:
  CatalogueResult Refuse(int id, const std::u16string& name = {});
  CatalogueResult Fail(int id);
  // A deletion's outcome; a failure shows the text `failed`.
  CatalogueResult Outcome(DeleteOutcome outcome, int failed);
  bool Ask(int question);
  bool CheckName(const std::u16string& text, TextField field);
  bool CheckDescription(const std::u16string& text);
  // The records of the item (empty when there is none), in the store that
  // holds them.
  std::vector<CatalogueItem> RecordsOf(const CatalogueName& item, ClientId client);
  RecordStore& StoreOf(CatalogueKind kind);
  // The record of the rate the input names, or 0.
  ObjectId FindRate(const RateInput& input);

  Catalogue& catalogue_;
  const Locale& locale_;
  UserPrompt& prompt_;
};

}  // namespace quillora

#endif  // QUILLORA_STORE_CATALOGUE_SERVICE_H_
