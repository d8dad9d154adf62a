// Icons drawn with QPainter in their own units, at whatever size and pixel
// ratio the screen asks for, so they stay sharp on HiDPI screens without
// picture files (the Qt in use reads no SVG).
#ifndef QUILLORA_APP_GUI_PAINTED_ICON_H_
#define QUILLORA_APP_GUI_PAINTED_ICON_H_

#include <QIcon>
#include <QPainter>
#include <functional>

namespace quillora {

// Draws the picture into a square of `units` by `units` (the painter is
// scaled to the size asked for and antialiased).
using IconDrawing = std::function<void(QPainter& painter)>;

// An icon painted by `draw` at every size; the disabled look is greyed.
QIcon PaintedIcon(IconDrawing draw, qreal units = 16);

// The program's own icon: a quill crossing a clock face, as
// desktop/quillora.svg draws it.
QIcon AppIcon();

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_PAINTED_ICON_H_
