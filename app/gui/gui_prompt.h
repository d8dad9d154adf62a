// The window's answers to the logic's messages and questions: message boxes
// titled as the logic asks, the desktop's file dialogs, and a modal progress
// dialog that keeps the window painting between records.
#ifndef QUILLORA_APP_GUI_GUI_PROMPT_H_
#define QUILLORA_APP_GUI_GUI_PROMPT_H_

#include <QFileDialog>
#include <QPointer>
#include <QProgressDialog>
#include <QWidget>
#include <string>
#include <utility>

#include "platform/user_prompt.h"

namespace quillora {

class GuiPrompt : public UserPrompt {
 public:
  // `data_folder`: the open data folder, whose own files the save dialogs
  // refuse.
  explicit GuiPrompt(QWidget* parent, std::string data_folder = {})
      : parent_(parent), data_folder_(std::move(data_folder)) {}

  void ShowMessage(const std::u16string& title, const std::u16string& text,
                   MessageIcon icon) override;
  void ShowDetailedMessage(const std::u16string& title, const std::u16string& text,
                           MessageIcon icon, const std::u16string& detail) override;
  Answer Ask(const std::u16string& title, const std::u16string& text, MessageIcon icon,
             QuestionButtons buttons, Answer default_answer) override;
  std::optional<std::string> ChooseFileToOpen(const FileChooser& chooser) override;
  std::optional<std::string> ChooseFileToSave(const FileChooser& chooser) override;
  void BeginProgress(const std::u16string& title, int total) override;
  void StepProgress(int position, const std::u16string& text) override;
  void EndProgress() override;

  const std::string& data_folder() const { return data_folder_; }

 private:
  QWidget* parent_;
  std::string data_folder_;
  QPointer<QProgressDialog> progress_;
};

// Starts a file dialog at a chooser's start_path: a folder, or a folder and
// the file name it suggests.
void StartAt(QFileDialog* dialog, const std::string& start_path);

// "CSV Files (*.csv)|*.csv|" as a Qt filter: "CSV Files (*.csv)".
QString QtFileFilter(const std::u16string& device_filter);

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_GUI_PROMPT_H_
