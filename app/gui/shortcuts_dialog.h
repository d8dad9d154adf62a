// "Keyboard Shortcuts" of the Help menu: every command of the window that a
// key reaches, with its keys, read from the actions themselves so that the
// list never disagrees with the menus.
#ifndef QUILLORA_APP_GUI_SHORTCUTS_DIALOG_H_
#define QUILLORA_APP_GUI_SHORTCUTS_DIALOG_H_

#include <QAction>
#include <QDialog>
#include <QList>
#include <QStringList>

namespace quillora {

// One line per action that has keys: the command's name without "&" and
// "...", a tab, and its keys in the desktop's notation joined by ", ".
QStringList ShortcutLines(const QList<QAction*>& actions);

class ShortcutsDialog : public QDialog {
  Q_OBJECT

 public:
  ShortcutsDialog(const QList<QAction*>& actions, QWidget* parent = nullptr);
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_SHORTCUTS_DIALOG_H_
