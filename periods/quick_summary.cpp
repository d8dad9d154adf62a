#include "periods/quick_summary.h"

#include <cstdio>

#include "platform/text.h"
#include "store/string_table.h"
#include "timekeeping/duration.h"

namespace quillora {
namespace {

std::u16string Format(const char* picture, double value) {
  char buf[512];
  std::snprintf(buf, sizeof buf, picture, value);
  return WidenAscii(buf);
}

std::u16string Label(int id) { return LoadString(id); }

// "Billable" + " " + "Hours:", as the labels are put together from the
// table.
std::u16string HoursLabel(int id) {
  return LoadString(id) + u" " + LoadString(kIdsSummaryHours);
}

// A share of the total hours. Nothing guards against a zero total in the
// division itself; with no hours at all the quotient is not a number, and a
// share of nothing is shown as "0.0%" rather than as the C library's "nan"
// or "-nan".
std::u16string Share(double percent, double total, const char* picture) {
  if (total == 0) return u"0.0%";
  return Format(picture, percent);
}

void AppendTotalHeading(std::vector<QuickSummaryRow>* rows) {
  rows->push_back({});
  rows->push_back({Label(kIdsSummaryTotal) + u":", u"", u""});
}

// The "Period Type:" and "Period:" value cells; both empty for a kind the
// list does not know.
std::pair<std::u16string, std::u16string> PeriodCells(const QuickSummaryPeriod& period,
                                                      const Locale& locale) {
  switch (period.kind) {
    case PeriodKind::kDay:
    case PeriodKind::kWeek:
      // A week shows its first day only.
      return {std::u16string(PeriodKindName(period.kind)),
              locale.FormatShortDate(period.start)};
    case PeriodKind::kMonth:
      return {std::u16string(PeriodKindName(period.kind)),
              locale.FormatYearMonth(period.start)};
    case PeriodKind::kCustom:
      return {std::u16string(PeriodKindName(period.kind)),
              locale.FormatShortDate(period.start) + u" - " +
                  locale.FormatShortDate(period.end)};
  }
  return {};
}

}  // namespace

std::array<int, 3> QuickSummaryColumnWidths(int screen_width, int scroll_bar_width) {
  const int usable = screen_width - scroll_bar_width;
  return {usable * 43 / 100, usable * 34 / 100, usable * 23 / 100};
}

QuickSummaryPeriod SummaryPeriodOf(const Period& period) {
  const PeriodRange range = period.GetViewRange();
  return {period.Kind(), range.start, range.end};
}

void EntryTotals::Add(const TimeEntry& entry, const Settings& settings) {
  const double hours = entry.duration * 0.01;
  ++entries;
  if (entry.billable) {
    billable_hours += hours;
    // Only billable entries carry an amount; a non-billable entry marked
    // paid adds nothing to either amount.
    const double amount = EntryAmount(entry, settings);
    if (entry.paid) {
      paid_amount += amount;
    } else {
      unpaid_amount += amount;
    }
  } else {
    non_billable_hours += hours;
  }
}

EntryTotals TotalEntries(const std::vector<TimeEntry>& entries,
                         const Settings& settings) {
  EntryTotals totals;
  for (const TimeEntry& entry : entries) totals.Add(entry, settings);
  return totals;
}

QuickSummarySums::QuickSummarySums(const Settings& settings, const Locale& locale)
    : settings_(settings), projects_(IgnoreCaseLess{&locale}) {}

void QuickSummarySums::Add(const TimeEntry& entry) {
  const double hours = entry.duration * 0.01;

  auto spelling = spellings_.find(entry.project);
  if (spelling == spellings_.end()) {
    // A spelling not met before may still be a project met before in
    // other letter case; the map keeps the first spelling as its key.
    const auto project = projects_.try_emplace(entry.project, 0.0).first;
    spelling = spellings_.emplace(entry.project, project).first;
  }
  spelling->second->second += hours;
  totals_.Add(entry, settings_);
}

std::vector<ProjectHours> QuickSummarySums::Projects() const {
  std::vector<ProjectHours> projects;
  projects.reserve(projects_.size());
  for (const auto& [name, hours] : projects_) projects.push_back({name, hours});
  return projects;
}

void SumEntries(EntryStore& store, const std::vector<ObjectId>& ids,
                QuickSummarySums* sums) {
  TimeEntry entry;
  for (const ObjectId id : ids) {
    if (store.Seek(SeekType::kObjectId, id) != id) continue;
    if (ReadEntry(store, &entry) != 0) continue;
    sums->Add(entry);
  }
}

std::vector<QuickSummaryRow> BuildQuickSummaryRows(const QuickSummaryPeriod& period,
                                                   std::size_t item_count,
                                                   const QuickSummarySums& sums,
                                                   const Locale& locale) {
  std::vector<QuickSummaryRow> rows;
  auto [kind_name, period_text] = PeriodCells(period, locale);
  rows.push_back({Label(kIdsSummaryPeriodType), std::move(kind_name), u""});
  rows.push_back({Label(kIdsSummaryPeriod), std::move(period_text), u""});

  char count[32];
  std::snprintf(count, sizeof count, "%d", static_cast<int>(item_count));
  rows.push_back({Label(kIdsSummaryNumberOfItems), WidenAscii(count), u""});

  const double billable = sums.billable_hours();
  const double non_billable = sums.non_billable_hours();
  const double total = billable + non_billable;

  AppendTotalHeading(&rows);
  rows.push_back({HoursLabel(kIdsSummaryBillable), Format("%.02fh", billable),
                  Share(billable * 100 / total, total, "%.01f%%")});
  rows.push_back({HoursLabel(kIdsSummaryNonBillable), Format("%.02fh", non_billable),
                  Share(non_billable * 100 / total, total, "%.01f%%")});
  rows.push_back({Label(kIdsSummaryHours), Format("%.02f", total), u""});

  // The amount rows are labelled "... Hours:" although they hold money: the
  // labels are kept as the program has always shown them.
  AppendTotalHeading(&rows);
  rows.push_back(
      {HoursLabel(kIdsSummaryUnpaid), Format("%.02f", sums.unpaid_amount()), u""});
  rows.push_back({HoursLabel(kIdsSummaryPaid), Format("%.02f", sums.paid_amount()), u""});
  rows.push_back({Label(kIdsSummaryAmount),
                  Format("%.02f", sums.unpaid_amount() + sums.paid_amount()), u""});

  AppendTotalHeading(&rows);
  for (ProjectHours& project : sums.Projects()) {
    // Divided first and then multiplied, unlike the two status shares: the
    // last digit may differ for the same hours.
    rows.push_back({std::move(project.project), Format("%.02fh", project.hours),
                    Share(project.hours / total * 100, total, "%.1f%%")});
  }
  return rows;
}

std::vector<QuickSummaryRow> QuickSummaryRows(EntryStore& store,
                                              const QuickSummaryPeriod& period,
                                              const std::vector<ObjectId>& ids,
                                              const Settings& settings,
                                              const Locale& locale) {
  QuickSummarySums sums(settings, locale);
  SumEntries(store, ids, &sums);
  return BuildQuickSummaryRows(period, ids.size(), sums, locale);
}

}  // namespace quillora
