// The entry editor, notes and copy offscreen: the editor's refusals, its
// fields, notes with a drawing, opening an item and copying it.
#include <sys/stat.h>

#include <QApplication>
#include <QCalendarWidget>
#include <QFile>
#include <QtTest>

#include "app/gui/copy_entry_dialog.h"
#include "app/gui/entry_editor_dialog.h"
#include "app/gui/qt_text.h"
#include "app/gui/window_test_fixture.h"
#include "platform/text.h"
#include "store/string_table.h"

namespace quillora {
namespace {

class EntryDialogsTest : public QObject, public testing::WindowFixture {
  Q_OBJECT

 private:
  EditorServices Services() {
    return {*data_->catalogue, data_->settings, *data_->locale, prompt_, *clock_};
  }

 private slots:
  void init() {
    // Wednesday 2026-11-18; the week runs from Sunday the 15th.
    QVERIFY(OpenData(MakeSystemTime(2026, 11, 18, 9, 0, 0)));
    data_->settings.option_bits |= kOptionGranularity;
    data_->settings.granularity = 15;
    data_->settings.default_currency = u"USD";
    QVERIFY(OpenWindow());
  }

  // A refused OK brings back the refused field's page (the checks, their
  // order and texts are timekeeping/entry_editor_test's); then it saves.
  void EditorRefusals() {
    EntryEditorDialog dialog(Services(), NewEntry(data_->settings, clock_->LocalNow()),
                             window_->entries());
    dialog.client_box()->setEditText("Acme");
    dialog.duration_box()->setEditText("1");
    dialog.pages()->setCurrentIndex(3);  // Notes
    dialog.accept();
    QCOMPARE(dialog.save_result(), std::optional(SaveResult::kRefused));
    QCOMPARE(ToQString(prompt_.Texts().at(0)),
             ToQString(LoadString(kIdsTaskNameRequired)));
    QCOMPARE(dialog.pages()->currentIndex(), 0);
    dialog.task_box()->setEditText("Design");
    dialog.accept();
    QCOMPARE(dialog.save_result(), std::optional(SaveResult::kSaved));
  }

  void LeavingAndSettingStartEnd() {
    EntryEditorDialog dialog(Services(), NewEntry(data_->settings, clock_->LocalNow()),
                             window_->entries());
    // "Set..." with no duration: the message, and the pickers never open.
    bool picked = false;
    dialog.SetStartEnd([&](StartEndPickers*) { return picked = true; });
    QVERIFY(!picked);
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
    dialog.pages()->setCurrentIndex(1);
    QCOMPARE(dialog.pages()->currentIndex(), 0);
    dialog.client_box()->setEditText("Acme");
    dialog.pages()->setCurrentIndex(1);
    QCOMPARE(dialog.pages()->currentIndex(), 1);
    // Billing: "Calculate" totals a typed rate.
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
    dialog.SetDocumentFolder(ToQString(FromUtf8(dir().path())));
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
    dialog.SetDocumentFolder(ToQString(FromUtf8(dir().path())) + "/missing");
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
      data_->settings.option_bits =
          monday ? data_->settings.option_bits | kOptionWeekStartsMonday
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
      const QWidget* order[] = {dialog.client_box(),   dialog.project_box(),
                                dialog.phase_box(),    dialog.task_box(),
                                dialog.duration_box(), dialog.start_check()};
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
