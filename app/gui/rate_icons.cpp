#include "app/gui/rate_icons.h"

#include <QPainter>
#include <QPainterPath>

#include "app/gui/painted_icon.h"
#include "store/rates.h"

namespace quillora {
namespace {

void DrawCoin(QPainter& p) {
  p.setPen(QPen(QColor(0x1b, 0x5e, 0x20), 1.2));
  p.setBrush(QColor(0x66, 0xbb, 0x6a));
  p.drawEllipse(QRectF(1.5, 1.5, 13, 13));
  p.setPen(QPen(Qt::white, 1.6));
  // A plain "$" made of two arcs and a bar.
  p.drawArc(QRectF(5, 3.5, 6, 4.5), 30 * 16, 240 * 16);
  p.drawArc(QRectF(5, 8, 6, 4.5), 210 * 16, 240 * 16);
  p.drawLine(QPointF(8, 2.5), QPointF(8, 13.5));
}

void DrawClock(QPainter& p) {
  p.setPen(QPen(QColor(0xbf, 0x36, 0x0c), 1.2));
  p.setBrush(QColor(0xff, 0xcc, 0x80));
  p.drawEllipse(QRectF(1.5, 1.5, 13, 13));
  p.setPen(QPen(QColor(0x4e, 0x34, 0x2e), 1.5, Qt::SolidLine, Qt::RoundCap));
  p.drawLine(QPointF(8, 8), QPointF(8, 4));
  p.drawLine(QPointF(8, 8), QPointF(11, 10));
}

void DrawCalendar(QPainter& p) {
  p.setPen(QPen(QColor(0x0d, 0x47, 0xa1), 1));
  p.setBrush(Qt::white);
  p.drawRect(QRectF(1.5, 2.5, 13, 12));
  p.setBrush(QColor(0x42, 0x85, 0xf4));
  p.drawRect(QRectF(1.5, 2.5, 13, 3.5));
  // The last two columns of the week, shaded.
  p.setPen(Qt::NoPen);
  p.setBrush(QColor(0x90, 0xca, 0xf9));
  p.drawRect(QRectF(9, 7.5, 5, 6.5));
  p.setBrush(QColor(0x0d, 0x47, 0xa1));
  for (int row = 0; row < 2; ++row) {
    for (int col = 0; col < 2; ++col) p.drawRect(QRectF(3 + col * 3, 8 + row * 3, 1.6, 1.6));
  }
}

void DrawPadlock(QPainter& p) {
  p.setPen(QPen(QColor(0x5d, 0x40, 0x37), 1.6));
  p.setBrush(Qt::NoBrush);
  p.drawArc(QRectF(4.5, 1.5, 7, 8), 0, 180 * 16);
  p.drawLine(QPointF(4.5, 5.5), QPointF(4.5, 7.5));
  p.drawLine(QPointF(11.5, 5.5), QPointF(11.5, 7.5));
  p.setPen(QPen(QColor(0x5d, 0x40, 0x37), 1));
  p.setBrush(QColor(0xff, 0xb3, 0x00));
  p.drawRoundedRect(QRectF(2.5, 7.5, 11, 7), 1.5, 1.5);
  p.setBrush(QColor(0x5d, 0x40, 0x37));
  p.drawEllipse(QRectF(7, 9.5, 2, 2));
}

void DrawTag(QPainter& p) {
  QPainterPath tag;
  tag.moveTo(1.5, 8);
  tag.lineTo(6, 3);
  tag.lineTo(14.5, 3);
  tag.lineTo(14.5, 13);
  tag.lineTo(6, 13);
  tag.closeSubpath();
  p.setPen(QPen(QColor(0x88, 0x0e, 0x4f), 1.2));
  p.setBrush(QColor(0xf4, 0x8f, 0xb1));
  p.drawPath(tag);
  p.setBrush(Qt::white);
  p.drawEllipse(QRectF(4.5, 7, 2, 2));
  p.setPen(QPen(QColor(0x88, 0x0e, 0x4f), 1.8));
  p.drawLine(QPointF(8.5, 8), QPointF(12.5, 8));
}

}  // namespace

QIcon RateTypeIcon(std::uint16_t type) {
  if (type >= kRateTypeCount) return {};
  return PaintedIcon([type](QPainter& painter) {
    switch (type) {
      case 0:
        DrawCoin(painter);
        break;
      case 1:
        DrawClock(painter);
        break;
      case 2:
        DrawCalendar(painter);
        break;
      case 3:
        DrawPadlock(painter);
        break;
      default:
        DrawTag(painter);
        break;
    }
  });
}

}  // namespace quillora
