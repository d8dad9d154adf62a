// Everything the logic shows to or asks of the user: message boxes, questions,
// file choosers and progress. The window answers with dialogs, the command
// line with its streams and arguments, tests with a scripted fake.
#ifndef QUILLORA_PLATFORM_USER_PROMPT_H_
#define QUILLORA_PLATFORM_USER_PROMPT_H_

#include <cstdint>
#include <optional>
#include <string>

namespace quillora {

enum class MessageIcon { kNone, kInformation, kExclamation, kWarning, kError, kQuestion };

enum class QuestionButtons { kYesNo, kOkCancel };

enum class Answer { kYes, kNo, kOk, kCancel };

// File chooser options, as the device's open and save dialogs took them.
inline constexpr std::uint32_t kFileOverwritePrompt = 0x2;   // OFN_OVERWRITEPROMPT
inline constexpr std::uint32_t kFileHideReadOnly = 0x4;      // OFN_HIDEREADONLY
inline constexpr std::uint32_t kFilePathMustExist = 0x800;   // OFN_PATHMUSTEXIST
inline constexpr std::uint32_t kFileMustExist = 0x1000;      // OFN_FILEMUSTEXIST

struct FileChooser {
  // "Description (*.ext)|*.ext|" pairs, as the device's filter texts.
  std::u16string filter;
  std::u16string default_extension;  // without the dot
  std::uint32_t flags = 0;
  std::u16string title;
  // Where a window's chooser starts (UTF-8): a folder, or for a save a
  // folder and a suggested file name. Empty: the chooser's own start. The
  // logic leaves it empty; the command line has no use for it.
  std::string start_path;
};

class UserPrompt {
 public:
  virtual ~UserPrompt() = default;

  // A message box. An empty title shows the bare text.
  virtual void ShowMessage(const std::u16string& title, const std::u16string& text,
                           MessageIcon icon) = 0;
  // A message box with a detail below the text (the window's informative
  // text; the command line's next line). By default the text alone.
  virtual void ShowDetailedMessage(const std::u16string& title,
                                   const std::u16string& text, MessageIcon icon,
                                   const std::u16string& detail) {
    (void)detail;
    ShowMessage(title, text, icon);
  }

  // A question; the default answer is the button that Enter presses.
  virtual Answer Ask(const std::u16string& title, const std::u16string& text,
                     MessageIcon icon, QuestionButtons buttons, Answer default_answer) = 0;

  // The file the user chose (a UTF-8 path), or nothing when cancelled.
  virtual std::optional<std::string> ChooseFileToOpen(const FileChooser& chooser) = 0;
  virtual std::optional<std::string> ChooseFileToSave(const FileChooser& chooser) = 0;

  // Progress of a long operation: Begin once, Step as it goes (position out of
  // `total`, with a text such as "Backing up record 12..."), End once.
  virtual void BeginProgress(const std::u16string& title, int total) = 0;
  virtual void StepProgress(int position, const std::u16string& text) = 0;
  virtual void EndProgress() = 0;
};

}  // namespace quillora

#endif  // QUILLORA_PLATFORM_USER_PROMPT_H_
