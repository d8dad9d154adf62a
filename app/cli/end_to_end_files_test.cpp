// The files a user gets end to end: a data folder built only with
// `quillora add`, then the XML export, compared byte for byte with the file
// kept here, and a "Group By Field" report.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/cli_fixture.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

using testing::ReadFileBytes;
using testing::RunResult;
using Args = std::vector<std::string>;

// The files of the entries below, as the binary writes them for US English
// (Windows-1252, so the e acute is the byte E9). The bytes of a CSV export
// are pinned end to end in export_cli_test.cpp.
constexpr char kXmlItems[] =
    "<ITEMS>\r\n"
    "<ITEM Billable=\"Y\" Paid=\"N\">\r\n"
    "<DATE>2026-11-16</DATE>\r\n"
    "<CLIENT>Acme &amp; Sons</CLIENT>\r\n"
    "<PROJECT>Caf\xe9"
    "</PROJECT>\r\n"
    "<PHASE/>\r\n"
    "<TASK>Design</TASK>\r\n"
    "<START>09:00:00</START>\r\n"
    "<DURATION>1.50</DURATION>\r\n"
    "<CURRENCY>USD</CURRENCY>\r\n"
    "<RATE Type=\"0\">40.00</RATE>\r\n"
    "<AMOUNT>60.00</AMOUNT>\r\n"
    "<BILLTO/>\r\n"
    "<CUSTOM1>c1</CUSTOM1>\r\n"
    "<CUSTOM2/>\r\n"
    "<CUSTOM3/>\r\n"
    "<NOTES>first line\r\n"
    "second &lt;line&gt;</NOTES>\r\n"
    "</ITEM>\r\n"
    "<ITEM Billable=\"N\" Paid=\"N\">\r\n"
    "<DATE>2026-11-17</DATE>\r\n"
    "<CLIENT>Beta</CLIENT>\r\n"
    "<PROJECT/>\r\n"
    "<PHASE/>\r\n"
    "<TASK>Build</TASK>\r\n"
    "<DURATION>0.25</DURATION>\r\n"
    "<CURRENCY>USD</CURRENCY>\r\n"
    "<RATE Type=\"3\">60.00</RATE>\r\n"
    "<AMOUNT>60.00</AMOUNT>\r\n"
    "<BILLTO/>\r\n"
    "<CUSTOM1/>\r\n"
    "<CUSTOM2/>\r\n"
    "<CUSTOM3/>\r\n"
    "</ITEM>\r\n"
    "<ITEM Billable=\"Y\" Paid=\"Y\">\r\n"
    "<DATE>2026-11-18</DATE>\r\n"
    "<CLIENT>Acme &amp; Sons</CLIENT>\r\n"
    "<PROJECT/>\r\n"
    "<PHASE/>\r\n"
    "<TASK>Test</TASK>\r\n"
    "<START>02:30:00</START>\r\n"
    "<DURATION>2.00</DURATION>\r\n"
    "<CURRENCY>USD</CURRENCY>\r\n"
    "<RATE Type=\"1\">50.00</RATE>\r\n"
    "<AMOUNT>100.00</AMOUNT>\r\n"
    "<BILLTO>Jane &lt;AP&gt;</BILLTO>\r\n"
    "<CUSTOM1/>\r\n"
    "<CUSTOM2/>\r\n"
    "<CUSTOM3/>\r\n"
    "</ITEM>\r\n"
    "<ITEM Billable=\"Y\" Paid=\"N\">\r\n"
    "<DATE>2026-11-19</DATE>\r\n"
    "<CLIENT>Beta</CLIENT>\r\n"
    "<PROJECT/>\r\n"
    "<PHASE>Phase \"2\"</PHASE>\r\n"
    "<TASK>Review</TASK>\r\n"
    "<START>08:15:00</START>\r\n"
    "<DURATION>1.00</DURATION>\r\n"
    "<CURRENCY>EUR</CURRENCY>\r\n"
    "<RATE Type=\"0\">60.00</RATE>\r\n"
    "<AMOUNT>60.00</AMOUNT>\r\n"
    "<BILLTO/>\r\n"
    "<CUSTOM1/>\r\n"
    "<CUSTOM2/>\r\n"
    "<CUSTOM3>x, y</CUSTOM3>\r\n"
    "</ITEM>\r\n"
    "</ITEMS>\r\n";

class EndToEndFilesTest : public testing::CliFixture {
 protected:
  EndToEndFilesTest() {
    // Markup characters, quotes, a non-ASCII letter (given as UTF-8 on the
    // command line), notes with line breaks, start times, every rate type
    // that changes the amount, billable and paid mixed. The last entry lies
    // behind the range.
    const std::vector<Args> adds = {
        {"--date",     "2026-11-16",  "--start",
         "09:00",      "--client",    "Acme & Sons",
         "--project",  "Caf\xc3\xa9", "--task",
         "Design",     "--duration",  "1.5",
         "--billable", "--rate",      "40",
         "--currency", "USD",         "--custom1",
         "c1",         "--note",      "first line\\nsecond <line>"},
        {"--date", "2026-11-17", "--client", "Beta", "--task", "Build", "--duration",
         "0.25", "--no-billable", "--rate", "60", "--rate-type", "Fixed"},
        {"--date", "2026-11-18", "--start", "14:30", "--client", "Acme & Sons", "--task",
         "Test", "--duration", "2", "--billable", "--paid", "--rate", "50", "--rate-type",
         "Overtime", "--bill-to", "Jane <AP>"},
        {"--date", "2026-11-19", "--start", "08:15", "--client", "Beta", "--phase",
         "Phase \"2\"", "--task", "Review", "--duration", "1", "--billable", "--rate",
         "60", "--currency", "EUR", "--custom3", "x, y"},
        {"--date", "2026-11-25", "--start", "10:00", "--client", "Later", "--task",
         "Plan", "--duration", "3", "--billable"},
    };
    for (const Args& fields : adds) {
      Args args = {"add"};
      args.insert(args.end(), fields.begin(), fields.end());
      const RunResult r = Run(args);
      EXPECT_EQ(r.status, 0) << fields[1] << ": " << r.err;
    }
  }

  // Runs a command that must succeed silently and answers the file it wrote.
  std::string Written(const Args& args, const std::string& file) {
    const RunResult r = Run(args);
    EXPECT_EQ(r.status, 0) << testing::CommandLine(args) << r.err;
    EXPECT_EQ(r.out + r.err, "") << testing::CommandLine(args);
    return ReadFileBytes(file);
  }
  static Args Range() { return {"--from", "2026-11-15", "--to", "2026-11-21"}; }
};

// The other encodings are pinned in interchange/xml_export_test.cpp.
TEST_F(EndToEndFilesTest, XmlExport) {
  const std::string out = dir_.File("week.xml");
  Args args = {"export", "xml"};
  for (const auto& a : Range()) args.push_back(a);
  args.push_back(out);
  EXPECT_EQ(Written(args, out), std::string("<?xml version=\"1.0\"?>\r\n") + kXmlItems);
}

// Both layouts are pinned byte for byte in reports/html_report_test.cpp; here
// the options of report-def reach the definition the report is made from.
TEST_F(EndToEndFilesTest, GroupByReport) {
  ASSERT_EQ(Run({"report-def", "save", "ByClient", "--title", "By <Client>", "--type",
                 "Group By Field", "--group-by", "Client", "--columns",
                 "Entry Date,Task,Duration,Rate,Amount,Notes"})
                .status,
            0);
  const std::string out = dir_.File("ByClient.htm");
  Args args = {"report", "ByClient"};
  for (const auto& a : Range()) args.push_back(a);
  args.push_back(out);
  const std::string html = Written(args, out);
  for (const char* part :
       {"<title>By &lt;Client&gt;</title>", "<h2>From 11/15/2026 To 11/21/2026</h2>",
        "<h3>Client: Acme &amp; Sons</h3>", "<h3>Client: Beta</h3>",
        "<tr>\r\n<th class=\"Data\">Entry Date</th>\r\n<th class=\"Data\">Task</th>\r\n"
        "<th class=\"Data\">Duration</th>\r\n<th class=\"Data\">Rate</th>\r\n"
        "<th class=\"Data\">Amount</th>\r\n<th class=\"Data\">Notes</th>\r\n</tr>",
        "<td class=\"Data\">11/19/2026</td>", "Total Billable Hours: 4.50h",
        "Report Date: 11/21/2026"}) {
    EXPECT_NE(html.find(part), std::string::npos) << part << "\n" << html;
  }
  EXPECT_EQ(html.find("Later"), std::string::npos) << "the entry behind the range";
}

}  // namespace
}  // namespace quillora
