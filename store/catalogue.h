// The client catalogue: under each client its projects (each with its tasks),
// its tasks, its bill-to contacts and its rates, plus the value lists of
// "Quillora Data 2" (phases, currencies, custom fields). Every catalogue
// record but the client's own carries the client's number (1201). Entries
// copy names as text, so nothing here ever touches a time entry.
//
// Names are compared with the locale comparison without flags: whole text,
// letter case counts ("Web" and "web" are two projects).
#ifndef QUILLORA_STORE_CATALOGUE_H_
#define QUILLORA_STORE_CATALOGUE_H_

#include <array>
#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/locale.h"
#include "platform/user_prompt.h"
#include "store/client_store.h"
#include "store/name_text.h"
#include "store/record_store.h"
#include "store/time_entry.h"

namespace quillora {

// One record of "Quillora Projects": a project (empty task) or one of its
// tasks.
struct ProjectRecord {
  ObjectId record_id = 0;
  ClientId client = 0;
  std::u16string project;
  std::u16string task;
  friend bool operator==(const ProjectRecord&, const ProjectRecord&) = default;
};

// A project as the tree and the editor show it: its name and its tasks, in
// store order.
struct Project {
  std::u16string name;
  std::vector<std::u16string> tasks;
  friend bool operator==(const Project&, const Project&) = default;
};

// One record of "Quillora Tasks" or "Quillora Contacts".
struct CatalogueItem {
  ObjectId record_id = 0;
  ClientId client = 0;
  std::u16string name;
  friend bool operator==(const CatalogueItem&, const CatalogueItem&) = default;
};

// Visits the records of `client` in a store opened on 1201: an equal-value
// seek, then next-equal seeks. `visit` gets each record's id and properties
// and must not move the store.
void WalkClientRecords(RecordStore& store, ClientId client,
                       const std::function<void(ObjectId, PropList&)>& visit);

// Projects.

// Writes {client, project, task}; 0 with nothing written when the project is
// empty or the triple is already there (IsDuplicate), else the record id.
ObjectId AddProject(ProjectStore& projects, const Locale& locale, ClientId client,
                    const std::u16string& project, const std::u16string& task);
// True when a record of `client` has both names equal to the given ones (an
// empty task matches a record without one).
bool IsDuplicate(ProjectStore& projects, const Locale& locale, ClientId client,
                 const std::u16string& project, const std::u16string& task);
// Rewrites the store's current record with the three values of `record`;
// an empty task removes the property. False when the write fails.
bool UpdateProject(ProjectStore& projects, const ProjectRecord& record);
// Deletes the project `project` of `client` and all its tasks; the number of
// records deleted.
int DeleteProject(ProjectStore& projects, const Locale& locale, ClientId client,
                  const std::u16string& project);
// Every record of `client`, in store order.
std::vector<ProjectRecord> ProjectRecords(ProjectStore& projects, ClientId client);
// The projects of `client`: one per distinct project name, in the order of its
// first record, each with the non-empty tasks of its records.
std::vector<Project> ProjectsOf(ProjectStore& projects, const Locale& locale,
                                ClientId client);

// Orders names (and pairs of names) by the locale comparison, so that a set
// of them finds exactly the names that the add operations take as equal.
struct LocaleLess {
  const Locale* locale;
  bool operator()(const std::u16string& a, const std::u16string& b) const {
    return locale->Compare(a, b) < 0;
  }
  bool operator()(const std::pair<std::u16string, std::u16string>& a,
                  const std::pair<std::u16string, std::u16string>& b) const {
    const int first = locale->Compare(a.first, b.first);
    return first != 0 ? first < 0 : locale->Compare(a.second, b.second) < 0;
  }
};

// AddProject for many adds to one client (imports, restores): the client's
// records are read once when it is made, and each add looks in that set
// instead of walking the store, so N adds cost O(N log N). Only this adder
// may add to the client's projects while it lives.
class ProjectAdder {
 public:
  ProjectAdder(ProjectStore& projects, const Locale& locale, ClientId client);
  // True when AddProject would refuse the pair: an empty project, or a pair
  // the client has.
  bool Refuses(const std::u16string& project, const std::u16string& task) const;
  // AddProject: the record id, or 0 when refused or the write failed.
  ObjectId Add(const std::u16string& project, const std::u16string& task);

 private:
  ProjectStore& projects_;
  ClientId client_;
  std::set<std::pair<std::u16string, std::u16string>, LocaleLess> have_;
};

// Tasks and contacts (any of the catalogue stores opened on 1201 whose
// records are {1201, 1101}).

// Every record of `client`, in store order.
std::vector<CatalogueItem> ItemsOf(RecordStore& store, ClientId client);
// Writes {client, name}; 0 with nothing written when the name is empty or the
// client has it already, else the record id.
ObjectId AddItem(RecordStore& store, const Locale& locale, ClientId client,
                 const std::u16string& name);
// AddItem for many adds to one client, as ProjectAdder is for AddProject.
class ItemAdder {
 public:
  ItemAdder(RecordStore& store, const Locale& locale, ClientId client);
  // True when AddItem would refuse the name: empty, or the client has it.
  bool Refuses(const std::u16string& name) const;
  // AddItem: the record id, or 0 when refused or the write failed.
  ObjectId Add(const std::u16string& name);

 private:
  RecordStore& store_;
  ClientId client_;
  std::set<std::u16string, LocaleLess> have_;
};
// Deletes the one record `record_id`.
bool DeleteItem(RecordStore& store, ObjectId record_id);

// Deletes every record of `client` from a store opened on 1201 (projects,
// tasks, contacts, rates); the number deleted.
int DeleteByClient(RecordStore& store, ClientId client);

// Value lists of "Quillora Data 2" (records {1102 kind, 1101 text}).
enum class ValueListKind : std::uint16_t {
  kPhase = 3,
  kCurrency = 5,
  kCustom1 = 7,
  kCustom2 = 8,
  kCustom3 = 9,
};

struct ValueItem {
  ObjectId record_id = 0;
  std::u16string text;
  friend bool operator==(const ValueItem&, const ValueItem&) = default;
};

// An entry's texts that belong in the value lists, each with its list.
struct EntryValue {
  ValueListKind kind;
  const std::u16string* text;
};
std::array<EntryValue, 5> EntryValues(const TimeEntry& entry);

// The items of one list, in store order.
std::vector<ValueItem> ValueList(AuxStore& aux, ValueListKind kind);
// Adds `text` to the list; false with nothing written when it is empty, is
// in the list already, or the write fails.
bool AddValue(AuxStore& aux, const Locale& locale, ValueListKind kind,
              const std::u16string& text);
// Deletes the items equal to `text`; the number deleted.
int DeleteValue(AuxStore& aux, const Locale& locale, ValueListKind kind,
                const std::u16string& text);
// Deletes the whole list; the number deleted.
int DeleteValueList(AuxStore& aux, ValueListKind kind);

// The five catalogue stores, held together for as long as the window lives
// (the command line holds them for one command). The client store opens with
// the registry so that it can carry "NextClient" over.
struct Catalogue {
  Catalogue(ObjectStore& volume, Registry* registry)
      : volume(volume),
        clients(volume, registry),
        projects(volume),
        tasks(volume),
        contacts(volume),
        rates(volume) {}

  // Opens clients, projects, tasks, contacts and rates one after the other;
  // false at the first that fails (the others stay closed).
  bool Open();

  ObjectStore& volume;
  ClientStore clients;
  ProjectStore projects;
  TaskStore tasks;
  ContactStore contacts;
  RateStore rates;
};

enum class DeleteOutcome { kDeleted, kDeclined, kFailed };

// Deleting from the catalogue tree. Both ask their question first (Yes/No,
// warning icon, No the default, title "Quillora"); any answer but No goes on.
//
// A client: its projects, tasks, contacts and rates, then its record. A client
// whose number is 0 (added while the counter was missing) loses only its
// record, never the default rates. kFailed when the client record cannot be
// deleted.
DeleteOutcome DeleteClient(Catalogue& catalogue, UserPrompt& prompt,
                           ObjectId client_record);
// A project: every record of the client with that project name; kFailed
// when there was none.
DeleteOutcome DeleteProjectAsked(Catalogue& catalogue, UserPrompt& prompt,
                                 const Locale& locale, ClientId client,
                                 const std::u16string& project);

// What the entry editor does after each save: when the entry's client is in
// the catalogue, its project (with the task), its task (when there is no
// project) and its bill-to are added for that client; then the phase,
// currency and custom fields join their value lists. Nothing is added twice
// and no empty name is added. False when "Quillora Data 2" cannot be opened;
// the five catalogue stores must be open.
bool GrowCatalogue(Catalogue& catalogue, const Locale& locale, const TimeEntry& entry);

// The name dialog's rule: an empty text shows "Please enter some text. Blank
// is not allowed." and answers false; so does a text holding a control
// character, with ControlCharacterMessage(field).
bool CheckNameText(UserPrompt& prompt, const std::u16string& text,
                   TextField field = TextField::kName);

}  // namespace quillora

#endif  // QUILLORA_STORE_CATALOGUE_H_
