// Pictures of the small dialogs the commands open on their own (copy entry,
// the start and end times, names), the rate type list open, a file notice in
// the status bar, and a few dialogs under a dark desktop palette.
#include "app/gui/screenshots_small.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QPainter>

#include "app/gui/copy_entry_dialog.h"
#include "app/gui/desktop_palette.h"
#include "app/gui/entry_editor_dialog.h"
#include "app/gui/main_window.h"
#include "app/gui/name_dialog.h"
#include "app/gui/options_commands.h"
#include "app/gui/rate_edit_dialog.h"
#include "store/catalogue_service.h"
#include "app/gui/report_dialogs.h"
#include "app/gui/screenshots_shot.h"
#include "app/gui/written_file_notice.h"
#include "store/rates.h"
#include "tests/fake_prompt.h"

namespace quillora {
namespace {

TimeEntry FirstEntry(EntryStore& store) {
  TimeEntry entry;
  store.SeekValue(SeekType::kValueGreaterOrEqual,
                  PropValue::Number(entry_prop::kStart, 0));
  ReadEntry(store, &entry);
  return entry;
}

// The rate edit dialog with its "Type:" list open below the box.
void ShootRateTypeList(DataContext& data, UserPrompt& prompt, const QString& path) {
  Rate rate;
  rate.client = 0;
  CatalogueService catalogue(*data.catalogue, *data.locale, prompt);
  RateEditDialog dialog(catalogue, rate);
  dialog.resize(dialog.sizeHint());
  dialog.show();
  QApplication::processEvents();
  dialog.type()->showPopup();
  QApplication::processEvents();
  QWidget* popup = dialog.type()->view()->window();
  const QPoint at = popup->mapToGlobal(QPoint()) - dialog.mapToGlobal(QPoint());
  const QRect all = dialog.rect().united(QRect(at, popup->size()));
  QImage image(all.size(), QImage::Format_ARGB32_Premultiplied);
  image.fill(dialog.palette().color(QPalette::Window));
  {
    QPainter p(&image);
    p.drawImage(-all.topLeft(), dialog.grab().toImage());
    p.drawImage(at - all.topLeft(), popup->grab().toImage());
  }
  dialog.type()->hidePopup();
  WithTitleBar(&dialog, image).save(path);
}

}  // namespace

void ShootSmallDialogs(MainWindow* window, const QString& out) {
  DataContext& data = window->data();
  testing::FakePrompt prompt;
  TimeEntry entry = FirstEntry(window->entries());

  CopyEntryDialogWidget copy(window->entries(), entry, data.settings,
                             data.locale->AnsiCodePage(), prompt, window);
  ShootBoth(&copy, out, "copy-entry", copy.sizeHint());

  const EditorServices services{*data.catalogue, data.settings, *data.locale, prompt,
                                window->clock()};
  EntryEditorDialog editor(services, entry, window->entries(), window);
  ShootModal([&] { editor.SetStartEnd(); }, out + "/entry-start-end.png");

  NameDialog name(prompt, u"New Client", u"Enter Client Name:", u"Initech", window);
  ShootBoth(&name, out, "catalogue-name", name.sizeHint());

  ReportEditorDialog reports(window);
  ShootModal([&] { reports.Save(); }, out + "/report-name.png");

  ShootRateTypeList(data, prompt, out + "/rate-type-list.png");

  window->SwitchKind(PeriodKind::kCustom);
  ShootModal([&] { window->period_bar()->caption_button()->click(); },
             out + "/custom-period.png");
  window->SwitchKind(PeriodKind::kWeek);

  // The notice after an export, in the window as it opens on a desktop.
  ShowNotice(window, "Exported 5 entries to /home/ann/Documents/quillora-2026-11-15.csv",
             "/home/ann/Documents/quillora-2026-11-15.csv");
  ShootDesktop(window, QSize(1366, 708), out + "/main-window-notice.png");
  ShowNotice(window, QString());

  // Under a dark desktop.
  const QPalette light = QApplication::palette();
  QApplication::setPalette(DarkPalette());
  EntryEditorDialog dark_editor(services, entry, window->entries(), window);
  ShootDesktop(&dark_editor, QSize(460, 420), out + "/entry-editor-general-dark.png");
  dark_editor.hide();
  std::unique_ptr<OptionsDialog> options = MakeOptionsDialog(window);
  options->pages()->setCurrentIndex(2);
  ShootDesktop(options.get(), QSize(500, 460), out + "/options-display-dark.png");
  options->hide();
  std::unique_ptr<QuickSummaryDialog> summary = MakeQuickSummaryDialog(window);
  ShootDesktop(summary.get(), QSize(440, 560), out + "/quick-summary-dark.png");
  summary->hide();
  QApplication::setPalette(light);
}

}  // namespace quillora
