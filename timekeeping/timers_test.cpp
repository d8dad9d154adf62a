#include "timekeeping/timers.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/text.h"
#include "tests/fake_prompt.h"

namespace quillora {
namespace {

// A clock the test moves forward by milliseconds.
class SteppingClock : public Clock {
 public:
  explicit SteppingClock(SystemTime start) { SystemTimeToFileTime(start, &now_); }
  SystemTime LocalNow() const override {
    SystemTime st;
    FileTimeToSystemTime(now_, &st);
    return st;
  }
  void Advance(std::int64_t milliseconds) {
    now_ = static_cast<FileTime>(static_cast<std::int64_t>(now_) +
                                 milliseconds *
                                     static_cast<std::int64_t>(kTicksPerMillisecond));
  }

 private:
  FileTime now_ = 0;
};

class FakeTickTimer : public TickTimer {
 public:
  bool Start(int milliseconds, std::function<void()> tick) override {
    interval = milliseconds;
    tick_ = std::move(tick);
    return true;
  }
  void Stop() override { stopped = true; }
  void Fire() { tick_(); }

  int interval = 0;
  bool stopped = false;

 private:
  std::function<void()> tick_;
};

Settings WithGranularity(std::uint16_t minutes) {
  Settings s;
  s.option_bits = kOptionGranularity;
  s.granularity = minutes;
  return s;
}

class TimersTest : public ::testing::Test {
 protected:
  // Ticks once a second (plus the given extra milliseconds) `count` times.
  void Tick(int count, std::int64_t step_ms = 1000) {
    for (int i = 0; i < count; ++i) {
      clock_.Advance(step_ms);
      timers_.Tick();
    }
  }

  SteppingClock clock_{MakeSystemTime(2026, 11, 20, 9, 5, 42, 250)};
  TimerSet timers_{clock_};
  std::unique_ptr<Locale> locale_ = Locale::UsEnglish();
};

TEST_F(TimersTest, NinetyMinutesShowAndBecomeAnEntryAtTheGranularity) {
  timers_.Tick();  // the first tick only sets the previous tick (and counts 1)
  timers_.Record(1);
  Tick(90 * 60 - 1);
  const TimerSlot& slot = timers_.slot(1);
  EXPECT_EQ(slot.elapsed, 90 * 60 - 1) << "recording began after the first tick";
  Tick(1);
  EXPECT_EQ(TimerDurationText(slot.elapsed), u"Duration: 01:30:00");
  EXPECT_EQ(TimerStartText(slot, *locale_), u"Start: 9:05 AM");
  EXPECT_EQ(TimerStartText(timers_.slot(0), *locale_), u"Start: <>");

  timers_.Complete(1, {'n', 'o', 't', 'e'});
  Settings defaults = WithGranularity(15);
  defaults.option_bits |= kOptionBillable;
  defaults.default_currency = u"EUR";
  const TimeEntry entry = EntryFromTimer(slot, defaults);
  EXPECT_EQ(entry.duration, 150u);
  EXPECT_TRUE(entry.billable) << "the new-entry defaults, as New Entry has them";
  EXPECT_EQ(entry.currency, u"EUR");
  SystemTime start;
  ASSERT_TRUE(FileTimeToSystemTime(entry.start, &start));
  EXPECT_EQ(start, MakeSystemTime(2026, 11, 20, 9, 5, kStartTimeMark))
      << "the start with the start-time mark";
  EXPECT_EQ(entry.noteSize, 4);
  EXPECT_EQ(entry.note, (std::vector<std::uint8_t>{'n', 'o', 't', 'e'}));
  EXPECT_TRUE(entry.client.empty());
  EXPECT_EQ(entry.recordId, 0u);

  // 91 minutes round up to the next quarter hour.
  TimerSlot longer = slot;
  longer.elapsed = 91 * 60;
  EXPECT_EQ(EntryFromTimer(longer, WithGranularity(15)).duration, 175u);
}

TEST(TimerTextTest, DurationHoursAreNotLimitedToTwoDigits) {
  const struct {
    std::int32_t elapsed;
    const char16_t* text;
  } cases[] = {{0, u"Duration: 00:00:00"},       {59, u"Duration: 00:00:59"},
               {3599, u"Duration: 00:59:59"},    {3600, u"Duration: 01:00:00"},
               {360000, u"Duration: 100:00:00"}, {2147483647, u"Duration: 596523:14:07"}};
  for (const auto& c : cases)
    EXPECT_EQ(TimerDurationText(c.elapsed), c.text) << c.elapsed;
}

TEST_F(TimersTest, TicksCountWallClockSecondsButAtLeastOne) {
  std::vector<int> refreshed;
  timers_.SetRefreshHandler([&](int index) { refreshed.push_back(index); });
  timers_.Record(0);
  timers_.Record(3);
  timers_.Tick();
  EXPECT_EQ(timers_.slot(0).elapsed, 1) << "the first tick has no gap and counts 1";
  Tick(5, 600);
  EXPECT_EQ(timers_.slot(0).elapsed, 6) << "ticks 0.6 s apart add 1 second each";
  Tick(1, 1999);
  EXPECT_EQ(timers_.slot(0).elapsed, 7) << "the remainder is dropped";
  Tick(1, 10 * 60 * 1000);
  EXPECT_EQ(timers_.slot(0).elapsed, 607) << "a ten-minute suspend comes at once";
  Tick(1, -3600 * 1000);
  EXPECT_EQ(timers_.slot(0).elapsed, 608) << "a clock set back takes nothing away";
  EXPECT_EQ(timers_.slot(3).elapsed, 608);
  EXPECT_EQ(timers_.slot(1).elapsed, 0);
  EXPECT_EQ(refreshed.size(), 2u * 9);
  EXPECT_EQ(refreshed[0], 0);
  EXPECT_EQ(refreshed[1], 3);

  timers_.Reset(0);
  timers_.Record(0);
  Tick(1, std::int64_t{1} << 42);
  EXPECT_EQ(timers_.slot(0).elapsed, 2147483647) << "the count saturates";
}

TEST_F(TimersTest, CommandsFollowTheButtonTable) {
  using B = TimerButtons;
  EXPECT_EQ(TimerButtonsFor(kTimerIdle), (B{true, false, false, false, false}));
  EXPECT_EQ(TimerButtonsFor(kTimerRecording), (B{false, true, true, false, true}));
  EXPECT_EQ(TimerButtonsFor(kTimerPaused), (B{false, true, true, true, true}));
  EXPECT_EQ(TimerButtonsFor(kTimerCompleted), (B{false, true, false, false, true}));
  EXPECT_EQ(TimerIconFor(kTimerIdle), TimerIcon::kIdle);
  EXPECT_EQ(TimerIconFor(kTimerPaused), TimerIcon::kPaused);
  EXPECT_EQ(TimerIconFor(kTimerCompleted), TimerIcon::kRunning);

  timers_.Pause(2);
  timers_.Complete(2, {});
  EXPECT_EQ(timers_.slot(2).state, kTimerIdle) << "disabled buttons do nothing";
  EXPECT_FALSE(timers_.AnyActive());
  timers_.Record(2);
  const SystemTime started = timers_.slot(2).start;
  clock_.Advance(5000);
  timers_.Record(2);
  EXPECT_EQ(timers_.slot(2).start, started) << "Record is disabled while recording";
  EXPECT_TRUE(timers_.AnyActive());
  timers_.Pause(2);
  EXPECT_EQ(timers_.slot(2).state, kTimerPaused);
  timers_.Pause(2);
  EXPECT_EQ(timers_.slot(2).state, kTimerRecording);
  timers_.Record(7);
  timers_.Pause(-1);
  EXPECT_EQ(timers_.slot(7).state, kTimerIdle) << "slot() clamps, commands ignore";
}

TEST_F(TimersTest, PauseThenCompleteKeepsTheTimeBeforeThePause) {
  timers_.Tick();
  TimersDialog dialog(timers_, 1);
  dialog.Record();
  Tick(600);
  dialog.Pause();
  Tick(300);
  EXPECT_EQ(dialog.DurationText(), u"Duration: 00:10:00");
  dialog.note() = {1, 2, 3};
  ASSERT_TRUE(dialog.TaskComplete());
  Tick(50);
  EXPECT_EQ(timers_.slot(1).elapsed, 600) << "a completed timer does not count";
  EXPECT_EQ(timers_.slot(1).note, (std::vector<std::uint8_t>{1, 2, 3}));

  std::uint32_t duration = 0;
  const bool saved = HandOverTimer(timers_, 1, WithGranularity(15), [&](TimeEntry& e) {
    duration = e.duration;
    return true;
  });
  EXPECT_TRUE(saved);
  EXPECT_EQ(duration, 25u);
  EXPECT_EQ(timers_.slot(1).state, kTimerIdle);
  EXPECT_FALSE(HandOverTimer(timers_, 1, WithGranularity(15), [](TimeEntry&) {
    ADD_FAILURE() << "an idle timer is not handed over";
    return true;
  }));
}

TEST_F(TimersTest, CompleteThenCancelLosesTheTimedEntry) {
  timers_.Record(1);
  Tick(120);
  timers_.Complete(1, {9});
  TimeEntry seen;
  EXPECT_FALSE(HandOverTimer(timers_, 1, Settings(), [&](TimeEntry& e) {
    seen = e;
    return false;
  }));
  EXPECT_EQ(seen.duration, 3u) << "120 s without granularity is 0.0333 h";
  const TimerSlot& slot = timers_.slot(1);
  EXPECT_EQ(slot.state, kTimerIdle);
  EXPECT_EQ(slot.elapsed, 0);
  EXPECT_TRUE(slot.note.empty());
  EXPECT_EQ(slot.start, SystemTime{});
  EXPECT_FALSE(timers_.AnyActive());
}

TEST_F(TimersTest, TheDialogKeepsANotePerTimerAndAsksBeforeAReset) {
  TimersDialog dialog(timers_);
  dialog.note() = {'a'};
  dialog.SelectTab(2);
  EXPECT_TRUE(dialog.note().empty());
  dialog.note() = {'c'};
  dialog.SelectTab(0);
  EXPECT_EQ(dialog.note(), (std::vector<std::uint8_t>{'a'}));
  dialog.SelectTab(9);
  EXPECT_EQ(dialog.tab(), 0);
  dialog.Record();
  Tick(3);

  testing::FakePrompt prompt;
  prompt.answers = {Answer::kNo, Answer::kYes};
  EXPECT_FALSE(dialog.ResetTimer(prompt));
  EXPECT_EQ(timers_.slot(0).elapsed, 3);
  EXPECT_TRUE(dialog.ResetTimer(prompt));
  EXPECT_EQ(timers_.slot(0).state, kTimerIdle);
  EXPECT_TRUE(dialog.note().empty());
  EXPECT_EQ(dialog.buttons(), TimerButtonsFor(kTimerIdle));
  ASSERT_EQ(prompt.shown.size(), 2u);
  EXPECT_EQ(prompt.shown[0].title, u"Quillora");
  EXPECT_EQ(prompt.shown[0].text, u"Are you sure to reset the timer?");
  EXPECT_EQ(prompt.shown[0].icon, MessageIcon::kQuestion);
  EXPECT_EQ(prompt.shown[0].buttons, QuestionButtons::kYesNo);

  dialog.SelectTab(2);
  dialog.note().push_back('d');
  dialog.Close();
  EXPECT_EQ(timers_.slot(2).note, (std::vector<std::uint8_t>{'c', 'd'}));
  TimersDialog reopened(timers_, 2);
  EXPECT_EQ(reopened.note(), (std::vector<std::uint8_t>{'c', 'd'}));
}

TEST(TimerSetTest, StartsAndStopsItsTickTimer) {
  FixedClock clock(MakeSystemTime(2026, 1, 1, 8));
  FakeTickTimer tick_timer;
  {
    TimerSet timers(clock, &tick_timer);
    EXPECT_EQ(tick_timer.interval, 1000);
    timers.Record(0);
    tick_timer.Fire();
    tick_timer.Fire();
    EXPECT_EQ(timers.slot(0).elapsed, 2) << "a clock that stands still counts 1 a tick";
    EXPECT_FALSE(tick_timer.stopped);
  }
  EXPECT_TRUE(tick_timer.stopped);
}

}  // namespace
}  // namespace quillora
