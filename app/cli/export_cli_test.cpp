// The export command end to end: the binary on a fresh data folder, its files
// compared byte for byte.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>

#include "tests/cli_fixture.h"
#include "tests/seed_data.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

using testing::ReadFileBytes;

constexpr char kHeader[] =
    "\"Date\",\"Client\",\"Project\",\"Phase\",\"Task\",\"Start\",\"Duration(h)\","
    "\"Billable\",\"Paid\",\"Currency\",\"Rate\",\"Rate Type\",\"Amount\",\"Bill To\","
    "\"Custom 1\",\"Custom 2\",\"Custom 3\",\"Note\"\r\n";
constexpr char kAcmeLine[] =
    "\"11/20/2026\",\"Acme \"Big\" & Co\",\"Caf\xe9\",\"\",\"Design\",\"2:05 "
    "PM\",\"0.17\","
    "\"Y\",\"N\",\"EUR\",\"60.00\",\"0\",\"10.20\",\"\",\"\",\"c2\",\"\",\"one two\"\r\n";
constexpr char kPaidLine[] =
    "\"11/21/2026\",\"Paid\",\"\",\"\",\"\",\"9:00 "
    "AM\",\"1.00\",\"Y\",\"Y\",\"USD\",\"\","
    "\"1\",\"0.00\",\"\",\"\",\"\",\"\",\"\"\r\n";
class ExportCliTest : public testing::CliFixture {
 protected:
  ExportCliTest() {
    TimeEntry acme =
        testing::EntryAt("2026-11-20T14:05:01", u"Acme \"Big\" & Co", u"Design");
    acme.project = u"Caf\u00e9";
    acme.duration = 17;
    acme.rate = 6000;
    acme.billable = true;
    acme.currency = u"EUR";
    acme.custom2 = u"c2";
    testing::SetNoteText(&acme, u"one\ntwo");
    TimeEntry paid = testing::EntryAt("2026-11-21T09:00:01", u"Paid", u"");
    paid.duration = 100;
    paid.billable = true;
    paid.paid = true;
    paid.currency = u"USD";
    paid.rateType = 1;
    testing::SeedEntries(
        Data(),
        {testing::EntryAt("2026-11-20T00:00:00", u"At midnight", u""), acme, paid});
  }
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

// The question before replacing a file: backup_cli_test.cpp, and the export
// asks for it in interchange/export_command_test.cpp. A file that cannot be
// written: the message in tests/write_failure_test.cpp, the system's reason
// after it in list_cli_test.cpp.
TEST_F(ExportCliTest, WrongUsageWritesNothing) {
  const std::string out = File("never.csv");
  for (const std::vector<std::string>& bad :
       std::vector<std::vector<std::string>>{{"export"},
                                             {"export", "pdf", out},
                                             {"export", "csv"},
                                             {"export", "csv", out, out},
                                             {"export", "csv", "--bogus", out}}) {
    const auto r = Run(bad);
    EXPECT_EQ(r.status, 2) << bad.size() << " " << bad.back();
    EXPECT_NE(r.err.find("Try 'quillora --help'"), std::string::npos) << r.err;
  }
  EXPECT_FALSE(std::ifstream(out).good());
}

}  // namespace
}  // namespace quillora
