// The window's view load over a store of 100,000 entries: opening on the
// current week, and the next and previous periods. A QtTest benchmark, run
// by hand:  ./build-bench/app/gui/quillora_window_bench -iterations 200
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

 private slots:
  void initTestCase() {
    dir_ = std::make_unique<testing::TempDir>();
    data_ = std::make_unique<DataContext>();
    std::string error;
    QVERIFY(OpenDataContext(dir_->File("data"), data_.get(), &error));
    EntryStore store(*data_->volume);
    QVERIFY(store.Open());
    FileTime base = 0;
    // 12,500 days of 8 entries each, the last on Saturday 2026-11-21.
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
    clock_ = std::make_unique<FixedClock>(MakeSystemTime(2026, 11, 18, 10, 0, 0));
  }

  void cleanupTestCase() {
    data_.reset();
    dir_.reset();
  }

  void OpenOnTheCurrentWeek() {
    int shown = 0;
    QBENCHMARK {
      MainWindow window(*data_, *clock_);
      WireWindowCommands(&window);
      QVERIFY(window.Open());
      shown = window.entry_model()->rowCount();
    }
    QVERIFY(shown > 0);
  }

  // Back one period and forward again: two loads of a full period each.
  void PreviousAndNextWeek() {
    MainWindow window(*data_, *clock_);
    WireWindowCommands(&window);
    QVERIFY(window.Open());
    QBENCHMARK {
      window.period_bar()->PreviousPeriod();
      window.period_bar()->NextPeriod();
    }
    QVERIFY(window.entry_model()->rowCount() > 0);
  }

  void PreviousAndNextMonth() {
    MainWindow window(*data_, *clock_);
    WireWindowCommands(&window);
    QVERIFY(window.Open());
    window.actions().view_month->trigger();
    QBENCHMARK {
      window.period_bar()->PreviousPeriod();
      window.period_bar()->NextPeriod();
    }
    QVERIFY(window.entry_model()->rowCount() > 0);
  }
};

}  // namespace
}  // namespace quillora

QTEST_MAIN(quillora::WindowBench)
#include "window_bench.moc"
