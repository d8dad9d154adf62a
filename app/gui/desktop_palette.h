// The desktop's light or dark colours. Qt takes the palette from the
// platform theme where there is one; where there is none (or the Qt in use
// cannot see the desktop's choice), the window asks the desktop itself and
// takes a dark palette of its own when the desktop prefers dark. Colours the
// user chose for the list items stay readable on either.
#ifndef QUILLORA_APP_GUI_DESKTOP_PALETTE_H_
#define QUILLORA_APP_GUI_DESKTOP_PALETTE_H_

#include <QColor>
#include <QPalette>
#include <QString>

namespace quillora {

enum class ColourScheme { kUnknown, kLight, kDark };

// The desktop's choice: $QUILLORA_COLOR_SCHEME ("dark" or "light") first,
// then Qt's own answer where it has one, then $GTK_THEME (a ":dark"
// variant), GNOME's "color-scheme" setting and KDE's colour scheme.
ColourScheme DesktopColourScheme();

// Whether a palette is a dark one (its window colour is dark).
bool IsDark(const QPalette& palette);

// A dark palette in the Fusion style's manner.
QPalette DarkPalette();

// Gives the application the desktop's scheme: when the desktop prefers dark
// and the palette in use is light, the Fusion style with DarkPalette(); a
// light preference over a dark palette gets the Fusion style's own light
// palette. Otherwise the platform's palette stays.
void ApplyDesktopPalette();

// The brightness the eye sees, 0 to 255 (the video luma weights).
int Luma(const QColor& colour);

// `colour` (a colour the user chose, or a fixed one) made readable on
// `background`: when their brightness is too close, the colour is made
// lighter (on a dark background) or darker in its own hue until it reads.
QColor ReadableOn(const QColor& colour, const QColor& background);

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_DESKTOP_PALETTE_H_
