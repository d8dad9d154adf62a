// The desktop's main window offscreen: its first size, the layout kept in the
// registry, the timesheet table's rows, day rows and totals against the quick
// summary, sorting, the filter bar and the keyboard.
#include <QHeaderView>
#include <QSignalSpy>
#include <QtTest>

#include "app/gui/window_test_fixture.h"
#include "periods/period_entries.h"
#include "periods/quick_summary.h"
#include "store/settings.h"

namespace quillora {
namespace {

using testing::At;

class TableViewTest : public QObject, public testing::WindowFixture {
  Q_OBJECT

 private:
  QStringList ShownTasks() {
    QStringList tasks;
    for (const TimeEntry& e : Shown()) tasks << testing::Q(e.task);
    return tasks;
  }

  // What the quick summary adds up for the window's period and filter.
  QuickSummarySums* Summary(QuickSummarySums* sums) {
    std::vector<ObjectId> ids;
    ListPeriodEntryIds(window_->entries(), window_->period().GetViewRange(),
                       window_->filter(), *data_->locale, &ids);
    SumEntries(window_->entries(), ids, sums);
    return sums;
  }

 private slots:
  void init() {
    QVERIFY(OpenData());
    const struct {
      FileTime at;
      const char16_t* client;
      const char16_t* task;
      std::uint32_t duration;
      bool billable, paid;
    } entries[] = {
        {At(2026, 11, 16, 9, 0, 1), u"Acme", u"Design", 150, true, true},
        {At(2026, 11, 16, 13, 0, 1), u"Globex", u"Support", 75, true, false},
        {At(2026, 11, 18), u"Acme", u"Build", 325, true, false},
        {At(2026, 11, 18, 8, 0, 1), u"Globex", u"Calls", 50, false, false},
        {At(2026, 11, 20, 10, 0, 1), u"Globex", u"Review", 200, true, false},
        {At(2026, 11, 25), u"Acme", u"Next week", 100, true, false},
    };
    for (const auto& e : entries) {
      TimeEntry entry =
          testing::Entry(e.at, e.client, e.task, e.duration, e.billable, e.paid);
      entry.rate = 8000;
      WindowFixture::Add(entry);
    }
    QVERIFY(OpenWindow());
  }

  void FirstStartCoversTheWorkArea() {
    const QRect work(0, 26, 1366, 742);
    window_->RestoreLayout(work);
    QCOMPARE(window_->geometry(), work);
  }

  void LayoutIsSavedAndRestored() {
    window_->RestoreLayout(QRect(0, 0, 1366, 768));
    window_->setGeometry(QRect(40, 50, 1000, 700));
    QHeaderView* header = window_->table()->header();
    header->resizeSection(kColumnClient, 177);
    header->moveSection(header->visualIndex(kColumnTask), 0);
    header->hideSection(kColumnPhase);
    window_->SaveLayout();

    QVERIFY(OpenWindow());
    window_->RestoreLayout(QRect(0, 0, 1366, 768));
    QCOMPARE(window_->geometry(), QRect(40, 50, 1000, 700));
    header = window_->table()->header();
    QCOMPARE(header->sectionSize(kColumnClient), 177);
    QVERIFY(header->isSectionHidden(kColumnPhase));
    QCOMPARE(header->logicalIndex(0), int(kColumnTask));
    // "ColOrder": the eleven columns left to right, 32-bit little-endian.
    RegistryKey key;
    QCOMPARE(data_->registry->OpenKey(RegistryHive::kCurrentUser, kSettingsKeyPath, &key),
             0L);
    std::int32_t order[kTableColumns] = {};
    QCOMPARE(ReadBinary(*data_->registry, key, u"ColOrder", order, sizeof order), 0L);
    QCOMPARE(order[0], int(kColumnTask));
    QCOMPARE(order[1], int(kColumnDate));
    std::uint32_t width = 0;
    QCOMPARE(ReadDword(*data_->registry, key, u"Column4", &width), 0L);
    QCOMPARE(width, 0u);  // hidden
  }

  // The day rows and the totals cover the quick summary's entries, for every
  // kind of period and with a filter.
  void DayRowsAndTotalsAreTheQuickSummarys() {
    const struct {
      QAction* view;
      const char16_t* client;  // filter
      bool unpaid_only;
      std::size_t days, entries;
    } cases[] = {
        {window_->actions().view_week, u"", false, 3, 5},
        {window_->actions().view_week, u"Globex", true, 3, 3},
        {window_->actions().view_month, u"", false, 4, 6},
        {window_->actions().view_day, u"", false, 0, 0},
    };
    for (const auto& c : cases) {
      window_->filter().client = c.client;
      window_->filter().show_paid = !c.unpaid_only;
      c.view->trigger();
      window_->Reload();
      QuickSummarySums sums(data_->settings, *data_->locale);
      const EntryTotals& expected = Summary(&sums)->totals();
      const EntryTotals& shown = window_->totals();
      QCOMPARE(shown.entries, c.entries);
      QCOMPARE(shown.hours(), expected.hours());
      QCOMPARE(shown.amount(), expected.amount());
      // Each day's totals are periods/period_entries_test's (GroupByDay).
      QCOMPARE(window_->table_model()->days().size(), c.days);
    }
  }

  void HeaderClickSortsAndSortKeepsIt() {
    QCOMPARE(ShownTasks(),
             QStringList({"Design", "Support", "Build", "Calls", "Review"}));
    window_->table()->header()->sectionClicked(kColumnTask);
    // Sorted within each day; the days stay in date order.
    QCOMPARE(ShownTasks(),
             QStringList({"Design", "Support", "Build", "Calls", "Review"}));
    QCOMPARE(data_->settings.sort, std::uint16_t(kSortTask));
    window_->table()->header()->sectionClicked(kColumnTask);
    QCOMPARE(ShownTasks(),
             QStringList({"Review", "Calls", "Build", "Support", "Design"}));
    window_->table()->header()->sectionClicked(kColumnDuration);
    QCOMPARE(ShownTasks(),
             QStringList({"Support", "Design", "Calls", "Build", "Review"}));
    Settings saved;
    QVERIFY(LoadSettings(*data_->registry, &saved));
    QCOMPARE(saved.sort, std::uint16_t(kSortDuration));
    QCOMPARE(window_->table()->header()->sortIndicatorSection(), int(kColumnDuration));
  }

  void FilterBarNamesTheFilterAndClears() {
    QVERIFY(window_->filter_bar()->isHidden());
    // As `quillora filter` saves it while the window is open.
    EntryFilter filter;
    filter.client = u"Globex";
    filter.show_paid = false;
    filter.show_non_billable = false;
    QVERIFY(SaveFilter(*data_->registry, filter));
    window_->PollExternalChanges();
    QVERIFY(!window_->filter_bar()->isHidden());
    QCOMPARE(window_->filter_bar()->text(),
             QString("Filter: Client is Globex, unpaid only"));
    QCOMPARE(ShownTasks(), QStringList({"Support", "Review"}));
    window_->filter_bar()->clear_button()->click();
    QVERIFY(window_->filter_bar()->isHidden());
    QCOMPARE(Shown().size(), std::size_t{5});
    EntryFilter saved;
    QVERIFY(LoadFilter(*data_->registry, &saved));
    QVERIFY(saved == EntryFilter());
  }

  void FilterDescriptions() {
    const struct {
      void (*set)(EntryFilter*);
      const char* text;
    } cases[] = {
        {[](EntryFilter*) {}, ""},
        {[](EntryFilter* f) {
           f->project = u"Web";
           f->rate_type = 1;
         },
         "Filter: Project is Web, Rate Type is Overtime Rate"},
        {[](EntryFilter* f) { f->show_non_billable = false; }, "Filter: billable only"},
        {[](EntryFilter* f) { f->show_unpaid = false; },
         "Filter: paid and non-billable only"},
        {[](EntryFilter* f) { SetFilterFlags(0, f); }, "Filter: no status shown"},
    };
    for (const auto& c : cases) {
      EntryFilter filter;
      c.set(&filter);
      QCOMPARE(FilterDescription(filter), QString(c.text));
    }
  }

  // Each key reaches its command (on a window whose commands are not wired,
  // so that no dialog opens).
  void EachShortcutReachesItsCommand() {
    QVERIFY(OpenWindow(/*wired=*/false));
    window_->show();
    window_->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window_));
    window_->table()->setFocus();
    const WindowActions& a = window_->actions();
    const std::pair<QKeySequence, QAction*> keys[] = {
        {QKeySequence(Qt::Key_Return), a.edit_entry},
        {QKeySequence(Qt::Key_F2), a.edit_entry},
        {QKeySequence("Ctrl+N"), a.new_entry},
        {QKeySequence("Ctrl+D"), a.copy_entry},
        {QKeySequence(Qt::Key_Delete), a.delete_entry},
        {QKeySequence("Ctrl+T"), a.timers},
        {QKeySequence("Ctrl+F"), a.filters},
        {QKeySequence("Ctrl+Shift+F"), a.clear_filter},
        {QKeySequence("Ctrl+1"), a.view_day},
        {QKeySequence("Ctrl+2"), a.view_week},
        {QKeySequence("Ctrl+3"), a.view_month},
        {QKeySequence("Ctrl+4"), a.view_custom},
        {QKeySequence("Alt+Left"), a.previous_period},
        {QKeySequence("Alt+Right"), a.next_period},
        {QKeySequence("Ctrl+Home"), a.today},
        {QKeySequence("Ctrl+S"), a.summary},
        {QKeySequence("Ctrl+E"), a.export_csv},
        {QKeySequence(Qt::Key_F1), a.help},
    };
    for (const auto& [key, action] : keys) {
      QSignalSpy spy(action, &QAction::triggered);
      QTest::keySequence(window_->table(), key);
      QVERIFY2(spy.count() == 1, qPrintable(key.toString()));
    }
  }
};

}  // namespace
}  // namespace quillora

QTEST_MAIN(quillora::TableViewTest)
#include "table_view_test.moc"
