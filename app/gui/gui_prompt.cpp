#include "app/gui/gui_prompt.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>

#include "app/gui/qt_text.h"
#include "platform/file.h"
#include "store/data_context.h"

namespace quillora {
namespace {


QMessageBox::Icon QtIcon(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::kInformation: return QMessageBox::Information;
    case MessageIcon::kExclamation:
    case MessageIcon::kWarning: return QMessageBox::Warning;
    case MessageIcon::kError: return QMessageBox::Critical;
    case MessageIcon::kQuestion: return QMessageBox::Question;
    case MessageIcon::kNone: break;
  }
  return QMessageBox::NoIcon;
}

}  // namespace

void StartAt(QFileDialog* dialog, const std::string& start_path) {
  if (start_path.empty()) return;
  const QFileInfo start(QString::fromStdString(start_path));
  if (start.isDir()) {
    dialog->setDirectory(start.absoluteFilePath());
    return;
  }
  dialog->setDirectory(start.absolutePath());
  dialog->selectFile(start.fileName());
}

QString QtFileFilter(const std::u16string& device_filter) {
  const QStringList parts = ToQString(device_filter).split('|', Qt::SkipEmptyParts);
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) filters << parts[i];
  return filters.join(";;");
}

void GuiPrompt::ShowMessage(const std::u16string& title, const std::u16string& text,
                            MessageIcon icon) {
  ShowDetailedMessage(title, text, icon, {});
}

void GuiPrompt::ShowDetailedMessage(const std::u16string& title,
                                    const std::u16string& text, MessageIcon icon,
                                    const std::u16string& detail) {
  QMessageBox box(QtIcon(icon), ToQString(title), ToQString(text), QMessageBox::Ok, parent_);
  // After a failed file operation: the file and the system's reason.
  QStringList lines;
  const std::string reason = DescribeLastFileFailure();
  ClearLastFileFailure();
  if (!reason.empty()) lines << QString::fromStdString(reason);
  if (!detail.empty()) lines << ToQString(detail);
  if (!lines.isEmpty()) box.setInformativeText(lines.join('\n'));
  box.exec();
}

Answer GuiPrompt::Ask(const std::u16string& title, const std::u16string& text,
                      MessageIcon icon, QuestionButtons buttons, Answer default_answer) {
  const bool yes_no = buttons == QuestionButtons::kYesNo;
  QMessageBox box(QtIcon(icon), ToQString(title), ToQString(text),
                  yes_no ? QMessageBox::Yes | QMessageBox::No
                         : QMessageBox::Ok | QMessageBox::Cancel,
                  parent_);
  const auto qt_default = [&] {
    switch (default_answer) {
      case Answer::kYes: return QMessageBox::Yes;
      case Answer::kNo: return QMessageBox::No;
      case Answer::kOk: return QMessageBox::Ok;
      case Answer::kCancel: break;
    }
    return QMessageBox::Cancel;
  }();
  box.setDefaultButton(qt_default);
  switch (box.exec()) {
    case QMessageBox::Yes: return Answer::kYes;
    case QMessageBox::No: return Answer::kNo;
    case QMessageBox::Ok: return Answer::kOk;
    default: return yes_no ? Answer::kNo : Answer::kCancel;
  }
}

std::optional<std::string> GuiPrompt::ChooseFileToOpen(const FileChooser& chooser) {
  const QString path = QFileDialog::getOpenFileName(
      parent_, ToQString(chooser.title), QString::fromStdString(chooser.start_path),
      QtFileFilter(chooser.filter));
  if (path.isEmpty()) return std::nullopt;
  return path.toStdString();
}

std::optional<std::string> GuiPrompt::ChooseFileToSave(const FileChooser& chooser) {
  QFileDialog dialog(parent_, ToQString(chooser.title), QString(),
                     QtFileFilter(chooser.filter));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  StartAt(&dialog, chooser.start_path);
  dialog.setDefaultSuffix(ToQString(chooser.default_extension));
  if (!(chooser.flags & kFileOverwritePrompt)) {
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
  }
  for (;;) {
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
      return std::nullopt;
    }
    std::string path = dialog.selectedFiles().first().toStdString();
    // The data folder's own files are never written over: say so, and let
    // the user choose again.
    if (!RefuseOwnDataFile(data_folder_, path, *this)) return path;
  }
}

void GuiPrompt::BeginProgress(const std::u16string& title, int total) {
  progress_ = new QProgressDialog(ToQString(title), QString(), 0, total, parent_);
  progress_->setWindowTitle(ToQString(title));
  progress_->setWindowModality(Qt::WindowModal);
  progress_->setMinimumDuration(0);
  progress_->setAttribute(Qt::WA_DeleteOnClose);
  progress_->show();
  QApplication::processEvents();
}

void GuiPrompt::StepProgress(int position, const std::u16string& text) {
  if (!progress_) return;
  progress_->setValue(position);
  progress_->setLabelText(ToQString(text));
  // The window keeps painting between records.
  QApplication::processEvents();
}

void GuiPrompt::EndProgress() {
  if (progress_) progress_->close();
}

}  // namespace quillora
