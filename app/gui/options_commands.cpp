#include "app/gui/options_commands.h"

#include <QApplication>

#include "periods/period_entries.h"
#include "platform/file.h"
#include "store/catalogue.h"
#include "store/record_store.h"

namespace quillora {
namespace {

// A week view keeps the week start and week number it was built with; it is
// built again around the middle of the shown week, a day that lies in the
// week under either start.
void RebuildWeek(MainWindow* window) {
  auto* week = dynamic_cast<WeekPeriod*>(&window->period());
  if (week == nullptr) return;
  FileTime anchor = 0;
  SystemTime middle;
  if (!SystemTimeToFileTime(week->GetAnchor(), &anchor) ||
      !FileTimeToSystemTime(anchor + 3 * kTicksPerDay, &middle)) {
    return;
  }
  *week = WeekPeriod(middle, window->data().settings);
}

// The dialogs take the size of a handheld's screen on one and stay modest
// on a desktop.
void FitToWindow(QDialog* dialog, MainWindow* window, const QSize& most) {
  dialog->resize(window->size().boundedTo(most));
}

std::vector<std::u16string> CurrencyNames(DataContext& data) {
  std::vector<std::u16string> names;
  AuxStore aux(*data.volume);
  if (!aux.Open()) return names;
  for (const ValueItem& item : ValueList(aux, ValueListKind::kCurrency)) {
    names.push_back(item.text);
  }
  return names;
}

}  // namespace

void RunOptions(MainWindow* window) {
  std::unique_ptr<OptionsDialog> dialog = MakeOptionsDialog(window);
  if (dialog->exec() == QDialog::Accepted) ApplyOptions(window, dialog->Result());
}

void RunFilters(MainWindow* window) {
  DataContext& data = window->data();
  FilterPage page(window->filter(), CatalogueFilterChoices(data), *data.locale);
  FiltersDialog dialog(&page, window);
  FitToWindow(&dialog, window, QSize(420, 560));
  if (dialog.exec() == QDialog::Accepted) ApplyFilters(window, page);
}

void RunSummary(MainWindow* window) {
  std::unique_ptr<QuickSummaryDialog> dialog = MakeQuickSummaryDialog(window);
  dialog->exec();
}

std::unique_ptr<OptionsDialog> MakeOptionsDialog(MainWindow* window) {
  auto dialog = std::make_unique<OptionsDialog>(window->data().settings,
                                                CurrencyNames(window->data()), window);
  FitToWindow(dialog.get(), window, QSize(500, 460));
  return dialog;
}

std::unique_ptr<QuickSummaryDialog> MakeQuickSummaryDialog(MainWindow* window) {
  DataContext& data = window->data();
  const Locale& locale = *data.locale;
  // The entries the view lists; a walk that fails part-way sums what it
  // found, and the dialog shows no message.
  std::vector<ObjectId> ids;
  ListPeriodEntryIds(window->entries(), window->period().GetViewRange(), window->filter(),
                     locale, &ids);
  QuickSummarySums sums(data.settings, locale);
  SumEntries(window->entries(), ids, &sums);
  std::vector<QuickSummaryRow> rows =
      BuildQuickSummaryRows(SummaryPeriodOf(window->period()), ids.size(), sums, locale);
  auto dialog = std::make_unique<QuickSummaryDialog>(std::move(rows), sums.Projects(),
                                                     window->prompt(), FileSystem::Posix(),
                                                     locale.AnsiCodePage(), window);
  FitToWindow(dialog.get(), window, QSize(440, 560));
  return dialog;
}

void ApplyOptions(MainWindow* window, const Settings& settings) {
  DataContext& data = window->data();
  data.settings = settings;
  // Nothing is reported when the registry cannot be written: the settings
  // hold for this run either way.
  SaveSettings(*data.registry, data.settings);
  window->ApplyListFont();
  RebuildWeek(window);
  window->Reload();
}

void ApplyFilters(MainWindow* window, const FilterPage& page) {
  page.Confirm(*window->data().registry, &window->filter());
  window->Reload();
}

}  // namespace quillora
