#include "reports/html_report.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <string>
#include <vector>

#include "store/note_text.h"
#include "store/time_entry.h"
#include "tests/temp_dir.h"
#include "tests/test_volume.h"

namespace quillora {
namespace {

// Lines joined by CR LF, each line ended by one.
std::string Lines(std::initializer_list<const char*> lines) {
  std::string out;
  for (const char* line : lines) out += std::string(line) + "\r\n";
  return out;
}

const std::string kDoctype =
    "<!DOCTYPE html PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\" "
    "\"http://www.w3.org/TR/html4/loose.dtd\">";

// Everything up to the h2 of a report titled `title` (escaped as given).
std::string Head(const std::string& title, const std::string& h2) {
  return kDoctype + "<html xmlns=\"http://www.w3.org/1999/xhtml\">\r\n" +
         Lines({"<head>"}) + "<title>" + title + "</title>\r\n" +
         Lines({"<meta name=\"Generator\" content=\"Quillora\" />",
                "<style type=\"text/css\">table.Data { border : 2px solid Black; "
                "border-collapse : collapse; font-size : 10pt; }",
                "th.Data, td.Data { border : 1px solid black;  }", "</style>", "</head>",
                "<body>"}) +
         "<h1>" + title + "</h1>\r\n" + h2 + "\r\n";
}

// Columns of the small reports: Task, Custom 1 (headed by the user's own
// name), Duration, Amount.
ReportDefinition SmallDefinition() {
  ReportDefinition d = NewReportDefinition();
  d.SetTitle(u"Hours <March>");
  d.shown_fields = (1u << kFieldTask) | (1u << kFieldCustom1) | (1u << kFieldDuration) |
                   (1u << kFieldAmount);
  const std::u16string order = u"4b5f01236789acdegh";
  std::copy(order.begin(), order.end(), d.column_order.begin());
  return d;
}

const std::string kSmallHeaderRow = Lines(
    {"<tr>", "<th class=\"Data\">Task</th>", "<th class=\"Data\">Ticket</th>",
     "<th class=\"Data\">Duration</th>", "<th class=\"Data\">Amount</th>", "</tr>"});

const std::string kTableStart =
    Lines({"<table border=\"0\" class=\"Data\" cellpadding=\"2\">"});

class HtmlReportTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(entries_.Open());
    settings_.custom_labels[0] = u"Ticket";
  }

  TimeEntry Entry(int day, int hour, int minute, int second, const std::u16string& client,
                  const std::u16string& task, std::uint32_t duration, std::uint32_t rate,
                  bool billable, bool paid) {
    TimeEntry e;
    SystemTimeToFileTime(MakeSystemTime(2026, 3, day, hour, minute, second), &e.start);
    e.client = client;
    e.project = u"Web";
    e.task = task;
    e.duration = duration;
    e.rate = rate;
    e.billable = billable;
    e.paid = paid;
    return e;
  }
  void Add(const TimeEntry& e) { ASSERT_TRUE(AddEntry(entries_, e)); }

  // Three entries of the week of March 2, 2026 in two clients, added out of
  // date order; the Acme meeting is not billable.
  void AddWeek() {
    Add(Entry(3, 9, 0, 1, u"Beta", u"Design", 150, 4000, true, false));
    TimeEntry build = Entry(2, 14, 30, 1, u"Acme", u"Build & test", 25, 6000, true, true);
    build.custom1 = u"T-1";
    Add(build);
    Add(Entry(4, 8, 0, 0, u"Acme", u"Meet", 100, 5000, false, false));
  }

  HtmlReportRequest Request(const ReportDefinition& d) {
    HtmlReportRequest request;
    request.definition = d;
    request.range = {MakeSystemTime(2026, 3, 2), MakeSystemTime(2026, 3, 8, 23, 59, 59)};
    request.today = MakeSystemTime(2026, 3, 9);
    return request;
  }

  std::string Generate(const HtmlReportRequest& request) {
    const std::string path = dir_.File("report.htm");
    EXPECT_TRUE(GenerateHtmlReport(entries_, FileSystem::Posix(), path, request,
                                   settings_, *locale_));
    return testing::ReadFileBytes(path);
  }
  std::string Generate(const ReportDefinition& d) { return Generate(Request(d)); }

  testing::TestVolume volume_;
  EntryStore entries_{volume_.store()};
  Settings settings_;
  std::unique_ptr<Locale> locale_ = Locale::UsEnglish();
  testing::TempDir dir_;
};

TEST_F(HtmlReportTest, GroupByFieldWritesOneTablePerGroupByteForByte) {
  AddWeek();
  ReportDefinition d = SmallDefinition();
  d.date_selection = kReportDateStartOnly;
  EXPECT_EQ(
      Generate(d),
      Head("Hours &lt;March&gt;", "<h2>Date: 3/2/2026</h2>") +
          Lines({"<h3>Client: Acme</h3>"}) + kTableStart + kSmallHeaderRow +
          Lines({"<tr>", "<td class=\"Data\">Build &amp; test</td>",
                 "<td class=\"Data\">T-1</td>",
                 "<td class=\"Data\" align=\"right\">0.25</td>",
                 "<td class=\"Data\" align=\"right\">15.00</td>", "</tr>", "<tr>",
                 "<td class=\"Data\">Meet</td>", "<td class=\"Data\" />",
                 "<td class=\"Data\" align=\"right\">1.00</td>",
                 "<td class=\"Data\" align=\"right\">50.00</td>", "</tr>",
                 // A non-billable entry's amount counts in its group.
                 "<tr>", "<td class=\"Data\">Total</td>", "<td class=\"Data\"> </td>",
                 "<td class=\"Data\" align=\"right\">1.25h</td>",
                 "<td class=\"Data\" align=\"right\">65.00</td>", "</tr>", "</table>",
                 "<h3>Client: Beta</h3>"}) +
          kTableStart + kSmallHeaderRow +
          Lines({"<tr>",
                 "<td class=\"Data\">Design</td>",
                 "<td class=\"Data\" />",
                 "<td class=\"Data\" align=\"right\">1.50</td>",
                 "<td class=\"Data\" align=\"right\">60.00</td>",
                 "</tr>",
                 "<tr>",
                 "<td class=\"Data\">Total</td>",
                 "<td class=\"Data\"> </td>",
                 "<td class=\"Data\" align=\"right\">1.50h</td>",
                 "<td class=\"Data\" align=\"right\">60.00</td>",
                 "</tr>",
                 "</table>",
                 "<p>",
                 "<span>Total Billable Hours: 1.75h</span>",
                 "<br />",
                 "<span>Total Unpaid Amount: 60.00</span>",
                 "<br />",
                 "<span>Total Paid Amount: 15.00</span>",
                 "<br />",
                 "<span>Total Non-Billable Hours: 1.00h</span>",
                 "<br />",
                 "<span style=\"font-size : xx-small;\">Report Date: 3/9/2026</span>",
                 "</p>",
                 "</body>",
                 "</html>"}));
}

TEST_F(HtmlReportTest, TabularWritesOneTableInDateOrderByteForByte) {
  AddWeek();
  ReportDefinition d = SmallDefinition();
  d.detail_type = kReportTabular;
  d.date_selection = kReportDateNone;
  d.hide_group_title = 1;  // means nothing to a tabular report
  d.hide_total_unpaid_amount = 1;
  d.hide_total_non_billable_hours = 1;
  d.hide_report_date = 1;
  EXPECT_EQ(Generate(d), Head("Hours &lt;March&gt;", "<h2 />") + kTableStart +
                             kSmallHeaderRow +
                             Lines({"<tr>",
                                    "<td class=\"Data\">Build &amp; test</td>",
                                    "<td class=\"Data\">T-1</td>",
                                    "<td class=\"Data\" align=\"right\">0.25</td>",
                                    "<td class=\"Data\" align=\"right\">15.00</td>",
                                    "</tr>",
                                    "<tr>",
                                    "<td class=\"Data\">Design</td>",
                                    "<td class=\"Data\" />",
                                    "<td class=\"Data\" align=\"right\">1.50</td>",
                                    "<td class=\"Data\" align=\"right\">60.00</td>",
                                    "</tr>",
                                    "<tr>",
                                    "<td class=\"Data\">Meet</td>",
                                    "<td class=\"Data\" />",
                                    "<td class=\"Data\" align=\"right\">1.00</td>",
                                    "<td class=\"Data\" align=\"right\">50.00</td>",
                                    "</tr>",
                                    "<tr>",
                                    "<td class=\"Data\">Total</td>",
                                    "<td class=\"Data\"> </td>",
                                    "<td class=\"Data\" align=\"right\">2.75h</td>",
                                    "<td class=\"Data\" align=\"right\">125.00</td>",
                                    "</tr>",
                                    "</table>",
                                    "<p>",
                                    "<span>Total Billable Hours: 1.75h</span>",
                                    "<br />",
                                    "<span>Total Paid Amount: 15.00</span>",
                                    "<br />",
                                    "</p>",
                                    "</body>",
                                    "</html>"}));
}

TEST_F(HtmlReportTest, NoEntriesPutTheTotalRowInBodyAndTheFooterAfterIt) {
  ReportDefinition d = SmallDefinition();
  d.SetTitle(u"Empty");
  d.hide_total_unpaid_amount = 1;
  d.hide_total_paid_amount = 1;
  d.hide_total_non_billable_hours = 1;
  d.hide_report_date = 1;
  EXPECT_EQ(
      Generate(d),
      Head("Empty", "<h2>From 3/2/2026 To 3/8/2026</h2>") +
          Lines({"<tr>", "<td class=\"Data\">Total</td>", "<td class=\"Data\"> </td>",
                 "<td class=\"Data\" align=\"right\">0.00h</td>",
                 "<td class=\"Data\" align=\"right\">0.00</td>", "</tr>", "</body>",
                 "<p>", "<span>Total Billable Hours: 0.00h</span>", "<br />", "</p>",
                 "</html>"}));
}

TEST_F(HtmlReportTest, WalkStartsStrictlyAfterTheRangeStartAndAppliesTheCriteria) {
  Add(Entry(2, 0, 0, 0, u"Acme", u"At the start", 10, 0, true, false));
  Add(Entry(2, 0, 0, 1, u"Acme", u"Just after", 10, 0, true, false));
  Add(Entry(5, 10, 0, 0, u"Beta", u"Other client", 10, 0, true, false));
  Add(Entry(8, 23, 59, 59, u"Acme", u"At the end", 10, 0, true, false));
  Add(Entry(9, 0, 0, 0, u"Acme", u"After", 10, 0, true, false));
  HtmlReportRequest request = Request(SmallDefinition());
  request.criteria.client = u"Acme";
  const std::u16string document =
      HtmlReportDocument(entries_, request, settings_, *locale_);
  std::vector<std::u16string> tasks;
  for (const char16_t* task :
       {u"At the start", u"Just after", u"Other client", u"At the end", u"After"}) {
    if (document.find(std::u16string(u">") + task + u"<") != std::u16string::npos) {
      tasks.push_back(task);
    }
  }
  EXPECT_EQ(tasks, (std::vector<std::u16string>{u"Just after", u"At the end"}));
}

// A sorted report lists its entries in the order of a stable sort by the
// locale's comparison of the group value, whatever shortcut it takes.
TEST_F(HtmlReportTest, GroupOrderIsTheStableSortByTheLocale) {
  const std::u16string clients[] = {u"beta", u"Beta",      u"Acme",       u"acme",
                                    u"Zed",  u"Caf\u00e9", u"Cafe\u0301", u"\u00c4hre"};
  struct Added {
    std::u16string client;
    std::string task;
  };
  std::vector<Added> walk_order;
  for (int n = 0; n < 48; ++n) {
    const std::u16string& client = clients[(n * 5 + n / 7) % std::size(clients)];
    const std::string task = "t" + std::to_string(10 + n);
    // One entry a quarter hour, so store order is the order added.
    Add(Entry(3 + n / 40, 8 + n % 40 / 4, n % 4 * 15, 1, client,
              std::u16string(task.begin(), task.end()), 10, 100, true, false));
    walk_order.push_back({client, task});
  }
  std::vector<Added> expected = walk_order;
  std::stable_sort(expected.begin(), expected.end(), [&](const Added& a, const Added& b) {
    return locale_->Compare(a.client, b.client) < 0;
  });

  const HtmlReportRequest request = Request(SmallDefinition());
  const std::string html = Generate(request);
  std::vector<std::string> listed;
  const std::string cell = "<td class=\"Data\">t";
  for (std::size_t at = html.find(cell); at != std::string::npos;
       at = html.find(cell, at + 1)) {
    listed.push_back(html.substr(at + cell.size() - 1, 3));
  }
  ASSERT_EQ(listed.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(listed[i], expected[i].task) << "row " << i;
  }
}

TEST_F(HtmlReportTest, CellTextsOfEveryField) {
  TimeEntry e = Entry(3, 14, 30, 1, u"Acme", u"Task", 17, 12345, true, false);
  e.phase = u"Phase 1";
  e.currency = u"EUR";
  e.billTo = u"Jo";
  e.custom2 = u"c2";
  e.custom3 = u"c3";
  e.rateType = kRateOvertime;
  const auto note = NoteBlobFromText(u"one\ntwo");
  SetNote(&e, static_cast<std::int32_t>(note.size()), note.data());
  Add(e);
  ReportDefinition d = NewReportDefinition();
  d.detail_type = kReportTabular;
  d.shown_fields = (1u << kReportFieldCount) - 1;
  const std::string html = Generate(d);
  const std::string row = html.substr(
      html.find("<td"), html.find("</tr>", html.find("<td")) - html.find("<td"));
  EXPECT_EQ(row, Lines({"<td class=\"Data\">3/3/2026</td>",
                        "<td class=\"Data\">Acme</td>", "<td class=\"Data\">Web</td>",
                        "<td class=\"Data\">Phase 1</td>", "<td class=\"Data\">Task</td>",
                        "<td class=\"Data\" align=\"right\">0.17</td>",
                        "<td class=\"Data\">EUR</td>", "<td class=\"Data\">Yes</td>",
                        "<td class=\"Data\">No</td>", "<td class=\"Data\">2:30 PM</td>",
                        "<td class=\"Data\">Jo</td>", "<td class=\"Data\" />",
                        "<td class=\"Data\">c2</td>", "<td class=\"Data\">c3</td>",
                        "<td class=\"Data\">Overtime Rate</td>",
                        "<td class=\"Data\" align=\"right\">20.99</td>",
                        "<td class=\"Data\">one\r\ntwo</td>",
                        "<td class=\"Data\" align=\"right\">123.45</td>"}));
  EXPECT_NE(
      html.find("<th class=\"Data\">Ticket</th>\r\n<th class=\"Data\">Custom 2</th>"),
      std::string::npos)
      << "the user's own name for a custom field heads its column";
}

TEST_F(HtmlReportTest, GroupsSortedByTheirFieldWithRulesOrHeadings) {
  Add(Entry(2, 9, 0, 1, u"Acme", u"Zeta", 10, 0, true, false));
  TimeEntry other = Entry(3, 9, 0, 1, u"Acme", u"Alpha", 20, 0, true, false);
  other.project = u"App";
  Add(other);
  Add(Entry(4, 9, 0, 1, u"Acme", u"Alpha", 30, 0, true, false));
  Add(Entry(5, 9, 0, 1, u"Acme", u"Zeta", 40, 0, true, false));
  ReportEditor editor;
  editor.Load(SmallDefinition());
  ASSERT_TRUE(editor.SetChoice(kRowGroupBy, kGroupByProjectTask));
  ReportDefinition d = SmallDefinition();
  editor.Fill(&d);

  std::string html = Generate(d);
  std::vector<std::string> headings;
  for (std::size_t at = html.find("<h3>"); at != std::string::npos;
       at = html.find("<h3>", at + 1)) {
    headings.push_back(html.substr(at, html.find('\r', at) - at));
  }
  EXPECT_EQ(headings, (std::vector<std::string>{"<h3>Project-Task: App - Alpha</h3>",
                                                "<h3>Project-Task: Web - Alpha</h3>",
                                                "<h3>Project-Task: Web - Zeta</h3>"}));
  EXPECT_NE(
      html.find("align=\"right\">0.10</td>\r\n<td class=\"Data\" align=\"right\">0.00"
                "</td>\r\n</tr>\r\n<tr>\r\n<td class=\"Data\">Zeta</td>\r\n<td "
                "class=\"Data\" />\r\n<td class=\"Data\" align=\"right\">0.40"),
      std::string::npos)
      << "entries of one group stay in date order";

  d.hide_group_title = 1;
  html = Generate(d);
  EXPECT_EQ(html.find("<h3>"), std::string::npos);
  int rules = 0;
  for (std::size_t at = html.find("<hr />"); at != std::string::npos;
       at = html.find("<hr />", at + 1)) {
    ++rules;
  }
  EXPECT_EQ(rules, 3);

  // A zero-filled definition groups by nothing: one table, an empty heading.
  d = ZeroReportDefinition();
  d.shown_fields = 1u << kFieldEntryDate;
  html = Generate(d);
  EXPECT_NE(html.find("<h1 />\r\n<h2 />\r\n<h3 />\r\n<table"), std::string::npos);
  EXPECT_EQ(html.find("<table", html.find("<table") + 1), std::string::npos);
}

TEST_F(HtmlReportTest, TextIsWrittenOneBytePerCharacterInTheCodePage) {
  Add(Entry(3, 9, 0, 1, u"Caf\u00e9", u"\u0141\u00f3d\u017a", 100, 0, true, false));
  ReportDefinition d = SmallDefinition();
  d.SetTitle(u"\u20ac");
  const std::string html = Generate(d);
  EXPECT_NE(html.find("<title>\x80</title>"), std::string::npos)
      << "the euro sign in 1252";
  EXPECT_NE(html.find("<h3>Client: Caf\xe9</h3>"), std::string::npos);
  EXPECT_NE(html.find("<td class=\"Data\">?\xf3"
                      "d?</td>"),
            std::string::npos);
}

}  // namespace
}  // namespace quillora
