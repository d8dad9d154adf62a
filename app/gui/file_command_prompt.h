// The file choosers of the window's file commands: they start in the folder
// used last and suggest a name, and the command learns which file was chosen
// so that it can say what it wrote and where.
#ifndef QUILLORA_APP_GUI_FILE_COMMAND_PROMPT_H_
#define QUILLORA_APP_GUI_FILE_COMMAND_PROMPT_H_

#include <QDate>
#include <QString>

#include "app/gui/dialog_support.h"
#include "periods/periods.h"
#include "platform/registry.h"

namespace quillora {

// The registry value under "Software\Quillora" that keeps the folder of the
// file chosen last (REG_SZ, a UTF-8 path turned into UTF-16).
inline constexpr char16_t kLastFolderValue[] = u"LastFolder";

// The folder of the file chosen last when it still exists, else the user's
// documents folder (else the home folder).
QString LastFolder(Registry* registry);
// Keeps the folder of `file` as the folder used last.
void RememberFolder(Registry* registry, const QString& file);

// The part of a suggested name that names a range of days: "2026-11" for
// one whole calendar month, else the first day, "2026-11-16".
QString RangeFileStem(const PeriodRange& range);
// "2026-11-23" for a day.
QString DayFileStem(const QDate& day);

// Wraps the window's prompt for one command: a chooser that the logic asks
// for starts in LastFolder() (a save chooser with `suggested_name` in it);
// a chosen file is remembered with RememberFolder() and kept in chosen().
class FileCommandPrompt : public ForwardingPrompt {
 public:
  FileCommandPrompt(UserPrompt& inner, Registry* registry, QString suggested_name = {})
      : ForwardingPrompt(inner),
        registry_(registry),
        suggested_name_(std::move(suggested_name)) {}

  std::optional<std::string> ChooseFileToOpen(const FileChooser& chooser) override;
  std::optional<std::string> ChooseFileToSave(const FileChooser& chooser) override;

  // The file chosen last, empty while none was.
  const QString& chosen() const { return chosen_; }

 private:
  FileChooser Started(const FileChooser& chooser, const QString& name) const;
  std::optional<std::string> Keep(std::optional<std::string> path);

  Registry* registry_;
  QString suggested_name_;
  QString chosen_;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_FILE_COMMAND_PROMPT_H_
