#include "timekeeping/entry_editor.h"

#include <algorithm>

#include "store/client_store.h"
#include "store/note_text.h"
#include "store/string_table.h"
#include "timekeeping/duration.h"

namespace quillora {
namespace {

bool IsHighSurrogate(char16_t c) { return c >= 0xD800 && c <= 0xDBFF; }

SystemTime DateOf(FileTime start) {
  SystemTime st;
  if (!FileTimeToSystemTime(start, &st)) return MakeSystemTime(1601, 1, 1);
  return MakeSystemTime(st.year, st.month, st.day);
}

// The entry's start: the date picker's day at the start picker's time of
// day, or at 00:00:00 when the start picker is empty. False when the date is
// not a calendar date.
bool CombineStart(const SystemTime& date, const std::optional<SystemTime>& start,
                  FileTime* out) {
  SystemTime st = MakeSystemTime(date.year, date.month, date.day);
  if (start) {
    st.hour = start->hour;
    st.minute = start->minute;
    st.second = start->second;
    st.milliseconds = start->milliseconds;
  }
  return SystemTimeToFileTime(st, out);
}

}  // namespace

std::u16string CutText(std::u16string_view text, std::size_t limit) {
  if (text.size() <= limit) return std::u16string(text);
  std::size_t n = limit;
  if (n > 0 && IsHighSurrogate(text[n - 1])) --n;
  return std::u16string(text.substr(0, n));
}

TimeEntry NewEntry(const Settings& settings, const SystemTime& date) {
  TimeEntry entry;
  entry.billable = (settings.option_bits & kOptionBillable) != 0;
  entry.currency = settings.default_currency;
  entry.rateType = kRateNormal;
  if (!CombineStart(date, std::nullopt, &entry.start)) entry.start = 0;
  return entry;
}

EntryEditor::EntryEditor(const EditorServices& services, const TimeEntry& entry)
    : services_(services), entry_(entry) {
  // General page.
  general_.date = DateOf(entry_.start);
  general_.client = CutText(entry_.client, kNameFieldChars);
  general_.project = CutText(entry_.project, kNameFieldChars);
  general_.phase = CutText(entry_.phase, kNameFieldChars);
  general_.task = CutText(entry_.task, kNameFieldChars);
  // A new entry shows an empty duration for the user to fill in; one made
  // from a timer comes with its duration.
  if (!(is_new() && entry_.duration == 0)) {
    general_.duration = FormatDurationField(entry_.duration);
  }
  if (HasStartTime(entry_)) {
    SystemTime st;
    FileTimeToSystemTime(entry_.start, &st);
    general_.start = st;
  }
  for (const Client& c : ClientList(services_.catalogue.clients)) {
    client_list_.push_back(c.name);
  }
  client_list_ = Sorted(std::move(client_list_));
  phase_list_ = Sorted(ValueTexts(ValueListKind::kPhase));
  ClientLostFocus();

  FillBillingFromEntry();

  for (int i = 0; i < 3; ++i) custom_.labels[i] = services_.settings.custom_labels[i];
  custom_.values = {CutText(entry_.custom1, kCustomFieldChars),
                    CutText(entry_.custom2, kCustomFieldChars),
                    CutText(entry_.custom3, kCustomFieldChars)};
  note_ = entry_.note;
}

void EntryEditor::FillBillingFromEntry() {
  billing_.billable = entry_.billable;
  billing_.paid = entry_.paid;
  billing_.bill_to = CutText(entry_.billTo, kBillToFieldChars);
  billing_.currency = CutText(entry_.currency, kCurrencyFieldChars);
  billing_.rate = FormatHundredths(entry_.rate);
  billing_.fixed = entry_.rateType == kRateFixed;
  billing_.fixed_enabled = true;
  rate_value_ = entry_.rate;
  chosen_type_ = entry_.rateType;
}

std::vector<std::u16string> EntryEditor::Sorted(std::vector<std::u16string> items) const {
  const Locale& locale = services_.locale;
  std::stable_sort(items.begin(), items.end(), [&](const auto& a, const auto& b) {
    return locale.Compare(a, b) < 0;
  });
  items.erase(
      std::unique(items.begin(), items.end(),
                  [&](const auto& a, const auto& b) { return locale.Equal(a, b); }),
      items.end());
  return items;
}

std::vector<std::u16string> EntryEditor::ValueTexts(ValueListKind kind) {
  std::vector<std::u16string> texts;
  AuxStore aux(services_.catalogue.volume);
  if (!aux.Open()) return texts;
  for (const ValueItem& item : ValueList(aux, kind)) texts.push_back(item.text);
  return texts;
}

std::optional<Client> EntryEditor::FindClientNamed(const std::u16string& name) {
  Client client;
  if (name.empty() || !FindClient(services_.catalogue.clients, name, &client)) {
    return std::nullopt;
  }
  return client;
}

bool EntryEditor::Refuse(const std::u16string& text, EditorField field) {
  services_.prompt.ShowMessage(kAppTitle, text, MessageIcon::kExclamation);
  focus_ = field;
  return false;
}

// General page.

void EntryEditor::SetDate(const SystemTime& date) {
  general_.date = MakeSystemTime(date.year, date.month, date.day);
  start_changed_ = true;
}

void EntryEditor::SetClient(std::u16string_view text) {
  general_.client = CutText(text, kNameFieldChars);
}
void EntryEditor::SetProject(std::u16string_view text) {
  general_.project = CutText(text, kNameFieldChars);
}
void EntryEditor::SetPhase(std::u16string_view text) {
  general_.phase = CutText(text, kNameFieldChars);
}
void EntryEditor::SetTask(std::u16string_view text) {
  general_.task = CutText(text, kNameFieldChars);
}

void EntryEditor::SetDurationText(std::u16string_view text) {
  general_.duration = CutText(text, kDurationFieldChars);
  duration_typed_ = true;
}

void EntryEditor::SetStart(std::optional<SystemTime> time_of_day) {
  if (time_of_day) {
    general_.start =
        MakeSystemTime(general_.date.year, general_.date.month, general_.date.day,
                       time_of_day->hour, time_of_day->minute, kStartTimeMark);
  } else {
    general_.start.reset();
  }
  start_changed_ = true;
}

std::vector<std::u16string> EntryEditor::DurationChoices() const {
  return FillDurationChoices(services_.settings.time_interval);
}

void EntryEditor::ClientLostFocus() {
  project_list_.clear();
  if (const auto client = FindClientNamed(general_.client)) {
    for (const Project& p :
         ProjectsOf(services_.catalogue.projects, services_.locale, client->number)) {
      project_list_.push_back(p.name);
    }
  }
  project_list_ = Sorted(std::move(project_list_));
  // The task list depends on the client too: refill it with the projects.
  ProjectLostFocus();
}

void EntryEditor::ProjectLostFocus() {
  task_list_.clear();
  const auto client = FindClientNamed(general_.client);
  if (!client) return;
  bool project_known = false;
  if (!general_.project.empty()) {
    for (const Project& p :
         ProjectsOf(services_.catalogue.projects, services_.locale, client->number)) {
      if (services_.locale.Equal(p.name, general_.project)) {
        project_known = true;
        task_list_.insert(task_list_.end(), p.tasks.begin(), p.tasks.end());
      }
    }
  }
  if (!project_known) {
    for (const CatalogueItem& t : ItemsOf(services_.catalogue.tasks, client->number)) {
      task_list_.push_back(t.name);
    }
  }
  task_list_ = Sorted(std::move(task_list_));
}

std::optional<StartEndPickers> EntryEditor::BeginSetStartEnd() {
  focus_ = EditorField::kNone;
  if (start_changed_) {
    FileTime start;
    if (CombineStart(general_.date, general_.start, &start)) entry_.start = start;
  }
  if (general_.duration.empty()) {
    Refuse(kDurationRequiredMessage, EditorField::kDuration);
    return std::nullopt;
  }
  if (duration_typed_) {
    SetDurationFromHours(
        &entry_, ParseHoursText(general_.duration, services_.locale.AnsiCodePage()),
        services_.settings);
    duration_typed_ = false;
  }
  StartEndPickers pickers;
  pickers.start = general_.start ? *general_.start : services_.clock.LocalNow();
  pickers.end = EndPickerTime(pickers.start, entry_.duration);
  return pickers;
}

void EntryEditor::EndSetStartEnd(const SystemTime& start, const SystemTime& end) {
  // The pickers show hours and minutes: seconds that the user cannot see
  // (the start mark, or those of "now") must not take a minute off.
  SystemTime s = start;
  SystemTime e = end;
  s.second = e.second = 0;
  s.milliseconds = e.milliseconds = 0;
  SetDurationFromStartEnd(&entry_, s, e, services_.settings);
  SetStart(start);
  FileTime combined;
  if (CombineStart(general_.date, general_.start, &combined)) entry_.start = combined;
  general_.duration = FormatDurationField(entry_.duration);
  duration_typed_ = false;
}

void EntryEditor::WriteGeneral() {
  entry_.client = CutText(general_.client, kStoredNameChars);
  entry_.project = CutText(general_.project, kStoredNameChars);
  entry_.phase = CutText(general_.phase, kStoredNameChars);
  entry_.task = CutText(general_.task, kStoredNameChars);
  if (duration_typed_) {
    SetDurationFromHours(
        &entry_, ParseHoursText(general_.duration, services_.locale.AnsiCodePage()),
        services_.settings);
    duration_typed_ = false;
  }
  if (start_changed_) {
    FileTime start;
    if (CombineStart(general_.date, general_.start, &start)) entry_.start = start;
    start_changed_ = false;
  }
}

bool EntryEditor::LeaveGeneralPage() {
  focus_ = EditorField::kNone;
  if (general_.client.empty()) {
    return Refuse(LoadString(kIdsClientNameRequired), EditorField::kClient);
  }
  if (general_.duration.empty()) {
    return Refuse(kDurationRequiredMessage, EditorField::kDuration);
  }
  WriteGeneral();
  return true;
}

// Billing page.

void EntryEditor::OpenBillingPage() {
  Catalogue& catalogue = services_.catalogue;
  bill_to_list_.clear();
  if (const auto client = FindClientNamed(general_.client)) {
    for (const CatalogueItem& c : ItemsOf(catalogue.contacts, client->number)) {
      bill_to_list_.push_back(c.name);
    }
  }
  bill_to_list_ = Sorted(std::move(bill_to_list_));
  currency_list_ = ValueTexts(ValueListKind::kCurrency);
  if (!services_.settings.default_currency.empty()) {
    currency_list_.push_back(services_.settings.default_currency);
  }
  currency_list_ = Sorted(std::move(currency_list_));

  rate_tree_ = ChooserRateTree(catalogue.rates, catalogue.clients, general_.client);
  rate_choice_ = RateChoice{};
  billing_.fixed_enabled = true;
  if (rate_typed_) return;
  // The stored rate that the entry's rate and type stand for, if any.
  const std::uint16_t type = RateTypeShown();
  for (std::size_t g = 0; g < rate_tree_.groups.size(); ++g) {
    const auto& rates = rate_tree_.groups[g].rates;
    for (std::size_t i = 0; i < rates.size(); ++i) {
      if (rates[i].value == rate_value_ && rates[i].type == type) {
        rate_choice_ = {false, static_cast<int>(g), static_cast<int>(i)};
        billing_.fixed_enabled = false;
        return;
      }
    }
  }
}

std::uint16_t EntryEditor::RateTypeShown() const {
  if (billing_.fixed) return kRateFixed;
  return chosen_type_ == kRateFixed ? static_cast<std::uint16_t>(kRateNormal)
                                    : chosen_type_;
}

void EntryEditor::SetBillTo(std::u16string_view text) {
  billing_.bill_to = CutText(text, kBillToFieldChars);
}

void EntryEditor::SetCurrency(std::u16string_view text) {
  billing_.currency = CutText(text, kCurrencyFieldChars);
}

void EntryEditor::SetRateText(std::u16string_view text) {
  billing_.rate = CutText(text, kRateFieldChars);
  rate_typed_ = true;
  ChooseCustomRate();
}

bool EntryEditor::SetFixed(bool on) {
  if (!billing_.fixed_enabled) return false;
  billing_.fixed = on;
  return true;
}

void EntryEditor::SetRateType(std::uint16_t type) {
  chosen_type_ = type;
  billing_.fixed = type == kRateFixed;
  ChooseCustomRate();
}

void EntryEditor::ChooseCustomRate() {
  rate_choice_ = RateChoice{};
  billing_.fixed_enabled = true;
}

bool EntryEditor::ChooseRate(int group, int index) {
  if (group < 0 || static_cast<std::size_t>(group) >= rate_tree_.groups.size())
    return false;
  const auto& rates = rate_tree_.groups[group].rates;
  if (index < 0 || static_cast<std::size_t>(index) >= rates.size()) return false;
  const Rate& rate = rates[index];
  billing_.rate = FormatHundredths(rate.value);
  rate_value_ = rate.value;
  rate_typed_ = false;
  chosen_type_ = rate.type;
  billing_.fixed = rate.type == kRateFixed;
  billing_.fixed_enabled = false;
  rate_choice_ = {false, group, index};
  return true;
}

void EntryEditor::Calculate() {
  focus_ = EditorField::kNone;
  if (!IsNumericText(billing_.rate)) {
    Refuse(kNumericOnlyMessage, EditorField::kRate);
    return;
  }
  SetRateFromText(&entry_, billing_.rate, services_.locale.AnsiCodePage());
  rate_value_ = entry_.rate;
  rate_typed_ = false;
  chosen_type_ = kRateNormal;
  entry_.rateType = billing_.fixed ? kRateFixed : kRateNormal;
  billing_.total = FormatAmountWithCurrency(billing_.currency,
                                            EntryAmount(entry_, services_.settings));
}

void EntryEditor::WriteBilling() {
  entry_.billable = billing_.billable;
  entry_.paid = billing_.paid;
  entry_.billTo = billing_.bill_to;
  entry_.currency = billing_.currency;
  if (rate_typed_) {
    SetRateFromText(&entry_, billing_.rate, services_.locale.AnsiCodePage());
    rate_value_ = entry_.rate;
    rate_typed_ = false;
  } else {
    entry_.rate = rate_value_;
  }
  entry_.rateType = RateTypeShown();
}

bool EntryEditor::LeaveBillingPage() {
  focus_ = EditorField::kNone;
  if (!IsNumericText(billing_.rate))
    return Refuse(kNumericOnlyMessage, EditorField::kRate);
  WriteBilling();
  return true;
}

// Custom Fields and Notes pages.

void EntryEditor::SetCustomField(int index, std::u16string_view text) {
  if (index < 0 || index > 2) return;
  custom_.values[index] = CutText(text, kCustomFieldChars);
}

std::vector<std::u16string> EntryEditor::CustomFieldList(int index) {
  static constexpr ValueListKind kKinds[] = {
      ValueListKind::kCustom1, ValueListKind::kCustom2, ValueListKind::kCustom3};
  if (index < 0 || index > 2) return {};
  return Sorted(ValueTexts(kKinds[index]));
}

void EntryEditor::SetNote(const std::vector<std::uint8_t>& blob) { note_ = blob; }

void EntryEditor::SetNoteText(const std::u16string& text) {
  if (text.empty()) {
    note_.clear();
  } else {
    note_ = NoteBlobFromText(text);
  }
}

// Confirming and saving.

bool EntryEditor::Confirm() {
  if (!LeaveGeneralPage()) return false;
  if (general_.task.empty()) {
    return Refuse(LoadString(kIdsTaskNameRequired), EditorField::kTask);
  }
  if (!IsNumericText(general_.duration)) {
    return Refuse(kNumericOnlyMessage, EditorField::kDuration);
  }
  if (!LeaveBillingPage()) return false;
  entry_.custom1 = custom_.values[0];
  entry_.custom2 = custom_.values[1];
  entry_.custom3 = custom_.values[2];
  if (!quillora::SetNote(&entry_, static_cast<std::int32_t>(note_.size()),
                         note_.data())) {
    entry_.noteSize = 0;
  }
  return true;
}

SaveResult EntryEditor::Save(EntryStore& entries) {
  if (!Confirm()) return SaveResult::kRefused;
  bool written = false;
  if (is_new()) {
    written = AddEntry(entries, entry_);
    if (written) entry_.recordId = entries.current_record_id();
  } else {
    written = entries.Seek(SeekType::kObjectId, entry_.recordId) == entry_.recordId &&
              UpdateEntry(entries, entry_);
  }
  if (!written) {
    services_.prompt.ShowMessage(kAppTitle, LoadString(kIdsSaveEntryFailed),
                                 MessageIcon::kError);
    return SaveResult::kFailed;
  }
  GrowCatalogue(services_.catalogue, services_.locale, entry_);
  return SaveResult::kSaved;
}

}  // namespace quillora
