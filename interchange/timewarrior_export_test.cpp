#include "interchange/timewarrior_export.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>

#include "interchange/entry_import.h"
#include "interchange/json_reader.h"
#include "store/note_text.h"

namespace quillora {
namespace {

// The intervals' times are UTC; the tests read them in Berlin.
class TimewarriorExportTest : public ::testing::Test {
 protected:
  void SetUp() override {
    const char* tz = std::getenv("TZ");
    saved_tz_ = tz ? tz : "";
    had_tz_ = tz != nullptr;
    setenv("TZ", "Europe/Berlin", 1);
    tzset();
  }
  void TearDown() override {
    if (had_tz_) {
      setenv("TZ", saved_tz_.c_str(), 1);
    } else {
      unsetenv("TZ");
    }
    tzset();
  }

  // The preview cells and the skip reason of one interval.
  std::string One(const std::string& interval, const Settings& settings = {},
                  const ImportDefaults& defaults = {}) {
    const ImportedFile file =
        ReadTimewarriorExport("[" + interval + "]", settings, defaults);
    EXPECT_EQ(file.error, u"") << interval;
    if (file.rows.size() != 1) return "no row";
    const ImportedEntry& row = file.rows[0];
    if (!row.skip.empty()) return "skip: " + ToNarrow(row.skip);
    std::string out;
    for (const std::u16string& cell : ImportPreviewCells(row.entry))
      out += ToNarrow(cell) + "|";
    return out + ToNarrow(row.entry.custom1) + "|" + ToNarrow(row.entry.phase);
  }
  static std::string ToNarrow(const std::u16string& text) {
    return {text.begin(), text.end()};
  }

 private:
  std::string saved_tz_;
  bool had_tz_ = false;
};

TEST_F(TimewarriorExportTest, MapsTimesDurationsAndTags) {
  Settings granular;
  granular.option_bits |= kOptionGranularity;
  granular.granularity = 15;
  const std::string task = R"(,"tags":["task:T","client:C"])";
  struct Case {
    const char* what;
    std::string interval;
    std::string expected;
    Settings settings = {};
  } cases[] = {
      {"winter: UTC+1",
       R"({"start":"20240115T083000Z","end":"20240115T093000Z")" + task + "}",
       "2024-01-15|09:30|C||T|1.00|||"},
      {"the night clocks go forward: UTC+1 before, UTC+2 after",
       R"({"start":"20240331T003000Z","end":"20240331T013000Z")" + task + "}",
       "2024-03-31|01:30|C||T|1.00|||"},
      {"after the change",
       R"({"start":"20240331T013000Z","end":"20240331T020000Z")" + task + "}",
       "2024-03-31|03:30|C||T|0.50|||"},
      {"crossing midnight stays on its start day",
       R"({"start":"20240610T213000Z","end":"20240611T001500Z")" + task + "}",
       "2024-06-10|23:30|C||T|2.75|||"},
      {"granularity off truncates 10 minutes to 0.16",
       R"({"start":"20240110T100000Z","end":"20240110T101000Z")" + task + "}",
       "2024-01-10|11:00|C||T|0.16|||"},
      {"granularity 15 rounds 10 minutes up",
       R"({"start":"20240110T100000Z","end":"20240110T101000Z")" + task + "}",
       "2024-01-10|11:00|C||T|0.25|||", granular},
      {"each tag kind; the first of a kind wins; the rest is Custom 1 with a task:",
       R"({"start":"20240110T100000Z","end":"20240110T110000Z","tags":["client:Acme",)"
       R"("project:Web","phase:Build","task:Code","task:Other","urgent","v2","client:X"],)"
       R"("annotation":"line one\nline two"})",
       "2024-01-10|11:00|Acme|Web|Code|1.00|line one|urgent v2|Build"},
      {"plain tags make the task",
       R"({"start":"20240110T100000Z","end":"20240110T110000Z","tags":["client:A","fix","bug"]})",
       "2024-01-10|11:00|A||fix bug|1.00|||"},
      {"still running", R"({"start":"20240110T100000Z"})",
       "skip: still running (no end)"},
      {"longer than a record holds",
       R"({"start":"20240101T000000Z","end":"20240201T000000Z")" + task + "}",
       "skip: longer than an entry can hold (655.35 hours)"},
      {"ends before it starts",
       R"({"start":"20240101T100000Z","end":"20240101T090000Z")" + task + "}",
       "skip: ends before it starts"},
      {"no client",
       R"({"start":"20240101T100000Z","end":"20240101T110000Z","tags":["x"]})",
       "skip: no client"},
      {"no task",
       R"({"start":"20240101T100000Z","end":"20240101T110000Z","tags":["client:C"]})",
       "skip: no task"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(One(c.interval, c.settings), c.expected) << c.what;
  }
  EXPECT_EQ(
      One(R"({"start":"20240110T100000Z","end":"20240110T110000Z"})", {}, {u"D", u"E"}),
      "2024-01-10|11:00|D||E|1.00|||")
      << "--client and --task fill what is missing";
}

TEST_F(TimewarriorExportTest, StartCarriesTheEnteredMark) {
  const ImportedFile file = ReadTimewarriorExport(
      R"([{"start":"20240110T100059Z","end":"20240110T110000Z","tags":["client:C","T"]}])",
      {}, {});
  ASSERT_EQ(file.rows.size(), 1u);
  SystemTime st;
  ASSERT_TRUE(FileTimeToSystemTime(file.rows[0].entry.start, &st));
  EXPECT_EQ(st.second, kStartTimeMark);
  EXPECT_EQ(file.rows[0].entry.duration, 98u) << "3541 s x 1/3600 h, truncated";
}

TEST_F(TimewarriorExportTest, RefusesMalformedExportsNamingTheLine) {
  const struct {
    const char* text;
    int line;
    const char16_t* what;
  } cases[] = {
      {"", 1, u"unexpected end of the text"},
      {"{}", 1, u"the text is not a JSON array"},
      {"[\n{\"start\":\"20240101T100000Z\",}\n]", 2, u"expected a member name in quotes"},
      {"[\n{\"start\":\"20240101T100000Z\"}\n{}]", 3, u"expected ',' or ']'"},
      {"[\n\n{\"start\":\"2024-01-01\"}]", 3,
       u"the interval has no start of the form YYYYMMDDTHHMMSSZ"},
      {"[{\"start\":\"20240101T100000Z\",\"tags\":[1]}]", 1,
       u"a tag of the interval is not a text"},
      {"[\"x\n\"]", 1, u"a control character or line break inside a string"},
      {"[\"\xff\"]", 1, u"the text is not UTF-8"},
      {"[] 2", 1, u"unexpected text after the end of the document"},
      {"[{\"start\":\"20240101T100000Z\",\"x\":[\"\\ud83d\\ude00\", 1.5e3, -0, true, "
       "false, null, {\"b\":[]}, \"\\u00e9\"]}",
       1, u"expected ',' or ']'"},
  };
  for (const auto& c : cases) {
    const ImportedFile file = ReadTimewarriorExport(c.text, {}, {});
    EXPECT_EQ(file.error, c.what) << c.text;
    EXPECT_EQ(file.error_line, c.line) << c.text;
    EXPECT_TRUE(file.rows.empty());
  }
  const std::string deep = std::string(100, '[') + std::string(100, ']');
  EXPECT_EQ(ReadTimewarriorExport(deep, {}, {}).error, u"nested too deeply");
  std::string wide = "[[";
  for (int i = 0; i < kJsonMaxItemValues; ++i) wide += "0,";
  EXPECT_EQ(ReadTimewarriorExport(wide + "0]]", {}, {}).error,
            u"an item holds too many values");
}

}  // namespace
}  // namespace quillora
