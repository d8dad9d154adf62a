// The one program-wide entry filter: which time entries the views, the quick
// summary, the exports, the reports and "mark as paid" take into account. It
// is kept under "Software\Quillora" between runs (values "fClient" ..
// "fRateType") and edited in the "Filters" page, whose model lives here too.
#ifndef QUILLORA_PERIODS_ENTRY_FILTER_H_
#define QUILLORA_PERIODS_ENTRY_FILTER_H_

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/locale.h"
#include "platform/registry.h"
#include "store/time_entry.h"

namespace quillora {

// Bits of "fFlags".
inline constexpr std::uint32_t kFilterShowUnpaid = 0x01;
inline constexpr std::uint32_t kFilterShowPaid = 0x04;
inline constexpr std::uint32_t kFilterShowNonBillable = 0x10;
// "fFlags" when it is missing: all three statuses shown.
inline constexpr std::uint32_t kFilterDefaultFlags =
    kFilterShowUnpaid | kFilterShowPaid | kFilterShowNonBillable;  // 21
// "fRateType" -1: entries of any rate type.
inline constexpr std::int32_t kAnyRateType = -1;
// The most characters the "Filters" page takes from a list as a criterion.
inline constexpr std::size_t kFilterCriterionChars = 128;

struct EntryFilter {
  // Dates whose whole days are kept, both included. No range applies while
  // the start's month is 0 (all zero after Reset). Callers that limit one walk
  // set both to midnight of the first and the last day.
  SystemTime range_start;
  SystemTime range_end;
  // Text criteria; an empty one keeps every entry.
  std::u16string client;
  std::u16string project;
  std::u16string phase;
  std::u16string task;
  std::u16string bill_to;
  std::u16string currency;
  bool show_paid = true;
  bool show_non_billable = true;
  bool show_unpaid = true;
  std::int32_t rate_type = kAnyRateType;  // or a rate type index 0..4
  // Not kept between runs.
  std::u16string custom1;
  std::u16string custom2;
  std::u16string custom3;

  // No range, no criteria, every status, any rate type: keeps every entry.
  void Reset() { *this = EntryFilter(); }

  friend bool operator==(const EntryFilter&, const EntryFilter&) = default;
};

// True when the entry passes every criterion, tested in this order: the date
// range (both ends whole days), the text criteria (each equal to its field by
// the locale's case-sensitive comparison of whole strings), the status
// switches, the rate type. A range whose dates are impossible keeps nothing.
bool Matches(const EntryFilter& filter, const TimeEntry& entry, const Locale& locale);

// "fFlags" for the three switches, and back.
std::uint32_t FilterFlags(const EntryFilter& filter);
void SetFilterFlags(std::uint32_t flags, EntryFilter* filter);

// Reads the saved filter from "Software\Quillora" (the key is created when
// missing): the switches from "fFlags" (21 when missing), the rate type from
// "fRateType" (-1 when missing), and each of the six criteria that is stored
// as a string, whole. A criterion that is not stored leaves its field as it
// was, so call this on a reset filter. The range and the custom criteria are
// not read. False, with nothing read, when the key cannot be opened.
bool LoadFilter(Registry& registry, EntryFilter* filter);
// The same without creating the key: false, with nothing read, when it does
// not exist. For readers that look again and again (the window watching for
// a filter saved by the command line).
bool ReadSavedFilter(Registry& registry, EntryFilter* filter);

// Saves the filter under "Software\Quillora": deletes all eleven filter
// values, then writes each non-empty criterion of the six, "fFlags" and
// "fRateType". The range and the custom criteria are never saved. False when
// the key cannot be opened or a write fails (the other writes still happen).
bool SaveFilter(Registry& registry, const EntryFilter& filter);

// The "Filters" page without its window: nine lists, each "(All)" followed by
// the names to choose from, and three check boxes. Built from the current
// filter when the page opens; Confirm gives the new filter and saves it.
inline constexpr char16_t kFiltersTitle[] = u"Filters";
inline constexpr char16_t kFilterAll[] = u"(All)";
inline constexpr char16_t kFilterUnpaidBox[] = u"Unpaid";
inline constexpr char16_t kFilterPaidBox[] = u"Paid";
inline constexpr char16_t kFilterNonBillableBox[] = u"Non Billable";

// The lists in the page's order.
enum FilterList : int {
  kFilterClientList,
  kFilterProjectList,
  kFilterPhaseList,
  kFilterCustom1List,
  kFilterCustom2List,
  kFilterCustom3List,
  kFilterBillToList,
  kFilterCurrencyList,
  kFilterRateTypeList,
  kFilterListCount,
};

// The names the page offers beside "(All)", gathered by the caller from the
// catalogue: clients, the projects of every client, the phase, currency and
// custom value lists, and the contacts of every client. Order and duplicates
// do not matter.
struct FilterChoices {
  std::vector<std::u16string> clients;
  std::vector<std::u16string> projects;
  std::vector<std::u16string> phases;
  std::vector<std::u16string> custom1;
  std::vector<std::u16string> custom2;
  std::vector<std::u16string> custom3;
  std::vector<std::u16string> bill_to;
  std::vector<std::u16string> currencies;
};

struct FilterPageList {
  std::u16string label;               // "Client:" .. "Rate Type:"
  std::vector<std::u16string> items;  // "(All)" first
  int selection = 0;                  // index into items
};

class FilterPage {
 public:
  // Fills the lists and selects each current criterion (a criterion that is
  // not among the names is added to its list so that it stays chosen; a rate
  // type outside 0..4 selects "(All)"), and sets the boxes from the switches.
  // The names of a list are sorted by the locale with case ignored, without
  // empty names and exact duplicates. The page keeps `locale`, which must
  // outlive it.
  FilterPage(const EntryFilter& current, const FilterChoices& choices,
             const Locale& locale);

  const FilterPageList& list(FilterList which) const { return lists_[which]; }
  // Selects an item; false (nothing changed) for an index out of range.
  bool Select(FilterList which, int index);
  // Selects the item equal to `text` ("(All)" or "" selects the first item);
  // text that is not in the list is added to it first. The Rate Type list
  // takes only its own items and answers false for anything else.
  bool SelectText(FilterList which, const std::u16string& text);

  bool unpaid = true;
  bool paid = true;
  bool non_billable = true;

  // The filter that confirming gives: a reset filter, left so when every box
  // is checked and every list is on "(All)"; otherwise each list past its
  // first item gives its text (at most 128 characters) and the boxes give the
  // switches. The page has no task list: a task criterion is not kept.
  EntryFilter Result() const;

  // Confirming the page: *filter becomes Result() and is saved; answers
  // SaveFilter's result (the filter applies for this run either way).
  bool Confirm(Registry& registry, EntryFilter* filter) const;

 private:
  void FillList(FilterList which, const char16_t* label,
                const std::vector<std::u16string>& names, const std::u16string& current);

  const Locale& locale_;
  std::array<FilterPageList, kFilterListCount> lists_;
};

}  // namespace quillora

#endif  // QUILLORA_PERIODS_ENTRY_FILTER_H_
