// replace, mark-paid and delete-data end to end.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/text.h"
#include "tests/cli_fixture.h"
#include "tests/seed_data.h"

namespace quillora {
namespace {

using testing::RunResult;
using Args = std::vector<std::string>;

class BulkEditCliTest : public testing::CliFixture {
 protected:
  void SetUp() override {
    testing::SeedClients(Data(), {u"Acme", u"Beta"});
    testing::SeedEntries(Data(), {testing::EntryAt("2024-02-29T12:00:01", u"Acme"),
                                  testing::EntryAt("2024-03-01T00:00:00", u"Acme"),
                                  testing::EntryAt("2024-03-10T09:00:01", u"Beta"),
                                  testing::EntryAt("2024-03-20T10:00:01", u"ACME"),
                                  testing::EntryAt("2024-04-01T00:00:00", u"Acme")});
  }

  void Refused(const Args& args, const std::string& err) {
    const RunResult r = Run(args);
    EXPECT_EQ(r.status, 1) << args[0];
    EXPECT_EQ(r.err, err) << args[0];
    EXPECT_EQ(r.out, "") << args[0];
  }
  void Done(const Args& args, const std::string& err = "") {
    const RunResult r = Run(args);
    EXPECT_EQ(r.status, 0) << args[1] << ": " << r.err;
    EXPECT_EQ(r.err, err) << args[1];
    EXPECT_EQ(r.out, "") << args[1];
  }

  // "client[$]" of every entry in store order ($: paid).
  std::string Entries() {
    std::string out;
    for (const TimeEntry& e : testing::StoredEntries(Data())) {
      out += ToUtf8(e.client) + (e.paid ? "$" : "") + " ";
    }
    return out;
  }
};

TEST_F(BulkEditCliTest, ReplaceRenamesTheClientAndItsEntriesAfterTheQuestion) {
  const std::string question =
      "Quillora: Are you sure to replace the text? Depending of the number of time "
      "entries, "
      "this may take several minutes. [y/n] ";
  Refused({"replace", "--type", "Client", "--find", "Acme", "--with", "Apex"},
          question + "n\n");
  EXPECT_EQ(Entries(), "Acme Acme Beta ACME Acme ");
  Refused({"replace", "--type", "client", "--find", "Nobody", "--with", "Apex"},
          "Quillora: Please select a string to search for.\n");

  Done({"--yes", "replace", "--type", "Client", "--find", "Acme", "--with", "Apex"},
       question + "y\n");
  EXPECT_EQ(Entries(), "Apex Apex Beta ACME Apex ");
  EXPECT_EQ(Run({"client", "list"}).out, "Apex\t1\nBeta\t2\n");

  for (const Args& bad :
       {Args{"replace", "--type", "Client", "--find", "A"},
        Args{"replace", "--type", "Nothing", "--find", "A", "--with", "B"},
        Args{"replace", "--type", "Client", "--find", "A", "--with",
             std::string(128, 'x')},
        Args{"replace", "extra", "--type", "Client", "--find", "A", "--with", "B"}}) {
    EXPECT_EQ(Run(bad).status, 2) << bad.back();
  }
}

TEST_F(BulkEditCliTest, MarkPaidTakesThePeriodAndTheSavedFilter) {
  const std::string question =
      "Quillora: Do you want to mark all entries paid using the filter from the current "
      "view? [y/n] ";
  Refused({"mark-paid", "--month", "2024-03-05"}, question + "n\n");
  ASSERT_EQ(Run({"filter", "set", "--client", "Acme"}).status, 0);
  Done({"--yes", "mark-paid", "--month", "2024-03-05"}, question + "y\n");
  EXPECT_EQ(Entries(), "Acme Acme$ Beta ACME Acme ");
  EXPECT_EQ(Run({"mark-paid", "--from", "2024-03-01", "--to", "2024-03-02"}).status, 2);
}

TEST_F(BulkEditCliTest, DeleteDataRemovesWholeDaysOrTheClientsEntries) {
  const std::string question =
      "Quillora: All data within the selected criteria will be permanently deleted.  "
      "Click OK to delete or Cancel to cancel the operation. [ok/cancel] ";
  Refused({"delete-data", "--from", "2024-03-01", "--to", "2024-03-10"},
          question + "cancel\n");
  Done({"--yes", "delete-data", "--from", "2024-03-01", "--to", "2024-03-10"},
       question + "ok\n");
  EXPECT_EQ(Entries(), "Acme ACME Acme ");
  Refused({"--yes", "delete-data", "--clients", "Acme,Nobody"},
          "Quillora: There is no client named \"Nobody\".\n");
  Done({"--yes", "delete-data", "--clients", "Acme"}, question + "ok\n");
  EXPECT_EQ(Entries(), "ACME ");
  EXPECT_EQ(Run({"client", "list"}).out, "Acme\t1\nBeta\t2\n") << "clients stay";
  for (const Args& bad :
       {Args{"delete-data"}, Args{"delete-data", "--from", "2024-03-01"},
        Args{"delete-data", "--clients", "A", "--from", "2024-01-01", "--to",
             "2024-01-02"},
        Args{"delete-data", "--from", "2024-3-1", "--to", "2024-03-02"}}) {
    EXPECT_EQ(Run(bad).status, 2) << bad.size();
  }
}

}  // namespace
}  // namespace quillora
