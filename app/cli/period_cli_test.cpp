// list and summary end to end: the binary on a fresh data folder whose
// entries are stored directly, as the window would have stored them.
#include <gtest/gtest.h>

#include "tests/cli_fixture.h"
#include "tests/seed_data.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

class PeriodCliTest : public testing::CliFixture {
 protected:
  void SetUp() override {
    // "Now" is Saturday 2026-11-21; weeks start on Sunday, so the week shown
    // runs from Sunday 2026-11-15 to the Saturday.
    auto entry = [](const char* start, const char16_t* project, const char16_t* phase,
                    const char16_t* task, std::uint32_t duration, bool billable,
                    bool paid, std::uint32_t rate) {
      TimeEntry e = testing::EntryAt(start, u"Acme", task);
      e.project = project;
      e.phase = phase;
      e.duration = duration;
      e.billable = billable;
      e.paid = paid;
      e.rate = rate;
      return e;
    };
    const std::vector<ObjectId> ids = testing::SeedEntries(
        Data(),
        {entry("2026-11-14T23:59:01", u"Web", u"", u"Before", 100, true, false, 100),
         // The week's first instant: an entry without a start time.
         entry("2026-11-15T00:00:00", u"Web", u"", u"Design", 150, true, false, 4000),
         entry("2026-11-22T00:00:00", u"Web", u"", u"After", 100, true, false, 100),
         entry("2026-11-20T16:30:01", u"Admin", u"", u"Mail", 50, false, true, 9900),
         entry("2026-11-17T09:00:01", u"web", u"Build", u"Code", 250, true, true, 2000)});
    first_ = std::to_string(ids[1]);
    after_ = std::to_string(ids[2]);
    admin_ = std::to_string(ids[3]);
    code_ = std::to_string(ids[4]);
  }

  std::string first_, after_, admin_, code_;
};

TEST_F(PeriodCliTest, ListPrintsTheViewsItemsInStoreOrder) {
  auto r = Run({"list"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, first_ + "\t11/15/2026 1.50h\n\tDesign\n\tWeb\n" +  //
                       code_ + "\t11/17/2026 2.50h (9:00 AM)\n\tCode\n\tweb (Build)\n" +
                       admin_ + "\t11/20/2026 0.50h (4:30 PM)\n\tMail\n\tAdmin\n");

  // The day view leaves the date out; the client shows with its display flag.
  ASSERT_EQ(
      Run({"settings", "set", "ViewCust", "0100000001000000000000000000000000000000"})
          .status,
      0);
  r = Run({"list", "--day", "2026-11-17"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out,
            code_ + "\t2.50h (9:00 AM - 11:30 AM)\n\tCode\n\tweb (Build)\n\tAcme\n");

  EXPECT_EQ(Run({"list", "--ids", "--custom", "2026-11-17", "2026-11-30"}).out,
            code_ + "\n" + admin_ + "\n" + after_ + "\n");

  ASSERT_EQ(Run({"filter", "set", "--non-billable", "no"}).status, 0);
  EXPECT_EQ(Run({"list", "--ids"}).out, first_ + "\n" + code_ + "\n");
  EXPECT_EQ(Run({"list", "--ids", "--day", "2026-11-16"}).out, "");
}

constexpr char kWeekSummary[] =
    "Period Type:\tWeek\t\n"
    "Period:\t11/15/2026\t\n"
    "Number of Items:\t3\t\n"
    "\t\t\n"
    "Total:\t\t\n"
    "Billable Hours:\t4.00h\t88.9%\n"
    "Non Billable Hours:\t0.50h\t11.1%\n"
    "Hours:\t4.50\t\n"
    "\t\t\n"
    "Total:\t\t\n"
    "Unpaid Hours:\t60.00\t\n"
    "Paid Hours:\t50.00\t\n"
    "Amount:\t110.00\t\n"
    "\t\t\n"
    "Total:\t\t\n"
    "Admin\t0.50h\t11.1%\n"
    "Web\t4.00h\t88.9%\n";

// The bytes of the CSV file are pinned in interchange/summary_csv_test.cpp.
constexpr char kWeekCsvStart[] = "\"Period Type:\",\"Week\",\"\"\r\n";

TEST_F(PeriodCliTest, SummaryPrintsTheRowsAndWritesTheCsv) {
  const std::string csv = dir_.File("week.csv");
  auto r = Run({"summary", "--csv", csv});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, kWeekSummary);
  EXPECT_EQ(testing::ReadFileBytes(csv).rfind(kWeekCsvStart, 0), 0u);

  r = Run({"summary", "--csv", dir_.File("no/such/folder.csv")});
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(r.err.find("could not be written"), std::string::npos) << r.err;
}

TEST_F(PeriodCliTest, SummaryOfAnEmptyDayAndTheStoredViewUntouched) {
  ASSERT_EQ(Run({"settings", "set", "View", "3"}).status, 0);
  const std::string settings = Run({"settings", "show"}).out;

  auto r = Run({"summary", "--day", "2026-11-16"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out.substr(0, r.out.find("\t\t\n")),
            "Period Type:\tDay\t\nPeriod:\t11/16/2026\t\nNumber of Items:\t0\t\n");
  EXPECT_EQ(r.out.substr(r.out.rfind("Amount:")), "Amount:\t0.00\t\n\t\t\nTotal:\t\t\n");

  r = Run({"summary"});  // the stored view: the month of today
  EXPECT_EQ(r.out.substr(0, r.out.find("\t\t\n")),
            "Period Type:\tMonth\t\nPeriod:\tNovember 2026\t\nNumber of Items:\t5\t\n");
  Run({"list", "--custom", "2026-01-01", "2026-01-31"});
  EXPECT_EQ(Run({"settings", "show"}).out, settings);
}

TEST_F(PeriodCliTest, WrongUsage) {
  for (const std::vector<std::string>& bad : std::vector<std::vector<std::string>>{
           {"list", "extra"},
           {"list", "--from", "2026-01-01", "--to", "2026-01-02"},
           {"summary", "--csv"}}) {
    const auto r = Run(bad);
    EXPECT_EQ(r.status, 2) << bad[0] << " " << bad[1];
    EXPECT_NE(r.err.find("Try 'quillora --help'"), std::string::npos) << bad[1];
  }
}

}  // namespace
}  // namespace quillora
