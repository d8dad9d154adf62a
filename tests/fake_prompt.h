// A UserPrompt for tests: records every message and question, answers
// questions and file choosers from queues, and counts progress steps.
#ifndef QUILLORA_TESTS_FAKE_PROMPT_H_
#define QUILLORA_TESTS_FAKE_PROMPT_H_

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "platform/user_prompt.h"

namespace quillora::testing {

class FakePrompt : public UserPrompt {
 public:
  struct Shown {
    std::u16string title;
    std::u16string text;
    MessageIcon icon;
    bool question;  // Ask rather than ShowMessage
    QuestionButtons buttons;
    Answer default_answer;
  };

  void ShowMessage(const std::u16string& title, const std::u16string& text,
                   MessageIcon icon) override {
    shown.push_back({title, text, icon, false, QuestionButtons::kYesNo, Answer::kOk});
  }
  void ShowDetailedMessage(const std::u16string& title, const std::u16string& text,
                           MessageIcon icon, const std::u16string& detail) override {
    ShowMessage(title, text, icon);
    details.push_back(detail);
  }
  // Answers from `answers`, then the default answer when the queue is empty.
  Answer Ask(const std::u16string& title, const std::u16string& text, MessageIcon icon,
             QuestionButtons buttons, Answer default_answer) override {
    shown.push_back({title, text, icon, true, buttons, default_answer});
    if (answers.empty()) return default_answer;
    const Answer a = answers.front();
    answers.pop_front();
    return a;
  }
  std::optional<std::string> ChooseFileToOpen(const FileChooser& chooser) override {
    choosers.push_back(chooser);
    return NextFile();
  }
  std::optional<std::string> ChooseFileToSave(const FileChooser& chooser) override {
    choosers.push_back(chooser);
    return NextFile();
  }
  void BeginProgress(const std::u16string& title, int total) override {
    progress_title = title;
    progress_total = total;
  }
  void StepProgress(int position, const std::u16string& text) override {
    (void)position;
    progress_texts.push_back(text);
  }
  void EndProgress() override { ++progress_ends; }

  // The texts of everything shown, in order.
  std::vector<std::u16string> Texts() const {
    std::vector<std::u16string> texts;
    for (const Shown& s : shown) texts.push_back(s.text);
    return texts;
  }

  std::vector<Shown> shown;
  std::vector<std::u16string> details;  // of ShowDetailedMessage, in order
  std::deque<Answer> answers;
  std::deque<std::optional<std::string>> files;  // nullopt: cancelled
  std::vector<FileChooser> choosers;
  std::u16string progress_title;
  int progress_total = 0;
  std::vector<std::u16string> progress_texts;
  int progress_ends = 0;

 private:
  std::optional<std::string> NextFile() {
    if (files.empty()) return std::nullopt;
    auto f = files.front();
    files.pop_front();
    return f;
  }
};

}  // namespace quillora::testing

#endif  // QUILLORA_TESTS_FAKE_PROMPT_H_
