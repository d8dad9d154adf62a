// How one time entry is drawn in the day, week, month and custom-period
// lists: its display status, text colour, status icon and text lines, and
// where the window puts them. Every view draws its items from this model, so
// the lines are the same in the window and on the command line.
#ifndef QUILLORA_PERIODS_ENTRY_LIST_ITEM_H_
#define QUILLORA_PERIODS_ENTRY_LIST_ITEM_H_

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/locale.h"
#include "store/settings.h"
#include "store/time_entry.h"

namespace quillora {

// Display status of an entry; it picks the item's colour and status icon.
enum EntryDisplayStatus : int {
  kStatusNonBillable = 0,  // whatever its paid flag says
  kStatusBillableUnpaid = 1,
  kStatusBillablePaid = 2,
};

EntryDisplayStatus DisplayStatus(const TimeEntry& entry);

// The text colour of an item that is not selected: either the system's
// window-text colour or a palette colour as 0xRRGGBB.
struct ItemColour {
  bool window_text = true;
  std::uint32_t rgb = 0;

  friend bool operator==(const ItemColour&, const ItemColour&) = default;
};

// A palette index as a colour: 0, and an index outside the palette, give the
// window-text colour.
ItemColour PaletteColour(std::uint32_t index);

// The colour the display block chooses for a status.
ItemColour StatusColour(const DisplayBlock& display, EntryDisplayStatus status);

// The first line: the date (short date format, left out with its blank in the
// day view, `view` 1) and then, for an entry with a start time, the duration
// and times by the entry time display (0 "1.50h (9:00 AM)", 1 "1.50h (9:00 AM
// - 10:30 AM)", 2 "9:00 AM - 10:30 AM"; any other value reads as 0), or for an
// entry without one the duration alone ("1.50h").
std::u16string DateTimeLine(const TimeEntry& entry, std::uint32_t view,
                            const DisplayBlock& display, const Locale& locale);

// Every line of the item, in drawing order: the date and time line, the task,
// the project with " (phase)" when the phase is not empty, and the client when
// "Show Client Name" is set. Lines are not yet fitted to a width.
std::vector<std::u16string> EntryListItemLines(const TimeEntry& entry, std::uint32_t view,
                                               const DisplayBlock& display,
                                               const Locale& locale);

// Everything the window needs to draw one item that is not selected.
struct EntryListItem {
  EntryDisplayStatus status = kStatusNonBillable;
  ItemColour colour;
  int icon = -1;  // index into the list's three status icons; -1 when not shown
  std::vector<std::u16string> lines;
};

EntryListItem BuildEntryListItem(const TimeEntry& entry, std::uint32_t view,
                                 const DisplayBlock& display, const Locale& locale);
// The same from the settings' period kind ("View") and display block.
EntryListItem BuildEntryListItem(const TimeEntry& entry, const Settings& settings,
                                 const Locale& locale);

// How many leading characters of `text` fit into `width` pixels in the
// list's font (the window measures; tests count).
using CharactersThatFit = std::function<int(std::u16string_view text, int width)>;

// Fits one line to the width: when fewer characters fit than the text has,
// the first (fit - 2) are kept and "..." is appended. A line that fits
// exactly is kept as it is.
std::u16string FitToWidth(const std::u16string& text, int width,
                          const CharactersThatFit& fit);

// Pixel rectangles, right and bottom excluded.
struct ItemRect {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;

  int width() const { return right - left; }
  friend bool operator==(const ItemRect&, const ItemRect&) = default;
};

// Where the parts of one item go inside its rectangle.
struct EntryListItemLayout {
  int icon_left = 0;  // the status icon's top-left corner, when shown
  int icon_top = 0;
  std::vector<ItemRect> lines;  // one text height each, top down
  // The one-pixel line in the button-face colour, across the whole item.
  int separator_left = 0;
  int separator_right = 0;
  int separator_y = 0;
};

// The rectangle shrunk by 2 pixels left and right; the icon at its left edge
// one pixel below the top, the text moved right by the icon's width plus 2
// when the icon is shown; each line one text height below the previous.
EntryListItemLayout LayoutEntryListItem(const ItemRect& item, bool show_icon,
                                        int small_icon_width, int text_height,
                                        int line_count);

}  // namespace quillora

#endif  // QUILLORA_PERIODS_ENTRY_LIST_ITEM_H_
