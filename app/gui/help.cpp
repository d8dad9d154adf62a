#include "app/gui/help.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

#ifndef QUILLORA_SOURCE_HELP
#define QUILLORA_SOURCE_HELP ""
#endif
#ifndef QUILLORA_INSTALLED_HELP
#define QUILLORA_INSTALLED_HELP ""
#endif

namespace quillora {
namespace {

UrlOpener& CurrentOpener() {
  static UrlOpener opener;
  return opener;
}

}  // namespace

bool OpenUrl(const QUrl& url) {
  if (CurrentOpener()) return CurrentOpener()(url);
  return QDesktopServices::openUrl(url);
}

void SetUrlOpener(UrlOpener opener) { CurrentOpener() = std::move(opener); }

QString HelpFilePath() {
  QStringList candidates;
  const QString from_environment = qEnvironmentVariable("QUILLORA_HELP");
  if (!from_environment.isEmpty()) candidates << from_environment;
  const QString program_folder = QCoreApplication::applicationDirPath();
  if (!program_folder.isEmpty()) {
    // <prefix>/bin/quillora finds <prefix>/share/quillora/Quillora.htm.
    candidates << QDir(program_folder).filePath("../share/quillora/Quillora.htm");
  }
  candidates << QString(QUILLORA_INSTALLED_HELP) << QString(QUILLORA_SOURCE_HELP);
  for (const QString& candidate : candidates) {
    if (!candidate.isEmpty() && QFileInfo(candidate).isFile()) {
      return QFileInfo(candidate).canonicalFilePath();
    }
  }
  return QString();
}

QUrl HelpUrl(const QString& topic) {
  const QString path = HelpFilePath();
  if (path.isEmpty()) return QUrl();
  QUrl url = QUrl::fromLocalFile(path);
  if (!topic.isEmpty()) url.setFragment(topic);
  return url;
}

bool OpenHelp(const QString& topic) {
  const QUrl url = HelpUrl(topic);
  if (url.isEmpty()) {
    QMessageBox::warning(nullptr, "Quillora",
                         "The help file Quillora.htm could not be found.");
    return false;
  }
  if (!OpenUrl(url)) {
    QMessageBox::warning(nullptr, "Quillora",
                         QString("No program could open the help file %1.")
                             .arg(QDir::toNativeSeparators(url.toLocalFile())));
    return false;
  }
  return true;
}

void ConnectHelpButton(QDialogButtonBox* buttons, const QString& topic) {
  QPushButton* help = buttons->button(QDialogButtonBox::Help);
  if (help == nullptr) help = buttons->addButton(QDialogButtonBox::Help);
  QObject::connect(help, &QPushButton::clicked, buttons, [topic] { OpenHelp(topic); });
}

}  // namespace quillora
