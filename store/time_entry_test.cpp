#include "store/time_entry.h"

#include <gtest/gtest.h>

#include "tests/test_time.h"
#include "tests/test_volume.h"

namespace quillora {
namespace {

namespace p = entry_prop;

using testing::At;

class TimeEntryTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(store_.Open()); }

  // Writes raw properties as a record of an older or foreign writer would.
  ObjectId WriteRaw(const PropList& props) { return store_.WriteProps(0, props); }

  PropList RawRecord(ObjectId id) {
    PropList props;
    EXPECT_EQ(store_.Seek(SeekType::kObjectId, id), id);
    store_.ReadProps(nullptr, &props);
    return props;
  }

  std::vector<PropId> IdsOf(const PropList& props) {
    std::vector<PropId> ids;
    for (const auto& v : props) ids.push_back(v.id);
    return ids;
  }

  TimeEntry ReadBack(ObjectId id) {
    TimeEntry e;
    EXPECT_EQ(store_.Seek(SeekType::kObjectId, id), id);
    EXPECT_EQ(ReadEntry(store_, &e), 0);
    return e;
  }

  testing::TestVolume volume_;
  EntryStore store_{volume_.store()};
};

TEST_F(TimeEntryTest, NewRecordsCarryPropertiesInOrderAndOmitEmptyOnes) {
  TimeEntry e;
  e.start = At(2026, 11, 20, 9, 0, 1);
  e.task = u"Design";
  e.duration = 150;
  ASSERT_TRUE(AddEntry(store_, e));
  const ObjectId sparse = store_.current_record_id();
  EXPECT_EQ(IdsOf(RawRecord(sparse)),
            (std::vector<PropId>{p::kStart, p::kClient, p::kTask, p::kDuration, p::kBillable,
                                 p::kRate, p::kPaid, p::kRateType}))
      << "client and task are written even when empty";

  e.client = u"Acme";
  e.project = u"Web";
  e.phase = u"P1";
  e.currency = u"EUR";
  e.billTo = u"Ann";
  e.custom1 = u"c1";
  e.custom2 = u"c2";
  e.custom3 = u"c3";
  e.billable = true;
  e.rate = 12050;
  e.rateType = kRateWeekend;
  const std::uint8_t note[] = {1, 2, 3, 0, 255};
  ASSERT_TRUE(SetNote(&e, sizeof note, note));
  ASSERT_TRUE(AddEntry(store_, e));
  const ObjectId full = store_.current_record_id();
  EXPECT_EQ(IdsOf(RawRecord(full)),
            (std::vector<PropId>{p::kStart, p::kClient, p::kProject, p::kPhase, p::kTask,
                                 p::kDuration, p::kBillable, p::kCurrency, p::kRate, p::kPaid,
                                 p::kNote, p::kBillTo, p::kCustom1, p::kCustom2, p::kCustom3,
                                 p::kRateType}));

  TimeEntry back = ReadBack(full);
  e.recordId = full;
  EXPECT_EQ(back.client, e.client);
  EXPECT_EQ(back.custom3, u"c3");
  EXPECT_EQ(back.note, e.note);
  EXPECT_EQ(back.noteSize, 5);
  EXPECT_TRUE(back.billable);
  EXPECT_EQ(back.rate, 12050u);
  EXPECT_EQ(back.rateType, kRateWeekend);
  EXPECT_EQ(back.recordId, full);
}

TEST_F(TimeEntryTest, ASparseRecordReadsWithEmptyFieldsAndNoNote) {
  const ObjectId id = WriteRaw({PropValue::Number(p::kStart, At(2026, 1, 2)),
                                PropValue::Text(p::kClient, u"Acme"),
                                PropValue::Text(p::kTask, u"Call"),
                                PropValue::Number(p::kDuration, 65535),
                                PropValue::Number(p::kRate, 0xFFFFFFFFu),
                                PropValue::Number(p::kBillable, 2),  // not exactly 1
                                PropValue::Number(p::kPaid, 1),
                                PropValue::Number(p::kRateType, 4),
                                PropValue::Text(MakePropId(1011, kPropString), u"unused")});
  const TimeEntry e = ReadBack(id);
  EXPECT_EQ(e.client, u"Acme");
  EXPECT_TRUE(e.project.empty() && e.phase.empty() && e.currency.empty() &&
              e.billTo.empty() && e.custom1.empty() && e.custom2.empty() &&
              e.custom3.empty());
  EXPECT_EQ(e.noteSize, 0);
  EXPECT_TRUE(e.note.empty());
  EXPECT_EQ(e.duration, 65535u);
  EXPECT_EQ(e.rate, 0xFFFFFFFFu);
  EXPECT_FALSE(e.billable) << "a stored 2 reads as false";
  EXPECT_TRUE(e.paid);
}

TEST_F(TimeEntryTest, LegacyStartTimeIsMergedAndDroppedByTheNextUpdate) {
  const ObjectId id = WriteRaw({PropValue::Number(p::kStart, At(2005, 3, 1)),
                                PropValue::Text(p::kClient, u"Acme"),
                                PropValue::Number(p::kLegacyStartTime,
                                                  At(1999, 12, 31, 9, 30, 15) + 2'500'000)});
  TimeEntry e = ReadBack(id);
  SystemTime st;
  ASSERT_TRUE(FileTimeToSystemTime(e.start, &st));
  EXPECT_EQ(FormatIsoDateTime(st), "2005-03-01T09:30:15.250");

  ASSERT_TRUE(UpdateEntry(store_, e));
  const PropList raw = RawRecord(id);
  for (const auto& v : raw) EXPECT_NE(v.id, p::kLegacyStartTime);
  EXPECT_EQ(ReadBack(id).start, e.start);
}

TEST_F(TimeEntryTest, ClearingFieldsOfAStoredEntryRemovesTheirProperties) {
  TimeEntry e;
  e.start = At(2026, 11, 20, 9, 0, 1);
  e.client = u"Acme";
  e.project = u"Web";
  e.custom2 = u"x";
  const auto blob = std::vector<std::uint8_t>{4, 5};
  SetNote(&e, 2, blob.data());
  ASSERT_TRUE(AddEntry(store_, e));
  const ObjectId id = store_.current_record_id();

  e = ReadBack(id);
  e.project.clear();
  e.custom2.clear();
  SetNote(&e, 0, nullptr);
  e.paid = true;
  ASSERT_TRUE(UpdateEntry(store_, e));
  const auto ids = IdsOf(RawRecord(id));
  for (PropId gone : {p::kProject, p::kCustom2, p::kNote}) {
    EXPECT_EQ(std::count(ids.begin(), ids.end(), gone), 0) << gone;
  }
  const TimeEntry back = ReadBack(id);
  EXPECT_TRUE(back.project.empty());
  EXPECT_TRUE(back.paid);
  EXPECT_EQ(back.client, u"Acme");

  ASSERT_TRUE(DeleteEntry(store_, back));
  EXPECT_EQ(store_.Seek(SeekType::kObjectId, id), 0u);
}

TEST_F(TimeEntryTest, ReadersTellTheEndFromAFailure) {
  TimeEntry e;
  e.client = u"stale";
  EXPECT_EQ(store_.Seek(SeekType::kBeginning, 0), 0u);
  EXPECT_EQ(ReadEntry(store_, &e), 1);
  EXPECT_TRUE(e.client.empty()) << "the entry is cleared first";
  EXPECT_FALSE(UpdateEntry(store_, e)) << "no current record, nothing is added";

  EntryStore closed(volume_.store());
  EXPECT_EQ(ReadEntry(closed, &e), -1);
  EXPECT_FALSE(AddEntry(closed, e));
}

TEST_F(TimeEntryTest, AWalkByStartVisitsEntriesAfterTheRangeStartInOrder) {
  for (int day : {5, 3, 4, 3}) {
    TimeEntry e;
    e.start = At(2026, 11, day);
    e.task = std::u16string(1, static_cast<char16_t>(u'0' + day));
    ASSERT_TRUE(AddEntry(store_, e));
  }
  std::u16string seen;
  TimeEntry e;
  store_.SeekValue(SeekType::kValueGreater, PropValue::Number(p::kStart, At(2026, 11, 3)));
  while (ReadEntry(store_, &e) == 0) {
    seen += e.task;
    store_.Seek(SeekType::kCurrent, 1);
  }
  EXPECT_EQ(seen, u"45") << "entries stamped exactly at the start are not after it";
}

}  // namespace
}  // namespace quillora
