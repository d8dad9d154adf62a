#include "reports/report_definition.h"

#include <algorithm>

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

}  // namespace quillora
