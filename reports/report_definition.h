// Report definitions: what an HTML report shows, kept as one fixed 220-byte
// block; the report editor's property list over it; and the saved reports of
// "Quillora Data 2".
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
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/object_store.h"
#include "platform/user_prompt.h"
#include "store/record_store.h"
#include "store/settings.h"

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

// --- The report editor ---

// Texts of the editor's property list.
inline constexpr char16_t kHeaderAreaLabel[] = u"Header Area";
inline constexpr char16_t kTitleLabel[] = u"Title: ";
inline constexpr char16_t kDateSelectionLabel[] = u"Date Selection: ";
inline constexpr char16_t kDetailAreaLabel[] = u"Detail Area";
inline constexpr char16_t kTypeLabel[] = u"Type:";
inline constexpr char16_t kGroupByLabel[] = u"Group By: ";
inline constexpr char16_t kGroupByTitleLabel[] = u"Group By Title";
inline constexpr char16_t kGroupTotalHoursLabel[] = u"Group Total Hours";
inline constexpr char16_t kTableFieldsLabel[] = u"Table Fields";
inline constexpr char16_t kFooterAreaLabel[] = u"Footer Area";
inline constexpr char16_t kTotalBillableHoursLabel[] = u"Total Billable Hours";
inline constexpr char16_t kTotalUnpaidAmountLabel[] = u"Total Unpaid Amount";
inline constexpr char16_t kTotalPaidAmountLabel[] = u"Total Paid Amount";
inline constexpr char16_t kTotalNonBillableHoursLabel[] = u"Total Non-Billable Hours";
inline constexpr char16_t kReportDateLabel[] = u"Report Date";

extern const std::array<const char16_t*, 3> kDateSelectionChoices;  // "None" ..
extern const std::array<const char16_t*, 2>
    kDetailTypeChoices;  // "Group By Field", "Tabular"

// The group-by choice: its ten options and the field each stands for.
// "Project-Task" groups by the project and then by the task.
inline constexpr int kGroupByProjectTask = 9;
struct GroupByChoice {
  const char16_t* label;
  int field;
};
extern const std::array<GroupByChoice, 10> kGroupByChoices;

// The rows of the editor, in list order.
enum ReportEditorRow : int {
  kRowHeaderArea = 0,
  kRowTitle = 1,
  kRowDateSelection = 2,
  kRowDetailArea = 3,
  kRowType = 4,
  kRowGroupBy = 5,
  kRowGroupByTitle = 6,
  kRowGroupTotalHours = 7,
  kRowTableFields = 8,
  kRowFirstField = 9,  // 9..26, one per field in column order
  kRowFooterArea = 27,
  kRowTotalBillableHours = 28,
  kRowTotalUnpaidAmount = 29,
  kRowTotalPaidAmount = 30,
  kRowTotalNonBillableHours = 31,
  kRowReportDate = 32,
  kReportEditorRowCount = 33,
};

enum class ReportItemKind {
  kHeading,        // an area heading, no value
  kText,           // the title
  kChoice,         // a choice among texts
  kCheck,          // a check mark
  kDurationCheck,  // the Duration field row: a check item of its own kind
};

struct ReportEditorItem {
  std::u16string label;
  ReportItemKind kind = ReportItemKind::kHeading;
  std::u16string text;                  // kText
  std::vector<std::u16string> choices;  // kChoice
  int choice = 0;                       // kChoice: index into choices
  bool checked = false;                 // kCheck, kDurationCheck
  int field = -1;                       // field rows: the field index
};

// The report editor without its window: 33 rows as the list shows them.
class ReportEditor {
 public:
  // Loaded from a zero-filled definition.
  ReportEditor();

  // Fills the rows from a definition: the title, the choices by their stored
  // index (an index the choice does not have selects its first text), the
  // group-by choice of the first field whose property is stored (Project-Task
  // when the reserved word says so; the first choice when no option stands
  // for that field), and one field row per column slot, checked when the
  // field's bit is set.
  void Load(const ReportDefinition& definition);

  // Writes the rows into a definition. The group-by property and both group
  // flags are written only while the type is "Group By Field"; otherwise they
  // keep what `definition` held. Column order and shown fields are rebuilt
  // from the field rows; the footer flags are written inverted.
  void Fill(ReportDefinition* definition) const;

  const std::vector<ReportEditorItem>& items() const { return items_; }
  const ReportEditorItem& item(int row) const { return items_[row]; }

  // Rows 5 to 7 are enabled only while the type is "Group By Field"; every
  // other row that has a value is enabled; headings are not.
  bool IsEnabled(int row) const;

  // Changes one row; false (nothing changed) for a row of another kind, a
  // disabled row, a choice out of range, or a title over 63 characters.
  bool SetText(int row, std::u16string_view text);
  bool SetChoice(int row, int choice);
  bool SetChecked(int row, bool checked);

  // Moves a field row to another field position (both 9..26), the rows in
  // between shifting by one: the table order of the columns.
  bool MoveFieldRow(int from_row, int to_row);

  // The row labelled `label` exactly (the label as the list shows it, e.g.
  // "Title: ", "Group By Title", "Client"); -1 when none is.
  int FindRow(std::u16string_view label) const;
  // The field row of a field index; -1 when none holds it.
  int RowOfField(int field) const;

 private:
  std::vector<ReportEditorItem> items_;
};

// --- Saved reports ---

// Record kind (property 1102) of a saved report, and its block (1103).
inline constexpr std::uint16_t kSavedReportKind = 10;
inline constexpr PropId kPropReportDefinition = MakePropId(1103, kPropBlob);

// "Quillora Data 2" opened on the report name (1101), created with both sort
// orders when missing. False when it cannot be opened.
bool OpenSavedReports(AuxStore& aux);

struct SavedReportName {
  std::u16string name;
  ObjectId record_id = 0;
};

// The saved reports in name order (the store's order: alphabetical, letter
// case telling names apart). Empty when there are none or the walk fails.
std::vector<SavedReportName> ListSavedReports(AuxStore& aux);

enum class SavedReportLookup {
  kFound,
  kNoSavedReport,  // the store holds no saved report at all
  kNotFound,       // none of that name
  kDamaged,        // its block does not parse
};

// Finds the first saved report named exactly `name` in the store's order and
// reads its definition. `record_id` gets its record id whenever one is found
// (damaged too).
SavedReportLookup LoadSavedReport(AuxStore& aux, std::u16string_view name,
                                  ReportDefinition* definition, ObjectId* record_id);

// Writes a saved report record {1102 = 10, 1101 = name, 1103 = block} into
// record `record_id` (a new record when 0). The record id written, 0 on
// failure.
ObjectId WriteSavedReport(AuxStore& aux, ObjectId record_id, std::u16string_view name,
                          const ReportDefinition& definition);

// The report window's current report.
struct CurrentReport {
  std::u16string name;
  ObjectId record_id = 0;  // 0 while unsaved
  ReportDefinition definition;
};

enum class SaveReportResult {
  kSaved,
  kDeclined,  // No to the overwrite question: ask for the name again
  kFailed,    // the write failed; record_id is 0
};

// The save command once the name has been asked for ("Enter a name for the
// report:", at most 64 characters, starting from report->name). A name other
// than the current one becomes current and the report is saved as a new
// record. If the name seek of the saved-reports store reaches a saved report,
// "The report already exists. Do you want to overwrite it?" is asked (Yes/No,
// question icon). Then the definition is filled from the editor and written
// into the current record (or a new one); the id the write returns becomes
// current. The write never goes to the record that the question was about.
SaveReportResult SaveReport(ObjectStore& volume, UserPrompt& prompt,
                            std::u16string_view entered_name, const ReportEditor& editor,
                            CurrentReport* report);

// The name check of the save command on an open store: seek the last record
// whose name is smaller than or equal to `name`, then on to greater names
// until a saved report is reached. True when one is, whatever its name; the
// name is not compared again.
bool SaveNameSeekReachesReport(AuxStore& aux, std::u16string_view name);

enum class SavedReportChange {
  kDone,
  kNoSavedReport,
  kNotFound,
  kDeclined,  // No to the question of the change
  kFailed,
};

// Deletes every saved report named `name` once "Are you sure to permanently
// delete this item?" is answered Yes (warning icon, No by default). When the
// default report ("DefReport") named it, settings->default_report is emptied
// (the caller saves the settings).
SavedReportChange DeleteSavedReports(ObjectStore& volume, UserPrompt& prompt,
                                     std::u16string_view name, Settings* settings);

// Renames the saved reports named `old_name`. When others already bear
// `new_name`, "This report already exists. Do you wish to overwrite it?" is
// asked (Yes/No, question icon) and on Yes they are deleted first. A default
// report of the old name follows the rename.
SavedReportChange RenameSavedReports(ObjectStore& volume, UserPrompt& prompt,
                                     std::u16string_view old_name,
                                     std::u16string_view new_name, Settings* settings);

}  // namespace quillora

#endif  // QUILLORA_REPORTS_REPORT_DEFINITION_H_
