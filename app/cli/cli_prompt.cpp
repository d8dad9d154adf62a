#include "app/cli/cli_prompt.h"

#include <sys/stat.h>
#include <unistd.h>

#include <iostream>

#include "platform/file.h"
#include "platform/text.h"
#include "store/data_context.h"
#include "store/string_table.h"

namespace quillora {
namespace {

// Message texts may hold line breaks; on the command line each message is one
// line.
std::string OneLine(const std::u16string& text) {
  std::string line = ToUtf8(text);
  for (char& c : line) {
    if (c == '\n') c = ' ';
  }
  std::erase(line, '\r');
  return line;
}

}  // namespace

CliPrompt::CliPrompt(bool assume_yes, std::FILE* out, std::FILE* err)
    : assume_yes_(assume_yes), out_(out), err_(err) {}

void CliPrompt::ShowMessage(const std::u16string& title, const std::u16string& text,
                            MessageIcon icon) {
  ShowDetailedMessage(title, text, icon, {});
}

void CliPrompt::ShowDetailedMessage(const std::u16string& title,
                                    const std::u16string& text, MessageIcon icon,
                                    const std::u16string& detail) {
  const bool is_error = icon == MessageIcon::kError || icon == MessageIcon::kExclamation ||
                        icon == MessageIcon::kWarning;
  std::FILE* stream = is_error ? err_ : out_;
  if (progress_visible_) std::fputs("\r\033[K", err_);
  if (title.empty()) {
    std::fprintf(stream, "%s\n", OneLine(text).c_str());
  } else {
    std::fprintf(stream, "%s: %s\n", OneLine(title).c_str(), OneLine(text).c_str());
  }
  if (is_error) {
    const std::string reason = DescribeLastFileFailure();
    if (!reason.empty()) std::fprintf(stream, "quillora: %s\n", reason.c_str());
    ClearLastFileFailure();
  }
  if (!detail.empty()) std::fprintf(stream, "quillora: %s\n", OneLine(detail).c_str());
  std::fflush(stream);
}

Answer CliPrompt::Ask(const std::u16string& title, const std::u16string& text,
                      MessageIcon icon, QuestionButtons buttons, Answer default_answer) {
  (void)icon;
  (void)default_answer;
  const bool yes_no = buttons == QuestionButtons::kYesNo;
  const Answer yes = yes_no ? Answer::kYes : Answer::kOk;
  const Answer no = yes_no ? Answer::kNo : Answer::kCancel;
  const std::string prefix = title.empty() ? "" : OneLine(title) + ": ";
  std::fprintf(err_, "%s%s", prefix.c_str(), OneLine(text).c_str());
  if (assume_yes_) {
    std::fputs(yes_no ? " [y/n] y\n" : " [ok/cancel] ok\n", err_);
    return yes;
  }
  if (!isatty(STDIN_FILENO)) {
    std::fputs(yes_no ? " [y/n] n\n" : " [ok/cancel] cancel\n", err_);
    return no;
  }
  std::fputs(" [y/n] ", err_);
  std::fflush(err_);
  std::string reply;
  if (!std::getline(std::cin, reply)) return no;
  return !reply.empty() && (reply[0] == 'y' || reply[0] == 'Y' || reply[0] == 'o') ? yes : no;
}

std::optional<std::string> CliPrompt::ChooseFileToOpen(const FileChooser& chooser) {
  (void)chooser;
  if (file_.empty()) return std::nullopt;
  return file_;
}

std::optional<std::string> CliPrompt::ChooseFileToSave(const FileChooser& chooser) {
  if (file_.empty()) return std::nullopt;
  if (RefuseOwnDataFile(data_folder_, file_, *this)) return std::nullopt;
  struct stat st {};
  if ((chooser.flags & kFileOverwritePrompt) && stat(file_.c_str(), &st) == 0) {
    const std::u16string question =
        FromUtf8(file_) + u" already exists.\nDo you want to replace it?";
    if (Ask(kAppTitle, question, MessageIcon::kWarning, QuestionButtons::kYesNo,
            Answer::kNo) != Answer::kYes) {
      return std::nullopt;
    }
  }
  return file_;
}

void CliPrompt::BeginProgress(const std::u16string& title, int total) {
  (void)title;
  progress_total_ = total;
  progress_visible_ = isatty(fileno(err_)) != 0;
}

void CliPrompt::StepProgress(int position, const std::u16string& text) {
  if (!progress_visible_) return;
  std::fprintf(err_, "\r\033[K%s (%d/%d)", OneLine(text).c_str(), position, progress_total_);
  std::fflush(err_);
}

void CliPrompt::EndProgress() {
  if (progress_visible_) std::fputs("\r\033[K", err_);
  progress_visible_ = false;
}

}  // namespace quillora
