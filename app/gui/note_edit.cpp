#include "app/gui/note_edit.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QTabletEvent>
#include <QTouchEvent>
#include <algorithm>

#include "app/gui/qt_text.h"

namespace quillora {
namespace {

NotePoint ToNotePoint(QPoint p) {
  auto clamp = [](int v) {
    return static_cast<std::int16_t>(std::clamp(v, -32768, 32767));
  };
  return {clamp(p.x()), clamp(p.y())};
}

}  // namespace

NoteCanvas::NoteCanvas(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_TransparentForMouseEvents, true);
  setAttribute(Qt::WA_AcceptTouchEvents, true);
  setAttribute(Qt::WA_NoSystemBackground, true);
}

void NoteCanvas::SetDrawing(bool on) {
  setAttribute(Qt::WA_TransparentForMouseEvents, !on);
  setCursor(on ? Qt::CrossCursor : Qt::IBeamCursor);
  stroking_ = false;
}

void NoteCanvas::SetStrokes(std::vector<NoteStroke> strokes) {
  strokes_ = std::move(strokes);
  update();
}

void NoteCanvas::BeginStroke(QPoint at) {
  if (strokes_.size() >= kMaxNoteStrokes) return;
  strokes_.push_back({ToNotePoint(at)});
  stroking_ = true;
  update();
}

void NoteCanvas::ExtendStroke(QPoint at) {
  if (!stroking_ || strokes_.empty() || strokes_.back().size() >= kMaxStrokePoints)
    return;
  const NotePoint p = ToNotePoint(at);
  if (strokes_.back().back() == p) return;
  strokes_.back().push_back(p);
  update();
}

void NoteCanvas::EndStroke() {
  if (!stroking_) return;
  stroking_ = false;
  emit Changed();
}

void NoteCanvas::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(palette().color(QPalette::Text), 2, Qt::SolidLine, Qt::RoundCap,
                      Qt::RoundJoin));
  for (const NoteStroke& stroke : strokes_) {
    if (stroke.empty()) continue;
    if (stroke.size() == 1) {
      painter.drawPoint(stroke[0].x, stroke[0].y);
      continue;
    }
    QPainterPath path(QPointF(stroke[0].x, stroke[0].y));
    for (std::size_t i = 1; i < stroke.size(); ++i) path.lineTo(stroke[i].x, stroke[i].y);
    painter.drawPath(path);
  }
}

void NoteCanvas::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) BeginStroke(event->position().toPoint());
}

void NoteCanvas::mouseMoveEvent(QMouseEvent* event) {
  ExtendStroke(event->position().toPoint());
}

void NoteCanvas::mouseReleaseEvent(QMouseEvent*) { EndStroke(); }

void NoteCanvas::tabletEvent(QTabletEvent* event) {
  const QPoint at = event->position().toPoint();
  switch (event->type()) {
    case QEvent::TabletPress:
      BeginStroke(at);
      break;
    case QEvent::TabletMove:
      ExtendStroke(at);
      break;
    case QEvent::TabletRelease:
      EndStroke();
      break;
    default:
      break;
  }
  event->accept();
}

bool NoteCanvas::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd: {
      if (testAttribute(Qt::WA_TransparentForMouseEvents)) return false;
      auto* touch = static_cast<QTouchEvent*>(event);
      if (touch->points().isEmpty()) return true;
      const QPoint at = touch->points().first().position().toPoint();
      if (event->type() == QEvent::TouchBegin)
        BeginStroke(at);
      else if (event->type() == QEvent::TouchUpdate)
        ExtendStroke(at);
      else
        EndStroke();
      event->accept();
      return true;
    }
    default:
      return QWidget::event(event);
  }
}

NoteEdit::NoteEdit(QWidget* parent) : QWidget(parent) {
  text_ = new QPlainTextEdit(this);
  canvas_ = new NoteCanvas(this);
  canvas_->raise();
  setMinimumSize(120, 80);
}

void NoteEdit::resizeEvent(QResizeEvent*) {
  text_->setGeometry(rect());
  canvas_->setGeometry(rect());
}

std::vector<std::uint8_t> NoteEdit::Blob() const {
  const std::u16string text = FromQString(text_->toPlainText());
  if (text.empty() && canvas_->strokes().empty()) return {};
  return NoteBlobFromParts(text, canvas_->strokes());
}

void NoteEdit::SetBlob(const std::vector<std::uint8_t>& blob) {
  std::u16string text;
  std::vector<NoteStroke> strokes;
  ReadNoteBlob(blob.data(), blob.size(), &text, &strokes);
  text_->setPlainText(ToQString(text));
  canvas_->SetStrokes(std::move(strokes));
}

void NoteEdit::Clear() { SetBlob({}); }

void NoteEdit::SetDrawing(bool on) {
  drawing_ = on;
  canvas_->SetDrawing(on);
  text_->setReadOnly(on);
}

}  // namespace quillora
