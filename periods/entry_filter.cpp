#include "periods/entry_filter.h"

#include <algorithm>
#include <utility>

#include "store/settings.h"
#include "store/string_table.h"

namespace quillora {
namespace {

// The six saved criteria with their values, in the order they are read.
struct SavedCriterion {
  const char16_t* name;
  std::u16string EntryFilter::*field;
};
constexpr SavedCriterion kSavedCriteria[] = {
    {u"fClient", &EntryFilter::client},  {u"fProject", &EntryFilter::project},
    {u"fPhase", &EntryFilter::phase},    {u"fTask", &EntryFilter::task},
    {u"fBillTo", &EntryFilter::bill_to}, {u"fCurrency", &EntryFilter::currency},
};

// Every filter value, deleted before each save so that a criterion cleared
// in the page does not come back at the next start.
constexpr const char16_t* kAllFilterValues[] = {
    u"fClient", u"fProject", u"fPhase",    u"fCustom1",  u"fCustom2", u"fCustom3",
    u"fFlags",  u"fBillTo",  u"fCurrency", u"fRateType", u"fTask"};

bool InRange(const EntryFilter& filter, FileTime start) {
  FileTime first = 0;
  FileTime last = 0;
  // A range that cannot be turned into times cannot be satisfied.
  if (!SystemTimeToFileTime(filter.range_start, &first) ||
      !SystemTimeToFileTime(filter.range_end, &last)) {
    return false;
  }
  // The last day is included whole, up to its 23:59:59.
  last += kTicksPerDay - kTicksPerSecond;
  return CompareFileTime(start, first) >= 0 && CompareFileTime(start, last) <= 0;
}

bool TextPasses(const std::u16string& criterion, const std::u16string& field,
                const Locale& locale) {
  return criterion.empty() || locale.Equal(criterion, field);
}

bool StatusPasses(const EntryFilter& filter, const TimeEntry& entry) {
  if (!entry.billable) return filter.show_non_billable;  // the paid flag does not count
  return entry.paid ? filter.show_paid : filter.show_unpaid;
}

}  // namespace

bool Matches(const EntryFilter& filter, const TimeEntry& entry, const Locale& locale) {
  if (filter.range_start.month != 0 && !InRange(filter, entry.start)) return false;
  const std::pair<const std::u16string*, const std::u16string*> texts[] = {
      {&filter.client, &entry.client},   {&filter.project, &entry.project},
      {&filter.phase, &entry.phase},     {&filter.task, &entry.task},
      {&filter.bill_to, &entry.billTo},  {&filter.currency, &entry.currency},
      {&filter.custom1, &entry.custom1}, {&filter.custom2, &entry.custom2},
      {&filter.custom3, &entry.custom3},
  };
  for (const auto& [criterion, field] : texts) {
    if (!TextPasses(*criterion, *field, locale)) return false;
  }
  if (!StatusPasses(filter, entry)) return false;
  return filter.rate_type == kAnyRateType ||
         filter.rate_type == static_cast<std::int32_t>(entry.rateType);
}

std::uint32_t FilterFlags(const EntryFilter& filter) {
  return (filter.show_paid ? kFilterShowPaid : 0u) |
         (filter.show_unpaid ? kFilterShowUnpaid : 0u) |
         (filter.show_non_billable ? kFilterShowNonBillable : 0u);
}

void SetFilterFlags(std::uint32_t flags, EntryFilter* filter) {
  filter->show_unpaid = (flags & kFilterShowUnpaid) != 0;
  filter->show_paid = (flags & kFilterShowPaid) != 0;
  filter->show_non_billable = (flags & kFilterShowNonBillable) != 0;
}

namespace {

void ReadFilterValues(Registry& registry, const RegistryKey& key, EntryFilter* filter) {
  std::uint32_t flags = kFilterDefaultFlags;
  ReadDword(registry, key, u"fFlags", &flags);
  SetFilterFlags(flags, filter);
  std::uint32_t rate_type = static_cast<std::uint32_t>(kAnyRateType);
  ReadDword(registry, key, u"fRateType", &rate_type);
  filter->rate_type = static_cast<std::int32_t>(rate_type);
  for (const SavedCriterion& c : kSavedCriteria) {
    ReadString(registry, key, c.name, 0, &(filter->*c.field));
  }
}

}  // namespace

bool LoadFilter(Registry& registry, EntryFilter* filter) {
  RegistryKey key;
  if (!OpenSettingsKey(registry, &key, /*create=*/true)) return false;
  ReadFilterValues(registry, key, filter);
  return true;
}

bool ReadSavedFilter(Registry& registry, EntryFilter* filter) {
  RegistryKey key;
  if (!OpenSettingsKey(registry, &key)) return false;
  ReadFilterValues(registry, key, filter);
  return true;
}

bool SaveFilter(Registry& registry, const EntryFilter& filter) {
  RegistryKey key;
  if (!OpenSettingsKey(registry, &key, /*create=*/true)) return false;
  bool ok = true;
  for (const char16_t* name : kAllFilterValues) {
    const long rc = registry.DeleteValue(key, name);
    if (rc != kErrorSuccess && rc != kErrorFileNotFound) ok = false;
  }
  for (const SavedCriterion& c : kSavedCriteria) {
    const std::u16string& text = filter.*c.field;
    if (!text.empty() && WriteString(registry, key, c.name, text) != kErrorSuccess) {
      ok = false;
    }
  }
  if (WriteDword(registry, key, u"fFlags", FilterFlags(filter)) != kErrorSuccess) {
    ok = false;
  }
  if (WriteDword(registry, key, u"fRateType",
                 static_cast<std::uint32_t>(filter.rate_type)) != kErrorSuccess) {
    ok = false;
  }
  return ok;
}

// ---------------------------------------------------------------------------
// The "Filters" page.

namespace {

// The text criterion each list edits, in the order of FilterList; the Rate
// Type list has none.
constexpr std::u16string EntryFilter::*kListFields[kFilterRateTypeList] = {
    &EntryFilter::client,  &EntryFilter::project, &EntryFilter::phase,
    &EntryFilter::custom1, &EntryFilter::custom2, &EntryFilter::custom3,
    &EntryFilter::bill_to, &EntryFilter::currency};

constexpr int kRateTypeCount = 5;

// The first 128 units of a list's text; a character cut in half is left out
// whole rather than kept as half a surrogate pair.
std::u16string CriterionText(const std::u16string& text) {
  if (text.size() <= kFilterCriterionChars) return text;
  std::size_t size = kFilterCriterionChars;
  if (text[size - 1] >= 0xD800 && text[size - 1] <= 0xDBFF) --size;
  return text.substr(0, size);
}

}  // namespace

FilterPage::FilterPage(const EntryFilter& current, const FilterChoices& choices,
                       const Locale& locale)
    : locale_(locale) {
  FillList(kFilterClientList, u"Client:", choices.clients, current.client);
  FillList(kFilterProjectList, u"Project:", choices.projects, current.project);
  FillList(kFilterPhaseList, u"Phase:", choices.phases, current.phase);
  FillList(kFilterCustom1List, u"Custom 1:", choices.custom1, current.custom1);
  FillList(kFilterCustom2List, u"Custom 2:", choices.custom2, current.custom2);
  FillList(kFilterCustom3List, u"Custom 3:", choices.custom3, current.custom3);
  FillList(kFilterBillToList, u"Bill To:", choices.bill_to, current.bill_to);
  FillList(kFilterCurrencyList, u"Currency:", choices.currencies, current.currency);

  FilterPageList& rates = lists_[kFilterRateTypeList];
  rates.label = u"Rate Type:";
  rates.items.push_back(kFilterAll);
  for (int i = 0; i < kRateTypeCount; ++i) {
    rates.items.push_back(LoadString(kIdsNormalRate + i));
  }
  rates.selection = current.rate_type >= 0 && current.rate_type < kRateTypeCount
                        ? current.rate_type + 1
                        : 0;

  unpaid = current.show_unpaid;
  paid = current.show_paid;
  non_billable = current.show_non_billable;
}

void FilterPage::FillList(FilterList which, const char16_t* label,
                          const std::vector<std::u16string>& names,
                          const std::u16string& current) {
  std::vector<std::u16string> sorted;
  sorted.reserve(names.size());
  for (const std::u16string& name : names) {
    if (!name.empty()) sorted.push_back(name);
  }
  // Case ignored first so that "acme" sits beside "Acme"; the case-sensitive
  // order then keeps the two apart and makes exact duplicates neighbours.
  std::sort(sorted.begin(), sorted.end(),
            [this](const std::u16string& a, const std::u16string& b) {
              const int c = locale_.CompareIgnoreCase(a, b);
              return c != 0 ? c < 0 : locale_.Compare(a, b) < 0;
            });
  sorted.erase(std::unique(sorted.begin(), sorted.end(),
                           [this](const std::u16string& a, const std::u16string& b) {
                             return locale_.Equal(a, b);
                           }),
               sorted.end());

  FilterPageList& list = lists_[which];
  list.label = label;
  list.items.clear();
  list.items.push_back(kFilterAll);
  list.items.insert(list.items.end(), sorted.begin(), sorted.end());
  list.selection = 0;
  SelectText(which, current);
}

bool FilterPage::Select(FilterList which, int index) {
  FilterPageList& list = lists_[which];
  if (index < 0 || index >= static_cast<int>(list.items.size())) return false;
  list.selection = index;
  return true;
}

bool FilterPage::SelectText(FilterList which, const std::u16string& text) {
  FilterPageList& list = lists_[which];
  if (text.empty() || text == kFilterAll) {
    list.selection = 0;
    return true;
  }
  for (std::size_t i = 1; i < list.items.size(); ++i) {
    if (locale_.Equal(list.items[i], text)) {
      list.selection = static_cast<int>(i);
      return true;
    }
  }
  if (which == kFilterRateTypeList) return false;
  list.items.push_back(text);
  list.selection = static_cast<int>(list.items.size()) - 1;
  return true;
}

EntryFilter FilterPage::Result() const {
  EntryFilter filter;  // reset
  bool all = unpaid && paid && non_billable;
  for (const FilterPageList& list : lists_) {
    if (list.selection != 0) all = false;
  }
  if (all) return filter;
  for (int i = 0; i < kFilterRateTypeList; ++i) {
    const FilterPageList& list = lists_[i];
    if (list.selection > 0) {
      filter.*kListFields[i] = CriterionText(list.items[list.selection]);
    }
  }
  const int rate_selection = lists_[kFilterRateTypeList].selection;
  if (rate_selection > 0) filter.rate_type = rate_selection - 1;
  filter.show_unpaid = unpaid;
  filter.show_paid = paid;
  filter.show_non_billable = non_billable;
  return filter;
}

bool FilterPage::Confirm(Registry& registry, EntryFilter* filter) const {
  *filter = Result();
  return SaveFilter(registry, *filter);
}

}  // namespace quillora
