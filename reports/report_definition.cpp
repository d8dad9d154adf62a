#include "reports/report_definition.h"

#include <algorithm>

#include "store/string_table.h"
#include "store/time_entry.h"

namespace quillora {

const std::array<ReportFieldInfo, kReportFieldCount> kReportFields = {{
    {u"Entry Date", entry_prop::kStart},
    {u"Client", entry_prop::kClient},
    {u"Project", entry_prop::kProject},
    {u"Phase", entry_prop::kPhase},
    {u"Task", entry_prop::kTask},
    {u"Duration", entry_prop::kDuration},
    {u"Currency", entry_prop::kCurrency},
    {u"Billable/Non-Billable", entry_prop::kBillable},
    {u"Paid/Unpaid", entry_prop::kPaid},
    {u"Start Time", entry_prop::kLegacyStartTime},
    {u"Bill To", entry_prop::kBillTo},
    {u"Custom 1", entry_prop::kCustom1},
    {u"Custom 2", entry_prop::kCustom2},
    {u"Custom 3", entry_prop::kCustom3},
    {u"Rate Type", entry_prop::kRateType},
    {u"Amount", 0},
    {u"Notes", 0},
    {u"Rate", 0},
}};

const std::array<const char16_t*, 3> kDateSelectionChoices = {u"None", u"Range",
                                                              u"Start Date Only"};
const std::array<const char16_t*, 2> kDetailTypeChoices = {u"Group By Field", u"Tabular"};

const std::array<GroupByChoice, 10> kGroupByChoices = {{
    {u"Client", kFieldClient},
    {u"Project", kFieldProject},
    {u"Phase", kFieldPhase},
    {u"Task", kFieldTask},
    {u"Currency", kFieldCurrency},
    {u"Bill To", kFieldBillTo},
    {u"Custom 1", kFieldCustom1},
    {u"Custom 2", kFieldCustom2},
    {u"Custom 3", kFieldCustom3},
    {u"Project-Task", kFieldProject},
}};

int ReportFieldOfProperty(PropId property) {
  if (property == 0) return -1;
  for (int i = 0; i < kReportFieldCount; ++i) {
    if (kReportFields[i].property == property) return i;
  }
  return -1;
}

char16_t ReportFieldDigit(int field) {
  if (field < 0 || field >= kReportFieldCount) return u'0';
  return field < 10 ? static_cast<char16_t>(u'0' + field)
                    : static_cast<char16_t>(u'a' + field - 10);
}

int ReportFieldFromDigit(char16_t digit) {
  int value = -1;
  if (digit == 0) {
    value = 0;
  } else if (digit >= u'0' && digit <= u'9') {
    value = digit - u'0';
  } else if (digit >= u'a' && digit <= u'z') {
    value = digit - u'a' + 10;
  } else if (digit >= u'A' && digit <= u'Z') {
    value = digit - u'A' + 10;
  }
  return value < kReportFieldCount ? value : -1;
}

std::u16string ReportDefinition::Title() const {
  const auto end = std::find(title_slot.begin(), title_slot.end(), u'\0');
  return std::u16string(title_slot.begin(), end);
}

void ReportDefinition::SetTitle(std::u16string_view title) {
  title_slot.fill(0);
  const std::size_t n = std::min(title.size(), kReportTitleChars);
  std::copy_n(title.begin(), n, title_slot.begin());
}

int ReportDefinition::ColumnField(int slot) const {
  if (slot < 0 || slot >= kReportFieldCount) return -1;
  return ReportFieldFromDigit(column_order[slot]);
}

bool ReportDefinition::IsShown(int field) const {
  return field >= 0 && field < kReportFieldCount && (shown_fields >> field) & 1u;
}

ReportDefinition ZeroReportDefinition() { return ReportDefinition(); }

ReportDefinition NewReportDefinition() {
  ReportDefinition d;
  d.SetTitle(u"Time Report");
  d.detail_type = kReportGroupByField;
  d.date_selection = kReportDateRange;
  d.group_by_property = kReportFields[kFieldClient].property;
  for (int i = 0; i < kReportFieldCount; ++i) d.column_order[i] = ReportFieldDigit(i);
  for (int field : {kFieldEntryDate, kFieldProject, kFieldTask, kFieldDuration,
                    kFieldRate, kFieldAmount}) {
    d.shown_fields |= 1u << field;
  }
  return d;
}

namespace {

void Put16(std::uint8_t* at, std::uint16_t v) {
  at[0] = static_cast<std::uint8_t>(v);
  at[1] = static_cast<std::uint8_t>(v >> 8);
}
void Put32(std::uint8_t* at, std::uint32_t v) {
  Put16(at, static_cast<std::uint16_t>(v));
  Put16(at + 2, static_cast<std::uint16_t>(v >> 16));
}
std::uint16_t Get16(const std::uint8_t* at) {
  return static_cast<std::uint16_t>(at[0] | (at[1] << 8));
}
std::uint32_t Get32(const std::uint8_t* at) {
  return Get16(at) | (static_cast<std::uint32_t>(Get16(at + 2)) << 16);
}

// The seven hide flags in block order, from offset 136.
const std::array<std::uint16_t ReportDefinition::*, 7> kFlagWords = {
    &ReportDefinition::hide_group_title,
    &ReportDefinition::hide_group_total_hours,
    &ReportDefinition::hide_total_billable_hours,
    &ReportDefinition::hide_total_unpaid_amount,
    &ReportDefinition::hide_total_paid_amount,
    &ReportDefinition::hide_total_non_billable_hours,
    &ReportDefinition::hide_report_date,
};

constexpr std::size_t kTitleOffset = 0;
constexpr std::size_t kDetailTypeOffset = 128;
constexpr std::size_t kDateSelectionOffset = 130;
constexpr std::size_t kGroupByOffset = 132;
constexpr std::size_t kFlagsOffset = 136;
constexpr std::size_t kProjectTaskOffset = 150;
constexpr std::size_t kColumnOrderOffset = 152;
constexpr std::size_t kReservedOffset = 188;
constexpr std::size_t kShownFieldsOffset = 216;
constexpr std::uint32_t kAllFieldBits = (1u << kReportFieldCount) - 1;

}  // namespace

std::array<std::uint8_t, kReportDefinitionSize> SerializeReportDefinition(
    const ReportDefinition& d) {
  std::array<std::uint8_t, kReportDefinitionSize> block{};
  std::uint8_t* b = block.data();
  for (std::size_t i = 0; i < d.title_slot.size(); ++i) {
    Put16(b + kTitleOffset + 2 * i, d.title_slot[i]);
  }
  Put16(b + kDetailTypeOffset, d.detail_type);
  Put16(b + kDateSelectionOffset, d.date_selection);
  Put32(b + kGroupByOffset, d.group_by_property);
  for (std::size_t i = 0; i < kFlagWords.size(); ++i) {
    Put16(b + kFlagsOffset + 2 * i, d.*kFlagWords[i]);
  }
  Put16(b + kProjectTaskOffset, d.group_by_project_task);
  for (std::size_t i = 0; i < d.column_order.size(); ++i) {
    Put16(b + kColumnOrderOffset + 2 * i, d.column_order[i]);
  }
  std::copy(d.reserved.begin(), d.reserved.end(), b + kReservedOffset);
  Put32(b + kShownFieldsOffset, d.shown_fields);
  return block;
}

bool ParseReportDefinition(const std::uint8_t* bytes, std::size_t size,
                           ReportDefinition* definition) {
  if (bytes == nullptr || size != kReportDefinitionSize) return false;
  ReportDefinition d;
  bool terminated = false;
  for (std::size_t i = 0; i < d.title_slot.size(); ++i) {
    d.title_slot[i] = Get16(bytes + kTitleOffset + 2 * i);
    if (d.title_slot[i] == 0) terminated = true;
  }
  if (!terminated) return false;
  d.detail_type = Get16(bytes + kDetailTypeOffset);
  d.date_selection = Get16(bytes + kDateSelectionOffset);
  if (d.detail_type > kReportTabular || d.date_selection > kReportDateStartOnly)
    return false;
  d.group_by_property = Get32(bytes + kGroupByOffset);
  if (d.group_by_property != 0 && ReportFieldOfProperty(d.group_by_property) < 0) {
    return false;
  }
  for (std::size_t i = 0; i < kFlagWords.size(); ++i) {
    d.*kFlagWords[i] = Get16(bytes + kFlagsOffset + 2 * i);
    if (d.*kFlagWords[i] > 1) return false;
  }
  // The reserved word is taken as it is: only 1 means anything.
  d.group_by_project_task = Get16(bytes + kProjectTaskOffset);
  for (std::size_t i = 0; i < d.column_order.size(); ++i) {
    d.column_order[i] = Get16(bytes + kColumnOrderOffset + 2 * i);
    if (ReportFieldFromDigit(d.column_order[i]) < 0) return false;
  }
  std::copy_n(bytes + kReservedOffset, d.reserved.size(), d.reserved.begin());
  d.shown_fields = Get32(bytes + kShownFieldsOffset);
  if (d.shown_fields & ~kAllFieldBits) return false;
  *definition = d;
  return true;
}

// --- The report editor ---

namespace {

ReportEditorItem Heading(const char16_t* label) {
  ReportEditorItem item;
  item.label = label;
  return item;
}

ReportEditorItem Check(const char16_t* label) {
  ReportEditorItem item;
  item.label = label;
  item.kind = ReportItemKind::kCheck;
  return item;
}

template <std::size_t N>
ReportEditorItem Choice(const char16_t* label,
                        const std::array<const char16_t*, N>& texts) {
  ReportEditorItem item;
  item.label = label;
  item.kind = ReportItemKind::kChoice;
  item.choices.assign(texts.begin(), texts.end());
  return item;
}

bool IsFieldRow(int row) {
  return row >= kRowFirstField && row < kRowFirstField + kReportFieldCount;
}

// A stored choice index, or the first text when the choice has no such one.
int ChoiceIndex(std::uint16_t stored, std::size_t count) {
  return stored < count ? stored : 0;
}

}  // namespace

ReportEditor::ReportEditor() { Load(ZeroReportDefinition()); }

void ReportEditor::Load(const ReportDefinition& d) {
  items_.clear();
  items_.push_back(Heading(kHeaderAreaLabel));
  ReportEditorItem title;
  title.label = kTitleLabel;
  title.kind = ReportItemKind::kText;
  title.text = d.Title();
  items_.push_back(title);
  items_.push_back(Choice(kDateSelectionLabel, kDateSelectionChoices));
  items_.back().choice = ChoiceIndex(d.date_selection, kDateSelectionChoices.size());
  items_.push_back(Heading(kDetailAreaLabel));
  items_.push_back(Choice(kTypeLabel, kDetailTypeChoices));
  items_.back().choice = ChoiceIndex(d.detail_type, kDetailTypeChoices.size());

  ReportEditorItem group_by;
  group_by.label = kGroupByLabel;
  group_by.kind = ReportItemKind::kChoice;
  for (const GroupByChoice& c : kGroupByChoices) group_by.choices.push_back(c.label);
  const int group_field = ReportFieldOfProperty(d.group_by_property);
  for (int i = 0; i < static_cast<int>(kGroupByChoices.size()); ++i) {
    if (kGroupByChoices[i].field == group_field) {
      group_by.choice = i;
      break;
    }
  }
  if (group_field == kFieldProject && d.group_by_project_task == 1) {
    group_by.choice = kGroupByProjectTask;
  }
  items_.push_back(group_by);
  items_.push_back(Check(kGroupByTitleLabel));
  items_.back().checked = d.hide_group_title == 0;
  items_.push_back(Check(kGroupTotalHoursLabel));
  items_.back().checked = d.hide_group_total_hours == 0;

  items_.push_back(Heading(kTableFieldsLabel));
  for (int slot = 0; slot < kReportFieldCount; ++slot) {
    int field = d.ColumnField(slot);
    if (field < 0) field = 0;
    ReportEditorItem row = Check(kReportFields[field].label);
    if (field == kFieldDuration) row.kind = ReportItemKind::kDurationCheck;
    row.field = field;
    row.checked = d.IsShown(field);
    items_.push_back(row);
  }

  items_.push_back(Heading(kFooterAreaLabel));
  const std::pair<const char16_t*, std::uint16_t> footer[] = {
      {kTotalBillableHoursLabel, d.hide_total_billable_hours},
      {kTotalUnpaidAmountLabel, d.hide_total_unpaid_amount},
      {kTotalPaidAmountLabel, d.hide_total_paid_amount},
      {kTotalNonBillableHoursLabel, d.hide_total_non_billable_hours},
      {kReportDateLabel, d.hide_report_date},
  };
  for (const auto& [label, hidden] : footer) {
    items_.push_back(Check(label));
    items_.back().checked = hidden == 0;
  }
}

void ReportEditor::Fill(ReportDefinition* d) const {
  d->SetTitle(items_[kRowTitle].text);
  d->date_selection = static_cast<std::uint16_t>(items_[kRowDateSelection].choice);
  d->detail_type = static_cast<std::uint16_t>(items_[kRowType].choice);
  if (d->detail_type == kReportGroupByField) {
    const int choice = items_[kRowGroupBy].choice;
    d->group_by_property = kReportFields[kGroupByChoices[choice].field].property;
    d->group_by_project_task = choice == kGroupByProjectTask ? 1 : 0;
    d->hide_group_title = items_[kRowGroupByTitle].checked ? 0 : 1;
    d->hide_group_total_hours = items_[kRowGroupTotalHours].checked ? 0 : 1;
  }
  d->shown_fields = 0;
  for (int k = 0; k < kReportFieldCount; ++k) {
    const ReportEditorItem& row = items_[kRowFirstField + k];
    d->column_order[k] = ReportFieldDigit(row.field);
    if (row.checked) d->shown_fields |= 1u << row.field;
  }
  d->hide_total_billable_hours = items_[kRowTotalBillableHours].checked ? 0 : 1;
  d->hide_total_unpaid_amount = items_[kRowTotalUnpaidAmount].checked ? 0 : 1;
  d->hide_total_paid_amount = items_[kRowTotalPaidAmount].checked ? 0 : 1;
  d->hide_total_non_billable_hours = items_[kRowTotalNonBillableHours].checked ? 0 : 1;
  d->hide_report_date = items_[kRowReportDate].checked ? 0 : 1;
}

bool ReportEditor::IsEnabled(int row) const {
  if (row < 0 || row >= kReportEditorRowCount) return false;
  if (items_[row].kind == ReportItemKind::kHeading) return false;
  if (row >= kRowGroupBy && row <= kRowGroupTotalHours) {
    return items_[kRowType].choice == kReportGroupByField;
  }
  return true;
}

bool ReportEditor::SetText(int row, std::u16string_view text) {
  if (!IsEnabled(row) || items_[row].kind != ReportItemKind::kText) return false;
  if (text.size() > kReportTitleChars) return false;
  items_[row].text = std::u16string(text);
  return true;
}

bool ReportEditor::SetChoice(int row, int choice) {
  if (!IsEnabled(row) || items_[row].kind != ReportItemKind::kChoice) return false;
  if (choice < 0 || choice >= static_cast<int>(items_[row].choices.size())) return false;
  items_[row].choice = choice;
  return true;
}

bool ReportEditor::SetChecked(int row, bool checked) {
  if (!IsEnabled(row)) return false;
  const ReportItemKind kind = items_[row].kind;
  if (kind != ReportItemKind::kCheck && kind != ReportItemKind::kDurationCheck)
    return false;
  items_[row].checked = checked;
  return true;
}

bool ReportEditor::MoveFieldRow(int from_row, int to_row) {
  if (!IsFieldRow(from_row) || !IsFieldRow(to_row)) return false;
  ReportEditorItem moved = items_[from_row];
  items_.erase(items_.begin() + from_row);
  items_.insert(items_.begin() + to_row, std::move(moved));
  return true;
}

int ReportEditor::FindRow(std::u16string_view label) const {
  for (int row = 0; row < kReportEditorRowCount; ++row) {
    if (items_[row].label == label) return row;
  }
  return -1;
}

int ReportEditor::RowOfField(int field) const {
  for (int row = kRowFirstField; row < kRowFirstField + kReportFieldCount; ++row) {
    if (items_[row].field == field) return row;
  }
  return -1;
}

// --- Saved reports ---

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
