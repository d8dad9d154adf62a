#include "interchange/csv_entries.h"

#include <gtest/gtest.h>

#include <string>

#include "interchange/entry_import.h"
#include "platform/text.h"

namespace quillora {
namespace {

std::string Narrow(const std::u16string& text) { return ToUtf8(text); }

// Each row as "date|start|client|project|task|duration|note|billable|rate|custom1",
// or "skip: REASON"; a refused file as "error line N: WHAT".
std::vector<std::string> Read(const std::string& bytes, CsvImportOptions options = {}) {
  const CsvImportedFile csv = ReadCsvEntries(bytes, options, Settings{}, 1252);
  if (!csv.file.error.empty()) {
    return {"error line " + std::to_string(csv.file.error_line) + ": " +
            Narrow(csv.file.error)};
  }
  std::vector<std::string> rows;
  for (const ImportedEntry& row : csv.file.rows) {
    if (!row.skip.empty()) {
      rows.push_back("skip: " + Narrow(row.skip));
      continue;
    }
    std::string out;
    for (const std::u16string& cell : ImportPreviewCells(row.entry))
      out += Narrow(cell) + "|";
    out += std::to_string(row.entry.billable) + "|" + std::to_string(row.entry.rate) +
           "|" + Narrow(row.entry.custom1);
    rows.push_back(out);
  }
  return rows;
}

TEST(CsvEntriesTest, RecognisesEachTrackersHeaders) {
  const struct {
    const char* tracker;
    CsvDateFormat format;
    std::string file;
    std::string expected;
  } cases[] = {
      {"Toggl Track", CsvDateFormat::kIso,
       "User,Email,Client,Project,Task,Description,Billable,Start date,Start time,End "
       "date,"
       "End time,Duration,Tags,Amount (USD)\n"
       "Ann,a@x,Acme,Web,Code,Fix "
       "login,Yes,2024-03-01,09:00:00,2024-03-01,10:30:00,01:30:00,"
       "urgent,75.00\n",
       "2024-03-01|09:00|Acme|Web|Code|1.50|Fix login|1|0|urgent"},
      {"Clockify (its H:MM:SS duration wins over the decimal one)",
       CsvDateFormat::kMonthDayYear,
       "Project,Client,Description,Task,User,Tags,Billable,Start Date,Start Time,End "
       "Date,"
       "End Time,Duration (h),Duration (decimal),Billable Rate (USD),Billable Amount "
       "(USD)\n"
       "Web,Acme,Review,,Ann,,No,03/01/2024,01:15:00 PM,03/01/2024,02:00:00 "
       "PM,00:45:00,0.76,"
       "80.00,60.00\n",
       "2024-03-01|13:15|Acme|Web|Review|0.75||0|8000|"},
      {"Kimai (semicolons, its hourly rate wins over its total)",
       CsvDateFormat::kDayMonthYearDots,
       "Date;From;To;Duration;Rate;Customer;Project;Activity;Description;Hourly rate\n"
       "01.03.2024;08:00;12:00;4,25;340;Acme;Web;Meeting;Weekly;85\n",
       "2024-03-01|08:00|Acme|Web|Meeting|4.25|Weekly|0|8500|"},
      {"solidtime (start and end hold date and time; duration computed)",
       CsvDateFormat::kIso,
       "Description,Task,Project,Client,Start,End,Billable,Tags\n"
       "Call,,Web,Acme,2024-03-01 23:30:00,2024-03-02 00:15:00,true,a b\n",
       "2024-03-01|23:30|Acme|Web|Call|0.75||1|0|a b"},
  };
  CsvImportOptions options;
  for (const auto& c : cases) {
    options.date_format = c.format;
    EXPECT_EQ(Read(c.file, options), std::vector<std::string>{c.expected}) << c.tracker;
  }
}

TEST(CsvEntriesTest, DateFormatsAndHeaderTable) {
  const struct {
    const char16_t* name;
    const char* date;
  } formats[] = {{u"YYYY-MM-DD", "2024-03-09"},
                 {u"mm/dd/yyyy", "03/09/2024"},
                 {u"DD/MM/YYYY", "09/03/2024"},
                 {u"DD.MM.YYYY", "09.03.2024"}};
  for (const auto& f : formats) {
    CsvImportOptions options;
    options.date_format = *CsvDateFormatNamed(f.name);
    EXPECT_EQ(
        Read(std::string("Date,Duration,Client,Task\n") + f.date + ",1,A,T\n", options),
        std::vector<std::string>{"2024-03-09||A||T|1.00||0|0|"})
        << f.date;
  }
  EXPECT_FALSE(CsvDateFormatNamed(u"YYYY/MM/DD"));

  const struct {
    EntryColumn column;
    std::vector<const char16_t*> headers;
  } columns[] = {
      {EntryColumn::kDate, {u"Start date", u" DATE "}},
      {EntryColumn::kStart, {u"Start Time", u"From", u"start"}},
      {EntryColumn::kEndDate, {u"End Date"}},
      {EntryColumn::kEnd, {u"End time", u"To", u"End"}},
      {EntryColumn::kDuration, {u"Duration", u"Duration (h)", u"Duration (decimal)"}},
      {EntryColumn::kClient, {u"Client", u"Customer"}},
      {EntryColumn::kProject, {u"Project"}},
      {EntryColumn::kPhase, {u"Phase"}},
      {EntryColumn::kTask, {u"Task", u"Activity"}},
      {EntryColumn::kDescription, {u"Description"}},
      {EntryColumn::kNote, {u"Notes"}},
      {EntryColumn::kBillable, {u"Billable"}},
      {EntryColumn::kPaid, {u"Paid"}},
      {EntryColumn::kBillTo, {u"Bill To"}},
      {EntryColumn::kRate, {u"Rate", u"Hourly rate", u"Billable Rate (EUR)"}},
      {EntryColumn::kCurrency, {u"Currency"}},
      {EntryColumn::kTags, {u"Tags"}},
      {EntryColumn::kIgnore, {u"Billable Amount (USD)"}},
  };
  for (const auto& c : columns) {
    for (const char16_t* header : c.headers) {
      EXPECT_EQ(RecognizeColumns({header}, {})[0], c.column) << Narrow(header);
    }
  }
}

TEST(CsvEntriesTest, MapsCellsAndSkipsRowsWithTheirReasons) {
  const std::string header =
      "Date,Start time,End time,Duration,Client,Task,Billable,Rate\n";
  const struct {
    const char* row;
    const char* expected;
  } cases[] = {
      {"2024-03-01,,,1.5,A,T,,", "2024-03-01||A||T|1.50||0|0|"},
      {"2024-03-01,22:00,01:00,,A,T,,", "2024-03-01|22:00|A||T|3.00||0|0|"},
      {"2024-03-01,12:00 AM,12:30 am,,A,T,,", "2024-03-01|00:00|A||T|0.50||0|0|"},
      {"2024-03-01,9:05,,2:30,A,T,1,12.5", "2024-03-01|09:05|A||T|2.50||1|1250|"},
      {"2024-02-30,,,1,A,T,,",
       "skip: the date \"2024-02-30\" is not of the form YYYY-MM-DD"},
      {"2024-03-01,25:00,,1,A,T,,", "skip: the start \"25:00\" is not a time"},
      {"2024-03-01,,,1h,A,T,,",
       "skip: the duration \"1h\" is not H:MM:SS, H:MM or hours"},
      {"2024-03-01,10:00,,,A,T,,", "skip: no duration, nor a start and an end"},
      {",,,1,A,T,,", "skip: no date"},
      {"2024-03-01,,,700,A,T,,", "skip: longer than an entry can hold (655.35 hours)"},
      {"2024-03-01,,,1,A,T,maybe,", "skip: \"maybe\" is not Yes or No"},
      {"2024-03-01,,,1,A,T,,USD 5", "skip: the rate \"USD 5\" is not a number"},
      {"2024-03-01,,,1,,T,,", "skip: no client"},
      {"2024-03-01,,,1,A,,,", "skip: no task"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Read(header + c.row + "\n"), std::vector<std::string>{c.expected}) << c.row;
  }
}

TEST(CsvEntriesTest, MappingsAndDefaults) {
  CsvImportOptions options;
  options.mappings = {*ParseColumnMapping(u"Wann=date"),
                      *ParseColumnMapping(u"Kunde=client"),
                      *ParseColumnMapping(u"Task=ignore")};
  options.defaults.task = u"Imported";
  EXPECT_EQ(
      Read("Wann,Hours,Kunde,Task\n2024-03-01,1,K,X\n", options),
      std::vector<std::string>{"error line 1: no column holds the duration, nor a start "
                               "and an end (name them with --map)"});
  options.mappings.push_back(*ParseColumnMapping(u"hours=duration"));
  EXPECT_EQ(Read("Wann,Hours,Kunde,Task\n2024-03-01,1,K,X\n", options),
            std::vector<std::string>{"2024-03-01||K||Imported|1.00||0|0|"});
  options.mappings.push_back(*ParseColumnMapping(u"Missing=note"));
  EXPECT_EQ(Read("Wann,Hours,Kunde,Task\n2024-03-01,1,K,X\n", options),
            std::vector<std::string>{"error line 1: the file has no column \"Missing\""});
  EXPECT_FALSE(ParseColumnMapping(u"A=nofield"));
  EXPECT_FALSE(ParseColumnMapping(u"=date"));
}

TEST(CsvEntriesTest, ReadsEncodingsAndRefusesMalformedText) {
  const std::string body =
      "Date,Duration,Client,Task\n2024-03-01,1,Caf\xc3\xa9,\"a, \"\"b\"\"\"\n";
  const std::string expected = "2024-03-01||Caf\xc3\xa9||a, \"b\"|1.00||0|0|";
  std::string utf16 = "\xff\xfe";
  for (char16_t c : FromUtf8(body)) {
    utf16.push_back(static_cast<char>(c & 0xFF));
    utf16.push_back(static_cast<char>(c >> 8));
  }
  const struct {
    const char* what;
    std::string bytes;
    std::string expected;
  } cases[] = {
      {"UTF-8", body, expected},
      {"UTF-8 with its mark", "\xef\xbb\xbf" + body, expected},
      {"UTF-16LE with its mark", utf16, expected},
      {"ANSI", "Date,Duration,Client,Task\r\n2024-03-01,1,Caf\xe9,x\r\n",
       "2024-03-01||Caf\xc3\xa9||x|1.00||0|0|"},
      {"odd UTF-16",
       "\xff\xfe"
       "a",
       "error line 0: the UTF-16 text has an odd number of bytes"},
      {"open quote", "Date,Duration,Client,Task\n2024-03-01,1,\"A\n,B\n",
       "error line 2: a quoted field is not closed"},
      {"stray quote", "Date,Duration,Client,Task\n2024-03-01,1,A\"B,C\n",
       "error line 2: a quote inside a field that is not quoted"},
      {"text after quote", "Date,Duration,Client,Task\n\n2024-03-01,1,\"A\"B,C\n",
       "error line 3: text after the closing quote of a field"},
      {"field count", "Date,Duration,Client,Task\n2024-03-01,1,A\n",
       "error line 2: the record has 3 fields; the header has 4"},
      {"no header", "", "error line 1: the file has no header line"},
      {"too many fields", "Date,Duration\n\n" + std::string(1100, ','),
       "error line 3: a record has more than 1024 fields"},
      {"no date column", "Duration,Client\n1,A\n",
       "error line 1: no column holds the date (name one with --map COLUMN=date)"},
  };
  for (const auto& c : cases) {
    const auto rows = Read(c.bytes);
    ASSERT_EQ(rows.size(), 1u) << c.what;
    EXPECT_EQ(rows[0], c.expected) << c.what;
  }
}

}  // namespace
}  // namespace quillora
