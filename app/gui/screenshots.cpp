// Writes PNG pictures of the window, offscreen, into the folder given:
//   quillora_screenshots docs/screenshots
// The data is a sample week with items of each status.
#include <QApplication>
#include <QDir>
#include <QPalette>

#include "app/gui/main_window.h"
#include "app/gui/screenshots_catalogue.h"
#include "app/gui/screenshots_data.h"
#include "app/gui/screenshots_options.h"
#include "app/gui/screenshots_small.h"
#include "app/gui/window_commands.h"
#include "store/note_text.h"
#include "tests/temp_dir.h"

namespace quillora {
void ShootEntryDialogs(DataContext& data, EntryStore& store, const Clock& clock,
                       const QString& out);
void ShootTimerStatus(MainWindow* window, const QString& out);
}  // namespace quillora

namespace {

using namespace quillora;

void AddSample(EntryStore& store, int day, int hour, int minutes, const char16_t* client,
               const char16_t* project, const char16_t* phase, const char16_t* task,
               std::uint32_t duration, bool billable, bool paid,
               const char16_t* note = nullptr) {
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
  if (note) {
    const auto blob = NoteBlobFromText(note);
    SetNote(&e, static_cast<std::int32_t>(blob.size()), blob.data());
  }
  AddEntry(store, e);
}

// A desktop palette in dark colours, as a dark desktop theme gives one.
QPalette DarkPalette() {
  QPalette p;
  const QColor window(0x2b, 0x2b, 0x2b), base(0x1e, 0x1e, 0x1e), text(0xe8, 0xe8, 0xe8);
  p.setColor(QPalette::Window, window);
  p.setColor(QPalette::WindowText, text);
  p.setColor(QPalette::Base, base);
  p.setColor(QPalette::AlternateBase, QColor(0x33, 0x33, 0x36));
  p.setColor(QPalette::Text, text);
  p.setColor(QPalette::Button, window);
  p.setColor(QPalette::ButtonText, text);
  p.setColor(QPalette::ToolTipBase, QColor(0x45, 0x3d, 0x20));
  p.setColor(QPalette::ToolTipText, text);
  p.setColor(QPalette::Highlight, QColor(0x2f, 0x65, 0xca));
  p.setColor(QPalette::HighlightedText, Qt::white);
  p.setColor(QPalette::PlaceholderText, QColor(0x90, 0x90, 0x90));
  p.setColor(QPalette::Disabled, QPalette::Text, QColor(0x80, 0x80, 0x80));
  p.setColor(QPalette::Disabled, QPalette::WindowText, QColor(0x80, 0x80, 0x80));
  p.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(0x80, 0x80, 0x80));
  return p;
}

// The rest of a working week, for the desktop pictures of the table.
void AddWeek(EntryStore& store) {
  AddSample(store, 16, 13, 0, u"Acme Corp", u"Website", u"Build",
            u"Header and navigation", 325, true, false,
            u"Responsive menu done.\nSticky header next.");
  AddSample(store, 16, 16, 30, u"Globex", u"Support", u"", u"Ticket triage", 100, true,
            true);
  AddSample(store, 17, 9, 0, u"Globex", u"Billing system", u"Analysis",
            u"Requirements workshop", 300, true, false, u"Agreed the invoice numbering.");
  AddSample(store, 17, 15, 30, u"Initech", u"Reporting", u"", u"Dashboard prototype", 200,
            true, false);
  AddSample(store, 18, 10, 0, u"Acme Corp", u"Website", u"Build", u"Contact form", 275,
            true, false);
  AddSample(store, 18, 14, 0, u"Initech", u"Reporting", u"", u"Weekly status call", 50,
            false, false, u"Status call; no charge as agreed.");
  AddSample(store, 19, 14, 0, u"Globex", u"Billing system", u"Build", u"Invoice export",
            250, true, false);
  AddSample(store, 20, 9, 0, u"Acme Corp", u"Website", u"Test", u"Browser testing", 300,
            true, false);
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
  window.RestoreLayout(QRect(0, 0, 520, 640));
  if (!window.Open()) return 1;
  // The handheld's item list at its screen size.
  window.SetListStyle(kListStyleItems);
  window.entry_list()->setCurrentIndex(window.entry_model()->index(1));
  Shoot(&window, QSize(240, 320), out + "/main-window-handheld.png");
  window.SetListStyle(kListStyleTable);
  window.resize(520, 640);
  ShootCatalogueDialogs(data, out);
  ShootOptionsDialogs(&window, out);
  ShootDataDialogs(&window, out);
  ShootEntryDialogs(data, store, clock, out);
  ShootTimerStatus(&window, out);
  ShootSmallDialogs(&window, out);

  // The desktop: the table of a working week, grouped by day, its totals
  // below, at the two common screen sizes, light and dark.
  AddWeek(store);
  window.Reload();
  window.SelectRecord(window.table_model()->EntryAtPosition(4).recordId);
  const struct {
    QSize size;
    const char* name;
  } desktops[] = {{QSize(1920, 1080), "main-window"},
                  {QSize(1366, 768), "main-window-1366"}};
  for (const bool dark : {false, true}) {
    if (dark) {
      QApplication::setStyle("Fusion");
      QApplication::setPalette(DarkPalette());
    }
    for (const auto& d : desktops) {
      Shoot(&window, d.size, out + "/" + d.name + (dark ? "-dark" : "") + ".png");
    }
  }
  // A filter named above the table.
  window.filter().client = u"Globex";
  window.filter().show_paid = false;
  window.Reload();
  Shoot(&window, QSize(1366, 768), out + "/main-window-filter-dark.png");
  return 0;
}
