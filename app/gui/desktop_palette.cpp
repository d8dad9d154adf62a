#include "app/gui/desktop_palette.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QStyle>
#include <QStyleFactory>
#include <QStyleHints>
#include <algorithm>
#include <cstdlib>

namespace quillora {
namespace {

// GNOME (and the desktops that share its settings): "'prefer-dark'".
ColourScheme GnomeColourScheme() {
  const QString gsettings = QStandardPaths::findExecutable("gsettings");
  if (gsettings.isEmpty()) return ColourScheme::kUnknown;
  QProcess process;
  process.start(gsettings, {"get", "org.gnome.desktop.interface", "color-scheme"});
  if (!process.waitForFinished(1000) || process.exitCode() != 0) {
    return ColourScheme::kUnknown;
  }
  const QByteArray answer = process.readAllStandardOutput();
  if (answer.contains("prefer-dark")) return ColourScheme::kDark;
  if (answer.contains("prefer-light") || answer.contains("default")) {
    return ColourScheme::kLight;
  }
  return ColourScheme::kUnknown;
}

// KDE: the window background of the colour scheme in kdeglobals.
ColourScheme KdeColourScheme() {
  QFile file(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
             "/kdeglobals");
  if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) return ColourScheme::kUnknown;
  bool in_window = false;
  while (!file.atEnd()) {
    const QString line = QString::fromUtf8(file.readLine()).trimmed();
    if (line.startsWith('[')) {
      in_window = line == "[Colors:Window]";
    } else if (in_window && line.startsWith("BackgroundNormal=")) {
      const QStringList rgb = line.mid(17).split(',');
      if (rgb.size() < 3) break;
      const QColor background(rgb[0].toInt(), rgb[1].toInt(), rgb[2].toInt());
      return background.lightness() < 128 ? ColourScheme::kDark : ColourScheme::kLight;
    }
  }
  return ColourScheme::kUnknown;
}

}  // namespace

ColourScheme DesktopColourScheme() {
  const QByteArray forced = qgetenv("QUILLORA_COLOR_SCHEME").toLower();
  if (forced == "dark") return ColourScheme::kDark;
  if (forced == "light") return ColourScheme::kLight;
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
  switch (QGuiApplication::styleHints()->colorScheme()) {
    case Qt::ColorScheme::Dark:
      return ColourScheme::kDark;
    case Qt::ColorScheme::Light:
      return ColourScheme::kLight;
    default:
      break;
  }
#endif
  const QByteArray gtk_theme = qgetenv("GTK_THEME");
  if (!gtk_theme.isEmpty()) {
    return gtk_theme.endsWith(":dark") ? ColourScheme::kDark : ColourScheme::kLight;
  }
  const ColourScheme kde = KdeColourScheme();
  if (kde != ColourScheme::kUnknown) return kde;
  return GnomeColourScheme();
}

bool IsDark(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() < 128;
}

QPalette DarkPalette() {
  const QColor window(0x35, 0x35, 0x35);
  const QColor base(0x24, 0x24, 0x24);
  const QColor text(0xe8, 0xe8, 0xe8);
  const QColor disabled(0x7f, 0x7f, 0x7f);
  const QColor highlight(0x2a, 0x82, 0xda);
  QPalette p;
  p.setColor(QPalette::Window, window);
  p.setColor(QPalette::WindowText, text);
  p.setColor(QPalette::Base, base);
  p.setColor(QPalette::AlternateBase, window);
  p.setColor(QPalette::ToolTipBase, base);
  p.setColor(QPalette::ToolTipText, text);
  p.setColor(QPalette::PlaceholderText, disabled);
  p.setColor(QPalette::Text, text);
  p.setColor(QPalette::Button, window);
  p.setColor(QPalette::ButtonText, text);
  p.setColor(QPalette::BrightText, Qt::red);
  p.setColor(QPalette::Light, window.lighter(150));
  p.setColor(QPalette::Midlight, window.lighter(125));
  p.setColor(QPalette::Mid, window.darker(120));
  p.setColor(QPalette::Dark, window.darker(150));
  p.setColor(QPalette::Shadow, Qt::black);
  p.setColor(QPalette::Link, highlight.lighter(130));
  p.setColor(QPalette::LinkVisited, highlight.lighter(110));
  p.setColor(QPalette::Highlight, highlight);
  p.setColor(QPalette::HighlightedText, Qt::white);
  for (const QPalette::ColorRole role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    p.setColor(QPalette::Disabled, role, disabled);
  }
  p.setColor(QPalette::Disabled, QPalette::Highlight, window.lighter(130));
  p.setColor(QPalette::Disabled, QPalette::HighlightedText, disabled);
  return p;
}

void ApplyDesktopPalette() {
  const ColourScheme scheme = DesktopColourScheme();
  const bool dark_now = IsDark(QApplication::palette());
  if (scheme == ColourScheme::kDark && !dark_now) {
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QApplication::setPalette(DarkPalette());
  } else if (scheme == ColourScheme::kLight && dark_now) {
    QStyle* fusion = QStyleFactory::create("Fusion");
    QApplication::setStyle(fusion);
    QApplication::setPalette(fusion->standardPalette());
  }
}

int Luma(const QColor& colour) {
  return (299 * colour.red() + 587 * colour.green() + 114 * colour.blue()) / 1000;
}

QColor ReadableOn(const QColor& colour, const QColor& background) {
  // Brightness apart by less than this reads poorly.
  constexpr int kLeast = 96;
  const int behind = Luma(background);
  if (std::abs(Luma(colour) - behind) >= kLeast) return colour;
  // Lighter on a dark background, darker on a light one, in the same hue.
  const bool lighter = behind < 128;
  const QColor hsl = colour.toHsl();
  for (int l = hsl.lightness(); l >= 0 && l <= 255; l += lighter ? 8 : -8) {
    const QColor turned =
        QColor::fromHsl(hsl.hslHue(), hsl.hslSaturation(), l, hsl.alpha());
    if (std::abs(Luma(turned) - behind) >= kLeast) return turned.toRgb();
  }
  return lighter ? QColor(Qt::white) : QColor(Qt::black);
}

}  // namespace quillora
