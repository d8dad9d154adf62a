// The saved reports: a list with Open, Delete, Rename (edited in place) and
// Default (the report "DefReport" names, which the report command and the
// editor start with).
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

#include "app/gui/dialog_support.h"
#include "app/gui/help.h"
#include "app/gui/main_window.h"
#include "app/gui/report_dialogs.h"
#include "store/string_table.h"

namespace quillora {

SavedReportsDialog::SavedReportsDialog(MainWindow* window, QWidget* parent)
    : QDialog(parent ? parent : window), window_(window) {
  setWindowTitle(tr("Saved Reports"));
  auto* layout = new QVBoxLayout(this);
  list_ = new QListWidget(this);
  list_->setObjectName("reports");
  list_->setEditTriggers(QAbstractItemView::EditKeyPressed);
  layout->addWidget(list_, 1);
  auto* grid = new QGridLayout();
  auto* open = new QPushButton(tr("Open"), this);
  auto* remove = new QPushButton(tr("Delete"), this);
  auto* rename = new QPushButton(tr("Rename"), this);
  auto* preferred = new QPushButton(tr("Default"), this);
  preferred->setToolTip(tr("Use this report when none is chosen"));
  grid->addWidget(open, 0, 0);
  grid->addWidget(remove, 0, 1);
  grid->addWidget(rename, 1, 0);
  grid->addWidget(preferred, 1, 1);
  layout->addLayout(grid);
  auto* buttons =
      new QDialogButtonBox(QDialogButtonBox::Close | QDialogButtonBox::Help, this);
  ConnectHelpButton(buttons, "savedreports");
  layout->addWidget(buttons);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto choose = [this] {
    chosen_ = SelectedName();
    if (!chosen_.empty()) accept();
  };
  connect(open, &QPushButton::clicked, this, choose);
  connect(list_, &QListWidget::itemDoubleClicked, this, choose);
  connect(remove, &QPushButton::clicked, this, [this] { DeleteSelected(); });
  connect(rename, &QPushButton::clicked, this, [this] {
    if (QListWidgetItem* item = list_->currentItem()) {
      filling_ = true;
      item->setText(item->data(Qt::UserRole).toString());
      filling_ = false;
      list_->editItem(item);
    }
  });
  connect(preferred, &QPushButton::clicked, this, [this] { MakeSelectedDefault(); });
  connect(list_, &QListWidget::itemChanged, this, [this](QListWidgetItem* item) {
    if (filling_ || item != list_->currentItem()) return;
    const std::u16string new_name = FromQString(item->text());
    QTimer::singleShot(0, this, [this, new_name] { RenameSelected(new_name); });
  });
  Fill();
  FitNarrowScreens(this);
}

void SavedReportsDialog::Fill() {
  filling_ = true;
  const int current = list_->currentRow();
  list_->clear();
  std::vector<SavedReportName> reports;
  AuxStore aux(*window_->data().volume);
  if (OpenSavedReports(aux)) reports = ListSavedReports(aux);
  const std::u16string& preferred = window_->data().settings.default_report;
  for (const SavedReportName& report : reports) {
    const QString name = ToQString(report.name);
    auto* item = new QListWidgetItem(list_);
    item->setData(Qt::UserRole, name);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable);
    if (!preferred.empty() && report.name == preferred) {
      item->setText(tr("%1 (default)").arg(name));
      QFont bold = list_->font();
      bold.setBold(true);
      item->setFont(bold);
    } else {
      item->setText(name);
    }
  }
  if (list_->count() > 0)
    list_->setCurrentRow(std::clamp(current, 0, list_->count() - 1));
  filling_ = false;
}

std::u16string SavedReportsDialog::SelectedName() const {
  const QListWidgetItem* item = list_->currentItem();
  return item ? FromQString(item->data(Qt::UserRole).toString()) : std::u16string();
}

void SavedReportsDialog::Changed(SavedReportChange change) {
  switch (change) {
    case SavedReportChange::kDone:
      if (!SaveSettings(*window_->data().registry, window_->data().settings)) {
        window_->prompt().ShowMessage(kAppTitle, LoadString(kIdsSavedReportsNotChanged),
                                      MessageIcon::kError);
      }
      break;
    case SavedReportChange::kNoSavedReport:
      window_->prompt().ShowMessage(kAppTitle, LoadString(kIdsNoSavedReport),
                                    MessageIcon::kInformation);
      break;
    case SavedReportChange::kNotFound:
      window_->prompt().ShowMessage(kAppTitle, LoadString(kIdsNoSavedReportNamed),
                                    MessageIcon::kExclamation);
      break;
    case SavedReportChange::kDeclined:
      break;
    case SavedReportChange::kFailed:
      window_->prompt().ShowMessage(kAppTitle, LoadString(kIdsSavedReportsNotChanged),
                                    MessageIcon::kError);
      break;
  }
  Fill();
}

bool SavedReportsDialog::DeleteSelected() {
  const std::u16string name = SelectedName();
  if (name.empty()) return false;
  const SavedReportChange change = DeleteSavedReports(
      *window_->data().volume, window_->prompt(), name, &window_->data().settings);
  Changed(change);
  return change == SavedReportChange::kDone;
}

bool SavedReportsDialog::RenameSelected(const std::u16string& new_name) {
  const std::u16string old_name = SelectedName();
  if (old_name.empty()) return false;
  if (new_name == old_name) {
    Fill();
    return false;
  }
  if (new_name.empty()) {
    window_->prompt().ShowMessage(kAppTitle, LoadString(kIdsBlankName),
                                  MessageIcon::kExclamation);
    Fill();
    return false;
  }
  if (new_name.size() > kReportNameChars) {
    window_->prompt().ShowMessage(kAppTitle, LoadString(kIdsReportNameTooLong),
                                  MessageIcon::kExclamation);
    Fill();
    return false;
  }
  const SavedReportChange change =
      RenameSavedReports(*window_->data().volume, window_->prompt(), old_name, new_name,
                         &window_->data().settings);
  Changed(change);
  return change == SavedReportChange::kDone;
}

bool SavedReportsDialog::MakeSelectedDefault() {
  const std::u16string name = SelectedName();
  if (name.empty()) return false;
  window_->data().settings.default_report = name;
  Changed(SavedReportChange::kDone);
  return true;
}

}  // namespace quillora
