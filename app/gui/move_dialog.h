// "Move to Client...": the projects (with their tasks) and tasks of one
// client, each with a check box ("Check Projects to migrate:", "Check Tasks
// to migrate:"), and the client to move the checked ones to.
#ifndef QUILLORA_APP_GUI_MOVE_DIALOG_H_
#define QUILLORA_APP_GUI_MOVE_DIALOG_H_

#include <QComboBox>
#include <QDialog>
#include <QListWidget>
#include <string>
#include <vector>

#include "store/catalogue.h"

namespace quillora {

class MoveDialog : public QDialog {
  Q_OBJECT

 public:
  // `targets`: the other clients; `checked_project`/`checked_task` start
  // checked (the item selected in the tree).
  MoveDialog(const Client& from, const std::vector<Client>& targets,
             const std::vector<Project>& projects, const std::vector<CatalogueItem>& tasks,
             const std::u16string& checked_project, ObjectId checked_task,
             QWidget* parent = nullptr);

  QComboBox* target() const { return target_; }
  QListWidget* project_list() const { return projects_; }
  QListWidget* task_list() const { return tasks_; }

  ClientId TargetClient() const;
  std::vector<std::u16string> CheckedProjects() const;
  std::vector<CatalogueItem> CheckedTasks() const;

 private:
  QComboBox* target_;
  QListWidget* projects_;
  QListWidget* tasks_;
  std::vector<CatalogueItem> task_items_;
};

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_MOVE_DIALOG_H_
