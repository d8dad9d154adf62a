// Small pieces the data dialogs share: text conversion between the logic's
// UTF-16 strings and Qt, dates between SystemTime and QDate, the wait cursor,
// and prompts that wrap the window's prompt for one command.
#ifndef QUILLORA_APP_GUI_DIALOG_SUPPORT_H_
#define QUILLORA_APP_GUI_DIALOG_SUPPORT_H_

#include <QDate>
#include <QString>
#include <QWidget>
#include <optional>
#include <string>

#include "app/gui/qt_text.h"
#include "periods/periods.h"
#include "platform/clock.h"
#include "platform/user_prompt.h"
#include "reports/saved_reports.h"

namespace quillora {

class MainWindow;
struct Catalogue;

// The catalogue the window's data commands need, opened when it is not yet;
// null after "Unable to load database." when it cannot be opened.
Catalogue* CatalogueOf(MainWindow* window);

// Shows why a saved report cannot be used; true when it was found.
bool ReportFound(UserPrompt& prompt, SavedReportLookup lookup);

// The whole days from `first` to `last`: 00:00:00 of the first to 23:59:59 of
// the last.
PeriodRange WholeDayRange(const QDate& first, const QDate& last);

// Lets the push buttons of a dialog shrink below their natural width, so the
// dialog fits a handheld's 240 pixels.
void FitNarrowScreens(QWidget* dialog);

// Shows the wait cursor while it lives (unless released earlier).
class WaitCursor {
 public:
  WaitCursor();
  ~WaitCursor();
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;
  void Release();

 private:
  bool shown_ = true;
};

// Hands everything to another prompt.
class ForwardingPrompt : public UserPrompt {
 public:
  explicit ForwardingPrompt(UserPrompt& inner) : inner_(inner) {}
  void ShowMessage(const std::u16string& title, const std::u16string& text,
                   MessageIcon icon) override {
    inner_.ShowMessage(title, text, icon);
  }
  Answer Ask(const std::u16string& title, const std::u16string& text, MessageIcon icon,
             QuestionButtons buttons, Answer default_answer) override {
    return inner_.Ask(title, text, icon, buttons, default_answer);
  }
  std::optional<std::string> ChooseFileToOpen(const FileChooser& chooser) override {
    return inner_.ChooseFileToOpen(chooser);
  }
  std::optional<std::string> ChooseFileToSave(const FileChooser& chooser) override {
    return inner_.ChooseFileToSave(chooser);
  }
  void BeginProgress(const std::u16string& title, int total) override {
    inner_.BeginProgress(title, total);
  }
  void StepProgress(int position, const std::u16string& text) override {
    inner_.StepProgress(position, text);
  }
  void EndProgress() override { inner_.EndProgress(); }

 protected:
  UserPrompt& inner_;
};

// The wait cursor from the moment a file is chosen until the command shows a
// message or asks a question (and at the latest until the prompt goes), so
// the cursor waits while the file is written or read, never over a dialog.
class WaitingPrompt : public ForwardingPrompt {
 public:
  using ForwardingPrompt::ForwardingPrompt;
  void ShowMessage(const std::u16string& title, const std::u16string& text,
                   MessageIcon icon) override;
  Answer Ask(const std::u16string& title, const std::u16string& text, MessageIcon icon,
             QuestionButtons buttons, Answer default_answer) override;
  std::optional<std::string> ChooseFileToOpen(const FileChooser& chooser) override;
  std::optional<std::string> ChooseFileToSave(const FileChooser& chooser) override;
  // Starts waiting now (a command without a file chooser).
  void Wait();

 private:
  std::optional<WaitCursor> cursor_;
};

// A file handed over on the command line answers the open-file chooser.
class HandedFilePrompt : public WaitingPrompt {
 public:
  HandedFilePrompt(UserPrompt& inner, std::string path)
      : WaitingPrompt(inner), path_(std::move(path)) {}
  std::optional<std::string> ChooseFileToOpen(const FileChooser& chooser) override;

 private:
  std::string path_;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_DIALOG_SUPPORT_H_
