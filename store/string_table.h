// The program's string table: every fixed text that the logic shows, writes or
// names a database with, reached by its string id.
#ifndef QUILLORA_STORE_STRING_TABLE_H_
#define QUILLORA_STORE_STRING_TABLE_H_

#include <string>

namespace quillora {

// String ids. Add new texts here and in string_table.cpp.
enum StringId : int {
  kIdsClientsDatabase = 20,    // "Quillora Clients"
  kIdsEntriesDatabase = 43,    // "Quillora Data 1"
  kIdsProjectsDatabase = 44,   // "Quillora Projects"
  kIdsTasksDatabase = 45,      // "Quillora Tasks"
  kIdsContactsDatabase = 46,   // "Quillora Contacts"
  kIdsRatesDatabase = 47,      // "Quillora Rates"
  kIdsAuxDatabase = 48,        // "Quillora Data 2"
  kIdsNormalRate = 120,        // "Normal Rate" .. "Discount Rate" are 120..124
  kIdsOvertimeRate = 121,
  kIdsWeekendRate = 122,
  kIdsFixedRate = 123,
  kIdsDiscountRate = 124,
  kIdsCustom1Label = 5012,     // "Custom 1"
  kIdsCustom2Label = 5013,
  kIdsCustom3Label = 5014,
};

// The text of a string id; empty for an id the table does not hold.
const std::u16string& LoadString(int id);

// The title of every message box.
inline constexpr char16_t kAppTitle[] = u"Quillora";

}  // namespace quillora

#endif  // QUILLORA_STORE_STRING_TABLE_H_
