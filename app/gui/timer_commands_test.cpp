// The running timers kept in sight offscreen, with the window's clock set:
// the title, the tray's tooltip and menu, the toolbar's record menu, the
// timers dialog's buttons, the question before quitting and the one before a
// timed entry is cancelled; the timed entry's way into the view.
#include "app/gui/timer_commands.h"

#include <QApplication>
#include <QtTest>

#include "app/gui/entry_commands.h"
#include "app/gui/entry_editor_dialog.h"
#include "app/gui/qt_text.h"
#include "app/gui/window_test_fixture.h"
#include "store/note_text.h"

namespace quillora {
namespace {

class TimerCommandsTest : public QObject, public testing::WindowFixture {
  Q_OBJECT

 private:
  TimerCommands* commands_ = nullptr;
  int seconds_ = 0;  // the clock, in seconds after 9:00

  TimerSet& timers() { return commands_->hub().timers(); }
  // Moves the clock on and ticks once: recording timers gain `seconds`.
  void Pass(int seconds) {
    seconds_ += seconds;
    clock_->Set(MakeSystemTime(2026, 11, 18, 9 + seconds_ / 3600, (seconds_ / 60) % 60,
                               seconds_ % 60));
    timers().Tick();
  }
  QAction* TrayAction(const QString& name) {
    return commands_->tray()->menu()->findChild<QAction*>(name);
  }

 private slots:
  void init() {
    QVERIFY(OpenData(MakeSystemTime(2026, 11, 18, 9, 0, 0)));
    seconds_ = 0;
    QVERIFY(OpenWindow());
    commands_ = window_->findChild<TimerCommands*>("timerCommands");
    QVERIFY(commands_ != nullptr);
    commands_->hub().StopTicking();
    timers().Tick();  // the previous tick: from now on a tick counts the clock
  }

  void TitleTooltipAndButtonFollowTheTimers() {
    const struct {
      const char* what;
      std::function<void()> act;
      QString title, tooltip, button;
    } steps[] = {
        {"idle", [] {}, "Quillora", "Quillora", ""},
        {"0 s", [&] { commands_->Record(1); }, "Quillora - Timer 2 00:00:00",
         "Quillora\nTimer 2 00:00:00", "00:00:00"},
        {"59 s", [&] { Pass(59); }, "Quillora - Timer 2 00:00:59",
         "Quillora\nTimer 2 00:00:59", "00:00:59"},
        {"two timers",
         [&] {
           commands_->Record(0);
           Pass(10);
           commands_->Pause(0);
         },
         "Quillora - Timer 1 00:00:10 (paused) +1",
         "Quillora\nTimer 1 00:00:10 (paused)\nTimer 2 00:01:09", "00:00:10"},
    };
    const QAction* button = window_->actions().timers;
    for (const auto& s : steps) {
      s.act();
      QCOMPARE(window_->windowTitle(), s.title);
      QCOMPARE(commands_->tray()->icon()->toolTip(), s.tooltip);
      QCOMPARE(commands_->tray()->icon()->isVisible(), !s.button.isEmpty());
      QCOMPARE(button->iconText(),
               s.button.isEmpty() ? QString("Entry Timers") : s.button);
      QCOMPARE(button->text(), QString("Entry Timers..."));
      QCOMPARE(button->isChecked(), !s.button.isEmpty());
    }
  }

  void TimerButtonsFollowTheState() {
    TimersDialogWidget dialog(commands_->hub(), *data_->locale, prompt_);
    struct Step {
      const char* what;
      QPushButton* button;
      bool record_on, record_down, pause_on, pause_down, complete_on;
    };
    const Step steps[] = {
        {"opened", nullptr, true, false, false, false, false},
        {"record", dialog.record_button(), false, true, true, false, true},
        {"pause", dialog.pause_button(), false, true, true, true, true},
        {"resume", dialog.pause_button(), false, true, true, false, true},
    };
    for (const Step& s : steps) {
      if (s.button) s.button->click();
      QVERIFY2(dialog.record_button()->isEnabled() == s.record_on, s.what);
      QVERIFY2(dialog.record_button()->isChecked() == s.record_down, s.what);
      QVERIFY2(dialog.pause_button()->isEnabled() == s.pause_on, s.what);
      QVERIFY2(dialog.pause_button()->isChecked() == s.pause_down, s.what);
      QVERIFY2(dialog.complete_button()->isEnabled() == s.complete_on, s.what);
    }
    QCOMPARE(dialog.start_label()->text(), QString("Start: 9:00 AM"));
    // "Reset Timer" clears the timer and the note (the question is the
    // timers' own, timekeeping/timers_test).
    dialog.note_edit()->SetText("gone");
    prompt_.answers = {Answer::kYes};
    dialog.reset_button()->click();
    QCOMPARE(timers().slot(0).state, kTimerIdle);
    QCOMPARE(dialog.note_edit()->Text(), QString());
    QCOMPARE(dialog.start_label()->text(), QString("Start: <>"));
  }

  // The tray's and the toolbar's menu items act on their own timer; Ctrl+T
  // opens the dialog on the first idle one.
  void MenusReachTheRightTimer() {
    commands_->record_menu()->aboutToShow();
    commands_->record_menu()->findChild<QAction*>("recordOn3")->trigger();
    commands_->record_menu()->aboutToShow();
    QVERIFY(commands_->record_menu()->findChild<QAction*>("recordOn3") == nullptr);
    commands_->record_menu()->findChild<QAction*>("recordOn1")->trigger();
    QCOMPARE(timers().slot(0).state, kTimerRecording);
    QCOMPARE(timers().slot(2).state, kTimerRecording);

    QCOMPARE(TrayAction("trayPause3")->text(), QString("Pause Timer 3"));
    TrayAction("trayPause3")->trigger();
    QCOMPARE(timers().slot(2).state, kTimerPaused);
    QCOMPARE(timers().slot(0).state, kTimerRecording);
    QCOMPARE(TrayAction("trayPause3")->text(), QString("Resume Timer 3"));
    QVERIFY(TrayAction("trayPause2") == nullptr);

    Pass(360);
    bool edited = false;
    OnModal([&](QWidget* widget) {
      auto* editor = qobject_cast<EntryEditorDialog*>(widget);
      QVERIFY(editor != nullptr);
      edited = true;
      prompt_.answers = {Answer::kYes};
      editor->reject();
    });
    TrayAction("trayComplete1")->trigger();
    QVERIFY(edited);
    QCOMPARE(timers().slot(0).state, kTimerIdle);
    QCOMPARE(timers().slot(2).state, kTimerPaused);

    int tab = -1;
    bool record_focused = false;
    OnModal([&](QWidget* widget) {
      auto* dialog = qobject_cast<TimersDialogWidget*>(widget);
      tab = dialog->tabs()->currentIndex();
      record_focused = dialog->focusWidget() == dialog->record_button() &&
                       dialog->record_button()->isDefault();
      dialog->reject();
    });
    window_->actions().timers->trigger();
    QCOMPARE(tab, 0);
    QVERIFY(record_focused);
  }

  void QuitAsksWhileATimerRuns() {
    window_->show();
    QVERIFY(window_->close());  // nothing runs: closes without a word
    QVERIFY(prompt_.shown.empty());
    window_->show();
    commands_->Record(0);
    for (const Answer answer : {Answer::kNo, Answer::kYes}) {
      prompt_.answers = {answer};
      QCOMPARE(window_->close(), answer == Answer::kYes);
      QCOMPARE(window_->isVisible(), answer == Answer::kNo);
      QCOMPARE(timers().slot(0).state, kTimerRecording);
    }
    QCOMPARE(prompt_.shown.size(), std::size_t{2});
    QCOMPARE(ToQString(prompt_.shown[0].text),
             QString("A timer is running. Quitting discards its time. Quit anyway?"));
    QCOMPARE(prompt_.shown[0].default_answer, Answer::kNo);
    QCOMPARE(prompt_.shown[0].buttons, QuestionButtons::kYesNo);
  }

  // "Task Complete", then Cancel: No keeps the editor on the entry, Yes
  // discards it; either way the timer is free again.
  void CancellingATimedEntryAsks() {
    commands_->Record(1);
    Pass(4330);
    int asked = 0;
    OnModal([&](QWidget* widget) {
      auto* editor = qobject_cast<EntryEditorDialog*>(widget);
      QVERIFY(editor != nullptr);
      prompt_.answers = {Answer::kNo};
      editor->reject();
      QVERIFY(editor->isVisible());
      prompt_.answers = {Answer::kYes};
      editor->reject();
      QVERIFY(!editor->isVisible());
      asked = static_cast<int>(prompt_.shown.size());
    });
    commands_->Complete(1);
    QCOMPARE(asked, 2);
    QCOMPARE(ToQString(prompt_.shown[0].text),
             QString("Discard the timed entry (1:12:10)?"));
    QCOMPARE(prompt_.shown[0].default_answer, Answer::kNo);
    QCOMPARE(timers().slot(1).state, kTimerIdle);
    QVERIFY(Shown().empty());
  }

  // "Task Complete" in the dialog opens the editor on a new entry with the
  // timer's start and note (with its drawing); OK saves it, with the new-entry defaults,
  // into the view and selects it; the timer is free again.
  void TimedEntryCarriesTheNewEntryDefaults() {
    data_->settings.option_bits |= kOptionBillable;
    data_->settings.default_currency = u"EUR";
    bool edited = false;
    OnModal([&](QWidget* widget) {
      auto* dialog = qobject_cast<TimersDialogWidget*>(widget);
      QVERIFY(dialog != nullptr);
      QCOMPARE(dialog->windowTitle(), QString("Entry Timers"));
      dialog->tabs()->setCurrentIndex(1);
      dialog->record_button()->click();
      QCOMPARE(timers().slot(1).state, kTimerRecording);
      Pass(1800);
      QCOMPARE(dialog->duration_label()->text(), QString("Duration: 00:30:00"));
      dialog->note_edit()->SetText("Met the client");
      dialog->note_edit()->canvas()->BeginStroke({3, 4});
      dialog->note_edit()->canvas()->ExtendStroke({30, 40});
      dialog->note_edit()->canvas()->EndStroke();
      OnModal([&](QWidget* widget) {
        prompt_.answers = {Answer::kYes};  // a failed check's Cancel discards the entry
        auto* editor = qobject_cast<EntryEditorDialog*>(widget);
        QVERIFY(editor != nullptr && editor->editor().is_new());
        QCOMPARE(editor->date_edit()->date(), QDate(2026, 11, 18));
        QVERIFY(editor->start_check()->isChecked());
        QCOMPARE(editor->note_edit()->Text(), QString("Met the client"));
        QCOMPARE(editor->note_edit()->canvas()->strokes().size(), std::size_t{1});
        editor->client_box()->setEditText("Acme");
        editor->task_box()->setEditText("Design");
        editor->accept();
        edited = true;
      });
      dialog->complete_button()->click();
    });
    commands_->OpenTimers();
    QVERIFY(edited);
    QCOMPARE(timers().slot(1).state, kTimerIdle);
    QVERIFY(!window_->actions().timers->isChecked());
    const std::vector<TimeEntry> shown = Shown();
    QCOMPARE(shown.size(), std::size_t{1});
    QVERIFY(shown[0].billable && HasStartTime(shown[0]));
    QCOMPARE(ToQString(shown[0].currency), QString("EUR"));
    QCOMPARE(shown[0].duration, 50u);
    QCOMPARE(shown[0].note, NoteBlobFromParts(u"Met the client", {{{3, 4}, {30, 40}}}));
    QCOMPARE(window_->SelectedRecordId(), shown[0].recordId);
  }
};

}  // namespace
}  // namespace quillora

QTEST_MAIN(quillora::TimerCommandsTest)
#include "timer_commands_test.moc"
