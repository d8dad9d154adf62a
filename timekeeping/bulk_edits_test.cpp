#include "timekeeping/bulk_edits.h"

#include <gtest/gtest.h>

#include "platform/registry.h"
#include "platform/text.h"
#include "store/client_store.h"
#include "tests/fake_prompt.h"
#include "tests/test_volume.h"

namespace quillora {
namespace {

FileTime Day(int day, int hour = 0, int minute = 0, int second = 0) {
  FileTime t = 0;
  EXPECT_TRUE(
      SystemTimeToFileTime(MakeSystemTime(2024, 3, day, hour, minute, second), &t));
  return t;
}

class BulkEditsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(catalogue_.Open());
    ASSERT_TRUE(entries_.Open());
  }

  void Add(const std::u16string& client, FileTime start = Day(1), bool paid = false) {
    TimeEntry e;
    e.client = client;
    e.task = u"Work";
    e.start = start;
    e.paid = paid;
    ASSERT_TRUE(AddEntry(entries_, e));
  }
  void AddWithEveryField(const std::u16string& value) {
    TimeEntry e;
    for (int t = 0; t < kReplaceTypeCount; ++t) ReplaceField(e, ReplaceType(t)) = value;
    ASSERT_TRUE(AddEntry(entries_, e));
  }

  // One field of every entry, in store order.
  std::string Fields(ReplaceType type) {
    std::string out;
    TimeEntry e;
    entries_.Seek(SeekType::kBeginning, 0);
    while (ReadEntry(entries_, &e) == 0) {
      out += ToUtf8(ReplaceField(e, type)) + (e.paid ? "$" : "") + " ";
      entries_.Seek(SeekType::kCurrent, 1);
    }
    return out;
  }
  // The "Find:" list without its empty first item.
  std::string Choices(ReplaceType type) {
    const auto choices = FindChoices(catalogue_, *locale_, type);
    EXPECT_TRUE(!choices.empty() && choices[0].empty());
    std::string out;
    for (std::size_t i = 1; i < choices.size(); ++i) out += ToUtf8(choices[i]) + " ";
    return out;
  }
  ReplaceCounts Replace(ReplaceType type, const std::u16string& find,
                        const std::u16string& with) {
    return FindAndReplace(entries_, catalogue_, *locale_, prompt_, type, find, with);
  }

  testing::TestVolume volume_;
  std::unique_ptr<Registry> registry_ = OpenMemoryRegistry();
  std::unique_ptr<Locale> locale_ = Locale::UsEnglish();
  Catalogue catalogue_{volume_.store(), registry_.get()};
  EntryStore entries_{volume_.store()};
  testing::FakePrompt prompt_;
};

TEST_F(BulkEditsTest, FindAndReplaceTakesWholeValuesWithTheirCase) {
  AddClient(catalogue_.clients, u"Acme");
  AddClient(catalogue_.clients, u"ACME");
  for (const char16_t* client : {u"Acme", u"ACME", u"Acme Ltd", u"Acme"}) Add(client);

  const ReplaceCounts counts = Replace(ReplaceType::kClient, u"Acme", u"Apex");
  EXPECT_EQ(Fields(ReplaceType::kClient), "Apex ACME Acme Ltd Apex ");
  EXPECT_EQ(Choices(ReplaceType::kClient), "ACME Apex ");
  EXPECT_EQ(counts.catalogue_renamed, 1);
  EXPECT_EQ(counts.entries_changed, 2);
  EXPECT_EQ(counts.entries_failed, 0);
  EXPECT_EQ(prompt_.progress_title, u"Updating Records. Please Wait...");
  EXPECT_EQ(prompt_.progress_total, 5);
  EXPECT_EQ(prompt_.progress_texts.size(), 5u) << "the catalogue and every entry";
  EXPECT_EQ(prompt_.progress_ends, 1);
}

TEST_F(BulkEditsTest, EachTypeRenamesItsCatalogueAndItsEntryField) {
  const ClientId one = AddClient(catalogue_.clients, u"One");
  const ClientId two = AddClient(catalogue_.clients, u"Two");
  for (ClientId c : {one, two}) {
    AddProject(catalogue_.projects, *locale_, c, u"Old", u"");
    AddProject(catalogue_.projects, *locale_, c, u"Old", u"Old");
    AddProject(catalogue_.projects, *locale_, c, u"Web", u"Old");
    AddItem(catalogue_.tasks, *locale_, c, u"Old");
    AddItem(catalogue_.contacts, *locale_, c, u"Old");
  }
  {
    AuxStore aux(volume_.store());
    ASSERT_TRUE(aux.Open());
    for (auto kind :
         {ValueListKind::kPhase, ValueListKind::kCurrency, ValueListKind::kCustom1,
          ValueListKind::kCustom2, ValueListKind::kCustom3}) {
      ASSERT_TRUE(AddValue(aux, *locale_, kind, u"Old"));
    }
  }
  struct Case {
    ReplaceType type;
    int renamed;
    std::string choices_after;
  };
  // Projects: every record named Old (two projects and one project's task
  // record each); project-tasks: every task named Old; contacts: the first.
  const Case cases[] = {
      {ReplaceType::kProject, 4, "New Web "}, {ReplaceType::kProjectTask, 4, "New "},
      {ReplaceType::kTask, 2, "New "},        {ReplaceType::kBillTo, 1, "New Old "},
      {ReplaceType::kPhase, 1, "New "},       {ReplaceType::kCurrency, 1, "New "},
      {ReplaceType::kCustom1, 1, "New "},     {ReplaceType::kCustom2, 1, "New "},
      {ReplaceType::kCustom3, 1, "New "},
  };
  for (const Case& c : cases) {
    const std::string name = ToUtf8(ReplaceTypeName(c.type));
    while (entries_.Seek(SeekType::kBeginning, 0) != 0) {
      entries_.DeleteRecord(entries_.current_record_id());
    }
    AddWithEveryField(u"Old");
    AddWithEveryField(u"Other");
    const ReplaceCounts counts = Replace(c.type, u"Old", u"New");
    EXPECT_EQ(counts.catalogue_renamed, c.renamed) << name;
    EXPECT_EQ(counts.entries_changed, 1) << name;
    EXPECT_EQ(Choices(c.type), c.choices_after) << name;
    for (int t = 0; t < kReplaceTypeCount; ++t) {
      const auto other = ReplaceType(t);
      TimeEntry probe;
      const bool same_field = &ReplaceField(probe, other) == &ReplaceField(probe, c.type);
      EXPECT_EQ(Fields(other), same_field ? "New Other " : "Old Other ")
          << name << " / " << ToUtf8(ReplaceTypeName(other));
    }
  }
  EXPECT_EQ(ToUtf8(ReplaceTypeName(ReplaceType::kCustom2)), "Custom 2");
  EXPECT_EQ(ToUtf8(ReplaceTypeName(ReplaceType::kProjectTask)), "Project-Task");
}

TEST_F(BulkEditsTest, AValueThatNoEntryCarriesIsStillRenamedInTheCatalogue) {
  AddClient(catalogue_.clients, u"Idle");
  Add(u"Busy");
  Add(u"Busy");
  const ReplaceCounts counts = Replace(ReplaceType::kClient, u"Idle", u"Resting");
  EXPECT_EQ(counts.catalogue_renamed, 1);
  EXPECT_EQ(counts.entries_changed, 0);
  EXPECT_EQ(prompt_.progress_texts.size(), 3u);
  EXPECT_EQ(Choices(ReplaceType::kClient), "Resting ");
}

TEST_F(BulkEditsTest, TheFindListIsSortedWithoutDuplicatesOrEmptyNames) {
  const ClientId one = AddClient(catalogue_.clients, u"One");
  const ClientId two = AddClient(catalogue_.clients, u"Two");
  for (const char16_t* task : {u"beta", u"Alpha", u"alpha"}) {
    AddItem(catalogue_.tasks, *locale_, one, task);
  }
  AddItem(catalogue_.tasks, *locale_, two, u"beta");
  EXPECT_EQ(Choices(ReplaceType::kTask), "alpha Alpha beta ");
  EXPECT_EQ(Choices(ReplaceType::kPhase), "");
}

TEST_F(BulkEditsTest, OkChecksTheFindChoiceThenTheReplacementThenAsks) {
  struct Case {
    int index;
    std::u16string replacement;
    std::optional<Answer> answer;
    bool runs;
    std::u16string shown;
  };
  const std::u16string question =
      u"Are you sure to replace the text? Depending of the number of time entries, this "
      u"may "
      u"take several minutes.";
  const Case cases[] = {
      {0, u"X", std::nullopt, false, u"Please select a string to search for."},
      {0, u"", std::nullopt, false, u"Please select a string to search for."},
      {2, u"", std::nullopt, false, u"Please enter a string to replace with."},
      {1, u"X", Answer::kNo, false, question},
      {1, u"X", Answer::kYes, true, question},
  };
  for (const Case& c : cases) {
    prompt_.shown.clear();
    if (c.answer) prompt_.answers.push_back(*c.answer);
    EXPECT_EQ(ConfirmFindAndReplace(prompt_, c.index, c.replacement), c.runs) << c.index;
    ASSERT_EQ(prompt_.shown.size(), 1u);
    EXPECT_EQ(prompt_.shown[0].text, c.shown);
    EXPECT_EQ(prompt_.shown[0].icon,
              c.answer ? MessageIcon::kQuestion : MessageIcon::kExclamation);
    if (c.answer) {
      EXPECT_EQ(prompt_.shown[0].default_answer, Answer::kNo);
    }
  }
}

TEST_F(BulkEditsTest, MarkAllPaidTakesTheViewsRangeAndFilter) {
  Add(u"Acme", Day(1) - 1);
  Add(u"Acme", Day(1));
  Add(u"Beta", Day(2, 9, 0, 1));
  Add(u"Acme", Day(3, 23, 59, 59), true);
  Add(u"Acme", Day(3, 23, 59, 59) + 1);
  auto acme_only = [](const TimeEntry& e) { return e.client == u"Acme"; };
  int marked = -1;

  prompt_.answers.push_back(Answer::kNo);
  EXPECT_EQ(
      MarkAllPaid(entries_, prompt_, Day(1), Day(3, 23, 59, 59), acme_only, &marked),
      BulkOutcome::kDeclined);
  EXPECT_EQ(Fields(ReplaceType::kClient), "Acme Acme Beta Acme$ Acme ");
  EXPECT_EQ(
      prompt_.shown[0].text,
      u"Do you want to mark all entries paid using the filter from the current view?");

  prompt_.answers.push_back(Answer::kYes);
  EXPECT_EQ(
      MarkAllPaid(entries_, prompt_, Day(1), Day(3, 23, 59, 59), acme_only, &marked),
      BulkOutcome::kDone);
  EXPECT_EQ(marked, 1);
  EXPECT_EQ(Fields(ReplaceType::kClient), "Acme Acme$ Beta Acme$ Acme ");
}

TEST_F(BulkEditsTest, DeleteDataTakesTheWholeRangeOrTheNamedClients) {
  Add(u"Acme", Day(1) - 1);
  Add(u"Acme", Day(1));
  Add(u"Beta", Day(2, 9, 0, 1));
  Add(u"acme", Day(3, 23, 59, 59));
  Add(u"Gamma", Day(3, 23, 59, 59) + 1);
  AddClient(catalogue_.clients, u"Acme");
  DeleteCriteria range;
  range.start = Day(1);
  range.end = Day(2, 23, 59, 59);
  int deleted = -1;

  EXPECT_EQ(DeleteDataByCriteria(entries_, *locale_, prompt_, range, &deleted),
            BulkOutcome::kDeclined)
      << "no answer is Cancel";
  EXPECT_EQ(
      prompt_.shown[0].text,
      u"All data within the selected criteria will be permanently deleted.  Click OK to "
      u"delete or Cancel to cancel the operation.");
  EXPECT_EQ(prompt_.shown[0].buttons, QuestionButtons::kOkCancel);

  prompt_.answers.push_back(Answer::kOk);
  EXPECT_EQ(DeleteDataByCriteria(entries_, *locale_, prompt_, range, &deleted),
            BulkOutcome::kDone);
  EXPECT_EQ(deleted, 2);
  EXPECT_EQ(Fields(ReplaceType::kClient), "Acme acme Gamma ");

  DeleteCriteria clients;
  clients.by_clients = true;
  clients.clients = {u"Acme", u"Gamma"};
  prompt_.answers.push_back(Answer::kOk);
  EXPECT_EQ(DeleteDataByCriteria(entries_, *locale_, prompt_, clients, &deleted),
            BulkOutcome::kDone);
  EXPECT_EQ(deleted, 2);
  EXPECT_EQ(Fields(ReplaceType::kClient), "acme ");
  EXPECT_TRUE(FindClient(catalogue_.clients, u"Acme")) << "the catalogue stays";
}

}  // namespace
}  // namespace quillora
