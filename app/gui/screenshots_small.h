// Pictures of the small dialogs, the rate type list, the file notice and a
// few dialogs under a dark palette.
#ifndef QUILLORA_APP_GUI_SCREENSHOTS_SMALL_H_
#define QUILLORA_APP_GUI_SCREENSHOTS_SMALL_H_

#include <QString>

namespace quillora {

class MainWindow;

void ShootSmallDialogs(MainWindow* window, const QString& out);

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_SCREENSHOTS_SMALL_H_
