// What a file command did, said in the main window's status bar: "Exported
// 124 entries to /home/ann/november.csv" with "Open" and "Open Folder". The
// dialogs reach it through any widget of the window, without knowing the
// window itself.
#ifndef QUILLORA_APP_GUI_WRITTEN_FILE_NOTICE_H_
#define QUILLORA_APP_GUI_WRITTEN_FILE_NOTICE_H_

#include <QLabel>
#include <QMainWindow>
#include <QToolButton>
#include <QWidget>

namespace quillora {

class WrittenFileNotice : public QWidget {
  Q_OBJECT

 public:
  explicit WrittenFileNotice(QWidget* parent = nullptr);

  // Shows `text`; with a `file`, "Open" opens it with the desktop's
  // application for it and "Open Folder" opens its folder (both through
  // OpenUrl, never a shell). Without one, only the text.
  void Show(const QString& text, const QString& file);

  // The whole text (the label shows it cut in the middle when narrow).
  const QString& text() const { return text_; }
  const QString& file() const { return file_; }
  QToolButton* open_button() const { return open_; }
  QToolButton* open_folder_button() const { return open_folder_; }

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Elide();

  QLabel* label_;
  QToolButton* open_;
  QToolButton* open_folder_;
  QString file_;
  QString text_;
};

// The notice of the main window that `widget` belongs to (through its parent
// chain), made in its status bar on first use; null when there is none.
WrittenFileNotice* NoticeOf(QWidget* widget);

// Shows a notice in the status bar of `widget`'s main window, if it has one.
void ShowNotice(QWidget* widget, const QString& text, const QString& file = {});

// "1 entry", "124 entries": a count with its noun.
QString Counted(int count, const QString& one, const QString& many);

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_WRITTEN_FILE_NOTICE_H_
