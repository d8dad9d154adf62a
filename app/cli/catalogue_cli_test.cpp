// The catalogue commands end to end: the binary on a fresh data folder.
#include <gtest/gtest.h>

#include "store/data_context.h"
#include "store/settings.h"
#include "store/time_entry.h"
#include "tests/run_quillora.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

using testing::RunQuillora;
using testing::RunResult;
using Args = std::vector<std::string>;

class CatalogueCliTest : public ::testing::Test {
 protected:
  std::string Data() const { return dir_.File("data"); }
  RunResult Run(const Args& args) { return RunQuillora(Data(), args); }
  // Runs a command that must succeed and answers what it printed.
  std::string Ok(const Args& args) {
    const RunResult r = Run(args);
    EXPECT_EQ(r.status, 0) << args[0] << " " << args[1] << ": " << r.err;
    return r.out;
  }
  // Runs a command that must be refused with exactly `message`.
  void Refused(const Args& args, const std::string& message) {
    const RunResult r = Run(args);
    std::string line;
    for (const auto& a : args) line += a + " ";
    EXPECT_EQ(r.status, 1) << line;
    EXPECT_EQ(r.err, "Quillora: " + message + "\n") << line;
    EXPECT_EQ(r.out, "") << line;
  }

  testing::TempDir dir_;
};

TEST_F(CatalogueCliTest, ClientsAreNumberedOnceAndListedByName) {
  EXPECT_EQ(Ok({"client", "add", "Zeta"}), "1\n");
  EXPECT_EQ(Ok({"client", "add", "Acme"}), "2\n");
  Refused({"client", "add", "Acme"}, "A client named \"Acme\" already exists.");
  Refused({"client", "add", ""}, "Please enter some text. Blank is not allowed.");
  Refused({"client", "rename", "Acme", "Zeta"},
          "A client named \"Zeta\" already exists.");
  Refused({"client", "rename", "Nobody", "X"}, "There is no client named \"Nobody\".");
  EXPECT_EQ(Ok({"client", "rename", "Zeta", "Beta"}), "");
  EXPECT_EQ(Ok({"client", "list"}), "Acme\t2\nBeta\t1\n");

  const RunResult declined = Run({"client", "delete", "Acme"});
  EXPECT_EQ(declined.status, 1) << "no terminal answers No";
  EXPECT_EQ(
      declined.err,
      "Quillora: This will also delete all associated projects, tasks, contacts, and "
      "rates. However, time entries are preserved. Are you sure? [y/n] n\n");
  EXPECT_EQ(Ok({"--yes", "client", "delete", "Acme"}), "");
  EXPECT_EQ(Ok({"client", "add", "Acme"}), "3\n") << "numbers are never reused";

  for (const Args& bad :
       {Args{"client"}, Args{"client", "add"}, Args{"client", "list", "x"},
        Args{"client", "rename", "a"}, Args{"client", "drop", "a"}}) {
    EXPECT_EQ(Run(bad).status, 2) << bad.size();
  }
}

TEST_F(CatalogueCliTest, TheCounterOfAnOlderDataStoreStartsAtNextClient) {
  {
    DataContext data;
    std::string error;
    ASSERT_TRUE(OpenDataContext(Data(), &data, &error)) << error;
    RegistryKey key;
    ASSERT_EQ(
        data.registry->CreateKey(RegistryHive::kCurrentUser, kSettingsKeyPath, &key), 0);
    ASSERT_EQ(WriteDword(*data.registry, key, u"NextClient", 40), 0);
    DatabaseInfo info;
    info.name = u"Quillora Clients";
    info.type = 79990004;
    info.sort_orders = {{MakePropId(1002, kPropString), 0}};
    ASSERT_NE(data.volume->CreateDatabase(info), 0u);
  }
  EXPECT_EQ(Ok({"client", "add", "Acme"}), "40\n");
  EXPECT_EQ(Ok({"client", "add", "Beta"}), "41\n");
}

TEST_F(CatalogueCliTest, ProjectsTasksAndContacts) {
  Ok({"client", "add", "Acme"});
  Ok({"project", "add", "Acme", "Web"});
  Ok({"project", "add", "Acme", "Web", "Design"});
  Ok({"project", "add", "Acme", "web"});
  Ok({"task", "add", "Acme", "Build", "--project", "Web"});
  Refused({"project", "add", "Acme", "Web"},
          "This project already exists for this client.");
  Refused({"project", "add", "Acme", "Web", "Design"},
          "This task already exists in this project.");
  Refused({"project", "add", "Nobody", "Web"}, "There is no client named \"Nobody\".");
  EXPECT_EQ(Ok({"project", "list", "Acme"}), "Web\nWeb\tDesign\nWeb\tBuild\nweb\n");
  EXPECT_EQ(Ok({"task", "list", "Acme", "--project", "Web"}), "Design\nBuild\n");

  Ok({"task", "add", "Acme", "Call"});
  Refused({"task", "add", "Acme", "Call"}, "This task already exists for this client.");
  Ok({"contact", "add", "Acme", "Ann"});
  Ok({"contact", "add", "Acme", "Bob"});
  Refused({"contact", "add", "Acme", ""},
          "Please enter some text. Blank is not allowed.");
  EXPECT_EQ(Ok({"contact", "delete", "Acme", "Ann"}), "") << "no question for a contact";
  Refused({"contact", "delete", "Acme", "Ann"},
          "There is no contact named \"Ann\" for this client.");
  EXPECT_EQ(Ok({"contact", "list", "Acme"}), "Bob\n");
  EXPECT_EQ(Ok({"task", "list", "Acme"}), "Call\n");
  Ok({"task", "delete", "Acme", "Design", "--project", "Web"});

  const RunResult declined = Run({"project", "delete", "Acme", "Web"});
  EXPECT_EQ(declined.status, 1);
  EXPECT_EQ(declined.err,
            "Quillora: Are you sure to delete this project and all its tasks? [y/n] n\n");
  EXPECT_EQ(Ok({"project", "list", "Acme"}), "Web\nWeb\tBuild\nweb\n");
  Ok({"--yes", "project", "delete", "Acme", "Web"});
  EXPECT_EQ(Ok({"project", "list", "Acme"}), "web\n");
  Refused({"--yes", "project", "delete", "Acme", "Web"},
          "There is no project named \"Web\" for this client.");
}

TEST_F(CatalogueCliTest, RatesFollowTheSetupPagesRules) {
  Ok({"client", "add", "Acme"});
  Ok({"client", "add", "Bare"});
  Ok({"rate", "add", "--default", "--type", "Normal", "--description", "Base", "--value",
      "50"});
  Ok({"rate", "add", "--client", "Acme", "--type", "1", "--description", "Rush",
      "--value", "1.15", "--flag"});
  Ok({"rate", "add", "--client", "Acme", "--type", "Weekend Rate", "--description", "Sat",
      "--value", "25.5"});
  const std::string tree =
      "(Default Rates)\n\tBase (50.00)\tNormal Rate\n"
      "Acme\n\tRush (1.14)\tOvertime Rate\n\tSat (25.50)\tWeekend Rate\nBare\n";
  EXPECT_EQ(Ok({"rate", "list"}), tree);

  const std::string rush[] = {"--client", "Acme", "--description", "Rush"};
  const struct {
    Args args;
    const char* message;
  } refusals[] = {
      {{"--description", "X", "--value", "1"}, "Please select a type."},
      {{"--type", "0", "--value", "1"}, "Please enter a description."},
      {{"--type", "0", "--description", "X", "--value", "1.001"},
       "This is not a valid rate. Rate can have up to 2 decimal places."},
      {{"--type", "0", "--description", "X"},
       "This is not a valid rate. Rate can have up to 2 decimal places."},
      {{"--type", "Overtime", "--description", "Rush", "--value", "3"},
       "This type of rate with this description already exists for this client. Please "
       "either choose a different type or alter the description."},
  };
  for (const auto& r : refusals) {
    Args args = {"rate", "add", "--client", "Acme"};
    args.insert(args.end(), r.args.begin(), r.args.end());
    Refused(args, r.message);
  }
  Refused({"rate", "update", "--client", "Acme", "--type", "0", "--description", "Rush",
           "--value", "3"},
          "There is no such rate for this client.");
  EXPECT_EQ(Ok({"rate", "list"}), tree) << "refusals store nothing";

  Ok({"rate", "update", rush[0], rush[1], "--type", "Overtime", rush[2], rush[3],
      "--value", "99"});
  Ok({"rate", "delete", "--client", "Acme", "--type", "weekend", "--description", "Sat"});
  EXPECT_EQ(Ok({"rate", "list", "--client", "Acme"}),
            "(Default Rates)\n\tBase (50.00)\tNormal Rate\nAcme\n\tRush "
            "(99.00)\tOvertime Rate\n");

  // Deleting the client takes its rates, never the default ones.
  Ok({"--yes", "client", "delete", "Acme"});
  EXPECT_EQ(Ok({"rate", "list"}), "(Default Rates)\n\tBase (50.00)\tNormal Rate\nBare\n");

  for (const Args& bad :
       {Args{"rate", "add", "--type", "0", "--description", "X", "--value", "1"},
        Args{"rate", "add", "--default", "--client", "Bare", "--type", "0"},
        Args{"rate", "add", "--default", "--type", "Hourly"},
        Args{"rate", "list", "--flag"}, Args{"rate", "list", "extra"}}) {
    EXPECT_EQ(Run(bad).status, 2) << bad[1] << " " << bad[2];
  }
}

TEST_F(CatalogueCliTest, DeletingAClientLeavesItsTimeEntries) {
  ObjectId id = 0;
  {
    DataContext data;
    std::string error;
    ASSERT_TRUE(OpenDataContext(Data(), &data, &error)) << error;
    EntryStore store(*data.volume);
    ASSERT_TRUE(store.Open());
    TimeEntry e;
    e.client = u"Acme";
    e.project = u"Web";
    e.task = u"Design";
    ASSERT_TRUE(AddEntry(store, e));
    id = store.current_record_id();
  }
  Ok({"client", "add", "Acme"});
  Ok({"project", "add", "Acme", "Web", "Design"});
  Ok({"--yes", "client", "delete", "Acme"});
  const std::string shown = Ok({"show", std::to_string(id)});
  EXPECT_NE(shown.find("\nclient=Acme\nproject=Web\n"), std::string::npos) << shown;
  Refused({"project", "list", "Acme"}, "There is no client named \"Acme\".");
}

TEST_F(CatalogueCliTest, ValueListsHoldEachTextOnce) {
  Ok({"value", "add", "currency", "USD"});
  Ok({"value", "add", "currency", "EUR"});
  Ok({"value", "add", "phase", "EUR"});
  Refused({"value", "add", "currency", "EUR"}, "\"EUR\" is already in the list.");
  Refused({"value", "add", "custom2", ""},
          "Please enter some text. Blank is not allowed.");
  EXPECT_EQ(Ok({"value", "list", "currency"}), "EUR\nUSD\n");
  EXPECT_EQ(Run({"value", "delete", "currency", "EUR"}).status, 1) << "asks, no terminal";
  Ok({"--yes", "value", "delete", "currency", "EUR"});
  Refused({"--yes", "value", "delete", "currency", "EUR"}, "\"EUR\" is not in the list.");
  Ok({"--yes", "value", "clear", "currency"});
  EXPECT_EQ(Ok({"value", "list", "currency"}), "");
  EXPECT_EQ(Ok({"value", "list", "phase"}), "EUR\n");
  EXPECT_EQ(Run({"value", "add", "colour", "red"}).status, 2);
}

}  // namespace
}  // namespace quillora
