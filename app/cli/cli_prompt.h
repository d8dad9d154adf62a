// The command line's answers to the logic's messages and questions.
//
// Messages print as one line "Quillora: TEXT" (bare TEXT without a title):
// errors and warnings on stderr, information on stdout. Questions print on
// stderr; --yes answers Yes/OK, a terminal answers y or n, and with no
// terminal the answer is No/Cancel. The file a command writes or reads comes
// from its arguments, set with SetFile before the logic asks for it. An error
// message that follows a failed file operation gets one more line naming the
// file and the operating system's reason ("quillora: /x.csv: No such file or
// directory").
#ifndef QUILLORA_APP_CLI_CLI_PROMPT_H_
#define QUILLORA_APP_CLI_CLI_PROMPT_H_

#include <cstdio>
#include <string>

#include "platform/user_prompt.h"

namespace quillora {

class CliPrompt : public UserPrompt {
 public:
  CliPrompt(bool assume_yes, std::FILE* out = stdout, std::FILE* err = stderr);

  void SetFile(const std::string& path) { file_ = path; }
  // The open data folder, whose own files a save never writes over.
  void SetDataFolder(const std::string& folder) { data_folder_ = folder; }

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

 private:
  bool assume_yes_;
  std::FILE* out_;
  std::FILE* err_;
  std::string file_;
  std::string data_folder_;
  bool progress_visible_ = false;
  int progress_total_ = 0;
};

}  // namespace quillora

#endif  // QUILLORA_APP_CLI_CLI_PROMPT_H_
