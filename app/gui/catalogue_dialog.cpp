#include "app/gui/catalogue_dialog.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QGridLayout>
#include <QHeaderView>
#include <QVBoxLayout>

#include "app/gui/contacts_import_dialog.h"
#include "app/gui/dialog_support.h"
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

// The catalogue's kind of the items of a group, or of an item.
CatalogueKind CatalogueKindOf(Kind kind) {
  switch (kind) {
    case Kind::kProjectsGroup:
    case Kind::kProject:
      return CatalogueKind::kProject;
    case Kind::kProjectTask:
      return CatalogueKind::kProjectTask;
    case Kind::kTasksGroup:
    case Kind::kTask:
      return CatalogueKind::kTask;
    case Kind::kContactsGroup:
    case Kind::kContact:
      return CatalogueKind::kContact;
    default:
      return CatalogueKind::kClient;
  }
}

// How the catalogue names a tree item: by its client's name and its own.
CatalogueName NameOf(const QTreeWidgetItem* item) {
  const QTreeWidgetItem* client = item;
  while (client->parent()) client = client->parent();
  return {CatalogueKindOf(KindOf(item)), FromQString(client->text(0)), ProjectOf(item),
          FromQString(item->text(0))};
}

// The file chooser of the list export with its choice of format: the
// window's own file dialog tells which filter was taken.
class ListExportPrompt : public ForwardingPrompt {
 public:
  ListExportPrompt(UserPrompt& inner, QWidget* parent, ListFileFormat* format)
      : ForwardingPrompt(inner), parent_(parent), format_(format) {}

  // Once a file was chosen, the export's own question gets it again.
  void Preset(std::string path) { preset_ = std::move(path); }
  std::optional<std::string> ChooseFileToSave(const FileChooser& chooser) override {
    if (preset_) return preset_;
    auto* gui = dynamic_cast<GuiPrompt*>(&inner_);
    if (!gui) return inner_.ChooseFileToSave(chooser);
    const QStringList filters = QtFileFilter(chooser.filter).split(";;");
    QFileDialog dialog(parent_, ToQString(chooser.title));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    StartAt(&dialog, chooser.start_path);
    // "Unicode Text" names no pattern of its own: both choices are *.txt.
    dialog.setNameFilters({filters.value(0), filters.value(1) + " (*.txt)"});
    dialog.setDefaultSuffix(ToQString(chooser.default_extension));
    std::string path;
    do {
      if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return std::nullopt;
      }
      path = dialog.selectedFiles().first().toStdString();
    } while (RefuseOwnDataFile(gui->data_folder(), path, inner_));
    *format_ = dialog.selectedNameFilter() == dialog.nameFilters().value(1)
                   ? ListFileFormat::kUnicode
                   : ListFileFormat::kAnsi;
    return path;
  }

 private:
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
      service_(catalogue_, locale_, prompt),
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
  for (const Client& c : service_.Clients()) {
    auto* client = new QTreeWidgetItem(tree_);
    client->setText(0, ToQString(c.name));
    QFont bold = client->font(0);
    bold.setBold(true);
    client->setFont(0, bold);
    client->setData(0, kKindRole, static_cast<int>(Kind::kClient));
    client->setData(0, kClientRole, c.number);
    client->setData(0, kRecordRole, c.record_id);
    QTreeWidgetItem* projects =
        NewItem(client, groups[0], Kind::kProjectsGroup, c.number);
    for (const Project& p : service_.Projects(c.number)) {
      QTreeWidgetItem* project =
          NewItem(projects, p.name, Kind::kProject, c.number, 0, p.name);
      for (const std::u16string& task : p.tasks) {
        NewItem(project, task, Kind::kProjectTask, c.number, 0, p.name);
      }
    }
    QTreeWidgetItem* tasks = NewItem(client, groups[1], Kind::kTasksGroup, c.number);
    for (const CatalogueItem& t : service_.Items(CatalogueKind::kTask, c.number)) {
      NewItem(tasks, t.name, Kind::kTask, c.number, t.record_id);
    }
    QTreeWidgetItem* contacts =
        NewItem(client, groups[2], Kind::kContactsGroup, c.number);
    for (const CatalogueItem& t : service_.Items(CatalogueKind::kContact, c.number)) {
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
  QStringList select = SelectedPath();
  CatalogueName added;
  int label = kIdsEnterClientName;
  std::u16string title = kAppTitle;
  switch (kind) {
    case Kind::kNone:
    case Kind::kClient:
      title = LoadString(kIdsNewClient);
      select.clear();
      break;
    case Kind::kProjectsGroup:
      added = NameOf(item);
      label = kIdsEnterProjectName;
      break;
    case Kind::kProject:
    case Kind::kProjectTask:
      added = NameOf(item);
      added.kind = CatalogueKind::kProjectTask;
      label = kIdsEnterTaskName;
      if (kind == Kind::kProjectTask) select.removeLast();
      break;
    case Kind::kTasksGroup:
    case Kind::kTask:
    case Kind::kContactsGroup:
    case Kind::kContact:
      added = NameOf(item);
      label =
          added.kind == CatalogueKind::kTask ? kIdsEnterTaskName : kIdsEnterContactName;
      if (!IsGroup(kind)) select.removeLast();
      break;
  }
  std::u16string name;
  if (!AskName(title, label, {}, &name)) return;
  if (added.kind == CatalogueKind::kClient) {
    added.client = name;
  } else {
    added.name = name;
  }
  // A name that is there already is refused with its message; the item
  // that has it is selected all the same.
  service_.Add(added);
  select << ToQString(name);
  Rebuild();
  Select(select);
}

void CatalogueDialog::RenameItem() {
  const QTreeWidgetItem* item = tree_->currentItem();
  const Kind kind = KindOf(item);
  if (!item || IsGroup(kind)) return;
  QStringList select = SelectedPath();
  int label = kIdsEnterTaskName;
  if (kind == Kind::kClient) label = kIdsEnterClientName;
  if (kind == Kind::kProject) label = kIdsEnterProjectName;
  if (kind == Kind::kContact) label = kIdsEnterContactName;
  std::u16string name;
  if (!AskName(kAppTitle, label, FromQString(item->text(0)), &name)) return;
  if (service_.Rename(NameOf(item), name) != CatalogueResult::kDone) return;
  select.last() = ToQString(name);
  Rebuild();
  Select(select);
}

void CatalogueDialog::DeleteItem() {
  const QTreeWidgetItem* item = tree_->currentItem();
  const Kind kind = KindOf(item);
  if (kind == Kind::kNone) return;
  if (IsGroup(kind)) {
    service_.DeleteList(CatalogueKindOf(kind), ClientOf(item));
  } else {
    service_.Delete(NameOf(item));
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
  for (Client& c : service_.Clients()) {
    if (c.number == number && from.name.empty()) {
      from = c;
    } else {
      targets.push_back(std::move(c));
    }
  }
  if (targets.empty()) return;
  const std::vector<Project> projects = service_.Projects(number);
  const std::vector<CatalogueItem> tasks = service_.Items(CatalogueKind::kTask, number);
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
    service_.Move(number, to, moved_projects, moved_tasks);
  }
  Rebuild();
  // Follow the moved items to their new client.
  const QString group =
      ToQString(LoadString(moved_projects.empty() ? kIdsTasksGroup : kIdsProjectsGroup));
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
    auto device =
        std::make_unique<DeviceContactsSource>(*data_.volume, data_.registry.get());
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
  ImportContactNames(catalogue_, locale_, client, model.CheckedNames(), prompt_);
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
