#include "app/gui/file_command_prompt.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include "app/gui/qt_text.h"
#include "store/settings.h"

namespace quillora {

QString LastFolder(Registry* registry) {
  if (registry != nullptr) {
    RegistryKey key;
    std::u16string folder;
    if (registry->OpenKey(RegistryHive::kCurrentUser, kSettingsKeyPath, &key) == 0 &&
        ReadString(*registry, key, kLastFolderValue, 0, &folder) == 0 &&
        !folder.empty() && QFileInfo(ToQString(folder)).isDir()) {
      return ToQString(folder);
    }
  }
  const QString documents =
      QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

void RememberFolder(Registry* registry, const QString& file) {
  if (registry == nullptr || file.isEmpty()) return;
  RegistryKey key;
  if (registry->CreateKey(RegistryHive::kCurrentUser, kSettingsKeyPath, &key) != 0)
    return;
  // A folder that cannot be kept is not worth a message: the next chooser
  // starts in the documents folder.
  WriteString(*registry, key, kLastFolderValue,
              FromQString(QFileInfo(file).absolutePath()));
}

QString DayFileStem(const QDate& day) { return day.toString("yyyy-MM-dd"); }

QString RangeFileStem(const PeriodRange& range) {
  const QDate first = ToQDate(range.start);
  const QDate last = ToQDate(range.end);
  if (first.day() == 1 && last.year() == first.year() && last.month() == first.month() &&
      last.day() == first.daysInMonth()) {
    return first.toString("yyyy-MM");
  }
  return DayFileStem(first);
}

FileChooser FileCommandPrompt::Started(const FileChooser& chooser,
                                       const QString& name) const {
  FileChooser started = chooser;
  if (started.start_path.empty()) {
    const QString folder = LastFolder(registry_);
    started.start_path =
        (name.isEmpty() ? folder : QDir(folder).filePath(name)).toStdString();
  }
  return started;
}

std::optional<std::string> FileCommandPrompt::Keep(std::optional<std::string> path) {
  if (path) {
    chosen_ = QString::fromStdString(*path);
    RememberFolder(registry_, chosen_);
  }
  return path;
}

std::optional<std::string> FileCommandPrompt::ChooseFileToOpen(
    const FileChooser& chooser) {
  return Keep(inner_.ChooseFileToOpen(Started(chooser, QString())));
}

std::optional<std::string> FileCommandPrompt::ChooseFileToSave(
    const FileChooser& chooser) {
  return Keep(inner_.ChooseFileToSave(Started(chooser, suggested_name_)));
}

}  // namespace quillora
