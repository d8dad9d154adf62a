#include "store/catalogue.h"

#include <algorithm>
#include <utility>

#include "store/string_table.h"

namespace quillora {
namespace {

// Deletes the records, counting those that went.
int DeleteRecords(RecordStore& store, const std::vector<ObjectId>& ids) {
  int deleted = 0;
  for (ObjectId id : ids) deleted += store.DeleteRecord(id) ? 1 : 0;
  return deleted;
}

PropValue KindValue(ValueListKind kind) {
  return PropValue::Number(kPropListKind, static_cast<std::uint16_t>(kind));
}

ObjectId WriteProject(ProjectStore& projects, ClientId client,
                      const std::u16string& project, const std::u16string& task) {
  PropList props = {PropValue::Number(kPropClientId, client),
                    PropValue::Text(kPropItemName, project)};
  if (!task.empty()) props.push_back(PropValue::Text(kPropTaskName, task));
  return projects.WriteProps(0, props);
}

ObjectId WriteItem(RecordStore& store, ClientId client, const std::u16string& name) {
  return store.WriteProps(0, {PropValue::Number(kPropClientId, client),
                              PropValue::Text(kPropItemName, name)});
}

Answer AskToDelete(UserPrompt& prompt, int question) {
  return prompt.Ask(kAppTitle, LoadString(question), MessageIcon::kWarning,
                    QuestionButtons::kYesNo, Answer::kNo);
}

}  // namespace

void WalkClientRecords(RecordStore& store, ClientId client,
                       const std::function<void(ObjectId, PropList&)>& visit) {
  PropList props;
  ObjectId id = store.SeekValue(SeekType::kValueFirstEqual,
                                PropValue::Number(kPropClientId, client));
  while (id != 0) {
    store.ReadProps(nullptr, &props);
    visit(id, props);
    id = store.SeekValue(SeekType::kValueNextEqual,
                         PropValue::Number(kPropClientId, client));
  }
}

std::vector<ProjectRecord> ProjectRecords(ProjectStore& projects, ClientId client) {
  std::vector<ProjectRecord> records;
  WalkClientRecords(projects, client, [&](ObjectId id, PropList& props) {
    ProjectRecord r;
    r.record_id = id;
    for (PropValue& v : props) {
      if (v.id == kPropClientId) {
        r.client = static_cast<ClientId>(v.number);
      } else if (v.id == kPropItemName) {
        r.project = std::move(v.text);
      } else if (v.id == kPropTaskName) {
        r.task = std::move(v.text);
      }
    }
    records.push_back(std::move(r));
  });
  return records;
}

bool IsDuplicate(ProjectStore& projects, const Locale& locale, ClientId client,
                 const std::u16string& project, const std::u16string& task) {
  for (const ProjectRecord& r : ProjectRecords(projects, client)) {
    if (locale.Equal(r.project, project) && locale.Equal(r.task, task)) return true;
  }
  return false;
}

ObjectId AddProject(ProjectStore& projects, const Locale& locale, ClientId client,
                    const std::u16string& project, const std::u16string& task) {
  if (project.empty() || IsDuplicate(projects, locale, client, project, task)) return 0;
  return WriteProject(projects, client, project, task);
}

ProjectAdder::ProjectAdder(ProjectStore& projects, const Locale& locale, ClientId client)
    : projects_(projects), client_(client), have_(LocaleLess{&locale}) {
  for (ProjectRecord& r : ProjectRecords(projects, client)) {
    have_.emplace(std::move(r.project), std::move(r.task));
  }
}

bool ProjectAdder::Refuses(const std::u16string& project,
                           const std::u16string& task) const {
  return project.empty() || have_.count({project, task}) != 0;
}

ObjectId ProjectAdder::Add(const std::u16string& project, const std::u16string& task) {
  if (Refuses(project, task)) return 0;
  const ObjectId id = WriteProject(projects_, client_, project, task);
  if (id != 0) have_.emplace(project, task);
  return id;
}

bool UpdateProject(ProjectStore& projects, const ProjectRecord& record) {
  const ObjectId id = projects.current_record_id();
  if (id == 0) return false;
  auto text = [](PropId prop, const std::u16string& value) {
    return value.empty() ? PropValue::Delete(prop) : PropValue::Text(prop, value);
  };
  return projects.WriteProps(id, {PropValue::Number(kPropClientId, record.client),
                                  text(kPropItemName, record.project),
                                  text(kPropTaskName, record.task)}) != 0;
}

int DeleteProject(ProjectStore& projects, const Locale& locale, ClientId client,
                  const std::u16string& project) {
  std::vector<ObjectId> ids;
  for (const ProjectRecord& r : ProjectRecords(projects, client)) {
    if (locale.Equal(r.project, project)) ids.push_back(r.record_id);
  }
  return DeleteRecords(projects, ids);
}

std::vector<Project> ProjectsOf(ProjectStore& projects, const Locale& locale,
                                ClientId client) {
  std::vector<Project> list;
  for (ProjectRecord& r : ProjectRecords(projects, client)) {
    auto it = std::find_if(list.begin(), list.end(), [&](const Project& p) {
      return locale.Equal(p.name, r.project);
    });
    if (it == list.end()) it = list.insert(list.end(), Project{std::move(r.project), {}});
    if (!r.task.empty()) it->tasks.push_back(std::move(r.task));
  }
  return list;
}

std::vector<CatalogueItem> ItemsOf(RecordStore& store, ClientId client) {
  std::vector<CatalogueItem> items;
  WalkClientRecords(store, client, [&](ObjectId id, PropList& props) {
    CatalogueItem item;
    item.record_id = id;
    for (PropValue& v : props) {
      if (v.id == kPropClientId) item.client = static_cast<ClientId>(v.number);
      if (v.id == kPropItemName) item.name = std::move(v.text);
    }
    items.push_back(std::move(item));
  });
  return items;
}

ObjectId AddItem(RecordStore& store, const Locale& locale, ClientId client,
                 const std::u16string& name) {
  if (name.empty()) return 0;
  for (const CatalogueItem& item : ItemsOf(store, client)) {
    if (locale.Equal(item.name, name)) return 0;
  }
  return WriteItem(store, client, name);
}

ItemAdder::ItemAdder(RecordStore& store, const Locale& locale, ClientId client)
    : store_(store), client_(client), have_(LocaleLess{&locale}) {
  for (CatalogueItem& item : ItemsOf(store, client)) have_.insert(std::move(item.name));
}

bool ItemAdder::Refuses(const std::u16string& name) const {
  return name.empty() || have_.count(name) != 0;
}

ObjectId ItemAdder::Add(const std::u16string& name) {
  if (Refuses(name)) return 0;
  const ObjectId id = WriteItem(store_, client_, name);
  if (id != 0) have_.insert(name);
  return id;
}

bool DeleteItem(RecordStore& store, ObjectId record_id) {
  return store.DeleteRecord(record_id);
}

int DeleteByClient(RecordStore& store, ClientId client) {
  std::vector<ObjectId> ids;
  WalkClientRecords(store, client, [&](ObjectId id, PropList&) { ids.push_back(id); });
  return DeleteRecords(store, ids);
}

std::array<EntryValue, 5> EntryValues(const TimeEntry& entry) {
  return {{{ValueListKind::kPhase, &entry.phase},
           {ValueListKind::kCurrency, &entry.currency},
           {ValueListKind::kCustom1, &entry.custom1},
           {ValueListKind::kCustom2, &entry.custom2},
           {ValueListKind::kCustom3, &entry.custom3}}};
}

std::vector<ValueItem> ValueList(AuxStore& aux, ValueListKind kind) {
  std::vector<ValueItem> items;
  PropList props;
  for (ObjectId id = aux.SeekValue(SeekType::kValueFirstEqual, KindValue(kind)); id != 0;
       id = aux.SeekValue(SeekType::kValueNextEqual, KindValue(kind))) {
    aux.ReadProps(nullptr, &props);
    ValueItem item{id, {}};
    for (PropValue& v : props) {
      if (v.id == kPropItemName) item.text = std::move(v.text);
    }
    items.push_back(std::move(item));
  }
  return items;
}

bool AddValue(AuxStore& aux, const Locale& locale, ValueListKind kind,
              const std::u16string& text) {
  if (text.empty()) return false;
  for (const ValueItem& item : ValueList(aux, kind)) {
    if (locale.Equal(item.text, text)) return false;
  }
  return aux.WriteProps(0, {KindValue(kind), PropValue::Text(kPropItemName, text)}) != 0;
}

int DeleteValue(AuxStore& aux, const Locale& locale, ValueListKind kind,
                const std::u16string& text) {
  std::vector<ObjectId> ids;
  for (const ValueItem& item : ValueList(aux, kind)) {
    if (locale.Equal(item.text, text)) ids.push_back(item.record_id);
  }
  return DeleteRecords(aux, ids);
}

int DeleteValueList(AuxStore& aux, ValueListKind kind) {
  std::vector<ObjectId> ids;
  for (const ValueItem& item : ValueList(aux, kind)) ids.push_back(item.record_id);
  return DeleteRecords(aux, ids);
}

bool Catalogue::Open() {
  return clients.Open() && projects.Open() && tasks.Open() && contacts.Open() &&
         rates.Open();
}

DeleteOutcome DeleteClient(Catalogue& catalogue, UserPrompt& prompt,
                           ObjectId client_record) {
  if (AskToDelete(prompt, kIdsDeleteClientQuestion) == Answer::kNo) {
    return DeleteOutcome::kDeclined;
  }
  // Number 0 is also the default rates' number: such a client's cascade would
  // take every default rate with it, so it is skipped.
  const ClientId number = ClientNumberOf(catalogue.clients, client_record);
  if (number != 0) {
    DeleteByClient(catalogue.projects, number);
    DeleteByClient(catalogue.tasks, number);
    DeleteByClient(catalogue.contacts, number);
    DeleteByClient(catalogue.rates, number);
  }
  return catalogue.clients.DeleteRecord(client_record) ? DeleteOutcome::kDeleted
                                                       : DeleteOutcome::kFailed;
}

DeleteOutcome DeleteProjectAsked(Catalogue& catalogue, UserPrompt& prompt,
                                 const Locale& locale, ClientId client,
                                 const std::u16string& project) {
  if (AskToDelete(prompt, kIdsDeleteProjectQuestion) == Answer::kNo) {
    return DeleteOutcome::kDeclined;
  }
  return DeleteProject(catalogue.projects, locale, client, project) > 0
             ? DeleteOutcome::kDeleted
             : DeleteOutcome::kFailed;
}

bool GrowCatalogue(Catalogue& catalogue, const Locale& locale, const TimeEntry& entry) {
  Client client;
  if (!entry.client.empty() && FindClient(catalogue.clients, entry.client, &client)) {
    AddProject(catalogue.projects, locale, client.number, entry.project, entry.task);
    if (entry.project.empty())
      AddItem(catalogue.tasks, locale, client.number, entry.task);
    AddItem(catalogue.contacts, locale, client.number, entry.billTo);
  }
  AuxStore aux(catalogue.volume);
  if (!aux.Open()) return false;
  for (const auto& [kind, text] : EntryValues(entry)) AddValue(aux, locale, kind, *text);
  return true;
}

bool CheckNameText(UserPrompt& prompt, const std::u16string& text, TextField field) {
  if (text.empty()) {
    prompt.ShowMessage(kAppTitle, LoadString(kIdsBlankName), MessageIcon::kExclamation);
    return false;
  }
  if (HoldsControlCharacter(field, text)) {
    prompt.ShowMessage(kAppTitle, ControlCharacterMessage(field),
                       MessageIcon::kExclamation);
    return false;
  }
  return true;
}

}  // namespace quillora
