// The window's data commands offscreen: export, reports, backup, restore,
// archive, bulk edits, the hand-over of files and the help file, each driven
// through a scripted prompt.
#include <QFile>
#include <QtTest>

#include "app/gui/backup_dialogs.h"
#include "app/gui/bulk_edit_dialogs.h"
#include "app/gui/catalogue_dialog.h"
#include "app/gui/dialog_support.h"
#include "app/gui/export_dialogs.h"
#include "app/gui/help.h"
#include "app/gui/import_entries_dialog.h"
#include "app/gui/main_window.h"
#include "app/gui/quick_summary_dialog.h"
#include "app/gui/report_dialogs.h"
#include "app/gui/window_commands.h"
#include "app/gui/window_test_fixture.h"
#include "app/gui/written_file_notice.h"
#include "store/string_table.h"

namespace quillora {
namespace {

using testing::At;
using testing::Q;

class DataDialogsTest : public QObject, public testing::WindowFixture {
  Q_OBJECT

 private:
  QList<QUrl> opened_;

  void Add(FileTime start, const char16_t* client, const char16_t* task) {
    WindowFixture::Add(testing::Entry(start, client, task));
  }

  int ShownCount() const { return static_cast<int>(Shown().size()); }

 private slots:
  void init() {
    opened_.clear();
    SetUrlOpener([this](const QUrl& url) {
      opened_ << url;
      return true;
    });
    QVERIFY(OpenData());
    QVERIFY(OpenCatalogue(data_));
    AddClient(data_->catalogue->clients, u"Acme");
    AddClient(data_->catalogue->clients, u"Globex");
    Add(At(2026, 11, 16, 9, 0, 1), u"Acme", u"Design");
    Add(At(2026, 11, 18, 9, 0, 1), u"Acme", u"Build");
    Add(At(2026, 11, 19, 9, 0, 1), u"Globex", u"Support");
    Add(At(2026, 11, 25, 9, 0, 1), u"Acme", u"Next week");
    QVERIFY(OpenWindow());
    QCOMPARE(ShownCount(), 3);
  }

  void cleanup() {
    Close();
    SetUrlOpener(nullptr);
  }

  void ExportRangeStartsWithTheShownPeriod() {
    ExportRangeDialog dialog(window_->period().GetRange());
    QCOMPARE(dialog.start_edit()->date(), QDate(2026, 11, 15));
    QCOMPARE(dialog.end_edit()->date(), QDate(2026, 11, 21));
    dialog.start_edit()->setDate(QDate(2026, 11, 30));
    dialog.accept();  // a reversed range is turned round
    QCOMPARE(dialog.Range().start.day, 21);
    QCOMPARE(dialog.Range().end.month, 11);
    QCOMPARE(dialog.Range().end.day, 30);
  }

  void ImportEntriesPreviewsThenImports() {
    testing::WriteFileBytes(File("toggl.csv"),
                            "Client,Task,Start date,Start time,Duration\n"
                            "Initech,Audit,2026-11-17,08:00:00,01:30:00\n"
                            "Acme,,2026-11-18,,1\n");
    ImportEntriesDialog dialog(window_);
    dialog.source()->setCurrentIndex(ImportEntriesDialog::kCsv);
    dialog.file()->setText(QString::fromStdString(File("toggl.csv")));
    dialog.Reread();
    QCOMPARE(dialog.preview()->rowCount(), 2);
    QCOMPARE(dialog.preview()->item(0, 2)->text(), QString("Initech"));
    QCOMPARE(dialog.preview()->item(1, 8)->text(), QString("no task"));
    QCOMPARE(dialog.mapping()->item(2, 1)->text(), QString("date"));
    QVERIFY(dialog.import_button()->isEnabled());
    QVERIFY(dialog.Import());
    QVERIFY(
        Texts().last().startsWith("Imported 1 entries"));  // the text: entry_import_test
    QCOMPARE(ShownCount(), 4);
    QVERIFY(FindClient(data_->catalogue->clients, u"Initech"));
  }

  void ArchiveDialogEnablesByType() {
    CriteriaDialog dialog(CriteriaDialog::Purpose::kArchive, window_->period().GetRange(),
                          ClientList(data_->catalogue->clients), prompt_);
    QCOMPARE(dialog.windowTitle(), QString("Quillora"));
    QCOMPARE(dialog.start_edit()->date(), QDate(2026, 11, 15));
    QVERIFY(dialog.start_edit()->isEnabled() && !dialog.client_list()->isEnabled());
    dialog.type_box()->setCurrentIndex(1);
    QVERIFY(!dialog.start_edit()->isEnabled() && !dialog.end_edit()->isEnabled());
    QVERIFY(dialog.client_list()->isEnabled());
    QCOMPARE(dialog.client_list()->count(), 2);
    dialog.accept();
    QCOMPARE(dialog.result(), static_cast<int>(QDialog::Rejected));
    QCOMPARE(Texts(), QStringList({Q(kNoClientChecked)}));
    dialog.type_box()->setCurrentIndex(0);
    dialog.end_edit()->setDate(QDate(2026, 11, 1));
    dialog.accept();
    QCOMPARE(dialog.result(), static_cast<int>(QDialog::Rejected));
    QCOMPARE(Texts().last(), Q(kRangeReversed));
    dialog.type_box()->setCurrentIndex(1);
    dialog.client_list()->item(1)->setCheckState(Qt::Checked);
    dialog.accept();
    QCOMPARE(dialog.result(), static_cast<int>(QDialog::Accepted));
    ArchiveRequest request;
    QVERIFY(ArchiveRequestOf(dialog, prompt_, &request));
    QCOMPARE(request.type, static_cast<std::uint32_t>(kArchiveClientData));
    QCOMPARE(request.clients.size(), 1u);
  }

  void ArchiveDeletesAndRestoreBringsBack() {
    CriteriaDialog dialog(CriteriaDialog::Purpose::kArchive, window_->period().GetRange(),
                          {}, prompt_);
    dialog.delete_box()->setChecked(true);
    ArchiveRequest request;
    QVERIFY(ArchiveRequestOf(dialog, prompt_, &request));
    prompt_.files.push_back(File("week.qra"));
    QCOMPARE(RunWindowArchive(window_, request), BackupOutcome::kDone);
    QCOMPARE(Q(prompt_.choosers[0].filter), QString("Archive Files (*.qra)|*.qra|"));
    QCOMPARE(ShownCount(), 0);  // the view was read again

    prompt_.files.push_back(File("week.qra"));
    QCOMPARE(ArchiveRestoreFromWindow(window_), static_cast<int>(kRestoreOk));
    QCOMPARE(Texts(), QStringList({"Archive file has been restored."}));
    QCOMPARE(prompt_.shown[0].icon, MessageIcon::kInformation);
    QCOMPARE(ShownCount(), 3);
  }

  // A backup is refused as an archive to restore; handed over, it offers
  // its restore.
  void ABackupIsNoArchiveButHandedOffersItsRestore() {
    prompt_.files.push_back(File("all.qrd"));
    QCOMPARE(BackupFromWindow(window_), BackupOutcome::kDone);
    prompt_.files.push_back(File("all.qrd"));
    QCOMPARE(ArchiveRestoreFromWindow(window_), static_cast<int>(kRestoreContentRefused));
    QCOMPARE(Texts(), QStringList({"Only Archive file with data can be restored."}));
    QCOMPARE(prompt_.shown[0].icon, MessageIcon::kWarning);

    prompt_ = testing::FakePrompt();
    const QString backup = QString::fromStdString(File("all.qrd"));
    const QString other = QString::fromStdString(File("notes.txt"));
    prompt_.answers = {Answer::kNo, Answer::kYes};
    OpenHandedFiles(window_, {other, backup, backup});
    QCOMPARE(Texts(), QStringList({NotADataFileText(other), RestoreOfferText(backup),
                                   RestoreOfferText(backup)}));
    QCOMPARE(prompt_.shown[0].icon, MessageIcon::kExclamation);
    QVERIFY(prompt_.choosers.empty());  // the handed file answers the chooser
    QCOMPARE(ShownCount(), 6);          // restored once
  }

  void FindAndReplaceChecksThenRuns() {
    FindReplaceDialog dialog(window_);
    QCOMPARE(dialog.type_box()->currentText(), QString("Client"));
    QCOMPARE(dialog.find_box()->count(), 3);  // the empty first item, Acme, Globex
    QVERIFY(dialog.status_line()->isHidden() && dialog.progress_bar()->isHidden());
    dialog.accept();
    dialog.find_box()->setCurrentIndex(1);
    dialog.accept();
    dialog.replace_edit()->setText("Acme Inc");
    prompt_.answers = {Answer::kNo, Answer::kYes};
    dialog.accept();
    QCOMPARE(dialog.result(), static_cast<int>(QDialog::Rejected));
    dialog.accept();
    QCOMPARE(dialog.result(), static_cast<int>(QDialog::Accepted));
    // The refusals' texts are timekeeping/bulk_edits_test's.
    QCOMPARE(Texts().size(), 4);
    QCOMPARE(prompt_.shown[0].icon, MessageIcon::kExclamation);
    QVERIFY(!dialog.status_line()->isHidden() && !dialog.progress_bar()->isHidden());
    QCOMPARE(dialog.progress_bar()->maximum(), 4 + 1);
    QCOMPARE(dialog.progress_bar()->value(), 4 + 1);
    QVERIFY(!dialog.type_box()->isEnabled() && !dialog.find_box()->isEnabled());
    QCOMPARE(dialog.counts().entries_changed, 3);
    QCOMPARE(Shown().at(0).client, std::u16string(u"Acme Inc"));
  }

  void MarkPaidAsksFirst() {
    int marked = -1;
    QCOMPARE(MarkPaidFromWindow(window_, &marked), BulkOutcome::kDeclined);
    QCOMPARE(Texts().size(), 1);  // its text: timekeeping/bulk_edits_test
    prompt_.answers = {Answer::kYes};
    QCOMPARE(MarkPaidFromWindow(window_, &marked), BulkOutcome::kDone);
    QCOMPARE(marked, 3);
    for (const TimeEntry& e : Shown()) QVERIFY(e.paid);
  }

  void DeleteDataByClients() {
    CriteriaDialog dialog(CriteriaDialog::Purpose::kDeleteData,
                          window_->period().GetRange(),
                          ClientList(data_->catalogue->clients), prompt_);
    QCOMPARE(dialog.windowTitle(), QString("Delete Data"));
    QVERIFY(dialog.delete_box() == nullptr);
    dialog.type_box()->setCurrentIndex(1);
    dialog.client_list()->item(0)->setCheckState(Qt::Checked);  // Acme
    DeleteCriteria criteria;
    QVERIFY(DeleteCriteriaOf(dialog, prompt_, &criteria));
    QCOMPARE(RunWindowDeleteData(window_, criteria), BulkOutcome::kDeclined);
    QCOMPARE(ShownCount(), 3);
    QCOMPARE(prompt_.shown.size(), 1u);  // its text: timekeeping/bulk_edits_test
    prompt_.answers = {Answer::kOk};
    int deleted = 0;
    QCOMPARE(RunWindowDeleteData(window_, criteria, &deleted), BulkOutcome::kDone);
    QCOMPARE(deleted, 3);  // the next week's Acme entry too
    QCOMPARE(ShownCount(), 1);
  }

  void ReportEditorFollowsTheType() {
    ReportEditorDialog dialog(window_);
    QVERIFY(!dialog.list()->topLevelItem(5)->isDisabled());
    dialog.ChoiceBox(kRowType)->setCurrentIndex(kReportTabular);
    QCoreApplication::processEvents();
    for (int row : {5, 6, 7}) QVERIFY(dialog.list()->topLevelItem(row)->isDisabled());
    QVERIFY(!dialog.ChoiceBox(kRowGroupBy)->isEnabled());
    QCOMPARE(dialog.editor().item(kRowType).choice, static_cast<int>(kReportTabular));
    // A field row checked in the list is checked in the editor, and moves.
    const int row = kRowFirstField + 1;
    const bool was = dialog.editor().item(row).checked;
    dialog.list()->topLevelItem(row)->setCheckState(0, was ? Qt::Unchecked : Qt::Checked);
    QCoreApplication::processEvents();
    QCOMPARE(dialog.editor().item(row).checked, !was);
    const int field = dialog.editor().item(row).field;
    dialog.list()->setCurrentItem(dialog.list()->topLevelItem(row));
    dialog.MoveSelectedField(-1);
    QCOMPARE(dialog.editor().item(kRowFirstField).field, field);
    // The title takes 63 characters, no more.
    QTreeWidgetItem* title = dialog.list()->topLevelItem(kRowTitle);
    title->setText(1, QString(63, 'x'));
    QCoreApplication::processEvents();
    QCOMPARE(dialog.editor().item(kRowTitle).text, std::u16string(63, u'x'));
    QVERIFY(prompt_.shown.empty());
    dialog.list()->topLevelItem(kRowTitle)->setText(1, QString(64, 'y'));
    QCoreApplication::processEvents();
    QCOMPARE(Texts(), QStringList({"A report title holds at most 63 characters."}));
    QCOMPARE(dialog.list()->topLevelItem(kRowTitle)->text(1), QString(63, 'x'));
  }

  void ReportSaveAsksBeforeOverwriting() {
    ReportEditorDialog dialog(window_);
    QStringList names = {"", "Weekly", "Weekly", "Weekly"};
    dialog.ask_name = [&names](const std::u16string&) -> std::optional<std::u16string> {
      if (names.isEmpty()) return std::nullopt;
      return FromQString(names.takeFirst());
    };
    QVERIFY(dialog.Save());  // the blank name is refused, then Weekly is saved
    QCOMPARE(Texts(), QStringList({"Please enter some text. Blank is not allowed."}));
    const ObjectId id = dialog.report().record_id;
    QVERIFY(id != 0);
    prompt_.answers = {Answer::kNo, Answer::kYes};
    QVERIFY(dialog.Save());       // No asks the name again
    QCOMPARE(Texts().size(), 3);  // their text: reports/saved_reports_test
    QCOMPARE(dialog.report().record_id, id);
  }

  void SavedReportsDefaultRenameDelete() {
    ReportEditorDialog editor(window_);
    editor.ask_name = [](const std::u16string&) {
      return std::optional(std::u16string(u"Weekly"));
    };
    QVERIFY(editor.Save());
    SavedReportsDialog dialog(window_);
    QCOMPARE(dialog.list()->count(), 1);
    dialog.list()->setCurrentRow(0);
    QVERIFY(dialog.MakeSelectedDefault());
    QCOMPARE(data_->settings.default_report, std::u16string(u"Weekly"));
    QCOMPARE(dialog.list()->item(0)->text(), QString("Weekly (default)"));
    QVERIFY(dialog.RenameSelected(u"Monthly"));
    QCOMPARE(dialog.list()->item(0)->data(Qt::UserRole).toString(), QString("Monthly"));
    prompt_.answers = {Answer::kYes};
    QVERIFY(dialog.DeleteSelected());
    QCOMPARE(Texts().size(), 1);
    QCOMPARE(dialog.list()->count(), 0);
  }

  void ReportCommandWritesAndOpens() {
    prompt_.answers = {Answer::kNo};
    ReportFromWindow(window_);
    QCOMPARE(Texts(), QStringList({Q(NoSavedReportOffer())}));
    QVERIFY(Q(NoSavedReportOffer()).startsWith("There is no saved report.\n\n"));
    ReportEditorDialog editor(window_);
    editor.ask_name = [](const std::u16string&) {
      return std::optional(std::u16string(u"Weekly"));
    };
    QVERIFY(editor.Save());
    const std::string path = File("week.htm");
    prompt_.files.push_back(path);
    QVERIFY(RunWindowReport(window_, u"Weekly", window_->period().GetRange()));
    QCOMPARE(Q(prompt_.choosers[0].filter), QString("HTML Files (*.htm)|*.htm|"));
    QCOMPARE(opened_, QList<QUrl>({QUrl::fromLocalFile(QString::fromStdString(path))}));
    const std::string html = testing::ReadFileBytes(path);
    QVERIFY(html.find("Support") != std::string::npos);
    QVERIFY(html.find("Next week") == std::string::npos);

    prompt_.files.push_back(File("missing-folder/week.htm"));
    QVERIFY(!RunWindowReport(window_, u"Weekly", window_->period().GetRange()));
    QCOMPARE(Texts().last(), QString("Report generation has failed."));
    QCOMPARE(opened_.size(), 1);
  }

  // Each file command names what it wrote (or a restore what it added) in
  // the status bar; its chooser starts in the folder used last with a name
  // of its own.
  void FileCommandsSayWhatTheyDid() {
    const PeriodRange week = window_->period().GetRange();
    const PeriodRange month = WholeDayRange(QDate(2026, 11, 1), QDate(2026, 11, 30));
    ArchiveRequest archive;
    QVERIFY(RangeToFileTimes(week, &archive.start, &archive.end));
    QuickSummaryDialog summary({{u"Hours:", u"4.50", u""}}, {}, prompt_,
                               FileSystem::Posix(), 1252, window_);
    summary.SetFileStart(data_->registry.get(), "summary.csv");
    CatalogueDialog catalogue(*data_, prompt_, window_);
    struct Case {
      const char* file;
      std::function<void()> run;
      QString suggested;  // empty: an open chooser
      QString text;       // %1: the file
    };
    const Case cases[] = {
        {"w.csv", [&] { RunWindowExport(window_, ExportFormat::kCsv, week); },
         "quillora-2026-11-15.csv", "Exported 3 entries to %1"},
        {"m.xml", [&] { RunWindowExport(window_, ExportFormat::kXml, month); },
         "quillora-2026-11.xml", "Exported 4 entries to %1"},
        {"s.csv", [&] { summary.SaveAsCsv(); }, "summary.csv",
         "Saved the quick summary to %1"},
        {"r.htm", [&] { GenerateReportFromWindow(window_, NewReportDefinition(), week); },
         "report-2026-11-15.htm", "Saved the report to %1"},
        {"c.txt", [&] { catalogue.ExportList(); }, "clients.txt",
         "Exported 2 names to %1"},
        {"a.qra", [&] { RunWindowArchive(window_, archive); }, "archive-2026-11-15.qra",
         "Archived 3 entries to %1"},
        {"b.qrd", [&] { BackupFromWindow(window_); }, "quillora-2026-11-21.qrd",
         "Backed up 4 entries and 2 clients to %1"},
        {"b.qrd", [&] { RestoreFromWindow(window_); }, "",
         "Added 4 entries and 0 clients from %1"},
        {"a.qra", [&] { ArchiveRestoreFromWindow(window_); }, "",
         "Added 3 entries from %1"},
    };
    for (const Case& c : cases) {
      const QString path = QString::fromStdString(File(c.file));
      prompt_.files.push_back(path.toStdString());
      c.run();
      const WrittenFileNotice* notice = NoticeOf(window_);
      QVERIFY(notice != nullptr);
      QCOMPARE(notice->text(), QString(c.text).arg(path));
      QCOMPARE(notice->open_button()->isHidden(), c.suggested.isEmpty());
      const QFileInfo start(QString::fromStdString(prompt_.choosers.back().start_path));
      if (!c.suggested.isEmpty()) QCOMPARE(start.fileName(), c.suggested);
      // Every chooser after the first starts where the one before was used.
      if (&c != cases) {
        QCOMPARE(QFileInfo(c.suggested.isEmpty() ? start.filePath() : start.path())
                     .canonicalFilePath(),
                 QFileInfo(path).canonicalPath());
      }
    }
    NoticeOf(window_)->Show("Written", File("w.csv").c_str());
    NoticeOf(window_)->open_button()->click();
    NoticeOf(window_)->open_folder_button()->click();
    QCOMPARE(opened_.mid(opened_.size() - 2),
             QList<QUrl>({QUrl::fromLocalFile(QString::fromStdString(File("w.csv"))),
                          QUrl::fromLocalFile(QString::fromStdString(dir().path()))}));
  }

  void HelpOpensAtItsTopics() {
    const QString path = HelpFilePath();
    QVERIFY(!path.isEmpty());
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString html = QString::fromUtf8(file.readAll());
    // Every topic the windows open has its anchor.
    for (const char* topic :
         {"main",     "entry",      "copy",      "timers",         "summary",
          "filters",  "clients",    "ratesetup", "options",        "export",
          "import",   "exportlist", "report",    "reports",        "savedreports",
          "backup",   "restore",    "archive",   "archiverestore", "findreplace",
          "markpaid", "deldata"}) {
      QVERIFY2(html.contains(QString("id=\"%1\"").arg(topic)), topic);
    }
    QVERIFY(OpenHelp("deldata"));
    QCOMPARE(opened_.size(), 1);
    QCOMPARE(opened_[0].fragment(), QString("deldata"));
    QCOMPARE(opened_[0].toLocalFile(), path);
    window_->actions().help->trigger();
    QCOMPARE(opened_.size(), 2);
    QVERIFY(!opened_[1].hasFragment());

    // A copy named by QUILLORA_HELP comes first.
    const std::string own = File("Own.htm");
    testing::WriteFileBytes(own, "<html></html>");
    qputenv("QUILLORA_HELP", QByteArray::fromStdString(own));
    const QUrl url = HelpUrl("backup");
    QCOMPARE(url.toLocalFile(),
             QFileInfo(QString::fromStdString(own)).canonicalFilePath());
    QCOMPARE(url.fragment(), QString("backup"));
    qunsetenv("QUILLORA_HELP");
  }
};

}  // namespace
}  // namespace quillora

QTEST_MAIN(quillora::DataDialogsTest)
#include "data_dialogs_test.moc"
