// The report command without a front end: what one report is asked for (a
// saved definition over a range, with the view's filter), the save chooser
// for its file, the generation and the message when it fails. The window's
// report dialog and the command line's `report` both end here.
#ifndef QUILLORA_REPORTS_REPORT_REQUEST_H_
#define QUILLORA_REPORTS_REPORT_REQUEST_H_

#include <optional>
#include <string>

#include "periods/entry_filter.h"
#include "periods/periods.h"
#include "platform/file.h"
#include "platform/locale.h"
#include "platform/user_prompt.h"
#include "reports/html_report.h"
#include "store/record_store.h"
#include "store/settings.h"

namespace quillora {

// The save chooser of report files: "HTML Files (*.htm)|*.htm|", default
// extension "htm", asking before an existing file is replaced.
FileChooser ReportFileChooser();

// The report of `definition` over `range`: the entries that pass `filter`,
// with the filter's range set to the range's days so that they are checked
// again, and "Report Date" showing the day of `now`.
HtmlReportRequest MakeReportRequest(const ReportDefinition& definition,
                                    const PeriodRange& range, const EntryFilter& filter,
                                    const SystemTime& now);

// Asks for the file with ReportFileChooser and writes the report there. The
// path written; nothing when the chooser was cancelled or when generation
// failed, after "Report generation has failed." (title "Quillora", error
// icon).
std::optional<std::string> RunReportCommand(EntryStore& entries, FileSystem& files,
                                            UserPrompt& prompt,
                                            const HtmlReportRequest& request,
                                            const Settings& settings,
                                            const Locale& locale);

}  // namespace quillora

#endif  // QUILLORA_REPORTS_REPORT_REQUEST_H_
