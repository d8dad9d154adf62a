// list and summary end to end: the binary on a fresh data folder whose
// entries are stored directly, as the window would have stored them.
#include <gtest/gtest.h>

#include "store/data_context.h"
#include "store/time_entry.h"
#include "tests/run_quillora.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

using testing::RunQuillora;

class PeriodCliTest : public ::testing::Test {
 protected:
  void SetUp() override {
    // "Now" is Saturday 2026-11-21; weeks start on Sunday, so the week shown
    // runs from Sunday 2026-11-15 to the Saturday.
    DataContext data;
    std::string error;
    ASSERT_TRUE(OpenDataContext(Data(), &data, &error)) << error;
    EntryStore store(*data.volume);
    ASSERT_TRUE(store.Open());
    auto add = [&](SystemTime start, const char16_t* project, const char16_t* phase,
                   const char16_t* task, std::uint32_t duration, bool billable, bool paid,
                   std::uint32_t rate) {
      TimeEntry e;
      SystemTimeToFileTime(start, &e.start);
      e.client = u"Acme";
      e.project = project;
      e.phase = phase;
      e.task = task;
      e.duration = duration;
      e.billable = billable;
      e.paid = paid;
      e.rate = rate;
      EXPECT_TRUE(AddEntry(store, e));
      return std::to_string(store.current_record_id());
    };
    add(MakeSystemTime(2026, 11, 14, 23, 59, 1), u"Web", u"", u"Before", 100, true, false,
        100);
    // The week's first instant: an entry without a start time.
    first_ =
        add(MakeSystemTime(2026, 11, 15), u"Web", u"", u"Design", 150, true, false, 4000);
    after_ =
        add(MakeSystemTime(2026, 11, 22), u"Web", u"", u"After", 100, true, false, 100);
    admin_ = add(MakeSystemTime(2026, 11, 20, 16, 30, 1), u"Admin", u"", u"Mail", 50,
                 false, true, 9900);
    code_ = add(MakeSystemTime(2026, 11, 17, 9, 0, 1), u"web", u"Build", u"Code", 250,
                true, true, 2000);
  }

  std::string Data() const { return dir_.File("data"); }
  testing::RunResult Run(const std::vector<std::string>& args) {
    return RunQuillora(Data(), args);
  }

  testing::TempDir dir_;
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

constexpr char kWeekCsv[] =
    "\"Period Type:\",\"Week\",\"\"\r\n"
    "\"Period:\",\"11/15/2026\",\"\"\r\n"
    "\"Number of Items:\",\"3\",\"\"\r\n"
    "\"\",\"\",\"\"\r\n"
    "\"Total:\",\"\",\"\"\r\n"
    "\"Billable Hours:\",\"4.00 \",\"88.9%\"\r\n"
    "\"Non Billable Hours:\",\"0.50 \",\"11.1%\"\r\n"
    "\"Hours:\",\"4.50\",\"\"\r\n"
    "\"\",\"\",\"\"\r\n"
    "\"Total:\",\"\",\"\"\r\n"
    "\"Unpaid Hours:\",\"60.00\",\"\"\r\n"
    "\"Paid Hours:\",\"50.00\",\"\"\r\n"
    "\"Amount:\",\"110.00\",\"\"\r\n"
    "\"\",\"\",\"\"\r\n"
    "\"Total:\",\"\",\"\"\r\n"
    "\"Admin\",\"0.50 \",\"11.1%\"\r\n"
    "\"Web\",\"4.00 \",\"88.9%\"\r\n";

TEST_F(PeriodCliTest, SummaryPrintsTheRowsAndWritesTheCsvAfterTheQuestion) {
  const std::string csv = dir_.File("week.csv");
  auto r = Run({"summary", "--csv", csv});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, kWeekSummary);
  EXPECT_EQ(testing::ReadFileBytes(csv), kWeekCsv);

  // An existing file stays unless the question is answered yes.
  testing::WriteFileBytes(csv, "keep");
  r = Run({"summary", "--week", "2026-11-18", "--csv", csv});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out, kWeekSummary);
  EXPECT_EQ(r.err,
            "Quillora: " + csv + " already exists. Do you want to replace it? [y/n] n\n");
  EXPECT_EQ(testing::ReadFileBytes(csv), "keep");
  r = Run({"--yes", "summary", "--csv", csv});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(testing::ReadFileBytes(csv), kWeekCsv);

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
           {"list", "--week", "--month"},
           {"list", "--from", "2026-01-01", "--to", "2026-01-02"},
           {"summary", "--csv"}}) {
    const auto r = Run(bad);
    EXPECT_EQ(r.status, 2) << bad[0] << " " << bad[1];
    EXPECT_NE(r.err.find("Try 'quillora --help'"), std::string::npos) << bad[1];
  }
}

}  // namespace
}  // namespace quillora
