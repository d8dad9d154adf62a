// Report definitions: what an HTML report shows, kept as one fixed 220-byte
// block, and the field table its columns are chosen from.
//
// Block layout (little-endian):
//     0  128  title, 64 wide characters with the terminator
//   128    2  detail type: 0 "Group By Field", 1 "Tabular"
//   130    2  date selection: 0 "None", 1 "Range", 2 "Start Date Only"
//   132    4  group-by property id (from the field table)
//   136    2  hide group title        138  2  hide group total hours
//   140    2  hide total billable hours
//   142    2  hide total unpaid amount 144  2  hide total paid amount
//   146    2  hide total non-billable hours
//   148    2  hide report date
//   150    2  reserved: 1 groups by project and then task ("Project-Task")
//   152   36  column order: 18 wide characters, slot k holds the base-32
//             digit ('0'..'9', 'a'..'h') of the field in table position k
//   188   28  reserved, kept as read
//   216    4  shown fields: bit i set shows field i as a column
// The hide flags are inverted so that an all-zero block shows everything.
#ifndef QUILLORA_REPORTS_REPORT_DEFINITION_H_
#define QUILLORA_REPORTS_REPORT_DEFINITION_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/object_store.h"

namespace quillora {

inline constexpr std::size_t kReportDefinitionSize = 220;
inline constexpr int kReportFieldCount = 18;
// Title characters the title item takes (the 64th slot is the terminator).
inline constexpr std::size_t kReportTitleChars = 63;
// Characters of a report name ("Enter a name for the report:").
inline constexpr std::size_t kReportNameChars = 64;

enum ReportDetailType : std::uint16_t {
  kReportGroupByField = 0,
  kReportTabular = 1,
};

enum ReportDateSelection : std::uint16_t {
  kReportDateNone = 0,
  kReportDateRange = 1,
  kReportDateStartOnly = 2,
};

// Field indexes: the report's columns.
enum ReportField : int {
  kFieldEntryDate = 0,
  kFieldClient = 1,
  kFieldProject = 2,
  kFieldPhase = 3,
  kFieldTask = 4,
  kFieldDuration = 5,
  kFieldCurrency = 6,
  kFieldBillable = 7,
  kFieldPaid = 8,
  kFieldStartTime = 9,
  kFieldBillTo = 10,
  kFieldCustom1 = 11,
  kFieldCustom2 = 12,
  kFieldCustom3 = 13,
  kFieldRateType = 14,
  kFieldAmount = 15,
  kFieldNotes = 16,
  kFieldRate = 17,
};

// The field table: each field's label and the entry property it is bound to
// (0 for Amount, Notes and Rate, which the report computes or reads itself).
struct ReportFieldInfo {
  const char16_t* label;
  PropId property;
};
extern const std::array<ReportFieldInfo, kReportFieldCount> kReportFields;

// The field index whose property is `property`, the first one when several
// are; -1 when none is (property 0 included).
int ReportFieldOfProperty(PropId property);

// The base-32 digit of a field index ('0'..'9', 'a'..'h'), and back: a digit
// of either case, or the terminator (read as 0, as an all-zero block has it);
// -1 for any other character or a value outside 0..17.
char16_t ReportFieldDigit(int field);
int ReportFieldFromDigit(char16_t digit);

struct ReportDefinition {
  // The title slot as stored, terminator and whatever follows it included, so
  // a block read and written again is the same block.
  std::array<char16_t, 64> title_slot{};
  std::uint16_t detail_type = kReportGroupByField;
  std::uint16_t date_selection = kReportDateNone;
  std::uint32_t group_by_property = 0;
  std::uint16_t hide_group_title = 0;
  std::uint16_t hide_group_total_hours = 0;
  std::uint16_t hide_total_billable_hours = 0;
  std::uint16_t hide_total_unpaid_amount = 0;
  std::uint16_t hide_total_paid_amount = 0;
  std::uint16_t hide_total_non_billable_hours = 0;
  std::uint16_t hide_report_date = 0;
  std::uint16_t group_by_project_task = 0;  // the reserved word at 150
  std::array<char16_t, kReportFieldCount> column_order{};
  std::array<std::uint8_t, 28> reserved{};  // offset 188
  std::uint32_t shown_fields = 0;

  // The title up to its terminator.
  std::u16string Title() const;
  // Copies at most 63 characters and zero-fills the rest of the slot.
  void SetTitle(std::u16string_view title);
  // The field in table position `slot` (ReportFieldFromDigit of its digit).
  int ColumnField(int slot) const;
  bool IsShown(int field) const;

  friend bool operator==(const ReportDefinition&, const ReportDefinition&) = default;
};

// A zero-filled block: shows every group and footer item, groups by property
// 0 (which matches no field) and has no columns.
ReportDefinition ZeroReportDefinition();

// The definition of a new report: "Time Report" over a range, grouped by
// client, with Entry Date, Project, Task, Duration, Rate and Amount shown, the
// fields in their own order, and every group and footer item shown.
ReportDefinition NewReportDefinition();

// The 220-byte block.
std::array<std::uint8_t, kReportDefinitionSize> SerializeReportDefinition(
    const ReportDefinition& definition);

// Reads a block. Nothing (and `definition` untouched) when the block is
// damaged: not 220 bytes, a title without its terminator, a detail type or
// date selection out of range, a flag word other than 0 or 1, a group-by
// property that is neither 0 nor a field's property, a column slot that is not
// a field digit (or the terminator), or a shown-field bit above 17. The
// reserved bytes are kept as they are.
bool ParseReportDefinition(const std::uint8_t* bytes, std::size_t size,
                           ReportDefinition* definition);

}  // namespace quillora

#endif  // QUILLORA_REPORTS_REPORT_DEFINITION_H_
