// The export command end to end: the binary on a fresh data folder, its files
// compared byte for byte.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>

#include "store/data_context.h"
#include "store/note_text.h"
#include "store/time_entry.h"
#include "tests/run_quillora.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

using testing::ReadFileBytes;
using testing::RunQuillora;

constexpr char kHeader[] =
    "\"Date\",\"Client\",\"Project\",\"Phase\",\"Task\",\"Start\",\"Duration(h)\","
    "\"Billable\",\"Paid\",\"Currency\",\"Rate\",\"Rate Type\",\"Amount\",\"Bill To\","
    "\"Custom 1\",\"Custom 2\",\"Custom 3\",\"Note\"\r\n";
constexpr char kAtMidnightLine[] =
    "\"11/20/2026\",\"At "
    "midnight\",\"\",\"\",\"\",\"\",\"0.00\",\"N\",\"N\",\"\",\"\",\"\","
    "\"\",\"\",\"\",\"\",\"\",\"\"\r\n";
constexpr char kAcmeLine[] =
    "\"11/20/2026\",\"Acme \"Big\" & Co\",\"Caf\xe9\",\"\",\"Design\",\"2:05 "
    "PM\",\"0.17\","
    "\"Y\",\"N\",\"EUR\",\"60.00\",\"0\",\"10.20\",\"\",\"\",\"c2\",\"\",\"one two\"\r\n";
constexpr char kPaidLine[] =
    "\"11/21/2026\",\"Paid\",\"\",\"\",\"\",\"9:00 "
    "AM\",\"1.00\",\"Y\",\"Y\",\"USD\",\"\","
    "\"1\",\"0.00\",\"\",\"\",\"\",\"\",\"\"\r\n";
constexpr char kNextWeekLine[] =
    "\"11/23/2026\",\"Next "
    "week\",\"\",\"\",\"\",\"\",\"0.00\",\"N\",\"N\",\"\",\"\",\"\","
    "\"\",\"\",\"\",\"\",\"\",\"\"\r\n";
constexpr char kFailed[] =
    "Quillora: Export failed. Please make sure there is enough storage space and try "
    "agin.\n";

class ExportCliTest : public ::testing::Test {
 protected:
  ExportCliTest() {
    DataContext data;
    std::string error;
    EXPECT_TRUE(OpenDataContext(Data(), &data, &error)) << error;
    EntryStore store(*data.volume);
    EXPECT_TRUE(store.Open());
    auto add = [&](TimeEntry e, int day, int hour, int minute, int second) {
      EXPECT_TRUE(SystemTimeToFileTime(
          MakeSystemTime(2026, 11, day, hour, minute, second), &e.start));
      EXPECT_TRUE(AddEntry(store, e));
    };
    TimeEntry midnight;
    midnight.client = u"At midnight";
    add(midnight, 20, 0, 0, 0);
    TimeEntry acme;
    acme.client = u"Acme \"Big\" & Co";
    acme.project = u"Caf\u00e9";
    acme.task = u"Design";
    acme.duration = 17;
    acme.rate = 6000;
    acme.billable = true;
    acme.currency = u"EUR";
    acme.custom2 = u"c2";
    const auto note = NoteBlobFromText(u"one\ntwo");
    SetNote(&acme, static_cast<std::int32_t>(note.size()), note.data());
    add(acme, 20, 14, 5, 1);
    TimeEntry paid;
    paid.client = u"Paid";
    paid.duration = 100;
    paid.billable = true;
    paid.paid = true;
    paid.currency = u"USD";
    paid.rateType = 1;
    add(paid, 21, 9, 0, 1);
    TimeEntry next_week;
    next_week.client = u"Next week";
    add(next_week, 23, 0, 0, 0);
  }

  std::string Data() const { return dir_.File("data"); }
  std::string File(const std::string& name) const { return dir_.File(name); }
  testing::RunResult Run(const std::vector<std::string>& args) {
    return RunQuillora(Data(), args);
  }

  testing::TempDir dir_;
};

TEST_F(ExportCliTest, CsvOfARangeWithTheSavedFilter) {
  const std::string out = File("week.csv");
  auto r = Run({"export", "csv", "--from", "2026-11-20", "--to", "2026-11-22", out});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out + r.err, "");
  EXPECT_EQ(ReadFileBytes(out), std::string(kHeader) + kAcmeLine + kPaidLine)
      << "the entry at midnight of the first day is not reached";

  ASSERT_EQ(Run({"filter", "set", "--paid", "no"}).status, 0);
  ASSERT_EQ(Run({"settings", "set", "BreakSub", "3"}).status, 0);
  r = Run({"--yes", "export", "csv", "--from", "2026-11-20", "--to", "2026-11-22", out});
  EXPECT_EQ(r.status, 0) << r.err;
  std::string acme = kAcmeLine;
  acme.replace(acme.find("one two"), 7, "one|two");
  EXPECT_EQ(ReadFileBytes(out), kHeader + acme);
}

TEST_F(ExportCliTest, PeriodsPickTheRange) {
  // Today is Saturday 2026-11-21; weeks start on Sunday 2026-11-15, so the
  // entry at midnight of the 20th is inside the week's range.
  const std::string out = File("p.csv");
  struct Case {
    std::vector<std::string> period;
    std::string lines;
  };
  for (const Case& c : {
           Case{{}, std::string(kAtMidnightLine) + kAcmeLine + kPaidLine},
           Case{{"--week"}, std::string(kAtMidnightLine) + kAcmeLine + kPaidLine},
           Case{{"--day"}, kPaidLine},
           Case{{"--day", "2026-11-20"}, kAcmeLine},
           Case{{"--month", "2026-11-01"},
                std::string(kAtMidnightLine) + kAcmeLine + kPaidLine + kNextWeekLine},
           Case{{"--custom", "2026-11-21", "2026-11-23"},
                std::string(kPaidLine) + kNextWeekLine},
           Case{{"--week", "2026-11-23"}, kNextWeekLine},
           Case{{"--custom", "2026-11-24", "2026-11-30"}, ""},
       }) {
    std::remove(out.c_str());
    std::vector<std::string> args = {"export", "csv"};
    args.insert(args.end(), c.period.begin(), c.period.end());
    args.push_back(out);
    const auto r = Run(args);
    EXPECT_EQ(r.status, 0) << args[2] << r.err;
    EXPECT_EQ(ReadFileBytes(out), kHeader + c.lines)
        << (c.period.empty() ? "" : c.period[0]);
  }
}

TEST_F(ExportCliTest, XmlInUtf16) {
  ASSERT_EQ(Run({"settings", "set", "Encoding", "2"}).status, 0);
  const std::string out = File("day.xml");
  const auto r = Run({"export", "xml", "--day", "2026-11-21", out});
  EXPECT_EQ(r.status, 0) << r.err;
  const std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n"
      "<ITEMS>\r\n<ITEM Billable=\"Y\" Paid=\"Y\">\r\n<DATE>2026-11-21</DATE>\r\n"
      "<CLIENT>Paid</CLIENT>\r\n<PROJECT/>\r\n<PHASE/>\r\n<TASK/>\r\n"
      "<START>09:00:00</START>\r\n<DURATION>1.00</DURATION>\r\n<CURRENCY>USD</"
      "CURRENCY>\r\n"
      "<AMOUNT>0.00</AMOUNT>\r\n<BILLTO/>\r\n<CUSTOM1/>\r\n<CUSTOM2/>\r\n<CUSTOM3/>\r\n"
      "</ITEM>\r\n</ITEMS>\r\n";
  std::string expected = "\xff\xfe";
  for (char c : text) {
    expected.push_back(c);
    expected.push_back('\0');
  }
  EXPECT_EQ(ReadFileBytes(out), expected);
}

TEST_F(ExportCliTest, AnExistingFileIsReplacedOnlyAfterTheQuestion) {
  const std::string out = File("old.csv");
  testing::WriteFileBytes(out, "keep me");
  auto r = Run({"export", "csv", "--day", "2026-11-21", out});
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(r.err.find("already exists"), std::string::npos) << r.err;
  EXPECT_EQ(ReadFileBytes(out), "keep me");

  r = Run({"--yes", "export", "csv", "--day", "2026-11-21", out});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(ReadFileBytes(out), std::string(kHeader) + kPaidLine);
}

TEST_F(ExportCliTest, AFileThatCannotBeWrittenGivesTheMessage) {
  const auto r = Run({"export", "xml", "--day", "2026-11-21", File("missing/x.xml")});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, std::string(kFailed) + "quillora: " + File("missing/x.xml") +
                       ": No such file or directory\n");
}

TEST_F(ExportCliTest, WrongUsageWritesNothing) {
  const std::string out = File("never.csv");
  for (const std::vector<std::string>& bad : std::vector<std::vector<std::string>>{
           {"export"},
           {"export", "pdf", out},
           {"export", "csv"},
           {"export", "csv", out, out},
           {"export", "csv", "--from", "2026-11-20", out},
           {"export", "csv", "--from", "2026-11-31", "--to", "2026-12-01", out},
           {"export", "csv", "--day", "--week", out},
           {"export", "csv", "--day", "2026-11-20"},
           {"export", "csv", "--day", "2026-11-20", "--from", "2026-11-20", "--to",
            "2026-11-20", out},
           {"export", "csv", "--custom", "2026-11-20", out},
           {"export", "csv", "--bogus", out},
       }) {
    const auto r = Run(bad);
    EXPECT_EQ(r.status, 2) << bad.size() << " " << bad.back();
    EXPECT_NE(r.err.find("Try 'quillora --help'"), std::string::npos) << r.err;
  }
  EXPECT_FALSE(std::ifstream(out).good());
}

}  // namespace
}  // namespace quillora
