#include "reports/report_editor.h"

namespace quillora {

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

}  // namespace quillora
