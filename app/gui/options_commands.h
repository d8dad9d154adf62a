// The window's "Options...", "Filters..." and "Quick Summary..." commands:
// each opens its dialog over the window's data and, where the dialog changes
// something, writes it back and shows the list again.
#ifndef QUILLORA_APP_GUI_OPTIONS_COMMANDS_H_
#define QUILLORA_APP_GUI_OPTIONS_COMMANDS_H_

#include <memory>

#include "app/gui/filters_dialog.h"
#include "app/gui/main_window.h"
#include "app/gui/options_dialog.h"
#include "app/gui/quick_summary_dialog.h"

namespace quillora {

// The commands: each runs its dialog and applies what it confirms.
void RunOptions(MainWindow* window);
void RunFilters(MainWindow* window);
void RunSummary(MainWindow* window);

// The dialogs as the commands open them, owned by the caller.
std::unique_ptr<OptionsDialog> MakeOptionsDialog(MainWindow* window);
std::unique_ptr<QuickSummaryDialog> MakeQuickSummaryDialog(MainWindow* window);

// The options confirmed: the settings become `settings` and are written back
// whole; the list takes the new font, a week view its new week start and
// week number, and the period's entries are shown again.
void ApplyOptions(MainWindow* window, const Settings& settings);

// The "Filters" page confirmed: the window's filter becomes the page's and
// is saved, and the period's entries are shown again.
void ApplyFilters(MainWindow* window, const FilterPage& page);

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_OPTIONS_COMMANDS_H_
