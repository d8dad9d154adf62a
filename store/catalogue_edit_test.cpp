#include "store/catalogue_edit.h"

#include <gtest/gtest.h>

#include "platform/registry.h"
#include "platform/text.h"
#include "tests/test_volume.h"

namespace quillora {
namespace {

class CatalogueEditTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(catalogue_.Open());
    acme_ = AddClient(catalogue_.clients, u"Acme");
    globex_ = AddClient(catalogue_.clients, u"Globex");
  }
  std::string Projects(ClientId client) {
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
  ProjectRecord Record(ClientId client, const std::u16string& task) {
    for (const ProjectRecord& r : ProjectRecords(catalogue_.projects, client)) {
      if (r.task == task) return r;
    }
    return {};
  }

  testing::TestVolume volume_;
  std::unique_ptr<Registry> registry_ = OpenMemoryRegistry();
  std::unique_ptr<Locale> locale_ = Locale::UsEnglish();
  Catalogue catalogue_{volume_.store(), registry_.get()};
  ClientId acme_ = 0;
  ClientId globex_ = 0;
};

TEST_F(CatalogueEditTest, RenamingAProjectTakesItsTasksAlongAndMergesWithAnExistingOne) {
  ProjectStore& p = catalogue_.projects;
  AddProject(p, *locale_, acme_, u"Web", u"");
  AddProject(p, *locale_, acme_, u"Web", u"Design");
  AddProject(p, *locale_, acme_, u"web", u"Other case");
  AddProject(p, *locale_, acme_, u"Site", u"");
  AddProject(p, *locale_, acme_, u"Site", u"Design");
  AddProject(p, *locale_, acme_, u"Site", u"Launch");

  EXPECT_EQ(RenameProject(p, *locale_, acme_, u"Web", u"Portal"), 2);
  EXPECT_EQ(Projects(acme_), "Portal/ Portal/Design web/Other case Site/ Site/Design Site/Launch ");
  EXPECT_EQ(RenameProject(p, *locale_, acme_, u"Portal", u"Site"), 2)
      << "both records are there already: they merge";
  EXPECT_EQ(Projects(acme_), "web/Other case Site/ Site/Design Site/Launch ");
  EXPECT_EQ(RenameProject(p, *locale_, acme_, u"Site", u""), 0) << "no empty name";

  EXPECT_TRUE(RenameProjectTask(p, *locale_, Record(acme_, u"Launch"), u"Go live"));
  EXPECT_TRUE(RenameProjectTask(p, *locale_, Record(acme_, u"Go live"), u"Design"));
  EXPECT_EQ(Projects(acme_), "web/Other case Site/ Site/Design ");
}

TEST_F(CatalogueEditTest, RenamingATaskOrContactKeepsItsPlaceOrMerges) {
  for (RecordStore* store : {static_cast<RecordStore*>(&catalogue_.tasks),
                             static_cast<RecordStore*>(&catalogue_.contacts)}) {
    SCOPED_TRACE(ToUtf8(store->name()));
    AddItem(*store, *locale_, acme_, u"One");
    AddItem(*store, *locale_, acme_, u"Two");
    AddItem(*store, *locale_, acme_, u"Three");
    std::vector<CatalogueItem> items = ItemsOf(*store, acme_);
    ASSERT_EQ(items.size(), 3u);
    EXPECT_TRUE(RenameItem(*store, *locale_, items[0], u"First"));
    EXPECT_EQ(Names(*store, acme_), "First Two Three ");
    EXPECT_TRUE(RenameItem(*store, *locale_, items[1], u"Three"));
    EXPECT_EQ(Names(*store, acme_), "First Three ");
    EXPECT_FALSE(RenameItem(*store, *locale_, items[2], u""));
  }
}

TEST_F(CatalogueEditTest, MovingGoesToTheOtherClientAndMergesWhatItHas) {
  ProjectStore& p = catalogue_.projects;
  AddProject(p, *locale_, acme_, u"Web", u"");
  AddProject(p, *locale_, acme_, u"Web", u"Design");
  AddProject(p, *locale_, acme_, u"Web", u"Build");
  AddProject(p, *locale_, acme_, u"Keep", u"");
  AddProject(p, *locale_, globex_, u"Web", u"Design");

  EXPECT_EQ(MoveProject(p, *locale_, acme_, globex_, u"Web"), 3);
  EXPECT_EQ(Projects(acme_), "Keep/ ");
  EXPECT_EQ(Projects(globex_), "Web/Design Web/ Web/Build ");
  EXPECT_EQ(MoveProject(p, *locale_, globex_, globex_, u"Web"), 0);

  TaskStore& t = catalogue_.tasks;
  AddItem(t, *locale_, acme_, u"Call");
  AddItem(t, *locale_, acme_, u"Mail");
  AddItem(t, *locale_, globex_, u"Mail");
  for (const CatalogueItem& item : ItemsOf(t, acme_)) {
    EXPECT_TRUE(MoveItem(t, *locale_, item, globex_)) << ToUtf8(item.name);
  }
  EXPECT_EQ(Names(t, acme_), "");
  EXPECT_EQ(Names(t, globex_), "Mail Call ");
}

}  // namespace
}  // namespace quillora
