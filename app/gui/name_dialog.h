// The name dialog of the catalogue: one label ("Enter Client Name:", ...)
// and one line. OK with a blank line shows "Please enter some text. Blank is
// not allowed." and the dialog stays open.
#ifndef QUILLORA_APP_GUI_NAME_DIALOG_H_
#define QUILLORA_APP_GUI_NAME_DIALOG_H_

#include <QDialog>
#include <QLineEdit>
#include <string>

#include "platform/user_prompt.h"

namespace quillora {

class NameDialog : public QDialog {
  Q_OBJECT

 public:
  NameDialog(UserPrompt& prompt, const std::u16string& title, const std::u16string& label,
             const std::u16string& text, QWidget* parent = nullptr);

  std::u16string text() const;
  QLineEdit* line() const { return line_; }

  void accept() override;

 private:
  UserPrompt& prompt_;
  QLineEdit* line_;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_NAME_DIALOG_H_
