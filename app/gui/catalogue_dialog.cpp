#include "app/gui/catalogue_dialog.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QGridLayout>
#include <QHeaderView>
#include <QVBoxLayout>

#include "app/gui/contacts_import_dialog.h"
#include "app/gui/file_command_prompt.h"
#include "app/gui/gui_prompt.h"
#include "app/gui/import_dialog.h"
#include "app/gui/move_dialog.h"
#include "app/gui/name_dialog.h"
#include "app/gui/qt_text.h"
#include "app/gui/written_file_notice.h"
#include "store/catalogue_edit.h"
#include "store/string_table.h"

namespace quillora {
namespace {

using Kind = CatalogueTreeItem::Kind;

constexpr int kKindRole = Qt::UserRole;
constexpr int kClientRole = Qt::UserRole + 1;
constexpr int kRecordRole = Qt::UserRole + 2;
constexpr int kProjectRole = Qt::UserRole + 3;

Kind KindOf(const QTreeWidgetItem* item) {
  return item ? static_cast<Kind>(item->data(0, kKindRole).toInt()) : Kind::kNone;
}
ClientId ClientOf(const QTreeWidgetItem* item) {
  return item ? item->data(0, kClientRole).toUInt() : 0;
}
ObjectId RecordOf(const QTreeWidgetItem* item) {
  return item ? item->data(0, kRecordRole).toUInt() : 0;
}
std::u16string ProjectOf(const QTreeWidgetItem* item) {
  return item ? FromQString(item->data(0, kProjectRole).toString()) : std::u16string();
}

QTreeWidgetItem* NewItem(QTreeWidgetItem* parent, const std::u16string& text, Kind kind,
                         ClientId client, ObjectId record = 0,
                         const std::u16string& project = {}) {
  auto* item = new QTreeWidgetItem(parent);
  item->setText(0, ToQString(text));
  item->setData(0, kKindRole, static_cast<int>(kind));
  item->setData(0, kClientRole, client);
  item->setData(0, kRecordRole, record);
  item->setData(0, kProjectRole, ToQString(project));
  return item;
}

bool IsGroup(Kind kind) {
  return kind == Kind::kProjectsGroup || kind == Kind::kTasksGroup ||
         kind == Kind::kContactsGroup;
}

// The file chooser of the list export with its choice of format: the
// window's own file dialog tells which filter was taken.
class ListExportPrompt : public UserPrompt {
 public:
  ListExportPrompt(UserPrompt& inner, QWidget* parent, ListFileFormat* format)
      : inner_(inner), parent_(parent), format_(format) {}

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
  // Once a file was chosen, the export's own question gets it again.
  void Preset(std::string path) { preset_ = std::move(path); }
  std::optional<std::string> ChooseFileToSave(const FileChooser& chooser) override {
    if (preset_) return preset_;
    if (!dynamic_cast<GuiPrompt*>(&inner_)) return inner_.ChooseFileToSave(chooser);
    const QStringList filters = QtFileFilter(chooser.filter).split(";;");
    QFileDialog dialog(parent_, ToQString(chooser.title));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    StartAt(&dialog, chooser.start_path);
    // "Unicode Text" names no pattern of its own: both choices are *.txt.
    dialog.setNameFilters({filters.value(0), filters.value(1) + " (*.txt)"});
    dialog.setDefaultSuffix(ToQString(chooser.default_extension));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
      return std::nullopt;
    }
    *format_ = dialog.selectedNameFilter() == dialog.nameFilters().value(1)
                   ? ListFileFormat::kUnicode
                   : ListFileFormat::kAnsi;
    return dialog.selectedFiles().first().toStdString();
  }
  void BeginProgress(const std::u16string& title, int total) override {
    inner_.BeginProgress(title, total);
  }
  void StepProgress(int position, const std::u16string& text) override {
    inner_.StepProgress(position, text);
  }
  void EndProgress() override { inner_.EndProgress(); }

 private:
  UserPrompt& inner_;
  QWidget* parent_;
  ListFileFormat* format_;
  std::optional<std::string> preset_;
};

// The suggested name of a list file: what the list holds.
QString ListFileName(ListKind kind) {
  switch (kind) {
    case ListKind::kProjects:
      return "projects.txt";
    case ListKind::kTasks:
      return "tasks.txt";
    case ListKind::kContacts:
      return "contacts.txt";
    default:
      break;
  }
  return "clients.txt";
}

}  // namespace

CatalogueDialog::CatalogueDialog(DataContext& data, UserPrompt& prompt, QWidget* parent)
    : QDialog(parent),
      data_(data),
      catalogue_(*data.catalogue),
      locale_(*data.locale),
      prompt_(prompt),
      tree_(new QTreeWidget(this)) {
  setWindowTitle(tr("Clients"));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(6, 6, 6, 6);
  tree_->setObjectName("catalogue");
  tree_->setHeaderHidden(true);
  tree_->setColumnCount(1);
  tree_->setSelectionMode(QAbstractItemView::SingleSelection);
  tree_->setUniformRowHeights(true);
  layout->addWidget(tree_, 1);

  auto* commands = new QGridLayout();
  commands->setSpacing(4);
  auto button = [&](const char* name, const QString& text, int row, int column,
                    void (CatalogueDialog::*slot)()) {
    auto* b = new QPushButton(text, this);
    b->setObjectName(name);
    b->setAutoDefault(false);
    // Three to a row share the width, down to a handheld's 240 pixels.
    b->setMinimumWidth(0);
    b->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    connect(b, &QPushButton::clicked, this, slot);
    commands->addWidget(b, row, column);
    return b;
  };
  add_ = button("add", tr("Add..."), 0, 0, &CatalogueDialog::AddItem);
  rename_ = button("rename", tr("Rename..."), 0, 1, &CatalogueDialog::RenameItem);
  delete_ = button("delete", tr("Delete"), 0, 2, &CatalogueDialog::DeleteItem);
  move_ = button("move", tr("Move..."), 1, 0, &CatalogueDialog::MoveItems);
  move_->setToolTip(tr("Move projects and tasks to another client"));
  import_ = button("import", tr("Import..."), 1, 1, &CatalogueDialog::Import);
  export_ = button("exportList", tr("Export..."), 1, 2, &CatalogueDialog::ExportList);
  export_->setToolTip(tr("Export the names of this level to a list file"));
  layout->addLayout(commands);

  auto* close = new QDialogButtonBox(QDialogButtonBox::Close, this);
  connect(close, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(close);

  connect(tree_, &QTreeWidget::currentItemChanged, this, [this] { UpdateCommands(); });
  connect(tree_, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) {
    if (!IsGroup(KindOf(item)) && KindOf(item) != Kind::kClient) RenameItem();
  });
  Rebuild();
  if (tree_->topLevelItemCount() > 0) tree_->setCurrentItem(tree_->topLevelItem(0));
  UpdateCommands();
  resize(360, 480);
}

int CatalogueDialog::Run(QDialog& dialog) {
  return runner_ ? runner_(dialog) : dialog.exec();
}

void CatalogueDialog::Rebuild() {
  const QStringList selected = SelectedPath();
  QStringList expanded;
  for (int i = 0; i < tree_->topLevelItemCount(); ++i) {
    QTreeWidgetItem* client = tree_->topLevelItem(i);
    if (client->isExpanded()) expanded << client->text(0);
  }
  tree_->clear();
  const std::u16string groups[] = {LoadString(kIdsProjectsGroup),
                                   LoadString(kIdsTasksGroup),
                                   LoadString(kIdsContactsGroup)};
  for (const Client& c : ClientList(catalogue_.clients)) {
    auto* client = new QTreeWidgetItem(tree_);
    client->setText(0, ToQString(c.name));
    QFont bold = client->font(0);
    bold.setBold(true);
    client->setFont(0, bold);
    client->setData(0, kKindRole, static_cast<int>(Kind::kClient));
    client->setData(0, kClientRole, c.number);
    client->setData(0, kRecordRole, c.record_id);
    QTreeWidgetItem* projects = NewItem(client, groups[0], Kind::kProjectsGroup, c.number);
    for (const ProjectRecord& r : ProjectRecords(catalogue_.projects, c.number)) {
      QTreeWidgetItem* project = nullptr;
      for (int i = 0; i < projects->childCount() && !project; ++i) {
        if (locale_.Equal(ProjectOf(projects->child(i)), r.project)) {
          project = projects->child(i);
        }
      }
      if (!project) {
        project = NewItem(projects, r.project, Kind::kProject, c.number, 0, r.project);
      }
      if (r.task.empty()) {
        project->setData(0, kRecordRole, r.record_id);
      } else {
        NewItem(project, r.task, Kind::kProjectTask, c.number, r.record_id, r.project);
      }
    }
    QTreeWidgetItem* tasks = NewItem(client, groups[1], Kind::kTasksGroup, c.number);
    for (const CatalogueItem& t : ItemsOf(catalogue_.tasks, c.number)) {
      NewItem(tasks, t.name, Kind::kTask, c.number, t.record_id);
    }
    QTreeWidgetItem* contacts = NewItem(client, groups[2], Kind::kContactsGroup, c.number);
    for (const CatalogueItem& t : ItemsOf(catalogue_.contacts, c.number)) {
      NewItem(contacts, t.name, Kind::kContact, c.number, t.record_id);
    }
    if (expanded.contains(client->text(0))) client->setExpanded(true);
  }
  if (!Select(selected)) {
    // The nearest item above the one that went.
    QStringList path = selected;
    while (!path.isEmpty() && !Select(path)) path.removeLast();
  }
  UpdateCommands();
}

QStringList CatalogueDialog::SelectedPath() const {
  QStringList path;
  for (QTreeWidgetItem* item = tree_->currentItem(); item; item = item->parent()) {
    path.prepend(item->text(0));
  }
  return path;
}

bool CatalogueDialog::Select(const QStringList& path) {
  if (path.isEmpty()) return false;
  QTreeWidgetItem* found = nullptr;
  for (int i = 0; i < tree_->topLevelItemCount() && !found; ++i) {
    if (tree_->topLevelItem(i)->text(0) == path[0]) found = tree_->topLevelItem(i);
  }
  for (qsizetype level = 1; found && level < path.size(); ++level) {
    QTreeWidgetItem* parent = found;
    found = nullptr;
    for (int i = 0; i < parent->childCount() && !found; ++i) {
      if (parent->child(i)->text(0) == path[level]) found = parent->child(i);
    }
  }
  if (!found) return false;
  for (QTreeWidgetItem* p = found->parent(); p; p = p->parent()) p->setExpanded(true);
  tree_->setCurrentItem(found);
  tree_->scrollToItem(found);
  return true;
}

CatalogueTreeItem CatalogueDialog::SelectedItem() const {
  const QTreeWidgetItem* item = tree_->currentItem();
  if (!item) return {};
  return CatalogueTreeItem(KindOf(item), ClientOf(item), ProjectOf(item));
}

void CatalogueDialog::UpdateCommands() {
  const QTreeWidgetItem* item = tree_->currentItem();
  const Kind kind = KindOf(item);
  rename_->setEnabled(item && !IsGroup(kind));
  delete_->setEnabled(item != nullptr);
  move_->setEnabled(item != nullptr && tree_->topLevelItemCount() > 1);
}

bool CatalogueDialog::AskName(const std::u16string& title, int label,
                              const std::u16string& text, std::u16string* name) {
  NameDialog dialog(prompt_, title, LoadString(label), text, this);
  if (Run(dialog) != QDialog::Accepted) return false;
  *name = dialog.text();
  return true;
}

void CatalogueDialog::AddItem() {
  const QTreeWidgetItem* item = tree_->currentItem();
  const Kind kind = KindOf(item);
  const ClientId client = ClientOf(item);
  QStringList select = SelectedPath();
  std::u16string name;
  switch (kind) {
    case Kind::kNone:
    case Kind::kClient:
      if (!AskName(LoadString(kIdsNewClient), kIdsEnterClientName, {}, &name)) return;
      // A name that is a client's already selects that client.
      AddClient(catalogue_.clients, name);
      select = {ToQString(name)};
      break;
    case Kind::kProjectsGroup:
      if (!AskName(kAppTitle, kIdsEnterProjectName, {}, &name)) return;
      AddProject(catalogue_.projects, locale_, client, name, {});
      select << ToQString(name);
      break;
    case Kind::kProject:
    case Kind::kProjectTask: {
      if (!AskName(kAppTitle, kIdsEnterTaskName, {}, &name)) return;
      AddProject(catalogue_.projects, locale_, client, ProjectOf(item), name);
      if (kind == Kind::kProjectTask) select.removeLast();
      select << ToQString(name);
      break;
    }
    case Kind::kTasksGroup:
    case Kind::kTask:
    case Kind::kContactsGroup:
    case Kind::kContact: {
      const bool tasks = kind == Kind::kTasksGroup || kind == Kind::kTask;
      if (!AskName(kAppTitle, tasks ? kIdsEnterTaskName : kIdsEnterContactName, {}, &name)) {
        return;
      }
      RecordStore& store = tasks ? static_cast<RecordStore&>(catalogue_.tasks)
                                 : static_cast<RecordStore&>(catalogue_.contacts);
      ::quillora::AddItem(store, locale_, client, name);
      if (!IsGroup(kind)) select.removeLast();
      select << ToQString(name);
      break;
    }
  }
  Rebuild();
  Select(select);
}

void CatalogueDialog::RenameItem() {
  const QTreeWidgetItem* item = tree_->currentItem();
  const Kind kind = KindOf(item);
  if (!item || IsGroup(kind)) return;
  const std::u16string old_name = FromQString(item->text(0));
  const ClientId client = ClientOf(item);
  const ObjectId record = RecordOf(item);
  QStringList select = SelectedPath();
  std::u16string name;
  int label = kIdsEnterTaskName;
  if (kind == Kind::kClient) label = kIdsEnterClientName;
  if (kind == Kind::kProject) label = kIdsEnterProjectName;
  if (kind == Kind::kContact) label = kIdsEnterContactName;
  if (!AskName(kAppTitle, label, old_name, &name) || name == old_name) return;
  switch (kind) {
    case Kind::kClient:
      if (FindClient(catalogue_.clients, name)) {
        prompt_.ShowMessage(kAppTitle, FromQString(tr("There is a client of that name already.")),
                            MessageIcon::kExclamation);
        return;
      }
      if (FindClient(catalogue_.clients, old_name)) RenameClient(catalogue_.clients, name);
      break;
    case Kind::kProject:
      RenameProject(catalogue_.projects, locale_, client, old_name, name);
      break;
    case Kind::kProjectTask:
      RenameProjectTask(catalogue_.projects, locale_,
                        ProjectRecord{record, client, ProjectOf(item), old_name}, name);
      break;
    case Kind::kTask:
      ::quillora::RenameItem(catalogue_.tasks, locale_,
                             CatalogueItem{record, client, old_name}, name);
      break;
    case Kind::kContact:
      ::quillora::RenameItem(catalogue_.contacts, locale_,
                             CatalogueItem{record, client, old_name}, name);
      break;
    default:
      return;
  }
  select.last() = ToQString(name);
  Rebuild();
  Select(select);
}

void CatalogueDialog::DeleteItem() {
  const QTreeWidgetItem* item = tree_->currentItem();
  if (!item) return;
  const Kind kind = KindOf(item);
  const ClientId client = ClientOf(item);
  const ObjectId record = RecordOf(item);
  switch (kind) {
    case Kind::kNone:
      return;
    case Kind::kClient:
      DeleteClient(catalogue_, prompt_, record);
      break;
    case Kind::kProject:
      DeleteProjectAsked(catalogue_, prompt_, locale_, client, ProjectOf(item));
      break;
    case Kind::kProjectsGroup:
    case Kind::kTasksGroup:
    case Kind::kContactsGroup: {
      if (item->childCount() == 0) return;
      if (prompt_.Ask(kAppTitle, LoadString(kIdsDeleteListQuestion), MessageIcon::kWarning,
                      QuestionButtons::kYesNo, Answer::kNo) == Answer::kNo) {
        return;
      }
      RecordStore& store =
          kind == Kind::kProjectsGroup ? static_cast<RecordStore&>(catalogue_.projects)
          : kind == Kind::kTasksGroup  ? static_cast<RecordStore&>(catalogue_.tasks)
                                       : static_cast<RecordStore&>(catalogue_.contacts);
      DeleteByClient(store, client);
      break;
    }
    case Kind::kProjectTask:
      ::quillora::DeleteItem(catalogue_.projects, record);
      break;
    case Kind::kTask:
      ::quillora::DeleteItem(catalogue_.tasks, record);
      break;
    case Kind::kContact:
      ::quillora::DeleteItem(catalogue_.contacts, record);
      break;
  }
  Rebuild();
}

void CatalogueDialog::MoveItems() {
  const QTreeWidgetItem* item = tree_->currentItem();
  if (!item) return;
  const Kind kind = KindOf(item);
  const ClientId number = ClientOf(item);
  Client from;
  std::vector<Client> targets;
  for (Client& c : ClientList(catalogue_.clients)) {
    if (c.number == number && from.name.empty()) {
      from = c;
    } else {
      targets.push_back(std::move(c));
    }
  }
  if (targets.empty()) return;
  const std::vector<Project> projects = ProjectsOf(catalogue_.projects, locale_, number);
  const std::vector<CatalogueItem> tasks = ItemsOf(catalogue_.tasks, number);
  const bool project_selected = kind == Kind::kProject || kind == Kind::kProjectTask;
  MoveDialog dialog(from, targets, projects, tasks,
                    project_selected ? ProjectOf(item) : std::u16string(),
                    kind == Kind::kTask ? RecordOf(item) : 0, this);
  if (Run(dialog) != QDialog::Accepted) return;
  const ClientId to = dialog.TargetClient();
  const QString to_name = dialog.target()->currentText();
  const std::vector<std::u16string> moved_projects = dialog.CheckedProjects();
  const std::vector<CatalogueItem> moved_tasks = dialog.CheckedTasks();
  if (moved_projects.empty() && moved_tasks.empty()) return;
  {
    WaitCursor wait;
    catalogue_.volume.BeginBatch();
    for (const std::u16string& p : moved_projects) {
      MoveProject(catalogue_.projects, locale_, number, to, p);
    }
    for (const CatalogueItem& t : moved_tasks) MoveItem(catalogue_.tasks, locale_, t, to);
    catalogue_.volume.CommitBatch();
  }
  Rebuild();
  // Follow the moved items to their new client.
  const QString group = ToQString(LoadString(moved_projects.empty() ? kIdsTasksGroup
                                                                    : kIdsProjectsGroup));
  Select({to_name, group});
}

void CatalogueDialog::Import() {
  const CatalogueTreeItem selected = SelectedItem();
  ImportDialog dialog(selected, this);
  if (Run(dialog) != QDialog::Accepted) return;
  const ListKind kind = dialog.kind();
  if (kind == ListKind::kContactsApplication) {
    if (selected.kind != Kind::kNone) ImportContacts(selected.client);
    return;
  }
  const std::optional<CatalogueList> list = ImportListFor(kind, selected);
  if (!list) return;
  FileCommandPrompt files(prompt_, data_.registry.get());
  RunListImport(catalogue_, locale_, FileSystem::Posix(), files, *list);
  Rebuild();
}

void CatalogueDialog::ImportContacts(ClientId client) {
  std::unique_ptr<ContactsSource> source;
  if (contacts_source_) {
    source = contacts_source_();
  } else {
    auto device = std::make_unique<DeviceContactsSource>(*data_.volume, data_.registry.get());
    if (device->FindDatabase() != 0) {
      source = std::move(device);
    } else {
      const QString folder =
          QFileDialog::getExistingDirectory(this, tr("Folder of vCard files"));
      if (!folder.isEmpty()) {
        source = std::make_unique<VCardContactsSource>(FileSystem::Posix(),
                                                       folder.toStdString());
      }
    }
  }
  if (!source) return;
  ContactsDialog model;
  bool loaded = false;
  {
    WaitCursor wait;
    loaded = model.Load(*source, locale_);
  }
  if (!loaded) {
    prompt_.ShowMessage(kAppTitle, LoadString(kIdsContactsNotFound), MessageIcon::kError);
    return;
  }
  ContactsImportDialog dialog(model, this);
  if (Run(dialog) != QDialog::Accepted) return;
  AddContactNames(catalogue_, locale_, client, model.CheckedNames());
  Rebuild();
}

void CatalogueDialog::ExportList() {
  const CatalogueList list = ExportListFor(catalogue_, locale_, SelectedItem());
  ListFileFormat format = export_format_;
  ListExportPrompt prompt(prompt_, this, &format);
  FileCommandPrompt files(prompt, data_.registry.get(), ListFileName(list.kind));
  // The format is known once the file is chosen: ask first, then export.
  FileChooser chooser;
  chooser.filter = kListExportFilter;
  chooser.default_extension = kListFileExtension;
  chooser.flags = kFileOverwritePrompt | kFileHideReadOnly;
  const std::optional<std::string> path = files.ChooseFileToSave(chooser);
  if (!path) return;
  prompt.Preset(*path);
  if (RunListExport(catalogue_, locale_, FileSystem::Posix(), prompt, list, format) ==
      ListFileOutcome::kDone) {
    const int count = static_cast<int>(ListNames(catalogue_, locale_, list).size());
    ShowNotice(this,
               tr("Exported %1 to %2")
                   .arg(Counted(count, tr("name"), tr("names")),
                        QDir::toNativeSeparators(files.chosen())),
               files.chosen());
  }
}

}  // namespace quillora
