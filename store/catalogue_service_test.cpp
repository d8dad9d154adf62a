// What the front-end table (app/gui/catalogue_front_ends_test.cpp) does not
// reach: merging renames, the value lists and whole lists.
#include "store/catalogue_service.h"

#include <gtest/gtest.h>

#include "platform/registry.h"
#include "store/string_table.h"
#include "tests/fake_prompt.h"
#include "tests/test_volume.h"

namespace quillora {
namespace {

using Kind = CatalogueKind;
using Result = CatalogueResult;

class CatalogueServiceTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(catalogue_.Open());
    ASSERT_EQ(service_.Add({Kind::kClient, u"Acme", {}, {}}, &acme_), Result::kDone);
  }
  Result Add(Kind kind, const std::u16string& name, const std::u16string& project = {}) {
    return service_.Add({kind, u"Acme", project, name});
  }

  testing::TestVolume volume_;
  std::unique_ptr<Registry> registry_ = OpenMemoryRegistry();
  std::unique_ptr<Locale> locale_ = Locale::UsEnglish();
  Catalogue catalogue_{volume_.store(), registry_.get()};
  testing::FakePrompt prompt_;
  CatalogueService service_{catalogue_, *locale_, prompt_};
  ClientId acme_ = 0;
};

TEST_F(CatalogueServiceTest, RenamingOntoATakenNameMergesItemsButNotClients) {
  Add(Kind::kProject, u"Web");
  Add(Kind::kProjectTask, u"Design", u"Web");
  Add(Kind::kProject, u"Site");
  Add(Kind::kTask, u"Call");
  Add(Kind::kTask, u"Phone");
  EXPECT_EQ(service_.Rename({Kind::kProject, u"Acme", {}, u"Web"}, u"Site"),
            Result::kDone);
  EXPECT_EQ(service_.Rename({Kind::kTask, u"Acme", {}, u"Call"}, u"Phone"),
            Result::kDone);
  EXPECT_EQ(service_.Projects(acme_), (std::vector<Project>{{u"Site", {u"Design"}}}));
  ASSERT_EQ(service_.Items(Kind::kTask, acme_).size(), 1u);
  EXPECT_EQ(service_.Rename({Kind::kTask, u"Acme", {}, u"Phone"}, u""), Result::kRefused);
  EXPECT_EQ(prompt_.Texts(), std::vector<std::u16string>{LoadString(kIdsBlankName)});

  ASSERT_EQ(service_.Add({Kind::kClient, u"Beta", {}, {}}), Result::kDone);
  EXPECT_EQ(service_.Rename({Kind::kClient, u"Acme", {}, {}}, u"Beta"), Result::kRefused);
  EXPECT_EQ(service_.Rename({Kind::kClient, u"Acme", {}, {}}, u"Acme Ltd"),
            Result::kDone);
  EXPECT_EQ(service_.TakeClient(u"Acme Ltd")->number, acme_) << "the number stays";
}

TEST_F(CatalogueServiceTest, ValueListsHoldEachTextOnceAndAskBeforeDeleting) {
  for (const char16_t* text : {u"USD", u"eur", u"EUR"}) {
    EXPECT_EQ(service_.AddValue(ValueListKind::kCurrency, text), Result::kDone);
  }
  EXPECT_EQ(service_.AddValue(ValueListKind::kCurrency, u"USD"), Result::kRefused);
  EXPECT_EQ(service_.Values(ValueListKind::kCurrency),
            (std::vector<std::u16string>{u"eur", u"EUR", u"USD"}));
  EXPECT_EQ(service_.DeleteValue(ValueListKind::kCurrency, u"GBP"), Result::kRefused);
  EXPECT_EQ(service_.DeleteValue(ValueListKind::kCurrency, u"USD"), Result::kDeclined);
  prompt_.answers = {Answer::kYes};
  EXPECT_EQ(service_.ClearValues(ValueListKind::kCurrency), Result::kDone);
  EXPECT_TRUE(service_.Values(ValueListKind::kCurrency)->empty());
  EXPECT_EQ(
      prompt_.Texts(),
      (std::vector<std::u16string>{
          FormatString(kIdsValueInList, u"USD"), FormatString(kIdsValueNotInList, u"GBP"),
          LoadString(kIdsDeleteItemQuestion), LoadString(kIdsDeleteListQuestion)}));
}

TEST_F(CatalogueServiceTest, AWholeListIsDeletedAfterOneQuestion) {
  EXPECT_EQ(service_.DeleteList(Kind::kContact, acme_), Result::kDone);
  EXPECT_TRUE(prompt_.shown.empty()) << "an empty list asks nothing";
  Add(Kind::kContact, u"Sam");
  Add(Kind::kContact, u"Lee");
  EXPECT_EQ(service_.DeleteList(Kind::kContact, acme_), Result::kDeclined);
  prompt_.answers = {Answer::kYes};
  EXPECT_EQ(service_.DeleteList(Kind::kContact, acme_), Result::kDone);
  EXPECT_TRUE(service_.Items(Kind::kContact, acme_).empty());
}

}  // namespace
}  // namespace quillora
