#include "app/gui/written_file_notice.h"

#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QStatusBar>
#include <QStyle>
#include <QUrl>
#include <algorithm>

#include "app/gui/help.h"

namespace quillora {

WrittenFileNotice::WrittenFileNotice(QWidget* parent)
    : QWidget(parent),
      label_(new QLabel(this)),
      open_(new QToolButton(this)),
      open_folder_(new QToolButton(this)) {
  setObjectName("writtenFileNotice");
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  // A long path may be cut by the window's width, never widen it.
  label_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  label_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  layout->addWidget(label_, 1);
  open_->setText(tr("Open"));
  open_->setObjectName("openWritten");
  open_->setIcon(style()->standardIcon(QStyle::SP_FileIcon));
  open_folder_->setText(tr("Open Folder"));
  open_folder_->setObjectName("openWrittenFolder");
  open_folder_->setIcon(style()->standardIcon(QStyle::SP_DirOpenIcon));
  for (QToolButton* button : {open_, open_folder_}) {
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setAutoRaise(true);
    layout->addWidget(button);
  }
  connect(open_, &QToolButton::clicked, this,
          [this] { OpenUrl(QUrl::fromLocalFile(file_)); });
  connect(open_folder_, &QToolButton::clicked, this,
          [this] { OpenUrl(QUrl::fromLocalFile(QFileInfo(file_).absolutePath())); });
  Show(QString(), QString());
}

void WrittenFileNotice::Show(const QString& text, const QString& file) {
  file_ = file;
  text_ = text;
  label_->setToolTip(text);
  Elide();
  open_->setVisible(!file.isEmpty());
  open_folder_->setVisible(!file.isEmpty());
  setVisible(!text.isEmpty());
}

void WrittenFileNotice::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Elide();
}

void WrittenFileNotice::Elide() {
  // The middle of a long path goes first, so the file's name stays in view.
  label_->setText(label_->fontMetrics().elidedText(text_, Qt::ElideMiddle,
                                                   std::max(label_->width(), 1)));
}

WrittenFileNotice* NoticeOf(QWidget* widget) {
  QMainWindow* main = nullptr;
  for (QWidget* w = widget; w != nullptr && main == nullptr; w = w->parentWidget()) {
    main = qobject_cast<QMainWindow*>(w);
  }
  if (main == nullptr) return nullptr;
  QStatusBar* bar = main->statusBar();
  auto* notice = bar->findChild<WrittenFileNotice*>();
  if (notice == nullptr) {
    notice = new WrittenFileNotice(bar);
    bar->addWidget(notice, 1);
  }
  return notice;
}

void ShowNotice(QWidget* widget, const QString& text, const QString& file) {
  if (WrittenFileNotice* notice = NoticeOf(widget)) {
    notice->Show(text, file.isEmpty() ? QString() : QDir::toNativeSeparators(file));
  }
}

QString Counted(int count, const QString& one, const QString& many) {
  return QString("%1 %2").arg(count).arg(count == 1 ? one : many);
}

}  // namespace quillora
