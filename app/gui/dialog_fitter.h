// Dialogs at desktop size: a dialog that would open narrower than its own
// contents, its tab bar or its title grows, as far as the screen's work area
// allows, so that no text is cut and no tab bar needs scroll arrows. On a
// screen the size of a handheld's nothing changes.
#ifndef QUILLORA_APP_GUI_DIALOG_FITTER_H_
#define QUILLORA_APP_GUI_DIALOG_FITTER_H_

#include <QObject>
#include <QRect>
#include <QWidget>

namespace quillora {

// The width a window needs for its title in the title bar: the title in the
// bold application font, and room for the window's icon and three caption
// buttons.
int TitleBarWidth(const QWidget* window);

// The size `dialog` needs: its size hint, its title, and the full width of
// every tab bar in it.
QSize NeededSize(const QWidget* dialog);

// Grows `dialog` to NeededSize(), bounded by `available` (a screen's work
// area); never shrinks it.
void FitToScreen(QWidget* dialog, const QSize& available);

// Fits every dialog of the application with FitToScreen() when it is first
// shown, bounded by its screen's work area.
class DialogFitter : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;
  bool eventFilter(QObject* watched, QEvent* event) override;
};

// Installs one DialogFitter on the application.
void InstallDialogFitter();

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_DIALOG_FITTER_H_
