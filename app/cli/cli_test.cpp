// The command line end to end: the binary on a fresh data folder.
#include <gtest/gtest.h>

#include "platform/data_folder.h"
#include "tests/cli_fixture.h"
#include "tests/seed_data.h"
#include "tests/temp_dir.h"

namespace quillora {
namespace {

using testing::RunQuillora;
using Args = std::vector<std::string>;

class CliTest : public testing::CliFixture {
 protected:
  // Stores an entry directly, as the window would have.
  ObjectId AddSampleEntry() {
    TimeEntry e =
        testing::EntryAt("2026-11-20T14:05:01", u"Acme \u00c9t\u00e9", u"Design");
    e.project = u"Web";
    e.duration = 17;
    e.rate = 6000;
    e.billable = true;
    e.currency = u"EUR";
    e.custom2 = u"c2";
    testing::SetNoteText(&e, u"line one\nC:\\path");
    return testing::SeedEntry(Data(), e);
  }
};

TEST_F(CliTest, HelpVersionAndUsageErrors) {
  auto r = Run({"--help"});
  EXPECT_EQ(r.status, 0);
  EXPECT_NE(r.out.find("Usage: quillora"), std::string::npos);
  EXPECT_NE(r.out.find("\n  settings "), std::string::npos);
  r = Run({"--version"});
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.out.rfind("quillora ", 0), 0u);
  r = Run({"show", "--help"});
  EXPECT_EQ(r.status, 0);
  EXPECT_NE(r.out.find("Usage: quillora show ID"), std::string::npos);

  for (const auto& bad :
       {Args{"frobnicate"}, Args{"show"}, Args{"show", "x1"}, Args{"show", "1", "2"},
        Args{"--bogus", "show", "1"}, Args{"show", "1", "--bogus"},
        Args{"settings", "set", "View"}}) {
    r = Run(bad);
    EXPECT_EQ(r.status, 2) << bad[0];
    EXPECT_NE(r.err.find("Try 'quillora --help'"), std::string::npos) << bad[0];
  }
}

TEST_F(CliTest, ShowPrintsEveryFieldInOrder) {
  const ObjectId id = AddSampleEntry();
  const auto r = Run({"show", std::to_string(id)});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out,
            "recordId=" + std::to_string(id) +
                "\nstart=2026-11-20T14:05:01\nclient=Acme \xc3\x89t\xc3\xa9\n"
                "project=Web\nphase=\ntask=Design\nduration=17\nrate=6000\n"
                "rateType=0\ncurrency=EUR\nbillable=1\npaid=0\nbillTo=\ncustom1=\n"
                "custom2=c2\ncustom3=\nnoteSize=40\nnote=line one\\r\\nC:\\\\path\n"
                "amount=10.200000000000001\n");
  EXPECT_EQ(Run({"settings", "set", "DefNewStyles", "0x2010"}).status, 0);
  EXPECT_NE(Run({"show", std::to_string(id)}).out.find("\namount=10\n"),
            std::string::npos)
      << "precise minutes bill 0.17 hours as ten minutes";

  const auto missing = Run({"show", std::to_string(id + 1)});
  EXPECT_EQ(missing.status, 1);
  EXPECT_EQ(missing.err, "Quillora: There is no time entry with record id " +
                             std::to_string(id + 1) + ".\n");
}

TEST_F(CliTest, DeleteAsksAndOnlyYesDeletes) {
  const std::string id = std::to_string(AddSampleEntry());
  auto r = Run({"delete", id});
  EXPECT_EQ(r.status, 1) << "no terminal answers No";
  EXPECT_NE(r.err.find("Are you sure to permanently delete this item?"),
            std::string::npos);
  EXPECT_EQ(Run({"show", id}).status, 0);
  r = Run({"--yes", "delete", id});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(Run({"show", id}).status, 1);
}

TEST_F(CliTest, SettingsSetRefusesWhatTheProgramCannotUse) {
  auto r = Run({"settings", "set", "MinTime", "20"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "MinTime=20\n");
  // Which values are refused, and why: store/settings_test.cpp.
  r = Run({"settings", "set", "View", "5"});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "Quillora: \"View\" must be from 1 to 4.\n");
  r = Run({"settings", "show"});
  EXPECT_NE(r.out.find("\nMinTime=20\n"), std::string::npos);
  EXPECT_EQ(r.out.rfind("View=2\n", 0), 0u);
}

TEST_F(CliTest, ADamagedOrUnusableDataFolderIsLeftAlone) {
  ASSERT_EQ(Run({"settings", "show"}).status, 0);
  const std::string garbage(4096, '\x17');
  testing::WriteFileBytes(Data() + "/" + kVolumeFileName, garbage);
  auto r = Run({"show", "1"});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err.rfind("Quillora: Unable to load database.\n", 0), 0u) << r.err;
  EXPECT_EQ(testing::ReadFileBytes(Data() + "/" + kVolumeFileName), garbage);

  testing::WriteFileBytes(dir_.File("plain-file"), "x");
  r = RunQuillora(dir_.File("plain-file"), {"settings", "show"});
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err.rfind("Quillora: Unable to load database.\n", 0), 0u);
}

}  // namespace
}  // namespace quillora
