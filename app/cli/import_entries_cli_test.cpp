// import-entries end to end: the arguments reach the import, its lines and
// exit statuses come back (the mapping rules, and entries already present,
// are tested in interchange/).
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "tests/run_quillora.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

using testing::RunQuillora;
using testing::RunResult;
using testing::WriteFileBytes;

TEST(ImportEntriesCliTest, ReportsImportsSkipsRefusalsAndUsage) {
  setenv("TZ", "UTC", 1);
  testing::TempDir dir;
  const std::string data = dir.File("data");
  const std::string json = dir.File("history.json");
  WriteFileBytes(json,
                 "[\n{\"start\":\"20241120T090000Z\",\"end\":\"20241120T103000Z\","
                 "\"tags\":[\"Call\"]},\n{\"start\":\"20241121T090000Z\"}\n]\n");
  const std::string csv = dir.File("toggl.csv");
  WriteFileBytes(csv, "Start date,Duration,Description\n2024-11-20,0:45:00,Review\n");
  const std::string bad = dir.File("bad.json");
  WriteFileBytes(bad, "[\n{\"start\":1}]");

  const struct {
    std::vector<std::string> args;
    int status;
    std::string out;
    std::string err;
  } cases[] = {
      {{"import-entries", "timewarrior", json, "--client", "Acme", "--dry-run"},
       1,
       "2024-11-20\t09:00\tAcme\t\tCall\t1.50\t\n"
       "Would import 1 entries; 0 already present; 1 skipped.\n"
       "line 3: still running (no end)\n",
       ""},
      {{"import-entries", "timewarrior", json, "--client", "Acme"},
       1,
       "Imported 1 entries; 0 already present; 1 skipped.\nline 3: still running (no "
       "end)\n",
       ""},
      {{"import-entries", "csv", csv, "--client", "Acme", "--map", "duration=duration"},
       0,
       "Imported 1 entries; 0 already present; 0 skipped.\n",
       ""},
      {{"import-entries", "timewarrior", bad},
       1,
       "",
       "Quillora: The file \"" + bad +
           "\" cannot be imported: line 2: the interval has no start of the form "
           "YYYYMMDDTHHMMSSZ.\n"},
      {{"import-entries", "timewarrior", "-"},
       1,
       "",
       "Quillora: The file \"-\" cannot be imported: line 1: unexpected end of the "
       "text.\n"},
  };
  for (const auto& c : cases) {
    const RunResult r = RunQuillora(data, c.args);
    EXPECT_EQ(r.status, c.status) << c.args[2] << r.err;
    EXPECT_EQ(r.out, c.out) << c.args[2];
    EXPECT_EQ(r.err, c.err) << c.args[2];
  }
  const std::string ids = RunQuillora(data, {"list", "--day", "2024-11-20", "--ids"}).out;
  EXPECT_EQ(std::count(ids.begin(), ids.end(), '\n'), 2) << ids;
  for (const std::vector<std::string>& usage :
       {std::vector<std::string>{"import-entries", "csv", csv, "--map", "A=nothing"},
        {"import-entries", "csv", "-"},
        {"import-entries", "timewarrior", json, "--date-format", "DD.MM.YYYY"},
        {"import-entries", "json", json}}) {
    EXPECT_EQ(RunQuillora(data, usage).status, 2) << usage[1];
  }
}

}  // namespace
}  // namespace quillora
