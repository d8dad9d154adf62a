// The clients dialog offscreen: its tree, adding, renaming, deleting and
// moving with their questions and refusals, the list import and export and
// the contacts dialog, and the main window's commands that open it.
#include "app/gui/catalogue_dialog.h"

#include <QtTest>
#include <deque>

#include "app/gui/catalogue_commands.h"
#include "app/gui/contacts_import_dialog.h"
#include "app/gui/import_dialog.h"
#include "app/gui/move_dialog.h"
#include "app/gui/name_dialog.h"
#include "app/gui/qt_text.h"
#include "app/gui/window_test_fixture.h"
#include "tests/dialog_script.h"

namespace quillora {
namespace {

constexpr char16_t kBlank[] = u"Please enter some text. Blank is not allowed.";
constexpr char16_t kDeleteList[] = u"Are you to delete the entire list?";

class FixedContacts : public ContactsSource {
 public:
  bool ReadContacts(std::vector<ContactRow>* rows) override {
    *rows = {{7, u"Young, Ada", u"Zeta Ltd"},
             {8, u"Baker, Tom", u"Acme"},
             {9, u"Moss, Jen", u""}};
    return true;
  }
};

// The tree as indented lines, for comparing whole shapes.
QStringList Lines(const QTreeWidgetItem* item, int depth = 0) {
  QStringList lines;
  for (int i = 0; i < item->childCount(); ++i) {
    lines << QString(depth * 2, ' ') + item->child(i)->text(0);
    lines << Lines(item->child(i), depth + 1);
  }
  return lines;
}

class CatalogueDialogTest : public QObject, public testing::WindowFixture {
  Q_OBJECT

 private:
  std::unique_ptr<CatalogueDialog> dialog_;
  // What each dialog the commands show does, in order.
  std::deque<std::function<int(QDialog&)>> script_;
  ClientId acme_ = 0;

  Catalogue& cat() { return *data_->catalogue; }
  const Locale& locale() { return *data_->locale; }

  QStringList TreeLines() { return Lines(dialog_->tree()->invisibleRootItem()); }
  QStringList ClientLines(const QString& client) {
    QStringList lines;
    bool in = false;
    for (const QString& line : TreeLines()) {
      if (!line.startsWith(' ')) in = line == client;
      if (in) lines << line;
    }
    return lines;
  }
  // A name dialog: each text in turn is typed and OK pressed.
  void ScriptName(QStringList texts) {
    script_.push_back([texts](QDialog& d) {
      auto* name = qobject_cast<NameDialog*>(&d);
      if (!name) return -1;
      for (const QString& t : texts) {
        name->line()->setText(t);
        name->accept();
      }
      return name->result();
    });
  }

 private slots:
  void init() {
    QVERIFY(OpenData());
    QVERIFY(OpenCatalogue(data_));
    acme_ = AddClient(cat().clients, u"Acme");
    AddClient(cat().clients, u"Globex");
    AddProject(cat().projects, locale(), acme_, u"Web", u"");
    AddProject(cat().projects, locale(), acme_, u"Web", u"Design");
    AddProject(cat().projects, locale(), acme_, u"App", u"");
    AddItem(cat().tasks, locale(), acme_, u"Call");
    AddItem(cat().contacts, locale(), acme_, u"Sam");
    script_.clear();
    dialog_ = std::make_unique<CatalogueDialog>(*data_, prompt_);
    dialog_->SetDialogRunner(testing::RunFrom(&script_));
  }

  void cleanup() {
    dialog_.reset();
    Close();
  }

  void TreeShowsClientsWithTheirThreeGroups() {
    QCOMPARE(TreeLines(),
             QStringList({"Acme", "  Projects", "    Web", "      Design", "    App",
                          "  Tasks", "    Call", "  Contacts", "    Sam", "Globex",
                          "  Projects", "  Tasks", "  Contacts"}));
    QCOMPARE(dialog_->tree()->currentItem()->text(0), QString("Acme"));
    QVERIFY(dialog_->Select({"Acme", "Projects", "Web", "Design"}));
    const CatalogueTreeItem item = dialog_->SelectedItem();
    QCOMPARE(item.kind, CatalogueTreeItem::Kind::kProjectTask);
    QCOMPARE(item.client, acme_);
    QVERIFY(item.project == u"Web");
  }

  void AddingGoesUnderTheSelectedGroupOrProject() {
    const struct {
      QStringList select;
      QString name;
      QStringList selected_after;
    } cases[] = {
        {{"Globex", "Projects"}, "Audit", {"Globex", "Projects", "Audit"}},
        {{"Globex", "Projects", "Audit"},
         "Review",
         {"Globex", "Projects", "Audit", "Review"}},
        {{"Globex", "Projects", "Audit", "Review"},
         "Report",
         {"Globex", "Projects", "Audit", "Report"}},
        {{"Globex", "Tasks"}, "Mail", {"Globex", "Tasks", "Mail"}},
        {{"Globex", "Contacts"}, "Lee", {"Globex", "Contacts", "Lee"}},
        {{"Globex", "Contacts", "Lee"}, "Kim", {"Globex", "Contacts", "Kim"}},
    };
    for (const auto& c : cases) {
      QVERIFY2(dialog_->Select(c.select), qPrintable(c.select.join('/')));
      ScriptName({c.name});
      dialog_->AddItem();
      QStringList path;
      for (auto* i = dialog_->tree()->currentItem(); i; i = i->parent())
        path.prepend(i->text(0));
      QCOMPARE(path, c.selected_after);
    }
    QCOMPARE(
        ClientLines("Globex"),
        QStringList({"Globex", "  Projects", "    Audit", "      Review", "      Report",
                     "  Tasks", "    Mail", "  Contacts", "    Lee", "    Kim"}));
    QVERIFY(Texts().isEmpty());
  }

  // A blank name leaves the name dialog open for another try; the renamed
  // item stays selected; the groups keep their names.
  void RenamingRetriesABlankNameAndKeepsTheSelection() {
    QVERIFY(dialog_->Select({"Acme", "Contacts", "Sam"}));
    ScriptName({"", "Samuel"});
    dialog_->RenameItem();
    QCOMPARE(ClientLines("Acme").mid(7), QStringList({"  Contacts", "    Samuel"}));
    QCOMPARE(Texts(), QStringList({ToQString(kBlank)}));
    QVERIFY(dialog_->Select({"Acme"}));
    ScriptName({"Acme Corp"});
    dialog_->RenameItem();
    QCOMPARE(dialog_->tree()->currentItem()->text(0), QString("Acme Corp"));
    QVERIFY(dialog_->Select({"Acme Corp", "Tasks"}));
    QVERIFY(!dialog_->findChild<QPushButton*>("rename")->isEnabled());
  }

  // The items' questions are checked by catalogue_front_ends_test; here the
  // tree and the selection after each delete, and a whole list from its group.
  void DeletingUpdatesTheTreeAndDeletesWholeLists() {
    QVERIFY(dialog_->Select({"Acme", "Tasks", "Call"}));
    dialog_->DeleteItem();
    QVERIFY(prompt_.shown.empty());  // a task goes without a question
    QCOMPARE(dialog_->tree()->currentItem()->text(0), QString("Tasks"));

    QVERIFY(dialog_->Select({"Acme", "Contacts"}));
    prompt_.answers = {Answer::kYes};
    dialog_->DeleteItem();
    QCOMPARE(Texts(), QStringList({ToQString(kDeleteList)}));
    QCOMPARE(ClientLines("Acme"),
             QStringList({"Acme", "  Projects", "    Web", "      Design", "    App",
                          "  Tasks", "  Contacts"}));

    QVERIFY(dialog_->Select({"Acme"}));
    prompt_.answers = {Answer::kYes};
    dialog_->DeleteItem();
    QCOMPARE(TreeLines(), QStringList({"Globex", "  Projects", "  Tasks", "  Contacts"}));
  }

  void MovingTakesTheCheckedProjectsAndTasksToAnotherClient() {
    QVERIFY(dialog_->Select({"Acme", "Projects", "Web"}));
    script_.push_back([](QDialog& d) {
      auto* move = qobject_cast<MoveDialog*>(&d);
      if (!move) return -1;
      // The selected project starts checked; the target list has only Globex.
      if (move->project_list()->item(0)->checkState() != Qt::Checked) return -2;
      if (move->target()->count() != 1) return -3;
      move->task_list()->item(0)->setCheckState(Qt::Checked);
      return int(QDialog::Accepted);
    });
    dialog_->MoveItems();
    QCOMPARE(ClientLines("Acme"), QStringList({"Acme", "  Projects", "    App", "  Tasks",
                                               "  Contacts", "    Sam"}));
    QCOMPARE(ClientLines("Globex"),
             QStringList({"Globex", "  Projects", "    Web", "      Design", "  Tasks",
                          "    Call", "  Contacts"}));
    QCOMPARE(dialog_->tree()->currentItem()->text(0), QString("Projects"));
    QCOMPARE(dialog_->tree()->currentItem()->parent()->text(0), QString("Globex"));
  }

  void ImportAddsTheFilesNamesUnderTheSelection() {
    const std::string path = File("projects.txt");
    testing::WriteFileBytes(path, "Alpha\nWeb\n");
    QVERIFY(dialog_->Select({"Acme", "Contacts", "Sam"}));
    script_.push_back([](QDialog& d) {
      auto* import = qobject_cast<ImportDialog*>(&d);
      if (!import) return -1;
      if (!import->IsOffered(ListKind::kProjects)) return -2;
      import->SetKind(ListKind::kProjects);
      return int(QDialog::Accepted);
    });
    prompt_.files = {path};
    dialog_->Import();
    QCOMPARE(ClientLines("Acme").mid(0, 7),
             QStringList({"Acme", "  Projects", "    Web", "      Design", "    App",
                          "    Alpha", "  Tasks"}));
    QCOMPARE(dialog_->tree()->currentItem()->text(0), QString("Sam"));
  }

  void ImportWithoutAClientOffersOnlyClients() {
    dialog_->tree()->setCurrentItem(nullptr);
    const std::string path = File("clients.txt");
    testing::WriteFileBytes(path, "New\nGlobex\n");
    bool offered_others = true;
    script_.push_back([&](QDialog& d) {
      auto* import = qobject_cast<ImportDialog*>(&d);
      offered_others = import->IsOffered(ListKind::kProjects) ||
                       import->IsOffered(ListKind::kContactsApplication);
      return int(QDialog::Accepted);
    });
    prompt_.files = {path};
    dialog_->Import();
    QVERIFY(!offered_others);
    QCOMPARE(TreeLines().filter(QRegularExpression("^\\S")),
             QStringList({"Acme", "Globex", "New"}));
  }

  void ContactsDialogAddsTheCheckedRowsInSortedOrder() {
    dialog_->SetContactsSourceFactory([] { return std::make_unique<FixedContacts>(); });
    QVERIFY(dialog_->Select({"Globex"}));
    QStringList rows;
    QStringList headers;
    script_.push_back([](QDialog& d) {
      qobject_cast<ImportDialog*>(&d)->SetKind(ListKind::kContactsApplication);
      return int(QDialog::Accepted);
    });
    script_.push_back([&](QDialog& d) {
      auto* contacts = qobject_cast<ContactsImportDialog*>(&d);
      if (!contacts) return -1;
      QTreeWidget* list = contacts->list();
      for (int c = 0; c < 2; ++c) headers << list->headerItem()->text(c);
      for (int r = 0; r < list->topLevelItemCount(); ++r) {
        rows << list->topLevelItem(r)->text(0) + "|" + list->topLevelItem(r)->text(1);
      }
      list->topLevelItem(2)->setCheckState(0, Qt::Checked);
      list->topLevelItem(0)->setCheckState(0, Qt::Checked);
      return int(QDialog::Accepted);
    });
    dialog_->Import();
    QCOMPARE(headers, QStringList({"File As", "Company"}));
    QCOMPARE(rows, QStringList({"Baker, Tom|Acme", "Moss, Jen|", "Young, Ada|Zeta Ltd"}));
    QCOMPARE(ClientLines("Globex"),
             QStringList({"Globex", "  Projects", "  Tasks", "  Contacts",
                          "    Baker, Tom", "    Young, Ada"}));
    // Nothing checked adds nothing: interchange/contacts_import_test.
  }

  // The level, the formats' bytes and cancelling are list_files_test's: here
  // the dialog passes its selection and its format on.
  void ListExportWritesTheSelectedLevelInTheChosenFormat() {
    const std::string path = File("list.txt");
    QVERIFY(dialog_->Select({"Acme", "Projects", "Web", "Design"}));
    dialog_->SetListExportFormat(ListFileFormat::kUnicode);
    prompt_.files = {path};
    dialog_->ExportList();
    QCOMPARE(testing::ReadFileBytes(path), std::string("\xFF\xFE"
                                                       "D\0e\0s\0i\0g\0n\0",
                                                       14));
  }

  void MainWindowOpensTheCatalogueCommands() {
    QVERIFY(OpenWindow());
    MainWindow& window = *window_;
    // Each opens its dialog modally; it is closed from inside.
    const struct {
      QAction* action;
      QString title;
    } cases[] = {{window.actions().clients, "Clients"},
                 {window.actions().rates, "Rate Setup"}};
    for (const auto& c : cases) {
      QString title;
      OnModal([&](QWidget* modal) { title = modal ? modal->windowTitle() : ""; });
      c.action->trigger();
      QCOMPARE(title, c.title);
    }
  }
};

}  // namespace
}  // namespace quillora

QTEST_MAIN(quillora::CatalogueDialogTest)
#include "catalogue_dialog_test.moc"
