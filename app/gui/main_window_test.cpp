// The item list offscreen: what the week view lists and draws, the period bar,
// a change made by another process, deletion, and a hand-over with no copy
// running.
#include <QPaintEngine>
#include <QtTest>

#include "app/gui/single_instance.h"
#include "app/gui/window_test_fixture.h"
#include "platform/data_folder.h"

namespace quillora {
namespace {

// A paint engine that records the text drawn and the pen it was drawn with.
class RecordingEngine : public QPaintEngine {
 public:
  RecordingEngine() : QPaintEngine(QPaintEngine::AllFeatures) {}
  bool begin(QPaintDevice*) override { return true; }
  bool end() override { return true; }
  void updateState(const QPaintEngineState& state) override {
    if (state.state() & QPaintEngine::DirtyPen) pen_ = state.pen().color();
  }
  void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
  void drawTextItem(const QPointF&, const QTextItem& item) override {
    texts << item.text();
    colours << pen_;
  }
  void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
  void drawPath(const QPainterPath&) override {}
  Type type() const override { return QPaintEngine::User; }

  QStringList texts;
  QList<QColor> colours;

 private:
  QColor pen_;
};

// An image whose painting goes to the recording engine.
class RecordingDevice : public QImage {
 public:
  RecordingDevice() : QImage(400, 600, QImage::Format_ARGB32) {}
  QPaintEngine* paintEngine() const override { return &engine; }
  mutable RecordingEngine engine;
};

using testing::At;

// The handheld's item list (ListStyle 2) over a week of four entries.
class MainWindowTest : public QObject, public testing::WindowFixture {
  Q_OBJECT

 private:
  ObjectId Add(FileTime start, const char16_t* task, bool billable, bool paid) {
    return WindowFixture::Add(testing::Entry(start, u"Acme", task, 150, billable, paid));
  }

 private slots:
  void init() {
    QVERIFY(OpenData());
    data_->settings.display.paid_colour = 5;  // FF0000
    data_->settings.list_style = kListStyleItems;
    Add(At(2026, 11, 15), u"At the week's start", true, true);
    Add(At(2026, 11, 18, 9, 0, 1), u"Wednesday", true, false);
    Add(At(2026, 11, 22), u"Next week", false, false);
    Add(At(2026, 11, 14, 23, 59, 59), u"Last week", false, false);
    QVERIFY(OpenWindow());
  }

  void WeekViewListsThePeriodsEntries() {
    QCOMPARE(window_->entry_model()->rowCount(), 2);
    QCOMPARE(window_->period_bar()->caption(), QString("Week Of Nov 15, 2026"));
    QCOMPARE(ShownFirstLines(),
             QStringList({"11/15/2026 1.50h", "11/18/2026 1.50h (9:00 AM)"}));
  }

  void PeriodBarMovesBetweenWeeks() {
    window_->period_bar()->next_button()->click();
    QCOMPARE(ShownFirstLines(), QStringList({"11/22/2026 1.50h"}));
    window_->period_bar()->previous_button()->click();
    window_->period_bar()->previous_button()->click();
    QCOMPARE(ShownFirstLines(), QStringList({"11/14/2026 1.50h (11:59 PM)"}));
    window_->period_bar()->today_button()->click();
    QCOMPARE(window_->entry_model()->rowCount(), 2);
    window_->actions().view_day->trigger();  // its entries: table_view_test
    QCOMPARE(data_->settings.view, 1u);
  }

  void TheListDrawsTheLinesInTheStatusColour() {
    window_->resize(400, 600);
    window_->show();
    RecordingDevice device;
    QPainter painter(&device);
    QStyleOptionViewItem option;
    option.initFrom(window_->entry_list());
    option.rect = QRect(0, 0, 400, 80);
    option.font = window_->entry_list()->font();
    option.fontMetrics = QFontMetrics(option.font);
    auto* delegate = window_->entry_list()->itemDelegate();
    delegate->paint(&painter, option, window_->entry_model()->index(0));
    painter.end();
    QCOMPARE(device.engine.texts,
             QStringList({"11/15/2026 1.50h", "At the week's start"}));
    QCOMPARE(device.engine.colours.first(), QColor(0xFF, 0x00, 0x00));
  }

  void SortAndListStyleShapeTheList() {
    Add(At(2026, 11, 16), u"Another", false, false);
    const auto tasks = [this] {
      QStringList tasks;
      for (const TimeEntry& e : Shown()) tasks << testing::Q(e.task);
      return tasks;
    };
    window_->Reload();
    QCOMPARE(tasks(), QStringList({"At the week's start", "Another", "Wednesday"}));
    data_->settings.sort = 3;        // by task
    data_->settings.list_style = 1;  // compact: two lines an item
    window_->Reload();
    QCOMPARE(tasks(), QStringList({"Another", "At the week's start", "Wednesday"}));
    const QModelIndex first = window_->entry_model()->index(0);
    QCOMPARE(window_->entry_model()->data(first, Qt::DisplayRole).toString().count('\n'),
             1);
  }

  void AChangeFromAnotherProcessShowsUp() {
    std::string error;
    auto other = OpenSqliteObjectStore(File("data") + "/quillora.db", &error);
    QVERIFY(other);
    EntryStore store(*other);
    QVERIFY(store.Open());
    TimeEntry e;
    e.start = At(2026, 11, 20, 8, 0, 1);
    e.task = u"From the command line";
    QVERIFY(AddEntry(store, e));
    window_->PollExternalChanges();
    QCOMPARE(window_->entry_model()->rowCount(), 3);
    // `quillora settings set ListStyle 1` while the window is open.
    auto registry = OpenSqliteRegistry(File("data") + "/" + kRegistryFileName, &error);
    Settings settings;
    QVERIFY(registry && LoadSettings(*registry, &settings));
    settings.list_style = kListStyleCompact;
    QVERIFY(SaveSettings(*registry, settings));
    window_->PollExternalChanges();
    QCOMPARE(data_->settings.list_style, kListStyleCompact);
    QVERIFY(window_->actions().compact_list->isChecked());
  }

  void DeletingAsksFirst() {
    window_->entry_list()->setCurrentIndex(window_->entry_model()->index(1));
    prompt_.answers = {Answer::kNo};
    window_->actions().delete_entry->trigger();
    QCOMPARE(window_->entry_model()->rowCount(), 2);
    prompt_.answers = {Answer::kYes};
    window_->actions().delete_entry->trigger();
    QTRY_COMPARE(window_->entry_model()->rowCount(), 1);
    QCOMPARE(prompt_.shown.back().text,
             std::u16string(u"Are you sure to permanently delete this item?"));
  }

  // With no copy listening a later start keeps its command line (the
  // hand-over between the programs is window_launch_test's).
  void ALaterStartHandsOverOnlyToARunningCopy() {
    testing::TempDir sockets;
    QVERIFY(
        !SingleInstance(QString::fromStdString(sockets.File("q.sock"))).HandOver({"x"}));
  }
};

}  // namespace
}  // namespace quillora

QTEST_MAIN(quillora::MainWindowTest)
#include "main_window_test.moc"
