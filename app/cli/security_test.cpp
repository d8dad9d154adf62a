// What the program protects: a private data folder, and markup in user text
// that never becomes markup in the HTML report or the XML export.
#include <dirent.h>
#include <sys/stat.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/run_quillora.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

using testing::RunQuillora;

TEST(SecurityTest, DataFolderIsPrivateAndEveryFileInItToo) {
  testing::TempDir dir;
  const std::string data = dir.File("new/data");
  ASSERT_EQ(RunQuillora(data, {"add", "--date", "2026-11-20", "--task", "Work", "--client", "Acme",
                               "--duration", "1"})
                .status,
            0);
  ASSERT_EQ(RunQuillora(data, {"settings", "set", "MinTime", "15"}).status, 0);
  for (const std::string& folder : {dir.File("new"), data}) {
    struct stat st {};
    ASSERT_EQ(stat(folder.c_str(), &st), 0) << folder;
    EXPECT_EQ(st.st_mode & 0777, 0700u) << folder;
  }
  DIR* listing = opendir(data.c_str());
  ASSERT_NE(listing, nullptr);
  int files = 0;
  while (const dirent* e = readdir(listing)) {
    const std::string name = e->d_name;
    if (name == "." || name == "..") continue;
    struct stat st {};
    ASSERT_EQ(stat((data + "/" + name).c_str(), &st), 0) << name;
    EXPECT_EQ(st.st_mode & 0077, 0u) << name << " is open to others";
    ++files;
  }
  closedir(listing);
  EXPECT_GE(files, 2) << "the volume and the registry";
}

// Text that would open an element, an entity, a script or an attribute if it
// were written as it is.
constexpr char kHostile[] = "<b x='1' y=\"2\">&amp;</b><script>alert(1)</script>";

TEST(SecurityTest, MarkupInEveryFieldIsWrittenAsTextInReportsAndXml) {
  testing::TempDir dir;
  const std::string data = dir.File("data");
  const std::string h = kHostile;
  auto r = RunQuillora(data, {"add", "--date", "2026-11-20", "--start", "09:00",
                              "--client", "C" + h, "--project", "P" + h, "--phase", "F" + h,
                              "--task", "T" + h, "--duration", "1.5", "--billable",
                              "--bill-to", "B" + h, "--rate", "10", "--currency", "$" + h,
                              "--custom1", "1" + h, "--custom2", "2" + h, "--custom3",
                              "3" + h, "--note", "N" + h + "\\nline two " + h});
  ASSERT_EQ(r.status, 0) << r.err;
  const std::string xml = dir.File("out.xml");
  r = RunQuillora(data, {"export", "xml", "--from", "2026-11-01", "--to", "2026-11-30", xml});
  ASSERT_EQ(r.status, 0) << r.err;

  std::vector<std::string> columns;
  std::string all;
  for (const char* label :
       {"Entry Date", "Client", "Project", "Phase", "Task", "Duration", "Currency",
        "Billable/Non-Billable", "Paid/Unpaid", "Start Time", "Bill To", "Custom 1",
        "Custom 2", "Custom 3", "Rate Type", "Amount", "Notes", "Rate"}) {
    all += (all.empty() ? "" : ",") + std::string(label);
  }
  const std::string tabular = dir.File("tabular.htm");
  const std::string grouped = dir.File("grouped.htm");
  ASSERT_EQ(RunQuillora(data, {"--yes", "report-def", "save", "Tab", "--title", "R" + h, "--type",
                               "Tabular", "--columns", all})
                .status,
            0);
  ASSERT_EQ(RunQuillora(data, {"--yes", "report-def", "save", "Grp", "--title", "G" + h, "--type",
                               "Group By Field", "--group-by", "Client", "--columns", all})
                .status,
            0);
  r = RunQuillora(data, {"report", "Tab", "--from", "2026-11-01", "--to", "2026-11-30",
                         tabular});
  ASSERT_EQ(r.status, 0) << r.err;
  r = RunQuillora(data, {"report", "Grp", "--from", "2026-11-01", "--to", "2026-11-30",
                         grouped});
  ASSERT_EQ(r.status, 0) << r.err;

  for (const std::string& file : {xml, tabular, grouped}) {
    const std::string bytes = testing::ReadFileBytes(file);
    ASSERT_FALSE(bytes.empty()) << file;
    // No piece of the hostile text survives as markup...
    for (const char* raw : {"<b x=", "</b>", "<script", "</script>", "&amp;</b>"}) {
      EXPECT_EQ(bytes.find(raw), std::string::npos) << file << " holds " << raw;
    }
    // ...and every field is there, escaped.
    int seen = 0;
    for (std::size_t at = 0; (at = bytes.find("&lt;script", at)) != std::string::npos; ++at)
      ++seen;
    EXPECT_GE(seen, 8) << file;
  }
}

}  // namespace
}  // namespace quillora
