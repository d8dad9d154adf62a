// The quick summary: the totals of the entries that the active entry view
// lists — the period, the number of entries, billable and non-billable hours
// with their shares, unpaid and paid amounts, and the hours of each project
// with its share — as the rows of a three-column list. The window shows the
// rows in its "Quick Summary" dialog; the `summary` command prints them; the
// summary CSV file (interchange/summary_csv.h) is written from the same rows.
#ifndef QUILLORA_PERIODS_QUICK_SUMMARY_H_
#define QUILLORA_PERIODS_QUICK_SUMMARY_H_

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "periods/periods.h"
#include "platform/locale.h"
#include "store/record_store.h"
#include "store/settings.h"
#include "store/time_entry.h"

namespace quillora {

// The dialog's command that writes the rows to a CSV file.
inline constexpr int kCommandExportSummaryCsv = 40101;

// One row of the list: the cells of columns 0, 1 and 2.
using QuickSummaryRow = std::array<std::u16string, 3>;

// The list's three columns, as fractions of the usable width (the screen
// width less a vertical scroll bar): 43, 34 and 23 hundredths, each
// truncated. Column 0 is left-aligned, columns 1 and 2 right-aligned.
std::array<int, 3> QuickSummaryColumnWidths(int screen_width, int scroll_bar_width);

// The period as the view reports it: its kind (the "View" setting's value)
// and the start and end of the range it lists.
struct QuickSummaryPeriod {
  PeriodKind kind = PeriodKind::kWeek;
  SystemTime start;
  SystemTime end;
};
// The kind of `period` and its view range (Period::GetViewRange).
QuickSummaryPeriod SummaryPeriodOf(const Period& period);

// One project's row: the name as its first entry spelled it, and its hours.
struct ProjectHours {
  std::u16string project;
  double hours = 0;
};

// The totals of a set of entries as the quick summary computes them: the
// number of entries, billable and non-billable hours, unpaid and paid
// amounts, all in double precision from zero. The window's totals under the
// table and each day's row add their entries through this one computation.
struct EntryTotals {
  std::size_t entries = 0;
  double billable_hours = 0;
  double non_billable_hours = 0;
  double unpaid_amount = 0;
  double paid_amount = 0;

  // Counts the entry and adds its hours (duration x 0.01) to billable or
  // non-billable hours and, for a billable entry only, its amount
  // (EntryAmount) to the paid or the unpaid amount. Amounts of different
  // currencies are added as they are.
  void Add(const TimeEntry& entry, const Settings& settings);
  double hours() const { return billable_hours + non_billable_hours; }
  double amount() const { return unpaid_amount + paid_amount; }
};

// The totals of `entries` (a period's entries after the filter).
EntryTotals TotalEntries(const std::vector<TimeEntry>& entries, const Settings& settings);

// The running sums, all in double precision, starting at zero. Entries are
// added one at a time in the view's order.
class QuickSummarySums {
 public:
  // The amounts follow `settings`; project names are matched and ordered by
  // `locale` with case ignored. Both are kept and must outlive the sums.
  QuickSummarySums(const Settings& settings, const Locale& locale);
  QuickSummarySums(const QuickSummarySums&) = delete;
  QuickSummarySums& operator=(const QuickSummarySums&) = delete;

  // Adds the entry to the totals (EntryTotals::Add) and its hours to its
  // project (the empty name for none).
  void Add(const TimeEntry& entry);

  const EntryTotals& totals() const { return totals_; }
  double billable_hours() const { return totals_.billable_hours; }
  double non_billable_hours() const { return totals_.non_billable_hours; }
  double unpaid_amount() const { return totals_.unpaid_amount; }
  double paid_amount() const { return totals_.paid_amount; }
  // The projects in ascending order of the locale's comparison with case
  // ignored; names that compare equal ("Design", "design") are one project
  // under the spelling that came first.
  std::vector<ProjectHours> Projects() const;

 private:
  struct IgnoreCaseLess {
    const Locale* locale;
    bool operator()(const std::u16string& a, const std::u16string& b) const {
      return locale->CompareIgnoreCase(a, b) < 0;
    }
  };
  using ProjectMap = std::map<std::u16string, double, IgnoreCaseLess>;

  const Settings& settings_;
  EntryTotals totals_;
  ProjectMap projects_;
  // Exact spellings already met, so that the collation runs once per
  // spelling and not once per entry.
  std::unordered_map<std::u16string, ProjectMap::iterator> spellings_;
};

// Seeks each record id of `ids` in the open entry store and adds its entry.
// A record that cannot be sought or read adds nothing (it still counts as
// an item of the list, which is the number of ids).
void SumEntries(EntryStore& store, const std::vector<ObjectId>& ids,
                QuickSummarySums* sums);

// The rows of the list, in order:
//   "Period Type:" and the kind's name; "Period:" and the period (day and
//   week: the start date in the short date format; month: the start in the
//   locale's year-month format; custom: both dates, " - " between them);
//   "Number of Items:" and `item_count` ("%d");
//   an empty row, "Total:", "Billable Hours:" and "Non Billable Hours:" (each
//   "%.02fh" and its share of all hours, "%.01f%%"), "Hours:" ("%.02f");
//   an empty row, "Total:", "Unpaid Hours:" and "Paid Hours:" (the two
//   amounts, "%.02f" — the amount rows keep the word Hours in their labels),
//   "Amount:" ("%.02f");
//   an empty row, "Total:", then one row per project: name, "%.02fh", share
//   "%.1f%%".
// When there are no hours at all every share reads "0.0%".
std::vector<QuickSummaryRow> BuildQuickSummaryRows(const QuickSummaryPeriod& period,
                                                   std::size_t item_count,
                                                   const QuickSummarySums& sums,
                                                   const Locale& locale);

// What the dialog does when it opens: sums the entries of `ids` and builds
// the rows, the number of items being the number of ids.
std::vector<QuickSummaryRow> QuickSummaryRows(EntryStore& store,
                                              const QuickSummaryPeriod& period,
                                              const std::vector<ObjectId>& ids,
                                              const Settings& settings,
                                              const Locale& locale);

}  // namespace quillora

#endif  // QUILLORA_PERIODS_QUICK_SUMMARY_H_
