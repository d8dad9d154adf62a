#include "store/catalogue.h"

#include <gtest/gtest.h>

#include "platform/registry.h"
#include "platform/text.h"
#include "store/rates.h"
#include "store/settings.h"
#include "tests/fake_prompt.h"
#include "tests/test_volume.h"

namespace quillora {
namespace {

class CatalogueTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(catalogue_.Open()); }

  ClientId Add(const std::u16string& name) { return AddClient(catalogue_.clients, name); }
  ObjectId RecordOf(const std::u16string& name) {
    EXPECT_TRUE(FindClient(catalogue_.clients, name));
    return catalogue_.clients.current_record_id();
  }
  // "name:number" of every client in list order.
  std::string Clients() {
    std::string out;
    for (const Client& c : ClientList(catalogue_.clients)) {
      out += ToUtf8(c.name) + ":" + std::to_string(c.number) + " ";
    }
    return out;
  }
  // "project/task" of every project record of a client, in store order.
  std::string ProjectTexts(ClientId client) {
    std::string out;
    for (const ProjectRecord& r : ProjectRecords(catalogue_.projects, client)) {
      out += ToUtf8(r.project) + "/" + ToUtf8(r.task) + " ";
    }
    return out;
  }
  std::string Names(RecordStore& store, ClientId client) {
    std::string out;
    for (const CatalogueItem& i : ItemsOf(store, client)) out += ToUtf8(i.name) + " ";
    return out;
  }
  std::string Values(ValueListKind kind) {
    AuxStore aux(volume_.store());
    EXPECT_TRUE(aux.Open());
    std::string out;
    for (const ValueItem& v : ValueList(aux, kind)) out += ToUtf8(v.text) + " ";
    return out;
  }

  testing::TestVolume volume_;
  std::unique_ptr<Registry> registry_ = OpenMemoryRegistry();
  std::unique_ptr<Locale> locale_ = Locale::UsEnglish();
  Catalogue catalogue_{volume_.store(), registry_.get()};
  testing::FakePrompt prompt_;
};

TEST_F(CatalogueTest, ClientNumbersCountUpAndAreNeverReused) {
  EXPECT_EQ(Add(u"Zeta"), 1u);
  EXPECT_EQ(Add(u"Acme"), 2u);
  EXPECT_EQ(Add(u"acme"), 3u) << "letter case makes another client";
  EXPECT_EQ(Add(u"Acme"), 0u) << "duplicate";
  EXPECT_EQ(Add(u""), 0u) << "empty";
  prompt_.answers = {Answer::kYes};
  EXPECT_EQ(DeleteClient(catalogue_, prompt_, RecordOf(u"Zeta")),
            DeleteOutcome::kDeleted);
  EXPECT_EQ(Add(u"Zeta"), 4u);
  EXPECT_EQ(Clients(), "acme:3 Acme:2 Zeta:4 ") << "the collation puts lower case first";

  ASSERT_TRUE(FindClient(catalogue_.clients, u"acme"));
  EXPECT_TRUE(RenameClient(catalogue_.clients, u"Beta"));
  EXPECT_EQ(ClientNumberOf(catalogue_.clients, RecordOf(u"Beta")), 3u);
  EXPECT_FALSE(FindClient(catalogue_.clients, u"acme"));
  EXPECT_EQ(ClientNumberOf(catalogue_.clients, 999999), 0u);
  EXPECT_EQ(Clients(), "Acme:2 Beta:3 Zeta:4 ");
}

TEST(ClientCounterTest, AClientsDatabaseWithoutCounterIsSeededOnce) {
  struct Case {
    const char* what;
    bool clients_exist;
    std::optional<std::uint32_t> next_client;  // nullopt: no key at all
    bool with_registry;
    ClientId first;
  };
  const Case cases[] = {
      {"fresh store ignores the registry", false, 7, true, 1},
      {"existing clients take NextClient", true, 7, true, 7},
      {"existing clients, key without value", true, std::nullopt, true, 1},
      {"existing clients, no registry: counter left missing", true, 7, false, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    testing::TestVolume volume;
    auto registry = OpenMemoryRegistry();
    if (c.next_client) {
      RegistryKey key;
      ASSERT_EQ(registry->CreateKey(RegistryHive::kCurrentUser, kSettingsKeyPath, &key),
                0);
      ASSERT_EQ(WriteDword(*registry, key, u"NextClient", *c.next_client), 0);
    }
    if (c.clients_exist) {
      // As an older version left it: the clients database, no counter record.
      DatabaseInfo info;
      info.name = u"Quillora Clients";
      info.type = 79990004;
      info.sort_orders = {{kPropClientName, 0}};
      ASSERT_NE(volume.store().CreateDatabase(info), 0u);
    }
    {
      ClientStore clients(volume.store(), c.with_registry ? registry.get() : nullptr);
      ASSERT_TRUE(clients.Open());
      EXPECT_EQ(AddClient(clients, u"First"), c.first);
    }
    // Opening again never seeds a second time.
    ClientStore again(volume.store(), registry.get());
    ASSERT_TRUE(again.Open());
    if (c.first != 0) {
      EXPECT_EQ(AddClient(again, u"Second"), c.first + 1);
    }
    AuxStore aux(volume.store());
    ASSERT_TRUE(aux.Open());
    int counters = 0;
    const PropValue kind = PropValue::Number(kPropListKind, kCounterKind);
    for (ObjectId id = aux.SeekValue(SeekType::kValueFirstEqual, kind); id != 0;
         id = aux.SeekValue(SeekType::kValueNextEqual, kind)) {
      ++counters;
    }
    EXPECT_EQ(counters, 1);
  }
}

TEST_F(CatalogueTest, ProjectTriplesAreWrittenOnce) {
  const ClientId acme = Add(u"Acme"), other = Add(u"Other");
  EXPECT_NE(AddProject(catalogue_.projects, *locale_, acme, u"Web", u""), 0u);
  EXPECT_EQ(AddProject(catalogue_.projects, *locale_, acme, u"Web", u""), 0u);
  EXPECT_NE(AddProject(catalogue_.projects, *locale_, acme, u"Web", u"Design"), 0u);
  EXPECT_EQ(AddProject(catalogue_.projects, *locale_, acme, u"Web", u"Design"), 0u);
  EXPECT_NE(AddProject(catalogue_.projects, *locale_, acme, u"web", u""), 0u);
  EXPECT_NE(AddProject(catalogue_.projects, *locale_, acme, u"Web", u"design"), 0u);
  EXPECT_EQ(AddProject(catalogue_.projects, *locale_, acme, u"", u"Design"), 0u);
  EXPECT_NE(AddProject(catalogue_.projects, *locale_, other, u"Web", u""), 0u);
  EXPECT_NE(AddProject(catalogue_.projects, *locale_, acme, u"App", u"Build"), 0u);
  EXPECT_EQ(ProjectTexts(acme), "Web/ Web/Design web/ Web/design App/Build ");
  EXPECT_TRUE(IsDuplicate(catalogue_.projects, *locale_, acme, u"App", u"Build"));
  EXPECT_FALSE(IsDuplicate(catalogue_.projects, *locale_, acme, u"App", u""));

  const auto projects = ProjectsOf(catalogue_.projects, *locale_, acme);
  ASSERT_EQ(projects.size(), 3u);
  EXPECT_EQ(projects[0], (Project{u"Web", {u"Design", u"design"}}));
  EXPECT_EQ(projects[1], (Project{u"web", {}}));
  EXPECT_EQ(projects[2], (Project{u"App", {u"Build"}}));

  EXPECT_EQ(DeleteProject(catalogue_.projects, *locale_, acme, u"Web"), 3);
  EXPECT_EQ(ProjectTexts(acme), "web/ App/Build ");
  EXPECT_EQ(ProjectTexts(other), "Web/ ");

  auto records = ProjectRecords(catalogue_.projects, acme);
  ASSERT_EQ(catalogue_.projects.Seek(SeekType::kObjectId, records[1].record_id),
            records[1].record_id);
  EXPECT_TRUE(UpdateProject(catalogue_.projects, {0, acme, u"App", u""}));
  EXPECT_EQ(ProjectTexts(acme), "web/ App/ ") << "an emptied task is removed";
}

TEST_F(CatalogueTest, TasksAndContactsHoldEachNameOncePerClient) {
  const ClientId acme = Add(u"Acme"), other = Add(u"Other");
  for (RecordStore* store : {static_cast<RecordStore*>(&catalogue_.tasks),
                             static_cast<RecordStore*>(&catalogue_.contacts)}) {
    SCOPED_TRACE(ToUtf8(store->name()));
    EXPECT_NE(AddItem(*store, *locale_, acme, u"Ann"), 0u);
    EXPECT_EQ(AddItem(*store, *locale_, acme, u"Ann"), 0u);
    EXPECT_EQ(AddItem(*store, *locale_, acme, u""), 0u);
    EXPECT_NE(AddItem(*store, *locale_, acme, u"ann"), 0u);
    EXPECT_NE(AddItem(*store, *locale_, other, u"Ann"), 0u);
    EXPECT_EQ(Names(*store, acme), "Ann ann ");
    EXPECT_TRUE(DeleteItem(*store, ItemsOf(*store, acme)[0].record_id));
    EXPECT_EQ(Names(*store, acme), "ann ");
    EXPECT_EQ(DeleteByClient(*store, acme), 1);
    EXPECT_EQ(Names(*store, acme), "");
    EXPECT_EQ(Names(*store, other), "Ann ");
  }
}

// The bulk adders answer as the single adds do, for names already stored,
// names they added themselves, and names of another client.
TEST_F(CatalogueTest, AddersFollowTheSingleAddsRules) {
  const ClientId single = Add(u"Single"), bulk = Add(u"Bulk"), other = Add(u"Other");
  for (ClientId c : {single, bulk}) {
    AddItem(catalogue_.contacts, *locale_, c, u"Ann");
    AddProject(catalogue_.projects, *locale_, c, u"Web", u"");
  }
  AddItem(catalogue_.contacts, *locale_, other, u"Bob");
  AddProject(catalogue_.projects, *locale_, other, u"App", u"Build");

  const std::vector<std::pair<std::u16string, std::u16string>> adds = {
      {u"Ann", u""},      {u"ann", u"x"}, {u"", u"Design"},    {u"Bob", u"Build"},
      {u"Bob", u""},      {u"Web", u""},  {u"Web", u"Design"}, {u"Web", u"Design"},
      {u"App", u"Build"}, {u"ann", u"x"}, {u"Ann ", u""}};
  ItemAdder items(catalogue_.contacts, *locale_, bulk);
  ProjectAdder projects(catalogue_.projects, *locale_, bulk);
  for (const auto& [first, second] : adds) {
    const std::string text = ToUtf8(first) + "/" + ToUtf8(second);
    const bool item_taken = items.Add(first) != 0;
    EXPECT_EQ(item_taken, AddItem(catalogue_.contacts, *locale_, single, first) != 0)
        << text;
    EXPECT_TRUE(items.Refuses(first)) << text << ": taken or there before";
    const bool project_taken = projects.Add(first, second) != 0;
    EXPECT_EQ(project_taken,
              AddProject(catalogue_.projects, *locale_, single, first, second) != 0)
        << text;
  }
  EXPECT_EQ(Names(catalogue_.contacts, bulk), Names(catalogue_.contacts, single));
  EXPECT_EQ(ProjectTexts(bulk), ProjectTexts(single));
  EXPECT_EQ(Names(catalogue_.contacts, other), "Bob ");
  EXPECT_EQ(ProjectTexts(other), "App/Build ");
}

TEST_F(CatalogueTest, ValueListsHoldNoDuplicatesAndNoEmptyText) {
  AuxStore aux(volume_.store());
  ASSERT_TRUE(aux.Open());
  EXPECT_TRUE(AddValue(aux, *locale_, ValueListKind::kCurrency, u"EUR"));
  EXPECT_FALSE(AddValue(aux, *locale_, ValueListKind::kCurrency, u"EUR"));
  EXPECT_FALSE(AddValue(aux, *locale_, ValueListKind::kCurrency, u""));
  EXPECT_TRUE(AddValue(aux, *locale_, ValueListKind::kCurrency, u"eur"));
  EXPECT_TRUE(AddValue(aux, *locale_, ValueListKind::kPhase, u"EUR"));
  EXPECT_TRUE(AddValue(aux, *locale_, ValueListKind::kCustom3, u"x"));
  EXPECT_EQ(Values(ValueListKind::kCurrency), "EUR eur ");
  EXPECT_EQ(Values(ValueListKind::kPhase), "EUR ");
  EXPECT_EQ(DeleteValue(aux, *locale_, ValueListKind::kCurrency, u"EUR"), 1);
  EXPECT_EQ(DeleteValue(aux, *locale_, ValueListKind::kCurrency, u"EUR"), 0);
  EXPECT_EQ(Values(ValueListKind::kCurrency), "eur ");
  EXPECT_EQ(DeleteValueList(aux, ValueListKind::kPhase), 1);
  EXPECT_EQ(Values(ValueListKind::kPhase), "");
  EXPECT_EQ(Values(ValueListKind::kCustom3), "x ");
  EXPECT_TRUE(HasCounter(aux)) << "the counter is no list item";
}

TEST_F(CatalogueTest, DeletingAClientTakesItsCatalogueButNotDefaultRatesNorEntries) {
  const ClientId acme = Add(u"Acme"), other = Add(u"Other");
  for (ClientId c : {acme, other}) {
    AddProject(catalogue_.projects, *locale_, c, u"Web", u"Design");
    AddItem(catalogue_.tasks, *locale_, c, u"Call");
    AddItem(catalogue_.contacts, *locale_, c, u"Ann");
    AddRate(catalogue_.rates, kRateNormal, 60, c, u"Std", false);
  }
  AddRate(catalogue_.rates, kRateNormal, 50, 0, u"Default", false);
  EntryStore entries(volume_.store());
  ASSERT_TRUE(entries.Open());
  TimeEntry entry;
  entry.client = u"Acme";
  entry.task = u"Call";
  ASSERT_TRUE(AddEntry(entries, entry));

  prompt_.answers = {Answer::kNo};
  EXPECT_EQ(DeleteClient(catalogue_, prompt_, RecordOf(u"Acme")),
            DeleteOutcome::kDeclined);
  // Its text and default answer: catalogue_dialog_test.
  ASSERT_EQ(prompt_.shown.size(), 1u);
  EXPECT_EQ(prompt_.shown[0].icon, MessageIcon::kWarning);
  EXPECT_EQ(prompt_.shown[0].buttons, QuestionButtons::kYesNo);
  EXPECT_EQ(Clients(), "Acme:1 Other:2 ");

  prompt_.answers = {Answer::kYes};
  EXPECT_EQ(DeleteClient(catalogue_, prompt_, RecordOf(u"Acme")),
            DeleteOutcome::kDeleted);
  EXPECT_EQ(Clients(), "Other:2 ");
  EXPECT_EQ(ProjectTexts(acme), "");
  EXPECT_EQ(Names(catalogue_.tasks, acme) + Names(catalogue_.contacts, acme), "");
  EXPECT_TRUE(RatesOf(catalogue_.rates, acme).empty());
  EXPECT_EQ(ProjectTexts(other), "Web/Design ");
  EXPECT_EQ(Names(catalogue_.tasks, other) + Names(catalogue_.contacts, other),
            "Call Ann ");
  EXPECT_EQ(RatesOf(catalogue_.rates, other).size(), 1u);
  EXPECT_EQ(RatesOf(catalogue_.rates, 0).size(), 1u);
  TimeEntry read;
  entries.Seek(SeekType::kBeginning, 0);
  ASSERT_EQ(ReadEntry(entries, &read), 0);
  EXPECT_EQ(read.client, u"Acme");
}

TEST_F(CatalogueTest, AClientNumberedZeroNeverTakesTheDefaultRates) {
  // Written while the counter was missing.
  ASSERT_NE(catalogue_.clients.WriteProps(0, {PropValue::Number(kPropClientId, 0),
                                              PropValue::Text(kPropClientName, u"Old")}),
            0u);
  AddRate(catalogue_.rates, kRateNormal, 50, 0, u"Default", false);
  prompt_.answers = {Answer::kYes};
  EXPECT_EQ(DeleteClient(catalogue_, prompt_, RecordOf(u"Old")), DeleteOutcome::kDeleted);
  EXPECT_EQ(RatesOf(catalogue_.rates, 0).size(), 1u);
}

TEST_F(CatalogueTest, DeletingAProjectAsksAndTakesItsTasks) {
  const ClientId acme = Add(u"Acme");
  AddProject(catalogue_.projects, *locale_, acme, u"Web", u"");
  AddProject(catalogue_.projects, *locale_, acme, u"Web", u"Design");
  AddProject(catalogue_.projects, *locale_, acme, u"App", u"");
  prompt_.answers = {Answer::kNo, Answer::kYes};
  EXPECT_EQ(DeleteProjectAsked(catalogue_, prompt_, *locale_, acme, u"Web"),
            DeleteOutcome::kDeclined);
  EXPECT_EQ(DeleteProjectAsked(catalogue_, prompt_, *locale_, acme, u"Web"),
            DeleteOutcome::kDeleted);
  ASSERT_EQ(prompt_.shown.size(), 2u);  // the text: catalogue_dialog_test
  EXPECT_EQ(prompt_.shown[1].default_answer, Answer::kNo);
  EXPECT_EQ(ProjectTexts(acme), "App/ ");
}

TEST_F(CatalogueTest, ASavedEntryGrowsTheCatalogueOnce) {
  const ClientId acme = Add(u"Acme");
  TimeEntry e;
  e.client = u"Acme";
  e.project = u"Web";
  e.task = u"Design";
  e.billTo = u"Ann";
  e.phase = u"Phase 1";
  e.currency = u"EUR";
  e.custom1 = u"c1";
  e.custom3 = u"c3";
  for (int save = 0; save < 2; ++save)
    ASSERT_TRUE(GrowCatalogue(catalogue_, *locale_, e));
  EXPECT_EQ(ProjectTexts(acme), "Web/Design ");
  EXPECT_EQ(Names(catalogue_.tasks, acme), "") << "a task with a project stays there";
  EXPECT_EQ(Names(catalogue_.contacts, acme), "Ann ");

  e.project.clear();
  e.task = u"Call";
  e.billTo.clear();
  ASSERT_TRUE(GrowCatalogue(catalogue_, *locale_, e));
  EXPECT_EQ(Names(catalogue_.tasks, acme), "Call ");
  EXPECT_EQ(Names(catalogue_.contacts, acme), "Ann ");
  EXPECT_EQ(ProjectTexts(acme), "Web/Design ");

  e.client = u"Unknown";
  e.task = u"Elsewhere";
  e.phase = u"Phase 2";
  ASSERT_TRUE(GrowCatalogue(catalogue_, *locale_, e));
  EXPECT_EQ(Names(catalogue_.tasks, acme), "Call ");
  EXPECT_EQ(Clients(), "Acme:1 ") << "a client is never added by an entry";
  EXPECT_EQ(Values(ValueListKind::kPhase), "Phase 1 Phase 2 ");
  EXPECT_EQ(Values(ValueListKind::kCurrency), "EUR ");
  EXPECT_EQ(Values(ValueListKind::kCustom1) + "|" + Values(ValueListKind::kCustom2) +
                "|" + Values(ValueListKind::kCustom3),
            "c1 ||c3 ");
}

}  // namespace
}  // namespace quillora
