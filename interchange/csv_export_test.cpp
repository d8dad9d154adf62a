#include "interchange/csv_export.h"

#include <gtest/gtest.h>

#include <array>

#include "interchange/export_test_fixture.h"

namespace quillora {
namespace {

constexpr char kHeader[] =
    "\"Date\",\"Client\",\"Project\",\"Phase\",\"Task\",\"Start\",\"Duration(h)\","
    "\"Billable\",\"Paid\",\"Currency\",\"Rate\",\"Rate Type\",\"Amount\",\"Bill To\","
    "\"Custom 1\",\"Custom 2\",\"Custom 3\",\"Note\"\r\n";
// The four sample entries inside the range, in the device's short date and
// time; the project's e acute is one byte in Windows-1252.
constexpr char kFullLine[] =
    "\"11/20/2026\",\"Acme \"Big\" & Co, <Ltd>\",\"Caf\xe9\",\"\",\"Design\",\"2:05 PM\","
    "\"1.50\",\"Y\",\"N\",\"EUR\",\"60.00\",\"0\",\"90.00\",\"Jane\",\"c1\",\"\",\"c3\","
    "\"line one two\"\r\n";
constexpr char kNonBillableLine[] =
    "\"11/21/2026\",\"Beta\",\"\",\"\",\"\",\"\",\"0.25\",\"N\",\"Y\",\"USD\",\"45.50\","
    "\"\",\"\",\"\",\"\",\"\",\"\",\"\"\r\n";
constexpr char kPaidLine[] =
    "\"11/21/2026\",\"Delta\",\"\",\"\",\"\",\"9:00 AM\",\"1.00\",\"Y\",\"Y\",\"\",\"\","
    "\"1\",\"0.00\",\"\",\"\",\"\",\"\",\"\"\r\n";
constexpr char kLastLine[] =
    "\"11/22/2026\",\"Last\",\"\",\"\",\"\",\"\",\"0.00\",\"Y\",\"N\",\"\",\"100.00\","
    "\"3\",\"100.00\",\"\",\"\",\"\",\"\",\"\"\r\n";

using CsvExportTest = testing::ExportTest;

TEST_F(CsvExportTest, WritesTheRangeStrictlyAfterItsStartUpToItsEnd) {
  AddSamples();
  auto sources = Sources();
  ASSERT_TRUE(ExportCsv(Path(), SampleDays(), sources));
  EXPECT_EQ(Bytes(),
            std::string(kHeader) + kFullLine + kNonBillableLine + kPaidLine + kLastLine)
      << "the entry at the range start and the one after the range are not written";
}

TEST_F(CsvExportTest, TheFilterDecidesWhichEntriesOfTheRangeAreWritten) {
  AddSamples();
  EntryFilter criteria = SampleDays();
  criteria.show_paid = false;
  auto sources = Sources();
  ASSERT_TRUE(ExportCsv(Path(), criteria, sources));
  EXPECT_EQ(Bytes(), std::string(kHeader) + kFullLine + kNonBillableLine + kLastLine);

  criteria = SampleDays();
  criteria.client = u"Beta";
  ASSERT_TRUE(ExportCsv(Path(), criteria, sources));
  EXPECT_EQ(Bytes(), std::string(kHeader) + kNonBillableLine);
}

TEST_F(CsvExportTest, AnEmptyRangeGivesTheHeaderWithTheCustomDescriptions) {
  AddSamples();
  struct Case {
    std::array<std::u16string, 3> labels;
    std::string header_end;
  };
  for (const Case& c : {
           Case{{u"Custom 1", u"Custom 2", u"Custom 3"},
                "\"Custom 1\",\"Custom 2\",\"Custom 3\",\"Note\"\r\n"},
           Case{{u"", u"", u""}, "\"\",\"\",\"\",\"Note\"\r\n"},
           Case{{u"Ref \"x\", y", u"", u"Km"},
                "\"Ref \"x\", y\",\"\",\"Km\",\"Note\"\r\n"},
       }) {
    settings_.custom_labels = c.labels;
    auto sources = Sources();
    ASSERT_TRUE(ExportCsv(Path(), Days(2026, 12, 1, 2026, 12, 31), sources));
    const std::size_t fixed = std::string(kHeader).find("\"Custom 1\"");
    const std::string bytes = Bytes();
    EXPECT_EQ(bytes.substr(0, fixed), std::string(kHeader).substr(0, fixed));
    EXPECT_EQ(bytes.substr(fixed), c.header_end) << c.header_end;
  }
}

TEST_F(CsvExportTest, NoteLineBreaksBecomeTheChosenSubstitute) {
  struct Case {
    std::uint16_t break_sub;
    std::string note;
  };
  TimeEntry e = At(2026, 11, 20, 8, 0, 1);
  SetNoteText(&e, u"a\r\nb\nc\r\n");
  Add(e);
  for (const Case& c : {Case{0, "a b c "}, Case{1, "a  b  c  "}, Case{2, "a~`b~`c~`"},
                        Case{3, "a|b|c|"}, Case{4, "a b c "}}) {
    settings_.break_sub = c.break_sub;
    auto sources = Sources();
    ASSERT_TRUE(ExportCsv(Path(), SampleDays(), sources));
    const std::string bytes = Bytes();
    EXPECT_EQ(bytes.substr(bytes.size() - c.note.size() - 4), "\"" + c.note + "\"\r\n")
        << "BreakSub " << c.break_sub;
  }
}

TEST(CsvLineBreakTest, OnlyCrLfPairsAreReplaced) {
  struct Case {
    std::u16string text;
    std::u16string expected;
  };
  for (const Case& c : {Case{u"a\r\nb", u"a~`b"}, Case{u"a\nb", u"a\nb"},
                        Case{u"a\rb", u"a\rb"}, Case{u"\n\r\r\n\n", u"\n\r~`\n"},
                        Case{u"\r\n\r\n", u"~`~`"}, Case{u"", u""}, Case{u"\r", u"\r"}}) {
    EXPECT_EQ(ReplaceLineBreaks(c.text, u"~`"), c.expected) << c.text.size();
  }
}

}  // namespace
}  // namespace quillora
