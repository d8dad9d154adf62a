#include "timekeeping/bulk_edits.h"

#include <algorithm>
#include <utility>

#include "store/client_store.h"
#include "store/string_table.h"
#include "timekeeping/write_batch.h"

namespace quillora {
namespace {

// The value list behind a type, or none.
bool ListKindOf(ReplaceType type, ValueListKind* kind) {
  switch (type) {
    case ReplaceType::kPhase:
      *kind = ValueListKind::kPhase;
      return true;
    case ReplaceType::kCurrency:
      *kind = ValueListKind::kCurrency;
      return true;
    case ReplaceType::kCustom1:
      *kind = ValueListKind::kCustom1;
      return true;
    case ReplaceType::kCustom2:
      *kind = ValueListKind::kCustom2;
      return true;
    case ReplaceType::kCustom3:
      *kind = ValueListKind::kCustom3;
      return true;
    default:
      return false;
  }
}

// Every record of a catalogue store in store order, whatever its client.
std::vector<std::pair<ObjectId, PropList>> AllRecords(RecordStore& store) {
  std::vector<std::pair<ObjectId, PropList>> records;
  for (ObjectId id = store.Seek(SeekType::kBeginning, 0); id != 0;
       id = store.Seek(SeekType::kCurrent, 1)) {
    PropList props;
    store.ReadProps(nullptr, &props);
    records.emplace_back(id, std::move(props));
  }
  return records;
}

const std::u16string* TextOf(const PropList& props, PropId id) {
  for (const PropValue& v : props) {
    if (v.id == id) return &v.text;
  }
  return nullptr;
}

ProjectRecord ProjectOf(ObjectId id, const PropList& props) {
  ProjectRecord r;
  r.record_id = id;
  for (const PropValue& v : props) {
    if (v.id == kPropClientId) r.client = static_cast<ClientId>(v.number);
    if (v.id == kPropItemName) r.project = v.text;
    if (v.id == kPropTaskName) r.task = v.text;
  }
  return r;
}

ClientId ClientOf(const PropList& props) {
  for (const PropValue& v : props) {
    if (v.id == kPropClientId) return static_cast<ClientId>(v.number);
  }
  return 0;
}

// Renames the catalogue's records of the type; the number renamed.
int RenameInCatalogue(Catalogue& catalogue, const Locale& locale, ReplaceType type,
                      const std::u16string& find, const std::u16string& replacement) {
  int renamed = 0;
  ValueListKind kind;
  switch (type) {
    case ReplaceType::kClient:
      // One client: names are unique in the clients database.
      if (FindClient(catalogue.clients, find) &&
          RenameClient(catalogue.clients, replacement)) {
        ++renamed;
      }
      break;
    case ReplaceType::kProject:
    case ReplaceType::kProjectTask: {
      // Every matching record: a project's name is on each of its task records too.
      for (auto& [id, props] : AllRecords(catalogue.projects)) {
        ProjectRecord r = ProjectOf(id, props);
        std::u16string& name = type == ReplaceType::kProject ? r.project : r.task;
        if (!locale.Equal(name, find)) continue;
        name = replacement;
        if (catalogue.projects.Seek(SeekType::kObjectId, id) == id &&
            UpdateProject(catalogue.projects, r)) {
          ++renamed;
        }
      }
      break;
    }
    case ReplaceType::kTask:
    case ReplaceType::kBillTo: {
      RecordStore& store = type == ReplaceType::kTask
                               ? static_cast<RecordStore&>(catalogue.tasks)
                               : static_cast<RecordStore&>(catalogue.contacts);
      for (auto& [id, props] : AllRecords(store)) {
        const std::u16string* name = TextOf(props, kPropItemName);
        if (name == nullptr || !locale.Equal(*name, find)) continue;
        if (store.WriteProps(id, {PropValue::Number(kPropClientId, ClientOf(props)),
                                  PropValue::Text(kPropItemName, replacement)}) != 0) {
          ++renamed;
        }
        // Every task, but only the first contact.
        if (type == ReplaceType::kBillTo) break;
      }
      break;
    }
    default:
      if (ListKindOf(type, &kind)) {
        AuxStore aux(catalogue.volume);
        if (!aux.Open()) break;
        for (const ValueItem& item : ValueList(aux, kind)) {
          if (!locale.Equal(item.text, find)) continue;
          if (aux.WriteProps(
                  item.record_id,
                  {PropValue::Number(kPropListKind, static_cast<std::uint16_t>(kind)),
                   PropValue::Text(kPropItemName, replacement)}) != 0) {
            ++renamed;
          }
          break;
        }
      }
      break;
  }
  return renamed;
}

int EntryCount(EntryStore& entries) {
  DatabaseInfo info;
  if (!entries.volume().GetDatabaseInfo(entries.database_id(), &info)) return 0;
  return static_cast<int>(info.record_count);
}

// The records of the entries from `start` to `end`, both included, that
// `keep` keeps. The walk only reads: a write would make the store drop the
// rows it has read ahead.
std::vector<ObjectId> EntriesOfRange(EntryStore& entries, FileTime start, FileTime end,
                                     const std::function<bool(const TimeEntry&)>& keep) {
  std::vector<ObjectId> ids;
  TimeEntry entry;
  for (ObjectId id = entries.SeekValue(SeekType::kValueGreaterOrEqual,
                                       PropValue::Number(kPropStart, start));
       id != 0; id = entries.Seek(SeekType::kCurrent, 1)) {
    if (ReadEntry(entries, &entry) != 0 || CompareFileTime(entry.start, end) > 0) break;
    if (keep(entry)) ids.push_back(id);
  }
  return ids;
}

}  // namespace

const std::u16string& ReplaceTypeName(ReplaceType type) {
  static const int kIds[kReplaceTypeCount] = {
      kIdsReplaceTypeClient,     kIdsReplaceTypeProject,  kIdsReplaceTypePhase,
      kIdsReplaceTypeTask,       kIdsReplaceTypeCurrency, kIdsReplaceTypeBillTo,
      kIdsCustom1Label,          kIdsCustom2Label,        kIdsCustom3Label,
      kIdsReplaceTypeProjectTask};
  const int index = static_cast<int>(type);
  return LoadString(index >= 0 && index < kReplaceTypeCount ? kIds[index] : 0);
}

std::u16string& ReplaceField(TimeEntry& entry, ReplaceType type) {
  switch (type) {
    case ReplaceType::kClient:
      return entry.client;
    case ReplaceType::kProject:
      return entry.project;
    case ReplaceType::kPhase:
      return entry.phase;
    case ReplaceType::kCurrency:
      return entry.currency;
    case ReplaceType::kBillTo:
      return entry.billTo;
    case ReplaceType::kCustom1:
      return entry.custom1;
    case ReplaceType::kCustom2:
      return entry.custom2;
    case ReplaceType::kCustom3:
      return entry.custom3;
    case ReplaceType::kTask:
    case ReplaceType::kProjectTask:
    default:
      return entry.task;
  }
}

std::vector<std::u16string> FindChoices(Catalogue& catalogue, const Locale& locale,
                                        ReplaceType type) {
  std::vector<std::u16string> values;
  ValueListKind kind;
  switch (type) {
    case ReplaceType::kClient:
      for (Client& c : ClientList(catalogue.clients)) values.push_back(std::move(c.name));
      break;
    case ReplaceType::kProject:
    case ReplaceType::kProjectTask:
      for (auto& [id, props] : AllRecords(catalogue.projects)) {
        ProjectRecord r = ProjectOf(id, props);
        values.push_back(type == ReplaceType::kProject ? std::move(r.project)
                                                       : std::move(r.task));
      }
      break;
    case ReplaceType::kTask:
    case ReplaceType::kBillTo:
      for (auto& [id, props] :
           AllRecords(type == ReplaceType::kTask
                          ? static_cast<RecordStore&>(catalogue.tasks)
                          : static_cast<RecordStore&>(catalogue.contacts))) {
        if (const std::u16string* name = TextOf(props, kPropItemName))
          values.push_back(*name);
      }
      break;
    default:
      if (ListKindOf(type, &kind)) {
        AuxStore aux(catalogue.volume);
        if (aux.Open()) {
          for (ValueItem& item : ValueList(aux, kind))
            values.push_back(std::move(item.text));
        }
      }
      break;
  }
  std::erase(values, std::u16string());
  std::sort(values.begin(), values.end(),
            [&](const std::u16string& a, const std::u16string& b) {
              const int folded = locale.CompareIgnoreCase(a, b);
              return folded != 0 ? folded < 0 : locale.Compare(a, b) < 0;
            });
  values.erase(std::unique(values.begin(), values.end(),
                           [&](const std::u16string& a, const std::u16string& b) {
                             return locale.Equal(a, b);
                           }),
               values.end());
  values.insert(values.begin(), std::u16string());
  return values;
}

bool ConfirmFindAndReplace(UserPrompt& prompt, int find_index,
                           const std::u16string& replacement) {
  if (find_index <= 0) {
    prompt.ShowMessage(kAppTitle, LoadString(kIdsSelectFindText),
                       MessageIcon::kExclamation);
    return false;
  }
  // An empty replacement is refused: a value can be renamed, never cleared.
  if (replacement.empty()) {
    prompt.ShowMessage(kAppTitle, LoadString(kIdsEnterReplaceText),
                       MessageIcon::kExclamation);
    return false;
  }
  return prompt.Ask(kAppTitle, LoadString(kIdsReplaceQuestion), MessageIcon::kQuestion,
                    QuestionButtons::kYesNo, Answer::kNo) == Answer::kYes;
}

ReplaceCounts FindAndReplace(EntryStore& entries, Catalogue& catalogue,
                             const Locale& locale, UserPrompt& prompt, ReplaceType type,
                             const std::u16string& find,
                             const std::u16string& replacement) {
  ReplaceCounts counts;
  // The entries present now are the ones visited, however many there are later.
  const int count = EntryCount(entries);
  const std::u16string& status = LoadString(kIdsUpdatingRecords);
  prompt.BeginProgress(status, count + 1);
  WriteBatch batch(catalogue.volume);
  counts.catalogue_renamed =
      RenameInCatalogue(catalogue, locale, type, find, replacement);
  prompt.StepProgress(1, status);

  std::vector<ObjectId> matching;
  TimeEntry entry;
  ObjectId id = entries.Seek(SeekType::kBeginning, 0);
  for (int visited = 0; visited < count && id != 0; ++visited) {
    if (ReadEntry(entries, &entry) != 0) break;
    // Whole value, letter case counting: "ACME" and "Acme Ltd" are not "Acme".
    if (locale.Equal(ReplaceField(entry, type), find)) matching.push_back(id);
    prompt.StepProgress(visited + 2, status);
    id = entries.Seek(SeekType::kCurrent, 1);
  }
  // A failed write does not stop the run.
  for (ObjectId record : matching) {
    if (entries.Seek(SeekType::kObjectId, record) != record ||
        ReadEntry(entries, &entry) != 0) {
      ++counts.entries_failed;
      continue;
    }
    ReplaceField(entry, type) = replacement;
    if (UpdateEntry(entries, entry) && batch.Step()) {
      ++counts.entries_changed;
    } else {
      ++counts.entries_failed;
    }
  }
  // A batch that could not be committed took its writes with it; which ones
  // is not known, so none counts as changed.
  if (!batch.Finish()) {
    counts.entries_failed += counts.entries_changed;
    counts.entries_changed = 0;
  }
  prompt.EndProgress();
  return counts;
}

BulkOutcome MarkAllPaid(EntryStore& entries, UserPrompt& prompt, FileTime start,
                        FileTime end,
                        const std::function<bool(const TimeEntry&)>& selects,
                        int* marked) {
  if (marked != nullptr) *marked = 0;
  if (prompt.Ask(kAppTitle, LoadString(kIdsMarkPaidQuestion), MessageIcon::kQuestion,
                 QuestionButtons::kYesNo, Answer::kNo) != Answer::kYes) {
    return BulkOutcome::kDeclined;
  }
  const std::vector<ObjectId> ids = EntriesOfRange(
      entries, start, end, [&](const TimeEntry& e) { return !e.paid && selects(e); });
  WriteBatch batch(entries.volume());
  bool ok = true;
  int done = 0;
  TimeEntry entry;
  for (ObjectId id : ids) {
    if (entries.Seek(SeekType::kObjectId, id) != id || ReadEntry(entries, &entry) != 0) {
      ok = false;
      continue;
    }
    entry.paid = true;
    if (UpdateEntry(entries, entry) && batch.Step()) {
      ++done;
    } else {
      ok = false;
    }
  }
  ok = batch.Finish() && ok;
  if (marked != nullptr) *marked = done;
  return ok ? BulkOutcome::kDone : BulkOutcome::kFailed;
}

BulkOutcome DeleteDataByCriteria(EntryStore& entries, const Locale& locale,
                                 UserPrompt& prompt, const DeleteCriteria& criteria,
                                 int* deleted) {
  if (deleted != nullptr) *deleted = 0;
  if (prompt.Ask(kAppTitle, LoadString(kIdsDeleteDataQuestion), MessageIcon::kWarning,
                 QuestionButtons::kOkCancel, Answer::kCancel) != Answer::kOk) {
    return BulkOutcome::kDeclined;
  }
  std::vector<ObjectId> ids;
  if (criteria.by_clients) {
    auto named = [&](const TimeEntry& e) {
      return std::any_of(
          criteria.clients.begin(), criteria.clients.end(),
          [&](const std::u16string& c) { return locale.Equal(e.client, c); });
    };
    // Every entry, whatever its date.
    TimeEntry entry;
    for (ObjectId id = entries.Seek(SeekType::kBeginning, 0); id != 0;
         id = entries.Seek(SeekType::kCurrent, 1)) {
      if (ReadEntry(entries, &entry) != 0) break;
      if (named(entry)) ids.push_back(id);
    }
  } else {
    // Both days whole: an entry without a start time stands at midnight of
    // its day and belongs to the range when its day does.
    ids = EntriesOfRange(entries, criteria.start, criteria.end,
                         [](const TimeEntry&) { return true; });
  }
  WriteBatch batch(entries.volume());
  bool ok = true;
  int done = 0;
  for (ObjectId id : ids) {
    if (entries.DeleteRecord(id) && batch.Step()) {
      ++done;
    } else {
      ok = false;
    }
  }
  ok = batch.Finish() && ok;
  if (deleted != nullptr) *deleted = done;
  return ok ? BulkOutcome::kDone : BulkOutcome::kFailed;
}

}  // namespace quillora
