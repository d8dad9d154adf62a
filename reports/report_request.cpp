#include "reports/report_request.h"

#include "store/string_table.h"

namespace quillora {

FileChooser ReportFileChooser() {
  FileChooser chooser;
  chooser.filter = u"HTML Files (*.htm)|*.htm|";
  chooser.default_extension = u"htm";
  chooser.flags = kFileOverwritePrompt | kFileHideReadOnly;
  return chooser;
}

HtmlReportRequest MakeReportRequest(const ReportDefinition& definition,
                                    const PeriodRange& range, const EntryFilter& filter,
                                    const SystemTime& now) {
  HtmlReportRequest request;
  request.definition = definition;
  request.range = range;
  request.today = DateOnly(now);
  request.criteria = filter;
  request.criteria.range_start = DateOnly(range.start);
  request.criteria.range_end = DateOnly(range.end);
  return request;
}

std::optional<std::string> RunReportCommand(EntryStore& entries, FileSystem& files,
                                            UserPrompt& prompt,
                                            const HtmlReportRequest& request,
                                            const Settings& settings,
                                            const Locale& locale) {
  std::optional<std::string> path = prompt.ChooseFileToSave(ReportFileChooser());
  if (!path) return std::nullopt;
  if (!GenerateHtmlReport(entries, files, *path, request, settings, locale)) {
    prompt.ShowMessage(kAppTitle, LoadString(kIdsReportGenerationFailed),
                       MessageIcon::kError);
    return std::nullopt;
  }
  return path;
}

}  // namespace quillora
