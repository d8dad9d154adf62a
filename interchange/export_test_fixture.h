// What the export tests share: an entry store on a fresh volume, the default
// settings, the US English locale, and entries built field by field.
#ifndef QUILLORA_INTERCHANGE_EXPORT_TEST_FIXTURE_H_
#define QUILLORA_INTERCHANGE_EXPORT_TEST_FIXTURE_H_

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "interchange/csv_export.h"
#include "store/note_text.h"
#include "tests/temp_dir.h"
#include "tests/test_volume.h"

namespace quillora::testing {

class ExportTest : public ::testing::Test {
 protected:
  ExportTest() : entries_(volume_.store()), locale_(Locale::UsEnglish()) {
    EXPECT_TRUE(entries_.Open());
  }

  // An entry at a local time; seconds 1 marks a start time of day.
  static TimeEntry At(int year, int month, int day, int hour = 0, int minute = 0,
                      int second = 0) {
    TimeEntry e;
    EXPECT_TRUE(SystemTimeToFileTime(
        MakeSystemTime(year, month, day, hour, minute, second), &e.start));
    return e;
  }
  static void SetNoteText(TimeEntry* e, const std::u16string& text) {
    const auto blob = NoteBlobFromText(text);
    ASSERT_TRUE(SetNote(e, static_cast<std::int32_t>(blob.size()), blob.data()));
  }
  void Add(const TimeEntry& e) { ASSERT_TRUE(AddEntry(entries_, e)); }

  // Every entry from the first day 00:00:00 to the last day 23:59:59.
  static EntryFilter Days(int y1, int m1, int d1, int y2, int m2, int d2) {
    return MakeExportCriteria(
        {MakeSystemTime(y1, m1, d1), MakeSystemTime(y2, m2, d2, 23, 59, 59)},
        EntryFilter());
  }

  // Six entries around the range 2026-11-20 .. 2026-11-22 of SampleDays():
  // one at the range start exactly and one the day after, which the export
  // never reaches, and four inside it.
  void AddSamples() {
    TimeEntry at_start = At(2026, 11, 20);
    at_start.client = u"At start";
    Add(at_start);

    TimeEntry full = At(2026, 11, 20, 14, 5, 1);
    full.client = u"Acme \"Big\" & Co, <Ltd>";
    full.project = u"Caf\u00e9";
    full.task = u"Design";
    full.duration = 150;
    full.billable = true;
    full.currency = u"EUR";
    full.rate = 6000;
    full.billTo = u"Jane";
    full.custom1 = u"c1";
    full.custom3 = u"c3";
    SetNoteText(&full, u"line one\ntwo");
    Add(full);

    TimeEntry non_billable = At(2026, 11, 21);
    non_billable.client = u"Beta";
    non_billable.duration = 25;
    non_billable.paid = true;
    non_billable.currency = u"USD";
    non_billable.rate = 4550;
    non_billable.rateType = kRateFixed;
    Add(non_billable);

    TimeEntry paid = At(2026, 11, 21, 9, 0, 1);
    paid.client = u"Delta";
    paid.duration = 100;
    paid.billable = true;
    paid.paid = true;
    paid.rateType = kRateOvertime;
    Add(paid);

    TimeEntry last = At(2026, 11, 22, 23, 59, 59);  // seconds other than 1: no start time
    last.client = u"Last";
    last.billable = true;
    last.rate = 10000;
    last.rateType = kRateFixed;
    Add(last);

    TimeEntry after = At(2026, 11, 23);
    after.client = u"After";
    Add(after);
  }
  static EntryFilter SampleDays() { return Days(2026, 11, 20, 2026, 11, 22); }

  ExportSources Sources(FileSystem& files = FileSystem::Posix()) {
    return {entries_, settings_, *locale_, files};
  }
  std::string Path(const std::string& name = "out") const { return dir_.File(name); }
  std::string Bytes(const std::string& name = "out") const {
    return ReadFileBytes(dir_.File(name));
  }

  TestVolume volume_;
  TempDir dir_;
  EntryStore entries_;
  Settings settings_;
  std::unique_ptr<Locale> locale_;
};

}  // namespace quillora::testing

#endif  // QUILLORA_INTERCHANGE_EXPORT_TEST_FIXTURE_H_
