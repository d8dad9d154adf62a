#include "interchange/export_command.h"

#include "interchange/xml_export.h"
#include "store/string_table.h"

namespace quillora {

FileChooser ExportFileChooser(ExportFormat format) {
  FileChooser chooser;
  const bool csv = format == ExportFormat::kCsv;
  chooser.filter = csv ? kCsvFileFilter : kXmlFileFilter;
  chooser.default_extension = csv ? u"csv" : u"xml";
  chooser.flags = kExportChooserFlags;
  return chooser;
}

bool RunExport(ExportFormat format, const std::string& path, const EntryFilter& criteria,
               ExportSources& sources) {
  return format == ExportFormat::kCsv ? ExportCsv(path, criteria, sources)
                                      : ExportXml(path, criteria, sources);
}

ExportOutcome RunExportCommand(ExportFormat format,
                               const std::optional<EntryFilter>& criteria,
                               ExportSources& sources, UserPrompt& prompt) {
  if (!criteria) return ExportOutcome::kCancelled;
  const std::optional<std::string> path =
      prompt.ChooseFileToSave(ExportFileChooser(format));
  if (!path) return ExportOutcome::kCancelled;
  if (RunExport(format, *path, *criteria, sources)) return ExportOutcome::kExported;
  prompt.ShowMessage(kAppTitle, LoadString(kIdsExportFailed), MessageIcon::kError);
  return ExportOutcome::kFailed;
}

}  // namespace quillora
