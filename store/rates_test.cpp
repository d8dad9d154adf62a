#include "store/rates.h"

#include <gtest/gtest.h>

#include "platform/registry.h"
#include "platform/text.h"
#include "store/catalogue.h"
#include "tests/test_volume.h"

namespace quillora {
namespace {

class RatesTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(catalogue_.Open()); }

  // One line per group: "heading: label type, label type".
  static std::string TreeText(const RateTree& tree) {
    std::string out = tree.custom_rate ? "custom\n" : "";
    for (const RateGroup& g : tree.groups) {
      out += ToUtf8(g.heading) + ":";
      for (std::size_t i = 0; i < g.rates.size(); ++i) {
        out += (i ? ", " : " ") + ToUtf8(RateLabel(g.rates[i])) + " " +
               ToUtf8(RateTypeName(g.rates[i].type));
      }
      out += "\n";
    }
    return out;
  }

  testing::TestVolume volume_;
  std::unique_ptr<Registry> registry_ = OpenMemoryRegistry();
  std::unique_ptr<Locale> locale_ = Locale::UsEnglish();
  Catalogue catalogue_{volume_.store(), registry_.get()};
  RateStore& rates_ = catalogue_.rates;
};

TEST_F(RatesTest, ValuesAreStoredInHundredthsTruncated) {
  const struct {
    double value;
    std::uint32_t stored;
    const char* label;
  } cases[] = {
      {1.15, 114, "(1.14)"},  // 1.15 * 100 is just below 115
      {25.5, 2550, "(25.50)"},
      {0.29, 28, "(0.28)"},
      {12.5, 1250, "(12.50)"},
      {0, 0, "(0.00)"},
      {42949672.95, 4294967295u, "(42949672.95)"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.value);
    const ObjectId id = AddRate(rates_, kRateOvertime, c.value, 3, u"Std", true);
    ASSERT_NE(id, 0u);
    ASSERT_EQ(rates_.Seek(SeekType::kObjectId, id), id);
    Rate r;
    ASSERT_EQ(ReadRate(rates_, &r), 0);
    EXPECT_EQ(r, (Rate{id, 3, u"Std", kRateOvertime, c.stored, true}));
    EXPECT_EQ(RateLabel(r), u"Std " + WidenAscii(c.label));
  }
  EXPECT_EQ(AddRate(rates_, kRateNormal, 42949672.96, 3, u"Big", false), 0u);
  EXPECT_EQ(AddRate(rates_, kRateNormal, -1, 3, u"Negative", false), 0u);
}

TEST_F(RatesTest, RecordsReadBackAsStoredAndUpdatesRewriteThem) {
  const ObjectId id = AddRate(rates_, kRateFixed, 100, 2, u"", false);
  PropList props;
  ASSERT_EQ(rates_.Seek(SeekType::kObjectId, id), id);
  rates_.ReadProps(nullptr, &props);
  std::vector<PropId> ids;
  for (const PropValue& v : props) ids.push_back(v.id);
  EXPECT_EQ(ids, (std::vector<PropId>{kPropRateType, kPropRateValue, kPropClientId,
                                      kPropRateFlag}))
      << "a new record leaves out the empty description";

  // A flag stored as anything but 1 reads false.
  ASSERT_NE(rates_.WriteProps(id, {PropValue::Number(kPropRateFlag, 2)}), 0u);
  Rate r;
  ASSERT_EQ(ReadRate(rates_, &r), 0);
  EXPECT_FALSE(r.flag);

  ASSERT_NE(UpdateRate(rates_, kRateWeekend, 7.5, 2, u"Sat", true), 0u);
  ASSERT_EQ(ReadRate(rates_, &r), 0);
  EXPECT_EQ(r, (Rate{id, 2, u"Sat", kRateWeekend, 750, true}));
  ASSERT_NE(UpdateRate(rates_, kRateWeekend, 7.5, 2, u"", true), 0u);
  ASSERT_EQ(ReadRate(rates_, &r), 0);
  EXPECT_EQ(r.description, u"");

  // The reader goes by its own read: past the end it answers 1.
  rates_.Seek(SeekType::kCurrent, 1);
  EXPECT_EQ(ReadRate(rates_, &r), 1);
  EXPECT_TRUE(DeleteRate(rates_, id));
  EXPECT_TRUE(RatesOf(rates_, 2).empty());
}

TEST_F(RatesTest, TreesListDefaultRatesThenClients) {
  AddClient(catalogue_.clients, u"Zeta");
  const ClientId acme = AddClient(catalogue_.clients, u"Acme");
  AddClient(catalogue_.clients, u"Bare");
  AddRate(rates_, kRateNormal, 50, 0, u"Base", false);
  AddRate(rates_, kRateDiscount, 5, 0, u"Friends", false);
  AddRate(rates_, kRateOvertime, 90.25, acme, u"Rush", false);
  EXPECT_EQ(TreeText(SetupRateTree(rates_, catalogue_.clients)),
            "(Default Rates): Base (50.00) Normal Rate, Friends (5.00) Discount Rate\n"
            "Acme: Rush (90.25) Overtime Rate\nBare:\nZeta:\n");
  EXPECT_EQ(
      TreeText(ChooserRateTree(rates_, catalogue_.clients, u"Acme")),
      "custom\n(Default Rates): Base (50.00) Normal Rate, Friends (5.00) Discount Rate\n"
      "Acme: Rush (90.25) Overtime Rate\n");
  EXPECT_EQ(TreeText(ChooserRateTree(rates_, catalogue_.clients, u"Nobody")),
            "custom\n(Default Rates): Base (50.00) Normal Rate, Friends (5.00) Discount "
            "Rate\n");
  EXPECT_EQ(RateTypeName(5), u"");
}

TEST(RateTextTest, AcceptsNumbersWithUpToTwoDecimals) {
  const struct {
    const char16_t* text;
    bool ok;
    double value;
  } cases[] = {
      {u"25", true, 25},          {u"25.5", true, 25.5},
      {u"12.50", true, 12.5},     {u".75", true, 0.75},
      {u"3.", true, 3},           {u" 1.15 ", true, 1.15},
      {u"1.155", false, 0},       {u"", false, 0},
      {u".", false, 0},           {u"-1", false, 0},
      {u"+1", false, 0},          {u"1,5", false, 0},
      {u"1e2", false, 0},         {u"1.2.3", false, 0},
      {u"abc", false, 0},         {u"42949672.95", true, 42949672.95},
      {u"42949672.96", false, 0}, {u"\uff11", false, 0},
  };
  for (const auto& c : cases) {
    double value = -7;
    EXPECT_EQ(ParseRateText(c.text, &value), c.ok) << ToUtf8(c.text);
    if (c.ok) {
      EXPECT_EQ(value, c.value) << ToUtf8(c.text);
    }
  }
}

TEST_F(RatesTest, TheSetupPageChecksInItsOrder) {
  const ObjectId std_rate = AddRate(rates_, kRateNormal, 60, 4, u"Std", false);
  AddRate(rates_, kRateNormal, 60, 0, u"Default", false);
  const std::u16string kType = u"Please select a type.";
  const std::u16string kDescription = u"Please enter a description.";
  const std::u16string kValue =
      u"This is not a valid rate. Rate can have up to 2 decimal places.";
  const std::u16string kDuplicate =
      u"This type of rate with this description already exists for this client. Please "
      u"either choose a different type or alter the description.";
  const struct {
    RateInput input;
    std::u16string message;
  } cases[] = {
      {{-1, u"", u"x", 4, 0}, kType},         {{5, u"New", u"1", 4, 0}, kType},
      {{0, u"", u"x", 4, 0}, kDescription},   {{0, u"New", u"1.001", 4, 0}, kValue},
      {{0, u"New", u"", 4, 0}, kValue},       {{0, u"Std", u"70", 4, 0}, kDuplicate},
      {{0, u"Std", u"bad", 4, 0}, kValue},    {{0, u"Default", u"1", 0, 0}, kDuplicate},
      {{0, u"Std", u"70", 4, std_rate}, u""},  // editing the rate itself
      {{1, u"Std", u"70", 4, 0}, u""},         // another type
      {{0, u"std", u"70", 4, 0}, u""},         // letter case counts
      {{0, u"Std", u"70", 5, 0}, u""},         // another client
      {{0, u"Default", u"1", 4, 0}, u""},      // defaults are not the client's
  };
  for (const auto& c : cases) {
    EXPECT_EQ(CheckRate(rates_, *locale_, c.input), c.message)
        << c.input.type << " " << ToUtf8(c.input.description) << " "
        << ToUtf8(c.input.value_text) << " client " << c.input.client;
  }
}

}  // namespace
}  // namespace quillora
