// The report and report-def commands end to end: the binary on a fresh data
// folder.
#include <gtest/gtest.h>

#include "tests/cli_fixture.h"
#include "tests/seed_data.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

class ReportCliTest : public testing::CliFixture {
 protected:
  // Stores a billable entry of November 2026 directly, as the window would have.
  void AddEntryAt(int day, const std::u16string& client, std::uint32_t duration,
                  std::uint32_t rate) {
    TimeEntry e =
        testing::EntryAt("2026-11-" + std::to_string(day) + "T09:00:01", client);
    e.duration = duration;
    e.rate = rate;
    e.billable = true;
    testing::SeedEntry(Data(), e);
  }
};

TEST_F(ReportCliTest, SaveShowsTheBlockAndAsksBeforeOverwriting) {
  auto r = Run({"report-def", "list"});
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out, "Quillora: There is no saved report.\n");

  r = Run({"report-def", "save", "Hours", "--title", "Hours", "--date-selection",
           "Start Date Only", "--type", "Tabular", "--columns",
           "Bill To,Entry Date,Amount", "--hide", "Total Unpaid Amount", "--hide",
           "Total Non-Billable Hours"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.err, "");

  r = Run({"report-def", "show", "Hours", "--raw"});
  EXPECT_EQ(r.status, 0) << r.err;
  // The block's bytes: reports/report_definition_test.cpp; here its 220 bytes
  // in hex, 32 a line, from the title "Hours" to the shown fields.
  EXPECT_EQ(r.out.size(), 2 * 220 + 7u) << r.out;
  EXPECT_EQ(r.out.rfind("48006f00750072007300" + std::string(44, '0') + "\n", 0), 0u);
  EXPECT_EQ(r.out.substr(r.out.size() - 9), "01840000\n");

  r = Run({"report-def", "show", "Hours"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(r.out.find("Header Area\n  Title: Hours\n  Date Selection: Start Date Only\n"
                       "Detail Area\n  Type: Tabular\n  Group By: Client\n"),
            std::string::npos)
      << r.out;
  EXPECT_NE(r.out.find("Table Fields\n  [x] Bill To\n  [x] Entry Date\n  [x] Amount\n"
                       "  [ ] Client\n"),
            std::string::npos);
  EXPECT_NE(r.out.find("  [ ] Total Unpaid Amount\n  [x] Total Paid Amount\n"),
            std::string::npos);

  // The same name again: the question, answered No without a terminal.
  r = Run({"report-def", "save", "Hours", "--title", "Changed"});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(
      r.err,
      "Quillora: The report already exists. Do you want to overwrite it? [y/n] n\n");
  EXPECT_NE(Run({"report-def", "show", "Hours"}).out.find("Title: Hours\n"),
            std::string::npos);
  r = Run({"--yes", "report-def", "save", "Hours", "--title", "Changed"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(Run({"report-def", "show", "Hours"}).out.find("Title: Changed\n"),
            std::string::npos);
  EXPECT_EQ(Run({"report-def", "list"}).out, "Hours\n") << "the same record was updated";
}

TEST_F(ReportCliTest, WrongUsageChangesNothing) {
  for (const std::vector<std::string>& bad : std::vector<std::vector<std::string>>{
           {"report-def"},
           {"report-def", "frob"},
           {"report-def", "show"},
           {"report-def", "rename", "a"},
           {"report-def", "save", "A", "B"},
           {"report-def", "save", "A", "--type", "Table"},
           {"report-def", "save", "A", "--columns", "Client,Nope"},
           {"report-def", "save", "A", "--type", "Tabular", "--group-by", "Task"},
           {"report-def", "save", "A", "--bogus", "x"},
           {"report"},
           {"report", "A", "B", "C"}}) {
    const auto r = Run(bad);
    EXPECT_EQ(r.status, 2) << bad.back() << r.err;
    EXPECT_NE(r.err.find("Try 'quillora --help'"), std::string::npos) << bad.back();
  }
  EXPECT_EQ(Run({"report-def", "list"}).out, "Quillora: There is no saved report.\n");

  auto r = Run({"report-def", "save", "A", "--title", std::string(64, 't')});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "Quillora: A report title holds at most 63 characters.\n");
  r = Run({"report-def", "save", std::string(65, 'n')});
  EXPECT_EQ(r.err, "Quillora: A report name holds at most 64 characters.\n");
  r = Run({"report-def", "save", ""});
  EXPECT_EQ(r.err, "Quillora: Please enter some text. Blank is not allowed.\n");
  EXPECT_EQ(Run({"report-def", "list"}).out, "Quillora: There is no saved report.\n");
}

TEST_F(ReportCliTest, ReportWritesTheFileAndAsksBeforeReplacingIt) {
  AddEntryAt(16, u"Acme", 150, 4000);
  AddEntryAt(17, u"Beta", 25, 6000);
  AddEntryAt(18, u"Acme", 100, 5000);
  const std::string out = dir_.File("week.htm");

  auto r = Run({"report", "Weekly", "--week", out});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "Quillora: There is no saved report.\n");
  ASSERT_EQ(Run({"report-def", "save", "Weekly", "--type", "Tabular", "--columns",
                 "Client,Duration,Amount", "--hide", "Total Unpaid Amount", "--hide",
                 "Total Paid Amount", "--hide", "Total Non-Billable Hours"})
                .status,
            0);
  r = Run({"report", "Monthly", "--week", out});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "Quillora: There is no saved report of that name.\n");

  // The saved filter applies; --from/--to cover whole days.
  ASSERT_EQ(Run({"filter", "set", "--client", "Acme"}).status, 0);
  r = Run({"report", "Weekly", "--from", "2026-11-16", "--to", "2026-11-17", out});
  EXPECT_EQ(r.status, 0) << r.err;
  // The bytes of a report are pinned in end_to_end_files_test.cpp.
  const std::string html = testing::ReadFileBytes(out);
  EXPECT_NE(html.find("<h2>From 11/16/2026 To 11/17/2026</h2>"), std::string::npos)
      << html;
  EXPECT_NE(
      html.find("<th class=\"Data\">Client</th>\r\n<th class=\"Data\">Duration</th>"),
      std::string::npos)
      << html;
  EXPECT_EQ(html.find("Beta"), std::string::npos) << "the saved filter applies";
  EXPECT_EQ(html.find("Total Paid Amount"), std::string::npos) << html;

  // An existing file is replaced only after the question.
  const std::string before = testing::ReadFileBytes(out);
  r = Run({"report", "Weekly", "--week", "2026-11-16", out});
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(r.err.find("already exists"), std::string::npos);
  EXPECT_EQ(testing::ReadFileBytes(out), before);
  ASSERT_EQ(Run({"filter", "reset"}).status, 0);
  r = Run({"--yes", "report", "Weekly", "--week", "2026-11-16", out});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_NE(testing::ReadFileBytes(out).find("align=\"right\">2.75h</td>"),
            std::string::npos)
      << "all three entries of the week";

  // Without a name the default report is used.
  const std::string other = dir_.File("default.htm");
  r = Run({"report", other});
  EXPECT_EQ(r.status, 2);
  ASSERT_EQ(Run({"report-def", "default", "Weekly"}).status, 0);
  r = Run({"report", "--week", "2026-11-16", other});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(testing::ReadFileBytes(other), testing::ReadFileBytes(out));

  r = Run({"report", "Weekly", dir_.File("no/such/folder/report.htm")});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "Quillora: Report generation has failed.\nquillora: " +
                       dir_.File("no/such/folder/report.htm") +
                       ": No such file or directory\n");
}

TEST_F(ReportCliTest, RenameAndDeleteCarryTheDefaultReport) {
  for (const char* name : {"A", "B"}) {
    ASSERT_EQ(Run({"--yes", "report-def", "save", name}).status, 0);
  }
  EXPECT_EQ(Run({"report-def", "list"}).out, "A\nB\n");
  ASSERT_EQ(Run({"report-def", "default", "A"}).status, 0);
  EXPECT_EQ(Run({"report-def", "default"}).out, "A\n");
  EXPECT_EQ(Run({"report-def", "default", "Z"}).status, 1);

  auto r = Run({"report-def", "rename", "A", "C"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(Run({"report-def", "list"}).out, "B\nC\n");
  EXPECT_EQ(Run({"report-def", "default"}).out, "C\n");

  // The question before renaming onto another report: SavedReportsTest.
  r = Run({"--yes", "report-def", "rename", "B", "C"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(Run({"report-def", "list"}).out, "C\n");

  r = Run({"report-def", "delete", "C"});
  EXPECT_EQ(r.status, 1) << "asks first";
  r = Run({"--yes", "report-def", "delete", "C"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(Run({"report-def", "default"}).out, "\n");
  r = Run({"report-def", "show", "C"});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "Quillora: There is no saved report.\n");
}

}  // namespace
}  // namespace quillora
