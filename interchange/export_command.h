// The main window's export commands for CSV and XML without the window: after
// the export range dialog, the save chooser, the export, and the message when
// it fails.
#ifndef QUILLORA_INTERCHANGE_EXPORT_COMMAND_H_
#define QUILLORA_INTERCHANGE_EXPORT_COMMAND_H_

#include <optional>
#include <string>
#include <string_view>

#include "interchange/csv_export.h"
#include "platform/user_prompt.h"

namespace quillora {

enum class ExportFormat { kCsv, kXml };

enum class ExportOutcome {
  kCancelled,  // the range dialog or the save chooser was cancelled
  kExported,
  kFailed,  // the failure message was shown
};

// The save chooser of each format (each "|" ends a string of the filter).
inline constexpr char16_t kCsvFileFilter[] = u"CSV Files (*.csv)|*.csv|";
inline constexpr char16_t kXmlFileFilter[] = u"XML Files (*.xml)|*.xml|";
// Both: ask before an existing file is replaced.
inline constexpr std::uint32_t kExportChooserFlags =
    kFileOverwritePrompt | kFileHideReadOnly;

// The chooser of a format: its filter, default extension ("csv", "xml") and
// kExportChooserFlags.
FileChooser ExportFileChooser(ExportFormat format);

// Runs the export of one format to `path`.
bool RunExport(ExportFormat format, const std::string& path, const EntryFilter& criteria,
               ExportSources& sources);

// The export command from the range dialog on. `criteria` is what the export
// range dialog gave (MakeExportCriteria of the range and the filter), nothing
// when it was cancelled. Asks for the file with ExportFileChooser; a
// cancelled chooser ends the command with nothing written. When the export
// fails, "Export failed. Please make sure there is enough storage space and
// try agin." is shown titled "Quillora" with the error icon.
ExportOutcome RunExportCommand(ExportFormat format,
                               const std::optional<EntryFilter>& criteria,
                               ExportSources& sources, UserPrompt& prompt);

}  // namespace quillora

#endif  // QUILLORA_INTERCHANGE_EXPORT_COMMAND_H_
