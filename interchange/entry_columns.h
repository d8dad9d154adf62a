// The columns of other trackers' CSV exports and the entry fields they fill.
// A column is recognised by its header, whatever its letter case, from the
// table in entry_columns.cpp (the headers of Toggl Track, Clockify, Kimai and
// solidtime; docs/import.md lists them with their sources). The user can add
// to or override the table with COLUMN=FIELD mappings.
#ifndef QUILLORA_INTERCHANGE_ENTRY_COLUMNS_H_
#define QUILLORA_INTERCHANGE_ENTRY_COLUMNS_H_

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillora {

// The fields a column can fill. kStart and kEnd take a time of day or a
// date and time; kDescription fills the task when the row has none, else
// the note.
enum class EntryColumn {
  kIgnore,
  kDate,
  kStart,
  kEndDate,
  kEnd,
  kDuration,
  kClient,
  kProject,
  kPhase,
  kTask,
  kDescription,
  kNote,
  kBillable,
  kPaid,
  kBillTo,
  kRate,
  kCurrency,
  kTags,
  kCustom1,
  kCustom2,
  kCustom3,
};

// The name of a field as --map and the mapping display write it ("date",
// "start", "endDate", "end", "duration", "client", ..., "billTo", "custom1",
// "ignore"); nothing for an unknown name (any letter case is taken).
std::optional<EntryColumn> EntryColumnNamed(std::u16string_view name);
const char16_t* EntryColumnName(EntryColumn column);
// Every field name, for help texts.
std::u16string EntryColumnNames();

// One COLUMN=FIELD mapping given by the user.
struct ColumnMapping {
  std::u16string header;
  EntryColumn column = EntryColumn::kIgnore;
};
// Reads "COLUMN=FIELD" (split at the last '='); nothing when either side is
// empty or FIELD is not a field name.
std::optional<ColumnMapping> ParseColumnMapping(std::u16string_view text);

// True when two headers are the same apart from letter case and blanks
// around them.
bool SameHeader(std::u16string_view a, std::u16string_view b);

// What each column of a file fills: the user's mappings first, then the
// table. When several columns would fill one field, the one whose header
// ranks first in the table wins and the others are ignored.
std::vector<EntryColumn> RecognizeColumns(const std::vector<std::u16string>& header,
                                          const std::vector<ColumnMapping>& mappings);

}  // namespace quillora

#endif  // QUILLORA_INTERCHANGE_ENTRY_COLUMNS_H_
