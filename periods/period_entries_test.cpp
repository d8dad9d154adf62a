#include "periods/period_entries.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/test_time.h"
#include "tests/test_volume.h"

namespace quillora {
namespace {

using testing::At;

class PeriodEntriesTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(store_.Open()); }

  ObjectId Add(FileTime start, bool billable = true, std::u16string client = u"Acme") {
    TimeEntry e;
    e.start = start;
    e.billable = billable;
    e.client = std::move(client);
    e.duration = 100;
    EXPECT_TRUE(AddEntry(store_, e));
    return store_.current_record_id();
  }

  std::vector<ObjectId> Listed(const PeriodRange& range, const EntryFilter& filter = {}) {
    std::vector<ObjectId> ids;
    EXPECT_TRUE(ListPeriodEntryIds(store_, range, filter, *locale_, &ids));
    return ids;
  }

  testing::TestVolume volume_;
  EntryStore store_{volume_.store()};
  std::unique_ptr<Locale> locale_ = Locale::UsEnglish();
  Settings settings_;
};

TEST_F(PeriodEntriesTest, BothEndsOfThePeriodAreIncludedAndStoreOrderKept) {
  const FileTime start = At(2024, 3, 10);
  Add(start - 1);                                          // one tick before the week
  const ObjectId late = Add(At(2024, 3, 16, 23, 59, 59));  // the last second
  const ObjectId midweek = Add(At(2024, 3, 12, 9, 0, 1));
  const ObjectId at_start = Add(start);  // no start time: 00:00:00
  Add(At(2024, 3, 17));                  // the next week
  const ObjectId same_instant = Add(start);

  // Weeks start on Sunday: 2024-03-10 00:00:00 to 2024-03-16 23:59:59.
  const auto week = MakePeriod(PeriodKind::kWeek, MakeSystemTime(2024, 3, 13), settings_);
  EXPECT_EQ(Listed(week->GetViewRange()),
            (std::vector<ObjectId>{at_start, same_instant, midweek, late}));
}

TEST_F(PeriodEntriesTest, MonthViewListsTheLastMinuteThatItsRangeLeavesOut) {
  const ObjectId last = Add(At(2024, 2, 29, 23, 59, 30));
  const auto month =
      MakePeriod(PeriodKind::kMonth, MakeSystemTime(2024, 2, 5), settings_);
  EXPECT_EQ(Listed(month->GetViewRange()), std::vector<ObjectId>{last});
  EXPECT_TRUE(Listed(month->GetRange()).empty());
}

TEST_F(PeriodEntriesTest, FilterCriteriaApplyButThePeriodReplacesItsRange) {
  const ObjectId acme = Add(At(2024, 5, 1, 9, 0, 1));
  Add(At(2024, 5, 1, 10, 0, 1), true, u"Beta");
  Add(At(2024, 5, 1, 11, 0, 1), false);  // non-billable, hidden below
  const ObjectId acme_late = Add(At(2024, 5, 1, 12, 0, 1));

  EntryFilter filter;
  filter.client = u"Acme";
  filter.show_non_billable = false;
  // A range that holds none of the day's entries: the walk's own bounds win.
  filter.range_start = MakeSystemTime(2020, 1, 1);
  filter.range_end = MakeSystemTime(2020, 1, 1);
  const CustomPeriod day(MakeSystemTime(2024, 5, 1), MakeSystemTime(2024, 5, 1));
  EXPECT_EQ(Listed(day.GetViewRange(), filter), (std::vector<ObjectId>{acme, acme_late}));
}

TEST_F(PeriodEntriesTest, EmptyStoresRangesAndEarlyStops) {
  const CustomPeriod may(MakeSystemTime(2024, 5, 1), MakeSystemTime(2024, 5, 31));
  EXPECT_TRUE(Listed(may.GetViewRange()).empty()) << "empty store";

  Add(At(2024, 5, 2, 9, 0, 1));
  Add(At(2024, 5, 3, 9, 0, 1));
  const CustomPeriod backwards(MakeSystemTime(2024, 5, 31), MakeSystemTime(2024, 5, 1));
  EXPECT_TRUE(Listed(backwards.GetViewRange()).empty()) << "end before start";
  const CustomPeriod after(MakeSystemTime(2024, 6, 1), MakeSystemTime(2024, 6, 30));
  EXPECT_TRUE(Listed(after.GetViewRange()).empty()) << "every entry before the start";

  int seen = 0;
  EXPECT_TRUE(WalkPeriodEntries(store_, may.GetViewRange(), EntryFilter(), *locale_,
                                [&seen](const TimeEntry&) { return ++seen < 1; }));
  EXPECT_EQ(seen, 1) << "the visitor's false ends the walk";

  std::vector<ObjectId> ids{42};
  EXPECT_FALSE(ListPeriodEntryIds(store_,
                                  {MakeSystemTime(2024, 13, 1), may.GetRange().end},
                                  EntryFilter(), *locale_, &ids));
  EXPECT_TRUE(ids.empty()) << "an impossible range lists nothing";
}

}  // namespace
}  // namespace quillora
