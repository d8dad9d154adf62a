#include "app/gui/move_dialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QVBoxLayout>

#include "app/gui/qt_text.h"
#include "store/string_table.h"

namespace quillora {
namespace {

QListWidgetItem* AddCheckItem(QListWidget* list, const std::u16string& text, bool checked) {
  auto* item = new QListWidgetItem(ToQString(text), list);
  item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable);
  item->setCheckState(checked ? Qt::Checked : Qt::Unchecked);
  return item;
}

}  // namespace

MoveDialog::MoveDialog(const Client& from, const std::vector<Client>& targets,
                       const std::vector<Project>& projects,
                       const std::vector<CatalogueItem>& tasks,
                       const std::u16string& checked_project, ObjectId checked_task,
                       QWidget* parent)
    : QDialog(parent),
      target_(new QComboBox(this)),
      projects_(new QListWidget(this)),
      tasks_(new QListWidget(this)),
      task_items_(tasks) {
  setWindowTitle(tr("Move from %1").arg(ToQString(from.name)));
  auto* layout = new QVBoxLayout(this);
  auto* to = new QLabel(tr("Move to client:"), this);
  to->setBuddy(target_);
  target_->setObjectName("target");
  for (const Client& c : targets) target_->addItem(ToQString(c.name), c.number);
  layout->addWidget(to);
  layout->addWidget(target_);

  projects_->setObjectName("projects");
  for (const Project& p : projects) {
    QListWidgetItem* item = AddCheckItem(projects_, p.name, p.name == checked_project);
    if (!p.tasks.empty()) {
      item->setToolTip(tr("%n task(s) go along", nullptr, static_cast<int>(p.tasks.size())));
    }
  }
  tasks_->setObjectName("tasks");
  for (const CatalogueItem& t : tasks) {
    AddCheckItem(tasks_, t.name, t.record_id != 0 && t.record_id == checked_task);
  }
  layout->addWidget(new QLabel(ToQString(LoadString(kIdsMigrateProjects)), this));
  layout->addWidget(projects_, 1);
  layout->addWidget(new QLabel(ToQString(LoadString(kIdsMigrateTasks)), this));
  layout->addWidget(tasks_, 1);

  auto* buttons =
      new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(buttons);
}

ClientId MoveDialog::TargetClient() const {
  return target_->currentIndex() < 0 ? 0 : target_->currentData().toUInt();
}

std::vector<std::u16string> MoveDialog::CheckedProjects() const {
  std::vector<std::u16string> names;
  for (int i = 0; i < projects_->count(); ++i) {
    if (projects_->item(i)->checkState() == Qt::Checked) {
      names.push_back(FromQString(projects_->item(i)->text()));
    }
  }
  return names;
}

std::vector<CatalogueItem> MoveDialog::CheckedTasks() const {
  std::vector<CatalogueItem> items;
  for (int i = 0; i < tasks_->count(); ++i) {
    if (tasks_->item(i)->checkState() == Qt::Checked) {
      items.push_back(task_items_[static_cast<std::size_t>(i)]);
    }
  }
  return items;
}

}  // namespace quillora
