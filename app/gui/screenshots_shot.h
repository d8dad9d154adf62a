// How the screenshots are taken: a handheld's 240 x 320 picture as the
// dialog's contents, and a desktop picture at the size the dialog opens at
// on a 1366 x 768 screen, under a plain title bar carrying its title, so
// that a cut text or title shows.
#ifndef QUILLORA_APP_GUI_SCREENSHOTS_SHOT_H_
#define QUILLORA_APP_GUI_SCREENSHOTS_SHOT_H_

#include <QImage>
#include <QSize>
#include <QString>
#include <QWidget>
#include <functional>

namespace quillora {

// The work area of a 1366 x 768 screen less a panel and the title bar.
inline const QSize kDesktopWorkArea(1366, 708);
inline const QSize kHandheldScreen(240, 320);

// `widget` at `size`, its contents only.
void ShootHandheld(QWidget* widget, const QString& path,
                   const QSize& size = kHandheldScreen);

// `widget` opened at `size` (what the command asks for), grown as the
// window grows its dialogs on a 1366 x 768 desktop, with its title bar.
void ShootDesktop(QWidget* widget, const QSize& size, const QString& path);

// Both pictures: "<name>-handheld.png" and "<name>.png" in `folder`.
void ShootBoth(QWidget* widget, const QString& folder, const QString& name,
               const QSize& desktop);

// A dialog that `open` runs modally: the picture is taken once it is shown,
// then the dialog is cancelled. `prepare` may set it up first.
void ShootModal(const std::function<void()>& open, const QString& path,
                const std::function<void(QWidget*)>& prepare = {});

// The picture of `window` under a title bar with its title, as a desktop
// draws it (elided when the window is too narrow for it).
QImage WithTitleBar(QWidget* window, const QImage& contents);

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_SCREENSHOTS_SHOT_H_
