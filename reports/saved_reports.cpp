#include "reports/saved_reports.h"

#include "store/string_table.h"

namespace quillora {

namespace {

const std::vector<PropId> kKindAndName = {kPropListKind, kPropItemName};

// Kind and name of the store's current record; false when it cannot be read.
bool ReadKindAndName(AuxStore& aux, std::uint64_t* kind, std::u16string* name) {
  PropList props;
  if (aux.ReadProps(&kKindAndName, &props) == 0 || props.size() != 2) return false;
  *kind = (props[0].flags & kPropNotFound) ? UINT64_MAX : props[0].number;
  if (props[1].flags & kPropNotFound) {
    name->clear();
  } else {
    *name = std::move(props[1].text);
  }
  return true;
}

std::vector<ObjectId> ReportsNamed(AuxStore& aux, std::u16string_view name) {
  std::vector<ObjectId> ids;
  for (const SavedReportName& r : ListSavedReports(aux)) {
    if (r.name == name) ids.push_back(r.record_id);
  }
  return ids;
}

}  // namespace

bool OpenSavedReports(AuxStore& aux) {
  aux.LoadName();
  if (!aux.Exists(aux.name()) && !aux.Create()) return false;
  return aux.OpenDatabase(aux.name(), kPropItemName, 0, nullptr);
}

std::vector<SavedReportName> ListSavedReports(AuxStore& aux) {
  std::vector<SavedReportName> reports;
  for (ObjectId id = aux.Seek(SeekType::kBeginning, 0); id != 0;
       id = aux.Seek(SeekType::kCurrent, 1)) {
    std::uint64_t kind = 0;
    std::u16string name;
    if (!ReadKindAndName(aux, &kind, &name)) break;
    if (kind == kSavedReportKind) reports.push_back({std::move(name), id});
  }
  return reports;
}

SavedReportLookup LoadSavedReport(AuxStore& aux, std::u16string_view name,
                                  ReportDefinition* definition, ObjectId* record_id) {
  const PropValue wanted = PropValue::Text(kPropItemName, std::u16string(name));
  for (ObjectId id = aux.SeekValue(SeekType::kValueFirstEqual, wanted); id != 0;
       id = aux.SeekValue(SeekType::kValueNextEqual, wanted)) {
    PropList props;
    if (aux.ReadProps(nullptr, &props) == 0) break;
    bool is_report = false;
    const PropValue* block = nullptr;
    for (const PropValue& v : props) {
      if (v.id == kPropListKind) is_report = v.number == kSavedReportKind;
      if (v.id == kPropReportDefinition) block = &v;
    }
    if (!is_report) continue;
    *record_id = id;
    if (block == nullptr ||
        !ParseReportDefinition(block->blob.data(), block->blob.size(), definition)) {
      return SavedReportLookup::kDamaged;
    }
    return SavedReportLookup::kFound;
  }
  return ListSavedReports(aux).empty() ? SavedReportLookup::kNoSavedReport
                                       : SavedReportLookup::kNotFound;
}

ObjectId WriteSavedReport(AuxStore& aux, ObjectId record_id, std::u16string_view name,
                          const ReportDefinition& definition) {
  const auto block = SerializeReportDefinition(definition);
  const PropList values = {
      PropValue::Number(kPropListKind, kSavedReportKind),
      PropValue::Text(kPropItemName, std::u16string(name)),
      PropValue::Blob(kPropReportDefinition,
                      std::vector<std::uint8_t>(block.begin(), block.end())),
  };
  return aux.WriteProps(record_id, values);
}

bool SaveNameSeekReachesReport(AuxStore& aux, std::u16string_view name) {
  PropValue value = PropValue::Text(kPropItemName, std::u16string(name));
  ObjectId id = aux.SeekValue(SeekType::kValueSmallerOrEqual, value);
  if (id == 0) id = aux.SeekValue(SeekType::kValueGreater, value);
  while (id != 0) {
    std::uint64_t kind = 0;
    std::u16string found_name;
    if (!ReadKindAndName(aux, &kind, &found_name)) return false;
    if (kind == kSavedReportKind) return true;
    // Each step seeks past the name of the record just read, so the walk
    // moves on through the names in order and always ends.
    value.text = std::move(found_name);
    id = aux.SeekValue(SeekType::kValueGreater, value);
  }
  return false;
}

SaveReportResult SaveReport(ObjectStore& volume, UserPrompt& prompt,
                            std::u16string_view entered_name, const ReportEditor& editor,
                            CurrentReport* report) {
  if (entered_name != report->name) {
    report->name = std::u16string(entered_name);
    report->record_id = 0;
  }
  AuxStore aux(volume);
  // A store that cannot be opened skips the question; the write then fails.
  if (OpenSavedReports(aux) && SaveNameSeekReachesReport(aux, report->name)) {
    if (prompt.Ask(kAppTitle, LoadString(kIdsReportExistsQuestion),
                   MessageIcon::kQuestion, QuestionButtons::kYesNo,
                   Answer::kYes) != Answer::kYes) {
      return SaveReportResult::kDeclined;
    }
  }
  editor.Fill(&report->definition);
  report->record_id =
      WriteSavedReport(aux, report->record_id, report->name, report->definition);
  return report->record_id != 0 ? SaveReportResult::kSaved : SaveReportResult::kFailed;
}

SavedReportChange DeleteSavedReports(ObjectStore& volume, UserPrompt& prompt,
                                     std::u16string_view name, Settings* settings) {
  AuxStore aux(volume);
  if (!OpenSavedReports(aux)) return SavedReportChange::kFailed;
  const std::vector<ObjectId> ids = ReportsNamed(aux, name);
  if (ids.empty()) {
    return ListSavedReports(aux).empty() ? SavedReportChange::kNoSavedReport
                                         : SavedReportChange::kNotFound;
  }
  if (prompt.Ask(kAppTitle, LoadString(kIdsDeleteItemQuestion), MessageIcon::kWarning,
                 QuestionButtons::kYesNo, Answer::kNo) != Answer::kYes) {
    return SavedReportChange::kDeclined;
  }
  bool ok = true;
  for (ObjectId id : ids) ok = aux.DeleteRecord(id) && ok;
  if (settings != nullptr && settings->default_report == name)
    settings->default_report.clear();
  return ok ? SavedReportChange::kDone : SavedReportChange::kFailed;
}

SavedReportChange RenameSavedReports(ObjectStore& volume, UserPrompt& prompt,
                                     std::u16string_view old_name,
                                     std::u16string_view new_name, Settings* settings) {
  AuxStore aux(volume);
  if (!OpenSavedReports(aux)) return SavedReportChange::kFailed;
  const std::vector<ObjectId> ids = ReportsNamed(aux, old_name);
  if (ids.empty()) {
    return ListSavedReports(aux).empty() ? SavedReportChange::kNoSavedReport
                                         : SavedReportChange::kNotFound;
  }
  if (old_name == new_name) return SavedReportChange::kDone;
  const std::vector<ObjectId> others = ReportsNamed(aux, new_name);
  if (!others.empty()) {
    if (prompt.Ask(kAppTitle, LoadString(kIdsReportExistsRenameQuestion),
                   MessageIcon::kQuestion, QuestionButtons::kYesNo,
                   Answer::kYes) != Answer::kYes) {
      return SavedReportChange::kDeclined;
    }
    for (ObjectId id : others) {
      if (!aux.DeleteRecord(id)) return SavedReportChange::kFailed;
    }
  }
  bool ok = true;
  for (ObjectId id : ids) {
    ok = aux.WriteProps(id, {PropValue::Text(kPropItemName, std::u16string(new_name))}) !=
             0 &&
         ok;
  }
  if (settings != nullptr && settings->default_report == old_name) {
    settings->default_report = std::u16string(new_name);
  }
  return ok ? SavedReportChange::kDone : SavedReportChange::kFailed;
}

}  // namespace quillora
