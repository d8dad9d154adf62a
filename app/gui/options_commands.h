// The window's "Options...", "Filters..." and "Quick Summary..." commands:
// each opens its dialog over the window's data and, where the dialog changes
// something, writes it back and shows the list again.
#ifndef QUILLORA_APP_GUI_OPTIONS_COMMANDS_H_
#define QUILLORA_APP_GUI_OPTIONS_COMMANDS_H_

#include <QFont>
#include <memory>

#include "app/gui/filters_dialog.h"
#include "app/gui/main_window.h"
#include "app/gui/options_dialog.h"
#include "app/gui/quick_summary_dialog.h"

namespace quillora {

// Enables and connects the actions "options", "filters" and "summary", and
// sets the entry list's font from the settings.
void InstallOptionsCommands(MainWindow* window);

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

// The entry list's font: `base` one point smaller for "Small" (FSize 0), as
// it is for "Medium" (1), two points larger for "Large" (2), bold when the
// bold bit is set.
QFont ListFont(const QFont& base, const Settings& settings);

}  // namespace quillora

#endif  // QUILLORA_APP_GUI_OPTIONS_COMMANDS_H_
