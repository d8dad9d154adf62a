#include "app/gui/screenshots_shot.h"

#include <QApplication>
#include <QDialog>
#include <QPainter>
#include <QTimer>

#include "app/gui/dialog_fitter.h"

namespace quillora {

QImage WithTitleBar(QWidget* window, const QImage& contents) {
  QFont font = QApplication::font();
  font.setBold(true);
  const QFontMetrics metrics(font);
  const int bar = 2 * metrics.height();
  const qreal ratio = contents.devicePixelRatio();
  const int width = qRound(contents.width() / ratio);
  const int height = qRound(contents.height() / ratio);
  QImage image(QSize(width, height + bar) * ratio, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(ratio);
  const QPalette& palette = window->palette();
  image.fill(palette.color(QPalette::Window).darker(125));
  QPainter p(&image);
  p.setRenderHint(QPainter::Antialiasing);
  p.drawImage(QPoint(0, bar), contents);
  // The icon's place on the left, three caption buttons on the right: the
  // room that TitleBarWidth() keeps for them.
  p.setPen(Qt::NoPen);
  p.setBrush(palette.color(QPalette::WindowText));
  for (int i = 1; i <= 3; ++i) {
    p.drawEllipse(QPointF(width - bar * (i - 0.5), bar / 2.0), bar / 6.0, bar / 6.0);
  }
  p.setFont(font);
  p.setPen(palette.color(QPalette::WindowText));
  const QRect title(bar, 0, width - 4 * bar, bar);
  p.drawText(title, Qt::AlignCenter,
             metrics.elidedText(window->windowTitle(), Qt::ElideRight, title.width()));
  return image;
}

void ShootHandheld(QWidget* widget, const QString& path, const QSize& size) {
  widget->resize(size);
  widget->show();
  QApplication::processEvents();
  widget->grab().save(path);
}

void ShootDesktop(QWidget* widget, const QSize& size, const QString& path) {
  widget->hide();
  widget->resize(size);
  widget->show();
  FitToScreen(widget, kDesktopWorkArea);
  QApplication::processEvents();
  WithTitleBar(widget, widget->grab().toImage()).save(path);
}

void ShootBoth(QWidget* widget, const QString& folder, const QString& name,
               const QSize& desktop) {
  ShootHandheld(widget, folder + "/" + name + "-handheld.png");
  ShootDesktop(widget, desktop, folder + "/" + name + ".png");
  widget->hide();
}

void ShootModal(const std::function<void()>& open, const QString& path,
                const std::function<void(QWidget*)>& prepare) {
  QTimer::singleShot(0, [path, prepare] {
    QWidget* modal = QApplication::activeModalWidget();
    if (modal == nullptr) return;
    if (prepare) prepare(modal);
    // As the command opened it, grown as the window grows its dialogs.
    FitToScreen(modal, kDesktopWorkArea);
    QApplication::processEvents();
    WithTitleBar(modal, modal->grab().toImage()).save(path);
    if (auto* dialog = qobject_cast<QDialog*>(modal)) dialog->reject();
  });
  open();
}

}  // namespace quillora
