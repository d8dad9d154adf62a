#include "periods/entry_list_item.h"

#include <algorithm>
#include <cstdio>

#include "platform/text.h"

namespace quillora {
namespace {

constexpr std::uint32_t kDayView = 1;
constexpr std::uint32_t kDisplayDurationStartEnd = 1;
constexpr std::uint32_t kDisplayStartEnd = 2;

std::u16string Hours(std::uint32_t duration) {
  char buf[32];
  std::snprintf(buf, sizeof buf, "%.2f", duration * 0.01);
  return WidenAscii(buf);
}

std::u16string TimeOfDay(FileTime time, const Locale& locale) {
  SystemTime st;
  if (!FileTimeToSystemTime(time, &st)) return u"";
  return locale.FormatTime(st, kTimeNoSeconds);
}

// Keeps the first `count` units, leaving out a character that would be cut
// in half.
std::u16string Head(const std::u16string& text, std::size_t count) {
  if (count >= text.size()) return text;
  if (count > 0 && text[count - 1] >= 0xD800 && text[count - 1] <= 0xDBFF) --count;
  return text.substr(0, count);
}

}  // namespace

EntryDisplayStatus DisplayStatus(const TimeEntry& entry) {
  if (!entry.billable) return kStatusNonBillable;
  return entry.paid ? kStatusBillablePaid : kStatusBillableUnpaid;
}

ItemColour PaletteColour(std::uint32_t index) {
  if (index == 0 || index >= kItemPalette.size()) return ItemColour{};
  return ItemColour{false, kItemPalette[index]};
}

ItemColour StatusColour(const DisplayBlock& display, EntryDisplayStatus status) {
  switch (status) {
    case kStatusBillableUnpaid:
      return PaletteColour(display.billable_colour);
    case kStatusBillablePaid:
      return PaletteColour(display.paid_colour);
    case kStatusNonBillable:
      break;
  }
  return PaletteColour(display.non_billable_colour);
}

std::u16string DateTimeLine(const TimeEntry& entry, std::uint32_t view,
                            const DisplayBlock& display, const Locale& locale) {
  std::u16string line;
  if (view != kDayView) {
    SystemTime date;
    if (FileTimeToSystemTime(entry.start, &date)) line = locale.FormatShortDate(date);
    line += u' ';
  }
  if (!HasStartTime(entry)) return line + Hours(entry.duration) + u'h';

  const std::uint32_t shown = display.entry_time_display;
  const bool with_duration = shown != kDisplayStartEnd;
  const bool with_end = shown == kDisplayDurationStartEnd || shown == kDisplayStartEnd;
  if (with_duration) line += Hours(entry.duration) + u"h (";
  line += TimeOfDay(entry.start, locale);
  if (with_end) {
    // Whole minutes, truncated, computed in floating point as the duration
    // is shown: 0.17 hours end 10 minutes after the start, 0.83 hours 49.
    const auto minutes = static_cast<FileTime>(entry.duration * 0.01 * 60);
    line += u" - ";
    line += TimeOfDay(entry.start + minutes * kTicksPerMinute, locale);
  }
  if (with_duration) line += u')';
  return line;
}

std::vector<std::u16string> EntryListItemLines(const TimeEntry& entry, std::uint32_t view,
                                               const DisplayBlock& display,
                                               const Locale& locale) {
  std::vector<std::u16string> lines;
  lines.reserve(4);
  lines.push_back(DateTimeLine(entry, view, display, locale));
  lines.push_back(entry.task);
  std::u16string project = entry.project;
  if (!entry.phase.empty()) project += u" (" + entry.phase + u')';
  lines.push_back(std::move(project));
  if (display.display_flags & kDisplayClientName) lines.push_back(entry.client);
  return lines;
}

EntryListItem BuildEntryListItem(const TimeEntry& entry, std::uint32_t view,
                                 const DisplayBlock& display, const Locale& locale) {
  EntryListItem item;
  item.status = DisplayStatus(entry);
  item.colour = StatusColour(display, item.status);
  if (display.display_flags & kDisplayStatusIcon) item.icon = item.status;
  item.lines = EntryListItemLines(entry, view, display, locale);
  return item;
}

EntryListItem BuildEntryListItem(const TimeEntry& entry, const Settings& settings,
                                 const Locale& locale) {
  return BuildEntryListItem(entry, settings.view, settings.display, locale);
}

std::u16string FitToWidth(const std::u16string& text, int width,
                          const CharactersThatFit& fit) {
  const int n = std::max(fit(text, width), 0);
  if (static_cast<std::size_t>(n) >= text.size()) return text;
  return Head(text, static_cast<std::size_t>(std::max(n - 2, 0))) + u"...";
}

EntryListItemLayout LayoutEntryListItem(const ItemRect& item, bool show_icon,
                                        int small_icon_width, int text_height,
                                        int line_count) {
  EntryListItemLayout layout;
  const int left = item.left + 2;
  const int right = item.right - 2;
  layout.icon_left = left;
  layout.icon_top = item.top + 1;
  const int text_left = show_icon ? left + small_icon_width + 2 : left;
  for (int i = 0; i < line_count; ++i) {
    const int top = item.top + i * text_height;
    layout.lines.push_back(ItemRect{text_left, top, right, top + text_height});
  }
  layout.separator_left = item.left;
  layout.separator_right = item.right;
  layout.separator_y = item.bottom - 1;
  return layout;
}

}  // namespace quillora
