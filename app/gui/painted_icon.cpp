#include "app/gui/painted_icon.h"

#include <QIconEngine>
#include <QImage>
#include <QLinearGradient>
#include <QPainterPath>
#include <QPixmap>

namespace quillora {
namespace {

class PaintedIconEngine : public QIconEngine {
 public:
  PaintedIconEngine(IconDrawing draw, qreal units)
      : draw_(std::move(draw)), units_(units) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
             QIcon::State state) override {
    // Through a picture of the device's pixels, so that the disabled look
    // and the antialiasing are the same everywhere.
    const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
    QPixmap picture = scaledPixmap(rect.size(), mode, state, ratio);
    painter->drawPixmap(rect, picture);
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    return scaledPixmap(size, mode, state, 1.0);
  }

  QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state,
                       qreal scale) override {
    (void)state;
    const QSize pixels = (QSizeF(size) * scale).toSize();
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
      QPainter p(&image);
      p.setRenderHint(QPainter::Antialiasing);
      const qreal side = std::min(pixels.width(), pixels.height());
      p.translate((pixels.width() - side) / 2, (pixels.height() - side) / 2);
      p.scale(side / units_, side / units_);
      draw_(p);
    }
    if (mode == QIcon::Disabled) {
      // Grey, and half seen.
      for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
          const int grey = qGray(line[x]);
          const int alpha = qAlpha(line[x]) / 2;
          line[x] = qPremultiply(qRgba(grey, grey, grey, alpha));
        }
      }
    }
    QPixmap result = QPixmap::fromImage(image);
    result.setDevicePixelRatio(scale);
    return result;
  }

  QSize actualSize(const QSize& size, QIcon::Mode, QIcon::State) override { return size; }
  QIconEngine* clone() const override { return new PaintedIconEngine(draw_, units_); }

 private:
  IconDrawing draw_;
  qreal units_;
};

void DrawAppIcon(QPainter& p) {
  const QColor ink(0x2b, 0x3a, 0x4a);
  QLinearGradient face(0, 8, 0, 60);
  face.setColorAt(0, QColor(0xfd, 0xfd, 0xfd));
  face.setColorAt(1, QColor(0xdf, 0xe7, 0xee));
  p.setPen(QPen(ink, 3));
  p.setBrush(face);
  p.drawEllipse(QPointF(30, 34), 26, 26);
  p.setPen(QPen(ink, 2.5, Qt::SolidLine, Qt::RoundCap));
  p.drawLine(QPointF(30, 11), QPointF(30, 15));
  p.drawLine(QPointF(30, 53), QPointF(30, 57));
  p.drawLine(QPointF(7, 34), QPointF(11, 34));
  p.drawLine(QPointF(49, 34), QPointF(53, 34));
  p.setPen(QPen(ink, 3.5, Qt::SolidLine, Qt::RoundCap));
  p.drawLine(QPointF(30, 34), QPointF(30, 20));
  p.drawLine(QPointF(30, 34), QPointF(40, 40));
  p.setPen(Qt::NoPen);
  p.setBrush(ink);
  p.drawEllipse(QPointF(30, 34), 2.8, 2.8);
  QPainterPath feather;
  feather.moveTo(60, 3);
  feather.cubicTo(45, 6, 33, 17, 27, 31);
  feather.lineTo(24, 38);
  feather.lineTo(28, 36);
  feather.cubicTo(35, 33, 42, 29, 47, 24);
  feather.lineTo(41, 24);
  feather.lineTo(50, 19);
  feather.cubicTo(55, 14, 58, 9, 60, 3);
  feather.closeSubpath();
  QLinearGradient blue(24, 3, 60, 38);
  blue.setColorAt(0, QColor(0x3b, 0x7d, 0xd8));
  blue.setColorAt(1, QColor(0x1c, 0x4f, 0x96));
  const QColor edge(0x10, 0x32, 0x5f);
  p.setPen(QPen(edge, 1.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  p.setBrush(blue);
  p.drawPath(feather);
  p.setPen(QPen(QColor(0xe8, 0xf0, 0xfb), 1.2, Qt::SolidLine, Qt::RoundCap));
  p.drawLine(QPointF(58, 5), QPointF(26, 36));
  p.setPen(QPen(edge, 2.2, Qt::SolidLine, Qt::RoundCap));
  p.drawLine(QPointF(24, 38), QPointF(20, 46));
}

}  // namespace

QIcon PaintedIcon(IconDrawing draw, qreal units) {
  return QIcon(new PaintedIconEngine(std::move(draw), units));
}

QIcon AppIcon() { return PaintedIcon(DrawAppIcon, 64); }

}  // namespace quillora
