#include "periods/quick_summary.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>

#include "platform/text.h"
#include "tests/test_volume.h"

namespace quillora {
namespace {

struct Spec {
  std::u16string project;
  std::uint32_t duration;
  bool billable;
  bool paid;
  std::uint32_t rate = 0;
  std::uint16_t rate_type = kRateNormal;
  std::u16string currency = u"USD";
};

// The rows as text, one "cell|cell|cell" line each, for readable failures.
std::string Text(const std::vector<QuickSummaryRow>& rows) {
  std::string text;
  for (const QuickSummaryRow& r : rows) {
    text += ToUtf8(r[0]) + "|" + ToUtf8(r[1]) + "|" + ToUtf8(r[2]) + "\n";
  }
  return text;
}

class QuickSummaryTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(store_.Open()); }

  std::vector<ObjectId> Store(const std::vector<Spec>& specs) {
    std::vector<ObjectId> ids;
    for (const Spec& s : specs) {
      TimeEntry e;
      SystemTimeToFileTime(MakeSystemTime(2024, 3, 11, 9, 0, 1), &e.start);
      e.project = s.project;
      e.duration = s.duration;
      e.billable = s.billable;
      e.paid = s.paid;
      e.rate = s.rate;
      e.rateType = s.rate_type;
      e.currency = s.currency;
      EXPECT_TRUE(AddEntry(store_, e));
      ids.push_back(store_.current_record_id());
    }
    return ids;
  }

  std::string Summary(const QuickSummaryPeriod& period,
                      const std::vector<ObjectId>& ids) {
    return Text(QuickSummaryRows(store_, period, ids, settings_, *locale_));
  }

  QuickSummaryPeriod Week() const {
    return {PeriodKind::kWeek, MakeSystemTime(2024, 3, 10),
            MakeSystemTime(2024, 3, 16, 23, 59, 59)};
  }

  testing::TestVolume volume_;
  EntryStore store_{volume_.store()};
  Settings settings_;
  std::unique_ptr<Locale> locale_ = Locale::UsEnglish();
};

TEST_F(QuickSummaryTest, MixedPeriodTotalsHoursAmountsAndProjects) {
  const auto ids = Store({
      {u"Design", 250, true, false, 4000},               // unpaid 100.00
      {u"design", 150, true, true, 2000},                // paid 30.00, same project
      {u"Alpha", 100, false, true, 5000},                // non-billable: no amount
      {u"", 0, true, false, 12345, kRateFixed, u"EUR"},  // fixed 123.45, no project
  });
  EXPECT_EQ(Summary(Week(), ids),
            "Period Type:|Week|\n"
            "Period:|3/10/2024|\n"
            "Number of Items:|4|\n"
            "||\n"
            "Total:||\n"
            "Billable Hours:|4.00h|80.0%\n"
            "Non Billable Hours:|1.00h|20.0%\n"
            "Hours:|5.00|\n"
            "||\n"
            "Total:||\n"
            "Unpaid Hours:|223.45|\n"
            "Paid Hours:|30.00|\n"
            "Amount:|253.45|\n"
            "||\n"
            "Total:||\n"
            "|0.00h|0.0%\n"
            "Alpha|1.00h|20.0%\n"
            "Design|4.00h|80.0%\n");
}

TEST_F(QuickSummaryTest, EmptyPeriodShowsZerosAndNoProjectRows) {
  const QuickSummaryPeriod month{PeriodKind::kMonth, MakeSystemTime(2024, 3, 1),
                                 MakeSystemTime(2024, 3, 31, 23, 59, 59)};
  EXPECT_EQ(Summary(month, {}),
            "Period Type:|Month|\n"
            "Period:|March 2024|\n"
            "Number of Items:|0|\n"
            "||\n"
            "Total:||\n"
            "Billable Hours:|0.00h|0.0%\n"
            "Non Billable Hours:|0.00h|0.0%\n"
            "Hours:|0.00|\n"
            "||\n"
            "Total:||\n"
            "Unpaid Hours:|0.00|\n"
            "Paid Hours:|0.00|\n"
            "Amount:|0.00|\n"
            "||\n"
            "Total:||\n");

  // Entries of no hours: still a project row, and still no "nan" shares.
  const auto ids = Store({{u"Alpha", 0, true, false, 1000}});
  const std::string text = Summary(Week(), ids);
  EXPECT_NE(text.find("Billable Hours:|0.00h|0.0%\n"), std::string::npos) << text;
  EXPECT_EQ(text.substr(text.rfind("Total:||\n")), "Total:||\nAlpha|0.00h|0.0%\n");
}

TEST_F(QuickSummaryTest, ProjectKeyKeepsTheFirstSpellingInListOrder) {
  const auto ids = Store({{u"ALPHA", 100, true, false},
                          {u"Alpha", 100, true, false},
                          {u"beta", 50, false, false},
                          {u"Beta", 50, false, false}});
  // The list's order decides, not the store's.
  const std::vector<ObjectId> reversed(ids.rbegin(), ids.rend());
  const std::string forward = Summary(Week(), ids);
  const std::string backward = Summary(Week(), reversed);
  EXPECT_NE(forward.find("ALPHA|2.00h|66.7%\nbeta|1.00h|33.3%\n"), std::string::npos)
      << forward;
  EXPECT_NE(backward.find("Alpha|2.00h|66.7%\nBeta|1.00h|33.3%\n"), std::string::npos)
      << backward;
}

TEST_F(QuickSummaryTest, ProjectShareDividesBeforeItMultiplies) {
  // 0.09 of 0.80 hours: 0.09 * 100 / 0.8 prints 11.3, 0.09 / 0.8 * 100 prints
  // 11.2. The status shares take the first order, the project shares the
  // second.
  const auto ids = Store({{u"P1", 9, true, false}, {u"P2", 71, false, false}});
  const std::string text = Summary(Week(), ids);
  EXPECT_NE(text.find("Billable Hours:|0.09h|11.3%\n"), std::string::npos) << text;
  EXPECT_NE(text.find("P1|0.09h|11.2%\n"), std::string::npos) << text;
}

TEST_F(QuickSummaryTest, UnreadableRecordsCountAsItemsButAddNothing) {
  auto ids = Store({{u"Alpha", 150, true, false, 1000}});
  ids.push_back(ids[0] + 1000);  // no such record
  const std::string text = Summary(Week(), ids);
  EXPECT_NE(text.find("Number of Items:|2|\n"), std::string::npos) << text;
  EXPECT_NE(text.find("Hours:|1.50|\n"), std::string::npos) << text;
  EXPECT_EQ(text.substr(text.rfind("Total:||\n")), "Total:||\nAlpha|1.50h|100.0%\n");
}

TEST_F(QuickSummaryTest, PeriodCellsByKind) {
  const SystemTime start = MakeSystemTime(2024, 5, 1);
  const SystemTime end = MakeSystemTime(2024, 5, 31, 23, 59, 59);
  const struct {
    PeriodKind kind;
    const char* expected;
  } cases[] = {
      {PeriodKind::kDay, "Period Type:|Day|\nPeriod:|5/1/2024|\n"},
      {PeriodKind::kWeek, "Period Type:|Week|\nPeriod:|5/1/2024|\n"},
      {PeriodKind::kMonth, "Period Type:|Month|\nPeriod:|May 2024|\n"},
      {PeriodKind::kCustom,
       "Period Type:|Custom Period|\nPeriod:|5/1/2024 - 5/31/2024|\n"},
      {static_cast<PeriodKind>(7), "Period Type:||\nPeriod:||\n"},
  };
  QuickSummarySums sums(settings_, *locale_);
  for (const auto& c : cases) {
    const std::string text =
        Text(BuildQuickSummaryRows({c.kind, start, end}, 0, sums, *locale_));
    EXPECT_EQ(text.substr(0, text.find("Number")), c.expected)
        << static_cast<int>(c.kind);
  }
}

TEST(QuickSummaryColumns, WidthsAreTruncatedFractionsOfTheUsableWidth) {
  EXPECT_EQ(QuickSummaryColumnWidths(240, 13), (std::array<int, 3>{97, 77, 52}));
}

}  // namespace
}  // namespace quillora
