// The report editor without its window: the property list of 33 rows over a
// report definition, as the report window shows and changes it.
#ifndef QUILLORA_REPORTS_REPORT_EDITOR_H_
#define QUILLORA_REPORTS_REPORT_EDITOR_H_

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "reports/report_definition.h"

namespace quillora {

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

}  // namespace quillora

#endif  // QUILLORA_REPORTS_REPORT_EDITOR_H_
