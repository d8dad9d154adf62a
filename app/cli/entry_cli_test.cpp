// add, edit and copy end to end: the binary on a fresh data folder, read back
// with show.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>

#include "tests/cli_fixture.h"
#include "tests/seed_data.h"

namespace quillora {
namespace {

using testing::CommandLine;
using testing::RunResult;
using Args = std::vector<std::string>;

class EntryCliTest : public testing::CliFixture {
 protected:
  EntryCliTest() { now_ = "2026-11-18T10:00:00"; }  // a Wednesday
  // Adds an entry and answers its record id.
  std::string Add(const Args& fields) {
    Args args = {"add"};
    args.insert(args.end(), fields.begin(), fields.end());
    std::string out = Ok(args);
    if (!out.empty() && out.back() == '\n') out.pop_back();
    return out;
  }
  // The fields that show prints, by name.
  std::map<std::string, std::string> Show(const std::string& id) {
    std::map<std::string, std::string> fields;
    std::string out = Ok({"show", id});
    std::size_t at = 0;
    while (at < out.size()) {
      const std::size_t end = out.find('\n', at);
      const std::string line = out.substr(at, end - at);
      const std::size_t eq = line.find('=');
      fields[line.substr(0, eq)] = line.substr(eq + 1);
      at = end + 1;
    }
    return fields;
  }
  int EntryCount() { return static_cast<int>(testing::StoredEntries(Data()).size()); }
};

TEST_F(EntryCliTest, AddStoresEveryFieldAndShowPrintsIt) {
  Ok({"client", "add", "Acme"});
  const std::string id =
      Add({"--date",      "2026-11-16",    "--start",    "09:15",     "--client",
           "Acme",        "--project",     "Web",        "--phase",   "Draft",
           "--task",      "Design",        "--duration", "1.5",       "--billable",
           "--paid",      "--bill-to",     "Bob",        "--rate",    "60",
           "--rate-type", "Overtime",      "--currency", "EUR",       "--custom1",
           "a",           "--custom2",     "b",          "--custom3", "c",
           "--note",      "first\\nsecond"});
  EXPECT_EQ(Ok({"show", id}),
            "recordId=" + id +
                "\nstart=2026-11-16T09:15:01\nclient=Acme\nproject=Web\nphase=Draft\n"
                "task=Design\nduration=150\nrate=6000\nrateType=1\ncurrency=EUR\n"
                "billable=1\npaid=1\nbillTo=Bob\ncustom1=a\ncustom2=b\ncustom3=c\n"
                "noteSize=34\nnote=first\\r\\nsecond\namount=90\n");

  // Defaults: today, no start time, and the settings' (their values when
  // nothing is set: store/settings_test.cpp).
  Ok({"settings", "set", "DefNewStyles", "0x11"});
  Ok({"settings", "set", "DefCurr", "CHF"});
  const auto defaults = Show(Add({"--client", "Acme", "--task", "T", "--duration", "2"}));
  EXPECT_EQ(defaults.at("start"), "2026-11-18T00:00:00");
  EXPECT_EQ(defaults.at("billable"), "1");
  EXPECT_EQ(defaults.at("currency"), "CHF");
}

// Which fields the editor refuses, and why: timekeeping/entry_editor_test.cpp.
TEST_F(EntryCliTest, AddRefusesWithTheEditorsMessage) {
  const RunResult r = Run({"add", "--task", "T", "--duration", "x"});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err,
            "Quillora: Please enter a client name.  You cannot leave Client field "
            "blank.\n");
  EXPECT_EQ(r.out, "");
  EXPECT_EQ(EntryCount(), 0) << "nothing stored";
}

TEST_F(EntryCliTest, EditChangesOnlyTheFieldsGiven) {
  Ok({"client", "add", "Acme"});
  const std::string id =
      Add({"--date",     "2026-11-16", "--start", "09:15",     "--client",
           "Acme",       "--project",  "Web",     "--task",    "Design",
           "--duration", "1.5",        "--rate",  "60",        "--rate-type",
           "Fixed",      "--note",     "keep me", "--custom2", "c2"});
  const auto before = Show(id);

  EXPECT_EQ(Ok({"edit", id, "--paid"}), "");
  auto after = Show(id);
  EXPECT_EQ(after.at("paid"), "1");
  after["paid"] = before.at("paid");
  EXPECT_EQ(after, before);

  Ok({"edit", id, "--date", "2026-11-17", "--project", "", "--duration", "2", "--note",
      ""});
  after = Show(id);
  EXPECT_EQ(after.at("start"), "2026-11-17T09:15:01");
  EXPECT_EQ(after.at("project"), "");
  EXPECT_EQ(after.at("duration"), "200");
  EXPECT_EQ(after.at("noteSize"), "0");
  EXPECT_EQ(after.at("rateType"), "3");
  EXPECT_EQ(after.at("custom2"), "c2");

  // An end before the start lies on the next day: duration_test.cpp.
  Ok({"edit", id, "--end", "12:00"});
  after = Show(id);
  EXPECT_EQ(after.at("duration"), "275");
  Ok({"edit", id, "--no-start"});
  EXPECT_EQ(Show(id).at("start"), "2026-11-17T00:00:00");

  const RunResult r = Run({"edit", "999", "--paid"});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "Quillora: There is no time entry with record id 999.\n");
}

TEST_F(EntryCliTest, NotesFromAFile) {
  const std::string path = dir_.File("note.txt");
  std::ofstream(path, std::ios::binary) << "\xEF\xBB\xBFline \xC3\xA9\nnext\r\n";
  const auto e =
      Show(Add({"--client", "A", "--task", "T", "--duration", "1", "--note-file", path}));
  EXPECT_EQ(e.at("note"), "line \xC3\xA9\\r\\nnext");
  const RunResult r = Run({"add", "--client", "A", "--task", "T", "--duration", "1",
                           "--note-file", dir_.File("missing.txt")});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(EntryCount(), 1);
}

TEST_F(EntryCliTest, UsageErrors) {
  for (const Args& bad :
       {Args{"add", "--date", "2026-13-01"}, Args{"add", "--date", "2026-11-18T10:00"},
        Args{"add", "--start", "9:00"}, Args{"add", "--start", "24:00"},
        Args{"add", "--start", "09:00", "--no-start"},
        Args{"add", "--start", "09:00", "--end", "10:00", "--duration", "1"},
        Args{"add", "--end", "10:00"}, Args{"add", "--rate-type", "5"},
        Args{"add", "--rate-type", "Hourly"}, Args{"add", "--paid", "--no-paid"},
        Args{"add", "--note", "a", "--note-file", "b"}, Args{"add", "extra"},
        Args{"add", "--colour", "red"}, Args{"edit"}, Args{"edit", "x"},
        Args{"copy", "1"}, Args{"copy", "1", "--rest-of-week", "--until", "2026-11-20"},
        Args{"copy", "1", "--until", "soon"}}) {
    EXPECT_EQ(Run(bad).status, 2) << CommandLine(bad);
  }
  EXPECT_EQ(EntryCount(), 0);
}

TEST_F(EntryCliTest, CopyPrintsTheCopiesInDateOrder) {
  const std::string id =
      Add({"--date", "2026-11-18", "--start", "08:30", "--client", "Acme", "--task",
           "Standup", "--duration", "0.25", "--rate", "80", "--note", "daily"});
  // Which fields a copy keeps: timekeeping/copy_entry_test.cpp.
  const std::string week = Ok({"copy", id, "--rest-of-week"});
  const std::size_t first_end = week.find('\n');
  ASSERT_EQ(std::count(week.begin(), week.end(), '\n'), 2) << week;
  const auto first = Show(week.substr(0, first_end));
  EXPECT_EQ(first.at("start"), "2026-11-19T08:30:01");
  EXPECT_EQ(first.at("duration"), "25") << "the source's";
  EXPECT_EQ(Show(week.substr(first_end + 1, week.size() - first_end - 2)).at("start"),
            "2026-11-20T08:30:01");

  const std::string weekend = Ok({"copy", id, "--rest-of-week", "--include-weekend"});
  EXPECT_EQ(std::count(weekend.begin(), weekend.end(), '\n'), 3)
      << "Thursday to Saturday";
  const std::string until = Ok({"copy", id, "--until", "2026-11-24"});
  EXPECT_EQ(std::count(until.begin(), until.end(), '\n'), 4) << "19, 20, 23 and 24";
  EXPECT_EQ(Ok({"copy", id, "--until", "2026-11-18"}), "");

  const int count = EntryCount();
  RunResult r = Run({"copy", id, "--rest-of-week", "--duration", "1h"});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "Quillora: This field accepts numeric values only.\n");
  r = Run({"copy", "999", "--rest-of-week"});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(EntryCount(), count);
}

}  // namespace
}  // namespace quillora
