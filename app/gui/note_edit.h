// The note control: typed text and a drawing in one place, kept as a note
// blob. "Draw" switches between typing and drawing; strokes come from the
// mouse, a pen or a finger.
#ifndef QUILLORA_APP_GUI_NOTE_EDIT_H_
#define QUILLORA_APP_GUI_NOTE_EDIT_H_

#include <QPlainTextEdit>
#include <QWidget>
#include <cstdint>
#include <vector>

#include "store/note_text.h"

namespace quillora {

// The drawing layer over the text: paints the strokes, and takes new ones
// while drawing is on (otherwise it lets every event through to the text).
class NoteCanvas : public QWidget {
  Q_OBJECT

 public:
  explicit NoteCanvas(QWidget* parent);
  void SetDrawing(bool on);
  const std::vector<NoteStroke>& strokes() const { return strokes_; }
  void SetStrokes(std::vector<NoteStroke> strokes);
  // Starts, extends and ends a stroke at a point of the canvas.
  void BeginStroke(QPoint at);
  void ExtendStroke(QPoint at);
  void EndStroke();

 signals:
  void Changed();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void tabletEvent(QTabletEvent* event) override;
  bool event(QEvent* event) override;

 private:
  std::vector<NoteStroke> strokes_;
  bool stroking_ = false;
};

class NoteEdit : public QWidget {
  Q_OBJECT

 public:
  explicit NoteEdit(QWidget* parent = nullptr);

  // The note blob: empty when there is neither text nor drawing.
  std::vector<std::uint8_t> Blob() const;
  // Shows a blob; a damaged one shows an empty note.
  void SetBlob(const std::vector<std::uint8_t>& blob);
  QString Text() const { return text_->toPlainText(); }
  void SetText(const QString& text) { text_->setPlainText(text); }
  void Clear();

  bool drawing() const { return drawing_; }
  void SetDrawing(bool on);
  NoteCanvas* canvas() const { return canvas_; }

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  QPlainTextEdit* text_;
  NoteCanvas* canvas_;
  bool drawing_ = false;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_NOTE_EDIT_H_
