// A CSV export is any file a user picks: whatever the bytes, the reader
// either refuses them with a line inside the text, or gives one row a record,
// each an entry to import or a reason to skip one.
#include <cstddef>
#include <cstdint>
#include <string>

#include "interchange/csv_entries.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  quillora::CsvImportOptions options;
  options.defaults = {u"C", u"T"};
  for (auto format :
       {quillora::CsvDateFormat::kIso, quillora::CsvDateFormat::kDayMonthYear}) {
    options.date_format = format;
    const quillora::CsvImportedFile csv =
        quillora::ReadCsvEntries(bytes, options, quillora::Settings{}, 1252);
    const quillora::ImportedFile& file = csv.file;
    if (!file.error.empty() && !file.rows.empty()) __builtin_trap();
    if (file.error.empty() && csv.columns.size() != csv.header.size()) __builtin_trap();
    // Each text line is at most two bytes in UTF-16; a line break is at most
    // two units, so no line number can pass the byte count plus one.
    if (file.error_line > static_cast<int>(size) + 1) __builtin_trap();
    for (const quillora::ImportedEntry& row : file.rows) {
      if (row.line < 2 || row.line > static_cast<int>(size) + 1) __builtin_trap();
      if (row.skip.empty() && (row.entry.client.empty() || row.entry.task.empty() ||
                               row.entry.duration > 0xFFFF)) {
        __builtin_trap();
      }
    }
  }
  return 0;
}
