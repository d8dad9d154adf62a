// Writes PNG pictures of the window, offscreen, into the folder given:
//   quillora_screenshots docs/screenshots
// The data is a sample week with items of each status.
#include <QApplication>
#include <QDir>

#include "app/gui/main_window.h"
#include "app/gui/screenshots_catalogue.h"
#include "app/gui/screenshots_data.h"
#include "app/gui/screenshots_options.h"
#include "app/gui/window_commands.h"
#include "store/note_text.h"
#include "tests/temp_dir.h"

namespace quillora {
void ShootEntryDialogs(DataContext& data, EntryStore& store, const Clock& clock,
                       const QString& out);
}  // namespace quillora

namespace {

using namespace quillora;

void AddSample(EntryStore& store, int day, int hour, int minutes, const char16_t* client,
               const char16_t* project, const char16_t* phase, const char16_t* task,
               std::uint32_t duration, bool billable, bool paid) {
  TimeEntry e;
  SystemTimeToFileTime(MakeSystemTime(2026, 11, day, hour, minutes, hour ? 1 : 0), &e.start);
  e.client = client;
  e.project = project;
  e.phase = phase;
  e.task = task;
  e.duration = duration;
  e.rate = 9500;
  e.currency = u"USD";
  e.billable = billable;
  e.paid = paid;
  AddEntry(store, e);
}

void Shoot(QWidget* widget, const QSize& size, const QString& path) {
  widget->resize(size);
  widget->show();
  QApplication::processEvents();
  widget->grab().save(path);
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  const QString out = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString("screenshots");
  QDir().mkpath(out);

  testing::TempDir dir;
  DataContext data;
  std::string error;
  if (!OpenDataContext(dir.File("data"), &data, &error)) return 1;
  data.settings.display = DisplayBlock{1, 0x3, 0, 12, 15};
  data.settings.option_bits |= kOptionWeekNumber;
  EntryStore store(*data.volume);
  store.Open();
  AddSample(store, 16, 9, 0, u"Acme Corp", u"Website", u"Design", u"Wireframes", 250, true,
            true);
  AddSample(store, 17, 13, 30, u"Acme Corp", u"Website", u"", u"Client meeting", 100, true,
            false);
  AddSample(store, 18, 0, 0, u"Northwind", u"", u"", u"Internal planning", 50, false, false);
  AddSample(store, 19, 8, 15, u"Northwind", u"Data migration", u"Phase 2",
            u"Import scripts and a very long task name that will not fit", 375, true, false);
  AddSample(store, 20, 16, 0, u"Globex", u"Support", u"", u"Phone support", 75, true, true);

  FixedClock clock(MakeSystemTime(2026, 11, 18, 10, 0, 0));
  MainWindow window(data, clock);
  WireWindowCommands(&window);
  if (!window.Open()) return 1;
  window.entry_list()->setCurrentIndex(window.entry_model()->index(1));
  Shoot(&window, QSize(240, 320), out + "/main-window-handheld.png");
  Shoot(&window, QSize(520, 640), out + "/main-window.png");
  ShootCatalogueDialogs(data, out);
  ShootOptionsDialogs(&window, out);
  ShootDataDialogs(&window, out);
  ShootEntryDialogs(data, store, clock, out);
  return 0;
}
