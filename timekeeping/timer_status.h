// What the window shows of the running timers outside the "Entry Timers"
// dialog, so that time being recorded is never out of sight: the window
// title, the tray icon's tooltip and menu, the toolbar button, and the
// questions asked before recorded time is thrown away.
#ifndef QUILLORA_TIMEKEEPING_TIMER_STATUS_H_
#define QUILLORA_TIMEKEEPING_TIMER_STATUS_H_

#include <cstdint>
#include <string>

#include "timekeeping/timers.h"

namespace quillora {

// Asked before quitting (or ending the desktop session) while any timer is
// not idle; No is the default answer.
inline constexpr char16_t kTimerQuitQuestion[] =
    u"A timer is running. Quitting discards its time. Quit anyway?";

// "Timer 2 01:12:40"; a paused timer adds " (paused)", a completed one
// (its entry in the editor) " (completed)".
std::u16string TimerStatusText(const TimerSet& timers, int index);

// "Quillora" while every timer is idle; otherwise "Quillora - " and the
// status of the timer that changed last, then " +N" for the N other timers
// that are not idle ("Quillora - Timer 2 01:12:40 +1").
std::u16string TimersWindowTitle(const TimerSet& timers);

// The tray icon's tooltip: "Quillora", then one line per timer that is not
// idle, in timer order.
std::u16string TimersToolTip(const TimerSet& timers);

// The toolbar button's text beside its icon: the elapsed time of the timer
// that changed last ("01:12:40"), empty while every timer is idle.
std::u16string TimerButtonText(const TimerSet& timers);

// "Discard the timed entry (1:12:40)?": asked when the editor opened by "Task
// Complete" is cancelled; the elapsed time as H:MM:SS.
std::u16string DiscardTimedEntryQuestion(std::int32_t elapsed);

// Menu texts of the tray and the toolbar button: "Pause Timer 2" or "Resume
// Timer 2" (by the state), "Task Complete on Timer 2", "Record on Timer 2".
std::u16string PauseOnTimerText(const TimerSet& timers, int index);
std::u16string CompleteOnTimerText(int index);
std::u16string RecordOnTimerText(int index);

// The first idle timer, -1 when none is idle.
int FirstIdleTimer(const TimerSet& timers);

}  // namespace quillora

#endif  // QUILLORA_TIMEKEEPING_TIMER_STATUS_H_
