// Pictures of the options pages, the "Filters" page and the quick summary.
#ifndef QUILLORA_APP_GUI_SCREENSHOTS_OPTIONS_H_
#define QUILLORA_APP_GUI_SCREENSHOTS_OPTIONS_H_

#include <QString>

namespace quillora {

class MainWindow;

// Writes options-*.png, filters*.png and quick-summary*.png into `out`, each
// at a handheld's size (the "-handheld" ones) and a desktop's.
void ShootOptionsDialogs(MainWindow* window, const QString& out);

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_SCREENSHOTS_OPTIONS_H_
