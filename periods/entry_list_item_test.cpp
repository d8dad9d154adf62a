#include "periods/entry_list_item.h"

#include <gtest/gtest.h>

#include <memory>

#include "platform/text.h"

namespace quillora {
namespace {

constexpr std::uint32_t kDay = 1, kWeek = 2, kMonth = 3, kCustom = 4;

class EntryListItemTest : public ::testing::Test {
 protected:
  // An entry of 2005-03-01; `second` 1 marks a start time, 0 none.
  static TimeEntry Entry(int hour, int minute, int second, std::uint32_t duration) {
    TimeEntry e;
    SystemTimeToFileTime(MakeSystemTime(2005, 3, 1, hour, minute, second), &e.start);
    e.duration = duration;
    e.task = u"Design";
    e.project = u"Web";
    e.client = u"Acme";
    return e;
  }
  std::string Line(const TimeEntry& e, std::uint32_t view, std::uint32_t shown) {
    DisplayBlock display;
    display.entry_time_display = shown;
    return ToUtf8(DateTimeLine(e, view, display, *locale_));
  }

  std::unique_ptr<Locale> locale_ = Locale::UsEnglish();
};

TEST_F(EntryListItemTest, DateAndTimeLineForEachDisplay) {
  const TimeEntry timed = Entry(9, 0, 1, 150);
  const TimeEntry untimed = Entry(0, 0, 0, 150);
  struct Case {
    const TimeEntry* entry;
    std::uint32_t view, shown;
    const char* line;
  };
  const Case cases[] = {
      {&timed, kWeek, 0, "3/1/2005 1.50h (9:00 AM)"},
      {&timed, kWeek, 1, "3/1/2005 1.50h (9:00 AM - 10:30 AM)"},
      {&timed, kWeek, 2, "3/1/2005 9:00 AM - 10:30 AM"},
      {&untimed, kWeek, 0, "3/1/2005 1.50h"},
      {&untimed, kWeek, 1, "3/1/2005 1.50h"},
      {&untimed, kWeek, 2, "3/1/2005 1.50h"},
      {&timed, kMonth, 1, "3/1/2005 1.50h (9:00 AM - 10:30 AM)"},
      {&timed, kCustom, 2, "3/1/2005 9:00 AM - 10:30 AM"},
      {&timed, kDay, 0, "1.50h (9:00 AM)"},
      {&timed, kDay, 1, "1.50h (9:00 AM - 10:30 AM)"},
      {&timed, kDay, 2, "9:00 AM - 10:30 AM"},
      {&untimed, kDay, 2, "1.50h"},
      {&timed, kWeek, 7, "3/1/2005 1.50h (9:00 AM)"},  // unknown display reads as 0
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Line(*c.entry, c.view, c.shown), c.line)
        << "view " << c.view << " display " << c.shown;
  }
}

TEST_F(EntryListItemTest, EndTimeTruncatesMinutesAndAnySecondsMarkAStart) {
  const std::pair<std::uint32_t, const char*> cases[] = {
      {17, "1:10 PM"},  {83, "1:49 PM"},   {0, "1:00 PM"}, {5, "1:03 PM"},
      {35, "1:21 PM"},  {1200, "1:00 AM"},  // past midnight: the next day's time
      {205, "3:02 PM"},  // 2.05 h is 122.99999999999999 minutes in binary64
  };
  for (const auto& [duration, end] : cases) {
    EXPECT_EQ(Line(Entry(13, 0, 1, duration), kDay, 2), std::string("1:00 PM - ") + end)
        << duration;
  }
  EXPECT_EQ(Line(Entry(13, 0, 42, 17), kDay, 0), "0.17h (1:00 PM)")
      << "any non-zero seconds mark a start time";
}

TEST_F(EntryListItemTest, LinesStatusColourAndIcon) {
  DisplayBlock display;
  display.non_billable_colour = 5;
  display.billable_colour = 0;
  display.paid_colour = 27;
  struct Case {
    bool billable, paid;
    EntryDisplayStatus status;
    ItemColour colour;
  };
  const Case cases[] = {
      {false, false, kStatusNonBillable, {false, 0xFF0000}},
      {false, true, kStatusNonBillable, {false, 0xFF0000}},
      {true, false, kStatusBillableUnpaid, {true, 0}},
      {true, true, kStatusBillablePaid, {false, 0xCCCCFF}},
  };
  for (const Case& c : cases) {
    TimeEntry e = Entry(9, 0, 1, 150);
    e.billable = c.billable;
    e.paid = c.paid;
    display.display_flags = 0;
    EntryListItem item = BuildEntryListItem(e, kWeek, display, *locale_);
    EXPECT_EQ(item.status, c.status) << c.billable << c.paid;
    EXPECT_EQ(item.colour, c.colour) << c.billable << c.paid;
    EXPECT_EQ(item.icon, -1);
    display.display_flags = kDisplayStatusIcon;
    EXPECT_EQ(BuildEntryListItem(e, kWeek, display, *locale_).icon, c.status);
  }
  EXPECT_EQ(PaletteColour(28), ItemColour{}) << "outside the palette: window text";

  Settings settings;
  settings.view = kDay;
  settings.display.display_flags = kDisplayClientName;
  TimeEntry e = Entry(9, 0, 1, 150);
  using Lines = std::vector<std::u16string>;
  EXPECT_EQ(BuildEntryListItem(e, settings, *locale_).lines,
            (Lines{u"1.50h (9:00 AM)", u"Design", u"Web", u"Acme"}));
  settings.display.display_flags = 0;
  e.phase = u"Build";
  EXPECT_EQ(BuildEntryListItem(e, settings, *locale_).lines,
            (Lines{u"1.50h (9:00 AM)", u"Design", u"Web (Build)"}));
  e.project.clear();
  e.task.clear();
  EXPECT_EQ(EntryListItemLines(e, kDay, settings.display, *locale_),
            (Lines{u"1.50h (9:00 AM)", u"", u" (Build)"}));
}

TEST_F(EntryListItemTest, FitToWidthCutsWithThreeDots) {
  // Ten pixels a character.
  const CharactersThatFit tens = [](std::u16string_view text, int width) {
    return std::min(static_cast<int>(text.size()), width / 10);
  };
  const std::pair<int, const char16_t*> cases[] = {
      {100, u"Consulting"}, {200, u"Consulting"}, {90, u"Consult..."},
      {50, u"Con..."},      {20, u"..."},         {0, u"..."},
  };
  for (const auto& [width, fitted] : cases) {
    EXPECT_EQ(FitToWidth(u"Consulting", width, tens), fitted) << width;
  }
  EXPECT_EQ(FitToWidth(u"", 0, tens), u"");
  EXPECT_EQ(FitToWidth(u"ab\U0001F600cd", 40, tens), u"ab...")
      << "half a character is left out";
}

TEST_F(EntryListItemTest, LayoutShrinksAndStacksLines) {
  const ItemRect item{0, 40, 240, 100};
  EntryListItemLayout plain = LayoutEntryListItem(item, false, 16, 14, 3);
  ASSERT_EQ(plain.lines.size(), 3u);
  EXPECT_EQ(plain.lines[0], (ItemRect{2, 40, 238, 54}));
  EXPECT_EQ(plain.lines[2], (ItemRect{2, 68, 238, 82}));
  EXPECT_EQ(plain.separator_y, 99);
  EntryListItemLayout icon = LayoutEntryListItem(item, true, 16, 14, 4);
  EXPECT_EQ(icon.icon_left, 2);
  EXPECT_EQ(icon.icon_top, 41);
  EXPECT_EQ(icon.lines[3], (ItemRect{20, 82, 238, 96}));
}

}  // namespace
}  // namespace quillora
