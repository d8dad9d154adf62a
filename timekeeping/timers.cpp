#include "timekeeping/timers.h"

#include <cstdio>
#include <limits>

#include "platform/text.h"
#include "store/string_table.h"
#include "timekeeping/duration.h"
#include "timekeeping/entry_editor.h"

namespace quillora {
namespace {

bool IsIndex(int index) { return index >= 0 && index < kTimerCount; }

}  // namespace

TimerSet::TimerSet(const Clock& clock, TickTimer* tick_timer)
    : clock_(clock), tick_timer_(tick_timer) {
  if (tick_timer_ != nullptr)
    tick_timer_->Start(kTimerTickMilliseconds, [this] { Tick(); });
}

TimerSet::~TimerSet() {
  if (tick_timer_ != nullptr) tick_timer_->Stop();
}

void TimerSet::Tick() {
  FileTime now = 0;
  if (!SystemTimeToFileTime(clock_.LocalNow(), &now)) return;
  if (last_tick_ == 0) last_tick_ = now;
  std::int64_t delta =
      (static_cast<std::int64_t>(now) - static_cast<std::int64_t>(last_tick_)) /
      static_cast<std::int64_t>(kTicksPerSecond);
  // At least one second a tick, even when ticks come faster than a second
  // apart; a clock set back never takes recorded time away.
  if (delta < 1) delta = 1;
  for (int i = 0; i < kTimerCount; ++i) {
    TimerSlot& slot = slots_[i];
    if (slot.state != kTimerRecording) continue;
    const std::int64_t elapsed = slot.elapsed + delta;
    slot.elapsed = elapsed > std::numeric_limits<std::int32_t>::max()
                       ? std::numeric_limits<std::int32_t>::max()
                       : static_cast<std::int32_t>(elapsed);
    if (refresh_) refresh_(i);
  }
  last_tick_ = now;
}

TimerSlot* TimerSet::Slot(int index) { return IsIndex(index) ? &slots_[index] : nullptr; }

const TimerSlot& TimerSet::slot(int index) const {
  return slots_[index < 0 ? 0 : index >= kTimerCount ? kTimerCount - 1 : index];
}

void TimerSet::Record(int index) {
  TimerSlot* slot = Slot(index);
  if (slot == nullptr || !TimerButtonsFor(slot->state).record_enabled) return;
  slot->start = clock_.LocalNow();
  slot->state = kTimerRecording;
  Changed(index);
}

void TimerSet::Pause(int index) {
  TimerSlot* slot = Slot(index);
  if (slot == nullptr || !TimerButtonsFor(slot->state).pause_enabled) return;
  slot->state = slot->state == kTimerPaused ? kTimerRecording : kTimerPaused;
  Changed(index);
}

void TimerSet::Complete(int index, std::vector<std::uint8_t> note) {
  TimerSlot* slot = Slot(index);
  if (slot == nullptr || !TimerButtonsFor(slot->state).complete_enabled) return;
  slot->state = kTimerCompleted;
  slot->note = std::move(note);
  Changed(index);
}

void TimerSet::Reset(int index) {
  if (TimerSlot* slot = Slot(index)) *slot = TimerSlot{};
}

void TimerSet::SetNote(int index, std::vector<std::uint8_t> note) {
  if (TimerSlot* slot = Slot(index)) slot->note = std::move(note);
}

bool TimerSet::AnyActive() const {
  for (const TimerSlot& slot : slots_) {
    if (slot.state != kTimerIdle) return true;
  }
  return false;
}

int TimerSet::LastChanged() const {
  int last = -1;
  for (int i = 0; i < kTimerCount; ++i) {
    const auto at = static_cast<std::size_t>(i);
    if (slots_[at].state == kTimerIdle) continue;
    if (last < 0 || changed_[at] > changed_[static_cast<std::size_t>(last)]) last = i;
  }
  return last;
}

TimerButtons TimerButtonsFor(std::int32_t state) {
  TimerButtons b;
  switch (state) {
    case kTimerIdle:
      b.record_enabled = true;
      break;
    case kTimerRecording:
      b.record_pressed = true;
      b.pause_enabled = true;
      b.complete_enabled = true;
      break;
    case kTimerPaused:
      b.record_pressed = true;
      b.pause_enabled = true;
      b.pause_pressed = true;
      b.complete_enabled = true;
      break;
    case kTimerCompleted:
      b.record_pressed = true;
      b.complete_enabled = true;
      break;
    default:
      break;
  }
  return b;
}

TimerIcon TimerIconFor(std::int32_t state) {
  if (state == kTimerPaused) return TimerIcon::kPaused;
  if (state == kTimerRecording || state == kTimerCompleted) return TimerIcon::kRunning;
  return TimerIcon::kIdle;
}

std::u16string TimerStartText(const TimerSlot& slot, const Locale& locale) {
  if (slot.state == kTimerIdle) return u"Start: <>";
  return u"Start: " + locale.FormatTime(slot.start, kTimeNoSeconds);
}

std::u16string TimerClockText(std::int32_t elapsed) {
  char text[48];
  std::snprintf(text, sizeof text, "%02ld:%02ld:%02ld", static_cast<long>(elapsed / 3600),
                static_cast<long>((elapsed / 60) % 60), static_cast<long>(elapsed % 60));
  return WidenAscii(text);
}

std::u16string TimerDurationText(std::int32_t elapsed) {
  return u"Duration: " + TimerClockText(elapsed);
}

TimersDialog::TimersDialog(TimerSet& timers, int tab)
    : timers_(timers), tab_(IsIndex(tab) ? tab : 0) {
  note_ = timers_.slot(tab_).note;
}

void TimersDialog::SelectTab(int index) {
  if (!IsIndex(index)) return;
  timers_.SetNote(tab_, note_);
  tab_ = index;
  note_ = timers_.slot(tab_).note;
}

TimerButtons TimersDialog::buttons() const {
  return TimerButtonsFor(timers_.slot(tab_).state);
}

std::u16string TimersDialog::StartText(const Locale& locale) const {
  return TimerStartText(timers_.slot(tab_), locale);
}

std::u16string TimersDialog::DurationText() const {
  return TimerDurationText(timers_.slot(tab_).elapsed);
}

void TimersDialog::Record() { timers_.Record(tab_); }

void TimersDialog::Pause() { timers_.Pause(tab_); }

bool TimersDialog::TaskComplete() {
  if (!buttons().complete_enabled) return false;
  timers_.Complete(tab_, note_);
  return true;
}

bool TimersDialog::ResetTimer(UserPrompt& prompt) {
  if (prompt.Ask(kAppTitle, LoadString(kIdsResetTimerQuestion), MessageIcon::kQuestion,
                 QuestionButtons::kYesNo, Answer::kNo) == Answer::kNo) {
    return false;
  }
  timers_.Reset(tab_);
  note_.clear();
  return true;
}

void TimersDialog::Close() { timers_.SetNote(tab_, note_); }

TimeEntry EntryFromTimer(const TimerSlot& slot, const Settings& settings) {
  // A timed entry is a new entry like any other: the editor opens "with
  // defaults from the settings".
  TimeEntry entry = NewEntry(settings, slot.start);
  SystemTime start = slot.start;
  start.second = kStartTimeMark;
  start.milliseconds = 0;
  FileTime start_time = 0;
  if (SystemTimeToFileTime(start, &start_time)) entry.start = start_time;
  const std::uint32_t elapsed =
      slot.elapsed > 0 ? static_cast<std::uint32_t>(slot.elapsed) : 0;
  SetDurationFromTimer(&entry, elapsed, settings);
  SetNote(&entry, static_cast<std::int32_t>(slot.note.size()), slot.note.data());
  return entry;
}

bool HandOverTimer(TimerSet& timers, int index, const Settings& settings,
                   const std::function<bool(TimeEntry& entry)>& edit) {
  if (!IsIndex(index) || timers.slot(index).state != kTimerCompleted) return false;
  TimeEntry entry = EntryFromTimer(timers.slot(index), settings);
  const bool saved = edit(entry);
  // A timed entry the user cancels is gone: the timer is free again.
  timers.Reset(index);
  return saved;
}

}  // namespace quillora
