#include "periods/entry_filter.h"

#include <gtest/gtest.h>

#include <memory>

#include "platform/text.h"
#include "store/settings.h"

namespace quillora {
namespace {

TimeEntry MakeEntry(bool billable, bool paid) {
  TimeEntry e;
  e.billable = billable;
  e.paid = paid;
  e.client = u"Acme";
  SystemTimeToFileTime(MakeSystemTime(2005, 3, 1, 9, 0, 1), &e.start);
  return e;
}

class EntryFilterTest : public ::testing::Test {
 protected:
  void SetUp() override {
    registry_ = OpenMemoryRegistry();
    ASSERT_EQ(registry_->CreateKey(RegistryHive::kCurrentUser, kSettingsKeyPath, &key_),
              0);
  }
  bool Keeps(const EntryFilter& f, const TimeEntry& e) { return Matches(f, e, *locale_); }
  // A value's raw bytes, "missing" when it is not stored.
  std::string Raw(const char16_t* name) {
    std::string bytes(512, '\0');
    std::uint32_t size = 512;
    if (registry_->QueryValue(key_, name, nullptr, bytes.data(), &size) != 0) {
      return "missing";
    }
    bytes.resize(size);
    return bytes;
  }
  std::string Utf16Bytes(std::string_view ascii) {
    std::string out;
    for (char c : ascii) out += {c, '\0'};
    return out + std::string(2, '\0');
  }
  EntryFilter Loaded() {
    EntryFilter f;
    EXPECT_TRUE(LoadFilter(*registry_, &f));
    return f;
  }

  std::unique_ptr<Locale> locale_ = Locale::UsEnglish();
  std::unique_ptr<Registry> registry_;
  RegistryKey key_;
};

TEST_F(EntryFilterTest, NoRegistryValuesKeepEveryEntry) {
  const EntryFilter f = Loaded();
  EXPECT_EQ(f, EntryFilter());
  EXPECT_EQ(FilterFlags(f), 21u);
  EXPECT_EQ(f.rate_type, -1);
  for (bool billable : {false, true}) {
    for (bool paid : {false, true}) {
      for (std::uint16_t type = 0; type <= 4; ++type) {
        TimeEntry e = MakeEntry(billable, paid);
        e.rateType = type;
        e.client.clear();
        EXPECT_TRUE(Keeps(f, e)) << billable << paid << type;
      }
    }
  }
}

TEST_F(EntryFilterTest, FlagsDecideWhichStatusesPass) {
  struct Case {
    std::uint32_t flags;
    bool non_billable, non_billable_paid, unpaid, paid;
  };
  const Case cases[] = {
      {21, true, true, true, true},     {5, false, false, true, true},
      {17, true, true, true, false},    {0, false, false, false, false},
      {0x10, true, true, false, false}, {0x04, false, false, false, true},
  };
  for (const Case& c : cases) {
    WriteDword(*registry_, key_, u"fFlags", c.flags);
    const EntryFilter f = Loaded();
    EXPECT_EQ(FilterFlags(f), c.flags);
    EXPECT_EQ(Keeps(f, MakeEntry(false, false)), c.non_billable) << c.flags;
    EXPECT_EQ(Keeps(f, MakeEntry(false, true)), c.non_billable_paid) << c.flags;
    EXPECT_EQ(Keeps(f, MakeEntry(true, false)), c.unpaid) << c.flags;
    EXPECT_EQ(Keeps(f, MakeEntry(true, true)), c.paid) << c.flags;
  }
}

TEST_F(EntryFilterTest, RangeKeepsItsDaysWhole) {
  EntryFilter f;
  f.range_start = MakeSystemTime(2005, 3, 1);
  f.range_end = MakeSystemTime(2005, 3, 1);
  struct Case {
    SystemTime start;
    bool kept;
  };
  const Case cases[] = {
      {MakeSystemTime(2005, 2, 28, 23, 59, 59), false},
      {MakeSystemTime(2005, 3, 1, 0, 0, 0), true},
      {MakeSystemTime(2005, 3, 1, 23, 59, 59), true},
      {MakeSystemTime(2005, 3, 1, 23, 59, 59, 999), false},
      {MakeSystemTime(2005, 3, 2, 0, 0, 0), false},
  };
  for (const Case& c : cases) {
    TimeEntry e = MakeEntry(true, false);
    ASSERT_TRUE(SystemTimeToFileTime(c.start, &e.start));
    EXPECT_EQ(Keeps(f, e), c.kept) << FormatIsoDateTime(c.start);
  }

  TimeEntry far = MakeEntry(true, false);
  SystemTimeToFileTime(MakeSystemTime(1999, 1, 1), &far.start);
  f.range_start.month = 0;  // no range at all, whatever the end says
  EXPECT_TRUE(Keeps(f, far));
  f.range_start = MakeSystemTime(2005, 2, 30);
  EXPECT_FALSE(Keeps(f, MakeEntry(true, false))) << "an impossible range keeps nothing";
}

TEST_F(EntryFilterTest, TextCriteriaMatchWholeCaseSensitiveText) {
  using Field = std::u16string TimeEntry::*;
  using Criterion = std::u16string EntryFilter::*;
  const std::pair<Criterion, Field> pairs[] = {
      {&EntryFilter::client, &TimeEntry::client},
      {&EntryFilter::project, &TimeEntry::project},
      {&EntryFilter::phase, &TimeEntry::phase},
      {&EntryFilter::task, &TimeEntry::task},
      {&EntryFilter::bill_to, &TimeEntry::billTo},
      {&EntryFilter::currency, &TimeEntry::currency},
      {&EntryFilter::custom1, &TimeEntry::custom1},
      {&EntryFilter::custom2, &TimeEntry::custom2},
      {&EntryFilter::custom3, &TimeEntry::custom3},
  };
  const std::pair<std::u16string, bool> values[] = {
      {u"Acme \u00c9t\u00e9", true},
      {u"acme \u00e9t\u00e9", false},
      {u"Acme", false},
      {u"Acme \u00c9t\u00e9 Ltd", false},
      {u"Acme Ete", false},
      {u"", false},
  };
  for (std::size_t i = 0; i < std::size(pairs); ++i) {
    const auto [criterion, field] = pairs[i];
    EntryFilter f;
    TimeEntry e = MakeEntry(true, false);
    e.*field = u"";
    EXPECT_TRUE(Keeps(f, e)) << "an empty criterion keeps an empty field, pair " << i;
    f.*criterion = u"Acme \u00c9t\u00e9";
    for (const auto& [value, kept] : values) {
      e.*field = value;
      EXPECT_EQ(Keeps(f, e), kept) << "pair " << i << " value " << ToUtf8(value);
    }
  }
}

TEST_F(EntryFilterTest, RateTypeCriterion) {
  EntryFilter f;
  for (std::int32_t criterion = -1; criterion <= 4; ++criterion) {
    f.rate_type = criterion;
    for (std::uint16_t type = 0; type <= 4; ++type) {
      TimeEntry e = MakeEntry(true, false);
      e.rateType = type;
      EXPECT_EQ(Keeps(f, e), criterion == -1 || criterion == type)
          << criterion << " " << type;
    }
  }
}

TEST_F(EntryFilterTest, SaveDeletesAllElevenValuesThenWrites) {
  for (const char16_t* name : {u"fClient", u"fProject", u"fPhase", u"fTask", u"fBillTo",
                               u"fCurrency", u"fCustom1", u"fCustom2", u"fCustom3"}) {
    WriteString(*registry_, key_, name, u"old");
  }
  EntryFilter f;
  f.client = u"Acme";
  f.currency = u"EUR";
  f.show_paid = false;
  f.custom2 = u"kept in memory only";
  f.range_start = MakeSystemTime(2005, 3, 1);
  f.range_end = MakeSystemTime(2005, 3, 31);
  ASSERT_TRUE(SaveFilter(*registry_, f));

  EXPECT_EQ(Raw(u"fClient"), Utf16Bytes("Acme"));
  EXPECT_EQ(Raw(u"fCurrency"), Utf16Bytes("EUR"));
  for (const char16_t* name : {u"fProject", u"fPhase", u"fTask", u"fBillTo", u"fCustom1",
                               u"fCustom2", u"fCustom3"}) {
    EXPECT_EQ(Raw(name), "missing") << ToUtf8(name);
  }
  EXPECT_EQ(Raw(u"fFlags"), std::string("\x11\0\0\0", 4));
  EXPECT_EQ(Raw(u"fRateType"), std::string("\xff\xff\xff\xff", 4));

  EntryFilter back = Loaded();
  EXPECT_EQ(back.client, u"Acme");
  EXPECT_EQ(back.currency, u"EUR");
  EXPECT_FALSE(back.show_paid);
  EXPECT_TRUE(back.show_unpaid && back.show_non_billable);
  EXPECT_EQ(back.rate_type, -1);
  EXPECT_TRUE(back.custom2.empty()) << "custom criteria are not kept between runs";
  EXPECT_EQ(back.range_start.month, 0) << "nor is the range";

  ASSERT_TRUE(SaveFilter(*registry_, EntryFilter()));
  EXPECT_EQ(Raw(u"fClient"), "missing") << "a cleared criterion is deleted";
  EXPECT_EQ(Raw(u"fFlags"), std::string("\x15\0\0\0", 4));
}

TEST_F(EntryFilterTest, LoadReadsStringsWholeAndIgnoresOtherTypes) {
  const std::u16string long_name(300, u'x');
  WriteString(*registry_, key_, u"fProject", long_name);
  WriteString(*registry_, key_, u"fTask", u"Design");
  WriteDword(*registry_, key_, u"fClient", 7);             // not a string
  WriteString(*registry_, key_, u"fFlags", u"5");          // not a DWORD
  WriteBinary(*registry_, key_, u"fRateType", "\3\0", 2);  // wrong size
  WriteString(*registry_, key_, u"fCustom1", u"never read");
  const EntryFilter f = Loaded();
  EXPECT_EQ(f.project, long_name);
  EXPECT_EQ(f.task, u"Design");
  EXPECT_EQ(f.client, u"");
  EXPECT_EQ(FilterFlags(f), 21u);
  EXPECT_EQ(f.rate_type, -1);
  EXPECT_EQ(f.custom1, u"");
}

// ---------------------------------------------------------------------------

class FilterPageTest : public EntryFilterTest {
 protected:
  FilterChoices Choices() {
    FilterChoices c;
    c.clients = {u"Zeta", u"acme", u"Acme", u"", u"Beta", u"Acme"};
    c.projects = {u"Web"};
    c.currencies = {u"USD", u"EUR"};
    return c;
  }
};

TEST_F(FilterPageTest, ListsStartWithAllAndSelectTheCurrentCriteria) {
  EntryFilter current;
  current.project = u"Mobile";  // not in the catalogue any more
  current.currency = u"EUR";
  current.rate_type = 4;
  current.show_paid = false;
  const FilterPage page(current, Choices(), *locale_);

  const FilterPageList& clients = page.list(kFilterClientList);
  EXPECT_EQ(clients.label, u"Client:");
  EXPECT_EQ(clients.items,
            (std::vector<std::u16string>{u"(All)", u"acme", u"Acme", u"Beta", u"Zeta"}));
  EXPECT_EQ(clients.selection, 0);
  const FilterPageList& projects = page.list(kFilterProjectList);
  EXPECT_EQ(projects.items, (std::vector<std::u16string>{u"(All)", u"Web", u"Mobile"}));
  EXPECT_EQ(projects.selection, 2);
  EXPECT_EQ(page.list(kFilterCurrencyList).selection, 1);
  const FilterPageList& rates = page.list(kFilterRateTypeList);
  EXPECT_EQ(rates.items, (std::vector<std::u16string>{u"(All)", u"Normal Rate",
                                                      u"Overtime Rate", u"Weekend Rate",
                                                      u"Fixed Rate", u"Discount Rate"}));
  EXPECT_EQ(rates.selection, 5);
  EXPECT_TRUE(page.unpaid && page.non_billable);
  EXPECT_FALSE(page.paid);

  for (int i = 0; i < kFilterListCount; ++i) {
    EXPECT_EQ(page.list(static_cast<FilterList>(i)).items.front(), u"(All)") << i;
  }

  current.rate_type = 9;
  EXPECT_EQ(FilterPage(current, Choices(), *locale_).list(kFilterRateTypeList).selection,
            0);
}

TEST_F(FilterPageTest, ConfirmationResetsThenTakesListsAndBoxes) {
  EntryFilter current;
  current.task = u"Design";  // from the registry; the page has no task list
  current.client = u"Acme";
  current.range_start = MakeSystemTime(2005, 3, 1);
  current.range_end = MakeSystemTime(2005, 3, 1);
  FilterPage page(current, Choices(), *locale_);

  ASSERT_TRUE(page.SelectText(kFilterClientList, u"(All)"));
  EntryFilter result = page.Result();
  EXPECT_EQ(result, EntryFilter()) << "all boxes on and every list on (All): reset";

  ASSERT_TRUE(page.Select(kFilterRateTypeList, 4));
  ASSERT_TRUE(page.SelectText(kFilterCustom3List, u"c3"));
  ASSERT_TRUE(page.SelectText(kFilterBillToList, std::u16string(130, u'b')));
  page.non_billable = false;
  EXPECT_FALSE(page.Select(kFilterPhaseList, 1)) << "only (All) in an empty list";
  EXPECT_FALSE(page.SelectText(kFilterRateTypeList, u"Holiday Rate"));

  EntryFilter expected;
  expected.rate_type = 3;
  expected.custom3 = u"c3";
  expected.bill_to = std::u16string(128, u'b');
  expected.show_non_billable = false;
  ASSERT_TRUE(page.Confirm(*registry_, &result));
  EXPECT_EQ(result, expected);
  EXPECT_EQ(Raw(u"fBillTo").size(), 2u * 129);
  EXPECT_EQ(Raw(u"fFlags"), std::string("\x05\0\0\0", 4));
  EXPECT_EQ(Raw(u"fRateType"), std::string("\x03\0\0\0", 4));
  EXPECT_EQ(Raw(u"fTask"), "missing");
  EXPECT_EQ(Raw(u"fCustom3"), "missing");

  page.non_billable = true;
  ASSERT_TRUE(page.Select(kFilterRateTypeList, 0));
  ASSERT_TRUE(page.Select(kFilterCustom3List, 0));
  ASSERT_TRUE(page.Select(kFilterBillToList, 0));
  page.paid = false;
  expected = EntryFilter();
  expected.show_paid = false;
  EXPECT_EQ(page.Result(), expected) << "one box off is enough to leave the reset";
}

}  // namespace
}  // namespace quillora
