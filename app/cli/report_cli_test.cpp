// The report and report-def commands end to end: the binary on a fresh data
// folder.
#include <gtest/gtest.h>

#include "store/data_context.h"
#include "store/time_entry.h"
#include "tests/run_quillora.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

using testing::RunQuillora;

class ReportCliTest : public ::testing::Test {
 protected:
  std::string Data() const { return dir_.File("data"); }
  testing::RunResult Run(const std::vector<std::string>& args) {
    return RunQuillora(Data(), args);
  }

  // Stores an entry directly, as the window would have.
  void AddEntryAt(int day, int hour, const std::u16string& client,
                  const std::u16string& task, std::uint32_t duration,
                  std::uint32_t rate) {
    DataContext data;
    std::string error;
    ASSERT_TRUE(OpenDataContext(Data(), &data, &error)) << error;
    EntryStore store(*data.volume);
    ASSERT_TRUE(store.Open());
    TimeEntry e;
    SystemTimeToFileTime(MakeSystemTime(2026, 11, day, hour, 0, 1), &e.start);
    e.client = client;
    e.task = task;
    e.duration = duration;
    e.rate = rate;
    e.billable = true;
    ASSERT_TRUE(AddEntry(store, e));
  }

  testing::TempDir dir_;
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
  const std::string zeros(64, '0');
  // clang-format off
  EXPECT_EQ(r.out,
            "48006f00750072007300" + std::string(44, '0') + "\n" +  // "Hours"
            zeros + "\n" + zeros + "\n" + zeros + "\n" +
            // type, dates, group-by, the seven flags, reserved, slots 0-3
            "0100" "0200" "1f00ea03" "0000" "0000" "0000" "0100" "0000" "0100" "0000"
            "0000" "61003000" "66003100\n"
            // slots 4-17, reserved
            "32003300340035003600370038003900620063006400650067006800" "00000000\n" +
            std::string(48, '0') + "01840000\n");  // reserved, shown fields
  // clang-format on

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
  r = RunQuillora(Data(), {"--yes", "report-def", "save", "Hours", "--title", "Changed"});
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
           {"report-def", "list", "x"},
           {"report-def", "rename", "a"},
           {"report-def", "list", "--raw"},
           {"report-def", "save"},
           {"report-def", "save", "A", "B"},
           {"report-def", "save", "A", "--type", "Table"},
           {"report-def", "save", "A", "--date-selection", "Start"},
           {"report-def", "save", "A", "--group-by", "Entry Date"},
           {"report-def", "save", "A", "--columns", "Client,Nope"},
           {"report-def", "save", "A", "--columns", "Client,Client"},
           {"report-def", "save", "A", "--hide", "Title: "},
           {"report-def", "save", "A", "--hide", "Notes", "--show", "Notes"},
           {"report-def", "save", "A", "--type", "Tabular", "--group-by", "Task"},
           {"report-def", "save", "A", "--type", "Tabular", "--show", "Group By Title"},
           {"report-def", "save", "A", "--bogus", "x"},
           {"report"},
           {"report", "A", "B", "C"},
           {"report", "A", "--week", "--month", "f.htm"},
           {"report", "A", "--from", "2026-11-01", "f.htm"},
           {"report", "A", "--custom", "2026-11-01", "nope", "f.htm"}}) {
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
  AddEntryAt(16, 9, u"Acme", u"Design", 150, 4000);
  AddEntryAt(17, 9, u"Beta", u"Build", 25, 6000);
  AddEntryAt(18, 9, u"Acme", u"Test", 100, 5000);
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
  EXPECT_EQ(
      testing::ReadFileBytes(out),
      "<!DOCTYPE html PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\" "
      "\"http://www.w3.org/TR/html4/loose.dtd\"><html "
      "xmlns=\"http://www.w3.org/1999/xhtml\">\r\n<head>\r\n<title>Time "
      "Report</title>\r\n<meta name=\"Generator\" content=\"Quillora\" />\r\n<style "
      "type=\"text/css\">table.Data { border : 2px solid Black; border-collapse : "
      "collapse; font-size : 10pt; }\r\nth.Data, td.Data { border : 1px solid black;  "
      "}\r\n</style>\r\n</head>\r\n<body>\r\n<h1>Time Report</h1>\r\n<h2>From "
      "11/16/2026 To 11/17/2026</h2>\r\n<table border=\"0\" class=\"Data\" "
      "cellpadding=\"2\">\r\n<tr>\r\n<th class=\"Data\">Client</th>\r\n<th "
      "class=\"Data\">Duration</th>\r\n<th class=\"Data\">Amount</th>\r\n</tr>\r\n"
      "<tr>\r\n<td class=\"Data\">Acme</td>\r\n<td class=\"Data\" "
      "align=\"right\">1.50</td>\r\n<td class=\"Data\" align=\"right\">60.00</td>\r\n"
      "</tr>\r\n<tr>\r\n<td class=\"Data\">Total</td>\r\n<td class=\"Data\" "
      "align=\"right\">1.50h</td>\r\n<td class=\"Data\" align=\"right\">60.00</td>\r\n"
      "</tr>\r\n</table>\r\n<p>\r\n<span>Total Billable Hours: 1.50h</span>\r\n<br "
      "/>\r\n<span style=\"font-size : xx-small;\">Report Date: 11/21/2026</span>\r\n"
      "</p>\r\n</body>\r\n</html>\r\n");

  // An existing file is replaced only after the question.
  const std::string before = testing::ReadFileBytes(out);
  r = Run({"report", "Weekly", "--week", "2026-11-16", out});
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(r.err.find("already exists"), std::string::npos);
  EXPECT_EQ(testing::ReadFileBytes(out), before);
  ASSERT_EQ(Run({"filter", "reset"}).status, 0);
  r = RunQuillora(Data(), {"--yes", "report", "Weekly", "--week", "2026-11-16", out});
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
    ASSERT_EQ(RunQuillora(Data(), {"--yes", "report-def", "save", name}).status, 0);
  }
  EXPECT_EQ(Run({"report-def", "list"}).out, "A\nB\n");
  ASSERT_EQ(Run({"report-def", "default", "A"}).status, 0);
  EXPECT_EQ(Run({"report-def", "default"}).out, "A\n");
  EXPECT_EQ(Run({"report-def", "default", "Z"}).status, 1);

  auto r = Run({"report-def", "rename", "A", "C"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(Run({"report-def", "list"}).out, "B\nC\n");
  EXPECT_EQ(Run({"report-def", "default"}).out, "C\n");

  r = Run({"report-def", "rename", "B", "C"});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(
      r.err,
      "Quillora: This report already exists. Do you wish to overwrite it? [y/n] n\n");
  r = RunQuillora(Data(), {"--yes", "report-def", "rename", "B", "C"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(Run({"report-def", "list"}).out, "C\n");

  r = Run({"report-def", "delete", "C"});
  EXPECT_EQ(r.status, 1) << "asks first";
  r = RunQuillora(Data(), {"--yes", "report-def", "delete", "C"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(Run({"report-def", "default"}).out, "\n");
  r = Run({"report-def", "show", "C"});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "Quillora: There is no saved report.\n");
}

}  // namespace
}  // namespace quillora
