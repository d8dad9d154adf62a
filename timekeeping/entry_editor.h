// The entry editor: the one place where a single time entry is created or
// changed. A property sheet of four pages, "General", "Billing", "Custom
// Fields" and "Notes", modelled here without a window: each page's fields are
// plain values that the window shows and sets, its lists are what the window's
// drop-downs offer, and its commands are calls. The entry is written to the
// store only when the sheet is confirmed (Save).
//
// Every text field keeps the limit its control has; a longer text is cut, as
// the control cuts what is typed or pasted into it.
#ifndef QUILLORA_TIMEKEEPING_ENTRY_EDITOR_H_
#define QUILLORA_TIMEKEEPING_ENTRY_EDITOR_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/clock.h"
#include "platform/locale.h"
#include "platform/user_prompt.h"
#include "store/catalogue.h"
#include "store/rates.h"
#include "store/settings.h"
#include "store/time_entry.h"

namespace quillora {

// Field limits, in UTF-16 units.
inline constexpr std::size_t kNameFieldChars = 127;     // "Client:" .. "Task:"
inline constexpr std::size_t kStoredNameChars = 128;    // what confirming keeps
inline constexpr std::size_t kDurationFieldChars = 6;   // "Duration:"
inline constexpr std::size_t kBillToFieldChars = 127;   // "Bill To:"
inline constexpr std::size_t kCurrencyFieldChars = 15;  // as the Defaults page's box
inline constexpr std::size_t kRateFieldChars = 11;      // "42949672.95", the largest rate
inline constexpr std::size_t kCustomFieldChars = 127;   // the three custom fields

// `text` cut to at most `limit` UTF-16 units; a character outside the basic
// plane is never split in half (its high surrogate goes with it).
std::u16string CutText(std::u16string_view text, std::size_t limit);

// A new entry as the views' new-entry command opens the editor on it: the
// billable flag and currency from the new-entry defaults, dated `date` with
// no start time (00:00:00), no duration, rate 0, "Normal Rate".
TimeEntry NewEntry(const Settings& settings, const SystemTime& date);

// What the editor borrows while it is open. The five catalogue stores must be
// open; "Quillora Data 2" is opened when its value lists are needed.
struct EditorServices {
  Catalogue& catalogue;
  const Settings& settings;
  const Locale& locale;
  UserPrompt& prompt;
  const Clock& clock;
};

// The field that has the focus after a refused check.
enum class EditorField { kNone, kClient, kDuration, kTask, kRate };

struct GeneralFields {
  SystemTime date;  // "Date:" (its time of day is not used)
  std::u16string client;
  std::u16string project;
  std::u16string phase;
  std::u16string task;
  std::u16string duration;          // "Duration:" as text
  std::optional<SystemTime> start;  // "Start:" time of day; none when empty
};

// The item chosen in the "Rate:" tree: "(Custom Rate)", or rate `index` of
// group `group` of the tree.
struct RateChoice {
  bool custom = true;
  int group = -1;
  int index = -1;
  friend bool operator==(const RateChoice&, const RateChoice&) = default;
};

struct BillingFields {
  bool billable = false;
  bool paid = false;
  std::u16string bill_to;
  std::u16string currency;
  std::u16string rate;  // "%.02f" of the hundredths when shown
  bool fixed = false;
  bool fixed_enabled = true;
  std::u16string total;  // "Total:", set by "Calculate"
};

struct CustomFieldsPage {
  std::array<std::u16string, 3> labels;  // "Custom1" .. "Custom3" of the settings
  std::array<std::u16string, 3> values;
};

// The "Start Time"/"End Time" dialog as "Set..." opens it.
struct StartEndPickers {
  SystemTime start;
  SystemTime end;
};

enum class SaveResult { kSaved, kRefused, kFailed };

class EntryEditor {
 public:
  // Opens the sheet on `entry`: a new one (record id 0) or one read from the
  // store. Every page's fields are read from it and the General page's lists
  // are filled.
  EntryEditor(const EditorServices& services, const TimeEntry& entry);

  bool is_new() const { return entry_.recordId == 0; }
  // The entry as the pages have written it so far.
  const TimeEntry& entry() const { return entry_; }
  EditorField focus() const { return focus_; }

  // General page.
  const GeneralFields& general() const { return general_; }
  void SetDate(const SystemTime& date);
  void SetClient(std::u16string_view text);
  void SetProject(std::u16string_view text);
  void SetPhase(std::u16string_view text);
  void SetTask(std::u16string_view text);
  // A typed or picked duration; from now on leaving the page stores it.
  void SetDurationText(std::u16string_view text);
  // A start time of day (hour and minute; the seconds become the start mark),
  // or none.
  void SetStart(std::optional<SystemTime> time_of_day);

  // The drop-downs, sorted by the locale comparison.
  const std::vector<std::u16string>& client_list() const { return client_list_; }
  const std::vector<std::u16string>& project_list() const { return project_list_; }
  const std::vector<std::u16string>& phase_list() const { return phase_list_; }
  const std::vector<std::u16string>& task_list() const { return task_list_; }
  std::vector<std::u16string> DurationChoices() const;

  // The cascade: the projects of the client named in "Client:" (none for a
  // client not in the catalogue), then the tasks of the project named in
  // "Project:" (a project of the catalogue offers its own tasks; no project
  // or one not in the catalogue offers the client's tasks).
  void ClientLostFocus();
  void ProjectLostFocus();

  // "Set...": the start field is taken into the entry, then an empty duration
  // shows the duration message and answers nothing; otherwise the duration
  // text is stored and the pickers are answered: the entry's start (or now
  // when it has none) and that start moved on by the duration.
  std::optional<StartEndPickers> BeginSetStartEnd();
  // The dialog's OK: the entry's start from the start picker, the duration
  // from the pickers' difference (granularity applies); both fields then
  // show the entry's values. Only hours and minutes of the pickers count.
  void EndSetStartEnd(const SystemTime& start, const SystemTime& end);

  // Leaving the General page: client, then duration must be given (the
  // message is shown and false answered otherwise); then the page's fields
  // are written into the entry.
  bool LeaveGeneralPage();

  // Billing page.
  // Refills the bill-to list (the client's contacts), the currency list and
  // the rate tree for the client named on the General page. The chosen item
  // is the first rate of the tree with the entry's rate and type, else
  // "(Custom Rate)".
  void OpenBillingPage();
  const BillingFields& billing() const { return billing_; }
  const std::vector<std::u16string>& bill_to_list() const { return bill_to_list_; }
  const std::vector<std::u16string>& currency_list() const { return currency_list_; }
  const RateTree& rate_tree() const { return rate_tree_; }
  const RateChoice& rate_choice() const { return rate_choice_; }
  // The rate type that leaving the page stores.
  std::uint16_t RateTypeShown() const;

  void SetBillable(bool on) { billing_.billable = on; }
  void SetPaid(bool on) { billing_.paid = on; }
  void SetBillTo(std::u16string_view text);
  void SetCurrency(std::u16string_view text);
  // A typed rate: the choice becomes "(Custom Rate)".
  void SetRateText(std::u16string_view text);
  // "Fixed"; false (nothing changed) while it is disabled.
  bool SetFixed(bool on);
  // A rate type given outright (the command line's --rate-type): "Fixed"
  // follows it and the choice becomes "(Custom Rate)".
  void SetRateType(std::uint16_t type);
  // Choosing in the tree. "(Custom Rate)" keeps the rate text and enables
  // "Fixed". A stored rate puts its value in the rate text, takes its type
  // and checks "Fixed" exactly when that type is "Fixed Rate"; "Fixed" is
  // then disabled. False for an item that is not there.
  void ChooseCustomRate();
  bool ChooseRate(int group, int index);
  // "Calculate": the rate text is stored, the type becomes "Fixed Rate" or
  // "Normal Rate" by "Fixed", and "Total:" shows the currency and the amount.
  // A rate text with a letter shows the numeric message instead.
  void Calculate();
  // Leaving the Billing page: a rate text with a letter is refused with the
  // numeric message; otherwise the page's fields are written into the entry.
  bool LeaveBillingPage();

  // Custom Fields page.
  const CustomFieldsPage& custom_fields() const { return custom_; }
  void SetCustomField(int index, std::u16string_view text);  // index 0..2
  // The value list of custom field `index`, sorted.
  std::vector<std::u16string> CustomFieldList(int index);

  // Notes page: the note blob as the note control keeps it.
  void SetNote(const std::vector<std::uint8_t>& blob);
  // Typed text as the note (empty text: no note).
  void SetNoteText(const std::u16string& text);

  // OK: the checks of the pages in their order — client, duration given,
  // task, duration numeric, rate numeric — each showing its message (title
  // "Quillora", exclamation icon) and setting the focus. True when every page
  // has been written into the entry.
  bool Confirm();
  // Confirm, then write: a new entry is added (and takes its record id), an
  // existing one is rewritten in place; then the catalogue learns the names
  // of the entry. A failed write shows "Unable to save the time entry.".
  SaveResult Save(EntryStore& entries);

 private:
  bool Refuse(const std::u16string& text, EditorField field);
  void FillBillingFromEntry();
  void WriteGeneral();
  void WriteBilling();
  std::optional<Client> FindClientNamed(const std::u16string& name);
  std::vector<std::u16string> ValueTexts(ValueListKind kind);
  std::vector<std::u16string> Sorted(std::vector<std::u16string> items) const;

  EditorServices services_;
  TimeEntry entry_;
  EditorField focus_ = EditorField::kNone;

  GeneralFields general_;
  bool duration_typed_ = false;
  bool start_changed_ = false;
  std::vector<std::u16string> client_list_;
  std::vector<std::u16string> project_list_;
  std::vector<std::u16string> phase_list_;
  std::vector<std::u16string> task_list_;

  BillingFields billing_;
  bool rate_typed_ = false;        // the rate text is stored when the page is left
  std::uint32_t rate_value_ = 0;   // the rate stored when the text was not typed
  std::uint16_t chosen_type_ = 0;  // the type kept apart from "Fixed"
  std::vector<std::u16string> bill_to_list_;
  std::vector<std::u16string> currency_list_;
  RateTree rate_tree_;
  RateChoice rate_choice_;

  CustomFieldsPage custom_;
  std::vector<std::uint8_t> note_;
};

}  // namespace quillora

#endif  // QUILLORA_TIMEKEEPING_ENTRY_EDITOR_H_
