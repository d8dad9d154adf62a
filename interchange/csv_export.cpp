#include "interchange/csv_export.h"

#include <cstdio>

#include "platform/narrow_text_writer.h"
#include "store/entry_read_ahead.h"
#include "store/note_text.h"
#include "timekeeping/duration.h"

namespace quillora {
namespace {

// The fixed cells in front of the custom descriptions. The duration header
// stays "Duration(h)": the "HourSymbol" setting is not used by the export.
constexpr std::u16string_view kFixedHeader =
    u"\"Date\",\"Client\",\"Project\",\"Phase\",\"Task\",\"Start\",\"Duration(h)\","
    u"\"Billable\",\"Paid\",\"Currency\",\"Rate\",\"Rate Type\",\"Amount\",\"Bill To\"";

void AppendField(std::u16string* line, std::u16string_view text, bool first = false) {
  if (!first) line->push_back(u',');
  line->push_back(u'"');
  line->append(text);
  line->push_back(u'"');
}

}  // namespace

EntryFilter MakeExportCriteria(const PeriodRange& range, const EntryFilter& filter) {
  EntryFilter criteria = filter;
  criteria.range_start = range.start;
  criteria.range_end = range.end;
  return criteria;
}

ExportWalkResult WalkExportRange(EntryStore& entries, const EntryFilter& criteria,
                                 const Locale& locale,
                                 const std::function<bool(const TimeEntry&)>& visit) {
  FileTime start = 0;
  FileTime end = 0;
  if (!RangeToFileTimes({criteria.range_start, criteria.range_end}, &start, &end)) {
    return ExportWalkResult::kDone;
  }
  // Strictly greater, as the export has always sought: an entry dated exactly
  // at the range start (such as one without a start time stored at midnight
  // of the first day) is not reached, although the filter would keep it.
  EntryReadAhead read(entries, start, end);
  while (TimeEntry* entry = read.Next()) {
    if (Matches(criteria, *entry, locale) && !visit(*entry)) {
      return ExportWalkResult::kStopped;
    }
  }
  return read.read_failed() ? ExportWalkResult::kReadFailed : ExportWalkResult::kDone;
}

std::u16string ExportNoteText(const TimeEntry& entry) {
  if (entry.note.empty()) return {};
  return NoteBlobToText(entry.note.data(), entry.note.size());
}

std::u16string_view BreakSubstitute(std::uint16_t break_sub) {
  return break_sub < std::size(kBreakSubstitutes) ? kBreakSubstitutes[break_sub]
                                                  : kBreakSubstitutes[0];
}

std::u16string ReplaceLineBreaks(std::u16string_view text,
                                 std::u16string_view substitute) {
  std::u16string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') {
      out.append(substitute);
      ++i;
    } else {
      out.push_back(text[i]);
    }
  }
  return out;
}

std::u16string CsvHeaderLine(const Settings& settings) {
  std::u16string line(kFixedHeader);
  for (const std::u16string& description : settings.custom_labels) {
    AppendField(&line, description);
  }
  AppendField(&line, u"Note");
  line.append(u"\r\n");
  return line;
}

std::u16string CsvEntryLine(const TimeEntry& entry, const Settings& settings,
                            const Locale& locale) {
  SystemTime when;
  const bool dated = FileTimeToSystemTime(entry.start, &when);
  std::u16string line;
  line.reserve(256);
  AppendField(&line, dated ? locale.FormatShortDate(when) : std::u16string(), true);
  AppendField(&line, entry.client);
  AppendField(&line, entry.project);
  AppendField(&line, entry.phase);
  AppendField(&line, entry.task);
  AppendField(&line, dated && when.second == kStartTimeMark
                         ? locale.FormatTime(when, kTimeNoSeconds)
                         : std::u16string());
  AppendField(&line, FormatHundredths(entry.duration));
  AppendField(&line, entry.billable ? u"Y" : u"N");
  AppendField(&line, entry.paid ? u"Y" : u"N");
  AppendField(&line, entry.currency);
  // A non-billable entry still shows its rate; only its type and amount are
  // left out.
  AppendField(&line, entry.rate != 0 ? FormatHundredths(entry.rate) : std::u16string());
  AppendField(&line, entry.billable ? FormatInteger(entry.rateType) : std::u16string());
  AppendField(&line, entry.billable ? FormatTwoDecimals(EntryAmount(entry, settings))
                                    : std::u16string());
  AppendField(&line, entry.billTo);
  AppendField(&line, entry.custom1);
  AppendField(&line, entry.custom2);
  AppendField(&line, entry.custom3);
  AppendField(&line, ReplaceLineBreaks(ExportNoteText(entry),
                                       BreakSubstitute(settings.break_sub)));
  line.append(u"\r\n");
  return line;
}

bool ExportCsv(const std::string& path, const EntryFilter& criteria,
               ExportSources& sources) {
  NarrowTextWriter writer(sources.files, sources.locale.AnsiCodePage());
  if (!writer.Open(path)) return false;
  sources.exported = 0;
  if (!writer.Write(CsvHeaderLine(sources.settings))) return false;
  const ExportWalkResult walked = WalkExportRange(
      sources.entries, criteria, sources.locale, [&](const TimeEntry& entry) {
        if (!writer.Write(CsvEntryLine(entry, sources.settings, sources.locale))) {
          return false;
        }
        ++sources.exported;
        return true;
      });
  // Close makes the file durable; a file that cannot be is not reported
  // written.
  const bool closed = writer.Close();
  return walked == ExportWalkResult::kDone && closed;
}

}  // namespace quillora
