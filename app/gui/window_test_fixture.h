// The main window over a fresh data folder, as the QtTest tests of the
// window start it: one fixture for all of them.
#ifndef QUILLORA_APP_GUI_WINDOW_TEST_FIXTURE_H_
#define QUILLORA_APP_GUI_WINDOW_TEST_FIXTURE_H_

#include <QApplication>
#include <QDialog>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/gui/main_window.h"
#include "app/gui/window_commands.h"
#include "store/data_context.h"
#include "store/time_entry.h"
#include "tests/fake_prompt.h"
#include "tests/temp_dir.h"
#include "tests/test_time.h"

namespace quillora::testing {

inline QString Q(std::u16string_view text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

// An entry for Add(): the fields most tests set.
inline TimeEntry Entry(FileTime start, std::u16string client, std::u16string task,
                       std::uint32_t duration = 150, bool billable = true,
                       bool paid = false) {
  TimeEntry e;
  e.start = start;
  e.client = std::move(client);
  e.task = std::move(task);
  e.duration = duration;
  e.billable = billable;
  e.paid = paid;
  return e;
}

// The base of each window test class: a fresh data folder per test, the main
// window over it and the scripted prompt.
class WindowFixture {
 public:
  // A fresh data folder, the previous test's window and folder closed; the
  // clock stands at `now` (by default Saturday 2026-11-21, in the week that
  // runs from Sunday the 15th); the prompt has shown nothing. False when the
  // folder cannot be opened.
  bool OpenData(const SystemTime& now = MakeSystemTime(2026, 11, 21, 10, 0, 0)) {
    Close();
    dir_ = std::make_unique<TempDir>();
    data_owner_ = std::make_unique<DataContext>();
    clock_owner_ = std::make_unique<FixedClock>(now);
    data_ = data_owner_.get();
    clock_ = clock_owner_.get();
    prompt_ = FakePrompt();
    std::string error;
    return OpenDataContext(dir_->File("data"), data_, &error);
  }

  // Stores the entry; its record id.
  ObjectId Add(const TimeEntry& entry) {
    EntryStore store(*data_->volume);
    store.Open();
    AddEntry(store, entry);
    return store.current_record_id();
  }

  // Makes the window (a window made before goes first), its commands wired
  // (`wired`) or not, the prompt scripted, and opens it on the data.
  bool OpenWindow(bool wired = true) {
    window_owner_.reset();
    window_owner_ = std::make_unique<MainWindow>(*data_, *clock_);
    window_ = window_owner_.get();
    if (wired) WireWindowCommands(window_);
    window_->SetPrompt(&prompt_);
    return window_->Open();
  }

  void Close() {
    window_owner_.reset();
    data_owner_.reset();
    clock_owner_.reset();
    dir_.reset();
    window_ = nullptr;
    data_ = nullptr;
    clock_ = nullptr;
  }

  std::string File(const char* name) const { return dir_->File(name); }
  const TempDir& dir() const { return *dir_; }
  // The entries the window shows, in the order shown (only the view shown
  // holds them).
  std::vector<TimeEntry> Shown() const {
    std::vector<TimeEntry> shown;
    for (std::size_t i = 0; i < window_->table_model()->EntryCount(); ++i) {
      shown.push_back(window_->table_model()->EntryAtPosition(i));
    }
    for (int r = 0; r < window_->entry_model()->rowCount(); ++r) {
      shown.push_back(window_->entry_model()->EntryAt(r));
    }
    return shown;
  }
  // The prompt's texts, in the order shown.
  QStringList Texts() const {
    QStringList texts;
    for (const auto& t : prompt_.Texts()) texts << Q(t);
    return texts;
  }
  // Runs `body` on the next modal dialog once it is up, then closes the
  // dialog if `body` left it open (a failed check), so that a failure never
  // hangs.
  static void OnModal(std::function<void(QWidget*)> body) {
    QTimer::singleShot(0, qApp, [body = std::move(body)] {
      QWidget* widget = QApplication::activeModalWidget();
      body(widget);
      if (auto* dialog = qobject_cast<QDialog*>(widget); dialog && dialog->isVisible()) {
        dialog->reject();
      }
    });
  }
  // The first line of each item the item list shows.
  QStringList ShownFirstLines() const {
    QStringList lines;
    auto* model = window_->entry_model();
    for (int r = 0; r < model->rowCount(); ++r) {
      lines
          << model->data(model->index(r), Qt::DisplayRole).toString().section('\n', 0, 0);
    }
    return lines;
  }

 protected:
  DataContext* data_ = nullptr;
  FixedClock* clock_ = nullptr;
  MainWindow* window_ = nullptr;
  FakePrompt prompt_;

 private:
  std::unique_ptr<TempDir> dir_;
  std::unique_ptr<DataContext> data_owner_;
  std::unique_ptr<FixedClock> clock_owner_;
  std::unique_ptr<MainWindow> window_owner_;
};

}  // namespace quillora::testing

#endif  // QUILLORA_APP_GUI_WINDOW_TEST_FIXTURE_H_
