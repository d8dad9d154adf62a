#include "timekeeping/entry_editor.h"

#include <gtest/gtest.h>

#include "platform/registry.h"
#include "platform/text.h"
#include "store/note_text.h"
#include "store/rates.h"
#include "store/string_table.h"
#include "tests/fake_prompt.h"
#include "tests/test_volume.h"
#include "timekeeping/duration.h"

namespace quillora {
namespace {

constexpr char16_t kClientMessage[] =
    u"Please enter a client name.  You cannot leave Client field blank.";
constexpr char16_t kTaskMessage[] =
    u"Please enter a task name.  You cannot have a blank Task field.";

SystemTime Day(int y, int m, int d) { return MakeSystemTime(y, m, d); }

FileTime Ticks(const SystemTime& st) {
  FileTime ft = 0;
  EXPECT_TRUE(SystemTimeToFileTime(st, &ft));
  return ft;
}

std::string Joined(const std::vector<std::u16string>& items) {
  std::string out;
  for (const auto& i : items) {
    if (!out.empty()) out += ',';
    out += ToUtf8(i);
  }
  return out;
}

class EntryEditorTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(catalogue_.Open());
    ASSERT_TRUE(entries_.Open());
    settings_.option_bits = 0;
  }

  EditorServices Services() { return {catalogue_, settings_, *locale_, prompt_, clock_}; }

  // Acme with projects Web (tasks Design, Build) and Mobile, the task Admin of
  // its own, the contact Bob and an overtime and a fixed rate; default rates
  // Standard and Fixed fee.
  void AddAcme() {
    acme_ = AddClient(catalogue_.clients, u"Acme");
    AddClient(catalogue_.clients, u"Beta");
    for (auto [project, task] : {std::pair{u"Web", u""},
                                 {u"Web", u"Design"},
                                 {u"Web", u"Build"},
                                 {u"Mobile", u""}}) {
      AddProject(catalogue_.projects, *locale_, acme_, project, task);
    }
    AddItem(catalogue_.tasks, *locale_, acme_, u"Admin");
    AddItem(catalogue_.contacts, *locale_, acme_, u"Bob");
    AddRate(catalogue_.rates, kRateNormal, 60, 0, u"Standard", false);
    AddRate(catalogue_.rates, kRateFixed, 100, 0, u"Fixed fee", false);
    AddRate(catalogue_.rates, kRateOvertime, 90, acme_, u"Late", false);
  }

  std::vector<TimeEntry> StoredEntries() {
    std::vector<TimeEntry> all;
    entries_.Seek(SeekType::kBeginning, 0);
    TimeEntry e;
    while (ReadEntry(entries_, &e) == 0) {
      all.push_back(e);
      if (entries_.Seek(SeekType::kCurrent, 1) == 0) break;
    }
    return all;
  }

  testing::TestVolume volume_;
  std::unique_ptr<Registry> registry_ = OpenMemoryRegistry();
  std::unique_ptr<Locale> locale_ = Locale::UsEnglish();
  Catalogue catalogue_{volume_.store(), registry_.get()};
  EntryStore entries_{volume_.store()};
  Settings settings_;
  testing::FakePrompt prompt_;
  FixedClock clock_{MakeSystemTime(2026, 11, 18, 14, 25, 37)};
  ClientId acme_ = 0;
};

TEST_F(EntryEditorTest, ConfirmChecksInOrderWithTheirMessagesAndFocus) {
  struct Case {
    std::u16string client, duration, task, rate;
    std::u16string message;  // empty: accepted
    EditorField focus;
  } cases[] = {
      {u"", u"", u"", u"x", kClientMessage, EditorField::kClient},
      {u"", u"1.5", u"T", u"", kClientMessage, EditorField::kClient},
      {u"Acme", u"", u"", u"x", kDurationRequiredMessage, EditorField::kDuration},
      {u"Acme", u"1h", u"", u"x", kTaskMessage, EditorField::kTask},
      {u"Acme", u"1h", u"T", u"x", kNumericOnlyMessage, EditorField::kDuration},
      {u"Acme", u"1,5", u"T", u"12a", kNumericOnlyMessage, EditorField::kRate},
      {u"Acme", u"1,5", u"T", u"12,5", u"", EditorField::kNone},
      {u"Acme", u".", u"T", u"-", u"", EditorField::kNone},
  };
  for (const Case& c : cases) {
    prompt_.shown.clear();
    EntryEditor editor(Services(), NewEntry(settings_, Day(2026, 11, 18)));
    editor.SetClient(c.client);
    editor.SetDurationText(c.duration);
    editor.SetTask(c.task);
    editor.SetRateText(c.rate);
    const std::string where =
        ToUtf8(c.client + u"|" + c.duration + u"|" + c.task + u"|" + c.rate);
    EXPECT_EQ(editor.Save(entries_),
              c.message.empty() ? SaveResult::kSaved : SaveResult::kRefused)
        << where;
    EXPECT_EQ(editor.focus(), c.focus) << where;
    if (c.message.empty()) {
      EXPECT_TRUE(prompt_.shown.empty()) << where;
    } else {
      ASSERT_EQ(prompt_.shown.size(), 1u) << where;
      EXPECT_EQ(prompt_.shown[0].text, c.message) << where;
      EXPECT_EQ(prompt_.shown[0].title, u"Quillora");
      EXPECT_EQ(prompt_.shown[0].icon, MessageIcon::kExclamation);
    }
  }
  // Only the two accepted cases were written: "1,5" is one hour, "." none,
  // "12,5" is a rate of 12 and "-" a rate of 0.
  const auto stored = StoredEntries();
  ASSERT_EQ(stored.size(), 2u);
  EXPECT_EQ(stored[0].duration, 100u);
  EXPECT_EQ(stored[0].rate, 1200u);
  EXPECT_EQ(stored[1].duration, 0u);
  EXPECT_EQ(stored[1].rate, 0u);
}

TEST_F(EntryEditorTest, LeavingTheGeneralPageChecksClientThenDuration) {
  EntryEditor editor(Services(), NewEntry(settings_, Day(2026, 11, 18)));
  EXPECT_FALSE(editor.LeaveGeneralPage());
  editor.SetClient(u"Acme");
  EXPECT_FALSE(editor.LeaveGeneralPage());
  editor.SetDurationText(u"0.3");
  EXPECT_TRUE(editor.LeaveGeneralPage()) << "the task is checked only on OK";
  EXPECT_EQ(prompt_.Texts(),
            (std::vector<std::u16string>{kClientMessage, kDurationRequiredMessage}));
  EXPECT_EQ(editor.entry().duration, 30u);
  EXPECT_EQ(editor.entry().client, u"Acme");
}

TEST_F(EntryEditorTest, NewEntriesTakeTheDefaults) {
  settings_.option_bits = kOptionBillable;
  settings_.default_currency = u"EUR";
  const TimeEntry e = NewEntry(settings_, MakeSystemTime(2026, 3, 9, 17, 45, 12));
  EXPECT_TRUE(e.billable);
  EXPECT_EQ(e.currency, u"EUR");
  EXPECT_EQ(e.start, Ticks(Day(2026, 3, 9))) << "the date only, no start time";
  EXPECT_FALSE(HasStartTime(e));
  EXPECT_EQ(e.duration, 0u);
  EXPECT_EQ(e.rateType, kRateNormal);
  EXPECT_EQ(e.recordId, 0u);

  EntryEditor editor(Services(), e);
  EXPECT_EQ(editor.general().duration, u"") << "a new entry's duration is typed";
  EXPECT_FALSE(editor.general().start.has_value());
  EXPECT_EQ(editor.general().date, Day(2026, 3, 9));
  EXPECT_TRUE(editor.billing().billable);
  EXPECT_EQ(editor.billing().currency, u"EUR");
  EXPECT_EQ(editor.custom_fields().labels[0], u"Custom 1");

  settings_.option_bits = 0;
  TimeEntry timed = NewEntry(settings_, Day(2026, 3, 9));
  SystemTime at = MakeSystemTime(2026, 3, 9, 8, 15, 42);
  timed.start = Ticks(at);
  SetDurationFromTimer(&timed, 5400, settings_);
  EntryEditor from_timer(Services(), timed);
  EXPECT_FALSE(from_timer.billing().billable);
  EXPECT_EQ(from_timer.general().duration, u"1.50");
  ASSERT_TRUE(from_timer.general().start.has_value());
  EXPECT_EQ(from_timer.general().start->minute, 15);
}

TEST_F(EntryEditorTest, ListsCascadeFromClientToProjectToTask) {
  AddAcme();
  AuxStore aux(volume_.store());
  ASSERT_TRUE(aux.Open());
  AddValue(aux, *locale_, ValueListKind::kPhase, u"Plan");
  AddValue(aux, *locale_, ValueListKind::kPhase, u"Build");

  TimeEntry e = NewEntry(settings_, Day(2026, 11, 18));
  e.client = u"Acme";
  e.project = u"Web";
  EntryEditor editor(Services(), e);
  EXPECT_EQ(Joined(editor.client_list()), "Acme,Beta");
  EXPECT_EQ(Joined(editor.phase_list()), "Build,Plan");
  EXPECT_EQ(Joined(editor.project_list()), "Mobile,Web");
  EXPECT_EQ(Joined(editor.task_list()), "Build,Design");

  editor.SetProject(u"Mobile");
  editor.ProjectLostFocus();
  EXPECT_EQ(Joined(editor.task_list()), "") << "a project of the catalogue without tasks";
  editor.SetProject(u"Unknown");
  editor.ProjectLostFocus();
  EXPECT_EQ(Joined(editor.task_list()), "Admin");
  editor.SetProject(u"");
  editor.ProjectLostFocus();
  EXPECT_EQ(Joined(editor.task_list()), "Admin");

  editor.SetClient(u"acme");
  editor.ClientLostFocus();
  EXPECT_EQ(Joined(editor.project_list()), "") << "letter case counts";
  EXPECT_EQ(Joined(editor.task_list()), "");
  editor.SetClient(u"Acme");
  editor.ClientLostFocus();
  EXPECT_EQ(Joined(editor.project_list()), "Mobile,Web");

  editor.OpenBillingPage();
  EXPECT_EQ(Joined(editor.bill_to_list()), "Bob");
  EXPECT_EQ(Joined(editor.currency_list()), "USD");
  EXPECT_EQ(editor.DurationChoices().size(), 24u);
}

TEST_F(EntryEditorTest, SetNeedsADurationAndComputesItFromStartAndEnd) {
  EntryEditor editor(Services(), NewEntry(settings_, Day(2026, 11, 18)));
  EXPECT_FALSE(editor.BeginSetStartEnd().has_value());
  EXPECT_EQ(prompt_.Texts(), std::vector<std::u16string>{kDurationRequiredMessage});

  editor.SetDurationText(u"1.5");
  const auto pickers = editor.BeginSetStartEnd();
  ASSERT_TRUE(pickers.has_value());
  EXPECT_EQ(pickers->start, clock_.LocalNow()) << "no start time: now";
  EXPECT_EQ(pickers->end.hour, 15);
  EXPECT_EQ(pickers->end.minute, 55);
  EXPECT_EQ(editor.entry().duration, 150u);

  settings_.option_bits = kOptionGranularity;
  settings_.granularity = 15;
  // The end before the start's hour lies on the next day; the pickers'
  // hidden seconds take no minute off.
  editor.EndSetStartEnd(MakeSystemTime(2026, 11, 18, 23, 0, 37),
                        MakeSystemTime(2026, 11, 18, 1, 20, 0));
  EXPECT_EQ(editor.entry().duration, 250u) << "140 minutes rounded up to 2.50";
  EXPECT_EQ(editor.general().duration, u"2.50");
  EXPECT_EQ(editor.entry().start, Ticks(MakeSystemTime(2026, 11, 18, 23, 0, 1)))
      << "the start time is marked by one second";

  // Changing the date afterwards keeps the start time of day.
  editor.SetClient(u"Acme");
  editor.SetTask(u"T");
  editor.SetDate(Day(2026, 11, 20));
  ASSERT_TRUE(editor.Confirm());
  EXPECT_EQ(editor.entry().start, Ticks(MakeSystemTime(2026, 11, 20, 23, 0, 1)));
  EXPECT_EQ(editor.entry().duration, 250u) << "a duration not typed is not read again";
}

TEST_F(EntryEditorTest, StartFieldMarksOrClearsTheStartTime) {
  TimeEntry e = NewEntry(settings_, Day(2026, 11, 18));
  e.client = u"Acme";
  e.task = u"T";
  e.duration = 100;
  e.recordId = 77;                                           // an existing entry
  e.start = Ticks(MakeSystemTime(2026, 11, 18, 9, 12, 37));  // from a timer
  {
    EntryEditor editor(Services(), e);
    ASSERT_TRUE(editor.Confirm());
    EXPECT_EQ(editor.entry().start, e.start) << "untouched fields stay as they were";
  }
  {
    EntryEditor editor(Services(), e);
    editor.SetStart(MakeSystemTime(2000, 1, 1, 7, 5, 59));
    ASSERT_TRUE(editor.Confirm());
    EXPECT_EQ(editor.entry().start, Ticks(MakeSystemTime(2026, 11, 18, 7, 5, 1)));
  }
  {
    EntryEditor editor(Services(), e);
    editor.SetStart(std::nullopt);
    ASSERT_TRUE(editor.Confirm());
    EXPECT_EQ(editor.entry().start, Ticks(Day(2026, 11, 18)));
  }
}

TEST_F(EntryEditorTest, ATypedDurationIsStoredThroughTheGranularityRule) {
  settings_.option_bits = kOptionGranularity;
  settings_.granularity = 20;
  TimeEntry e = NewEntry(settings_, Day(2026, 11, 18));
  e.client = u"Acme";
  e.task = u"T";
  e.duration = 66;  // 40 minutes from the start/end dialog
  e.recordId = 5;
  EntryEditor kept(Services(), e);
  ASSERT_TRUE(kept.Confirm());
  EXPECT_EQ(kept.entry().duration, 66u);

  EntryEditor typed(Services(), e);
  typed.SetDurationText(u"0.67");
  ASSERT_TRUE(typed.Confirm());
  EXPECT_EQ(typed.entry().duration, 100u);
}

TEST_F(EntryEditorTest, RateChoiceFixedAndCalculate) {
  AddAcme();
  TimeEntry e = NewEntry(settings_, Day(2026, 11, 18));
  e.client = u"Acme";
  e.task = u"T";
  e.duration = 150;
  e.rate = 9000;
  e.rateType = kRateOvertime;
  e.recordId = 9;
  EntryEditor editor(Services(), e);
  editor.OpenBillingPage();
  const RateTree& tree = editor.rate_tree();
  ASSERT_TRUE(tree.custom_rate);
  ASSERT_EQ(tree.groups.size(), 2u);
  EXPECT_EQ(tree.groups[0].heading, u"(Default Rates)");
  EXPECT_EQ(tree.groups[1].heading, u"Acme");
  EXPECT_EQ(editor.rate_choice(), (RateChoice{false, 1, 0}))
      << "the overtime rate matches";
  EXPECT_FALSE(editor.billing().fixed_enabled);
  EXPECT_FALSE(editor.SetFixed(true));

  ASSERT_TRUE(editor.ChooseRate(0, 1));  // "Fixed fee (100.00)"
  EXPECT_EQ(editor.billing().rate, u"100.00");
  EXPECT_TRUE(editor.billing().fixed);
  EXPECT_EQ(editor.RateTypeShown(), kRateFixed);
  EXPECT_FALSE(editor.ChooseRate(2, 0));

  editor.ChooseCustomRate();
  EXPECT_TRUE(editor.billing().fixed_enabled);
  EXPECT_TRUE(editor.SetFixed(false));
  editor.SetCurrency(u"EUR");
  editor.SetRateText(u"60");
  editor.Calculate();
  EXPECT_EQ(editor.billing().total, u"EUR90.00");
  EXPECT_EQ(editor.entry().rateType, kRateNormal);
  EXPECT_TRUE(editor.SetFixed(true));
  editor.Calculate();
  EXPECT_EQ(editor.billing().total, u"EUR60.00") << "a fixed rate is the amount";
  EXPECT_EQ(editor.entry().rateType, kRateFixed);

  editor.SetRateText(u"6o");
  editor.Calculate();
  EXPECT_EQ(prompt_.Texts().back(), kNumericOnlyMessage);
  EXPECT_EQ(editor.billing().total, u"EUR60.00");

  // Without "Calculate" a chosen rate keeps its own type.
  EntryEditor other(Services(), e);
  other.OpenBillingPage();
  ASSERT_TRUE(other.ChooseRate(0, 0));  // "Standard (60.00)"
  ASSERT_TRUE(other.ChooseRate(1, 0));  // "Late (90.00)", overtime
  ASSERT_TRUE(other.Confirm());
  EXPECT_EQ(other.entry().rate, 9000u);
  EXPECT_EQ(other.entry().rateType, kRateOvertime);
}

TEST_F(EntryEditorTest, TextsAreCutAtTheirFieldLimits) {
  EntryEditor editor(Services(), NewEntry(settings_, Day(2026, 11, 18)));
  const std::u16string long_text(300, u'x');
  editor.SetClient(long_text);
  editor.SetProject(long_text);
  editor.SetPhase(long_text);
  editor.SetBillTo(long_text);
  editor.SetCurrency(long_text);
  editor.SetCustomField(0, long_text);
  for (const std::u16string* cut :
       {&editor.general().client, &editor.general().project, &editor.general().phase,
        &editor.billing().bill_to, &editor.custom_fields().values[0]}) {
    EXPECT_EQ(*cut, std::u16string(127, u'x'));
  }
  EXPECT_EQ(editor.billing().currency, std::u16string(15, u'x'));
  editor.SetTask(std::u16string(126, u't') + u"\U0001F600");
  editor.SetDurationText(u"1.23456");
  editor.SetRateText(u"123456789.123");
  EXPECT_EQ(editor.general().task, std::u16string(126, u't'))
      << "a surrogate pair is not split";
  EXPECT_EQ(editor.general().duration, u"1.2345");
  EXPECT_EQ(editor.billing().rate, u"123456789.1");
}

TEST_F(EntryEditorTest, SavingAddsOrRewritesAndGrowsTheCatalogue) {
  AddAcme();
  EntryEditor editor(Services(), NewEntry(settings_, Day(2026, 11, 18)));
  editor.SetClient(u"Acme");
  editor.SetProject(u"Intranet");
  editor.SetTask(u"Design");
  editor.SetDurationText(u"2");
  editor.SetNoteText(u"line one\r\nline two");
  ASSERT_EQ(editor.Save(entries_), SaveResult::kSaved);
  const ObjectId id = editor.entry().recordId;
  ASSERT_NE(id, 0u);

  auto stored = StoredEntries();
  ASSERT_EQ(stored.size(), 1u);
  EXPECT_EQ(stored[0].recordId, id);
  EXPECT_EQ(stored[0].project, u"Intranet");
  EXPECT_EQ(NoteBlobToText(stored[0].note.data(), stored[0].note.size()),
            u"line one\r\nline two");

  std::string projects;
  for (const Project& p : ProjectsOf(catalogue_.projects, *locale_, acme_)) {
    projects += ToUtf8(p.name) + ":" + Joined(p.tasks) + " ";
  }
  EXPECT_EQ(projects, "Web:Design,Build Mobile: Intranet:Design ");

  // Editing rewrites the same record; a cleared project and note disappear.
  EntryEditor again(Services(), stored[0]);
  again.SetProject(u"");
  again.SetNoteText(u"");
  ASSERT_EQ(again.Save(entries_), SaveResult::kSaved);
  stored = StoredEntries();
  ASSERT_EQ(stored.size(), 1u);
  EXPECT_EQ(stored[0].recordId, id);
  EXPECT_EQ(stored[0].project, u"");
  EXPECT_EQ(stored[0].noteSize, 0);

  // An entry whose record is gone cannot be rewritten.
  TimeEntry gone = stored[0];
  ASSERT_TRUE(DeleteEntry(entries_, gone));
  EntryEditor lost(Services(), gone);
  prompt_.shown.clear();
  EXPECT_EQ(lost.Save(entries_), SaveResult::kFailed);
  EXPECT_EQ(prompt_.Texts(),
            std::vector<std::u16string>{u"Unable to save the time entry."});
}

}  // namespace
}  // namespace quillora
