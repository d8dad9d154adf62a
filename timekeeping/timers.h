// The four entry timers, "Timer 1" to "Timer 4": stopwatches that count the
// seconds of work while it happens and become a new time entry when the user
// taps "Task Complete". They live in memory only; ending the program
// discards them.
//
// Time is measured from the wall clock, not by counting callbacks: each tick
// adds the whole seconds since the previous tick (at least one), so a device
// that slept while a timer was recording gets the whole gap at the first tick
// after waking.
#ifndef QUILLORA_TIMEKEEPING_TIMERS_H_
#define QUILLORA_TIMEKEEPING_TIMERS_H_

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/locale.h"
#include "platform/user_prompt.h"
#include "store/settings.h"
#include "store/time_entry.h"

namespace quillora {

inline constexpr int kTimerCount = 4;
// The tick interval of the periodic timer.
inline constexpr int kTimerTickMilliseconds = 1000;

// Labels of the "Entry Timers" dialog.
inline constexpr char16_t kEntryTimersTitle[] = u"Entry Timers";
inline constexpr std::array<const char16_t*, kTimerCount> kTimerTabLabels = {
    u"Timer 1", u"Timer 2", u"Timer 3", u"Timer 4"};
inline constexpr char16_t kRecordButton[] = u"Record";
inline constexpr char16_t kPauseButton[] = u"Pause";
inline constexpr char16_t kTaskCompleteButton[] = u"Task Complete";
inline constexpr char16_t kResetTimerButton[] = u"Reset Timer";

enum TimerState : std::int32_t {
  kTimerIdle = 0,
  kTimerRecording = 1,
  kTimerPaused = 2,
  kTimerCompleted = 3,  // handed over to the entry editor
};

struct TimerSlot {
  std::int32_t state = kTimerIdle;
  SystemTime start;                // local time "Record" was pressed
  std::int32_t elapsed = 0;        // seconds counted while recording
  std::vector<std::uint8_t> note;  // the note control's contents; empty: none
};

// The periodic system timer that drives the ticks; the window gives one of
// its own, tests none (they call Tick themselves).
class TickTimer {
 public:
  virtual ~TickTimer() = default;
  // Calls `tick` every `milliseconds` until Stop; false when it cannot.
  virtual bool Start(int milliseconds, std::function<void()> tick) = 0;
  virtual void Stop() = 0;
};

// The four timers of the process. Commands act only where the button table
// enables them (see TimerButtonsFor); anything else is ignored.
class TimerSet {
 public:
  // Clears the four slots and starts `tick_timer` (when given) at
  // kTimerTickMilliseconds with Tick as its callback. `clock` and
  // `tick_timer` must outlive the set.
  explicit TimerSet(const Clock& clock, TickTimer* tick_timer = nullptr);
  // Stops the tick timer; the notes go with the slots.
  ~TimerSet();
  TimerSet(const TimerSet&) = delete;
  TimerSet& operator=(const TimerSet&) = delete;

  // Called after a tick with the index of every recording timer (the
  // device posted a refresh message to the foreground window).
  void SetRefreshHandler(std::function<void(int index)> refresh) {
    refresh_ = std::move(refresh);
  }

  // One tick: now from the clock; the first tick takes now as the previous
  // one; delta = whole seconds since the previous tick (remainder dropped),
  // but at least 1; every recording timer gains delta seconds (never beyond
  // the 32-bit count) and is refreshed; now becomes the previous tick.
  void Tick();

  // Out-of-range indexes are ignored by the commands; slot() clamps.
  const TimerSlot& slot(int index) const;

  // "Record" (idle only): start = now, recording. Elapsed is kept.
  void Record(int index);
  // "Pause" (recording or paused): toggles between the two.
  void Pause(int index);
  // "Task Complete" (recording, paused or completed): completed, the note
  // kept with the slot.
  void Complete(int index, std::vector<std::uint8_t> note);
  // Clears the slot: idle, start, elapsed and note emptied.
  void Reset(int index);
  // Keeps the note control's contents with the slot.
  void SetNote(int index, std::vector<std::uint8_t> note);

  // True while any timer is not idle: the toolbar's timer button is then
  // shown pressed.
  bool AnyActive() const;
  // The timer that was last recorded, paused, resumed or completed among
  // those that are not idle; -1 when all are idle. The window shows its time.
  int LastChanged() const;

 private:
  TimerSlot* Slot(int index);
  void Changed(int index) { changed_[static_cast<std::size_t>(index)] = ++changes_; }

  const Clock& clock_;
  TickTimer* tick_timer_;
  std::array<TimerSlot, kTimerCount> slots_;
  // When each slot's state last changed, as a count of changes.
  std::array<std::uint64_t, kTimerCount> changed_{};
  std::uint64_t changes_ = 0;
  FileTime last_tick_ = 0;
  std::function<void(int)> refresh_;
};

// The buttons of the dialog for a timer's state ("Reset Timer" is always
// available).
struct TimerButtons {
  bool record_enabled = false;
  bool record_pressed = false;
  bool pause_enabled = false;
  bool pause_pressed = false;
  bool complete_enabled = false;
  friend bool operator==(const TimerButtons&, const TimerButtons&) = default;
};
TimerButtons TimerButtonsFor(std::int32_t state);

// The icon of a timer's tab.
enum class TimerIcon { kIdle, kPaused, kRunning };
TimerIcon TimerIconFor(std::int32_t state);

// "Start: " and the start time in the locale's time format without seconds,
// or "Start: <>" for an idle timer.
std::u16string TimerStartText(const TimerSlot& slot, const Locale& locale);
// "%02ld:%02ld:%02ld" of hours, minutes, seconds; hours are not limited to
// two digits (360000 seconds: "100:00:00").
std::u16string TimerClockText(std::int32_t elapsed);
// "Duration: " and TimerClockText.
std::u16string TimerDurationText(std::int32_t elapsed);

// The "Entry Timers" dialog: the selected tab, the note control, the
// commands on the selected timer.
class TimersDialog {
 public:
  // Opens on `tab`, the note control filled from its slot.
  TimersDialog(TimerSet& timers, int tab = 0);

  int tab() const { return tab_; }
  // Keeps the note control's contents with the slot being left, then shows
  // the note of `index`.
  void SelectTab(int index);

  // The note control's contents.
  std::vector<std::uint8_t>& note() { return note_; }

  TimerButtons buttons() const;
  std::u16string StartText(const Locale& locale) const;
  std::u16string DurationText() const;

  void Record();
  void Pause();
  // "Task Complete": the note goes with the slot, which is completed. True
  // when the dialog closes with result 1 and the main window is to get
  // TimerCompleted with tab(); false when the button is disabled.
  bool TaskComplete();
  // "Reset Timer": asks "Are you sure to reset the timer?" (title
  // "Quillora", Yes/No, question icon); unless the answer is No the slot and
  // the note control are cleared. True when cleared.
  bool ResetTimer(UserPrompt& prompt);
  // Closing the dialog otherwise keeps the note control's contents with the
  // selected slot.
  void Close();

 private:
  TimerSet& timers_;
  int tab_;
  std::vector<std::uint8_t> note_;
};

// The new entry for a completed timer: what "New Entry" starts from (NewEntry:
// billable and currency from the new-entry defaults), with the date and start
// time of the slot's start (the start-time mark in its seconds), the duration
// from the elapsed seconds through SetDurationFromTimer (so the granularity
// applies), and the slot's note.
TimeEntry EntryFromTimer(const TimerSlot& slot, const Settings& settings);

// What the main window does on TimerCompleted: builds the entry, lets
// `edit` run the entry editor on it as a new entry (answering true when the
// user saved), then resets the slot whether the entry was saved or not.
// Answers what `edit` answered; false for an index that is not completed.
bool HandOverTimer(TimerSet& timers, int index, const Settings& settings,
                   const std::function<bool(TimeEntry& entry)>& edit);

}  // namespace quillora

#endif  // QUILLORA_TIMEKEEPING_TIMERS_H_
