// Pictures of the data dialogs for `make screenshots`.
#ifndef QUILLORA_APP_GUI_SCREENSHOTS_DATA_H_
#define QUILLORA_APP_GUI_SCREENSHOTS_DATA_H_

#include <QString>

namespace quillora {

class MainWindow;

// Draws the export range, archive, delete data, find and replace, report
// editor, saved reports and report dialogs at a handheld's size and a
// desktop's into `folder`.
void ShootDataDialogs(MainWindow* window, const QString& folder);

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_SCREENSHOTS_DATA_H_
