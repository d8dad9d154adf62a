// The main window's layout between runs, kept beside the settings under
// "Software\Quillora": where the window stood and how large it was, whether
// it was maximised, the height of the totals pane, and the timesheet
// table's columns ("Column0".."Column10" and "ColOrder").
#ifndef QUILLORA_STORE_WINDOW_LAYOUT_H_
#define QUILLORA_STORE_WINDOW_LAYOUT_H_

#include <array>
#include <cstdint>

#include "platform/registry.h"

namespace quillora {

// The table's columns, in their logical order (the numbers of "Column%d").
enum TableColumn : int {
  kColumnDate,
  kColumnStart,
  kColumnClient,
  kColumnProject,
  kColumnPhase,
  kColumnTask,
  kColumnDuration,
  kColumnRate,
  kColumnAmount,
  kColumnStatus,
  kColumnNote,
};
inline constexpr int kTableColumns = 11;

// A column's stored width: -1 sized automatically, 0 hidden, else pixels.
inline constexpr std::int32_t kColumnAutomatic = -1;
inline constexpr std::int32_t kColumnHidden = 0;

using ColumnOrder = std::array<std::int32_t, kTableColumns>;

// True when `order` holds each column number from 0 to 10 once.
bool IsColumnOrder(const ColumnOrder& order);

struct WindowLayout {
  // "WinRect": left, top, width and height of the normal (not maximised)
  // window, four 32-bit numbers; `placed` false when none is stored (the
  // first start).
  bool placed = false;
  std::array<std::int32_t, 4> rect = {0, 0, 0, 0};
  bool maximised = false;           // "WinMax" 1
  std::int32_t totals_height = -1;  // "TotalsPane": pixels, -1 automatic
  std::array<std::int32_t, kTableColumns> widths = {-1, -1, -1, -1, -1, -1,
                                                    -1, -1, -1, -1, -1};
  // "ColOrder": the column shown at each place, left to right.
  ColumnOrder order = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
};

// Reads what is stored; a missing or unreadable value (a "ColOrder" that is
// not an order of the eleven columns, a "WinRect" without a positive size)
// keeps its default.
WindowLayout LoadWindowLayout(Registry& registry);
// Writes every value; false when one could not be written.
bool SaveWindowLayout(Registry& registry, const WindowLayout& layout);

}  // namespace quillora

#endif  // QUILLORA_STORE_WINDOW_LAYOUT_H_
