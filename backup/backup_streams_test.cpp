#include "backup/backup_streams.h"

#include <gtest/gtest.h>

#include "tests/backup_test_files.h"

namespace quillora {
namespace {

using testing::Hex;

TimeEntry SampleEntry() {
  TimeEntry e;
  e.billable = true;
  e.paid = false;
  e.start = 0x01D0000012345678ull;
  e.client = u"Ab";
  e.task = u"T";
  e.duration = 150;
  e.rate = 2550;
  e.rateType = kRateFixed;
  e.custom1 = u"\u00e9";
  const std::uint8_t note[] = {1, 2, 3};
  SetNote(&e, 3, note);
  return e;
}

TEST(BackupStreamsTest, AnEntryRecordHasItsFieldsInOrderLittleEndian) {
  const std::string expected = std::string("01") + "00" +  // billable, paid
                               "78563412"
                               "0000d001" +  // start, low word first
                               "02000000"
                               "41006200" +  // client "Ab"
                               "00000000"
                               "00000000" +  // project, phase
                               "01000000"
                               "5400" +      // task "T"
                               "00000000" +  // currency
                               "96000000"
                               "f6090000" +  // duration 150, rate 2550
                               "03000000" +  // rate type
                               "00000000" +  // bill to
                               "01000000"
                               "e900" +  // custom 1
                               "00000000"
                               "00000000" +  // custom 2, custom 3
                               "03000000"
                               "010203";  // note size, note
  EXPECT_EQ(Hex(EncodeEntryRecord(SampleEntry())), expected);

  TimeEntry back;
  ASSERT_TRUE(DecodeEntryRecord(EncodeEntryRecord(SampleEntry()), &back));
  TimeEntry want = SampleEntry();
  EXPECT_EQ(back.client, want.client);
  EXPECT_EQ(back.custom1, want.custom1);
  EXPECT_EQ(back.start, want.start);
  EXPECT_EQ(back.note, want.note);
  EXPECT_EQ(back.noteSize, 3);
  EXPECT_EQ(back.rateType, kRateFixed);
  EXPECT_TRUE(back.billable);
  EXPECT_EQ(back.recordId, 0u);
}

TEST(BackupStreamsTest, EveryShortenedRecordIsRefusedAndExtraBytesIgnored) {
  const std::string full = EncodeEntryRecord(SampleEntry());
  TimeEntry e;
  for (std::size_t size = 0; size < full.size(); ++size) {
    EXPECT_FALSE(DecodeEntryRecord(full.substr(0, size), &e)) << "size " << size;
  }
  EXPECT_TRUE(DecodeEntryRecord(full + "junk", &e));
}

TEST(BackupStreamsTest, OutOfRangeNumbersKeepWhatTheRecordCanHold) {
  struct Case {
    const char* what;
    std::int32_t duration;
    std::uint32_t rate_type;
    std::int32_t note_size;
    std::uint32_t want_duration;
    std::uint16_t want_rate_type;
    std::int32_t want_note_size;
  };
  const Case cases[] = {
      {"plain", 150, 1, 0, 150, 1, 0},
      {"negative duration and note size", -1, 0, -5, 0xFFFF, 0, 0},
      {"past 16 bits", 0x10064, 0x10002, 0, 100, 2, 0},
  };
  for (const Case& c : cases) {
    StreamBuilder b;
    b.Flag(false);
    b.Flag(false);
    b.Time(0);
    for (int i = 0; i < 5; ++i) b.String(u"");
    b.I32(c.duration);
    b.I32(-100);
    b.U32(c.rate_type);
    for (int i = 0; i < 4; ++i) b.String(u"");
    b.I32(c.note_size);
    TimeEntry e;
    ASSERT_TRUE(DecodeEntryRecord(b.bytes(), &e)) << c.what;
    EXPECT_EQ(e.duration, c.want_duration) << c.what;
    EXPECT_EQ(e.rateType, c.want_rate_type) << c.what;
    EXPECT_EQ(e.noteSize, c.want_note_size) << c.what;
    EXPECT_EQ(e.rate, 0xFFFFFF9Cu) << c.what;
  }
}

TEST(BackupStreamsTest, ClientStreamsRoundTripAndRefuseDamage) {
  const std::vector<ProjectRecord> projects = {{0, 0, u"Web", u""},
                                               {0, 0, u"Web", u"Design"}};
  EXPECT_EQ(Hex(EncodeProjectTasks(projects)),
            "02000000"
            "03000000570065006200"
            "00000000"
            "03000000570065006200"
            "06000000440065007300690067006e00");
  std::vector<ProjectRecord> p;
  ASSERT_TRUE(DecodeProjectTasks(EncodeProjectTasks(projects), &p));
  ASSERT_EQ(p.size(), 2u);
  EXPECT_EQ(p[1].task, u"Design");

  Rate rate;
  rate.type = kRateOvertime;
  rate.value = 4550;
  rate.flag = true;
  rate.description = u"not written";
  EXPECT_EQ(Hex(EncodeRates({rate})),
            "01000000"
            "01000000"
            "c6110000"
            "01");
  EXPECT_EQ(Hex(EncodeNames({})), "00000000");
  EXPECT_EQ(Hex(EncodeClientName(u"A")), "010000004100");

  std::vector<std::u16string> names;
  std::vector<Rate> rates;
  std::u16string name;
  struct Damaged {
    const char* what;
    std::string bytes;
  };
  // A count larger than the stream, a string count past the end, no count.
  const Damaged damaged[] = {
      {"count past the records", std::string("\xff\xff\xff\x7f", 4)},
      {"string past the end", std::string("\x01\x00\x00\x00\xff\xff\xff\xff", 8)},
      {"no count", std::string("\x01\x00", 2)},
  };
  for (const Damaged& d : damaged) {
    EXPECT_FALSE(DecodeNames(d.bytes, &names)) << d.what;
    EXPECT_FALSE(DecodeRates(d.bytes, &rates)) << d.what;
    EXPECT_FALSE(DecodeProjectTasks(d.bytes, &p)) << d.what;
  }
  EXPECT_FALSE(DecodeClientName(std::string("\x02\x00\x00\x00\x41\x00", 6), &name));
  EXPECT_TRUE(DecodeNames(EncodeNames({}), &names));
  EXPECT_TRUE(names.empty());
}

}  // namespace
}  // namespace quillora
