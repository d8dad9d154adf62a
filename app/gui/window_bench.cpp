// The window's table over a large store: the first paint of the window on a
// week, a month and a year, and the move to the next period. A QtTest
// benchmark, run by hand, offscreen, on a data folder that
// quillora_make_store made (entries spread evenly over 2016-2025):
//   ./build-bench/bench/quillora_make_store /tmp/q1m 1000000
//   QUILLORA_BENCH_DATA=/tmp/q1m ./build-bench/app/gui/quillora_window_bench -iterations
//   20
// Without QUILLORA_BENCH_DATA it makes 100,000 entries of its own.
#include <QtTest>

#include "app/gui/main_window.h"
#include "app/gui/window_commands.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

constexpr int kEntries = 100'000;
constexpr int kEntriesPerDay = 8;

class WindowBench : public QObject {
  Q_OBJECT

 private:
  std::unique_ptr<testing::TempDir> dir_;
  std::unique_ptr<DataContext> data_;
  std::unique_ptr<FixedClock> clock_;

  // Makes, opens and paints the window on the period kind `view` (the
  // custom period is the year 2025); the rows it shows.
  int Paint(std::uint32_t view) {
    data_->settings.view = view;
    MainWindow window(*data_, *clock_);
    WireWindowCommands(&window);
    window.RestoreLayout(QRect(0, 0, 1366, 768));
    if (!window.Open()) return -1;
    window.show();
    window.grab();
    return static_cast<int>(window.table_model()->EntryCount());
  }

 private slots:
  void initTestCase() {
    data_ = std::make_unique<DataContext>();
    std::string error;
    const QByteArray given = qgetenv("QUILLORA_BENCH_DATA");
    if (given.isEmpty()) {
      dir_ = std::make_unique<testing::TempDir>();
      QVERIFY(OpenDataContext(dir_->File("data"), data_.get(), &error));
      EntryStore store(*data_->volume);
      QVERIFY(store.Open());
      FileTime base = 0;
      // 12,500 days of 8 entries each, the last in 2026.
      SystemTimeToFileTime(MakeSystemTime(1992, 9, 1, 9, 0, 1), &base);
      data_->volume->BeginBatch();
      for (int n = 0; n < kEntries; ++n) {
        TimeEntry e;
        e.start = base + static_cast<FileTime>(n / kEntriesPerDay) * kTicksPerDay +
                  static_cast<FileTime>(n % kEntriesPerDay) * kTicksPerHour;
        e.client = n % 2 ? u"Acme Corp" : u"Northwind";
        e.project = u"Website";
        e.task = u"Development";
        e.duration = 25 + n % 400;
        e.rate = 9500;
        e.billable = n % 3 != 0;
        AddEntry(store, e);
      }
      QVERIFY(data_->volume->CommitBatch());
    } else {
      QVERIFY2(OpenDataContext(given.toStdString(), data_.get(), &error), error.c_str());
    }
    // A Wednesday in June 2025, inside both volumes.
    clock_ = std::make_unique<FixedClock>(MakeSystemTime(2025, 6, 18, 10, 0, 0));
    data_->settings.period_start = MakeSystemTime(2025, 1, 1);
    data_->settings.period_end = MakeSystemTime(2025, 12, 31);
  }

  void cleanupTestCase() {
    data_.reset();
    dir_.reset();
  }

  void FirstPaintWeek() {
    int rows = 0;
    QBENCHMARK { rows = Paint(2); }
    qInfo("week: %d entries", rows);
    QVERIFY(rows > 0);
  }

  void FirstPaintMonth() {
    int rows = 0;
    QBENCHMARK { rows = Paint(3); }
    qInfo("month: %d entries", rows);
    QVERIFY(rows > 0);
  }

  void FirstPaintYear() {
    int rows = 0;
    QBENCHMARK { rows = Paint(4); }
    qInfo("year: %d entries", rows);
    QVERIFY(rows > 0);
  }

  // The next period, painted; every iteration moves one more week (or
  // month) on, so no load repeats the one before.
  void NextWeek() { NextPeriod(2); }
  void NextMonth() { NextPeriod(3); }

 private:
  void NextPeriod(std::uint32_t view) {
    // From January 2020, so that every move lands on a period of entries.
    clock_->Set(MakeSystemTime(2020, 1, 15, 10, 0, 0));
    data_->settings.view = view;
    MainWindow window(*data_, *clock_);
    WireWindowCommands(&window);
    window.RestoreLayout(QRect(0, 0, 1366, 768));
    QVERIFY(window.Open());
    window.show();
    window.grab();
    QBENCHMARK {
      window.NextPeriod();
      window.grab();
    }
    QVERIFY(window.table_model()->EntryCount() > 0);
    clock_->Set(MakeSystemTime(2025, 6, 18, 10, 0, 0));
  }
};

}  // namespace
}  // namespace quillora

QTEST_MAIN(quillora::WindowBench)
#include "window_bench.moc"
