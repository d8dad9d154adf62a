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
  // The catalogue.
  kIdsNewClient = 1300,             // "New Client"
  kIdsEnterClientName = 1301,       // "Enter Client Name:"
  kIdsEnterProjectName = 1302,
  kIdsEnterTaskName = 1303,
  kIdsEnterContactName = 1304,
  kIdsClientNameRequired = 1305,    // "Please enter a client name.  You cannot ..."
  kIdsDeleteItemQuestion = 1306,    // "Are you sure to permanently delete this item?"
  kIdsDeleteListQuestion = 1307,    // "Are you to delete the entire list?"
  kIdsMigrateProjects = 1308,       // "Check Projects to migrate:"
  kIdsMigrateTasks = 1309,
  kIdsDeleteClientQuestion = 1310,  // "This will also delete all associated ..."
  kIdsDeleteProjectQuestion = 1311, // "Are you sure to delete this project and ..."
  kIdsBlankName = 1312,             // "Please enter some text. Blank is not allowed."
  kIdsProjectsGroup = 1313,         // "Projects", "Tasks", "Contacts": tree groups
  kIdsTasksGroup = 1314,
  kIdsContactsGroup = 1315,
  // Rates.
  kIdsDefaultRates = 1400,          // "(Default Rates)"
  kIdsCustomRate = 1401,            // "(Custom Rate)"
  kIdsSelectRateType = 1402,        // "Please select a type."
  kIdsEnterRateDescription = 1403,  // "Please enter a description."
  kIdsInvalidRate = 1404,           // "This is not a valid rate. ..."
  kIdsDuplicateRate = 1405,         // "This type of rate with this description ..."
  // List files, contacts import and the entry timers.
  kIdsImportFailed = 2500,          // "Unable to import data. Please close some ..."
  kIdsListExportFailed = 2501,      // "Unable to export the list."
  kIdsResetTimerQuestion = 2502,    // "Are you sure to reset the timer?"
  kIdsContactsNotFound = 2503,      // "Unable to open the contacts."
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
