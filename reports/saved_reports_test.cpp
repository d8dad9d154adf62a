#include "reports/saved_reports.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/text.h"
#include "tests/fake_prompt.h"
#include "tests/test_volume.h"

namespace quillora {
namespace {

class SavedReportsTest : public ::testing::Test {
 protected:
  ObjectStore& volume() { return volume_.store(); }

  CurrentReport Loaded(const std::u16string& name) {
    CurrentReport r;
    AuxStore aux(volume());
    EXPECT_TRUE(OpenSavedReports(aux));
    EXPECT_EQ(LoadSavedReport(aux, name, &r.definition, &r.record_id),
              SavedReportLookup::kFound);
    r.name = name;
    return r;
  }
  SaveReportResult Save(CurrentReport* report, const std::u16string& name,
                        const ReportDefinition& shown) {
    ReportEditor editor;
    editor.Load(shown);
    return SaveReport(volume(), prompt_, name, editor, report);
  }
  std::vector<std::u16string> Names() {
    AuxStore aux(volume());
    EXPECT_TRUE(OpenSavedReports(aux));
    std::vector<std::u16string> names;
    for (const auto& r : ListSavedReports(aux)) names.push_back(r.name);
    return names;
  }
  void AddValueRecord(std::uint16_t kind, const std::u16string& text) {
    AuxStore aux(volume());
    ASSERT_TRUE(OpenSavedReports(aux));
    ASSERT_NE(aux.WriteProps(0, {PropValue::Number(kPropListKind, kind),
                                 PropValue::Text(kPropItemName, text)}),
              0u);
  }
  int Questions() const {
    int n = 0;
    for (const auto& s : prompt_.shown) n += s.question;
    return n;
  }

  testing::TestVolume volume_;
  testing::FakePrompt prompt_;
};

TEST_F(SavedReportsTest, SaveListLoadAndOverwriteTheSameRecord) {
  CurrentReport report;
  EXPECT_EQ(Save(&report, u"Weekly", NewReportDefinition()), SaveReportResult::kSaved);
  EXPECT_EQ(Questions(), 0);
  EXPECT_NE(report.record_id, 0u);
  EXPECT_EQ(report.definition, NewReportDefinition());
  AddValueRecord(3, u"Design");  // a phase in the same database
  EXPECT_EQ(Names(), std::vector<std::u16string>{u"Weekly"});

  CurrentReport loaded = Loaded(u"Weekly");
  EXPECT_EQ(loaded.record_id, report.record_id);
  EXPECT_EQ(loaded.definition, NewReportDefinition());

  // Saving under its own name asks, and Yes updates that same record.
  ReportDefinition changed = NewReportDefinition();
  changed.SetTitle(u"Changed");
  prompt_.answers = {Answer::kYes};
  EXPECT_EQ(Save(&loaded, u"Weekly", changed), SaveReportResult::kSaved);
  ASSERT_EQ(Questions(), 1);
  EXPECT_EQ(prompt_.shown[0].text,
            u"The report already exists. Do you want to overwrite it?");
  EXPECT_EQ(prompt_.shown[0].title, u"Quillora");
  EXPECT_EQ(prompt_.shown[0].icon, MessageIcon::kQuestion);
  EXPECT_EQ(prompt_.shown[0].buttons, QuestionButtons::kYesNo);
  EXPECT_EQ(loaded.record_id, report.record_id);
  EXPECT_EQ(Names(), std::vector<std::u16string>{u"Weekly"});
  EXPECT_EQ(Loaded(u"Weekly").definition.Title(), u"Changed");

  // No writes nothing.
  prompt_.answers = {Answer::kNo};
  ReportDefinition other = NewReportDefinition();
  other.SetTitle(u"Other");
  EXPECT_EQ(Save(&loaded, u"Weekly", other), SaveReportResult::kDeclined);
  EXPECT_EQ(Loaded(u"Weekly").definition.Title(), u"Changed");
}

TEST_F(SavedReportsTest, ANewNameSavesANewRecordEvenAfterTheQuestion) {
  CurrentReport report;
  ASSERT_EQ(Save(&report, u"Alpha", NewReportDefinition()), SaveReportResult::kSaved);
  const ObjectId alpha = report.record_id;
  // The seek lands on "Alpha" for "Beta" and the name is not compared again:
  // the question comes, and Yes still writes a new record.
  prompt_.answers = {Answer::kYes};
  ASSERT_EQ(Save(&report, u"Beta", NewReportDefinition()), SaveReportResult::kSaved);
  EXPECT_EQ(Questions(), 1);
  EXPECT_NE(report.record_id, alpha);
  EXPECT_EQ(Names(), (std::vector<std::u16string>{u"Alpha", u"Beta"}));

  // Renaming the current report to an existing name and confirming leaves
  // two saved reports of that name.
  prompt_.answers = {Answer::kYes};
  ASSERT_EQ(Save(&report, u"Alpha", NewReportDefinition()), SaveReportResult::kSaved);
  EXPECT_EQ(Names(), (std::vector<std::u16string>{u"Alpha", u"Alpha", u"Beta"}));
}

TEST_F(SavedReportsTest, NameSeekWalksOnPastOtherRecords) {
  struct Case {
    std::vector<std::pair<std::uint16_t, std::u16string>> records;
    std::u16string name;
    bool asks;
  };
  const Case cases[] = {
      {{}, u"Any", false},
      {{{3, u"Alpha"}, {5, u"Zed"}}, u"Beta", false},
      {{{3, u"Alpha"}, {10, u"Zed"}}, u"Beta", true},     // walks on past a phase
      {{{10, u"Alpha"}, {3, u"Beta"}}, u"Gamma", false},  // the phase is the last one
      {{{10, u"Alpha"}, {3, u"Beta"}}, u"Alpha", true},
      {{{3, u"Beta"}, {10, u"Zed"}}, u"Aardvark", true},  // nothing smaller: walks on
      {{{10, u"beta"}}, u"Beta", true},
      {{{0, u""}}, u"Any", false},
  };
  for (const Case& c : cases) {
    testing::TestVolume fresh;
    AuxStore aux(fresh.store());
    ASSERT_TRUE(OpenSavedReports(aux));
    for (const auto& [kind, name] : c.records) {
      PropList props = {PropValue::Number(kPropListKind, kind)};
      if (!name.empty()) props.push_back(PropValue::Text(kPropItemName, name));
      ASSERT_NE(aux.WriteProps(0, props), 0u);
    }
    EXPECT_EQ(SaveNameSeekReachesReport(aux, c.name), c.asks) << ToUtf8(c.name);
  }
}

TEST_F(SavedReportsTest, LookupTellsNoneFromNotFoundAndDamaged) {
  CurrentReport r;
  ReportDefinition d;
  ObjectId id = 0;
  {
    AuxStore aux(volume());
    ASSERT_TRUE(OpenSavedReports(aux));
    EXPECT_EQ(LoadSavedReport(aux, u"X", &d, &id), SavedReportLookup::kNoSavedReport);
  }
  AddValueRecord(3, u"X");
  ASSERT_EQ(Save(&r, u"Y", NewReportDefinition()), SaveReportResult::kSaved);
  AuxStore aux(volume());
  ASSERT_TRUE(OpenSavedReports(aux));
  EXPECT_EQ(LoadSavedReport(aux, u"X", &d, &id), SavedReportLookup::kNotFound)
      << "a phase of that name is not a report";
  EXPECT_EQ(LoadSavedReport(aux, u"y", &d, &id), SavedReportLookup::kNotFound);
  ASSERT_NE(
      aux.WriteProps(r.record_id, {PropValue::Blob(kPropReportDefinition, {1, 2, 3})}),
      0u);
  EXPECT_EQ(LoadSavedReport(aux, u"Y", &d, &id), SavedReportLookup::kDamaged);
  EXPECT_EQ(id, r.record_id);
}

TEST_F(SavedReportsTest, DeleteAndRenameKeepTheDefaultReport) {
  CurrentReport r;
  for (const char16_t* name : {u"A", u"B", u"C"}) {
    r = CurrentReport();
    prompt_.answers = {Answer::kYes};
    ASSERT_EQ(Save(&r, name, NewReportDefinition()), SaveReportResult::kSaved);
  }
  AddValueRecord(5, u"A");
  Settings settings;
  settings.default_report = std::u16string(u"A");

  EXPECT_EQ(RenameSavedReports(volume(), prompt_, u"A", u"D", &settings),
            SavedReportChange::kDone);
  EXPECT_EQ(Names(), (std::vector<std::u16string>{u"B", u"C", u"D"}));
  EXPECT_EQ(settings.default_report, u"D");

  prompt_.shown.clear();
  prompt_.answers = {Answer::kNo};
  EXPECT_EQ(RenameSavedReports(volume(), prompt_, u"B", u"C", &settings),
            SavedReportChange::kDeclined);
  ASSERT_EQ(prompt_.shown.size(), 1u);
  EXPECT_EQ(prompt_.shown[0].text,
            u"This report already exists. Do you wish to overwrite it?");
  EXPECT_EQ(Names(), (std::vector<std::u16string>{u"B", u"C", u"D"}));
  prompt_.answers = {Answer::kYes};
  EXPECT_EQ(RenameSavedReports(volume(), prompt_, u"B", u"C", &settings),
            SavedReportChange::kDone);
  EXPECT_EQ(Names(), (std::vector<std::u16string>{u"C", u"D"}));
  EXPECT_EQ(RenameSavedReports(volume(), prompt_, u"Q", u"R", &settings),
            SavedReportChange::kNotFound);

  prompt_.answers = {Answer::kNo};
  EXPECT_EQ(DeleteSavedReports(volume(), prompt_, u"C", &settings),
            SavedReportChange::kDeclined);
  EXPECT_EQ(prompt_.shown.back().text, u"Are you sure to permanently delete this item?");
  EXPECT_EQ(Names(), (std::vector<std::u16string>{u"C", u"D"}));
  prompt_.answers = {Answer::kYes, Answer::kYes};
  EXPECT_EQ(DeleteSavedReports(volume(), prompt_, u"C", &settings),
            SavedReportChange::kDone);
  EXPECT_EQ(settings.default_report, u"D");
  EXPECT_EQ(DeleteSavedReports(volume(), prompt_, u"D", &settings),
            SavedReportChange::kDone);
  EXPECT_EQ(settings.default_report, u"");
  EXPECT_TRUE(Names().empty());
  EXPECT_EQ(DeleteSavedReports(volume(), prompt_, u"D", &settings),
            SavedReportChange::kNoSavedReport);
  AuxStore aux(volume());
  ASSERT_TRUE(OpenSavedReports(aux));
  int records = 0;
  for (ObjectId id = aux.Seek(SeekType::kBeginning, 0); id != 0;
       id = aux.Seek(SeekType::kCurrent, 1)) {
    ++records;
  }
  EXPECT_EQ(records, 1) << "the currency value is kept";
}

}  // namespace
}  // namespace quillora
