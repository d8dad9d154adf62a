// The entry editor, notes, copy and the timers offscreen: the path from a
// timer to an entry in the week view, the editor's refusals, notes with a
// drawing, and the timers' buttons.
#include <sys/stat.h>

#include <QApplication>
#include <QCalendarWidget>
#include <QFile>
#include <QtTest>

#include "app/gui/copy_entry_dialog.h"
#include "app/gui/entry_commands.h"
#include "app/gui/entry_editor_dialog.h"
#include "app/gui/qt_text.h"
#include "app/gui/window_test_fixture.h"
#include "app/gui/timer_commands.h"
#include "app/gui/window_commands.h"
#include "platform/text.h"
#include "store/string_table.h"
#include "timekeeping/duration.h"

namespace quillora {
namespace {

class EntryDialogsTest : public QObject {
  Q_OBJECT

 private:
  testing::WindowFixture f_;
  DataContext* data_ = nullptr;
  FixedClock* clock_ = nullptr;
  MainWindow* window_ = nullptr;
  testing::FakePrompt& prompt_ = f_.prompt();
  EntryCommands* commands_ = nullptr;
  TimerCommands* timers_ = nullptr;

  EditorServices Services() {
    return {*data_->catalogue, data_->settings, *data_->locale, prompt_, *clock_};
  }

  // Acts on the next modal dialog once it runs, then closes it if the
  // action left it open (a failed check), so that a failure never hangs.
  void OnModal(std::function<void(QWidget*)> body) {
    QTimer::singleShot(0, this, [body = std::move(body)] {
      QWidget* widget = QApplication::activeModalWidget();
      body(widget);
      if (auto* dialog = qobject_cast<QDialog*>(widget); dialog && dialog->isVisible()) {
        dialog->reject();
      }
    });
  }

  std::vector<TimeEntry> Shown() const { return f_.Shown(); }

 private slots:
  void init() {
    // Wednesday 2026-11-18; the week runs from Sunday the 15th.
    QVERIFY(f_.OpenData(MakeSystemTime(2026, 11, 18, 9, 0, 0)));
    data_ = &f_.data();
    clock_ = &f_.clock();
    data_->settings.option_bits |= kOptionGranularity;
    data_->settings.granularity = 15;
    data_->settings.default_currency = u"USD";
    QVERIFY(f_.OpenWindow());
    window_ = &f_.window();
    commands_ = window_->findChild<EntryCommands*>("entryCommands");
    QVERIFY(commands_ != nullptr);
    timers_ = window_->findChild<TimerCommands*>("timerCommands");
    timers_->hub().StopTicking();
    prompt_ = testing::FakePrompt();
  }

  void cleanup() { f_.Close(); }

  // Timer 2 records for 80 minutes with a note and a drawing; "Task Complete"
  // opens the editor on the new entry; OK saves it into the week shown.
  void TimerToEntryInTheWeekView() {
    TimerSet& timers = timers_->hub().timers();
    bool editor_seen = false;
    OnModal([&](QWidget* widget) {
      auto* dialog = qobject_cast<TimersDialogWidget*>(widget);
      QVERIFY(dialog != nullptr);
      QCOMPARE(dialog->windowTitle(), QString("Entry Timers"));
      dialog->tabs()->setCurrentIndex(1);
      dialog->record_button()->click();
      QCOMPARE(timers.slot(1).state, kTimerRecording);
      timers.Tick();
      clock_->Set(MakeSystemTime(2026, 11, 18, 10, 20, 0));
      timers.Tick();  // the whole 80 minutes at once, as after a sleep
      // The first tick counted its one second too.
      QCOMPARE(dialog->duration_label()->text(), QString("Duration: 01:20:01"));
      dialog->note_edit()->SetText("Met the client");
      dialog->note_edit()->canvas()->BeginStroke({3, 4});
      dialog->note_edit()->canvas()->ExtendStroke({30, 40});
      dialog->note_edit()->canvas()->EndStroke();
      OnModal([&](QWidget* widget) {
        auto* editor = qobject_cast<EntryEditorDialog*>(widget);
        QVERIFY(editor != nullptr);
        editor_seen = true;
        QVERIFY(editor->editor().is_new());
        QCOMPARE(editor->date_edit()->date(), QDate(2026, 11, 18));
        QVERIFY(editor->start_check()->isChecked());
        QCOMPARE(editor->start_edit()->time(), QTime(9, 0));
        QCOMPARE(editor->duration_box()->currentText(),
                 QString("1.50"));  // 80 min up to 90
        QCOMPARE(editor->note_edit()->Text(), QString("Met the client"));
        QCOMPARE(editor->note_edit()->canvas()->strokes().size(), std::size_t{1});
        editor->client_box()->setEditText("Acme");
        editor->task_box()->setEditText("Design");
        editor->accept();
        QCOMPARE(editor->save_result(), std::optional(SaveResult::kSaved));
      });
      dialog->complete_button()->click();
    });
    timers_->OpenTimers();
    QVERIFY(editor_seen);
    QVERIFY(prompt_.shown.empty());
    QCOMPARE(timers.slot(1).state, kTimerIdle);
    QVERIFY(!window_->actions().timers->isChecked());
    const std::vector<TimeEntry> shown = Shown();
    QCOMPARE(shown.size(), std::size_t{1});
    QCOMPARE(ToQString(shown[0].task), QString("Design"));
    QCOMPARE(shown[0].duration, 150u);
    QVERIFY(HasStartTime(shown[0]));
    std::u16string text;
    std::vector<NoteStroke> strokes;
    QVERIFY(ReadNoteBlob(shown[0].note.data(), shown[0].note.size(), &text, &strokes));
    QCOMPARE(ToQString(text), QString("Met the client"));
    QCOMPARE(strokes, (std::vector<NoteStroke>{{{3, 4}, {30, 40}}}));
    QCOMPARE(window_->SelectedRecordId(), shown[0].recordId);
  }

  void TimerButtonsFollowTheState() {
    TimersDialogWidget dialog(timers_->hub(), *data_->locale, prompt_);
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
    // "Reset Timer": No keeps the timer, Yes clears it and the note.
    dialog.note_edit()->SetText("kept");
    prompt_.answers = {Answer::kNo, Answer::kYes};
    dialog.reset_button()->click();
    QCOMPARE(timers_->hub().timers().slot(0).state, kTimerRecording);
    dialog.reset_button()->click();
    QCOMPARE(timers_->hub().timers().slot(0).state, kTimerIdle);
    QCOMPARE(dialog.note_edit()->Text(), QString());
    QCOMPARE(prompt_.shown.size(), std::size_t{2});
    QCOMPARE(dialog.start_label()->text(), QString("Start: <>"));
  }

  // OK refuses, in the editor's order, each with its message and focus.
  void EditorRefusals() {
    EntryEditorDialog dialog(Services(), NewEntry(data_->settings, clock_->LocalNow()),
                             window_->entries());
    struct Step {
      const char* client;
      const char* task;
      const char* duration;
      std::u16string message;  // empty: saved
    };
    const Step steps[] = {
        {"", "", "", LoadString(kIdsClientNameRequired)},
        {"Acme", "", "", kDurationRequiredMessage},
        {"Acme", "", "1h", LoadString(kIdsTaskNameRequired)},
        {"Acme", "Design", "1h", kNumericOnlyMessage},
        {"Acme", "Design", "1,5", u""},
    };
    for (const Step& s : steps) {
      prompt_.shown.clear();
      dialog.pages()->setCurrentIndex(0);
      dialog.client_box()->setEditText(s.client);
      dialog.task_box()->setEditText(s.task);
      dialog.duration_box()->setEditText(s.duration);
      dialog.accept();
      if (s.message.empty()) {
        QVERIFY2(prompt_.shown.empty(), s.duration);
        QCOMPARE(dialog.save_result(), std::optional(SaveResult::kSaved));
        continue;
      }
      QCOMPARE(dialog.save_result(), std::optional(SaveResult::kRefused));
      QCOMPARE(prompt_.shown.size(), std::size_t{1});
      QCOMPARE(ToQString(prompt_.shown[0].text), ToQString(s.message));
      QCOMPARE(ToQString(prompt_.shown[0].title), QString("Quillora"));
      QVERIFY(prompt_.shown[0].icon == MessageIcon::kExclamation);
      QCOMPARE(dialog.pages()->currentIndex(), 0);
    }
    QCOMPARE(dialog.editor().entry().duration, 100u);  // "1,5" reads as 1 hour
  }

  void LeavingAndSettingStartEnd() {
    EntryEditorDialog dialog(Services(), NewEntry(data_->settings, clock_->LocalNow()),
                             window_->entries());
    // "Set..." with no duration: the message, and the pickers never open.
    bool picked = false;
    dialog.SetStartEnd([&](StartEndPickers*) { return picked = true; });
    QVERIFY(!picked);
    QCOMPARE(ToQString(prompt_.Texts().at(0)), ToQString(kDurationRequiredMessage));
    dialog.duration_box()->setEditText("1");
    dialog.SetStartEnd([&](StartEndPickers* p) {
      p->start = MakeSystemTime(2026, 11, 18, 8, 15, 0);
      p->end = MakeSystemTime(2026, 11, 18, 10, 0, 0);
      return picked = true;
    });
    QVERIFY(picked);
    QCOMPARE(dialog.start_edit()->time(), QTime(8, 15));
    QCOMPARE(dialog.duration_box()->currentText(), QString("1.75"));
    // The General page cannot be left without a client.
    prompt_.shown.clear();
    dialog.pages()->setCurrentIndex(1);
    QCOMPARE(dialog.pages()->currentIndex(), 0);
    QCOMPARE(ToQString(prompt_.Texts().at(0)),
             ToQString(LoadString(kIdsClientNameRequired)));
    dialog.client_box()->setEditText("Acme");
    dialog.pages()->setCurrentIndex(1);
    QCOMPARE(dialog.pages()->currentIndex(), 1);
    // Billing: a rate with a letter is refused by "Calculate"; a number totals.
    prompt_.shown.clear();
    dialog.rate_edit()->setText("12a");
    emit dialog.rate_edit()->textEdited("12a");
    dialog.calculate_button()->click();
    QCOMPARE(ToQString(prompt_.Texts().at(0)), ToQString(kNumericOnlyMessage));
    dialog.rate_edit()->setText("20");
    emit dialog.rate_edit()->textEdited("20");
    dialog.calculate_button()->click();
    QCOMPARE(dialog.total_edit()->text(), QString("USD35.00"));
    QVERIFY(dialog.fixed_check()->isEnabled());
    QCOMPARE(dialog.rate_tree()->currentItem()->text(0),
             ToQString(LoadString(kIdsCustomRate)));
  }

  // "Edit In Word" takes the document's text back and keeps the drawing (the
  // blob itself is store/note_text_test's).
  void EditInWordKeepsTheDrawing() {
    EntryEditorDialog dialog(Services(), NewEntry(data_->settings, clock_->LocalNow()),
                             window_->entries());
    NoteEdit* note = dialog.note_edit();
    note->SetText("line one\nline two");
    note->SetDrawing(true);
    note->canvas()->BeginStroke({1, 1});
    note->canvas()->ExtendStroke({5, 9});
    note->canvas()->EndStroke();

    // The document is written where only the user can read it.
    struct stat st {};
    QCOMPARE(::stat(QFile::encodeName(dialog.document_folder()).constData(), &st), 0);
    QCOMPARE(st.st_mode & 0777, 0700u);
    dialog.SetDocumentFolder(ToQString(FromUtf8(f_.dir().path())));
    QString opened;
    dialog.SetDocumentOpener([&](const QString& path) {
      opened = path;
      QFile file(path);
      file.open(QIODevice::ReadOnly);
      const QString text = QString::fromUtf8(file.readAll());
      file.close();
      file.open(QIODevice::WriteOnly | QIODevice::Truncate);
      file.write((text + "\nline three").toUtf8());
      return true;
    });
    prompt_.answers = {Answer::kOk};
    QVERIFY(dialog.EditInWord());
    QVERIFY(!opened.isEmpty());
    QCOMPARE(note->Text(), QString("line one\nline two\nline three"));
    QCOMPARE(note->canvas()->strokes().size(), std::size_t{1});
    QCOMPARE(ToQString(prompt_.shown.at(0).text),
             ToQString(LoadString(kIdsEditInWordPrompt)));
    QVERIFY(prompt_.shown[0].buttons == QuestionButtons::kOkCancel);

    prompt_.shown.clear();
    opened.clear();
    dialog.SetDocumentFolder(ToQString(FromUtf8(f_.dir().path())) + "/missing");
    QVERIFY(!dialog.EditInWord());
    QVERIFY(opened.isEmpty());
    QCOMPARE(ToQString(prompt_.Texts().at(0)),
             QString("Export note failed. Please make sure there is enough storage space "
                     "and try again."));
  }

  // The date is one tab stop in the list's date format, its calendar's weeks
  // begin on the chosen day, and Tab runs date, client, project, phase, task,
  // duration, start.
  void EditorDateFieldAndTabOrder() {
    for (const bool monday : {false, true}) {
      data_->settings.option_bits = monday ? data_->settings.option_bits | kOptionWeekStartsMonday
                                           : data_->settings.option_bits & ~kOptionWeekStartsMonday;
      EntryEditorDialog dialog(Services(), NewEntry(data_->settings, clock_->LocalNow()),
                               window_->entries());
      QCOMPARE(dialog.date_edit()->calendarWidget()->firstDayOfWeek(),
               monday ? Qt::Monday : Qt::Sunday);
      QCOMPARE(dialog.date_edit()->displayFormat(), QString("M/d/yyyy"));
      if (!monday) continue;
      dialog.show();
      dialog.activateWindow();
      QVERIFY(QTest::qWaitForWindowActive(&dialog));
      dialog.date_edit()->setFocus();
      const QWidget* order[] = {dialog.client_box(), dialog.project_box(), dialog.phase_box(),
                                dialog.task_box(),   dialog.duration_box(), dialog.start_check()};
      for (const QWidget* expected : order) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        const QWidget* focus = QApplication::focusWidget();
        QVERIFY2(focus == expected || expected->isAncestorOf(focus),
                 expected->metaObject()->className());
      }
    }
  }

  // A double click edits the item in place; a single tap does only with the
  // item tap option.
  void OpeningAnItem() {
    TimeEntry entry = NewEntry(data_->settings, MakeSystemTime(2026, 11, 17));
    entry.client = u"Acme";
    entry.task = u"Design";
    entry.duration = 100;
    QVERIFY(AddEntry(window_->entries(), entry));
    const ObjectId id = window_->entries().current_record_id();
    window_->Reload();
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_));
    QTreeView* list = window_->table();
    const QModelIndex row = window_->table_model()->IndexOf(id);
    const QPoint item = list->visualRect(row).center();
    QString title;
    OnModal([&](QWidget* widget) {
      auto* editor = qobject_cast<EntryEditorDialog*>(widget);
      QVERIFY(editor != nullptr);
      title = editor->windowTitle();
      editor->task_box()->setEditText("Review");
      editor->accept();
    });
    list->setCurrentIndex(row);
    emit list->doubleClicked(row);
    QCOMPARE(title, QString("Edit Entry"));
    QCOMPARE(Shown().size(), std::size_t{1});
    QCOMPARE(ToQString(Shown()[0].task), QString("Review"));

    for (const bool tap : {false, true}) {
      data_->settings.option_bits = tap ? data_->settings.option_bits | kOptionItemTap
                                        : data_->settings.option_bits & ~kOptionItemTap;
      bool opened = false;
      OnModal(
          [&](QWidget* widget) { opened = qobject_cast<EntryEditorDialog*>(widget); });
      QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, item);
      QApplication::processEvents();
      QVERIFY2(opened == tap, tap ? "tap option on" : "tap option off");
    }
  }

  // The copy's refusals are timekeeping/copy_entry_test's.
  void CopyFillsTheWeek() {
    TimeEntry source = NewEntry(data_->settings, MakeSystemTime(2026, 11, 18));
    source.client = u"Acme";
    source.task = u"Design";
    source.duration = 100;
    QVERIFY(AddEntry(window_->entries(), source));
    CopyEntryDialogWidget dialog(window_->entries(), source, data_->settings, 1252,
                                 prompt_);
    dialog.duration_box()->setEditText("2");
    dialog.include_weekend()->setChecked(true);
    dialog.accept();
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    window_->Reload();
    QCOMPARE(Shown().size(), std::size_t{4});  // Wednesday and the copies to Saturday
  }
};

}  // namespace
}  // namespace quillora

QTEST_MAIN(quillora::EntryDialogsTest)
#include "entry_dialogs_test.moc"
