// The options pages, the "Filters" page and the quick summary, offscreen:
// each opened from its menu command, edited, confirmed, and what the window
// then shows and keeps.
#include "app/gui/options_commands.h"

#include <QApplication>
#include <QHeaderView>
#include <QStyle>
#include <QTimer>
#include <QtTest>
#include <functional>

#include "app/gui/window_test_fixture.h"
#include "platform/file.h"
#include "store/catalogue.h"
#include "store/client_store.h"

namespace quillora {
namespace {

using testing::At;
using testing::Q;

// Runs `act` on the modal dialog of type D that the next command opens; a
// dialog of another type is closed so that the test cannot hang, and fails.
template <typename D>
bool TriggerWithModal(QAction* action, const std::function<void(D*)>& act) {
  bool found = false;
  QTimer::singleShot(0, [&] {
    QWidget* modal = QApplication::activeModalWidget();
    if (auto* dialog = qobject_cast<D*>(modal)) {
      found = true;
      act(dialog);
    } else if (modal != nullptr) {
      modal->close();
    }
  });
  action->trigger();
  return found;
}

class OptionsCommandsTest : public QObject, public testing::WindowFixture {
  Q_OBJECT

 private:
  void Add(FileTime start, const char16_t* client, const char16_t* project,
           std::uint32_t duration, bool billable, bool paid) {
    TimeEntry e = testing::Entry(start, client, u"", duration, billable, paid);
    e.project = project;
    e.rate = 1000;
    WindowFixture::Add(e);
  }

 private slots:
  void init() {
    QVERIFY(OpenData());
    data_->settings.list_style = kListStyleItems;  // the options shape the items
    Add(At(2026, 11, 15), u"Acme", u"Website", 150, true, true);
    Add(At(2026, 11, 18, 9, 0, 1), u"Globex", u"website", 50, true, false);
    Add(At(2026, 11, 19), u"Acme", u"", 100, false, false);
    Add(At(2026, 11, 22), u"Acme", u"Website", 300, true, false);  // next week
    QVERIFY(OpenWindow());
  }

  void OptionsPagesShowTheirLabelsAndLists() {
    std::unique_ptr<OptionsDialog> dialog = MakeOptionsDialog(window_);
    QStringList tabs;
    for (int i = 0; i < dialog->pages()->count(); ++i)
      tabs << dialog->pages()->tabText(i);
    QCOMPARE(tabs, QStringList({"General", "Defaults", "Display Elements",
                                "Custom Fields", "Export"}));
    struct ListCase {
      const char* name;
      QStringList items;
    };
    const ListCase lists[] = {
        {"weekStart", {"Sunday", "Monday"}},
        {"durationInterval",
         {"10 Minute", "15 Minute", "20 Minute", "30 Minute", "6 Minutes"}},
        {"granularity", {"6", "10", "15", "20", "30", "40", "45", "50"}},
        {"entryTime", {"Duration, Start", "Duration, Start, End", "Start, End"}},
        {"breakSub", {"1 space", "2 space", "~`", "|"}},
        {"encoding",
         {"(Default)", "UTF-8", "UTF-16", "ISO-8859-1", "Shift-JIS", "Big-5"}},
        {"hourSymbol", {"(None)", "h", "hr"}},
    };
    for (const ListCase& c : lists) {
      auto* list = dialog->findChild<QComboBox*>(c.name);
      QVERIFY2(list, c.name);
      QStringList items;
      for (int i = 0; i < list->count(); ++i) items << list->itemText(i);
      QVERIFY2(items == c.items, qPrintable(QString(c.name) + ": " + items.join('/')));
    }
    // A fresh device: weeks from Sunday, 30-minute steps, granularity off
    // with its list disabled on 15, the hour symbol kept out of sight.
    QCOMPARE(dialog->findChild<QComboBox*>("weekStart")->currentIndex(), 0);
    QCOMPARE(dialog->findChild<QComboBox*>("durationInterval")->currentIndex(), 3);
    QVERIFY(!dialog->findChild<QCheckBox*>("granularityOn")->isChecked());
    QVERIFY(!dialog->findChild<QComboBox*>("granularity")->isEnabled());
    QCOMPARE(dialog->findChild<QComboBox*>("granularity")->currentText(), QString("15"));
    QCOMPARE(dialog->findChild<QComboBox*>("currency")->currentText(), QString("USD"));
    QVERIFY(dialog->findChild<QCheckBox*>("bold")->isChecked());
    auto* hour_symbol = dialog->findChild<QComboBox*>("hourSymbol");
    QVERIFY(hour_symbol->isHidden() && !hour_symbol->isEnabled());
    for (const char* name : {"nonBillableColour", "billableColour", "paidColour"}) {
      QCOMPARE(dialog->findChild<QComboBox*>(name)->count(), 28);
    }
    dialog->findChild<QCheckBox*>("granularityOn")->setChecked(true);
    QVERIFY(dialog->findChild<QComboBox*>("granularity")->isEnabled());
  }

  void ConfirmedOptionsAreSavedWholeAndShown() {
    QCOMPARE(ShownFirstLines(),
             QStringList(
                 {"11/15/2026 1.50h", "11/18/2026 0.50h (9:00 AM)", "11/19/2026 1.00h"}));
    const bool found =
        TriggerWithModal<OptionsDialog>(window_->actions().options, [](OptionsDialog* d) {
          d->findChild<QComboBox*>("weekStart")->setCurrentIndex(1);
          d->findChild<QComboBox*>("durationInterval")->setCurrentIndex(4);
          d->findChild<QCheckBox*>("precise")->setChecked(true);
          d->findChild<QCheckBox*>("billable")->setChecked(true);
          d->findChild<QComboBox*>("currency")->setEditText("EUR-and-far-too-long");
          d->findChild<QCheckBox*>("granularityOn")->setChecked(true);
          d->findChild<QComboBox*>("granularity")->setCurrentIndex(4);  // 30
          d->findChild<QComboBox*>("entryTime")->setCurrentIndex(2);
          d->findChild<QCheckBox*>("showStatusIcon")->setChecked(true);
          d->findChild<QComboBox*>("paidColour")->setCurrentIndex(27);
          d->findChild<QComboBox*>("fontSize")->setCurrentIndex(2);
          d->findChild<QCheckBox*>("bold")->setChecked(false);
          d->findChild<QLineEdit*>("customLabel2")->setText("Matter");
          d->findChild<QComboBox*>("breakSub")->setCurrentIndex(2);
          d->findChild<QComboBox*>("encoding")->setCurrentIndex(1);
          d->accept();
        });
    QVERIFY(found);
    const Settings& s = data_->settings;
    QCOMPARE(s.option_bits, kOptionWeekStartsMonday | kOptionPreciseCalculation |
                                kOptionBillable | kOptionGranularity);
    QCOMPARE(s.time_interval, std::uint16_t{4});
    QCOMPARE(s.default_currency, std::u16string(u"EUR-and-far-too"));  // 15 characters
    QCOMPARE(s.granularity, std::uint16_t{30});
    QCOMPARE(s.display, (DisplayBlock{2, kDisplayStatusIcon, 0, 0, 27}));
    QCOMPARE(s.font_size, std::uint16_t{2});
    QCOMPARE(s.custom_labels[1], std::u16string(u"Matter"));
    QCOMPARE(s.break_sub, std::uint16_t{2});
    QCOMPARE(s.encoding, std::uint16_t{1});
    // Written back whole: a fresh load reads the same.
    Settings loaded;
    QVERIFY(LoadSettings(*data_->registry, &loaded));
    QVERIFY(loaded == s);
    // The list follows: the week now starts on Monday the 16th, the items
    // show start and end, the font is larger and not bold.
    QCOMPARE(window_->period().GetAnchor().day, std::uint16_t{16});
    QCOMPARE(ShownFirstLines(), QStringList({"11/18/2026 9:00 AM - 9:30 AM",
                                             "11/19/2026 1.00h", "11/22/2026 3.00h"}));
    QVERIFY(!window_->entry_list()->font().bold());
    QCOMPARE(window_->entry_list()->font().pointSizeF(),
             QApplication::font().pointSizeF() + 2);
  }

  void CancelledOptionsChangeNothing() {
    const Settings before = data_->settings;
    QVERIFY(
        TriggerWithModal<OptionsDialog>(window_->actions().options, [](OptionsDialog* d) {
          d->findChild<QComboBox*>("weekStart")->setCurrentIndex(1);
          d->reject();
        }));
    QVERIFY(data_->settings == before);
  }

  void ListsKeepWhatTheyCannotShow() {
    // An index the list does not hold stays as stored; unchecking the
    // granularity keeps its minutes; minutes outside the list stay too.
    Settings odd;
    odd.time_interval = 9;
    odd.encoding = 17;
    odd.granularity = 25;
    odd.option_bits |= kOptionGranularity;
    OptionsDialog dialog(odd, {});
    QCOMPARE(dialog.findChild<QComboBox*>("durationInterval")->currentIndex(), -1);
    Settings kept = dialog.Result();
    QCOMPARE(kept.time_interval, std::uint16_t{9});
    QCOMPARE(kept.encoding, std::uint16_t{17});
    QCOMPARE(kept.granularity, std::uint16_t{25});
    dialog.findChild<QComboBox*>("granularity")->setCurrentIndex(0);
    dialog.findChild<QCheckBox*>("granularityOn")->setChecked(false);
    kept = dialog.Result();
    QCOMPARE(kept.granularity, std::uint16_t{25});
    QCOMPARE(kept.option_bits & kOptionGranularity, 0u);
  }

  void FiltersPageNarrowsTheView() {
    Catalogue& catalogue = *data_->catalogue;
    QVERIFY(AddClient(catalogue.clients, u"Globex") != 0);
    QVERIFY(AddClient(catalogue.clients, u"Acme") != 0);
    QStringList client_items;
    QVERIFY(TriggerWithModal<FiltersDialog>(
        window_->actions().filters, [&](FiltersDialog* d) {
          QCOMPARE(d->windowTitle(), QString("Filters"));
          QComboBox* clients = d->list(kFilterClientList);
          for (int i = 0; i < clients->count(); ++i) client_items << clients->itemText(i);
          clients->setCurrentIndex(1);  // Acme
          d->paid()->setChecked(false);
          d->accept();
        }));
    QCOMPARE(client_items, QStringList({"(All)", "Acme", "Globex"}));
    QCOMPARE(Q(window_->filter().client), QString("Acme"));
    QVERIFY(!window_->filter().show_paid);
    EntryFilter saved;
    QVERIFY(LoadFilter(*data_->registry, &saved));
    QVERIFY(saved == window_->filter());
    // Acme's paid entry of the 15th is hidden, Globex's entry too.
    QCOMPARE(ShownFirstLines(), QStringList({"11/19/2026 1.00h"}));

    // Typed names are taken, and the page opens on the current criterion.
    QVERIFY(
        TriggerWithModal<FiltersDialog>(window_->actions().filters, [](FiltersDialog* d) {
          QCOMPARE(d->list(kFilterClientList)->currentText(), QString("Acme"));
          QVERIFY(!d->paid()->isChecked());
          d->list(kFilterClientList)->setEditText("Globex");
          d->paid()->setChecked(true);
          d->accept();
        }));
    QCOMPARE(ShownFirstLines(), QStringList({"11/18/2026 0.50h (9:00 AM)"}));

    // Everything on "(All)" with every box checked shows everything again.
    QVERIFY(
        TriggerWithModal<FiltersDialog>(window_->actions().filters, [](FiltersDialog* d) {
          d->list(kFilterClientList)->setCurrentIndex(0);
          d->accept();
        }));
    EntryFilter reset;
    QVERIFY(window_->filter() == reset);
    QCOMPARE(window_->entry_model()->rowCount(), 3);
  }

  void QuickSummaryTotalsTheView() {
    std::unique_ptr<QuickSummaryDialog> dialog = MakeQuickSummaryDialog(window_);
    QCOMPARE(dialog->windowTitle(), QString("Quillora"));
    QTableWidget* table = dialog->table();
    QVERIFY(table->showGrid());
    QVERIFY(table->horizontalHeader()->isHidden());
    QCOMPARE(table->columnCount(), 3);
    QCOMPARE(table->rowCount(), 17);
    // The rows' texts and figures are periods/quick_summary_test's.
    QStringList cells;
    for (int col = 0; col < 3; ++col) cells << table->item(5, col)->text();
    QCOMPARE(cells, QStringList({"Billable Hours:", "2.00h", "66.7%"}));
    QVERIFY(table->item(5, 1)->textAlignment() & Qt::AlignRight);
    QVERIFY(table->item(5, 0)->textAlignment() & Qt::AlignLeft);

    // The chart carries the same projects, under their first spelling.
    QCOMPARE(dialog->chart()->projects().size(), std::size_t{2});
    QCOMPARE(ProjectHoursChart::NameText(dialog->chart()->projects()[1]),
             QString("Website"));

    // The columns share the list's width 43:34:23 and follow it.
    for (const QSize& size : {QSize(240, 320), QSize(480, 560)}) {
      dialog->resize(size);
      dialog->show();
      QApplication::processEvents();
      const int w0 = table->columnWidth(0), w1 = table->columnWidth(1),
                w2 = table->columnWidth(2);
      const int usable =
          table->contentsRect().width() -
          dialog->style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, table);
      QVERIFY2(w0 + w1 + w2 <= usable && w0 + w1 + w2 >= usable - 3,
               qPrintable(QString("%1 %2 %3 of %4").arg(w0).arg(w1).arg(w2).arg(usable)));
      QVERIFY(w0 > w1 && w1 > w2);
    }
  }

  void QuickSummarySavesItsRowsAsCsv() {
    std::unique_ptr<QuickSummaryDialog> dialog = MakeQuickSummaryDialog(window_);
    QCOMPARE(dialog->save_button()->property("command").toInt(),
             kCommandExportSummaryCsv);
    const std::string path = File("summary.csv");
    prompt_.files.push_back(path);
    dialog->save_button()->click();
    QCOMPARE(prompt_.choosers.size(), std::size_t{1});
    QCOMPARE(Q(prompt_.choosers[0].filter), QString("CSV Files (*.csv)|*.csv|"));
    QVERIFY(prompt_.shown.empty());
    const std::string bytes = testing::ReadFileBytes(path);
    QVERIFY(bytes.rfind("\"Period Type:\",\"Week\",\"\"\r\n", 0) ==
            0);  // the bytes: summary_csv_test

    // Cancelling the file chooser writes nothing.
    QCOMPARE(dialog->SaveAsCsv(), SummaryCsvResult::kCancelled);
  }

  void QuickSummaryCommandOpensTheDialog() {
    QVERIFY(TriggerWithModal<QuickSummaryDialog>(
        window_->actions().summary, [](QuickSummaryDialog* d) { d->accept(); }));
  }
};

}  // namespace
}  // namespace quillora

QTEST_MAIN(quillora::OptionsCommandsTest)
#include "options_commands_test.moc"
