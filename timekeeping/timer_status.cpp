#include "timekeeping/timer_status.h"

#include <cstdio>

#include "platform/text.h"
#include "store/string_table.h"

namespace quillora {
namespace {

std::u16string TimerName(int index) {
  return kTimerTabLabels[static_cast<std::size_t>(index)];
}

}  // namespace

std::u16string TimerStatusText(const TimerSet& timers, int index) {
  const TimerSlot& slot = timers.slot(index);
  std::u16string text = TimerName(index) + u" " + TimerClockText(slot.elapsed);
  if (slot.state == kTimerPaused) text += u" (paused)";
  if (slot.state == kTimerCompleted) text += u" (completed)";
  return text;
}

std::u16string TimersWindowTitle(const TimerSet& timers) {
  const int last = timers.LastChanged();
  std::u16string title = kAppTitle;
  if (last < 0) return title;
  title += u" - " + TimerStatusText(timers, last);
  int others = 0;
  for (int i = 0; i < kTimerCount; ++i) {
    if (i != last && timers.slot(i).state != kTimerIdle) ++others;
  }
  if (others > 0) title += u" +" + WidenAscii(std::to_string(others));
  return title;
}

std::u16string TimersToolTip(const TimerSet& timers) {
  std::u16string tip = kAppTitle;
  for (int i = 0; i < kTimerCount; ++i) {
    if (timers.slot(i).state != kTimerIdle) tip += u"\n" + TimerStatusText(timers, i);
  }
  return tip;
}

std::u16string TimerButtonText(const TimerSet& timers) {
  const int last = timers.LastChanged();
  return last < 0 ? std::u16string() : TimerClockText(timers.slot(last).elapsed);
}

std::u16string DiscardTimedEntryQuestion(std::int32_t elapsed) {
  char text[48];
  std::snprintf(text, sizeof text, "%ld:%02ld:%02ld", static_cast<long>(elapsed / 3600),
                static_cast<long>((elapsed / 60) % 60), static_cast<long>(elapsed % 60));
  return u"Discard the timed entry (" + WidenAscii(text) + u")?";
}

std::u16string PauseOnTimerText(const TimerSet& timers, int index) {
  return (timers.slot(index).state == kTimerPaused ? u"Resume " : u"Pause ") +
         TimerName(index);
}

std::u16string CompleteOnTimerText(int index) {
  return std::u16string(kTaskCompleteButton) + u" on " + TimerName(index);
}

std::u16string RecordOnTimerText(int index) {
  return std::u16string(kRecordButton) + u" on " + TimerName(index);
}

int FirstIdleTimer(const TimerSet& timers) {
  for (int i = 0; i < kTimerCount; ++i) {
    if (timers.slot(i).state == kTimerIdle) return i;
  }
  return -1;
}

}  // namespace quillora
