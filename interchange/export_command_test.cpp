#include "interchange/export_command.h"

#include <gtest/gtest.h>

#include "interchange/export_test_fixture.h"
#include "tests/fake_prompt.h"

namespace quillora {
namespace {

using ExportCommandTest = testing::ExportTest;

constexpr char16_t kFailed[] =
    u"Export failed. Please make sure there is enough storage space and try agin.";

TEST_F(ExportCommandTest, AsksForTheFileOfTheFormatThenExports) {
  AddSamples();
  struct Case {
    ExportFormat format;
    std::u16string filter;
    std::u16string extension;
    std::string first_bytes;
  };
  for (const Case& c :
       {Case{ExportFormat::kCsv, u"CSV Files (*.csv)|*.csv|", u"csv", "\"Date\""},
        Case{ExportFormat::kXml, u"XML Files (*.xml)|*.xml|", u"xml", "<?xml"}}) {
    testing::FakePrompt prompt;
    prompt.files.push_back(Path());
    auto sources = Sources();
    EXPECT_EQ(RunExportCommand(c.format, SampleDays(), sources, prompt),
              ExportOutcome::kExported);
    ASSERT_EQ(prompt.choosers.size(), 1u);
    EXPECT_EQ(prompt.choosers[0].filter, c.filter);
    EXPECT_EQ(prompt.choosers[0].default_extension, c.extension);
    EXPECT_EQ(prompt.choosers[0].flags, kFileOverwritePrompt | kFileHideReadOnly);
    EXPECT_TRUE(prompt.shown.empty());
    EXPECT_EQ(Bytes().rfind(c.first_bytes, 0), 0u) << c.first_bytes;
  }
}

TEST_F(ExportCommandTest, CancellingTheRangeOrTheChooserWritesNothing) {
  AddSamples();
  testing::FakePrompt prompt;
  prompt.files.push_back(Path());
  auto sources = Sources();
  EXPECT_EQ(RunExportCommand(ExportFormat::kCsv, std::nullopt, sources, prompt),
            ExportOutcome::kCancelled);
  EXPECT_TRUE(prompt.choosers.empty()) << "no chooser after a cancelled range";

  prompt.files = {std::nullopt};
  EXPECT_EQ(RunExportCommand(ExportFormat::kXml, SampleDays(), sources, prompt),
            ExportOutcome::kCancelled);
  EXPECT_TRUE(prompt.shown.empty());
  EXPECT_FALSE(FileSystem::Posix().Exists(Path()));
}

}  // namespace
}  // namespace quillora
