// The CSV export: the time entries of a date range that pass the entry filter,
// one line each, in a comma-separated file for spreadsheets and accounting
// programs. Also the entry range walk that the XML export shares.
#ifndef QUILLORA_INTERCHANGE_CSV_EXPORT_H_
#define QUILLORA_INTERCHANGE_CSV_EXPORT_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "periods/entry_filter.h"
#include "periods/periods.h"
#include "platform/file.h"
#include "platform/locale.h"
#include "store/record_store.h"
#include "store/settings.h"
#include "store/time_entry.h"

namespace quillora {

// What an export reads and where it writes. Everything is borrowed for one
// export; the entry store must be open.
struct ExportSources {
  EntryStore& entries;
  const Settings& settings;  // custom descriptions, "BreakSub", "Encoding", amounts
  const Locale& locale;      // date and time pictures, comparison, ANSI code page
  FileSystem& files;
  // Set by an export: the entries it wrote (for the window's notice).
  std::size_t exported = 0;
};

// The export criteria: the filter with its range set to the export range.
// The range start and end bound the walk; the filter's own test then checks
// the range again (whole days) and every criterion that is set.
EntryFilter MakeExportCriteria(const PeriodRange& range, const EntryFilter& filter);

enum class ExportWalkResult {
  kDone,        // the range was walked to its end (or held no entry)
  kStopped,     // `visit` answered false
  kReadFailed,  // an entry could not be read
};

// The entry range walk of the exports: seeks the entry store on the start
// (1001) to the first entry strictly later than the range start, reads forward
// one record at a time and stops at the first entry later than the range end.
// Every entry met that passes Matches(criteria) is handed to `visit`. A range
// whose start or end is not a calendar time holds no entry.
ExportWalkResult WalkExportRange(
    EntryStore& entries, const EntryFilter& criteria, const Locale& locale,
    const std::function<bool(const TimeEntry& entry)>& visit);

// The plain text of an entry's note, its line breaks as CR LF; empty for no
// note or a note the note editor cannot read.
std::u16string ExportNoteText(const TimeEntry& entry);

// "BreakSub": the four substitutes of a line break in a CSV note, by index.
inline constexpr std::u16string_view kBreakSubstitutes[] = {u" ", u"  ", u"~`", u"|"};
// The substitute of a "BreakSub" index; an index outside 0..3 gives one blank,
// the first choice.
std::u16string_view BreakSubstitute(std::uint16_t break_sub);
// `text` with every CR LF pair replaced by `substitute`; lone CRs and LFs stay.
std::u16string ReplaceLineBreaks(std::u16string_view text,
                                 std::u16string_view substitute);

// The header line, CR LF included: the fixed cells, the three custom field
// descriptions as they stand, and "Note".
std::u16string CsvHeaderLine(const Settings& settings);
// The line of one entry, CR LF included. Fields are quoted as they stand:
// quotes and commas inside a field are not escaped.
std::u16string CsvEntryLine(const TimeEntry& entry, const Settings& settings,
                            const Locale& locale);

// Writes the CSV file at `path` (replacing one that exists) in the locale's
// ANSI code page, one byte per character. False when the file cannot be
// created or a write fails; a partly written file is left in place.
bool ExportCsv(const std::string& path, const EntryFilter& criteria,
               ExportSources& sources);

}  // namespace quillora

#endif  // QUILLORA_INTERCHANGE_CSV_EXPORT_H_
