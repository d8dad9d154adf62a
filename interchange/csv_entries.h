// Time entries from the CSV export of another tracker: one entry a record,
// its columns recognised by their headers (entry_columns.h).
//
// Dates are ISO 8601 ("YYYY-MM-DD") unless another date format is chosen;
// times are "HH:MM[:SS]" (24-hour) or 12-hour with AM/PM, and already local.
// A start or end column may hold a date and a time together. Durations are
// "H:MM:SS", "H:MM" or decimal hours (a point or a comma); a row's duration
// wins over its start and end. A description fills the task when the row has
// none, else the note; "Billable" takes Yes/No, true/false, 1/0; tags go to
// Custom 1; a rate is read as the rate field reads typed text.
#ifndef QUILLORA_INTERCHANGE_CSV_ENTRIES_H_
#define QUILLORA_INTERCHANGE_CSV_ENTRIES_H_

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "interchange/entry_columns.h"
#include "interchange/imported_entry.h"
#include "store/settings.h"

namespace quillora {

enum class CsvDateFormat { kIso, kMonthDayYear, kDayMonthYear, kDayMonthYearDots };

// "YYYY-MM-DD", "MM/DD/YYYY", "DD/MM/YYYY", "DD.MM.YYYY" (any letter case);
// nothing for another text.
std::optional<CsvDateFormat> CsvDateFormatNamed(std::u16string_view name);
const char16_t* CsvDateFormatName(CsvDateFormat format);

struct CsvImportOptions {
  std::vector<ColumnMapping> mappings;
  CsvDateFormat date_format = CsvDateFormat::kIso;
  ImportDefaults defaults;
};

// The file read as entries, with the header and what each column fills (the
// window shows both).
struct CsvImportedFile {
  ImportedFile file;
  std::vector<std::u16string> header;
  std::vector<EntryColumn> columns;
};

// Reads a CSV export. A file that is not CSV (csv_reader.h), names in a
// mapping a column it does not have, or has no date column, or neither a
// duration nor a start and an end column, is refused as a whole. A row whose
// date, time, duration, "Billable" or rate cannot be read, whose duration is
// longer than an entry holds, or that has no client or task after the
// defaults, is kept with its skip reason. `code_page` reads a file that is
// not UTF-8.
CsvImportedFile ReadCsvEntries(std::string_view bytes, const CsvImportOptions& options,
                               const Settings& settings, int code_page);

}  // namespace quillora

#endif  // QUILLORA_INTERCHANGE_CSV_ENTRIES_H_
