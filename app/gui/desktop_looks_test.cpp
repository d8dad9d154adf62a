// The window on a desktop, offscreen: dialogs grow to their texts, titles
// and tab bars (never past the screen), and the user's item colours stay
// readable on a dark palette.
#include <QDialog>
#include <QLabel>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>
#include <QtTest>

#include "app/gui/desktop_palette.h"
#include "app/gui/dialog_fitter.h"

namespace quillora {
namespace {

class DesktopLooksTest : public QObject {
  Q_OBJECT

 private slots:
  void DialogsGrowToTitleAndTabsWithinTheScreen() {
    QDialog dialog;
    dialog.setWindowTitle("Custom Period of a rather long title");
    auto* tabs = new QTabWidget(&dialog);
    tabs->setUsesScrollButtons(true);
    for (const char* name : {"General", "Defaults", "Display Elements", "Custom Fields",
                             "Export", "One more page"}) {
      tabs->addTab(new QLabel(name), name);
    }
    (new QVBoxLayout(&dialog))->addWidget(tabs);
    dialog.resize(120, 80);
    dialog.show();
    FitToScreen(&dialog, QSize(1366, 708));
    QApplication::processEvents();
    QVERIFY(dialog.width() >= TitleBarWidth(&dialog));
    QVERIFY(tabs->tabBar()->width() >= tabs->tabBar()->sizeHint().width());
    // A handheld's screen bounds it; nothing shrinks.
    dialog.resize(240, 320);
    FitToScreen(&dialog, QSize(240, 320));
    QCOMPARE(dialog.size(), QSize(240, 320));
    dialog.resize(900, 700);
    FitToScreen(&dialog, QSize(1366, 708));
    QCOMPARE(dialog.size(), QSize(900, 700));
  }

  void ItemColoursStayReadable() {
    const QColor white(Qt::white), dark(0x24, 0x24, 0x24);
    struct Case {
      QColor colour, background;
      bool kept;
    };
    for (const Case& c :
         {Case{QColor(0x00, 0x00, 0x80), white, true},
          Case{QColor(0x00, 0x00, 0x80), dark, false},
          Case{QColor(0x00, 0x80, 0x00), dark, false},
          Case{QColor(0xF0, 0xF0, 0x00), white, false},
          Case{QColor(0xCC, 0xFF, 0xCC), dark, true},
          Case{QColor(0x80, 0x80, 0x80), QColor(0x80, 0x80, 0x80), false}}) {
      const QColor shown = ReadableOn(c.colour, c.background);
      const QString name = c.colour.name() + " on " + c.background.name();
      QVERIFY2((shown == c.colour) == c.kept, qPrintable(name));
      QVERIFY2(std::abs(Luma(shown) - Luma(c.background)) >= 96, qPrintable(name));
      if (!c.kept && c.colour.hslSaturation() > 0) {
        QVERIFY2(std::abs(shown.hslHue() - c.colour.hslHue()) <= 1, qPrintable(name));
      }
    }
    QVERIFY(IsDark(DarkPalette()));
  }
};

}  // namespace
}  // namespace quillora

QTEST_MAIN(quillora::DesktopLooksTest)
#include "desktop_looks_test.moc"
