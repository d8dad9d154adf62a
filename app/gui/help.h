// The help file, "Quillora.htm", opened in the desktop's browser at a topic.
#ifndef QUILLORA_APP_GUI_HELP_H_
#define QUILLORA_APP_GUI_HELP_H_

#include <QString>
#include <QUrl>
#include <functional>

class QDialogButtonBox;

namespace quillora {

// Where the help file is: $QUILLORA_HELP when set, else the installed copy
// (<prefix>/share/quillora/Quillora.htm, found from the program's folder),
// else the copy in the source tree next to the build. Empty when none exists.
QString HelpFilePath();

// The address of a topic ("ratesetup" gives .../Quillora.htm#ratesetup); an
// empty topic gives the file's start. An empty URL when there is no help file.
QUrl HelpUrl(const QString& topic);

// Opens the help at `topic` with the desktop's viewer for web pages. False
// (after saying so in a message box) when there is no help file or nothing
// could open it.
bool OpenHelp(const QString& topic);

// Opens a page (the help, a report) with the desktop's viewer: through
// QDesktopServices, never a shell. Tests put a recorder in its place.
using UrlOpener = std::function<bool(const QUrl&)>;
bool OpenUrl(const QUrl& url);
// Replaces the opener; an empty one restores the desktop's.
void SetUrlOpener(UrlOpener opener);

// Connects the Help button of a dialog's button box to OpenHelp(topic).
void ConnectHelpButton(QDialogButtonBox* buttons, const QString& topic);

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_HELP_H_
