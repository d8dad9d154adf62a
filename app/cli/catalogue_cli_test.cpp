// The catalogue commands end to end: the binary on a fresh data folder.
#include <gtest/gtest.h>

#include "tests/cli_fixture.h"

namespace quillora {
namespace {

using testing::RunResult;
using Args = std::vector<std::string>;

class CatalogueCliTest : public testing::CliFixture {
 protected:
  // Runs a command that must be refused with exactly `message`.
  void Refused(const Args& args, const std::string& message) {
    const RunResult r = Run(args);
    EXPECT_EQ(r.status, 1) << testing::CommandLine(args);
    EXPECT_EQ(r.err, "Quillora: " + message + "\n") << testing::CommandLine(args);
    EXPECT_EQ(r.out, "") << testing::CommandLine(args);
  }
};

// The words of each command reach the catalogue service and its lists come
// back in their printed forms; the rules and messages are the service's
// (store/catalogue_service_test.cpp, app/gui/catalogue_front_ends_test.cpp).
TEST_F(CatalogueCliTest, CommandsReachTheCatalogueAndPrintItsLists) {
  EXPECT_EQ(Ok({"client", "add", "Zeta"}), "1\n");
  EXPECT_EQ(Ok({"client", "add", "Acme"}), "2\n");
  EXPECT_EQ(Ok({"client", "rename", "Zeta", "Beta"}), "");
  EXPECT_EQ(Ok({"client", "list"}), "Acme\t2\nBeta\t1\n");
  Ok({"project", "add", "Acme", "Web"});
  Ok({"project", "add", "Acme", "Web", "Design"});
  Ok({"task", "add", "Acme", "Build", "--project", "Web"});
  Ok({"project", "rename", "Acme", "Web", "Site"});
  EXPECT_EQ(Ok({"project", "list", "Acme"}), "Site\nSite\tDesign\nSite\tBuild\n");
  Ok({"task", "rename", "Acme", "Build", "Test", "--project", "Site"});
  EXPECT_EQ(Ok({"task", "list", "Acme", "--project", "Site"}), "Design\nTest\n");
  Ok({"task", "add", "Acme", "Call"});
  Ok({"contact", "add", "Acme", "Ann"});
  Ok({"contact", "rename", "Acme", "Ann", "Bob"});
  EXPECT_EQ(Ok({"contact", "list", "Acme"}), "Bob\n");
  Ok({"task", "delete", "Acme", "Call"});
  EXPECT_EQ(Ok({"task", "list", "Acme"}), "");
  Ok({"--yes", "project", "delete", "Acme", "Site"});
  EXPECT_EQ(Ok({"project", "list", "Acme"}), "");
  Ok({"--yes", "client", "delete", "Beta"});
  EXPECT_EQ(Ok({"client", "add", "Beta"}), "3\n") << "numbers are never reused";

  for (const Args& bad :
       {Args{"client"}, Args{"client", "add"}, Args{"client", "list", "x"},
        Args{"client", "rename", "a"}, Args{"client", "drop", "a"},
        Args{"project", "rename", "Acme", "Web"}, Args{"contact", "list"}}) {
    EXPECT_EQ(Run(bad).status, 2) << bad[0] << " " << bad.size();
  }
}

TEST_F(CatalogueCliTest, RatesReachTheCatalogueAndPrintTheirTree) {
  Ok({"client", "add", "Acme"});
  Ok({"client", "add", "Bare"});
  Ok({"rate", "add", "--default", "--type", "Normal", "--description", "Base", "--value",
      "50"});
  Ok({"rate", "add", "--client", "Acme", "--type", "1", "--description", "Rush",
      "--value", "1.15", "--flag"});
  Ok({"rate", "add", "--client", "Acme", "--type", "Weekend Rate", "--description", "Sat",
      "--value", "25.5"});
  EXPECT_EQ(Ok({"rate", "list"}),
            "(Default Rates)\n\tBase (50.00)\tNormal Rate\n"
            "Acme\n\tRush (1.14)\tOvertime Rate\n\tSat (25.50)\tWeekend Rate\nBare\n");
  Refused({"rate", "add", "--client", "Acme", "--description", "X", "--value", "1"},
          "Please select a type.");
  Ok({"rate", "update", "--client", "Acme", "--type", "Overtime", "--description", "Rush",
      "--value", "99"});
  Ok({"--yes", "rate", "delete", "--client", "Acme", "--type", "weekend", "--description",
      "Sat"});
  EXPECT_EQ(Ok({"rate", "list", "--client", "Acme"}),
            "(Default Rates)\n\tBase (50.00)\tNormal Rate\nAcme\n\tRush "
            "(99.00)\tOvertime Rate\n");

  for (const Args& bad :
       {Args{"rate", "add", "--type", "0", "--description", "X", "--value", "1"},
        Args{"rate", "add", "--default", "--client", "Bare", "--type", "0"},
        Args{"rate", "add", "--default", "--type", "Hourly"},
        Args{"rate", "list", "--flag"}, Args{"rate", "list", "extra"}}) {
    EXPECT_EQ(Run(bad).status, 2) << bad[1] << " " << bad[2];
  }
}

TEST_F(CatalogueCliTest, ValueListsAreListedSorted) {
  Ok({"value", "add", "currency", "USD"});
  Ok({"value", "add", "currency", "EUR"});
  Ok({"value", "add", "phase", "EUR"});
  Refused({"value", "add", "currency", "EUR"}, "\"EUR\" is already in the list.");
  EXPECT_EQ(Ok({"value", "list", "currency"}), "EUR\nUSD\n");
  EXPECT_EQ(Run({"value", "delete", "currency", "EUR"}).status, 1) << "asks, no terminal";
  Ok({"--yes", "value", "delete", "currency", "EUR"});
  Ok({"--yes", "value", "clear", "currency"});
  EXPECT_EQ(Ok({"value", "list", "currency"}), "");
  EXPECT_EQ(Ok({"value", "list", "phase"}), "EUR\n");
  EXPECT_EQ(Run({"value", "add", "colour", "red"}).status, 2);
}

}  // namespace
}  // namespace quillora
