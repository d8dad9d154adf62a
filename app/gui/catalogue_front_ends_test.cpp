// The window and the command line give the same answer and the same message
// for adding, renaming and deleting an existing or missing client, project,
// project task, task, contact and rate: one table of cases, each run through
// the clients or rate setup dialog and through the `quillora` binary, each on
// a fresh data folder. A missing item is one that another process deleted
// after the window showed it.
#include <QtTest>
#include <deque>
#include <sstream>

#include "app/gui/catalogue_dialog.h"
#include "app/gui/name_dialog.h"
#include "app/gui/qt_text.h"
#include "app/gui/rate_edit_dialog.h"
#include "app/gui/rate_setup_dialog.h"
#include "platform/text.h"
#include "store/catalogue_service.h"
#include "store/string_table.h"
#include "tests/dialog_script.h"
#include "tests/fake_prompt.h"
#include "tests/run_quillora.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

using Kind = CatalogueKind;
constexpr Kind kRate = static_cast<Kind>(99);  // the rate "Std" of Acme, Normal Rate

struct Case {
  Kind kind;
  std::string op;  // add, rename, delete
  bool gone;       // deleted by another process after the window showed it
  std::u16string name;
  std::u16string to;  // rename: the new name
  std::vector<std::u16string> shown;
  bool done;
};

// Acme with the project Web (task Design), the task Call, the contact Sam and
// the rate Std (50.00); Globex.
void Seed(DataContext& data, UserPrompt& prompt) {
  CatalogueService s(*data.catalogue, *data.locale, prompt);
  s.Add({Kind::kClient, u"Acme", {}, {}});
  s.Add({Kind::kClient, u"Globex", {}, {}});
  s.Add({Kind::kProjectTask, u"Acme", u"Web", u"Design"});
  s.Add({Kind::kProject, u"Acme", {}, u"Web"});
  s.Add({Kind::kTask, u"Acme", {}, u"Call"});
  s.Add({Kind::kContact, u"Acme", {}, u"Sam"});
  s.AddRate({0, u"Std", u"50", 1, 0}, false);
}

CatalogueName NameOf(const Case& c) {
  if (c.kind == Kind::kClient) return {c.kind, c.name, {}, {}};
  return {c.kind, u"Acme", c.kind == Kind::kProjectTask ? u"Web" : u"", c.name};
}

// Takes the case's item away as another process would.
void TakeAway(DataContext& data, const Case& c) {
  testing::FakePrompt yes;
  yes.answers = {Answer::kYes};
  CatalogueService s(*data.catalogue, *data.locale, yes);
  if (c.kind == kRate) {
    QCOMPARE(s.DeleteRate({0, u"Std", {}, 1, 0}), CatalogueResult::kDone);
  } else {
    QCOMPARE(s.Delete(NameOf(c)), CatalogueResult::kDone);
  }
}

std::vector<std::string> CliArgs(const Case& c) {
  const std::string name = ToUtf8(c.name), to = ToUtf8(c.to);
  if (c.kind == kRate) {
    std::vector<std::string> args = {"rate",          c.op == "rename" ? "update" : c.op,
                                     "--client",      "Acme",
                                     "--type",        "0",
                                     "--description", "Std"};
    if (c.op != "delete") args.insert(args.end(), {"--value", "60"});
    return args;
  }
  const char* words[] = {"client", "project", "task", "task", "contact"};
  std::vector<std::string> args = {words[int(c.kind)], c.op};
  if (c.kind != Kind::kClient) args.push_back("Acme");
  args.push_back(name);
  if (c.op == "rename") args.push_back(to);
  if (c.kind == Kind::kProjectTask) args.insert(args.end(), {"--project", "Web"});
  return args;
}

// What the binary showed: each "Quillora: TEXT" line, a question's answer
// left off.
std::vector<std::u16string> CliShown(const std::string& err) {
  std::vector<std::u16string> texts;
  std::istringstream lines(err);
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind("Quillora: ", 0) != 0) continue;
    line = line.substr(10);
    if (line.ends_with(" [y/n] n")) line.resize(line.size() - 8);
    texts.push_back(FromUtf8(line));
  }
  return texts;
}

QStringList PathOf(Kind kind) {
  switch (kind) {
    case Kind::kClient:
      return {"Acme"};
    case Kind::kProject:
      return {"Acme", "Projects", "Web"};
    case Kind::kProjectTask:
      return {"Acme", "Projects", "Web", "Design"};
    case Kind::kTask:
      return {"Acme", "Tasks", "Call"};
    default:
      return {"Acme", "Contacts", "Sam"};
  }
}

class CatalogueFrontEndsTest : public QObject {
  Q_OBJECT

  // Runs the case in the window; false when the window did not finish it.
  bool RunWindow(const Case& c, DataContext& data, testing::FakePrompt& prompt) {
    std::deque<testing::DialogStep> script;
    auto type_name = [&](std::u16string text) {
      script.push_back([text](QDialog& d) {
        qobject_cast<NameDialog*>(&d)->line()->setText(ToQString(text));
        d.accept();
        return d.result();
      });
    };
    if (c.kind == kRate) {
      RateSetupDialog rates(data, prompt);
      rates.SetDialogRunner(testing::RunFrom(&script));
      if (!rates.Select(1, c.op == "add" ? QString() : "Std (50.00)")) return false;
      // An edit dialog open on a rate that goes while it is open.
      if (c.gone && c.op != "rename") TakeAway(data, c);
      script.push_back([&](QDialog& d) {
        if (c.gone) TakeAway(data, c);
        auto* edit = qobject_cast<RateEditDialog*>(&d);
        edit->type()->setCurrentIndex(0);
        edit->description()->setText("Std");
        edit->value()->setText("60");
        edit->accept();
        return edit->result();
      });
      if (c.op == "add") rates.NewRate();
      if (c.op == "rename") rates.EditRate();
      if (c.op == "delete") rates.DeleteRate();
      return true;
    }
    CatalogueDialog dialog(data, prompt);
    dialog.SetDialogRunner(testing::RunFrom(&script));
    QStringList path = PathOf(c.kind);
    if (c.op == "add") path.removeLast();
    if (path.isEmpty()) {
      dialog.tree()->setCurrentItem(nullptr);
    } else if (!dialog.Select(path)) {
      return false;
    }
    if (c.gone) TakeAway(data, c);
    if (c.op == "add") {
      type_name(c.name);
      dialog.AddItem();
    } else if (c.op == "rename") {
      type_name(c.to);
      dialog.RenameItem();
    } else {
      dialog.DeleteItem();
    }
    return true;
  }

 private slots:
  void BothFrontEndsAnswerAlike() {
    const std::u16string no_client = FormatString(kIdsNoClientNamed, u"Acme");
    // clang-format off
    const Case cases[] = {
        {Kind::kClient, "add", false, u"Acme", {}, {FormatString(kIdsClientExists, u"Acme")}, false},
        {Kind::kClient, "add", false, u"Zeta", {}, {}, true},
        {Kind::kClient, "rename", false, u"Acme", u"Globex",
         {FormatString(kIdsClientExists, u"Globex")}, false},
        {Kind::kClient, "rename", true, u"Acme", u"Beta", {no_client}, false},
        {Kind::kClient, "delete", false, u"Acme", {}, {LoadString(kIdsDeleteClientQuestion)}, false},
        {Kind::kClient, "delete", true, u"Acme", {}, {no_client}, false},
        {Kind::kProject, "add", false, u"Web", {}, {LoadString(kIdsProjectExists)}, false},
        {Kind::kProject, "rename", false, u"Web", u"Site", {}, true},
        {Kind::kProject, "rename", true, u"Web", u"Site",
         {FormatString(kIdsNoProjectNamed, u"Web")}, false},
        {Kind::kProject, "delete", false, u"Web", {}, {LoadString(kIdsDeleteProjectQuestion)}, false},
        {Kind::kProjectTask, "add", false, u"Design", {}, {LoadString(kIdsProjectTaskExists)}, false},
        {Kind::kProjectTask, "delete", true, u"Design", {},
         {FormatString(kIdsNoProjectTaskNamed, u"Design")}, false},
        {Kind::kTask, "add", false, u"Call", {}, {LoadString(kIdsTaskExists)}, false},
        {Kind::kTask, "rename", false, u"Call", u"Phone", {}, true},
        {Kind::kTask, "delete", true, u"Call", {}, {FormatString(kIdsNoTaskNamed, u"Call")}, false},
        {Kind::kContact, "add", false, u"Sam", {}, {LoadString(kIdsContactExists)}, false},
        {Kind::kContact, "rename", true, u"Sam", u"Samuel",
         {FormatString(kIdsNoContactNamed, u"Sam")}, false},
        {Kind::kContact, "delete", false, u"Sam", {}, {}, true},
        {kRate, "add", false, u"Std", {}, {LoadString(kIdsDuplicateRate)}, false},
        {kRate, "rename", false, u"Std", {}, {}, true},
        {kRate, "rename", true, u"Std", {}, {LoadString(kIdsNoSuchRate)}, false},
        {kRate, "delete", false, u"Std", {}, {LoadString(kIdsDeleteItemQuestion)}, false},
        {kRate, "delete", true, u"Std", {}, {LoadString(kIdsNoSuchRate)}, false},
    };
    // clang-format on
    for (const Case& c : cases) {
      const std::string line = ToUtf8(c.name) + " " + c.op + (c.gone ? " (gone)" : "");
      // The window.
      testing::TempDir window_dir;
      DataContext data;
      std::string error;
      QVERIFY(OpenDataContext(window_dir.File("data"), &data, &error));
      QVERIFY(OpenCatalogue(&data));
      testing::FakePrompt prompt;
      Seed(data, prompt);
      QVERIFY2(prompt.shown.empty() && RunWindow(c, data, prompt), line.c_str());
      std::string window_shown;
      for (const std::u16string& text : prompt.Texts())
        window_shown += ToUtf8(text) + "\n";
      QVERIFY2(prompt.Texts() == c.shown, (line + ": " + window_shown).c_str());
      // The command line, on a folder seeded the same way.
      testing::TempDir cli_dir;
      {
        DataContext cli_data;
        QVERIFY(OpenDataContext(cli_dir.File("data"), &cli_data, &error));
        QVERIFY(OpenCatalogue(&cli_data));
        testing::FakePrompt silent;
        Seed(cli_data, silent);
        if (c.gone) TakeAway(cli_data, c);
      }
      const testing::RunResult r = testing::RunQuillora(cli_dir.File("data"), CliArgs(c));
      QVERIFY2(CliShown(r.err) == c.shown, (line + ": " + r.err).c_str());
      QVERIFY2(r.status == (c.done ? 0 : 1), line.c_str());
    }
  }
};

}  // namespace
}  // namespace quillora

QTEST_MAIN(quillora::CatalogueFrontEndsTest)
#include "catalogue_front_ends_test.moc"
