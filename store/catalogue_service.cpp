#include "store/catalogue_service.h"

#include <algorithm>

#include "store/catalogue_edit.h"
#include "store/string_table.h"

namespace quillora {
namespace {

using Result = CatalogueResult;

// What each kind of item is called in its messages, and the field its
// name is checked as.
struct KindTexts {
  int exists;
  int missing;
  int save_failed;
  TextField field;
};

const KindTexts& TextsOf(CatalogueKind kind) {
  // In the order of CatalogueKind.
  static constexpr KindTexts kTexts[] = {
      {kIdsClientExists, kIdsNoClientNamed, kIdsSaveClientFailed, TextField::kClient},
      {kIdsProjectExists, kIdsNoProjectNamed, kIdsSaveProjectFailed, TextField::kProject},
      {kIdsProjectTaskExists, kIdsNoProjectTaskNamed, kIdsSaveTaskFailed,
       TextField::kTask},
      {kIdsTaskExists, kIdsNoTaskNamed, kIdsSaveTaskFailed, TextField::kTask},
      {kIdsContactExists, kIdsNoContactNamed, kIdsSaveContactFailed, TextField::kContact},
  };
  return kTexts[static_cast<int>(kind)];
}

bool IsProjectKind(CatalogueKind kind) {
  return kind == CatalogueKind::kProject || kind == CatalogueKind::kProjectTask;
}

}  // namespace

Result CatalogueService::Refuse(int id, const std::u16string& name) {
  prompt_.ShowMessage(kAppTitle, FormatString(id, name), MessageIcon::kExclamation);
  return Result::kRefused;
}

Result CatalogueService::Fail(int id) {
  prompt_.ShowMessage(kAppTitle, LoadString(id), MessageIcon::kError);
  return Result::kFailed;
}

Result CatalogueService::Outcome(DeleteOutcome outcome, int failed) {
  switch (outcome) {
    case DeleteOutcome::kDeleted:
      return Result::kDone;
    case DeleteOutcome::kDeclined:
      return Result::kDeclined;
    case DeleteOutcome::kFailed:
      break;
  }
  return Fail(failed);
}

bool CatalogueService::Ask(int question) {
  return prompt_.Ask(kAppTitle, LoadString(question), MessageIcon::kWarning,
                     QuestionButtons::kYesNo, Answer::kNo) != Answer::kNo;
}

bool CatalogueService::CheckName(const std::u16string& text, TextField field) {
  return CheckNameText(prompt_, text, field);
}

namespace {

TextField FieldOf(ValueListKind kind) {
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

}  // namespace

// A rate's description is shown in every rate list and picker, so it holds
// no control character either.
bool CatalogueService::CheckDescription(const std::u16string& text) {
  if (!HoldsControlCharacter(TextField::kDescription, text)) return true;
  prompt_.ShowMessage(kAppTitle, ControlCharacterMessage(TextField::kDescription),
                      MessageIcon::kExclamation);
  return false;
}

RecordStore& CatalogueService::StoreOf(CatalogueKind kind) {
  switch (kind) {
    case CatalogueKind::kTask:
      return catalogue_.tasks;
    case CatalogueKind::kContact:
      return catalogue_.contacts;
    default:
      return catalogue_.projects;
  }
}

std::optional<Client> CatalogueService::TakeClient(const std::u16string& name) {
  Client client;
  if (FindClient(catalogue_.clients, name, &client)) return client;
  Refuse(kIdsNoClientNamed, name);
  return std::nullopt;
}

bool CatalogueService::TakeProject(const Client& client, const std::u16string& project) {
  const std::vector<Project> projects = Projects(client.number);
  if (std::any_of(projects.begin(), projects.end(),
                  [&](const Project& p) { return locale_.Equal(p.name, project); })) {
    return true;
  }
  Refuse(kIdsNoProjectNamed, project);
  return false;
}

std::vector<CatalogueItem> CatalogueService::RecordsOf(const CatalogueName& item,
                                                       ClientId client) {
  std::vector<CatalogueItem> found;
  if (IsProjectKind(item.kind)) {
    const bool project = item.kind == CatalogueKind::kProject;
    for (ProjectRecord& r : ProjectRecords(catalogue_.projects, client)) {
      const bool match = project ? locale_.Equal(r.project, item.name)
                                 : !r.task.empty() &&
                                       locale_.Equal(r.project, item.project) &&
                                       locale_.Equal(r.task, item.name);
      if (match) found.push_back({r.record_id, r.client, std::move(r.task)});
    }
    return found;
  }
  for (CatalogueItem& i : ItemsOf(StoreOf(item.kind), client)) {
    if (locale_.Equal(i.name, item.name)) found.push_back(std::move(i));
  }
  return found;
}

Result CatalogueService::Add(const CatalogueName& item, ClientId* number) {
  if (item.kind == CatalogueKind::kClient) {
    if (!CheckName(item.client, TextField::kClient)) return Result::kRefused;
    if (FindClient(catalogue_.clients, item.client)) {
      return Refuse(kIdsClientExists, item.client);
    }
    const ClientId added = AddClient(catalogue_.clients, item.client);
    // A client numbered 0 (no counter) is still a client: look it up.
    if (!FindClient(catalogue_.clients, item.client)) return Fail(kIdsSaveClientFailed);
    if (number != nullptr) *number = added;
    return Result::kDone;
  }
  const std::optional<Client> client = TakeClient(item.client);
  if (!client) return Result::kRefused;
  if (item.kind == CatalogueKind::kProjectTask &&
      !CheckName(item.project, TextField::kProject)) {
    return Result::kRefused;
  }
  if (!CheckName(item.name, TextsOf(item.kind).field)) return Result::kRefused;
  ObjectId written = 0;
  if (IsProjectKind(item.kind)) {
    // The triple decides, as for a saved entry: a project known only from
    // its tasks' records can still get its own.
    const bool project = item.kind == CatalogueKind::kProject;
    const std::u16string& name = project ? item.name : item.project;
    const std::u16string task = project ? u"" : item.name;
    if (IsDuplicate(catalogue_.projects, locale_, client->number, name, task)) {
      return Refuse(TextsOf(item.kind).exists);
    }
    written = AddProject(catalogue_.projects, locale_, client->number, name, task);
  } else {
    if (!RecordsOf(item, client->number).empty())
      return Refuse(TextsOf(item.kind).exists);
    written = AddItem(StoreOf(item.kind), locale_, client->number, item.name);
  }
  return written != 0 ? Result::kDone : Fail(TextsOf(item.kind).save_failed);
}

Result CatalogueService::Rename(const CatalogueName& item, const std::u16string& to) {
  const std::optional<Client> client = TakeClient(item.client);
  if (!client) return Result::kRefused;
  if (item.kind == CatalogueKind::kClient) {
    if (!CheckName(to, TextsOf(item.kind).field)) return Result::kRefused;
    Client other;
    if (FindClient(catalogue_.clients, to, &other) &&
        other.record_id != client->record_id) {
      return Refuse(kIdsClientExists, to);
    }
    catalogue_.clients.Seek(SeekType::kObjectId, client->record_id);
    return RenameClient(catalogue_.clients, to) ? Result::kDone
                                                : Fail(kIdsSaveClientFailed);
  }
  const std::vector<CatalogueItem> records = RecordsOf(item, client->number);
  if (records.empty()) return Refuse(TextsOf(item.kind).missing, item.name);
  if (!CheckName(to, TextsOf(item.kind).field)) return Result::kRefused;
  if (to == item.name) return Result::kDone;
  bool written = true;
  switch (item.kind) {
    case CatalogueKind::kProject:
      written =
          RenameProject(catalogue_.projects, locale_, client->number, item.name, to) >= 0;
      break;
    case CatalogueKind::kProjectTask:
      for (const CatalogueItem& r : records) {
        written = RenameProjectTask(catalogue_.projects, locale_,
                                    {r.record_id, r.client, item.project, r.name}, to) &&
                  written;
      }
      break;
    default:
      for (const CatalogueItem& r : records) {
        written = RenameItem(StoreOf(item.kind), locale_, r, to) && written;
      }
      break;
  }
  return written ? Result::kDone : Fail(TextsOf(item.kind).save_failed);
}

Result CatalogueService::Delete(const CatalogueName& item) {
  const std::optional<Client> client = TakeClient(item.client);
  if (!client) return Result::kRefused;
  if (item.kind == CatalogueKind::kClient) {
    return Outcome(DeleteClient(catalogue_, prompt_, client->record_id),
                   kIdsDeleteClientFailed);
  }
  const std::vector<CatalogueItem> records = RecordsOf(item, client->number);
  if (records.empty()) return Refuse(TextsOf(item.kind).missing, item.name);
  if (item.kind == CatalogueKind::kProject) {
    return Outcome(
        DeleteProjectAsked(catalogue_, prompt_, locale_, client->number, item.name),
        kIdsDeleteProjectFailed);
  }
  // A project's task, a task or a contact goes at once, without a question.
  int deleted = 0;
  for (const CatalogueItem& r : records) {
    deleted += DeleteItem(StoreOf(item.kind), r.record_id) ? 1 : 0;
  }
  return deleted > 0 ? Result::kDone : Refuse(TextsOf(item.kind).missing, item.name);
}

Result CatalogueService::DeleteList(CatalogueKind list, ClientId client) {
  RecordStore& store = StoreOf(list);
  const bool empty = list == CatalogueKind::kProject
                         ? ProjectRecords(catalogue_.projects, client).empty()
                         : ItemsOf(store, client).empty();
  if (empty) return Result::kDone;
  if (!Ask(kIdsDeleteListQuestion)) return Result::kDeclined;
  DeleteByClient(store, client);
  return Result::kDone;
}

Result CatalogueService::Move(ClientId from, ClientId to,
                              const std::vector<std::u16string>& projects,
                              const std::vector<CatalogueItem>& tasks) {
  if (projects.empty() && tasks.empty()) return Result::kDone;
  bool moved = true;
  catalogue_.volume.BeginBatch();
  for (const std::u16string& p : projects) {
    moved = MoveProject(catalogue_.projects, locale_, from, to, p) >= 0 && moved;
  }
  for (const CatalogueItem& t : tasks) {
    moved = MoveItem(catalogue_.tasks, locale_, t, to) && moved;
  }
  moved = catalogue_.volume.CommitBatch() && moved;
  return moved ? Result::kDone : Fail(kIdsSaveProjectFailed);
}

std::vector<Client> CatalogueService::Clients() { return ClientList(catalogue_.clients); }

std::vector<Project> CatalogueService::Projects(ClientId client) {
  return ProjectsOf(catalogue_.projects, locale_, client);
}

std::vector<CatalogueItem> CatalogueService::Items(CatalogueKind kind, ClientId client,
                                                   const std::u16string& project) {
  if (kind != CatalogueKind::kProjectTask) return ItemsOf(StoreOf(kind), client);
  std::vector<CatalogueItem> items;
  for (ProjectRecord& r : ProjectRecords(catalogue_.projects, client)) {
    if (!r.task.empty() && locale_.Equal(r.project, project)) {
      items.push_back({r.record_id, r.client, std::move(r.task)});
    }
  }
  return items;
}

Result CatalogueService::AddValue(ValueListKind kind, const std::u16string& text) {
  const std::optional<std::vector<std::u16string>> values = Values(kind);
  if (!values) return Result::kFailed;
  if (!CheckName(text, FieldOf(kind))) return Result::kRefused;
  if (std::any_of(values->begin(), values->end(),
                  [&](const std::u16string& v) { return locale_.Equal(v, text); })) {
    return Refuse(kIdsValueInList, text);
  }
  AuxStore aux(catalogue_.volume);
  if (!aux.Open() || !::quillora::AddValue(aux, locale_, kind, text)) {
    return Fail(kIdsSaveValueFailed);
  }
  return Result::kDone;
}

Result CatalogueService::DeleteValue(ValueListKind kind, const std::u16string& text) {
  const std::optional<std::vector<std::u16string>> values = Values(kind);
  if (!values) return Result::kFailed;
  if (std::none_of(values->begin(), values->end(),
                   [&](const std::u16string& v) { return locale_.Equal(v, text); })) {
    return Refuse(kIdsValueNotInList, text);
  }
  if (!Ask(kIdsDeleteItemQuestion)) return Result::kDeclined;
  AuxStore aux(catalogue_.volume);
  if (!aux.Open()) return Fail(kIdsUnableToLoadDatabase);
  ::quillora::DeleteValue(aux, locale_, kind, text);
  return Result::kDone;
}

Result CatalogueService::ClearValues(ValueListKind kind) {
  AuxStore aux(catalogue_.volume);
  if (!aux.Open()) return Fail(kIdsUnableToLoadDatabase);
  if (!Ask(kIdsDeleteListQuestion)) return Result::kDeclined;
  DeleteValueList(aux, kind);
  return Result::kDone;
}

std::optional<std::vector<std::u16string>> CatalogueService::Values(ValueListKind kind) {
  AuxStore aux(catalogue_.volume);
  if (!aux.Open()) {
    Fail(kIdsUnableToLoadDatabase);
    return std::nullopt;
  }
  std::vector<std::u16string> texts;
  for (ValueItem& item : ValueList(aux, kind)) texts.push_back(std::move(item.text));
  std::stable_sort(texts.begin(), texts.end(),
                   [&](const std::u16string& a, const std::u16string& b) {
                     return locale_.Compare(a, b) < 0;
                   });
  // A restore can bring a text in twice; the list shows it once.
  texts.erase(std::unique(texts.begin(), texts.end(),
                          [&](const std::u16string& a, const std::u16string& b) {
                            return locale_.Equal(a, b);
                          }),
              texts.end());
  return texts;
}

ObjectId CatalogueService::FindRate(const RateInput& input) {
  if (input.record_id != 0) {
    // The record may have gone since the caller saw it (another process).
    Rate rate;
    RateStore& rates = catalogue_.rates;
    const bool there =
        rates.Seek(SeekType::kObjectId, input.record_id) == input.record_id &&
        ReadRate(rates, &rate) == 0;
    return there ? input.record_id : 0;
  }
  for (const Rate& rate : RatesOf(catalogue_.rates, input.client)) {
    if (rate.type == input.type && locale_.Equal(rate.description, input.description)) {
      return rate.record_id;
    }
  }
  return 0;
}

Result CatalogueService::AddRate(const RateInput& input, bool flag, ObjectId* saved) {
  RateInput fresh = input;
  fresh.record_id = 0;
  if (!CheckDescription(input.description)) return Result::kRefused;
  const std::u16string refusal = CheckRate(catalogue_.rates, locale_, fresh);
  if (!refusal.empty()) {
    prompt_.ShowMessage(kAppTitle, refusal, MessageIcon::kExclamation);
    return Result::kRefused;
  }
  double value = 0;
  ParseRateText(input.value_text, &value);
  const ObjectId id =
      ::quillora::AddRate(catalogue_.rates, static_cast<std::uint16_t>(input.type), value,
                          input.client, input.description, flag);
  if (saved != nullptr) *saved = id;
  return id != 0 ? Result::kDone : Fail(kIdsSaveRateFailed);
}

Result CatalogueService::UpdateRate(const RateInput& input, std::optional<bool> flag,
                                    ObjectId* saved) {
  RateInput named = input;
  named.record_id = FindRate(input);
  if (!CheckDescription(input.description)) return Result::kRefused;
  const std::u16string refusal = CheckRate(catalogue_.rates, locale_, named);
  if (!refusal.empty()) {
    prompt_.ShowMessage(kAppTitle, refusal, MessageIcon::kExclamation);
    return Result::kRefused;
  }
  RateStore& rates = catalogue_.rates;
  Rate stored;
  if (named.record_id == 0 ||
      rates.Seek(SeekType::kObjectId, named.record_id) != named.record_id ||
      ReadRate(rates, &stored) != 0) {
    return Refuse(kIdsNoSuchRate);
  }
  double value = 0;
  ParseRateText(input.value_text, &value);
  ObjectId id = 0;
  if (rates.Seek(SeekType::kObjectId, named.record_id) == named.record_id) {
    id = ::quillora::UpdateRate(rates, static_cast<std::uint16_t>(input.type), value,
                                input.client, input.description,
                                flag.value_or(stored.flag));
  }
  if (saved != nullptr) *saved = id;
  return id != 0 ? Result::kDone : Fail(kIdsSaveRateFailed);
}

Result CatalogueService::DeleteRate(const RateInput& input) {
  if (input.record_id == 0) {
    if (input.type < 0) return Refuse(kIdsSelectRateType);
    if (input.description.empty()) return Refuse(kIdsEnterRateDescription);
  }
  const ObjectId id = FindRate(input);
  if (id == 0) return Refuse(kIdsNoSuchRate);
  if (!Ask(kIdsDeleteItemQuestion)) return Result::kDeclined;
  return ::quillora::DeleteRate(catalogue_.rates, id) ? Result::kDone
                                                      : Fail(kIdsDeleteRateFailed);
}

RateTree CatalogueService::Rates(const Client* client) {
  if (client == nullptr) return SetupRateTree(catalogue_.rates, catalogue_.clients);
  return ChooserRateTree(catalogue_.rates, catalogue_.clients, client->name);
}

}  // namespace quillora
