#include "timekeeping/copy_entry.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "platform/text.h"
#include "store/note_text.h"
#include "tests/fake_prompt.h"
#include "tests/test_volume.h"
#include "timekeeping/duration.h"

namespace quillora {
namespace {

constexpr int kCp1252 = 1252;

std::string MonthDays(const std::vector<SystemTime>& days) {
  std::string out;
  for (const SystemTime& d : days) {
    char buf[16];
    std::snprintf(buf, sizeof buf, "%s%02d-%02d", out.empty() ? "" : " ", d.month, d.day);
    out += buf;
  }
  return out;
}

TEST(CopyDaysTest, RestOfWeekOrUpToADateWithOrWithoutTheWeekend) {
  // 2026-11-18 is a Wednesday; 11-21 Saturday, 11-22 Sunday.
  struct Case {
    SystemTime source;
    bool monday_first;
    CopyRange range;
    SystemTime end;
    bool weekend;
    std::string days;
  } cases[] = {
      {MakeSystemTime(2026, 11, 18, 9, 30, 1),
       false,
       CopyRange::kRestOfWeek,
       {},
       false,
       "11-19 11-20"},
      {MakeSystemTime(2026, 11, 18),
       false,
       CopyRange::kRestOfWeek,
       {},
       true,
       "11-19 11-20 11-21"},
      {MakeSystemTime(2026, 11, 18),
       true,
       CopyRange::kRestOfWeek,
       {},
       true,
       "11-19 11-20 11-21 11-22"},
      {MakeSystemTime(2026, 11, 18),
       true,
       CopyRange::kRestOfWeek,
       {},
       false,
       "11-19 11-20"},
      // The last day of the week gets no copies.
      {MakeSystemTime(2026, 11, 21), false, CopyRange::kRestOfWeek, {}, true, ""},
      {MakeSystemTime(2026, 11, 22), true, CopyRange::kRestOfWeek, {}, true, ""},
      // A Sunday starts the week when weeks start on Sunday.
      {MakeSystemTime(2026, 11, 22),
       false,
       CopyRange::kRestOfWeek,
       {},
       false,
       "11-23 11-24 11-25 11-26 11-27"},
      {MakeSystemTime(2026, 11, 18), false, CopyRange::kSpecificEndDate,
       MakeSystemTime(2026, 11, 24), false, "11-19 11-20 11-23 11-24"},
      {MakeSystemTime(2026, 11, 18), false, CopyRange::kSpecificEndDate,
       MakeSystemTime(2026, 11, 24), true, "11-19 11-20 11-21 11-22 11-23 11-24"},
      {MakeSystemTime(2026, 12, 30), false, CopyRange::kSpecificEndDate,
       MakeSystemTime(2027, 1, 2), true, "12-31 01-01 01-02"},
      {MakeSystemTime(2026, 11, 18), false, CopyRange::kSpecificEndDate,
       MakeSystemTime(2026, 11, 18), true, ""},
      {MakeSystemTime(2026, 11, 18), false, CopyRange::kSpecificEndDate,
       MakeSystemTime(2026, 11, 1), true, ""},
      {MakeSystemTime(2026, 11, 18), false, CopyRange::kSpecificEndDate,
       MakeSystemTime(2026, 2, 30), true, ""},
  };
  for (const Case& c : cases) {
    Settings settings;
    settings.option_bits = c.monday_first ? kOptionWeekStartsMonday : 0;
    EXPECT_EQ(MonthDays(CopyDays(c.source, c.range, c.end, c.weekend, settings)), c.days)
        << MonthDays({c.source}) << " monday_first=" << c.monday_first
        << " range=" << static_cast<int>(c.range) << " end=" << MonthDays({c.end})
        << " weekend=" << c.weekend;
  }
}

class CopyEntryTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(entries_.Open());
    SystemTimeToFileTime(MakeSystemTime(2026, 11, 19, 9, 30, 1), &source_.start);
    source_.client = u"Acme";
    source_.project = u"Web";
    source_.phase = u"Build";
    source_.task = u"Design";
    source_.duration = 66;
    source_.rate = 6000;
    source_.rateType = kRateOvertime;
    source_.currency = u"EUR";
    source_.billable = true;
    source_.paid = true;
    source_.billTo = u"Bob";
    source_.custom1 = u"c1";
    source_.custom3 = u"c3";
    const auto note = NoteBlobFromText(u"weekly");
    SetNote(&source_, static_cast<std::int32_t>(note.size()), note.data());
    ASSERT_TRUE(AddEntry(entries_, source_));
    source_.recordId = entries_.current_record_id();
  }

  TimeEntry Read(ObjectId id) {
    TimeEntry e;
    EXPECT_EQ(entries_.Seek(SeekType::kObjectId, id), id);
    EXPECT_EQ(ReadEntry(entries_, &e), 0);
    return e;
  }

  testing::TestVolume volume_;
  EntryStore entries_{volume_.store()};
  TimeEntry source_;
  Settings settings_;
  testing::FakePrompt prompt_;
};

TEST_F(CopyEntryTest, TheDialogOpensOnTheSource) {
  const CopyEntryDialog dialog = OpenCopyDialog(source_);
  EXPECT_EQ(dialog.range, CopyRange::kRestOfWeek);
  EXPECT_FALSE(dialog.end_date_enabled());
  EXPECT_FALSE(dialog.include_weekend);
  EXPECT_EQ(dialog.duration, u"0.66");
  EXPECT_EQ(dialog.end_date, MakeSystemTime(2026, 11, 19));
  EXPECT_EQ(dialog.task, u"Design");
}

TEST_F(CopyEntryTest, CopiesKeepEveryFieldButDateAndDuration) {
  settings_.option_bits = kOptionGranularity;
  settings_.granularity = 15;
  CopyEntryDialog dialog = OpenCopyDialog(source_);
  dialog.range = CopyRange::kSpecificEndDate;
  dialog.end_date = MakeSystemTime(2026, 11, 23);
  dialog.SetDuration(u"0.3");
  std::vector<ObjectId> ids;
  ASSERT_EQ(CopyEntry(entries_, source_, dialog, settings_, kCp1252, prompt_, &ids),
            CopyResult::kCopied);
  ASSERT_EQ(ids.size(), 2u) << "Friday and Monday";
  EXPECT_LT(ids[0], ids[1]) << "written in date order";
  const int days[] = {20, 23};
  for (std::size_t i = 0; i < ids.size(); ++i) {
    TimeEntry copy = Read(ids[i]);
    TimeEntry expected = source_;
    expected.recordId = ids[i];
    expected.duration = 50;  // 0.3 hours rounded up to the quarter
    SystemTimeToFileTime(MakeSystemTime(2026, 11, days[i], 9, 30, 1), &expected.start);
    EXPECT_EQ(copy.start, expected.start) << i;
    EXPECT_EQ(copy.duration, expected.duration) << i;
    EXPECT_EQ(copy.client + copy.project + copy.phase + copy.task + copy.currency +
                  copy.billTo + copy.custom1 + copy.custom2 + copy.custom3,
              u"AcmeWebBuildDesignEURBobc1c3");
    EXPECT_EQ(copy.rate, 6000u);
    EXPECT_EQ(copy.rateType, kRateOvertime);
    EXPECT_TRUE(copy.billable && copy.paid);
    EXPECT_EQ(copy.note, source_.note);
  }
  EXPECT_TRUE(prompt_.shown.empty());

  // The source's own duration text goes through the granularity rule too.
  CopyEntryDialog unchanged = OpenCopyDialog(source_);
  settings_.granularity = 30;
  ids.clear();
  ASSERT_EQ(CopyEntry(entries_, source_, unchanged, settings_, kCp1252, prompt_, &ids),
            CopyResult::kCopied);
  ASSERT_EQ(ids.size(), 1u);
  EXPECT_EQ(Read(ids[0]).duration, 100u) << "0.66 hours rounded up to the next half hour";
}

TEST_F(CopyEntryTest, TheDurationMustBeGivenAndNumeric) {
  struct Case {
    std::u16string duration;
    std::u16string message;
  } cases[] = {
      {u"", kDurationRequiredMessage},
      {u"1h", kNumericOnlyMessage},
      {u"x", kNumericOnlyMessage},
  };
  for (const Case& c : cases) {
    prompt_.shown.clear();
    CopyEntryDialog dialog = OpenCopyDialog(source_);
    dialog.SetDuration(c.duration);
    std::vector<ObjectId> ids;
    EXPECT_EQ(CopyEntry(entries_, source_, dialog, settings_, kCp1252, prompt_, &ids),
              CopyResult::kRefused)
        << ToUtf8(c.duration);
    EXPECT_TRUE(ids.empty());
    EXPECT_EQ(prompt_.Texts(), std::vector<std::u16string>{c.message})
        << ToUtf8(c.duration);
  }
  CopyEntryDialog dialog = OpenCopyDialog(source_);
  dialog.SetDuration(u"1234567");
  EXPECT_EQ(dialog.duration, u"123456");
}

}  // namespace
}  // namespace quillora
