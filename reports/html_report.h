// HTML reports: the entries of a date range that pass the report's criteria,
// laid out by a report definition, built element by element with
// MarkupDocument and written as it is built, one byte per character in the
// ANSI code page.
//
// "Group By Field" reports give one table per group (an "h3" heading or an
// "hr" above it, a total row below); "Tabular" reports give one table of all
// entries. Both have the header (title and date line) and the footer totals.
#ifndef QUILLORA_REPORTS_HTML_REPORT_H_
#define QUILLORA_REPORTS_HTML_REPORT_H_

#include <string>
#include <vector>

#include "markup/markup_stream.h"
#include "periods/entry_filter.h"
#include "periods/periods.h"
#include "platform/file.h"
#include "platform/locale.h"
#include "reports/report_definition.h"
#include "store/record_store.h"
#include "store/settings.h"

namespace quillora {

// The document type written in front of the document, on the same line.
inline constexpr char16_t kHtmlReportDoctype[] =
    u"<!DOCTYPE html PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\" "
    u"\"http://www.w3.org/TR/html4/loose.dtd\">";
inline constexpr char16_t kXhtmlNamespace[] = u"http://www.w3.org/1999/xhtml";

struct HtmlReportRequest {
  ReportDefinition definition;
  // The range walked, and the dates of the date line.
  PeriodRange range;
  // The report's entry criteria. The generator applies them as they are; a
  // caller that wants the range checked again sets the filter's range.
  EntryFilter criteria;
  // The day shown by "Report Date".
  SystemTime today;
};

// Walks the entries and builds the report document (before "/>" becomes
// " />"), handing its text to `sink` piece by piece as it grows. The walk
// starts at the first entry whose start is strictly later than the range's
// start and stops at the first entry later than its end; entries that pass
// the criteria are listed; a "Group By Field" report sorts them by its
// group-by field (stable, so entries of one group stay in date order),
// except when it groups by the entry date. False when the sink refused a
// piece; nothing more is built then.
bool StreamHtmlReport(EntryStore& entries, const HtmlReportRequest& request,
                      const Settings& settings, const Locale& locale,
                      const MarkupStream::Sink& sink);

// The whole report document (before "/>" becomes " />") in one text.
std::u16string HtmlReportDocument(EntryStore& entries, const HtmlReportRequest& request,
                                  const Settings& settings, const Locale& locale);

// Creates or truncates `path` and writes the document type and the document,
// every "/>" written as " />", converted to the ANSI code page one byte per
// character, as the report is built. False when the output file cannot be
// created, a write fails or the file cannot be closed (the caller shows
// "Report generation has failed."); a failure leaves what was written.
bool GenerateHtmlReport(EntryStore& entries, FileSystem& files, const std::string& path,
                        const HtmlReportRequest& request, const Settings& settings,
                        const Locale& locale);

}  // namespace quillora

#endif  // QUILLORA_REPORTS_HTML_REPORT_H_
