#include "interchange/summary_csv.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/fake_prompt.h"
#include "tests/faulty_file_system.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

class SummaryCsvTest : public ::testing::Test {
 protected:
  // A month with 12.50 billable hours on a project whose name holds quotes
  // and an "h", and 7.50 non-billable hours on one with characters outside
  // Windows-1252.
  std::vector<QuickSummaryRow> MonthRows() {
    QuickSummarySums sums(settings_, *locale_);
    TimeEntry billable;
    billable.project = u"Say \"hi\"";
    billable.duration = 1250;
    billable.billable = true;
    billable.rate = 1000;
    sums.Add(billable);
    TimeEntry other;
    other.project = u"Caf\u00e9 \u03a9";
    other.duration = 750;
    sums.Add(other);
    return BuildQuickSummaryRows({PeriodKind::kMonth, MakeSystemTime(2024, 3, 1),
                                  MakeSystemTime(2024, 3, 31, 23, 59, 59)},
                                 2, sums, *locale_);
  }

  Settings settings_;
  std::unique_ptr<Locale> locale_ = Locale::UsEnglish();
  testing::TempDir dir_;
  testing::FakePrompt prompt_;
};

// Every "h" of the middle cell is a blank, the month's name included; cells
// are never escaped; one byte a character.
constexpr char kMonthCsv[] =
    "\"Period Type:\",\"Mont \",\"\"\r\n"
    "\"Period:\",\"Marc  2024\",\"\"\r\n"
    "\"Number of Items:\",\"2\",\"\"\r\n"
    "\"\",\"\",\"\"\r\n"
    "\"Total:\",\"\",\"\"\r\n"
    "\"Billable Hours:\",\"12.50 \",\"62.5%\"\r\n"
    "\"Non Billable Hours:\",\"7.50 \",\"37.5%\"\r\n"
    "\"Hours:\",\"20.00\",\"\"\r\n"
    "\"\",\"\",\"\"\r\n"
    "\"Total:\",\"\",\"\"\r\n"
    "\"Unpaid Hours:\",\"125.00\",\"\"\r\n"
    "\"Paid Hours:\",\"0.00\",\"\"\r\n"
    "\"Amount:\",\"125.00\",\"\"\r\n"
    "\"\",\"\",\"\"\r\n"
    "\"Total:\",\"\",\"\"\r\n"
    "\"Caf\xe9 ?\",\"7.50 \",\"37.5%\"\r\n"
    "\"Say \"hi\"\",\"12.50 \",\"62.5%\"\r\n";

TEST_F(SummaryCsvTest, WritesTheRowsAsTheFileFixesThem) {
  const std::string path = dir_.File("summary.csv");
  testing::WriteFileBytes(path, std::string(4096, 'x'));  // replaced whole
  prompt_.files.push_back(path);
  EXPECT_EQ(ExportQuickSummaryCsv(MonthRows(), prompt_, FileSystem::Posix(), 1252),
            SummaryCsvResult::kWritten);
  EXPECT_EQ(testing::ReadFileBytes(path), kMonthCsv);

  ASSERT_EQ(prompt_.choosers.size(), 1u);
  EXPECT_EQ(prompt_.choosers[0].filter, u"CSV Files (*.csv)|*.csv|");
  EXPECT_EQ(prompt_.choosers[0].default_extension, u"csv");
  EXPECT_EQ(prompt_.choosers[0].flags, kFileOverwritePrompt | kFileHideReadOnly);
  EXPECT_TRUE(prompt_.shown.empty()) << "the export shows no message";
}

TEST_F(SummaryCsvTest, OnlyTheLowercaseHOfTheMiddleCellBecomesABlank) {
  EXPECT_EQ(QuickSummaryCsvLine({u"hh", u"Hh1.5hh", u"h"}),
            u"\"hh\",\"H 1.5  \",\"h\"\r\n");
}

TEST_F(SummaryCsvTest, CancelAndACreateFailureEndTheCommandSilently) {
  const auto rows = MonthRows();
  prompt_.files.push_back(std::nullopt);
  EXPECT_EQ(ExportQuickSummaryCsv(rows, prompt_, FileSystem::Posix(), 1252),
            SummaryCsvResult::kCancelled);

  testing::FaultyFileSystem files;
  files.fail_create = true;
  prompt_.files.push_back(dir_.File("none.csv"));
  EXPECT_EQ(ExportQuickSummaryCsv(rows, prompt_, files, 1252),
            SummaryCsvResult::kNotCreated);
  EXPECT_FALSE(FileSystem::Posix().Exists(dir_.File("none.csv")));

  EXPECT_TRUE(prompt_.shown.empty());
}

}  // namespace
}  // namespace quillora
